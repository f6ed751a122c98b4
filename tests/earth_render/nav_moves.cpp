#include "NavigatedGlobe.h"

#include <cmath>
#include <functional>
#include <gtest/gtest.h>
#include <osg/MatrixTransform>
#include <osg/ShapeDrawable>
#include <osgEarth/GeoData>
#include <osgEarth/Map>
#include <osgEarth/MapNode>
#include <osgEarth/Terrain>
#include <random>

using namespace osgEarth;
using EA = osgGA::GUIEventAdapter;

namespace {

constexpr double kRadius = 6378137.0;

/// Each test gets mountains of which nothing is loaded yet.
class MovesOverMountains : public testing::Test
{
protected:
    void expectClear(const char* when = "")
    {
        EXPECT_GE(nav.eyeAboveGround(), 1.0 - 1e-3) << when;
        EXPECT_TRUE(nav.isSound()) << when;
    }

    NavigatedGlobe nav{mapOfMountains()};
};

} // namespace

TEST_F(MovesOverMountains, TheWheelGoesFromSpaceToTheGroundUnderTheCursor)
{
    nav.showAt(-105.0, 37.4, 0.0, 20.0, -80.0, 4.0 * kRadius);
    for (int notch = 0; notch < 110; ++notch) {
        nav.scroll(EA::SCROLL_DOWN, 330, 210);
        const auto before = nav.surfaceAt(330, 210);
        ASSERT_TRUE(before);
        nav.tick();
        expectClear();
        if (notch % 5 == 0) {
            ASSERT_TRUE(nav.globe.drawUntilComplete());
        }
        nav.draw();
    }
    for (int i = 0; i < 60; ++i)
        nav.draw();
    const osg::Matrixd rest = nav.manipulator->getMatrix();
    nav.draw();
    EXPECT_EQ(nav.manipulator->getMatrix(), rest);
    EXPECT_LT(nav.manipulator->getDistance(), 5.0);
    EXPECT_LT(nav.eyeAboveGround(), 5.0);
}

TEST_F(MovesOverMountains, TheEyeStaysAboveFinerGroundThatComesIn)
{
    nav.showAt(-105.0, 37.4, 0.0, 0.0, -90.0, 4.0 * kRadius);
    // The coarsest heights know nothing of a summit of 4050 m.
    nav.goTo(-105.485, 37.578, 4051.0, 0.0, -30.0, 50.0);
    for (int i = 0; i < 300; ++i) {
        nav.draw();
        EXPECT_GE(nav.eyeAboveKnownGround(), 1.0 - 1e-3);
        nav.tick();
        expectClear();
    }
    ASSERT_TRUE(nav.globe.drawUntilComplete());
    nav.draw();
    expectClear();
    EXPECT_LT(nav.eyeAboveGround(), 60.0);
}

TEST_F(MovesOverMountains, AViewpointLooksTheSameWhateverGroundWasThereAtFirst)
{
    // A valley, which the coarse heights have some hundred metres too high.
    const auto go = [&] { nav.goTo(-105.52, 37.62, 2600.0, 140.0, -25.0, 60.0); };
    nav.showAt(-105.0, 37.4, 0.0, 0.0, -90.0, 4.0 * kRadius);
    go();
    for (int i = 0; i < 3; ++i) {
        ASSERT_TRUE(nav.globe.drawUntilComplete());
        nav.draw();
    }
    const osg::Matrixd first = nav.manipulator->getMatrix();
    go();
    ASSERT_TRUE(nav.globe.drawUntilComplete());
    nav.draw();
    EXPECT_LT((nav.manipulator->getMatrix().getTrans() - first.getTrans()).length(), 0.5);
    expectClear();
}

TEST_F(MovesOverMountains, AViewpointInsideAMountainStandsOnIt)
{
    nav.showAt(-105.45, 37.56, 0.0, 315.0, -20.0, 400.0);
    expectClear();
    const Viewpoint now = nav.manipulator->getViewpoint();
    EXPECT_NEAR(now.getPitch(), -20.0, 1e-3) << "the place was lifted, not the view turned";
    EXPECT_NEAR(now.getRange(), 400.0, 1e-3);
    EXPECT_GT(now.focalPoint()->z(), 3000.0);
}

TEST_F(MovesOverMountains, PanningTowardsASlopeGoesOverIt)
{
    const std::function<void(int)> pans[] = {
        [&](int i) {
            if (i % 10 == 0)
                nav.key(EA::KEYDOWN, EA::KEY_Up);
            nav.tick();
        },
        [&](int i) {
            // Pulls the ground towards the camera, again and again.
            if (i % 10 == 0)
                nav.mouse(EA::PUSH, 320, 220);
            nav.mouse(EA::DRAG, 320, 220 - 15 * (i % 10));
            if (i % 10 == 9)
                nav.mouse(EA::RELEASE, 320, 85);
            nav.tick();
        },
    };
    for (const auto& pan : pans) {
        nav.showAt(-105.565, 37.565, 2700.0, 85.0, -12.0, 600.0);
        const double start = nav.eyePlace().z();
        Footage footage;
        footage.shoot(nav);
        double highest = 0.0;
        for (int i = 0; i < 800; ++i) {
            pan(i);
            expectClear();
            footage.shoot(nav);
            highest = std::max(highest, nav.manipulator->centerMap().z());
            if (i % 20 == 0)
                nav.draw();
        }
        EXPECT_GT(highest, start) << "climbed the slope";
        EXPECT_LT(footage.fastest(), 1.0) << "no leap";
        nav.key(EA::KEYUP, EA::KEY_Up);
    }
}

TEST_F(MovesOverMountains, RotatingToTheFlattestPitchStaysClearOfTheSlopeBehind)
{
    nav.showAt(-105.56, 37.56, 2600.0, 0.0, -60.0, 1500.0);
    nav.mouse(EA::PUSH, 320, 200, EA::MIDDLE_MOUSE_BUTTON);
    for (int i = 1; i <= 100; ++i) {
        nav.mouse(EA::DRAG, 320 + 3 * i, 200 + 2 * i, EA::MIDDLE_MOUSE_BUTTON);
        nav.tick();
        expectClear();
    }
    EXPECT_GT(nav.pitch(), -20.0);
}

TEST_F(MovesOverMountains, FlightsAreSmoothClearTheMountainsAndEndOnTheGround)
{
    const struct
    {
        const char* name;
        double from[6], to[6], seconds;
    } flights[] = {
        {"low across the range",
         {-105.62, 37.58, 2400, 85, -12, 1500},
         {-105.35, 37.58, 2700, 85, -12, 1500},
         4.0},
        {"to a place whose height is not known",
         {-105.0, 37.4, 0, 0, -90, 2e6},
         {-105.485, 37.578, 0, 30, -25, 2000},
         5.0},
        {"out to space", {-105.3, 37.4, 2500, 10, -30, 20}, {20, 50, 0, 0, -90, 2e7}, 5.0},
    };
    for (const auto& flight : flights) {
        SCOPED_TRACE(flight.name);
        const auto& a = flight.from;
        const auto& b = flight.to;
        nav.showAt(b[0], b[1], b[2], b[3], b[4], b[5]);
        const osg::Vec3d goal = nav.eye();
        nav.showAt(a[0], a[1], a[2], a[3], a[4], a[5]);
        nav.goTo(b[0], b[1], b[2], b[3], b[4], b[5], flight.seconds);
        Footage footage;
        footage.shoot(nav);
        const int frames = static_cast<int>(flight.seconds / 0.025) + 10;
        for (int i = 0; i < frames; ++i) {
            nav.draw();
            footage.shoot(nav);
            expectClear();
        }
        EXPECT_FALSE(nav.manipulator->isSettingViewpoint());
        EXPECT_LT(footage.firstStep(), 0.02 * footage.fastest());
        EXPECT_LT(footage.lastStep(), 0.02 * footage.fastest());
        EXPECT_LT(footage.jerkiest(), 0.3 * footage.fastest());
        EXPECT_LT(footage.fastest(), 0.5);
        ASSERT_TRUE(nav.globe.drawUntilComplete());
        nav.draw();
        EXPECT_LT((nav.eye() - goal).length(), 1e-3 * b[5] + 1.0);
    }
}

TEST_F(MovesOverMountains, AFlightToAnAircraftJoinsItInMotion)
{
    osg::ref_ptr<osg::MatrixTransform> aircraft = new osg::MatrixTransform;
    aircraft->addChild(new osg::ShapeDrawable(new osg::Sphere(osg::Vec3(), 1.0f)));
    const auto fly = [&](double seconds) {
        osg::Vec3d world;
        GeoPoint(SpatialReference::get("wgs84"), -105.4 + 3e-4 * seconds, 37.4, 3500.0).toWorld(world);
        aircraft->setMatrix(osg::Matrixd::translate(world)); // 26 m/s
    };
    nav.showAt(-105.3, 37.3, 2500.0, 0.0, -45.0, 5000.0);
    fly(0.0);
    Viewpoint follow;
    follow.setNode(aircraft);
    follow.setHeading(0.0);
    follow.setPitch(-30.0);
    follow.setRange(100.0);
    nav.manipulator->setViewpoint(follow, 2.0);
    Footage footage;
    footage.shoot(nav);
    for (int i = 1; i <= 120; ++i) {
        fly(0.025 * i);
        nav.tick();
        footage.shoot(nav);
        expectClear();
    }
    EXPECT_TRUE(nav.manipulator->isTethering());
    EXPECT_LT(footage.jerkiest(), 0.3 * footage.fastest());

    // Broken off on the way, it stays where it is.
    nav.showAt(-105.3, 37.3, 2500.0, 0.0, -45.0, 5000.0);
    nav.manipulator->setViewpoint(follow, 2.0);
    for (int i = 0; i < 20; ++i) {
        nav.tick();
    }
    const osg::Vec3d there = nav.eye();
    nav.mouse(EA::PUSH, 320, 200);
    nav.tick();
    EXPECT_LT((nav.eye() - there).length(), 1e-3);
    EXPECT_FALSE(nav.manipulator->isTethering());
}

TEST_F(MovesOverMountains, WhateverIsDoneTheEyeStaysClearAndThePitchWithinItsLimits)
{
    nav.showAt(-105.5, 37.57, 3500.0, 0.0, -40.0, 2000.0);
    for (unsigned seed = 1; seed <= 6; ++seed) {
        std::mt19937 random(seed);
        const auto between = [&](double least, double most) {
            return least + (most - least) * (static_cast<double>(random()) / 4294967296.0);
        };
        const auto anywhere = [&] {
            return Viewpoint("", between(-105.6, -105.4), between(37.5, 37.65), between(0.0, 4500.0),
                             between(-180.0, 180.0), between(-95.0, 0.0), std::exp(between(0.0, 12.0)));
        };
        const int keys[] = {EA::KEY_Up,    EA::KEY_Down, EA::KEY_Left,
                            EA::KEY_Right, EA::KEY_Plus, EA::KEY_Minus};
        const std::function<void()> moves[] = {
            [&] { nav.manipulator->setViewpoint(anywhere()); },
            [&] { nav.manipulator->setViewpoint(anywhere(), between(0.1, 1.0)); },
            [&] { nav.key(EA::KEYDOWN, keys[random() % 6]); },
            [&] { nav.key(EA::KEYUP, keys[random() % 6]); },
            [&] {
                nav.scroll(random() % 2 ? EA::SCROLL_UP : EA::SCROLL_DOWN, between(0, 640), between(0, 400));
            },
            [&] { nav.manipulator->rotate(between(-0.5, 0.5), between(-0.3, 0.6)); },
            [&] { nav.manipulator->pan(between(-1.0, 1.0), between(-1.0, 1.0)); },
            [&] { nav.manipulator->zoom(0.0, between(-0.5, 0.5)); },
            [&] { nav.mouse(EA::DOUBLECLICK, between(0, 640), between(0, 400)); },
            [&] {
                const int button = 1 << (random() % 3);
                double x = between(0, 640);
                double y = between(0, 400);
                nav.mouse(EA::PUSH, x, y, button);
                for (int i = 0; i < 8; ++i) {
                    nav.mouse(EA::DRAG, x += between(-30, 30), y += between(-30, 30), button);
                    expectClear("drag");
                }
                nav.mouse(EA::RELEASE, x, y, button);
            }};
        for (int step = 0; step < 300 && !HasFailure(); ++step) {
            SCOPED_TRACE("seed " + std::to_string(seed) + " step " + std::to_string(step));
            moves[random() % std::size(moves)]();
            expectClear("move");
            for (unsigned i = 0; i < random() % 12; ++i) {
                nav.tick();
                expectClear("frame");
            }
            if (step % 10 == 0) {
                nav.draw();
                nav.tick();
                expectClear("new tiles");
            }
        }
    }
}

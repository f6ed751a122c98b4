#include "NavigatedGlobe.h"
#include "RasterMaker.h"

#include <cmath>
#include <functional>
#include <globe/Wgs84.h>
#include <gtest/gtest.h>
#include <osg/MatrixTransform>
#include <osg/ShapeDrawable>
#include <osgEarth/ElevationLayer>
#include <osgEarth/GeoData>
#include <osgEarth/Map>
#include <osgEarth/MapNode>
#include <osgEarthDrivers/gdal/GDALOptions>
#include <random>

using namespace osgEarth;
using EA = osgGA::GUIEventAdapter;

namespace {

using osgEarth::wgs84::kEquatorialRadius;

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

TEST_F(MovesOverMountains, TheEyeStaysAboveFinerGroundThatComesIn)
{
    nav.showAt(-105.0, 37.4, 0.0, 0.0, -90.0, 4.0 * kEquatorialRadius);
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
    nav.showAt(-105.0, 37.4, 0.0, 0.0, -90.0, 4.0 * kEquatorialRadius);
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
}

namespace {

/// South of 47 N lies a plain at 100 m, north of it a plateau at 400 m; the
/// cliff between them is one sample of 22 m wide.
osg::ref_ptr<Map> mapOfCliff(const std::string& file)
{
    RasterRecipe recipe;
    recipe.width = recipe.height = 200;
    recipe.type = GDT_Int16;
    recipe.place = {7.98, 0.0002, 0.0, 47.02, 0.0, -0.0002};
    recipe.value = [](int, int, int row) { return row < 100 ? 400.0 : 100.0; };
    writeRaster(file, recipe);
    Drivers::GDALOptions options;
    options.url() = file;
    osg::ref_ptr<Map> map = new Map;
    map->addElevationLayer(new ElevationLayer("cliff", options));
    return map;
}

struct Ground
{
    const char* name;
    double longitude, latitude; ///< of the middle
    double reach;               ///< degrees to either side
    double highest;             ///< metres
    double farthest;            ///< natural logarithm of the largest range
};

class WhateverIsDone : public testing::TestWithParam<Ground>
{
protected:
    void expectClear(const char* when)
    {
        EXPECT_GE(nav.eyeAboveGround(), 1.0 - 1e-3) << when;
        EXPECT_TRUE(nav.isSound()) << when;
    }

    ScratchFolder folder;
    NavigatedGlobe nav{std::string(GetParam().name) == "Cliff" ? mapOfCliff(folder.path("cliff.tif"))
                                                               : mapOfMountains()};
};

} // namespace

TEST_P(WhateverIsDone, TheEyeStaysClearAndThePitchWithinItsLimits)
{
    const Ground& ground = GetParam();
    nav.showAt(ground.longitude, ground.latitude, 0.8 * ground.highest, 0.0, -40.0, 2000.0);
    for (unsigned seed = 1; seed <= 6; ++seed) {
        std::mt19937 random(seed);
        const auto between = [&](double least, double most) {
            return least + (most - least) * (static_cast<double>(random()) / 4294967296.0);
        };
        const auto anywhere = [&] {
            return Viewpoint("", ground.longitude + between(-ground.reach, ground.reach),
                             ground.latitude + between(-ground.reach, ground.reach),
                             between(0.0, ground.highest), between(-180.0, 180.0), between(-95.0, 0.0),
                             std::exp(between(0.0, ground.farthest)));
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

INSTANTIATE_TEST_SUITE_P(Grounds, WhateverIsDone,
                         testing::Values(Ground{"Mountains", -105.5, 37.57, 0.1, 4500.0, 12.0},
                                         Ground{"Cliff", 8.0, 47.0, 0.0008, 500.0, 6.0}),
                         [](const auto& row) { return std::string(row.param.name); });

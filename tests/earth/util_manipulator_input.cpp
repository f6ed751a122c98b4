#include "ManipulatorFixture.h"

#include <functional>
#include <osgEarth/Map>
#include <osgEarth/MapNode>

namespace {

constexpr double kNan = std::numeric_limits<double>::quiet_NaN();
constexpr double kInfinity = std::numeric_limits<double>::infinity();

} // namespace

class ManipulatorInput : public ManipulatorFixture
{
protected:
    void SetUp() override { showAt(8, 47, 0, -60, 10e3); }

    void expectSound(const char* when = "")
    {
        const Viewpoint now = manipulator->getViewpoint();
        ASSERT_TRUE(now.isValid()) << when;
        EXPECT_TRUE(isFinite(now.focalPoint()->vec3d())) << when;
        EXPECT_TRUE(std::isfinite(now.getHeading())) << when;
        EXPECT_GE(now.getPitch(), -90.0 - 1e-6) << when;
        EXPECT_LE(now.getPitch(), -10.0 + 1e-6) << when;
        EXPECT_GT(now.getRange(), 0.0) << when;
        EXPECT_LE(now.getRange(), 1e9) << when;
        const osg::Vec3d eye = manipulator->getMatrix().getTrans();
        EXPECT_LT(eye.length(), 2e9) << when;
        EXPECT_GT(eye.length(), kEquatorialRadius - 30e3) << when;
    }

    /** Degrees of longitude and latitude gone since the start, and the factor of the range. */
    osg::Vec3d gone() const
    {
        const Viewpoint now = manipulator->getViewpoint();
        return {now.focalPoint()->x() - 8.0, now.focalPoint()->y() - 47.0, now.getRange() / 10e3};
    }

    void expectAtRest()
    {
        frame();
        const osg::Matrixd rest = manipulator->getMatrix();
        frames(0.2);
        EXPECT_EQ(manipulator->getMatrix(), rest);
    }
};

TEST_F(ManipulatorInput, ATappedKeyMovesALittleHoweverShortTheTapWas)
{
    for (double held : {0.0, 0.01, 0.06}) {
        manipulator->setViewpoint(Viewpoint("start", 8, 47, 0, 0, -60, 10e3));
        key(EA::KEYDOWN, EA::KEY_Right);
        if (held > 0.0)
            frame(held);
        key(EA::KEYUP, EA::KEY_Right);
        frames(0.3);
        // A tenth of a second at 0.9 windows a second, a window being 0.3 of the range.
        const double metres = 0.1 * 0.9 * 0.3 * 10e3;
        EXPECT_NEAR(gone().x() * 111320.0 * std::cos(osg::DegreesToRadians(47.0)), metres, 0.05 * metres)
            << held;
        expectAtRest();
    }
}

TEST_F(ManipulatorInput, KeysHeldTogetherAddUp)
{
    key(EA::KEYDOWN, EA::KEY_Up);
    key(EA::KEYDOWN, EA::KEY_Left);
    key(EA::KEYDOWN, EA::KEY_Page_Up);
    frames(0.3);
    EXPECT_GT(gone().y(), 0.0);
    EXPECT_LT(gone().x(), 0.0);
    EXPECT_LT(gone().z(), 0.9);
    key(EA::KEYUP, EA::KEY_Left);
    key(EA::KEYUP, EA::KEY_Page_Up);
    const osg::Vec3d before = gone();
    frames(2.0);
    EXPECT_GT(gone().y(), before.y()) << "up goes on, though only the last key repeats";
    EXPECT_NEAR(gone().x(), before.x(), 1e-6);
    EXPECT_NEAR(gone().z(), before.z(), 1e-6);
    key(EA::KEYUP, EA::KEY_Up);
    expectAtRest();
    key(EA::KEYDOWN, EA::KEY_Left);
    key(EA::KEYDOWN, EA::KEY_Right);
    const osg::Matrixd rest = manipulator->getMatrix();
    frames(0.3);
    EXPECT_EQ(manipulator->getMatrix(), rest) << "opposite keys cancel out";
}

TEST_F(ManipulatorInput, AKeyThatRepeatsMovesEvenlyAndStopsWithItsRelease)
{
    key(EA::KEYDOWN, EA::KEY_Right);
    frame();
    const double step = gone().x();
    for (int i = 0; i < 100; ++i) {
        const double before = gone().x();
        // Some systems send a release before each repeat.
        key(EA::KEYUP, EA::KEY_Right);
        key(EA::KEYDOWN, EA::KEY_Right);
        frame();
        ASSERT_NEAR(gone().x() - before, step, 0.01 * step) << i;
    }
    key(EA::KEYUP, EA::KEY_Right);
    expectAtRest();
}

TEST_F(ManipulatorInput, AMovementThatBeginsAfterAPauseDoesNotJump)
{
    time += 60.0; // no frames while nothing moves
    key(EA::KEYDOWN, EA::KEY_Right);
    frame();
    EXPECT_GT(gone().x(), 0.0);
    EXPECT_LT(gone().x() * 75e3, 1.1 * 0.025 * 0.9 * 0.3 * 10e3);
    key(EA::KEYUP, EA::KEY_Right);
    frames(0.2);
    time += 60.0;
    scroll(EA::SCROLL_DOWN, 640, 400);
    frame();
    EXPECT_GT(gone().z(), 0.9);
    EXPECT_LT(gone().z(), 1.0);
}

TEST_F(ManipulatorInput, AHeldHomeKeyFliesHomeOnce)
{
    manipulator->setHomeViewpoint(Viewpoint("home", 116.3, 39.9, 0, 0, -90, 4 * kEquatorialRadius), 1.0);
    for (int i = 0; i < 44; ++i) {
        key(EA::KEYDOWN, EA::KEY_KP_Home);
        frame();
    }
    EXPECT_FALSE(manipulator->isSettingViewpoint());
    expectAt(116.3, 39.9, 0, -90, 4 * kEquatorialRadius);
}

TEST_F(ManipulatorInput, AFrameThatTakesLongDoesNotFlingTheCamera)
{
    manipulator->setViewpoint(Viewpoint("goal", 9, 47, 0, 0, -60, 10e3), 4.0);
    frames(1.0);
    const osg::Vec3d before = manipulator->getMatrix().getTrans();
    frame(30.0);
    EXPECT_TRUE(manipulator->isSettingViewpoint());
    EXPECT_LT((manipulator->getMatrix().getTrans() - before).length(), 0.2 * 75e3);
    frames(3.0);
    expectAt(9, 47, 0, -60, 10e3);
    key(EA::KEYDOWN, EA::KEY_Left);
    frame();
    const double there = gone().x();
    frame(0.9);
    EXPECT_LT(there - gone().x(), 0.01);
    frame(-50.0);
    frame(kNan);
    expectSound();
}

TEST_F(ManipulatorInput, AWheelStormEndsSoonAndStaysSane)
{
    for (EA::ScrollingMotion way : {EA::SCROLL_DOWN, EA::SCROLL_UP}) {
        // Ten thousand events in one frame, each at another place.
        const double before = manipulator->getDistance();
        for (int i = 0; i < 10000; ++i)
            scroll(way, 300 + i % 700, 100 + i % 600);
        EXPECT_EQ(manipulator->getDistance(), before) << "the frame zooms, not the event";
        frames(1.0);
        expectSound();
        EXPECT_LT(std::abs(std::log(manipulator->getDistance() / before)), 2.0);
        expectAtRest();
        for (int i = 0; i < 10000; ++i) {
            scroll(way, 300 + i % 700, 100 + i % 600);
            frame();
        }
        expectSound();
        frames(1.0);
        expectAtRest();
    }
}

TEST_F(ManipulatorInput, ASmoothWheelZoomsByPartsOfANotch)
{
    const auto turn = [&](EA::ScrollingMotion motion, float delta, int events) {
        manipulator->setViewpoint(Viewpoint("start", 8, 47, 0, 0, -60, 10e3));
        for (int i = 0; i < events; ++i) {
            osg::ref_ptr<EA> ea = event(EA::SCROLL, 640, 400);
            ea->setScrollingMotionDelta(0.0f, delta);
            ea->setScrollingMotion(motion);
            send(ea);
            frame();
        }
        frames(1.0);
        return std::log(gone().z());
    };
    const double notch = turn(EA::SCROLL_DOWN, 0.0f, 1);
    EXPECT_LT(notch, -0.1);
    EXPECT_NEAR(turn(EA::SCROLL_DOWN, 0.125f, 8), notch, 0.02);
    EXPECT_NEAR(turn(EA::SCROLL_UP, 0.125f, 8), -notch, 0.02);
    EXPECT_NEAR(turn(EA::SCROLL_2D, -0.125f, 8), notch, 0.02);
    EXPECT_NEAR(turn(EA::SCROLL_DOWN, std::numeric_limits<float>::quiet_NaN(), 1), notch, 0.02);
}

TEST_F(ManipulatorInput, TheWheelAimsAnewAfterTheCameraMoved)
{
    scroll(EA::SCROLL_DOWN, 900, 500);
    frames(0.5);
    manipulator->pan(-0.8, 0.4);
    const osg::Vec3d center = manipulator->getViewpoint().focalPoint()->vec3d();
    const osg::Vec3d point = groundAt(900, 500);
    scroll(EA::SCROLL_DOWN, 900, 500);
    frames(0.5);
    EXPECT_NEAR(pixelOf(point).x(), 900, 1.0);
    EXPECT_NEAR(pixelOf(point).y(), 500, 1.0);
    EXPECT_NEAR(manipulator->getViewpoint().focalPoint()->x(), center.x(), 0.02);
}

TEST_F(ManipulatorInput, AnUnsteadyHandAfterADoubleClickDoesNotStopTheFlight)
{
    mouse(EA::PUSH, EA::LEFT_MOUSE_BUTTON, 900, 500);
    mouse(EA::RELEASE, EA::LEFT_MOUSE_BUTTON, 900, 500);
    mouse(EA::DOUBLECLICK, EA::LEFT_MOUSE_BUTTON, 900, 500);
    mouse(EA::DRAG, EA::LEFT_MOUSE_BUTTON, 901, 500);
    mouse(EA::DRAG, EA::LEFT_MOUSE_BUTTON, 902, 501);
    mouse(EA::RELEASE, EA::LEFT_MOUSE_BUTTON, 902, 501);
    frames(0.5);
    EXPECT_TRUE(manipulator->isSettingViewpoint());
    frames(0.7);
    EXPECT_NEAR(gone().z(), 0.4, 1e-6);
    mouse(EA::PUSH, EA::LEFT_MOUSE_BUTTON, 600, 400);
    mouse(EA::DRAG, EA::LEFT_MOUSE_BUTTON, 700, 400);
    EXPECT_EQ(manipulator->lastAction, EarthManipulator::ACTION_PAN) << "the next drag counts again";
}

TEST_F(ManipulatorInput, MouseEventsOutOfOrderOrOutOfTheWindowAreHarmless)
{
    const std::function<void()> oddities[] = {
        [this] { mouse(EA::RELEASE, EA::LEFT_MOUSE_BUTTON, 600, 400); },
        [this] { mouse(EA::DRAG, EA::LEFT_MOUSE_BUTTON, 600, 400); },
        [this] { mouse(EA::DRAG, EA::LEFT_MOUSE_BUTTON, 700, 300); },
        [this] { mouse(EA::DOUBLECLICK, EA::RIGHT_MOUSE_BUTTON, 600, 400); },
        [this] { mouse(EA::PUSH, EA::LEFT_MOUSE_BUTTON, -500, -3000); },
        [this] { mouse(EA::DRAG, EA::LEFT_MOUSE_BUTTON, 1e7, -1e7); },
        [this] { mouse(EA::DRAG, EA::LEFT_MOUSE_BUTTON, -1e30, 1e30); },
        [this] { mouse(EA::DRAG, EA::LEFT_MOUSE_BUTTON, kNan, 100); },
        [this] { mouse(EA::DRAG, EA::LEFT_MOUSE_BUTTON, 100, kInfinity); },
        [this] { scroll(EA::SCROLL_DOWN, kNan, kNan); },
        [this] { scroll(EA::SCROLL_UP, -1e30, 400); },
        [this] { mouse(EA::RELEASE, EA::LEFT_MOUSE_BUTTON, kNan, 0); },
        [this] { mouse(EA::PUSH, EA::LEFT_MOUSE_BUTTON, 640, 400); },
        [this] { mouse(EA::DRAG, EA::LEFT_MOUSE_BUTTON, 640, 1e30); },
        [this] { key(EA::KEYUP, EA::KEY_Left); },
        [this] { key(EA::KEYDOWN, 0); },
        [this] { key(EA::KEYDOWN, -7); },
    };
    for (double range : {5.0, 10e3, 4.0 * kEquatorialRadius}) {
        manipulator->setViewpoint(Viewpoint("start", 8, 47, 0, 0, -60, range));
        for (const auto& oddity : oddities) {
            oddity();
            expectSound();
            frame();
            expectSound();
        }
    }
}

TEST_F(ManipulatorInput, ViewpointsThatAreNoneChangeNothingAndExtremeOnesStayOnEarth)
{
    for (double bad : {kNan, kInfinity, -kInfinity}) {
        const Viewpoint rows[] = {{"", bad, 47, 0, 0, -45, 1e3}, {"", 8, bad, 0, 0, -45, 1e3},
                                  {"", 8, 47, bad, 0, -45, 1e3}, {"", 8, 47, 0, bad, -45, 1e3},
                                  {"", 8, 47, 0, 0, bad, 1e3},   {"", 8, 47, 0, 0, -45, bad}};
        for (const Viewpoint& row : rows) {
            for (double seconds : {0.0, 1.0}) {
                manipulator->setViewpoint(row, seconds);
                frames(0.1);
                expectAt(8, 47, 0, -60, 10e3);
            }
        }
        Viewpoint shifted("", 8, 47, 0, 0, -60, 10e3);
        shifted.positionOffset() = osg::Vec3d(0, bad, 0);
        manipulator->setViewpoint(shifted);
        manipulator->setRotation(osg::Quat(bad, 0, 0, 1));
        manipulator->setByMatrix(osg::Matrixd::translate(bad, 0, 0));
        manipulator->pan(bad, 0.0);
        manipulator->rotate(bad, 0.0);
        manipulator->zoom(0.0, bad);
        manipulator->setDistance(bad);
        manipulator->setHomeViewpoint(Viewpoint("", bad, 0, 0, 0, 0, 0));
        key(EA::KEYDOWN, EA::KEY_Home);
        frames(0.1);
        expectAt(8, 47, 0, -60, 10e3);
    }
    for (double extreme : {0.0, -1.0, -1e300, 1e300, 1e12}) {
        for (double seconds : {0.0, 0.5}) {
            const Viewpoint rows[] = {{"", extreme, 47, 0, 0, -45, 1e3}, {"", 8, extreme, 0, 0, -45, 1e3},
                                      {"", 8, 47, extreme, 0, -45, 1e3}, {"", 8, 47, 0, extreme, -45, 1e3},
                                      {"", 8, 47, 0, 0, extreme, 1e3},   {"", 8, 47, 0, 0, -45, extreme}};
            for (const Viewpoint& row : rows) {
                manipulator->setViewpoint(row, seconds);
                frames(0.6);
                expectSound();
                manipulator->setViewpoint(Viewpoint("", 8, 47, 0, 0, -45, 1e3), seconds);
                frames(0.6);
                expectSound();
            }
        }
    }
    for (double seconds : {kNan, kInfinity, -1.0}) {
        manipulator->setViewpoint(Viewpoint("", 9, 48, 0, 10, -50, 5e3), seconds);
        expectAt(9, 48, 10, -50, 5e3);
    }
}

TEST_F(ManipulatorFixture, AMapWithoutLayersIsAGlobeToMoveOn)
{
    osg::ref_ptr<MapNode> empty = new MapNode(new Map);
    manipulator->setNode(empty);
    for (const osg::Vec2d& place : {osg::Vec2d(8, 47), osg::Vec2d(-180, 90)}) {
        manipulator->setViewpoint(Viewpoint("", place.x(), place.y(), 0, 0, -60, 10e3));
        mouse(EA::PUSH, EA::LEFT_MOUSE_BUTTON, 600, 400);
        const osg::Vec3d point = groundAt(600, 400);
        mouse(EA::DRAG, EA::LEFT_MOUSE_BUTTON, 700, 300);
        EXPECT_NEAR(pixelOf(point).x(), 700, 1.0);
        EXPECT_NEAR(pixelOf(point).y(), 300, 1.0);
        mouse(EA::RELEASE, EA::LEFT_MOUSE_BUTTON, 700, 300);
        scroll(EA::SCROLL_DOWN, 600, 400);
        frames(0.5);
        EXPECT_LT(manipulator->getDistance(), 9e3);
    }
}

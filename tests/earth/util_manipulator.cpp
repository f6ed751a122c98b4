#include "ManipulatorFixture.h"

#include <functional>
#include <osg/Geode>
#include <osg/MatrixTransform>
#include <osg/ShapeDrawable>

namespace {

using EarthManipulatorTest = ManipulatorFixture;

} // namespace

TEST_F(EarthManipulatorTest, WaitsForAMapAndThenGoesWhereItWasSent)
{
    frame();
    mouse(EA::PUSH, EA::LEFT_MOUSE_BUTTON, 100, 100);
    mouse(EA::DRAG, EA::LEFT_MOUSE_BUTTON, 200, 100);
    EXPECT_FALSE(manipulator->getViewpoint().isValid());
    EXPECT_EQ(manipulator->pans, 0);
    EXPECT_FALSE(manipulator->getMatrix().isNaN());

    manipulator->setViewpoint(Viewpoint("early", 116.3, 39.9, 0.0, 0.0, -90.0, 4.0 * kEquatorialRadius));
    EXPECT_FALSE(manipulator->getViewpoint().isValid());
    showGlobe();
    expectAt(116.3, 39.9, 0.0, -90.0, 4.0 * kEquatorialRadius);
}

TEST_F(EarthManipulatorTest, KeepsPitchAndDistanceWithinTheSettings)
{
    showAt(8, 47, 0, -45, 1000);
    EXPECT_EQ(manipulator->getSettings()->getMinPitch(), -90.0);
    EXPECT_EQ(manipulator->getSettings()->getMaxPitch(), -10.0);
    manipulator->rotate(0.0, 3.0);
    expectAt(8, 47, 0, -10, 1000);
    manipulator->rotate(0.0, -9.0);
    expectAt(8, 47, 0, -90, 1000);
    manipulator->getSettings()->setTerrainAvoidanceMinimumDistance(0.1);
    manipulator->setViewpoint(Viewpoint("up", 8, 47, 0, 0, 40, 0.0));
    expectAt(8, 47, 0, -10, manipulator->getSettings()->getMinDistance());
    manipulator->getSettings()->setMinMaxDistance(50.0, 60.0);
    manipulator->setDistance(1e9);
    EXPECT_EQ(manipulator->getDistance(), 60.0);
    manipulator->zoom(0.0, -0.9);
    EXPECT_EQ(manipulator->getDistance(), 50.0);
}

TEST_F(EarthManipulatorTest, ADoubleClickFliesToTheGroundUnderIt)
{
    const struct
    {
        int button;
        int modkeys;
        double factor;
    } rows[] = {{EA::LEFT_MOUSE_BUTTON, 0, 0.4},
                {EA::RIGHT_MOUSE_BUTTON, 0, 2.5},
                {EA::LEFT_MOUSE_BUTTON, EA::MODKEY_LEFT_CTRL, 2.5}};
    for (const auto& row : rows) {
        showAt(-105, 37.4, 25, -50, 20e3);
        const osg::Vec3d point = groundAt(900, 500);
        mouse(EA::DOUBLECLICK, row.button, 900, 500, row.modkeys);
        EXPECT_TRUE(manipulator->isSettingViewpoint());
        frames(1.2);
        EXPECT_FALSE(manipulator->isSettingViewpoint());
        EXPECT_NEAR(pixelOf(point).x(), kWidth / 2, 0.5);
        EXPECT_NEAR(pixelOf(point).y(), kHeight / 2, 0.5);
        EXPECT_NEAR(manipulator->getDistance(), row.factor * 20e3, 1.0);
    }

    manipulator->setViewpoint(Viewpoint("space", 0, 0, 0, 0, -90, 4 * kEquatorialRadius));
    mouse(EA::DOUBLECLICK, EA::LEFT_MOUSE_BUTTON, 5, 5);
    EXPECT_FALSE(manipulator->isSettingViewpoint()) << "there is nothing to go to";
}

TEST_F(EarthManipulatorTest, AFlightTakesItsTimeAndEndsAtItsGoal)
{
    showAt(116.3, 39.9, 0, -90, 25.5e6);
    manipulator->setViewpoint(Viewpoint("goal", -105, 37.4, 0, 40, -30, 500), 2.0);
    frame();
    expectAt(116.3, 39.9, 0, -90, 25.5e6);
    frames(1.9);
    EXPECT_TRUE(manipulator->isSettingViewpoint());
    frames(0.2);
    EXPECT_FALSE(manipulator->isSettingViewpoint());
    expectAt(-105, 37.4, 40, -30, 500);
}

TEST_F(EarthManipulatorTest, TheUserEndsAFlight)
{
    const std::function<void()> takeovers[] = {
        [this] { mouse(EA::PUSH, EA::LEFT_MOUSE_BUTTON, 600, 400); },
        [this] { scroll(EA::SCROLL_DOWN, 600, 400); },
        [this] { key(EA::KEYDOWN, EA::KEY_Left); },
        [this] { manipulator->clearViewpoint(); },
    };
    for (const auto& takeOver : takeovers) {
        showAt(116.3, 39.9, 0, -90, 1e6);
        manipulator->setViewpoint(Viewpoint("goal", -105, 37.4, 0, 0, -90, 500), 5.0);
        frames(2.0);
        const double range = manipulator->getDistance();
        takeOver();
        EXPECT_FALSE(manipulator->isSettingViewpoint());
        EXPECT_NEAR(manipulator->getDistance(), range, 1e-6 * range) << "stays where it was stopped";
    }
}

TEST_F(EarthManipulatorTest, KeysMoveForAsLongAsTheyAreHeld)
{
    const struct
    {
        int code;
        std::function<double(const Viewpoint&)> rises;
    } rows[] = {{EA::KEY_Right, [](const Viewpoint& v) { return v.focalPoint()->x(); }},
                {EA::KEY_Up, [](const Viewpoint& v) { return v.focalPoint()->y(); }},
                {EA::KEY_Left, [](const Viewpoint& v) { return -v.focalPoint()->x(); }},
                {EA::KEY_Down, [](const Viewpoint& v) { return -v.focalPoint()->y(); }},
                {EA::KEY_Plus, [](const Viewpoint& v) { return -v.getRange(); }},
                {EA::KEY_Page_Up, [](const Viewpoint& v) { return -v.getRange(); }},
                {EA::KEY_Minus, [](const Viewpoint& v) { return v.getRange(); }},
                {EA::KEY_Page_Down, [](const Viewpoint& v) { return v.getRange(); }},
                {EA::KEY_KP_Right, [](const Viewpoint& v) { return v.focalPoint()->x(); }},
                {EA::KEY_KP_Down, [](const Viewpoint& v) { return -v.focalPoint()->y(); }},
                {EA::KEY_KP_Add, [](const Viewpoint& v) { return -v.getRange(); }},
                {EA::KEY_KP_Page_Down, [](const Viewpoint& v) { return v.getRange(); }}};
    for (const auto& row : rows) {
        showAt(8, 47, 0, -60, 10e3);
        const double before = row.rises(manipulator->getViewpoint());
        key(EA::KEYDOWN, row.code);
        frames(0.4);
        EXPECT_GT(row.rises(manipulator->getViewpoint()), before) << row.code;
        key(EA::KEYUP, row.code);
        const osg::Matrixd after = manipulator->getMatrix();
        frames(0.2);
        EXPECT_EQ(manipulator->getMatrix(), after) << row.code;
    }
    key(EA::KEYDOWN, EA::KEY_Left);
    frames(3.0);
    const osg::Matrixd lost = manipulator->getMatrix();
    frames(0.2);
    EXPECT_EQ(manipulator->getMatrix(), lost) << "a release that never came";
}

TEST_F(EarthManipulatorTest, ButtonsMapToMovementsThatASubclassCanReplace)
{
    EXPECT_EQ(static_cast<int>(EarthManipulator::ACTION_ROTATE), 8);
    const struct
    {
        int button, modkeys;
        EarthManipulator::ActionType action;
    } rows[] = {
        {EA::LEFT_MOUSE_BUTTON, 0, EarthManipulator::ACTION_PAN},
        {EA::MIDDLE_MOUSE_BUTTON, 0, EarthManipulator::ACTION_ROTATE},
        {EA::LEFT_MOUSE_BUTTON | EA::RIGHT_MOUSE_BUTTON, 0, EarthManipulator::ACTION_ROTATE},
        {EA::LEFT_MOUSE_BUTTON, EA::MODKEY_LEFT_CTRL, EarthManipulator::ACTION_ROTATE},
        {EA::LEFT_MOUSE_BUTTON, EA::MODKEY_NUM_LOCK, EarthManipulator::ACTION_PAN},
        {EA::RIGHT_MOUSE_BUTTON, 0, EarthManipulator::ACTION_ZOOM},
    };
    for (const auto& row : rows) {
        showAt(8, 47, 0, -60, 10e3);
        manipulator->lastAction = EarthManipulator::ACTION_NULL;
        mouse(EA::PUSH, row.button, 600, 400);
        mouse(EA::DRAG, row.button, 640, 420, row.modkeys);
        EXPECT_EQ(manipulator->lastAction, row.action);
    }

    showAt(8, 47, 0, -60, 10e3);
    manipulator->replacePan = true;
    manipulator->pans = 0;
    mouse(EA::PUSH, EA::LEFT_MOUSE_BUTTON, 600, 400);
    mouse(EA::DRAG, EA::LEFT_MOUSE_BUTTON, 700, 420);
    EXPECT_EQ(manipulator->pans, 1);
    expectAt(8, 47, 0, -60, 10e3);
}

TEST_F(EarthManipulatorTest, FollowsANodeUntilItIsPannedAway)
{
    showGlobe();
    osg::ref_ptr<osg::MatrixTransform> aircraft = new osg::MatrixTransform;
    aircraft->addChild(new osg::ShapeDrawable(new osg::Sphere(osg::Vec3(), 1.0f)));
    root->addChild(aircraft);
    const auto fly = [&](double longitude) {
        osg::Vec3d world;
        GeoPoint(SpatialReference::get("wgs84"), longitude, 47.0, 500.0).toWorld(world);
        aircraft->setMatrix(osg::Matrixd::translate(world));
    };
    fly(8.0);
    Viewpoint follow;
    follow.setNode(aircraft);
    follow.setRange(300.0);
    follow.setPitch(-30.0);
    manipulator->setViewpoint(follow);
    fly(8.5);
    frame();
    EXPECT_TRUE(manipulator->isTethering());
    EXPECT_NEAR(manipulator->centerMap().x(), 8.5, 1e-6);
    EXPECT_NEAR(manipulator->getDistance(), 300.0, 1e-6);
    manipulator->rotate(0.5, 0.0);
    manipulator->zoom(0.0, 0.5);
    EXPECT_TRUE(manipulator->isTethering());
    manipulator->pan(0.1, 0.0);
    EXPECT_FALSE(manipulator->isTethering());
    fly(9.0);
    frame();
    EXPECT_LT(manipulator->centerMap().x(), 8.6);
}

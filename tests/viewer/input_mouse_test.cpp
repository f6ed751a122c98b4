// The mouse on the widget, as Qt delivers it: what the host hears, and where
// the camera goes. Over the mountains, 20 km away.
#include "ProtocolFixture.h"

#include <QWheelEvent>

class MouseInput : public ProtocolFixture
{
protected:
    void SetUp() override
    {
        ProtocolFixture::SetUp();
        manipulator->setViewpoint(osgEarth::Viewpoint("", -105.0, 37.4, 3027.0, 200.0, -40.0, 20000.0));
        ASSERT_TRUE(WaitForPicture());
        QTest::mouseMove(viewer->viewport(), {5, 590});
        Forget();
    }

    void Forget()
    {
        QTest::qWait(0);
        Heard();
    }

    /// Waits until a signal has come; those of the mouse's own moves do not count.
    bool Hears(const char* name)
    {
        return waitFor([this, name] {
            all += Heard();
            return all.contains(name);
        });
    }

    static osg::Vec2f PlaceUnder(const osg::Vec3d& world) { return WindowOf(world); }

    QStringList all;
};

TEST_F(MouseInput, ReportsTheClickedPlace)
{
    const QPoint place(330, 410);
    QTest::mouseClick(viewer->viewport(), Qt::LeftButton, {}, place);
    ASSERT_TRUE(Hears("click"));
    EXPECT_NEAR(PlaceUnder(worldCoordPos).x(), place.x(), 1.0);
    EXPECT_NEAR(PlaceUnder(worldCoordPos).y(), place.y(), 1.0);
    EXPECT_NEAR(lngLatPos.x(), -105.0, 0.2);
    EXPECT_GT(lngLatPos.z(), 1000.0);

    QTest::mouseClick(viewer->viewport(), Qt::RightButton, {}, place);
    EXPECT_TRUE(Hears("right click"));
}

TEST_F(MouseInput, KeepsTheGrabbedPlaceUnderTheCursor)
{
    const QPoint from(300, 350);
    const QPoint to(520, 420);
    QTest::mousePress(viewer->viewport(), Qt::LeftButton, {}, from);
    ASSERT_TRUE(Hears("press"));
    const osg::Vec3d grabbed = worldCoordPos;
    const double heading = manipulator->getViewpoint().getHeading();
    for (int i = 1; i <= 10; ++i) {
        all.clear();
        QTest::mouseMove(viewer->viewport(), from + (to - from) * i / 10);
        ASSERT_TRUE(Hears("drag"));
    }
    ASSERT_TRUE(waitFor([&] { return (PlaceUnder(grabbed) - osg::Vec2f(520, 420)).length() < 1.5f; }))
        << PlaceUnder(grabbed).x() << ", " << PlaceUnder(grabbed).y();
    QTest::mouseRelease(viewer->viewport(), Qt::LeftButton, {}, to);
    ASSERT_TRUE(Hears("release"));
    EXPECT_FALSE(all.contains("click"));
    EXPECT_NEAR(manipulator->getViewpoint().getHeading(), heading, 0.1);
    ASSERT_TRUE(WaitForPicture());
    EXPECT_LT((PlaceUnder(grabbed) - osg::Vec2f(520, 420)).length(), 1.5f) << "it stays where it was let go";
}

TEST_F(MouseInput, ZoomsToThePlaceUnderTheCursor)
{
    const QPoint cursor(560, 380);
    QTest::mouseMove(viewer->viewport(), cursor);
    ASSERT_TRUE(waitFor([&] {
        all += Heard();
        return all.contains("move") && (PlaceUnder(worldCoordPos) - osg::Vec2f(560, 380)).length() < 1.0f;
    }));
    const osg::Vec3d aim = worldCoordPos;
    const double range = manipulator->getDistance();
    for (int i = 0; i < 4; ++i) {
        QWheelEvent notch(cursor, viewer->viewport()->mapToGlobal(cursor), {}, {0, 120}, Qt::NoButton,
                          Qt::NoModifier, Qt::NoScrollPhase, false);
        QCoreApplication::sendEvent(viewer->viewport(), &notch);
    }
    ASSERT_TRUE(waitFor([&] { return manipulator->getDistance() < 0.6 * range; }));
    ASSERT_TRUE(WaitForPicture());
    EXPECT_LT((PlaceUnder(aim) - osg::Vec2f(560, 380)).length(), 3.0f);
}

TEST_F(MouseInput, FliesToADoubleClickedPlaceAndCanBeStopped)
{
    const QPoint place(250, 400);
    QTest::mouseDClick(viewer->viewport(), Qt::LeftButton, {}, place);
    ASSERT_TRUE(Hears("double click"));
    const osg::Vec3d aim = worldCoordPos;
    ASSERT_TRUE(waitFor([this] { return manipulator->isSettingViewpoint(); }));
    ASSERT_TRUE(waitFor([this] { return !manipulator->isSettingViewpoint(); }));
    ASSERT_TRUE(WaitForPicture());
    EXPECT_LT((PlaceUnder(aim) - osg::Vec2f(399.5f, 299.5f)).length(), 3.0f);

    manipulator->setViewpoint(Straight(20.0, 10.0, 1.5e7), 30.0);
    ASSERT_TRUE(waitFor([this] { return manipulator->getDistance() > 30000.0; }));
    QTest::mousePress(viewer->viewport(), Qt::LeftButton, {}, place);
    ASSERT_TRUE(waitFor([this] { return !manipulator->isSettingViewpoint(); }));
    QTest::mouseRelease(viewer->viewport(), Qt::LeftButton, {}, place);
    EXPECT_LT(manipulator->getDistance(), 1.4e7);
}

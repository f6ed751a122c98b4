// The lens over the map: how it is opened and closed, what it shows, and that nothing goes through it.
#include "ProtocolFixture.h"

#include "interaction/magnifier/AxMagnifier.h"
#include "interaction/magnifier/AxMagnifierRules.h"
#include "viewer/capture/AxPictureCapture.h"

#include <osg/CoordinateSystemNode>
#include <osg/observer_ptr>

#include <QSignalSpy>
#include <QUndoStack>
#include <QWheelEvent>

#include <cmath>
#include <functional>

namespace {
constexpr double lng = 20.0;
constexpr double lat = 10.0;

/// A square of one colour on the ground, in the middle of the picture.
class Sight : public ProtocolFixture
{
protected:
    static constexpr float halfSide = 200000.0f;

    void SetUp() override
    {
        ProtocolFixture::SetUp();
        osg::ref_ptr<osg::Geometry> square = new osg::Geometry;
        const std::vector<osg::Vec3> corners{{-halfSide, -halfSide, 0.0f},
                                             {halfSide, -halfSide, 0.0f},
                                             {halfSide, halfSide, 0.0f},
                                             {-halfSide, halfSide, 0.0f}};
        square->setVertexArray(new osg::Vec3Array(4, corners.data()));
        osg::ref_ptr<osg::Vec4Array> color = new osg::Vec4Array;
        color->push_back({1.0f, 0.0f, 1.0f, 1.0f});
        square->setColorArray(color, osg::Array::BIND_OVERALL);
        square->addPrimitiveSet(new osg::DrawArrays(GL_TRIANGLE_FAN, 0, 4));
        square->getOrCreateStateSet()->setMode(GL_LIGHTING, osg::StateAttribute::OFF);
        square->getOrCreateStateSet()->setMode(GL_DEPTH_TEST, osg::StateAttribute::OFF);
        square->getOrCreateStateSet()->setRenderBinDetails(1000, "RenderBin");
        osg::Matrixd toWorld;
        osg::EllipsoidModel().computeLocalToWorldTransformFromLatLongHeight(
            osg::DegreesToRadians(lat), osg::DegreesToRadians(lng), 0.0, toWorld);
        place = new osg::MatrixTransform(toWorld);
        place->addChild(square);
        viewer->GetDrawNodeGroup()->addChild(place);
        viewer->SetSkyNodeVisible(true);
        ASSERT_TRUE(WaitForPicture());
    }
    void TearDown() override
    {
        viewer->GetMagnifier()->Close();
        viewer->GetDrawNodeGroup()->removeChild(place);
        ProtocolFixture::TearDown();
    }
    static bool IsOfSquare(QRgb color)
    {
        return qRed(color) > 220 && qGreen(color) < 40 && qBlue(color) > 220;
    }
    /// From its first to behind its last pixel along a row, or a column when `isDown`.
    static QPoint EdgesOfSquare(const QImage& picture, int line, int from, int to, bool isDown = false)
    {
        QPoint edges(-1, -1);
        for (int i = from; i < to; ++i)
            if (IsOfSquare(isDown ? picture.pixel(line, i) : picture.pixel(i, line)))
                edges = {edges.x() < 0 ? i : edges.x(), i + 1};
        return edges;
    }
    static int AcrossSquare(const QImage& picture, int row, int from, int to)
    {
        int count = 0;
        for (int x = qMax(0, from); x < qMin(picture.width(), to); ++x)
            count += IsOfSquare(picture.pixel(x, row));
        return count;
    }
    static void Wheel(const QPoint& at, int eighths)
    {
        QWheelEvent turn(at, viewer->viewport()->mapToGlobal(at), {}, {0, eighths}, Qt::NoButton,
                         Qt::NoModifier, Qt::NoScrollPhase, false);
        QCoreApplication::sendEvent(viewer->viewport(), &turn);
    }
    static void Move(const QPoint& to, Qt::MouseButtons held)
    {
        QMouseEvent event(QEvent::MouseMove, to, Qt::NoButton, held, {});
        QCoreApplication::sendEvent(viewer->viewport(), &event);
    }

    osg::ref_ptr<osg::MatrixTransform> place;
};
} // namespace

TEST_F(Sight, AMagnifierShowsItsRectangleLargerAndNothingGoesThroughIt)
{
    AxMagnifier& lens = *viewer->GetMagnifier();
    const QImage plain = viewer->GetCurrViewerImg();
    const int across = AcrossSquare(plain, 300, 0, 800);
    ASSERT_GT(across, 10);
    const QPoint wide = EdgesOfSquare(plain, 300, 0, 800);
    const QPoint high = EdgesOfSquare(plain, 400, 0, 600, true);
    const QPoint at(397, 298); // beside the square's middle, so that what is mirrored is told, too

    viewer->SetToolType(ToolMagnifier);
    QSignalSpy ended(viewer, &CAxEarthViewer::signalHandlePickEnded);
    const int blocks = CAxBlockManager::instance().GetBlockList().size();
    QTest::mousePress(viewer->viewport(), Qt::LeftButton, {}, at - QPoint(30, 20));
    ASSERT_TRUE(waitFor([] { return viewer->GetCurHandleAdapter() != nullptr; }));
    QTest::mouseMove(viewer->viewport(), {400, 310});
    QTest::mouseMove(viewer->viewport(), at + QPoint(30, 20));
    QTest::mouseRelease(viewer->viewport(), Qt::LeftButton, {}, at + QPoint(30, 20));
    ASSERT_TRUE(waitFor([&] { return ended.count() == 1; }));
    ASSERT_TRUE(lens.IsOpen());
    EXPECT_EQ(viewer->GetCurHandleAdapter(), nullptr);
    EXPECT_EQ(CAxBlockManager::instance().GetBlockList().size(), blocks);
    EXPECT_FALSE(viewer->GetUndoStack()->canUndo());
    const QRectF frame = lens.Frame();
    EXPECT_LE(frame.width() * frame.height(), 0.13 * 800 * 600);
    EXPECT_GE(lens.Factor(), 2.0);
    viewer->SetToolType(ToolNavigate);

    // The middle of the lens is what the map shows there, and everything around it is as much larger.
    const auto widthInLens = [&] {
        const QImage seen = viewer->GetCurrViewerImg();
        const QPoint middle = lens.Frame().center().toPoint();
        EXPECT_TRUE(IsOfSquare(seen.pixel(middle)));
        EXPECT_NEAR(AcrossSquare(seen, 300, 360, 440), across, 8) << "the map itself";
        return AcrossSquare(seen, middle.y(), qRound(frame.left()), qRound(frame.right()));
    };
    ASSERT_TRUE(WaitForPicture());
    EXPECT_NEAR(widthInLens(), lens.Factor() * across, lens.Factor() + 2.0);

    const QImage seen = viewer->GetCurrViewerImg();
    const QPoint centre = lens.Frame().center().toPoint();
    const QRect inLens = lens.Frame().toRect();
    const QPoint wideInLens = EdgesOfSquare(seen, centre.y(), inLens.left(), inLens.right());
    const QPoint highInLens = EdgesOfSquare(seen, centre.x(), inLens.top(), inLens.bottom(), true);
    const double off = lens.Factor() + 1.0; // a pixel of the map
    EXPECT_NEAR(wideInLens.x(), centre.x() + lens.Factor() * (wide.x() - at.x()), off);
    EXPECT_NEAR(wideInLens.y(), centre.x() + lens.Factor() * (wide.y() - at.x()), off);
    EXPECT_NEAR(highInLens.x(), centre.y() + lens.Factor() * (high.x() - at.y()), off);
    EXPECT_NEAR(highInLens.y(), centre.y() + lens.Factor() * (high.y() - at.y()), off);

    // Over the lens the wheel magnifies, and neither it nor a drag moves the map.
    const osg::Matrixd view = viewer->getOSGViewer()->getCamera()->getViewMatrix();
    const double before = lens.Factor();
    Wheel(frame.center().toPoint(), 240);
    EXPECT_NEAR(lens.Factor(), before * 1.5625, 1e-9);
    ASSERT_TRUE(
        waitFor([&] { return std::abs(widthInLens() - lens.Factor() * across) < lens.Factor() + 2.0; }));
    QTest::mousePress(viewer->viewport(), Qt::LeftButton, {}, frame.center().toPoint());
    Move(frame.center().toPoint() + QPoint(50, -30), Qt::LeftButton);
    QTest::mouseRelease(viewer->viewport(), Qt::LeftButton, {}, frame.center().toPoint() + QPoint(50, -30));
    EXPECT_EQ(lens.Frame().topLeft(), frame.topLeft() + QPointF(50, -30));
    EXPECT_EQ(viewer->getOSGViewer()->getCamera()->getViewMatrix(), view);

    // It stays on its place while the map moves, and shows nothing once that is on the other side.
    manipulator->setViewpoint(Straight(lng + 8.0, lat, 1.5e7), 0.0);
    ASSERT_TRUE(WaitForPicture());
    EXPECT_TRUE(IsOfSquare(viewer->GetCurrViewerImg().pixel(lens.Frame().center().toPoint())));
    manipulator->setViewpoint(Straight(lng + 180.0, lat, 1.5e7), 0.0);
    ASSERT_TRUE(WaitForPicture());
    EXPECT_FALSE(lens.Part());
}

TEST_F(Sight, AMagnifierIsClosedByItsCrossByEscapeAndGivenUpInTheMiddle)
{
    AxMagnifier& lens = *viewer->GetMagnifier();
    const auto drag = [](bool isLetGo) {
        viewer->SetToolType(ToolMagnifier);
        QTest::mousePress(viewer->viewport(), Qt::LeftButton, {}, {370, 280});
        ASSERT_TRUE(waitFor([] { return viewer->GetCurHandleAdapter() != nullptr; }));
        QTest::mouseMove(viewer->viewport(), {430, 320});
        if (isLetGo)
            QTest::mouseRelease(viewer->viewport(), Qt::LeftButton, {}, {430, 320});
    };
    const auto escape = [] { QTest::keyClick(viewer, Qt::Key_Escape); };
    const auto cross = [&lens] {
        QTest::mouseClick(viewer->viewport(), Qt::LeftButton, {},
                          lens.Frame().topRight().toPoint() + QPoint(-8, 8));
    };
    for (const std::function<void()>& end : {std::function<void()>(escape), std::function<void()>(cross)}) {
        drag(true);
        ASSERT_TRUE(waitFor([&] { return lens.IsOpen(); }));
        end();
        EXPECT_TRUE(waitFor([&] { return !lens.IsOpen(); }));
    }
    drag(false);
    escape();
    QTest::mouseRelease(viewer->viewport(), Qt::LeftButton, {}, {430, 320});
    ASSERT_TRUE(waitFor([] { return viewer->GetCurHandleAdapter() == nullptr; }));
    EXPECT_FALSE(lens.IsOpen());
    // Letting go of the tool, as of Shift, ends the rectangle with what is drawn.
    drag(false);
    ASSERT_TRUE(waitFor([] { return viewer->GetCurHandleAdapter() != nullptr; }));
    viewer->SetToolType(ToolNavigate);
    EXPECT_TRUE(lens.IsOpen());
    QTest::mouseRelease(viewer->viewport(), Qt::LeftButton, {}, {430, 320});
}

TEST_F(Sight, AMagnifierTakesAnEighthOfASmallerMapIsLetGoOfAndKeepsNothingOfTheScene)
{
    AxMagnifier& lens = *viewer->GetMagnifier();
    ASSERT_TRUE(lens.Look({-0.5, -0.4}, {0.5, 0.4}));
    const QRectF large = lens.Frame();
    viewer->resize(300, 200);
    ASSERT_TRUE(waitFor([] { return viewer->viewport()->width() == 300; }));
    EXPECT_LE(lens.Frame().width() * lens.Frame().height(), 0.125 * 300 * 200);
    EXPECT_TRUE(QRectF(0, 0, 300, 200).contains(lens.Frame()));
    viewer->resize(800, 600);
    ASSERT_TRUE(waitFor([] { return viewer->viewport()->width() == 800; }) && WaitForPicture());
    EXPECT_EQ(lens.Frame(), large);

    // The release goes to another window.
    const QPoint middle = large.center().toPoint();
    QTest::mousePress(viewer->viewport(), Qt::LeftButton, {}, middle);
    Move(middle + QPoint(40, -40), Qt::NoButton);
    EXPECT_EQ(lens.Frame(), large);
    QTest::mouseRelease(viewer->viewport(), Qt::LeftButton, {}, middle);

    const osg::observer_ptr<osg::StateSet> shown(place->getChild(0)->getStateSet());
    ASSERT_TRUE(lens.Look({-0.1, -0.1}, {0.1, 0.1}));
    ASSERT_TRUE(IsOfSquare(viewer->GetCurrViewerImg().pixel(lens.Frame().center().toPoint())));
    lens.Close();
    viewer->GetDrawNodeGroup()->removeChild(place);
    place = nullptr;
    EXPECT_TRUE(waitFor([&] {
        viewer->RequestRedraw();
        return !shown.valid();
    }));
}

TEST(Magnifier, ALensHasRoomOnEveryMapAndStandsBesideWhatItShows)
{
    using namespace AxMagnifierRules;
    for (const QSizeF map : {QSizeF(1280, 800), QSizeF(1024, 500), QSizeF(90, 60)})
        for (const QSizeF dragged : {QSizeF(0, 0), QSizeF(3, 200), QSizeF(30, 20), QSizeF(900, 700)}) {
            const Lens lens = LensFor(dragged, map);
            EXPECT_TRUE(lens.factor >= 2.0 && lens.factor <= mostFactor);
            EXPECT_TRUE(lens.size.width() <= 0.35 * map.width() && lens.size.height() <= 0.37 * map.height());
            for (const QPointF corner : {QPointF(0, 0), QPointF(0, 0.7 * map.height())}) {
                const QRectF shown(corner, QSizeF(0.2 * map.width(), 0.2 * map.height()));
                const QRectF frame(FreeCorner(lens.size, shown, map), lens.size);
                EXPECT_TRUE(QRectF(QPointF(), map).contains(frame));
                EXPECT_TRUE(map.width() < 100 || !frame.intersects(shown));
            }
        }
}

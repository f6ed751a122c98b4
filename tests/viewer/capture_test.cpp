// Pictures of the map in any size.
#include "ViewerFixture.h"

#include "interaction/magnifier/AxMagnifier.h"
#include "scene/base/AxGlobePoint.h"
#include "scene/shape/AxLabelInside.h"
#include "viewer/capture/AxPictureCapture.h"
#include "viewer/capture/WindowCaptureCallback.h"

#include <osg/Geometry>
#include <osg/LineWidth>
#include <osg/MatrixTransform>
#include <osgEarth/GeoData>
#include <osgEarth/MapNode>
#include <osgEarthAnnotation/LabelNode>
#include <osgEarthSymbology/TextSymbol>

#include <QSignalSpy>
#include <QWheelEvent>

#include <cmath>
#include <map>

namespace {
class Capture : public ViewerFixture
{
protected:
    void SetUp() override
    {
        home = viewer->getManipulator()->getViewpoint();
        viewer->getManipulator()->setViewpoint(
            osgEarth::Viewpoint("peaks", -105.0, 37.4, 3027.0, 200.0, -35.0, 20000.0), 0.0);
        ASSERT_TRUE(WaitForPicture());
        capture = viewer->GetPictureCapture();
    }
    void TearDown() override { viewer->getManipulator()->setViewpoint(home, 0.0); }

    std::map<int, QImage> Take(std::vector<AxShot> shots)
    {
        std::map<int, QImage> taken;
        std::vector<QSize> sizes;
        for (const AxShot& shot : shots)
            sizes.push_back(shot.size);
        QSignalSpy finished(capture, &AxPictureCapture::finished);
        auto taker = std::make_unique<AxImageTaker>(sizes, [&taken](int picture, QImage&& image) {
            taken[picture] = std::move(image);
            return QString();
        });
        QString why;
        EXPECT_TRUE(capture->Begin(std::move(shots), std::move(taker), &why)) << why.toStdString();
        EXPECT_TRUE(waitFor([&] { return finished.count() == 1; }));
        EXPECT_EQ(finished.value(0).value(0).toString(), QString());
        return taken;
    }
    static double Differing(const QImage& a, const QImage& b)
    {
        if (a.size() != b.size() || a.isNull())
            return 1.0;
        int count = 0;
        for (int y = 0; y < a.height(); ++y)
            for (int x = 0; x < a.width(); ++x)
                count += qAbs(qGray(a.pixel(x, y)) - qGray(b.pixel(x, y))) > 12;
        return count / (1.0 * a.width() * a.height());
    }

    osgEarth::Viewpoint home;
    AxPictureCapture* capture = nullptr;
};
} // namespace

TEST_F(Capture, PartsMeetWithoutASeamAndTheWindowsPictureIsTheSame)
{
    const osg::Matrixd view = viewer->getOSGViewer()->getCamera()->getViewMatrix();
    const AxShot whole = capture->AsSeen({2600, 700});
    const QRect overSeam(1900, 100, 400, 400);
    const AxShot alone{whole.view, AxShots::ProjectionOf(whole, overSeam), overSeam.size()};
    auto taken = Take({whole, alone, capture->AsSeen({800, 600})});
    ASSERT_EQ(taken[0].size(), whole.size);
    EXPECT_LT(Differing(taken[0].copy(overSeam), taken[1]), 0.004);
    EXPECT_FALSE(capture->IsDetailMissing());
    // Beside what Qt paints over the map.
    const QRect beside(0, 0, 600, 500);
    EXPECT_TRUE(WaitForPicture());
    EXPECT_LT(Differing(viewer->GetCurrViewerImg().copy(beside), taken[2].copy(beside)), 0.01);
    EXPECT_EQ(viewer->getOSGViewer()->getCamera()->getViewMatrix(), view);
}

TEST_F(Capture, TextsAndLinesAreAsLargeAsInTheWindowOrAsManyPixels)
{
    // Across the border of two parts of the large picture.
    const osg::Camera& camera = *viewer->getOSGViewer()->getCamera();
    const osg::Matrixd toWorld = osg::Matrixd::inverse(camera.getViewMatrix() * camera.getProjectionMatrix());
    const auto at = [&](double x, double y) {
        osg::Vec3d ray = osg::Vec3d(x, y, 0.5) * toWorld - osg::Vec3d() * camera.getInverseViewMatrix();
        ray.normalize();
        return osg::Vec3d() * camera.getInverseViewMatrix() + ray * 3000.0;
    };
    const double border = 2.0 * 2048.0 / 2400.0 - 1.0;
    const osg::Vec3d middle = at(border, 0.2);
    osg::ref_ptr<osg::Geometry> line = new osg::Geometry;
    const std::vector<osg::Vec3> ends{{}, osg::Vec3(at(border, -0.6) - middle)};
    const osg::Vec4 color(1.0f, 0.0f, 1.0f, 1.0f);
    line->setVertexArray(new osg::Vec3Array(2, ends.data()));
    line->setColorArray(new osg::Vec4Array(1, &color), osg::Array::BIND_OVERALL);
    line->addPrimitiveSet(new osg::DrawArrays(GL_LINES, 0, 2));
    line->getOrCreateStateSet()->setAttributeAndModes(new osg::LineWidth(4.0f));
    line->getOrCreateStateSet()->setMode(GL_LIGHTING, osg::StateAttribute::OFF);
    osg::ref_ptr<osg::MatrixTransform> place = new osg::MatrixTransform(osg::Matrixd::translate(middle));
    place->addChild(line);
    osgEarth::Symbology::Style style;
    auto* text = style.getOrCreate<osgEarth::Symbology::TextSymbol>();
    text->alignment() = osgEarth::Symbology::TextSymbol::ALIGN_CENTER_CENTER;
    text->size() = 24.0;
    text->fill()->color() = osgEarth::Symbology::Color(1.0f, 0.0f, 1.0f, 1.0f);
    osgEarth::GeoPoint geo;
    geo.fromWorld(viewer->getSRS()->getGeographicSRS(), middle);
    osg::ref_ptr<osgEarth::Annotation::LabelNode> label =
        new osgEarth::Annotation::LabelNode(viewer->getMapNode(), geo, "HHHHHHHH", style);
    AxKeepLabelInside(*label); // the whole picture, not a part
    osg::ref_ptr<osg::Group> both = new osg::Group;
    const auto magenta = [this, &both](const osg::ref_ptr<osg::Node>& shown, const AxShot& shot) {
        both->removeChildren(0, both->getNumChildren());
        both->addChild(shown);
        const QImage picture = Take({shot})[0];
        int count = 0;
        for (int y = 0; y < picture.height(); ++y)
            for (int x = 0; x < picture.width(); ++x) {
                const QRgb seen = picture.pixel(x, y);
                count += qRed(seen) > 180 && qGreen(seen) < 80 && qBlue(seen) > 180;
            }
        return static_cast<double>(count);
    };
    viewer->GetDrawNodeGroup()->addChild(both);
    const struct
    {
        osg::ref_ptr<osg::Node> shown;
        double asManyPixels; // times those in the window
    } rows[] = {{place, 3.0}, {label, 1.0}};
    for (const auto& row : rows) {
        const double inWindow = magenta(row.shown, capture->AsSeen({800, 600}));
        ASSERT_GT(inWindow, 200.0);
        EXPECT_NEAR(magenta(row.shown, capture->AsSeen({2400, 1800}, true)) / inWindow, 9.0, 1.4);
        EXPECT_NEAR(magenta(row.shown, capture->AsSeen({2400, 1800})) / inWindow, row.asManyPixels,
                    0.1 * row.asManyPixels);
    }
    viewer->GetDrawNodeGroup()->removeChild(both);
    EXPECT_EQ(dynamic_cast<osg::LineWidth*>(line->getStateSet()->getAttribute(osg::StateAttribute::LINEWIDTH))
                  ->getWidth(),
              4.0f);
}

TEST_F(Capture, IsRefusedCancelledAndEndedByItsTaker)
{
    struct Refuser : AxPictureTaker
    {
        QString Take(int, const QPoint&, const QImage&) override { return QStringLiteral("no room"); }
        QString Finish(int) override { return {}; }
    };
    const auto anybody = [] { return std::make_unique<Refuser>(); };
    AxShot broken = capture->AsSeen({100, 100});
    broken.view(0, 0) = std::nan("");
    const std::vector<std::vector<AxShot>> wrong{
        {}, {capture->AsSeen({0, 10})}, {capture->AsSeen({20000, 10})}, {broken}};
    for (const std::vector<AxShot>& shots : wrong) {
        QString why;
        EXPECT_FALSE(capture->Begin(shots, anybody(), &why));
        EXPECT_FALSE(why.isEmpty());
    }
    QSignalSpy finished(capture, &AxPictureCapture::finished);
    QSignalSpy cancelled(capture, &AxPictureCapture::cancelled);
    ASSERT_TRUE(capture->Begin({capture->AsSeen({300, 200})}, anybody()));
    EXPECT_FALSE(capture->Begin({capture->AsSeen({300, 200})}, anybody()));
    ASSERT_TRUE(waitFor([&] { return finished.count() == 1; }));
    EXPECT_EQ(finished[0][0].toString(), QStringLiteral("no room"));

    ASSERT_TRUE(capture->Begin({capture->AsSeen({6000, 4000})}, anybody()));
    const QImage held = viewer->GetCurrViewerImg();
    EXPECT_FALSE(held.isNull());
    capture->Cancel();
    EXPECT_EQ(cancelled.count(), 1);
    EXPECT_FALSE(capture->IsBusy());
    const unsigned frame = viewer->getOSGViewer()->getFrameStamp()->getFrameNumber();
    EXPECT_TRUE(
        waitFor([&] { return viewer->getOSGViewer()->getFrameStamp()->getFrameNumber() > frame + 3; }));
}

TEST_F(Capture, WhatIsDoneToTheMapMeanwhileIsDoneByNobody)
{
    AxMagnifier& lens = *viewer->GetMagnifier();
    ASSERT_TRUE(lens.Look({}, {}));
    const double factor = lens.Factor();
    const auto picture = [] {
        return std::make_unique<AxImageTaker>(std::vector<QSize>{{6000, 4000}}, nullptr);
    };
    QSignalSpy clicked(viewer->getManipulator(), &CAxEarthManipulator::mouseLeftBtnClick);
    QSignalSpy deleted(viewer, &CAxEarthViewer::signalHandleKeyDelete);
    const auto turn = [](const QPoint& at) {
        QWheelEvent event(at, viewer->viewport()->mapToGlobal(at), {}, {0, 240}, Qt::NoButton, Qt::NoModifier,
                          Qt::NoScrollPhase, false);
        QCoreApplication::sendEvent(viewer->viewport(), &event);
    };
    const QPoint place(300, 300);
    QCursor::setPos(viewer->mapToGlobal(place));
    ASSERT_TRUE(capture->Begin({capture->AsSeen({6000, 4000})}, picture()));
    const osg::Matrixd before = viewer->getOSGViewer()->getCamera()->getViewMatrix();
    turn(place);
    turn(lens.Frame().center().toPoint());
    QTest::mouseClick(viewer->viewport(), Qt::LeftButton, {}, place);
    QTest::keyClick(viewer, Qt::Key_Escape);
    QTest::keyPress(viewer, Qt::Key_Delete);
    QTest::mousePress(viewer->viewport(), Qt::LeftButton, {}, place);
    capture->Cancel();
    QTest::mouseRelease(viewer->viewport(), Qt::LeftButton, {}, place);
    QTest::keyRelease(viewer, Qt::Key_Delete);
    const unsigned frame = viewer->getOSGViewer()->getFrameStamp()->getFrameNumber();
    ASSERT_TRUE(
        waitFor([&] { return viewer->getOSGViewer()->getFrameStamp()->getFrameNumber() > frame + 5; }));
    EXPECT_EQ(clicked.count() + deleted.count(), 0);
    EXPECT_TRUE(lens.IsOpen());
    EXPECT_EQ(lens.Factor(), factor);
    EXPECT_EQ(viewer->getOSGViewer()->getCamera()->getViewMatrix(), before);
    QTest::mouseClick(viewer->viewport(), Qt::LeftButton, {}, place);
    EXPECT_TRUE(waitFor([&] { return clicked.count() == 1; })) << "then it is as before";
    lens.Close();
}

TEST_F(Capture, AFinalDrawCallbackOfTheViewersCameraReadsItsFrames)
{
    QImage read;
    osg::Camera& camera = *viewer->getOSGViewer()->getCamera();
    camera.setFinalDrawCallback(
        new WindowCaptureCallback([&read](const QImage& picture) { read = picture; }));
    EXPECT_TRUE(waitFor([&] { return !read.isNull(); }));
    camera.setFinalDrawCallback(nullptr);
    EXPECT_LT(Differing(read.copy(0, 0, 600, 500), viewer->GetCurrViewerImg().copy(0, 0, 600, 500)), 0.01);
}

TEST(Shots, AreWhereTheyAreSaidToBe)
{
    // East of the middle is right of it, north above; a metre is a metre, and heights move nothing.
    const AxShot map = AxShots::FromAbove({{-105.0, 37.4, 0.0}, 2000.0, 1000.0}, {400, 200});
    const auto pixel = [](const AxShot& shot, const osg::Vec3d& place) {
        const osg::Vec3d seen = AxGlobe::WorldOf(place) * (shot.view * shot.projection);
        return osg::Vec2d(0.5 * (1.0 + seen.x()) * shot.size.width(),
                          0.5 * (1.0 - seen.y()) * shot.size.height());
    };
    const double north = 400.0 / 110990.0; // degrees
    EXPECT_LT((pixel(map, {-105.0, 37.4, 0.0}) - osg::Vec2d(200, 100)).length(), 1e-6);
    EXPECT_LT((pixel(map, {-105.0, 37.4 + north, 0.0}) - osg::Vec2d(200, 20)).length(), 0.1);
    EXPECT_LT((pixel(map, {-105.0, 37.4, 4000.0}) - osg::Vec2d(200, 100)).length(), 1e-6);
    // Looking east, level: what is ahead is in the middle, what is south of that to the right.
    const AxShot ahead = AxShots::From({{10.0, 0.0, 100.0}, 90.0, 0.0}, 60.0, {400, 200});
    EXPECT_LT((pixel(ahead, {10.001, 0.0, 100.0}) - osg::Vec2d(200, 100)).length(), 0.1);
    EXPECT_GT(pixel(ahead, {10.001, -0.0002, 100.0}).x(), 220.0);
    EXPECT_LT(pixel(ahead, {10.001, 0.0, 130.0}).y(), 90.0);

    AxImageTaker taker({{100, 80}}, nullptr);
    const QImage piece(60, 80, QImage::Format_RGB888);
    EXPECT_EQ(taker.Take(0, {40, 0}, piece), QString());
    EXPECT_FALSE(taker.Take(0, {41, 0}, piece).isEmpty() || taker.Take(1, {0, 0}, piece).isEmpty());

    // Parts cover a picture once.
    qint64 area = 0;
    for (const QRect& part : AxShots::Parts({5000, 4100}, {2048, 1000}))
        area += qint64(part.width()) * part.height();
    EXPECT_EQ(area, 5000LL * 4100LL);

    struct Row
    {
        std::vector<osg::Vec3d> route;
        double step;
        std::size_t count;
        double lastHeading;
    };
    const double nan = std::nan("");
    const Row rows[] = {
        {{{0, 0, 50}, {0, 0.01, 50}, {0.01, 0.01, 70}}, 100.0, 24, 90.0},
        {{{0, 0, 50}, {0, 0, 90}, {0, 0.01, 50}, {0, 0.01, 20}}, 5000.0, 2, 0.0},
        {{{179.999, 0, 50}, {-179.999, 0, 50}}, 50.0, 6, 90.0},
        {{{0, 0, 50}, {0, 1, 50}}, 0.001, 50, 0.0},
        {{{0, 0, 50}, {0, 5e-11, 50}, {0, 0.01, 50}, {5e-11, 0.01, 50}}, 5000.0, 2, 0.0},
        {{{0, 0, 50}, {0, 5e-11, 50}}, 10.0, 0, 0.0},
        {{{0, 0, 50}}, 10.0, 0, 0.0},
        {{{0, 0, 50}, {0, 0, 90}}, 10.0, 0, 0.0},
        {{{0, 0, 50}, {nan, 1, 50}}, 10.0, 0, 0.0},
        {{{0, 0, 50}, {0, 1, 50}}, 0.0, 0, 0.0},
    };
    for (const Row& row : rows) {
        const auto poses = AxShots::Along(row.route, row.step, -20.0, 50);
        ASSERT_EQ(poses.size(), row.count);
        if (poses.empty())
            continue;
        EXPECT_NEAR(poses.back().heading, row.lastHeading, 0.01);
        EXPECT_NEAR(poses.back().place.y(), row.route.back().y(), 1e-9);
        EXPECT_NEAR(std::remainder(poses.back().place.x() - row.route.back().x(), 360.0), 0.0, 1e-9);
    }
}

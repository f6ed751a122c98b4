// What is seen: a globe, the overlays over it, and captures the right way up.
#include "ViewerFixture.h"

#include "viewer/AxFrameCapture.h"
#include "viewer/overlay/AxHeadUpText.h"
#include "viewer/overlay/CAxCoordinateWidget.h"

#include <QImage>
#include <QSet>
#include <QtMath>

namespace {
class Picture : public ViewerFixture
{
protected:
    void SetUp() override { ASSERT_TRUE(WaitForPicture()); }

    // The front buffer after at least two more frames.
    static QImage NextPicture()
    {
        const osg::FrameStamp* stamp = viewer->getOSGViewer()->getFrameStamp();
        const unsigned frame = stamp->getFrameNumber();
        EXPECT_TRUE(waitFor([&] { return stamp->getFrameNumber() > frame + 2; }));
        return viewer->GetCurrViewerImg();
    }

    static double MeanLightness(const QImage& picture, const QRect& area)
    {
        double sum = 0.0;
        for (int y = area.top(); y <= area.bottom(); ++y)
            for (int x = area.left(); x <= area.right(); ++x)
                sum += qGray(picture.pixel(x, y));
        return sum / (area.width() * area.height());
    }

    static int PixelsThatDiffer(const QImage& a, const QImage& b, const QRect& area)
    {
        int count = 0;
        for (int y = area.top(); y <= area.bottom(); ++y)
            for (int x = area.left(); x <= area.right(); ++x)
                count += qAbs(qGray(a.pixel(x, y)) - qGray(b.pixel(x, y))) > 24;
        return count;
    }
};
} // namespace

TEST(FrameCapture, TurnsTheRowsTheRightWayUp)
{
    // Three pixels by two, as OpenGL gives them: the bottom row first.
    const unsigned char rows[] = {1, 2, 3, 4, 5, 6, 7, 8, 9, 11, 12, 13, 14, 15, 16, 17, 18, 19};
    const QImage image = AxImageFromBottomUpRows(rows, 3, 2);
    ASSERT_EQ(image.size(), QSize(3, 2));
    EXPECT_EQ(image.format(), QImage::Format_RGB888);
    EXPECT_EQ(image.pixel(0, 0), qRgb(11, 12, 13));
    EXPECT_EQ(image.pixel(2, 0), qRgb(17, 18, 19));
    EXPECT_EQ(image.pixel(0, 1), qRgb(1, 2, 3));
    EXPECT_EQ(image.pixel(2, 1), qRgb(7, 8, 9));
    for (const QSize size : {QSize(3, 0), QSize(0, 2), QSize(3, -1)})
        EXPECT_TRUE(AxImageFromBottomUpRows(rows, size.width(), size.height()).isNull());
    EXPECT_TRUE(AxImageFromBottomUpRows(nullptr, 3, 2).isNull());
}

TEST_F(Picture, CaptureHasTheWidgetsSizeAndItsBottomBelow)
{
    const QImage picture = NextPicture();
    ASSERT_EQ(picture.size(), viewer->size());
    AxHeadUpText::Instance().SetSubtitles(QStringLiteral("■■■■■■■■"));
    const QImage titled = NextPicture();
    AxHeadUpText::Instance().SetSubtitles(QString());
    const QRect top(0, 0, 400, 70);
    const QRect bottom(0, picture.height() - 70, 400, 70);
    EXPECT_GT(PixelsThatDiffer(picture, titled, top), 500);
    EXPECT_EQ(PixelsThatDiffer(picture, titled, bottom), 0);
}

TEST_F(Picture, ShowsTheWholeGlobeInDarkSpace)
{
    const QImage picture = NextPicture();
    const double halfHeight = picture.height() / 2.0;
    // Seen from four radii above the ground, that is five from the centre.
    const double radius = halfHeight * qTan(qAsin(1.0 / 5.0)) / qTan(qDegreesToRadians(15.0));
    const QPointF centre(picture.width() / 2.0, halfHeight);
    QSet<QRgb> colours;
    double inside = 0.0;
    double outside = 0.0;
    constexpr int samples = 72;
    for (int i = 0; i < samples; ++i) {
        const double angle = 2.0 * M_PI * i / samples;
        const QPointF direction(qCos(angle), qSin(angle));
        for (double part : {0.2, 0.4, 0.6, 0.8})
            colours += picture.pixel((centre + direction * radius * part).toPoint());
        inside += qGray(picture.pixel((centre + direction * radius * 0.94).toPoint()));
        outside += qGray(picture.pixel((centre + direction * radius * 1.2).toPoint()));
    }
    EXPECT_GT(colours.size(), 60);
    EXPECT_GT(inside / samples, 25.0);
    EXPECT_LT(outside / samples, 20.0);
}

TEST_F(Picture, DrawsTheOverlaysOverTheGlobe)
{
    const QRect readOut = viewer->GetCoordinateWidget()->geometry() & viewer->rect();
    const QRect compass(viewer->width() - 120, 60, 111, 90);
    const QImage with = NextPicture();
    viewer->SetCompassVisible(false);
    viewer->SetCoordinateVisible(false);
    const osgEarth::Viewpoint home = viewer->getManipulator()->getViewpoint();
    const QImage without = NextPicture();
    viewer->SetCompassVisible(true);
    EXPECT_GT(PixelsThatDiffer(with, without, compass), 300);

    // The desert fills the picture; the read-out is a dark panel on it.
    viewer->getManipulator()->setViewpoint(
        osgEarth::Viewpoint("desert", 20.0, 24.0, 0.0, 0.0, -90.0, 350000.0), 0.0);
    ASSERT_TRUE(WaitForPicture());
    const QImage ground = NextPicture();
    viewer->SetCoordinateVisible(true);
    const QImage panel = NextPicture();
    EXPECT_LT(MeanLightness(panel, readOut), MeanLightness(ground, readOut) - 15.0);
    viewer->getManipulator()->setViewpoint(home, 0.0);
}

TEST_F(Picture, IsIncompleteFromTheMomentTheCameraIsSentElsewhere)
{
    const osgEarth::Viewpoint home = viewer->getManipulator()->getViewpoint();
    viewer->getManipulator()->setViewpoint(
        osgEarth::Viewpoint("peaks", -105.0, 37.4, 3027.0, 200.0, -25.0, 20000.0), 0.0);
    EXPECT_FALSE(viewer->IsPictureComplete());
    EXPECT_TRUE(WaitForPicture());
    viewer->getManipulator()->setViewpoint(home, 0.0);
    EXPECT_TRUE(WaitForPicture());
}

// What is seen: a globe, the overlays over it, and captures the right way up.
#include "ViewerFixture.h"

#include "viewer/overlay/AxHeadUpText.h"

#include <QImage>

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

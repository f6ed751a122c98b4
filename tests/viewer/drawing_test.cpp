// What is seen of a shape: fill, outline, name and lock, from near and from far.
#include "ShapeFixture.h"

#include "scene/shape/AxWorldGeometry.h"

#include <osgEarth/Terrain>
#include <osgEarthAnnotation/LabelNode>

#include <QImage>

#include <cmath>

namespace {
struct Rgb
{
    double red, green, blue;
};

class Drawing : public ShapeFixture
{
protected:
    static void LookAt(double lng, double lat, double range, double pitch = -90.0)
    {
        viewer->getManipulator()->setViewpoint(osgEarth::Viewpoint("", lng, lat, 0.0, 0.0, pitch, range));
        ASSERT_TRUE(WaitForPicture());
    }

    // The window as last shown, without handles: they would lie over the pixels looked at.
    static QImage Picture()
    {
        viewer->SetNodeSelected(nullptr, false, false);
        const osg::FrameStamp* stamp = viewer->getOSGViewer()->getFrameStamp();
        const unsigned frame = stamp->getFrameNumber();
        EXPECT_TRUE(
            waitFor([&] { return stamp->getFrameNumber() > frame + 3 && viewer->IsPictureComplete(); }));
        return viewer->GetCurrViewerImg();
    }

    // Nothing where the place is outside of the window or behind the globe.
    static QPoint PixelOf(double lng, double lat, double alt = 0.0)
    {
        const osg::Vec2f at = WindowOf(FrameAt(lng, lat, alt).getTrans());
        return {qRound(at.x()), qRound(at.y())};
    }

    static Rgb MeanAround(const QImage& picture, const QPoint& middle)
    {
        Rgb mean{0.0, 0.0, 0.0};
        int count = 0;
        for (int y = middle.y() - 2; y <= middle.y() + 2; ++y)
            for (int x = middle.x() - 2; x <= middle.x() + 2; ++x) {
                const QRgb pixel = picture.pixel(x, y);
                mean.red += qRed(pixel);
                mean.green += qGreen(pixel);
                mean.blue += qBlue(pixel);
                ++count;
            }
        return {mean.red / count, mean.green / count, mean.blue / count};
    }

    // How much of the block's fill, (49, 155, 208) at 40 %, lies over what was there before: 1 is once.
    static double Layers(const QImage& before, const QImage& after, const QPoint& at)
    {
        const Rgb bare = MeanAround(before, at);
        const Rgb seen = MeanAround(after, at);
        const double full[] = {49.0 - bare.red, 155.0 - bare.green, 208.0 - bare.blue};
        const double change[] = {seen.red - bare.red, seen.green - bare.green, seen.blue - bare.blue};
        double product = 0.0;
        double square = 0.0;
        for (int i = 0; i < 3; ++i) {
            product += change[i] * full[i];
            square += full[i] * full[i];
        }
        return product / (0.4 * square);
    }

    static int Bright(const QImage& picture, const QRect& area)
    {
        int count = 0;
        for (int y = area.top(); y <= area.bottom(); ++y)
            for (int x = area.left(); x <= area.right(); ++x)
                count += qGray(picture.pixel(x, y)) > 220;
        return count;
    }

    static QList<QPointF> Metres(double lng, double lat, double size, const QList<QPointF>& unit)
    {
        QList<QPointF> ring;
        for (const QPointF& point : unit)
            ring += QPointF(lng + point.x() * size / (111320.0 * std::cos(osg::DegreesToRadians(lat))),
                            lat + point.y() * size / 111320.0);
        return ring;
    }
};

const QList<QPointF> angle = {{-1, -1}, {1, -1}, {1, -0.2}, {-0.2, -0.2}, {-0.2, 1}, {-1, 1}};
const QList<QPointF> unitSquare = {{-1, -1}, {1, -1}, {1, 1}, {-1, 1}};

struct View
{
    const char* name;
    QList<QPointF> ring;
    double lng, lat, range; // of the camera
    QList<QPointF> inside;
    QList<QPointF> outside;
};

const View views[] = {
    {"Concave",
     {{10, 40}, {20, 40}, {20, 43}, {13, 43}, {13, 50}, {10, 50}},
     15,
     45,
     4e6,
     {{11, 41}, {18, 41.5}, {11, 46.7}},
     {{17, 47}, {14.5, 44.5}, {8, 45}}},
    {"AcrossTheAntimeridian",
     {{170, -10}, {-170, -10}, {-170, 10}, {170, 10}},
     180,
     0,
     9e6,
     {{175, -5}, {-175, 5}, {180, 2}},
     {{165, 0}, {-165, 0}, {180, 15}}},
    {"AroundThePole",
     {{0, 75}, {90, 75}, {180, 75}, {-90, 75}},
     0,
     89.5,
     9e6,
     {{20, 80}, {135, 82}, {-160, 80}},
     {{0, 70}, {45, 75}, {180, 71}}},
    {"OfAMetre", {}, 0, 0, 20, {}, {}},
};
} // namespace

class Fill : public Drawing, public testing::WithParamInterface<View>
{
};

TEST_P(Fill, IsWhereTheShapeIsOnceAndNowhereElse)
{
    View view = GetParam();
    if (view.ring.isEmpty()) {
        view.lng = 100.123456;
        view.lat = 45.654321;
        view.ring = Metres(view.lng, view.lat, 1.0, angle);
        view.inside = Metres(view.lng, view.lat, 1.0, {{-0.6, 0.8}, {0.8, -0.6}, {-0.6, -0.6}});
        view.outside = Metres(view.lng, view.lat, 1.0, {{0.4, 0.4}, {0.1, 0.8}, {-1.6, 0.0}});
    }
    double ground = 0.0;
    LookAt(view.lng, view.lat, view.range);
    viewer->getMapNode()->getTerrain()->getHeight(viewer->getSRS()->getGeographicSRS(), view.lng, view.lat,
                                                  &ground);
    if (view.range < 1000.0) {
        manipulator->setViewpoint(
            osgEarth::Viewpoint("", view.lng, view.lat, ground, 0.0, -90.0, view.range));
        ASSERT_TRUE(WaitForPicture());
    }
    const QImage before = Picture();
    ASSERT_TRUE(Import("drawn", view.ring));
    const QImage after = Picture();
    const double height = view.range < 1000.0 ? ground : 0.0;
    for (const QPointF& place : view.inside)
        EXPECT_NEAR(Layers(before, after, PixelOf(place.x(), place.y(), height)), 1.0, 0.2)
            << place.x() << ' ' << place.y();
    for (const QPointF& place : view.outside)
        EXPECT_NEAR(Layers(before, after, PixelOf(place.x(), place.y(), height)), 0.0, 0.1)
            << place.x() << ' ' << place.y();
}

INSTANTIATE_TEST_SUITE_P(Shapes, Fill, testing::ValuesIn(views),
                         [](const auto& row) { return std::string(row.param.name); });

TEST_F(Drawing, AShapeOfAMetreStandsStillWhileTheCameraTurns)
{
    const double lng = 100.123456;
    const double lat = 45.654321;
    double ground = 0.0;
    LookAt(lng, lat, 200.0);
    ASSERT_TRUE(viewer->getMapNode()->getTerrain()->getHeight(viewer->getSRS()->getGeographicSRS(), lng, lat,
                                                              &ground));
    CAx3DGeometry* block = Import("metre", Metres(lng, lat, 0.5, unitSquare));
    ASSERT_TRUE(block);
    block->SetNameVisible(false);
    for (const double heading : {0.0, 17.0, 90.0, 201.3}) {
        manipulator->setViewpoint(osgEarth::Viewpoint("", lng, lat, ground, heading, -90.0, 20.0));
        const QImage picture = Picture();
        // The edge is the bluest there is; it is looked for from outside on the way to the middle.
        for (const QPointF& way : {QPointF(1, 0), QPointF(-1, 0), QPointF(0, 1), QPointF(0, -1)}) {
            const QPointF rim = Metres(lng, lat, 0.5, {way}).front();
            const QPoint expected = PixelOf(rim.x(), rim.y(), ground);
            int nearest = 1000;
            for (int y = -12; y <= 12; ++y)
                for (int x = -12; x <= 12; ++x) {
                    const QRgb pixel = picture.pixel(expected + QPoint(x, y));
                    if (std::abs(qRed(pixel) - 49) + std::abs(qGreen(pixel) - 155) +
                            std::abs(qBlue(pixel) - 208) <
                        60)
                        nearest = std::min(nearest, x * x + y * y);
                }
            EXPECT_LE(nearest, 4) << heading << ": " << way.x() << ' ' << way.y();
        }
    }
}

TEST_F(Drawing, NothingIsSeenThroughTheGlobe)
{
    LookAt(20.0, 10.0, 1.5e7);
    const QImage before = Picture();
    ASSERT_TRUE(Import("far", {{-170, -20}, {-150, -20}, {-150, 0}, {-170, 0}}));
    // Around the whole rim of the globe in view: its near parts are seen, its far ones not.
    const QImage after = Picture();
    int changed = 0;
    for (int y = 100; y < after.height() - 100; ++y)
        for (int x = 100; x < after.width() - 120; ++x)
            changed += std::abs(qBlue(before.pixel(x, y)) - qBlue(after.pixel(x, y))) > 30;
    EXPECT_EQ(changed, 0);
}

TEST_F(Drawing, TheNameIsWrittenInItsOwnLettersAndGoesWithTheObject)
{
    LookAt(100.0, 45.0, 500000.0);
    CAxBlockManager::instance()
        .AddBlock("named", CAxBlock::PolygonBlock)
        ->SetAnchor({{99.0, 44.0}, {101.0, 44.0}, {101.0, 46.0}, {99.0, 46.0}});
    CAxBlock* record = CAxBlockManager::instance().GetBlock("named");
    record->SetBlockName(QStringLiteral(" "));
    auto* block = qobject_cast<CAx3DGeometry*>(viewer->ImportShapeNode("named"));
    ASSERT_TRUE(block);
    const QPoint middle = PixelOf(100.0, 45.0);
    const QRect area(middle.x() - 60, middle.y() - 20, 120, 40);
    const int without = Bright(Picture(), area);
    const auto pictureWith = [&](const QString& name) {
        record->SetBlockName(name);
        block->DrawNameLabel();
        return Picture().copy(area);
    };
    const QImage latin = pictureWith(QStringLiteral("Block 7"));
    EXPECT_GT(Bright(latin, latin.rect()) - without, 40);
    const QImage chinese = pictureWith(QStringLiteral(u"\u6d4b\u533a\u7532"));
    EXPECT_GT(Bright(chinese, chinese.rect()) - without, 10);
    // Boxes for letters that the font lacks would look all the same.
    EXPECT_NE(chinese, pictureWith(QStringLiteral(u"\u4e59\u4e19\u4e01")));
    ASSERT_TRUE(block->GetNameLabel());
    EXPECT_EQ(block->GetNameLabel()->getNumParents(), 1u);
    EXPECT_EQ(QString::fromStdString(block->GetNameLabel()->text()), QStringLiteral(u"\u4e59\u4e19\u4e01"));

    block->SetNameVisible(false);
    EXPECT_LT(Bright(Picture(), area) - without, 10);
    const osg::ref_ptr<osg::Node> label = block->GetNameLabel();
    viewer->RemoveHanderAdapter("named", true);
    EXPECT_EQ(label->getNumParents(), 0u);
}

TEST_F(Drawing, TheLockIsAnIconOfFixedSizeBesideTheName)
{
    LookAt(100.0, 45.0, 500000.0);
    CAx3DGeometry* block = Import("locked", {{99.0, 44.0}, {101.0, 44.0}, {101.0, 46.0}, {99.0, 46.0}});
    ASSERT_TRUE(block);
    for (int i = 0; i < 3; ++i)
        block->SetLockBlock(true, true);
    EXPECT_EQ(block->GetLockNode()->getNumChildren(), 1u);
    EXPECT_EQ(block->GetLockNode()->getNumParents(), 1u);
    const QImage shown = Picture();
    block->SetLockBlock(true, false);
    const QImage hidden = Picture();
    int changed = 0;
    const QPoint middle = PixelOf(100.0, 45.0);
    for (int y = middle.y() - 60; y < middle.y() + 60; ++y)
        for (int x = middle.x() - 60; x < middle.x() + 60; ++x)
            changed += shown.pixel(x, y) != hidden.pixel(x, y);
    EXPECT_GT(changed, 300);
    EXPECT_LT(changed, 40 * 40);
}

TEST_F(Drawing, GroundThatArrivesLaterIsTakenUp)
{
    // From afar the ground below the mountains is coarse; near to them it is not.
    LookAt(-105.0, 37.4, 3000000.0);
    ASSERT_TRUE(Import("hills", Metres(-105.0, 37.4, 4000.0, unitSquare)));
    auto* shape = dynamic_cast<AxWorldGeometry*>(findNode(Root(), "Feature"));
    ASSERT_TRUE(shape);
    const auto misfit = [&] {
        double worst = 0.0;
        const auto& points = static_cast<const osg::Vec3Array&>(*shape->getVertexArray());
        for (const osg::Vec3f& point : points) {
            osgEarth::GeoPoint at;
            at.fromWorld(viewer->getSRS()->getGeographicSRS(), point);
            double height = 0.0;
            if (viewer->getMapNode()->getTerrain()->getHeight(viewer->getSRS()->getGeographicSRS(), at.x(),
                                                              at.y(), &height))
                worst = std::max(worst, std::abs(height - at.z()));
        }
        return worst;
    };
    LookAt(-105.0, 37.4, 12000.0, -60.0);
    EXPECT_TRUE(waitFor([&] { return misfit() < 3.0; }, 20000)) << misfit();
}

// What is seen of no-fly zones, of those that blink and of the one under the mouse.
#include "ProtocolFixture.h"

#include "analysis/CAxAncillaryProcess.h"
#include "analysis/zones/AxZoneDrawing.h"
#include "analysis/zones/AxZoneFlash.h"
#include "analysis/zones/AxZoneHover.h"
#include "SceneEvents.h"

#include <osg/Geometry>

#include <QImage>

#include <cmath>
#include <random>

using osgEarth::Symbology::MultiGeometry;
using osgEarth::Symbology::Polygon;
using osgEarth::Symbology::Ring;

namespace {
using Places = std::vector<osg::Vec2d>;

template <typename Kind> osg::ref_ptr<Kind> Outlined(const Places& places)
{
    osg::ref_ptr<Kind> geometry = new Kind;
    for (const osg::Vec2d& place : places)
        geometry->push_back(place.x(), place.y());
    return geometry;
}

Places Circle(double longitude, double latitude, double radius)
{
    Places places;
    for (int i = 0; i <= 72; ++i) {
        const double bearing = osg::DegreesToRadians(5.0 * i);
        places.emplace_back(longitude +
                                radius / std::cos(osg::DegreesToRadians(latitude)) * std::sin(bearing),
                            latitude + radius * std::cos(bearing));
    }
    return places;
}

class ZoneDrawing : public ProtocolFixture
{
protected:
    void SetUp() override { viewer->GetAncillaryProcess()->SetNoFlyZoneMask(true); }
    void TearDown() override
    {
        while (!mine.empty()) {
            Group()->removeChild(mine.back());
            mine.pop_back();
        }
        viewer->GetAncillaryProcess()->SetNoFlyZoneMask(false);
        viewer->getManipulator()->home(0.0);
    }

    static osg::Group* Group() { return findNode(viewer->GetDrawNodeGroup(), "NoFlyGroup")->asGroup(); }
    void Add(const Places& outline, const MultiGeometry* pieces = nullptr)
    {
        const osg::ref_ptr<Polygon> polygon = Outlined<Polygon>(outline);
        mine.push_back(
            AxDrawZone("test", polygon->getBounds().center(), *polygon, pieces, *viewer->getSRS()));
        Group()->addChild(mine.back());
    }
    static void LookAt(double longitude, double latitude, double range, double altitude = 0.0,
                       double pitch = -90.0)
    {
        viewer->getManipulator()->setViewpoint(
            osgEarth::Viewpoint("", longitude, latitude, altitude, 0.0, pitch, range), 0.0);
    }
    static QImage Picture()
    {
        EXPECT_TRUE(WaitForPicture());
        // Zones are built, and the ground below them is looked up, a few a frame.
        EXPECT_TRUE(waitFrames(25));
        EXPECT_TRUE(WaitForPicture());
        return viewer->GetCurrViewerImg();
    }
    static QPoint PixelOf(double longitude, double latitude)
    {
        osg::Vec3d world;
        osgEarth::GeoPoint(viewer->getSRS()->getGeographicSRS(), longitude, latitude, 0.0).toWorld(world);
        const osg::Camera* camera = viewer->getOSGViewer()->getCamera();
        const osg::Vec3d window = world * camera->getViewMatrix() * camera->getProjectionMatrix() *
                                  camera->getViewport()->computeWindowMatrix();
        return {static_cast<int>(window.x()), viewer->height() - 1 - static_cast<int>(window.y())};
    }
    /// How often the zones' yellow, 30 % of it, lies over what was there before.
    static double Tints(const QImage& before, const QImage& after, const QPoint& at)
    {
        const QRgb bare = before.pixel(at);
        const QRgb seen = after.pixel(at);
        // The share of what shines through, by the channel that yellow takes most of and those it adds to.
        const double full = (255.0 - qRed(bare)) + (255.0 - qGreen(bare)) + qBlue(bare);
        const double change =
            (qRed(seen) - qRed(bare)) + (qGreen(seen) - qGreen(bare)) + (qBlue(bare) - qBlue(seen));
        return std::log(1.0 - std::min(change / full, 0.999)) / std::log(0.7);
    }
    static int RedPixels(const QImage& picture, const QRect& area)
    {
        int count = 0;
        for (int y = area.top(); y <= area.bottom(); ++y)
            for (int x = area.left(); x <= area.right(); ++x) {
                const QRgb pixel = picture.pixel(x, y);
                count += qRed(pixel) > 200 && qGreen(pixel) < 60 && qBlue(pixel) < 60;
            }
        return count;
    }

    std::vector<osg::ref_ptr<osg::Node>> mine;
};

struct Spot
{
    double longitude, latitude;
    double tints;
};
} // namespace

TEST_F(ZoneDrawing, PaintsTheZoneAndNothingElse)
{
    MultiGeometry nothingLeft;
    nothingLeft.add(new Polygon);
    MultiGeometry twoPieces;
    const osg::ref_ptr<Polygon> ring =
        Outlined<Polygon>({{29.5, -0.5}, {30.5, -0.5}, {30.5, 0.5}, {29.5, 0.5}});
    ring->getHoles().push_back(Outlined<Ring>({{29.8, -0.2}, {29.8, 0.2}, {30.2, 0.2}, {30.2, -0.2}}));
    twoPieces.add(ring);
    twoPieces.add(Outlined<Polygon>({{29.95, -0.05}, {30.05, -0.05}, {30.05, 0.05}, {29.95, 0.05}}).get());

    const Places circle = Circle(30.0, 0.0, 0.3);
    const Places notch{{29.5, -0.5}, {30.5, -0.5}, {30.5, 0.5}, {30.0, -0.4}, {29.5, 0.5}};
    const Places eight{{29.5, -0.5}, {30.5, 0.5}, {30.5, -0.5}, {29.5, 0.5}};
    Places withJunk = notch;
    withJunk.insert(withJunk.begin() + 2, {osg::Vec2d(std::nan(""), 0.0), osg::Vec2d(30.0, 95.0)});
    const struct
    {
        const char* name;
        Places outline;
        const MultiGeometry* pieces;
        std::vector<Spot> spots;
    } rows[] = {
        {"circle", circle, nullptr, {{30.0, 0.05, 1}, {30.28, 0.05, 1}, {30.32, 0.0, 0}, {30.25, 0.25, 0}}},
        {"notched", notch, nullptr, {{30.0, -0.45, 1}, {30.0, 0.1, 0}, {29.6, 0.0, 1}, {30.4, 0.0, 1}}},
        {"hole and island",
         circle,
         &twoPieces,
         {{29.65, 0.1, 1}, {29.88, 0.1, 0}, {30.0, 0.02, 1}, {30.12, 0.1, 0}, {30.6, 0.1, 0}}},
        {"nothing left", circle, &nothingLeft, {{30.0, 0.05, 0}, {30.25, 0.05, 0}}},
        {"crossing itself", eight, nullptr, {{29.6, 0.05, 1}, {30.4, 0.05, 1}, {30.0, 0.3, 0}}},
        {"points that are none", withJunk, nullptr, {{30.0, -0.45, 1}, {30.0, 0.1, 0}}},
        {"no points", {}, nullptr, {{30.0, 0.05, 0}}},
    };
    LookAt(30.0, 0.0, 350000.0);
    const QImage before = Picture();
    for (const auto& row : rows) {
        SCOPED_TRACE(row.name);
        Add(row.outline, row.pieces);
        const QImage after = Picture();
        for (const Spot& spot : row.spots)
            EXPECT_NEAR(Tints(before, after, PixelOf(spot.longitude, spot.latitude)), spot.tints, 0.15)
                << spot.longitude << ' ' << spot.latitude;
        EXPECT_EQ(RedPixels(after, before.rect()) > 100,
                  std::any_of(row.spots.begin(), row.spots.end(), [](const Spot& s) { return s.tints > 0; }));
        Group()->removeChild(mine.back());
        mine.pop_back();
    }
    const QImage after = Picture();
    EXPECT_NEAR(Tints(before, after, PixelOf(30.0, 0.05)), 0.0, 0.05);
}

TEST_F(ZoneDrawing, OverlapIsTintedOnceAndTheMaskHidesAll)
{
    LookAt(30.0, 0.0, 350000.0);
    const QImage before = Picture();
    for (int i = 0; i < 100; ++i) // more than one draw call takes
        Add(Circle(30.0 + 0.0005 * i, 0.0, 0.3));
    const QImage after = Picture();
    EXPECT_NEAR(Tints(before, after, PixelOf(29.85, 0.05)), 1.0, 0.15);
    EXPECT_NEAR(Tints(before, after, PixelOf(30.1, 0.05)), 1.0, 0.15);
    viewer->GetAncillaryProcess()->SetNoFlyZoneMask(false);
    const QImage hidden = Picture();
    EXPECT_NEAR(Tints(before, hidden, PixelOf(30.1, 0.05)), 0.0, 0.05);
    EXPECT_EQ(RedPixels(hidden, before.rect()), 0);
}

TEST_F(ZoneDrawing, AcrossTheAntimeridianAndAlongWideParallels)
{
    const struct
    {
        double longitude, latitude, range; // of the camera
        Places outline;
        std::vector<Spot> spots;
    } rows[] = {
        {180.0,
         0.0,
         350000.0,
         {{179.5, -0.5}, {180.5, -0.5}, {180.5, 0.5}, {179.5, 0.5}},
         {{179.6, 0.1, 1}, {179.95, 0.1, 1}, {180.05, 0.1, 1}, {180.4, 0.1, 1}, {180.55, 0.1, 0}}},
        // Edges of zones are straight in longitude and latitude, as they are tested;
        // a great circle between these corners would pass 48 km beyond the parallel.
        {100.3,
         -50.0,
         900000.0,
         {{90.0, -48.0}, {90.0, -50.0}, {110.0, -50.0}, {110.0, -48.0}},
         {{100.3, -49.9, 1}, {100.3, -50.1, 0}, {98.3, -48.3, 1}}},
    };
    for (const auto& row : rows) {
        LookAt(row.longitude, row.latitude, row.range);
        const QImage before = Picture();
        Add(row.outline);
        const QImage after = Picture();
        for (const Spot& spot : row.spots)
            EXPECT_NEAR(Tints(before, after, PixelOf(spot.longitude, spot.latitude)), spot.tints, 0.15)
                << spot.longitude << ' ' << spot.latitude;
    }
}

TEST_F(ZoneDrawing, LinesStayWholeAndThinNearTheHorizonAndUpClose)
{
    Add(Circle(-105.0, 37.4, 0.05));
    // Straight above the southern end of the circle, 500 m over the ground.
    LookAt(-105.0, 37.35, 500.0, 3000.0);
    const QImage close = Picture();
    const int column = close.width() / 2;
    const int thick = RedPixels(close, QRect(column, 0, 1, close.height()));
    EXPECT_GE(thick, 1);
    EXPECT_LE(thick, 5);

    // Along level ground every column that the circle spans has its far edge.
    Add(Circle(-102.0, 36.0, 0.05));
    LookAt(-102.0, 36.0, 40000.0, 1200.0, -8.0);
    const QImage level = Picture();
    int whole = 0;
    for (int x = -100; x < 100; ++x)
        whole += RedPixels(level, QRect(level.width() / 2 + x, 0, 1, level.height())) >= 2;
    EXPECT_GE(whole, 150);
}

TEST_F(ZoneDrawing, ScribblesAndFarAwayPointsMakeAFiniteNode)
{
    std::mt19937 random(7);
    std::uniform_real_distribution<double> place(-1.0, 1.0);
    Places scribble;
    for (int i = 0; i < 100000; ++i)
        scribble.emplace_back(30.0 + place(random), place(random));
    for (const Places& outline : {scribble, Places{{1e300, 0.0}, {-1e300, 0.0}, {0.0, 1e300}},
                                  Places{{-180.0, -90.0}, {180.0, -90.0}, {180.0, 90.0}, {-180.0, 90.0}}}) {
        Add(outline);
        const osg::BoundingSphere bound = mine.back()->getBound();
        EXPECT_EQ(bound.valid(), outline.front().x() < 1e6);
        EXPECT_TRUE(!bound.valid() || bound.radius() < 2e7f);
    }
    LookAt(30.0, 0.0, 350000.0);
    EXPECT_TRUE(WaitForPicture());
    // Each of them fills the window thousands of times over, which takes software two seconds.
    EXPECT_TRUE(waitFrames(3));
}

TEST_F(ZoneDrawing, FlashShowsOverHiddenZonesAndEndsByItself)
{
    viewer->GetAncillaryProcess()->SetNoFlyZoneMask(false);
    LookAt(30.0, 0.0, 350000.0);
    Picture();
    const unsigned before = viewer->GetDrawNodeGroup()->getNumChildren();
    AxZoneFlash flash(*viewer->Parts());
    flash.Flash({Outlined<Polygon>(Circle(10.0, 0.0, 0.3))});
    flash.Flash({Outlined<Polygon>(Circle(30.0, 0.0, 0.3)), nullptr, new MultiGeometry});
    EXPECT_EQ(viewer->GetDrawNodeGroup()->getNumChildren(), before + 1);
    const auto isRed = [] {
        const QRgb pixel = viewer->GetCurrViewerImg().pixel(PixelOf(30.1, 0.05));
        return qRed(pixel) > 150 && qRed(pixel) > 2 * qBlue(pixel) && qRed(pixel) > 2 * qGreen(pixel);
    };
    EXPECT_TRUE(waitFor(isRed, 3000));
    EXPECT_TRUE(waitFor([&] { return !isRed(); }, 3000));
    EXPECT_TRUE(waitFor(isRed, 3000));
    EXPECT_TRUE(waitFor([&] { return !flash.IsFlashing(); }, 20000));
    EXPECT_EQ(viewer->GetDrawNodeGroup()->getNumChildren(), before);
    flash.Flash({Outlined<Polygon>(Circle(30.0, 0.0, 0.3))});
    flash.Flash({});
    EXPECT_EQ(viewer->GetDrawNodeGroup()->getNumChildren(), before);
}

namespace {
/// With the viewer's own zones: T1 is a circle around 60.2 E 45.3 N.
class ZoneHover : public ProtocolFixture
{
protected:
    void TearDown() override
    {
        viewer->GetAncillaryProcess()->SetNoFlyZoneMask(false);
        viewer->GetAncillaryProcess()->SetCurrViewPort(Straight(20.0, 10.0, 1.5e7));
        const osg::Group* zones = findNode(viewer->GetDrawNodeGroup(), "NoFlyGroup")->asGroup();
        EXPECT_TRUE(waitFor([&] { return zones->getNumChildren() == 0; }));
        ProtocolFixture::TearDown();
    }
};
} // namespace

TEST_F(ZoneHover, NamesTheZoneUnderTheMouseWhileZonesAreShown)
{
    CAxAncillaryProcess* process = viewer->GetAncillaryProcess();
    AxZoneHover hover(*viewer->Parts(), *process);
    viewer->getManipulator()->setViewpoint(Straight(60.2, 45.3, 80000.0), 0.0);
    ASSERT_TRUE(WaitForPicture());
    const auto over = [&](double longitude, double latitude) {
        const osg::Vec2f place = WindowOf(longitude, latitude);
        Move(place.x(), place.y());
        return hover.Text();
    };
    EXPECT_EQ(over(60.2, 45.3), QString()) << "zones are hidden";
    process->SetNoFlyZoneMask(true);
    EXPECT_TRUE(waitFor([&] { return over(60.2, 45.3) == QStringLiteral("T1"); }, 20000));
    EXPECT_EQ(over(60.35, 45.3), QString()) << "beside it";
    over(60.2, 45.3);
    process->SetNoFlyZoneMask(false);
    EXPECT_TRUE(waitFor([&] { return hover.Text().isEmpty(); }, 5000));
    process->SetNoFlyZoneMask(true);
    over(60.2, 45.3);
    viewer->getManipulator()->setViewpoint(Straight(60.3, 45.3, 80000.0), 0.0);
    EXPECT_TRUE(waitFor([&] { return hover.Text().isEmpty(); }, 5000)) << "the camera moved on";

    viewer->getManipulator()->setViewpoint(Straight(60.2, 45.3, 400000.0), 0.0);
    process->SetCurrViewPort(Straight(60.2, 45.3, 400000.0));
    EXPECT_TRUE(waitFor([&] { return process->ShownZonesAt(60.2, 45.3).isEmpty(); }, 20000));
    EXPECT_EQ(over(60.2, 45.3), QString()) << "so far away it is not drawn";
}

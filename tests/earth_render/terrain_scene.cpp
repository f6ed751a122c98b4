#include "OffscreenGlobe.h"

#include <gtest/gtest.h>

#include <osg/Math>
#include <osgEarth/ElevationLayer>
#include <osgEarth/ElevationQuery>
#include <osgEarth/GeoData>
#include <osgEarth/ImageLayer>
#include <osgEarth/Map>
#include <osgEarth/MapNode>
#include <osgEarth/Terrain>
#include <osgEarthDrivers/gdal/GDALOptions>
#include <osgUtil/IntersectionVisitor>
#include <osgUtil/LineSegmentIntersector>

#include <set>

using namespace osgEarth;

namespace {

osgEarth::Drivers::GDALOptions source(const std::string& name)
{
    osgEarth::Drivers::GDALOptions options;
    options.url() = shippedMapFile(name);
    return options;
}

osg::ref_ptr<Map> shippedGlobe()
{
    osg::ref_ptr<Map> map = new Map;
    map->addImageLayer(new ImageLayer("world", source("world.tif")));
    map->addElevationLayer(new ElevationLayer("world heights", source("world_dem_15km.tif")));
    map->addElevationLayer(new ElevationLayer("Trinidad heights", source("trinidad_90m_metres.tif")));
    return map;
}

class TerrainSceneTest : public testing::Test
{
protected:
    static void SetUpTestSuite() { globe = new OffscreenGlobe(shippedGlobe()); }
    static void TearDownTestSuite()
    {
        delete globe;
        globe = nullptr;
    }
    static Terrain& terrain() { return *globe->mapNode().getTerrain(); }
    static OffscreenGlobe* globe;
};

OffscreenGlobe* TerrainSceneTest::globe = nullptr;

double brightness(const osg::Vec3i& colour)
{
    return (colour.x() + colour.y() + colour.z()) / 3.0;
}

} // namespace

TEST_F(TerrainSceneTest, TheWholeGlobeIsDrawnWithoutAHole)
{
    globe->lookAt(10.0, 20.0, 0.0, 0.0, -90.0, 3.0 * 6378137.0);
    ASSERT_TRUE(globe->drawUntilComplete());
    // 400 pixels over 30 degrees; the globe's rim is at asin(1/4) from its centre.
    const double radius = std::tan(std::asin(0.25)) / std::tan(osg::DegreesToRadians(15.0)) * 200.0;
    int holes = 0;
    int outside = 0;
    for (int y = 0; y < OffscreenGlobe::kHeight; ++y)
        for (int x = 0; x < OffscreenGlobe::kWidth; ++x) {
            const double r = std::hypot(x + 0.5 - 320.0, y + 0.5 - 200.0);
            if (r < radius - 3.0)
                holes += OffscreenGlobe::isHole(globe->pixel(x, y));
            else if (r > radius + 3.0)
                outside += !OffscreenGlobe::isHole(globe->pixel(x, y));
        }
    EXPECT_EQ(holes, 0);
    EXPECT_EQ(outside, 0);
}

TEST_F(TerrainSceneTest, MountainsFromNearbyShowNoCrackBetweenTiles)
{
    globe->lookAt(-105.0, 37.4, 2500.0, 30.0, -35.0, 20e3);
    ASSERT_TRUE(globe->drawUntilComplete());
    int holes = 0;
    std::set<int> tones;
    for (int y = 0; y < 250; ++y)
        for (int x = 0; x < OffscreenGlobe::kWidth; ++x) {
            const osg::Vec3i colour = globe->pixel(x, y);
            holes += OffscreenGlobe::isHole(colour);
            tones.insert(static_cast<int>(brightness(colour)) / 8);
        }
    EXPECT_EQ(holes, 0);
    EXPECT_GE(tones.size(), 6u) << "relief is told apart by shade";
}

TEST_F(TerrainSceneTest, GroundThatComesIntoViewIsDrawnAtOnceAndThenAsSharpAsEver)
{
    const auto look = [](OffscreenGlobe& at, double heading) {
        at.lookAt(-105.0, 37.4, 2500.0, heading, -40.0, 15e3);
    };
    look(*globe, 0.0);
    ASSERT_TRUE(globe->drawUntilComplete());
    for (const double heading : {15.0, 30.0, 60.0, 90.0, 180.0}) {
        look(*globe, heading);
        globe->frame();
        int holes = 0;
        for (int y = 0; y < OffscreenGlobe::kHeight; y += 2)
            for (int x = 0; x < OffscreenGlobe::kWidth; x += 2)
                holes += OffscreenGlobe::isHole(globe->pixel(x, y));
        EXPECT_EQ(holes, 0) << "heading " << heading;
    }
    ASSERT_TRUE(globe->drawUntilComplete());

    OffscreenGlobe fresh(shippedGlobe());
    look(fresh, 180.0);
    ASSERT_TRUE(fresh.drawUntilComplete());
    int different = 0;
    for (int y = 0; y < OffscreenGlobe::kHeight; ++y)
        for (int x = 0; x < OffscreenGlobe::kWidth; ++x)
            different += globe->pixel(x, y) != fresh.pixel(x, y);
    EXPECT_EQ(different, 0) << "pixels that depend on the way the camera came";
}

TEST_F(TerrainSceneTest, HeightsAreTheSourcesOnceTheFinestTileIsThere)
{
    globe->lookAt(-105.0, 37.4, 2500.0, 0.0, -90.0, 1500.0);
    ASSERT_TRUE(globe->drawUntilComplete());
    ElevationQuery sources(globe->mapNode().getMap());
    for (int i = 0; i < 200; ++i) {
        const double longitude = -105.002 + 2e-5 * i;
        const double latitude = 37.3985 + 1.5e-5 * i;
        double height = 0.0;
        double hae = 0.0;
        ASSERT_TRUE(terrain().getHeight(terrain().getSRS(), longitude, latitude, &height, &hae));
        double expected = 0.0;
        ASSERT_TRUE(sources.getElevation(GeoPoint(terrain().getSRS(), longitude, latitude), expected));
        EXPECT_NEAR(height, expected, 0.1);
        EXPECT_EQ(height, hae);
    }
}

TEST_F(TerrainSceneTest, PicksLieOnTheDrawnSurfaceUnderTheMouse)
{
    const struct
    {
        double pitch, range;
    } views[] = {{-90.0, 4.0 * 6378137.0}, {-60.0, 350e3}, {-30.0, 20e3}, {-60.0, 2500.0}};
    for (const auto& view : views) {
        globe->lookAt(-105.0, 37.4, 2500.0, 20.0, view.pitch, view.range);
        ASSERT_TRUE(globe->drawUntilComplete());
        const osg::Camera& camera = *globe->viewer().getCamera();
        const osg::Matrixd toWindow = camera.getViewMatrix() * camera.getProjectionMatrix() *
                                      camera.getViewport()->computeWindowMatrix();
        const osg::Vec3d eye = osg::Matrixd::inverse(camera.getViewMatrix()).getTrans();
        int hits = 0;
        for (int x = 20; x < OffscreenGlobe::kWidth; x += 60)
            for (int y = 20; y < OffscreenGlobe::kHeight; y += 60) {
                osg::Vec3d world;
                const bool hit =
                    terrain().getWorldCoordsUnderMouse(&globe->viewer(), float(x), float(y), world);
                EXPECT_EQ(hit, !OffscreenGlobe::isHole(globe->pixel(x, y)))
                    << x << ", " << y << " range " << view.range;
                if (!hit)
                    continue;
                ++hits;
                const osg::Vec3d window = world * toWindow;
                EXPECT_NEAR(window.x(), x, 0.5);
                EXPECT_NEAR(window.y(), y, 0.5);
                EXPECT_LT((world - eye).length(), 1e8);

                const osg::ref_ptr<osgUtil::LineSegmentIntersector> sight =
                    new osgUtil::LineSegmentIntersector(eye, eye + (world - eye) * 2.0);
                osgUtil::IntersectionVisitor visitor(sight);
                terrain().accept(visitor);
                ASSERT_TRUE(sight->containsIntersections());
                EXPECT_LT((sight->getFirstIntersection().getWorldIntersectPoint() - world).length(), 0.01);
            }
        EXPECT_GT(hits, 10) << "range " << view.range;
    }
}

TEST_F(TerrainSceneTest, NewTilesAreToldOnTheUpdateTraversal)
{
    struct Listener : public TerrainCallback
    {
        void onTileAdded(const TileKey& key, osg::Node* tile, TerrainCallbackContext& context) override
        {
            levels.insert(key.getLOD());
            double height = 0.0;
            const osg::Vec3d centre = key.getExtent().getCentroid();
            heightsKnown += context.getTerrain()->getHeight(tile, key.getExtent().getSRS(), centre.x(),
                                                            centre.y(), &height);
            ++calls;
        }
        std::set<unsigned> levels;
        int calls = 0;
        int heightsKnown = 0;
    };
    globe->lookAt(150.0, -35.0, 0.0, 0.0, -90.0, 3e7);
    ASSERT_TRUE(globe->drawUntilComplete());
    osg::ref_ptr<Listener> all = new Listener;
    terrain().addTerrainCallback(all);
    globe->lookAt(150.0, -35.0, 0.0, 0.0, -90.0, 2e6);
    ASSERT_TRUE(globe->drawUntilComplete());
    EXPECT_GT(all->calls, 4);
    EXPECT_EQ(all->heightsKnown, all->calls);
    EXPECT_GE(all->levels.size(), 2u);
    terrain().removeTerrainCallback(all);
}

TEST_F(TerrainSceneTest, HidingALayerRepaintsTheGroundInPlace)
{
    globe->lookAt(25.0, 10.0, 0.0, 0.0, -90.0, 5e6);
    ASSERT_TRUE(globe->drawUntilComplete());
    const osg::Vec3i before = globe->pixel(320, 200);
    ImageLayer* world = globe->mapNode().getMap()->getImageLayerAt(0);
    world->setVisible(false);
    ASSERT_TRUE(globe->drawUntilComplete());
    const osg::Vec3i hidden = globe->pixel(320, 200);
    EXPECT_FALSE(OffscreenGlobe::isHole(hidden));
    EXPECT_GT(hidden.z(), hidden.x()) << "plain ground is bluish";
    EXPECT_NE(before, hidden);
    world->setVisible(true);
    ASSERT_TRUE(globe->drawUntilComplete());
    EXPECT_EQ(globe->pixel(320, 200), before);
}

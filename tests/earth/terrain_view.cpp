#include "MadeUpGround.h"
#include "terrain/TerrainView.h"
#include "terrain/TileContent.h"
#include "terrain/TileShade.h"

#include <gtest/gtest.h>
#include <osg/Math>
#include <osgEarth/ElevationLayer>
#include <osgEarth/ImageLayer>
#include <osgEarth/Map>
#include <osgEarth/Registry>
#include <osgEarthDrivers/gdal/GDALOptions>
#include <random>

using namespace osgEarth;

namespace {

constexpr double kWindowHeight = 800.0;

/// Straight down on (0, 0) from `altitude` metres, north up.
TerrainView downFrom(double altitude)
{
    const osg::Vec3d ground = geodeticToWorld(0.0, 0.0, 0.0);
    const osg::Matrixd look =
        osg::Matrixd::lookAt(geodeticToWorld(0.0, 0.0, altitude), ground, osg::Vec3d(0, 0, 1));
    return {look, osg::Matrixd::perspective(30.0, 1.6, 1.0, 10000.0), kWindowHeight};
}

TileBulk ballAt(double longitude, double latitude, double radius)
{
    const osg::Vec3d centre = geodeticToWorld(longitude, latitude, 0.0);
    return {{centre, radius}, occludeeOf(centre, {osg::Vec3f()}, radius), {}, 0.0, 0.0};
}

} // namespace

TEST(TerrainView, IsNearWhatTheWindowShowsAndALittleBeyond)
{
    // From 100 km the window shows 0.24 degrees to the north and 0.385 degrees to the east.
    const struct
    {
        const char* name;
        double longitude, latitude, radius;
        bool near;
    } rows[] = {
        {"in the middle", 0.0, 0.0, 1000.0, true},          {"across the rim", 0.0, 0.25, 5000.0, true},
        {"just beyond the rim", 0.0, 0.2875, 4500.0, true}, {"well beyond the rim", 0.0, 0.40, 4500.0, false},
        {"far to the east", 1.0, 0.0, 4500.0, false},       {"behind the Earth", 180.0, 0.0, 4500.0, false}};
    for (const auto& row : rows)
        EXPECT_EQ(downFrom(100e3).isNear(ballAt(row.longitude, row.latitude, row.radius)), row.near)
            << row.name;
    EXPECT_TRUE(TerrainView().isNear(ballAt(40.0, -20.0, 10.0))) << "before the first frame";
}

TEST(TileContent, ATileThatNobodySeesShowsItsParentsPicture)
{
    const ScratchFolder folder;
    RasterRecipe recipe;
    recipe.value = [](int, int column, int) { return column % 2 ? 200.0 : 50.0; };
    writeRaster(folder.path("stripes.tif"), recipe);
    Drivers::GDALOptions options;
    options.url() = folder.path("stripes.tif");
    osg::ref_ptr<Map> map = new Map;
    map->addImageLayer(new ImageLayer("stripes", options));
    const TileSources sources(*map);
    const auto never = [](const TileContent&) { return false; };
    const auto always = [](const TileContent&) { return true; };

    const TileKey key = Registry::instance()->getGlobalGeodeticProfile()->createTileKey(0.5, 0.5, 7);
    const auto parent = makeTileContent(key, sources, std::nullopt, never, 1);
    EXPECT_FALSE(parent->borrowsPicture) << "there is none to borrow";
    TileTexture texture = parent->texture;
    texture.refinable = true;

    const TileKey quarter = key.createChildKey(0);
    const auto unseen = makeTileContent(quarter, sources, texture, never, 1);
    EXPECT_TRUE(unseen->borrowsPicture);
    EXPECT_EQ(unseen->texture.state, texture.state);
    EXPECT_EQ(unseen->texture.bounds.width(), parent->bounds.width());
    EXPECT_TRUE(unseen->refinable);

    const auto seen = makeTileContent(quarter, sources, texture, always, 1);
    EXPECT_FALSE(seen->borrowsPicture);
    EXPECT_NE(seen->texture.state, texture.state);
    EXPECT_EQ(seen->texture.bounds.width(), seen->bounds.width());

    texture.refinable = false;
    const auto finest = makeTileContent(quarter, sources, texture, always, 1);
    EXPECT_FALSE(finest->borrowsPicture) << "the parent's picture is all there is";
    EXPECT_EQ(finest->texture.state, texture.state);
}

/// An eye that is lower than a mountain beside the tile is not at its ground.
TEST(TileContent, AMountainBesideATileBringsItNoNearer)
{
    const ScratchFolder folder;
    RasterRecipe recipe;
    recipe.type = GDT_Float32;
    recipe.value = [](int, int column, int row) {
        return column > 26 ? 3000.0 : 10.0 * ((column + row) % 2);
    };
    writeRaster(folder.path("mountain.tif"), recipe);
    Drivers::GDALOptions options;
    options.url() = folder.path("mountain.tif");
    osg::ref_ptr<Map> map = new Map;
    map->addElevationLayer(new ElevationLayer("mountain", options));
    const auto tileAt = [&](double latitude) {
        const TileKey key =
            Registry::instance()->getGlobalGeodeticProfile()->createTileKey(0.3, latitude, 11);
        return makeTileContent(
            key, TileSources(*map), std::nullopt, [](const TileContent&) { return false; }, 1);
    };
    TerrainView view = downFrom(1000.0);
    for (const double latitude : {0.3, 0.02}) {
        const auto plain = tileAt(latitude);
        view.eyeGeodetic.set(0.3, latitude, 1000.0);
        view.eye = geodeticToWorld(0.3, latitude, 1000.0);
        EXPECT_GT(view.excessOf(*plain), 0.0) << latitude;
        EXPECT_LT(view.excessOf(*plain), 20.0) << latitude << ": 1000 m away, not at it";
        // Beyond the end of a source its heights are carried on; inside nothing else is felt.
        EXPECT_EQ(plain->bulk.highest > 1000.0, latitude < 0.1) << latitude;
    }
}

TEST(TileContent, KnowsNoHeightInAGapOfItsSource)
{
    const ScratchFolder folder;
    RasterRecipe recipe;
    recipe.type = GDT_Float32;
    recipe.hasNoData = true;
    recipe.noData = -9999.0;
    recipe.value = [](int, int column, int) { return column < 32 ? -9999.0 : 500.0; };
    writeRaster(folder.path("half.tif"), recipe);
    Drivers::GDALOptions driver;
    driver.url() = folder.path("half.tif");
    const osg::ref_ptr<Map> map = new Map;
    map->addElevationLayer(new ElevationLayer(ElevationLayerOptions("half", driver)));
    const TileSources sources(*map);
    const Profile* profile = Registry::instance()->getGlobalGeodeticProfile();
    for (const unsigned level : {6u, 12u})
        for (const double longitude : {0.2, 0.8, 1.4}) {
            const auto tile = makeTileContent(
                profile->createTileKey(longitude, 0.5, level), sources, std::nullopt,
                [](const TileContent&) { return false; }, 1);
            EXPECT_EQ(tile->knowsHeightAt(longitude, 0.5), longitude == 0.8) << level << ' ' << longitude;
        }
}

/// What does not lie in a tile's bounds is culled with the tile, and a hole is seen.
TEST(TileContent, BoundsHoldWhatDeeperTilesShow)
{
    const auto expectHeld = [](const char* name, const Map& map) {
        const TileSources sources(map);
        const auto never = [](const TileContent&) { return false; };
        const auto make = [&](const TileKey& key) {
            return makeTileContent(key, sources, std::nullopt, never, 1);
        };
        std::mt19937 random{11};
        const auto aside = [&] { return std::uniform_real_distribution<double>(-0.14, 0.14)(random); };
        for (int tile = 0; tile < 20; ++tile) {
            const double longitude = kMadeUpLongitude + aside(), latitude = kMadeUpLatitude + aside();
            const Profile* profile = Registry::instance()->getGlobalGeodeticProfile();
            const auto parent = make(profile->createTileKey(longitude, latitude, 13));
            const auto child = make(profile->createTileKey(longitude, latitude, 15));
            const osg::BoundingSphered& bounds = parent->bulk.sphere;
            double beyond = 0.0;
            for (const osg::Vec3f& place : child->mesh.positions)
                beyond = std::max(beyond,
                                  (child->mesh.origin + place - bounds.center()).length() - bounds.radius());
            EXPECT_EQ(beyond, 0.0) << name << " at " << longitude << ", " << latitude;
            EXPECT_GE(child->mesh.minHeight, parent->bulk.lowest - 50.0) << name;
            EXPECT_LE(child->mesh.maxHeight, parent->bulk.highest + 50.0) << name;
            EXPECT_GT(parent->geometricError, 0.1) << "else the child is never asked for, " << name;
        }
    };
    for (const MadeUpGround& ground : madeUpGrounds()) {
        const ScratchFolder folder;
        const osg::ref_ptr<Map> map = new Map;
        ground.write(folder, *map);
        expectHeld(ground.name, *map);
        // The same again, the finer sources on deeper tiles only.
        osg::ref_ptr<Map> deeper = new Map;
        ElevationLayerVector layers;
        map->getElevationLayers(layers);
        for (const auto& layer : layers) {
            ElevationLayerOptions options = layer->getElevationLayerOptions();
            if (layer->getName() != "world")
                options.minLevel() = 14u;
            deeper->addElevationLayer(new ElevationLayer(options));
        }
        expectHeld((std::string(ground.name) + " from level 14").c_str(), *deeper);
    }
}

TEST(TileShade, IsSmoothBelowTheResolutionOfItsSourceAndAlikeOnAllLevelsThere)
{
    const ScratchFolder folder;
    RasterRecipe recipe; // 64 cells a degree
    recipe.type = GDT_Float32;
    recipe.value = [](int, int column, int row) { return 300.0 * ((column * 7 + row * 5) % 4); };
    writeRaster(folder.path("rough.tif"), recipe);
    Drivers::GDALOptions options;
    options.url() = folder.path("rough.tif");
    const osg::ref_ptr<Map> map = new Map;
    map->addElevationLayer(new ElevationLayer("rough", options));
    const ElevationLayerVector layers = TileSources(*map).elevations;
    const auto rowOf = [&](const TileKey& key, float v) {
        const TileBounds bounds = boundsOf(key);
        HeightRaster raster(129, 1);
        const SamplePlaces places(bounds, raster);
        const TerrainHeights heights(layers, key.getExtent(), 1e-6);
        HeightRaster known(129, 1);
        heights.sample(places.longitudes, places.latitudes, &raster.at(-1, -1), &known.at(-1, -1));
        std::vector<float> factors(257);
        shadeOf(key, raster, finestCellIn(bounds, heights), layers).factorsAlong(v, factors);
        return factors;
    };
    const Profile* profile = Registry::instance()->getGlobalGeodeticProfile();
    // From tiles of 22 cells to those that are a sixth of a cell.
    for (const unsigned level : {9u, 12u, 14u, 16u}) {
        const TileKey key = profile->createTileKey(0.5001, 0.5001, level);
        const std::vector<float> row = rowOf(key, 0.25f);
        const auto [least, most] = std::minmax_element(row.begin(), row.end());
        EXPECT_GT(*most - *least, 1e-3f) << level << ": there are slopes";
        float jump = 0.0f;
        for (std::size_t i = 1; i < row.size(); ++i)
            jump = std::max(jump, std::abs(row[i] - row[i - 1]));
        const double cells = boundsOf(key).width() * 64.0;
        EXPECT_LT(jump, 0.02 + 0.01 * cells) << level;
        const unsigned x = key.getTileX(), y = key.getTileY();
        EXPECT_NEAR(row.back(), rowOf(TileKey(level, x + 1, y, profile), 0.25f).front(), 1e-3f) << level;
        const std::vector<float> below = rowOf(TileKey(level + 1, 2 * x, 2 * y + 1, profile), 0.5f);
        for (std::size_t i = 0; level > 9 && i < below.size(); i += 2)
            EXPECT_NEAR(below[i], row[i / 2], 1e-3f) << level << ' ' << i;
    }
}

#include <osgEarth/Map>
#include <osgEarthDrivers/gdal/GDALOptions>

#include "layers/LayerHeights.h"
#include "RasterMaker.h"
#include "sources/HeightGrid.h"

#include <cmath>
#include <gdal_priv.h>
#include <gtest/gtest.h>
#include <limits>
#include <random>

using namespace osgEarth;

namespace {
osg::ref_ptr<ElevationLayer> openHeights(const std::string& path, Drivers::GDALOptions options = {})
{
    options.url() = URI(path);
    osg::ref_ptr<ElevationLayer> layer = new ElevationLayer("Heights", options);
    EXPECT_TRUE(layer->open().isOK()) << layer->getStatus().message();
    return layer;
}

GeoExtent box(double west, double south, double east, double north)
{
    return {SpatialReference::get("wgs84"), west, south, east, north};
}

// The whole raster, and its own bilinear answer, written straight from the definition.
struct Reference
{
    explicit Reference(const std::string& path)
    {
        const std::unique_ptr<GDALDataset> d(GDALDataset::Open(path.c_str()));
        d->GetGeoTransform(place);
        width = d->GetRasterXSize();
        height = d->GetRasterYSize();
        samples.resize(static_cast<size_t>(width * height));
        EXPECT_EQ(d->GetRasterBand(1)->RasterIO(GF_Read, 0, 0, width, height, samples.data(), width, height,
                                                GDT_Float32, 0, 0, nullptr),
                  CE_None);
    }
    double at(double lon, double lat) const
    {
        const double c = (lon - place[0]) / place[1] - 0.5, r = (lat - place[3]) / place[5] - 0.5;
        const int c0 = static_cast<int>(std::floor(c)), r0 = static_cast<int>(std::floor(r));
        double sum = 0.0;
        for (int i = 0; i < 2; ++i)
            for (int k = 0; k < 2; ++k) {
                const double w = (k ? c - c0 : 1 - c + c0) * (i ? r - r0 : 1 - r + r0);
                sum += w * static_cast<double>(samples[static_cast<size_t>((r0 + i) * width + c0 + k)]);
            }
        return sum;
    }
    double place[6];
    int width, height;
    std::vector<float> samples;
};
} // namespace

TEST(HeightCells, GiveBackWhatWentIn)
{
    const float hole = std::nanf("");
    const std::vector<std::vector<float>> cases{
        {-32767.0f, -1.0f, 0.0f, hole, 32767.0f}, // all of 16 bits
        {-32768.0f, hole},                        // one less
        {32768.0f, 1.0f},                         // one more
        {0.5f, hole, 1.0f},
        {std::numeric_limits<float>::infinity(), 1.0f},
    };
    for (const std::vector<float>& heights : cases) {
        const HeightCells cells(heights);
        ASSERT_EQ(cells.size(), heights.size());
        for (std::size_t i = 0; i < heights.size(); ++i)
            EXPECT_TRUE(std::isnan(heights[i]) ? std::isnan(cells[i]) : cells[i] == heights[i])
                << heights[i] << " became " << cells[i];
    }
}

TEST(HeightWindow, IsTheSourcesOwnBilinearInterpolation)
{
    const std::string path = AX_RESOURCES "/map/trinidad_90m_metres.tif";
    const auto layer = openHeights(path);
    const Reference reference(path);
    std::mt19937 random(7);
    std::uniform_real_distribution<double> lon(-105.95, -104.05), lat(37.05, 37.95);
    for (int n = 0; n < 40; ++n) {
        const double x = lon(random), y = lat(random);
        const auto window = readHeightWindow(*layer, box(x - 0.01, y - 0.01, x + 0.01, y + 0.01), 0.0);
        ASSERT_TRUE(window);
        for (double dx : {-0.01, -0.0037, 0.0, 0.0061, 0.01})
            for (double dy : {-0.01, 0.0029, 0.01}) {
                const auto height = window->heightAt(x + dx, y + dy);
                ASSERT_TRUE(height) << x + dx << " " << y + dy;
                EXPECT_NEAR(*height, reference.at(x + dx, y + dy), 1e-3);
            }
    }
}

TEST(HeightWindow, NeighbouringWindowsAgreeOnTheirCommonEdgeAtEveryResolution)
{
    const auto layer = openHeights(AX_RESOURCES "/map/trinidad_90m_metres.tif");
    for (double cell : {0.0, 0.001, 0.003, 0.0051, 0.02, 0.1}) {
        const auto west = readHeightWindow(*layer, box(-105.3, 37.2, -105.0, 37.5), cell);
        const auto east = readHeightWindow(*layer, box(-105.0, 37.2, -104.7, 37.5), cell);
        ASSERT_TRUE(west && east);
        EXPECT_LE(west->cellSizeDegrees(), std::max(cell, layer->getDataResolution() * 1.01))
            << "no coarser than asked";
        for (double lat = 37.2; lat <= 37.5; lat += 0.0137) {
            const auto a = west->heightAt(-105.0, lat), b = east->heightAt(-105.0, lat);
            ASSERT_TRUE(a && b);
            EXPECT_NEAR(*a, *b, 1e-3) << cell;
        }
    }
}

TEST(HeightWindow, CoarseWindowIsAnAverageNotASample)
{
    const ScratchFolder folder;
    RasterRecipe recipe;
    recipe.width = recipe.height = 64;
    recipe.type = GDT_Float32;
    recipe.value = [](int, int column, int row) { return (column + row) % 2 ? 100.0 : 0.0; };
    writeRaster(folder.path("checks.tif"), recipe);
    const auto layer = openHeights(folder.path("checks.tif"));
    const auto window = readHeightWindow(*layer, box(0.2, 0.2, 0.8, 0.8), 8.0 / 64.0);
    ASSERT_TRUE(window);
    EXPECT_NEAR(window->heightAt(0.5, 0.5).value_or(-1.0), 50.0, 0.01);
    EXPECT_NEAR(window->cellSizeDegrees(), 8.0 / 64.0, 1e-12);
}

TEST(HeightWindow, WorldRasterIsContinuousAcrossTheAntimeridian)
{
    const ScratchFolder folder;
    RasterRecipe recipe;
    recipe.width = 360;
    recipe.height = 180;
    recipe.place = {-180, 1, 0, 90, 0, -1};
    recipe.type = GDT_Float32;
    recipe.value = [](int, int column, int row) {
        return std::cos((column + 0.5) / 57.29577951308232) * 1000 + row;
    };
    writeRaster(folder.path("world.tif"), recipe);
    const auto layer = openHeights(folder.path("world.tif"));
    const auto west = readHeightWindow(*layer, box(170, 0, 180, 10), 0.0);
    const auto east = readHeightWindow(*layer, box(-180, 0, -170, 10), 0.0);
    const auto both = readHeightWindow(*layer, box(170, 0, -170, 10), 0.0);
    ASSERT_TRUE(west && east && both);
    for (double lat : {0.25, 5.0, 9.9}) {
        EXPECT_NEAR(west->heightAt(180.0, lat).value(), east->heightAt(-180.0, lat).value(), 1e-3);
        EXPECT_NEAR(both->heightAt(179.7, lat).value(), west->heightAt(179.7, lat).value(), 1e-3);
        EXPECT_NEAR(both->heightAt(-179.7, lat).value(), east->heightAt(-179.7, lat).value(), 1e-3);
        EXPECT_FALSE(west->heightAt(-100.0, lat));
    }
}

TEST(HeightWindow, HolesAreHolesWhoeverDeclaresThem)
{
    struct
    {
        const char* name;
        GDALDataType type;
        double hole;
        bool inFile, inMap;
    } const rows[] = {{"file", GDT_Int16, -9999, true, false},
                      {"map", GDT_Int16, -777, false, true},
                      {"nan", GDT_Float32, std::nan(""), false, false},
                      {"fill", GDT_Float32, -3.4e38, false, false},
                      {"srtm", GDT_Int16, -32768, false, false}};
    for (const auto& row : rows) {
        const ScratchFolder folder;
        RasterRecipe recipe;
        recipe.type = row.type;
        recipe.hasNoData = row.inFile;
        recipe.noData = row.hole;
        recipe.value = [&](int, int column, int) { return column < 32 ? 250.0 : row.hole; };
        writeRaster(folder.path("h.tif"), recipe);
        Drivers::GDALOptions options;
        if (row.inMap)
            options.noDataValue() = static_cast<float>(row.hole);
        const auto layer = openHeights(folder.path("h.tif"), options);
        for (double cell : {0.0, 0.1}) {
            const auto window = readHeightWindow(*layer, box(0, 0, 1, 1), cell);
            ASSERT_TRUE(window) << row.name;
            EXPECT_NEAR(window->heightAt(0.2, 0.5).value_or(-1), 250.0, 1e-9) << row.name << " " << cell;
            EXPECT_FALSE(window->heightAt(0.8, 0.5)) << row.name << " " << cell;
        }
        EXPECT_FALSE(readHeightWindow(*layer, box(0.7, 0.2, 0.9, 0.4), 0.0))
            << row.name << ": nothing but holes";
    }
}

TEST(HeightWindow, UtmHeightsInFeetAndScaled)
{
    const ScratchFolder folder;
    RasterRecipe recipe;
    recipe.srs = "EPSG:32613";
    recipe.place = {499000, 100, 0, 4141000, 0, -100};
    recipe.type = GDT_Float32;
    recipe.value = [](int, int column, int row) { return 1000.0 + column * 10.0 + row; };
    writeRaster(folder.path("utm.tif"), recipe);
    const auto layer = openHeights(folder.path("utm.tif"));
    const SpatialReference *wgs84 = SpatialReference::get("wgs84"),
                           *utm = SpatialReference::get("epsg:32613");
    EXPECT_NEAR(layer->getDataResolution(), 100.0 / 111320.0, 1e-5);
    osg::Vec3d p;
    ASSERT_TRUE(utm->transform(osg::Vec3d(499000 + 20.5 * 100, 4141000 - 30.5 * 100, 0), wgs84, p));
    EXPECT_TRUE(layer->getDataExtent().contains(p.x(), p.y()));
    const auto window =
        readHeightWindow(*layer, box(p.x() - 0.01, p.y() - 0.01, p.x() + 0.01, p.y() + 0.01), 0.0);
    ASSERT_TRUE(window);
    EXPECT_NEAR(window->heightAt(p.x(), p.y()).value_or(-1), 1230.0, 1e-3);
    EXPECT_FALSE(readHeightWindow(*layer, box(0, 0, 1, 1), 0.0)) << "nothing there";
}

TEST(HeightWindow, OutsideAndRim)
{
    const ScratchFolder folder;
    RasterRecipe recipe;
    recipe.type = GDT_Float32;
    recipe.value = [](int, int column, int) { return column; };
    writeRaster(folder.path("h.tif"), recipe);
    const auto layer = openHeights(folder.path("h.tif"));
    const auto window = readHeightWindow(*layer, box(-5, -5, 5, 5), 0.0);
    ASSERT_TRUE(window);
    EXPECT_NEAR(window->heightAt(0.0, 0.5).value_or(-1), 0.0, 1e-9) << "half a sample of rim counts";
    EXPECT_NEAR(window->heightAt(1.0, 0.5).value_or(-1), 63.0, 1e-9);
    EXPECT_FALSE(window->heightAt(-0.001, 0.5));
    EXPECT_FALSE(window->heightAt(1.001, 0.5));
    EXPECT_FALSE(window->heightAt(std::nan(""), 0.5));
    const osg::ref_ptr<ProgressCallback> stopped = new ProgressCallback;
    stopped->cancel();
    EXPECT_FALSE(readHeightWindow(*layer, box(0, 0, 1, 1), 0.0, stopped.get()));
}

#include "layers/TerrainHeights.h"
#include "MadeUpGround.h"

#include <gtest/gtest.h>

#include <cmath>
#include <osg/Math>
#include <osgEarth/ElevationLayer>
#include <osgEarth/ElevationQuery>
#include <osgEarth/SpatialReference>
#include <osgEarthDrivers/gdal/GDALOptions>
#include <random>

using namespace osgEarth;

/// Each made-up ground as a map, and random places on it.
class OneGround : public testing::TestWithParam<MadeUpGround>
{
protected:
    OneGround() { GetParam().write(folder, *map); }
    double within(double from, double to) { return std::uniform_real_distribution<double>(from, to)(random); }
    TerrainHeights around(double longitude, double latitude, double degrees, double resolution) const
    {
        return {TerrainHeights::layersOf(*map),
                GeoExtent(SpatialReference::get("wgs84"), longitude - degrees, latitude - degrees,
                          longitude + degrees, latitude + degrees),
                resolution};
    }

    ScratchFolder folder;
    osg::ref_ptr<Map> map = new Map;
    std::mt19937 random{7};
};

TEST_P(OneGround, HasNoWallThatNoSourceHas)
{
    const TerrainHeights ground = around(kMadeUpLongitude, kMadeUpLatitude, 0.2, 0.0);
    constexpr double kStep = 4e-5;
    const double metres = kStep * 111320.0;
    double steepest = 0.0;
    std::string where;
    for (int line = 0; line < 120; ++line) {
        const double heading = within(0.0, 2.0 * osg::PI);
        const double east = kStep * std::sin(heading) / std::cos(osg::DegreesToRadians(kMadeUpLatitude));
        const double north = kStep * std::cos(heading);
        double x = kMadeUpLongitude + within(-0.15, 0.15), y = kMadeUpLatitude + within(-0.15, 0.15);
        double last = ground.at(x, y);
        for (int i = 0;
             i < 3000 && std::abs(x - kMadeUpLongitude) < 0.19 && std::abs(y - kMadeUpLatitude) < 0.19; ++i) {
            x += east;
            y += north;
            const double height = ground.at(x, y);
            const double slope = std::abs(height - last) / metres;
            if (slope > steepest) {
                steepest = slope;
                where = std::to_string(x) + ", " + std::to_string(y) + ": " + std::to_string(last) + " to " +
                        std::to_string(height);
            }
            last = height;
        }
    }
    EXPECT_LT(steepest, GetParam().steepest + 3.0) << where;
    EXPECT_GT(steepest, 0.3) << "the lines do cross the edges";
}

TEST_P(OneGround, IsTheSameHoweverMuchOfItIsRead)
{
    for (const double resolution : {0.0, 0.002, 0.01}) {
        const TerrainHeights whole = around(kMadeUpLongitude, kMadeUpLatitude, 0.5, resolution);
        for (int tile = 0; tile < 60; ++tile) {
            const double longitude = kMadeUpLongitude + within(-0.2, 0.2);
            const double latitude = kMadeUpLatitude + within(-0.2, 0.2);
            const double size = std::pow(10.0, within(-3.5, -1.0));
            const TerrainHeights part = around(longitude, latitude, size, resolution);
            for (int i = 0; i < 20; ++i) {
                const double x = longitude + within(-size, size), y = latitude + within(-size, size);
                ASSERT_NEAR(part.at(x, y), whole.at(x, y), 1e-3) << x << ", " << y << " of " << size;
            }
            // Unevenly spaced, and more columns than rows: neither can be taken for the other.
            std::vector<double> columns, rows;
            for (double step = -size; step < size; step += within(0.02, 0.2) * size)
                columns.push_back(longitude + step);
            for (double step = -size; step < size; step += within(0.05, 0.5) * size)
                rows.push_back(latitude + step);
            std::vector<float> grid(columns.size() * rows.size());
            std::vector<float> known(grid.size());
            const bool isWhole = part.sample(columns, rows, grid.data(), known.data());
            for (std::size_t i = 0; i < grid.size(); ++i) {
                const double x = columns[i % columns.size()], y = rows[i / columns.size()];
                ASSERT_NEAR(static_cast<double>(grid[i]), part.at(x, y), 1e-3) << x << ", " << y;
                ASSERT_EQ(isWhole || known[i] == 1.0f, part.answerAt(x, y).known) << x << ", " << y;
            }
        }
    }
}

TEST_P(OneGround, IsWhatQueriesAnswer)
{
    const TerrainHeights ground = around(kMadeUpLongitude, kMadeUpLatitude, 0.2, 0.0);
    ElevationQuery query(map);
    int known = 0;
    for (int i = 0; i < 2000; ++i) {
        const double x = kMadeUpLongitude + within(-0.18, 0.18), y = kMadeUpLatitude + within(-0.18, 0.18);
        double height = 0.0;
        const bool answered = query.getElevation(GeoPoint(SpatialReference::get("wgs84"), x, y), height);
        ASSERT_EQ(answered, ground.answerAt(x, y).known) << x << ", " << y;
        if (answered) {
            ASSERT_NEAR(height, ground.at(x, y), 1e-3) << x << ", " << y;
            ++known;
        }
    }
    EXPECT_GT(known, 400);
}

INSTANTIATE_TEST_SUITE_P(MadeUp, OneGround, testing::ValuesIn(madeUpGrounds()),
                         testing::PrintToStringParamName());

/// A fine plane of 1,000 m with a hole over a coarse one of 400 m.
class TwoPlanes : public testing::Test
{
protected:
    void add(const char* name, double west, double north, double cell, int cells, double height, int hole)
    {
        RasterRecipe recipe;
        recipe.type = GDT_Float32;
        recipe.hasNoData = true;
        recipe.noData = -9999.0;
        recipe.width = recipe.height = cells;
        recipe.place = {west, cell, 0.0, north, 0.0, -cell};
        recipe.value = [=](int, int column, int row) {
            return column == hole && row == hole ? recipe.noData : height;
        };
        writeRaster(folder.path(std::string(name) + ".tif"), recipe);
        Drivers::GDALOptions options;
        options.url() = folder.path(std::string(name) + ".tif");
        map->addElevationLayer(new ElevationLayer(name, options));
    }
    double at(double longitude, double latitude) const { return ground.at(longitude, latitude); }

    TwoPlanes()
    {
        add("coarse", 0.0, 50.0, 0.1, 200, 400.0, -1);
        add("fine", 10.0, 41.0, 0.01, 100, 1000.0, 50);
        ground = TerrainHeights(*map, Bounds(5.0, 35.0, 15.0, 45.0), 0.0);
    }

    ScratchFolder folder;
    osg::ref_ptr<Map> map = new Map;
    TerrainHeights ground;
};

TEST_F(TwoPlanes, TheFinerSourceKeepsItsValuesAndTheCoarserMeetsIt)
{
    EXPECT_DOUBLE_EQ(at(10.3, 40.3), 1000.0);
    EXPECT_DOUBLE_EQ(at(10.999, 40.5), 1000.0) << "up to the edge";
    EXPECT_NEAR(at(10.505, 40.495), 1000.0, 20.0) << "a hole of one cell is closed";
    EXPECT_DOUBLE_EQ(at(12.0, 42.0), 400.0);
    EXPECT_DOUBLE_EQ(at(11.7, 40.5), 400.0) << "beyond the reach of the step";
    double last = at(11.0, 40.5);
    EXPECT_NEAR(last, 1000.0, 1.0);
    for (double longitude = 11.002; longitude < 11.7; longitude += 0.002) {
        const double height = at(longitude, 40.5);
        EXPECT_LE(height, last + 1e-6);
        EXPECT_LT(last - height, 25.0) << "no wall at " << longitude;
        last = height;
    }
}

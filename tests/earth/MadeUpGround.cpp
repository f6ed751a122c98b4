#include "MadeUpGround.h"

#include <cmath>
#include <osgEarth/ElevationLayer>
#include <osgEarth/SpatialReference>
#include <osgEarthDrivers/gdal/GDALOptions>

using namespace osgEarth;

namespace {
constexpr double kNoData = -9999.0;

void add(const ScratchFolder& folder, Map& map, const std::string& name, const RasterRecipe& recipe)
{
    writeRaster(folder.path(name + ".tif"), recipe);
    Drivers::GDALOptions options;
    options.url() = folder.path(name + ".tif");
    map.addElevationLayer(new ElevationLayer(name, options));
}

RasterRecipe square(double west, double north, double cell, int cells)
{
    RasterRecipe recipe;
    recipe.width = recipe.height = cells;
    recipe.type = GDT_Float32;
    recipe.hasNoData = true;
    recipe.noData = kNoData;
    recipe.place = {west, cell, 0.0, north, 0.0, -cell};
    return recipe;
}

/// Low rolling land of 0.1 degrees a cell around the whole globe.
void addWorld(const ScratchFolder& folder, Map& map)
{
    RasterRecipe world = square(-180.0, 90.0, 0.1, 3600);
    world.height = 1800;
    world.value = [](int, int column, int row) {
        return 150.0 + 100.0 * std::sin(0.7 * column) * std::cos(0.5 * row);
    };
    add(folder, map, "world", world);
}

/// Hills 6 km and 800 m across, slopes up to a half.
double hills(double east, double north)
{
    return 250.0 * std::sin(east / 950.0) * std::cos(north / 1100.0) +
           20.0 * std::sin(east / 130.0) * std::sin(north / 120.0);
}

void writeAskew(const ScratchFolder& folder, Map& map)
{
    addWorld(folder, map);
    // Its own grid is turned by 25 degrees.
    const double turn = 25.0 * 3.14159265358979 / 180.0, cell = 25.0;
    osg::Vec3d middle;
    SpatialReference::get("wgs84")->transform(osg::Vec3d(kMadeUpLongitude, kMadeUpLatitude, 0.0),
                                              SpatialReference::get("epsg:32632"), middle);
    RasterRecipe fine = square(0.0, 0.0, cell, 500);
    fine.srs = "EPSG:32632";
    const double c = cell * std::cos(turn), s = cell * std::sin(turn);
    fine.place = {middle.x() - 250.0 * (c + s), c, s, middle.y() - 250.0 * (s - c), s, -c};
    fine.value = [](int, int column, int row) { return 1200.0 + hills(25.0 * column, 25.0 * row); };
    add(folder, map, "askew", fine);
}

void writeRagged(const ScratchFolder& folder, Map& map)
{
    addWorld(folder, map);
    RasterRecipe fine = square(kMadeUpLongitude - 0.09, kMadeUpLatitude + 0.09, 0.0003, 600);
    fine.value = [](int, int column, int row) {
        const double x = column - 300.0, y = row - 300.0;
        const double angle = std::atan2(y, x);
        const double rim = 220.0 + 30.0 * std::sin(9.0 * angle) + 12.0 * std::sin(47.0 * angle);
        const bool lake = std::hypot(x - 60.0, y + 40.0) < 25.0;
        return std::hypot(x, y) < rim && !lake ? 2100.0 + hills(24.0 * column, 33.0 * row) : kNoData;
    };
    add(folder, map, "ragged", fine);
}

void writeNeighbours(const ScratchFolder& folder, Map& map)
{
    addWorld(folder, map);
    // Medium ones side by side, one 2,000 m above the other, and a fine one over the corner of both.
    RasterRecipe low = square(kMadeUpLongitude - 0.12, kMadeUpLatitude + 0.06, 0.0008, 150);
    low.value = [](int, int column, int row) { return 300.0 + hills(63.0 * column, 89.0 * row); };
    add(folder, map, "low", low);
    RasterRecipe high = square(kMadeUpLongitude, kMadeUpLatitude + 0.06, 0.0008, 150);
    high.value = [](int, int column, int row) { return 2300.0 + hills(63.0 * column, 89.0 * row); };
    add(folder, map, "high", high);
    RasterRecipe fine = square(kMadeUpLongitude - 0.02, kMadeUpLatitude + 0.08, 0.0001, 400);
    fine.value = [](int, int column, int row) {
        // A diamond.
        return std::abs(column - 200) + std::abs(row - 200) < 190
                   ? 1300.0 + 0.1 * hills(8.0 * column, 11.0 * row)
                   : kNoData;
    };
    add(folder, map, "fine", fine);
}

void writePeaks(const ScratchFolder& folder, Map& map)
{
    // Mountains of 3,500 m over nothing at all.
    RasterRecipe peaks = square(kMadeUpLongitude - 0.1, kMadeUpLatitude + 0.1, 0.0005, 400);
    peaks.value = [](int, int column, int row) {
        double height = 400.0;
        for (const auto& peak : {std::array<double, 3>{120, 130, 3500}, {260, 150, 2500}, {200, 290, 3000}})
            height = std::max(height, peak[2] - 45.0 * std::hypot(0.7 * (column - peak[0]), row - peak[1]));
        return height;
    };
    add(folder, map, "peaks", peaks);
}
} // namespace

const std::vector<MadeUpGround>& madeUpGrounds()
{
    static const std::vector<MadeUpGround> all = {{"askew", writeAskew, 0.6},
                                                  {"ragged", writeRagged, 0.6},
                                                  {"neighbours", writeNeighbours, 0.6},
                                                  {"peaks", writePeaks, 0.9}};
    return all;
}

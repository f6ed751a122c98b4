#include "terrain/TileShade.h"

#include "terrain/TileContent.h"

#include <algorithm>
#include <cmath>

namespace osgEarth {
namespace {
/// Rounding errors, in samples.
constexpr double kSampleHair = 1e-6;

/// Samples of an ancestor that enclose a tile, along one axis.
struct Enclosing
{
    Enclosing(double from, double to, double origin, double step)
        : first(static_cast<int>(std::floor((from - origin) / step + kSampleHair))),
          last(std::max(first + 1, static_cast<int>(std::ceil((to - origin) / step - kSampleHair))))
    {
    }
    int first;
    int last;
};
} // namespace

SamplePlaces::SamplePlaces(const TileBounds& bounds, const HeightRaster& raster)
{
    const double stepX = bounds.width() / (raster.size() - 1);
    const double stepY = bounds.height() / (raster.size() - 1);
    for (int i = -raster.margin(); i < raster.size() + raster.margin(); ++i) {
        double longitude = bounds.west + stepX * i;
        if (longitude > 180.0)
            longitude -= 360.0;
        else if (longitude < -180.0)
            longitude += 360.0;
        longitudes.push_back(longitude);
        latitudes.push_back(std::clamp(bounds.south + stepY * i, -90.0, 90.0));
    }
}

double finestCellIn(const TileBounds& bounds, const TerrainHeights& heights)
{
    constexpr int kSteps = 4;
    double finest = 0.0;
    for (int row = 0; row <= kSteps; ++row)
        for (int column = 0; column <= kSteps; ++column) {
            const double cell = heights
                                    .answerAt(bounds.west + bounds.width() * column / kSteps,
                                              bounds.south + bounds.height() * row / kSteps)
                                    .cell;
            if (cell > 0.0 && (finest <= 0.0 || cell < finest))
                finest = cell;
        }
    return finest;
}

unsigned shadedLevel(const TileKey& key, int samples, double cell)
{
    unsigned level = key.getLOD();
    double step = boundsOf(key).height() / (samples - 1);
    for (; level > 0 && 2.0 * step < cell; --level)
        step *= 2.0;
    return level;
}

ReliefShade shadeOf(const TileKey& key, const HeightRaster& raster, double cell,
                    const ElevationLayerVector& layers)
{
    const TileBounds tile = boundsOf(key);
    const unsigned level = shadedLevel(key, raster.size(), cell);
    if (level == key.getLOD())
        return {tile, raster};
    const TileBounds ancestor = boundsOf(key.createAncestorKey(static_cast<int>(level)));
    const double stepX = ancestor.width() / (raster.size() - 1);
    const double stepY = ancestor.height() / (raster.size() - 1);
    const Enclosing across(tile.west, tile.east, ancestor.west, stepX);
    const Enclosing along(tile.south, tile.north, ancestor.south, stepY);
    HeightRaster samples(across.last - across.first + 1, 1);
    const TileBounds lattice{ancestor.west + stepX * across.first, ancestor.south + stepY * along.first,
                             ancestor.west + stepX * across.last, ancestor.south + stepY * along.last};
    const GeoExtent read(key.getExtent().getSRS(), lattice.west - stepX,
                         std::max(-90.0, lattice.south - stepY), lattice.east + stepX,
                         std::min(90.0, lattice.north + stepY));
    const TerrainHeights heights(layers, read, 0.5 * stepY);
    const SamplePlaces places(lattice, samples);
    HeightRaster known(samples.size(), samples.margin());
    if (!heights.empty())
        heights.sample(places.longitudes, places.latitudes, &samples.at(-1, -1), &known.at(-1, -1));
    return {lattice, samples, tile, tile.height() / (raster.size() - 1)};
}
} // namespace osgEarth

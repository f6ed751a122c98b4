#pragma once
#include "layers/TerrainHeights.h"
#include "terrain/HeightRaster.h"
#include "terrain/ReliefShade.h"

#include <osgEarth/TileKey>

#include <vector>

namespace osgEarth {
/// Longitudes and latitudes, degrees, of a raster's samples over a rectangle, those of the margin too.
struct SamplePlaces
{
    SamplePlaces(const TileBounds& bounds, const HeightRaster& raster);
    std::vector<double> longitudes; ///< within [-180, 180]
    std::vector<double> latitudes;  ///< within [-90, 90]
};

/// Degrees a sample of the finest source that has the say in some of the places looked at all over the tile;
/// 0 where none has.
double finestCellIn(const TileBounds& bounds, const TerrainHeights& heights);

/// Which ancestor's samples lie about as close together as a source's, `cell` degrees: the tile itself down
/// to there. `samples` is how many a tile has along a side, both edges included.
unsigned shadedLevel(const TileKey& key, int samples, double cell);

/// The shade of a tile. Between a source's samples heights are interpolated, so slopes jump from cell to cell
/// there: a tile whose samples are closer together gets the shade of the ancestor that has them as far apart
/// as the source, interpolated. So all tiles below that one, and neighbours, are shaded alike.
///
/// `raster` has the tile's samples, with a margin of one, `cell` is finestCellIn(). Reads heights around the
/// tile from `layers` where the ancestor's are needed; may block.
ReliefShade shadeOf(const TileKey& key, const HeightRaster& raster, double cell,
                    const ElevationLayerVector& layers);
} // namespace osgEarth

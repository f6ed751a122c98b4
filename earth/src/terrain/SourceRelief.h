#pragma once
#include "terrain/HeightRaster.h"

#include <osgEarth/ElevationLayer>

namespace osgEarth {
/// What a map's sources hold inside a tile, told by their overviews, whatever the tile's own samples say.
struct SourceRelief
{
    /// Of the ground, metres; the tile's samples are among it.
    double lowest = 0.0;
    double highest = 0.0;
    /// Whether no deeper tile leaves these two.
    bool exact = true;
    /// Largest distance, metres, of the sources from the tile's samples.
    double unseen = 0.0;
};

/// `layers` come finest first; `cell` is that of the samples, degrees. Any thread; may read a source through.
SourceRelief reliefWithin(const TileBounds& bounds, const HeightRaster& samples, double cell,
                          const ElevationLayerVector& layers);
} // namespace osgEarth

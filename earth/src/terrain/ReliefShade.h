#pragma once
#include "terrain/HeightRaster.h"

#include <vector>

namespace osgEarth {
/// How much lighter or darker relief makes the ground, as a factor for its
/// colour: 1 on level ground, above 1 on slopes that face the light in the
/// north-west, below 1 on those that turn away. The light belongs to the map
/// and not to the sun, so that hills read the same at any hour.
class ReliefShade
{
public:
    /// Needs a raster with a margin of at least one sample.
    ReliefShade(const TileBounds& bounds, const HeightRaster& raster);
    /// The shade of a `tile` within the raster's bounds. Slopes are exaggerated as far as the tile's own
    /// distance of samples, degrees, asks for.
    ReliefShade(const TileBounds& bounds, const HeightRaster& raster, const TileBounds& tile,
                double tileStepDegrees);

    /// Fills in the factors of a row of evenly spaced places, at least two, from
    /// the tile's west edge to its east edge, v (0 to 1) from its south edge; bilinear.
    void factorsAlong(float v, std::vector<float>& factors) const;
    /// Whether the tile is level throughout, so that every factor is 1.
    bool isLevel() const { return _level; }

private:
    int _size;
    float _firstColumn, _columns, _firstRow, _rows; ///< of the tile, in samples
    bool _level = true;
    std::vector<float> _factors;
};
} // namespace osgEarth

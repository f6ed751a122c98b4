#pragma once
#include <memory>
#include <osgEarth/Bounds>
#include <osgEarth/Progress>
#include <vector>

namespace osgEarth {
class HeightWindow;
class Map;

/// A map's ground heights in one rectangle, read once and then fast to ask.
/// Immutable after construction, so any thread may ask.
class TerrainHeights
{
public:
    /// Knows no heights: 0 everywhere.
    TerrainHeights() = default;
    /// Reads what the map's elevation layers have in a box of longitudes and
    /// latitudes, at about the resolution given (degrees a sample). May block.
    TerrainHeights(const Map& map, const Bounds& lonLat, double resolution,
                   ProgressCallback* progress = nullptr);

    /// Metres above the ellipsoid by the topmost layer that has a height there; 0 where none has.
    double at(double lonDeg, double latDeg) const;

private:
    std::vector<std::shared_ptr<const HeightWindow>> _windows; ///< the ones to ask first come first
};
} // namespace osgEarth

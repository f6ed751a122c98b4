#pragma once
#include <memory>
#include <osgEarth/Bounds>
#include <osgEarth/ElevationLayer>
#include <osgEarth/GeoData>
#include <osgEarth/Progress>
#include <vector>

namespace osgEarth {
class HeightWindow;
class Map;

/// A map's ground heights in one rectangle, read once and then fast to ask:
/// the one rule by which several sources become one ground. Tiles are drawn by
/// it, shapes clamped, and queries answered.
///
/// The finest source with valid cells at a place has the say there, and keeps
/// its own values up to the edge of its valid cells. Beyond that edge its
/// heights are carried on, the farther the coarser, and fade into what the
/// coarser sources say: half of the step is gone after half a cell of these, or
/// after 0.8 times the height of the step where that is more, and nothing is
/// left after three times as much, or 1.25 times the height. So the step between
/// two surveys becomes a slope of 1.6 to one along a straight edge, and of less
/// than three to one at a corner, beside the sources' own slope; never a wall.
/// Where no source has a value the ground is the ellipsoid.
///
/// Immutable after construction, so any thread may ask.
class TerrainHeights
{
public:
    struct Answer
    {
        double height = 0.0;
        /// Degrees a sample of the source that has the say; in between where two are blended, 0 where none
        /// is.
        double cell = 0.0;
        /// Whether some source has a value of its own there.
        bool known = false;
    };

    /// The layers of a map that have a say, finest first; of equals the upper one first.
    static ElevationLayerVector layersOf(const Map& map);
    /// Half of how far, degrees of latitude, a step between two of the layers may be felt.
    static double reachOf(const ElevationLayerVector& layers);

    /// Knows no heights: 0 everywhere.
    TerrainHeights() = default;
    /// Reads what the map's elevation layers have in a box of longitudes and
    /// latitudes, at about the resolution given (degrees a sample). May block.
    TerrainHeights(const Map& map, const Bounds& lonLat, double resolution,
                   ProgressCallback* progress = nullptr);
    /// The same of some layers, finest first.
    TerrainHeights(const ElevationLayerVector& layers, const GeoExtent& lonLat, double resolution,
                   ProgressCallback* progress = nullptr);

    bool empty() const { return _windows.empty(); }
    /// Whether it holds the sources' own samples, not means of them.
    bool isFullResolution() const;
    /// Metres above the ellipsoid.
    double at(double lonDeg, double latDeg) const { return answerAt(lonDeg, latDeg).height; }
    Answer answerAt(double lonDeg, double latDeg) const;
    /// The same as at() on a grid, a row for each latitude; `known`, of the same size, gets 1 where some
    /// source has a value of its own, else 0. True, `known` as it was, where one source has all of them.
    bool sample(const std::vector<double>& lonsDeg, const std::vector<double>& latsDeg, float* heights,
                float* known) const;

private:
    Answer answerFrom(std::size_t first, double lonDeg, double latDeg) const;
    void read(const ElevationLayerVector& layers, const GeoExtent& lonLat, double resolution,
              ProgressCallback* progress);

    std::vector<std::shared_ptr<const HeightWindow>> _windows; ///< finest first
};
} // namespace osgEarth

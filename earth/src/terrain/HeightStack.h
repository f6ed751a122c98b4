#pragma once
#include "terrain/HeightRaster.h"

#include <memory>
#include <optional>
#include <vector>

namespace osgEarth {
class HeightWindow;

/// What heights inside `place` take from a source that has data in `data`: the
/// part inside, and what a coarser source looks at beside it where it is bent
/// within `width` degrees of the edge. Empty when the place is farther away.
std::optional<TileBounds> reachInto(const TileBounds& data, const TileBounds& place, double width);

/// Heights of one place from several sources, finest valid first.
///
/// Where a finer source ends, the coarser one beside it is bent to meet it:
/// two surveys of the same mountains differ by hundreds of metres, and the
/// step between them would stand as a wall. The finer source keeps its own
/// values up to its edge. Immutable once filled; any thread may ask.
class HeightStack
{
public:
    struct Source
    {
        std::shared_ptr<const HeightWindow> window;
        /// Where the whole source has data.
        TileBounds extent;
        /// Width, degrees, of the strip beyond a finer source's edge in which this one is bent.
        double blendWidth = 0.0;
    };

    /// Sources come finest first.
    void add(Source source) { _sources.push_back(std::move(source)); }
    bool empty() const { return _sources.empty(); }

    /// Metres at a place in degrees; empty where no source has a value.
    std::optional<double> heightAt(double longitude, double latitude) const;

private:
    double bend(std::size_t base, double longitude, double latitude) const;
    std::optional<double> stepAtEdge(std::size_t finer, std::size_t base, double longitude, double latitude,
                                     double away) const;

    std::vector<Source> _sources;
};
} // namespace osgEarth

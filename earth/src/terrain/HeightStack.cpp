#include "terrain/HeightStack.h"

#include "sources/HeightWindow.h"

#include <cmath>

namespace osgEarth {
namespace {
double overshoot(double from, double to, double dataFrom, double dataTo)
{
    return std::max({0.0, dataFrom - from, to - dataTo});
}
} // namespace

std::optional<TileBounds> reachInto(const TileBounds& data, const TileBounds& place, double width)
{
    if (place.west - width >= data.east || place.east + width <= data.west ||
        place.south - width >= data.north || place.north + width <= data.south)
        return std::nullopt;
    const double beside = overshoot(place.west, place.east, data.west, data.east);
    const double above = overshoot(place.south, place.north, data.south, data.north);
    // Bending looks along the edge as far to either side as the place is away from it.
    const double away = std::min(width, std::hypot(beside, above));
    const double alongRow = above > 0.0 ? away : 0.0;
    const double alongColumn = beside > 0.0 ? away : 0.0;
    return TileBounds{std::clamp(place.west - alongRow, data.west, data.east),
                      std::clamp(place.south - alongColumn, data.south, data.north),
                      std::clamp(place.east + alongRow, data.west, data.east),
                      std::clamp(place.north + alongColumn, data.south, data.north)};
}

std::optional<double> HeightStack::heightAt(double longitude, double latitude) const
{
    for (std::size_t i = 0; i < _sources.size(); ++i)
        if (const std::optional<double> height = _sources[i].window->heightAt(longitude, latitude))
            return *height + bend(i, longitude, latitude);
    return std::nullopt;
}

double HeightStack::bend(std::size_t base, double longitude, double latitude) const
{
    double sum = 0.0;
    const double width = _sources[base].blendWidth;
    for (std::size_t finer = 0; finer < base; ++finer) {
        const TileBounds& extent = _sources[finer].extent;
        const double nearestLongitude = std::clamp(longitude, extent.west, extent.east);
        const double nearestLatitude = std::clamp(latitude, extent.south, extent.north);
        const double away = std::hypot(longitude - nearestLongitude, latitude - nearestLatitude);
        if (away <= 0.0 || away >= width)
            continue;
        const std::optional<double> step = stepAtEdge(finer, base, longitude, latitude, away);
        if (!step)
            continue;
        const double t = away / width;
        sum += *step * (1.0 - t * t * (3.0 - 2.0 * t));
    }
    return sum;
}

// The step is averaged over a stretch of the edge as long as the place is far
// away: a single point's step, carried outwards, would draw each crag of the
// edge as a ridge.
std::optional<double> HeightStack::stepAtEdge(std::size_t finer, std::size_t base, double longitude,
                                              double latitude, double away) const
{
    const TileBounds& extent = _sources[finer].extent;
    double sum = 0.0;
    int count = 0;
    for (const double aside : {-1.0, -0.5, 0.0, 0.5, 1.0}) {
        const double edgeLongitude = std::clamp(longitude + aside * away, extent.west, extent.east);
        const double edgeLatitude = std::clamp(latitude + aside * away, extent.south, extent.north);
        const auto fine = _sources[finer].window->heightAt(edgeLongitude, edgeLatitude);
        const auto coarse = _sources[base].window->heightAt(edgeLongitude, edgeLatitude);
        if (fine && coarse) {
            sum += *fine - *coarse;
            ++count;
        }
    }
    return count > 0 ? std::optional<double>(sum / count) : std::nullopt;
}
} // namespace osgEarth

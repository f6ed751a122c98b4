#include "HeightStack.h"

#include "sources/HeightWindow.h"

#include <cmath>

namespace osgEarth {

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
        const auto fine = _sources[finer].window->heightAt(nearestLongitude, nearestLatitude);
        const auto coarse = _sources[base].window->heightAt(nearestLongitude, nearestLatitude);
        if (!fine || !coarse)
            continue;
        const double t = away / width;
        sum += (*fine - *coarse) * (1.0 - t * t * (3.0 - 2.0 * t));
    }
    return sum;
}
} // namespace osgEarth

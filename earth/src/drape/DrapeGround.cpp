#include "drape/DrapeGround.h"
#include <algorithm>

namespace osgEarth {
namespace {
// Number of places where heights are looked up: one for each 500 m of the shape's radius, within limits.
constexpr double kSampleDistance = 500.0;
constexpr double kFewestSamples = 9.0;
constexpr double kMostSamples = 64.0;
// The ground between the samples may be higher or lower than any of them.
constexpr double kMargin = 300.0;
// The drawn ground is coarser the farther it is and then lies beside the true
// one, below it above all, where flat faces cut through the round earth.
constexpr double kCoarseGround = 0.004; // of the distance
} // namespace

bool DrapeGround::isDue(unsigned frame, unsigned interval) const
{
    return !_looked || frame - _frame >= interval;
}

unsigned DrapeGround::lookUp(const DrapeExtent& extent, const osg::observer_ptr<MapNode>& map,
                             const osg::Vec3d& eye, unsigned frame)
{
    _frame = frame;
    _looked = true;
    osg::ref_ptr<MapNode> mapNode;
    if (!map.lock(mapNode) || !mapNode->getTerrain())
        return 0;
    const auto wanted = static_cast<size_t>(
        std::clamp(extent.bound.radius() / kSampleDistance, kFewestSamples, kMostSamples));
    const SpatialReference* srs = mapNode->getMapSRS();
    const size_t step = std::max<size_t>(1, extent.samples.size() / wanted);
    unsigned asked = 0, found = 0;
    double lowest = 1e9, highest = -1e9, sum = 0.0, weights = 0.0;
    for (size_t i = 0; i < extent.samples.size(); i += step, ++asked) {
        osg::Vec3d place;
        double height = 0.0;
        if (srs && srs->transformFromWorld(extent.samples[i], place) &&
            mapNode->getTerrain()->getHeight(srs, place.x(), place.y(), &height)) {
            lowest = std::min(lowest, height);
            highest = std::max(highest, height);
            // Places near the eye weigh most: errors of height show most there.
            const double weight = 1.0 / (1.0 + (extent.samples[i] - eye).length2());
            sum += weight * height;
            weights += weight;
            ++found;
        }
    }
    if (found > 0) {
        // Wide shapes have room for any mountain between their samples.
        const double margin = kMargin + 0.5 * (highest - lowest) + 0.05 * extent.bound.radius();
        _heights.set(std::max(kLowest, lowest - margin), std::min(kHighest, highest + margin), sum / weights);
        _relief = std::max(highest - _heights.z(), _heights.z() - lowest);
        _known = true;
    } else {
        _heights.set(kLowest, kHighest, 0.0);
    }
    return asked;
}

osg::Vec3f DrapeGround::heights(double sagitta, double distance) const
{
    const double spare = kCoarseGround * distance;
    return osg::Vec3f(static_cast<float>(_heights.x() - spare),
                      static_cast<float>(_heights.y() + spare + sagitta), static_cast<float>(_heights.z()));
}
} // namespace osgEarth

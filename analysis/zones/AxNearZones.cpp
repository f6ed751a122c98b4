#include "analysis/zones/AxNearZones.h"
#include "scene/base/AxLongitudes.h"

#include <algorithm>
#include <iterator>

namespace {
constexpr double nearDegrees = 2.0;
using AxLongitudes::fullTurn;

bool IsWithin(double middle, double focus)
{
    return focus - nearDegrees < middle && middle < focus + nearDegrees;
}

/// Longitudes also across the antimeridian, where the same place has two.
bool IsNear(const QPointF& middle, const osg::Vec3d& focus)
{
    return IsWithin(middle.y(), focus.y()) &&
           (IsWithin(middle.x(), focus.x()) || IsWithin(middle.x() - fullTurn, focus.x()) ||
            IsWithin(middle.x() + fullTurn, focus.x()));
}
} // namespace

bool AxNearZones::Update(const osgEarth::Viewpoint& viewpoint, const Tell& tell)
{
    const bool isPlace = viewpoint.focalPoint().isSet();
    const osg::Vec3d focus = isPlace ? viewpoint.focalPoint()->vec3d() : osg::Vec3d();
    std::vector<std::uint32_t> now;
    if (isPlace && viewpoint.getRange() < highestRange)
        now = zones.Near(focus.x(), focus.y(), nearDegrees, nearDegrees);
    const std::vector<AxZoneOutline>& outlines = zones.Outlines();
    now.erase(std::remove_if(now.begin(), now.end(),
                             [&](std::uint32_t place) { return !IsNear(outlines[place].middle, focus); }),
              now.end());
    now.swap(near);
    std::vector<std::uint32_t> changed;
    std::set_symmetric_difference(now.begin(), now.end(), near.begin(), near.end(),
                                  std::back_inserter(changed));
    for (const std::uint32_t place : changed) {
        const AxZoneOutline& zone = outlines[place];
        tell(zone.id, osg::Vec2d(zone.middle.x(), zone.middle.y()),
             std::binary_search(near.begin(), near.end(), place));
    }
    return !changed.empty();
}

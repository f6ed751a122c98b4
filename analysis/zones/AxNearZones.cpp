#include "analysis/zones/AxNearZones.h"
#include "scene/base/AxLongitudes.h"

namespace {
constexpr double nearDegrees = 2.0;
using AxLongitudes::fullTurn;

bool IsWithin(double middle, double focus)
{
    return focus - nearDegrees < middle && middle < focus + nearDegrees;
}

/// Longitudes also across the antimeridian, where the same place has two.
bool IsNear(const osg::Vec2d& middle, const osg::Vec3d& focus)
{
    return IsWithin(middle.y(), focus.y()) &&
           (IsWithin(middle.x(), focus.x()) || IsWithin(middle.x() - fullTurn, focus.x()) ||
            IsWithin(middle.x() + fullTurn, focus.x()));
}
} // namespace

AxNearZones::AxNearZones(const AxNoflyZones& all)
{
    for (auto zone = all.zonePolygons.begin(); zone != all.zonePolygons.end(); ++zone) {
        const osgEarth::Bounds box = zone.value().Box();
        if (box.valid())
            zones.push_back({zone.key(), osg::Vec2d(box.center().x(), box.center().y())});
    }
}

bool AxNearZones::Update(const osgEarth::Viewpoint& viewpoint, const Tell& tell)
{
    const bool isPlace = viewpoint.focalPoint().isSet();
    const osg::Vec3d focus = isPlace ? viewpoint.focalPoint()->vec3d() : osg::Vec3d();
    const bool isLow = isPlace && viewpoint.getRange() < highestRange;
    bool isOther = false;
    for (Zone& zone : zones) {
        const bool isNear = isLow && IsNear(zone.middle, focus);
        if (isNear == zone.isNear)
            continue;
        zone.isNear = isNear;
        isOther = true;
        tell(zone.id, zone.middle, isNear);
    }
    return isOther;
}

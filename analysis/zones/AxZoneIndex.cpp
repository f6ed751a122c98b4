#include "analysis/zones/AxZoneIndex.h"
#include "scene/base/AxLongitudes.h"
#include "scene/base/AxWgs84.h"

#include <osg/Math>

#include <algorithm>
#include <cmath>

namespace {
using AxLongitudes::fullTurn;
constexpr double halfTurn = 180.0;

/// Around each outline and the middle of the zone as decreed, on the globe's usual side.
std::vector<osgEarth::Bounds> Boxes(const std::vector<AxZoneOutline>& outlines)
{
    std::vector<osgEarth::Bounds> boxes;
    boxes.reserve(outlines.size());
    for (const AxZoneOutline& zone : outlines) {
        osgEarth::Bounds box;
        if (std::isfinite(zone.middle.x()) && std::isfinite(zone.middle.y()))
            box.expandBy(zone.middle.x(), zone.middle.y());
        if (!zone.bounds.isNull()) {
            box.expandBy(zone.bounds.left(), zone.bounds.top());
            box.expandBy(zone.bounds.right(), zone.bounds.bottom());
        }
        // A spiral has thousands of turns, and who asks for a place looks into each.
        if (box.valid() && box.width() >= fullTurn) {
            box = osgEarth::Bounds(-halfTurn, box.yMin(), halfTurn, box.yMax());
        } else if (box.valid()) {
            const double middle = box.center().x();
            const double shift = AxLongitudes::Normalized(middle) - middle;
            box = osgEarth::Bounds(box.xMin() + shift, box.yMin(), box.xMax() + shift, box.yMax());
        }
        boxes.push_back(box);
    }
    return boxes;
}
} // namespace

AxZoneIndex::AxZoneIndex(const AxNoflyZones& zones) : outlines(AxZoneOutlines(zones)), tree(Boxes(outlines))
{
}

std::vector<std::uint32_t> AxZoneIndex::Near(double longitude, double latitude, double degreesEast,
                                             double degreesNorth) const
{
    std::vector<std::uint32_t> found;
    const osgEarth::Bounds extent = tree.Extent();
    if (!extent.valid() || !std::isfinite(longitude) || !std::isfinite(latitude))
        return found;
    // The same place as boxes to the west and to the east of the antimeridian count it.
    const double first = std::ceil((extent.xMin() - longitude - degreesEast) / fullTurn);
    const double last = std::floor((extent.xMax() - longitude + degreesEast) / fullTurn);
    for (double turn = first; turn <= last; ++turn) {
        const double middle = longitude + turn * fullTurn;
        tree.Find(osgEarth::Bounds(middle - degreesEast, latitude - degreesNorth, middle + degreesEast,
                                   latitude + degreesNorth),
                  found);
    }
    std::sort(found.begin(), found.end());
    found.erase(std::unique(found.begin(), found.end()), found.end());
    return found;
}

std::vector<std::uint32_t> AxZoneIndex::Near(double longitude, double latitude, double metres) const
{
    constexpr double rounding = 1e-6; // radians
    const double angle = metres / AxWgs84::semiMajorAxis + rounding;
    const double lat = osg::DegreesToRadians(latitude);
    if (!(std::abs(lat) + angle < osg::PI_2))
        return Near(longitude, latitude, halfTurn, halfTurn);
    return Near(longitude, latitude, osg::RadiansToDegrees(std::asin(std::sin(angle) / std::cos(lat))),
                osg::RadiansToDegrees(angle));
}

QStringList AxZoneIndex::At(double longitude, double latitude) const
{
    // More than what moving a box around the globe rounds off.
    constexpr double rounding = 1e-9;
    QStringList ids;
    for (const std::uint32_t place : Near(longitude, latitude, rounding, rounding))
        if (outlines[place].Contains(longitude, latitude))
            ids += outlines[place].id;
    return ids;
}

#include "host/tasks/PlanGround.h"

#include <osgEarth/ElevationQuery>
#include <osgEarth/SpatialReference>

#include <cmath>
#include <memory>

AxPlanGround PlanGroundOf(const osgEarth::Map* map)
{
    const auto heights = std::make_shared<osgEarth::ElevationQuery>(map);
    const osg::ref_ptr<const osgEarth::SpatialReference> wgs84 = osgEarth::SpatialReference::get("wgs84");
    return [heights, wgs84](double longitude, double latitude) {
        double height = 0.0;
        // Routes over the antimeridian may count on beyond 180 degrees.
        const osgEarth::GeoPoint place(wgs84, std::remainder(longitude, 360.0), latitude);
        return heights->getElevation(place, height) ? std::make_optional(height) : std::nullopt;
    };
}

#include "host/tasks/PlanGround.h"

#include <osgEarth/ElevationQuery>
#include <osgEarth/SpatialReference>

#include <memory>

AxPlanGround PlanGroundOf(const osgEarth::Map* map)
{
    const auto heights = std::make_shared<osgEarth::ElevationQuery>(map);
    const osg::ref_ptr<const osgEarth::SpatialReference> wgs84 = osgEarth::SpatialReference::get("wgs84");
    return [heights, wgs84](double longitude, double latitude) {
        double height = 0.0;
        return heights->getElevation(osgEarth::GeoPoint(wgs84, longitude, latitude), height)
                   ? std::make_optional(height)
                   : std::nullopt;
    };
}

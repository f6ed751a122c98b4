#include "analysis/AxPlanHeights.h"
#include "scene/AxScene.h"
#include "scene/base/AxLongitudes.h"

#include <AxData/CAxControl.h>

#include <osgEarth/ElevationQuery>
#include <osgEarth/MapNode>

#include <memory>

AxPlanHeights::AxPlanHeights(AxScene& drawn)
{
    const auto heights = std::make_shared<osgEarth::ElevationQuery>(drawn.MapNode()->getMap());
    const osg::ref_ptr<const osgEarth::SpatialReference> geographic = drawn.MapSRS()->getGeographicSRS();
    CAxControl::GetInstance()->SetGround(
        [heights, geographic](double longitude, double latitude) {
            double height = 0.0;
            const osgEarth::GeoPoint place(geographic, AxLongitudes::Normalized(longitude), latitude);
            return heights->getElevation(place, height) ? std::make_optional(height) : std::nullopt;
        },
        this);
}

AxPlanHeights::~AxPlanHeights()
{
    CAxControl::GetInstance()->RemoveGround(this);
}

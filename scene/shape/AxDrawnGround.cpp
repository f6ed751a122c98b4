#include "scene/shape/AxDrawnGround.h"
#include "scene/shape/AxViewRay.h"

#include <osgEarth/MapNode>
#include <osgEarth/SpatialReference>
#include <osgEarth/Terrain>
#include <osgUtil/IntersectionVisitor>
#include <osgUtil/LineSegmentIntersector>

#include <cmath>

namespace {
// Beyond the earth's middle there is no ground to be seen.
constexpr double behindEyeMetres = 7.0e6;
} // namespace

std::optional<osg::Vec3d> AxDrawnGround(osgEarth::MapNode& map, const AxViewRay& ray)
{
    // The engine's own search begins at a window position between the near and the far plane.
    osgEarth::Terrain* terrain = map.getTerrain();
    if (!terrain)
        return std::nullopt;
    const double reach = ray.eye.length() + behindEyeMetres;
    const osg::ref_ptr<osgUtil::LineSegmentIntersector> sight =
        new osgUtil::LineSegmentIntersector(ray.eye, ray.eye + ray.direction * reach);
    sight->setIntersectionLimit(osgUtil::Intersector::LIMIT_NEAREST);
    osgUtil::IntersectionVisitor visitor(sight);
    terrain->accept(visitor);
    if (!sight->containsIntersections())
        return std::nullopt;
    const osg::Vec3d ground = sight->getFirstIntersection().getWorldIntersectPoint();
    return std::isfinite(ground.length2()) ? std::make_optional(ground) : std::nullopt;
}

std::optional<double> AxLoadedHeight(const osgEarth::MapNode& map, double longitude, double latitude)
{
    const osgEarth::Terrain* terrain = map.getTerrain();
    double height = 0.0;
    if (!terrain || !map.getMapSRS() ||
        !terrain->getHeight(map.getMapSRS()->getGeographicSRS(), longitude, latitude, nullptr, &height) ||
        !std::isfinite(height))
        return std::nullopt;
    return height;
}

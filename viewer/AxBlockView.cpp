#include "viewer/AxBlockView.h"

#include <osg/CoordinateSystemNode>
#include <osg/Math>

#include <algorithm>
#include <cmath>

osgEarth::Viewpoint AxViewpointOver(const std::vector<osg::Vec3d>& places)
{
    if (places.empty())
        return {};
    // On the unit sphere neither the date line nor a pole is special.
    const auto direction = [](const osg::Vec3d& place) {
        const double lng = osg::DegreesToRadians(place.x());
        const double lat = osg::DegreesToRadians(place.y());
        return osg::Vec3d(std::cos(lat) * std::cos(lng), std::cos(lat) * std::sin(lng), std::sin(lat));
    };
    osg::Vec3d middle;
    double altitude = 0.0;
    for (const osg::Vec3d& place : places) {
        middle += direction(place);
        altitude += place.z() / static_cast<double>(places.size());
    }
    if (middle.normalize() == 0.0)
        middle = direction(places.front());
    double farthest = 0.0;
    for (const osg::Vec3d& place : places)
        farthest =
            std::max(farthest, std::atan2((direction(place) ^ middle).length(), direction(place) * middle));

    constexpr double margin = 1.3;
    constexpr double nearestMetres = 300.0;
    constexpr double wholeGlobeMetres = 2.5e7;
    const double halfView = osg::DegreesToRadians(15.0);
    const double range = farthest * osg::WGS_84_RADIUS_EQUATOR / std::tan(halfView) * margin;
    return osgEarth::Viewpoint("", osg::RadiansToDegrees(std::atan2(middle.y(), middle.x())),
                               osg::RadiansToDegrees(std::asin(std::clamp(middle.z(), -1.0, 1.0))), altitude,
                               0.0, -90.0, std::clamp(range, nearestMetres, wholeGlobeMetres));
}

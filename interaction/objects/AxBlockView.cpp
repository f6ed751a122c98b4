#include "interaction/objects/AxBlockView.h"
#include "scene/base/AxGlobePoint.h"

#include <osg/Math>

#include <algorithm>
#include <cmath>

osgEarth::Viewpoint AxViewpointOver(const std::vector<osg::Vec3d>& places)
{
    if (places.empty())
        return {};
    // By normals neither the date line nor a pole is special.
    osg::Vec3d middle;
    double altitude = 0.0;
    for (const osg::Vec3d& place : places) {
        middle += AxGlobe::NormalAt(place);
        altitude += place.z() / static_cast<double>(places.size());
    }
    if (middle.normalize() == 0.0)
        middle = AxGlobe::NormalAt(places.front());
    double farthest = 0.0;
    for (const osg::Vec3d& place : places)
        farthest = std::max(farthest, std::atan2((AxGlobe::NormalAt(place) ^ middle).length(),
                                                 AxGlobe::NormalAt(place) * middle));

    constexpr double margin = 1.3;
    constexpr double nearestMetres = 300.0;
    constexpr double wholeGlobeMetres = 2.5e7;
    const double halfView = osg::DegreesToRadians(15.0);
    const double range = farthest * AxGlobe::semiMajorAxis / std::tan(halfView) * margin;
    const osg::Vec3d place = AxGlobe::LngLatOf(middle);
    return osgEarth::Viewpoint("", place.x(), place.y(), altitude, 0.0, -90.0,
                               std::clamp(range, nearestMetres, wholeGlobeMetres));
}

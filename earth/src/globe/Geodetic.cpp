#include "globe/Geodetic.h"

#include "globe/Ellipsoid.h"

#include <cmath>

namespace osgEarth::Util {
Geodetic toGeodetic(const osg::EllipsoidModel& ellipsoid, const osg::Vec3d& world)
{
    Geodetic place;
    Ellipsoid(ellipsoid.getRadiusEquator(), ellipsoid.getRadiusPolar())
        .toGeodetic(world, place.latitude, place.longitude, place.height);
    return place;
}

osg::Vec3d toWorld(const osg::EllipsoidModel& ellipsoid, const Geodetic& place)
{
    return Ellipsoid(ellipsoid.getRadiusEquator(), ellipsoid.getRadiusPolar())
        .toGeocentric(place.latitude, place.longitude, place.height);
}

osg::Vec3d upAt(double latitude, double longitude)
{
    return {std::cos(latitude) * std::cos(longitude), std::cos(latitude) * std::sin(longitude),
            std::sin(latitude)};
}

osg::Vec3d upAt(const osg::EllipsoidModel& ellipsoid, const osg::Vec3d& world)
{
    const Geodetic place = toGeodetic(ellipsoid, world);
    return upAt(place.latitude, place.longitude);
}

osg::Quat frameAt(double latitude, double longitude)
{
    // First turns y from east to north, then tilts the z axis down to the latitude.
    return osg::Quat(osg::PI_2, osg::Vec3d(0, 0, 1)) * osg::Quat(osg::PI_2 - latitude, osg::Vec3d(0, 1, 0)) *
           osg::Quat(longitude, osg::Vec3d(0, 0, 1));
}

osg::Quat frameAt(const osg::EllipsoidModel& ellipsoid, const osg::Vec3d& world)
{
    const Geodetic place = toGeodetic(ellipsoid, world);
    return frameAt(place.latitude, place.longitude);
}

double wrapAngle(double radians)
{
    if (!std::isfinite(radians))
        return 0.0;
    const double wrapped = std::remainder(radians, 2.0 * osg::PI);
    return wrapped <= -osg::PI ? wrapped + 2.0 * osg::PI : wrapped;
}

bool isFinite(const osg::Vec3d& v)
{
    return std::isfinite(v.x()) && std::isfinite(v.y()) && std::isfinite(v.z());
}
} // namespace osgEarth::Util

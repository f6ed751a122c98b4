#pragma once

#include <osg/CoordinateSystemNode>
#include <osg/Quat>
#include <osg/Vec3d>

namespace osgEarth::Util {
/// A place over an ellipsoid: radians, radians, metres above the ellipsoid.
struct Geodetic
{
    double latitude = 0.0;
    double longitude = 0.0;
    double height = 0.0;
};

/// Geocentric metres to latitude, longitude and height, exact from the ground to space; see Ellipsoid.
Geodetic toGeodetic(const osg::EllipsoidModel& ellipsoid, const osg::Vec3d& world);
osg::Vec3d toWorld(const osg::EllipsoidModel& ellipsoid, const Geodetic& place);

/// Unit normal of the ellipsoid at a latitude and longitude (radians).
osg::Vec3d upAt(double latitude, double longitude);
osg::Vec3d upAt(const osg::EllipsoidModel& ellipsoid, const osg::Vec3d& world);

/// The rotation from the east-north-up frame at a place to the world. At a
/// pole, north is the direction of the meridian of that longitude.
osg::Quat frameAt(double latitude, double longitude);
osg::Quat frameAt(const osg::EllipsoidModel& ellipsoid, const osg::Vec3d& world);

/// The angle brought into (-pi, pi]; 0 for what is not finite.
double wrapAngle(double radians);

bool isFinite(const osg::Vec3d& v);
} // namespace osgEarth::Util

#pragma once
#include "scene/base/AxWgs84.h"

#include <osg/Vec3d>

#include <algorithm>
#include <cmath>

// Points of the globe by the ellipsoid's normal there, of length 1 and outward:
// no seam at the antimeridian, no hole at the poles.
namespace AxGlobe {
constexpr double pi = 3.14159265358979323846;
using AxWgs84::eccentricity2;
using AxWgs84::meanRadius; // turns angles into lengths
using AxWgs84::semiMajorAxis;

/// Of a place in degrees.
inline osg::Vec3d NormalAt(const osg::Vec3d& lngLat)
{
    const double lng = lngLat.x() * pi / 180.0;
    const double lat = lngLat.y() * pi / 180.0;
    return {std::cos(lat) * std::cos(lng), std::cos(lat) * std::sin(lng), std::sin(lat)};
}

/// Degrees, degrees and 0.
inline osg::Vec3d LngLatOf(const osg::Vec3d& normal)
{
    return {std::atan2(normal.y(), normal.x()) * 180.0 / pi,
            std::atan2(normal.z(), std::hypot(normal.x(), normal.y())) * 180.0 / pi, 0.0};
}

/// Geocentric, metres.
inline osg::Vec3d WorldAt(const osg::Vec3d& normal, double altitude)
{
    const double n = semiMajorAxis / std::sqrt(1.0 - eccentricity2 * normal.z() * normal.z());
    return {(n + altitude) * normal.x(), (n + altitude) * normal.y(),
            (n * (1.0 - eccentricity2) + altitude) * normal.z()};
}

/// The same of a place in degrees and metres.
inline osg::Vec3d WorldOf(const osg::Vec3d& place)
{
    return WorldAt(NormalAt(place), place.z());
}

/// A direction at a right angle to another one.
inline osg::Vec3d Across(const osg::Vec3d& normal)
{
    const osg::Vec3d axis =
        std::abs(normal.z()) < 0.9 ? osg::Vec3d(0.0, 0.0, 1.0) : osg::Vec3d(1.0, 0.0, 0.0);
    osg::Vec3d across = axis ^ normal;
    across.normalize();
    return across;
}

/// Halfway along the shorter way.
inline osg::Vec3d Middle(const osg::Vec3d& a, const osg::Vec3d& b)
{
    osg::Vec3d middle = a + b;
    // Between opposite points every way is the shortest.
    if (middle.length2() < 1e-20)
        return Across(a);
    middle.normalize();
    return middle;
}

/// Along the great circle, metres.
inline double LengthBetween(const osg::Vec3d& a, const osg::Vec3d& b)
{
    return 2.0 * std::asin(std::min(0.5 * (a - b).length(), 1.0)) * meanRadius;
}

} // namespace AxGlobe

#pragma once

namespace osgEarth::wgs84 {
/// Half axes of the ellipsoid, metres. The polar one has as many digits as
/// osg::EllipsoidModel's, so that places computed by either coincide.
constexpr double kEquatorialRadius = 6378137.0;
constexpr double kPolarRadius = 6356752.3142;
} // namespace osgEarth::wgs84

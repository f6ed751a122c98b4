#pragma once
#include <osgEarth/DateTime>

namespace osgEarth::Util {
/// How far the earth has turned against the stars (Greenwich mean sidereal time), radians in 0..2 pi.
double siderealAngle(const DateTime& dt);
} // namespace osgEarth::Util

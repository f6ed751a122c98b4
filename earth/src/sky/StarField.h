#pragma once

#include <osg/Vec3f>
#include <vector>

namespace osgEarth::Util {
struct Star
{
    osg::Vec3f
        direction;    ///< unit vector in the celestial frame: x to the vernal equinox, z to the north pole
    float brightness; ///< 1 for the brightest, towards 0 for the faintest
};

/// A made-up sky, the same on every run and machine: no real constellations,
/// but the real law of how many stars there are of each magnitude, and more of
/// them along the Milky Way.
std::vector<Star> makeStarField(unsigned count);
} // namespace osgEarth::Util

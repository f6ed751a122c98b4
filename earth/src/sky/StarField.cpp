#include "sky/StarField.h"

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <osg/Math>
#include <osg/Quat>
#include <osg/Vec3d>

namespace osgEarth::Util {
namespace {
/// Marsaglia's xorshift (Journal of Statistical Software 8, 2003); std's distributions differ between
/// libraries.
class Dice
{
public:
    /// Even in [0, 1).
    double roll()
    {
        _state ^= _state << 13;
        _state ^= _state >> 7;
        _state ^= _state << 17;
        return static_cast<double>(_state >> 11) * 0x1p-53;
    }

private:
    std::uint64_t _state = 0x9E3779B97F4A7C15u;
};
} // namespace

std::vector<Star> makeStarField(unsigned count)
{
    // The north galactic pole, J2000: right ascension 192.86, declination 27.13 degrees.
    const double ra = osg::DegreesToRadians(192.86);
    const double decl = osg::DegreesToRadians(27.13);
    osg::Quat fromGalaxy;
    fromGalaxy.makeRotate(osg::Vec3d(0, 0, 1), osg::Vec3d(std::cos(decl) * std::cos(ra),
                                                          std::cos(decl) * std::sin(ra), std::sin(decl)));
    Dice dice;
    std::vector<Star> stars;
    stars.reserve(count);
    for (unsigned i = 0; i < count; ++i) {
        // Two of five stars belong to the band.
        const bool band = dice.roll() < 0.4;
        double z = 2.0 * dice.roll() - 1.0;
        if (band)
            z *= 0.25 * std::abs(z);
        const double angle = 2.0 * osg::PI * dice.roll();
        const double level = std::sqrt(1.0 - z * z);
        const osg::Vec3d direction =
            fromGalaxy * osg::Vec3d(level * std::cos(angle), level * std::sin(angle), z);
        // Each fainter magnitude has three times as many stars; the eye sees six.
        const double magnitude = std::max(0.0, 6.0 + std::log(std::max(dice.roll(), 1e-6)) / std::log(3.0));
        stars.push_back({direction, static_cast<float>(1.0 - magnitude / 6.5)});
    }
    return stars;
}
} // namespace osgEarth::Util

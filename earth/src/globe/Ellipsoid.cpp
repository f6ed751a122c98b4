#include "globe/Ellipsoid.h"

#include <cmath>

namespace osgEarth {
Ellipsoid::Ellipsoid(double semiMajor, double semiMinor)
    : _a(semiMajor), _b(semiMinor), _e2(1.0 - (semiMinor * semiMinor) / (semiMajor * semiMajor)),
      _ep2((semiMajor * semiMajor) / (semiMinor * semiMinor) - 1.0)
{
}

osg::Vec3d Ellipsoid::toGeocentric(double lat, double lon, double height) const
{
    const double s = std::sin(lat), c = std::cos(lat);
    const double n = _a / std::sqrt(1.0 - _e2 * s * s);
    return {(n + height) * c * std::cos(lon), (n + height) * c * std::sin(lon),
            (n * (1.0 - _e2) + height) * s};
}

void Ellipsoid::toGeodetic(const osg::Vec3d& v, double& lat, double& lon, double& height) const
{
    const double p = std::hypot(v.x(), v.y());
    lon = p > 0.0 ? std::atan2(v.y(), v.x()) : 0.0;
    const double r = std::hypot(p, v.z());
    // Nearer to the centre than the evolute of the meridian no normal is unique.
    if (r < 2.0 * _e2 * _a) {
        lat = r > 0.0 ? std::atan2(v.z(), p) : 0.0;
        height = r - _a;
        return;
    }
    double tanBeta = p > 0.0 ? (_b * v.z()) / (_a * p) * (1.0 + _ep2 * _b / r) : 0.0;
    double sinBeta = p > 0.0 ? tanBeta / std::hypot(1.0, tanBeta) : (v.z() < 0.0 ? -1.0 : 1.0);
    double cosBeta = p > 0.0 ? 1.0 / std::hypot(1.0, tanBeta) : 0.0;
    double y = 0.0, x = 1.0;
    for (int i = 0; i < 3; ++i) {
        y = v.z() + _ep2 * _b * sinBeta * sinBeta * sinBeta;
        x = p - _e2 * _a * cosBeta * cosBeta * cosBeta;
        const double h = std::hypot(_b * y, _a * x);
        sinBeta = _b * y / h;
        cosBeta = _a * x / h;
    }
    lat = std::atan2(y, x);
    const double s = std::sin(lat), c = std::cos(lat);
    height = p * c + v.z() * s - _a * std::sqrt(1.0 - _e2 * s * s);
}
} // namespace osgEarth

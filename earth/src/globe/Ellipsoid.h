#pragma once
#include <osg/Vec3d>

namespace osgEarth {
/// Geodetic <-> geocentric on one ellipsoid, closed formulas in double
/// precision. Angles in radians here.
class Ellipsoid
{
public:
    Ellipsoid(double semiMajor, double semiMinor);

    double semiMajor() const { return _a; }
    double semiMinor() const { return _b; }
    osg::Vec3d toGeocentric(double lat, double lon, double height) const;
    /// Bowring's parametric-latitude formula, repeated until exact to double
    /// precision ("Transformation from spatial to geographical coordinates",
    /// Survey Review 1976); direction of the position itself within the core.
    void toGeodetic(const osg::Vec3d& p, double& lat, double& lon, double& height) const;

private:
    double _a, _b, _e2, _ep2;
};
} // namespace osgEarth

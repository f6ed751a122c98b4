#pragma once
#include <osg/Vec3d>
#include <osg/Vec3f>

#include <vector>

namespace osgEarth {
/// One point that replaces all points of a tile in horizon tests: it is hidden
/// by the ellipsoid exactly when all of them are. Large tiles, such as a
/// quarter of the globe, have none and are never hidden as a whole.
struct OccludeePoint
{
    bool exists = false;
    /// Geocentric, divided by the radii of the occluding ellipsoid.
    osg::Vec3d scaled;
};

/// How far below WGS84 the lowest ground lies, metres: of land, and where a map knows the floor of the sea.
constexpr double kLowestLand = 2000.0;
constexpr double kLowestSeaFloor = 11500.0;

/// The ellipsoid as an obstacle, as seen from an eye. The ellipsoid is WGS84
/// shrunk below the lowest ground, so that a sea-level tile is never thought
/// hidden behind itself. Points that are tested were made with the same ground.
///
/// The test works in a space scaled so that the ellipsoid is the unit sphere:
/// a point is hidden when it lies beyond the plane of the horizon circle and
/// inside the cone from the eye through that circle.
class Horizon
{
public:
    Horizon() = default;
    explicit Horizon(const osg::Vec3d& eyeWorld, double lowestGround = kLowestLand);

    bool hides(const OccludeePoint& point) const;

private:
    osg::Vec3d _eye;
    /// Squared distance from the eye to the horizon circle; not positive inside the ellipsoid.
    double _horizonSquared = 0.0;
};

/// The occludee point of positions given relative to a geocentric origin.
OccludeePoint occludeeOf(const osg::Vec3d& origin, const std::vector<osg::Vec3f>& positions,
                         double extraHeight, double lowestGround = kLowestLand);
} // namespace osgEarth

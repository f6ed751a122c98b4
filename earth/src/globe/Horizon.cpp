#include "globe/Horizon.h"
#include "globe/Wgs84.h"

#include <algorithm>
#include <cmath>

namespace osgEarth {
namespace {
osg::Vec3d scaleToSphere(const osg::Vec3d& world, double lowestGround)
{
    const double equatorial = wgs84::kEquatorialRadius - lowestGround;
    return {world.x() / equatorial, world.y() / equatorial, world.z() / (wgs84::kPolarRadius - lowestGround)};
}
} // namespace

Horizon::Horizon(const osg::Vec3d& eyeWorld, double lowestGround)
    : _eye(scaleToSphere(eyeWorld, lowestGround)), _horizonSquared(_eye.length2() - 1.0)
{
}

bool Horizon::hides(const OccludeePoint& point) const
{
    if (!point.exists || _horizonSquared <= 0.0)
        return false;
    const osg::Vec3d toPoint = point.scaled - _eye;
    const double towardsCentre = -(toPoint * _eye);
    return towardsCentre > _horizonSquared &&
           towardsCentre * towardsCentre > _horizonSquared * toPoint.length2();
}

// The tangent from a position to the unit sphere meets the axis through the
// tile's middle at the height from which the position is just hidden; the
// highest of these heights stands for all positions.
OccludeePoint occludeeOf(const osg::Vec3d& origin, const std::vector<osg::Vec3f>& positions,
                         double extraHeight, double lowestGround)
{
    OccludeePoint result;
    osg::Vec3d axis = scaleToSphere(origin, lowestGround);
    axis.normalize();
    double highest = 1.0;
    for (const osg::Vec3f& position : positions) {
        osg::Vec3d scaled = scaleToSphere(origin + osg::Vec3d(position), lowestGround);
        const double distance = std::max(1.0, scaled.length() + extraHeight / wgs84::kPolarRadius);
        scaled.normalize();
        const double cosToAxis = std::min(1.0, scaled * axis);
        const double sinToAxis = std::sqrt(1.0 - cosToAxis * cosToAxis);
        const double cosTangent = 1.0 / distance;
        const double sinTangent = std::sqrt(1.0 - cosTangent * cosTangent);
        const double denominator = cosToAxis * cosTangent - sinToAxis * sinTangent;
        if (denominator <= 1e-6)
            return result;
        highest = std::max(highest, 1.0 / denominator);
    }
    result.exists = true;
    result.scaled = axis * highest;
    return result;
}
} // namespace osgEarth

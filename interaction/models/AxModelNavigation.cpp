#include "interaction/models/AxModelNavigation.h"

namespace {
constexpr double scrollShare = 0.1;
constexpr double nearestMetres = 5.0;
// In single precision on purpose.
constexpr double panFactor = -static_cast<double>(0.3f);
const osg::Vec3d vertical(0.0, 0.0, 1.0);
} // namespace

double AxModelNavigation::ScrollStep(double factor, double distance)
{
    const double step = factor * scrollShare * distance;
    return distance - step <= nearestMetres ? distance - nearestMetres : step;
}

osg::Vec3d AxModelNavigation::PanStep(const osg::Quat& cameraToWorld, double distance, double dx, double dy)
{
    const double k = panFactor * distance;
    const osg::Vec3d side = cameraToWorld * osg::Vec3d(1.0, 0.0, 0.0);
    const osg::Vec3d front = cameraToWorld * osg::Vec3d(0.0, 1.0, 0.0);
    return side * (dx * k) + front * (dy * k);
}

osg::Quat AxModelNavigation::FreeRotation(const osg::Quat& rotation, double dx, double dy)
{
    osg::Vec3d side = rotation * osg::Vec3d(1.0, 0.0, 0.0);
    side -= vertical * (side * vertical);
    // Rolled onto its side the camera has none; east does as well as any other.
    if (!(side.normalize() > 0.0))
        side.set(1.0, 0.0, 0.0);
    return rotation * osg::Quat(dy, side) * osg::Quat(-dx, vertical);
}

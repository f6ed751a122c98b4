#include "globe/PickRay.h"

#include <cmath>

namespace osgEarth {
bool pickRay(const osg::Camera& camera, double windowX, double windowY, TerrainRay& ray)
{
    const osg::Viewport* viewport = camera.getViewport();
    if (!viewport || viewport->width() <= 0.0 || viewport->height() <= 0.0)
        return false;
    const osg::Matrixd& p = camera.getProjectionMatrix();
    if (p(0, 0) == 0.0 || p(1, 1) == 0.0)
        return false;
    const double x = 2.0 * (windowX - viewport->x()) / viewport->width() - 1.0;
    const double y = 2.0 * (windowY - viewport->y()) / viewport->height() - 1.0;
    const osg::Matrixd viewToWorld = osg::Matrixd::inverse(camera.getViewMatrix());
    osg::Vec3d origin;
    osg::Vec3d direction(0.0, 0.0, -1.0);
    if (p(3, 3) == 0.0)
        direction.set((x + p(2, 0)) / p(0, 0), (y + p(2, 1)) / p(1, 1), -1.0);
    else
        origin.set((x - p(3, 0)) / p(0, 0), (y - p(3, 1)) / p(1, 1), 0.0);
    ray.origin = origin * viewToWorld;
    ray.direction = osg::Matrixd::transform3x3(direction, viewToWorld);
    return std::isfinite(ray.origin.length2()) && ray.direction.normalize() > 0.0 &&
           std::isfinite(ray.direction.length2());
}
} // namespace osgEarth

#include "scene/shape/AxViewRay.h"

#include <osg/Camera>

#include <algorithm>
#include <cmath>

namespace {
// The polar radius of WGS84 less the depth of the Mariana Trench, rounded down.
constexpr double innerRadius = 6345000.0;
} // namespace

std::optional<AxViewRay> AxViewRay::Through(const osg::Camera& camera, double x, double y)
{
    const osg::Viewport* viewport = camera.getViewport();
    const osg::Matrixd& projection = camera.getProjectionMatrix();
    if (!viewport || !(viewport->width() > 0.0) || !(viewport->height() > 0.0) || projection(0, 0) == 0.0 ||
        projection(1, 1) == 0.0 || !std::isfinite(x) || !std::isfinite(y))
        return std::nullopt;
    const osg::Matrixd viewToWorld = osg::Matrixd::inverse(camera.getViewMatrix());
    const bool parallel = projection(3, 3) != 0.0;
    osg::Vec3d origin;
    osg::Vec3d direction(0.0, 0.0, -1.0);
    if (parallel)
        origin.set((x - projection(3, 0)) / projection(0, 0), (y - projection(3, 1)) / projection(1, 1), 0.0);
    else
        direction.set((x + projection(2, 0)) / projection(0, 0), (y + projection(2, 1)) / projection(1, 1),
                      -1.0);

    AxViewRay ray;
    ray.eye = origin * viewToWorld;
    ray.direction = osg::Matrixd::transform3x3(direction, viewToWorld);
    ray.forward = osg::Matrixd::transform3x3(osg::Vec3d(0.0, 0.0, -1.0), viewToWorld);
    ray.pixelSize = 2.0 / (std::abs(projection(1, 1)) * viewport->height());
    ray.window.set(viewport->x() + (0.5 + 0.5 * x) * viewport->width(),
                   viewport->y() + (0.5 + 0.5 * y) * viewport->height());
    ray.worldToWindow = camera.getViewMatrix() * projection * viewport->computeWindowMatrix();
    if (!std::isfinite(ray.eye.length2()) || !(ray.direction.normalize() > 0.0))
        return std::nullopt;
    return ray;
}

std::optional<AxViewRay::OnScreen> AxViewRay::Project(const osg::Vec3d& world) const
{
    const osg::Vec4d clip = osg::Vec4d(world, 1.0) * worldToWindow;
    // In a parallel projection the last component is 1 at any depth.
    const double depth = (world - eye) * forward;
    if (!(depth > 0.0))
        return std::nullopt;
    return OnScreen{{clip.x() / clip.w(), clip.y() / clip.w()}, depth};
}

bool AxIsBehindGlobe(const osg::Vec3d& eye, const osg::Vec3d& point)
{
    const osg::Vec3d way = point - eye;
    const double length2 = way.length2();
    if (!(length2 > 0.0))
        return false;
    const double nearest = std::clamp(-(eye * way) / length2, 0.0, 1.0);
    return (eye + way * nearest).length2() < innerRadius * innerRadius;
}

#pragma once
#include "scene/base/AxEarthViewerExport.h"

#include <osg/Matrixd>
#include <osg/Vec2d>
#include <osg/Vec3d>

#include <optional>

namespace osg {
class Camera;
}

/**
 * The line of sight through a window position, geocentric metres, in double
 * precision. It is made from the eye and the field of view alone: a near/far
 * ratio of 1e-10 leaves nothing of a window position that is unprojected
 * between the near and the far plane. A plain value.
 */
struct AXEARTHVIEWER_EXPORT AxViewRay
{
    osg::Vec3d eye;
    osg::Vec3d direction; ///< of length 1
    osg::Vec3d forward;   ///< where the camera looks, of length 1; the direction of its middle
    /// Width of one pixel at distance 1 from the eye.
    double pixelSize = 0.0;
    osg::Vec2d window; ///< pixels, y upwards
    osg::Matrixd worldToWindow;

    /// x and y from -1 to 1 over the window, y upwards. Nothing without a
    /// viewport, for a singular projection, or for values that are not finite.
    static std::optional<AxViewRay> Through(const osg::Camera& camera, double x, double y);

    /// The window position of a world point in pixels, y upwards, and its
    /// distance from the eye along the line of sight's forward direction.
    /// Nothing for a point that is not in front of the eye.
    struct OnScreen
    {
        osg::Vec2d window;
        double depth;
    };
    std::optional<OnScreen> Project(const osg::Vec3d& world) const;
};

/// Whether the body of the earth is between the eye and a geocentric point.
/// Judged on a sphere below the deepest ground, so that what lies on the
/// ground in sight is never taken as hidden.
AXEARTHVIEWER_EXPORT bool AxIsBehindGlobe(const osg::Vec3d& eye, const osg::Vec3d& point);

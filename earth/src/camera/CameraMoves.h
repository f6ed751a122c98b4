#pragma once

#include "camera/CameraPose.h"

namespace osgEarth::Util {
/// What the heading does while the camera travels over the globe.
enum class HeadingRule
{
    KeepNorth, ///< stays the same angle from north, except near the poles where it turns with the ground
    TurnFreely ///< the picture never turns; the heading is what comes out
};

/// Turns the camera about the centre of the earth. The height of the centre
/// above the ellipsoid, the pitch and the distance stay. Passing over a pole
/// never flips the picture, whatever the rule.
void carry(const osg::EllipsoidModel& ellipsoid, const osg::Quat& turn, HeadingRule rule, CameraPose& pose);

/// Moves the centre over the ground by metres to the right and forward, as
/// seen by the camera, along a great circle.
void slide(const osg::EllipsoidModel& ellipsoid, double right, double forward, HeadingRule rule,
           CameraPose& pose);

/// A point that keeps its place in the window while the camera moves.
struct HeldPoint
{
    osg::Vec3d point; ///< geocentric
    Ray sight;        ///< camera axes
    /// Metres from the eye beyond which the point is not held: near the horizon one pixel spans kilometres.
    double farthest = 1e300;
};

/// Carries the camera until the held point lies on its line of sight: the
/// point that was grabbed follows the cursor. Where the line of sight passes
/// the globe by, the limb stands in for it. False, and nothing changes, for a
/// point at the centre of the earth.
bool bringUnder(const osg::EllipsoidModel& ellipsoid, const HeldPoint& held, HeadingRule rule,
                CameraPose& pose);

/// Brings the point back under the cursor where that can be done without leaving the view: below the horizon.
void holdBelowHorizon(const osg::EllipsoidModel& ellipsoid, const HeldPoint& held, HeadingRule rule,
                      CameraPose& pose);

/// Turns the camera, the eye staying where it is, until the held point is under the cursor; not beyond the
/// limits.
void turnTo(const osg::EllipsoidModel& ellipsoid, const HeldPoint& held, const PitchLimits& limits,
            CameraPose& pose);

/// Scales the distance by `factor`, within the limits (metres); a held point stays where it is in the window.
void zoomBy(const osg::EllipsoidModel& ellipsoid, double factor, double nearest, double farthest,
            HeadingRule rule, const std::optional<HeldPoint>& held, CameraPose& pose);
} // namespace osgEarth::Util

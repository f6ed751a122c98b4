#pragma once
#include "globe/Wgs84.h"

namespace osgEarth::Util {
/// What is known about a frame before its planes are chosen; all in metres.
struct ClipSituation
{
    double earthRadius = wgs84::kEquatorialRadius; ///< at the eye's latitude
    double heightAboveEllipsoid = 0.0;
    double heightAboveGround = 0.0; ///< straight below the eye
    double nearestDrawn = 0.0;      ///< depth of the nearest thing in view as the cull traversal found it
    double farthestDrawn = 0.0;     ///< and of the farthest
};

struct ClipPlanes
{
    double zNear;
    double zFar;
};

/// How far one sees over a smooth globe, plus the stretch behind the horizon from which a height still shows.
double sightLimit(double earthRadius, double eyeHeight, double thingHeight);

/// The planes of a frame. The far plane lies behind everything up to
/// 12 km above the ground that the horizon leaves to be seen. The near plane
/// lies in front of the nearest thing drawn, and never so close that 24 bits of
/// depth would fail to tell apart what lies a pixel apart at the horizon.
ClipPlanes chooseClipPlanes(const ClipSituation& situation, bool stopAtHorizon);
} // namespace osgEarth::Util

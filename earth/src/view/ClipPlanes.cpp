#include "view/ClipPlanes.h"

#include <algorithm>
#include <cmath>

namespace osgEarth::Util {
namespace {
/// Greatest height above the ground of anything that is drawn, metres.
constexpr double kHighestThing = 12000.0;
/// Nearest near plane, metres.
constexpr double kNearest = 0.05;
/// Smallest ratio of near to far plane. Only what all but touches the eye can
/// ask for less, and at this ratio 24 bits of depth still tell 2 m from 5 m
/// behind at 3 km.
constexpr double kSmallestRatio = 2e-7;

double horizon(double radius, double height)
{
    return std::sqrt(height * (2.0 * radius + height));
}
} // namespace

double sightLimit(double earthRadius, double eyeHeight, double thingHeight)
{
    return horizon(earthRadius, std::max(eyeHeight, 0.0)) + horizon(earthRadius, std::max(thingHeight, 0.0));
}

ClipPlanes chooseClipPlanes(const ClipSituation& situation, bool stopAtHorizon)
{
    const double limit = sightLimit(situation.earthRadius, situation.heightAboveEllipsoid, kHighestThing);
    const double zFar = stopAtHorizon ? limit : std::max(limit, 1.02 * situation.farthestDrawn);

    // The ground may come closer than its height straight below says, on a
    // slope or before a summit; what is drawn tells. Where the eye has no
    // height, or nothing drawn was counted, the other has to do.
    const double below = 0.5 * situation.heightAboveGround;
    const double drawn = 0.9 * situation.nearestDrawn;
    const double nearest = below > 0.0 && drawn > 0.0 ? std::min(below, drawn) : std::max(below, drawn);
    const double zNear = std::max({nearest, kSmallestRatio * zFar, kNearest});
    return {zNear, zFar};
}
} // namespace osgEarth::Util

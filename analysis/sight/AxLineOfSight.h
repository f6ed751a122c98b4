#pragma once
#include "analysis/sight/AxSightGround.h"
#include "scene/base/AxEarthViewerExport.h"

#include <AxData/planner/AxPlanRequest.h>

#include <QPointF>

#include <atomic>
#include <limits>
#include <optional>
#include <vector>

/// What is known of whether a place is seen.
enum class AxSeen
{
    Visible,
    Hidden,
    Unknown, ///< ground in between, or below one end, has no known height, and no known ground hides it
};

/// One end of a line of sight.
struct AxSightEnd
{
    QPointF place;            ///< longitude, latitude, degrees
    double aboveGround = 0.0; ///< metres
};

/// How a line of sight is looked along.
struct AxSightOptions
{
    double refraction = AxSight::standardRefraction; ///< 0 for none, to AxSight::mostRefraction
    /// Metres between places whose ground is asked for; longer where a line would have more than
    /// axMostSightSteps of them.
    double step = 10.0;
};
constexpr int axMostSightSteps = 50000;
/// Lines that are longer are not looked along, metres.
constexpr double axLongestSight = 500000.0;

/// Ground on the way of a line of sight.
struct AxSightPlace
{
    QPointF place;         ///< longitude, latitude, degrees
    double distance = 0.0; ///< from the first end, metres along the ellipsoid
    double ground = 0.0;   ///< its height, metres as the map has them
    /// How far the line passes above it, metres; negative where the ground stands in the way.
    double clearance = 0.0;
};

/// What was found along a line. A plain value.
struct AxSightLine
{
    /// Stands for what is not known.
    static constexpr double none = std::numeric_limits<double>::quiet_NaN();

    AxSightEnd from;                                 ///< the eye
    AxSightEnd to;                                   ///< what is looked at
    double refraction = AxSight::standardRefraction; ///< as it was asked for
    AxSeen seen = AxSeen::Unknown;                   ///< the answer
    double distance = 0.0;                           ///< along the ellipsoid, metres
    double fromGround = none; ///< heights of the ground below the ends, metres as the map has them
    double toGround = none;   ///< the same of the second end
    /// The first ground that stands in the way; of a hidden end only.
    std::optional<AxSightPlace> blockedAt;
    /// Where the line passes lowest above the ground, or deepest below it; nothing where none between the
    /// ends is known.
    std::optional<AxSightPlace> tightest;
    /// Metres above the ground at the second end from which on it is seen: 0 where the ground itself is. NaN
    /// where that is not known, infinite where no height would do.
    double neededAboveGround = none;
    /// Places along the line for a drawing of it, as seen from the side: from end to end, evenly, metres as
    /// the map has them; NaN where the ground is not known.
    std::vector<AxSightPlace> profile;
};

/// Looks from one end to the other, over the shortest line on the ellipsoid. The straight ray and the ground
/// are taken on a sphere that fits the ellipsoid in that direction, made larger for the refraction. Ground
/// that just touches the line does not hide. Unknown, with distance 0, for ends that are no places, for
/// heights that are not finite, and for a line that is too long. Ends early, with what it has, when `isOff`
/// turns true. Any thread, as far as the ground may be asked there.
AXEARTHVIEWER_EXPORT AxSightLine AxLineOfSight(const AxSightEnd& from, const AxSightEnd& to,
                                               const AxPlanGround& ground, const AxSightOptions& options,
                                               const std::atomic<bool>& isOff);

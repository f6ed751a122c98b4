#pragma once

#include <AxData/planner/AxPlaneArea.h>

#include <optional>
#include <vector>

/// An area that legs stay out of, and where they may turn to go round it.
struct AxObstacle
{
    /// A corner of a ring that lies around the area, with its neighbours on that ring.
    struct Corner
    {
        CAxPoint2D at;
        CAxPoint2D before;
        CAxPoint2D after;
    };
    AxPlaneArea closed;
    std::vector<Corner> corners;
};

/// Around an area, at least so many metres away from it and at most twice as far. Of detailed areas the
/// corners are fewer than the area's own.
AxObstacle AxObstacleAround(const AxPlaneArea& area, double margin);

/// The corners of the shortest way between two places outside of obstacles, without the places themselves;
/// none when there is no way, or when it is not found with so many looks at obstacles and edges. The looks
/// that it takes are subtracted.
std::optional<AxPlanLine> AxShortestWay(const CAxPoint2D& from, const CAxPoint2D& to,
                                        const std::vector<const AxObstacle*>& obstacles, double& looks);

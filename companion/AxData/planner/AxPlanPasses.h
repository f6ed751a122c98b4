#pragma once

#include <AxData/planner/AxPlanPlane.h>
#include <AxData/planner/AxPlanRequest.h>

#include <array>
#include <vector>

/// One set of passes, each in the direction in which it is flown, in the order of the flight.
struct AxPassSet
{
    /// Of each the stretches with photos, two or more points each: several on one straight line where it
    /// flies across holes.
    std::vector<std::vector<AxPlanLine>> passes;
    std::array<CAxPoint2D, 4> entries; ///< where it could begin
    double spacing = 0.0;              ///< metres between neighbours
};

/// The passes of the request's kind in the plane, so many metres apart at most; of an area at a heading
/// (degrees clockwise from north) and flown from an entry. Without passes where there is nothing to fly over.
AxPassSet AxPassesOf(const AxPlanRequest& request, const AxPlanPlane& plane, double spacing, double heading,
                     int entry);

/// The heading of passes over an area with which the flight is shortest, degrees in [0, 180).
double AxBestHeading(const AxPlanRequest& request, const AxPlanPlane& plane, double spacing);

#pragma once

#include <AxData/AxDataExport.h>
#include <AxData/planner/AxPlanRequest.h>
#include <AxData/planner/AxPlanResult.h>

#include <vector>

/// A part of a route that is flown in one go. Where it ends within a pass, the next one resumes at that very
/// place.
struct AXDATA_EXPORT AxPlanFlight
{
    std::vector<AxPlanPoint> points; ///< without home, with the corners of the ways from and to it
    std::vector<AxPlanPhoto> photos; ///< that it takes
    double seconds = 0.0;            ///< with the way from and to home
    /// Of no-fly zones, bends and the ground, on the flight and on its own way from and to home.
    std::vector<AxPlanWarning> warnings;
};

/// Splits a route by the aircraft's endurance, in the wind of the request; each flight begins and ends at
/// home, or where there is none at its own ends, and goes there like the route does. It ends after the last
/// pass that can be flown whole, and within a pass only where that pass alone is too long. Each of three
/// directions is split by itself. Every photo belongs to one flight. Asks for the ground and the zones of the
/// request like AxPlanRoute(). Empty when some part of the route is too far from home to be flown at all, or
/// no way there was found.
AXDATA_EXPORT std::vector<AxPlanFlight> AxSplitIntoFlights(const AxPlanRequest& request,
                                                           const AxPlanResult& plan);

#pragma once
#include "host/tasks/ShownPlan.h"

#include <atomic>
#include <optional>
#include <vector>

/// A place on a route and the ground below it.
struct ProfilePlace
{
    double along = 0.0;     ///< metres flown from the start
    double longitude = 0.0; ///< degrees
    double latitude = 0.0;  ///< degrees
    double altitude = 0.0;  ///< metres above the ellipsoid
    double ground = 0.0;    ///< the same; not a number where it is not known
};

/// A warning of the plan, at the place of the route that is nearest to it.
struct ProfileWarning
{
    AxPlanWarning warning;
    std::size_t place = 0; ///< number of the place
};

/// A route against the ground, from its start to its end. A plain value.
struct ProfileLine
{
    std::vector<ProfilePlace> places;
    std::vector<ProfileWarning> warnings;

    /// Number of the place that is nearest along the route. There is one.
    std::size_t NearestAlong(double along) const;
    /// Number of the place nearest on the map to a longitude and a latitude, no farther than so many metres.
    std::optional<std::size_t> NearestTo(double longitude, double latitude, double reach) const;
};

/// All points of the plan, with home before and after them, unless it is in three directions, and places in
/// between where the ground is looked at. Empty where there is no
/// route, or when isOff turns true meanwhile. Any thread, as far as the ground may be asked there.
ProfileLine ProfileOf(const ShownPlan& shown, const AxPlanGround& ground, const std::atomic<bool>& isOff);

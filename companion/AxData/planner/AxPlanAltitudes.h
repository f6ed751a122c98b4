#pragma once

#include <AxData/planner/AxPlanPlane.h>
#include <AxData/planner/AxPlanRequest.h>
#include <AxData/planner/AxPlanResult.h>

#include <QString>

#include <vector>

/// A point of a route before it has coordinates.
struct AxRoutePlace
{
    CAxPoint2D place;                                 ///< in the plane
    AxPlanPoint::Role role = AxPlanPoint::Role::Turn; ///< what it is for
    int pass = -1;                                    ///< -1 between passes
    double along = 0.0;                               ///< metres flown from the start
    double altitude = 0.0;                            ///< metres above the ellipsoid
};

/// Gives the places of a route their altitudes as the request asks, `height` metres above the ground, and
/// adds those where the height changes in between. swath: metres of ground that a pass covers. Why that is
/// not possible, for people, else empty; the route is then left as it is.
QString AxSetAltitudes(const AxPlanRequest& request, const AxPlanPlane& plane, double height, double swath,
                       std::vector<AxRoutePlace>& route);

/// Heights above the ground along the route.
struct AxAboveGround
{
    int looks = 0;                       ///< at places whose ground is known
    double least = 0.0;                  ///< metres
    double mean = 0.0;                   ///< metres
    int passLooks = 0;                   ///< on passes, as the next two
    double passLeast = 0.0;              ///< metres
    double passMean = 0.0;               ///< metres
    std::vector<AxPlanWarning> warnings; ///< one for each stretch that is too low or over unknown ground
};
AxAboveGround AxLookBelow(const AxPlanRequest& request, const AxPlanPlane& plane,
                          const std::vector<AxRoutePlace>& route);

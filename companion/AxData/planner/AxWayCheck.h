#pragma once

#include <AxData/planner/AxPlanAltitudes.h>
#include <AxData/planner/AxZonesAround.h>

/// What the pilot ought to know of the places that a way leads through: the no-fly zones, bends tighter than
/// the aircraft turns, then the ground. The way begins and ends at home, where there is one.
AxAboveGround AxCheckWay(const AxPlanRequest& request, const AxPlanPlane& plane, AxZonesAround& zones,
                         const std::vector<AxRoutePlace>& way);

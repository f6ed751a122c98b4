#pragma once

#include <AxAlgorthm/AxMissionTypes.h>
#include <AxData/AxDataExport.h>
#include <AxData/planner/AxPlanRequest.h>

/// What aircraft of a type fly: usual figures of survey drones of that kind, for plans that know no more.
AXDATA_EXPORT AxPlanAircraft AxAircraftOfType(EPlaneType type);

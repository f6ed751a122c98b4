#pragma once

#include <AxData/AxDataExport.h>
#include <AxData/planner/AxPlanRequest.h>
#include <AxData/planner/AxPlanResult.h>

/// Plans the route of a survey. Knows no block, no window and no map; takes from the request all that it
/// needs. Any thread, as far as the request's ground may be asked there. Bad values are a fault of the
/// result, which then has no points.
AXDATA_EXPORT AxPlanResult AxPlanRoute(const AxPlanRequest& request);

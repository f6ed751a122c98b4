#pragma once

#include <AxData/planner/AxPlanRequest.h>

#include <QString>

/// Why no route can be planned, for people; empty when one can.
QString AxPlanFault(const AxPlanRequest& request);

/// Metres above the ground, as the request says or as its sample demands.
double AxPlannedHeight(const AxPlanRequest& request);

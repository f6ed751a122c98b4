#pragma once

#include <AxData/planner/AxPlanRequest.h>

/// The parts of a request's area that lie in its no-fly zones, as rings (longitude, latitude) that do not
/// overlap; what a zone encloses counts as a part of it. None but for areas.
QList<QList<QPointF>> AxZoneHoles(const AxPlanRequest& request);

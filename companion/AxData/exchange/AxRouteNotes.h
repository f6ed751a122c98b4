#pragma once

#include <AxData/planner/AxPlanRequest.h>
#include <AxData/planner/AxPlanResult.h>

#include <QStringList>

/// For people: what no format says of a route, whether aircraft fly by it or programs only show it.
QStringList AxNotesOfAnyFormat(const AxPlanResult& route, const AxPlanRequest& request);

#pragma once
#include <AxData/planner/AxPlanRequest.h>
#include <AxData/planner/AxPlanResult.h>

#include <QString>

/// A route of a task together with what was asked for, as the panels beside the map show it. Handed on as a
/// std::shared_ptr<const ShownPlan>, which nobody changes: any thread may read all but the request's ground.
struct ShownPlan
{
    QString blockID;
    QString taskID;
    AxPlanRequest request;
    AxPlanResult plan;
    bool hasFigures =
        true; ///< false where length and passes alone are known: from a file, or planned by a host
};

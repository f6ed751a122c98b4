#pragma once

#include <AxData/AxDataExport.h>
#include <AxData/planner/AxPlanPlane.h>

/// Where an aircraft is in a plane and which way it flies, radians anticlockwise from the x axis.
struct AXDATA_EXPORT AxPlanPose
{
    CAxPoint2D place;    ///< metres
    double course = 0.0; ///< radians
};

/// The shortest way between two poses whose curves are of that radius, metres: arcs and straight lines (L. E.
/// Dubins, 1957). Both ends are left out; points lie on the arcs, at most about 20 degrees of turn apart.
/// Empty for a radius of 0: the aircraft turns on the spot.
AXDATA_EXPORT AxPlanLine AxTurnBetween(const AxPlanPose& from, const AxPlanPose& to, double radius);

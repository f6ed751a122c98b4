#pragma once

#include <AxAlgorthm/AxConstants.h>
#include <AxAlgorthm/AxMath.h>
#include <AxData/planner/AxPlanPlane.h>
#include <AxData/planner/AxPlanRequest.h>

#include <cmath>

/// Metres a second over ground on the way from one place of a plane to another, in the wind of the request:
/// the aircraft heads into it such that it stays on the line. More than 0, because the wind is slower than
/// the aircraft.
inline double AxGroundSpeed(const AxPlanRequest& request, const CAxPoint2D& from, const CAxPoint2D& to)
{
    const double course = std::atan2(to.y() - from.y(), to.x() - from.x());
    const double towards = 0.5 * PI - DegreeToRadians(request.windFrom + 180.0);
    const double along = request.windSpeed * std::cos(towards - course);
    const double across = request.windSpeed * std::sin(towards - course);
    return std::sqrt(request.aircraft.speed * request.aircraft.speed - across * across) + along;
}

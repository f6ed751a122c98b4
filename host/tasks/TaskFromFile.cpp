#include "host/tasks/TaskFromFile.h"

#include <AxAlgorthm/AxCoordinate.h>

#include <cmath>
#include <utility>

AxPlanResult PlanThrough(std::vector<AxPlanPoint> points)
{
    AxPlanResult plan;
    for (std::size_t i = 1; i < points.size(); ++i) {
        const AxPlanPoint& from = points[i - 1];
        const AxPlanPoint& to = points[i];
        const double across =
            DistanceBetweenTwoLatLng({from.longitude, from.latitude, 0.0}, {to.longitude, to.latitude, 0.0});
        const double up = to.altitude - from.altitude;
        plan.figures.length += std::hypot(across, std::isnan(up) ? 0.0 : up);
    }
    for (const AxPlanPoint& point : points)
        plan.figures.passes += point.role == AxPlanPoint::Role::PassStart ? 1 : 0;
    plan.points = std::move(points);
    return plan;
}

TaskFromFile::TaskFromFile(const QString& id, const QString& name, AxMission read,
                           std::vector<AxPlanPoint> points)
    : CAxTask(id, name, nullptr), mission(std::move(read)), plan(PlanThrough(std::move(points)))
{
}

QList<CAxVector3D> TaskFromFile::ComputeRoute(int, QList<QPair<int, CAxVector3D>>& lineMarkers,
                                              CAxBlock::EBlockType, int, int)
{
    lineMarkers.clear();
    QList<CAxVector3D> route;
    for (const AxPlanPoint& point : plan.points)
        route += CAxVector3D(point.latitude, point.longitude, point.altitude);
    return route;
}

#include <AxAlgorthm/AxCoordinate.h>
#include <AxData/exchange/AxMissionTask.h>

#include <cmath>
#include <utility>

AxPlanResult AxPlanThrough(std::vector<AxPlanPoint> points)
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

AxMissionTask::AxMissionTask(const QString& id, const QString& name, AxMission mission,
                             std::vector<AxPlanPoint> points)
    : AxMissionTask(id, name,
                    std::make_shared<const AxKeptRoute>(AxKeptRoute{std::move(mission), std::move(points)}))
{
}

AxMissionTask::AxMissionTask(const QString& id, const QString& name, std::shared_ptr<const AxKeptRoute> kept)
    : CAxTask(id, name, nullptr), route(std::move(kept)), plan(AxPlanThrough(route->points))
{
}

QList<CAxVector3D> AxMissionTask::ComputeRoute(int, QList<QPair<int, CAxVector3D>>& lineMarkers,
                                               CAxBlock::EBlockType, int, int)
{
    lineMarkers.clear();
    QList<CAxVector3D> points;
    for (const AxPlanPoint& point : plan.points)
        points += CAxVector3D(point.latitude, point.longitude, point.altitude);
    return points;
}

#pragma once

#include <AxData/AxDataExport.h>
#include <AxData/CAxTask.h>
#include <AxData/exchange/AxMission.h>

#include <memory>
#include <vector>

/// A route that follows from no parameters: what an aircraft is told to fly, and the points that are shown of
/// it. Of a point whose altitude is left open, it is NaN.
struct AXDATA_EXPORT AxKeptRoute
{
    AxMission mission;               ///< as it was read
    std::vector<AxPlanPoint> points; ///< of the mission, as they are to be shown
};

/// A route through these points, with its length and its passes; the other figures are not known.
AXDATA_EXPORT AxPlanResult AxPlanThrough(std::vector<AxPlanPoint> points);

/// A task whose route was read from a file, an aircraft or a project, and follows from no parameters. Owned
/// by its block; GUI thread only.
class AXDATA_EXPORT AxMissionTask : public CAxTask
{
public:
    /// The points are those of the mission, as it is to be shown.
    AxMissionTask(const QString& id, const QString& name, AxMission mission, std::vector<AxPlanPoint> points);
    /// Of a route that was kept; it must not be null.
    AxMissionTask(const QString& id, const QString& name, std::shared_ptr<const AxKeptRoute> kept);

    /// What the aircraft is told to fly.
    const AxMission& Mission() const { return route->mission; }
    /// By AxPlanThrough().
    const AxPlanResult& Plan() const { return plan; }

    QList<CAxVector3D> ComputeRoute(int entryPoint, QList<QPair<int, CAxVector3D>>& lineMarkers,
                                    CAxBlock::EBlockType blockType, int expectedRouteCount,
                                    int appType) override;
    bool KeepsItsRoute() const override { return true; }
    std::shared_ptr<const AxKeptRoute> KeptRoute() const override { return route; }

private:
    std::shared_ptr<const AxKeptRoute> route;
    AxPlanResult plan;
};

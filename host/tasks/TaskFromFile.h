#pragma once
#include <AxData/CAxTask.h>
#include <AxData/exchange/AxMission.h>

/// A route through these points, with its length and its passes; the other figures are not known.
AxPlanResult PlanThrough(std::vector<AxPlanPoint> points);

/// A task whose route was read from a file and follows from no parameters. GUI thread.
class TaskFromFile : public CAxTask
{
public:
    /// The points are those of the mission, as it is to be shown.
    TaskFromFile(const QString& id, const QString& name, AxMission read, std::vector<AxPlanPoint> points);

    const AxMission& Mission() const { return mission; }
    /// By PlanThrough().
    const AxPlanResult& Plan() const { return plan; }

    QList<CAxVector3D> ComputeRoute(int entryPoint, QList<QPair<int, CAxVector3D>>& lineMarkers,
                                    CAxBlock::EBlockType blockType, int expectedRouteCount,
                                    int appType) override;
    bool KeepsItsRoute() const override { return true; }

private:
    AxMission mission;
    AxPlanResult plan;
};

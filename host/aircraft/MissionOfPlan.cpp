#include "host/aircraft/MissionOfPlan.h"
#include "host/aircraft/MissionDoubts.h"
#include "host/tasks/BlockOfRoute.h"
#include "viewer/CAxEarthViewer.h"

#include <AxAlgorthm/AxGeoid.h>
#include <AxAlgorthm/AxUniqueID.h>
#include <AxData/CAxBlockManager.h>
#include <AxData/CAxControl.h>
#include <AxData/CAxTask.h>
#include <AxData/exchange/AxMissionTask.h>

#include <QPointer>

#include <algorithm>
#include <utility>

namespace {
CAxTask* TaskOf(const ShownPlan& shown)
{
    const CAxBlock* block = CAxBlockManager::instance().GetBlock(shown.blockID);
    return block ? block->GetTask(shown.taskID) : nullptr;
}
} // namespace

AxMissionRead MissionOfPlan(const ShownPlan& shown)
{
    const CAxTask* task = TaskOf(shown);
    AxMissionRead made;
    if (const auto* read = dynamic_cast<const AxMissionTask*>(task)) {
        made.mission = read->Mission();
        made.notes = made.mission.leftOut;
    } else {
        made = AxMissionOf(shown.plan, shown.request, task ? task->GetTaskName() : QString());
        // The plan climbs and comes down over home; an aircraft does so only if its mission says it.
        made.mission = AxWithHomeWays(std::move(made.mission), shown.request.aircraft.turnRadius);
        // What it has noted is of files.
        made.notes = MissionDoubts::NotesOn(made.mission, shown);
    }
    if (made.fault.isEmpty())
        made.fault = AxMissionFault(made.mission);
    return made;
}

QString RouteName(const ShownPlan& shown)
{
    const CAxBlock* block = CAxBlockManager::instance().GetBlock(shown.blockID);
    const CAxTask* task = TaskOf(shown);
    return task ? MissionDoubts::tr("%1 of block %2").arg(task->GetTaskName(), block->GetBlockName())
                : MissionDoubts::tr("a task that is deleted");
}

bool IsReadRoute(const ShownPlan& shown)
{
    return dynamic_cast<const AxMissionTask*>(TaskOf(shown));
}

AxSimulatedAircraft SimulatedAircraftOfPlan(CAxEarthViewer& viewer, const ShownPlan& shown)
{
    CAxBlock* block = CAxBlockManager::instance().GetBlock(shown.blockID);
    const CAxTask* task = TaskOf(shown);
    EPlaneType type = block ? block->GetTaskPara()->GetPlaneType() : PlaneQuadcopter;
    // A mission that was read says itself what it is for.
    if (const auto* read = dynamic_cast<const AxMissionTask*>(task))
        type = read->Mission().isFixedWing ? PlaneFixedWing : type == PlaneFixedWing ? PlaneQuadcopter : type;
    AxSimulatedAircraft aircraft = AxSimulatedAircraftOf(type, shown.request.aircraft);
    aircraft.ground = [view = QPointer<CAxEarthViewer>(&viewer)](double longitude, double latitude) {
        return view ? GroundAboveEllipsoid(*view, longitude, latitude) : std::nullopt;
    };
    return aircraft;
}

std::optional<double> GroundAboveEllipsoid(const CAxEarthViewer& viewer, double longitude, double latitude)
{
    const AxPlanGround ground = CAxControl::GetInstance()->GetGround();
    const std::optional<double> height = ground ? ground(longitude, latitude) : std::nullopt;
    if (!height || viewer.AreMapHeightsAboveEllipsoid())
        return height;
    return *height + AxGeoidHeight(latitude, longitude).value_or(0.0);
}

bool AddRoute(CAxEarthViewer& viewer, const QString& blockID, TaskFiles::Read route)
{
    if (route.points.empty())
        return false;
    CAxBlock* block = BlockOfRoute(viewer, CAxBlockManager::instance().GetBlock(blockID), route);
    if (!block)
        return false;
    const QList<CAxTask*> tasks = block->GetMissionList();
    const auto isTaken = [&tasks](const QString& name) {
        return std::any_of(tasks.begin(), tasks.end(),
                           [&name](const CAxTask* task) { return task->GetTaskName() == name; });
    };
    QString name = route.name;
    for (int number = 2; isTaken(name); ++number)
        name = QStringLiteral("%1 (%2)").arg(route.name).arg(number);
    if (!block->AddTask(std::make_unique<AxMissionTask>(CreateUniqueID(), name, std::move(route.mission),
                                                        std::move(route.points))))
        return false;
    CAxControl::GetInstance()->SetProjectModified(true);
    viewer.slotFocusBlock(block->GetBlockID());
    return true;
}

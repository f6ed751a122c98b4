#include <AxData/CAxControl.h>
#include <AxData/CAxTask.h>
#include <AxData/planner/AxPlanAircraft.h>
#include <AxData/planner/AxPlanCameras.h>
#include <AxData/planner/AxPlanner.h>
#include <AxData/planner/AxZoneHoles.h>

#include <QCoreApplication>
#include <QLoggingCategory>

#include <algorithm>
#include <utility>

namespace {
Q_LOGGING_CATEGORY(logTask, "ax.data")
} // namespace

CAxTask::CAxTask(const QString& id, const QString& name, CAxTaskPara* para)
    : m_id(id), m_name(name), direction(para ? para->GetExtendedTaskParam()->direction : 0)
{
}

CAxTask::~CAxTask() = default;

void CAxTask::InsertVariableHeightRoutePt(int index, const QList<CAxVector3D>& points)
{
    if (index >= 0)
        m_variableHeightPoints.insert(index, points);
}

QList<CAxVector3D> CAxTask::GetVariableHeightRoutePt(int index) const
{
    return m_variableHeightPoints.value(index);
}

std::shared_ptr<const AxKeptRoute> CAxTask::KeptRoute() const
{
    return nullptr;
}

AxPlanRequest CAxTask::RequestOf(int entryPoint, CAxBlock::EBlockType blockType, int expectedRouteCount) const
{
    AxPlanRequest request;
    if (!m_block)
        return request;
    CAxTaskPara& para = *m_block->GetTaskPara();
    const CAxAirLineParam& airLine = *para.GetAirLineParam();
    const CAxExtendedTaskParam& extended = *para.GetExtendedTaskParam();
    request.outline = m_anchors.isEmpty() ? m_block->GetAnchor() : m_anchors;
    if (blockType == CAxBlock::StripBlock) {
        request.kind = AxPlanRequest::Kind::Strip;
        para.GetBandingOffset(request.leftWidth, request.rightWidth);
    } else if (blockType == CAxBlock::VideoBlock) {
        request.kind = AxPlanRequest::Kind::Orbit;
        request.radius = m_block->GetVideoRadius();
    }
    request.camera = AxCameraOfType(para.GetCameraType());
    request.aircraft = AxAircraftOfType(para.GetPlaneType());
    request.height = airLine.GetRelativeFlyHeight();
    request.sideOverlap = airLine.GetSideOverlap();
    request.forwardOverlap = airLine.GetForwardOverlap();
    request.heading = airLine.GetHeading();
    request.clearance = airLine.GetClearance();
    request.isThreeDirections = para.HasThreeDirections();
    request.isCrossed = extended.GetFlyingMode() == CAxExtendedTaskParam::CrossGrid;
    request.passes = std::max(0, expectedRouteCount);
    request.entry = std::clamp(entryPoint, 0, 3);
    request.meanGround = m_block->GetAverageAltitude();
    request.ground = CAxControl::GetInstance()->GetGround();
    request.zones = CAxControl::GetInstance()->GetZones();
    request.goesRoundZones = para.IsHomeLegRoundZones();
    if (para.IsChangeHighFlying() || extended.GetTaskType() == TaskVariableHeight)
        request.heights = AxPlanRequest::Heights::Terrain;
    extended.Complete(request, para.GetCameraType());
    if (request.camera.isSwinging && !AxIsSpecialCamera(para.GetCameraType(), para.GetPlaneType()))
        request.camera.views.clear(); // other aircraft do not swing it
    const CAxVector3D home = m_block->GetHomePosition();
    if (!home.isNull()) {
        request.home = QPointF(home.x(), home.y());
        request.homeAltitude = home.z();
    }
    // Last, because who gives zones may delete this task.
    if (para.AreZonesHoles())
        request.holes = AxZoneHoles(request);
    return request;
}

void CAxTask::TakePlan(AxPlanResult plan)
{
    m_plan.reset();
    if (plan.IsPlanned() || !plan.fault.isEmpty())
        m_plan = std::move(plan);
}

QList<CAxVector3D> CAxTask::ComputeRoute(int entryPoint, QList<QPair<int, CAxVector3D>>& lineMarkers,
                                         CAxBlock::EBlockType blockType, int expectedRouteCount,
                                         int /*appType*/)
{
    lineMarkers.clear();
    // Who gives heights and zones is asked meanwhile, and may delete this task.
    const QString name = m_name;
    const int shown = direction;
    const bool isChanging = m_block && m_block->GetTaskPara()->IsChangeHighFlying();
    const QMap<int, QList<CAxVector3D>> inserted =
        isChanging ? m_variableHeightPoints : QMap<int, QList<CAxVector3D>>();
    std::optional<AxPlanResult> taken = std::exchange(m_plan, {});
    const AxPlanResult plan =
        taken ? std::move(*taken) : AxPlanRoute(RequestOf(entryPoint, blockType, expectedRouteCount));
    QList<CAxVector3D> route;
    if (!plan.IsPlanned()) {
        qCWarning(logTask).noquote()
            << QCoreApplication::translate("AxPlanner", "No route for task \"%1\": %2").arg(name, plan.fault);
        return route;
    }
    const bool isThree = !plan.entriesOfDirections.empty();
    const auto& entries =
        isThree ? plan.entriesOfDirections[static_cast<std::size_t>(std::clamp(shown, 0, 2))] : plan.entries;
    for (int i = 0; i < 4; ++i) {
        const AxPlanPoint& entry = entries[static_cast<std::size_t>(i)];
        lineMarkers += {i, CAxVector3D(entry.latitude, entry.longitude, entry.altitude)};
    }
    // The display turns the list of the second of three directions round.
    if (isThree && shown == 1)
        std::reverse(lineMarkers.begin(), lineMarkers.end());
    route.reserve(static_cast<int>(plan.points.size()));
    for (int i = 0; i < static_cast<int>(plan.points.size()); ++i) {
        const AxPlanPoint& point = plan.points[static_cast<std::size_t>(i)];
        route += CAxVector3D(point.latitude, point.longitude, point.altitude);
        if (!isThree) // its thirds stay of equally many points
            route += inserted.value(i);
    }
    return route;
}

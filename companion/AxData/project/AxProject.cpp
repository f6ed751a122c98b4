#include <AxData/CAxBlockManager.h>
#include <AxData/CAxTask.h>
#include <AxData/exchange/AxMissionTask.h>
#include <AxData/project/AxProject.h>

#include <algorithm>
#include <cmath>
#include <tuple>

namespace {
// What is not known stays not known.
bool IsSame(double a, double b)
{
    return a == b || (std::isnan(a) && std::isnan(b));
}

bool IsSame(const CAxVector3D& a, const CAxVector3D& b)
{
    return IsSame(a.x(), b.x()) && IsSame(a.y(), b.y()) && IsSame(a.z(), b.z());
}

// Bit for bit: QPointF's own comparison takes places apart by micrometres for one.
bool IsSame(const QPointF& a, const QPointF& b)
{
    return a.x() == b.x() && a.y() == b.y();
}

bool IsSame(const AxPlanPoint& a, const AxPlanPoint& b)
{
    return a.longitude == b.longitude && a.latitude == b.latitude && IsSame(a.altitude, b.altitude) &&
           a.role == b.role && a.pass == b.pass;
}

bool IsSame(const AxMissionItem& a, const AxMissionItem& b)
{
    return a.command == b.command && a.frame == b.frame && a.isContinued == b.isContinued &&
           std::equal(a.params.begin(), a.params.end(), b.params.begin(),
                      [](double left, double right) { return IsSame(left, right); }) &&
           IsSame(a.latitude, b.latitude) && IsSame(a.longitude, b.longitude) &&
           IsSame(a.altitude, b.altitude);
}

template <typename List> bool AreSame(const List& a, const List& b)
{
    return std::equal(a.begin(), a.end(), b.begin(), b.end(),
                      [](const auto& left, const auto& right) { return IsSame(left, right); });
}

template <typename T> bool AreSame(const QList<T>& a, const QList<T>& b)
{
    return a.isSharedWith(b) ||
           std::equal(a.begin(), a.end(), b.begin(), b.end(),
                      [](const auto& left, const auto& right) { return IsSame(left, right); });
}

bool AreSame(const QMap<int, QList<CAxVector3D>>& a, const QMap<int, QList<CAxVector3D>>& b)
{
    if (a.isSharedWith(b))
        return true;
    if (a.size() != b.size())
        return false;
    for (auto left = a.begin(), right = b.begin(); left != a.end(); ++left, ++right)
        if (left.key() != right.key() || !AreSame(left.value(), right.value()))
            return false;
    return true;
}

bool IsSame(const AxMission& a, const AxMission& b)
{
    return std::tie(a.name, a.isFixedWing, a.speed, a.surveyBegin, a.surveyEnd, a.leftOut) ==
               std::tie(b.name, b.isFixedWing, b.speed, b.surveyBegin, b.surveyEnd, b.leftOut) &&
           IsSame(a.home.latitude, b.home.latitude) && IsSame(a.home.longitude, b.home.longitude) &&
           IsSame(a.home.altitude, b.home.altitude) && AreSame(a.items, b.items);
}

bool IsSame(const std::shared_ptr<const AxKeptRoute>& a, const std::shared_ptr<const AxKeptRoute>& b)
{
    return a == b || (a && b && IsSame(a->mission, b->mission) && AreSame(a->points, b->points));
}

auto Parts(const CAxTaskPara& para)
{
    double left = 0.0;
    double right = 0.0;
    para.GetBandingOffset(left, right);
    return std::make_tuple(para.GetPlaneType(), para.GetCameraType(), para.GetExpectedRouteCount(),
                           para.IsChangeHighFlying(), para.IsHomeLegRoundZones(), para.AreZonesHoles(), left,
                           right);
}

auto Parts(const CAxAirLineParam& line)
{
    return std::make_tuple(line.GetRelativeFlyHeight(), line.GetSideOverlap(), line.GetForwardOverlap(),
                           line.GetHeading(), line.GetClearance());
}

auto Parts(const CAxExtendedTaskParam& more)
{
    return std::make_tuple(more.GetFlyingMode(), more.GetTaskType(), more.GetCameraName(),
                           more.KeepsOverlap(), more.GetWindSpeed(), more.GetWindFrom(), more.GetEndurance(),
                           more.direction);
}

bool IsSame(const CAxTaskPara& a, const CAxTaskPara& b)
{
    return Parts(a) == Parts(b) && Parts(*a.GetAirLineParam()) == Parts(*b.GetAirLineParam()) &&
           Parts(*a.GetExtendedTaskParam()) == Parts(*b.GetExtendedTaskParam());
}
} // namespace

bool operator==(const AxProjectTask& a, const AxProjectTask& b)
{
    return a.id == b.id && a.name == b.name && a.direction == b.direction && AreSame(a.anchors, b.anchors) &&
           AreSame(a.variableHeights, b.variableHeights) && IsSame(a.route, b.route);
}

bool AxIsSameWork(const AxProjectBlock& a, const AxProjectBlock& b)
{
    return std::tie(a.id, a.name, a.type, a.enterDirection, a.isDownhillLanding, a.videoRadius, a.isLocked,
                    a.isVisible) == std::tie(b.id, b.name, b.type, b.enterDirection, b.isDownhillLanding,
                                             b.videoRadius, b.isLocked, b.isVisible) &&
           AreSame(a.anchors, b.anchors) && IsSame(a.home, b.home) && IsSame(a.parameters, b.parameters) &&
           a.tasks == b.tasks;
}

bool operator==(const AxProjectBlock& a, const AxProjectBlock& b)
{
    return AxIsSameWork(a, b) && IsSame(a.averageAltitude, b.averageAltitude) &&
           a.intersections == b.intersections;
}

bool operator==(const AxProjectMark& a, const AxProjectMark& b)
{
    return std::tie(a.id, a.name, a.longitude, a.latitude, a.altitude, a.description, a.followsGround) ==
           std::tie(b.id, b.name, b.longitude, b.latitude, b.altitude, b.description, b.followsGround);
}

bool operator==(const AxProjectView& a, const AxProjectView& b)
{
    return std::tie(a.longitude, a.latitude, a.altitude, a.heading, a.pitch, a.range) ==
           std::tie(b.longitude, b.latitude, b.altitude, b.heading, b.pitch, b.range);
}

bool operator==(const AxProject& a, const AxProject& b)
{
    return a.blocks == b.blocks && a.marks == b.marks && a.view == b.view && a.values == b.values;
}

bool AxIsSameWork(const AxProject& a, const AxProject& b)
{
    return std::equal(a.blocks.begin(), a.blocks.end(), b.blocks.begin(), b.blocks.end(),
                      [](const auto& left, const auto& right) { return AxIsSameWork(left, right); }) &&
           a.marks == b.marks && a.values == b.values;
}

AxProjectBlock AxProjectBlockOf(const CAxBlock& block)
{
    AxProjectBlock stored;
    stored.id = block.GetBlockID();
    stored.name = block.GetBlockName();
    stored.type = block.GetBlockType();
    stored.anchors = block.GetAnchor();
    stored.home = block.GetHomePosition();
    stored.enterDirection = block.GetEnterDirection();
    stored.isDownhillLanding = block.IsDownhillLanding();
    stored.videoRadius = block.GetVideoRadius();
    stored.averageAltitude = std::isfinite(block.GetAverageAltitude()) ? block.GetAverageAltitude() : 0.0;
    stored.intersections = block.GetIntersections();
    stored.parameters = *block.GetTaskPara();
    const QList<CAxTask*> tasks = block.GetMissionList();
    stored.tasks.reserve(tasks.size());
    for (const CAxTask* task : tasks)
        stored.tasks.append({task->GetTaskID(), task->GetTaskName(), task->GetTaskAnchors(), task->direction,
                             task->GetVariableHeightRoutePts(), task->KeptRoute()});
    return stored;
}

QVector<AxProjectBlock> AxProjectBlocks()
{
    const QList<CAxBlock*> records = CAxBlockManager::instance().GetBlockList();
    QVector<AxProjectBlock> blocks;
    blocks.reserve(records.size());
    for (const CAxBlock* record : records)
        blocks += AxProjectBlockOf(*record);
    return blocks;
}

void AxFillBlock(CAxBlock& block, const AxProjectBlock& stored)
{
    *block.GetTaskPara() = stored.parameters;
    block.SetHomePosition(stored.home, false);
    block.SetEnterDirection(stored.enterDirection);
    block.SetDownhillLanding(stored.isDownhillLanding);
    block.SetVideoRadius(stored.videoRadius);
    block.SetAverageAltitude(stored.averageAltitude);
    block.SetIntersections(stored.intersections);
    const QList<CAxTask*> former = block.GetMissionList();
    for (const CAxTask* task : former)
        block.RemoveTask(task->GetTaskID());
    for (const AxProjectTask& kept : stored.tasks) {
        std::unique_ptr<CAxTask> task;
        if (kept.route)
            task = std::make_unique<AxMissionTask>(kept.id, kept.name, kept.route);
        else
            task = std::make_unique<CAxTask>(kept.id, kept.name, block.GetTaskPara());
        task->SetTaskAnchors(kept.anchors);
        task->direction = kept.direction;
        for (auto points = kept.variableHeights.begin(); points != kept.variableHeights.end(); ++points)
            task->InsertVariableHeightRoutePt(points.key(), points.value());
        block.AddTask(std::move(task));
    }
    // Last, because they are told, and who hears of it may delete the block.
    const QString id = block.GetBlockID();
    const auto isRegistered = [&] { return CAxBlockManager::instance().GetBlock(id) == &block; };
    const bool wasRegistered = isRegistered();
    block.SetAnchor(stored.anchors);
    if (!wasRegistered || isRegistered())
        block.SetBlockName(stored.name);
}

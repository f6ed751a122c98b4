#include "host/tasks/TaskRoutes.h"
#include "interaction/CAxEarthManipulator.h"
#include "interaction/CAxHandleAdapter.h"
#include "mission/CAxTaskPolygon.h"
#include "viewer/CAxEarthViewer.h"

#include <AxData/CAxBlockManager.h>
#include <AxData/CAxControl.h>
#include <AxData/CAxTask.h>
#include <AxData/exchange/AxMissionTask.h>
#include <AxData/planner/AxPlanner.h>

#include <osgEarthAnnotation/PlaceNode>

#include <QDataStream>
#include <QIODevice>
#include <QJsonArray>
#include <QJsonDocument>
#include <QPointer>
#include <QScopedValueRollback>

#include <algorithm>
#include <cmath>
#include <iterator>
#include <set>
#include <typeinfo>
#include <utility>

namespace {
constexpr int lookEveryMs = 50;
constexpr qint64 leastRestMs = 150;
// A plan that takes long waits longer, or typing would stumble over it.
constexpr qint64 longestRestMs = 2000;
constexpr double samePlace = 1e-7; // degrees: a marker is placed to a centimetre

// A class of the host's own plans by itself.
bool PlansItself(const CAxTask& task)
{
    return typeid(task) != typeid(CAxTask);
}

std::vector<CAxVector3D> PlacesOf(const AxPlanResult& plan, double otherwise)
{
    std::vector<CAxVector3D> places;
    places.reserve(plan.points.size());
    for (const AxPlanPoint& point : plan.points)
        places.emplace_back(point.longitude, point.latitude,
                            std::isnan(point.altitude) ? otherwise : point.altitude);
    return places;
}

QByteArray OutlineOf(CAxBlock& block)
{
    double left = 0.0;
    double right = 0.0;
    block.GetTaskPara()->GetBandingOffset(left, right);
    QByteArray outline;
    QDataStream out(&outline, QIODevice::WriteOnly);
    out << block.GetAnchor() << block.GetVideoRadius() << left << right;
    return outline;
}

// Of the pictures of the entry points' markers, by which a click on one is known; -1 for another picture.
int EntryOfPicture(const std::string& file)
{
    const QString name = QString::fromStdString(file).section(QLatin1Char('/'), -1);
    const QString begin = QStringLiteral("Waypoint_Set_");
    return name.startsWith(begin) ? name.mid(begin.size(), 1).toInt() - 1 : -1;
}
} // namespace

TaskRoutes::Route::Route() = default;
TaskRoutes::Route::~Route() = default;

TaskRoutes::TaskRoutes(CAxEarthViewer* earthViewer, QObject* parent) : QObject(parent), viewer(earthViewer)
{
    connect(&clock, &QTimer::timeout, this, &TaskRoutes::Look);
    connect(&CAxBlockManager::instance(), &CAxBlockManager::blockDeleted, this, &TaskRoutes::OnBlockDeleted);
    connect(viewer->getManipulator(), &CAxEarthManipulator::mouseLeftBtnClickSignal, this,
            &TaskRoutes::OnClicked);
    connect(CAxControl::GetInstance(), &CAxControl::planBasisChanged, this, [this] { ++basis; });
    clock.start(lookEveryMs);
}

TaskRoutes::~TaskRoutes() = default;

std::shared_ptr<const ShownPlan> TaskRoutes::PlanOf(const QString& blockID, const QString& taskID) const
{
    const auto found = routes.find({blockID, taskID});
    return found == routes.end() ? nullptr : found->second->plan;
}

// All that a route follows from. The records tell of a new outline, but not of the rest: the mean height of
// the ground, for one, comes later.
QByteArray TaskRoutes::StateOf(CAxBlock& block, const CAxTask& task) const
{
    CAxTaskPara& para = *block.GetTaskPara();
    const CAxAirLineParam& line = *para.GetAirLineParam();
    const CAxExtendedTaskParam& more = *para.GetExtendedTaskParam();
    double left = 0.0;
    double right = 0.0;
    para.GetBandingOffset(left, right);
    const CAxVector3D home = block.GetHomePosition();
    QByteArray state;
    QDataStream out(&state, QIODevice::WriteOnly);
    out << block.GetAnchor() << task.GetTaskAnchors() << task.GetTaskName() << block.GetAverageAltitude()
        << home.isNull() << home.x() << home.y() << home.z() << block.GetEnterDirection()
        << block.IsDownhillLanding() << block.GetVideoRadius() << left << right
        << static_cast<int>(para.GetPlaneType()) << static_cast<int>(para.GetCameraType())
        << para.GetExpectedRouteCount() << para.IsChangeHighFlying() << para.IsHomeLegRoundZones()
        << para.AreZonesHoles() << line.GetRelativeFlyHeight() << line.GetSideOverlap()
        << line.GetForwardOverlap() << line.GetClearance() << line.GetHeading().has_value()
        << line.GetHeading().value_or(0.0) << more.GetFlyingMode() << static_cast<int>(more.GetTaskType())
        << more.GetCameraName() << more.KeepsOverlap() << more.GetWindSpeed() << more.GetWindFrom()
        << more.GetEndurance() << basis;
    return state;
}

std::shared_ptr<const ShownPlan> TaskRoutes::PlanNow(const QString& blockID, const QString& taskID)
{
    CAxBlock* block = CAxBlockManager::instance().GetBlock(blockID);
    CAxTask* task = block ? block->GetTask(taskID) : nullptr;
    if (!task)
        return nullptr;
    const Key key(blockID, taskID);
    if (!routes[key])
        routes[key] = std::make_shared<Route>();
    const Held route = routes[key];
    if (StateOf(*block, *task) != route->planned)
        Renew(key, *block, *task, route);
    return route->plan;
}

bool TaskRoutes::IsShown(const QString& blockID, const QString& taskID) const
{
    return hidden.count({blockID, taskID}) == 0;
}

std::vector<AxPlanWarning> TaskRoutes::ShownWarnings() const
{
    std::vector<AxPlanWarning> all;
    for (const auto& [key, route] : routes) {
        const CAxHandleAdapter* object = viewer->FindExistNode(key.first);
        if (!object || !object->IsVisible() || !IsShown(key.first, key.second) || !route->plan ||
            !route->plan->plan.IsPlanned())
            continue;
        const std::vector<AxPlanWarning>& warnings = route->plan->plan.warnings;
        all.insert(all.end(), warnings.begin(), warnings.end());
    }
    return all;
}

QString TaskRoutes::Hidden() const
{
    QJsonArray pairs;
    for (const Key& key : hidden) {
        // Deleted ones stay hidden here, because they may be put back.
        const CAxBlock* block = CAxBlockManager::instance().GetBlock(key.first);
        if (block && block->GetTask(key.second))
            pairs += QJsonArray{key.first, key.second};
    }
    return pairs.isEmpty() ? QString()
                           : QString::fromUtf8(QJsonDocument(pairs).toJson(QJsonDocument::Compact));
}

void TaskRoutes::SetHidden(const QString& kept)
{
    hidden.clear();
    for (const QJsonValue pair : QJsonDocument::fromJson(kept.toUtf8()).array())
        hidden.insert({pair.toArray().at(0).toString(), pair.toArray().at(1).toString()});
}

void TaskRoutes::SetShown(const QString& blockID, const QString& taskID, bool shown)
{
    const Key key(blockID, taskID);
    if (shown)
        hidden.erase(key);
    else
        hidden.insert(key);
    const auto found = routes.find(key);
    if (found != routes.end())
        Draw(key, Held(found->second));
}

void TaskRoutes::ShowFlown(const QString& blockID, const QString& taskID, int point)
{
    const auto found = routes.find({blockID, taskID});
    CAxTaskPolygon* drawn = found == routes.end() ? nullptr : found->second->drawn.get();
    if (!drawn)
        return;
    found->second->isFlownShown = point >= 0;
    // Between the two indices lies what is still to be flown.
    drawn->SetStartIndex(std::max(point, 0));
    drawn->SetEndIndex(point < 0 || !drawn->GetGeometry() ? 0
                                                          : static_cast<int>(drawn->GetGeometry()->size()));
    drawn->UpdateAirLine(point < 0 ? 0 : 1);
}

void TaskRoutes::Look()
{
    // A box that a route shows lets events run, and the clock with them.
    if (isLooking)
        return;
    const QScopedValueRollback<bool> guard(isLooking, true);
    std::set<Key> there;
    for (CAxBlock* block : CAxBlockManager::instance().GetBlockList()) {
        const QString blockID = block->GetBlockID();
        const QList<CAxTask*> tasks = block->GetMissionList();
        QStringList taskIDs;
        for (const CAxTask* task : tasks)
            taskIDs += task->GetTaskID();
        for (const QString& taskID : qAsConst(taskIDs)) {
            // Who heard of the one before may have deleted this one.
            CAxBlock* record = CAxBlockManager::instance().GetBlock(blockID);
            CAxTask* task = record ? record->GetTask(taskID) : nullptr;
            if (!task)
                continue;
            const Key key(blockID, taskID);
            there.insert(key);
            if (!routes[key])
                routes[key] = std::make_shared<Route>();
            Update(key, *record, *task, Held(routes[key]));
        }
    }
    QList<Key> gone;
    for (const auto& entry : routes)
        if (there.count(entry.first) == 0)
            gone += entry.first;
    for (const Key& key : qAsConst(gone)) {
        routes.erase(key);
        emit Planned(key.first, key.second);
    }
}

void TaskRoutes::Update(const Key& key, CAxBlock& block, CAxTask& task, const Held& route)
{
    const QByteArray state = StateOf(block, task);
    const bool isFirst = route->planned.isEmpty();
    if (state != route->planned) {
        if (state != route->changed) {
            route->changed = state;
            route->sinceChange.start();
        }
        const qint64 rest = qBound(leastRestMs, 2 * route->planMs, longestRestMs);
        if (isFirst || route->sinceChange.elapsed() >= rest)
            Renew(key, block, task, route);
        return;
    }
    CAxHandleAdapter* object = viewer->FindExistNode(key.first);
    const bool isWanted = object && hidden.count(key) == 0 && route->plan && route->plan->plan.IsPlanned();
    if (isWanted != (route->drawn != nullptr))
        return Draw(key, route);
    if (route->drawn && !object->GetTask(key.second))
        object->AddTask(route->drawn.get());
    if (route->drawn)
        route->drawn->SetAirLineVisible(object->IsVisible());
}

void TaskRoutes::Renew(const Key& key, CAxBlock& block, CAxTask& task, const Held& route)
{
    QElapsedTimer taken;
    taken.start();
    route->planned = StateOf(block, task);
    const QByteArray before = std::exchange(route->outline, OutlineOf(block));
    QString told;
    if (!before.isEmpty() && before != route->outline)
        told =
            (task.KeepsItsRoute()
                 ? tr("The route of \"%1\" over %2 stays as it was read, and may not fit the changed block.")
                 : tr("\"%1\" over %2 is planned anew; what was exported before does not fit the changed "
                      "block."))
                .arg(task.GetTaskName(), block.GetBlockName());
    Plan(block, task, *route);
    Draw(key, route);
    route->planMs = taken.elapsed();
    emit Planned(key.first, key.second);
    if (!told.isEmpty())
        emit Told(told);
}

void TaskRoutes::Plan(CAxBlock& block, CAxTask& task, Route& route)
{
    auto shown = std::make_shared<ShownPlan>();
    shown->blockID = block.GetBlockID();
    shown->taskID = task.GetTaskID();
    shown->hasFigures = !PlansItself(task);
    shown->request = task.RequestOf(block.GetEnterDirection(), block.GetBlockType(),
                                    block.GetTaskPara()->GetExpectedRouteCount());
    if (const auto* fixed = dynamic_cast<const AxMissionTask*>(&task)) {
        shown->request.isThreeDirections = false;
        shown->plan = fixed->Plan();
    } else {
        shown->plan = PlansItself(task) ? AskPlanner(block, task) : AxPlanRoute(shown->request);
    }
    route.plan = shown;
}

AxPlanResult TaskRoutes::AskPlanner(CAxBlock& block, CAxTask& task) const
{
    QList<QPair<int, CAxVector3D>> markers;
    const QList<CAxVector3D> route =
        task.ComputeRoute(std::max(0, block.GetEnterDirection()), markers, block.GetBlockType(),
                          block.GetTaskPara()->GetExpectedRouteCount(), viewer->GetAppType());
    const auto pointOf = [](const CAxVector3D& place) {
        return AxPlanPoint{place.y(), place.x(), place.z()};
    };
    std::vector<AxPlanPoint> points;
    std::transform(route.cbegin(), route.cend(), std::back_inserter(points), pointOf);
    AxPlanResult plan = AxPlanThrough(std::move(points));
    for (const auto& [number, place] : qAsConst(markers))
        if (number >= 0 && number < static_cast<int>(plan.entries.size()))
            plan.entries[static_cast<std::size_t>(number)] = pointOf(place);
    if (!plan.IsPlanned())
        plan.fault = tr("The planner of this kind of task gives no route.");
    return plan;
}

void TaskRoutes::Draw(const Key& key, const Held& route)
{
    CAxHandleAdapter* object = viewer->FindExistNode(key.first);
    CAxBlock* block = CAxBlockManager::instance().GetBlock(key.first);
    CAxTask* task = block ? block->GetTask(key.second) : nullptr;
    const bool isWanted = object && task && viewer->getMapNode() && hidden.count(key) == 0 && route->plan &&
                          route->plan->plan.IsPlanned();
    if (!isWanted) {
        route->drawn = nullptr;
        return;
    }
    if (!route->drawn) {
        route->drawn = std::make_unique<CAxTaskPolygon>(viewer, object);
        route->drawn->SetTaskID(key.second);
        object->AddTask(route->drawn.get());
    }
    const QPointer<CAxTaskPolygon> drawn = route->drawn.get();
    const int entry = std::max(0, block->GetEnterDirection());
    if (std::exchange(route->isFlownShown, false))
        drawn->UpdateAirLine(0);
    drawn->SetAirLineVisible(object->IsVisible());
    const CAxVector3D home = block->GetHomePosition();
    if (drawn->GetHomePoint().x() != home.x() || drawn->GetHomePoint().y() != home.y() ||
        drawn->GetHomePoint().isNull() != home.isNull())
        drawn->SetHomePoint(home);
    if (drawn->GetLandingMethod() != block->IsDownhillLanding())
        drawn->SetLandingMethod(block->IsDownhillLanding());
    const double height =
        block->GetAverageAltitude() + block->GetTaskPara()->GetAirLineParam()->GetRelativeFlyHeight();
    const std::vector<CAxVector3D> places = PlacesOf(route->plan->plan, height);
    drawn->ClearAirLineFlying();
    if (block->GetTaskPara()->IsChangeHighFlying())
        drawn->AddAirLineFlying(entry, places);
    if (!PlansItself(*task))
        task->TakePlan(route->plan->plan);
    // May show a box, and then anything of this may go.
    drawn->SetEntryPoint(entry);
}

void TaskRoutes::OnBlockDeleted(const QString& blockID)
{
    QStringList gone;
    for (const auto& entry : routes)
        if (entry.first.first == blockID)
            gone += entry.first.second;
    for (const QString& taskID : qAsConst(gone)) {
        routes.erase({blockID, taskID});
        emit Planned(blockID, taskID);
    }
}

void TaskRoutes::OnClicked(osg::Drawable* drawable)
{
    for (const osg::NodePath& path : drawable->getParentalNodePaths())
        for (osg::Node* node : path) {
            auto* marker = dynamic_cast<osgEarth::Annotation::PlaceNode*>(node);
            const int entry =
                marker && marker->getIconImage() ? EntryOfPicture(marker->getIconImage()->getFileName()) : -1;
            if (entry < 0)
                continue;
            const osgEarth::GeoPoint place = marker->getPosition();
            for (const auto& one : routes) {
                if (!one.second->drawn || !one.second->plan)
                    continue;
                const QList<QPointF> entries = EntriesOf(one.first, *one.second->plan);
                if (std::any_of(entries.begin(), entries.end(), [&place](const QPointF& point) {
                        return std::abs(point.x() - place.x()) < samePlace &&
                               std::abs(point.y() - place.y()) < samePlace;
                    }))
                    return emit EntryClicked(QString(one.first.first), entry);
            }
        }
}

// Where the markers stand: of three directions those of the one that is shown.
QList<QPointF> TaskRoutes::EntriesOf(const Key& key, const ShownPlan& shown) const
{
    QList<QPointF> places;
    CAxBlock* block = CAxBlockManager::instance().GetBlock(key.first);
    CAxTask* task = block ? block->GetTask(key.second) : nullptr;
    if (!task || PlansItself(*task) || !shown.request.isThreeDirections) {
        for (const AxPlanPoint& entry : shown.plan.entries)
            places += {entry.longitude, entry.latitude};
        return places;
    }
    QList<QPair<int, CAxVector3D>> markers;
    task->TakePlan(shown.plan);
    task->ComputeRoute(shown.request.entry, markers, block->GetBlockType(),
                       block->GetTaskPara()->GetExpectedRouteCount(), viewer->GetAppType());
    for (const auto& marker : qAsConst(markers))
        places += {marker.second.y(), marker.second.x()};
    return places;
}

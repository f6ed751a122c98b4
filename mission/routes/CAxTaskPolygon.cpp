// What is known of a route, and what its task makes of it. Its drawing is in CAxTaskPolygonDrawing.cpp.
#include "mission/routes/CAxTaskPolygon.h"

#include "interaction/input/CAxEarthManipulator.h"
#include "mission/routes/AxRouteRules.h"
#include "mission/routes/AxTaskPolygonState.h"
#include "mission/routes/CAxTaskLable.h"
#include "scene/AxBlockObject.h"
#include "scene/AxScene.h"
#include "scene/AxToolInHand.h"
#include "scene/AxViewerParts.h"
#include "scene/base/AxNotice.h"

#include <AxAlgorthm/AxUniqueID.h>
#include <AxData/CAxControl.h>
#include <AxData/CAxTask.h>

#include <osgEarthSymbology/Color>

#include <QGraphicsView>

#include <algorithm>
#include <cmath>

using osgEarth::Symbology::Color;

namespace {
constexpr int numberedEvery = 60; // ms, while the view moves
}

CAxTaskPolygon::CAxTaskPolygon(CAxEarthViewer* earthViewer, CAxHandleAdapter* object)
    : viewer(earthViewer), adapter(nullptr), outlineColor(Color::Orange), lineColor(Color::Yellow),
      taskID(CreateUniqueID()), parts(AxPartsOf(earthViewer)), d(std::make_unique<State>())
{
    CAxTaskPolygon::SetMapObject(object);
    look.setSingleShot(true);
    look.setInterval(numberedEvery);
    connect(&look, &QTimer::timeout, this, &CAxTaskPolygon::lookAgain);
    if (auto* mouse = parts ? qobject_cast<CAxEarthManipulator*>(parts->Mouse()) : nullptr)
        connect(mouse, &CAxEarthManipulator::signalViewMoved, this, [this] {
            if (!look.isActive())
                look.start();
        });
}

CAxTaskPolygon::~CAxTaskPolygon()
{
    CAxTaskPolygon::ClearFeatureNodeContained();
}

AxTaskRoute* AxRouteOf(CAxTaskPolygon* route)
{
    return route;
}

void CAxTaskPolygon::SetMapObject(CAxHandleAdapter* object)
{
    const bool wasGone = adapter && !adapterAlive;
    disconnect(adapterEnd);
    adapter = object;
    adapterAlive = AxObjectOf(object);
    if (!object)
        return;
    adapterEnd = connect(adapterAlive, &QObject::destroyed, this, [this] { ClearFeatureNodeContained(); });
    if (!wasGone)
        return;
    // A deletion was undone: what was shown is shown again.
    addToScene(featureNode);
    for (osg::Node* node : routeNodes())
        if (airLine || node == homeMarker)
            addToScene(node);
}

CAxBlock* CAxTaskPolygon::block() const
{
    return adapterAlive ? AxBlockOf(adapter) : nullptr;
}

double CAxTaskPolygon::flightHeight() const
{
    CAxBlock* record = block();
    if (!record)
        return 0.0;
    const double height =
        record->GetTaskPara()->GetAirLineParam()->GetRelativeFlyHeight() + record->GetAverageAltitude();
    return static_cast<double>(static_cast<float>(height));
}

ETaskType CAxTaskPolygon::taskType() const
{
    CAxBlock* record = block();
    return record ? record->GetTaskPara()->GetExtendedTaskParam()->GetTaskType() : TaskOrthophoto;
}

void CAxTaskPolygon::ComputerAirLine()
{
    CAxBlock* record = block();
    CAxTask* task = record && parts ? record->GetTask(taskID) : nullptr;
    if (!task)
        return;
    QList<QPair<int, CAxVector3D>> markers;
    // A planner of the host's own may end the task, the block or the route.
    const QPointer<CAxTaskPolygon> self(this);
    const QList<CAxVector3D> route =
        task->ComputeRoute(entryPoint, markers, record->GetBlockType(),
                           record->GetTaskPara()->GetExpectedRouteCount(), parts->Tools().AppType());
    record = self ? block() : nullptr;
    task = record && parts ? record->GetTask(taskID) : nullptr;
    if (!task)
        return;
    if (route.isEmpty()) {
        dropRoute();
        const QString text =
            tr("The %1 route parameter error,Please delete the current route and try again.");
        // Events run meanwhile: nothing of this object may be touched behind it.
        return AxShowNotice(parts->Widget(), tr("MissionDesk"), text.arg(task->GetTaskName()));
    }

    CAxTaskPara& para = *record->GetTaskPara();
    const double height = flightHeight();
    const bool isKept = task->KeepsItsRoute();
    const bool ownAltitudes = isKept || (AxIsSpecialCamera(para.GetCameraType(), para.GetPlaneType()) &&
                                         taskType() == TaskVariableHeight);
    QList<CAxVector3D> points;
    points.reserve(route.size());
    for (const CAxVector3D& point : route)
        points +=
            CAxVector3D(point.y(), point.x(), ownAltitudes && std::isfinite(point.z()) ? point.z() : height);
    for (auto& marker : markers)
        marker.second = CAxVector3D(marker.second.y(), marker.second.x(), height);

    const bool isChanging = !isKept && para.IsChangeHighFlying();
    if (!isKept && para.HasThreeDirections()) {
        const auto range = AxRouteRules::ThirdShown(points.size(), entryPoint, task->direction);
        ResetAirLine({points.cbegin() + range.first, points.cbegin() + range.first + range.count});
        if (task->direction == 1)
            std::reverse(markers.begin(), markers.end());
    } else if (isChanging) {
        CreateAirLineFlying();
    } else {
        CreateAirLine({points.cbegin(), points.cend()});
    }
    CreateLineMarker(markers, height);
    DrawLineLable();
    if ((isChanging || ownAltitudes) && airLine) {
        // Of what is drawn: the points of a changing height are not those that the task has planned.
        CheckLineMarker(AxRouteRules::WithMarkers(airLine->asVector(), markers), markers);
        UpdateLineMarker(flyingMarkers);
    }
}

void CAxTaskPolygon::ResetAirLine(const std::vector<CAxVector3D>& points)
{
    CreateAirLine(points);
    UpdateLineMarker(flyingMarkers);
}

void CAxTaskPolygon::CreateAirLineFlying()
{
    CAxBlock* record = block();
    const std::vector<CAxVector3D> route = flyingRoutes.value(entryPoint);
    if (!record || route.empty())
        return;
    if (!record->GetTaskPara()->HasThreeDirections())
        return CreateAirLine(route);
    const CAxTask* task = record->GetTask(taskID);
    const auto range =
        AxRouteRules::ThirdShown(static_cast<int>(route.size()), entryPoint, task ? task->direction : 0);
    CreateAirLine({route.begin() + range.first, route.begin() + range.first + range.count});
}

void CAxTaskPolygon::AddAirLineFlying(int index, const std::vector<CAxVector3D>& points)
{
    flyingRoutes[index] = points;
}

void CAxTaskPolygon::ClearAirLineFlying()
{
    flyingRoutes.clear();
}

void CAxTaskPolygon::AddAirLineMarkerFlying(int index, const osg::Vec3d& world)
{
    flyingMarkers[index] = world;
}

void CAxTaskPolygon::UpdateLineMarkerFlying()
{
    UpdateLineMarker(flyingMarkers);
    if (airLine)
        UpdatePointTxt(*airLine);
}

void CAxTaskPolygon::CheckLineMarker(const QList<CAxVector3D>& points,
                                     const QList<QPair<int, CAxVector3D>>& markers)
{
    flyingMarkers.clear();
    const QMap<int, CAxVector3D> matches = AxRouteRules::MatchingMarkers(points, markers);
    for (auto match = matches.begin(); match != matches.end(); ++match)
        flyingMarkers[match.key()] = world({match->x(), match->y(), match->z()});
}

void CAxTaskPolygon::slotAirLineOmniDirectional(int button, QString /*name*/)
{
    CAxBlock* record = block();
    CAxTask* task = record ? record->GetTask(taskID) : nullptr;
    if (!task)
        return;
    task->direction = button == 1 ? 0 : button == 2 ? 1 : 2;
    CAxControl::GetInstance()->SetProjectModified(true);
    ComputerAirLine();
}

void CAxTaskPolygon::SetEntryPoint(int index)
{
    entryPoint = index;
    ComputerAirLine();
}

void CAxTaskPolygon::SetHomePoint(const CAxVector3D& position)
{
    if (!std::isfinite(position.x()) || !std::isfinite(position.y()) || !std::isfinite(position.z()))
        return;
    homePoint = position;
    if (!position.isNull() && parts) {
        QList<osg::Vec3d> ground{{position.x(), position.y(), position.z()}};
        parts->Scene().GetElevations(ground);
        homePoint.setZ(ground.front().z());
    }
    showHome();
    UpdateAirLine(drawingMode);
}

void CAxTaskPolygon::SetLandingMethod(bool downhill)
{
    landsDownhill = downhill;
    SetHomePoint(CAxVector3D(homePoint));
}

#include "analysis/CAxAncillaryProcess.h"
#include "analysis/AxBlockAltitudes.h"
#include "analysis/AxPlanHeights.h"
#include "analysis/AxPlanZoneGiver.h"
#include "analysis/CAxAncillaryThread.h"
#include "analysis/CAxElevationQuery.h"
#include "analysis/zones/AxZoneFlash.h"
#include "analysis/zones/AxZoneHover.h"
#include "scene/AxScene.h"
#include "scene/AxViewerParts.h"
#include "scene/base/AxLongitudes.h"
#include "scene/base/AxWgs84.h"

#include <OpenThreads/ScopedLock>
#include <osg/Math>
#include <osgEarth/DrapeableNode>
#include <osgEarth/GeoMath>
#include <osgEarth/MapNode>
#include <osgViewer/Viewer>

#include <QDebug>

#include <algorithm>
#include <cmath>

using osgEarth::GeoMath;
using osgEarth::Symbology::Polygon;

namespace {
using Lock = OpenThreads::ScopedLock<OpenThreads::Mutex>;

using AxLongitudes::fullTurn;

QObject* HasSlot(QObject* object, const char* slot)
{
    return object && object->metaObject()->indexOfMethod(QMetaObject::normalizedSignature(slot)) >= 0
               ? object
               : nullptr;
}
} // namespace

CAxAncillaryProcess::CAxAncillaryProcess(CAxEarthViewer* map, QObject* parent)
    : QObject(parent), earthViewer(map), viewer(*AxPartsOf(map))
{
    CreateNoFlyZone();
    worker = std::make_unique<CAxAncillaryThread>(this);
    connect(worker.get(), SIGNAL(signalGenerateElevationQuery(QVariant)), this,
            SLOT(slotGenerateElevationQuery(QVariant)));
    connect(worker.get(), &CAxAncillaryThread::signalElevationAnswered, this,
            [this](int job) { answeredJob = job; });
    connect(worker.get(), &CAxAncillaryThread::signalElevationProgress, this,
            &CAxAncillaryProcess::slotElevationProgress);
    connect(worker.get(), &CAxAncillaryThread::signalModelBound, this, &CAxAncillaryProcess::slotModelBound);
    connect(worker.get(), &CAxAncillaryThread::signalShownZones, this,
            &CAxAncillaryProcess::signalShownZones);
    worker->SetEarthViewer(earthViewer);
    worker->CreateIntersectWorkers();
    flash = std::make_unique<AxZoneFlash>(viewer);
    hover = std::make_unique<AxZoneHover>(viewer, *this);
    altitudes = std::make_unique<AxBlockAltitudes>(viewer.Scene());
    planHeights = std::make_unique<AxPlanHeights>(viewer.Scene());
    planZones = std::make_unique<AxPlanZoneGiver>(worker->SharedIndex());
    // Made here, because the viewer itself makes its queue at the first use, on any thread.
    osgViewer::Viewer* const view = viewer.Scene().View();
    if (!view->getUpdateOperations())
        view->setUpdateOperations(new osg::OperationQueue);
    worker->start();
}

CAxAncillaryProcess::~CAxAncillaryProcess()
{
    planZones.reset();
    planHeights.reset();
    altitudes.reset();
    hover.reset();
    flash.reset();
    worker.reset();
    release();
}

void CAxAncillaryProcess::CreateNoFlyZone()
{
    zoneRoot = new osg::Switch;
    osg::ref_ptr<osgEarth::DrapeableNode> zones = new osgEarth::DrapeableNode;
    zones->setName("NoFlyGroup");
    zoneRoot->addChild(zones);
    viewer.Scene().DrawGroup()->addChild(zoneRoot);
}

void CAxAncillaryProcess::SetNoFlyZoneMask(bool visible)
{
    zoneRoot->setNodeMask(visible ? 1u : 0u);
}

bool CAxAncillaryProcess::NoFlyZoneMask() const
{
    return zoneRoot->getNodeMask() > 0u;
}

bool CAxAncillaryProcess::Intersection(osgEarth::Symbology::Geometry* area, QStringList& ids, bool)
{
    return area && worker->Intersect(*area, ids);
}

void CAxAncillaryProcess::SetCurrViewPort(const osgEarth::Viewpoint& viewpoint)
{
    worker->SetViewport(viewpoint);
}

osgEarth::Viewpoint CAxAncillaryProcess::GetCurrViewPort() const
{
    return worker->Viewport();
}

void CAxAncillaryProcess::FollowView(const osgEarth::Viewpoint& viewpoint, bool byEvent)
{
    if (!NoFlyZoneMask())
        return;
    if (byEvent) {
        if (viewpoint.focalPoint() == eventViewpoint.focalPoint() ||
            viewpoint.range() == eventViewpoint.range())
            return;
        eventViewpoint = viewpoint;
        SetCurrViewPort(viewpoint);
        return;
    }
    // The zones in the scene reach 2 degrees; a tenth of that may be missing at the edge.
    constexpr double farDegrees = 0.2;
    if (!viewpoint.focalPoint().isSet())
        return;
    const osgEarth::Viewpoint last = worker->Viewport();
    const bool isFirst = !last.focalPoint().isSet();
    const osg::Vec3d moved =
        isFirst ? osg::Vec3d() : viewpoint.focalPoint()->vec3d() - last.focalPoint()->vec3d();
    const bool isFar =
        std::abs(std::remainder(moved.x(), fullTurn)) > farDegrees || std::abs(moved.y()) > farDegrees;
    const bool isLow = viewpoint.getRange() < AxNearZones::highestRange;
    const bool isOtherHeight = isLow != (last.getRange() < AxNearZones::highestRange);
    if (isFirst || (isFar && isLow) || isOtherHeight)
        SetCurrViewPort(viewpoint);
}

void CAxAncillaryProcess::FollowGround()
{
    altitudes->AskAgain();
}

QStringList CAxAncillaryProcess::ZonesAt(double longitude, double latitude) const
{
    return worker->Index().At(longitude, latitude);
}

QStringList CAxAncillaryProcess::ShownZonesAt(double longitude, double latitude) const
{
    return worker->Shown(ZonesAt(longitude, latitude));
}

QList<AxNoflyZoneNear> CAxAncillaryProcess::ZonesNear(double longitude, double latitude, double metres) const
{
    QList<AxNoflyZoneNear> found;
    const double lat = osg::DegreesToRadians(latitude);
    const double lon = osg::DegreesToRadians(longitude);
    const QDateTime now = QDateTime::currentDateTime();
    const AxZoneIndex& index = worker->Index();
    for (const std::uint32_t place : index.Near(longitude, latitude, metres)) {
        const AxZoneOutline& zone = index.Outlines()[place];
        if (zone.bounds.isNull())
            continue;
        const QPointF middle = zone.bounds.center();
        const double zoneLat = osg::DegreesToRadians(middle.y());
        if (std::abs(zoneLat - lat) * AxWgs84::semiMajorAxis > metres)
            continue;
        const double zoneLon = osg::DegreesToRadians(middle.x());
        const double distance = GeoMath::distance(lat, lon, zoneLat, zoneLon, AxWgs84::semiMajorAxis);
        if (distance > metres)
            continue;
        const double bearing = osg::RadiansToDegrees(GeoMath::bearing(lat, lon, zoneLat, zoneLon));
        found += {zone.id,
                  std::remainder(middle.x(), fullTurn),
                  middle.y(),
                  distance,
                  bearing - fullTurn * std::floor(bearing / fullTurn),
                  AxLiftsOf(worker->Zones(), zone.id, now)};
    }
    std::stable_sort(found.begin(), found.end(), [](const AxNoflyZoneNear& a, const AxNoflyZoneNear& b) {
        return a.distance < b.distance;
    });
    return found;
}

void CAxAncillaryProcess::FlashZones(const QStringList& ids)
{
    QList<osg::ref_ptr<const osgEarth::Symbology::Geometry>> zones;
    for (const QString& id : ids) {
        if (const auto lifted = worker->Zones().zoneDisplayGeometry.value(id))
            zones += lifted;
        else if (worker->Zones().zonePolygons.contains(id))
            zones += worker->Zones().zonePolygons.value(id).Polygon();
    }
    flash->Flash(zones);
}

void CAxAncillaryProcess::block()
{
    {
        const Lock lock(gate);
        // A job that was handed over may have been finished by now; it closed the gate itself.
        if (!std::exchange(handedOver, false))
            released = false;
    }
    const Lock lock(gate);
    while (!released)
        opened.wait(&gate);
}

void CAxAncillaryProcess::release()
{
    const Lock lock(gate);
    if (released)
        return;
    released = true;
    opened.broadcast();
}

void CAxAncillaryProcess::SetElevationQueryPara(int columns, int rows, double resolution, osgEarth::Map* map,
                                                const osgEarth::Symbology::Geometry& area,
                                                const std::vector<osgEarth::TileKey>& keys, QObject* progress,
                                                CAxElevationQuery* query)
{
    AxElevationJob job;
    job.isAwaited = !progress || !query;
    job.columns = columns;
    job.rows = rows;
    job.resolution = resolution;
    job.map = map;
    const osg::ref_ptr<Polygon> continuous = new Polygon(&area.asVector());
    for (std::size_t i = 1; i < continuous->size(); ++i)
        (*continuous)[i].x() = AxLongitudes::NearestTo((*continuous)[i - 1].x(), (*continuous)[i].x());
    job.area = continuous;
    job.keys = keys;
    addElevationJob(job, progress, query);
}

void CAxAncillaryProcess::SetHeightsPara(const AxHeightsQuestion& question, osgEarth::Map* map,
                                         QObject* progress, CAxElevationQuery* query)
{
    AxElevationJob job;
    job.map = map;
    job.grid = question;
    addElevationJob(job, progress, query);
}

void CAxAncillaryProcess::CancelElevationQuery(const CAxElevationQuery* query)
{
    for (auto listener = elevationListeners.begin(); listener != elevationListeners.end();)
        if (listener->query == query) {
            worker->CallOffElevation(listener.key());
            listener = elevationListeners.erase(listener);
        } else
            ++listener;
    forgetTarget(query);
}

void CAxAncillaryProcess::forgetTarget(const CAxElevationQuery* query)
{
    const Lock lock(elevationHandOver);
    if (elevationTarget == query)
        elevationTarget = nullptr;
}

void CAxAncillaryProcess::addElevationJob(AxElevationJob& job, QObject* progress, CAxElevationQuery* query)
{
    job.number = ++elevationJobs;
    if (!job.isAwaited)
        elevationListeners.insert(job.number, {query, HasSlot(progress, "SetValue(int)")});
    else if (query)
        connect(query, &QObject::destroyed, this, [this, query] { forgetTarget(query); });
    worker->AddElevationJob(job, [this, &job, query] {
        if (!job.isAwaited)
            return;
        {
            const Lock lock(elevationHandOver);
            elevationTarget = query;
        }
        const Lock lock(gate);
        released = false;
        handedOver = true;
    });
}

void CAxAncillaryProcess::GenerateElevation(const QVariant& result)
{
    const Lock lock(elevationHandOver);
    if (CAxElevationQuery* const target = std::exchange(elevationTarget, nullptr))
        target->SetResult(result);
}

void CAxAncillaryProcess::slotGenerateElevationQuery(QVariant result)
{
    qDebug() << "CAxAncillaryProcess::slotGenerateElevationQuery";
    // The answers of other jobs are not the query's business.
    const auto [query, progress] = elevationListeners.take(answeredJob);
    QMetaObject::Connection hears;
    if (query)
        hears = connect(this, SIGNAL(signalGenerateElevationQuery(QVariant)), query,
                        SLOT(slotGenerateElevationQuery(QVariant)));
    emit signalGenerateElevationQuery(result);
    disconnect(hears);
    constexpr int all = 100;
    if (progress)
        QMetaObject::invokeMethod(progress, "SetValue", Q_ARG(int, all));
}

void CAxAncillaryProcess::slotElevationProgress(int job, int percent)
{
    if (QObject* const progress = elevationListeners.value(job).progress)
        QMetaObject::invokeMethod(progress, "SetValue", Q_ARG(int, percent));
}

void CAxAncillaryProcess::SetModelBoundPara(osg::Node* model, const osg::Matrixd& modelToWorld, int number,
                                            double margin, osg::Geode* geode, QObject* receiver)
{
    AxModelBoundJob job;
    job.model = model ? AxModelSnapshot(*model) : nullptr;
    // Coarse levels hardly reach less far.
    job.levelsToRead = 2;
    job.filesToRead = 200;
    job.modelToWorld = modelToWorld;
    job.srs = viewer.Scene().MapSRS();
    job.order = ++modelBoundJobs;
    job.number = number;
    job.margin = margin;
    modelBoundListeners.insert(job.order,
                               {job.model, geode, HasSlot(receiver, "slotModelBound(QVariant)"), number});
    worker->AddModelBoundJob(job);
}

void CAxAncillaryProcess::CancelModelBound(int number, const QObject* receiver)
{
    for (auto listener = modelBoundListeners.begin(); listener != modelBoundListeners.end(); ++listener)
        if (receiver && listener->number == number && listener->receiver == receiver) {
            worker->CallOffModelBound(listener.key());
            // The model stays, which the worker may be reading.
            listener->receiver = nullptr;
            listener->geode = nullptr;
        }
}

void CAxAncillaryProcess::slotModelBound(int job, QVariant bound)
{
    const QVariantList answer = bound.toList();
    const ModelBoundListener listener = modelBoundListeners.take(job);
    const osg::ref_ptr<osg::Geometry> line =
        AxOutlineDrawable(answer.value(1).toList(), *viewer.Scene().MapSRS());
    if (listener.geode && line)
        listener.geode->addDrawable(line);
    // The answers of other jobs are not the receiver's business.
    QMetaObject::Connection hears;
    if (listener.receiver)
        hears = connect(this, SIGNAL(signalModelBound(QVariant)), listener.receiver,
                        SLOT(slotModelBound(QVariant)), Qt::UniqueConnection);
    emit signalModelBound(bound);
    disconnect(hears);
}

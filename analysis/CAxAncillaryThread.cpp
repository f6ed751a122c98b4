#include "analysis/CAxAncillaryThread.h"
#include "analysis/AxUserOperation.h"
#include "analysis/CAxAncillaryProcess.h"
#include "scene/AxScene.h"
#include "scene/AxViewerParts.h"
#include "scene/base/AxNotice.h"

#include <AxData/CAxNoflyZoneMgr.h>

#include <OpenThreads/ScopedLock>
#include <osgViewer/Viewer>

#include <QDebug>

#include <cmath>
#include <cstdlib>

using osgEarth::Symbology::MultiGeometry;

namespace {
using Lock = OpenThreads::ScopedLock<OpenThreads::Mutex>;

constexpr int mostWorkers = 4;

[[noreturn]] void EndWithoutZones(const QString& text, const QString& details)
{
    AxShowNotice(nullptr, CAxAncillaryThread::tr("no-fly zone Information"), text, details);
    std::exit(EXIT_SUCCESS);
}
} // namespace

CAxAncillaryThread::CAxAncillaryThread(CAxAncillaryProcess* ancillaryProcess)
    : process(ancillaryProcess), zoneFile(new CAxNoflyZoneMgr(this))
{
    const QString file = zoneFile->CheckExistNoflyFile();
    if (file.isEmpty())
        EndWithoutZones(tr("The no-fly zone document does not exist ."),
                        CAxNoflyZoneMgr::GetNoflyFile() + QLatin1Char('\n') + tr("There is no such file."));
    QString reason;
    if (!AxLoadZones(*zoneFile, file, zones, &reason))
        EndWithoutZones(tr("The no-fly zone document parsing error!May file has been corrupted, please login "
                           "in the case of networking for Launcher!"),
                        file + QLatin1Char('\n') + reason);
    index = std::make_shared<AxZoneIndex>(zones);
    nearZones = std::make_unique<AxNearZones>(*index);
}

CAxAncillaryThread::~CAxAncillaryThread()
{
    Stop();
    join();
}

void CAxAncillaryThread::CreateIntersectWorkers()
{
    const std::vector<AxZoneOutline>& outlines = index->Outlines();
    const std::size_t share = (outlines.size() + mostWorkers - 1) / mostWorkers;
    for (std::size_t first = 0; first < outlines.size(); first += share) {
        const std::size_t end = std::min(first + share, outlines.size());
        intersectWorkers.emplace_back(
            new CAxAreaIntersectOperate(outlines.data() + first, outlines.data() + end));
    }
}

bool CAxAncillaryThread::Intersect(const osgEarth::Symbology::Geometry& area, QStringList& ids)
{
    unfinished.Set(static_cast<int>(intersectWorkers.size()));
    std::vector<osg::ref_ptr<osg::OperationThread>> threads;
    for (const auto& worker : intersectWorkers) {
        threads.emplace_back(new osg::OperationThread);
        worker->SetJob(area, unfinished);
        threads.back()->add(worker);
        // Where the system gives no more threads, the caller waits all the same.
        if (threads.back()->startThread() != 0)
            (*worker)(nullptr);
    }
    unfinished.Wait();
    // Before the results are read: a worker says that it has finished from within its run.
    threads.clear();
    const int before = ids.size();
    for (const auto& worker : intersectWorkers)
        ids += worker->Met();
    return ids.size() > before;
}

void CAxAncillaryThread::set(std::atomic<bool>& flag)
{
    flag = true;
    flagSet.broadcast();
}

void CAxAncillaryThread::SetViewport(const osgEarth::Viewpoint& viewpoint)
{
    const Lock lock(mutex);
    viewport = viewpoint;
    ++viewportCount;
    set(viewportChanged);
}

osgEarth::Viewpoint CAxAncillaryThread::Viewport() const
{
    const Lock lock(mutex);
    return viewport;
}

void CAxAncillaryThread::AddElevationJob(const AxElevationJob& job, const std::function<void()>& handOver)
{
    const Lock lock(mutex);
    handOver();
    elevationJobs.push_back(job);
    if (job.isAwaited)
        awaitedElevation = job.number;
    set(elevationPending);
}

void CAxAncillaryThread::CallOffElevation(int number)
{
    const Lock lock(mutex);
    calledOffElevations.insert(number);
}

void CAxAncillaryThread::CallOffModelBound(int order)
{
    const Lock lock(mutex);
    calledOffModels.insert(order);
}

void CAxAncillaryThread::AddModelBoundJob(const AxModelBoundJob& job)
{
    const Lock lock(mutex);
    modelBoundJobs.push_back(job);
    set(modelBoundPending);
}

void CAxAncillaryThread::Stop()
{
    const Lock lock(mutex);
    set(stopRequested);
}

QStringList CAxAncillaryThread::Shown(const QStringList& ids) const
{
    const Lock lock(mutex);
    QStringList shown;
    for (const QString& id : ids)
        if (shownZones.contains(id))
            shown += id;
    return shown;
}

bool CAxAncillaryThread::isAnySet() const
{
    return stopRequested || modelBoundPending || elevationPending || viewportChanged;
}

void CAxAncillaryThread::waitForFlag()
{
    const Lock lock(mutex);
    while (!isAnySet())
        flagSet.wait(&mutex);
}

void CAxAncillaryThread::run()
{
    while (!stopRequested) {
        if (modelBoundPending)
            runModelBoundJob();
        if (elevationPending)
            runElevationJob();
        if (viewportChanged)
            showZonesNear();
        waitForFlag();
    }
}

void CAxAncillaryThread::runModelBoundJob()
{
    AxModelBoundJob job;
    {
        const Lock lock(mutex);
        job = modelBoundJobs.front();
        modelBoundJobs.pop_front();
        modelBoundPending = !modelBoundJobs.empty();
    }
    const auto goesOn = [this, &job] { return goOn(calledOffModels, job.order); };
    // Somebody waits for heights, before a box or in block(); a large model takes minutes.
    const auto goesOnAfterHeights = [this, &goesOn] {
        while (elevationPending && !stopRequested)
            runElevationJob();
        return goesOn();
    };
    const QVariantList outline = goesOn() ? AxModelOutline(job, goesOnAfterHeights) : QVariantList();
    // Who handed it over lets it go last, on the thread of the scene.
    job.model = nullptr;
    {
        const Lock lock(mutex);
        calledOffModels.remove(job.order);
    }
    emit signalModelBound(job.order, QVariantList{job.number, outline});
}

// Zones enter the scene while a long job runs.
bool CAxAncillaryThread::goOn(const QSet<int>& off, int number)
{
    if (stopRequested)
        return false;
    if (viewportChanged)
        showZonesNear();
    const Lock lock(mutex);
    return !off.contains(number);
}

void CAxAncillaryThread::runElevationJob()
{
    AxElevationJob job;
    {
        const Lock lock(mutex);
        job = elevationJobs.front();
        elevationJobs.pop_front();
    }
    int told = -1;
    const QVariant result = AxAnswerElevations(job, [this, &told, &job](int percent) {
        if (std::exchange(told, percent) != percent)
            emit signalElevationProgress(job.number, percent);
        return goOn(calledOffElevations, job.number);
    });
    emit signalElevationAnswered(job.number);
    qDebug() << "emit signalGenerateElevationQuery";
    emit signalGenerateElevationQuery(result);
    // Another job may have been handed over meanwhile, or be just now: whoever waits for
    // that one must neither get this result nor be let go by it.
    const Lock lock(mutex);
    calledOffElevations.remove(job.number);
    elevationPending = !elevationJobs.empty();
    const bool isAwaited = job.number == awaitedElevation;
    if (isAwaited)
        process->GenerateElevation(result);
    if (isAwaited || !elevationPending)
        process->release();
}

void CAxAncillaryThread::showZonesNear()
{
    unsigned seen = 0;
    osgEarth::Viewpoint from;
    {
        const Lock lock(mutex);
        seen = viewportCount;
        from = viewport;
    }
    const bool isOtherSet =
        nearZones->Update(from, [this](const QString& id, const osg::Vec2d& middle, bool isNear) {
            osg::ref_ptr<const osgEarth::Symbology::Polygon> zone;
            if (isNear)
                zone = zones.zonePolygons.value(id).Polygon();
            queueZone(id, middle, zone);
            const Lock lock(mutex);
            if (zone)
                shownZones.insert(id, zone);
            else
                shownZones.remove(id);
        });
    {
        // The camera may have moved on meanwhile.
        const Lock lock(mutex);
        viewportChanged = viewportCount != seen;
    }
    if (isOtherSet)
        emit signalShownZones();
}

void CAxAncillaryThread::queueZone(const QString& id, const osg::Vec2d& middle,
                                   const osgEarth::Symbology::Polygon* zone)
{
    if (!viewer)
        return;
    const osg::ref_ptr<AxUserOperation> operation =
        new AxUserOperation(zone ? AddNoFlyZone : RemoveNoFlyZone);
    operation->setEarthViewer(viewer);
    operation->setUserName(id);
    if (zone) {
        operation->setUserPos(osg::Vec3d(middle, 0.0));
        operation->setUserPolygon(*zone);
        const auto display = zones.zoneDisplayGeometry.value(id);
        operation->setUserMultiGeometry(display ? *display : MultiGeometry());
        operation->Prepare();
    }
    AxPartsOf(viewer)->Scene().View()->addUpdateOperation(operation);
}

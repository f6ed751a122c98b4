#pragma once
#include "analysis/AxElevationJob.h"
#include "analysis/models/AxModelBound.h"
#include "analysis/zones/AxNearZones.h"
#include "analysis/zones/AxNoflyZones.h"
#include "analysis/zones/AxZoneIndex.h"
#include "analysis/zones/CAxAreaIntersectOperate.h"

#include <OpenThreads/Condition>
#include <OpenThreads/Mutex>
#include <OpenThreads/Thread>
#include <osg/ref_ptr>
#include <osgEarth/Viewpoint>

#include <QObject>
#include <QSet>
#include <QStringList>
#include <QVariant>

#include <atomic>
#include <deque>
#include <functional>
#include <memory>
#include <vector>

class CAxAncillaryProcess;
class CAxEarthViewer;
class CAxNoflyZoneMgr;

/**
 * The background thread: it keeps the zones, decides with every move of the
 * camera which of them are in the scene, and carries the elevation and the
 * model-bound job. It sleeps until one of its flags is set.
 *
 * Owned by CAxAncillaryProcess. The zones are loaded on the thread that
 * constructs it and never change afterwards, so every thread may read them; the
 * setters may be called on any. The scene is changed by AxUserOperations only.
 */
class CAxAncillaryThread : public QObject, public OpenThreads::Thread
{
    Q_OBJECT
public:
    /// Opens and loads the zone file; without zones the operator is told, and the process ends with status 0.
    explicit CAxAncillaryThread(CAxAncillaryProcess* process);
    /// Waits for the thread's end.
    ~CAxAncillaryThread() override;

    void SetEarthViewer(CAxEarthViewer* earthViewer) { viewer = earthViewer; }
    void SetViewport(const osgEarth::Viewpoint& viewpoint);
    osgEarth::Viewpoint Viewport() const;
    /// Each job is done, one after the other. `handOver` runs before any thread can see the job
    /// or finish the one before it; the process's own locks may be taken in it.
    void AddElevationJob(const AxElevationJob& job, const std::function<void()>& handOver);
    /// Ends a job soon, with an answer of nothing, whether it has begun or not.
    void CallOffElevation(int number);
    /// Each job is done, one after the other; elevation jobs go before, also while one is being done.
    void AddModelBoundJob(const AxModelBoundJob& job);
    /// Ends a job soon, with an empty outline, whether it has begun or not. Not for one that has ended.
    void CallOffModelBound(int order);
    void Stop();

    const AxNoflyZones& Zones() const { return zones; }
    const AxZoneIndex& Index() const { return *index; }
    /// The same, for who may outlive the thread.
    std::shared_ptr<const AxZoneIndex> SharedIndex() const { return index; }
    /// Those of some zones that are in the scene, or about to be.
    QStringList Shown(const QStringList& ids) const;

    /// Makes the workers of Intersect(): at most four, each with a quarter of the zones.
    void CreateIntersectWorkers();
    /// Appends the zones that an area meets. On the calling thread, one call at a time.
    bool Intersect(const osgEarth::Symbology::Geometry& area, QStringList& ids);

    void run() override;

signals:
    void signalGenerateElevationQuery(QVariant);
    /// Comes right before the answer to the job of that number.
    void signalElevationAnswered(int job);
    void signalElevationProgress(int job, int percent);
    void signalModelBound(int job, QVariant);
    void signalShownZones();

private:
    void waitForFlag();
    void set(std::atomic<bool>& flag);
    bool isAnySet() const;
    void runModelBoundJob();
    void runElevationJob();
    /// Shows zones meanwhile; false for a job that was called off, and at the end.
    bool goOn(const QSet<int>& off, int number);
    void showZonesNear();
    void queueZone(const QString& id, const osg::Vec2d& middle, const osgEarth::Symbology::Polygon* zone);

    CAxAncillaryProcess* process;
    CAxEarthViewer* viewer = nullptr;
    CAxNoflyZoneMgr* zoneFile;
    AxNoflyZones zones;
    std::shared_ptr<const AxZoneIndex> index;
    std::unique_ptr<AxNearZones> nearZones; // of the thread itself
    std::vector<osg::ref_ptr<CAxAreaIntersectOperate>> intersectWorkers;
    AxPendingWorkers unfinished;

    std::atomic<bool> stopRequested{false};
    std::atomic<bool> viewportChanged{false};
    std::atomic<bool> modelBoundPending{false};
    std::atomic<bool> elevationPending{false};

    // Guards what follows.
    mutable OpenThreads::Mutex mutex;
    OpenThreads::Condition flagSet;
    osgEarth::Viewpoint viewport;
    unsigned viewportCount = 0;
    std::deque<AxElevationJob> elevationJobs;
    QSet<int> calledOffElevations; ///< numbers of jobs that have not ended
    int awaitedElevation = 0;
    std::deque<AxModelBoundJob> modelBoundJobs;
    QSet<int> calledOffModels; ///< likewise, their order
    QMap<QString, osg::ref_ptr<const osgEarth::Symbology::Polygon>> shownZones;
};

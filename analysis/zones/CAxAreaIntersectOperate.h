#pragma once
#include "analysis/zones/AxNoflyZones.h"
#include "scene/base/AxEarthViewerExport.h"

#include <OpenThreads/Condition>
#include <OpenThreads/Mutex>
#include <osg/OperationThread>
#include <osg/ref_ptr>
#include <osgEarthSymbology/Geometry>

#include <QPainterPath>
#include <QPolygonF>
#include <QRectF>
#include <QString>
#include <QStringList>

#include <vector>

/// The outline of a zone that areas are tested against. Degrees.
struct AXEARTHVIEWER_EXPORT AxZoneOutline
{
    QString id;     ///< as in the zone file
    QRectF bounds;  ///< around the outline: longitude (x), latitude (y)
    QPointF middle; ///< of the box around the zone as decreed; NaN for a zone without an area
    /// What is left of a zone with lifts.
    QPolygonF lifted;
    /// The zone itself where it has none, else empty.
    AxZoneShape shape;

    /// The outline as a closed path: longitude (x), latitude (y).
    QPainterPath Path() const;
    /// Whether it encloses a place (degrees), given on either side of the antimeridian.
    bool Contains(double longitude, double latitude) const;
};

/// The outlines of all zones in the order of their ids.
AXEARTHVIEWER_EXPORT std::vector<AxZoneOutline> AxZoneOutlines(const AxNoflyZones& zones);

/// Counts workers that have not finished; one thread waits for them.
class AXEARTHVIEWER_EXPORT AxPendingWorkers
{
public:
    /// Before the workers begin.
    void Set(int workers);
    /// By each worker at its end, on its own thread.
    void Finish();
    /// Blocks until all have finished.
    void Wait();

private:
    OpenThreads::Mutex mutex;
    OpenThreads::Condition done;
    int count = 0;
};

/**
 * Tests an area against a share of the zones. It is kept for repeated runs: a
 * run without a pending job does nothing.
 *
 * Reference counted. SetJob() and Met() belong to the thread that waits for the
 * counter, operator() to an operation thread in between.
 */
class AXEARTHVIEWER_EXPORT CAxAreaIntersectOperate : public osg::Operation
{
public:
    /// The share of the zones that it tests against, from `first` to before `end`; they outlive it.
    CAxAreaIntersectOperate(const AxZoneOutline* first, const AxZoneOutline* end);

    /// The counter hears of the end; it and the area outlive the run.
    void SetJob(const osgEarth::Symbology::Geometry& area, AxPendingWorkers& pending);
    void operator()(osg::Object*) override;
    /// The ids of the zones that the area met, in the order of the ids.
    const QStringList& Met() const { return met; }

private:
    ~CAxAreaIntersectOperate() override;
    void test();

    const AxZoneOutline* first;
    const AxZoneOutline* end;
    const osgEarth::Symbology::Geometry* area = nullptr;
    AxPendingWorkers* pendingWorkers = nullptr;
    bool pending = false;
    QStringList met;
};

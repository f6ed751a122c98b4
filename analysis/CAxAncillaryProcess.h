#pragma once
#include "viewer/AxEarthViewerExport.h"

#include <OpenThreads/Condition>
#include <OpenThreads/Mutex>
#include <osg/Matrixd>
#include <osg/Node>
#include <osg/ref_ptr>
#include <osg/Switch>
#include <osgEarth/TileKey>
#include <osgEarth/Viewpoint>
#include <osgEarthSymbology/Geometry>

#include <QList>
#include <QObject>
#include <QPointer>
#include <QStringList>
#include <QVariant>

#include <memory>
#include <vector>

class AxZoneFlash;
class CAxAncillaryThread;
class CAxEarthViewer;
class CAxElevationQuery;

namespace osgEarth {
class Map;
}
namespace osg {
class Geode;
}

/// A lift of a no-fly zone, as the operator reads of it.
struct AxNoflyLift
{
    QString begin;
    QString expiry;
    /// The expiry is a date and has passed. Such a lift applies all the same.
    bool isOutOfDate = false;
};

/// A no-fly zone as seen from a place.
struct AxNoflyZoneNear
{
    QString id;
    double longitude = 0.0; ///< of its middle, degrees
    double latitude = 0.0;
    double distance = 0.0; ///< from the place to its middle, metres
    double bearing = 0.0;  ///< from the place to its middle, degrees clockwise from north, 0 to 360
    QList<AxNoflyLift> lifts;
};

/**
 * Front of the work that runs beside the map: the no-fly zones and the jobs of
 * the background thread. It owns that thread and the scene root under which the
 * zones hang. The viewer creates one during start-up and deletes it in
 * ReleaseAll().
 *
 * GUI thread only, except release(), GenerateElevation() and what the signals
 * carry over.
 */
class AXEARTHVIEWER_EXPORT CAxAncillaryProcess : public QObject
{
    Q_OBJECT
public:
    /// Reads the zone file. Without a readable one the operator is told, and the
    /// process ends with status 0. The viewer's draw group must exist; the zone
    /// root is added to it.
    CAxAncillaryProcess(CAxEarthViewer* viewer, QObject* parent);
    /// Ends the background thread and lets go of whoever waits in block().
    ~CAxAncillaryProcess() override;

    /// Shows or hides all no-fly zones at once.
    void SetNoFlyZoneMask(bool visible);
    bool NoFlyZoneMask() const;

    /// Appends to `ids` the zones whose outline an area (degrees) meets, lifted
    /// parts not counting; whether there are any. The last argument is kept for
    /// callers and has no effect.
    bool Intersection(osgEarth::Symbology::Geometry* area, QStringList& ids, bool);

    /// Where the camera is; zones near its focal point are the ones shown.
    void SetCurrViewPort(const osgEarth::Viewpoint& viewpoint);
    osgEarth::Viewpoint GetCurrViewPort() const;

    /// The zones in force at a place (degrees), by ascending id.
    QStringList ZonesAt(double longitude, double latitude) const;
    /// The zones whose middle lies within `metres` of a place (degrees), the nearest first.
    QList<AxNoflyZoneNear> ZonesNear(double longitude, double latitude, double metres) const;
    /// Makes zones blink for some seconds, whether zones are shown or not. Unknown ids are passed over.
    void FlashZones(const QStringList& ids);

    /// Waits until the worker has finished the job that was handed to it.
    void block();
    void release();

    /// Hands the worker an elevation job; see CAxElevationQuery. With a `progress`
    /// object the query hears of the result by its slot; without, the caller waits with block().
    void SetElevationQueryPara(int level, int samples, double noData, osgEarth::Map* map,
                               const osgEarth::Symbology::Geometry& area,
                               const std::vector<osgEarth::TileKey>& keys, QObject* progress,
                               CAxElevationQuery* query);
    /// Puts a result into the query that waits for one, if any.
    void GenerateElevation(const QVariant& result);

signals:
    void signalGenerateElevationQuery(QVariant);
    /// Another set of zones is in the scene.
    void signalShownZones();

private slots:
    void slotGenerateElevationQuery(QVariant result);

private:
    void CreateNoFlyZone();

    CAxEarthViewer* viewer;
    OpenThreads::Mutex gate;
    OpenThreads::Condition opened;
    bool released = false;
    OpenThreads::Mutex elevationHandOver;
    QObject* elevationTarget = nullptr;
    osg::ref_ptr<osg::Switch> zoneRoot;
    osgEarth::Viewpoint currViewPort;
};

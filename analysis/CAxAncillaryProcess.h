#pragma once
#include "analysis/CAxElevationQuery.h"
#include "analysis/zones/AxNoflyZones.h"
#include "scene/AxZoneAnswers.h"
#include "scene/base/AxEarthViewerExport.h"

#include <OpenThreads/Condition>
#include <OpenThreads/Mutex>
#include <osg/Geode>
#include <osg/Matrixd>
#include <osg/Node>
#include <osg/ref_ptr>
#include <osg/Switch>
#include <osgEarth/TileKey>
#include <osgEarth/Viewpoint>
#include <osgEarthSymbology/Geometry>

#include <QList>
#include <QMap>
#include <QObject>
#include <QPointer>
#include <QStringList>
#include <QVariant>

#include <memory>
#include <vector>

class AxBlockAltitudes;
struct AxHeightsQuestion;
struct AxElevationJob;
class AxPlanHeights;
class AxPlanZoneGiver;
class AxZoneFlash;
class AxViewerParts;
class AxZoneHover;
class CAxAncillaryThread;
class CAxEarthViewer;

namespace osgEarth {
class Map;
}

/// A no-fly zone as seen from a place.
struct AxNoflyZoneNear
{
    QString id;               ///< as in the zone file
    double longitude = 0.0;   ///< of its middle, degrees
    double latitude = 0.0;    ///< of its middle, degrees
    double distance = 0.0;    ///< from the place to its middle, metres
    double bearing = 0.0;     ///< from the place to its middle, degrees clockwise from north, 0 to 360
    QList<AxNoflyLift> lifts; ///< in the order of the file
};

/**
 * Front of the work that runs beside the map: the no-fly zones, the jobs of the
 * background thread and the average altitudes of blocks. It owns that thread and the scene root under which
 * the zones hang. The viewer creates one during start-up and deletes it in ReleaseAll().
 *
 * GUI thread only, except release(), GenerateElevation() and what the signals
 * carry over.
 */
class AXEARTHVIEWER_EXPORT CAxAncillaryProcess : public QObject, public AxZoneAnswers
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
    void SetNoFlyZoneMask(bool visible) override;
    /// Whether they are shown; they are hidden once the viewer has started.
    bool NoFlyZoneMask() const override;

    /// Appends to `ids` the zones whose outline an area (degrees) meets, lifted
    /// parts not counting; whether there are any. The last argument is kept for
    /// callers and has no effect.
    bool Intersection(osgEarth::Symbology::Geometry* area, QStringList& ids, bool) override;

    /// Where the camera is; zones near its focal point are the ones shown.
    void SetCurrViewPort(const osgEarth::Viewpoint& viewpoint);
    osgEarth::Viewpoint GetCurrViewPort() const;
    /// The ground is another one: asks for the altitudes of blocks again.
    void FollowGround();
    /// Hears where the camera is, and hands that over when zones are shown: of an event's
    /// viewpoint (`byEvent`) when both its focal point and its range are new, of any other
    /// when it has moved on far enough for other zones to be near.
    void FollowView(const osgEarth::Viewpoint& viewpoint, bool byEvent);

    /// The zones in force at a place (degrees), by ascending id.
    QStringList ZonesAt(double longitude, double latitude) const;
    /// Those of them that are in the scene.
    QStringList ShownZonesAt(double longitude, double latitude) const override;
    /// The zones whose middle lies within `metres` of a place (degrees), the nearest first.
    QList<AxNoflyZoneNear> ZonesNear(double longitude, double latitude, double metres) const;
    /// Makes zones blink for some seconds, whether zones are shown or not. Unknown ids are passed over.
    void FlashZones(const QStringList& ids) override;

    /// Waits until the worker has finished the job that was handed to it.
    void block();
    /// Lets go of whoever waits in block(). Any thread.
    void release();

    /// Hands the worker an elevation job: columns by rows cells over each tile, or
    /// over the box around the area (degrees) when there are no tiles; the middles of
    /// the cells inside the area count. `resolution` is the finest that is wanted,
    /// degrees; 0 takes the best.
    ///
    /// With a `progress` object the query hears of the result by its slot
    /// slotGenerateElevationQuery(QVariant), and the object's slot SetValue(int) of
    /// the percentage, 100 after the answer; without one the caller waits with block(), and the query has
    /// the result then. It is a list of places, each a list of longitude, latitude
    /// (degrees) and altitude (metres).
    void SetElevationQueryPara(int columns, int rows, double resolution, osgEarth::Map* map,
                               const osgEarth::Symbology::Geometry& area,
                               const std::vector<osgEarth::TileKey>& keys, QObject* progress,
                               CAxElevationQuery* query);
    /// Hands the worker the question for the heights of an area: the query hears of an AxHeightGridPointer by
    /// its slot slotGenerateElevationQuery(QVariant), `progress`, which may be null, of the percentage by
    /// SetValue(int). Without a map the grid has no cells. Jobs of both kinds are done in the order in which
    /// they are handed over, and zones are shown meanwhile.
    void SetHeightsPara(const AxHeightsQuestion& question, osgEarth::Map* map, QObject* progress,
                        CAxElevationQuery* query);
    /// Calls the jobs of a query off: it hears of none of them any more. One that waits in block() does so
    /// until its job is done, and has no result then.
    void CancelElevationQuery(const CAxElevationQuery* query);
    /// Puts a result into the query that a caller of block() waits for; nothing when
    /// there is none. Called by the worker.
    void GenerateElevation(const QVariant& result);

    /// Hands the worker a model whose outline on the ground is wanted. The outline,
    /// `margin` metres beyond the model, is drawn into the geode; the receiver's slot
    /// slotModelBound(QVariant) hears a list of `number` and the outline, a list of
    /// places as above. Both may be null. The model must not change meanwhile, but for
    /// what a pager loads: that is read from its files instead, where nothing coarser is
    /// there or it takes but a few. Jobs are done in the order in which they are handed
    /// over, and each receiver hears of its own. Elevation jobs do not wait for them.
    void SetModelBoundPara(osg::Node* model, const osg::Matrixd& modelToWorld, int number, double margin,
                           osg::Geode* geode, QObject* receiver);
    /// Calls the jobs of that number off: the receiver hears nothing of them, and nothing is drawn.
    void CancelModelBound(int number, const QObject* receiver);

signals:
    /// An elevation job has ended, whoever asked: the list of places, or an AxHeightGridPointer. A query that
    /// was given with a progress object is connected to it for its own answer alone.
    void signalGenerateElevationQuery(QVariant);
    /// A model-bound job has ended: a list of the number and the outline.
    void signalModelBound(QVariant);
    /// Another set of zones is in the scene.
    void signalShownZones();

private slots:
    void slotGenerateElevationQuery(QVariant result);
    void slotElevationProgress(int job, int percent);
    void slotModelBound(int job, QVariant bound);

private:
    struct ElevationListener
    {
        QPointer<CAxElevationQuery> query;
        QPointer<QObject> progress;
    };

    struct ModelBoundListener
    {
        osg::ref_ptr<osg::Node> model; ///< goes on the GUI thread
        osg::ref_ptr<osg::Geode> geode;
        QPointer<QObject> receiver;
        int number = 0;
    };

    void CreateNoFlyZone();
    void addElevationJob(AxElevationJob& job, QObject* progress, CAxElevationQuery* query);
    void forgetTarget(const CAxElevationQuery* query);

    CAxEarthViewer* earthViewer;
    AxViewerParts& viewer;
    osgEarth::Viewpoint eventViewpoint; ///< the last one that came with an event and was handed over
    OpenThreads::Mutex gate;
    OpenThreads::Condition opened;
    bool released = false;
    bool handedOver = false;
    OpenThreads::Mutex elevationHandOver;
    CAxElevationQuery* elevationTarget = nullptr;
    osg::ref_ptr<osg::Switch> zoneRoot;
    std::unique_ptr<CAxAncillaryThread> worker;
    std::unique_ptr<AxZoneFlash> flash;
    std::unique_ptr<AxZoneHover> hover;
    std::unique_ptr<AxBlockAltitudes> altitudes;
    std::unique_ptr<AxPlanHeights> planHeights;
    std::unique_ptr<AxPlanZoneGiver> planZones;
    int elevationJobs = 0;
    int answeredJob = 0;
    QMap<int, ElevationListener> elevationListeners; // by the job's number
    int modelBoundJobs = 0;
    QMap<int, ModelBoundListener> modelBoundListeners; // by the job's order
};

#pragma once
#include "analysis/AxMapHeights.h"
#include "interaction/measure/AxMeasurement.h"

#include <osg/observer_ptr>
#include <osgEarth/Map>

#include <QHash>
#include <QObject>
#include <QPointer>
#include <QStringList>
#include <QThreadPool>

#include <atomic>
#include <memory>

class AxMeasureAdapter;
class AxObjects;
class AxShapeFactories;
class AxViewerParts;
class AxVolumeAnalysis;
class CAxEarthViewer;

/**
 * What the measuring tools have found: finished measurements, which stay on the map until they are removed.
 * No block record and no undo step knows of them; a host may keep them in projects (Restore()).
 *
 * A measurement is listed at once with what the points alone say. What hangs on the ground is read from the
 * finest heights of the map, whatever is drawn, on a thread of its own, because a source may keep it waiting;
 * changed() tells when it is there.
 *
 * Owned by the viewer. GUI thread.
 */
class AXEARTHVIEWER_EXPORT AxMeasurements : public QObject
{
    Q_OBJECT
public:
    /// All outlive it, or it is told by Close(). Objects are made for `earth`.
    AxMeasurements(AxViewerParts& viewer, AxObjects& objects, CAxEarthViewer* earth);
    /// Calls the work off and waits for the thread.
    ~AxMeasurements() override;

    QVector<AxMeasurement> All() const { return list; } ///< the oldest first
    /// Null for an unknown ID. Valid until the list changes.
    const AxMeasurement* Find(const QString& id) const;
    /// Takes one off the map and the list; false for an unknown ID.
    bool Remove(const QString& id);
    void Clear(); ///< all of them
    /// Has these stand out on the map, and no others.
    void SetHighlighted(const QStringList& ids);
    QStringList Highlighted() const { return highlighted; } ///< as they were set last
    /// The ID of the one whose line, mark or else text is seen where a place (geocentric metres) is seen now;
    /// the latest of several; empty without.
    QString SeenAt(const osg::Vec3d& world) const;
    /// Reads the ground anew for all of them: the map's heights are others now. Until then they are pending,
    /// with the former values.
    void MeasureAgain();
    /// Gives a measurement values that were found elsewhere; false for an unknown ID.
    bool SetValues(const QString& id, const AxMeasuredValues& values, bool isPending);
    /// Writes the texts on the map anew: the units are others now.
    void WriteAgain();
    /// Lists and shows one that was drawn in another session, with that tool, ID, name and points; heights of
    /// points do not count. False for a tool that measures nothing, for points that it cannot have, and for
    /// an ID that is in use.
    bool Restore(const AxMeasurement& drawn);
    /// added() is of such a one, which nobody has chosen.
    bool IsRestoring() const { return isRestoring; }

    // For the tools

    /// An object begins to measure: when it is left for another one it ends.
    void Began(AxMeasureAdapter* adapter);
    /// Lists what the object has measured and shows it from now on. The object stays the viewer's.
    void Take(AxMeasureAdapter* adapter);
    /// An object is being destroyed.
    void Forget(const AxMeasureAdapter* adapter);
    /// Ends the work before the objects go.
    void Close();

signals:
    void added(QString id);   ///< a measurement was finished
    void changed(QString id); ///< its values
    void removed(QString id); ///< it is off the map and the list

private:
    void enter(AxMeasureAdapter* adapter, const QString& name);
    bool read(const QString& id);
    AxMeasurement* find(const QString& id);
    void endLeft();

    AxViewerParts& parts;
    AxObjects& book;
    CAxEarthViewer* const earthViewer;
    QVector<AxMeasurement> list;
    QHash<QString, QPointer<AxMeasureAdapter>> adapters; ///< by ID, those that are listed
    QHash<QString, std::shared_ptr<std::atomic<bool>>> jobs;
    QPointer<AxMeasureAdapter> running;
    QVector<QPointer<AxMeasureAdapter>> restored; ///< which no drawing has handed to the objects
    QHash<EToolType, int> counts;                 ///< of a kind so far: numbers are not given twice
    QStringList highlighted;
    osg::observer_ptr<const osgEarth::Map> readMap;
    std::shared_ptr<AxMapHeights> heights; ///< of that map, used on the thread
    QThreadPool thread;
    bool isClosed = false;
    bool isRestoring = false;
};

/// Enters the tools that measure into those that draw, and has the measurements that are volumes computed:
/// of either the other one goes with it.
void AxAddMeasureTools(AxShapeFactories& factories, AxMeasurements& measurements, AxVolumeAnalysis& volumes);

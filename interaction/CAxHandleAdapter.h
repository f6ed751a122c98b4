#pragma once
#include "interaction/EHandleOperation.h"
#include "viewer/AxEarthViewerExport.h"

#include <AxData/CAxBlock.h>

#include <osg/Geode>
#include <osg/ref_ptr>
#include <osg/Vec3d>

#include <QList>
#include <QObject>
#include <QPointer>
#include <QString>

#include <vector>

class CAxEarthViewer;
class CAxHandleAdapterEditor;
class CAxTaskPolygon;

/**
 * An editable object on the map. It keeps its vertices, listens to the mouse
 * through the manipulator's signals while it is drawn or edited, and mirrors
 * its vertices into the block record of the same ID.
 *
 * Owned by the viewer once it is registered there, else by its Qt parent. GUI
 * thread only.
 */
class AXEARTHVIEWER_EXPORT CAxHandleAdapter : public QObject
{
    Q_OBJECT
public:
    CAxHandleAdapter(CAxEarthViewer* viewer, QObject* parent);
    /// The viewer forgets it wherever it kept it.
    ~CAxHandleAdapter() override;

    /// Judges the geometry: 1 or more accepts it, 0 or less rejects it; -2
    /// after the operator was told why.
    virtual int CheckGeometry() = 0;
    /// The vertices: longitude and latitude in degrees, altitude in metres.
    virtual std::vector<osg::Vec3d>& GetAnchor() { return anchors; }
    /// The operator double-clicked one of the object's points.
    virtual void ResponseDoubleClickOnPoint(int index, osg::Vec3d point);

    /// The ID of the block that the object draws, unique among all objects.
    QString GetHandleID() const { return handleID; }
    void SetHandleID(const QString& id) { handleID = id; }
    CAxBlock::EBlockType GetBlockType() const { return blockType; }
    EHandleOperation GetHandleOperation() const { return operation; }
    bool IsLock() const { return lock; }
    /// Routes of the object; an object with routes is not moved.
    const QList<CAxTaskPolygon*>& GetTaskList() const { return tasks; }
    /// The node that holds the object's drawables and by which it is picked.
    osg::Geode* GetFeatureNode() const { return featureNode.get(); }
    /// Null while the vertices cannot be edited.
    CAxHandleAdapterEditor* GetAnchorEditor() const { return anchorEditor; }

    /// Begins the drawing.
    void BenginHandle() { operation = OperationDrawing; }

    /// From the first vertex to the cursor when a move of the object began,
    /// degrees, degrees and 0.
    void SetMoveCenterPt(const osg::Vec3d& offset) { moveCenter = offset; }
    const osg::Vec3d& GetMoveCenterPt() const { return moveCenter; }

    /// A step of a move of several objects at once, degrees, degrees and metres.
    void HandleMoved(double dLng, double dLat, double dAlt);
    /// Ends a move: a code above 0 keeps the new place, any other returns to
    /// the block's stored vertices. Outside a move it does nothing.
    void EndMoved(int code);

public slots:
    /// A step of a move of this object alone.
    virtual void slotHandleMoved(double dLng, double dLat, double dAlt);

protected:
    /// Writes the vertices into the block record, altitudes dropped; nothing when there is none.
    void UpdateCurrentOperate();
    /// Takes the vertices from the block record, altitudes from the map; nothing when there is none.
    void ReturnLastOperate();

    QPointer<CAxEarthViewer> viewer;
    osg::ref_ptr<osg::Geode> featureNode;
    CAxHandleAdapterEditor* anchorEditor = nullptr;
    QString handleID;
    CAxBlock::EBlockType blockType = CAxBlock::PolygonBlock;
    std::vector<osg::Vec3d> anchors;
    QList<CAxTaskPolygon*> tasks;
    EHandleOperation operation = OperationIdle;
    bool lock = false;
    osg::Vec3d moveCenter;
};

#pragma once
#include "interaction/EHandleOperation.h"
#include "viewer/AxEarthViewerExport.h"

#include <AxAlgorthm/CAxVector3D.h>
#include <AxBaseUI/EToolType.h>
#include <AxData/CAxBlock.h>

#include <osg/Geode>
#include <osg/Geometry>
#include <osg/Image>
#include <osg/ref_ptr>
#include <osg/Vec3d>
#include <osg/Vec4f>
#include <osgEarthSymbology/Geometry>
#include <osgEarthSymbology/Style>

#include <QList>
#include <QObject>
#include <QPointer>
#include <QString>
#include <QStringList>

#include <memory>
#include <vector>

class CAxEarthManipulator;
class CAxEarthViewer;
class CAxHandleAdapterEditor;
class CAxTaskPolygon;

namespace osgEarth::Annotation {
class LabelNode;
}

/**
 * An editable object on the map. It keeps its vertices, listens to the mouse
 * through the manipulator's signals while it is drawn or edited, and mirrors
 * its vertices into the block record of the same ID.
 *
 * Life of an edit: a gesture ends in CheckGeometry(); what is accepted is
 * written to the block record (and onto the viewer's undo stack), what is
 * refused falls back to the record.
 *
 * Owned by the viewer from createShapeNode() or AddHandleAdapter() on, else by
 * its Qt parent. It draws below the viewer's "GeomAdapter" group. GUI thread
 * only.
 */
class AXEARTHVIEWER_EXPORT CAxHandleAdapter : public QObject
{
    Q_OBJECT
public:
    CAxHandleAdapter(CAxEarthViewer* viewer, QObject* parent);
    /// The viewer forgets it wherever it kept it, and its nodes leave the scene.
    ~CAxHandleAdapter() override;

    /// Shows or hides the object; taskID names the route that asks, or is empty.
    virtual void SetAdapterVisible(bool visible, QString taskID) = 0;
    virtual void RemoveMarkerPoint(QString name);
    /// Judges the geometry just drawn or edited: 1 or more accepts it, 0 or less
    /// rejects it; -2 after the operator was told why.
    virtual int CheckGeometry() = 0;
    /// The vertices as a polygon, longitude and latitude in degrees, altitude in metres.
    virtual osg::ref_ptr<osgEarth::Symbology::Geometry> GetGeometry();
    /// The vertices: longitude and latitude in degrees, altitude in metres.
    virtual std::vector<osg::Vec3d>& GetAnchor() { return anchors; }
    /// Draws the object anew and makes it the viewer's current one when its
    /// vertices differ from the block record's.
    virtual void update();
    /// Takes the altitudes of the vertices from the ground; false without vertices.
    virtual bool GetBlockElevation();
    /// Centre of the box around the vertices: latitude, longitude, 0. A default
    /// value without vertices.
    virtual CAxVector3D GetGravityLatLng();
    /// Builds the object from given vertices; `enableEditor` shows their handles as well.
    virtual void ImportGeometry(const std::vector<osg::Vec3d>& points, bool enableEditor);
    virtual bool HandleIsPicked(osg::Node* node);
    /// Widths of a strip, metres.
    virtual void SetWidth(double width1, double width2);
    /// Radius of a video area, metres.
    virtual void SetVideoRadius(int radius);
    virtual void SetVideoPosition(const osg::Vec3d& lngLatPos);
    /// Called once a drawing has been accepted.
    virtual void HandleEnd();
    virtual void SetMarkerPointName(const QStringList& names);
    virtual QStringList GetMarkerPointName();
    virtual void UpdateColor();
    virtual void SetFeatureNodeVisible(bool visible);

public slots:
    virtual void slotMousePressed(float windowX, float windowY);
    virtual void slotMousePressed(osg::Vec3d lngLatPos, osg::Vec3d worldCoordPos);
    virtual void slotMoving(osg::Vec3d lngLatPos, osg::Vec3d worldCoordPos);
    virtual void slotMouseRelease(float windowX, float windowY);
    virtual void slotMouseRelease(osg::Vec3d lngLatPos, osg::Vec3d worldCoordPos);
    virtual void slotPicked(osg::Vec3d lngLatPos, osg::Vec3d worldCoordPos);
    virtual void slotDoubleClicked(osg::Vec3d lngLatPos, osg::Vec3d worldCoordPos);
    virtual void slotDragging(float windowX, float windowY);
    virtual void slotDragging(osg::Vec3d lngLatPos, osg::Vec3d worldCoordPos);
    virtual void slotRightBtnClicked(osg::Vec3d lngLatPos);
    /// A handle has been moved: degrees, degrees, metres.
    virtual void slotPointMoved(double lng, double lat, double alt, int index);
    /// A step of a move of the whole object, degrees, degrees and metres; the
    /// vertices are there already.
    virtual void slotHandleMoved(double dLng, double dLat, double dAlt);

public:
    /// A vertex drag has ended.
    virtual void ResponseHandlePointMoved(osg::Vec3d lngLatPos, osg::Vec3d worldCoordPos);
    /// A move of the object has ended; mind the order of the points.
    virtual void ResponseHandleMoved(osg::Vec3d worldCoordPos, osg::Vec3d lngLatPos);
    /// The operator double-clicked one of the object's points.
    virtual void ResponseDoubleClickOnPoint(int index, osg::Vec3d point);
    virtual void ResponseDoubleClickOnBlock();
    /// Asked once an accepted drawing was registered: 2 removes the object all the
    /// same, below 0 tells the host that nothing was reset.
    virtual int ResponseDoubleClickWhenDraw();
    /// Removes all vertices and their nodes.
    virtual void ClearPoints() = 0;

    /// The ID of the block that the object draws, unique among all objects.
    QString GetHandleID() const { return handleID; }
    /// Not for an object that the viewer has registered already.
    void SetHandleID(const QString& id) { handleID = id; }
    CAxBlock::EBlockType GetBlockType() const { return blockType; }
    /// The block record of the object's ID, or null.
    CAxBlock* GetContainedBlock() const;
    EHandleOperation GetHandleOperation() const { return operation; }
    CAxEarthViewer* GetViewer() const;
    bool IsLock() const { return lock; }
    bool IsVisible() const { return visible; }
    bool IsFilter() const { return filter; }
    /// Whether the area may be split into segments; known once the name was drawn.
    bool IsSegment() const { return segment; }
    /// Index of the vertex that is being dragged, -1 when none is.
    int GetEditIndex() const { return editIndex; }
    /// The node that holds the object's drawables and by which it is picked. All objects share
    /// its state set: a node that is to be drawn otherwise gets one of its own.
    osg::Geode* GetFeatureNode() const { return featureNode.get(); }
    /// Null while the vertices cannot be edited.
    CAxHandleAdapterEditor* GetAnchorEditor() const { return anchorEditor.get(); }
    osgEarth::Annotation::LabelNode* GetNameLabel() const { return nameLabel.get(); }
    osg::Group* GetLockNode() const { return lockNode.get(); }

    /// Draws the object as one of several selected ones, or again as itself. The viewer calls it.
    void SetSelectedAmongSeveral(bool selected);
    bool IsSelectedAmongSeveral() const { return selectedAmongSeveral; }

    /// Routes of the object; an object with routes is not moved. Not owned.
    const QList<CAxTaskPolygon*>& GetTaskList() const { return tasks; }
    CAxTaskPolygon* GetTask(const QString& taskID) const;
    void AddTask(CAxTaskPolygon* task);
    void RemoveTask(const QString& taskID);
    void RemoveAllTask();
    /// Where the task's aircraft lands; a default value for an unknown task.
    CAxVector3D GetTaskLingPosition(const QString& taskID) const;
    void SetTaskEntryPoint(int index, const QString& taskID);
    void SetTaskLandingPosition(const CAxVector3D& position, const QString& taskID);
    void SetTaskLandingMethod(bool downhill, const QString& taskID);

    /// Connects the manipulator's mouse signals to the slots above, once.
    void ConnectMouseEvent();
    void DisconnectMouseEvent();

    /// Begins the drawing.
    void BenginHandle() { operation = OperationDrawing; }
    /// Ends a drawing without a double click: what is accepted is registered, what
    /// is rejected is removed, and the object with it.
    void EndHandle();
    /// Gives up what is going on: a drawing is removed with the object, a drag goes
    /// back to the block record. True when there was something to give up.
    bool CancelHandle();
    /// While drawing, takes the last vertex back; the first one ends nothing. True when it did.
    bool RemoveLastPoint();
    /// Takes a vertex away, or puts one before `index`, by the same path as a drag:
    /// judged, then committed or undone. False, nothing changed, when the object
    /// may not be edited, has no such vertex, or the result was refused.
    bool DeleteVertex(int index);
    bool InsertVertex(int index, const osg::Vec3d& lngLatAlt);

    /// From the first vertex to the cursor when a move of the object began,
    /// degrees, degrees and 0.
    void SetMoveCenterPt(const osg::Vec3d& offset) { moveCenter = offset; }
    const osg::Vec3d& GetMoveCenterPt() const { return moveCenter; }
    /// A step of a move of several objects at once, degrees, degrees and metres.
    void HandleMoved(double dLng, double dLat, double dAlt);
    /// Ends a move: a code above 0 keeps the new place, any other returns to
    /// the block's stored vertices. Outside a move it does nothing.
    void EndMoved(int code);

    /// Makes or removes the handles of the vertices. An object that is locked or has routes gets none.
    void SetAnchorEditorEnabled(bool enabled);
    /// Locks or unlocks, and shows or hides the lock icons.
    void SetLockBlock(bool locked, bool drawLock);
    void SetNameVisible(bool nameVisible);
    /// Draws the name of the block record on the object, anew when it changed.
    void DrawNameLabel();
    /// Of the sampled ground; false, with 999999 and -999999, when nothing was sampled.
    bool GetElevationMinMax(double& min, double& max) const;
    bool GetElevationsAverage(double& average) const;
    /// Empties the lists of further nodes that belong to the object.
    void ClearFeatureNodeContained();
    /// Takes the vertices from the block record, altitudes from the map, and draws
    /// them; nothing when there is none.
    void ReturnLastOperate();
    /// Whether the vertices differ from those of the block record.
    bool GeometryModifyed() const;

    /// A picture of Qt's resources; null when there is none.
    static osg::ref_ptr<osg::Image> FromQImage(const QString& path);

signals:
    void signalHandlePickEnded(EToolType eToolType);
    void signalHandleEnd(QString strHanleID, bool bReset);
    void signalAddMarkPoint(QString, QString strName);
    void signalDelMarkPoint(QString, QString strName);
    void signalIntersection(QString, QStringList intersections);

protected:
    /// While one lives, a removal of the object waits for its end. Every slot that
    /// may show a box or tell the host holds one.
    class AXEARTHVIEWER_EXPORT Running
    {
    public:
        explicit Running(CAxHandleAdapter* adapter);
        ~Running();
        Running(const Running&) = delete;
        Running& operator=(const Running&) = delete;
        /// False once the object was removed meanwhile.
        bool IsWanted() const;

    private:
        QPointer<CAxHandleAdapter> adapter;
    };

    /// Puts the feature node below "GeomAdapter", where removal looks for it.
    void JoinScene();
    /// Makes the editor of the vertices, without switching the object's own state.
    void CreateEditor();
    /// Draws the vertices anew.
    virtual void updateAdapter();
    /// Writes the vertices into the block record, altitudes dropped, and onto the
    /// undo stack; nothing when there is no record.
    void UpdateCurrentOperate();
    /// The end of an edit: a refused geometry falls back to the record, an accepted
    /// one is written to it. True when it was accepted.
    bool _ReponseHandleMove();
    /// Whether vertices may come and go: the object is at rest, free to be edited, and no rectangle.
    bool mayChangeCount() const;
    /// An edit in one step, by the same path as a drag. `text` is what the undo stack calls it.
    bool ChangeVertices(std::vector<osg::Vec3d> points, const QString& text);
    /// Draws the length of the leg to the cursor, and of all with it, beside the cursor.
    void ShowRunningLength(const osg::Vec3d& lngLatPos);
    void ShowBesideCursor(const osg::Vec3d& lngLatPos, const QString& text);
    void HideRunningLength();
    /// Along the ground between two places in degrees, metres.
    static double Distance(const osg::Vec3d& a, const osg::Vec3d& b);
    static QString LengthText(double metres);
    void DrawBlockLock();
    void AddOneLock(const osg::Vec3d& lngLatAlt);
    /// The drawable of that name in the feature node, or null.
    osg::Geometry* FindDrawable(const std::string& name) const;

    // What the kinds of block do alike (CAxHandleAdapterBlock.cpp)

    /// False for a pick beside the globe.
    static bool IsOverGround(const osg::Vec3d& lngLatPos, const osg::Vec3d& worldCoordPos);
    /// Ends the drawing: judged, then registered or removed; the host is told either way.
    void FinishDrawing();
    /// Draws what the next click would make as "Stipple", in place of the one before.
    void DrawRubberBand(const std::vector<osg::Vec3d>& points, bool closed);
    void DropRubberBand();
    /// For HandleEnd(): the finished object, with name and handles.
    void ShowFinished();
    /// For SetAdapterVisible(): the object with all that belongs to it.
    void ShowParts(bool shown);
    /// For UpdateColor(): with routes another colour than without.
    void PaintByRoutes();
    /// For ImportGeometry(). False, nothing changed, when a point is not finite.
    bool TakeVertices(const std::vector<osg::Vec3d>& points, bool enableEditor);
    /// For ClearPoints().
    void DropVertices();
    /// For ResponseHandlePointMoved() and ResponseHandleMoved().
    void EndEdit();

    // Drawables. Points go in as longitude, latitude and altitude.

    /// The outline of a shape, along great circles and on the ground, and with
    /// `filled` its fill, which needs three points and a visible colour. `closed`
    /// leads the outline back to its first point.
    osg::ref_ptr<osg::Geometry> CreateGeom(osg::Vec4f edge, osg::Vec4f fill, float width,
                                           const osgEarth::Symbology::Geometry& points, bool closed,
                                           bool filled);
    /// A rectangle from a corner and its two sides.
    static osg::ref_ptr<osg::Geometry> CreateQuadGeom(osg::Vec3f corner, osg::Vec3f widthVector,
                                                      osg::Vec3f heightVector, osg::Vec4f color);
    static void AddEdgePrimitiveSet(osg::Geometry* geometry, int first, int count, osg::Vec4f color,
                                    bool closed);
    static void AddFillPrimitiveSet(osg::Geometry* geometry, int first, int count, osg::Vec4f edge,
                                    osg::Vec4f fill, bool closed);

    QPointer<CAxEarthViewer> viewer;
    osg::ref_ptr<osg::Group> drawGroup;
    osg::ref_ptr<CAxEarthManipulator> manipulator;
    osg::ref_ptr<osg::Geode> featureNode;
    osg::ref_ptr<CAxHandleAdapterEditor> anchorEditor;
    osgEarth::Symbology::Style style;
    osg::ref_ptr<osgEarth::Annotation::LabelNode> nameLabel;
    osg::ref_ptr<osg::Group> lockNode;
    QString handleID;
    CAxBlock::EBlockType blockType = CAxBlock::PolygonBlock;
    std::vector<osg::Vec3d> anchors;
    CAxVector3D gravity;
    QList<CAxTaskPolygon*> tasks;
    bool segment = false;
    EHandleOperation operation = OperationIdle;
    int mouseState = 0; // 0 released, 1 pressed, 2 double-clicked
    bool lock = false;
    bool visible = true;
    bool filter = false;
    int editIndex = -1;
    osg::Vec3d moveCenter;
    QList<double> elevations;
    QList<osg::ref_ptr<osg::Node>> containedNodes;
    QList<osg::ref_ptr<osg::Node>> containedLabels;
    osg::Vec4f edgeColor; // as itself
    osg::Vec4f fillColor;
    /// What the undo stack calls the edit that is going on.
    QString editText;

private:
    bool selectedAmongSeveral = false;

    friend class CAxEarthViewer;
    void prepareDrawing();
    bool layOnGround();
    bool mayEdit() const;
    void leaveScene();

    struct Drawing;
    std::shared_ptr<Drawing> drawing; // its only owner
    QMetaObject::Connection editorMoves;
    osg::ref_ptr<osgEarth::Annotation::LabelNode> lengthLabel;
    bool mouseConnected = false;
    int running = 0;
    bool leaving = false;
    bool registered = false;
};

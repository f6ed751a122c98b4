#pragma once
#include "interaction/editing/AxEditedShape.h"
#include "scene/base/AxEarthViewerExport.h"

#include <AxAlgorthm/CAxVector3D.h>
#include <AxBaseUI/EToolType.h>
#include <AxData/CAxBlock.h>

#include <osg/Geode>
#include <osg/Geometry>
#include <osg/Image>
#include <osg/ref_ptr>
#include <osg/Vec3d>
#include <osg/Vec4f>
#include <osgEarth/GeoData>
#include <osgEarthSymbology/Geometry>

#include <QObject>
#include <QPointer>
#include <QStringList>

#include <memory>
#include <optional>
#include <vector>

class CAxEarthViewer;
class CAxHandleAdapterEditor;
class CAxTaskPolygon;
struct AxHandleAdapterState;

namespace osgEarth::Annotation {
class LabelNode;
}

/**
 * An editable object on the map. It keeps its vertices (longitude and latitude in degrees, altitude in
 * metres), listens to the mouse through the manipulator's signals while it is drawn or edited, and mirrors
 * its vertices into the block record of the same ID.
 *
 * Life of an edit: a gesture ends in CheckGeometry(); what is accepted is written to the block record (and
 * onto the viewer's undo stack), what is refused falls back to the record.
 *
 * Owned by the viewer from createShapeNode() or AddHandleAdapter() on, else by its Qt parent. It draws below
 * the viewer's "GeomAdapter" group. GUI thread only.
 */
class AXEARTHVIEWER_EXPORT CAxHandleAdapter : public QObject, public AxEditedShape
{
    Q_OBJECT
public:
    CAxHandleAdapter(CAxEarthViewer* viewer, QObject* parent);
    /// The viewer forgets it wherever it kept it, and its nodes leave the scene.
    ~CAxHandleAdapter() override;

    // What a kind of object answers, or does in a way of its own

    /// What the vertices make; that of its block type unless a kind says otherwise.
    AxShapeKind ShapeKind() const override;
    /// What the vertices stand for on the ground: this is drawn, filled where it is closed, judged and
    /// named. Degrees, degrees, metres; the vertices themselves unless a kind derives it from them.
    virtual std::vector<osg::Vec3d> Outline();
    /// Whether the outline leads back to its first point; as the vertices do unless a kind says otherwise.
    virtual bool IsOutlineClosed();
    /// A line that is drawn with the outline, as a strip has one in its middle; none unless a kind has it.
    virtual std::vector<osg::Vec3d> InnerLine();
    /// Judges the geometry just drawn or edited: 1 or more accepts it, 0 or less rejects it, -2 after the
    /// operator was told why (AxVerdict.h).
    virtual int CheckGeometry() = 0;
    /// Shows or hides the object; taskID names the route that asks, or is empty.
    virtual void SetAdapterVisible(bool visible, QString taskID) = 0;
    /// Removes all vertices and their nodes.
    virtual void ClearPoints() = 0;
    /// Builds the object from given vertices; `enableEditor` shows their handles as well.
    virtual void ImportGeometry(const std::vector<osg::Vec3d>& points, bool enableEditor);
    /// Called once a drawing has been accepted.
    virtual void HandleEnd();
    virtual void UpdateColor(); ///< called when routes come or go
    std::vector<osg::Vec3d>& GetAnchor() override;
    virtual osg::ref_ptr<osgEarth::Symbology::Geometry> GetGeometry(); ///< the vertices as a polygon
    /// Draws the object anew and makes it the viewer's current one when its vertices differ from the
    /// record's; nothing without a record.
    virtual void update();
    /// Takes the altitudes of the vertices from the ground; false without vertices.
    virtual bool GetBlockElevation();
    /// Centre of the box around the vertices: latitude, longitude, 0; a default value without vertices.
    virtual CAxVector3D GetGravityLatLng();
    virtual bool HandleIsPicked(osg::Node* node);               ///< whether a node is part of what it draws
    virtual void SetFeatureNodeVisible(bool visible);           ///< the shape alone, without name and handles
    virtual void SetWidth(double width1, double width2);        ///< of a strip, metres
    virtual void SetVideoRadius(int radius);                    ///< of a video area, metres
    virtual void SetVideoPosition(const osg::Vec3d& lngLatPos); ///< of a video area, degrees, degrees, metres
    /// The names of mark points; other objects have none.
    virtual void RemoveMarkerPoint(QString name);
    virtual void SetMarkerPointName(const QStringList& names);
    virtual QStringList GetMarkerPointName();

public slots:
    /// The mouse on the map, while the object is connected: the left button goes down, the mouse moves
    /// without a button, the left button goes up, a left click (after its release), a double click, a drag
    /// with any button, a right click. A place is degrees, degrees, metres, and geocentric metres; zeros over
    /// space. A window position is pixels from the lower left corner.
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
    /// A handle has been moved: degrees, degrees, metres, and the index of its vertex, which is there
    /// already.
    virtual void slotPointMoved(double lng, double lat, double alt, int index);
    /// A step of a move of the whole object, degrees, degrees, metres; the vertices are there already.
    virtual void slotHandleMoved(double dLng, double dLat, double dAlt);

public:
    /// A vertex drag has ended.
    virtual void ResponseHandlePointMoved(osg::Vec3d lngLatPos, osg::Vec3d worldCoordPos);
    /// A move of the object has ended; mind the order of the points.
    virtual void ResponseHandleMoved(osg::Vec3d worldCoordPos, osg::Vec3d lngLatPos);
    /// A double click while browsing: on one of its points (degrees, degrees, metres), or anywhere else.
    virtual void ResponseDoubleClickOnPoint(int index, osg::Vec3d point);
    virtual void ResponseDoubleClickOnBlock();
    /// Asked once an accepted drawing was registered: 2 removes the object all the same, below 0 tells the
    /// host that nothing was reset.
    virtual int ResponseDoubleClickWhenDraw();
    /// A drawing that has just begun goes on from the vertices that an earlier one had when it was refused:
    /// degrees, degrees, metres. Where a kind has a fixed number of vertices, the last of them is still to
    /// come.
    virtual void ResumeDrawing(std::vector<osg::Vec3d> vertices);

    // What it is and how it stands

    QString GetHandleID() const;               ///< of the block that it draws; unique among all objects
    void SetHandleID(const QString& id);       ///< not for an object that the viewer has registered already
    CAxBlock::EBlockType GetBlockType() const; ///< the kind of its block, with or without a record
    CAxBlock* GetContainedBlock() const;       ///< the block record of its ID, or null
    CAxEarthViewer* GetViewer() const;         ///< null once that is gone
    AxViewerParts* Parts() const override;
    EHandleOperation GetHandleOperation() const override;
    int GetEditIndex() const override; ///< of the vertex that is being dragged, -1 when none is
    bool IsLock() const override;
    bool HasRoutes() const override;
    bool IsVisible() const override;
    bool IsFilter() const;  ///< always false; kept for hosts
    bool IsSegment() const; ///< the area may be split into segments; known once the name was drawn
    /// Holds the object's drawables; by it the object is picked. All objects share its state set: a node that
    /// is to be drawn otherwise gets one of its own.
    osg::Geode* GetFeatureNode() const;
    CAxHandleAdapterEditor* GetAnchorEditor() const;       ///< null while the vertices cannot be edited
    osgEarth::Annotation::LabelNode* GetNameLabel() const; ///< null until the name was drawn
    osg::Group* GetLockNode() const;                       ///< of the lock icons
    /// Altitudes of the sampled ground, metres. False when nothing was sampled: then 999999 and -999999, and
    /// an average as it was.
    bool GetElevationMinMax(double& min, double& max) const;
    bool GetElevationsAverage(double& average) const;
    bool GeometryModifyed() const; ///< whether there is a block record, and its vertices differ

    // Its routes, not owned; an object with routes is not moved

    /// In the order in which they were added. A task that is added twice counts once, and ends a move of the
    /// object or its vertices; GetTask() is null for an unknown ID. Whoever made a route still owns it when
    /// it was removed, and may destroy it before. The last one that goes gives the current object its
    /// handles back.
    const QList<CAxTaskPolygon*>& GetTaskList() const;
    CAxTaskPolygon* GetTask(const QString& taskID) const;
    void AddTask(CAxTaskPolygon* task);
    void RemoveTask(const QString& taskID);
    void RemoveAllTask();
    /// Where the task's aircraft lands; a default value for an unknown task.
    CAxVector3D GetTaskLingPosition(const QString& taskID) const;
    /// Told to the route of that task; an unknown one is passed over. The entry point is 0 to 3, the position
    /// longitude, latitude, altitude.
    void SetTaskEntryPoint(int index, const QString& taskID);
    void SetTaskLandingPosition(const CAxVector3D& position, const QString& taskID);
    void SetTaskLandingMethod(bool downhill, const QString& taskID);

    // Drawing and editing

    /// Connects the manipulator's mouse signals to the slots above, once.
    void ConnectMouseEvent();
    void DisconnectMouseEvent();
    void BenginHandle(); ///< begins the drawing
    /// Ends a drawing without a double click: what is accepted is registered, what is rejected is removed,
    /// and the object with it.
    virtual void EndHandle();
    /// Gives up what is going on: a drawing is removed with the object, a drag goes back to the block record.
    /// True when there was something to give up.
    bool CancelHandle() override;
    /// The same for a drag of a vertex or of the object, but not for a drawing.
    void GiveUpEdit();
    /// While drawing, takes the last vertex back; the first one ends nothing. True when it did.
    bool RemoveLastPoint();
    /// Takes a vertex away, or puts one before `index`, by the same path as a drag: judged, then committed or
    /// undone. False, nothing changed, when the object may not be edited, has no such vertex, or the result
    /// was refused.
    bool DeleteVertex(int index);
    bool InsertVertex(int index, const osg::Vec3d& lngLatAlt);
    /// Gives it other vertices by that path; `text` is what the undo stack calls it. Where a kind has a fixed
    /// number of vertices, there are as many.
    bool SetVertices(std::vector<osg::Vec3d> points, const QString& text);
    /// From the first vertex to the cursor when a move of the object began, degrees, degrees and 0.
    void SetMoveCenterPt(const osg::Vec3d& offset);
    const osg::Vec3d& GetMoveCenterPt() const;
    /// A step of a move of several objects at once, degrees, degrees and metres.
    void HandleMoved(double dLng, double dLat, double dAlt);
    /// Ends a move: a code above 0 keeps the new place, any other returns to the block's stored vertices.
    /// Outside a move it does nothing.
    void EndMoved(int code);
    void EndDrag(const osg::Vec3d& lngLatPos, const osg::Vec3d& worldCoordPos) override;
    /// Takes the vertices from the block record, altitudes from the map, and draws them; nothing when there
    /// is none.
    void ReturnLastOperate() override;

    // How it is shown

    /// Makes or removes the handles of the vertices. An object that is locked or has routes gets none.
    void SetAnchorEditorEnabled(bool enabled);
    void SetLockBlock(bool locked, bool drawLock); ///< locks or unlocks, and shows or hides the lock icons
    void SetNameVisible(bool nameVisible);
    void DrawNameLabel() override;    ///< the block record's name, anew when it changed
    void ClearFeatureNodeContained(); ///< empties the lists of further nodes that belong to the object
    static osg::ref_ptr<osg::Image> FromQImage(const QString& path); ///< of Qt's resources; null without

    // For the viewer

    /// Draws the object as one of several selected ones, or again as itself.
    void SetSelectedAmongSeveral(bool selected);
    bool IsSelectedAmongSeveral() const;
    /// Takes the object out of the scene and destroys it, at once or when the last of its running slots ends.
    void Leave();
    bool IsLeaving() const;

signals:
    /// A drawing has ended, whatever came of it, after signalHandleEnd(); the tool that drew.
    void signalHandlePickEnded(EToolType eToolType);
    /// A drawing or an edit has ended: the object's ID, empty when a drawing was refused. bReset: of a
    /// refused drawing, that the operator was shown why; of an accepted one or an edit, that the host starts
    /// anew.
    void signalHandleEnd(QString strHanleID, bool bReset);
    /// A mark point was added: the object's ID and the point's name.
    void signalAddMarkPoint(QString, QString strName);
    /// A mark point was deleted: the object's ID and the point's name.
    void signalDelMarkPoint(QString, QString strName);
    /// The area was tested: the object's ID and what it meets, zones or model layers.
    void signalIntersection(QString, QStringList intersections);

protected:
    /// While one lives, a removal of the object waits for its end. Every slot that may show a box or tell the
    /// host holds one.
    class AXEARTHVIEWER_EXPORT Running
    {
    public:
        explicit Running(CAxHandleAdapter* adapter); ///< not null
        ~Running();
        Running(const Running&) = delete;
        Running& operator=(const Running&) = delete;
        bool IsWanted() const; ///< false once the object was removed meanwhile
        bool IsGone() const;   ///< true once it was destroyed all the same, by whoever holds its pointer

    private:
        QPointer<CAxHandleAdapter> adapter;
    };

    /// What the object is and how it is drawn from the next time on; for the constructor of a kind.
    void SetBlockType(CAxBlock::EBlockType type);
    void SetColors(const osg::Vec4f& edge, const osg::Vec4f& fill);
    void JoinScene();             ///< puts the feature node below "GeomAdapter", where removal looks for it
    void CreateEditor();          ///< of the vertices, without switching the object's own state
    virtual void updateAdapter(); ///< draws the vertices anew
    /// Writes the vertices into the block record, altitudes dropped, and onto the undo stack; nothing when
    /// there is no record. The name goes along with them.
    void UpdateCurrentOperate();
    /// The end of an edit: a refused geometry falls back to the record, an accepted one is written to it.
    /// True when it was accepted.
    bool _ReponseHandleMove();
    /// Ends the drawing: judged, then registered or removed; the host is told either way. Undo takes a
    /// refused one up again.
    void FinishDrawing();
    /// An edit in one step, by the same path as a drag. `text` is what the undo stack calls it.
    bool ChangeVertices(std::vector<osg::Vec3d> points, const QString& text);
    bool mayChangeCount() const; ///< the object is at rest, free to be edited, and of a kind that allows it
    void DrawBlockLock();        ///< the lock icons, anew
    void AddOneLock(const osg::Vec3d& lngLatAlt);               ///< at a place: degrees, degrees, metres
    osg::Geometry* FindDrawable(const std::string& name) const; ///< in the feature node, or null
    void DropRubberBand();                                      ///< the drawable "Stipple"

    // Drawables. Points go in as longitude, latitude and altitude.

    /// The object's own shape: Outline() as its kind has it, along great circles and on the ground, and laid
    /// on that anew as finer ground arrives. A ring of a visible colour is filled. Null for less than two
    /// points. Only the latest one is kept on the ground.
    osg::ref_ptr<osg::Geometry> CreateOwnGeom(osg::Vec4f edge, osg::Vec4f fill, float width);
    /// The same for InnerLine().
    osg::ref_ptr<osg::Geometry> CreateInnerGeom(osg::Vec4f edge, float width);
    /// Any other outline, once laid on the ground as it is now, and with `filled` its fill, which needs three
    /// points and a visible colour. `closed` leads the outline back to its first point.
    osg::ref_ptr<osg::Geometry> CreateGeom(osg::Vec4f edge, osg::Vec4f fill, float width,
                                           const osgEarth::Symbology::Geometry& points, bool closed,
                                           bool filled);
    /// A rectangle from a corner and its two sides.
    static osg::ref_ptr<osg::Geometry> CreateQuadGeom(osg::Vec3f corner, osg::Vec3f widthVector,
                                                      osg::Vec3f heightVector, osg::Vec4f color);
    /// The line, and the fill below its line, of `count` vertices of a geometry from `first` on, in their
    /// colours. Nothing when it has no such vertices.
    static void AddEdgePrimitiveSet(osg::Geometry* geometry, int first, int count, osg::Vec4f color,
                                    bool closed);
    static void AddFillPrimitiveSet(osg::Geometry* geometry, int first, int count, osg::Vec4f edge,
                                    osg::Vec4f fill, bool closed);

    const std::unique_ptr<AxHandleAdapterState> d; ///< AxHandleAdapterState.h

private:
    void prepareDrawing();
    bool layOnGround();
    void keepOnGround();
    bool isRegistered() const;
    bool keepDrawing();
    void dropDrawing(bool deleteBlock);
    void letGoOf(const QList<CAxTaskPolygon*>& tasks);
    bool mayEdit() const;
    void keepRefused(EToolType tool);
    void leaveScene();
    // Degrees, degrees and 0. None without vertices; without a map there is no second one.
    std::optional<osg::Vec3d> labelPlace() const;
    std::optional<osgEarth::GeoPoint> namePlace() const;
};

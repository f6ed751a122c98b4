#pragma once
#include "scene/AxEditAids.h"
#include "scene/base/AxEarthViewerExport.h"

#include <AxAlgorthm/AxMissionTypes.h>
#include <AxAlgorthm/CAxVector3D.h>
#include <AxBaseUI/EToolType.h>
#include <AxData/CAxBlock.h>

#include <osg/Drawable>
#include <osg/Group>
#include <osg/Matrixd>
#include <osg/Vec3d>

#include <QGraphicsView>
#include <QImage>
#include <QMap>
#include <QStringList>
#include <QVariant>

#include <functional>
#include <memory>

class AxBlockOperations;
class AxCoordinateSystem;
class AxMagnifier;
class AxMapLayers;
class AxMeasurements;
class AxModelLayers;
class AxPictureCapture;
class AxSightAnalysis;
class AxViewerParts;
class AxViewerPrivate;
class AxVolumeAnalysis;
class CAxAncillaryProcess;
class CAxCoordinateWidget;
class CAxDownhillAnglenode;
class CAxEarthManipulator;
class CAxHandleAdapter;
class CAxInterestPointNode;
class CAxMapToolsWidget;
class CAxUavNode;
class QAction;
class QUndoStack;

namespace osgViewer {
class Viewer;
}
namespace osgEarth {
class MapNode;
class SpatialReference;
} // namespace osgEarth

/**
 * The globe: a widget that shows a map file's terrain, with a compass, a tools
 * bar and a coordinate read-out over it.
 *
 * A host constructs it, calls CheckAdapterGLSupport() and InitEarthViewer(),
 * waits for signalLoadEarth(), and ends with ReleaseAll() and delete. Before
 * signalLoadEarth() there is a scene skeleton but no map, and nothing is drawn.
 *
 * The widget is owned by its Qt parent or by whoever made it. What the
 * accessors return stays the viewer's. GUI thread only.
 */
class AXEARTHVIEWER_EXPORT CAxEarthViewer : public QGraphicsView
{
    Q_OBJECT
public:
    explicit CAxEarthViewer(QWidget* parent);
    ~CAxEarthViewer() override;

    /// False, after a message box, when the video adapter's GLSL is older than
    /// 3.3; false without a box when there is no graphics window.
    bool CheckAdapterGLSupport();

    /// Loads the map and completes the scene; ends with signalLoadEarth(). A
    /// map that cannot be read is reported in a box, and the process then ends
    /// with status 0. Once loaded, a further call only clears the selection.
    void InitEarthViewer();

    /// Ends the background work. Call it before the widget is destroyed.
    void ReleaseAll();

    /// Makes start-up read this map file instead of the one that the network's
    /// state decides on. Call it before InitEarthViewer(); an empty name
    /// restores the rule.
    void SetMapFile(const QString& file);

    /// The picture in the front buffer, overlays included, as last shown.
    QImage GetCurrViewerImg();

    /// Whether the picture is final for the present camera: nothing waits to be
    /// loaded or merged and the last few frames were drawn from this position.
    bool IsPictureComplete() const;

    /// While on, which it is from the start, a frame in which nothing has changed
    /// is not drawn: the picture of the last one stays. Events, updates and frame
    /// numbers go on. docs/embedding.md says what is seen to change and what is not.
    void SetStillPictureKept(bool kept);
    bool IsStillPictureKept() const;
    /// Has the next frame drawn: for a change of the scene that is not seen.
    void RequestRedraw();

    CAxEarthManipulator* getManipulator() const;        ///< the camera and the source of the mouse's signals
    CAxAncillaryProcess* GetAncillaryProcess() const;   ///< zones; null before start-up, after ReleaseAll()
    CAxMapToolsWidget* GetMapToolWidget() const;        ///< the tools bar
    CAxCoordinateWidget* GetCoordinateWidget() const;   ///< the read-out
    CAxUavNode* GetUavNode() const;                     ///< the aircraft in focus; null: none is drawn
    CAxDownhillAnglenode* GetDownhillAngleNode() const; ///< what was set last, or null
    /// Null while the approach to a landing point cannot be turned. Not taken over.
    void SetDownhillAngleNode(CAxDownhillAnglenode* node);
    CAxInterestPointNode* GetInterestPointNode() const; ///< null: no point of interest is drawn yet
    CAxHandleAdapter* GetCurHandleAdapter() const;      ///< the current object, or null
    osgViewer::Viewer* getOSGViewer() const;            ///< from construction on
    /// Null until start-up has read the map, as the next three are.
    osgEarth::MapNode* getMapNode() const;
    const osgEarth::SpatialReference* getSRS() const;
    osg::Group* GetDrawNodeGroup() const;
    /// Below the draw group; parent of the map objects' feature nodes.
    osg::Group* GetGeomAdapterGroup() const;
    osg::Group* GetBoundGroup() const; ///< beside the draw group; outlines of models, and for the host

    // Aircraft (CAxEarthViewerAircraft.cpp)

    /// How the camera goes with the aircraft in focus.
    enum EAircraftView
    {
        AircraftViewFree = 0,   ///< not at all
        AircraftViewFollow = 1, ///< the aircraft stays in the middle; the pilot may orbit and zoom
        AircraftViewChase = 2,  ///< from behind, turning with it; the pilot may orbit and zoom
    };
    /// Draws an aircraft, of which `telemetry` tells by the four signals that AxTelemetrySource has, and puts
    /// it into focus. It stands at the first place that is told, and is not seen before. The telemetry is
    /// not taken over, may be null, and may be destroyed at any time. The viewer owns the aircraft. Null
    /// before the map is loaded.
    CAxUavNode* CreateUavMarker(QObject* telemetry, EPlaneType type);
    /// The same; the focus stays with the aircraft that has it.
    CAxUavNode* AddAircraft(QObject* telemetry, EPlaneType type);
    /// Takes one off the map, with all that it has drawn, and destroys it. False for one of another viewer.
    /// The oldest one of those that are left comes into focus where this one was.
    bool RemoveAircraft(CAxUavNode* aircraft);
    QList<CAxUavNode*> Aircraft() const; ///< the oldest first
    /// Views and the tools bar deal with the aircraft in focus, whose panel alone is shown. False for one of
    /// another viewer, and for null.
    bool SetFocusAircraft(CAxUavNode* aircraft);
    /// Removes the photo points and trail lines of all aircraft, and then the aircraft.
    void ClearUavMarker();
    /// Leads the four signals of an aircraft's signal object to it. CreateUavMarker() and AddAircraft() do
    /// so; again, where the object was replaced.
    void ConnectUavSignals(CAxUavNode* aircraft);
    /// Ends that for position, attitude and photos. Video data are connected once more instead.
    void DisconnectUavSignals(CAxUavNode* aircraft);
    /// Begins to follow the aircraft in focus, or lets go of it. Nothing without an aircraft that has a
    /// place.
    void SetAircraftView();
    void SetAircraftView(EAircraftView view);
    EAircraftView GetAircraftView() const;
    /// Looks from above and behind home at the aircraft in focus, which is in the middle, with home below it
    /// in the picture up to 100 km away; at home alone without one. Lets go of an aircraft that was followed.
    void SetHomeView(const CAxVector3D& home);
    /// Shows or hides the photo points of all aircraft; hidden from the start, as the bar's button has it.
    void SetDisplayShootPoint(bool display);
    bool IsDisplayShootPoint() const;
    /// The height, in those of the map, of a place so many metres above the ellipsoid: of picks, blocks and
    /// routes. Elevation data as they ship are above mean sea level, so this subtracts the geoid, where its
    /// grid is there. The ground counts for nothing: it changes with the zoom. NaN for what is no place.
    double GetHAE(double longitude, double latitude, double altitude) const;
    /// Says that the map's elevation data are above the ellipsoid; off from the start.
    void SetMapHeightsAboveEllipsoid(bool above);
    bool AreMapHeightsAboveEllipsoid() const;

    // The map: its ground, its layers, what is measured on it (CAxEarthViewerMap.cpp)

    /// The height of the ground as it is loaded now, metres as the map has them; degrees. NaN beside all
    /// heights of the map and in a gap of them. slotRequestElevation() asks for the finest there is.
    double GetElevation(double longitude, double latitude) const;
    /// The map's layers: shown, hidden, faded, added and removed; see there. Never null.
    AxMapLayers* GetMapLayers() const;
    /// What the measuring tools have found, as the map shows it; see there. Never null.
    AxMeasurements* GetMeasurements() const;
    /// 3-D models: loaded, shown, lifted and removed; see there. Never null.
    AxModelLayers* GetModelLayers() const;
    /// What can be seen from where; see there. Never null.
    AxSightAnalysis* GetSightAnalysis() const;
    /// The lens over the map, which ToolMagnifier opens; see there. Never null.
    AxMagnifier* GetMagnifier() const;
    /// Pictures of the map in any size; see there. Never null.
    AxPictureCapture* GetPictureCapture() const;
    /// Cut and fill of measured areas; see there. Never null.
    AxVolumeAnalysis* GetVolumeAnalysis() const;

    // Landing and points of interest (CAxEarthViewerLanding.cpp)

    /// Shows or hides the disc in which a landing point may be set, around the current object; nothing
    /// without one.
    void SetLandingAreaVisible(bool visible);
    /// Moves the disc: latitude, longitude, altitude. Nothing before it was shown or hidden first.
    void SetLandingAreaPosition(const CAxVector3D& position);
    /// Kilometres; nothing before it was shown or hidden first.
    void SetLandingAreaRadius(double kilometres);
    /// Shows a point of interest, or moves it: latitude, longitude, altitude. A pick of ToolInterestPoint and
    /// the mouse that drags it do the same and tell of it. False before the map is loaded and for what is no
    /// place.
    bool SetInterestPoint(const CAxVector3D& latLngAlt);
    void RemoveInterestPoint();
    /// Shows a place of known coordinates, as a surveyed target on the ground is: degrees, degrees, metres.
    /// Tells of it by signalAddControlPoint(), whose value is a list of the three. False for what is no place
    /// and for a name that is empty or taken.
    bool AddControlPoint(const QString& name, const osg::Vec3d& lngLatAlt);
    bool RemoveControlPoint(const QString& name); ///< false for an unknown name
    QMap<QString, osg::Vec3d> GetControlPoints() const;

    /// The kind of host application: 1 and 3 hear of Alt, 1 selects several while Control is held.
    void SetAppType(int type);
    int GetAppType() const;

    /// Takes up a tool. What the tool in hand was drawing is ended: kept when it
    /// is valid, removed when not. Taking up the same tool again changes nothing.
    void SetToolType(EToolType eToolType);
    EToolType GetToolType() const;
    /// Makes the object that a tool draws; called once for each drawing.
    using ShapeFactory = std::function<CAxHandleAdapter*(CAxEarthViewer* viewer, QObject* parent)>;
    /// Which object a tool draws. A second call for a tool replaces the first;
    /// an empty function brings back what the viewer draws by itself, if anything.
    void SetShapeFactory(EToolType tool, ShapeFactory factory);
    /// Begins a drawing with the tool in hand: its object becomes the current
    /// one. Null for a tool that draws nothing.
    CAxHandleAdapter* createShapeNode();

    /// Enters a finished object under its handle ID, with a block record where
    /// there is none yet, and takes it over. False for null, for an ID that is
    /// taken, and for an object that was made for another viewer or for none;
    /// the object then stays its owner's.
    bool AddHandleAdapter(CAxHandleAdapter* adapter);
    /// Draws a block record that has no object yet, as after a project was
    /// loaded. Null for an unknown or drawn ID, a record without enough vertices,
    /// and a kind that nothing draws.
    CAxHandleAdapter* ImportShapeNode(const QString& blockID);
    /// Null when no object has that ID.
    CAxHandleAdapter* FindExistNode(const QString& id) const;
    CAxHandleAdapter* GetHandleAdapter(const QString& id) const;
    /// All objects of a kind, by ascending ID.
    QList<CAxHandleAdapter*> FindExistNode(CAxBlock::EBlockType type) const;
    /// The object that is drawn by a node, or null.
    CAxHandleAdapter* FindExistNode(osg::Node* node) const;
    /// All registered objects, by ascending ID.
    QList<CAxHandleAdapter*> GetHandleAdapters() const;
    /// Takes an object out of the scene and the registry and destroys it;
    /// deleteBlock deletes its block record, too. False for null, for an unknown
    /// ID, and for an object whose feature node does not hang below "GeomAdapter":
    /// that one is destroyed without its entry and its record being looked at.
    /// While one of its own mouse slots runs, an object is destroyed right after.
    bool RemoveHanderAdapter(const QString& id, bool deleteBlock);
    bool RemoveHanderAdapter(CAxHandleAdapter* adapter, bool deleteBlock);
    /// Removes every registered object; always true.
    bool RemoveAllHanderAdapter(bool deleteBlock);
    /// Deletes the current object's entry and block record and leaves nothing
    /// current. The object itself stays, in the scene as well.
    void RemoveCurHandle();

    /// Selects the object that a node draws. Alone it becomes the current
    /// object, and no others are selected; with `multi` it joins the selection,
    /// which begins with the current object, or leaves it when it was in it. Without `multi` a null node or
    /// one that draws no object leaves nothing current, except an object that is being drawn. `report` tells
    /// the host of a changed selection.
    void SetNodeSelected(osg::Node* node, bool multi, bool report);
    /// Selects the objects of these IDs together, in that order, and no others. The first of them becomes
    /// current, unless one of them is; one alone is the current object, none leaves nothing current. IDs that
    /// have no object are passed over. False, with nothing changed, while an object is being drawn.
    bool SelectBlocks(const QStringList& ids);
    /// Makes a registered object the current one and selects no others; with `view` the camera flies there.
    /// False, with nothing changed, for one that is not registered, and while another one is being drawn.
    bool SelectHandle(CAxHandleAdapter* adapter, bool view = false);
    bool SelectBlockID(const QString& id, bool view = false);
    /// The same with the block of a task, whose route, where it is drawn now or later, stands out from then
    /// on: until another task is selected, or another block is current, or none. While the block is current
    /// already, others stay selected with it. An empty ID leaves no task selected and the objects as they
    /// are.
    bool SelectTaskID(const QString& taskID, bool view = false);
    /// The same with one of the tasks of that block, where blocks from elsewhere may have tasks of one ID;
    /// SelectTaskID() takes the current block's, or else the first. False without such a task.
    bool SelectTask(const QString& blockID, const QString& taskID, bool view = false);
    const QString& GetSelectedTask() const;                        ///< empty for none
    const QList<CAxHandleAdapter*>& GetMultiSelectAdapter() const; ///< selected together, in that order
    void ClearMultiSelectAdapter();                                ///< tells the host when there were any

    /// Flies to where all visible blocks are in the picture from straight above, north up, each vertex of
    /// them a twentieth of the window or more from its border; a window that is made smaller later is not
    /// followed. `margin` takes the camera farther away: 0.5 by half the distance; below 0 and NaN count as
    /// 0. An aircraft that was followed is let go. Once the ground there is loaded as finely as it will be
    /// the view is put right, unless it was moved meanwhile. False, after a box that says so, when there is
    /// no block to be seen.
    bool SetAllBlockView(double margin);
    /// The same with those of these IDs that have an object, visible or not; false, without a box, for none.
    bool SetBlockView(const QStringList& ids, double margin = 0.0);

    /// Committed edits of blocks, the newest on top; the host may show it. It
    /// belongs to the viewer.
    QUndoStack* GetUndoStack() const;
    /// Ctrl+Z and Ctrl+Shift+Z on the map. A host puts these very actions into
    /// its menu, so that the keys stay with one owner.
    QAction* GetUndoAction() const;
    QAction* GetRedoAction() const;
    void SetEditAids(const AxEditAids& aids); ///< aids of editing; told by signalEditAids()
    const AxEditAids& GetEditAids() const;    ///< as they were set last
    /// Gives a block another name, less its outer blanks. False, nothing changed,
    /// for an unknown ID, an empty name and one that a block has already.
    bool RenameBlock(const QString& id, const QString& name);
    /// Deletes blocks, with what draws them and with their tasks, as one step of the undo stack. Returns the
    /// IDs of those that are deleted; a block that is locked on this map stays. Undoing brings back record
    /// and object; the routes join it again that their owners still have.
    QStringList DeleteBlocks(const QStringList& ids);
    /// Duplicates, unites, cuts, grows and turns blocks, and puts blocks in the place of others; see there.
    /// It belongs to the viewer; never null.
    AxBlockOperations* GetBlockOperations();
    /// Takes away the vertex of the current object that the mouse is over; false when there is none.
    bool DeleteHoveredVertex();
    /// From a press of Delete that took a vertex away to its release: a host
    /// that deletes objects on signalHandleKeyDelete() asks it first.
    bool IsDeleteKeyTaken() const;
    /// Enters the names of the model layers whose outline an object's outline meets into its block record,
    /// behind the zones of an area of an application, and tells the host by signalIntersection() when there
    /// are any, or none any more. The viewer does so itself when a block or a model has changed. Hidden
    /// models count.
    void IntersectionModelLayer(CAxHandleAdapter* adapter);
    /// Adds the lines of a vector file to the map as the layer "world", for hosts that want national
    /// boundaries; without a name the file of the machines that carry them. False, with the reason in `why`,
    /// for a file that is not there and before the map is loaded.
    bool AddBoundaries(const QString& file = QString(), QString* why = nullptr);

    /// While on, picks add to the selection.
    void SetMultiSelect(bool enabled);
    bool IsMultiSelect() const;
    /// While off, map objects are not picked and no drawing is begun.
    void EnabledPickHandle(bool enabled);
    bool IsEnabledPickHandle() const;
    /// Set by the tools bar while a press of the mouse belongs to it.
    void SetFocusToMaptool(bool focus);
    bool GetFocusToMaptool() const;

    /// Centre (geocentric metres) and orientation of a projection plane: for the host, and for
    /// ToolMeasurePlane, whose rectangles lie along it as CAxMeasurePlane::SetPlane() says.
    void SetProjPlaneCenter(const osg::Vec3d& center);
    const osg::Vec3d& GetProjPlaneCenter() const;
    void SetProjPlaneMatrix(const osg::Matrixd& matrix);
    const osg::Matrixd& GetProjPlaneMatrix() const;
    /// Coordinate system of read-outs and of measured places, as AxCoordinateSystem::Of() takes it: an EPSG
    /// code ("EPSG:32613", "32613"), WKT, a PROJ string; "DMS", "UTM" or "MGRS" for WGS 84 in that form;
    /// empty for decimal degrees. False for one that has no places or is not known, with the reason in `why`;
    /// the one before then stays. signalCoordSys() tells of another one.
    bool SetCoordSys(const QString& system, QString* why = nullptr);
    const QString& GetCoordSys() const;
    /// The same as it converts and writes places; see there. Valid until another one is set.
    const AxCoordinateSystem& GetCoordinateSystem() const;

    /// Show or hide the sky (with the graticule), the compass, the read-out.
    void SetSkyNodeVisible(bool visible);
    void SetCompassVisible(bool visible);
    void SetCoordinateVisible(bool visible);
    /// The four texts of the read-out, row by row.
    void SetCoordinate(const QString& longitude, const QString& latitude, const QString& altitude,
                       const QString& range);
    /// Emits signalTextSpeechEnabled with the opposite value: the argument is
    /// the state of a button that is checked when the voice is off.
    void SetTextToSpeechEnabled(bool enabled);

    /// For the library's own rooms: what they reach of the viewer.
    AxViewerParts* Parts() const;

signals:
    /// Start-up has finished; map objects, routes and layers may be added from here on.
    void signalLoadEarth();
    /// A control point was added: its name and its value.
    void signalAddControlPoint(QString, QVariant);
    /// A mark point was added: the object's ID and the point's name.
    void signalAddMarkPoint(QString, QString);
    /// A mark point was deleted: the object's ID and the point's name.
    void signalDelMarkPoint(QString, QString);
    /// A model layer was added and is loaded: AxModelLayer's ID, name and files, whether it is visible, path
    /// and coordinate system.
    void signalAddModelLayer(QString id, QString name, QStringList files, bool isVisible, QString path,
                             QString coordinateSystem);
    /// An elevation layer was added: its name and its value.
    void signalElevationLayer(QString, QVariant);
    /// Alt was pressed (true) or let go on the map; in applications of kinds 1 and 3.
    void signalAltKey(bool);
    /// Delete was let go on the map, whatever the tool.
    void signalHandleKeyDelete();
    /// A drawing has ended, whatever came of it, or Escape has put a measuring tool down; the tool that drew.
    void signalHandlePickEnded(EToolType eToolType);
    /// The drawing of a segment has ended.
    void signalHandleSegmentEnd();
    /// A drawing or an edit has ended; the ID is empty when nothing came of it, and bReset then tells that
    /// the operator was shown why.
    void signalHandleEnd(QString strHanleID, bool bReset);
    /// Another object is current, or none; the ID is then empty.
    void signalCurrentBlock(QString strHanleID);
    /// Another task is selected, or none: the ID of its block, and its own; both are empty for none.
    void signalCurrentTask(QString strBlockID, QString strTaskID);
    /// An object was shown, hidden, locked, unlocked, or drawn from its record.
    void signalBlockState(QString strHanleID);
    /// Places are shown in another coordinate system: what SetCoordSys() took.
    void signalCoordSys(QString system);
    /// SetEditAids() was called.
    void signalEditAids();
    /// The operator changed which objects are selected together: the IDs of all of them, in that order.
    void signalMultiSelectBlock(QStringList);
    /// A block was tested: its ID and the zones or model layers that it meets.
    void signalIntersection(QString, QStringList);
    /// The answer to a request for the ground's height: degrees, degrees, metres, and whether it is known.
    void signalRequestElevationReturn(double, double, double, bool);
    /// The answer to slotRequestIntersection().
    void signalRequestIntersectionReturn(bool);
    /// The list of mark points has to be built anew.
    void signalResetBlockMarkPointListPage();
    /// The approach to the landing point was turned, degrees.
    void signalDownhillAngle(double);
    /// The voice was switched on (true) or off.
    void signalTextSpeechEnabled(bool);
    /// Another aircraft is in focus, or none, or there are more or fewer of them.
    void signalAircraft();
    /// SetAircraftView(), or the pilot's mouse, ended or changed the way in which the camera follows.
    void signalAircraftView(int view);
    /// The operator picked a place to land: degrees, degrees, metres.
    void LandingPosPicked(double lon, double lat, double alt, bool);
    /// The operator picked a point of interest: degrees, degrees, metres.
    void InterestPointPicked(double lon, double lat, double alt);

public slots:
    /// Shows the panel of the grid on which the volume with this ID is measured, or the next one for an
    /// unknown ID; or hides it.
    void slotGridWidget(QString strHanleID, bool bVisible);
    void slotHandleEnd(QString strHanleID, bool bReset); ///< emits signalHandleEnd()
    /// Asks for the height of the ground at the finest level of the map's data, whatever is loaded; degrees.
    /// signalRequestElevationReturn() answers later, once for each call, in their order.
    void slotRequestElevation(double longitude, double latitude);
    /// Asks whether a block meets a model layer, or the current one for an empty ID.
    /// signalRequestIntersectionReturn() answers later, once for each call, in their order, when the outlines
    /// of all loaded models are known; false for an unknown ID.
    void slotRequestIntersection(QString strHandleID);
    /// Writes the angle of the approach to the landing point anew, as where its ground has changed.
    void slotAngleLableChange();
    /// These three do nothing for an unknown ID. A locked object is neither
    /// moved nor edited.
    void slotBlockVisible(QString strHanleID, bool bVisible);
    void slotBlockLock(QString strHanleID, bool bLock);
    /// SelectBlockID() with a flight; while another object is being drawn, the flight alone.
    void slotFocusBlock(QString strHanleID);

protected:
    void timerEvent(QTimerEvent* event) override;
    void paintEvent(QPaintEvent* event) override;
    void drawBackground(QPainter* painter, const QRectF& rect) override;
    bool event(QEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;
    void moveEvent(QMoveEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    void mouseReleaseEvent(QMouseEvent* event) override;
    void mouseMoveEvent(QMouseEvent* event) override;
    void mouseDoubleClickEvent(QMouseEvent* event) override;
    void wheelEvent(QWheelEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
    void keyReleaseEvent(QKeyEvent* event) override;
    void leaveEvent(QEvent* event) override;
    void focusOutEvent(QFocusEvent* event) override;

    /// Writes the modifiers into the event state that the next events carry.
    void setKeyboardModifiers(Qt::KeyboardModifiers modifiers);

private slots:
    void slotMouseLeftBtnClick(osg::Vec3d lngLatPos, osg::Vec3d worldCoordPos);
    void slotDrawableClicked(osg::Drawable* drawable);

private:
    void takeEditingKey(int key, bool reachesScene, bool isTyped);

    const std::unique_ptr<AxViewerPrivate> d;
};

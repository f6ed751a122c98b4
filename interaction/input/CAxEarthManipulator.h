#pragma once
#include "scene/base/AxEarthViewerExport.h"

#include <osg/Drawable>
#include <osg/Matrixd>
#include <osg/Vec2d>
#include <osg/Vec2f>
#include <osg/Vec3d>
#include <osgEarthUtil/EarthManipulator>

#include <QList>
#include <QObject>
#include <QPointer>
#include <QString>

#include <limits>
#include <memory>
#include <optional>

class AxBlockMover;
class AxViewerParts;
struct AxModelHit;
struct AxViewRay;

namespace osgViewer {
class View;
}

/**
 * The camera manipulator of the globe view and the source of its
 * geo-referenced mouse events. Picks are `lngLatPos` (longitude and latitude in
 * degrees, altitude in metres above the ellipsoid, each as exact as a float)
 * and `worldCoordPos` (geocentric, metres); over empty space both are zero.
 *
 * An event first becomes a pick and signals, by the tool in hand and by what
 * is under the mouse, and then, unless it was consumed, moves the camera.
 *
 * Reference-counted, held by the viewer, which is also its Qt parent. Events
 * reach it on the viewer's event traversal, on the GUI thread; its signals are
 * emitted there.
 */
class AXEARTHVIEWER_EXPORT CAxEarthManipulator : public QObject, public osgEarth::Util::EarthManipulator
{
    Q_OBJECT
public:
    /// What the camera moves around: 0 the ground, 1 the models of model
    /// layers, freely and without regard to the ground.
    enum OperateMode
    {
        OperateGlobe = 0,
        OperateModel = 1,
    };
    /// 0 as usual; 1 looks at a projection plane: mouse rotation is off, pan and
    /// zoom move the focal centre and the distance alone.
    enum ProjMode
    {
        ProjNone = 0,
        ProjPlaneView = 1,
    };
    /// Stored for the host.
    enum ProjPlane
    {
        ProjPlane0 = 0,
        ProjPlane1 = 1,
        ProjPlane2 = 2,
    };

    /// parent is the viewer.
    explicit CAxEarthManipulator(QObject* parent);

    /// What the camera moves around.
    OperateMode getOperateMode() const { return operateMode; }
    void setOperateMode(OperateMode mode) { operateMode = mode; }
    /// Whether it looks at a projection plane.
    ProjMode getProjMode() const { return projMode; }
    void setProjMode(ProjMode mode) { projMode = mode; }
    /// Which one; stored for the host.
    ProjPlane getProjPlane() const { return projPlane; }
    void setProjPlane(ProjPlane plane) { projPlane = plane; }

    /// True when the event was consumed and the camera must not react to it;
    /// otherwise the camera has already reacted.
    bool handle(const osgGA::GUIEventAdapter& ea, osgGA::GUIActionAdapter& aa) override;

    /// Moves the focal point to a geocentric place and looks at it from a
    /// distance in metres; heading and pitch in degrees, -90 straight down.
    /// Values that are not finite, or a distance that is not positive, are ignored.
    void setCameraLookAt(osg::Vec3d center, double heading, double pitch, double distance);

    /// Sets the altitude of each point (degrees, degrees) to that of the ground
    /// in memory there, or, with bModelLayers, to the top of a model of the
    /// scene's "ModelLayer" where there is one; metres above the ellipsoid. A
    /// point over which nothing is known keeps its altitude.
    void GetElevations(QList<osg::Vec3d>& points, bool bModelLayers);

    /// Ends a running move of objects without a commit. The rest of the drag does nothing.
    void CancelBlockMove();
    /// Ends a drag of the approach's handle or of the point of interest; the rest of it does nothing. False
    /// when there is none.
    bool GiveUpHandleDrag();
    /// Emits signalViewMoved() without an event: the camera may be in a flight.
    void TellView();
    /// Looks again at what is under the pointer, where that, the camera or the ground may have changed since
    /// the last event; the viewer asks with every tick.
    void TellPointed();
    /// The pointer is over something else than the map.
    void ForgetPointer();

    void pan(double dx, double dy) override;
    void rotate(double dx, double dy) override;
    void zoom(double dx, double dy) override;

    /// Pressing Shift alone takes up the magnifier; Delete is told when it is let go.
    virtual void handleKeyDown(const osgGA::GUIEventAdapter& ea, osgGA::GUIActionAdapter& aa);
    virtual void handleKeyUp(const osgGA::GUIEventAdapter& ea, osgGA::GUIActionAdapter& aa);
    /// True when the drag was consumed.
    virtual bool handleMouseDrag(const osgGA::GUIEventAdapter& ea, osgGA::GUIActionAdapter& aa,
                                 const osg::Vec3d& lngLatPos, const osg::Vec3d& worldCoordPos);

signals:
    /// Where the camera is, with an event (`byEvent`) or with TellView(); whoever follows the view listens.
    void signalViewMoved(const osgEarth::Viewpoint& viewpoint, bool byEvent);
    /// What is under the pointer, told when it changes, by the mouse or below it: degrees, degrees, metres of
    /// the ground that is in memory or of the model there, and the camera's distance in metres. NaN for each
    /// that nothing is known of, as all three over space. A coarse altitude is not good to a metre: a pixel
    /// covers much ground there, and heights are loaded no finer.
    void signalPointed(double longitude, double latitude, double altitude, double range, bool coarse);
    /// Where north is on the dial: the negated heading of the camera, degrees. With every event.
    void signalHeading(double heading);

    /// The left button went down: the drawable under it, if the tool looks for one, then the pick, then the
    /// window position in pixels from the lower left corner. No push on a handle of a vertex is told.
    void mouseLeftBtnPress(osg::Vec3d lngLatPos, osg::Vec3d worldCoordPos);
    void mouseLeftBtnPress(float windowX, float windowY);
    void mouseLeftBtnPress(osg::Drawable* drawable);
    /// The mouse moved without a button: the pick, over a model with its height as altitude, then the
    /// drawable under it, if the tool looks for one.
    void mouseLeftBtnMove(osg::Vec3d lngLatPos, osg::Vec3d worldCoordPos);
    void mouseMoveSignal(osg::Drawable* drawable);
    /// The left button went up: before the click, if it is one, with the pick alone; after a drag with the
    /// window position as well; after a move of objects with the pick alone.
    void mouseLeftBtnRelease(osg::Vec3d lngLatPos, osg::Vec3d worldCoordPos);
    void mouseLeftBtnRelease(float windowX, float windowY);
    /// A left click that the tool leaves to others: the drawable under it, if any, then the pick.
    void mouseLeftBtnClick(osg::Vec3d lngLatPos, osg::Vec3d worldCoordPos);
    void mouseLeftBtnClickSignal(osg::Drawable* drawable);
    /// A double click, also when the camera flies there; the release that follows is not told.
    void mouseLeftBtnDoubleClick(osg::Vec3d lngLatPos, osg::Vec3d worldCoordPos);
    /// The mouse moved with any button held: the pick, then the window position.
    void mouseLeftBtnDrag(osg::Vec3d lngLatPos, osg::Vec3d worldCoordPos);
    void mouseLeftBtnDrag(float windowX, float windowY);
    /// The left button drags a handle of the approach to a landing point; the camera stays.
    void mouseLeftBtnDragAngleComputer(osg::Vec3d lngLatPos);
    /// The left button drags the point of interest, on which it went down; the camera stays.
    void mouseLeftBtnDragInterestPoint(osg::Vec3d lngLatPos);
    /// The left button drags over a node whose name begins with "TaskGrid"; the camera stays.
    void mouseLeftBtnDragGrid(osg::Vec3d lngLatPos, osg::Vec3d worldCoordPos);
    /// A right click.
    void signalRightBtnPicked(osg::Vec3d lngLatPos);
    /// A left click on a model: the names of its node and of that one's parent. Before the click is told.
    void signalMouseLeftBtnClickModelLayer(QString currNode, QString parentNode);
    /// A step of a block move, degrees, degrees and metres (always 0).
    void ObjectMoved(double dLng, double dLat, double dAlt);
    /// Delete was let go.
    void signalHandleKeyDelete();
    /// For listeners; the manipulator itself never emits these four.
    void signalPicked(osg::Vec3d lngLatPos);
    void signalMoving(osg::Vec3d lngLatPos);
    void signalPickedXYZ(osg::Vec3d worldCoordPos);
    void signalMovingXYZ(osg::Vec3d worldCoordPos);

public slots:
    /// Positive values bring the camera closer.
    void slotZoom(double value);
    /// Moves the focal point; x and y are weighted differently on purpose.
    void slotTraval(osg::Vec2f direction);
    /// Turns the camera to a heading in degrees at once.
    void slotHeading(double heading);
    /// Looks straight down with north up at once.
    void slotResetPitch();
    /// Forgets the mouse buttons that are held and stops any running movement.
    void slotResetMouse();

protected:
    ~CAxEarthManipulator() override;
    void handleMovementAction(const ActionType& type, double dx, double dy, osg::View* view) override;
    /// Flies to the place under the pointer, at the height of the ground that is in memory there.
    bool handlePointAction(const Action& action, float mx, float my, osg::View* view) override;

private:
    /// Lets the benchmarks time a pick by itself.
    friend struct AxManipulatorProbe;

    // What one event found under the mouse.
    struct Pick
    {
        float lngLat[4] = {0.0f, 0.0f, 0.0f, 0.0f}; // longitude, latitude, altitude, height of a model
        osg::Vec3d world;
        bool modelHit = false;
        QString currNode;
        QString parentNode;

        osg::Vec3d LngLatPos() const { return {lngLat[0], lngLat[1], lngLat[2]}; }
        // The altitude, or the height of the model that was hit.
        float Altitude() const { return modelHit ? lngLat[3] : lngLat[2]; }
    };

    // What the read-outs show of a place.
    struct Pointed
    {
        double longitude = std::numeric_limits<double>::quiet_NaN();
        double latitude = longitude;
        double altitude = longitude;
        double range = 0.0;
        bool coarse = false;
    };

    // Dispatch
    class Step;
    bool dispatch(const osgGA::GUIEventAdapter& ea, osgGA::GUIActionAdapter& aa, const Pick& pick);
    bool passOn(const osgGA::GUIEventAdapter& ea, osgGA::GUIActionAdapter& aa);
    void noteMagnifierKey(const osgGA::GUIEventAdapter& ea);
    void handleMove(const osgGA::GUIEventAdapter& ea, osgGA::GUIActionAdapter& aa, const Pick& pick);
    bool handleMousePush(const osgGA::GUIEventAdapter& ea, osgGA::GUIActionAdapter& aa, const Pick& pick);
    bool handleMouseRelease(const osgGA::GUIEventAdapter& ea, osgGA::GUIActionAdapter& aa, const Pick& pick);
    bool handleLeftClick(const osgGA::GUIEventAdapter& ea, osgGA::GUIActionAdapter& aa, const Pick& pick);
    void endMove(const Pick& pick);
    bool handleDoubleClick(const osgGA::GUIEventAdapter& ea, osgGA::GUIActionAdapter& aa, const Pick& pick);
    bool dragDownhillAngle(osgGA::GUIActionAdapter& aa, const osg::Vec3d& lngLatPos,
                           const osg::Vec3d& worldCoordPos);

    // Picking
    osg::Vec3d getPos(const osgGA::GUIEventAdapter& ea, osgGA::GUIActionAdapter& aa, float lngLat[4],
                      bool& modelHit, QString& currNode, QString& parentNode);
    osg::Drawable* pickDrawable(const osgGA::GUIEventAdapter& ea, osgGA::GUIActionAdapter& aa);
    osg::Node* pickNode(osgGA::GUIActionAdapter& aa, const osg::Vec3d& lngLatPos,
                        const osg::Vec3d& worldCoordPos);
    bool IntersectMarkPoint(const osgGA::GUIEventAdapter& ea, osgGA::GUIActionAdapter& aa);
    bool IntersectModelLayer(const osgGA::GUIEventAdapter& ea, double& lon, double& lat, double& alt,
                             double& height, osg::Vec3d& world, QString& currNode, QString& parentNode);
    std::optional<AxViewRay> rayUnderMouse(const osgGA::GUIEventAdapter& ea) const;
    Pick pickAlong(const AxViewRay& ray) const;
    std::optional<AxModelHit> modelAlong(const AxViewRay& ray) const;
    /// Keeps where the pointer is. False for a mouse event that says nothing of it.
    bool notePointer(const osgGA::GUIEventAdapter& ea);
    void tellPointed(const Pick& pick);

    // Model layers
    bool handleModelActionScroll(const osgGA::GUIEventAdapter& ea, osgGA::GUIActionAdapter& aa);
    bool handleModelActionDoubleClick(const osg::Vec3d& worldCoordPos);
    bool dragAroundModel(const osgGA::GUIEventAdapter& ea, osgGA::GUIActionAdapter& aa);

    QPointer<AxViewerParts> viewer; ///< who else refers to the manipulator may keep it longer
    const std::unique_ptr<AxBlockMover> mover;
    OperateMode operateMode = OperateGlobe;
    ProjMode projMode = ProjNone;
    ProjPlane projPlane = ProjPlane0;
    bool angleDragActive = false;
    bool anglePushed = false;        ///< the push was on a handle of the approach
    bool interestPushed = false;     ///< it was on the point of interest
    bool interestDragActive = false; ///< and the mouse has moved since
    bool handleGivenUp = false;      ///< until the button goes up
    bool doubleClickPending = false;
    float pushX = 0.0f;
    float pushY = 0.0f;
    std::optional<osg::Vec2d> pointer; ///< over the map, -1 to 1, y upwards
    Pointed told;
    // For which pointer and camera that was looked up, and how many ticks ago.
    std::optional<osg::Vec2d> toldPointer;
    osg::Matrixd toldView;
    int ticksSinceTold = 0;
    // Of the other buttons: a right click must end where it began, too.
    osg::Vec2f otherPush;
};

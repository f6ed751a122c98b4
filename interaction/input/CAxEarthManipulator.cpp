// What becomes of an event: pick, signals, and whether the camera may react.
#include "interaction/input/CAxEarthManipulator.h"
#include "interaction/input/AxCameraBindings.h"
#include "interaction/input/AxMouseRules.h"
#include "interaction/tools/AxBlockMover.h"
#include "scene/AxScene.h"
#include "scene/AxToolInHand.h"
#include "scene/AxViewerParts.h"

#include <osgViewer/Viewer>

#include <cmath>

using osgEarth::Angle;
using osgEarth::Units;
using osgEarth::Viewpoint;
using osgGA::GUIEventAdapter;

namespace {
constexpr double zoomSlotFactor = -0.0005;
constexpr double travelSlotFactorX = -0.02;
constexpr double travelSlotFactorY = -0.01;

/// While it lives the camera's near and far planes lie round what is looked at. A map engine that unprojects
/// window positions between them finds nothing with those of start-up, which every frame replaces for itself.
class PickablePlanes
{
public:
    PickablePlanes(osg::Camera& pickedCamera, double distance)
        : camera(&pickedCamera), kept(pickedCamera.getProjectionMatrix())
    {
        constexpr double nearShare = 0.001;
        constexpr double globeMetres = 1.3e7;
        double fovy = 0.0;
        double aspect = 0.0;
        double zNear = 0.0;
        double zFar = 0.0;
        if (camera->getProjectionMatrixAsPerspective(fovy, aspect, zNear, zFar))
            camera->setProjectionMatrixAsPerspective(fovy, aspect, nearShare * distance,
                                                     2.0 * distance + globeMetres);
    }
    ~PickablePlanes() { camera->setProjectionMatrix(kept); }
    PickablePlanes(const PickablePlanes&) = delete;
    PickablePlanes& operator=(const PickablePlanes&) = delete;

private:
    const osg::ref_ptr<osg::Camera> camera;
    const osg::Matrixd kept;
};
} // namespace

CAxEarthManipulator::CAxEarthManipulator(QObject* parent)
    : QObject(parent), viewer(AxPartsOf(parent)),
      mover(std::make_unique<AxBlockMover>(
          viewer, [this](double dLng, double dLat, double dAlt) { emit ObjectMoved(dLng, dLat, dAlt); }))
{
    AxBindCamera(*getSettings());
}

CAxEarthManipulator::~CAxEarthManipulator() = default;

bool CAxEarthManipulator::handle(const GUIEventAdapter& ea, osgGA::GUIActionAdapter& aa)
{
    auto* view = dynamic_cast<osgViewer::View*>(&aa);
    if (!view || !viewer)
        return false;
    if (!notePointer(ea)) {
        if (ea.getEventType() != GUIEventAdapter::RELEASE)
            return false;
        // Wherever it was, it ends what its push began.
        const osg::ref_ptr<GUIEventAdapter> nowhere = new GUIEventAdapter(ea);
        nowhere->setInputRange(-1.0f, -1.0f, 1.0f, 1.0f);
        nowhere->setX(-1.0f);
        nowhere->setY(-1.0f);
        return handle(*nowhere, aa);
    }
    if (ea.getHandled()) {
        // A push that a handle took is the beginning of no click.
        if (ea.getEventType() == GUIEventAdapter::PUSH &&
            ea.getButton() == GUIEventAdapter::LEFT_MOUSE_BUTTON) {
            pushX = pushY = 0.0f;
            doubleClickPending = false;
        }
        return false;
    }
    // Whoever hears of an event may delete the viewer, which keeps both of these.
    const osg::ref_ptr<CAxEarthManipulator> self(this);
    const osg::ref_ptr<osgViewer::View> kept(view);
    updateProjection(view->getCamera());
    const Viewpoint viewpoint = getViewpoint();
    if (viewpoint.isValid()) {
        emit signalHeading(-viewpoint.getHeading());
        emit signalViewMoved(viewpoint, true);
    }
    if (!viewer)
        return true;

    Pick pick;
    pick.world = getPos(ea, aa, pick.lngLat, pick.modelHit, pick.currNode, pick.parentNode);
    if (AxMouseRules::SaysPlace(ea.getEventType()))
        tellPointed(pick);
    return !viewer || dispatch(ea, aa, pick) || passOn(ea, aa);
}

// True when the event was consumed.
bool CAxEarthManipulator::dispatch(const GUIEventAdapter& ea, osgGA::GUIActionAdapter& aa, const Pick& pick)
{
    switch (ea.getEventType()) {
    case GUIEventAdapter::MOVE:
        noteMagnifierKey(ea);
        if (viewer)
            handleMove(ea, aa, pick);
        return false;
    case GUIEventAdapter::PUSH:
        noteMagnifierKey(ea);
        return !viewer || handleMousePush(ea, aa, pick);
    case GUIEventAdapter::RELEASE:
        return handleMouseRelease(ea, aa, pick);
    case GUIEventAdapter::DOUBLECLICK:
        return handleDoubleClick(ea, aa, pick);
    case GUIEventAdapter::DRAG:
        emit mouseLeftBtnDrag(pick.LngLatPos(), pick.world);
        if (viewer)
            emit mouseLeftBtnDrag(ea.getX(), ea.getY());
        // What the hand shakes in a double click is no drag: it would break off the flight.
        return !viewer || handleMouseDrag(ea, aa, pick.LngLatPos(), pick.world) ||
               (doubleClickPending && (ea.getButtonMask() & GUIEventAdapter::LEFT_MOUSE_BUTTON) != 0);
    case GUIEventAdapter::KEYDOWN:
        handleKeyDown(ea, aa);
        return false;
    case GUIEventAdapter::KEYUP:
        handleKeyUp(ea, aa);
        return false;
    case GUIEventAdapter::SCROLL:
        return handleModelActionScroll(ea, aa);
    default:
        return false;
    }
}

bool CAxEarthManipulator::passOn(const GUIEventAdapter& ea, osgGA::GUIActionAdapter& aa)
{
    if (!viewer)
        return true;
    const PickablePlanes planes(*viewer->Scene().View()->getCamera(), getDistance());
    EarthManipulator::handle(ea, aa);
    return false;
}

void CAxEarthManipulator::TellView()
{
    emit signalViewMoved(getViewpoint(), false);
}

void CAxEarthManipulator::CancelBlockMove()
{
    mover->Cancel();
}

void CAxEarthManipulator::handleKeyDown(const GUIEventAdapter& ea, osgGA::GUIActionAdapter&)
{
    if (AxMouseRules::IsShiftAlone(ea.getModKeyMask()))
        viewer->Tools().HoldMagnifier();
}

void CAxEarthManipulator::handleKeyUp(const GUIEventAdapter& ea, osgGA::GUIActionAdapter&)
{
    if (AxMouseRules::IsDelete(ea.getKey())) {
        emit signalHandleKeyDelete();
        return;
    }
    if (AxMouseRules::KeepsTool(ea.getKey()) || !AxMouseRules::IsShiftAlone(ea.getModKeyMask()))
        return;
    // What the button that is still held began, a rectangle or a click, is of the magnifier.
    const bool isHeld = (ea.getButtonMask() & GUIEventAdapter::LEFT_MOUSE_BUTTON) != 0;
    handleGivenUp = handleGivenUp || (isHeld && viewer->Tools().Tool() == ToolMagnifier);
    viewer->Tools().LetGoOfMagnifier();
    if (viewer && ea.getButtonMask() == 0)
        viewer->Tools().ContinueDrawing();
}

// Its release may have gone elsewhere, come with another modifier, or while a button was held.
void CAxEarthManipulator::noteMagnifierKey(const GUIEventAdapter& ea)
{
    if (!(ea.getModKeyMask() & GUIEventAdapter::MODKEY_SHIFT))
        viewer->Tools().ContinueDrawing();
}

void CAxEarthManipulator::setCameraLookAt(osg::Vec3d center, double heading, double pitch, double distance)
{
    if (!std::isfinite(center.length2()) || !(center.length2() > 0.0) || !std::isfinite(heading) ||
        !std::isfinite(pitch) || !std::isfinite(distance) || !(distance > 0.0) || !established())
        return;
    clearViewpoint();
    setCenter(center);
    setDistance(distance);
    setRotation(getQuaternion(AxMouseRules::WrapHeading(osg::DegreesToRadians(heading)),
                              osg::DegreesToRadians(pitch)));
}

void CAxEarthManipulator::slotZoom(double value)
{
    const double step = value * zoomSlotFactor * getSettings()->getMouseSensitivity();
    zoom(step, step);
}

void CAxEarthManipulator::slotTraval(osg::Vec2f direction)
{
    const double sensitivity = getSettings()->getMouseSensitivity();
    pan(static_cast<double>(direction.x()) * travelSlotFactorX * sensitivity,
        static_cast<double>(direction.y()) * travelSlotFactorY * sensitivity);
}

void CAxEarthManipulator::slotHeading(double heading)
{
    Viewpoint viewpoint = getViewpoint();
    viewpoint.heading() = Angle(heading, Units::DEGREES);
    setViewpoint(viewpoint);
}

void CAxEarthManipulator::slotResetPitch()
{
    Viewpoint viewpoint = getViewpoint();
    viewpoint.heading() = Angle(0.0, Units::DEGREES);
    viewpoint.pitch() = Angle(-90.0, Units::DEGREES);
    setViewpoint(viewpoint);
}

void CAxEarthManipulator::slotResetMouse()
{
    doubleClickPending = false;
    flushMouseEventStack();
    reinitialize();
}

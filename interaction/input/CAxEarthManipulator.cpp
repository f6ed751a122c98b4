// What becomes of an event: pick, signals, and whether the camera may react.
#include "interaction/input/CAxEarthManipulator.h"
#include "interaction/input/AxMouseRules.h"
#include "interaction/tools/AxBlockMover.h"
#include "scene/AxToolInHand.h"
#include "scene/AxViewerParts.h"

#include <osgViewer/View>

#include <cmath>

using osgEarth::Angle;
using osgEarth::Units;
using osgEarth::Viewpoint;
using osgGA::GUIEventAdapter;

namespace {
constexpr double zoomSlotFactor = -0.0005;
constexpr double travelSlotFactorX = -0.02;
constexpr double travelSlotFactorY = -0.01;
} // namespace

CAxEarthManipulator::CAxEarthManipulator(QObject* parent)
    : QObject(parent), viewer(AxPartsOf(parent)),
      mover(std::make_unique<AxBlockMover>(
          viewer, [this](double dLng, double dLat, double dAlt) { emit ObjectMoved(dLng, dLat, dAlt); }))
{
    // The viewer reports a wheel turned forward as SCROLL_DOWN.
    Settings* settings = getSettings();
    settings->bindScroll(ACTION_ZOOM_IN, GUIEventAdapter::SCROLL_DOWN);
    settings->bindScroll(ACTION_ZOOM_OUT, GUIEventAdapter::SCROLL_UP);
}

CAxEarthManipulator::~CAxEarthManipulator() = default;

bool CAxEarthManipulator::handle(const GUIEventAdapter& ea, osgGA::GUIActionAdapter& aa)
{
    auto* view = dynamic_cast<osgViewer::View*>(&aa);
    if (!view || !viewer)
        return false;
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
    emit signalPointed(pick.lngLat[0], pick.lngLat[1], pick.Altitude(), getDistance());
    return !viewer || dispatch(ea, aa, pick) || passOn(ea, aa);
}

// True when the event was consumed.
bool CAxEarthManipulator::dispatch(const GUIEventAdapter& ea, osgGA::GUIActionAdapter& aa, const Pick& pick)
{
    switch (ea.getEventType()) {
    case GUIEventAdapter::MOVE:
        handleMove(ea, aa, pick);
        return false;
    case GUIEventAdapter::PUSH:
        return handleMousePush(ea, aa, pick);
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
    if (!AxMouseRules::IsShiftAlone(ea.getModKeyMask()))
        return;
    viewer->Tools().TakeUp(ToolNavigate);
    if (viewer)
        viewer->Tools().TakeUp(ToolMagnifier);
}

void CAxEarthManipulator::handleKeyUp(const GUIEventAdapter& ea, osgGA::GUIActionAdapter&)
{
    if (AxMouseRules::IsDelete(ea.getKey()))
        emit signalHandleKeyDelete();
    else if (!AxMouseRules::KeepsTool(ea.getKey()) && AxMouseRules::IsShiftAlone(ea.getModKeyMask()))
        viewer->Tools().TakeUp(ToolNavigate);
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

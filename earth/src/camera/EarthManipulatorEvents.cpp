#include "camera/ManipulatorMotion.h"

#include <algorithm>
#include <cmath>
#include <osg/ApplicationUsage>
#include <osg/View>
#include <osgEarth/SpatialReference>

namespace osgEarth::Util {
namespace {
using EA = osgGA::GUIEventAdapter;

/// Logarithm of the zoom of one notch of the wheel: four notches halve the distance.
constexpr double kNotch = 0.173;
/// Most zoom (logarithm) that may be left to carry out, so that the camera stops soon after the wheel does.
constexpr double kMostOwed = 1.6;
/// Limit for the position of a cursor that is dragged out of the window, in half windows from the middle.
constexpr double kFarOut = 100.0;

/// A wheel that reports its motion in both axes means, vertically, the same as one that only says up or down.
int scrollingOf(const EA& ea)
{
    if (ea.getScrollingMotion() != EA::SCROLL_2D)
        return ea.getScrollingMotion();
    const float turned = ea.getScrollingDeltaY();
    return turned > 0.0f ? EA::SCROLL_UP : turned < 0.0f ? EA::SCROLL_DOWN : EA::SCROLL_NONE;
}

/// How many notches a wheel event is worth: a smooth wheel reports parts of one in its delta, others no
/// delta.
double notchesOf(const EA& ea)
{
    constexpr double kMost = 10.0;
    const double turned = std::abs(static_cast<double>(ea.getScrollingDeltaY()));
    return turned > 0.0 ? std::min(turned, kMost) : 1.0;
}

/// Whether an event that is about a place in the window says where.
bool hasPlace(const EA& ea)
{
    return std::isfinite(ea.getXnormalized()) && std::isfinite(ea.getYnormalized()) &&
           std::isfinite(ea.getX()) && std::isfinite(ea.getY());
}
} // namespace

osg::Vec2d cursorOf(const EA& ea)
{
    return {std::clamp(static_cast<double>(ea.getXnormalized()), -kFarOut, kFarOut),
            std::clamp(static_cast<double>(ea.getYnormalized()), -kFarOut, kFarOut)};
}

bool EarthManipulator::handle(const osgGA::GUIEventAdapter& ea, osgGA::GUIActionAdapter& aa)
{
    if (ea.getEventType() == EA::FRAME) {
        advance(ea.getTime(), aa);
        return false;
    }
    if (ea.getHandled() || !established())
        return false;
    switch (ea.getEventType()) {
    case EA::PUSH:
    case EA::DRAG:
    case EA::DOUBLECLICK:
    case EA::SCROLL:
        if (!hasPlace(ea))
            return false;
        break;
    default:
        break;
    }
    _motion->view = aa.asView();

    switch (ea.getEventType()) {
    case EA::PUSH:
        handlePush(ea, aa);
        return false;
    case EA::RELEASE:
        handleRelease(ea, aa);
        return false;
    case EA::DRAG: {
        if (_motion->afterDoubleClick)
            return false;
        addMouseEvent(ea);
        const Action& action = _settings->getAction(EVENT_MOUSE_DRAG, ea.getButtonMask(), ea.getModKeyMask());
        if (!handleMouseAction(action, aa.asView()))
            return false;
        aa.requestRedraw();
        return true;
    }
    case EA::DOUBLECLICK: {
        addMouseEvent(ea);
        const Action& action =
            _settings->getAction(EVENT_MOUSE_DOUBLE_CLICK, ea.getButton(), ea.getModKeyMask());
        const bool used = handlePointAction(action, ea.getX(), ea.getY(), aa.asView());
        if (used) {
            resetMouse(aa);
            aa.requestRedraw();
        }
        _motion->afterDoubleClick = true;
        return used;
    }
    case EA::SCROLL: {
        addMouseEvent(ea);
        const Action& action = _settings->getAction(EVENT_SCROLL, scrollingOf(ea), ea.getModKeyMask());
        wakeClock(ea);
        if (!handleScrollAction(action))
            return false;
        aa.requestRedraw();
        return true;
    }
    case EA::KEYDOWN: {
        const Action& action = _settings->getAction(EVENT_KEY_DOWN, ea.getKey(), ea.getModKeyMask());
        wakeClock(ea);
        _motion->key = ea.getKey();
        const bool used = handleKeyboardAction(action);
        _motion->key = 0;
        if (!used)
            return false;
        aa.requestRedraw();
        return true;
    }
    case EA::KEYUP:
        releaseKey(ea.getKey(), ea.getModKeyMask());
        return false;
    default:
        return false;
    }
}

void EarthManipulator::wakeClock(const osgGA::GUIEventAdapter& ea)
{
    // Frames may stop while nothing moves. A movement that begins now must
    // not count the time since the last of them.
    if (!moving() && ea.getTime() > _time_s_now && std::isfinite(ea.getTime()))
        _time_s_now = ea.getTime();
}

void EarthManipulator::grab(const osgGA::GUIEventAdapter& ea, osg::View* view)
{
    const osg::Vec2d cursor = cursorOf(ea);
    osg::Vec3d point;
    _motion->grabbed.reset();
    if (view && pickGround(cursor.x(), cursor.y(), view->getCamera()->getProjectionMatrix(), point))
        _motion->grabbed = Motion::Grab{point, (point - getMatrix().getTrans()).length()};
}

void EarthManipulator::handlePush(const osgGA::GUIEventAdapter& ea, osgGA::GUIActionAdapter& aa)
{
    resetMouse(aa);
    clearFlight();
    addMouseEvent(ea);
    _mouse_down_event = &ea;
    grab(ea, aa.asView());
}

void EarthManipulator::handleRelease(const osgGA::GUIEventAdapter& ea, osgGA::GUIActionAdapter& aa)
{
    const bool placed = hasPlace(ea); // a release ends a drag wherever it is
    if (placed && isMouseClick(&ea)) {
        addMouseEvent(ea);
        handleMouseClickAction(_settings->getAction(EVENT_MOUSE_CLICK, ea.getButton(), ea.getModKeyMask()));
    }
    // The wheel, the keys and a flight that this button did not start go on.
    flushMouseEventStack();
    _mouse_down_event = nullptr;
    _motion->grabbed.reset();
    _motion->afterDoubleClick = false;
    // One of two buttons let go: the drag goes on with the other.
    if (placed && ea.getButtonMask() != 0) {
        addMouseEvent(ea);
        grab(ea, aa.asView());
    }
}

void EarthManipulator::addMouseEvent(const osgGA::GUIEventAdapter& ea)
{
    _ga_t1 = _ga_t0;
    _ga_t0 = &ea;
}

void EarthManipulator::flushMouseEventStack()
{
    _ga_t0 = nullptr;
    _ga_t1 = nullptr;
}

void EarthManipulator::resetMouse(osgGA::GUIActionAdapter& aa, bool flushEventStack)
{
    if (flushEventStack)
        flushMouseEventStack();
    _mouse_down_event = nullptr;
    _motion->letGo();
    stopWheel();
    aa.requestContinuousUpdate(false);
}

bool EarthManipulator::isMouseMoving()
{
    if (!_ga_t0 || !_ga_t1)
        return false;
    const double dx = _ga_t0->getXnormalized() - _ga_t1->getXnormalized();
    const double dy = _ga_t0->getYnormalized() - _ga_t1->getYnormalized();
    const double dt = _ga_t0->getTime() - _ga_t1->getTime();
    return std::hypot(dx, dy) > dt * 0.1;
}

bool EarthManipulator::isMouseClick(const osgGA::GUIEventAdapter* mouseUpEvent) const
{
    if (!mouseUpEvent || !_mouse_down_event)
        return false;
    const double dx = mouseUpEvent->getX() - _mouse_down_event->getX();
    const double dy = mouseUpEvent->getY() - _mouse_down_event->getY();
    constexpr double kStill = 2.0; // pixels a hand shakes
    return std::hypot(dx, dy) <= kStill;
}

EarthManipulator::ActionType EarthManipulator::getActionTypeForEvent(const osgGA::GUIEventAdapter& ea) const
{
    int input = 0;
    switch (ea.getEventType()) {
    case EA::DRAG:
        input = ea.getButtonMask();
        break;
    case EA::DOUBLECLICK:
        input = ea.getButton();
        break;
    case EA::SCROLL:
        input = ea.getScrollingMotion();
        break;
    case EA::KEYDOWN:
        input = ea.getKey();
        break;
    default:
        return ACTION_NULL;
    }
    return _settings->getAction(ea.getEventType(), input, ea.getModKeyMask())._type;
}

void EarthManipulator::applyOptionsToDeltas(const Action& action, double& dx, double& dy)
{
    dx *= action.getDoubleOption(OPTION_SCALE_X, 1.0);
    dy *= action.getDoubleOption(OPTION_SCALE_Y, 1.0);
    if (action.getBoolOption(OPTION_SINGLE_AXIS, false))
        (std::abs(dx) > std::abs(dy) ? dy : dx) = 0.0;
}

bool EarthManipulator::handleMouseAction(const Action& action, osg::View* view)
{
    if (action._type == ACTION_NULL || !_ga_t0 || !_ga_t1)
        return false;
    const osg::Vec2d way = (cursorOf(*_ga_t0) - cursorOf(*_ga_t1)) * _settings->getMouseSensitivity();
    double dx = way.x();
    double dy = way.y();
    applyOptionsToDeltas(action, dx, dy);
    if (dx == 0.0 && dy == 0.0)
        return false;
    _motion->dragging = view;
    handleMovementAction(action._type, dx, dy, view);
    _motion->dragging = nullptr;
    return true;
}

bool EarthManipulator::handleMouseClickAction(const Action& action)
{
    osg::ref_ptr<osg::View> view;
    return _ga_t0 && _motion->view.lock(view) &&
           handlePointAction(action, _ga_t0->getX(), _ga_t0->getY(), view.get());
}

bool EarthManipulator::handleScrollAction(const Action& action, double)
{
    if (action._type != ACTION_ZOOM_IN && action._type != ACTION_ZOOM_OUT)
        return false;
    clearFlight();
    double ignored = 0.0;
    double notch = (action._type == ACTION_ZOOM_IN ? -kNotch : kNotch) * _settings->getScrollSensitivity() *
                   (_ga_t0 ? notchesOf(*_ga_t0) : 1.0);
    applyOptionsToDeltas(action, ignored, notch);
    if (!std::isfinite(notch))
        return false;
    if (_motion->wheel * notch < 0.0)
        _motion->wheel = 0.0;
    _motion->wheel = std::clamp(_motion->wheel + notch, -kMostOwed, kMostOwed);

    // Notches at one place aim at one point, whatever small error a step
    // leaves. It is looked for with the next frame, once for a whole storm.
    const osg::Vec2d cursor = _ga_t0 ? cursorOf(*_ga_t0) : osg::Vec2d();
    if (!_motion->wheelPoint || (cursor - _motion->wheelCursor).length() > 1e-6) {
        _motion->wheelCursor = cursor;
        _motion->wheelAims = true;
    }
    return true;
}

bool EarthManipulator::handlePointAction(const Action& action, float mx, float my, osg::View* view)
{
    if (action._type == ACTION_HOME) {
        home(_time_s_now);
        return true;
    }
    osg::Vec3d point;
    if (action._type != ACTION_GOTO || !view || !_ga_t0)
        return false;
    const osg::Vec2d cursor = cursorOf(*_ga_t0);
    if (!screenToWorld(mx, my, view, point) &&
        !pickGround(cursor.x(), cursor.y(), view->getCamera()->getProjectionMatrix(), point))
        return false;
    Viewpoint there = getViewpoint();
    GeoPoint focus;
    focus.fromWorld(_srs, point);
    there.focalPoint() = focus;
    there.setRange(getDistance() * action.getDoubleOption(OPTION_GOTO_RANGE_FACTOR, 1.0));
    setViewpoint(there, action.getDoubleOption(OPTION_DURATION, 1.0));
    return true;
}

void EarthManipulator::advanceWheel()
{
    if (_motion->wheel == 0.0)
        return;
    constexpr double kEase = 0.06;   // seconds in which a notch is mostly spent
    constexpr double kStill = 0.002; // a rest that moves nothing by more than a pixel
    double step = _motion->wheel * (1.0 - std::exp(-_delta_t / kEase));
    if (std::abs(_motion->wheel - step) < kStill)
        step = _motion->wheel;
    _motion->wheel -= step;

    osg::ref_ptr<osg::View> view;
    _motion->view.lock(view);
    if (view) {
        const osg::Matrixd& projection = view->getCamera()->getProjectionMatrix();
        const osg::Vec2d& cursor = _motion->wheelCursor;
        osg::Vec3d point;
        const bool stale = _time_s_now < _motion->groundSettlesAt || !(pose() == _motion->wheelPose);
        if (_motion->wheelAims || stale) {
            _motion->wheelPoint.reset();
            if (pickGround(cursor.x(), cursor.y(), projection, point))
                _motion->wheelPoint = point;
        }
        if (_motion->wheelPoint)
            _motion->anchor = HeldPoint{*_motion->wheelPoint, cursorRay(projection, cursor.x(), cursor.y())};
    }
    _motion->wheelAims = false;
    handleMovementAction(ACTION_ZOOM, 0.0, std::expm1(step), view.get());
    _motion->anchor.reset();
    _motion->wheelPose = pose();
}

void EarthManipulator::getUsage(osg::ApplicationUsage& usage) const
{
    usage.addKeyboardMouseBinding("Drag left", "Pan");
    usage.addKeyboardMouseBinding("Drag middle", "Rotate");
    usage.addKeyboardMouseBinding("Drag right", "Zoom");
    usage.addKeyboardMouseBinding("Wheel", "Zoom to the cursor");
    usage.addKeyboardMouseBinding("Double click", "Go there");
    usage.addKeyboardMouseBinding("Arrows", "Pan, with Ctrl rotate");
    usage.addKeyboardMouseBinding("+, Page Up", "Zoom in");
    usage.addKeyboardMouseBinding("-, Page Down", "Zoom out");
    usage.addKeyboardMouseBinding("Home, Space", "Go to the home viewpoint");
}
} // namespace osgEarth::Util

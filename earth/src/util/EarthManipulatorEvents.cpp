#include "ManipulatorMotion.h"

#include <algorithm>
#include <cmath>
#include <osg/ApplicationUsage>
#include <osg/View>
#include <osgEarth/SpatialReference>

namespace osgEarth::Util {
namespace {

using EA = osgGA::GUIEventAdapter;

/** Logarithm of the zoom of one notch of the wheel: four notches halve the distance. */
constexpr double kNotch = 0.173;
/** A wheel that is spun never owes more than this, so that it stops when the hand does. */
constexpr double kMostOwed = 1.6;
/** Without a new press or repeat a key is taken as released: its release may have gone to another window. */
constexpr double kKeyHold = 1.0;
/** Rates of a held key: windows a second, radians a second, logarithm of zoom a second. */
constexpr double kKeyPan = 0.9;
constexpr double kKeyRotate = 0.9;
constexpr double kKeyZoom = 1.2;

} // namespace

bool EarthManipulator::handle(const osgGA::GUIEventAdapter& ea, osgGA::GUIActionAdapter& aa)
{
    if (ea.getEventType() == EA::FRAME) {
        advance(ea.getTime(), aa);
        return false;
    }
    if (ea.getHandled() || !established())
        return false;
    _motion->view = aa.asView();

    switch (ea.getEventType()) {
    case EA::PUSH:
        handlePush(ea, aa);
        return false;
    case EA::RELEASE:
        handleRelease(ea, aa);
        return false;
    case EA::DRAG: {
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
        if (!handlePointAction(action, ea.getX(), ea.getY(), aa.asView()))
            return false;
        resetMouse(aa);
        aa.requestRedraw();
        return true;
    }
    case EA::SCROLL: {
        addMouseEvent(ea);
        const Action& action =
            _settings->getAction(EVENT_SCROLL, ea.getScrollingMotion(), ea.getModKeyMask());
        if (!handleScrollAction(action))
            return false;
        aa.requestRedraw();
        return true;
    }
    case EA::KEYDOWN: {
        const Action& action = _settings->getAction(EVENT_KEY_DOWN, ea.getKey(), ea.getModKeyMask());
        if (!handleKeyboardAction(action))
            return false;
        _motion->key = ea.getKey();
        aa.requestRedraw();
        return true;
    }
    case EA::KEYUP:
        if (ea.getKey() == _motion->key)
            _motion->keyAction = ACTION_NULL;
        return false;
    default:
        return false;
    }
}

void EarthManipulator::handlePush(const osgGA::GUIEventAdapter& ea, osgGA::GUIActionAdapter& aa)
{
    resetMouse(aa);
    clearFlight();
    addMouseEvent(ea);
    _mouse_down_event = &ea;
    osg::View* view = aa.asView();
    osg::Vec3d point;
    if (view &&
        pickGround(ea.getXnormalized(), ea.getYnormalized(), view->getCamera()->getProjectionMatrix(), point))
        _motion->grabbed = point;
}

void EarthManipulator::handleRelease(const osgGA::GUIEventAdapter& ea, osgGA::GUIActionAdapter& aa)
{
    if (isMouseClick(&ea)) {
        addMouseEvent(ea);
        handleMouseClickAction(_settings->getAction(EVENT_MOUSE_CLICK, ea.getButton(), ea.getModKeyMask()));
    }
    resetMouse(aa);
    // One of two buttons let go: the drag goes on with the other.
    if (ea.getButtonMask() != 0) {
        addMouseEvent(ea);
        osg::View* view = aa.asView();
        osg::Vec3d point;
        if (view && pickGround(ea.getXnormalized(), ea.getYnormalized(),
                               view->getCamera()->getProjectionMatrix(), point))
            _motion->grabbed = point;
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
    _motion->grabbed.reset();
    _motion->keyAction = ACTION_NULL;
    _motion->wheel = 0.0;
    _motion->wheelPoint.reset();
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
    double dx = (_ga_t0->getXnormalized() - _ga_t1->getXnormalized()) * _settings->getMouseSensitivity();
    double dy = (_ga_t0->getYnormalized() - _ga_t1->getYnormalized()) * _settings->getMouseSensitivity();
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

bool EarthManipulator::handleKeyboardAction(const Action& action, double seconds)
{
    if (action._type == ACTION_NULL)
        return false;
    clearFlight();
    if (action._type == ACTION_HOME) {
        home(_time_s_now);
        return true;
    }
    const bool starts = _motion->keyAction != action._type;
    _motion->keyAction = action._type;
    _motion->keyUntil = _time_s_now + std::min(seconds, kKeyHold);
    if (starts && !action.getBoolOption(OPTION_CONTINUOUS, false))
        _motion->keyUntil = _time_s_now + 0.2;
    return true;
}

bool EarthManipulator::handleScrollAction(const Action& action, double)
{
    if (action._type != ACTION_ZOOM_IN && action._type != ACTION_ZOOM_OUT)
        return false;
    clearFlight();
    double ignored = 0.0;
    double notch = (action._type == ACTION_ZOOM_IN ? -kNotch : kNotch) * _settings->getScrollSensitivity();
    applyOptionsToDeltas(action, ignored, notch);
    if (_motion->wheel * notch < 0.0)
        _motion->wheel = 0.0;
    _motion->wheel = std::clamp(_motion->wheel + notch, -kMostOwed, kMostOwed);

    const osg::Vec2d cursor(_ga_t0 ? _ga_t0->getXnormalized() : 0.0, _ga_t0 ? _ga_t0->getYnormalized() : 0.0);
    // Notches at one place aim at one point, whatever small error a step leaves.
    if (!_motion->wheelPoint || (cursor - _motion->wheelCursor).length() > 1e-6) {
        _motion->wheelPoint.reset();
        _motion->wheelCursor = cursor;
        osg::ref_ptr<osg::View> view;
        osg::Vec3d point;
        if (_motion->view.lock(view) &&
            pickGround(cursor.x(), cursor.y(), view->getCamera()->getProjectionMatrix(), point))
            _motion->wheelPoint = point;
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
    if (!screenToWorld(mx, my, view, point) && !pickGround(_ga_t0->getXnormalized(), _ga_t0->getYnormalized(),
                                                           view->getCamera()->getProjectionMatrix(), point))
        return false;
    Viewpoint there = getViewpoint();
    GeoPoint focus;
    focus.fromWorld(_srs, point);
    there.focalPoint() = focus;
    there.setRange(getDistance() * action.getDoubleOption(OPTION_GOTO_RANGE_FACTOR, 1.0));
    setViewpoint(there, action.getDoubleOption(OPTION_DURATION, 1.0));
    return true;
}

void EarthManipulator::advanceKey()
{
    if (_motion->keyAction == ACTION_NULL)
        return;
    if (_time_s_now > _motion->keyUntil) {
        _motion->keyAction = ACTION_NULL;
        return;
    }
    osg::ref_ptr<osg::View> view;
    _motion->view.lock(view);
    const double t = _delta_t * _settings->getKeyboardSensitivity();
    const struct
    {
        ActionType key;
        ActionType type;
        double dx;
        double dy;
    } steps[] = {{ACTION_PAN_LEFT, ACTION_PAN, kKeyPan, 0.0},
                 {ACTION_PAN_RIGHT, ACTION_PAN, -kKeyPan, 0.0},
                 {ACTION_PAN_UP, ACTION_PAN, 0.0, -kKeyPan},
                 {ACTION_PAN_DOWN, ACTION_PAN, 0.0, kKeyPan},
                 {ACTION_ROTATE_LEFT, ACTION_ROTATE, -kKeyRotate, 0.0},
                 {ACTION_ROTATE_RIGHT, ACTION_ROTATE, kKeyRotate, 0.0},
                 {ACTION_ROTATE_UP, ACTION_ROTATE, 0.0, kKeyRotate},
                 {ACTION_ROTATE_DOWN, ACTION_ROTATE, 0.0, -kKeyRotate},
                 {ACTION_ZOOM_IN, ACTION_ZOOM, 0.0, -kKeyZoom},
                 {ACTION_ZOOM_OUT, ACTION_ZOOM, 0.0, kKeyZoom}};
    for (const auto& step : steps) {
        if (step.key == _motion->keyAction)
            handleMovementAction(step.type, step.dx * t, step.dy * t, view.get());
    }
}

void EarthManipulator::advanceWheel()
{
    if (_motion->wheel == 0.0)
        return;
    constexpr double kEase = 0.06; // seconds in which a notch is mostly spent
    double step = _motion->wheel * (1.0 - std::exp(-_delta_t / kEase));
    if (std::abs(_motion->wheel - step) < 0.01)
        step = _motion->wheel;
    _motion->wheel -= step;

    osg::ref_ptr<osg::View> view;
    _motion->view.lock(view);
    if (view && _motion->wheelPoint) {
        _motion->anchor =
            ZoomAnchor{*_motion->wheelPoint, cursorRay(view->getCamera()->getProjectionMatrix(),
                                                       _motion->wheelCursor.x(), _motion->wheelCursor.y())};
    }
    handleMovementAction(ACTION_ZOOM, 0.0, std::expm1(step), view.get());
    _motion->anchor.reset();
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

#include "camera/ManipulatorMotion.h"

#include <algorithm>
#include <osg/View>

namespace osgEarth::Util {
namespace {
/// Without a new press or repeat a key is taken as released: its release may have gone to another window.
constexpr double kKeyHold = 1.0;
/// The same for a key that is held on after a later one: only the latest key repeats.
constexpr double kKeyHoldUnrepeated = 5.0;
/// A key that is only tapped moves for so many seconds.
constexpr double kTap = 0.1;
/// A key bound to a single step moves for so many seconds.
constexpr double kStep = 0.2;
/// Rates of a held key: windows a second, radians a second, logarithm of zoom a second.
constexpr double kKeyPan = 0.9;
constexpr double kKeyRotate = 0.9;
constexpr double kKeyZoom = 1.2;
} // namespace

bool EarthManipulator::handleKeyboardAction(const Action& action, double seconds)
{
    if (action._type == ACTION_NULL)
        return false;
    Motion::HeldKey fresh{action._type, 0.0};
    if (action._type == ACTION_HOME) {
        const auto found = _motion->keys.find(_motion->key);
        if (found == _motion->keys.end() || found->second.action != ACTION_HOME)
            home(_time_s_now); // once, however often the key repeats
        fresh.most = 0.0;
    } else {
        clearFlight();
        if (!action.getBoolOption(OPTION_CONTINUOUS, false))
            fresh.most = kStep;
    }
    Motion::HeldKey& held = _motion->keys.try_emplace(_motion->key, fresh).first->second;
    if (held.action != action._type)
        held = fresh; // the same key, with another modifier
    held.released = false;
    // Window systems repeat only the key that was pressed last; its repeat keeps all held keys alive.
    for (auto& [key, other] : _motion->keys)
        other.until = std::max(other.until, _time_s_now + kKeyHold);
    held.until = _time_s_now + std::clamp(seconds, 0.0, kKeyHold);
    return true;
}

void EarthManipulator::releaseKey(int key, int modkeys)
{
    // When Shift is released before "+", the release event names the key without Shift,
    // which is bound to the same action.
    const ActionType action = _settings->getAction(EVENT_KEY_DOWN, key, modkeys)._type;
    for (auto& [code, held] : _motion->keys) {
        if (code == key || (action == held.action && action != ACTION_NULL))
            held.released = true;
        else
            held.until = std::max(held.until, _time_s_now + kKeyHoldUnrepeated);
    }
}

void EarthManipulator::advanceKeys()
{
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
    std::map<ActionType, osg::Vec2d> moves; // keys that do the same kind of thing move as one
    for (auto it = _motion->keys.begin(); it != _motion->keys.end();) {
        Motion::HeldKey& held = it->second;
        double seconds = _time_s_now > held.until ? 0.0 : _delta_t;
        if (held.released)
            seconds = std::min(seconds, std::max(0.0, kTap - held.moved));
        seconds = std::min(seconds, std::max(0.0, held.most - held.moved));
        for (const auto& step : steps) {
            if (step.key == held.action)
                moves[step.type] += osg::Vec2d(step.dx, step.dy) * seconds;
        }
        held.moved += seconds;
        const bool over =
            _time_s_now > held.until || (held.released && held.moved >= std::min(kTap, held.most));
        it = over ? _motion->keys.erase(it) : std::next(it);
    }
    osg::ref_ptr<osg::View> view;
    _motion->view.lock(view);
    const double sensitivity = _settings->getKeyboardSensitivity();
    for (const auto& [type, way] : moves) {
        if (way.length2() > 0.0)
            handleMovementAction(type, way.x() * sensitivity, way.y() * sensitivity, view.get());
    }
}
} // namespace osgEarth::Util

#include <algorithm>
#include <cmath>
#include <osgEarthUtil/EarthManipulator>
#include <tuple>

namespace osgEarth::Util {
namespace {
/// The value where it is a usable factor, else the old one.
double factorOr(double old, double value)
{
    return std::isfinite(value) && value >= 0.0 ? value : old;
}
} // namespace

bool EarthManipulator::Action::getBoolOption(int option, bool defaultValue) const
{
    return getDoubleOption(option, defaultValue ? 1.0 : 0.0) != 0.0;
}

int EarthManipulator::Action::getIntOption(int option, int defaultValue) const
{
    return static_cast<int>(getDoubleOption(option, defaultValue));
}

double EarthManipulator::Action::getDoubleOption(int option, double defaultValue) const
{
    const auto found = std::find_if(_options.begin(), _options.end(),
                                    [option](const ActionOption& o) { return o.option() == option; });
    return found == _options.end() ? defaultValue : found->doubleValue();
}

EarthManipulator::Settings::Settings(const Settings& rhs) = default;

bool EarthManipulator::Settings::InputSpec::operator<(const InputSpec& rhs) const
{
    return std::tie(event, input, modkeys) < std::tie(rhs.event, rhs.input, rhs.modkeys);
}

int EarthManipulator::Settings::normalizedModkeys(int mask)
{
    using EA = osgGA::GUIEventAdapter;
    int result = 0;
    for (int both : {EA::MODKEY_SHIFT, EA::MODKEY_CTRL, EA::MODKEY_ALT, EA::MODKEY_META}) {
        if (mask & both)
            result |= both;
    }
    return result;
}

void EarthManipulator::Settings::bind(int event, int input, int modkeys, ActionType action,
                                      const ActionOptions& options)
{
    _bindings[{event, input, normalizedModkeys(modkeys)}] = Action(action, options);
}

const EarthManipulator::Action& EarthManipulator::Settings::getAction(int event, int input, int modkeys) const
{
    static const Action kNothing;
    const auto found = _bindings.find({event, input, normalizedModkeys(modkeys)});
    return found == _bindings.end() ? kNothing : found->second;
}

void EarthManipulator::Settings::bindMouse(ActionType action, int buttonMask, int modkeyMask,
                                           const ActionOptions& options)
{
    bind(EVENT_MOUSE_DRAG, buttonMask, modkeyMask, action, options);
}

void EarthManipulator::Settings::bindMouseClick(ActionType action, int buttonMask, int modkeyMask,
                                                const ActionOptions& options)
{
    bind(EVENT_MOUSE_CLICK, buttonMask, modkeyMask, action, options);
}

void EarthManipulator::Settings::bindMouseDoubleClick(ActionType action, int buttonMask, int modkeyMask,
                                                      const ActionOptions& options)
{
    bind(EVENT_MOUSE_DOUBLE_CLICK, buttonMask, modkeyMask, action, options);
}

void EarthManipulator::Settings::bindKey(ActionType action, int key, int modkeyMask,
                                         const ActionOptions& options)
{
    bind(EVENT_KEY_DOWN, key, modkeyMask, action, options);
}

void EarthManipulator::Settings::bindScroll(ActionType action, int scrollingMotion, int modkeyMask,
                                            const ActionOptions& options)
{
    bind(EVENT_SCROLL, scrollingMotion, modkeyMask, action, options);
}

void EarthManipulator::Settings::setMouseSensitivity(double value)
{
    change(_mouseSensitivity, factorOr(_mouseSensitivity, value));
}

void EarthManipulator::Settings::setKeyboardSensitivity(double value)
{
    change(_keyboardSensitivity, factorOr(_keyboardSensitivity, value));
}

void EarthManipulator::Settings::setScrollSensitivity(double value)
{
    change(_scrollSensitivity, factorOr(_scrollSensitivity, value));
}

void EarthManipulator::Settings::setMinMaxPitch(double minPitch, double maxPitch)
{
    if (!std::isfinite(minPitch) || !std::isfinite(maxPitch))
        return;
    // Looking straight up or down is as far as a pitch goes.
    _minPitch = std::clamp(std::min(minPitch, maxPitch), -90.0, 90.0);
    _maxPitch = std::clamp(std::max(minPitch, maxPitch), -90.0, 90.0);
    dirty();
}

void EarthManipulator::Settings::setMinMaxDistance(double minDistance, double maxDistance)
{
    if (std::isnan(minDistance) || std::isnan(maxDistance))
        return;
    _minDistance = std::max(0.0, std::min(minDistance, maxDistance));
    _maxDistance = std::max(_minDistance, std::max(minDistance, maxDistance));
    dirty();
}

void EarthManipulator::Settings::setAutoViewpointDurationLimits(double minSeconds, double maxSeconds)
{
    if (!std::isfinite(minSeconds) || !std::isfinite(maxSeconds))
        return;
    _minDuration = std::max(0.0, std::min(minSeconds, maxSeconds));
    _maxDuration = std::max(_minDuration, std::max(minSeconds, maxSeconds));
    dirty();
}

void EarthManipulator::Settings::getAutoViewpointDurationLimits(double& outMinSeconds,
                                                                double& outMaxSeconds) const
{
    outMinSeconds = _minDuration;
    outMaxSeconds = _maxDuration;
}

void EarthManipulator::Settings::setTerrainAvoidanceMinimumDistance(double metres)
{
    change(_terrainClearance, factorOr(_terrainClearance, metres));
}
} // namespace osgEarth::Util

#include "interaction/input/AxMouseRules.h"

#include <osg/Math>
#include <osgGA/GUIEventAdapter>

#include <algorithm>
#include <cmath>
#include <limits>

namespace AxMouseRules {
namespace {
constexpr double clickTolerance = 1e-5;
// The character that Delete types.
constexpr int deleteCharacter = 0x7f;

// How far a coordinate may be from what was meant, by being held as a float.
double HalfStep(float value)
{
    const float next = std::nextafter(std::abs(value), std::numeric_limits<float>::max());
    return 0.5 * (static_cast<double>(next) - static_cast<double>(std::abs(value)));
}

bool IsSamePlace(float a, float b)
{
    const double distance = std::abs(static_cast<double>(a) - static_cast<double>(b));
    return distance <= clickTolerance + std::max(HalfStep(a), HalfStep(b));
}
} // namespace

bool IsClick(const osg::Vec2f& push, const osg::Vec2f& release)
{
    return push != osg::Vec2f() && IsSamePlace(push.x(), release.x()) && IsSamePlace(push.y(), release.y());
}

bool SaysPlace(int eventType)
{
    using Event = osgGA::GUIEventAdapter;
    return eventType == Event::MOVE || eventType == Event::DRAG || eventType == Event::PUSH ||
           eventType == Event::DOUBLECLICK || eventType == Event::SCROLL;
}

bool IsShiftAlone(int modKeyMask)
{
    return modKeyMask == osgGA::GUIEventAdapter::MODKEY_SHIFT;
}

bool IsDelete(int key)
{
    return key == osgGA::GUIEventAdapter::KEY_Delete || key == osgGA::GUIEventAdapter::KEY_KP_Delete ||
           key == deleteCharacter;
}

bool KeepsTool(int key)
{
    return key == '1' || key == '3';
}

double WrapHeading(double radians)
{
    if (std::abs(radians) > 2.0 * osg::PI)
        radians = std::fmod(radians, 2.0 * osg::PI);
    if (radians > osg::PI)
        return radians - 2.0 * osg::PI;
    return radians <= -osg::PI ? radians + 2.0 * osg::PI : radians;
}

} // namespace AxMouseRules

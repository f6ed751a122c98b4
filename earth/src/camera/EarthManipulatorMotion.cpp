#include "camera/ManipulatorMotion.h"

#include <algorithm>
#include <cmath>
#include <osg/View>

namespace osgEarth::Util {
HeadingRule EarthManipulator::headingRule() const
{
    return _settings->getLockAzimuthWhilePanning() ? HeadingRule::KeepNorth : HeadingRule::TurnFreely;
}

void EarthManipulator::settle(const std::function<void(CameraPose&)>& hold, const HeldPoint* held)
{
    CameraPose now = pose();
    // Coming to the ground, to the pitch limits and clear of a slope each may
    // move the held point a little, and holding it may break the others.
    constexpr int kRounds = 4;
    bool lifted = false;
    for (int round = 0; round < kRounds; ++round) {
        if (hold)
            hold(now);
        if (!isTethering())
            recenter(
                *_ellipsoid, [this](const Ray& ray) { return groundAlongRay(ray); }, now);
        const bool turned = limitPitch(pitchLimits(), now);
        lifted = standClear(SunkenCentre::RisesWithTheEye, now);
        if (!turned && !lifted)
            break;
    }
    if (held && lifted)
        turnTo(*_ellipsoid, *held, pitchLimits(), now);
    setPose(now);
}

void EarthManipulator::pan(double dx, double dy)
{
    if (!std::isfinite(dx) || !std::isfinite(dy))
        return;
    clearViewpoint();
    // A hand on the mouse holds the ground; a key or a program does not.
    if (_motion->dragging && _motion->grabbed && _ga_t0) {
        holdGrabbed(*_motion->dragging);
        return;
    }
    // Half a window of a 30 degree camera shows 0.27 of the distance; 0.3 is what pan has always meant.
    constexpr double kWindow = 0.3;
    if (std::abs(heightOverGround(_center)) > 0.01 * _distance + 1.0)
        settle();
    const double metres = -kWindow * _distance;
    CameraPose now = pose();
    slide(*_ellipsoid, dx * metres, dy * metres, headingRule(), now);
    // The centre goes up hill and down dale, range and angles stay; a cliff is climbed, not leapt.
    constexpr double kSteepest = 2.0;
    const double most = kSteepest * std::hypot(dx, dy) * std::abs(metres);
    Geodetic center = toGeodetic(*_ellipsoid, now.center);
    center.height -= std::clamp(heightOverGround(now.center), -most, most);
    now.center = toWorld(*_ellipsoid, center);
    limitPitch(pitchLimits(), now);
    standClear(SunkenCentre::RisesWithTheEye, now);
    setPose(now);
}

double EarthManipulator::heightOverGround(const osg::Vec3d& point) const
{
    const Geodetic place = toGeodetic(*_ellipsoid, point);
    return place.height - groundHeight(place.latitude, place.longitude);
}

void EarthManipulator::drag(double dx, double dy, osg::View* view)
{
    if (!view || !_ga_t0 || !_motion->grabbed) {
        pan(dx, dy);
        return;
    }
    clearViewpoint();
    holdGrabbed(*view);
}

void EarthManipulator::holdGrabbed(osg::View& view)
{
    constexpr double kFarthest = 4.0; // times as far as it was grabbed
    const osg::Vec2d cursor = cursorOf(*_ga_t0);
    const HeldPoint held{_motion->grabbed->point,
                         cursorRay(view.getCamera()->getProjectionMatrix(), cursor.x(), cursor.y()),
                         kFarthest * _motion->grabbed->away};
    settle([&](CameraPose& pose) { bringUnder(*_ellipsoid, held, headingRule(), pose); }, &held);
}

void EarthManipulator::rotate(double dx, double dy)
{
    if (!std::isfinite(dx) || !std::isfinite(dy))
        return;
    clearFlight();
    settle();
    if (_settings->getSingleAxisRotation())
        (std::abs(dx) > std::abs(dy) ? dy : dx) = 0.0;
    double heading = 0.0;
    double pitch = 0.0;
    anglesOf(_rotation, heading, pitch);
    CameraPose now = pose();
    now.rotation = rotationOf(wrapAngle(heading + dx), clampedPitch(pitch + dy));
    standClear(SunkenCentre::RisesWithTheEye, now);
    setPose(now);
}

void EarthManipulator::zoom(double, double dy)
{
    if (!std::isfinite(dy))
        return;
    clearFlight();
    settle();
    // One call neither goes through the ground nor leaves the globe for good.
    const double factor = std::clamp(1.0 + dy, 0.05, 20.0);
    const auto held = isTethering() ? std::nullopt : _motion->anchor;
    CameraPose now = pose();
    zoomBy(*_ellipsoid, factor, clampedDistance(0.0), clampedDistance(1e300), headingRule(), held, now);
    if (!held) {
        standClear(SunkenCentre::RisesWithTheEye, now);
        setPose(now);
        return;
    }
    setPose(now);
    bool justHeld = true;
    settle(
        [&](CameraPose& pose) {
            if (!justHeld)
                holdBelowHorizon(*_ellipsoid, *held, headingRule(), pose);
            justHeld = false;
        },
        &*held);
}

void EarthManipulator::handleMovementAction(const ActionType& type, double dx, double dy, osg::View* view)
{
    switch (type) {
    case ACTION_PAN:
        pan(dx, dy);
        break;
    case ACTION_EARTH_DRAG:
        drag(dx, dy, view);
        break;
    case ACTION_ROTATE:
        rotate(dx, dy);
        break;
    case ACTION_ZOOM:
        zoom(dx, dy);
        break;
    default:
        break;
    }
}
} // namespace osgEarth::Util

#include "camera/ManipulatorMotion.h"

#include <algorithm>
#include <cmath>
#include <osg/Transform>
#include <osgEarth/Notify>
#include <osgEarth/SpatialReference>

namespace osgEarth::Util {
namespace {
/// A focal point farther than this from the ellipsoid is no view of the earth, metres.
constexpr double kHighestFocus = 1e9;

/// Whether every value that the viewpoint sets can be used.
bool isSound(const Viewpoint& vp)
{
    return (!vp.focalPoint().isSet() || !vp.focalPoint()->isValid() ||
            (isFinite(vp.focalPoint()->vec3d()) && std::abs(vp.focalPoint()->z()) <= kHighestFocus)) &&
           (!vp.heading().isSet() || std::isfinite(vp.getHeading())) &&
           (!vp.pitch().isSet() || std::isfinite(vp.getPitch())) &&
           (!vp.range().isSet() || std::isfinite(vp.getRange())) &&
           (!vp.positionOffset().isSet() || vp.positionOffset()->length() <= kHighestFocus);
}

std::optional<osg::Vec3d> worldCenter(osg::Node& node)
{
    const osg::BoundingSphere bound = node.getBound();
    const osg::NodePathList paths = node.getParentalNodePaths();
    if (!bound.valid() || paths.empty())
        return std::nullopt;
    osg::NodePath above = paths.front();
    above.pop_back();
    const osg::Vec3d center = osg::Vec3d(bound.center()) * osg::computeLocalToWorld(above);
    if (!isFinite(center) || !(center.length() > 1.0))
        return std::nullopt;
    return center;
}
} // namespace

Viewpoint EarthManipulator::getViewpoint() const
{
    Viewpoint viewpoint;
    if (!_srs)
        return viewpoint;
    double heading = 0.0;
    double pitch = 0.0;
    anglesOf(_rotation, heading, pitch);
    viewpoint.focalPoint() = _centerMap;
    viewpoint.setHeading(osg::RadiansToDegrees(heading));
    viewpoint.setPitch(osg::RadiansToDegrees(pitch));
    viewpoint.setRange(_distance);
    viewpoint.setNode(_tetherNode.get());
    return viewpoint;
}

void EarthManipulator::setViewpoint(const Viewpoint& viewpoint, double seconds)
{
    if (!isSound(viewpoint)) {
        OE_WARN << "EarthManipulator: viewpoint \"" << viewpoint.name().get()
                << "\" is not finite or not on earth, it is not used" << std::endl;
        return;
    }
    if (!established()) {
        _motion->pending = viewpoint;
        _motion->pendingSeconds = seconds;
        return;
    }
    reinitialize();
    osg::ref_ptr<osg::Node> node;
    if (viewpoint.getNode(node))
        _tetherNode = node.get();
    const Viewpoint whole = completed(viewpoint);
    if (seconds > 0.0 && std::isfinite(seconds))
        startFlight(whole, seconds);
    else
        goTo(whole);
}

Viewpoint EarthManipulator::completed(const Viewpoint& viewpoint) const
{
    Viewpoint whole = viewpoint;
    const Viewpoint now = getViewpoint();
    if (!whole.heading().isSet())
        whole.setHeading(now.getHeading());
    if (!whole.pitch().isSet())
        whole.setPitch(now.getPitch());
    if (!whole.range().isSet())
        whole.setRange(now.getRange());
    osg::ref_ptr<osg::Node> node;
    std::optional<osg::Vec3d> followed;
    if (viewpoint.getNode(node) && (followed = worldCenter(*node))) {
        GeoPoint place;
        place.fromWorld(_srs, *followed);
        whole.focalPoint() = place;
    } else if (!whole.focalPoint().isSet() || !whole.focalPoint()->isValid())
        whole.focalPoint() = _centerMap;
    return whole;
}

CameraPose EarthManipulator::poseOf(const Viewpoint& viewpoint) const
{
    osg::Vec3d center = _center;
    osg::ref_ptr<osg::Node> node;
    std::optional<osg::Vec3d> followed;
    if (viewpoint.getNode(node) && (followed = worldCenter(*node)))
        center = *followed;
    else if (viewpoint.focalPoint().isSet() && viewpoint.focalPoint()->isValid()) {
        const GeoPoint point = viewpoint.focalPoint()->transform(_srs);
        double height = point.z();
        if (point.isRelative())
            height += groundHeight(osg::DegreesToRadians(point.y()), osg::DegreesToRadians(point.x()));
        if (point.isValid() && isFinite(point.vec3d()))
            center = toWorld(*_ellipsoid,
                             {osg::DegreesToRadians(point.y()), osg::DegreesToRadians(point.x()), height});
    }
    if (viewpoint.positionOffset().isSet())
        center += frameAt(*_ellipsoid, center) * viewpoint.positionOffset().get();
    return makePose(*_ellipsoid, center, wrapAngle(osg::DegreesToRadians(viewpoint.getHeading())),
                    clampedPitch(osg::DegreesToRadians(viewpoint.getPitch())),
                    clampedDistance(viewpoint.getRange()));
}

void EarthManipulator::goTo(const Viewpoint& viewpoint)
{
    CameraPose stand = poseOf(viewpoint);
    standClear(SunkenCentre::Rises, stand);
    setPose(stand);
    _motion->stand = Motion::Stand{viewpoint, pose()};
}

void EarthManipulator::takeStand()
{
    if (_motion->stand && !isTethering() && pose() == _motion->stand->allowed)
        goTo(Viewpoint(_motion->stand->asked));
    else {
        _motion->stand.reset();
        collisionDetect();
    }
}

FlightEnd EarthManipulator::flightEnd(const CameraPose& pose) const
{
    FlightEnd end;
    end.place = toGeodetic(*_ellipsoid, pose.center);
    anglesOf(pose.rotation, end.heading, end.pitch);
    end.range = pose.distance;
    return end;
}

CameraFlight EarthManipulator::way(const FlightEnd& from, const FlightEnd& to) const
{
    return CameraFlight(from, to, _ellipsoid->getRadiusEquator(), _settings->getArcViewpointTransitions());
}

void EarthManipulator::startFlight(const Viewpoint& viewpoint, double seconds)
{
    const FlightEnd from = flightEnd(pose());
    if (_settings->getAutoViewpointDurationEnabled()) {
        double shortest = 0.0;
        double longest = 0.0;
        _settings->getAutoViewpointDurationLimits(shortest, longest);
        seconds = std::clamp(way(from, flightEnd(poseOf(viewpoint))).feltLength(), shortest, longest);
    }
    Motion::Flight flight;
    flight.from = from;
    flight.goal = viewpoint;
    flight.seconds = seconds;
    _motion->flight = flight;
}

bool EarthManipulator::isSettingViewpoint() const
{
    return _motion->flight.has_value();
}

void EarthManipulator::clearFlight()
{
    // A flight that was to join a node and is broken off does not jump there.
    if (_motion->flight)
        _tetherNode = nullptr;
    _motion->flight.reset();
}

void EarthManipulator::clearViewpoint()
{
    clearFlight();
    _tetherNode = nullptr;
}

void EarthManipulator::setHomeViewpoint(const Viewpoint& viewpoint, double seconds)
{
    _homeViewpoint = viewpoint;
    _homeViewpointDuration = seconds;
}

void EarthManipulator::setTetherNode(osg::Node* node, double seconds)
{
    if (!node) {
        clearViewpoint();
        return;
    }
    Viewpoint viewpoint;
    viewpoint.setNode(node);
    setViewpoint(viewpoint, seconds);
}

void EarthManipulator::reinitialize()
{
    clearViewpoint();
    flushMouseEventStack();
    _mouse_down_event = nullptr;
    _motion->letGo();
    stopWheel();
}

void EarthManipulator::stopWheel()
{
    _motion->wheel = 0.0;
    _motion->wheelAims = false;
    _motion->wheelPoint.reset();
}

void EarthManipulator::home(double)
{
    if (_homeViewpoint.isSet()) {
        setViewpoint(_homeViewpoint.get(), _homeViewpointDuration);
        return;
    }
    // Without one: the whole globe, north up, over where the camera is.
    Viewpoint globe;
    globe.setHeading(0.0);
    globe.setPitch(-90.0);
    globe.setRange(4.0 * _ellipsoid->getRadiusEquator());
    if (established())
        setViewpoint(globe, _homeViewpointDuration);
}

void EarthManipulator::home(const osgGA::GUIEventAdapter& ea, osgGA::GUIActionAdapter& aa)
{
    home(ea.getTime());
    aa.requestRedraw();
}

void EarthManipulator::init(const osgGA::GUIEventAdapter&, osgGA::GUIActionAdapter&)
{
    reinitialize();
}

void EarthManipulator::computeHomePosition() {}

void EarthManipulator::computeHomePosition(const osg::Camera*, bool) {}

void EarthManipulator::advance(double time, osgGA::GUIActionAdapter& aa)
{
    if (!std::isfinite(time))
        return;
    // A frame that took very long must not fling the camera.
    constexpr double kLongestStep = 0.2;
    _delta_t = std::clamp(time - _time_s_now, 0.0, kLongestStep);
    _time_s_now = time;
    if (!established())
        return;
    advanceFlight();
    advanceTether();
    advanceKeys();
    advanceWheel();
    if (!isSettingViewpoint())
        takeStand();
    aa.requestContinuousUpdate(moving() || isTethering());
}

bool EarthManipulator::moving() const
{
    return isSettingViewpoint() || !_motion->keys.empty() || _motion->wheel != 0.0;
}

void EarthManipulator::advanceFlight()
{
    if (!_motion->flight)
        return;
    Motion::Flight& flight = *_motion->flight;
    if (flight.begun)
        flight.elapsed += _delta_t;
    if (flight.elapsed >= flight.seconds) {
        const Viewpoint goal = flight.goal;
        _motion->flight.reset();
        goTo(goal);
        return;
    }

    // Where it leads may change on the way: a followed node moves, and finer
    // ground may be higher. The goal rises by and by, and is there in time.
    const CameraPose asked = poseOf(flight.goal);
    CameraPose clear = asked;
    standClear(SunkenCentre::Rises, clear);
    FlightEnd to = flightEnd(asked);
    const double lift = toGeodetic(*_ellipsoid, clear.center).height - to.place.height;
    const double left = flight.seconds - flight.elapsed;
    flight.lift +=
        flight.begun ? (lift - flight.lift) * -std::expm1(-_delta_t * std::max(4.0, 4.0 / left)) : lift;
    to.place.height += flight.lift;
    flight.begun = true;

    const FlightEnd now = way(flight.from, to).at(eased(flight.elapsed / flight.seconds));
    CameraPose next =
        makePose(*_ellipsoid, toWorld(*_ellipsoid, now.place), now.heading, now.pitch, now.range);
    standClear(SunkenCentre::RisesWithTheEye, next);
    setPose(next);
}

void EarthManipulator::advanceTether()
{
    osg::ref_ptr<osg::Node> node;
    if (isSettingViewpoint() || !_tetherNode.lock(node))
        return;
    if (const auto center = worldCenter(*node))
        setCenter(*center);
}
} // namespace osgEarth::Util

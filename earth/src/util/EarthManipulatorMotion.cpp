#include "ManipulatorMotion.h"

#include <algorithm>
#include <cmath>
#include <osg/Transform>
#include <osg/View>
#include <osgEarth/MapNode>
#include <osgEarth/Notify>
#include <osgEarth/SpatialReference>

namespace osgEarth::Util {
namespace {

/** Whether every value that the viewpoint sets can be used. */
bool isSound(const Viewpoint& vp)
{
    return (!vp.focalPoint().isSet() || !vp.focalPoint()->isValid() || isFinite(vp.focalPoint()->vec3d())) &&
           (!vp.heading().isSet() || std::isfinite(vp.getHeading())) &&
           (!vp.pitch().isSet() || std::isfinite(vp.getPitch())) &&
           (!vp.range().isSet() || std::isfinite(vp.getRange())) &&
           (!vp.positionOffset().isSet() || isFinite(vp.positionOffset().get()));
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
                << "\" is not finite, it is not used" << std::endl;
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
    if (seconds > 0.0 && std::isfinite(seconds))
        startFlight(viewpoint, seconds);
    else
        goTo(viewpoint);
}

CameraPose EarthManipulator::poseOf(const Viewpoint& viewpoint) const
{
    double heading = 0.0;
    double pitch = 0.0;
    anglesOf(_rotation, heading, pitch);
    if (viewpoint.heading().isSet())
        heading = wrapAngle(osg::DegreesToRadians(viewpoint.getHeading()));
    if (viewpoint.pitch().isSet())
        pitch = osg::DegreesToRadians(viewpoint.getPitch());

    osg::Vec3d center = _center;
    osg::ref_ptr<osg::Node> node;
    osg::ref_ptr<MapNode> mapNode;
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
    return makePose(*_ellipsoid, center, heading, clampedPitch(pitch),
                    clampedDistance(viewpoint.range().isSet() ? viewpoint.getRange() : _distance));
}

void EarthManipulator::goTo(const Viewpoint& viewpoint)
{
    setPose(poseOf(viewpoint));
    collisionDetect();
}

void EarthManipulator::startFlight(const Viewpoint& viewpoint, double seconds)
{
    const auto endOf = [this](const CameraPose& pose) {
        FlightEnd end;
        end.place = toGeodetic(*_ellipsoid, pose.center);
        anglesOf(pose.rotation, end.heading, end.pitch);
        end.range = pose.distance;
        return end;
    };
    const CameraFlight way(endOf(pose()), endOf(poseOf(viewpoint)), _ellipsoid->getRadiusEquator(),
                           _settings->getArcViewpointTransitions());
    if (_settings->getAutoViewpointDurationEnabled()) {
        double shortest = 0.0;
        double longest = 0.0;
        _settings->getAutoViewpointDurationLimits(shortest, longest);
        seconds = std::clamp(way.feltLength(), shortest, longest);
    }
    _motion->flight = Motion::Flight{way, seconds};
}

bool EarthManipulator::isSettingViewpoint() const
{
    return _motion->flight.has_value();
}

void EarthManipulator::clearFlight()
{
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
    _motion->grabbed.reset();
    _motion->keyAction = ACTION_NULL;
    _motion->wheel = 0.0;
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

void EarthManipulator::computeHomePosition(const osg::Camera*, bool) {}

void EarthManipulator::advance(double time, osgGA::GUIActionAdapter& aa)
{
    // A frame that took very long must not fling the camera.
    constexpr double kLongestStep = 0.2;
    _delta_t = std::clamp(time - _time_s_now, 0.0, kLongestStep);
    _time_s_now = time;
    if (!established())
        return;
    advanceFlight();
    advanceTether();
    advanceKey();
    advanceWheel();
    if (!isSettingViewpoint())
        collisionDetect();
    const bool moving =
        isSettingViewpoint() || isTethering() || _motion->keyAction != ACTION_NULL || _motion->wheel != 0.0;
    aa.requestContinuousUpdate(moving);
}

void EarthManipulator::advanceFlight()
{
    if (!_motion->flight)
        return;
    auto& flight = *_motion->flight;
    if (flight.start < 0.0)
        flight.start = _time_s_now;
    const double share = flight.seconds > 0.0 ? (_time_s_now - flight.start) / flight.seconds : 1.0;
    const FlightEnd now = flight.way.at(eased(share));
    if (share >= 1.0)
        clearFlight();
    setPose(makePose(*_ellipsoid, toWorld(*_ellipsoid, now.place), now.heading, now.pitch, now.range));
    collisionDetect();
}

void EarthManipulator::advanceTether()
{
    osg::ref_ptr<osg::Node> node;
    if (isSettingViewpoint() || !_tetherNode.lock(node))
        return;
    if (const auto center = worldCenter(*node))
        setCenter(*center);
}

HeadingRule EarthManipulator::headingRule() const
{
    return _settings->getLockAzimuthWhilePanning() ? HeadingRule::KeepNorth : HeadingRule::TurnFreely;
}

void EarthManipulator::settle()
{
    if (!isTethering())
        recalculateCenterFromLookVector();
    collisionDetect();
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
    const double metres = -0.3 * _distance;
    CameraPose now = pose();
    slide(*_ellipsoid, dx * metres, dy * metres, headingRule(), now);
    setPose(now);
    settle();
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
    const Ray sight = cursorRay(view.getCamera()->getProjectionMatrix(), _ga_t0->getXnormalized(),
                                _ga_t0->getYnormalized());
    CameraPose now = pose();
    if (bringUnder(*_ellipsoid, *_motion->grabbed, sight, headingRule(), now)) {
        setPose(now);
        settle();
    }
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
    _rotation = rotationOf(wrapAngle(heading + dx), clampedPitch(pitch + dy));
    collisionDetect();
}

void EarthManipulator::zoom(double, double dy)
{
    if (!std::isfinite(dy))
        return;
    clearFlight();
    settle();
    // One call neither goes through the ground nor leaves the globe for good.
    const double factor = std::clamp(1.0 + dy, 0.05, 20.0);
    CameraPose now = pose();
    zoomBy(*_ellipsoid, factor, clampedDistance(0.0), clampedDistance(1e300), headingRule(),
           isTethering() ? std::nullopt : _motion->anchor, now);
    setPose(now);
    collisionDetect();
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

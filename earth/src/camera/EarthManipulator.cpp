#include "camera/ManipulatorMotion.h"
#include "terrain/QuadtreeTerrain.h"

#include <algorithm>
#include <cmath>
#include <osg/Camera>
#include <osg/NodeVisitor>
#include <osgEarth/MapNode>
#include <osgEarth/SpatialReference>

namespace osgEarth::Util {
namespace {
/// Largest distance, metres: beyond any useful view, and small enough for exact arithmetic.
constexpr double kFarthest = 1e9;
/// A centre outside this belongs to no place on the earth, metres from its middle.
constexpr double kLowestCenter = 1.0;
constexpr double kHighestCenter = 1e10;
/// Closer than this the view matrix has no direction left.
constexpr double kNearest = 0.01;

bool isTurn(const osg::Quat& rotation)
{
    return std::isfinite(rotation.length2()) && rotation.length2() > 0.0;
}

class FindCoordinateSystem : public osg::NodeVisitor
{
public:
    FindCoordinateSystem() : osg::NodeVisitor(TRAVERSE_ALL_CHILDREN) {}
    void apply(osg::CoordinateSystemNode& node) override { found = &node; }
    osg::CoordinateSystemNode* found = nullptr;
};

class TileWatch : public TerrainCallback
{
public:
    explicit TileWatch(EarthManipulator* manipulator) : _manipulator(manipulator) {}
    void onTileAdded(const TileKey& key, osg::Node* tile, TerrainCallbackContext& context) override
    {
        osg::ref_ptr<EarthManipulator> manipulator;
        if (_manipulator.lock(manipulator))
            manipulator->handleTileAdded(key, tile, context);
        else
            context.remove();
    }

private:
    osg::observer_ptr<EarthManipulator> _manipulator;
};
} // namespace

EarthManipulator::EarthManipulator()
    : _ellipsoid(new osg::EllipsoidModel), _settings(new Settings), _motion(new Motion)
{
    using EA = osgGA::GUIEventAdapter;
    ActionOptions held;
    held.add(OPTION_CONTINUOUS, true);
    ActionOptions nearer;
    nearer.add(OPTION_GOTO_RANGE_FACTOR, 0.4);
    nearer.add(OPTION_DURATION, 1.0);
    ActionOptions away;
    away.add(OPTION_GOTO_RANGE_FACTOR, 2.5);
    away.add(OPTION_DURATION, 1.0);

    _settings->bindMouse(ACTION_PAN, EA::LEFT_MOUSE_BUTTON);
    _settings->bindMouse(ACTION_ROTATE, EA::MIDDLE_MOUSE_BUTTON);
    _settings->bindMouse(ACTION_ROTATE, EA::LEFT_MOUSE_BUTTON | EA::RIGHT_MOUSE_BUTTON);
    _settings->bindMouse(ACTION_ROTATE, EA::LEFT_MOUSE_BUTTON, EA::MODKEY_CTRL);
    _settings->bindMouse(ACTION_ZOOM, EA::RIGHT_MOUSE_BUTTON);
    _settings->bindScroll(ACTION_ZOOM_IN, EA::SCROLL_DOWN);
    _settings->bindScroll(ACTION_ZOOM_OUT, EA::SCROLL_UP);
    _settings->bindMouseDoubleClick(ACTION_GOTO, EA::LEFT_MOUSE_BUTTON, 0, nearer);
    _settings->bindMouseDoubleClick(ACTION_GOTO, EA::RIGHT_MOUSE_BUTTON, 0, away);
    _settings->bindMouseDoubleClick(ACTION_GOTO, EA::LEFT_MOUSE_BUTTON, EA::MODKEY_CTRL, away);
    const struct
    {
        int key;
        int padKey;
        ActionType pan;
        ActionType rotate;
    } arrows[] = {{EA::KEY_Left, EA::KEY_KP_Left, ACTION_PAN_LEFT, ACTION_ROTATE_LEFT},
                  {EA::KEY_Right, EA::KEY_KP_Right, ACTION_PAN_RIGHT, ACTION_ROTATE_RIGHT},
                  {EA::KEY_Up, EA::KEY_KP_Up, ACTION_PAN_UP, ACTION_ROTATE_UP},
                  {EA::KEY_Down, EA::KEY_KP_Down, ACTION_PAN_DOWN, ACTION_ROTATE_DOWN}};
    for (const auto& arrow : arrows) {
        for (int key : {arrow.key, arrow.padKey}) {
            _settings->bindKey(arrow.pan, key, 0, held);
            _settings->bindKey(arrow.rotate, key, EA::MODKEY_CTRL, held);
        }
    }
    for (int key : {+EA::KEY_Plus, +EA::KEY_Equals, +EA::KEY_KP_Add, +EA::KEY_Page_Up, +EA::KEY_KP_Page_Up})
        _settings->bindKey(ACTION_ZOOM_IN, key, 0, held);
    _settings->bindKey(ACTION_ZOOM_IN, EA::KEY_Plus, EA::MODKEY_SHIFT, held);
    for (int key : {+EA::KEY_Minus, +EA::KEY_KP_Subtract, +EA::KEY_Page_Down, +EA::KEY_KP_Page_Down})
        _settings->bindKey(ACTION_ZOOM_OUT, key, 0, held);
    for (int key : {+EA::KEY_Home, +EA::KEY_KP_Home, +EA::KEY_Space})
        _settings->bindKey(ACTION_HOME, key);

    const double radius = _ellipsoid->getRadiusEquator();
    setPose(makePose(*_ellipsoid, osg::Vec3d(radius, 0.0, 0.0), 0.0, -osg::PI_2, 4.0 * radius));
}

EarthManipulator::~EarthManipulator()
{
    osg::ref_ptr<MapNode> mapNode;
    if (_terrainCallback && _mapNode.lock(mapNode) && mapNode->getTerrain())
        mapNode->getTerrain()->removeTerrainCallback(_terrainCallback);
}

void EarthManipulator::applySettings(Settings* settings)
{
    if (!settings)
        return;
    _settings = settings;
    double heading = 0.0;
    double pitch = 0.0;
    anglesOf(_rotation, heading, pitch);
    _rotation = rotationOf(heading, clampedPitch(pitch));
    _distance = clampedDistance(_distance);
}

void EarthManipulator::setNode(osg::Node* node)
{
    if (node == _node.get())
        return;
    osg::ref_ptr<MapNode> mapNode;
    if (_terrainCallback && _mapNode.lock(mapNode) && mapNode->getTerrain())
        mapNode->getTerrain()->removeTerrainCallback(_terrainCallback);
    _terrainCallback = nullptr;
    _mapNode = nullptr;
    _srs = nullptr;
    _node = node;
    reinitialize();
    established();
}

bool EarthManipulator::established()
{
    if (_srs)
        return true;
    osg::ref_ptr<osg::Node> node;
    if (!_node.lock(node))
        return false;

    if (MapNode* mapNode = MapNode::findMapNode(node, _findNodeTraversalMask)) {
        const SpatialReference* srs = mapNode->getMapSRS();
        if (!srs)
            return false;
        _mapNode = mapNode;
        _srs = srs->getGeographicSRS();
        _ellipsoid = srs->getEllipsoid();
        if (Terrain* terrain = mapNode->getTerrain()) {
            _terrainCallback = new TileWatch(this);
            terrain->addTerrainCallback(_terrainCallback);
        }
    } else {
        FindCoordinateSystem find;
        find.setTraversalMask(_findNodeTraversalMask);
        node->accept(find);
        if (!find.found || !find.found->getEllipsoidModel())
            return false;
        _srs = SpatialReference::get("wgs84");
        _ellipsoid = find.found->getEllipsoidModel();
    }

    setPose(pose());
    if (_motion->pending.isSet()) {
        const Viewpoint viewpoint = _motion->pending.get();
        _motion->pending.unset();
        setViewpoint(viewpoint, _motion->pendingSeconds);
    }
    return true;
}

CameraPose EarthManipulator::pose() const
{
    return {_center, _centerRotation, _rotation, _distance};
}

void EarthManipulator::setPose(const CameraPose& pose)
{
    const double radius = pose.center.length();
    if (!(radius > kLowestCenter && radius < kHighestCenter) || !std::isfinite(pose.distance) ||
        !isTurn(pose.rotation))
        return;
    _rotation = pose.rotation;
    _distance = std::clamp(pose.distance, kNearest, kFarthest);
    setCenter(pose.center);
}

void EarthManipulator::setCenter(const osg::Vec3d& center)
{
    if (!(center.length() < kHighestCenter))
        return;
    _center = center;
    _centerRotation = computeCenterRotation(center);
    createLocalCoordFrame(center, _centerLocalToWorld);
    if (_srs)
        _centerMap.fromWorld(_srs, center);
}

bool EarthManipulator::createLocalCoordFrame(const osg::Vec3d& worldPos, osg::CoordinateFrame& outFrame) const
{
    outFrame = osg::Matrixd::rotate(computeCenterRotation(worldPos)) * osg::Matrixd::translate(worldPos);
    return true;
}

osg::Quat EarthManipulator::computeCenterRotation(const osg::Vec3d& center) const
{
    return frameAt(*_ellipsoid, center);
}

osg::Matrixd EarthManipulator::getRotation(const osg::Vec3d& center) const
{
    return osg::Matrixd::rotate(computeCenterRotation(center));
}

void EarthManipulator::getEulerAngles(const osg::Quat& quat, double* azimuth, double* pitch) const
{
    double heading = 0.0;
    double lift = 0.0;
    anglesOf(quat, heading, lift);
    if (azimuth)
        *azimuth = heading;
    if (pitch)
        *pitch = lift;
}

osg::Quat EarthManipulator::getQuaternion(double azimuth, double pitch) const
{
    return rotationOf(azimuth, pitch);
}

void EarthManipulator::getCompositeEulerAngles(double* outAzimuth, double* outPitch) const
{
    getEulerAngles(_rotation, outAzimuth, outPitch);
}

double EarthManipulator::clampedPitch(double radians) const
{
    return std::clamp(radians, pitchLimits().lowest, pitchLimits().highest);
}

double EarthManipulator::clampedDistance(double metres) const
{
    const double nearest = std::clamp(_settings->getMinDistance(), kNearest, kFarthest);
    return std::clamp(metres, nearest, std::clamp(_settings->getMaxDistance(), nearest, kFarthest));
}

PitchLimits EarthManipulator::pitchLimits() const
{
    return {osg::DegreesToRadians(_settings->getMinPitch()), osg::DegreesToRadians(_settings->getMaxPitch())};
}

void EarthManipulator::setRotation(const osg::Quat& rotation)
{
    if (isTurn(rotation))
        _rotation = rotation;
}

void EarthManipulator::setDistance(double distance)
{
    if (std::isfinite(distance))
        _distance = clampedDistance(distance);
}

osg::Matrixd EarthManipulator::getMatrix() const
{
    return cameraMatrix(pose());
}

osg::Matrixd EarthManipulator::getInverseMatrix() const
{
    return viewMatrix(pose());
}

void EarthManipulator::setByMatrix(const osg::Matrixd& matrix)
{
    const osg::Vec3d eye = matrix.getTrans();
    const osg::Vec3d look = osg::Matrixd::transform3x3(osg::Vec3d(0, 0, -1), matrix);
    const osg::Vec3d up = osg::Matrixd::transform3x3(osg::Vec3d(0, 1, 0), matrix);
    setByLookAt(eye, eye + look * _distance, up);
}

void EarthManipulator::setByLookAt(const osg::Vec3d& eye, const osg::Vec3d& center, const osg::Vec3d& up)
{
    Ray sight{eye, center - eye};
    if (!isFinite(eye) || !isFinite(center) || !(sight.direction.normalize() > 0.0))
        return;
    const auto distance = groundAlongRay(sight);
    setByLookAtRaw(eye, distance ? eye + sight.direction * *distance : center, up);
}

void EarthManipulator::setByLookAtRaw(const osg::Vec3d& eye, const osg::Vec3d& target, const osg::Vec3d& up)
{
    if (!isFinite(eye) || !isFinite(target) || !isFinite(up) || !((target - eye).length() > 0.0))
        return;
    const osg::Vec3d local = frameAt(*_ellipsoid, target).inverse() * up;
    CameraPose looking = lookAt(*_ellipsoid, eye, target, std::atan2(local.x(), local.y()));
    looking.distance = clampedDistance(looking.distance);
    setPose(looking);
}

void EarthManipulator::setLookAt(const osg::Vec3d& center, double azimuth, double pitch, double range,
                                 const osg::Vec3d& offset)
{
    if (!isFinite(center) || !isFinite(offset) || !std::isfinite(azimuth + pitch + range))
        return;
    setPose(makePose(*_ellipsoid, center + frameAt(*_ellipsoid, center) * offset, wrapAngle(azimuth),
                     clampedPitch(pitch), clampedDistance(range)));
}

double EarthManipulator::groundHeight(double latitude, double longitude) const
{
    osg::ref_ptr<MapNode> mapNode;
    double height = 0.0;
    if (_srs && _mapNode.lock(mapNode) && mapNode->getTerrain()) {
        mapNode->getTerrain()->getHeight(_srs, osg::RadiansToDegrees(longitude),
                                         osg::RadiansToDegrees(latitude), nullptr, &height);
    }
    return std::isfinite(height) ? height : 0.0;
}

double EarthManipulator::highestGround(double latitude, double longitude) const
{
    // The picture may still show coarser ground than is known; the eye stays above both.
    constexpr double kAboveAll = 20e3;
    const double height = groundHeight(latitude, longitude);
    osg::ref_ptr<MapNode> mapNode;
    osg::Vec3d drawn;
    if (!_mapNode.lock(mapNode) ||
        !QuadtreeTerrain::of(*mapNode)->intersectRay(toWorld(*_ellipsoid, {latitude, longitude, kAboveAll}),
                                                     -upAt(latitude, longitude), drawn))
        return height;
    return std::max(height, toGeodetic(*_ellipsoid, drawn).height);
}

std::optional<double> EarthManipulator::groundAlongRay(const Ray& ray) const
{
    // The surface that is drawn is the one that is seen and grabbed. Heights
    // stand in for it where there is no terrain, or none yet.
    osg::ref_ptr<MapNode> mapNode;
    double ignored = 0.0;
    if (_mapNode.lock(mapNode) && QuadtreeTerrain::of(*mapNode)->heightAt(0.0, 0.0, ignored)) {
        osg::Vec3d hit;
        if (!QuadtreeTerrain::of(*mapNode)->intersectRay(ray.origin, ray.direction, hit))
            return std::nullopt;
        return (hit - ray.origin) * ray.direction;
    }
    return groundAlong(*_ellipsoid, ray, [this](double latitude, double longitude) {
        return groundHeight(latitude, longitude);
    });
}

bool EarthManipulator::recalculateCenterFromLookVector()
{
    CameraPose now = pose();
    const bool found = recenter(
        *_ellipsoid, [this](const Ray& ray) { return groundAlongRay(ray); }, now);
    if (found)
        setPose(now);
    return found;
}

bool EarthManipulator::standClear(SunkenCentre sunken, CameraPose& pose) const
{
    if (!_settings->getTerrainAvoidanceEnabled())
        return false;
    const auto ground = [this](double latitude, double longitude) {
        return highestGround(latitude, longitude);
    };
    return keepAboveGround(*_ellipsoid, ground, _settings->getTerrainAvoidanceMinimumDistance(),
                           pitchLimits(), sunken, pose);
}

void EarthManipulator::collisionDetect()
{
    CameraPose now = pose();
    if (standClear(SunkenCentre::RisesWithTheEye, now))
        setPose(now);
}

bool EarthManipulator::pickGround(double x, double y, const osg::Matrixd& projection, osg::Vec3d& out) const
{
    const Ray ray = transformed(cursorRay(projection, x, y), getMatrix());
    const auto distance = groundAlongRay(ray);
    if (!distance)
        return false;
    out = ray.origin + ray.direction * *distance;
    return true;
}

bool EarthManipulator::intersect(const osg::Vec3d& start, const osg::Vec3d& end, osg::Vec3d& intersection,
                                 osg::Vec3d& normal) const
{
    Ray ray{start, end - start};
    const double length = ray.direction.normalize();
    if (!isFinite(start) || !isFinite(end) || !(length > 0.0))
        return false;
    const auto distance = groundAlongRay(ray);
    if (!distance || *distance > length)
        return false;
    intersection = start + ray.direction * *distance;
    normal = upAt(*_ellipsoid, intersection);
    return true;
}

bool EarthManipulator::intersectLookVector(osg::Vec3d& outEye, osg::Vec3d& outTarget, osg::Vec3d& outUp) const
{
    osg::Vec3d normal;
    getInverseMatrix().getLookAt(outEye, outTarget, outUp, _distance);
    return intersect(outEye, outEye + (outTarget - outEye) * 4.0, outTarget, normal);
}

bool EarthManipulator::screenToWorld(float x, float y, osg::View* view, osg::Vec3d& outCoords) const
{
    osg::ref_ptr<MapNode> mapNode;
    return view && _mapNode.lock(mapNode) && mapNode->getTerrain() &&
           mapNode->getTerrain()->getWorldCoordsUnderMouse(view, x, y, outCoords);
}

void EarthManipulator::updateCamera(osg::Camera& camera)
{
    camera.setViewMatrix(getInverseMatrix());
    updateProjection(&camera);
}

osgUtil::SceneView::FusionDistanceMode EarthManipulator::getFusionDistanceMode() const
{
    return osgUtil::SceneView::USE_FUSION_DISTANCE_VALUE;
}

void EarthManipulator::updateProjection(osg::Camera* eventCamera)
{
    if (!eventCamera)
        return;
    double vfov = 0.0;
    double aspect = 0.0;
    double zNear = 0.0;
    double zFar = 0.0;
    if (eventCamera->getProjectionMatrixAsPerspective(vfov, aspect, zNear, zFar)) {
        _vfov = vfov;
        return;
    }
    double left = 0.0;
    double right = 0.0;
    double bottom = 0.0;
    double top = 0.0;
    if (!_settings->getOrthoTracksPerspective() ||
        !eventCamera->getProjectionMatrixAsOrtho(left, right, bottom, top, zNear, zFar) || !(top > bottom))
        return;
    const double half = _distance * std::tan(osg::DegreesToRadians(0.5 * _vfov));
    const double wide = half * (right - left) / (top - bottom);
    eventCamera->setProjectionMatrixAsOrtho(-wide, wide, -half, half, zNear, zFar);
}

void EarthManipulator::handleTileAdded(const TileKey&, osg::Node*, TerrainCallbackContext&)
{
    constexpr double kUntilDrawn = 0.5; // seconds
    _motion->groundSettlesAt = _time_s_now + kUntilDrawn;
    if (!isSettingViewpoint())
        takeStand();
}
} // namespace osgEarth::Util

#include "base/SharedWhileUsed.h"
#include "globe/Horizon.h"
#include "globe/PickRay.h"

#include <algorithm>
#include <cmath>
#include <osg/Depth>
#include <osg/ShapeDrawable>
#include <osgEarth/MapNode>
#include <osgEarth/Terrain>
#include <osgEarthAnnotation/Draggers>
#include <osgGA/EventVisitor>
#include <osgUtil/CullVisitor>
#include <osgViewer/View>

namespace osgEarth::Annotation {
namespace {
using osgGA::GUIEventAdapter;

constexpr double kPickPixels = 8.0;
constexpr int kRenderBin = 12; // after what is transparent on the ground, before labels

osg::Camera* cameraOf(osgGA::GUIActionAdapter& aa)
{
    osg::View* view = aa.asView();
    osg::Camera* camera = view ? view->getCamera() : nullptr;
    return camera && camera->getViewport() ? camera : nullptr;
}

osg::Vec2d mouseOf(const GUIEventAdapter& ea)
{
    return {ea.getXnormalized(), ea.getYnormalized()};
}

struct DraggerState;

osg::ref_ptr<osg::StateSet> onTopOfGround()
{
    return sharedWhileUsed<osg::StateSet, DraggerState>([] {
        osg::ref_ptr<osg::StateSet> state = new osg::StateSet;
        state->setMode(GL_LIGHTING, osg::StateAttribute::OFF);
        state->setAttributeAndModes(new osg::Depth(osg::Depth::ALWAYS, 0.0, 1.0, false));
        state->setRenderBinDetails(kRenderBin, "DepthSortedBin");
        return state;
    });
}
} // namespace

Dragger::Dragger(MapNode* mapNode, int modKeyMask, const DragMode& defaultMode)
    : GeoPositionNode(mapNode), _modKeyMask(modKeyMask), _defaultMode(defaultMode)
{
    // The dragger's size in metres changes with the distance of the eye, so that its bound
    // is of no use to the usual cull test; traverse() tests what it covers on the screen.
    setCullingActive(false);
    setNumChildrenRequiringEventTraversal(getNumChildrenRequiringEventTraversal() + 1);
}

void Dragger::setPosition(const GeoPoint& position, bool fireEvents)
{
    GeoPositionNode::setPosition(position);
    if (fireEvents)
        firePositionChanged();
}

void Dragger::addPositionChangedCallback(PositionChangedCallback* callback)
{
    if (callback)
        _callbacks.emplace_back(callback);
}

void Dragger::removePositionChangedCallback(PositionChangedCallback* callback)
{
    _callbacks.remove(callback);
}

void Dragger::firePositionChanged()
{
    const osg::ref_ptr<Dragger> self(this);
    const PositionChangedCallbackList callbacks = _callbacks; // they may remove themselves
    for (const auto& callback : callbacks)
        callback->onPositionChanged(this, getPosition());
}

void Dragger::setHover(bool hovered)
{
    if (hovered == _hovered)
        return;
    _hovered = hovered;
    if (hovered)
        enter();
    else
        leave();
}

void Dragger::traverse(osg::NodeVisitor& nv)
{
    if (nv.getVisitorType() == osg::NodeVisitor::CULL_VISITOR) {
        drawInPixels(nv);
        return;
    }
    if (osgGA::EventVisitor* visitor = nv.asEventVisitor())
        for (const auto& event : visitor->getEvents()) {
            const GUIEventAdapter* ea = event->asGUIEventAdapter();
            if (ea && visitor->getActionAdapter() && handle(*ea, *visitor->getActionAdapter()))
                ea->setHandled(true);
        }
    GeoPositionNode::traverse(nv);
}

void Dragger::drawInPixels(osg::NodeVisitor& nv)
{
    osgUtil::CullVisitor* cv = nv.asCullVisitor();
    if (!cv || !getPosition().isValid() || !cv->getViewport())
        return;
    const osg::Matrixd& projection = *cv->getProjectionMatrix();
    const osg::Matrixd place = getGeoTransform()->getMatrix() * *cv->getModelViewMatrix();
    const double depth = (osg::Vec4d(place.getTrans(), 1.0) * projection).w();
    if (depth <= 0.0)
        return;
    const double metresPerPixel = 2.0 * depth / (std::abs(projection(1, 1)) * cv->getViewport()->height());
    osg::ref_ptr<osg::RefMatrix> matrix =
        new osg::RefMatrix(osg::Matrixd::scale(metresPerPixel, metresPerPixel, metresPerPixel) * place);
    cv->pushModelViewMatrix(matrix, osg::Transform::RELATIVE_RF);
    getPositionAttitudeTransform()->accept(nv);
    cv->popModelViewMatrix();
}

bool Dragger::isUnder(const GUIEventAdapter& ea, const osg::Camera& camera, osg::Vec2d& offset) const
{
    if (!getPosition().isValid())
        return false;
    const osg::Vec3d world = getGeoTransform()->getMatrix().getTrans();
    const osg::Vec4d clip = osg::Vec4d(world, 1.0) * (camera.getViewMatrix() * camera.getProjectionMatrix());
    if (clip.w() <= 0.0)
        return false;
    offset = mouseOf(ea) - osg::Vec2d(clip.x(), clip.y()) / clip.w();
    const double pixels = std::hypot(0.5 * offset.x() * camera.getViewport()->width(),
                                     0.5 * offset.y() * camera.getViewport()->height());
    if (pixels > kPickPixels)
        return false;
    const osg::Vec3d eye = osg::Vec3d() * osg::Matrixd::inverse(camera.getViewMatrix());
    return !Horizon(eye).hides(occludeeOf(world, {osg::Vec3f()}, 0.0));
}

bool Dragger::handle(const GUIEventAdapter& ea, osgGA::GUIActionAdapter& aa)
{
    const osg::Camera* camera = cameraOf(aa);
    if (ea.getHandled() || !camera)
        return false;
    osg::Vec2d offset;
    switch (ea.getEventType()) {
    case GUIEventAdapter::PUSH:
        _dragging = ea.getButton() == GUIEventAdapter::LEFT_MOUSE_BUTTON &&
                    (ea.getModKeyMask() & _modKeyMask) == _modKeyMask && isUnder(ea, *camera, offset);
        if (!_dragging)
            return false;
        _grabOffset = offset;
        _positionAtPush = getPosition();
        setHover(true);
        aa.requestRedraw();
        return true;
    case GUIEventAdapter::DRAG:
        if (!_dragging)
            return false;
        dragTo(ea, aa);
        aa.requestRedraw();
        return true;
    case GUIEventAdapter::RELEASE:
        if (ea.getButton() == GUIEventAdapter::LEFT_MOUSE_BUTTON)
            _dragging = false;
        return false;
    case GUIEventAdapter::MOVE: {
        _dragging = false;
        const bool before = _hovered;
        setHover(isUnder(ea, *camera, offset));
        if (_hovered != before)
            aa.requestRedraw();
        return false;
    }
    case GUIEventAdapter::KEYDOWN:
        if (!_dragging || ea.getKey() != GUIEventAdapter::KEY_Escape)
            return false;
        _dragging = false;
        setPosition(_positionAtPush);
        aa.requestRedraw();
        return true;
    default:
        return false;
    }
}

void Dragger::dragTo(const GUIEventAdapter& ea, osgGA::GUIActionAdapter& aa)
{
    GeoPoint place = getPosition();
    if (_defaultMode == DRAGMODE_VERTICAL ? heightUnder(ea, *cameraOf(aa), place)
                                          : groundUnder(ea, aa, place))
        setPosition(place);
}

bool Dragger::groundUnder(const GUIEventAdapter& ea, osgGA::GUIActionAdapter& aa, GeoPoint& place) const
{
    const osg::ref_ptr<const MapNode> mapNode = getMapNode();
    if (!mapNode || !mapNode->getTerrain())
        return false;
    const double up = ea.getMouseYOrientation() == GUIEventAdapter::Y_INCREASING_UPWARDS ? 1.0 : -1.0;
    const double x = ea.getX() - 0.5 * _grabOffset.x() * (ea.getXmax() - ea.getXmin());
    const double y = ea.getY() - 0.5 * _grabOffset.y() * (ea.getYmax() - ea.getYmin()) * up;
    osg::Vec3d world;
    GeoPoint ground;
    if (!mapNode->getTerrain()->getWorldCoordsUnderMouse(aa.asView(), static_cast<float>(x),
                                                         static_cast<float>(y), world) ||
        !ground.fromWorld(place.getSRS(), world))
        return false;
    place.set(place.getSRS(), ground.x(), ground.y(), place.isRelative() ? place.z() : ground.z(),
              place.altitudeMode());
    return true;
}

// The height of the point of the vertical through the place that is nearest to the line of sight.
bool Dragger::heightUnder(const GUIEventAdapter& ea, const osg::Camera& camera, GeoPoint& place) const
{
    const osg::Vec2d target = mouseOf(ea) - _grabOffset;
    const osg::Viewport& viewport = *camera.getViewport();
    TerrainRay ray;
    osg::Vec3d up;
    if (!pickRay(camera, viewport.x() + 0.5 * (target.x() + 1.0) * viewport.width(),
                 viewport.y() + 0.5 * (target.y() + 1.0) * viewport.height(), ray) ||
        !place.createWorldUpVector(up))
        return false;
    const osg::Vec3d toEye = ray.origin - getGeoTransform()->getMatrix().getTrans();
    const double cosine = up * ray.direction;
    const double sine2 = 1.0 - cosine * cosine;
    if (sine2 < 1e-6)
        return false; // seen from right above
    const double rise = (toEye * up - (toEye * ray.direction) * cosine) / sine2;
    place.z() = std::max(_verticalMinimum, place.z() + rise);
    return true;
}

SphereDragger::SphereDragger(MapNode* mapNode) : Dragger(mapNode)
{
    setSize(_size);
}

void SphereDragger::setColor(const osg::Vec4f& color)
{
    _color = color;
    updateColor();
}

void SphereDragger::setPickColor(const osg::Vec4f& pickColor)
{
    _pickColor = pickColor;
    updateColor();
}

void SphereDragger::setSize(float size)
{
    _size = size;
    if (_shape)
        getPositionAttitudeTransform()->removeChild(_shape);
    osg::ref_ptr<osg::Geode> geode = new osg::Geode;
    geode->addDrawable(new osg::ShapeDrawable(new osg::Sphere(osg::Vec3(), size)));
    geode->setStateSet(onTopOfGround());
    _shape = geode;
    getPositionAttitudeTransform()->addChild(_shape);
    updateColor();
}

void SphereDragger::updateColor()
{
    auto* shape = static_cast<osg::ShapeDrawable*>(_shape->asGeode()->getDrawable(0));
    shape->setColor(_dragging || _hovered ? _pickColor : _color);
}
} // namespace osgEarth::Annotation

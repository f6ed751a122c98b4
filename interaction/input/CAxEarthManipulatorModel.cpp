// Navigation around models and in projected mode.
#include "interaction/input/CAxEarthManipulator.h"
#include "interaction/models/AxModelPick.h"
#include "interaction/models/AxModelNavigation.h"
#include "scene/AxScene.h"
#include "scene/AxToolInHand.h"
#include "scene/AxViewerParts.h"

#include <osgEarth/SpatialReference>
#include <osgViewer/Viewer>

#include <algorithm>
#include <cmath>

using osgEarth::Distance;
using osgEarth::GeoPoint;
using osgEarth::Units;
using osgEarth::Viewpoint;
using osgGA::GUIEventAdapter;

namespace {
constexpr double aboveModelMetres = 10.0;
constexpr double nearestRangeMetres = 10.0;
constexpr double flightRangeShare = 0.4;
constexpr double modelFlightSeconds = 1.0;
constexpr double zoomStep = 0.1;

double ScrollFactor(GUIEventAdapter::ScrollingMotion motion)
{
    switch (motion) {
    case GUIEventAdapter::SCROLL_UP:
        return -1.0;
    case GUIEventAdapter::SCROLL_DOWN:
        return 1.0;
    default:
        return 0.0;
    }
}
} // namespace

bool CAxEarthManipulator::handleModelActionDoubleClick(const osg::Vec3d& worldCoordPos)
{
    GeoPoint eye;
    GeoPoint target;
    const osg::Matrixd cameraToWorld =
        osg::Matrixd::inverse(viewer->Scene().View()->getCamera()->getViewMatrix());
    if (!eye.fromWorld(viewer->Scene().MapSRS(), cameraToWorld.getTrans()) ||
        !target.fromWorld(viewer->Scene().MapSRS(), worldCoordPos) ||
        eye.z() - target.z() <= aboveModelMetres)
        return false;
    Viewpoint there = getViewpoint();
    there.focalPoint() = target;
    there.range() = Distance(std::max(nearestRangeMetres, flightRangeShare * getDistance()), Units::METERS);
    setViewpoint(there, modelFlightSeconds);
    return true;
}

bool CAxEarthManipulator::handleModelActionScroll(const GUIEventAdapter& ea, osgGA::GUIActionAdapter& aa)
{
    const double factor = ScrollFactor(ea.getScrollingMotion());
    if (operateMode != OperateGlobe) {
        zoom(0.0, -factor * zoomStep);
        aa.requestRedraw();
        return true;
    }
    if (projMode != ProjNone)
        return false;
    double lon = 0.0;
    double lat = 0.0;
    double alt = 0.0;
    double height = 0.0;
    osg::Vec3d hit;
    QString currNode;
    QString parentNode;
    if (!IntersectModelLayer(ea, lon, lat, alt, height, hit, currNode, parentNode))
        return false;
    const double distance = (hit - _center).length();
    // A centre on the hit itself has no way to go.
    if (distance > 0.0) {
        const double share = AxModelNavigation::ScrollStep(factor, distance) / distance;
        const double range = getDistance() * (1.0 - share);
        clearViewpoint();
        // Eye and centre go the same share of their ways. Heading and pitch are kept, not worked out of the
        // two places: straight down over one centre is not quite so over the next, towards anywhere.
        setCenter(_center + (hit - _center) * share);
        setDistance(range);
    }
    aa.requestRedraw();
    return true;
}

bool CAxEarthManipulator::dragAroundModel(const GUIEventAdapter& ea, osgGA::GUIActionAdapter& aa)
{
    const bool isLeft = (ea.getButtonMask() & GUIEventAdapter::LEFT_MOUSE_BUTTON) != 0;
    const bool isRight = (ea.getButtonMask() & GUIEventAdapter::RIGHT_MOUSE_BUTTON) != 0;
    if (isLeft && viewer->Tools().IsHandleHeld())
        return true;
    if (!isLeft && !(isRight && projMode == ProjNone))
        return false;
    addMouseEvent(ea);
    if (!_ga_t0 || !_ga_t1)
        return false;
    const double sensitivity = getSettings()->getMouseSensitivity();
    const double dx = static_cast<double>(_ga_t0->getXnormalized() - _ga_t1->getXnormalized()) * sensitivity;
    const double dy = static_cast<double>(_ga_t0->getYnormalized() - _ga_t1->getYnormalized()) * sensitivity;
    if (dx == 0.0 && dy == 0.0)
        return false;
    if (isLeft)
        pan(dx, dy);
    else
        rotate(dx, dy);
    aa.requestRedraw();
    return true;
}

void CAxEarthManipulator::pan(double dx, double dy)
{
    if (projMode != ProjPlaneView && operateMode != OperateModel) {
        EarthManipulator::pan(dx, dy);
        return;
    }
    if (!std::isfinite(dx) || !std::isfinite(dy) || !established())
        return;
    clearViewpoint();
    setCenter(_center + AxModelNavigation::PanStep(_rotation * _centerRotation, getDistance(), dx, dy));
}

void CAxEarthManipulator::rotate(double dx, double dy)
{
    if (operateMode == OperateGlobe) {
        EarthManipulator::rotate(dx, dy);
        return;
    }
    if (!std::isfinite(dx) || !std::isfinite(dy) || !established())
        return;
    clearViewpoint();
    setRotation(AxModelNavigation::FreeRotation(_rotation, dx, dy));
}

void CAxEarthManipulator::zoom(double dx, double dy)
{
    if (projMode != ProjPlaneView && operateMode == OperateGlobe) {
        EarthManipulator::zoom(dx, dy);
        return;
    }
    if (!std::isfinite(dy))
        return;
    clearViewpoint();
    setDistance((dy + 1.0) * getDistance());
}

void CAxEarthManipulator::handleMovementAction(const ActionType& type, double dx, double dy, osg::View* view)
{
    if (projMode == ProjPlaneView && type == ACTION_ROTATE)
        return;
    // Nothing is grabbed where the ground is not what the camera moves around.
    const bool slides = projMode == ProjPlaneView || operateMode == OperateModel;
    EarthManipulator::handleMovementAction(slides && type == ACTION_EARTH_DRAG ? ACTION_PAN : type, dx, dy,
                                           view);
}

// Where the pointer is, and what the read-outs are told of the place below it.
#include "interaction/input/AxMouseRules.h"
#include "interaction/input/CAxEarthManipulator.h"
#include "scene/AxScene.h"
#include "scene/AxViewerParts.h"
#include "scene/base/AxExactPlace.h"
#include "scene/shape/AxDrawnGround.h"
#include "scene/shape/AxViewRay.h"

#include <osgEarth/MapNode>
#include <osgEarth/SpatialReference>
#include <osgViewer/Viewer>

#include <cmath>

using osgEarth::GeoPoint;
using osgEarth::Viewpoint;
using osgGA::GUIEventAdapter;

namespace {
// A quarter of a second: tiles may arrive below a resting pointer.
constexpr int ticksBetweenLooks = 10;
// Heights are loaded about as fine as pixels are, and ground changes by as much as it is wide.
constexpr double coarsePixelMetres = 10.0;

bool IsSame(double left, double right)
{
    return left == right || (std::isnan(left) && std::isnan(right));
}
} // namespace

bool CAxEarthManipulator::notePointer(const GUIEventAdapter& ea)
{
    const bool saysPlace = AxMouseRules::SaysPlace(ea.getEventType());
    if (!saysPlace && ea.getEventType() != GUIEventAdapter::RELEASE)
        return true;
    if (!std::isfinite(ea.getX()) || !std::isfinite(ea.getY()) || !std::isfinite(ea.getXnormalized()) ||
        !std::isfinite(ea.getYnormalized()))
        return false;
    if (ea.getEventType() == GUIEventAdapter::SCROLL &&
        (!std::isfinite(ea.getScrollingDeltaX()) || !std::isfinite(ea.getScrollingDeltaY())))
        return false;
    if (saysPlace)
        pointer = osg::Vec2d(ea.getXnormalized(), ea.getYnormalized());
    return true;
}

void CAxEarthManipulator::ForgetPointer()
{
    pointer.reset();
}

void CAxEarthManipulator::TellPointed()
{
    if (!viewer || !established())
        return;
    const osg::Camera& camera = *viewer->Scene().View()->getCamera();
    if (pointer == toldPointer && camera.getViewMatrix() == toldView && ++ticksSinceTold < ticksBetweenLooks)
        return;
    const auto ray = pointer ? AxViewRay::Through(camera, pointer->x(), pointer->y()) : std::nullopt;
    tellPointed(ray ? pickAlong(*ray) : Pick());
}

void CAxEarthManipulator::tellPointed(const Pick& pick)
{
    const osg::Camera& camera = *viewer->Scene().View()->getCamera();
    toldPointer = pointer;
    toldView = camera.getViewMatrix();
    ticksSinceTold = 0;

    Pointed now;
    now.range = getDistance();
    GeoPoint place;
    if (const auto sight = AxViewRay::Through(camera, 0.0, 0.0);
        sight && pick.world != osg::Vec3d() &&
        place.fromWorld(viewer->Scene().MapSRS()->getGeographicSRS(), pick.world)) {
        const osg::Vec3d onModel = AxExactPlace(pick.LngLatPos(), pick.world);
        now.longitude = pick.modelHit ? onModel.x() : place.x();
        now.latitude = pick.modelHit ? onModel.y() : place.y();
        if (pick.modelHit)
            now.altitude = static_cast<double>(pick.Altitude());
        else if (const auto height = AxLoadedHeight(*viewer->Scene().MapNode(), now.longitude, now.latitude))
            now.altitude = *height;
        now.coarse =
            !pick.modelHit && (pick.world - sight->eye).length() * sight->pixelSize > coarsePixelMetres;
    }
    if (IsSame(now.longitude, told.longitude) && IsSame(now.latitude, told.latitude) &&
        IsSame(now.altitude, told.altitude) && now.range == told.range && now.coarse == told.coarse)
        return;
    told = now;
    emit signalPointed(now.longitude, now.latitude, now.altitude, now.range, now.coarse);
}

bool CAxEarthManipulator::handlePointAction(const Action& action, float mx, float my, osg::View* view)
{
    if (action._type != ACTION_GOTO || !pointer || !viewer || !viewer->Scene().MapNode())
        return EarthManipulator::handlePointAction(action, mx, my, view);
    osgEarth::MapNode& map = *viewer->Scene().MapNode();
    const auto ray = AxViewRay::Through(*viewer->Scene().View()->getCamera(), pointer->x(), pointer->y());
    const auto ground = ray ? AxDrawnGround(map, *ray) : std::nullopt;
    GeoPoint focus;
    if (!ground || !focus.fromWorld(viewer->Scene().MapSRS()->getGeographicSRS(), *ground))
        return false;
    if (const auto height = AxLoadedHeight(map, focus.x(), focus.y()))
        focus.z() = *height;
    constexpr double usualSeconds = 1.0;
    Viewpoint there = getViewpoint();
    there.focalPoint() = focus;
    there.setRange(getDistance() * action.getDoubleOption(OPTION_GOTO_RANGE_FACTOR, 1.0));
    setViewpoint(there, action.getDoubleOption(OPTION_DURATION, usualSeconds));
    return true;
}

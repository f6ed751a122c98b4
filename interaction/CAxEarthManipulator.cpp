#include "interaction/CAxEarthManipulator.h"
#include "viewer/CAxEarthViewer.h"

#include <osgEarth/Map>
#include <osgEarth/MapNode>
#include <osgEarth/ModelLayer>
#include <osgEarth/Terrain>
#include <osgViewer/View>

using osgEarth::Angle;
using osgEarth::Units;
using osgEarth::Viewpoint;
using osgEarth::Util::EarthManipulator;

namespace {
// From further away only capitals are named, from nearer the cities.
constexpr double capitalRangeMetres = 5000000.0;
constexpr double zoomSlotFactor = -0.0005;
constexpr double travelSlotFactorX = -0.02;
constexpr double travelSlotFactorY = -0.01;

void ShowLayer(const osgEarth::Map& map, const char* name, bool visible)
{
    osgEarth::ModelLayer* layer = map.getModelLayerByName(name);
    if (layer && layer->getVisible() != visible)
        layer->setVisible(visible);
}
} // namespace

CAxEarthManipulator::CAxEarthManipulator(QObject* parent)
    : QObject(parent), viewer(dynamic_cast<CAxEarthViewer*>(parent))
{
    // The viewer reports a wheel turned forward as SCROLL_DOWN.
    Settings* settings = getSettings();
    settings->bindScroll(ACTION_ZOOM_IN, osgGA::GUIEventAdapter::SCROLL_DOWN);
    settings->bindScroll(ACTION_ZOOM_OUT, osgGA::GUIEventAdapter::SCROLL_UP);
}

bool CAxEarthManipulator::handle(const osgGA::GUIEventAdapter& ea, osgGA::GUIActionAdapter& aa)
{
    auto* view = dynamic_cast<osgViewer::View*>(&aa);
    if (!view || ea.getHandled())
        return false;
    const Viewpoint viewpoint = getViewpoint();
    if (viewpoint.isValid()) {
        emit signalHeading(-viewpoint.getHeading());
        VisibleShape(viewpoint.getRange());
        ShowCoordinates(ea, *view, viewpoint.getRange());
    }
    return EarthManipulator::handle(ea, aa);
}

void CAxEarthManipulator::ShowCoordinates(const osgGA::GUIEventAdapter& ea, osgViewer::View& view,
                                          double range)
{
    osgEarth::MapNode* mapNode = viewer ? viewer->getMapNode() : nullptr;
    if (!mapNode)
        return;
    osg::Vec3d world;
    osg::Vec3f lngLat;
    if (mapNode->getTerrain()->getWorldCoordsUnderMouse(&view, ea.getX(), ea.getY(), world)) {
        osgEarth::GeoPoint point;
        if (point.fromWorld(viewer->getSRS(), world))
            lngLat = osg::Vec3f(point.vec3d());
    }
    const auto text = [](const QString& label, double value, int decimals, const QString& unit) {
        return label + QString::number(value, 'f', decimals) + unit;
    };
    viewer->SetCoordinate(text(tr("longitude:"), static_cast<double>(lngLat.x()), 6, tr("degree")),
                          text(tr("latitude:"), static_cast<double>(lngLat.y()), 6, tr("degree")),
                          text(tr("altitude:"), static_cast<double>(lngLat.z()), 2, tr("meter")),
                          text(tr("camera range:"), range, 2, tr("meter")));
}

void CAxEarthManipulator::VisibleShape(double range)
{
    osgEarth::MapNode* mapNode = viewer ? viewer->getMapNode() : nullptr;
    if (!mapNode)
        return;
    const osgEarth::Map& map = *mapNode->getMap();
    ShowLayer(map, "Capital", range > capitalRangeMetres);
    ShowLayer(map, "City", range <= capitalRangeMetres);
    // Kept in the maps, but too many to be shown.
    ShowLayer(map, "County", false);
    ShowLayer(map, "Town", false);
}

void CAxEarthManipulator::slotZoom(double value)
{
    const double step = value * zoomSlotFactor * getSettings()->getMouseSensitivity();
    zoom(step, step);
}

void CAxEarthManipulator::slotTraval(osg::Vec2f direction)
{
    const double sensitivity = getSettings()->getMouseSensitivity();
    pan(static_cast<double>(direction.x()) * travelSlotFactorX * sensitivity,
        static_cast<double>(direction.y()) * travelSlotFactorY * sensitivity);
}

void CAxEarthManipulator::slotHeading(double heading)
{
    Viewpoint viewpoint = getViewpoint();
    viewpoint.heading() = Angle(heading, Units::DEGREES);
    setViewpoint(viewpoint);
}

void CAxEarthManipulator::slotResetPitch()
{
    Viewpoint viewpoint = getViewpoint();
    viewpoint.heading() = Angle(0.0, Units::DEGREES);
    viewpoint.pitch() = Angle(-90.0, Units::DEGREES);
    setViewpoint(viewpoint);
}

void CAxEarthManipulator::slotResetMouse()
{
    flushMouseEventStack();
    if (viewer && viewer->getOSGViewer())
        resetMouse(*viewer->getOSGViewer());
}

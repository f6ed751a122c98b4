#include "NavigatedGlobe.h"

#include <algorithm>
#include <cmath>
#include <gtest/gtest.h>
#include <osgEarth/ElevationLayer>
#include <osgEarth/GeoData>
#include <osgEarth/Map>
#include <osgEarth/MapNode>
#include <osgEarth/SpatialReference>
#include <osgEarth/Terrain>
#include <osgEarthDrivers/gdal/GDALOptions>
#include <terrain/QuadtreeTerrain.h>

using namespace osgEarth;

NavigatedGlobe::NavigatedGlobe(Map* map)
    : WindowEvents(OffscreenGlobe::kWidth, OffscreenGlobe::kHeight), globe(map),
      manipulator(new Util::EarthManipulator)
{
    manipulator->setNode(&globe.mapNode());
}

void NavigatedGlobe::takeView()
{
    globe.viewer().getCamera()->setViewMatrix(manipulator->getInverseMatrix());
}

void NavigatedGlobe::goTo(double longitude, double latitude, double height, double heading, double pitch,
                          double range, double seconds)
{
    manipulator->setViewpoint(Viewpoint("test", longitude, latitude, height, heading, pitch, range), seconds);
}

void NavigatedGlobe::showAt(double longitude, double latitude, double height, double heading, double pitch,
                            double range)
{
    // Finer ground may move the camera, which may want other ground.
    for (int i = 0; i < 3; ++i) {
        goTo(longitude, latitude, height, heading, pitch, range);
        takeView();
        ASSERT_TRUE(globe.drawUntilComplete());
    }
    tick();
    takeView();
    globe.frame();
}

bool NavigatedGlobe::send(Adapter* event)
{
    return manipulator->handle(*event, globe.viewer());
}

void NavigatedGlobe::tick(double seconds)
{
    time += seconds;
    send(event(Adapter::FRAME));
}

void NavigatedGlobe::draw(double seconds)
{
    tick(seconds);
    takeView();
    globe.frame();
}

std::optional<osg::Vec3d> NavigatedGlobe::surfaceAt(double x, double y)
{
    takeView();
    osg::Vec3d world;
    if (!globe.mapNode().getTerrain()->getWorldCoordsUnderMouse(&globe.viewer(), static_cast<float>(x),
                                                                static_cast<float>(y), world))
        return std::nullopt;
    return world;
}

osg::Vec3d NavigatedGlobe::pixelOf(const osg::Vec3d& world) const
{
    const osg::Camera& camera = *globe.viewer().getCamera();
    return world * manipulator->getInverseMatrix() * camera.getProjectionMatrix() *
           camera.getViewport()->computeWindowMatrix();
}

GeoPoint NavigatedGlobe::eyePlace() const
{
    GeoPoint place;
    place.fromWorld(mapNode().getMapSRS()->getGeographicSRS(), eye());
    return place;
}

double NavigatedGlobe::eyeAboveKnownGround() const
{
    const GeoPoint place = eyePlace();
    double ground = 0.0;
    mapNode().getTerrain()->getHeight(place.getSRS(), place.x(), place.y(), nullptr, &ground);
    return place.z() - ground;
}

double NavigatedGlobe::eyeAboveGround() const
{
    const GeoPoint place = eyePlace();
    const GeoPoint above(place.getSRS(), place.x(), place.y(), 30e3);
    osg::Vec3d from;
    osg::Vec3d up;
    osg::Vec3d drawn;
    above.toWorld(from);
    above.createWorldUpVector(up);
    const double known = eyeAboveKnownGround();
    if (!QuadtreeTerrain::of(mapNode())->intersectRay(from, -up, drawn))
        return known;
    GeoPoint hit;
    hit.fromWorld(place.getSRS(), drawn);
    return std::min(known, place.z() - hit.z());
}

bool NavigatedGlobe::isSound() const
{
    const Viewpoint now = manipulator->getViewpoint();
    const osg::Matrixd matrix = manipulator->getMatrix();
    return now.isValid() && matrix.valid() && !matrix.isNaN() && std::isfinite(now.getHeading()) &&
           now.getPitch() >= -90.0 - 1e-6 && now.getPitch() <= -10.0 + 1e-6 && now.getRange() > 0.0 &&
           now.getRange() <= 1e9 && eye().length() < 2e9;
}

osg::ref_ptr<Map> mapOfMountains()
{
    osg::ref_ptr<Map> map = new Map;
    for (const char* file : {"world_dem_15km.tif", "trinidad_90m_metres.tif"}) {
        Drivers::GDALOptions options;
        options.url() = shippedMapFile(file);
        map->addElevationLayer(new ElevationLayer(file, options));
    }
    return map;
}

void Footage::shoot(const NavigatedGlobe& nav)
{
    const osg::Matrixd now = nav.manipulator->getMatrix();
    if (_last) {
        const double turn =
            2.0 * std::acos(std::min(1.0, std::abs((now.getRotate() * _last->getRotate().inverse()).w())));
        _steps.push_back((now.getTrans() - _last->getTrans()).length() / nav.manipulator->getDistance() +
                         turn);
    }
    _last = now;
}

double Footage::fastest() const
{
    return *std::max_element(_steps.begin(), _steps.end());
}

double Footage::jerkiest() const
{
    double most = 0.0;
    for (size_t i = 1; i < _steps.size(); ++i)
        most = std::max(most, std::abs(_steps[i] - _steps[i - 1]));
    return most;
}

#pragma once
#include "scene/shape/AxScenePick.h"

#include <osg/Camera>
#include <osg/Geode>
#include <osg/Geometry>
#include <osg/MatrixTransform>
#include <osg/Viewport>
#include <osgEarth/SpatialReference>

#include <string>

/// A camera that looks straight down on longitude -105, latitude 37, north up,
/// and shapes around the point that it looks at. Offsets are metres east,
/// north and up of that point on the ellipsoid.
struct SceneOnEarth
{
    static constexpr double longitude = -105.0;
    static constexpr double latitude = 37.0;

    explicit SceneOnEarth(double range = 1000.0)
    {
        srs = osgEarth::SpatialReference::get("wgs84");
        srs->getEllipsoid()->computeLocalToWorldTransformFromLatLongHeight(
            osg::DegreesToRadians(latitude), osg::DegreesToRadians(longitude), 0.0, toWorld);
        camera = new osg::Camera;
        camera->setViewport(new osg::Viewport(0, 0, 800, 600));
        camera->setProjectionMatrixAsPerspective(30.0, 800.0 / 600.0, 1.0, 10000.0);
        camera->setViewMatrix(osg::Matrixd::inverse(osg::Matrixd::translate(0.0, 0.0, range) * toWorld));
        root = new osg::Group;
    }

    osg::Vec3d World(double east, double north, double up) const
    {
        return osg::Vec3d(east, north, up) * toWorld;
    }

    /// The line of sight through the window position of a point.
    AxViewRay RayTo(double east, double north, double up = 0.0) const
    {
        const osg::Vec3d ndc =
            World(east, north, up) * camera->getViewMatrix() * camera->getProjectionMatrix();
        return *AxViewRay::Through(*camera, ndc.x(), ndc.y());
    }

    /// A level square around a point, in a frame of its own.
    osg::ref_ptr<osg::MatrixTransform> AddSquare(osg::Group& parent, const std::string& name, double east,
                                                 double north, double up, double halfSide) const
    {
        const auto half = static_cast<float>(halfSide);
        osg::ref_ptr<osg::Geometry> square =
            Shape(GL_TRIANGLE_FAN,
                  {{-half, -half, 0.0f}, {half, -half, 0.0f}, {half, half, 0.0f}, {-half, half, 0.0f}});
        square->setName(name);
        return Add(parent, name, square, east, north, up);
    }

    osg::ref_ptr<osg::MatrixTransform> Add(osg::Group& parent, const std::string& name,
                                           osg::Geometry* geometry, double east, double north,
                                           double up) const
    {
        osg::ref_ptr<osg::Geode> geode = new osg::Geode;
        geode->setName(name + " geode");
        geode->addDrawable(geometry);
        osg::ref_ptr<osg::MatrixTransform> place =
            new osg::MatrixTransform(osg::Matrixd::translate(east, north, up) * toWorld);
        place->setName(name + " place");
        place->addChild(geode);
        parent.addChild(place);
        return place;
    }

    static osg::ref_ptr<osg::Geometry> Shape(GLenum mode, const std::vector<osg::Vec3>& points)
    {
        osg::ref_ptr<osg::Geometry> geometry = new osg::Geometry;
        geometry->setVertexArray(new osg::Vec3Array(static_cast<unsigned>(points.size()), points.data()));
        geometry->addPrimitiveSet(new osg::DrawArrays(mode, 0, static_cast<int>(points.size())));
        return geometry;
    }

    osg::ref_ptr<const osgEarth::SpatialReference> srs;
    osg::Matrixd toWorld;
    osg::ref_ptr<osg::Camera> camera;
    osg::ref_ptr<osg::Group> root;
};

#pragma once
#include <osg/Vec3d>

#include <QImage>
#include <QList>

namespace osg {
class Group;
}
class AxCoordinateSystem;
namespace osgEarth {
class MapNode;
class SpatialReference;
} // namespace osgEarth
namespace osgViewer {
class Viewer;
}

/// The scene to draw into. Where null is possible, it is so until start-up has read the map. GUI thread.
class AxScene
{
public:
    virtual ~AxScene() = default;

    virtual osgViewer::Viewer* View() const = 0; ///< never null
    virtual osgEarth::MapNode* MapNode() const = 0;
    virtual const osgEarth::SpatialReference* MapSRS() const = 0;
    virtual osg::Group* DrawGroup() const = 0;
    /// Below the draw group: parent of the map objects' feature nodes.
    virtual osg::Group* ObjectGroup() const = 0;

    /// Sets the altitude of each point (degrees, degrees) to that of the ground in memory, metres above the
    /// ellipsoid; where nothing is known it stays.
    virtual void GetElevations(QList<osg::Vec3d>& points) const = 0;
    /// As CAxEarthViewer::GetHAE().
    virtual double GetHAE(double longitude, double latitude, double altitude) const = 0;
    /// In which coordinates places are shown; may be another one with every event.
    virtual const AxCoordinateSystem& CoordinateSystem() const = 0;
    /// What is shown, without the tools bar and the read-out, which belong to the window and not to the map.
    virtual QImage Picture() = 0;
};

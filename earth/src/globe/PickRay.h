#pragma once
#include <osg/Camera>

namespace osgEarth {
/// A ray in geocentric metres; the direction has length 1.
struct TerrainRay
{
    osg::Vec3d origin;
    osg::Vec3d direction;
};

/// The ray from a camera's eye through a window position, pixels from the
/// viewport's window origin, y upwards. Only the field of view is taken from
/// the projection: a near/far ratio of 1e-10 leaves no precision in an
/// unprojected depth. False without a viewport or for a singular projection.
bool pickRay(const osg::Camera& camera, double windowX, double windowY, TerrainRay& ray);
} // namespace osgEarth

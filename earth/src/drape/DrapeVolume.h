#pragma once
#include "drape/DrapeShape.h"
#include "globe/Horizon.h"
#include <osg/BoundingSphere>

namespace osgEarth {
/// Where a shape lies on the ground.
struct DrapeExtent
{
    osg::Vec3d origin;
    osg::BoundingSphered bound; ///< of the shape on the ground, geocentric
    OccludeePoint occludee;
    std::vector<osg::Vec3d> samples; ///< geocentric points where the ground's height matters
    double sagitta = 0.0;            ///< metres that the flat faces lie below the round earth at most
};

/// A closed volume that stands on end through the ground under a shape. How
/// far it reaches up and down is left to two uniforms of the shader, so that
/// it need not be built anew when the terrain gets finer.
///
/// Vertex attributes: position = the point on the ellipsoid; normal = the
/// ellipsoid's upward direction; texture coordinate 0 = direction on the
/// ground (xyz) and how far to go along it in pixels (w), which gives lines
/// their width; texture coordinate 1 = 1 for the upper rim, 0 for the lower.
struct DrapeVolume : DrapeExtent
{
    osg::ref_ptr<osg::Geometry> geometry; ///< positions from origin, faces turned outward
};

/// Edges longer than this are cut, so that flat faces follow the round earth.
constexpr double kLongestDrapeEdge = 500000.0;

/// Null geometry when the shape has neither area nor length.
DrapeVolume volumeOf(const DrapeShape& shape);

/// The shape with its points on the ellipsoid, one in each place, and its edges
/// short enough. The bound is not valid when no point of it is used.
DrapeShape layOnGround(const DrapeShape& shape, DrapeExtent& extent);

/// Upwards at a place near the ground, of length 1.
osg::Vec3d ellipsoidUp(const osg::Vec3d& geocentric);

/// Splits edges beyond kLongestDrapeEdge; points stay on the ellipsoid they are given on.
void subdivideForGlobe(DrapeShape& shape);
} // namespace osgEarth

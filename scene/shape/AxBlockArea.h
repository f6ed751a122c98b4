#pragma once
#include "scene/base/AxEarthViewerExport.h"

#include <AxAlgorthm/CAxPoint2D.h>

#include <osg/Vec3d>

#include <vector>

namespace osgEarth {
class SpatialReference;
}

/// Where the vertices of a ring lie in the UTM plane, kept from one area to the next: of a ring that is
/// dragged most vertices stay where they are. A plain value.
struct AxKeptPlane
{
    std::vector<CAxPoint2D> lngLat; ///< degrees
    std::vector<CAxPoint2D> plane;  ///< metres, in the zone of the first one
};

/// Area inside a ring of vertices (longitude and latitude in degrees, the first
/// not repeated), km², the same whichever way round it runs; 0 for fewer than
/// three vertices.
///
/// It is summed over the triangles of the fan from the first vertex: half the
/// product of the two sides at that vertex and the sine of the angle between
/// them in the UTM plane. Against the geodesic area that leaves an error of
/// - up to 1.4 %, because sides are measured on a sphere of the equator's radius,
///   which makes each up to 0.7 % too long,
/// - up to 0.0007 of the product of the sides for each triangle that is nearly
///   flat, because the cosine of the angle is cut to six decimals,
/// - and for large rings what a plane triangle lacks of a curved one, some 0.1 %
///   at 500 km.
/// A ring that no UTM zone takes has the geodesic area itself. What is kept makes no difference to the area.
AXEARTHVIEWER_EXPORT double AxBlockArea(const std::vector<osg::Vec3d>& ring,
                                        const osgEarth::SpatialReference& srs, AxKeptPlane* kept = nullptr);

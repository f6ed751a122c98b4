#pragma once
#include "terrain/HeightRaster.h"

#include <osg/Vec2f>
#include <osg/Vec3d>
#include <osg/Vec3f>

#include <cstdint>
#include <vector>

namespace osgEarth {
/// The triangles of one tile. Positions are geocentric metres relative to
/// `origin`, so that single precision suffices however large the globe is.
struct TileMesh
{
    osg::Vec3d origin;
    std::vector<osg::Vec3f> positions;
    std::vector<osg::Vec3f> normals;
    /// 0 to 1 across the tile from its south-west corner.
    std::vector<osg::Vec2f> unit;
    /// Three indices a triangle, anticlockwise from outside; the skirt's follow the surface's.
    std::vector<std::uint16_t> indices;
    /// How many of the indices belong to the surface.
    std::size_t surfaceIndexCount = 0;
    /// Largest distance, metres, between the mesh and its grid.
    double simplificationError = 0.0;
    /// What the next finer grid adds, metres, root mean square and at most.
    double hiddenDetail = 0.0;
    double mostHiddenDetail = 0.0;
    double minHeight = 0.0;
    double maxHeight = 0.0;
};

/// Geocentric position of a geographic one, degrees and metres, on the WGS84 ellipsoid.
osg::Vec3d geodeticToWorld(double longitude, double latitude, double height);

/// Triangulates a tile with right-angled triangles, halving them along their
/// longest edge only where a halving moves the surface by more than
/// `tolerance` metres, or a twelfth of that by the roundness of the globe,
/// which is what the horizon shows (the restricted bintree of ROAM terrain).
/// The raster holds twice the mesh grid's resolution: its size is 2 * 2^k + 1.
/// A skirt of `skirtDepth` metres hangs from the border and hides what adjacent
/// tiles' borders differ by.
TileMesh buildTileMesh(const TileBounds& bounds, const HeightRaster& raster, double tolerance,
                       double skirtDepth);

/// Largest distance, metres, between a tile's border and what a neighbour draws
/// there that is up to three levels coarser.
double borderRelief(const TileBounds& bounds, const HeightRaster& raster);
} // namespace osgEarth

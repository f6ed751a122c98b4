#pragma once
#include "globe/Horizon.h"

#include <osg/Matrixd>
#include <osg/Plane>
#include <osg/Vec3d>

#include <array>

namespace osgEarth {
struct TileBulk;
struct TileContent;

/// The camera of one cull traversal: its eye, its field of view, its pixel size.
struct TerrainView
{
    TerrainView() = default;
    /// Of a window `height` pixels high. `seaFloor`: the ground may lie as deep as that.
    TerrainView(const osg::Matrixd& worldToEye, const osg::Matrixd& projection, double height,
                bool seaFloor = false);

    osg::Vec3d eye;
    /// Degrees, degrees, metres; the owner fills it in.
    osg::Vec3d eyeGeodetic;
    Horizon horizon;
    bool seaFloor = false;
    /// Size of a pixel, in metres a metre of distance when perspective, else in metres.
    double pixelSize = 1.0;
    bool perspective = true;
    /// Left, right, bottom and top of the window, their fronts inside; all zero, everything is inside.
    std::array<osg::Plane, 4> sides{};

    /// Whether the globe hides a tile and all deeper ones in its place.
    bool hides(const TileBulk& bulk) const;
    /// How many times larger than allowed a tile's error is on screen; above 1 it wants its quarters.
    double excessOf(const TileContent& tile) const;
    /// Whether a tile can be seen or could be after a small turn or step of the camera.
    bool isNear(const TileBulk& bulk) const;
};
} // namespace osgEarth

#pragma once
#include "globe/Horizon.h"

#include <osg/Matrixd>
#include <osg/Plane>
#include <osg/Vec3d>

#include <array>

namespace osgEarth {
struct TileBulk;

/// The camera of one cull traversal: its eye, its field of view, its pixel size.
struct TerrainView
{
    TerrainView() = default;
    /// Of a window `height` pixels high.
    TerrainView(const osg::Matrixd& worldToEye, const osg::Matrixd& projection, double height);

    osg::Vec3d eye;
    /// Degrees, degrees, metres; the owner fills it in.
    osg::Vec3d eyeGeodetic;
    Horizon horizon;
    /// Size of a pixel, in metres a metre of distance when perspective, else in metres.
    double pixelSize = 1.0;
    bool perspective = true;
    /// Left, right, bottom and top of the window, their fronts inside; all zero, everything is inside.
    std::array<osg::Plane, 4> sides{};

    /// Whether a tile can be seen or could be after a small turn or step of the camera.
    bool isNear(const TileBulk& bulk) const;
};
} // namespace osgEarth

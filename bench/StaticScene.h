#pragma once

#include <osg/Group>
#include <osg/Matrixd>
#include <osg/ref_ptr>
#include <osgViewer/Viewer>

namespace bench {

/// What the reference scene is made of.
struct StaticScene
{
    osg::ref_ptr<osg::Group> root;
    unsigned triangles = 0;
    unsigned textures = 0;
};

/// Copies the terrain triangles that the viewer's last frame drew into a plain
/// scene: one transform and one geometry a tile, fixed-function state, and for
/// each picture a texture of the same size and filters filled with noise.
StaticScene copyDrawnTerrain(osgViewer::Viewer& viewer);

/// Median time of a frame, milliseconds, of a plain single-threaded viewer with
/// a window of its own that looks at the scene as `camera` does.
double staticFrameMilliseconds(const StaticScene& scene, const osg::Camera& camera, int frames);

} // namespace bench

#pragma once
#include "terrain/HeightRaster.h"

#include <osg/Image>
#include <osg/StateSet>
#include <osgEarth/TileKey>

namespace osgEarth {
class ReliefShade;
struct TileSources;

/// Texels along a side of a tile's picture.
constexpr int kTilePictureSize = 256;

/// The visible image layers blended bottom to top over a plain ground colour
/// and shaded by the relief, with mipmaps. The outermost texels' centres lie
/// on the tile's border, so that adjacent tiles agree along it.
osg::ref_ptr<osg::Image> composeTilePicture(const TileKey& key, const TileBounds& bounds,
                                            const TileSources& sources, const ReliefShade& shade);

/// State that draws with the picture; its texture gives the memory back after upload.
osg::ref_ptr<osg::StateSet> makeTileStateSet(osg::Image* picture);

/// Texture coordinate for a tile-relative position (0 to 1) with texel centres on the border.
inline float pictureCoordinate(float unit)
{
    constexpr float size = kTilePictureSize;
    return (unit * (size - 1.0f) + 0.5f) / size;
}
} // namespace osgEarth

#pragma once
#include "globe/Horizon.h"
#include "layers/TerrainHeights.h"
#include "terrain/HeightRaster.h"
#include "terrain/TileMesh.h"

#include <osg/BoundingSphere>
#include <osg/Image>
#include <osg/ref_ptr>
#include <osg/StateSet>
#include <osgEarth/Map>
#include <osgEarth/TileKey>

#include <functional>
#include <memory>
#include <optional>
#include <variant>
#include <vector>

namespace osgEarth {
/// A tile's picture and the rectangle it covers, which may be an ancestor's.
struct TileTexture
{
    osg::ref_ptr<osg::StateSet> state;
    TileBounds bounds;
    unsigned level = 0;
    /// Whether some layer has more to show below this level.
    bool refinable = true;
};

/// Where a tile and all deeper ones in its place can be, for tests of visibility.
struct TileBulk
{
    osg::BoundingSphered sphere;
    OccludeePoint occludee;
    /// The same where the map has the floor of the sea.
    OccludeePoint overSeaFloor;
    /// Metres, of the ground there.
    double lowest = 0.0;
    double highest = 0.0;
};

/// All that a tile is made of. Immutable once made, shared between threads.
struct TileContent
{
    TileKey key;
    TileBounds bounds;
    TileMesh mesh;
    TileBulk bulk;
    TileTexture texture;
    /// Whether the picture is an ancestor's although the tile's own would show more.
    bool borrowsPicture = false;
    /// Whether some layer has more to show than a picture of this tile's own level.
    bool pictureRefinable = true;
    /// What answers height queries: the sources' samples, or the mesh's grid on levels too coarse for these.
    std::variant<TerrainHeights, HeightRaster> heights;
    /// Of such a grid with gaps: 1 where some source has a value, else 0. Empty without gaps.
    std::optional<HeightRaster> known;
    /// Metres, of the ground inside the tile, as far as its samples and its sources' overviews tell. `bulk`
    /// also holds what lies beside it.
    double lowest = 0.0;
    double highest = 0.0;
    /// Metres by which deeper tiles differ from this one's mesh, typically (root mean square, estimated).
    double geometricError = 0.0;
    /// Whether deeper tiles would show anything that this one does not.
    bool refinable = true;
    /// Of the layers, as the tile was made; see TileScene.
    int revision = 0;

    /// Ground height at a place inside the tile, degrees to metres.
    double heightAt(double longitude, double latitude) const;
    /// Whether some source has a value at such a place.
    bool knowsHeightAt(double longitude, double latitude) const;
};

/// The layers of a map as they stand when a tile is made.
struct TileSources
{
    explicit TileSources(const Map& map);

    /// Bottom layer first.
    std::vector<osg::ref_ptr<ImageLayer>> images;
    /// Finest first.
    ElevationLayerVector elevations;
};

TileBounds boundsOf(const TileKey& key);

/// Deepest level at all: tiles of 0.15 m a texel.
constexpr unsigned kDeepestLevel = 19;

/// Answers whether a tile, finished but for its picture, is worth one of its own.
using PictureWish = std::function<bool(const TileContent&)>;

/// Makes a tile: reads heights, builds the mesh and composes the picture, or
/// takes over `parent`'s picture when that already shows all there is or the
/// tile's own is not wished for. Runs on any thread; may wait for files and the
/// network.
std::shared_ptr<const TileContent> makeTileContent(const TileKey& key, const TileSources& sources,
                                                   const std::optional<TileTexture>& parent,
                                                   const PictureWish& wishesPicture, int revision);
} // namespace osgEarth

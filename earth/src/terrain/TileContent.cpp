#include "terrain/TileContent.h"
#include "globe/Wgs84.h"

#include "terrain/SourceRelief.h"
#include "terrain/TilePicture.h"
#include "terrain/TileShade.h"

#include <osgEarth/ElevationLayer>
#include <osgEarth/ImageLayer>

#include <cmath>

namespace osgEarth {
namespace {
/// Cells along a side of the mesh grid.
constexpr int kMeshCells = 64;
/// Heights are sampled twice as densely as the mesh: for the shade, and to measure what detail the mesh
/// leaves out.
constexpr int kRasterSize = 2 * kMeshCells + 1;
/// A mesh may differ from its grid by this many texels of its level, at its worst point.
constexpr double kMeshToleranceTexels = 1.5;
/// Typical error of a mesh as a share of its largest; 0.26 to 0.45 on tiles of levels 8 to 14 in the Rocky
/// Mountains.
constexpr double kTypicalShare = 0.35;
/// The share that the largest deviation counts by. A step between two sources is the largest by far and yet a
/// line only, so that the typical deviation hides it.
constexpr double kOutstandingShare = 0.2;
/// Skirts cover what two adjacent borders may differ by: their tolerances,
constexpr double kSkirtTexels = 3.0;
/// and what the border has of detail, twice.
constexpr double kSkirtReliefs = 2.0;
/// Once grid cells are this much smaller than the source's, deeper tiles repeat the same surface.
constexpr double kCellsPerSourceCell = 8.0;

double texelMetres(const TileBounds& bounds)
{
    return bounds.height() * kMetresPerDegree / kTilePictureSize;
}

/// Tells in `known`, where there are gaps, which samples some source has.
HeightRaster sampleHeights(const TileBounds& bounds, const TerrainHeights& heights,
                           std::optional<HeightRaster>& known)
{
    HeightRaster raster(kRasterSize, 1);
    if (heights.empty())
        return raster;
    const SamplePlaces places(bounds, raster);
    known.emplace(kRasterSize, 1);
    if (heights.sample(places.longitudes, places.latitudes, &raster.at(-1, -1), &known->at(-1, -1)))
        known.reset();
    return raster;
}

HeightRaster meshGridOf(const HeightRaster& raster)
{
    HeightRaster grid(kMeshCells + 1, 0);
    for (int row = 0; row <= kMeshCells; ++row)
        for (int column = 0; column <= kMeshCells; ++column)
            grid.at(column, row) = raster.at(2 * column, 2 * row);
    return grid;
}

TileBounds dataBounds(const TerrainLayer& layer)
{
    const GeoExtent extent = layer.getDataExtent();
    if (!extent.isValid() || extent.crossesAntimeridian())
        return {-180.0, -90.0, 180.0, 90.0};
    return {extent.west(), extent.south(), extent.east(), extent.north()};
}

TileBounds widened(const TileBounds& bounds, double degrees)
{
    return {bounds.west - degrees, bounds.south - degrees, bounds.east + degrees, bounds.north + degrees};
}

bool covers(const TerrainLayer& layer, const TileBounds& bounds)
{
    const TileBounds data = dataBounds(layer);
    return data.west < bounds.east && data.east > bounds.west && data.south < bounds.north &&
           data.north > bounds.south;
}

ElevationLayerVector layersFor(const TileKey& key, const ElevationLayerVector& all)
{
    ElevationLayerVector inRange;
    std::copy_if(all.begin(), all.end(), std::back_inserter(inRange),
                 [&](const auto& layer) { return layer->isKeyInRange(key); });
    return inRange;
}

unsigned lastLevelOf(const TerrainLayer& layer)
{
    return layer.getTerrainLayerRuntimeOptions().maxLevel().value();
}

/// Those that the tile or a deeper one in its place shows.
ElevationLayerVector layersFrom(const TileKey& key, const ElevationLayerVector& all)
{
    ElevationLayerVector shown;
    std::copy_if(all.begin(), all.end(), std::back_inserter(shown),
                 [&](const auto& layer) { return lastLevelOf(*layer) >= key.getLOD(); });
    return shown;
}

/// Holds what deeper tiles show too, so that they are not culled with this one.
SourceRelief reliefFrom(const TileKey& key, const HeightRaster& raster, double meshCell,
                        const ElevationLayerVector& shown)
{
    // The overview of a layer is read when its levels are near: large files take time.
    constexpr unsigned kLevelsAhead = 3;
    constexpr double kLowest = -500.0, kHighest = 9000.0, kUnseen = 100.0; // metres, on dry land
    const TileBounds bounds = boundsOf(key);
    ElevationLayerVector near, far;
    for (const auto& layer : shown) {
        const unsigned first = layer->getTerrainLayerRuntimeOptions().minLevel().value();
        (first <= key.getLOD() + kLevelsAhead ? near : far).push_back(layer);
    }
    SourceRelief relief = reliefWithin(bounds, raster, 0.5 * meshCell, near);
    if (std::any_of(far.begin(), far.end(), [&](const auto& layer) { return covers(*layer, bounds); })) {
        relief.exact = false;
        relief.unseen = std::max(relief.unseen, kUnseen);
        relief.lowest = std::min(relief.lowest, kLowest);
        relief.highest = std::max(relief.highest, kHighest);
    }
    // Below the last level of a layer there may be no height at all.
    if (std::any_of(shown.begin(), shown.end(),
                    [](const auto& layer) { return lastLevelOf(*layer) < kDeepestLevel; })) {
        relief.lowest = std::min(relief.lowest, 0.0);
        relief.highest = std::max(relief.highest, 0.0);
    }
    return relief;
}

/// What a tile's heights are made of, one raster step beyond the tile too.
TerrainHeights readHeights(const TileKey& key, const TileBounds& bounds, const ElevationLayerVector& layers,
                           double meshCell)
{
    const TileBounds sampled = widened(bounds, 0.5 * meshCell);
    const GeoExtent extent(key.getExtent().getSRS(), sampled.west, std::max(-90.0, sampled.south),
                           sampled.east, std::min(90.0, sampled.north));
    return {layers, extent, 0.5 * meshCell};
}

/// Whether deeper tiles would resolve a source better that is felt in this one.
bool heightsAreRefinable(const TileBounds& bounds, const ElevationLayerVector& layers, double meshCell)
{
    const TileBounds felt = widened(bounds, TerrainHeights::reachOf(layers));
    return std::any_of(layers.begin(), layers.end(), [&](const auto& layer) {
        return covers(*layer, felt) && meshCell * kCellsPerSourceCell > layer->getDataResolution();
    });
}

/// Whether the layer's samples are closer together than `cell` degrees inside the tile.
bool isFinerThan(const TerrainLayer& layer, const TileBounds& bounds, double cell)
{
    const double resolution = layer.getDataResolution();
    return covers(layer, bounds) && (resolution <= 0.0 || resolution < cell * 0.999);
}

bool pictureIsRefinable(const TileSources& sources, const TileBounds& bounds)
{
    const double texel = bounds.height() / kTilePictureSize;
    // The slope from a source's edge down to coarser ground is shaded beside the source.
    const TileBounds around = widened(bounds, 0.5 * bounds.height());
    return std::any_of(sources.images.begin(), sources.images.end(),
                       [&](const auto& layer) { return isFinerThan(*layer, bounds, texel); }) ||
           std::any_of(sources.elevations.begin(), sources.elevations.end(),
                       [&](const auto& layer) { return isFinerThan(*layer, around, texel); });
}

/// Metres by which deeper tiles may leave the heights that are known: the
/// bounds must hold them, or they would be culled with their parent.
double headroom(const TileContent& content, const SourceRelief& relief)
{
    if (relief.exact)
        return 50.0;
    constexpr double kCoarse = 3000.0;
    constexpr unsigned kTrustedLevel = 8;
    const double fromDetail = 12.0 * content.geometricError + 50.0;
    return content.key.getLOD() < kTrustedLevel ? std::max(kCoarse, fromDetail) : fromDetail;
}

TileBulk bulkOf(const TileContent& content, const SourceRelief& relief)
{
    constexpr int kSteps = 8;
    const TileBounds& bounds = content.bounds;
    const osg::Vec3d& origin = content.mesh.origin;
    const double spare = headroom(content, relief);
    TileBulk bulk;
    bulk.lowest = relief.lowest;
    bulk.highest = relief.highest;
    std::vector<osg::Vec3f> tops;
    double radius = 0.0;
    for (int row = 0; row <= kSteps; ++row)
        for (int column = 0; column <= kSteps; ++column) {
            const double longitude = bounds.west + bounds.width() * column / kSteps;
            const double latitude = bounds.south + bounds.height() * row / kSteps;
            const osg::Vec3d top = geodeticToWorld(longitude, latitude, bulk.highest + spare) - origin;
            const osg::Vec3d foot = geodeticToWorld(longitude, latitude, bulk.lowest - spare) - origin;
            radius = std::max({radius, top.length(), foot.length()});
            tops.emplace_back(top);
        }
    for (const osg::Vec3f& position : content.mesh.positions)
        radius = std::max(radius, static_cast<double>(position.length()));
    // Between the places looked at the globe bulges a little.
    bulk.sphere = {origin, 1.01 * radius};
    bulk.occludee = occludeeOf(origin, tops, 0.0);
    bulk.overSeaFloor = occludeeOf(origin, tops, 0.0, kLowestSeaFloor);
    return bulk;
}
} // namespace

double TileContent::heightAt(double longitude, double latitude) const
{
    if (const auto* samples = std::get_if<TerrainHeights>(&heights))
        return samples->at(longitude, latitude);
    return std::get<HeightRaster>(heights).interpolate((longitude - bounds.west) / bounds.width(),
                                                       (latitude - bounds.south) / bounds.height());
}

bool TileContent::knowsHeightAt(double longitude, double latitude) const
{
    if (const auto* samples = std::get_if<TerrainHeights>(&heights))
        return samples->answerAt(longitude, latitude).known;
    constexpr double half = 0.5; // a place belongs to the sample that it is nearest to
    return !known || known->interpolate((longitude - bounds.west) / bounds.width(),
                                        (latitude - bounds.south) / bounds.height()) >= half;
}

TileSources::TileSources(const Map& map)
{
    ImageLayerVector imageLayers;
    map.getImageLayers(imageLayers);
    for (const auto& layer : imageLayers)
        if (layer->getEnabled() && layer->getVisible() && layer->isOpen())
            images.push_back(layer);
    elevations = TerrainHeights::layersOf(map);
}

TileBounds boundsOf(const TileKey& key)
{
    const GeoExtent& extent = key.getExtent();
    return {extent.xMin(), extent.yMin(), extent.xMin() + extent.width(), extent.yMax()};
}

std::shared_ptr<const TileContent> makeTileContent(const TileKey& key, const TileSources& sources,
                                                   const std::optional<TileTexture>& parent,
                                                   const PictureWish& wishesPicture, int revision)
{
    auto content = std::make_shared<TileContent>();
    content->key = key;
    content->revision = revision;
    content->bounds = boundsOf(key);
    const TileBounds& bounds = content->bounds;

    const double meshCell = bounds.height() / kMeshCells;
    const ElevationLayerVector layers = layersFor(key, sources.elevations);
    TerrainHeights ground = readHeights(key, bounds, layers, meshCell);
    std::optional<HeightRaster> known;
    const HeightRaster raster = sampleHeights(bounds, ground, known);
    const ElevationLayerVector shown = layersFrom(key, sources.elevations);
    const SourceRelief relief = reliefFrom(key, raster, meshCell, shown);
    const double texel = texelMetres(bounds);
    const double skirt =
        kSkirtTexels * texel + kSkirtReliefs * std::max(borderRelief(bounds, raster), relief.unseen);
    content->mesh = buildTileMesh(bounds, raster, kMeshToleranceTexels * texel, skirt);
    const double cell = finestCellIn(bounds, ground);
    if (ground.isFullResolution())
        content->heights = std::move(ground);
    else {
        content->heights = meshGridOf(raster);
        if (known)
            content->known = meshGridOf(*known);
    }

    const double unseen = std::max(relief.unseen, content->mesh.mostHiddenDetail);
    content->lowest = content->mesh.minHeight - unseen;
    content->highest = content->mesh.maxHeight + unseen;

    const double sagitta = std::pow(meshCell * kMetresPerDegree, 2) / (8.0 * wgs84::kEquatorialRadius);
    const double hidden =
        std::max({content->mesh.hiddenDetail, kOutstandingShare * content->mesh.mostHiddenDetail,
                  kOutstandingShare * relief.unseen});
    content->geometricError = kTypicalShare * content->mesh.simplificationError + sagitta +
                              (heightsAreRefinable(bounds, shown, meshCell) ? hidden : 0.0);
    content->bulk = bulkOf(*content, relief);

    content->pictureRefinable = (!parent || parent->refinable) && pictureIsRefinable(sources, bounds);
    content->refinable =
        key.getLOD() < kDeepestLevel && (content->pictureRefinable || content->geometricError > 0.02);

    if (parent && !(parent->refinable && wishesPicture(*content))) {
        content->texture = *parent;
        content->borrowsPicture = parent->refinable;
    } else {
        const ReliefShade shade = shadeOf(key, raster, cell, layers);
        content->texture.state = makeTileStateSet(composeTilePicture(key, bounds, sources, shade));
        content->texture.bounds = bounds;
        content->texture.level = key.getLOD();
        content->texture.refinable = content->pictureRefinable;
    }
    return content;
}
} // namespace osgEarth

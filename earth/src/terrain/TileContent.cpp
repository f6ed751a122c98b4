#include "terrain/TileContent.h"
#include "globe/Wgs84.h"

#include "layers/LayerHeights.h"
#include "terrain/ReliefShade.h"
#include "terrain/TilePicture.h"

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
/// Skirts cover what two adjacent borders may differ by: their tolerances and one level's detail.
constexpr double kSkirtTexels = 3.0;
/// Once grid cells are this much smaller than the source's, deeper tiles repeat the same surface.
constexpr double kCellsPerSourceCell = 8.0;
/// A coarse source is bent to meet a finer one within this many of its own cells.
constexpr double kBlendCells = 1.5;

double texelMetres(const TileBounds& bounds)
{
    return bounds.height() * kMetresPerDegree / kTilePictureSize;
}

HeightRaster sampleHeights(const TileBounds& bounds, const HeightStack& stack)
{
    HeightRaster raster(kRasterSize, 1);
    if (stack.empty())
        return raster;
    const double stepY = bounds.height() / (kRasterSize - 1);
    const double stepX = bounds.width() / (kRasterSize - 1);
    for (int row = -1; row <= kRasterSize; ++row) {
        const double latitude = std::clamp(bounds.south + stepY * row, -90.0, 90.0);
        for (int column = -1; column <= kRasterSize; ++column) {
            double longitude = bounds.west + stepX * column;
            if (longitude > 180.0)
                longitude -= 360.0;
            else if (longitude < -180.0)
                longitude += 360.0;
            raster.at(column, row) = static_cast<float>(stack.heightAt(longitude, latitude).value_or(0.0));
        }
    }
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

TileBounds united(const TileBounds& a, const TileBounds& b)
{
    return {std::min(a.west, b.west), std::min(a.south, b.south), std::max(a.east, b.east),
            std::max(a.north, b.north)};
}

bool covers(const TerrainLayer& layer, const TileBounds& bounds)
{
    const TileBounds data = dataBounds(layer);
    return data.west < bounds.east && data.east > bounds.west && data.south < bounds.north &&
           data.north > bounds.south;
}

/// What a map's sources have to say about the ground of one tile.
struct TileHeights
{
    HeightStack stack;
    /// Whether the stack holds every source's own samples.
    bool fullResolution = false;
    /// Whether deeper tiles would resolve the sources better.
    bool refinable = false;
};

TileHeights readHeights(const TileKey& key, const TileBounds& bounds, const TileSources& sources,
                        double meshCell)
{
    TileHeights heights;
    heights.fullResolution = true;
    double coarsest = 0.0;
    for (const auto& layer : sources.elevations)
        coarsest = std::max(coarsest, layer->getDataResolution());
    // Sampled one raster step beyond the tile.
    const TileBounds sampled = widened(bounds, 0.5 * meshCell);
    std::optional<TileBounds> finerEdges;
    for (const auto& layer : sources.elevations) {
        const double cell = layer->getDataResolution();
        const TileBounds data = dataBounds(*layer);
        const std::optional<TileBounds> reach = reachInto(data, sampled, kBlendCells * coarsest);
        if (!layer->isKeyInRange(key) || !reach)
            continue;
        // A source is compared with the finer ones at their edges.
        const TileBounds wanted = widened(finerEdges ? united(*reach, *finerEdges) : *reach, 0.5 * meshCell);
        finerEdges = finerEdges ? united(*reach, *finerEdges) : *reach;
        const GeoExtent extent(key.getExtent().getSRS(), wanted.west, std::max(-90.0, wanted.south),
                               wanted.east, std::min(90.0, wanted.north));
        if (auto window = readHeightWindow(*layer, extent, 0.5 * meshCell, nullptr)) {
            heights.refinable =
                heights.refinable || (covers(*layer, bounds) && meshCell * kCellsPerSourceCell > cell);
            heights.fullResolution = heights.fullResolution && window->cellSizeDegrees() <= cell * 1.001;
            heights.stack.add({std::move(window), data, kBlendCells * cell});
        }
    }
    return heights;
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
    const auto finer = [&](const auto& layer) { return isFinerThan(*layer, bounds, texel); };
    return std::any_of(sources.images.begin(), sources.images.end(), finer) ||
           std::any_of(sources.elevations.begin(), sources.elevations.end(), finer);
}
/// Height, metres, by which deeper tiles may rise above this one's samples:
/// the bounds must hold them, or they would be culled with their parent.
double headroom(const TileContent& content)
{
    constexpr double kCoarse = 3000.0;
    constexpr unsigned kTrustedLevel = 8;
    const double fromDetail = 12.0 * content.geometricError + 50.0;
    return content.key.getLOD() < kTrustedLevel ? std::max(kCoarse, fromDetail) : fromDetail;
}

TileBulk bulkOf(const TileContent& content)
{
    const TileMesh& mesh = content.mesh;
    double radius = 0.0;
    for (const osg::Vec3f& position : mesh.positions)
        radius = std::max(radius, static_cast<double>(position.length()));
    const double spare = headroom(content);
    return {{mesh.origin, radius + spare}, occludeeOf(mesh.origin, mesh.positions, spare)};
}
} // namespace

double TileContent::heightAt(double longitude, double latitude) const
{
    if (const std::optional<double> height = sourceHeights.heightAt(longitude, latitude))
        return *height;
    return heights.interpolate((longitude - bounds.west) / bounds.width(),
                               (latitude - bounds.south) / bounds.height());
}

TileSources::TileSources(const Map& map)
{
    ImageLayerVector imageLayers;
    map.getImageLayers(imageLayers);
    for (const auto& layer : imageLayers)
        if (layer->getEnabled() && layer->getVisible() && layer->isOpen())
            images.push_back(layer);
    ElevationLayerVector elevationLayers;
    map.getElevationLayers(elevationLayers);
    for (const auto& layer : elevationLayers)
        if (layer->getEnabled() && layer->getVisible() && layer->isOpen())
            elevations.push_back(layer);
    const auto fineness = [](const auto& layer) {
        const double resolution = layer->getDataResolution();
        return resolution > 0.0 ? resolution : 0.0;
    };
    std::stable_sort(elevations.begin(), elevations.end(),
                     [&](const auto& a, const auto& b) { return fineness(a) < fineness(b); });
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
    const TileHeights read = readHeights(key, bounds, sources, meshCell);
    const HeightRaster raster = sampleHeights(bounds, read.stack);
    const double texel = texelMetres(bounds);
    content->mesh = buildTileMesh(bounds, raster, kMeshToleranceTexels * texel, kSkirtTexels * texel);
    content->heights = meshGridOf(raster);
    if (read.fullResolution)
        content->sourceHeights = read.stack;

    const double sagitta = std::pow(meshCell * kMetresPerDegree, 2) / (8.0 * wgs84::kEquatorialRadius);
    const double hidden = read.refinable ? content->mesh.hiddenDetail : 0.0;
    content->geometricError = kTypicalShare * content->mesh.simplificationError + hidden + sagitta;
    content->bulk = bulkOf(*content);

    if (parent && !(parent->refinable && wishesPicture(content->bulk))) {
        content->texture = *parent;
        content->borrowsPicture = parent->refinable;
    } else {
        const ReliefShade shade(bounds, raster);
        content->texture.state = makeTileStateSet(composeTilePicture(key, bounds, sources, shade));
        content->texture.bounds = bounds;
        content->texture.level = key.getLOD();
        content->texture.refinable = pictureIsRefinable(sources, bounds);
    }
    content->refinable =
        key.getLOD() < kDeepestLevel && (content->texture.refinable || content->geometricError > 0.02);
    return content;
}
} // namespace osgEarth

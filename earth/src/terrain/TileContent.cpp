#include "TileContent.h"

#include "ReliefShade.h"
#include "sources/HeightWindow.h"
#include "TilePicture.h"

#include <osgEarth/ElevationLayer>
#include <osgEarth/ImageLayer>

#include <cmath>

namespace osgEarth {
namespace {
/** Cells along a side of the mesh grid. */
constexpr int kMeshCells = 64;
/** Heights are sampled twice as densely: the shade shows them, and they tell what the mesh hides. */
constexpr int kRasterSize = 2 * kMeshCells + 1;
constexpr double kMetresPerDegree = 111320.0;
/** A mesh may differ from its grid by this share of a texel of its level. */
constexpr double kMeshToleranceTexels = 0.5;
/** Skirts cover what two adjacent borders may differ by: their tolerances and one level's detail. */
constexpr double kSkirtTexels = 3.0;
/** Once grid cells are this much smaller than the source's, deeper tiles repeat the same surface. */
constexpr double kCellsPerSourceCell = 8.0;

double texelMetres(const TileBounds& bounds)
{
    return bounds.height() * kMetresPerDegree / kTilePictureSize;
}

HeightRaster sampleHeights(const TileBounds& bounds,
                           const std::vector<std::shared_ptr<const HeightWindow>>& windows)
{
    HeightRaster raster(kRasterSize, 1);
    if (windows.empty())
        return raster;
    const double step = bounds.height() / (kRasterSize - 1);
    const double stepX = bounds.width() / (kRasterSize - 1);
    for (int row = -1; row <= kRasterSize; ++row) {
        const double latitude = std::clamp(bounds.south + step * row, -90.0, 90.0);
        for (int column = -1; column <= kRasterSize; ++column) {
            double longitude = bounds.west + stepX * column;
            if (longitude > 180.0)
                longitude -= 360.0;
            else if (longitude < -180.0)
                longitude += 360.0;
            for (const auto& window : windows)
                if (const std::optional<double> height = window->heightAt(longitude, latitude)) {
                    raster.at(column, row) = static_cast<float>(*height);
                    break;
                }
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

bool covers(const TerrainLayer& layer, const TileBounds& bounds)
{
    const GeoExtent extent = layer.getDataExtent();
    if (!extent.isValid())
        return true;
    return extent.west() < bounds.east && extent.east() > bounds.west && extent.south() < bounds.north &&
           extent.north() > bounds.south;
}

/** Whether the layer's samples are closer together than `cell` degrees inside the tile. */
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
} // namespace

double TileContent::heightAt(double longitude, double latitude) const
{
    for (const auto& window : windows)
        if (const std::optional<double> height = window->heightAt(longitude, latitude))
            return *height;
    return heights.interpolate((longitude - bounds.west) / bounds.width(),
                               (latitude - bounds.south) / bounds.height());
}

TileSources::TileSources(const Map& map)
{
    ImageLayerVector imageLayers;
    map.getLayers(imageLayers);
    for (const auto& layer : imageLayers)
        if (layer->getEnabled() && layer->getVisible() && layer->isOpen())
            images.push_back(layer);
    ElevationLayerVector elevationLayers;
    map.getLayers(elevationLayers);
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
                                                   const std::optional<TileTexture>& parent, int revision)
{
    auto content = std::make_shared<TileContent>();
    content->key = key;
    content->revision = revision;
    content->bounds = boundsOf(key);
    const TileBounds& bounds = content->bounds;

    const double meshCell = bounds.height() / kMeshCells;
    std::vector<std::shared_ptr<const HeightWindow>> windows;
    bool heightsRefinable = false;
    bool fullResolution = !sources.elevations.empty();
    for (const auto& layer : sources.elevations) {
        if (!covers(*layer, bounds))
            continue;
        GeoExtent extent = key.getExtent();
        if (const auto window = readHeightWindow(*layer, extent, 0.5 * meshCell, nullptr)) {
            const double sourceCell = layer->getDataResolution();
            heightsRefinable = heightsRefinable || meshCell * kCellsPerSourceCell > sourceCell;
            fullResolution = fullResolution && window->cellSizeDegrees() <= sourceCell * 1.001;
            windows.push_back(window);
        }
    }
    const HeightRaster raster = sampleHeights(bounds, windows);
    const double texel = texelMetres(bounds);
    content->mesh = buildTileMesh(bounds, raster, kMeshToleranceTexels * texel, kSkirtTexels * texel);
    content->heights = meshGridOf(raster);
    if (fullResolution)
        content->windows = std::move(windows);

    if (parent && !parent->refinable) {
        content->texture = *parent;
    } else {
        const ReliefShade shade(bounds, raster);
        content->texture.state = makeTileStateSet(composeTilePicture(key, bounds, sources, shade));
        content->texture.bounds = bounds;
        content->texture.level = key.getLOD();
        content->texture.refinable = pictureIsRefinable(sources, bounds);
    }

    const double sagitta = std::pow(meshCell * kMetresPerDegree, 2) / (8.0 * 6378137.0);
    const double hidden = heightsRefinable ? content->mesh.hiddenDetail : 0.0;
    content->geometricError = content->mesh.simplificationError + hidden + sagitta;
    content->refinable =
        key.getLOD() < kDeepestLevel && (content->texture.refinable || content->geometricError > 0.02);
    return content;
}
} // namespace osgEarth

#include "terrain/SourceRelief.h"

#include "layers/TerrainHeights.h"
#include "sources/HeightGrid.h"
#include "sources/RasterSource.h"
#include "terrain/TileContent.h"

#include <cmath>
#include <memory>
#include <osg/Math>

namespace osgEarth {
namespace {
/// So many cells of an overview along a side of the tile are looked at, at most.
constexpr double kMostCells = 64.0;

/// The part of a layer's overview that is felt in a tile.
class Part
{
public:
    /// `reach` is how far a step beside a source is carried, degrees of latitude.
    Part(const TerrainLayer& layer, const TileBounds& bounds, double reach)
        : _source(layer.getSource()), _bounds(bounds)
    {
        const TerrainLayerOptions& levels = layer.getTerrainLayerRuntimeOptions();
        _onAllLevels = levels.minLevel().value() == 0 && levels.maxLevel().value() >= kDeepestLevel;
        const double north = std::min(85.0, std::max(std::abs(bounds.south), std::abs(bounds.north)));
        const double aside =
            std::min(reach / std::cos(osg::DegreesToRadians(north)), 0.5 * (360.0 - bounds.width()));
        const GeoExtent tile(SpatialReference::get("wgs84"), bounds.west - aside,
                             std::max(-90.0, bounds.south - reach), bounds.east + aside,
                             std::min(90.0, bounds.north + reach));
        // A projection may have no place for the far end of a large tile.
        const GeoExtent shared = tile.intersectionSameSRS(layer.getDataExtent());
        if (!_source || !shared.isValid())
            return;
        _inside = true;
        _overview = _source->heightOverview(nullptr);
        if (!_overview || !_source->pixelBoxOf(shared, _box))
            return;
        for (const auto& grid : _overview->grids) {
            _grid = grid.get();
            if (std::max((_box.east - _box.west) / grid->place().cellWidth,
                         (_box.south - _box.north) / grid->place().cellHeight) <= kMostCells)
                break;
        }
        const GeoExtent own(SpatialReference::get("wgs84"), bounds.west, bounds.south, bounds.east,
                            bounds.north);
        _isPlaced = _source->pixelBoxOf(own, _own);
    }

    /// Whether the layer alone has the say in the whole tile, on its level and all deeper ones. If so, what
    /// it has beside the tile is not felt there.
    bool rules()
    {
        if (!exact() || !_onAllLevels || !_isPlaced)
            return false;
        const HeightGrid::Place& place = _grid->place();
        // Cells that have data as a whole, with all around them.
        for (double row = _own.north; row < _own.south + place.cellHeight; row += place.cellHeight)
            for (double column = _own.west; column < _own.east + place.cellWidth; column += place.cellWidth)
                if (_grid->at(column, row).cover < 1.0 - 1e-6)
                    return false;
        _box = _own.widened(place.cellWidth);
        return true;
    }

    /// Whether anything of the layer is felt in the tile.
    bool inside() const { return _inside; }
    bool known() const { return _grid && _overview->grids.front()->hasData(); }
    bool exact() const { return known() && _overview->exact; }
    double cellDegrees() const { return _source->resolutionDegrees() * _grid->place().cellWidth; }

    /// Calls visit(longitude, latitude, lowest, highest) for each cell with data.
    template <typename Visit> void visitCells(Visit visit) const
    {
        const HeightGrid::Place& place = _grid->place();
        const SpatialReference* wgs84 = SpatialReference::get("wgs84");
        const RasterGrid& raster = _source->grid();
        const auto first = [](double from, double origin, double cell, int count) {
            return static_cast<int>(std::clamp(std::floor((from - origin) / cell), 0.0, count - 1.0));
        };
        const int west = first(_box.west, place.firstColumn, place.cellWidth, _grid->columns());
        const int east = first(_box.east, place.firstColumn, place.cellWidth, _grid->columns());
        const int north = first(_box.north, place.firstRow, place.cellHeight, _grid->rows());
        const int south = first(_box.south, place.firstRow, place.cellHeight, _grid->rows());
        for (int row = north; row <= south; ++row)
            for (int column = west; column <= east; ++column) {
                if (std::isnan(_grid->height(column, row)))
                    continue;
                const double c = place.firstColumn + (column + 0.5) * place.cellWidth;
                const double r = place.firstRow + (row + 0.5) * place.cellHeight;
                const double* g = raster.toSrs;
                double x = g[0] + c * g[1] + r * g[2], y = g[3] + c * g[4] + r * g[5];
                if (!raster.srs->transform2D(x, y, wgs84, x, y))
                    continue;
                x += 360.0 * std::round((0.5 * (_bounds.west + _bounds.east) - x) / 360.0);
                visit(x, y, _grid->lowest(column, row), _grid->highest(column, row));
            }
    }

    /// Whether the layer has a value of its own at a place, as far as its overview tells.
    bool covers(double longitude, double latitude) const
    {
        const RasterGrid& raster = _source->grid();
        double x = longitude, y = latitude;
        if (!known() ||
            !SpatialReference::get("wgs84")->transform2D(longitude, latitude, raster.srs.get(), x, y))
            return false;
        if (raster.srs->isGeographic())
            x += 360.0 * std::round((raster.toSrs[0] + 0.5 * raster.toSrs[1] * raster.width - x) / 360.0);
        const double* f = raster.fromSrs;
        return _grid->at(f[0] + f[1] * x + f[2] * y, f[3] + f[4] * x + f[5] * y).cover > 0.3;
    }

private:
    std::shared_ptr<RasterSource> _source;
    TileBounds _bounds;
    bool _inside = false;
    std::shared_ptr<const HeightOverview> _overview;
    PixelBox _box, _own;
    bool _isPlaced = false;
    bool _onAllLevels = true;
    const HeightGrid* _grid = nullptr;
};
} // namespace

SourceRelief reliefWithin(const TileBounds& bounds, const HeightRaster& samples, double cell,
                          const ElevationLayerVector& layers)
{
    SourceRelief relief;
    relief.lowest = relief.highest = static_cast<double>(samples.at(0, 0));
    for (int row = 0; row < samples.size(); ++row)
        for (int column = 0; column < samples.size(); ++column) {
            const double height = static_cast<double>(samples.at(column, row));
            relief.lowest = std::min(relief.lowest, height);
            relief.highest = std::max(relief.highest, height);
        }
    const double reach = TerrainHeights::reachOf(layers);
    std::vector<Part> finer;
    for (const auto& layer : layers) {
        Part part(*layer, bounds, reach);
        if (!part.inside())
            continue;
        relief.exact = relief.exact && part.exact();
        if (!part.known())
            continue;
        const bool rules = part.rules();
        const bool tellsMore = part.cellDegrees() < cell;
        part.visitCells([&](double longitude, double latitude, float low, float high) {
            const double lowest = static_cast<double>(low), highest = static_cast<double>(high);
            relief.lowest = std::min(relief.lowest, lowest);
            relief.highest = std::max(relief.highest, highest);
            if (!tellsMore || longitude < bounds.west || longitude > bounds.east || latitude < bounds.south ||
                latitude > bounds.north)
                return;
            const double drawn = samples.interpolate((longitude - bounds.west) / bounds.width(),
                                                     (latitude - bounds.south) / bounds.height());
            const double away = std::max(std::abs(highest - drawn), std::abs(lowest - drawn));
            if (away > relief.unseen && std::none_of(finer.begin(), finer.end(), [&](const Part& above) {
                    return above.covers(longitude, latitude);
                }))
                relief.unseen = away;
        });
        if (rules)
            break;
        finer.push_back(std::move(part));
    }
    return relief;
}
} // namespace osgEarth

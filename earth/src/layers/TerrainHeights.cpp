#include "layers/TerrainHeights.h"

#include "layers/LayerHeights.h"

#include <algorithm>
#include <cmath>
#include <osgEarth/Map>

namespace osgEarth {
namespace {
/// A cell that carries heights outwards stands for places that are this share of its size away.
constexpr double kAwayPerCell = 0.5;
/// A step fades over so many cells of the coarser source, or over so many times its own height where that is
/// more.
constexpr double kBlendCells = 1.0;
constexpr double kBlendSteps = 4.0;
/// Heights carried outwards in cells of some size may differ from the true ones
/// by this share of the size without there being a step: slopes, not steps.
constexpr double kPlausibleSlope = 0.5;
/// Highest step between two sources, metres.
constexpr double kHighestStep = 9000.0;
constexpr double kMetresPerDegree = 111320.0;

/// How much of a finer source's height is left, 1 to 0, where cells of `size`
/// degrees carry it over ground whose own are `baseCell`, and which differs by `step` metres.
double fade(double size, double baseCell, double step)
{
    const double real = std::max(0.0, std::abs(step) / kMetresPerDegree - kPlausibleSlope * size);
    const double width = std::max(kBlendCells * baseCell, kBlendSteps * real);
    const double away = kAwayPerCell * size;
    if (away >= width)
        return 0.0;
    const double t = away / width;
    return 1.0 - t * t * (3.0 - 2.0 * t);
}

/// The say of cells of one size, 0 to 1, where that much of them has data. At a
/// corner that is a quarter: were it not enough, the cells around it of all
/// sizes would mix, and the step fall by much across the finest.
double sayOf(double cover)
{
    const double part = std::min(1.0, 4.0 * cover);
    return part * (2.0 - part);
}

/// Takes a finer source into account at a place where it has no value of its own, or not all of one.
void overlay(const HeightWindow& finer, const HeightSample& own, double column, double row,
             TerrainHeights::Answer& ground)
{
    double rest = 1.0 - own.cover;
    double height = own.cover * own.height;
    double cell = own.cover * finer.fullCellSizeDegrees();
    for (const auto& grid : finer.outward()) {
        const HeightSample carried = grid->at(column, row);
        if (carried.cover <= 0.0)
            continue;
        const double share = rest * sayOf(carried.cover);
        const double kept =
            share * fade(finer.cellSizeOf(*grid), ground.cell, carried.height - ground.height);
        height += kept * carried.height + (share - kept) * ground.height;
        cell += kept * finer.fullCellSizeDegrees() + (share - kept) * ground.cell;
        rest -= share;
        if (rest <= 0.0)
            break;
    }
    ground.height = height + rest * ground.height;
    ground.cell = cell + rest * ground.cell;
    ground.known = ground.known || own.cover >= 0.5;
}
} // namespace

ElevationLayerVector TerrainHeights::layersOf(const Map& map)
{
    ElevationLayerVector all, open;
    map.getElevationLayers(all);
    for (auto layer = all.rbegin(); layer != all.rend(); ++layer)
        if ((*layer)->getEnabled() && (*layer)->getVisible() && (*layer)->isOpen())
            open.push_back(*layer);
    std::stable_sort(open.begin(), open.end(), [](const auto& a, const auto& b) {
        return a->getDataResolution() < b->getDataResolution();
    });
    return open;
}

double TerrainHeights::reachOf(const ElevationLayerVector& layers)
{
    // For larger cells fade() is 0 whatever the step.
    double reach =
        kBlendSteps / (kAwayPerCell + kBlendSteps * kPlausibleSlope) * kHighestStep / kMetresPerDegree;
    for (const auto& layer : layers)
        reach = std::max(reach, kBlendCells / kAwayPerCell * layer->getDataResolution());
    return reach;
}

TerrainHeights::TerrainHeights(const Map& map, const Bounds& lonLat, double resolution,
                               ProgressCallback* progress)
{
    if (!lonLat.isValid())
        return;
    const double margin = std::max(resolution, 1e-4);
    const GeoExtent extent(SpatialReference::get("wgs84"), std::max(-180.0, lonLat.xMin() - margin),
                           std::max(-90.0, lonLat.yMin() - margin), std::min(180.0, lonLat.xMax() + margin),
                           std::min(90.0, lonLat.yMax() + margin));
    read(layersOf(map), extent, resolution, progress);
}

TerrainHeights::TerrainHeights(const ElevationLayerVector& layers, const GeoExtent& lonLat, double resolution,
                               ProgressCallback* progress)
{
    read(layers, lonLat, resolution, progress);
}

void TerrainHeights::read(const ElevationLayerVector& layers, const GeoExtent& lonLat, double resolution,
                          ProgressCallback* progress)
{
    const double reach = reachOf(layers);
    for (const auto& layer : layers)
        if (auto window = readHeightWindow(*layer, lonLat, resolution, progress, reach)) {
            _windows.push_back(std::move(window));
            // Nobody asks those below.
            if (_windows.back()->isWhole())
                break;
        }
}

bool TerrainHeights::isFullResolution() const
{
    return std::all_of(_windows.begin(), _windows.end(),
                       [](const auto& window) { return window->isFullResolution(); });
}

TerrainHeights::Answer TerrainHeights::answerAt(double lonDeg, double latDeg) const
{
    return answerFrom(0, lonDeg, latDeg);
}

bool TerrainHeights::sample(const std::vector<double>& lonsDeg, const std::vector<double>& latsDeg,
                            float* heights, float* known) const
{
    // Most tiles lie within one source.
    if (_windows.size() == 1 && _windows.front()->sample(lonsDeg, latsDeg, heights))
        return true;
    for (const double latitude : latsDeg)
        for (const double longitude : lonsDeg) {
            const Answer answer = answerAt(longitude, latitude);
            *heights++ = static_cast<float>(answer.height);
            *known++ = answer.known ? 1.0f : 0.0f;
        }
    return false;
}

// Down to the first source that answers alone, then back up.
TerrainHeights::Answer TerrainHeights::answerFrom(std::size_t first, double lonDeg, double latDeg) const
{
    if (first >= _windows.size())
        return {};
    const HeightWindow& window = *_windows[first];
    double column = 0.0, row = 0.0;
    if (!window.locate(lonDeg, latDeg, column, row))
        return answerFrom(first + 1, lonDeg, latDeg);
    const HeightSample own = window.at(column, row);
    if (own.cover >= 1.0)
        return {own.height, window.fullCellSizeDegrees(), true};
    Answer ground = answerFrom(first + 1, lonDeg, latDeg);
    overlay(window, own, column, row, ground);
    return ground;
}
} // namespace osgEarth

#include "layers/TerrainHeights.h"
#include "layers/LayerHeights.h"
#include <algorithm>
#include <osgEarth/Map>

namespace osgEarth {
TerrainHeights::TerrainHeights(const Map& map, const Bounds& lonLat, double resolution,
                               ProgressCallback* progress)
{
    if (!lonLat.isValid())
        return;
    const double margin = std::max(resolution, 1e-4);
    const GeoExtent extent(SpatialReference::get("wgs84"), std::max(-180.0, lonLat.xMin() - margin),
                           std::max(-90.0, lonLat.yMin() - margin), std::min(180.0, lonLat.xMax() + margin),
                           std::min(90.0, lonLat.yMax() + margin));
    ElevationLayerVector layers;
    map.getElevationLayers(layers);
    for (const auto& layer : layers)
        if (layer->getEnabled() && layer->getVisible() && layer->getStatus().isOK())
            if (auto window = readHeightWindow(*layer, extent, resolution, progress))
                _windows.push_back(window);
    // Finest first; the order of the stack decides between equals, later ones above.
    std::reverse(_windows.begin(), _windows.end());
    std::stable_sort(_windows.begin(), _windows.end(), [](const auto& a, const auto& b) {
        return a->cellSizeDegrees() < b->cellSizeDegrees();
    });
}

double TerrainHeights::at(double lonDeg, double latDeg) const
{
    for (const auto& window : _windows)
        if (const auto height = window->heightAt(lonDeg, latDeg))
            return *height;
    return 0.0;
}
} // namespace osgEarth

#include <osgEarth/ElevationQuery>

#include "layers/LayerHeights.h"

#include <algorithm>
#include <cmath>
#include <list>
#include <optional>

namespace osgEarth {
namespace {
// Size of the windows of samples that are read and kept for later queries.
constexpr int kWindowSamples = 256;
constexpr size_t kMaxWindows = 32;
} // namespace

struct ElevationQuery::Impl
{
    struct Window
    {
        UID layer;
        double cell;
        GeoExtent extent;
        std::shared_ptr<const HeightWindow> heights;
    };

    osg::ref_ptr<const Map> map;
    Revision revision{-1};
    ElevationLayerVector layers; ///< finest first, later in the stack first among equals
    std::list<Window> windows;   ///< last used first

    void sync()
    {
        const Revision now = map->getDataModelRevision();
        if (now == revision)
            return;
        revision = now;
        windows.clear();
        layers.clear();
        map->getElevationLayers(layers);
        std::reverse(layers.begin(), layers.end());
        std::stable_sort(layers.begin(), layers.end(), [](const auto& a, const auto& b) {
            return a->getDataResolution() < b->getDataResolution();
        });
    }

    std::optional<double> heightIn(const ElevationLayer& layer, double lon, double lat, double wanted,
                                   double& cell)
    {
        const double resolution = layer.getDataResolution();
        const double coarse = std::max(wanted, resolution);
        for (auto w = windows.begin(); w != windows.end(); ++w)
            if (w->layer == layer.getUID() && w->cell == coarse && w->extent.contains(lon, lat)) {
                windows.splice(windows.begin(), windows, w);
                return answer(windows.front(), lon, lat, cell);
            }
        // Windows start at multiples of their size, so that queries close to each other share one.
        const double size = coarse * kWindowSamples;
        const double west = std::floor((lon + 180.0) / size) * size - 180.0;
        const double south = std::floor((lat + 90.0) / size) * size - 90.0;
        Window window{layer.getUID(), coarse,
                      GeoExtent(SpatialReference::get("wgs84"), west, std::max(-90.0, south),
                                std::min(180.0, west + size), std::min(90.0, south + size)),
                      nullptr};
        window.heights = readHeightWindow(layer, window.extent, wanted);
        windows.push_front(window);
        if (windows.size() > kMaxWindows)
            windows.pop_back();
        return answer(windows.front(), lon, lat, cell);
    }

    static std::optional<double> answer(const Window& window, double lon, double lat, double& cell)
    {
        if (!window.heights)
            return std::nullopt;
        cell = window.heights->cellSizeDegrees();
        return window.heights->heightAt(lon, lat);
    }
};

ElevationQuery::ElevationQuery() : _impl(new Impl) {}

ElevationQuery::ElevationQuery(const Map* map) : ElevationQuery()
{
    _impl->map = map;
}

ElevationQuery::~ElevationQuery() = default;

bool ElevationQuery::getElevation(const GeoPoint& point, double& out_elevation, double desiredResolution,
                                  double* out_actualResolution)
{
    GeoPoint p;
    if (!_impl->map.valid() || !point.transform(SpatialReference::get("wgs84"), p))
        return false;
    _impl->sync();
    const double lon = p.x() - 360.0 * std::floor((p.x() + 180.0) / 360.0);
    for (const auto& layer : _impl->layers) {
        if (!layer->isOpen() || !layer->getVisible() || !layer->getDataExtent().contains(lon, p.y()))
            continue;
        double cell = 0.0;
        const auto height = _impl->heightIn(*layer, lon, p.y(), desiredResolution, cell);
        if (!height)
            continue;
        out_elevation = *height;
        if (out_actualResolution)
            *out_actualResolution = cell;
        return true;
    }
    return false;
}

bool ElevationQuery::getElevations(std::vector<osg::Vec3d>& points, const SpatialReference* srs, bool ignoreZ,
                                   double desiredResolution)
{
    if (!srs)
        return false;
    for (osg::Vec3d& p : points) {
        double height = 0.0;
        getElevation(GeoPoint(srs, p), height, desiredResolution);
        p.z() = ignoreZ ? height : p.z() + height;
    }
    return true;
}

bool ElevationQuery::getElevations(const std::vector<osg::Vec3d>& points, const SpatialReference* srs,
                                   std::vector<double>& out_elevations, double desiredResolution)
{
    if (!srs)
        return false;
    for (const osg::Vec3d& p : points) {
        double height = 0.0;
        getElevation(GeoPoint(srs, p), height, desiredResolution);
        out_elevations.push_back(height);
    }
    return true;
}
} // namespace osgEarth

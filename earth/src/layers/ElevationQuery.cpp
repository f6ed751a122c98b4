#include <osgEarth/ElevationQuery>

#include "layers/TerrainHeights.h"

#include <algorithm>
#include <cmath>
#include <list>
#include <osg/Math>

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
        size_t finest;
        double cell;
        GeoExtent extent;
        TerrainHeights heights;
    };

    osg::ref_ptr<const Map> map;
    Revision revision{-1};
    ElevationLayerVector layers; ///< finest first
    double reach = 0.0;
    std::list<Window> windows; ///< last used first

    void sync()
    {
        const Revision now = map->getDataModelRevision();
        if (now == revision)
            return;
        revision = now;
        windows.clear();
        layers = TerrainHeights::layersOf(*map);
        reach = TerrainHeights::reachOf(layers);
    }

    /// The finest layer that has a say at a place, be it only by a step at its edge.
    size_t finestAt(double lon, double lat) const
    {
        const double wide = reach / std::max(0.05, std::cos(osg::DegreesToRadians(lat)));
        size_t i = 0;
        for (; i < layers.size(); ++i) {
            GeoExtent extent = layers[i]->getDataExtent();
            extent.expand(4.0 * wide, 4.0 * reach);
            if (extent.contains(lon, lat))
                break;
        }
        return i;
    }

    TerrainHeights::Answer answerAt(double lon, double lat, double wanted)
    {
        const size_t finest = finestAt(lon, lat);
        if (finest == layers.size())
            return {};
        const double cell = std::max(wanted, layers[finest]->getDataResolution());
        for (auto w = windows.begin(); w != windows.end(); ++w)
            if (w->finest == finest && w->cell == cell && w->extent.contains(lon, lat)) {
                windows.splice(windows.begin(), windows, w);
                return windows.front().heights.answerAt(lon, lat);
            }
        // Windows start at multiples of their size, so that queries close to each other share one.
        const double size = cell * kWindowSamples;
        const double west = std::floor((lon + 180.0) / size) * size - 180.0;
        const double south = std::floor((lat + 90.0) / size) * size - 90.0;
        const GeoExtent extent(SpatialReference::get("wgs84"), west, std::max(-90.0, south),
                               std::min(180.0, west + size), std::min(90.0, south + size));
        ElevationLayerVector asked;
        for (size_t i = finest; i < layers.size(); ++i)
            asked.push_back(layers[i]);
        windows.push_front({finest, cell, extent, TerrainHeights(asked, extent, wanted)});
        if (windows.size() > kMaxWindows)
            windows.pop_back();
        return windows.front().heights.answerAt(lon, lat);
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
    const TerrainHeights::Answer answer = _impl->answerAt(lon, p.y(), desiredResolution);
    if (!answer.known)
        return false;
    out_elevation = answer.height;
    if (out_actualResolution) {
        // Coarser heights come out of levels that halve the resolution each.
        *out_actualResolution = answer.cell;
        while (answer.cell > 0.0 && 2.0 * *out_actualResolution <= desiredResolution)
            *out_actualResolution *= 2.0;
    }
    return true;
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

#include "analysis/AxElevationJob.h"
#include "scene/base/AxLongitudes.h"

#include <osgEarth/ElevationQuery>
#include <osgEarth/GeoData>

#include <algorithm>
#include <cmath>

namespace {
struct Box
{
    double west, south, east, north;
};

std::vector<Box> Tiles(const AxElevationJob& job, const osgEarth::SpatialReference& geographic)
{
    std::vector<Box> tiles;
    for (const osgEarth::TileKey& key : job.keys) {
        const osgEarth::GeoExtent extent = key.getExtent().transform(&geographic);
        if (extent.isValid())
            tiles.push_back({extent.xMin(), extent.yMin(), extent.xMax(), extent.yMax()});
    }
    const osgEarth::Bounds box = job.area ? job.area->getBounds() : osgEarth::Bounds();
    if (job.keys.empty() && box.valid())
        tiles.push_back({box.xMin(), box.yMin(), box.xMax(), box.yMax()});
    return tiles;
}

/// A polygon of degrees that crosses 180 counts on there, and a tile's places need not.
bool IsInside(const osgEarth::Symbology::Polygon* area, double longitude, double latitude)
{
    const double west = area ? area->getBounds().xMin() : 0.0;
    return !area || area->empty() ||
           area->contains2D(longitude + AxLongitudes::fullTurn *
                                            std::ceil((west - longitude) / AxLongitudes::fullTurn),
                            latitude);
}

/// The middle of the i-th of n equal steps.
double Middle(double from, double to, int i, int n)
{
    return from + (to - from) * (2 * i + 1) / (2 * n);
}
} // namespace

QVariantList AxSampleElevations(const AxElevationJob& job, const std::function<bool(int)>& progress)
{
    QVariantList places;
    if (!job.map)
        return places;
    // A box that closes itself at the end must not do so before the answer is there.
    constexpr double beforeAnswer = 99.0;
    const osg::ref_ptr<const osgEarth::SpatialReference> geographic = job.map->getSRS()->getGeographicSRS();
    const int columns = std::max(1, job.columns);
    const int rows = std::max(1, job.rows);
    const std::vector<Box> tiles = Tiles(job, *geographic);
    osgEarth::ElevationQuery heights(job.map);
    std::size_t done = 0;
    const double rowCount = static_cast<double>(tiles.size()) * rows;
    for (const Box& tile : tiles)
        for (int row = 0; row < rows; ++row) {
            for (int column = 0; column < columns; ++column) {
                const double longitude = Middle(tile.west, tile.east, column, columns);
                const double latitude = Middle(tile.south, tile.north, row, rows);
                double height = 0.0;
                const double counted = AxLongitudes::Normalized(longitude);
                if (IsInside(job.area, longitude, latitude) &&
                    heights.getElevation(osgEarth::GeoPoint(geographic, counted, latitude), height,
                                         job.resolution))
                    places += QVariant(QVariantList{counted, latitude, height});
            }
            if (!progress(static_cast<int>(beforeAnswer * static_cast<double>(++done) / rowCount)))
                return places;
        }
    return places;
}

QVariant AxAnswerElevations(const AxElevationJob& job, const std::function<bool(int)>& progress)
{
    bool isOff = false;
    const auto goOn = [&](int percent) {
        isOff = !progress(percent);
        return !isOff;
    };
    QVariant answer;
    if (job.grid) {
        constexpr double all = 100.0;
        answer = QVariant::fromValue<AxHeightGridPointer>(std::make_shared<AxHeightGrid>(AxHeightGridOf(
            *job.grid, job.map, [&](double share) { return goOn(static_cast<int>(all * share)); })));
    } else
        answer = AxSampleElevations(job, goOn);
    return isOff ? QVariant(QVariantList()) : answer;
}

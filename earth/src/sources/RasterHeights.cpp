// How a raster of heights is read: a rectangle's samples, the coarse grids around it, and the raster as a
// whole.
#include "sources/HeightWindow.h"
#include "sources/RasterSource.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <osg/Math>

namespace osgEarth {
namespace {
// The first grid of an overview has at most this many cells along a side.
constexpr int kOverviewSide = 256;
// Coarse grids reach this many of their cells beyond the rectangle: one for interpolation, one to be halved.
constexpr int kSpareCells = 3;

// A coarse cell that has data on its near side only is felt two of its widths away from them.
GeoExtent grown(const GeoExtent& extent, double degrees)
{
    const double north = std::max(std::abs(extent.south()), std::abs(extent.north()));
    const double narrow = std::max(0.05, std::cos(osg::DegreesToRadians(std::min(90.0, north))));
    return {extent.getSRS(), extent.west() - degrees / narrow, std::max(-90.0, extent.south() - degrees),
            extent.west() + extent.width() + degrees / narrow, std::min(90.0, extent.north() + degrees)};
}
} // namespace

bool RasterSource::pixelBoxOf(const GeoExtent& extent, PixelBox& out) const
{
    // The rectangle in the raster's own system, then in its columns and rows.
    double xmin = extent.west(), ymin = extent.south(), xmax = extent.west() + extent.width(),
           ymax = extent.north();
    if (!extent.getSRS()->transformExtentToMBR(_grid.srs.get(), xmin, ymin, xmax, ymax))
        return false;
    if (_grid.srs->isGeographic()) {
        const double centre = _grid.toSrs[0] + _grid.toSrs[1] * _grid.width / 2.0;
        const double shift = 360.0 * std::round((centre - (xmin + xmax) / 2.0) / 360.0);
        xmin += shift;
        xmax += shift;
    }
    out = {INFINITY, INFINITY, -INFINITY, -INFINITY};
    const double* f = _grid.fromSrs;
    for (int corner = 0; corner < 4; ++corner) {
        const double x = (corner & 1) ? xmax : xmin, y = (corner & 2) ? ymax : ymin;
        const double c = f[0] + f[1] * x + f[2] * y, r = f[3] + f[4] * x + f[5] * y;
        out.west = std::min(out.west, c);
        out.east = std::max(out.east, c);
        out.north = std::min(out.north, r);
        out.south = std::max(out.south, r);
    }
    return std::isfinite(out.west + out.east + out.north + out.south);
}

std::shared_ptr<const HeightGrid> RasterSource::readGrid(int level, int x0, int y0, int w, int h,
                                                         ProgressCallback* progress)
{
    std::vector<float> samples;
    if (readFloatsWrapped(level, x0, y0, w, h, samples, progress) != Answer::Data)
        return nullptr;
    const double scaleX = static_cast<double>(_grid.width) / _grid.widthAt(level);
    const double scaleY = static_cast<double>(_grid.height) / _grid.heightAt(level);
    return std::make_shared<HeightGrid>(std::move(samples), w, h,
                                        HeightGrid::Place{x0 * scaleX, y0 * scaleY, scaleX, scaleY});
}

std::shared_ptr<const HeightWindow> RasterSource::readHeights(const GeoExtent& extent,
                                                              double wantedCellDegrees, double reachDegrees,
                                                              ProgressCallback* progress)
{
    // A projection may have no place for the far end of a large rectangle.
    const GeoExtent near = extent.isValid() ? grown(_geographicExtent, 2.0 * reachDegrees) : GeoExtent();
    PixelBox box;
    if (!near.intersects(extent) || !pixelBoxOf(_grid.wraps ? extent : near.intersectionSameSRS(extent), box))
        return nullptr;

    int level = 0;
    if (_resolutionDegrees > 0.0 && wantedCellDegrees > _resolutionDegrees)
        level =
            std::clamp(static_cast<int>(std::floor(std::log2(wantedCellDegrees / _resolutionDegrees) + 1e-6)),
                       0, _grid.levels());
    std::shared_ptr<const HeightGrid> samples;
    double scale = 1.0;
    for (;; ++level) {
        const int width = _grid.widthAt(level), height = _grid.heightAt(level);
        const double scaleX = static_cast<double>(_grid.width) / width;
        const double scaleY = static_cast<double>(_grid.height) / height;
        scale = std::max(scaleX, scaleY);
        // Beside the raster its rim counts for one cell more.
        if ((!_grid.wraps && (box.west > _grid.width + scaleX || box.east < -scaleX)) ||
            box.north > _grid.height + scaleY || box.south < -scaleY)
            break;
        int x0 = static_cast<int>(std::floor(std::max(box.west, -1.0 * _grid.width) / scaleX - 0.5)) - 1;
        int x1 = static_cast<int>(std::ceil(std::min(box.east, 2.0 * _grid.width) / scaleX + 0.5)) + 1;
        if (!_grid.wraps) {
            x0 = std::clamp(x0, 0, width - 1);
            x1 = std::clamp(x1, x0 + 1, width);
        }
        const int y0 = std::clamp(static_cast<int>(std::floor(std::max(0.0, box.north) / scaleY - 0.5)) - 1,
                                  0, height - 1);
        const int y1 = std::clamp(
            static_cast<int>(std::ceil(std::min(box.south, 1.0 * _grid.height) / scaleY + 0.5)) + 1, y0 + 1,
            height);
        if (static_cast<long long>(x1 - x0) * (y1 - y0) > kMaxWindowPixels && level < _grid.levels())
            continue;
        samples = readGrid(level, x0, y0, x1 - x0, y1 - y0, progress);
        if (samples && !samples->hasData())
            samples.reset();
        break;
    }

    constexpr double kHair = 1e-6;
    const bool inside = (_grid.wraps || (box.west > -kHair && box.east < _grid.width + kHair)) &&
                        box.north > -kHair && box.south < _grid.height + kHair;
    const bool whole = samples && samples->isWhole() && inside;
    std::vector<std::shared_ptr<const HeightGrid>> outward;
    if (reachDegrees > 0.0 && !whole)
        outward = readOutward(box, level, reachDegrees, progress);
    if (!samples && outward.empty())
        return nullptr;
    return std::make_shared<const HeightWindow>(samples ? *samples : HeightGrid(), whole, std::move(outward),
                                                _grid, _resolutionDegrees * scale, _resolutionDegrees);
}

// A grid of one level is made of the level below, so that a cell that is only
// partly valid counts as that.
std::vector<std::shared_ptr<const HeightGrid>>
RasterSource::readOutward(const PixelBox& box, int level, double reachDegrees, ProgressCallback* progress)
{
    std::vector<std::shared_ptr<const HeightGrid>> grids;
    const std::shared_ptr<const HeightOverview> overview = heightOverview(progress);
    if (!overview)
        return grids;
    for (int n = level + 1; n <= _grid.levels() + 1; ++n) {
        const double pixels = std::ldexp(1.0, n);
        if (_resolutionDegrees * pixels >= reachDegrees)
            break;
        const PixelBox wide = box.widened(kSpareCells * pixels);
        const int kept = n - overview->firstLevel;
        if (kept >= static_cast<int>(overview->grids.size()))
            break;
        if (!overview->grids[static_cast<std::size_t>(std::max(0, kept))]->hasDataIn(wide))
            continue;
        if (kept >= 0) {
            grids.push_back(overview->grids[static_cast<std::size_t>(kept)]);
            continue;
        }
        const int below = n - 1;
        const int width = _grid.widthAt(below), height = _grid.heightAt(below);
        const double scaleX = static_cast<double>(_grid.width) / width;
        const double scaleY = static_cast<double>(_grid.height) / height;
        const auto even = [](double from, double scale) {
            return 2 * static_cast<int>(std::floor(from / scale / 2.0));
        };
        int x0 = even(std::max(wide.west, -1.0 * _grid.width), scaleX);
        int x1 = even(std::min(wide.east, 2.0 * _grid.width), scaleX) + 2;
        if (!_grid.wraps) {
            x0 = std::clamp(x0, 0, (width - 1) / 2 * 2);
            x1 = std::clamp(x1, x0 + 1, width);
        }
        const int y0 = std::clamp(even(std::max(0.0, wide.north), scaleY), 0, (height - 1) / 2 * 2);
        const int y1 = std::clamp(even(std::min(wide.south, 1.0 * _grid.height), scaleY) + 2, y0 + 1, height);
        const auto grid = readGrid(below, x0, y0, x1 - x0, y1 - y0, progress);
        if (grid && grid->hasData())
            grids.push_back(std::make_shared<HeightGrid>(grid->halved()));
    }
    return grids;
}

std::shared_ptr<const HeightOverview> RasterSource::heightOverview(ProgressCallback* progress)
{
    const std::lock_guard<std::mutex> lock(_overviewMutex);
    if (_overview)
        return _overview;
    int level = 0;
    while (static_cast<long long>(_grid.widthAt(level)) * _grid.heightAt(level) > _overviewPixels)
        ++level;
    osg::ref_ptr<ProgressCallback> told = progress;
    if (!told)
        told = new ProgressCallback;
    const auto read = readGrid(level, 0, 0, _grid.widthAt(level), _grid.heightAt(level), told.get());
    if (!read)
        return nullptr;
    const auto made = std::make_shared<HeightOverview>();
    made->exact = level == 0;
    HeightGrid grid = *read;
    if (_grid.wraps)
        grid.closeCircle();
    while (std::max(grid.columns(), grid.rows()) > kOverviewSide) {
        grid = grid.halved();
        ++level;
    }
    made->firstLevel = level;
    for (;;) {
        made->grids.push_back(std::make_shared<HeightGrid>(grid));
        if (grid.columns() <= 1 && grid.rows() <= 1)
            break;
        grid = grid.halved();
    }
    // A service without some of its tiles has more later.
    if (!told->needsRetry())
        _overview = made;
    return made;
}
} // namespace osgEarth

#include "sources/RasterSource.h"

#include "sources/GdalRaster.h"
#include "sources/HeightWindow.h"
#include "sources/Resampler.h"
#include "sources/TileService.h"

#include <osgEarth/Registry>

#include <algorithm>
#include <cmath>
#include <cstring>
#include <gdal.h>
#include <limits>

namespace osgEarth {
namespace {
// A window of more samples than this is a request gone wrong, not a tile.
constexpr long long kMaxWindowPixels = 4096LL * 4096LL;
// Tolerance for positions, pixels: more than rounding errors, less than can be seen.
constexpr double kHair = 1e-4;
constexpr double kDegreesPerMetre = 1.0 / 111319.49079327358;
} // namespace

int RasterGrid::levels() const
{
    int level = 0;
    while (level < 30 && (widthAt(level) > 1 || heightAt(level) > 1))
        ++level;
    return level;
}

RasterSource::~RasterSource() = default;

std::shared_ptr<RasterSource> RasterSource::open(const TileSourceOptions& options,
                                                 const RasterRequest& request, Status& out_status)
{
    const std::string& driver = options.getDriver();
    if (driver == "gdal")
        return GdalRaster::openFile(options, request, out_status);
    if (driver == "tms" || driver == "xyz")
        return openTileService(options, request, out_status);
    out_status = Status(Status::ConfigurationError, "there is no driver \"" + driver + "\"");
    return nullptr;
}

bool RasterSource::describe()
{
    if (!_grid.srs.valid() || !GDALInvGeoTransform(_grid.toSrs, _grid.fromSrs))
        return false;
    const double* g = _grid.toSrs;
    Bounds box;
    for (int corner = 0; corner < 4; ++corner) {
        const double c = (corner & 1) ? _grid.width : 0, r = (corner & 2) ? _grid.height : 0;
        box.expandBy(g[0] + c * g[1] + r * g[2], g[3] + c * g[4] + r * g[5]);
    }
    const SpatialReference* wgs84 = SpatialReference::get("wgs84");
    const bool degrees = _grid.srs->isGeographic();
    if (degrees)
        box = Bounds(box.xMin(), std::max(-90.0, box.yMin()), box.xMax(), std::min(90.0, box.yMax()));
    _geographicExtent = GeoExtent(_grid.srs.get(), box).transform(wgs84);
    if (!_geographicExtent.isValid())
        return false;
    _grid.wraps =
        degrees && _grid.northUp() && std::abs(std::abs(g[1]) * _grid.width - 360.0) < std::abs(g[1]) / 2.0;
    const double cell = std::min(std::hypot(g[1], g[4]), std::hypot(g[2], g[5]));
    _resolutionDegrees =
        degrees ? cell : _grid.srs->getUnits().convertTo(Units::METERS, cell) * kDegreesPerMetre;
    if (!_profile.valid())
        _profile = Registry::instance()->getGlobalGeodeticProfile();
    return true;
}

template <typename T, int N, typename Read>
RasterSource::Answer RasterSource::readWrapped(int level, int x, int w, int h, std::vector<T>& out, Read read)
{
    const int width = _grid.widthAt(level);
    out.resize(static_cast<size_t>(w) * static_cast<size_t>(h) * N);
    if (x >= 0 && x + w <= width)
        return read(x, w, out.data());

    // In pieces that lie side by side within the raster.
    Answer all = Answer::Nothing;
    std::vector<T> piece;
    for (int done = 0; done < w;) {
        const int from = (((x + done) % width) + width) % width;
        const int count = std::min(w - done, width - from);
        piece.resize(static_cast<size_t>(count) * static_cast<size_t>(h) * N);
        const Answer answer = read(from, count, piece.data());
        if (answer == Answer::Failed)
            return answer;
        if (answer == Answer::Nothing)
            std::fill(piece.begin(), piece.end(),
                      std::numeric_limits<T>::has_quiet_NaN ? std::numeric_limits<T>::quiet_NaN() : T(0));
        else
            all = Answer::Data;
        for (int row = 0; row < h; ++row)
            std::copy_n(piece.begin() + static_cast<std::ptrdiff_t>(row) * count * N, count * N,
                        out.begin() + (static_cast<std::ptrdiff_t>(row) * w + done) * N);
        done += count;
    }
    return all;
}

RasterSource::Answer RasterSource::readImage(const GeoExtent& extent, int size, osg::ref_ptr<osg::Image>& out,
                                             ProgressCallback* progress)
{
    const PixelMap map(extent, size, _grid);
    double c0, r0, c1, r1;
    if (!map.bounds(c0, r0, c1, r1))
        return Answer::Nothing;
    if (!_grid.wraps && (c0 > _grid.width || c1 < 0.0))
        return Answer::Nothing;
    if (r0 > _grid.height || r1 < 0.0)
        return Answer::Nothing;

    int level = std::clamp(static_cast<int>(std::lround(std::log2(map.step()))), 0, _grid.levels());
    PixelWindow window;
    double scaleX = 1.0, scaleY = 1.0;
    for (;; ++level) {
        const int width = _grid.widthAt(level), height = _grid.heightAt(level);
        scaleX = static_cast<double>(_grid.width) / width;
        scaleY = static_cast<double>(_grid.height) / height;
        // The pixels whose centres enclose the outermost positions; one that lies
        // on a centre needs no neighbour beyond, so a tile of the raster's own grid
        // reads no other tile.
        const auto first = [](double p) { return static_cast<int>(std::floor(p - 0.5 + kHair)); };
        const auto last = [](double p) { return static_cast<int>(std::ceil(p - 0.5 - kHair)); };
        int x0 = first(std::max(c0, -1.0 * _grid.width) / scaleX);
        int x1 = last(std::min(c1, 2.0 * _grid.width) / scaleX) + 1;
        if (!_grid.wraps) {
            x0 = std::clamp(x0, 0, width - 1);
            x1 = std::clamp(x1, x0 + 1, width);
        }
        x1 = std::max(x1, x0 + 1);
        const int y0 = std::clamp(first(std::max(r0, 0.0) / scaleY), 0, height - 1);
        const int y1 = std::clamp(last(std::min<double>(r1, _grid.height) / scaleY) + 1, y0 + 1, height);
        window.x = x0;
        window.y = y0;
        window.width = x1 - x0;
        window.height = y1 - y0;
        if (static_cast<long long>(window.width) * window.height <= kMaxWindowPixels ||
            level >= _grid.levels())
            break;
    }

    const Answer answer = readWrapped<unsigned char, 4>(
        level, window.x, window.width, window.height, window.rgba, [&](int x, int w, unsigned char* rgba) {
            return readRgba(level, x, window.y, w, window.height, rgba, progress);
        });
    if (answer != Answer::Data)
        return answer;
    osg::ref_ptr<osg::Image> image = new osg::Image;
    image->allocateImage(size, size, 1, GL_RGBA, GL_UNSIGNED_BYTE);
    if (!drawBilinear(map, size, window, scaleX, scaleY, _grid, image->data()))
        return Answer::Nothing;
    out = image;
    return Answer::Data;
}

std::shared_ptr<const HeightWindow>
RasterSource::readHeights(const GeoExtent& extent, double wantedCellDegrees, ProgressCallback* progress)
{
    if (!extent.isValid() || !_geographicExtent.intersects(extent))
        return nullptr;
    // The rectangle in the raster's own system, then in its columns and rows.
    double xmin = extent.west(), ymin = extent.south(), xmax = extent.west() + extent.width(),
           ymax = extent.north();
    if (!extent.getSRS()->transformExtentToMBR(_grid.srs.get(), xmin, ymin, xmax, ymax))
        return nullptr;
    if (_grid.srs->isGeographic()) {
        const double centre = _grid.toSrs[0] + _grid.toSrs[1] * _grid.width / 2.0;
        const double shift = 360.0 * std::round((centre - (xmin + xmax) / 2.0) / 360.0);
        xmin += shift;
        xmax += shift;
    }
    double c0 = INFINITY, r0 = INFINITY, c1 = -INFINITY, r1 = -INFINITY;
    const double* f = _grid.fromSrs;
    for (int corner = 0; corner < 4; ++corner) {
        const double x = (corner & 1) ? xmax : xmin, y = (corner & 2) ? ymax : ymin;
        const double c = f[0] + f[1] * x + f[2] * y, r = f[3] + f[4] * x + f[5] * y;
        c0 = std::min(c0, c);
        c1 = std::max(c1, c);
        r0 = std::min(r0, r);
        r1 = std::max(r1, r);
    }
    if (!_grid.wraps && (c0 > _grid.width || c1 < 0.0))
        return nullptr;
    if (r0 > _grid.height || r1 < 0.0)
        return nullptr;

    int level = 0;
    if (_resolutionDegrees > 0.0 && wantedCellDegrees > _resolutionDegrees)
        level =
            std::clamp(static_cast<int>(std::floor(std::log2(wantedCellDegrees / _resolutionDegrees) + 1e-6)),
                       0, _grid.levels());
    for (;; ++level) {
        const int width = _grid.widthAt(level), height = _grid.heightAt(level);
        const double scaleX = static_cast<double>(_grid.width) / width;
        const double scaleY = static_cast<double>(_grid.height) / height;
        int x0 = static_cast<int>(std::floor(std::max(c0, -1.0 * _grid.width) / scaleX - 0.5)) - 1;
        int x1 = static_cast<int>(std::ceil(std::min(c1, 2.0 * _grid.width) / scaleX + 0.5)) + 1;
        if (!_grid.wraps) {
            x0 = std::clamp(x0, 0, width - 1);
            x1 = std::clamp(x1, x0 + 1, width);
        }
        const int y0 = std::clamp(static_cast<int>(std::floor(r0 / scaleY - 0.5)) - 1, 0, height - 1);
        const int y1 = std::clamp(static_cast<int>(std::ceil(r1 / scaleY + 0.5)) + 1, y0 + 1, height);
        const int w = x1 - x0, h = y1 - y0;
        if (static_cast<long long>(w) * h > kMaxWindowPixels && level < _grid.levels())
            continue;

        std::vector<float> samples;
        const Answer answer =
            readWrapped<float, 1>(level, x0, w, h, samples, [&](int x, int count, float* heights) {
                return readFloats(level, x, y0, count, h, heights, progress);
            });
        if (answer != Answer::Data ||
            std::all_of(samples.begin(), samples.end(), [](float v) { return std::isnan(v); }))
            return nullptr;
        const double* g = _grid.toSrs;
        const double toSource[6] = {
            g[0] + x0 * scaleX * g[1] + y0 * scaleY * g[2], g[1] * scaleX, g[2] * scaleY,
            g[3] + x0 * scaleX * g[4] + y0 * scaleY * g[5], g[4] * scaleX, g[5] * scaleY};
        return std::make_shared<const HeightWindow>(std::move(samples), w, h, toSource, _grid.srs.get(),
                                                    _resolutionDegrees * std::max(scaleX, scaleY));
    }
}
} // namespace osgEarth

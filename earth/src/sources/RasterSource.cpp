#include "sources/RasterSource.h"

#include "sources/GdalRaster.h"
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
// Tolerance for positions, pixels: more than rounding errors, less than can be seen.
constexpr double kPixelHair = 1e-4;
constexpr double kDegreesPerMetre = 1.0 / 111319.49079327358;
} // namespace

int RasterGrid::levels() const
{
    int level = 0;
    while (level < 30 && (widthAt(level) > 1 || heightAt(level) > 1))
        ++level;
    return level;
}

RasterSource::RasterSource() : _resampling(Resampling::Bilinear) {}

RasterSource::~RasterSource() = default;

bool RasterSource::isNearest(const TileSourceOptions& options)
{
    return options.getConfig().value("interpolation") == "nearest";
}

std::shared_ptr<RasterSource> RasterSource::open(const TileSourceOptions& options,
                                                 const RasterRequest& request, Status& out_status)
{
    const std::string& driver = options.getDriver();
    std::shared_ptr<RasterSource> source;
    if (driver == "gdal")
        source = GdalRaster::openFile(options, request, out_status);
    else if (driver == "tms" || driver == "xyz")
        source = openTileService(options, request, out_status);
    else
        out_status = Status(Status::ConfigurationError, "there is no driver \"" + driver + "\"");
    if (source && isNearest(options))
        source->_resampling = Resampling::Nearest;
    return source;
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

RasterSource::Answer RasterSource::readFloatsWrapped(int level, int x, int y, int w, int h,
                                                     std::vector<float>& out, ProgressCallback* progress)
{
    return readWrapped<float, 1>(level, x, w, h, out, [&](int from, int count, float* heights) {
        return readFloats(level, from, y, count, h, heights, progress);
    });
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
        const auto first = [](double p) { return static_cast<int>(std::floor(p - 0.5 + kPixelHair)); };
        const auto last = [](double p) { return static_cast<int>(std::ceil(p - 0.5 - kPixelHair)); };
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
    if (!drawWindow(map, size, window, scaleX, scaleY, _grid, _resampling, image->data()))
        return Answer::Nothing;
    out = image;
    return Answer::Data;
}
} // namespace osgEarth

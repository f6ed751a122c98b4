#include "sources/Resampler.h"

#include "globe/Wgs84.h"
#include "sources/RasterSource.h"

#include <algorithm>
#include <cmath>
#include <limits>

namespace osgEarth {
namespace {
// Spacing of the points that are transformed exactly; between them positions
// are interpolated where that errs by less than the tolerance.
constexpr int kGridStep = 16;
constexpr double kTolerancePixels = 0.1;
constexpr double kNaN = std::numeric_limits<double>::quiet_NaN();

osg::Vec3d toRaster(const RasterGrid& grid, const osg::Vec3d& p)
{
    const double* g = grid.fromSrs;
    return {g[0] + g[1] * p.x() + g[2] * p.y(), g[3] + g[4] * p.x() + g[5] * p.y(), 0.0};
}

// Longitudes of the tile next to those of the raster: 190 for -170. In the raster's own unit, for its extent
// may have been brought to other degrees than its coordinates.
double longitudeShift(osg::Vec3d middle, const SpatialReference* srs, const RasterGrid& grid)
{
    constexpr double mercatorTurn = 2.0 * 3.14159265358979323846 * wgs84::kEquatorialRadius;
    const bool isMercator = grid.srs->isSphericalMercator();
    if (!grid.srs->isGeographic() && !isMercator)
        return 0.0;
    if (!srs->isEquivalentTo(grid.srs.get()) && !srs->transform(middle, grid.srs.get(), middle))
        return 0.0;
    const double turn = isMercator ? mercatorTurn : 360.0;
    const double centre = grid.toSrs[0] + grid.toSrs[1] * grid.width / 2.0;
    return turn * std::round((centre - middle.x()) / turn);
}
} // namespace

PixelMap::PixelMap(const GeoExtent& extent, int size, const RasterGrid& grid) : _size(size)
{
    const SpatialReference* a = extent.getSRS();
    const SpatialReference* b = grid.srs.get();
    const auto cylindrical = [](const SpatialReference* s) {
        return s->isSphericalMercator() || s->isGeographic();
    };
    const bool sameDatum = a->getGeographicSRS()->isEquivalentTo(b->getGeographicSRS());
    _separable = grid.northUp() && (a->isEquivalentTo(b) || (cylindrical(a) && cylindrical(b) && sameDatum));
    if (_separable)
        mapSeparably(extent, grid);
    else
        mapGrid(extent, grid);
    measureStep();
}

void PixelMap::mapSeparably(const GeoExtent& extent, const RasterGrid& grid)
{
    const SpatialReference* a = extent.getSRS();
    const SpatialReference* b = grid.srs.get();
    const bool same = a->isEquivalentTo(b);
    const double midX = extent.west() + extent.width() / 2.0;
    const double midY = std::clamp(0.0, extent.south(), extent.north());
    const double shift = longitudeShift({midX, midY, 0.0}, a, grid);
    _columns.assign(static_cast<size_t>(_size), kNaN);
    _rows.assign(static_cast<size_t>(_size), kNaN);
    for (int i = 0; i < _size; ++i) {
        const double f = (i + 0.5) / _size;
        osg::Vec3d p(extent.west() + extent.width() * f, midY, 0.0);
        if (same || a->transform(p, b, p))
            _columns[static_cast<size_t>(i)] = toRaster(grid, p + osg::Vec3d(shift, 0.0, 0.0)).x();
        osg::Vec3d q(midX, extent.south() + extent.height() * f, 0.0);
        if (same || a->transform(q, b, q))
            _rows[static_cast<size_t>(i)] = toRaster(grid, q).y();
    }
}

void PixelMap::mapGrid(const GeoExtent& extent, const RasterGrid& grid)
{
    const SpatialReference* a = extent.getSRS();
    const SpatialReference* b = grid.srs.get();
    const auto position = [&](double column, double row) {
        return osg::Vec3d(extent.west() + extent.width() * column / _size,
                          extent.south() + extent.height() * row / _size, 0.0);
    };
    const double shift = longitudeShift(position(0.5 * _size, 0.5 * _size), a, grid);
    // Transforms all at once; what fails is NaN.
    const auto transformAll = [&](std::vector<osg::Vec3d>& points) {
        const std::vector<osg::Vec3d> before = points;
        const bool good = a->transform(points, b);
        for (size_t i = 0; i < points.size(); ++i) {
            osg::Vec3d again;
            if (!good && points[i] == before[i] && !a->transform(before[i], b, again))
                points[i].set(kNaN, kNaN, 0.0);
            else
                points[i] = toRaster(grid, points[i] + osg::Vec3d(shift, 0.0, 0.0));
        }
    };

    const int cells = (_size + kGridStep - 1) / kGridStep;
    std::vector<osg::Vec3d> nodes, centres;
    for (int r = 0; r <= cells; ++r)
        for (int c = 0; c <= cells; ++c)
            nodes.push_back(position(c * kGridStep, r * kGridStep));
    for (int r = 0; r < cells; ++r)
        for (int c = 0; c < cells; ++c)
            centres.push_back(position((c + 0.5) * kGridStep, (r + 0.5) * kGridStep));
    transformAll(nodes);
    transformAll(centres);

    const auto node = [&](int c, int r) -> const osg::Vec3d& {
        return nodes[static_cast<size_t>(r * (cells + 1) + c)];
    };
    double error = 0.0;
    for (int r = 0; r < cells; ++r)
        for (int c = 0; c < cells; ++c) {
            const osg::Vec3d mean = (node(c, r) + node(c + 1, r) + node(c, r + 1) + node(c + 1, r + 1)) / 4.0;
            const double d = (mean - centres[static_cast<size_t>(r * cells + c)]).length();
            const double step = (node(c + 1, r) - node(c, r)).length() / kGridStep;
            const double e = d / std::max(1.0, step);
            error = std::isnan(e) ? std::numeric_limits<double>::infinity() : std::max(error, e);
        }

    const auto total = static_cast<size_t>(_size) * static_cast<size_t>(_size);
    _columns.resize(total);
    _rows.resize(total);
    if (error > kTolerancePixels) {
        std::vector<osg::Vec3d> all;
        all.reserve(total);
        for (int r = 0; r < _size; ++r)
            for (int c = 0; c < _size; ++c)
                all.push_back(position(c + 0.5, r + 0.5));
        transformAll(all);
        for (size_t i = 0; i < total; ++i) {
            _columns[i] = all[i].x();
            _rows[i] = all[i].y();
        }
        return;
    }
    for (int r = 0; r < _size; ++r) {
        const int cellR = r / kGridStep;
        const double fr = (r + 0.5) / kGridStep - cellR;
        for (int c = 0; c < _size; ++c) {
            const int cellC = c / kGridStep;
            const double fc = (c + 0.5) / kGridStep - cellC;
            const osg::Vec3d south = node(cellC, cellR) * (1.0 - fc) + node(cellC + 1, cellR) * fc;
            const osg::Vec3d north = node(cellC, cellR + 1) * (1.0 - fc) + node(cellC + 1, cellR + 1) * fc;
            const osg::Vec3d p = south * (1.0 - fr) + north * fr;
            const auto i = static_cast<size_t>(r) * static_cast<size_t>(_size) + static_cast<size_t>(c);
            _columns[i] = p.x();
            _rows[i] = p.y();
        }
    }
}

void PixelMap::measureStep()
{
    const auto n = static_cast<size_t>(_size);
    double across, along;
    if (_separable) {
        across = std::abs(_columns[n - 1] - _columns[0]) / (_size - 1);
        along = std::abs(_rows[n - 1] - _rows[0]) / (_size - 1);
    } else {
        const size_t mid = n / 2 * n + n / 2;
        across = std::hypot(_columns[mid + 1] - _columns[mid], _rows[mid + 1] - _rows[mid]);
        along = std::hypot(_columns[mid + n] - _columns[mid], _rows[mid + n] - _rows[mid]);
    }
    const double step = std::isnan(across) ? along : std::isnan(along) ? across : std::min(across, along);
    _step = std::isfinite(step) && step > 0.0 ? step : 1.0;
}

bool PixelMap::bounds(double& c0, double& r0, double& c1, double& r1) const
{
    c0 = r0 = std::numeric_limits<double>::infinity();
    c1 = r1 = -std::numeric_limits<double>::infinity();
    for (double c : _columns)
        if (std::isfinite(c)) {
            c0 = std::min(c0, c);
            c1 = std::max(c1, c);
        }
    for (double r : _rows)
        if (std::isfinite(r)) {
            r0 = std::min(r0, r);
            r1 = std::max(r1, r);
        }
    return c0 <= c1 && r0 <= r1;
}

namespace {
// The two neighbours of a position and the second one's share, in 1/256.
struct Tap
{
    int first = -1, second = -1;
    int share = 0;
};

Tap tapAt(double position, double scale, int limit, bool wraps, int origin, int count, Resampling resampling)
{
    // Positions slightly beyond the rim are rounding errors and count as inside.
    if (!(position >= -1e-6 && position <= limit + 1e-6) && !wraps)
        return {};
    if (!std::isfinite(position))
        return {};
    const double p = position / scale - 0.5 - origin;
    const double floor = std::floor(p);
    if (floor < -1.0 || floor > count)
        return {};
    Tap tap;
    const int i = static_cast<int>(floor);
    tap.first = std::clamp(i, 0, count - 1);
    tap.second = std::clamp(i + 1, 0, count - 1);
    tap.share = static_cast<int>((p - floor) * 256.0);
    if (resampling == Resampling::Nearest)
        tap.share = tap.share < 128 ? 0 : 256;
    return tap;
}

inline void blend(const unsigned char* row0, const unsigned char* row1, const Tap& x, int shareY,
                  unsigned char* out)
{
    const unsigned char* p[4] = {row0 + x.first * 4, row0 + x.second * 4, row1 + x.first * 4,
                                 row1 + x.second * 4};
    const int w[4] = {(256 - x.share) * (256 - shareY), x.share * (256 - shareY), (256 - x.share) * shareY,
                      x.share * shareY};
    if ((p[0][3] & p[1][3] & p[2][3] & p[3][3]) == 255) {
        for (int c = 0; c < 3; ++c)
            out[c] = static_cast<unsigned char>(
                (p[0][c] * w[0] + p[1][c] * w[1] + p[2][c] * w[2] + p[3][c] * w[3] + 32768) >> 16);
        out[3] = 255;
        return;
    }
    int64_t sum[3] = {0, 0, 0}, alpha = 0;
    for (int i = 0; i < 4; ++i) {
        const int64_t a = static_cast<int64_t>(w[i]) * p[i][3];
        alpha += a;
        for (int c = 0; c < 3; ++c)
            sum[c] += a * p[i][c];
    }
    if (alpha == 0) {
        out[0] = out[1] = out[2] = out[3] = 0;
        return;
    }
    for (int c = 0; c < 3; ++c)
        out[c] = static_cast<unsigned char>((sum[c] + alpha / 2) / alpha);
    out[3] = static_cast<unsigned char>((alpha + 32768) >> 16);
}
} // namespace

bool drawWindow(const PixelMap& map, int size, const PixelWindow& window, double scaleX, double scaleY,
                const RasterGrid& grid, Resampling resampling, unsigned char* out)
{
    const auto n = static_cast<size_t>(size);
    const auto rowStart = [&](int row) {
        return window.rgba.data() + static_cast<size_t>(row) * static_cast<size_t>(window.width) * 4;
    };
    const auto column = [&](double p) {
        return tapAt(p, scaleX, grid.width, grid.wraps, window.x, window.width, resampling);
    };
    const auto line = [&](double p) {
        return tapAt(p, scaleY, grid.height, false, window.y, window.height, resampling);
    };
    std::fill(out, out + n * n * 4, static_cast<unsigned char>(0));
    bool any = false;
    std::vector<Tap> taps;
    if (map.separable())
        for (double p : map.columns())
            taps.push_back(column(p));
    for (size_t r = 0; r < n; ++r) {
        Tap y;
        if (map.separable()) {
            y = line(map.rows()[r]);
            if (y.first < 0)
                continue;
        }
        unsigned char* target = out + r * n * 4;
        for (size_t c = 0; c < n; ++c, target += 4) {
            Tap x;
            if (map.separable())
                x = taps[c];
            else {
                x = column(map.columns()[r * n + c]);
                y = line(map.rows()[r * n + c]);
                if (y.first < 0)
                    continue;
            }
            if (x.first < 0)
                continue;
            blend(rowStart(y.first), rowStart(y.second), x, y.share, target);
            any = any || target[3] != 0;
        }
    }
    return any;
}
} // namespace osgEarth

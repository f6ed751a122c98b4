#include "sources/HeightWindow.h"

#include "sources/RasterSource.h"

#include <algorithm>
#include <cmath>
#include <gdal.h>
#include <limits>

namespace osgEarth {
HeightWindow::HeightWindow(std::vector<float> samples, int columns, int rows, const double toSource[6],
                           const SpatialReference* srs, double cellSizeDegrees)
    : _samples(std::move(samples)), _columns(columns), _rows(rows), _srs(srs),
      _geographic(srs->isGeographic() && srs->isEquivalentTo(SpatialReference::get("wgs84"))),
      _centreLongitude(toSource[0] + toSource[1] * columns / 2.0 + toSource[2] * rows / 2.0),
      _cellSizeDegrees(cellSizeDegrees)
{
    double copy[6];
    std::copy(toSource, toSource + 6, copy);
    // A source whose transform has no inverse is not opened.
    if (!GDALInvGeoTransform(copy, _fromSource))
        std::fill(_fromSource, _fromSource + 6, std::numeric_limits<double>::quiet_NaN());
}

std::optional<double> HeightWindow::heightAt(double lonDeg, double latDeg) const
{
    double x = lonDeg, y = latDeg;
    if (!_geographic) {
        static const SpatialReference* const wgs84 = SpatialReference::get("wgs84");
        if (!wgs84->transform2D(lonDeg, latDeg, _srs.get(), x, y))
            return std::nullopt;
    }
    // Brings x within half a turn of the window's centre. Nearly no sample needs it, so std::round is called
    // for those only.
    if (std::abs(_centreLongitude - x) > 180.0 && (_geographic || _srs->isGeographic()))
        x += 360.0 * std::round((_centreLongitude - x) / 360.0);
    const double column = _fromSource[0] + _fromSource[1] * x + _fromSource[2] * y;
    const double row = _fromSource[3] + _fromSource[4] * x + _fromSource[5] * y;
    // Positions up to kHair beyond the rim are rounding errors and count as inside. The negated
    // comparison takes NaN for outside.
    constexpr double kHair = 1e-6;
    if (!(column >= -kHair && column <= _columns + kHair && row >= -kHair && row <= _rows + kHair))
        return std::nullopt;

    const double c = std::clamp(column - 0.5, 0.0, _columns - 1.0);
    const double r = std::clamp(row - 0.5, 0.0, _rows - 1.0);
    const int c0 = std::min(static_cast<int>(c), _columns - 1), r0 = std::min(static_cast<int>(r), _rows - 1);
    const double fc = c - c0, fr = r - r0;
    const int c1 = std::min(c0 + 1, _columns - 1), r1 = std::min(r0 + 1, _rows - 1);
    const auto at = [this](int cc, int rr) {
        return static_cast<double>(
            _samples[static_cast<size_t>(rr) * static_cast<size_t>(_columns) + static_cast<size_t>(cc)]);
    };
    // A sample without data counts only where its weight is nothing.
    const auto mix = [](double a, double b, double f) {
        return f <= 0.0 ? a : f >= 1.0 ? b : a + (b - a) * f;
    };
    const double height =
        mix(mix(at(c0, r0), at(c1, r0), fc), fr > 0.0 ? mix(at(c0, r1), at(c1, r1), fc) : 0.0, fr);
    if (std::isnan(height))
        return std::nullopt;
    return height;
}
} // namespace osgEarth

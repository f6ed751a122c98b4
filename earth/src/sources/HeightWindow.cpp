#include "sources/HeightWindow.h"

#include "sources/RasterSource.h"

#include <algorithm>
#include <cmath>

namespace osgEarth {
HeightWindow::HeightWindow(HeightGrid samples, bool whole,
                           std::vector<std::shared_ptr<const HeightGrid>> outward, const RasterGrid& raster,
                           double cellSizeDegrees, double fullCellSizeDegrees)
    : _samples(std::move(samples)), _isWhole(whole), _outward(std::move(outward)), _srs(raster.srs),
      _geographic(_srs->isGeographic() && _srs->isEquivalentTo(SpatialReference::get("wgs84"))),
      _cellSizeDegrees(cellSizeDegrees), _degreesPerPixel(fullCellSizeDegrees)
{
    std::copy(raster.fromSrs, raster.fromSrs + 6, _fromSource);
    double column = 0.5 * raster.width, row = 0.5 * raster.height;
    if (!_samples.empty()) {
        const HeightGrid::Place& place = _samples.place();
        column = place.firstColumn + 0.5 * place.cellWidth * _samples.columns();
        row = place.firstRow + 0.5 * place.cellHeight * _samples.rows();
    }
    _centreLongitude = raster.toSrs[0] + raster.toSrs[1] * column + raster.toSrs[2] * row;
}

bool HeightWindow::locate(double lonDeg, double latDeg, double& column, double& row) const
{
    double x = lonDeg, y = latDeg;
    if (!_geographic) {
        static const SpatialReference* const wgs84 = SpatialReference::get("wgs84");
        if (!wgs84->transform2D(lonDeg, latDeg, _srs.get(), x, y))
            return false;
    }
    // Brings x within half a turn of the window's centre. Nearly no sample needs it, so std::round is called
    // for those only.
    if (std::abs(_centreLongitude - x) > 180.0 && (_geographic || _srs->isGeographic()))
        x += 360.0 * std::round((_centreLongitude - x) / 360.0);
    column = _fromSource[0] + _fromSource[1] * x + _fromSource[2] * y;
    row = _fromSource[3] + _fromSource[4] * x + _fromSource[5] * y;
    return true;
}

bool HeightWindow::sample(const std::vector<double>& lonsDeg, const std::vector<double>& latsDeg,
                          float* heights) const
{
    if (!_isWhole || !_geographic || _fromSource[2] != 0.0 || _fromSource[4] != 0.0)
        return false;
    std::vector<double> columns, rows;
    double column = 0.0, row = 0.0;
    for (const double longitude : lonsDeg) {
        locate(longitude, 0.0, column, row);
        columns.push_back(column);
    }
    for (const double latitude : latsDeg) {
        locate(_centreLongitude, latitude, column, row);
        rows.push_back(row);
    }
    _samples.sampleWhole(columns, rows, heights);
    return true;
}

std::optional<double> HeightWindow::heightAt(double lonDeg, double latDeg) const
{
    double column = 0.0, row = 0.0;
    if (!locate(lonDeg, latDeg, column, row))
        return std::nullopt;
    const HeightSample sample = at(column, row);
    return sample.cover >= 1.0 ? std::optional<double>(sample.height) : std::nullopt;
}
} // namespace osgEarth

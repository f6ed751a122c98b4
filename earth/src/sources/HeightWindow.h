#pragma once
#include <osgEarth/SpatialReference>

#include <optional>
#include <vector>

namespace osgEarth {
/// A copy in memory of a rectangle of a raster's height samples. Immutable,
/// so any thread may ask.
class HeightWindow
{
public:
    /// Rows from the north as GDAL gives them; `toSource` is the affine map
    /// from (column, row) of the copy, pixel corner, to the source's system, and
    /// `srs` that system. `noData` samples are NaN.
    HeightWindow(std::vector<float> samples, int columns, int rows, const double toSource[6],
                 const SpatialReference* srs, double cellSizeDegrees);

    /// Bilinear between sample centres in the source's own projection, metres;
    /// within half a sample of the raster's rim the rim sample counts. Empty
    /// outside and where a sample that matters has no data. WGS 84 degrees.
    std::optional<double> heightAt(double lonDeg, double latDeg) const;

    /// Degrees a sample on the ground, of the copy.
    double cellSizeDegrees() const { return _cellSizeDegrees; }
    size_t bytes() const { return _samples.size() * sizeof(float); }

private:
    std::vector<float> _samples;
    int _columns, _rows;
    double _fromSource[6];
    osg::ref_ptr<const SpatialReference> _srs;
    bool _geographic;
    double _centreLongitude;
    double _cellSizeDegrees;
};
} // namespace osgEarth

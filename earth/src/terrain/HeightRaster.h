#pragma once
#include <algorithm>
#include <cstddef>
#include <vector>

namespace osgEarth {
/// Length of a degree of latitude on the mean of the ellipsoid, rounded; for levels of detail and slopes, not
/// for positions.
constexpr double kMetresPerDegree = 111320.0;

/// Geographic rectangle of a tile, degrees.
struct TileBounds
{
    double west = 0.0;
    double south = 0.0;
    double east = 0.0;
    double north = 0.0;

    double width() const { return east - west; }
    double height() const { return north - south; }
};

/// Heights in metres on a regular geographic grid over a tile, row 0 in the
/// south, with `margin` further samples beyond each edge so that slopes at
/// the edge agree with the neighbour's.
class HeightRaster
{
public:
    HeightRaster() = default;
    HeightRaster(int size, int margin)
        : _size(size), _margin(margin), _stride(size + 2 * margin),
          _heights(static_cast<std::size_t>(_stride) * static_cast<std::size_t>(_stride), 0.0f)
    {
    }

    /// Samples along a side, both edges included, margin not.
    int size() const { return _size; }
    int margin() const { return _margin; }

    /// Column from the west and row from the south, each from -margin to size - 1 + margin.
    float& at(int column, int row) { return _heights[index(column, row)]; }
    float at(int column, int row) const { return _heights[index(column, row)]; }

    /// Bilinear height at (u, v), each 0 to 1 from the south-west corner.
    double interpolate(double u, double v) const
    {
        const double x = std::clamp(u, 0.0, 1.0) * (_size - 1);
        const double y = std::clamp(v, 0.0, 1.0) * (_size - 1);
        const int column = std::min(static_cast<int>(x), _size - 2);
        const int row = std::min(static_cast<int>(y), _size - 2);
        const double fx = x - column;
        const double fy = y - row;
        const double south = at(column, row) * (1.0 - fx) + at(column + 1, row) * fx;
        const double north = at(column, row + 1) * (1.0 - fx) + at(column + 1, row + 1) * fx;
        return south * (1.0 - fy) + north * fy;
    }

private:
    std::size_t index(int column, int row) const
    {
        return static_cast<std::size_t>(row + _margin) * static_cast<std::size_t>(_stride) +
               static_cast<std::size_t>(column + _margin);
    }

    int _size = 0;
    int _margin = 0;
    int _stride = 0;
    std::vector<float> _heights;
};
} // namespace osgEarth

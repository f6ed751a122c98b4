#pragma once
#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <limits>
#include <vector>

namespace osgEarth {
/// A height in metres and how much of it, 0 to 1, rests on samples with data.
struct HeightSample
{
    double height = 0.0;
    double cover = 0.0;
};

/// Heights in metres, NaN for none. Takes two bytes for each where all are whole metres, as those of most
/// models are, and four elsewhere. Immutable once made.
class HeightCells
{
public:
    HeightCells() = default;
    explicit HeightCells(std::vector<float> heights);

    std::size_t size() const { return std::max(_whole.size(), _exact.size()); }
    float operator[](std::size_t i) const
    {
        if (_whole.empty())
            return _exact[i];
        return _whole[i] == kHole ? std::numeric_limits<float>::quiet_NaN() : static_cast<float>(_whole[i]);
    }

private:
    static constexpr std::int16_t kHole = std::numeric_limits<std::int16_t>::min();

    // One of them is empty.
    std::vector<std::int16_t> _whole;
    std::vector<float> _exact;
};

/// A rectangle in columns and rows of a raster's full resolution, counted from the corner of its first pixel.
struct PixelBox
{
    double west = 0.0, north = 0.0, east = 0.0, south = 0.0;

    PixelBox widened(double pixels) const
    {
        return {west - pixels, north - pixels, east + pixels, south + pixels};
    }
};

/// Heights of cells that lie side by side in a raster; NaN has no data. One that
/// was halved knows of each cell how much of it has data, and the lowest and the
/// highest height there. Immutable once made.
class HeightGrid
{
public:
    /// Rows from the north. `first` is the north-west corner of the first cell
    /// and `cell` the size of one, both in pixels of the full resolution.
    struct Place
    {
        double firstColumn = 0.0, firstRow = 0.0;
        double cellWidth = 1.0, cellHeight = 1.0;
    };
    HeightGrid() = default;
    HeightGrid(std::vector<float> heights, int columns, int rows, const Place& place);

    int columns() const { return _columns; }
    int rows() const { return _rows; }
    const Place& place() const { return _place; }
    bool empty() const { return _heights.size() == 0; }
    /// Whether every cell has data.
    bool isWhole() const { return _whole; }
    /// Whether some cell has data.
    bool hasData() const { return _hasData; }
    /// Whether a cell in the box, or next to it, has data.
    bool hasDataIn(const PixelBox& box) const;

    /// The mean of the cells around a place, smooth from cell to cell (a quadratic
    /// B-spline). Cells beyond the grid have no data.
    HeightSample at(double column, double row) const;
    /// Bilinear between the centres of cells with data. The rim's cells go on
    /// beyond the grid: they are whole on the rim and gone one cell beyond it.
    HeightSample atWithRim(double column, double row) const;

    /// The heights of atWithRim() for all columns of all rows, of a grid that has data in every cell.
    void sampleWhole(const std::vector<double>& columns, const std::vector<double>& rows,
                     float* heights) const;

    float height(int column, int row) const { return _heights[index(column, row)]; }
    float lowest(int column, int row) const
    {
        return _lowest.empty() ? height(column, row) : _lowest[index(column, row)];
    }
    float highest(int column, int row) const
    {
        return _highest.empty() ? height(column, row) : _highest[index(column, row)];
    }

    /// Cells twice as wide and high, means of what has data.
    HeightGrid halved() const;
    /// The first column follows upon the last: a raster that goes round the globe.
    void closeCircle() { _circular = true; }

private:
    std::size_t index(int column, int row) const
    {
        return static_cast<std::size_t>(row) * static_cast<std::size_t>(_columns) +
               static_cast<std::size_t>(column);
    }
    double cover(std::size_t i) const;
    /// Two adjacent cells and the share of the second.
    struct Pair
    {
        int first = 0, second = 0;
        double share = 0.0;
    };
    /// Around a position in cells; those beyond the rim are the rim's.
    static Pair around(double position, int count);
    /// Bilinear between the four cells of two pairs, each of which has data.
    double between(const Pair& across, const Pair& down) const;
    HeightSample mix(const Pair& across, const Pair& down) const;

    int _columns = 0, _rows = 0;
    Place _place;
    bool _whole = false;
    bool _hasData = false;
    bool _circular = false;
    HeightCells _heights;
    /// Empty where each cell has data as a whole or not at all.
    std::vector<float> _cover, _lowest, _highest;
};
} // namespace osgEarth

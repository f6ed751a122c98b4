#include "sources/HeightGrid.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <limits>
#include <utility>

namespace osgEarth {
namespace {
constexpr float kNone = std::numeric_limits<float>::quiet_NaN();
/// Positions up to this many cells beyond the rim are rounding errors and count as inside.
constexpr double kCoverHair = 1e-6;

/// Weights of three neighbours in a quadratic B-spline, `offset` (-0.5 to 0.5) from the middle one.
std::array<double, 3> splineWeights(double offset)
{
    const double before = 0.5 - offset, after = 0.5 + offset;
    return {0.5 * before * before, 0.75 - offset * offset, 0.5 * after * after};
}
} // namespace

HeightCells::HeightCells(std::vector<float> heights)
{
    const auto fits = [](float h) {
        return std::isnan(h) ||
               (h > static_cast<float>(kHole) &&
                h <= static_cast<float>(std::numeric_limits<std::int16_t>::max()) && h == std::trunc(h));
    };
    if (!std::all_of(heights.begin(), heights.end(), fits)) {
        _exact = std::move(heights);
        return;
    }
    _whole.reserve(heights.size());
    for (const float h : heights)
        _whole.push_back(std::isnan(h) ? kHole : static_cast<std::int16_t>(h));
}

HeightGrid::HeightGrid(std::vector<float> heights, int columns, int rows, const Place& place)
    : _columns(columns), _rows(rows), _place(place)
{
    const auto holes = std::count_if(heights.begin(), heights.end(), [](float h) { return std::isnan(h); });
    _whole = holes == 0;
    _hasData = static_cast<std::size_t>(holes) < heights.size();
    _heights = HeightCells(std::move(heights));
}

double HeightGrid::cover(std::size_t i) const
{
    if (!_cover.empty())
        return static_cast<double>(_cover[i]);
    return std::isnan(_heights[i]) ? 0.0 : 1.0;
}

HeightGrid::Pair HeightGrid::around(double position, int count)
{
    const double centre = std::clamp(position - 0.5, 0.0, count - 1.0);
    const int first = static_cast<int>(centre);
    return {first, std::min(first + 1, count - 1), centre - first};
}

void HeightGrid::sampleWhole(const std::vector<double>& columns, const std::vector<double>& rows,
                             float* heights) const
{
    std::vector<Pair> across;
    across.reserve(columns.size());
    for (const double column : columns)
        across.push_back(around((column - _place.firstColumn) / _place.cellWidth, _columns));
    for (const double row : rows) {
        const Pair down = around((row - _place.firstRow) / _place.cellHeight, _rows);
        for (const Pair& pair : across)
            *heights++ = static_cast<float>(between(pair, down));
    }
}

double HeightGrid::between(const Pair& across, const Pair& down) const
{
    const auto onRow = [&](int row) {
        const double west = static_cast<double>(height(across.first, row));
        return west + (static_cast<double>(height(across.second, row)) - west) * across.share;
    };
    const double north = onRow(down.first);
    return north + (onRow(down.second) - north) * down.share;
}

HeightSample HeightGrid::mix(const Pair& across, const Pair& down) const
{
    HeightSample sum;
    for (const bool south : {false, true})
        for (const bool east : {false, true}) {
            const double weight =
                (east ? across.share : 1.0 - across.share) * (south ? down.share : 1.0 - down.share);
            if (weight <= 0.0)
                continue;
            const std::size_t i =
                index(east ? across.second : across.first, south ? down.second : down.first);
            const double share = weight * cover(i);
            if (share <= 0.0)
                continue;
            sum.cover += share;
            sum.height += share * static_cast<double>(_heights[i]);
        }
    if (sum.cover > 0.0)
        sum.height /= sum.cover;
    return sum;
}

HeightSample HeightGrid::at(double column, double row) const
{
    const double x = (column - _place.firstColumn) / _place.cellWidth - 0.5;
    const double y = (row - _place.firstRow) / _place.cellHeight - 0.5;
    // The negated comparison takes NaN for outside.
    if (!(y > -2.0 && y < _rows + 1.0 && std::isfinite(x)) ||
        (!_circular && !(x > -2.0 && x < _columns + 1.0)))
        return {};
    const double middleColumn = std::floor(x + 0.5), middleRow = std::floor(y + 0.5);
    const std::array<double, 3> across = splineWeights(x - middleColumn);
    const std::array<double, 3> down = splineWeights(y - middleRow);
    HeightSample sum;
    for (int r = 0; r < 3; ++r) {
        const int cellRow = static_cast<int>(middleRow) + r - 1;
        if (cellRow < 0 || cellRow >= _rows)
            continue;
        for (int c = 0; c < 3; ++c) {
            double cellColumn = middleColumn + c - 1;
            if (_circular)
                cellColumn -= std::floor(cellColumn / _columns) * _columns;
            else if (cellColumn < 0.0 || cellColumn >= _columns)
                continue;
            const std::size_t i = index(static_cast<int>(cellColumn), cellRow);
            const double share =
                across[static_cast<std::size_t>(c)] * down[static_cast<std::size_t>(r)] * cover(i);
            if (share <= 0.0)
                continue;
            sum.cover += share;
            sum.height += share * static_cast<double>(_heights[i]);
        }
    }
    if (sum.cover > 0.0)
        sum.height /= sum.cover;
    return sum;
}

HeightSample HeightGrid::atWithRim(double column, double row) const
{
    const double x = (column - _place.firstColumn) / _place.cellWidth;
    const double y = (row - _place.firstRow) / _place.cellHeight;
    // The negated comparison takes NaN for outside.
    if (!(x > -1.0 && x < _columns + 1.0 && y > -1.0 && y < _rows + 1.0))
        return {};
    const double beside = std::max({0.0, -x, x - _columns});
    const double above = std::max({0.0, -y, y - _rows});
    const Pair across = around(x, _columns), down = around(y, _rows);
    HeightSample sample;
    if (_whole && _cover.empty()) {
        sample = {between(across, down), 1.0};
    } else {
        sample = mix(across, down);
        if (sample.cover > 1.0 - kCoverHair)
            sample.cover = 1.0;
    }
    if (beside > kCoverHair)
        sample.cover *= 1.0 - beside;
    if (above > kCoverHair)
        sample.cover *= 1.0 - above;
    return sample;
}

bool HeightGrid::hasDataIn(const PixelBox& box) const
{
    if (!_hasData)
        return false;
    const auto reach = [](double from, double to, double first, double cell, int count) {
        return std::pair<int, int>(
            static_cast<int>(std::clamp(std::floor((from - first) / cell) - 1.0, 0.0, 1.0 * count)),
            static_cast<int>(std::clamp(std::floor((to - first) / cell) + 2.0, 0.0, 1.0 * count)));
    };
    const auto rows = reach(box.north, box.south, _place.firstRow, _place.cellHeight, _rows);
    auto columns = reach(box.west, box.east, _place.firstColumn, _place.cellWidth, _columns);
    // A box over the seam of a circle is not worth two rectangles: all columns, then.
    if (_circular && (box.west < _place.firstColumn + _place.cellWidth ||
                      box.east > _place.firstColumn + (_columns - 1) * _place.cellWidth))
        columns = {0, _columns};
    for (int row = rows.first; row < rows.second; ++row)
        for (int column = columns.first; column < columns.second; ++column)
            if (!std::isnan(height(column, row)))
                return true;
    return false;
}

HeightGrid HeightGrid::halved() const
{
    HeightGrid half;
    half._columns = (_columns + 1) / 2;
    half._rows = (_rows + 1) / 2;
    half._place = {_place.firstColumn, _place.firstRow, 2.0 * _place.cellWidth, 2.0 * _place.cellHeight};
    half._circular = _circular;
    half._hasData = _hasData;
    const std::size_t total = static_cast<std::size_t>(half._columns) * static_cast<std::size_t>(half._rows);
    std::vector<float> heights(total, kNone);
    half._lowest.assign(total, kNone);
    half._highest.assign(total, kNone);
    half._cover.assign(total, 0.0f);
    half._whole = true;
    for (int row = 0; row < half._rows; ++row)
        for (int column = 0; column < half._columns; ++column) {
            double sum = 0.0, share = 0.0;
            float low = std::numeric_limits<float>::max(), high = std::numeric_limits<float>::lowest();
            for (int y = 2 * row; y < std::min(2 * row + 2, _rows); ++y)
                for (int x = 2 * column; x < std::min(2 * column + 2, _columns); ++x) {
                    const double part = cover(index(x, y));
                    if (part <= 0.0)
                        continue;
                    share += part;
                    sum += part * static_cast<double>(height(x, y));
                    low = std::min(low, lowest(x, y));
                    high = std::max(high, highest(x, y));
                }
            const std::size_t i = half.index(column, row);
            half._cover[i] = static_cast<float>(0.25 * share);
            if (share <= 0.0) {
                half._whole = false;
                continue;
            }
            heights[i] = static_cast<float>(sum / share);
            half._lowest[i] = low;
            half._highest[i] = high;
        }
    half._heights = HeightCells(std::move(heights));
    return half;
}
} // namespace osgEarth

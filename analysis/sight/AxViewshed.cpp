#include "analysis/sight/AxViewshed.h"

#include <AxData/planner/AxPlanPlane.h>

#include <algorithm>
#include <cmath>
#include <limits>

namespace {
constexpr float unknownHeight = std::numeric_limits<float>::quiet_NaN();
// Between places of the projection that are computed; those in between are off by less than a centimetre.
constexpr double latticeMetres = 400.0;
// From there on longitudes do not go evenly from place to place.
constexpr double nearPole = 85.0;

int HalfOf(const AxViewshedQuestion& question)
{
    return static_cast<int>(std::ceil(question.radius / question.cell));
}

bool IsWithin(int i, int j, double radiusInCells)
{
    return std::hypot(i, j) <= radiusInCells;
}

/// Where the cells lie: the projection at every so many cells, and evenly in between.
class Places
{
public:
    Places(const AxViewshedQuestion& question, int halfSide)
        : plane({question.observer}), cell(question.cell), half(halfSide),
          step(std::abs(question.observer.y()) > nearPole
                   ? 1
                   : std::max(1, static_cast<int>(latticeMetres / question.cell))),
          count(2 * half / step + 2), middle(question.observer.x())
    {
        south.resize(static_cast<std::size_t>(count));
        north.resize(static_cast<std::size_t>(count));
    }

    /// Rows in ascending order.
    void GoTo(int row)
    {
        const int below = row / step;
        if (below != current) {
            if (below == current + 1)
                std::swap(south, north);
            else
                fill(below, south);
            fill(below + 1, north);
            current = below;
        }
        share = static_cast<double>(row - below * step) / step;
    }
    QPointF At(int column) const
    {
        const auto left = static_cast<std::size_t>(column / step);
        if (step == 1)
            return south[left];
        const double across = static_cast<double>(column) / step - static_cast<double>(left);
        const auto between = [](const QPointF& a, const QPointF& b, double at) { return a + (b - a) * at; };
        return between(between(south[left], south[left + 1], across),
                       between(north[left], north[left + 1], across), share);
    }

private:
    void fill(int latticeRow, std::vector<QPointF>& row) const
    {
        for (int i = 0; i < count; ++i) {
            QPointF place = plane.ToLngLat({(i * step - half) * cell, (latticeRow * step - half) * cell});
            place.rx() = middle + std::remainder(place.x() - middle, 360.0);
            row[static_cast<std::size_t>(i)] = place;
        }
    }

    AxPlanPlane plane;
    double cell;
    int half;
    int step; // cells between the places that are computed
    int count;
    double middle;
    int current = -2;
    double share = 0.0;
    std::vector<QPointF> south;
    std::vector<QPointF> north;
};

/// A grid as rays run through it: along one axis away from the observer, the other axis beside it.
struct Quarter
{
    const float* observer;
    std::ptrdiff_t along;
    std::ptrdiff_t beside;
};

/// Looks at the cell `i` cells away along the one axis and `j` (0 to i) along the other. Heights are from the
/// observer's eye.
AxViewshed::Cell Look(const Quarter& quarter, int i, int j, float target)
{
    const auto rise = static_cast<double>(target) / i;
    const float* row = quarter.observer;
    int rest = 0; // of the place on the beside axis, in i-ths of a cell
    const float part = 1.0f / static_cast<float>(i);
    bool isKnown = !std::isnan(target);
    for (int m = 1; m < i; ++m) {
        row += quarter.along;
        rest += j;
        if (rest >= i) {
            rest -= i;
            row += quarter.beside;
        }
        float height = *row;
        // A ray through a cell's middle asks no neighbour, who may be unknown.
        if (rest != 0)
            height += (row[quarter.beside] - height) * (static_cast<float>(rest) * part);
        if (height <= static_cast<float>(rise * m))
            continue;
        // What is not known compares with nothing; nor does anything with the height of an unknown end.
        if (!std::isnan(height) && !std::isnan(target))
            return AxViewshed::Hidden;
        isKnown = false;
    }
    return isKnown ? AxViewshed::Visible : AxViewshed::Unknown;
}

/// Heights above or below the eye in the tangent plane, the Earth's curve taken off.
std::vector<float> Lowered(const AxViewshedQuestion& question, const AxSightGrid& grid, double eye)
{
    const AxSight::Curvature curvature(question.observer.y());
    const double straight = 1.0 - question.refraction;
    std::vector<float> heights(grid.heights.size());
    for (int row = 0; row < grid.Side(); ++row)
        for (int column = 0; column < grid.Side(); ++column) {
            const double east = (column - grid.half) * grid.cell;
            const double north = (row - grid.half) * grid.cell;
            const std::size_t at = grid.At(column, row);
            heights[at] = static_cast<float>(static_cast<double>(grid.heights[at]) -
                                             straight * curvature.DropAt(east, north) - eye);
        }
    return heights;
}

std::vector<float> Transposed(const std::vector<float>& heights, int side)
{
    std::vector<float> other(heights.size());
    const auto n = static_cast<std::size_t>(side);
    for (std::size_t row = 0; row < n; ++row)
        for (std::size_t column = 0; column < n; ++column)
            other[column * n + row] = heights[row * n + column];
    return other;
}
} // namespace

AxViewshedFault AxViewshedFaultOf(const AxViewshedQuestion& question)
{
    if (!std::isfinite(question.observer.x()) || !(std::abs(question.observer.y()) <= 90.0) ||
        !std::isfinite(question.aboveGround) || !std::isfinite(question.targetAboveGround) ||
        !(question.refraction >= 0.0 && question.refraction <= AxSight::mostRefraction))
        return AxViewshedFault::NoPlace;
    if (!(question.radius > 0.0 && question.radius <= axWidestViewshed) ||
        !(question.cell > 0.0 && question.cell <= question.radius))
        return AxViewshedFault::WrongSize;
    return question.radius / question.cell > axMostViewshedCells ? AxViewshedFault::TooFine
                                                                 : AxViewshedFault::None;
}

AxSightGrid AxSightGridOf(const AxViewshedQuestion& question, const AxPlanGround& ground,
                          const AxSightProgress& progress)
{
    AxSightGrid grid;
    if (AxViewshedFaultOf(question) != AxViewshedFault::None || !ground)
        return grid;
    grid.half = HalfOf(question);
    grid.cell = question.cell;
    grid.heights.assign(static_cast<std::size_t>(grid.Side()) * static_cast<std::size_t>(grid.Side()),
                        unknownHeight);
    Places places(question, grid.half);
    const double radiusInCells = question.radius / question.cell;
    // The ground just beyond the edge stands beside rays to it.
    const double asked = radiusInCells + 1.5;
    for (int row = 0; row < grid.Side(); ++row) {
        if (progress && !progress(static_cast<double>(row) / grid.Side()))
            return {};
        places.GoTo(row);
        for (int column = 0; column < grid.Side(); ++column)
            if (IsWithin(column - grid.half, row - grid.half, asked)) {
                const QPointF place = places.At(column);
                if (const auto height = ground(place.x(), place.y()))
                    grid.heights[grid.At(column, row)] = static_cast<float>(*height);
            }
    }
    return grid;
}

AxViewshed AxViewshedOf(const AxViewshedQuestion& question, const AxSightGrid& grid,
                        const AxSightProgress& progress)
{
    AxViewshed found;
    found.question = question;
    found.fault = AxViewshedFaultOf(question);
    if (found.fault != AxViewshedFault::None)
        return found;
    if (grid.heights.empty()) {
        found.fault = AxViewshedFault::Interrupted;
        return found;
    }
    found.observerGround = static_cast<double>(grid.heights[grid.At(grid.half, grid.half)]);
    if (std::isnan(found.observerGround)) {
        found.fault = AxViewshedFault::NoGround;
        return found;
    }
    found.half = grid.half;
    found.cells.assign(grid.heights.size(), AxViewshed::Outside);
    const int side = grid.Side();
    const double radiusInCells = question.radius / grid.cell;
    const std::vector<float> byRows = Lowered(question, grid, found.observerGround + question.aboveGround);
    const std::vector<float> byColumns = Transposed(byRows, side);
    const std::size_t middle = grid.At(grid.half, grid.half);
    found.cells[middle] = AxViewshed::Visible;

    for (int i = 1; i <= grid.half; ++i) {
        if (progress &&
            !progress(static_cast<double>(i) * i / (static_cast<double>(grid.half) * grid.half))) {
            found = AxViewshed();
            found.question = question;
            found.fault = AxViewshedFault::Interrupted;
            return found;
        }
        for (const bool northward : {true, false}) {
            const float* observer = (northward ? byRows : byColumns).data() + middle;
            for (const int ahead : {1, -1})
                // Those on a diagonal are looked at northward and southward.
                for (int j = northward ? -i : 1 - i; j <= (northward ? i : i - 1); ++j) {
                    if (!IsWithin(i, j, radiusInCells))
                        continue;
                    const std::ptrdiff_t beside = j < 0 ? -1 : 1;
                    const std::ptrdiff_t along = ahead * static_cast<std::ptrdiff_t>(side);
                    const float target =
                        observer[i * along + j] + static_cast<float>(question.targetAboveGround);
                    const AxViewshed::Cell seen = Look({observer, along, beside}, i, std::abs(j), target);
                    const int column = grid.half + (northward ? j : ahead * i);
                    const int row = grid.half + (northward ? ahead * i : j);
                    found.cells[grid.At(column, row)] = seen;
                }
        }
    }
    for (const std::uint8_t cell : found.cells) {
        found.visible += cell == AxViewshed::Visible ? 1 : 0;
        found.hidden += cell == AxViewshed::Hidden ? 1 : 0;
        found.unknown += cell == AxViewshed::Unknown ? 1 : 0;
    }
    return found;
}

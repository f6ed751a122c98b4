#include "analysis/volume/AxVolume.h"
#include "analysis/volume/AxVolumeRim.h"

#include <algorithm>
#include <cmath>

namespace {
constexpr float unknownDifference = std::numeric_limits<float>::quiet_NaN();

/// All cells around one, and the error that the midpoint rule may have in it. NaN beside what is not known.
double MidpointError(const AxVolumeGrid& grid, const std::vector<float>& differences, std::size_t at)
{
    constexpr double ofSecondDifferences = 24.0;
    const auto columns = static_cast<std::size_t>(grid.columns);
    const std::size_t around[] = {at - 1, at + 1, at - columns, at + columns};
    double sum = -4.0 * static_cast<double>(differences[at]);
    for (const std::size_t beside : around)
        sum += grid.kinds[beside] == AxVolumeGrid::Inside ? static_cast<double>(differences[beside])
                                                          : AxVolume::none;
    return grid.cell * grid.cell * std::abs(sum) / ofSecondDifferences;
}

/// Of so many cells. Those at the ring and beside gaps count as the others do on the average.
double CellError(const AxVolumeGrid& grid, const std::vector<float>& differences, double cells)
{
    double error = 0.0;
    double counted = 0.0;
    const auto columns = static_cast<std::size_t>(grid.columns);
    for (std::size_t row = 1; row + 1 < static_cast<std::size_t>(grid.rows); ++row)
        for (std::size_t column = 1; column + 1 < columns; ++column) {
            const std::size_t at = row * columns + column;
            if (grid.kinds[at] != AxVolumeGrid::Inside)
                continue;
            const double here = MidpointError(grid, differences, at);
            if (std::isnan(here))
                continue;
            error += here;
            counted += 1.0;
        }
    return counted > 0.0 ? error * cells / counted : AxVolume::none;
}
} // namespace

AxVolume AxVolumeOf(const AxVolumeQuestion& question, const std::shared_ptr<const AxVolumeGrid>& grid,
                    const AxVolumeProgress& progress)
{
    AxVolume found;
    found.question = question;
    const auto fail = [&found](AxVolumeFault fault) {
        AxVolume none;
        none.question = found.question;
        none.fault = fault;
        return none;
    };
    if (!grid || grid->fault != AxVolumeFault::None)
        return fail(grid ? grid->fault : AxVolumeFault::Interrupted);
    found.question.cell = grid->cell;
    const AxVolumeBaseHeights base = AxVolumeBaseOf(question, *grid);
    if (base.fault != AxVolumeFault::None)
        return fail(base.fault);
    if (progress && !progress(0.5))
        return fail(AxVolumeFault::Interrupted);

    const double cellArea = grid->cell * grid->cell;
    found.grid = grid;
    found.differences.assign(grid->kinds.size(), unknownDifference);
    double known = 0.0;
    double unknown = 0.0;
    double above = 0.0;
    double below = 0.0;
    double highest = -std::numeric_limits<double>::infinity();
    double deepest = std::numeric_limits<double>::infinity();
    double baseLow = deepest;
    double baseHigh = highest;
    grid->EachCell([&](std::size_t at, double, double, double share) {
        const double height = base.heights[at];
        const double difference = static_cast<double>(grid->heights[at]) - height;
        if (std::isnan(difference)) {
            unknown += share;
            return;
        }
        found.differences[at] = static_cast<float>(difference);
        known += share;
        (difference > 0.0 ? above : below) += share * std::abs(difference);
        highest = std::max(highest, difference);
        deepest = std::min(deepest, difference);
        baseLow = std::min(baseLow, height);
        baseHigh = std::max(baseHigh, height);
    });
    if (!(known > 0.0))
        return fail(AxVolumeFault::NoGround);
    found.cut = above * cellArea;
    found.fill = below * cellArea;
    found.unknown = unknown * cellArea;
    found.area = known * cellArea + found.unknown;
    found.mean = (above - below) / known;
    found.highest = highest;
    found.deepest = deepest;
    found.baseLow = baseLow;
    found.baseHigh = baseHigh;
    found.cellError = CellError(*grid, found.differences, known);
    return found;
}

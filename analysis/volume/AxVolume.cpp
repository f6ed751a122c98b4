#include "analysis/volume/AxVolume.h"
#include "analysis/volume/AxVolumeRim.h"

#include <algorithm>
#include <cmath>
#include <optional>

namespace {
constexpr float unknownDifference = std::numeric_limits<float>::quiet_NaN();

/// All cells around one, and the error that the ground between their middles may make in it. NaN beside what
/// is not known.
double MidpointError(const AxVolumeGrid& grid, const std::vector<float>& differences, std::size_t at)
{
    // A crest or foot through the middle; ground that is bent evenly makes a third of it.
    constexpr double ofSecondDifferences = 8.0;
    const auto columns = static_cast<std::size_t>(grid.columns);
    const std::size_t around[] = {at - 1, at + 1, at - columns, at + columns};
    double sum = -4.0 * static_cast<double>(differences[at]);
    for (const std::size_t beside : around)
        sum += grid.kinds[beside] == AxVolumeGrid::Inside ? static_cast<double>(differences[beside])
                                                          : AxVolume::none;
    return grid.cell * grid.cell * std::abs(sum) / ofSecondDifferences;
}

/// Of so many cells. Those at the ring and beside gaps count as the others do on the average. Nothing when it
/// is ended.
template <typename GoesOn>
std::optional<double> CellError(const AxVolumeGrid& grid, const std::vector<float>& differences, double cells,
                                const GoesOn& goesOn)
{
    double error = 0.0;
    double counted = 0.0;
    const auto columns = static_cast<std::size_t>(grid.columns);
    for (std::size_t row = 1; row + 1 < static_cast<std::size_t>(grid.rows); ++row) {
        if (!goesOn(static_cast<double>(row) / grid.rows))
            return std::nullopt;
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
    }
    return counted > 0.0 ? error * cells / counted : AxVolume::none;
}

/// By its length, 0 to 1.
double KnownShareOf(const std::vector<AxVolumeRimPoint>& rim)
{
    double known = 0.0;
    double whole = 0.0;
    for (const AxVolumeRimPoint& point : rim) {
        whole += point.length;
        known += std::isfinite(point.height) ? point.length : 0.0;
    }
    return whole > 0.0 ? known / whole : 0.0;
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
    // So much of the work is each of three steps.
    constexpr double step = 1.0 / 3.0;
    const auto within = [&progress](double before) {
        return [&progress, before](double done) { return !progress || progress(before + step * done); };
    };
    const AxVolumeBaseHeights base = AxVolumeBaseOf(question, *grid, within(0.0));
    if (base.fault != AxVolumeFault::None)
        return fail(base.fault);

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
    const auto compare = [&](std::size_t at, double x, double y, double share) {
        const double height = base.At(at, x, y);
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
    };
    if (!grid->EachCell(compare, within(step)))
        return fail(AxVolumeFault::Interrupted);
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
    const auto error = CellError(*grid, found.differences, known, within(2.0 * step));
    if (!error)
        return fail(AxVolumeFault::Interrupted);
    found.cellError = *error;
    found.rimKnown = KnownShareOf(grid->rim);
    return found;
}

#pragma once

#include <AxData/AxDataExport.h>
#include <AxData/planner/AxPlanPlane.h>

#include <utility>
#include <vector>

/// A straight pass, in a plane whose x axis runs along the passes.
struct AXDATA_EXPORT AxPass
{
    int line = 0;                                     ///< passes of one line lie one behind the other
    double y = 0.0;                                   ///< of both ends
    double from = 0.0;                                ///< x of its west end
    double to = 0.0;                                  ///< x of its east end
    std::vector<std::pair<double, double>> gaps = {}; ///< x of holes that it flies across, from west to east
};

/// The passes over an area, by line and then from west to east.
struct AXDATA_EXPORT AxPassLayout
{
    std::vector<AxPass> passes; ///< in that order
    double spacing = 0.0;       ///< metres between lines, at most what was asked
};

/// Passes over the area that the rings bound (a ring within another one is a hole), in a plane whose x axis
/// runs along them. Each line stands for the band half a spacing to both sides of it, and its passes are as
/// long as the area is anywhere in that band, so that nothing at the rim is missed. Gaps in a line no longer
/// than shortestGap metres are flown across as gaps of the pass. With count, so many lines whatever the
/// spacing. Empty where the rings bound nothing.
AXDATA_EXPORT AxPassLayout AxLayPasses(const std::vector<AxPlanLine>& rings, double spacing,
                                       double shortestGap, int count = 0);

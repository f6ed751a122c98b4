#pragma once
#include "analysis/volume/AxVolumeGrid.h"

#include <limits>
#include <vector>

/// Heights of the base at the middles of a grid's cells, metres as the map has them; NaN outside, and where
/// the rim does not tell. `fault` is NoRim when nothing is known.
struct AxVolumeBaseHeights
{
    AxVolumeFault fault = AxVolumeFault::None;
    std::vector<double> heights;
};

/// The base that a question asks for. Any thread.
AxVolumeBaseHeights AxVolumeBaseOf(const AxVolumeQuestion& question, const AxVolumeGrid& grid);

#pragma once
#include "analysis/volume/AxVolumeGrid.h"

#include <cstddef>
#include <vector>

/// A plane over a grid; level until it is tilted.
struct AxVolumePlane
{
    double x = 0.0; ///< where it has its height, metres to the east of the grid's middle
    double y = 0.0; ///< to the north
    double height = 0.0;
    double east = 0.0;  ///< metres up a metre
    double north = 0.0; ///< the same

    double At(double atX, double atY) const { return height + east * (atX - x) + north * (atY - y); }
};

/// Heights of the base, metres as the map has them. `fault` is NoRim when nothing is known, Interrupted by
/// the caller.
struct AxVolumeBaseHeights
{
    AxVolumeFault fault = AxVolumeFault::None;
    AxVolumePlane plane;
    std::vector<float> heights; ///< of a surface, cell by cell, in the plane's place; else empty

    /// At the middle of what is inside of a cell; NaN where the rim does not tell.
    double At(std::size_t cell, double x, double y) const
    {
        return heights.empty() ? plane.At(x, y) : static_cast<double>(heights[cell]);
    }
};

/// The base that a question asks for. Any thread; `progress` as of AxVolumeGridOf().
AxVolumeBaseHeights AxVolumeBaseOf(const AxVolumeQuestion& question, const AxVolumeGrid& grid,
                                   const AxVolumeProgress& progress);

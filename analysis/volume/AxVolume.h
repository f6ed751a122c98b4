#pragma once
#include "analysis/volume/AxVolumeGrid.h"
#include "scene/base/AxEarthViewerExport.h"

#include <limits>
#include <memory>
#include <vector>

/// What lies between the ground and a base surface. A plain value.
struct AxVolume
{
    /// Stands for what is not known.
    static constexpr double none = std::numeric_limits<double>::quiet_NaN();

    AxVolumeQuestion question;                 ///< as it was asked; its cell as it was taken
    AxVolumeFault fault = AxVolumeFault::None; ///< why there are no figures
    double cut = none;                         ///< ground above the base, to be taken away, cubic metres
    double fill = none;                        ///< room below the base, to be filled in, cubic metres
    double area = none;                        ///< inside the ring, on the ellipsoid, square metres
    double unknown = none;   ///< of that, where ground or base are not known: no part of cut and fill
    double mean = none;      ///< of the ground above the base, metres; negative below
    double highest = none;   ///< the most that the ground stands above the base, metres; negative: nowhere
    double deepest = none;   ///< the most that it lies below, metres, as a negative number; positive: nowhere
    double baseLow = none;   ///< lowest height of the base in the area, metres as the map has them
    double baseHigh = none;  ///< its highest one
    double cellError = none; ///< see AxVolumeOf(), cubic metres
    double rimKnown = none;  ///< of the rim's length, 0 to 1: what the base hangs on, unless it is Height
    std::shared_ptr<const AxVolumeGrid> grid; ///< of the ground
    std::vector<float> differences; ///< ground less base, cell by cell, metres; NaN: not known, outside

    double Net() const { return cut - fill; } ///< what is left over, or is wanting, cubic metres
    /// A part of the rim is missing from the base.
    bool IsRimMissing() const { return question.base != AxVolumeBase::Height && rimKnown < 1.0; }
    /// Of the area, 0 to 1.
    double UnknownShare() const { return area > 0.0 ? unknown / area : 0.0; }
};

/**
 * Cut and fill between the ground of a grid and the question's base. Each cell counts with the part of it
 * that is inside and the difference at the middle of that part, as cut or as fill.
 *
 * - A plane fits the heights of the rim by least squares of the heights, all parts of the rim alike.
 * - The surface is the Delaunay triangulation of the rim's points: between two places of the rim it is
 *   straight, and it knows nothing of the ground inside.
 * - Lowest, highest and mean are of the rim, too; the base is level then.
 *
 * `cellError` tells how far off cut and fill may be because the ground between the middles of cells is not
 * looked at: cell^2 / 8 times the second differences, all parts added without their signs. That is what a
 * crest through the middle of a cell makes, between two even slopes; the midpoint rule of ground that is bent
 * evenly has cell^2 / 24 (P. J. Davis, P. Rabinowitz, Methods of Numerical Integration, 2.1). NaN where the
 * cells are too few to tell. How good the heights of the map are it does not know.
 *
 * Any thread; `progress` as of AxVolumeGridOf().
 */
AXEARTHVIEWER_EXPORT AxVolume AxVolumeOf(const AxVolumeQuestion& question,
                                         const std::shared_ptr<const AxVolumeGrid>& grid,
                                         const AxVolumeProgress& progress = {});

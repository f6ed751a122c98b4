#pragma once
#include "analysis/sight/AxSightGround.h"
#include "scene/base/AxEarthViewerExport.h"

#include <AxData/planner/AxPlanRequest.h>

#include <QPointF>

#include <atomic>
#include <cstdint>
#include <functional>
#include <vector>

/// From where, and how far, a viewshed is wanted.
struct AxViewshedQuestion
{
    QPointF observer;                                ///< longitude, latitude, degrees
    double aboveGround = 2.0;                        ///< of the observer, metres
    double targetAboveGround = 0.0;                  ///< of what is looked for, metres
    double radius = 10000.0;                         ///< metres along the ellipsoid
    double cell = 30.0;                              ///< side of a cell, metres
    double refraction = AxSight::standardRefraction; ///< 0 for none, to AxSight::mostRefraction
};

/// Larger ones are not computed: cells from the observer to the edge, and metres.
constexpr int axMostViewshedCells = 1000;
constexpr double axWidestViewshed = 50000.0;

/// Why a viewshed cannot be computed.
enum class AxViewshedFault
{
    None,
    NoPlace,     ///< the observer is on no place of the globe, or a height is not finite
    WrongSize,   ///< the radius or the cell is not above 0, or too large
    TooFine,     ///< more cells than axMostViewshedCells from the observer to the edge
    NoGround,    ///< the height of the ground below the observer is not known
    Interrupted, ///< by the caller
};
AXEARTHVIEWER_EXPORT AxViewshedFault AxViewshedFaultOf(const AxViewshedQuestion& question);

/// Heights of the ground on the azimuthal equidistant projection around the observer, in which lines of sight
/// are straight: a square of 2 * half + 1 cells a side, row by row from the south-west, the observer on the
/// middle of the middle one. Metres as the map has them, NaN where none is known. A plain value.
struct AxSightGrid
{
    int half = 0;               ///< cells from the middle one to the border
    double cell = 0.0;          ///< metres
    std::vector<float> heights; ///< of the cells

    int Side() const { return 2 * half + 1; } ///< cells
    /// The place of a cell among the heights.
    std::size_t At(int column, int row) const
    {
        return static_cast<std::size_t>(row) * static_cast<std::size_t>(Side()) +
               static_cast<std::size_t>(column);
    }
};

/// Told what is done, 0 to 1, now and then; ends the work when it returns false.
using AxSightProgress = std::function<bool(double done)>;

/// Asks for the height of each cell within the radius once; the corners of the square stay unknown. Empty
/// when called off. Any thread, as far as the ground may be asked there.
AXEARTHVIEWER_EXPORT AxSightGrid AxSightGridOf(const AxViewshedQuestion& question, const AxPlanGround& ground,
                                               const AxSightProgress& progress = {});

/// What can be seen from a place. A plain value.
struct AxViewshed
{
    /// What is known of a cell.
    enum Cell : std::uint8_t
    {
        Outside = 0, ///< beyond the radius
        Visible = 1,
        Hidden = 2,
        Unknown = 3, ///< the ground there or before it is not known, and no known ground hides it
    };

    AxViewshedQuestion question;                   ///< as it was asked
    AxViewshedFault fault = AxViewshedFault::None; ///< why there are no cells
    double observerGround = 0.0;                   ///< metres as the map has them
    int half = 0;                                  ///< as of the grid
    std::vector<std::uint8_t> cells;               ///< each a Cell, as those of the grid
    int visible = 0;                               ///< how many cells are
    int hidden = 0;                                ///< how many cells are
    int unknown = 0;                               ///< how many cells are

    int Side() const { return 2 * half + 1; } ///< cells
    /// How many lie within the radius.
    int Cells() const { return visible + hidden + unknown; }
};

/**
 * Looks from the observer to the middle of each cell over a grid of AxSightGridOf(). Where a ray passes
 * between two cells' middles, across the axis that it follows more closely, the ground is taken in between
 * them (the method R3 of W. R. Franklin, C. K. Ray and S. Mehta, Geometric Algorithms for Siting of Air
 * Defense Missile Batteries, 1994); a ray ends at the first ground that hides its end. The Earth's curve and
 * the refraction lower the grid beforehand. Any thread.
 */
AXEARTHVIEWER_EXPORT AxViewshed AxViewshedOf(const AxViewshedQuestion& question, const AxSightGrid& grid,
                                             const AxSightProgress& progress = {});

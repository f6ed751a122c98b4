#pragma once
#include "scene/base/AxEarthViewerExport.h"

#include <AxAlgorthm/AxPathMeasure.h>

#include <QList>
#include <QPointF>

#include <cstddef>
#include <cstdint>
#include <functional>
#include <vector>

/// Against what cut and fill are counted. The rim is the ground below the ring.
enum class AxVolumeBase
{
    PlaneOfRim,   ///< the plane that fits the rim best, tilted as it is
    SurfaceOfRim, ///< spanned between the rim's points, following all of them
    MeanOfRim,    ///< level, at the mean height of the rim
    LowestOfRim,  ///< level, at its lowest place
    HighestOfRim, ///< level, at its highest place
    Height,       ///< level, at a height that is given
};

/// Which volume is wanted.
struct AxVolumeQuestion
{
    QList<QPointF> ring; ///< corners, longitude and latitude in degrees; the first is not repeated
    AxVolumeBase base = AxVolumeBase::PlaneOfRim; ///< what is between it and the ground
    double height = 0.0;                          ///< of the base Height, metres as the map has them
    double cell = 0.0;                            ///< side of a cell, metres; 0: AxVolumeCellOf()
    bool mayBeLarge = false;                      ///< more than axManyVolumeCells are meant
};

/// From so many cells of the grid on, AxVolumeQuestion::mayBeLarge is asked for: seconds and hundreds of MB.
constexpr double axManyVolumeCells = 4.0e6;
/// With more, nothing is computed.
constexpr double axMostVolumeCells = 2.5e7;
/// Areas that reach farther from their middle are not computed, metres: beyond, the plane is off by more than
/// a hundred-thousandth.
constexpr double axWidestVolume = 50000.0;

/// Why there is no volume.
enum class AxVolumeFault
{
    None,
    NoArea,      ///< fewer than three corners, edges that cross, corners that are no places
    TooLarge,    ///< farther from the middle than axWidestVolume
    WrongNumber, ///< a cell or height that is none
    Coarse,      ///< cells so large that they tell nothing of the area
    Many,        ///< more cells than axManyVolumeCells, and that is not said to be meant
    TooMany,     ///< more than axMostVolumeCells
    NoGround,    ///< no height inside is known
    NoRim,       ///< no height of the rim is known, or too few for a plane
    NoMemory,    ///< what it takes is not to be had
    Interrupted, ///< by the caller
};

/// The side of a cell where none is chosen, metres: 1, 2 or 5 times a power of ten, 0.1 at least, and so that
/// 200 of them at least are as long as the longer side of the ring, and 10 as its breadth, which is twice the
/// area by the perimeter. Up to AxCoarsestVolumeCellOf() where that is more than axManyVolumeCells.
AXEARTHVIEWER_EXPORT double AxVolumeCellOf(const QList<QPointF>& ring);
/// The largest that tells something of the area, metres: 5 of them are as long as its breadth.
AXEARTHVIEWER_EXPORT double AxCoarsestVolumeCellOf(const QList<QPointF>& ring);

/// What a question takes before it is computed.
struct AxVolumeSize
{
    double cells = 0.0;     ///< of the box around the ring
    double megabytes = 0.0; ///< at its peak, about; without what other volumes hold
};
AXEARTHVIEWER_EXPORT AxVolumeSize AxVolumeSizeOf(const AxVolumeQuestion& question);

/// What is wrong with a question by itself.
AXEARTHVIEWER_EXPORT AxVolumeFault AxVolumeFaultOf(const AxVolumeQuestion& question);

/// A place of the rim.
struct AxVolumeRimPoint
{
    double x = 0.0;      ///< metres to the east of the grid's middle
    double y = 0.0;      ///< to the north
    double height = 0.0; ///< of the ground, metres as the map has them; NaN: not known
    double length = 0.0; ///< of the rim that it stands for, metres
};

/// Heights of the ground in and on a ring: cells of the azimuthal equidistant projection around their middle,
/// row by row from the south-west. A plain value.
struct AxVolumeGrid
{
    /// How much of a cell is inside the ring.
    enum Kind : std::uint8_t
    {
        Outside,
        Inside, ///< all of it
        Edge,   ///< see edges
    };
    /// A cell that the ring cuts.
    struct EdgeCell
    {
        std::size_t cell = 0; ///< column + row * columns
        double share = 0.0;   ///< that is inside, above 0 to 1
        double x = 0.0;       ///< the middle of that part, metres to the east of the grid's middle
        double y = 0.0;       ///< to the north
    };

    AxVolumeFault fault = AxVolumeFault::None; ///< why it is empty
    QPointF middle;                            ///< longitude, latitude, degrees
    double cell = 0.0;                         ///< side, metres
    int columns = 0;                           ///< of cells
    int rows = 0;                              ///< of cells
    std::vector<std::uint8_t> kinds;           ///< each a Kind
    std::vector<EdgeCell> edges;               ///< in the order of cells
    /// Metres as the map has them, at the middle of what is inside; NaN outside and where none is known.
    std::vector<float> heights;
    std::vector<AxVolumeRimPoint> rim; ///< no farther apart than a cell, 4,000 and the corners at most

    double West() const { return -0.5 * columns * cell; } ///< metres from the middle
    double South() const { return -0.5 * rows * cell; }   ///< metres from the middle
    /// Calls `visit(index, x, y, share)` for each cell that is inside or cut, in the order of cells, with the
    /// middle of its part inside.
    template <typename Visit> void EachCell(Visit visit) const
    {
        EachCell(visit, [](double) { return true; });
    }
    /// The same as long as `goesOn(done)`, called before each row with what is done, 0 to 1. False when that
    /// has ended it.
    template <typename Visit, typename GoesOn> bool EachCell(Visit visit, GoesOn goesOn) const
    {
        auto edge = edges.begin();
        for (int row = 0; row < rows; ++row) {
            if (!goesOn(static_cast<double>(row) / rows))
                return false;
            for (int column = 0; column < columns; ++column) {
                const std::size_t at = static_cast<std::size_t>(row) * static_cast<std::size_t>(columns) +
                                       static_cast<std::size_t>(column);
                if (kinds[at] == Inside)
                    visit(at, West() + (column + 0.5) * cell, South() + (row + 0.5) * cell, 1.0);
                else if (kinds[at] == Edge) {
                    visit(at, edge->x, edge->y, edge->share);
                    ++edge;
                }
            }
        }
        return true;
    }
};

/// Told what is done, 0 to 1, now and then; ends the work when it returns false.
using AxVolumeProgress = std::function<bool(double done)>;

/// Asks for the height of each cell once, and for those of the rim. Any thread, as far as the ground may be
/// asked there.
AXEARTHVIEWER_EXPORT AxVolumeGrid AxVolumeGridOf(const AxVolumeQuestion& question, const AxHeightAt& ground,
                                                 const AxVolumeProgress& progress = {});

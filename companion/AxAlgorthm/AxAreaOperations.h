#pragma once

#include <AxAlgorthm/AxAlgorthmExport.h>

#include <QList>
#include <QPointF>

/**
 * What can be made of areas on the ground: united, cut, grown, made simpler, turned. Rings are (longitude,
 * latitude) in degrees, WGS 84, the first point not repeated, in either direction, anywhere on the globe; the
 * edges are geodesics, as the map draws them. Points that an operation leaves where they were come back to
 * the bit, in whatever count of longitude they had.
 *
 * Places that are closer than 1 mm count as one, and what would be thinner than that on average is no area.
 * Any thread.
 */
namespace AxAreaOperations {

/// (longitude, latitude) in degrees; the first point is not repeated.
using Ring = QList<QPointF>;

/// A piece of ground.
struct Area
{
    Ring ring;         ///< around it
    QList<Ring> holes; ///< that are none of it
};

/// Why nothing came of an operation.
enum class Fault
{
    None,        ///< something did
    NotAnArea,   ///< fewer than three points, or one that is no place
    Crosses,     ///< a ring that crosses or touches itself
    TooLarge,    ///< a point more than 1,000 km from the middle of all
    BadMeasure,  ///< a length, angle or factor that is not finite or out of range
    NothingLeft, ///< no area remains
    NotCut,      ///< the line does not lead across
};

/// With a fault there are no areas.
struct Result
{
    QList<Area> areas;         ///< the largest first
    Fault fault = Fault::None; ///< why there are none
};

/// One area or more, with holes where gaps are enclosed.
AXALGORTHM_EXPORT Result Unite(const QList<Ring>& rings);
/// What of the first ring lies in none of the others.
AXALGORTHM_EXPORT Result Subtract(const Ring& ring, const QList<Ring>& others);
/// The parts, two at least, into which a line of two points or more cuts the ring. Where the line begins or
/// ends within the ring, its first or last piece cuts nothing.
AXALGORTHM_EXPORT Result Split(const Ring& ring, const QList<QPointF>& line);

/// The pieces, two at least, into which a line of two points or more is cut where another one crosses it, in
/// the order of the line; empty where none does, or for what is no line.
AXALGORTHM_EXPORT QList<QList<QPointF>> SplitLine(const QList<QPointF>& line, const QList<QPointF>& cut);

/// The ring grown by so many metres, up to 100,000, on all sides; a negative length shrinks it. Corners stay
/// corners, cut where they would reach twice as far.
AXALGORTHM_EXPORT Result Buffer(const Ring& ring, double metres);
/// All that lies within so many metres, above 0, of a line; its ends are round.
AXALGORTHM_EXPORT Result BufferLine(const QList<QPointF>& line, double metres);

/// Fewer points, whose edges lie no more than so many metres beside the ring; it does not come to cross
/// itself.
AXALGORTHM_EXPORT Result Simplify(const Ring& ring, double metres);
/// The same of a line of two points or more, whose ends stay; empty for what is no line.
AXALGORTHM_EXPORT QList<QPointF> SimplifyLine(const QList<QPointF>& line, double metres);

// These take rings and lines alike; lengths and angles from the centre are those on the ground. Empty for a
// measure that is not finite, a factor that is not above 0, a point that is no place, and beyond 1,000 km.

/// Turned clockwise around the centre, as seen from above.
AXALGORTHM_EXPORT QList<QPointF> Rotated(const QList<QPointF>& points, double degrees, const QPointF& centre);
/// Stretched from the centre: `along` in the direction of the heading, degrees clockwise from north, and
/// `across` at a right angle to it.
AXALGORTHM_EXPORT QList<QPointF> Scaled(const QList<QPointF>& points, double along, double across,
                                        const QPointF& centre, double heading = 0.0);

/// Square metres on the ellipsoid, without the holes.
AXALGORTHM_EXPORT double SquareMetres(const Area& area);

} // namespace AxAreaOperations

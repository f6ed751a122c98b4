#pragma once
#include "scene/base/AxEarthViewerExport.h"

#include <osg/Vec3d>

#include <optional>
#include <vector>

/// A rectangle on the ground by its measures.
struct AxRectangle
{
    osg::Vec3d centre;      ///< longitude and latitude in degrees, 0
    double length = 0.0;    ///< metres, along the heading
    double width = 0.0;     ///< metres, across it
    double heading = 0.0;   ///< degrees clockwise from north, 0 to 360, of the side from the first corner on
    bool clockwise = false; ///< how its corners follow each other, seen from above
};

/**
 * The corners of rectangles, and what becomes of them when one is moved: plain functions over rings of four
 * places in degrees, altitudes left out of account. Lengths and right angles are those of the ground,
 * anywhere on the globe; a plane through the rectangle takes them, which leaves out no more than what four
 * right angles on a curved ground leave open: 0.01 degrees at 100 km. Any thread.
 *
 * The first side, along the heading, is the one from the first corner to the second. An upright rectangle has
 * its corners on two meridians and two parallels, exactly; it stays so until it is turned.
 */
namespace AxRectangleShape {

using Ring = std::vector<osg::Vec3d>;
constexpr std::size_t corners = 4;

/// The upright one between opposite corners, its first side on the parallel of `a`.
AXEARTHVIEWER_EXPORT Ring Between(const osg::Vec3d& a, const osg::Vec3d& b);
/// That on the side from `a` to `b`, as wide as `place` is away from it; the side alone while it has no
/// length.
AXEARTHVIEWER_EXPORT Ring OnSide(const osg::Vec3d& a, const osg::Vec3d& b, const osg::Vec3d& place);
AXEARTHVIEWER_EXPORT Ring CornersOf(const AxRectangle& rectangle);

/// The rectangle that comes nearest to four corners; nothing for other than four usable corners, and where
/// they have no length or no width.
AXEARTHVIEWER_EXPORT std::optional<AxRectangle> Of(const Ring& ring);
/// How far the corners are from those of that rectangle, metres; 0 where there is none.
AXEARTHVIEWER_EXPORT double Skew(const Ring& ring);
AXEARTHVIEWER_EXPORT bool IsUpright(const Ring& ring);

// Edits of a ring that Of() takes. What is not quite a rectangle becomes one.

/// A corner moved to a place, the opposite one where it was.
AXEARTHVIEWER_EXPORT Ring WithCorner(const Ring& ring, std::size_t corner, const osg::Vec3d& place);
/// The side from a corner to the next one moved as far as a place, the opposite one where it was.
AXEARTHVIEWER_EXPORT Ring WithSide(const Ring& ring, std::size_t side, const osg::Vec3d& place);
/// Turned around its centre so that its first side heads for `degrees`.
AXEARTHVIEWER_EXPORT Ring Turned(const Ring& ring, double degrees);
/// The same size and heading with the first corner at a place.
AXEARTHVIEWER_EXPORT Ring MovedTo(const Ring& ring, const osg::Vec3d& firstCorner);

/// Degrees clockwise from north, 0 to 360.
AXEARTHVIEWER_EXPORT double HeadingTo(const osg::Vec3d& from, const osg::Vec3d& to);
/// The middle of a side.
AXEARTHVIEWER_EXPORT osg::Vec3d MiddleOfSide(const Ring& ring, std::size_t side);
/// Where the handle stands that turns it: outside, from the centre in its heading.
AXEARTHVIEWER_EXPORT osg::Vec3d PlaceToTurnAt(const AxRectangle& rectangle);

} // namespace AxRectangleShape

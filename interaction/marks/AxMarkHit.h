#pragma once
#include <osg/Vec3d>

#include <QSize>

#include <optional>
#include <vector>

struct AxViewRay;

/// Width and height of the icon that stands on a mark point, pixels.
QSize AxMarkIconSize();

/// A mark point whose icon the mouse is over.
struct AxMarkHit
{
    int index = -1;     ///< of the point
    double depth = 0.0; ///< metres before the eye
};

/// What is drawn of a mark point.
enum class AxMarkLook : char
{
    Nothing, ///< out of sight, or behind others
    Dot,
    Icon
};

/// The one whose icon, or else dot, is under the mouse as it is drawn: `looks` has one for each point.
/// Nothing where nothing is drawn.
std::optional<AxMarkHit> AxDrawnMark(const AxViewRay& ray, const std::vector<osg::Vec3d>& points,
                                     const std::vector<AxMarkLook>& looks);

/// As if each had its icon: the one that is nearest to the eye; nothing where the mouse is over no icon.
/// Points that the globe hides are none. Geocentric metres.
std::optional<AxMarkHit> AxNearestMark(const AxViewRay& ray, const std::vector<osg::Vec3d>& points);

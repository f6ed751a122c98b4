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

/// The one that is nearest to the eye; nothing where the mouse is over no icon. Points that the globe hides
/// are none. Geocentric metres.
std::optional<AxMarkHit> AxNearestMark(const AxViewRay& ray, const std::vector<osg::Vec3d>& points);

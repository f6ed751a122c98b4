#include "interaction/marks/AxMarkHit.h"
#include "scene/shape/AxViewRay.h"

#include <QImage>

#include <cmath>

QSize AxMarkIconSize()
{
    static const QSize size =
        QImage(QStringLiteral(":/images/Normal/map_airline_show/Map_Marker_ic.png")).size();
    return size;
}

namespace {
// From the middle of a dot, pixels: a little more than the dot, which is small.
constexpr double dotReach = 7.0;

bool IsOnIcon(const osg::Vec2d& fromFoot)
{
    const QSize size = AxMarkIconSize();
    // The icon stands on its point.
    return std::abs(fromFoot.x()) <= 0.5 * size.width() && fromFoot.y() >= 0.0 &&
           fromFoot.y() <= size.height();
}

/// The nearest of those that `isHit` finds at the way from their foot to the mouse.
template <typename IsHit>
std::optional<AxMarkHit> Nearest(const AxViewRay& ray, const std::vector<osg::Vec3d>& points, IsHit isHit)
{
    std::optional<AxMarkHit> nearest;
    for (std::size_t i = 0; i < points.size(); ++i) {
        const auto place = ray.Project(points[i]);
        if (!place || (nearest && place->depth >= nearest->depth) || !isHit(i, ray.window - place->window) ||
            AxIsBehindGlobe(ray.eye, points[i]))
            continue;
        nearest = AxMarkHit{static_cast<int>(i), place->depth};
    }
    return nearest;
}
} // namespace

std::optional<AxMarkHit> AxDrawnMark(const AxViewRay& ray, const std::vector<osg::Vec3d>& points,
                                     const std::vector<AxMarkLook>& looks)
{
    // Icons lie over dots.
    const auto icon = Nearest(ray, points, [&looks](std::size_t i, const osg::Vec2d& fromFoot) {
        return i < looks.size() && looks[i] == AxMarkLook::Icon && IsOnIcon(fromFoot);
    });
    if (icon)
        return icon;
    return Nearest(ray, points, [&looks](std::size_t i, const osg::Vec2d& fromFoot) {
        return i < looks.size() && looks[i] == AxMarkLook::Dot && fromFoot.length() <= dotReach;
    });
}

std::optional<AxMarkHit> AxNearestMark(const AxViewRay& ray, const std::vector<osg::Vec3d>& points)
{
    return Nearest(ray, points, [](std::size_t, const osg::Vec2d& fromFoot) { return IsOnIcon(fromFoot); });
}

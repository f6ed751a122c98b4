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

std::optional<AxMarkHit> AxNearestMark(const AxViewRay& ray, const std::vector<osg::Vec3d>& points)
{
    const QSize size = AxMarkIconSize();
    std::optional<AxMarkHit> nearest;
    for (std::size_t i = 0; i < points.size(); ++i) {
        const auto place = ray.Project(points[i]);
        if (!place || (nearest && place->depth >= nearest->depth))
            continue;
        // The icon stands on its point.
        const osg::Vec2d mouse = ray.window - place->window;
        if (std::abs(mouse.x()) > 0.5 * size.width() || mouse.y() < 0.0 || mouse.y() > size.height() ||
            AxIsBehindGlobe(ray.eye, points[i]))
            continue;
        nearest = AxMarkHit{static_cast<int>(i), place->depth};
    }
    return nearest;
}

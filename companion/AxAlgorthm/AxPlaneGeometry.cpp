#include <AxAlgorthm/AxPlaneGeometry.h>

#include <cmath>

std::vector<CAxPoint2D> RemoveSamePoint(const std::vector<CAxPoint2D>& points, double tolerance)
{
    const double reach = tolerance > 0.0 ? tolerance : 0.0;
    std::vector<CAxPoint2D> kept;
    for (const CAxPoint2D& point : points) {
        bool isNew = !std::isnan(point.x()) && !std::isnan(point.y());
        for (std::size_t i = 0; isNew && i < kept.size(); ++i)
            isNew =
                point != kept[i] && !(std::hypot(point.x() - kept[i].x(), point.y() - kept[i].y()) <= reach);
        if (isNew)
            kept.push_back(point);
    }
    return kept;
}

QPointF CalVerticalIntersectionPoint(const QPointF& point, const QPointF& lineStart, const QPointF& lineEnd)
{
    // Scaled to a unit direction first, so that neither tiny nor huge lines under- or overflow.
    const QPointF along = lineEnd - lineStart;
    const double length = std::hypot(along.x(), along.y());
    if (!(length > 0.0))
        return lineStart;
    const QPointF unit(along.x() / length, along.y() / length);
    return lineStart + QPointF::dotProduct(point - lineStart, unit) * unit;
}

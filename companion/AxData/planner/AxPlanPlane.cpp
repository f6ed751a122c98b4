#include <AxAlgorthm/AxMath.h>
#include <AxData/planner/AxPlanPlane.h>

#include <GeographicLib/AzimuthalEquidistant.hpp>

#include <algorithm>
#include <cmath>
#include <iterator>

namespace {
const GeographicLib::AzimuthalEquidistant& Projection()
{
    static const GeographicLib::AzimuthalEquidistant projection(GeographicLib::Geodesic::WGS84());
    return projection;
}
} // namespace

AxPlanPlane::AxPlanPlane(const QList<QPointF>& points)
{
    // The mean of the directions from the middle of the Earth knows no date line.
    double x = 0.0;
    double y = 0.0;
    double z = 0.0;
    for (const QPointF& point : points) {
        const double longitude = DegreeToRadians(point.x());
        const double latitude = DegreeToRadians(point.y());
        x += std::cos(latitude) * std::cos(longitude);
        y += std::cos(latitude) * std::sin(longitude);
        z += std::sin(latitude);
    }
    m_longitude = RadiansToDegree(std::atan2(y, x));
    m_latitude = RadiansToDegree(std::atan2(z, std::hypot(x, y)));
}

CAxPoint2D AxPlanPlane::ToPlane(const QPointF& lngLat) const
{
    double x = 0.0;
    double y = 0.0;
    Projection().Forward(m_latitude, m_longitude, lngLat.y(), lngLat.x(), x, y);
    return {x, y};
}

QPointF AxPlanPlane::ToLngLat(const CAxPoint2D& point) const
{
    double latitude = 0.0;
    double longitude = 0.0;
    Projection().Reverse(m_latitude, m_longitude, point.x(), point.y(), latitude, longitude);
    return {longitude, latitude};
}

AxPlanLine AxPlanPlane::ToPlane(const QList<QPointF>& lngLats) const
{
    AxPlanLine line;
    line.reserve(static_cast<std::size_t>(lngLats.size()));
    std::transform(lngLats.begin(), lngLats.end(), std::back_inserter(line),
                   [this](const QPointF& point) { return ToPlane(point); });
    return line;
}

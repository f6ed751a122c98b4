#pragma once

#include <AxAlgorthm/CAxPoint2D.h>
#include <AxData/AxDataExport.h>

#include <QList>
#include <QPointF>

#include <cmath>
#include <vector>

/// A line or a ring, its first point not repeated, in the metres of a plane.
using AxPlanLine = std::vector<CAxPoint2D>;

inline double AxApart(const CAxPoint2D& a, const CAxPoint2D& b)
{
    return std::hypot(a.x() - b.x(), a.y() - b.y());
}

/// The place so far on the way from a (share 0) to b (share 1).
inline CAxPoint2D AxBetween(const CAxPoint2D& a, const CAxPoint2D& b, double share)
{
    return {a.x() + share * (b.x() - a.x()), a.y() + share * (b.y() - a.y())};
}

/// Metres to the east (x) and to the north (y) of a place, on the azimuthal equidistant projection around it:
/// 50 km away lengths are off by one in 100,000 at most, and no zone, meridian or pole is in the way. A
/// value; any thread.
class AXDATA_EXPORT AxPlanPlane
{
public:
    /// Around the middle of the points, (longitude, latitude) in degrees.
    explicit AxPlanPlane(const QList<QPointF>& points);

    /// There and back; rings and lines as they are.
    CAxPoint2D ToPlane(const QPointF& lngLat) const;
    /// Degrees again.
    QPointF ToLngLat(const CAxPoint2D& point) const;
    /// All points of one.
    AxPlanLine ToPlane(const QList<QPointF>& lngLats) const;

private:
    double m_latitude = 0.0;
    double m_longitude = 0.0;
};

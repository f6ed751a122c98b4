#pragma once

#include <AxAlgorthm/AxAlgorthmExport.h>

#include <QMetaType>

/// Two doubles; a value type. A plane point (easting, northing) in metres, or a vertex of a geodetic ring
/// (longitude, latitude) in degrees.
class AXALGORTHM_EXPORT CAxPoint2D
{
public:
    constexpr CAxPoint2D() = default;
    constexpr CAxPoint2D(double x, double y) : m_x(x), m_y(y) {}

    constexpr double x() const { return m_x; }
    constexpr double y() const { return m_y; }
    void setX(double x) { m_x = x; }
    void setY(double y) { m_y = y; }

    /// Exact comparison of both components.
    friend constexpr bool operator==(const CAxPoint2D& a, const CAxPoint2D& b)
    {
        return a.m_x == b.m_x && a.m_y == b.m_y;
    }
    friend constexpr bool operator!=(const CAxPoint2D& a, const CAxPoint2D& b) { return !(a == b); }

private:
    double m_x = 0.0;
    double m_y = 0.0;
};

Q_DECLARE_METATYPE(CAxPoint2D)

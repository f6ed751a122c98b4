#pragma once

#include <AxAlgorthm/AxAlgorthmExport.h>

#include <QMetaType>

/// Two doubles; a value type. A plane point (easting, northing) in metres, or a vertex of a geodetic ring
/// (longitude, latitude) in degrees.
class AXALGORTHM_EXPORT CAxPoint2D
{
public:
    constexpr CAxPoint2D() = default;
    /// Easting and northing in metres, or longitude and latitude in degrees.
    constexpr CAxPoint2D(double x, double y) : m_x(x), m_y(y) {}

    /// Easting in metres, or longitude in degrees.
    constexpr double x() const { return m_x; }
    void setX(double x) { m_x = x; }

    /// Northing in metres, or latitude in degrees.
    constexpr double y() const { return m_y; }
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

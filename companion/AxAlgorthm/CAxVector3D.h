#pragma once

#include <AxAlgorthm/AxAlgorthmExport.h>

#include <QMetaType>

/// Three doubles; a value type. As a position: longitude in degrees, latitude in degrees, altitude in
/// metres above the ellipsoid. The one exception are the route points that a CAxTask returns, which come
/// as latitude, longitude, altitude.
class AXALGORTHM_EXPORT CAxVector3D
{
public:
    constexpr CAxVector3D() = default;
    /// For a position: longitude and latitude in degrees, altitude in metres.
    constexpr CAxVector3D(double x, double y, double z) : m_x(x), m_y(y), m_z(z) {}

    /// Longitude of a position, degrees.
    constexpr double x() const { return m_x; }
    void setX(double x) { m_x = x; }

    /// Latitude of a position, degrees.
    constexpr double y() const { return m_y; }
    void setY(double y) { m_y = y; }

    /// Altitude of a position, metres above the ellipsoid.
    constexpr double z() const { return m_z; }
    void setZ(double z) { m_z = z; }

    /// True when all three components are 0, as in a default-constructed vector: no position.
    bool isNull() const;

    /// Straight-line distance between the two triples, in their own unit. It means metres only when both
    /// are plane coordinates; for geodetic positions use DistanceBetweenTwoLatLng.
    double distanceToPoint(const CAxVector3D& other) const;

    /// Exact comparison of all components.
    friend constexpr bool operator==(const CAxVector3D& a, const CAxVector3D& b)
    {
        return a.m_x == b.m_x && a.m_y == b.m_y && a.m_z == b.m_z;
    }
    friend constexpr bool operator!=(const CAxVector3D& a, const CAxVector3D& b) { return !(a == b); }

private:
    double m_x = 0.0;
    double m_y = 0.0;
    double m_z = 0.0;
};

Q_DECLARE_METATYPE(CAxVector3D)

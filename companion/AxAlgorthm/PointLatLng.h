#pragma once

#include <AxAlgorthm/AxAlgorthmExport.h>

/// A geodetic point in degrees, latitude first; a value type.
class AXALGORTHM_EXPORT PointLatLng
{
public:
    /// Degrees.
    PointLatLng(const double& lat, const double& lng) : m_lat(lat), m_lng(lng) {}

    /// Latitude in degrees.
    double Lat() const { return m_lat; }
    /// Longitude in degrees.
    double Lng() const { return m_lng; }

private:
    double m_lat;
    double m_lng;
};

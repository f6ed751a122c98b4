#include "AxVehiclePlaces.h"

#include <AxAlgorthm/AxGeoid.h>

#include <cmath>

namespace {
constexpr double lowestMetres = -12000.0;
constexpr double highestMetres = 100000.0;
} // namespace

std::optional<AxPlace> AxPlaceAboveSea(qint32 latitude, qint32 longitude, qint32 altitude)
{
    const AxPlace place{longitude * 1e-7, latitude * 1e-7, altitude * 1e-3};
    if (std::fabs(place.latitude) > 90.0 || std::fabs(place.longitude) > 180.0)
        return {};
    if (place.altitude < lowestMetres || place.altitude > highestMetres)
        return {};
    return place;
}

AxPlace AxAboveEllipsoid(const AxPlace& aboveSea)
{
    AxPlace place = aboveSea;
    place.altitude += AxGeoidHeight(place.latitude, place.longitude).value_or(0.0);
    return place;
}

bool AxIsNowhere(qint32 latitude, qint32 longitude)
{
    return latitude == 0 && longitude == 0;
}

double AxCompassDegrees(double degrees)
{
    const double turned = std::fmod(degrees, 360.0);
    return turned < 0.0 ? turned + 360.0 : turned;
}

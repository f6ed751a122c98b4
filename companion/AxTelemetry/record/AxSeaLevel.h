#pragma once

#include <AxAlgorthm/AxGeoid.h>

/// Mean sea level in metres above the ellipsoid; 0 without the geoid's grid, as live aircraft have it then
/// (AxAircraftState::geoidNote), so that what is read and what is written stay the same.
inline double AxSeaLevelAt(double latitude, double longitude)
{
    return AxGeoidHeight(latitude, longitude).value_or(0.0);
}

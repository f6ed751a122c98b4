#pragma once
#include <cmath>

/// Arithmetic with longitudes, degrees. Pure functions.
namespace AxLongitudes {
/// The same meridian counted so that it lies within half a turn of `reference`; to the bit what it was when
/// it does already.
inline double NearestTo(double reference, double longitude)
{
    return longitude - 360.0 * std::round((longitude - reference) / 360.0);
}

/// Brought into [-180, 180].
inline double Normalized(double longitude)
{
    return std::remainder(longitude, 360.0);
}
} // namespace AxLongitudes

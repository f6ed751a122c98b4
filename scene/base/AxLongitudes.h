#pragma once
#include <cmath>

/// Arithmetic with longitudes, degrees. Pure functions.
namespace AxLongitudes {
constexpr double fullTurn = 360.0;
/// Places that differ by less are the same one: 1 mm.
constexpr double sameDegrees = 1e-8;

/// The same meridian counted so that it lies within half a turn of `reference`; to the bit what it was when
/// it does already.
inline double NearestTo(double reference, double longitude)
{
    return longitude - fullTurn * std::round((longitude - reference) / fullTurn);
}

/// Brought into [-180, 180].
inline double Normalized(double longitude)
{
    return std::remainder(longitude, fullTurn);
}
} // namespace AxLongitudes

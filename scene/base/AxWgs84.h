#pragma once

/// The ellipsoid WGS84 (NIMA TR8350.2). Lengths in metres.
namespace AxWgs84 {
constexpr double semiMajorAxis = 6378137.0;
constexpr double semiMinorAxis = 6356752.314245;
constexpr double eccentricity2 = 6.69437999014e-3; ///< first eccentricity, squared
constexpr double meanRadius = 6371008.8;           ///< a third of both equatorial axes and the polar one
} // namespace AxWgs84

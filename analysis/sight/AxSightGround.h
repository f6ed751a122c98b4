#pragma once

/// How the curve of the Earth and of rays of light enter into what can be seen. Any thread.
namespace AxSight {

/// Of the air near the ground by day: rays bend downwards as if the Earth's radius were 1 / (1 - 0.13) times
/// as long. C. F. Gauss found it in the triangulation of Hanover; it is the usual value of surveyors.
constexpr double standardRefraction = 0.13;
/// With more, rays would stay low for ever: an inversion, of which nothing is told here.
constexpr double mostRefraction = 0.9;

/// The radii of curvature of the ellipsoid WGS 84 at a latitude in degrees, along the meridian and across it,
/// metres (W. Torge and J. Müller, Geodesy, 4.1.3).
struct Curvature
{
    explicit Curvature(double latitude); ///< degrees

    /// Along a direction whose parts to the east and to the north are those of a vector of length 1, by
    /// Euler's formula.
    double RadiusAlong(double east, double north) const
    {
        return 1.0 / (north * north / meridian + east * east / across);
    }
    /// How far a place lies below the tangent plane, metres to the east and to the north of where it touches.
    double DropAt(double east, double north) const
    {
        return 0.5 * (north * north / meridian + east * east / across);
    }

    double meridian; ///< metres
    double across;   ///< metres
};

} // namespace AxSight

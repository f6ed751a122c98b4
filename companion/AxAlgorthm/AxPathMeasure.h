#pragma once

#include <AxAlgorthm/AxAlgorthmExport.h>
#include <AxAlgorthm/CAxVector3D.h>

#include <atomic>
#include <cstddef>
#include <functional>
#include <limits>
#include <optional>
#include <vector>

// Lengths, bearings and heights along paths of places, each (longitude, latitude, altitude) in degrees and
// metres above the WGS 84 ellipsoid. Between two places a path follows the geodesic, the shortest way on the
// ellipsoid, by GeographicLib (Karney, Algorithms for geodesics, 2013): across the antimeridian and over a
// pole as anywhere. Places with a coordinate that is not finite, or a latitude beyond the poles, are passed
// over. Any thread.

/// Height of the ground at a longitude and latitude in degrees, metres above the ellipsoid; nothing where
/// none is known.
using AxHeightAt = std::function<std::optional<double>(double longitude, double latitude)>;

/// The ground that a path leads over, and how closely it is looked at.
struct AxPathGround
{
    AxHeightAt height; ///< empty: no ground is known
    /// Metres from one look to the next, at most; farther apart where a path would need more looks than
    /// `most`.
    double step = 10.0;
    std::size_t most = 20000; ///< looks at a path
};

/// Between two places that follow each other. What is not known, or means nothing, is not a number.
struct AxPathLeg
{
    /// Of values that are not known.
    static constexpr double unknown = std::numeric_limits<double>::quiet_NaN();

    double length = 0.0;         ///< along the ellipsoid, metres
    double bearing = unknown;    ///< at its start, degrees clockwise from true north, [0, 360)
    double overGround = unknown; ///< along the ground, up and down with it, metres
    double rise = unknown;       ///< how much higher its end is than its start, metres
    double ascent = unknown;     ///< all ways up along the ground, metres
    double descent = unknown;    ///< all ways down, metres, not below 0

    /// Of the way from its start to its end, degrees against the horizontal; up is positive.
    AXALGORTHM_EXPORT double Slope() const;
};

/// A path as a whole, and leg by leg.
struct AxPathFigures
{
    std::vector<AxPathLeg> legs; ///< one fewer than places
    AxPathLeg total;             ///< its bearing leads from the first place to the last
    double step = 0.0;           ///< how far apart the ground was looked at, metres; 0: it was not
};

/// A place on a path.
struct AxPathPlace
{
    double along = 0.0;     ///< metres from the start
    double longitude = 0.0; ///< degrees, in [-180, 180]
    double latitude = 0.0;  ///< degrees
    std::size_t leg = 0;    ///< which it lies on; a corner counts for the leg that ends there
};

/// Measures a path. With a ground, rises are those of the ground below the places, and otherwise of their own
/// altitudes. The way over the ground is the sum of the straight lines from look to look. Ends early, with
/// figures that mean nothing, once `isOff` is true.
AXALGORTHM_EXPORT AxPathFigures AxMeasurePath(const std::vector<CAxVector3D>& places,
                                              const AxPathGround& ground = {},
                                              const std::atomic<bool>* isOff = nullptr);

/// The places of a path and as many between them that none are farther apart than `step` metres, or that
/// there are `most` beside the path's own. Longitudes in [-180, 180].
AXALGORTHM_EXPORT std::vector<AxPathPlace> AxPlacesAlong(const std::vector<CAxVector3D>& places, double step,
                                                         std::size_t most);

/// The straight line between two places through the air, metres.
AXALGORTHM_EXPORT double AxSlantDistance(const CAxVector3D& from, const CAxVector3D& to);

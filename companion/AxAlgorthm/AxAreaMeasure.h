#pragma once

#include <AxAlgorthm/AxPathMeasure.h>

#include <array>
#include <vector>

// Areas and planes of places as in AxPathMeasure.h: (longitude, latitude, altitude) in degrees and metres
// above the WGS 84 ellipsoid, with geodesics between them. Any thread.

/// A ring. What is not known, or means nothing, is not a number.
struct AxAreaFigures
{
    double area = AxPathLeg::unknown; ///< on the ellipsoid, square metres; of the two sides the smaller one
    double perimeter = AxPathLeg::unknown; ///< along the ellipsoid, metres
    double overGround =
        AxPathLeg::unknown; ///< of the ground inside, with its slopes and height, square metres
    bool isCrossed = false; ///< edges cross each other: there is no inside, and no area
    double step = 0.0;      ///< how far apart the ground was looked at, metres; 0: it was not
};

/// Measures a ring, the first place not repeated: over the antimeridian and around a pole as anywhere. The
/// area is GeographicLib's (Karney, Algorithms for geodesics, 2013). The ground is looked at in a grid inside
/// the ring, at most `ground.most` times: its surface in the cells, as two triangles each, is to their area
/// on the ellipsoid what the whole surface is to the whole area. Not known where any of these heights is not,
/// and for rings of more than 500 km from the middle. Ends early, with figures that mean nothing, once
/// `isOff` is true.
AXALGORTHM_EXPORT AxAreaFigures AxMeasureArea(const std::vector<CAxVector3D>& ring,
                                              const AxPathGround& ground = {},
                                              const std::atomic<bool>* isOff = nullptr);

/// The ground in a rectangle, and the plane that fits it best.
struct AxPlaneFigures
{
    double width = AxPathLeg::unknown;   ///< from the first corner to the second, along the ellipsoid, metres
    double depth = AxPathLeg::unknown;   ///< from the second to the third
    double area = AxPathLeg::unknown;    ///< on the ellipsoid, square metres
    double onPlane = AxPathLeg::unknown; ///< the same on the plane
    double dip = AxPathLeg::unknown;     ///< of the plane against the horizontal, degrees, 0 to 90
    double aspect =
        AxPathLeg::unknown; ///< where it falls to, degrees clockwise from true north; none if level
    double roughness =
        AxPathLeg::unknown; ///< of the ground against the plane, root of the mean square, metres
    double step = 0.0;      ///< as of AxAreaFigures
};

/// Fits a plane to the heights of the ground in a grid in the rectangle, by least squares of the heights.
/// Corners in order. A plane is not known where any of the heights is not, and for sides of more than 500 km.
AXALGORTHM_EXPORT AxPlaneFigures AxMeasurePlane(const std::array<CAxVector3D, 4>& corners,
                                                const AxPathGround& ground = {},
                                                const std::atomic<bool>* isOff = nullptr);

/// The rectangle with a diagonal between two places and one pair of sides in the direction `bearing`, degrees
/// clockwise from true north: the first corner is `from`, the third `to`. Altitudes are theirs, in the middle
/// for the others. For sides far below the radius of the earth.
AXALGORTHM_EXPORT std::array<CAxVector3D, 4> AxRectangleOver(const CAxVector3D& from, const CAxVector3D& to,
                                                             double bearing);

#pragma once

#include <AxData/planner/AxPlanPlane.h>
#include <AxData/planner/AxPlanRequest.h>
#include <AxData/planner/AxPlanResult.h>

#include <array>
#include <cmath>
#include <optional>
#include <utility>
#include <vector>

/// Where the ground lies, in the plane, that a photo shows between two altitudes.
struct AxSightReach
{
    CAxPoint2D low;  ///< south-west corner of a box around it
    CAxPoint2D high; ///< north-east corner
    /// The picture's corners, one after the other, on the lower ground, and then on the higher one. They mean
    /// nothing where the picture ends at MaxFootprintDistance.
    std::array<CAxPoint2D, 8> corners;
    bool isCut = false; ///< there it does

    /// Its westernmost and easternmost x at a y.
    std::pair<double, double> Across(double y) const;
};

/// What a lens shows of the ground in one photo: a pinhole camera that is turned and tilted but not rolled,
/// so that the upper edge of its picture is level. A ray ends MaxFootprintDistance away, over ground.
class AxPhotoSight
{
public:
    /// In the plane, at an altitude in metres; looks to a bearing and so far from straight down, degrees.
    AxPhotoSight(const AxPlanCamera& camera, const CAxPoint2D& at, double altitude, double bearing,
                 double tilt);

    /// Of ground between two altitudes; nothing when it is not above the lower one.
    std::optional<AxSightReach> Reach(double lowest, double highest) const;
    /// Metres of ground a pixel, in the direction in which they are more, of level ground at a place and an
    /// altitude. 0 where it is not in the picture, not below the camera, or no number.
    double SampleAt(const CAxPoint2D& place, double ground) const
    {
        const double x = place.x() - m_at.x();
        const double y = place.y() - m_at.y();
        const double above = m_altitude - ground;
        const double ahead = x * m_east + y * m_north;
        const double aside = x * m_north - y * m_east;
        const double depth = ahead * m_sin + above * m_cos;
        const double up = ahead * m_cos - above * m_sin;
        // No comparison holds for what is no number.
        if (!(above > 0.0) || !(std::abs(up) <= m_halfHeight * depth) ||
            !(std::abs(aside) <= m_halfWidth * depth) || !(x * x + y * y <= m_farthest * m_farthest))
            return 0.0;
        return m_sample * (depth > above ? depth * depth / above : depth);
    }

private:
    CAxPoint2D m_at;
    double m_altitude;
    double m_east; // of where it looks
    double m_north;
    double m_sin; // of the tilt
    double m_cos;
    double m_halfWidth; // of the picture, for each metre of distance along the axis
    double m_halfHeight;
    double m_sample; // metres a pixel, for each metre of distance along the axis
    double m_farthest;
};

/// All that the lenses show on a route, photo by photo: as the camera's views say, and round a circle towards
/// the ground in its middle.
std::vector<AxPhotoSight> AxSightsOf(const AxPlanRequest& request, const AxPlanResult& plan,
                                     const AxPlanPlane& plane);

#pragma once
#include "scene/base/AxWgs84.h"

#include <osgEarth/Viewpoint>

/// A place that the tour visits: degrees, metres; the range is measured from
/// the focal point, whose altitude is the ground's there.
struct TourStop
{
    const char* name;
    double longitude;
    double latitude;
    double altitude;
    double heading;
    double pitch;
    double range;

    osgEarth::Viewpoint Viewpoint() const
    {
        return osgEarth::Viewpoint(name, longitude, latitude, altitude, heading, pitch, range);
    }
};

/// The whole globe; the Alps from 350 km; the Spanish Peaks in Colorado, first
/// from 20 km under a slant, then 500 m above the ground.
inline constexpr TourStop tourStops[] = {
    {"space", 10.0, 30.0, 0.0, 0.0, -90.0, 4.0 * AxWgs84::semiMajorAxis},
    {"range350km", 10.0, 46.5, 0.0, 0.0, -90.0, 350000.0},
    {"oblique20km", -105.0, 37.4, 3027.0, 200.0, -25.0, 20000.0},
    {"near500m", -105.0, 37.4, 3027.0, 200.0, -15.0, 1932.0},
};

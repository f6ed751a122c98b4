#pragma once

#include "camera/CameraPose.h"

namespace osgEarth::Util {
/// One end of a flight: a place, and how the camera looks at it (radians, metres).
struct FlightEnd
{
    Geodetic place;
    double heading = 0.0;
    double pitch = -osg::PI_2;
    double range = 1.0;
};

/// The way of a camera from one view to another along the great circle between
/// the places, antimeridian and poles included.
///
/// With an arc it draws back and comes down again so that the ground passes
/// through the window at an even pace: J. J. van Wijk and W. A. A. Nuij,
/// "Smooth and efficient zooming and panning", IEEE InfoVis 2003. Without, the
/// range changes evenly on a logarithmic scale. A plain value; const after
/// construction.
class CameraFlight
{
public:
    CameraFlight(const FlightEnd& from, const FlightEnd& to, double earthRadius, bool arc);

    /// The view at a share of the way, 0 to 1; values outside are clamped.
    FlightEnd at(double share) const;

    /// Length of the way as the eye feels it: 1 is about one window or one 2.7-fold zoom.
    double feltLength() const { return _length; }

private:
    void travel(double share, double& ground, double& range) const;

    FlightEnd _from;
    FlightEnd _to;
    osg::Vec3d _start;   ///< unit normal at the first place
    osg::Vec3d _onward;  ///< unit tangent there, along the way
    double _angle = 0.0; ///< of the great circle
    double _ground;      ///< metres along it
    double _turn = 0.0;  ///< how far the heading turns against the course
    bool _arc;
    double _r0 = 0.0;
    double _length = 0.0;
};

/// Evenly eased share of the way for a share of the time: starts and ends at rest.
double eased(double time);
} // namespace osgEarth::Util

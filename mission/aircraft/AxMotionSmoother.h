#pragma once
#include "scene/base/AxEarthViewerExport.h"

#include <osg/Vec3d>

#include <array>
#include <optional>

/// A value that is told now and then, drawn in between: from where it is drawn when a new one comes it goes
/// to that in the time that passes between two of them, and stands there. It never goes beyond what was told,
/// so a link that falls silent leaves it where it was told last. Times in seconds of one clock that does not
/// go backwards. Plain value.
class AXEARTHVIEWER_EXPORT AxMotionPace
{
public:
    /// A new value came. True: it is gone to; false: after a silence, or as the first, it is jumped to.
    bool Told(double now);
    /// How much of the way to the newest value is left: 1 when it came, 0 when it is reached.
    double Left(double now) const;

private:
    std::optional<double> toldAt;
    double interval = 0.0; // seconds between two values, as it is lately
    bool jumps = true;
};

/// Place and attitude of an aircraft between messages. Places in degrees, degrees, metres; angles in radians.
class AXEARTHVIEWER_EXPORT AxMotionSmoother
{
public:
    /// A place that is over 500 m away is jumped to: it was not flown to since the one before.
    void TellPlace(const osg::Vec3d& place, double now);
    /// Roll, pitch and yaw.
    void TellAttitude(const std::array<double, 3>& angles, double now);
    /// The newest values are drawn at once.
    void Jump();
    /// What was told so far counts as higher by so many metres.
    void Lift(double metres);

    /// Longitude within half a turn of the newest one, over the shorter way. Nothing before the first place.
    std::optional<osg::Vec3d> PlaceAt(double now) const;
    /// Each angle over the shorter way. Nothing before the first attitude.
    std::optional<std::array<double, 3>> AttitudeAt(double now) const;
    /// Whether both are where they were told.
    bool IsSettled(double now) const;

private:
    std::optional<osg::Vec3d> place;
    osg::Vec3d placeBefore;
    AxMotionPace placePace;
    std::optional<std::array<double, 3>> attitude;
    std::array<double, 3> attitudeBefore{};
    AxMotionPace attitudePace;
};

#pragma once

#include <AxTelemetry/simulator/AxSimulatedAircraft.h>

#include <optional>

/// Metres over the ground.
struct AxGroundOffset
{
    double north = 0.0;
    double east = 0.0;

    double Length() const;
    /// Radians clockwise from north.
    double Course() const;
};

/// From one place to another on the WGS84 ellipsoid, the short way round; exact for what lies near, and a
/// straight line on a Mercator map for what is far.
AxGroundOffset AxOffsetBetween(const AxPlace& from, const AxPlace& to);

/// The place so far away at the same altitude, its longitude in [-180, 180].
AxPlace AxMovedBy(const AxPlace& place, const AxGroundOffset& offset);

/// An angle in radians, brought into [-PI, PI].
double AxTurnOf(double angle);

/// The wind as it moves the air, m/s.
AxGroundOffset AxMotionOf(const AxSimulatedWind& wind);

/// The wind triangle: the heading, radians, that at this air speed leads along a course over the ground. In a
/// wind that is stronger than the aircraft: into the wind's share across the course.
double AxHeadingFor(double course, double airSpeed, const AxGroundOffset& wind);

/// How an aircraft is under way.
struct AxSimulatedBody
{
    AxPlace place;
    AxGroundOffset motion; // m/s over the ground
    double up = 0.0;       // m/s
    double roll = 0.0;     // radians, right wing down
    double pitch = 0.0;    // radians, nose up
    double yaw = 0.0;      // radians clockwise from north
    double airSpeed = 0.0; // m/s
};

/// What it is to do.
struct AxSimulatedDemand
{
    double course = 0.0;       // radians clockwise from north, over the ground
    double speed = 0.0;        // m/s: through the air on wings, else over the ground
    double up = 0.0;           // m/s
    std::optional<double> yaw; // radians, where it hovers; without it the nose stays where it is
};

/// Moves on by so many seconds, at most 0.1: on wings, with turns no tighter than the aircraft's.
void AxFlyOnWings(AxSimulatedBody& body, const AxSimulatedAircraft& aircraft, const AxSimulatedDemand& demand,
                  double seconds);

/// The same in hover, where it goes in any direction and stops.
void AxFlyInHover(AxSimulatedBody& body, const AxSimulatedAircraft& aircraft, const AxSimulatedDemand& demand,
                  double seconds);

/// The same with the wheels on the ground, braking or gathering speed straight ahead.
void AxRollOnGround(AxSimulatedBody& body, const AxSimulatedAircraft& aircraft, double wantedSpeed,
                    double seconds);

#pragma once

#include <AxTelemetry/simulator/AxSimulatedBody.h>

/// A piece of a flight: the straight way to a place, and what is done there.
struct AxSimulatedLeg
{
    AxPlace from;
    AxPlace to;
    std::optional<AxPlace> next;  // where it goes on to from there, if by a plain leg
    double acceptance = 2.0;      // metres over the ground from `to` that count as there
    double heightTolerance = 1.5; // metres above or below it, the same
    bool climbsFirst = false;     // goes to the height of `to` at once, and not evenly along the way
    double hold = 0.0;            // seconds to wait there, where the aircraft can
    std::optional<double> yaw;    // radians that the nose takes there, where it can
    double circle = 0.0;          // metres: then circles `to`, clockwise; negative: counterclockwise
    double turns = 0.0;           // of the circle; infinite: until told otherwise
    double seconds = 0.0;         // on the circle
    int item = -1;                // of the mission, -1 none
};

/// Leads an aircraft along one leg. Plain arithmetic; the body is moved by others.
class AxSimulatedGuide
{
public:
    AxSimulatedGuide() = default;
    explicit AxSimulatedGuide(const AxSimulatedLeg& leg) : m_leg(leg) {}

    /// What to do in the next moment, of so many seconds, at a wanted speed in m/s.
    AxSimulatedDemand Follow(const AxSimulatedBody& body, const AxSimulatedAircraft& aircraft, double speed,
                             bool isHovering, double seconds);
    /// Whether the leg is flown to its end.
    bool IsDone() const { return m_isDone; }
    /// Metres by which the place was missed, where it could not be met in several attempts; else 0.
    double MissedBy() const { return m_missedBy; }
    const AxSimulatedLeg& Leg() const { return m_leg; }

private:
    AxSimulatedDemand onWings(const AxSimulatedBody& body, const AxSimulatedAircraft& aircraft, double speed);
    AxSimulatedDemand inHover(const AxSimulatedBody& body, const AxSimulatedAircraft& aircraft, double speed,
                              double seconds);
    AxSimulatedDemand round(const AxSimulatedBody& body, const AxSimulatedAircraft& aircraft, double speed,
                            bool isHovering, double seconds);
    double towardsHeight(const AxSimulatedBody& body, const AxSimulatedAircraft& aircraft, double share,
                         double slope, double groundSpeed) const;

    AxSimulatedLeg m_leg;
    bool m_isDirect = false; // has left the line, and flies to the place from anywhere
    bool m_wasAhead = false;
    bool m_isThere = false;
    bool m_isDone = false;
    int m_misses = 0;
    double m_missedBy = 0.0; // metres
    double m_waited = 0.0;   // seconds
    double m_turned = 0.0;   // radians of the circle
    std::optional<double> m_bearing;
};

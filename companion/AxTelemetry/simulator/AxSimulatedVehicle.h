#pragma once

#include <AxTelemetry/simulator/AxSimulatedAircraft.h>

#include <AxData/exchange/AxMission.h>

#include <memory>
#include <vector>

/// How a simulated aircraft is at one moment.
struct AXTELEMETRY_EXPORT AxSimulatedState
{
    /// What it is about, in the order of a flight.
    enum class Phase
    {
        Ground,  ///< stands, armed or not
        TakeOff, ///< until its take-off height
        Mission, ///< flies to the items in their order
        Return,  ///< on the way to where it lands
        Landing, ///< down to the ground
        RollOut  ///< of a plane that has touched down
    };

    Phase phase = Phase::Ground;    ///< commands change it at once, Step() as the flight goes on
    double seconds = 0.0;           ///< since it was made, of its own time
    AxPlace place;                  ///< on the ground as high as the ground below
    double heightAboveHome = 0.0;   ///< metres
    double heightAboveGround = 0.0; ///< metres
    double velocityNorth = 0.0;     ///< m/s over the ground
    double velocityEast = 0.0;      ///< m/s over the ground
    double velocityUp = 0.0;        ///< m/s, below 0 while it sinks
    double airSpeed = 0.0;          ///< m/s
    double roll = 0.0;              ///< radians, right wing down
    double pitch = 0.0;             ///< radians, nose up
    double yaw = 0.0;               ///< radians clockwise from north, -PI to PI
    bool isArmed = false;           ///< the motors may run
    double batteryPercent = 100.0;  ///< never rises
    double batteryVolts = 0.0;      ///< of six cells, lower under load
    double batteryAmperes = 0.0;    ///< drawn; 0 while it is disarmed
    double cameraPitch = -90.0;     ///< degrees; 0 level, -90 straight down
    int currentItem = -1;           ///< index of the item of the mission that it flies; -1 none
    int photos = 0;                 ///< taken so far

    /// In the air; neither standing nor rolling.
    bool IsFlying() const { return phase != Phase::Ground && phase != Phase::RollOut; }
};

/// What has happened to a simulated aircraft.
struct AXTELEMETRY_EXPORT AxSimulatedEvent
{
    /// What happened; the members that tell of it.
    enum class Kind
    {
        Text,    ///< `severity` and `text`
        Photo,   ///< `number` counts from 0
        Reached, ///< the item `number` of the mission
    };

    Kind kind = Kind::Text; ///< says which of the others hold
    double seconds = 0.0;   ///< when
    int number = 0;         ///< of the photo, or of the item, both from 0
    int severity = 6;       ///< MAV_SEVERITY: 0 emergency to 7 debug
    QString text;           ///< for people
    AxPlace place;          ///< of the aircraft at a photo, as is the attitude
    double roll = 0.0;      ///< radians, right wing down
    double pitch = 0.0;     ///< radians, nose up
    double yaw = 0.0;       ///< radians clockwise from north, -PI to PI
};

/**
 * An aircraft that flies a mission: takes off from home, passes the waypoints in their order, holds its way
 * in the wind, takes photos by distance, and comes back when the mission ends or the battery does. Planes fly
 * turns of their radius and land on a glide into the wind, copters stop, turn and sink, and those that can do
 * both hover at the ends of the flight only. No clock and no input or output: Step() is all that passes time.
 * Owned by whoever made it; one thread.
 *
 * It understands waypoints, splines (flown straight), take-offs, landings, circling and waiting, the way
 * home, jumps, delays, speeds, photos by distance and single ones, and the tilt of the camera. Anything else
 * it passes over and says so.
 */
class AXTELEMETRY_EXPORT AxSimulatedVehicle
{
public:
    /// Disarmed on the ground, with a full battery and without a mission.
    explicit AxSimulatedVehicle(const AxSimulatedAircraft& aircraft);
    ~AxSimulatedVehicle();
    AxSimulatedVehicle(const AxSimulatedVehicle&) = delete;
    AxSimulatedVehicle& operator=(const AxSimulatedVehicle&) = delete;

    /// Carries this mission from now on; in flight it begins with its first item at once. An empty one
    /// clears. A text for people, with the old mission kept, when it cannot be flown.
    QString SetMission(const AxMission& mission);
    const AxMission& Mission() const;
    /// Goes to this item next; false for an item that is not there.
    bool SetCurrentItem(int item);

    /// Each a text for people when it does not; empty when it does. In the air Start() takes the mission up
    /// again; Disarm() is for the ground.
    QString Arm();
    QString Disarm();
    QString Start();
    /// Comes home and lands there, or lands where it is; on the ground they do nothing.
    void ReturnHome();
    void LandHere();

    /// From the next step on. Nothing changes for a speed below 0 or above 200 m/s, or what is no number.
    void SetWind(const AxSimulatedWind& wind);

    /// Lets so many seconds pass, in steps of 0.05 s; what is no number or not positive does nothing.
    void Step(double seconds);

    /// As of the last step. Belongs to the vehicle, which changes it with each Step().
    const AxSimulatedState& State() const;
    /// As it was given, what was wrong in it made good.
    const AxSimulatedAircraft& Aircraft() const;
    /// Where it takes off and lands; nothing before it knows.
    std::optional<AxPlace> Home() const;
    /// What has happened since the last call.
    std::vector<AxSimulatedEvent> TakeEvents();

private:
    class Flight;
    std::unique_ptr<Flight> m_flight;
};

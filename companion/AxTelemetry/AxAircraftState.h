#pragma once

#include <AxTelemetry/AxTelemetryExport.h>

#include <AxAlgorthm/AxMissionTypes.h>

#include <QMetaType>
#include <QString>

#include <limits>
#include <optional>

/// A place on the globe.
struct AXTELEMETRY_EXPORT AxPlace
{
    double longitude = 0.0; ///< degrees
    double latitude = 0.0;  ///< degrees
    double altitude = 0.0;  ///< metres above the ellipsoid
};

/// A photo that a camera has told of.
struct AXTELEMETRY_EXPORT AxPhotoRecord
{
    int index = 0;          ///< as the camera counts
    quint64 time = 0;       ///< milliseconds since 1970, UTC
    double longitude = 0.0; ///< degrees
    double latitude = 0.0;  ///< degrees
    double altitude = 0.0;  ///< metres above the ellipsoid
    /// The attitude of the aircraft, as in attitudeChanged(); NaN where it is not known.
    double roll = std::numeric_limits<double>::quiet_NaN();
    double pitch = std::numeric_limits<double>::quiet_NaN();
    double yaw = std::numeric_limits<double>::quiet_NaN();
};

/// What is known of an aircraft at one moment; a value. Empty is what it has not told yet.
struct AXTELEMETRY_EXPORT AxAircraftState
{
    int systemId = 0;                      ///< 1 to 255; 0 where the source has no such number
    QString name;                          ///< for people
    EPlaneType planeType = PlaneFixedWing; ///< what it says it is
    int autopilot = 0;                     ///< MAV_AUTOPILOT: 3 ArduPilot, 12 PX4
    bool isHeard = false;                  ///< false before the first word, and while the link is lost
    qint64 lastHeard = 0;     ///< from the component that flies; milliseconds since 1970, UTC; 0 never
    qint64 placeHeard = 0;    ///< when the place below came, as lastHeard; 0 never, or not told (tables)
    qint64 attitudeHeard = 0; ///< when roll, pitch and yaw came, likewise

    /// Milliseconds since the last word; -1 when there was none.
    qint64 HeardAgo(qint64 now) const { return lastHeard == 0 ? -1 : now - lastHeard; }
    /// Milliseconds since the place came, which an aircraft that is heard may have stopped telling; -1 where
    /// placeHeard is 0.
    qint64 PlaceAgo(qint64 now) const { return placeHeard == 0 ? -1 : now - placeHeard; }

    /// Milliseconds for which the aircraft has been heard without telling its attitude; 0 where
    /// attitudeHeard is.
    qint64 WithoutAttitude() const { return attitudeHeard == 0 ? 0 : lastHeard - attitudeHeard; }

    std::optional<double> longitude;        ///< degrees
    std::optional<double> latitude;         ///< degrees
    std::optional<double> altitude;         ///< metres above the ellipsoid
    std::optional<double> altitudeAboveSea; ///< metres
    std::optional<double> heightAboveHome;  ///< metres

    std::optional<double> groundSpeed; ///< m/s
    std::optional<double> airSpeed;    ///< m/s
    std::optional<double> climbRate;   ///< m/s, upwards
    std::optional<double> heading;     ///< of the nose, degrees clockwise from north, 0 to 360

    std::optional<double> roll;  ///< radians, right wing down
    std::optional<double> pitch; ///< radians, nose up
    std::optional<double> yaw;   ///< radians clockwise from north, -PI to PI

    QString mode;                 ///< for people; empty: not known
    bool isArmed = false;         ///< the motors may run
    std::optional<bool> isLanded; ///< on the ground

    std::optional<int> batteryPercent;    ///< of the emptiest battery
    std::optional<double> batteryVolts;   ///< of the first battery
    std::optional<double> batteryAmperes; ///< drawn from it
    std::optional<int> satellites;        ///< in use
    int fixType = 0; ///< GPS_FIX_TYPE: 0 no receiver, 1 no fix, 2 flat, 3 and more in space

    std::optional<AxPlace> home;       ///< to where it returns
    std::optional<double> cameraPitch; ///< degrees; 0 level, -90 straight down
    std::optional<double> cameraYaw;   ///< degrees clockwise from north, 0 to 360

    int missionCurrent = -1; ///< index into AxMission::items of what it flies to; -1 none, or home
    int missionCount = 0;    ///< items of the mission that it carries, home not among them; 0 not known

    std::optional<double> windSpeed; ///< m/s
    std::optional<double> windFrom;  ///< degrees clockwise from north, from where it blows

    quint64 framesHeard = 0; ///< frames of this aircraft, whether or not their message is known
    quint64 framesLost = 0;  ///< that their sequence numbers say are missing
    quint64 refused = 0;     ///< values that cannot be, and samples that came too late
    QString geoidNote; ///< for people: why heights above the ellipsoid are those above the sea; or empty
};

Q_DECLARE_METATYPE(AxAircraftState)
Q_DECLARE_METATYPE(AxPhotoRecord)

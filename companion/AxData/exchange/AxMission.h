#pragma once

#include <AxData/AxDataExport.h>
#include <AxData/planner/AxPlanRequest.h>
#include <AxData/planner/AxPlanResult.h>

#include <QByteArray>
#include <QString>
#include <QStringList>

#include <array>
#include <cmath>
#include <optional>
#include <vector>

/// A step of a mission as ground-control stations exchange it: a MAVLink mission item.
struct AXDATA_EXPORT AxMissionItem
{
    /// Its number in the protocol.
    enum Command // of those that the project writes itself; others are kept as they are read
    {
        Waypoint = 16,
        ReturnHome = 20,
        TakeOff = 22,
        CircleToAltitude = 31, ///< goes on when it is there
        Jump = 177,            ///< its first parameter counts the items of the mission from 1
        ChangeSpeed = 178,
        TriggerDistance = 206
    };
    /// What its place and altitude are measured in.
    enum Frame
    {
        Global = 0,   ///< altitude in metres above mean sea level
        Mission = 2,  ///< no place
        AboveHome = 3 ///< altitude in metres above the home point
    };
    int command = Waypoint;            ///< a Command, or another one of the protocol
    int frame = AboveHome;             ///< a Frame, or another one
    std::array<double, 4> params = {}; ///< NaN leaves a value to the autopilot
    double latitude = 0.0;             ///< degrees; the fifth parameter where the frame has no place
    double longitude = 0.0;            ///< degrees; the sixth
    double altitude = 0.0;             ///< metres by the frame; the seventh
    bool isContinued = true;           ///< goes on to the next item by itself
};

/// Where the aircraft takes off. NaN where a file leaves it open: the altitude, or all three.
struct AXDATA_EXPORT AxMissionHome
{
    double latitude = 0.0;  ///< degrees
    double longitude = 0.0; ///< degrees
    double altitude = 0.0;  ///< metres; files mean above mean sea level

    /// Whether nobody has said where it is.
    bool IsOpen() const { return std::isnan(latitude) && std::isnan(longitude); }
};

/// What an aircraft is told to fly.
struct AXDATA_EXPORT AxMission
{
    QString name;                     ///< as the pilot calls it
    AxMissionHome home;               ///< its take-off
    bool isFixedWing = false;         ///< and not a multirotor
    double speed = 0.0;               ///< m/s; 0 where a file does not say it
    std::vector<AxMissionItem> items; ///< in their order, home not among them
    /// The items from the first of the survey up to, but not including, the one behind its last; both 0 where
    /// no survey is set apart from the ways to and from it.
    std::size_t surveyBegin = 0;
    std::size_t surveyEnd = 0;
    /// For people: parts of the file it was read from that the items lack. Files written of the mission lack
    /// them, too, and their notes say so.
    QStringList leftOut;
};

/// A mission made or read. With a fault it has no items.
struct AXDATA_EXPORT AxMissionRead
{
    AxMission mission; ///< whole, or empty
    QString fault;     ///< for people; names the line or the field
    QStringList notes; ///< for people: what the mission cannot say, or what of a file was not taken over
};

/// The contents of a file. Empty where there is a fault.
struct AXDATA_EXPORT AxExported
{
    QByteArray data;   ///< as it is to be written
    QString fault;     ///< for people
    QStringList notes; ///< for people: what the format cannot say
};

/// Items of a mission count from 0 to this in the protocol that carries them, home among them.
constexpr std::size_t axMostMissionItems = 65535;

/// The mission that flies a planned route: a speed, a waypoint at each point, photos by distance on the
/// passes. The route's altitudes become heights above the request's home point, so it needs one.
AXDATA_EXPORT AxMissionRead AxMissionOf(const AxPlanResult& route, const AxPlanRequest& request,
                                        const QString& name);

/// The mission with the ways that its route begins and ends with: it takes off at home, climbs there to the
/// altitude of the first waypoint, and comes back over home at that of the last one. On `turnRadius` in
/// metres where the aircraft has wings. As it is where home is open or nothing is flown.
AXDATA_EXPORT AxMission AxWithHomeWays(AxMission mission, double turnRadius);

/// Why no file of the mission should be written and nothing flown by it: places off the globe, no numbers,
/// too many items. Empty when there is no reason.
AXDATA_EXPORT QString AxMissionFault(const AxMission& mission);

/// The same of one item.
AXDATA_EXPORT QString AxItemFault(const AxMissionItem& item);

/// Programs that know no home write zeros for it: left open then, else as it is.
AXDATA_EXPORT AxMissionHome AxHomeOfFile(const AxMissionHome& stated);

/// Whether a latitude and a longitude in degrees are a place on the globe.
AXDATA_EXPORT bool AxIsOnGlobe(double latitude, double longitude);

/// Puts the contents in the place of a file in one step; on failure the file is as it was and the error names
/// it.
AXDATA_EXPORT bool AxSaveExport(const QString& path, const QByteArray& data, QString& error);

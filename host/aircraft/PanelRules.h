#pragma once
#include "host/aircraft/LinkSettings.h"

#include <AxTelemetry/link/AxTelemetryLink.h>

#include <QCoreApplication>

/// What the panel of aircraft goes by: facts in, what may be pressed and what is said out. Any thread.
struct AircraftFacts
{
    LinkSettings::Kind kind = LinkSettings::Kind::Simulator; ///< of the connection that is chosen
    bool hasMap = true;
    bool isKeyBad = false; ///< something is given that is no key
    bool hasRoute = false; ///< a task with a route is chosen
    /// Of the link: which it is, what it does, what is wrong.
    QString linkName;
    AxTelemetryLink::Phase phase = AxTelemetryLink::Phase::Closed;
    QString fault;
    bool isReplay = false;   ///< a recorded flight is open
    int loadingPercent = -1; ///< of a file that is being read; -1: none is
    bool hasHeardBytes = false;
    quint64 refusedSignatures = 0;
    int aircraft = 0;      ///< on the link, or in the file
    int silent = 0;        ///< of these, that are no longer heard
    bool hasPlace = false; ///< of the aircraft in focus
    bool hasHome = false;
    bool isHeard = false;
    qint64 heardAgo = -1; ///< milliseconds
    bool isArmed = false;
    bool isInTheAir = false;
    bool canPause = false;  ///< it is known how to hold it
    bool isAwaited = false; ///< it has not answered a command yet
    bool isTransferring = false;
    int photos = 0;

    bool IsConnected() const
    {
        return isReplay || loadingPercent >= 0 || phase != AxTelemetryLink::Phase::Closed;
    }
};

struct AircraftEnabled
{
    bool connect = false;
    bool disconnect = false;
    bool remove = false;   ///< what a closed link has left on the map
    bool settings = false; ///< of the connection
    bool upload = false;
    bool download = false;
    bool cancel = false;
    bool arm = false;
    bool disarm = false;
    bool start = false; ///< of the mission
    bool pause = false; ///< and continue
    bool comeHome = false;
    bool views = false;
    bool homeView = false;
    bool exportPhotos = false;
    bool clearTrail = false;
};

AircraftEnabled EnabledBy(const AircraftFacts& facts);

/// The state of the link in a line or two; why nothing can be connected is said there, too.
class LinkText
{
    Q_DECLARE_TR_FUNCTIONS(LinkText)
public:
    static QString Of(const AircraftFacts& facts);
    /// Whether it tells of something that is wrong.
    static bool IsBad(const AircraftFacts& facts);
    /// Why Connect cannot be pressed while nothing is connected; empty where it can.
    static QString WhyNot(const AircraftFacts& facts);
};

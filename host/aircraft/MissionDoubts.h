#pragma once
#include "host/tasks/ShownPlan.h"

#include <AxData/exchange/AxMission.h>
#include <AxTelemetry/AxAircraftState.h>

#include <QCoreApplication>
#include <QStringList>

/// What speaks against giving a mission to an aircraft, for people. Any thread.
class MissionDoubts
{
    Q_DECLARE_TR_FUNCTIONS(MissionDoubts)

public:
    /// Heights of a mission count from where the aircraft has its home, or will take off. Empty: nothing
    /// speaks against it.
    static QStringList Of(const AxMission& mission, const AxAircraftState& state);
    /// Whatever the aircraft: a route that its endurance is too short for. GUI thread.
    static QStringList OfPlan(const ShownPlan& shown);
    /// What the mission of a planned route has beside it, and what it cannot say.
    static QStringList NotesOn(const AxMission& mission, const ShownPlan& shown);
};

#include "host/aircraft/PanelRules.h"
#include "host/aircraft/AircraftText.h"

using Phase = AxTelemetryLink::Phase;

AircraftEnabled EnabledBy(const AircraftFacts& facts)
{
    const bool isLive = facts.phase == Phase::Open && facts.aircraft > 0;
    AircraftEnabled can;
    can.settings = !facts.IsConnected();
    can.connect = !facts.IsConnected() && LinkText::WhyNot(facts).isEmpty();
    can.disconnect = facts.IsConnected();
    can.remove = !facts.IsConnected() && facts.aircraft > 0;
    can.upload = isLive && facts.isHeard && facts.hasRoute && !facts.isTransferring;
    can.download = isLive && facts.isHeard && !facts.isTransferring;
    can.cancel = facts.isTransferring;
    // To stop it and to bring it home is never put off.
    const bool isHeard = isLive && facts.isHeard && !facts.isReplay;
    const bool isReady = isHeard && !facts.isAwaited;
    can.arm = isReady && !facts.isArmed && !facts.isTransferring;
    can.disarm = isHeard && facts.isArmed;
    can.start = isReady && !facts.isTransferring;
    can.pause = isReady && facts.isInTheAir && facts.canPause;
    can.comeHome = isHeard && facts.isInTheAir;
    can.views = facts.hasPlace;
    can.homeView = facts.hasHome;
    can.exportPhotos = facts.photos > 0;
    // A replayed line is the record, and comes back with it alone.
    can.clearTrail = facts.aircraft > 0 && !facts.isReplay;
    return can;
}

QString LinkText::WhyNot(const AircraftFacts& facts)
{
    if (!facts.hasMap)
        return tr("The map is still loading.");
    if (facts.kind == LinkSettings::Kind::Simulator && !facts.hasRoute)
        return tr("The simulator flies the route of a task: choose a task that has one.");
    return facts.isKeyBad ? tr("The signing key cannot be used.") : QString();
}

bool LinkText::IsBad(const AircraftFacts& facts)
{
    const bool isSilent = facts.phase == Phase::Open && facts.aircraft > 0 && !facts.isHeard;
    const bool isOneSilent = facts.phase == Phase::Open && facts.silent > 0;
    const bool isRefused = facts.phase == Phase::Open && facts.aircraft == 0 && facts.refusedSignatures > 0;
    return !facts.fault.isEmpty() || isSilent || isOneSilent || isRefused;
}

QString LinkText::Of(const AircraftFacts& facts)
{
    if (facts.loadingPercent >= 0)
        return tr("Reading the file: %1 %").arg(facts.loadingPercent);
    if (facts.isReplay)
        return tr("Replay of a recorded flight, nothing is live: %1").arg(facts.linkName);
    if (facts.phase == Phase::Closed) {
        if (!facts.fault.isEmpty())
            return facts.fault;
        const QString why = WhyNot(facts);
        return why.isEmpty() ? tr("Not connected.") : tr("Not connected. %1").arg(why);
    }
    if (facts.phase == Phase::Waiting)
        return facts.fault.isEmpty() ? tr("%1: connecting...").arg(facts.linkName)
                                     : tr("%1. It is tried again.").arg(facts.fault);
    if (facts.aircraft == 0) {
        if (facts.refusedSignatures > 0)
            return tr("%1: %2 messages were refused: their signatures are not those of the key.")
                .arg(facts.linkName)
                .arg(facts.refusedSignatures);
        return facts.hasHeardBytes ? tr("%1: bytes come, but no aircraft is among them.").arg(facts.linkName)
                                   : tr("%1: open, nothing has been heard.").arg(facts.linkName);
    }
    const QString silent =
        facts.aircraft > 1 && facts.silent > 0
            ? QLatin1Char(' ') + tr("%1 of %2 aircraft lost.").arg(facts.silent).arg(facts.aircraft)
            : QString();
    if (!facts.isHeard)
        return tr("%1: LINK LOST for %2.").arg(facts.linkName, AircraftText::Span(facts.heardAgo)) + silent;
    const QString connected = facts.aircraft == 1
                                  ? tr("%1: connected.").arg(facts.linkName)
                                  : tr("%1: connected, %2 aircraft.").arg(facts.linkName).arg(facts.aircraft);
    return connected + silent + (facts.fault.isEmpty() ? QString() : QLatin1Char('\n') + facts.fault);
}

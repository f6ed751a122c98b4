#pragma once

#include <AxTelemetry/AxTelemetrySource.h>

#include <array>
#include <memory>

class AxMavlinkStation;
struct AxMavFrame;

/// An aircraft on a live MAVLink link. Its AxMavlinkStation makes and owns it, so that it goes away with the
/// station: keep a QPointer. GUI thread.
class AXTELEMETRY_EXPORT AxMavlinkAircraft : public AxTelemetrySource
{
    Q_OBJECT

public:
    /// For the station.
    AxMavlinkAircraft(int systemId, AxMavlinkStation& station);
    ~AxMavlinkAircraft() override;

    const AxAircraftState& State() const override;

    /// The component that flies, as a target of messages.
    int ComponentId() const;
    AxMavlinkStation& Station() const { return m_station; }

    /// Commands of COMMAND_LONG by their number. Each waits for its answer before the next is sent, and is
    /// sent three times, a second apart; signalCommand() tells what came of it.
    void Command(int command, const std::array<float, 7>& params = {});
    void Arm(bool isArmed);
    void StartMission();
    /// At once: what waits for an answer is given up.
    void ReturnHome();
    /// Disarms even in the air, where it falls; at once, as ReturnHome().
    void StopMotors();
    /// Whether it is known how to hold this one and let it go on with its mission: PX4, and ArduPilot's
    /// copters. Without that nothing is sent.
    bool CanPause() const;
    void Pause();
    void Continue();

    /// For the station: what it has heard, that time passes, and that its link is closed. Milliseconds since
    /// 1970, UTC.
    void Take(const AxMavFrame& frame, qint64 now);
    void Tick(qint64 now);
    void LoseLink();

signals:
    /// What came of a command, with a text for people; an empty one: it was accepted.
    void signalCommand(int command, const QString& fault);
    /// The aircraft has begun with it; signalCommand() follows.
    void signalCommandUnderWay(int command);
    /// A frame of this aircraft; valid in a direct connection only.
    void signalFrame(const AxMavFrame& frame);
    /// Ten times a second, by the station's clock, while the link is not closed.
    void signalTick(qint64 now);
    /// The link was closed, by the station or by itself.
    void signalLinkClosed();

private:
    class Relay;
    struct Commands;

    void askForData();
    void takeAnswer(const AxMavFrame& frame, qint64 now);
    void sendCommand(qint64 now);
    void endCommand(const QString& fault);
    void commandAtOnce(int command, const std::array<float, 7>& params);
    void setMode(float mode, float part);

    AxMavlinkStation& m_station;
    std::unique_ptr<Relay> m_relay;
    std::unique_ptr<Commands> m_commands;
};

#pragma once

#include <AxTelemetry/AxTelemetrySource.h>

#include <QByteArray>

#include <array>
#include <memory>

class AxDataRequests;
class AxMavlinkStation;
struct AxMavFrame;

/// An aircraft on a live MAVLink link. Its AxMavlinkStation makes and owns it, so that it goes away with the
/// station: keep a QPointer. GUI thread.
class AXTELEMETRY_EXPORT AxMavlinkAircraft : public AxTelemetrySource
{
    Q_OBJECT

public:
    /// For the station. `peer` is who speaks for it on the link, 0 the only one; an aircraft whose number
    /// another one has, too, is called by the name of its peer.
    AxMavlinkAircraft(int systemId, AxMavlinkStation& station, int peer = 0, const QString& peerName = {});
    ~AxMavlinkAircraft() override;

    const AxAircraftState& State() const override;

    /// The component that flies, as a target of messages.
    int ComponentId() const;
    AxMavlinkStation& Station() const { return m_station; }
    int Peer() const { return m_peer; }

    /// For those who speak MAVLink: sends a frame that Station().Writer() made, to the peer of this aircraft.
    void Send(const QByteArray& frame);

    /// Commands of COMMAND_LONG by their number. Each waits for its answer before the next is sent, and is
    /// sent three times, a second apart; signalCommand() tells what came of it.
    void Command(int command, const std::array<float, 7>& params = {});
    void Arm(bool isArmed);
    void StartMission();
    /// At once: what waits for an answer is given up.
    void ReturnHome();
    /// Disarms even in the air, where it falls; at once, as ReturnHome(). Arm() has the same number, and its
    /// answers look the same: in the place of one that is under way it is sent until the aircraft says that
    /// it is disarmed, twice at least.
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
    void CountUnknown(const AxMavFrame& frame);
    void LoseLink();
    /// For the station: the aircraft speaks from elsewhere now.
    void MoveTo(int peer, const QString& peerName);

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

    void takeAnswer(const AxMavFrame& frame, qint64 now);
    void sendCommand(qint64 now);
    void endCommand(const QString& fault);
    void commandAtOnce(int command, const std::array<float, 7>& params);
    void setMode(float mode, float part);

    AxMavlinkStation& m_station;
    int m_peer;
    bool m_isNamedByPeer;
    std::unique_ptr<Relay> m_relay;
    std::unique_ptr<Commands> m_commands;
    std::unique_ptr<AxDataRequests> m_requests;
};

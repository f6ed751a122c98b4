#pragma once
#include <AxTelemetry/AxMavlinkStation.h>
#include <AxTelemetry/mavlink/AxMavMessages.h>
#include <AxTelemetry/mavlink/AxMavParser.h>
#include <AxTelemetry/mavlink/AxMavWriter.h>

#include <functional>

/// A link to a peer in the same process, without a socket.
class MemoryLink : public AxTelemetryLink
{
public:
    bool Open(QString*) override
    {
        SetPhase(Phase::Open);
        return true;
    }
    void Close() override { SetPhase(Phase::Closed); }
    void Write(const QByteArray& bytes) override
    {
        parser.Feed(bytes, [&](const AxMavFrame& frame) { written(frame); });
    }
    void WriteTo(int peer, const QByteArray& bytes) override
    {
        latestPeer = peer;
        Write(bytes);
    }
    QString PeerName(int peer) const override { return QStringLiteral("peer %1").arg(peer); }
    QString Name() const override { return QStringLiteral("Memory"); }
    bool BringsWholeFrames() const override { return true; }

    int latestPeer = 0; // that was written to
    std::function<void(const AxMavFrame&)> written = [](const AxMavFrame&) {};

private:
    AxMavParser parser;
};

/// A station on a MemoryLink, whose time passes as the test says, and an aircraft that speaks to it.
class MemoryStation
{
public:
    explicit MemoryStation(quint8 autopilot = 3, quint8 type = 2) : m_autopilot(autopilot), m_type(type)
    {
        station.SetClock([this] { return now; });
    }

    void Open()
    {
        QString fault;
        station.Open(&fault);
        Beat();
    }
    template <class Message> void Say(const Message& message)
    {
        emit link->signalBytes(aircraft.Write(message));
    }
    void Beat()
    {
        AxMavHeartbeat beat;
        beat.autopilot = m_autopilot;
        beat.type = m_type;
        Say(beat);
    }
    /// Lets milliseconds pass, a tenth of a second at a time.
    void Pass(int milliseconds)
    {
        for (int i = 0; i < milliseconds; i += 100) {
            now += 100;
            station.Tick();
        }
    }
    AxMavlinkAircraft& Aircraft() { return *station.Aircraft().first(); }

    qint64 now = 1'700'000'000'000;
    MemoryLink* link = new MemoryLink;
    AxMavlinkStation station{std::unique_ptr<AxTelemetryLink>(link)};
    AxMavWriter aircraft{1, 1};

private:
    quint8 m_autopilot;
    quint8 m_type;
};

#pragma once

#include <AxTelemetry/simulator/AxSimulatedExchange.h>
#include <AxTelemetry/simulator/AxSimulatedVehicle.h>

#include <AxTelemetry/mavlink/AxMavWriter.h>

#include <QByteArray>
#include <QList>

#include <array>

/// A simulated vehicle that speaks MAVLink: tells what it does, obeys commands, takes and gives missions.
/// Hands out frames, and is told what time it is, by the link that owns it.
class AxSimulatedAutopilot
{
public:
    /// How time passes: real seconds since some start, how fast the vehicle's own go, and the real time (UTC)
    /// in microseconds since 1970.
    struct Moment
    {
        double now = 0.0;
        double speed = 1.0;
        quint64 utc = 0;
    };

    /// `autopilot`: MAV_AUTOPILOT, 3 ArduPilot or 12 PX4.
    AxSimulatedAutopilot(const AxSimulatedAircraft& aircraft, int systemId, int autopilot);

    AxSimulatedVehicle& Vehicle() { return m_vehicle; }
    int SystemId() const { return m_systemId; }
    AxMavWriter& Writer() { return m_writer; }
    /// Positions and attitudes a second of the vehicle's time, whatever stations ask for.
    void SetRates(double positions, double attitudes);

    /// A frame that a ground station sent to this system or to all.
    void Take(const AxMavFrame& frame, const Moment& moment);
    /// Lets so many of its seconds pass up to this moment, and tells what is due.
    void Step(double seconds, const Moment& moment);
    /// What it has to say since the last call, a frame each.
    QList<QByteArray> TakeFrames();

private:
    template <class Message> void send(const Message& message) { m_frames += m_writer.Write(message); }
    void tellPlace();
    void tellAttitude();
    void tellSystem(const Moment& moment);
    void tellHeartbeat();
    void tellMission();
    void tellHome();
    void tellVersion();
    void tellPhoto(const AxSimulatedEvent& photo, const Moment& moment);
    void tellText(int severity, const QString& text);
    void takeCommand(const AxMavFrame& frame, int command, const std::array<double, 7>& params);
    int obey(int command, const std::array<double, 7>& params);
    int setMode(const std::array<double, 7>& params);
    int setInterval(int message, double microseconds);
    int tellMessage(int message);
    int worded(const QString& fault);
    quint32 customMode() const;
    quint32 bootTime(double seconds) const;

    /// What is told again and again.
    struct Stream
    {
        double interval; // seconds of the vehicle
        double least;    // seconds of real time between two, however fast the vehicle's go
        double due;      // in the vehicle's seconds
    };
    bool isDue(Stream& stream, double speed);
    void askedFor(Stream& stream, double seconds);
    void takeStream(const AxMavRequestDataStream& stream);

    AxSimulatedVehicle m_vehicle;
    int m_systemId;
    int m_autopilot;
    AxMavWriter m_writer;
    AxSimulatedExchange m_exchange;
    QList<QByteArray> m_frames;
    Stream m_places{0.25, 0.02, 0.0};
    Stream m_attitudes{0.1, 0.02, 0.0};
    Stream m_slow{1.0, 0.5, 0.0};
    double m_beat = -1.0;       // the last heartbeat, in real seconds
    bool m_hasOwnRates = false; // and stations cannot change them
    int m_toldItem = -2;
    int m_toldItems = -1;
    bool m_toldArmed = false;
    quint16 m_text = 0; // the number of the last long text
    float m_rollSpeed = 0.0F;
    float m_pitchSpeed = 0.0F;
    float m_yawSpeed = 0.0F;
};

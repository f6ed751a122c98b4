#pragma once

#include <AxTelemetry/AxVehicleDecoder.h>
#include <AxTelemetry/record/AxFlightRecord.h>

struct AxMavFrame;

/// The flight of one MAVLink system, frame by frame. Any one thread.
class AxTlogFlight : private AxVehicleEvents
{
public:
    explicit AxTlogFlight(int systemId);

    /// Takes a frame of the system, heard at `time` (milliseconds since 1970, UTC), in order of time.
    void Feed(const AxMavFrame& frame, quint64 time);

    /// Counts a frame of an unknown message.
    void CountUnknown(const AxMavFrame& frame) { m_decoder.CountUnknown(frame); }

    /// The flight; null if there is none: the system is no aircraft, or has never told a place. Once.
    std::shared_ptr<const AxFlightRecord> Finish();

    /// For people: why its heights are doubtful, or empty.
    const QString& GeoidNote() const { return m_decoder.State().geoidNote; }

private:
    void Position(const AxPlace& place, quint64 time) override;
    void Attitude(double roll, double pitch, double yaw, quint64 time) override;
    void Photo(const AxPhotoRecord& photo) override;
    void Camera(double angle) override;
    void Message(int severity, const QString& text) override;

    std::shared_ptr<AxFlightRecord> m_flight = std::make_shared<AxFlightRecord>();
    AxVehicleDecoder m_decoder;
    quint64 m_now = 0;
    bool m_hasHeartbeat = false;
    bool m_isVehicle = false;
};

#pragma once

#include <AxTelemetry/AxAircraftState.h>

#include <memory>

struct AxMavFrame;

/// What an AxVehicleDecoder tells; each does nothing unless overridden. Units as in AxTelemetrySource.
class AXTELEMETRY_EXPORT AxVehicleEvents
{
public:
    virtual ~AxVehicleEvents() = default;
    /// As the signals of AxTelemetrySource with these arguments.
    virtual void Position(const AxPlace& /*place*/, quint64 /*time*/) {}
    virtual void Attitude(double /*roll*/, double /*pitch*/, double /*yaw*/, quint64 /*time*/) {}
    virtual void Photo(const AxPhotoRecord& /*photo*/) {}
    virtual void Message(int /*severity*/, const QString& /*text*/) {}

    /// The angle of the camera from straight down towards ahead, degrees.
    virtual void Camera(double /*angle*/) {}
};

/// Makes the state of one aircraft out of the frames of one MAVLink system. No timer, no input or output: the
/// live link and recorded flights see the same heights and refuse the same values. Any one thread.
///
/// MAVLink's altitudes are above mean sea level; the geoid (AxGeoid.h) makes them altitudes above the
/// ellipsoid. Values that cannot be (no number, off the globe, 0/0) change nothing and count as
/// refused. So do samples older than the newest by the aircraft's clock, unless two in succession are more
/// than 1 s older: then it has started anew. The link is as alive as the component that flies: a gimbal that
/// goes on speaking does not count.
class AXTELEMETRY_EXPORT AxVehicleDecoder
{
public:
    /// The events are not owned; null tells nobody.
    explicit AxVehicleDecoder(int systemId, AxVehicleEvents* events = nullptr);
    ~AxVehicleDecoder();

    /// Takes a frame, heard at `time` (milliseconds since 1970, UTC). Frames of other systems are passed
    /// over.
    void Feed(const AxMavFrame& frame, qint64 time);

    /// Counts a frame of an unknown message as heard. It says nothing else: noise may look like it.
    void CountUnknown(const AxMavFrame& frame);

    /// Tells what waits for more: a message whose last part has been missing for 1 s. Feed() does so itself.
    void Flush(qint64 time);

    /// After the last frame.
    const AxAircraftState& State() const { return m_state; }

    /// The component that flies, 0 until its first heartbeat.
    int ComponentId() const;

    /// Another name than the one of its number, for people.
    void SetName(const QString& name) { m_state.name = name; }
    /// The link is lost, or is no longer.
    void SetHeard(bool isHeard) { m_state.isHeard = isHeard; }

private:
    struct Memory;

    AxAircraftState m_state;
    AxVehicleEvents* m_events;
    std::unique_ptr<Memory> m_memory;
};

/// Whether this frame is the heartbeat of something that flies or drives, not of a ground station, a camera,
/// a beacon: the first one makes an aircraft.
AXTELEMETRY_EXPORT bool AxIsVehicleHeartbeat(const AxMavFrame& frame);

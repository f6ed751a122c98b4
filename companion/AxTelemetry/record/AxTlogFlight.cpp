#include <AxTelemetry/mavlink/AxMavMessages.h>
#include <AxTelemetry/record/AxTlogFlight.h>

#include <algorithm>

namespace {
constexpr quint64 stateInterval = 1000;      // milliseconds
constexpr quint64 longestPhotoDelay = 10000; // milliseconds

bool IsOtherState(const AxAircraftState& a, const AxAircraftState& b)
{
    return a.mode != b.mode || a.isArmed != b.isArmed || a.isLanded != b.isLanded ||
           a.missionCurrent != b.missionCurrent || a.fixType != b.fixType || a.name != b.name;
}
} // namespace

AxTlogFlight::AxTlogFlight(int systemId) : m_decoder(systemId, this)
{
    m_flight->systemId = systemId;
}

void AxTlogFlight::Feed(const AxMavFrame& frame, quint64 time)
{
    m_now = time;
    m_hasHeartbeat = m_hasHeartbeat || frame.messageId == AxMavHeartbeat::id;
    m_isVehicle = m_isVehicle || AxIsVehicleHeartbeat(frame);
    m_decoder.Feed(frame, static_cast<qint64>(time));
    if (m_decoder.State().lastHeard == static_cast<qint64>(time))
        m_flight->AddHeard(time);
    const auto& states = m_flight->States();
    if (states.empty() || time - states.back().time >= stateInterval ||
        IsOtherState(states.back().state, m_decoder.State()))
        m_flight->AddState({time, m_decoder.State()});
}

std::shared_ptr<const AxFlightRecord> AxTlogFlight::Finish()
{
    m_decoder.Flush(static_cast<qint64>(m_now) + 10000);
    if (m_flight->IsEmpty() || (m_hasHeartbeat && !m_isVehicle))
        return nullptr;
    m_flight->EndAt(m_now);
    m_flight->name = m_decoder.State().name;
    return m_flight;
}

void AxTlogFlight::Position(const AxPlace& place, quint64 /*time*/)
{
    AxFlightSample sample;
    sample.time = m_now;
    sample.longitude = place.longitude;
    sample.latitude = place.latitude;
    sample.altitude = place.altitude;
    if (const auto& height = m_decoder.State().heightAboveHome)
        sample.heightAboveHome = static_cast<float>(*height);
    if (!m_flight->Attitudes().empty()) {
        const AxFlightAttitude& attitude = m_flight->Attitudes().back();
        sample.roll = attitude.roll;
        sample.pitch = attitude.pitch;
        sample.yaw = attitude.yaw;
    }
    m_flight->AddSample(sample);
}

void AxTlogFlight::Attitude(double roll, double pitch, double yaw, quint64 /*time*/)
{
    m_flight->AddAttitude(
        {m_now, static_cast<float>(roll), static_cast<float>(pitch), static_cast<float>(yaw)});
}

void AxTlogFlight::Photo(const AxPhotoRecord& photo)
{
    // A camera may tell late of what it took a moment ago; one whose clock is off would put photos elsewhere
    // in the flight.
    AxPhotoRecord kept = photo;
    if (kept.time > m_now || kept.time + longestPhotoDelay < m_now)
        kept.time = m_now;
    if (!m_flight->Photos().empty())
        kept.time = std::max(kept.time, m_flight->Photos().back().time);
    m_flight->AddPhoto(kept);
}

void AxTlogFlight::Camera(double angle)
{
    m_flight->AddCamera({m_now, angle, m_decoder.State().cameraYaw});
}

void AxTlogFlight::Message(int severity, const QString& text)
{
    m_flight->AddMessage({m_now, severity, text});
}

#include <AxTelemetry/record/AxFlightRecord.h>
#include <AxTelemetry/record/AxSeaLevel.h>

#include <AxAlgorthm/AxConstants.h>
#include <AxData/exchange/AxMission.h>

#include <algorithm>
#include <cmath>

namespace {
template <typename Timed> bool AddInOrder(std::vector<Timed>& list, const Timed& added)
{
    if (!list.empty() && added.time < list.back().time)
        return false;
    list.push_back(added);
    return true;
}

void SetKnown(std::optional<double>& value, float known)
{
    if (!std::isnan(known))
        value = static_cast<double>(known);
}
} // namespace

bool AxFlightRecord::AddSample(const AxFlightSample& sample)
{
    if (!AxIsOnGlobe(sample.latitude, sample.longitude) || !std::isfinite(sample.altitude) ||
        !AddInOrder(m_samples, sample))
        return false;
    AddHeard(sample.time);
    return true;
}

bool AxFlightRecord::AddAttitude(const AxFlightAttitude& attitude)
{
    if (!AddInOrder(m_attitudes, attitude))
        return false;
    AddHeard(attitude.time);
    return true;
}

bool AxFlightRecord::AddPhoto(const AxPhotoRecord& photo)
{
    return AxIsOnGlobe(photo.latitude, photo.longitude) && AddInOrder(m_photos, photo);
}

bool AxFlightRecord::AddMessage(const AxFlightMessage& message)
{
    return AddInOrder(m_messages, message);
}

bool AxFlightRecord::AddCamera(const AxFlightCamera& camera)
{
    return AddInOrder(m_cameras, camera);
}

bool AxFlightRecord::AddState(const AxFlightState& state)
{
    return AddInOrder(m_states, state);
}

void AxFlightRecord::AddHeard(quint64 time)
{
    if (m_isHeard && time <= m_lastHeard)
        return;
    if (m_isHeard && time - m_lastHeard > m_longestSilence)
        m_gaps.push_back({m_lastHeard, time});
    m_isHeard = true;
    m_lastHeard = time;
    m_end = std::max(m_end, time);
}

void AxFlightRecord::EndAt(quint64 time)
{
    if (!m_isHeard || time <= m_end)
        return;
    if (time - m_lastHeard > m_longestSilence)
        m_gaps.push_back({m_lastHeard, time + 1});
    m_end = time;
}

int AxFlightRecord::IndexAt(quint64 time) const
{
    return IsEmpty() ? -1 : std::max(0, static_cast<int>(AxCountTo(m_samples, time)) - 1);
}

quint64 AxFlightRecord::TimeAt(int index) const
{
    if (IsEmpty())
        return 0;
    const int last = static_cast<int>(m_samples.size()) - 1;
    return m_samples[static_cast<std::size_t>(std::clamp(index, 0, last))].time;
}

const AxFlightGap* AxFlightRecord::GapAt(quint64 time) const
{
    const auto gap = std::upper_bound(m_gaps.begin(), m_gaps.end(), time,
                                      [](quint64 at, const AxFlightGap& later) { return at < later.end; });
    return gap != m_gaps.end() && gap->begin < time ? &*gap : nullptr;
}

AxAircraftState AxFlightRecord::StateAt(quint64 time) const
{
    AxAircraftState state;
    state.systemId = systemId;
    state.name = name;
    const std::size_t told = AxCountTo(m_states, time);
    if (told > 0)
        state = m_states[told - 1].state;
    if (IsEmpty() || time < Begin())
        return state;
    const AxFlightGap* const gap = GapAt(time);
    state.isHeard = !gap;
    state.lastHeard = static_cast<qint64>(gap ? gap->begin : std::min(time, m_lastHeard));

    const AxFlightSample& sample = m_samples[static_cast<std::size_t>(IndexAt(time))];
    if (state.altitude && state.altitudeAboveSea)
        state.altitudeAboveSea = sample.altitude - (*state.altitude - *state.altitudeAboveSea);
    else
        state.altitudeAboveSea = sample.altitude - AxSeaLevelAt(sample.latitude, sample.longitude);
    state.longitude = sample.longitude;
    state.latitude = sample.latitude;
    state.altitude = sample.altitude;
    // Both are told as often as states are kept, or more often.
    const auto since = [](qint64& heard, quint64 later) {
        if (heard > 0)
            heard = std::max(heard, static_cast<qint64>(later));
    };
    since(state.placeHeard, sample.time);
    SetKnown(state.heightAboveHome, sample.heightAboveHome);
    const std::size_t turns = AxCountTo(m_attitudes, time);
    const bool isNewer = turns > 0 && m_attitudes[turns - 1].time >= sample.time;
    SetKnown(state.roll, isNewer ? m_attitudes[turns - 1].roll : sample.roll);
    SetKnown(state.pitch, isNewer ? m_attitudes[turns - 1].pitch : sample.pitch);
    SetKnown(state.yaw, isNewer ? m_attitudes[turns - 1].yaw : sample.yaw);
    if (turns > 0)
        since(state.attitudeHeard, m_attitudes[turns - 1].time);
    const std::size_t looks = AxCountTo(m_cameras, time);
    constexpr quint64 oldLook = 3000; // milliseconds
    state.cameraYaw.reset();
    if (looks > 0 && time - m_cameras[looks - 1].time < oldLook)
        state.cameraYaw = m_cameras[looks - 1].heading;
    if (state.yaw)
        state.heading = std::fmod(*state.yaw * 180.0 / PI + 360.0, 360.0);
    return state;
}

#include "AxDataRequests.h"
#include "AxVehicleKinds.h"

#include <AxTelemetry/AxMavlinkAircraft.h>
#include <AxTelemetry/AxMavlinkStation.h>
#include <AxTelemetry/mavlink/AxMavMessages.h>
#include <AxTelemetry/mavlink/AxMavWriter.h>

#include <algorithm>
#include <iterator>

namespace {
constexpr int setMessageInterval = 511; // of MAV_CMD
constexpr int mostRequests = 5;         // for each message
constexpr qint64 patienceMs = 5000;
constexpr qint64 betweenMs = 500;

struct WantedMessage
{
    quint32 id;
    float intervalMs; // 0: as it happens
    quint8 stream;    // of MAV_DATA_STREAM, that brings it; 0 none
};

// What a station needs, often enough for a smooth picture, little enough for a radio of 57,600 bits a second.
constexpr WantedMessage wantedMessages[] = {
    {AxMavGlobalPositionInt::id, 250, 6},
    {AxMavAttitude::id, 100, 10},
    {AxMavVfrHud::id, 500, 11},
    {AxMavGpsRawInt::id, 500, 2},
    {AxMavSysStatus::id, 1000, 2},
    {AxMavBatteryStatus::id, 2000, 12},
    {AxMavExtendedSysState::id, 500, 0},
    {AxMavHomePosition::id, 5000, 0},
    {AxMavMissionCurrent::id, 1000, 2},
    {AxMavWindCov::id, 2000, 0},
    {AxMavWind::id, 2000, 12},
    {AxMavMountOrientation::id, 250, 0},
    {AxMavCameraTrigger::id, 0, 0},
    {AxMavCameraImageCaptured::id, 0, 0},
};

struct WantedStream
{
    quint8 id;
    quint16 rate;
};

// For autopilots that know groups of messages only.
constexpr WantedStream wantedStreams[] = {{2, 2}, {6, 4}, {10, 10}, {11, 2}, {12, 1}};
} // namespace

AxDataRequests::AxDataRequests(AxMavlinkAircraft& aircraft)
    : m_aircraft(aircraft), m_requests(std::size(wantedMessages))
{
}

void AxDataRequests::Start(qint64 now)
{
    m_unanswered = -1;
    m_next = 0;
    if (m_aircraft.State().autopilot == axMavArduPilot)
        for (const WantedStream& wanted : wantedStreams)
            askStream(wanted.id, wanted.rate);
    for (std::size_t i = 0; i < m_requests.size(); ++i) {
        Request& request = m_requests[i];
        request.tries = 1;
        request.asked = now;
        request.hasCome = false;
        if (!request.isDenied)
            ask(i);
    }
}

void AxDataRequests::Hear(quint32 messageId)
{
    for (std::size_t i = 0; i < m_requests.size(); ++i)
        if (wantedMessages[i].id == messageId)
            m_requests[i].hasCome = true;
}

void AxDataRequests::Take(int command, int result)
{
    // An answer does not name its message. Only one is asked for at a time, but at the start.
    if (command != setMessageInterval || m_unanswered < 0)
        return;
    const auto index = static_cast<std::size_t>(m_unanswered);
    m_unanswered = -1;
    constexpr int isDone = 0; // MAV_RESULT
    constexpr int isDenied = 2;
    constexpr int isUnsupported = 3;
    Request& request = m_requests[index];
    const WantedMessage& wanted = wantedMessages[index];
    request.isDenied = result == isDenied || result == isUnsupported;
    request.goesByStream =
        result == isUnsupported && wanted.stream != 0 && m_aircraft.State().autopilot == axMavArduPilot;
    if (result == isDone && wanted.intervalMs == 0)
        request.hasCome = true; // it does with the next photo
}

void AxDataRequests::Tick(qint64 now)
{
    if (now < m_next)
        return;
    const auto isDue = [&](const Request& request) {
        return !request.hasCome && (!request.isDenied || request.goesByStream) &&
               request.tries < mostRequests && now - request.asked >= patienceMs;
    };
    auto due = m_requests.end();
    for (auto at = m_requests.begin(); at != m_requests.end(); ++at)
        if (isDue(*at) && (due == m_requests.end() || at->asked < due->asked))
            due = at;
    if (due == m_requests.end())
        return;
    ++due->tries;
    due->asked = now;
    m_next = now + betweenMs;
    const auto index = due - m_requests.begin();
    if (!due->goesByStream) {
        m_unanswered = static_cast<int>(index);
        return ask(static_cast<std::size_t>(index));
    }
    m_unanswered = -1;
    for (const WantedStream& wanted : wantedStreams)
        if (wanted.id == wantedMessages[index].stream)
            askStream(wanted.id, wanted.rate);
}

void AxDataRequests::ask(std::size_t index)
{
    AxMavCommandLong message;
    message.target_system = static_cast<quint8>(m_aircraft.State().systemId);
    message.target_component = static_cast<quint8>(m_aircraft.ComponentId());
    message.command = setMessageInterval;
    message.param1 = static_cast<float>(wantedMessages[index].id);
    message.param2 = wantedMessages[index].intervalMs * 1000.0f;
    m_aircraft.Send(m_aircraft.Station().Writer().Write(message));
}

void AxDataRequests::askStream(quint8 stream, quint16 rate)
{
    AxMavRequestDataStream message;
    message.target_system = static_cast<quint8>(m_aircraft.State().systemId);
    message.target_component = static_cast<quint8>(m_aircraft.ComponentId());
    message.req_stream_id = stream;
    message.req_message_rate = rate;
    message.start_stop = 1;
    m_aircraft.Send(m_aircraft.Station().Writer().Write(message));
}

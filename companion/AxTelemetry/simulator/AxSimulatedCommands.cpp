#include <AxTelemetry/simulator/AxSimulatedAutopilot.h>

#include <algorithm>
#include <cmath>
#include <iterator>
#include <type_traits>

namespace {
// Commands of COMMAND_LONG
constexpr int comeHome = 20;
constexpr int landHere = 21;
constexpr int setsMode = 176;
constexpr int startMission = 300;
constexpr int armOrDisarm = 400;
constexpr int setsInterval = 511;
constexpr int asksForMessage = 512;
constexpr int asksForVersion = 520;

// MAV_RESULT
constexpr int isObeyed = 0;
constexpr int isUnknown = 3;
constexpr int hasFailed = 4;

// Streams of REQUEST_DATA_STREAM
constexpr int streamOfAll = 0;
constexpr int streamOfPlaces = 6;
constexpr int streamOfAttitudes = 10;
} // namespace

void AxSimulatedAutopilot::Take(const AxMavFrame& frame, const Moment& moment)
{
    // Of what is meant for one system, only what is meant for this one.
    bool isMine = true;
    AxMavVisit(frame.messageId, [&](auto message) {
        AxMavDecode(frame, message);
        decltype(message)::Visit(message, [&](const char* name, const auto& value) {
            if constexpr (std::is_same_v<std::decay_t<decltype(value)>, quint8>)
                if (qstrcmp(name, "target_system") == 0)
                    isMine = value == m_systemId || value == 0;
        });
    });
    if (!isMine || m_exchange.Take(frame, moment.now))
        return;
    AxMavCommandLong command;
    AxMavCommandInt commandInt;
    AxMavMissionSetCurrent current;
    AxMavRequestDataStream stream;
    AxMavPing ping;
    if (AxMavDecode(frame, command)) {
        takeCommand(frame, command.command,
                    {double(command.param1), double(command.param2), double(command.param3),
                     double(command.param4), double(command.param5), double(command.param6),
                     double(command.param7)});
    } else if (AxMavDecode(frame, commandInt)) {
        takeCommand(frame, commandInt.command,
                    {double(commandInt.param1), double(commandInt.param2), double(commandInt.param3),
                     double(commandInt.param4), double(commandInt.x), double(commandInt.y),
                     double(commandInt.z)});
    } else if (AxMavDecode(frame, current)) {
        m_vehicle.SetCurrentItem(m_exchange.ItemOf(current.seq));
        tellMission();
    } else if (AxMavDecode(frame, stream)) {
        takeStream(stream);
    } else if (AxMavDecode(frame, ping) && ping.target_system == 0) {
        ping.target_system = frame.systemId;
        ping.target_component = frame.componentId;
        send(ping);
    }
}

void AxSimulatedAutopilot::takeStream(const AxMavRequestDataStream& stream)
{
    if (stream.start_stop == 0)
        return;
    const double interval = 1.0 / std::max<double>(stream.req_message_rate, 0.1);
    if (stream.req_stream_id == streamOfPlaces || stream.req_stream_id == streamOfAll)
        askedFor(m_places, interval);
    if (stream.req_stream_id == streamOfAttitudes || stream.req_stream_id == streamOfAll)
        askedFor(m_attitudes, interval);
}

void AxSimulatedAutopilot::askedFor(Stream& stream, double seconds)
{
    if (!m_hasOwnRates)
        stream.interval = std::clamp(seconds, 0.02, 10.0);
}

void AxSimulatedAutopilot::takeCommand(const AxMavFrame& frame, int command,
                                       const std::array<double, 7>& params)
{
    const int result = obey(command, params);
    AxMavCommandAck answer;
    answer.command = quint16(command);
    answer.result = quint8(result);
    answer.target_system = frame.systemId;
    answer.target_component = frame.componentId;
    send(answer);
}

int AxSimulatedAutopilot::worded(const QString& fault)
{
    if (fault.isEmpty())
        return isObeyed;
    tellText(3, fault);
    return hasFailed;
}

int AxSimulatedAutopilot::obey(int command, const std::array<double, 7>& params)
{
    switch (command) {
    case comeHome:
        m_vehicle.ReturnHome();
        return isObeyed;
    case landHere:
        m_vehicle.LandHere();
        return isObeyed;
    case setsMode:
        return setMode(params);
    case startMission:
        return worded(m_vehicle.Start());
    case armOrDisarm:
        return worded(params[0] >= 0.5 ? m_vehicle.Arm() : m_vehicle.Disarm());
    case setsInterval:
        return setInterval(int(std::lround(params[0])), params[1]);
    case asksForMessage:
        return tellMessage(int(std::lround(params[0])));
    case asksForVersion:
        return tellMessage(int(AxMavAutopilotVersion::id));
    default:
        return isUnknown;
    }
}

int AxSimulatedAutopilot::setMode(const std::array<double, 7>& params)
{
    // The numbers that customMode() tells, in the parts in which the command bears them.
    const int mode = int(params[1]);
    const int part = int(params[2]);
    const bool isCopter = !m_vehicle.Aircraft().HasWings();
    const bool isArdu = m_autopilot == 3;
    if (isArdu ? mode == (isCopter ? 3 : 10) : mode == 4 && part == 4)
        return worded(m_vehicle.Start());
    if (isArdu ? mode == (isCopter ? 6 : 11) : mode == 4 && part == 5)
        return obey(comeHome, params);
    if (isArdu ? isCopter && mode == 9 : mode == 4 && part == 6)
        return obey(landHere, params);
    return isUnknown;
}

int AxSimulatedAutopilot::setInterval(int message, double microseconds)
{
    constexpr quint32 slow[] = {AxMavHeartbeat::id,    AxMavSystemTime::id,     AxMavGpsRawInt::id,
                                AxMavSysStatus::id,    AxMavBatteryStatus::id,  AxMavExtendedSysState::id,
                                AxMavHomePosition::id, AxMavMissionCurrent::id, AxMavMountOrientation::id,
                                AxMavWindCov::id,      AxMavVfrHud::id};
    if (message == int(AxMavGlobalPositionInt::id) && microseconds > 0.0)
        askedFor(m_places, microseconds * 1e-6);
    else if (message == int(AxMavAttitude::id) && microseconds > 0.0)
        askedFor(m_attitudes, microseconds * 1e-6);
    else if (std::find(std::begin(slow), std::end(slow), quint32(message)) == std::end(slow))
        return isUnknown;
    return isObeyed;
}

int AxSimulatedAutopilot::tellMessage(int message)
{
    if (message == int(AxMavAutopilotVersion::id))
        tellVersion();
    else if (message == int(AxMavHomePosition::id) && m_vehicle.Home())
        tellHome();
    else
        return hasFailed;
    return isObeyed;
}

#include <AxTelemetry/AxMavlinkAircraft.h>
#include <AxTelemetry/AxMavlinkStation.h>
#include <AxTelemetry/AxVehicleDecoder.h>

#include <AxTelemetry/mavlink/AxMavMessages.h>
#include <AxTelemetry/mavlink/AxMavWriter.h>

#include "AxDataRequests.h"
#include "AxVehicleKinds.h"
#include "AxVehicleText.h"

#include <AxAlgorthm/AxConstants.h>

#include <QtMath>

#include <deque>
#include <optional>
#include <utility>

namespace {
constexpr int warning = 4;      // MAV_SEVERITY
constexpr qint64 stateMs = 100; // between two signalState()
constexpr int commandTries = 3;
constexpr int triesInDoubt = 2; // before what the aircraft says counts
constexpr qint64 commandWaitMs = 1000;
constexpr qint64 inProgressWaitMs = 10000; // for the end of what the aircraft says it is doing

enum VehicleCommand // of MAV_CMD
{
    CommandReturn = 20,
    CommandMode = 176,
    CommandStartMission = 300,
    CommandArm = 400
};

// Second parameter of CommandArm: also in flight.
constexpr float inAnyCase = 21196.0f;
// First parameter of CommandMode, bits of MAV_MODE_FLAG
constexpr int hasOwnMode = 1;
constexpr int isArmedMode = 128;
// Modes of ArduPilot's copters; brake, because loiter climbs and sinks with a stick that nobody may hold.
constexpr float copterMission = 3.0f;
constexpr float copterBrake = 17.0f;
// Modes of PX4
constexpr float px4Automatic = 4.0f;
constexpr float px4Hold = 3.0f;
constexpr float px4Mission = 4.0f;

QString RefusalOf(int result)
{
    switch (result) { // MAV_RESULT
    case 1:
        return AxVehicleText(QT_TRANSLATE_NOOP("AxVehicle", "The aircraft refuses for now."));
    case 2:
        return AxVehicleText(QT_TRANSLATE_NOOP("AxVehicle", "The aircraft refuses."));
    case 3:
        return AxVehicleText(QT_TRANSLATE_NOOP("AxVehicle", "The aircraft does not know the command."));
    case 4:
        return AxVehicleText(QT_TRANSLATE_NOOP("AxVehicle", "The aircraft has tried and failed."));
    case 6:
        return AxVehicleText(QT_TRANSLATE_NOOP("AxVehicle", "The command was cancelled."));
    default:
        return AxVehicleText(QT_TRANSLATE_NOOP("AxVehicle", "The aircraft answers with the number %1."))
            .arg(result);
    }
}
} // namespace

/// Turns what the decoder tells into signals.
class AxMavlinkAircraft::Relay : public AxVehicleEvents
{
public:
    Relay(int systemId, AxMavlinkAircraft& aircraft) : decoder(systemId, this), m_aircraft(aircraft) {}

    void Position(const AxPlace& place, quint64 time) override
    {
        emit m_aircraft.globalPositionChanged(place.longitude, place.latitude, place.altitude, time);
    }
    void Attitude(double roll, double pitch, double yaw, quint64 time) override
    {
        emit m_aircraft.attitudeChanged(roll, pitch, yaw, time);
    }
    void Photo(const AxPhotoRecord& photo) override
    {
        emit m_aircraft.picture_Idx(photo.index, photo.longitude, photo.latitude);
        emit m_aircraft.signalPhoto(photo);
    }
    void Camera(double angle) override
    {
        const double hundredths = qBound(0.0, angle, 180.0) / DVAngleFactor;
        emit m_aircraft.VideoData(static_cast<quint16>(qRound(hundredths)), 1, 0, 1);
    }
    void Message(int severity, const QString& text) override
    {
        emit m_aircraft.signalMessage(severity, text);
    }

    AxVehicleDecoder decoder;
    int mavType = 0;
    bool isLost = false;
    bool isPlaceOld = false;
    bool isNews = false;
    qint64 told = 0;

private:
    AxMavlinkAircraft& m_aircraft;
};

struct AxMavlinkAircraft::Commands
{
    struct One
    {
        int command = 0;
        std::array<float, 7> params{};
        bool isDoubted = false; // answers may be those of the one before, of the same number
    };
    std::deque<One> waiting; // the first is under way
    int tries = 0;
    qint64 due = 0;
    std::optional<int> doubted; // the latest such answer to the one under way

    bool IsDoubted() const { return !waiting.empty() && waiting.front().isDoubted; }
};

AxMavlinkAircraft::AxMavlinkAircraft(int systemId, AxMavlinkStation& station, int peer,
                                     const QString& peerName)
    : m_station(station), m_peer(peer), m_isNamedByPeer(!peerName.isEmpty()),
      m_relay(std::make_unique<Relay>(systemId, *this)), m_commands(std::make_unique<Commands>()),
      m_requests(std::make_unique<AxDataRequests>(*this))
{
    MoveTo(peer, peerName);
}

AxMavlinkAircraft::~AxMavlinkAircraft() = default;

const AxAircraftState& AxMavlinkAircraft::State() const
{
    return m_relay->decoder.State();
}

int AxMavlinkAircraft::ComponentId() const
{
    return m_relay->decoder.ComponentId();
}

void AxMavlinkAircraft::MoveTo(int peer, const QString& peerName)
{
    m_peer = peer;
    m_relay->isNews = true;
    if (m_isNamedByPeer)
        m_relay->decoder.SetName(AxVehicleText(QT_TRANSLATE_NOOP("AxVehicle", "Aircraft %1 (%2)"))
                                     .arg(State().systemId)
                                     .arg(peerName));
}

void AxMavlinkAircraft::Send(const QByteArray& frame)
{
    m_station.Send(frame, m_peer);
}

void AxMavlinkAircraft::Take(const AxMavFrame& frame, qint64 now)
{
    const bool isFirst = State().lastHeard == 0;
    m_relay->decoder.Feed(frame, now);
    AxMavHeartbeat beat;
    if (frame.componentId == ComponentId() && AxMavDecode(frame, beat)) {
        m_relay->mavType = beat.type;
        if (m_commands->IsDoubted() && m_commands->tries >= triesInDoubt && !State().isArmed)
            endCommand(QString());
    }
    m_relay->isNews = true;
    const bool isBack = m_relay->isLost && State().isHeard;
    if (isBack) {
        m_relay->isLost = false;
        emit signalLinkBack();
        emit signalState();
    }
    if (isFirst || isBack)
        m_requests->Start(now);
    if (frame.componentId == ComponentId())
        m_requests->Hear(frame.messageId);
    if (frame.messageId == AxMavCommandAck::id)
        takeAnswer(frame, now);
    emit signalFrame(frame);
}

void AxMavlinkAircraft::CountUnknown(const AxMavFrame& frame)
{
    m_relay->decoder.CountUnknown(frame);
    m_relay->isNews = true;
}

void AxMavlinkAircraft::Tick(qint64 now)
{
    m_relay->decoder.Flush(now);
    if (!m_relay->isLost && now - State().lastHeard >= axMavSilentMs)
        LoseLink();
    const bool isPlaceOld = State().isHeard && State().PlaceAgo(now) >= axMavSilentMs;
    if (isPlaceOld && !m_relay->isPlaceOld)
        emit signalMessage(warning, AxVehicleText(QT_TRANSLATE_NOOP(
                                        "AxVehicle", "No position for 3 s: the one that is shown is old.")));
    m_relay->isPlaceOld = isPlaceOld;
    if (m_relay->isNews && now - m_relay->told >= stateMs) {
        m_relay->isNews = false;
        m_relay->told = now;
        emit signalState();
    }
    if (!m_commands->waiting.empty() && now >= m_commands->due)
        sendCommand(now);
    if (State().isHeard)
        m_requests->Tick(now);
    emit signalTick(now);
}

void AxMavlinkAircraft::LoseLink()
{
    if (!m_relay->isLost) {
        m_relay->isLost = true;
        m_relay->decoder.SetHeard(false);
        emit signalLinkLost();
        emit signalState();
    }
    if (m_station.Link().GetPhase() != AxTelemetryLink::Phase::Closed)
        return;
    while (!m_commands->waiting.empty())
        endCommand(AxVehicleText(QT_TRANSLATE_NOOP("AxVehicle", "The link was closed.")));
    emit signalLinkClosed();
}

void AxMavlinkAircraft::Command(int command, const std::array<float, 7>& params)
{
    m_commands->waiting.push_back({command, params, false});
    if (m_commands->waiting.size() > 1)
        return;
    if (m_station.Link().GetPhase() == AxTelemetryLink::Phase::Closed)
        return endCommand(AxVehicleText(QT_TRANSLATE_NOOP("AxVehicle", "The link is closed.")));
    sendCommand(m_station.Now());
}

void AxMavlinkAircraft::Arm(bool isArmed)
{
    Command(CommandArm, {isArmed ? 1.0f : 0.0f});
}

void AxMavlinkAircraft::StartMission()
{
    Command(CommandStartMission);
}

void AxMavlinkAircraft::ReturnHome()
{
    commandAtOnce(CommandReturn, {});
}

void AxMavlinkAircraft::StopMotors()
{
    commandAtOnce(CommandArm, {0.0f, inAnyCase});
}

void AxMavlinkAircraft::commandAtOnce(int command, const std::array<float, 7>& params)
{
    Commands& commands = *m_commands;
    const auto given = std::exchange(commands.waiting, {});
    const bool wasSent = !given.empty() && commands.tries > 0;
    const Commands::One* const before = wasSent ? &given.front() : nullptr;
    const bool isDoubted =
        before && before->command == command && (before->isDoubted || before->params != params);
    commands.waiting.push_back({command, params, isDoubted});
    commands.tries = 0;
    commands.doubted.reset();
    const bool isClosed = m_station.Link().GetPhase() == AxTelemetryLink::Phase::Closed;
    if (!isClosed)
        sendCommand(m_station.Now());
    // It is on its way before anybody hears of the others, and may command more.
    for (const Commands::One& one : given)
        emit signalCommand(one.command,
                           AxVehicleText(QT_TRANSLATE_NOOP("AxVehicle", "Another command was more urgent.")));
    if (isClosed && !commands.waiting.empty())
        endCommand(AxVehicleText(QT_TRANSLATE_NOOP("AxVehicle", "The link is closed.")));
}

bool AxMavlinkAircraft::CanPause() const
{
    const bool isCopter = AxFlightOf(m_relay->mavType) == AxVehicleFlight::Copter;
    return State().autopilot == axMavPx4 || (State().autopilot == axMavArduPilot && isCopter);
}

void AxMavlinkAircraft::Pause()
{
    if (CanPause())
        State().autopilot == axMavPx4 ? setMode(px4Automatic, px4Hold) : setMode(copterBrake, 0.0f);
}

void AxMavlinkAircraft::Continue()
{
    if (CanPause())
        State().autopilot == axMavPx4 ? setMode(px4Automatic, px4Mission) : setMode(copterMission, 0.0f);
}

void AxMavlinkAircraft::setMode(float mode, float part)
{
    const int flags = hasOwnMode | (State().isArmed ? isArmedMode : 0);
    Command(CommandMode, {static_cast<float>(flags), mode, part});
}

void AxMavlinkAircraft::sendCommand(qint64 now)
{
    Commands& commands = *m_commands;
    if (commands.tries == commandTries && commands.doubted) {
        const bool isDone = *commands.doubted == 0;
        return endCommand(isDone ? AxVehicleText(QT_TRANSLATE_NOOP(
                                       "AxVehicle", "The aircraft does not say that it is disarmed."))
                                 : RefusalOf(*commands.doubted));
    }
    if (commands.tries == commandTries)
        return endCommand(AxVehicleText(QT_TRANSLATE_NOOP("AxVehicle", "The aircraft does not answer.")));
    const Commands::One& one = commands.waiting.front();
    AxMavCommandLong message;
    message.target_system = static_cast<quint8>(State().systemId);
    message.target_component = static_cast<quint8>(ComponentId());
    message.command = static_cast<quint16>(one.command);
    message.confirmation = static_cast<quint8>(commands.tries);
    float* const params[] = {&message.param1, &message.param2, &message.param3, &message.param4,
                             &message.param5, &message.param6, &message.param7};
    for (std::size_t i = 0; i < one.params.size(); ++i)
        *params[i] = one.params[i];
    ++commands.tries;
    commands.due = now + commandWaitMs;
    Send(m_station.Writer().Write(message));
}

void AxMavlinkAircraft::takeAnswer(const AxMavFrame& frame, qint64 now)
{
    constexpr int isDone = 0; // MAV_RESULT
    constexpr int isInProgress = 5;
    AxMavCommandAck answer;
    AxMavDecode(frame, answer);
    const bool isOurs =
        (answer.target_system == 0 || answer.target_system == axMavStationSystem) &&
        (answer.target_component == 0 || answer.target_component == axMavStationComponent); // 0: not said
    if (!isOurs)
        return;
    if (m_commands->waiting.empty() || m_commands->waiting.front().command != answer.command) {
        if (frame.componentId == ComponentId())
            m_requests->Take(answer.command, answer.result);
        return;
    }
    if (m_commands->IsDoubted()) {
        if (m_commands->tries >= triesInDoubt)
            m_commands->doubted = answer.result;
        return;
    }
    if (answer.result == isInProgress) {
        m_commands->tries = commandTries; // sent again, it would begin anew
        m_commands->due = now + inProgressWaitMs;
        emit signalCommandUnderWay(answer.command);
        return;
    }
    endCommand(answer.result == isDone ? QString() : RefusalOf(answer.result));
}

void AxMavlinkAircraft::endCommand(const QString& fault)
{
    Commands& commands = *m_commands;
    const int command = commands.waiting.front().command;
    commands.waiting.pop_front();
    commands.tries = 0;
    commands.due = 0; // of the next one, at the next tick
    commands.doubted.reset();
    emit signalCommand(command, fault);
}

#include <AxTelemetry/AxMavlinkStation.h>
#include <AxTelemetry/AxMissionTransfer.h>

#include <AxTelemetry/mavlink/AxMavMessages.h>
#include <AxTelemetry/mavlink/AxMavWriter.h>

#include "AxMissionItems.h"
#include "AxVehicleKinds.h"

#include <QPointer>

#include <algorithm>
#include <optional>

namespace {
enum MissionResult // of MAV_MISSION_RESULT
{
    ResultAccepted = 0,
    ResultUnsupported = 3,
    ResultInvalidSequence = 13,
    ResultCancelled = 15
};
constexpr int floatAfterTries = 2; // requests for whole numbers that a first item may take

const char* const resultWords[] = {
    "",
    QT_TRANSLATE_NOOP("AxMissionTransfer", "it gives no reason"),
    QT_TRANSLATE_NOOP("AxMissionTransfer", "it does not know what the altitudes count from"),
    QT_TRANSLATE_NOOP("AxMissionTransfer", "it does not know the command"),
    QT_TRANSLATE_NOOP("AxMissionTransfer", "the mission has more items than it can keep"),
    QT_TRANSLATE_NOOP("AxMissionTransfer", "a value is not valid"),
    QT_TRANSLATE_NOOP("AxMissionTransfer", "the first parameter is not valid"),
    QT_TRANSLATE_NOOP("AxMissionTransfer", "the second parameter is not valid"),
    QT_TRANSLATE_NOOP("AxMissionTransfer", "the third parameter is not valid"),
    QT_TRANSLATE_NOOP("AxMissionTransfer", "the fourth parameter is not valid"),
    QT_TRANSLATE_NOOP("AxMissionTransfer", "the latitude is not valid"),
    QT_TRANSLATE_NOOP("AxMissionTransfer", "the longitude is not valid"),
    QT_TRANSLATE_NOOP("AxMissionTransfer", "the altitude is not valid"),
    QT_TRANSLATE_NOOP("AxMissionTransfer", "an item came out of turn"),
    QT_TRANSLATE_NOOP("AxMissionTransfer", "it takes no missions from this station"),
    QT_TRANSLATE_NOOP("AxMissionTransfer", "it was cancelled there"),
};

/// A message of a plain mission (not of fences or rally points) to this station or to all, or nothing.
template <class Message> std::optional<Message> ForUs(const AxMavFrame& frame)
{
    Message message;
    const bool isOurs = AxMavDecode(frame, message) && message.mission_type == 0 &&
                        (message.target_system == axMavStationSystem || message.target_system == 0);
    return isOurs ? std::optional<Message>(message) : std::nullopt;
}
} // namespace

struct AxMissionTransfer::Talk
{
    QPointer<AxMavlinkAircraft> aircraft;
    Accept accept = nullptr; // what runs; null: nothing
    bool hasHome = false;
    std::vector<AxMissionItem> items; // as the aircraft numbers them
    int total = -1;                   // of a download: told by the aircraft
    int latest = -1;                  // item that was sent or asked for; -1 none yet
    bool isInt = true;                // items go by whole numbers
    int tries = 0;
    bool hasRepeated = false; // something went twice, at any time since the beginning
    bool isUntouched = false; // the aircraft has refused before it could give up what it carried
    int repeats = 0;          // of requests, since something new was asked for
    qint64 due = 0;
    AxMission mission;
    int mostTries = 5;
    qint64 waitMs = 1500;

    bool IsUpload() const { return accept == &AxMissionTransfer::takeInUpload; }
    quint8 System() const { return static_cast<quint8>(aircraft->State().systemId); }
    quint8 Component() const { return static_cast<quint8>(aircraft->ComponentId()); }

    template <class Message> void Send(Message message)
    {
        message.target_system = System();
        message.target_component = Component();
        aircraft->Send(aircraft->Station().Writer().Write(message));
    }
};

AxMissionTransfer::AxMissionTransfer(AxMavlinkAircraft* aircraft, QObject* parent)
    : QObject(parent), m_talk(std::make_unique<Talk>())
{
    m_talk->aircraft = aircraft;
    if (!aircraft)
        return;
    connect(aircraft, &AxMavlinkAircraft::signalFrame, this, &AxMissionTransfer::takeFrame,
            Qt::DirectConnection);
    connect(aircraft, &AxMavlinkAircraft::signalTick, this, &AxMissionTransfer::tick);
    const auto close = [this] {
        if (IsRunning())
            finish(tr("The link was closed."));
    };
    connect(aircraft, &AxMavlinkAircraft::signalLinkClosed, this, close);
    connect(aircraft, &QObject::destroyed, this, close);
}

AxMissionTransfer::~AxMissionTransfer()
{
    blockSignals(true);
    Cancel();
}

void AxMissionTransfer::SetPatience(int tries, int milliseconds)
{
    m_talk->mostTries = tries;
    m_talk->waitMs = milliseconds;
}

bool AxMissionTransfer::IsRunning() const
{
    return m_talk->accept != nullptr;
}

const AxMission& AxMissionTransfer::Mission() const
{
    return m_talk->mission;
}

bool AxMissionTransfer::Upload(const AxMission& mission)
{
    if (IsRunning())
        return false;
    const QString fault = AxMissionFault(mission);
    if (!fault.isEmpty()) {
        emit signalFinished(fault);
        return true;
    }
    m_talk->hasHome = m_talk->aircraft && m_talk->aircraft->State().autopilot == axMavArduPilot;
    m_talk->items = AxItemsForAircraft(mission, m_talk->hasHome);
    m_talk->total = static_cast<int>(m_talk->items.size());
    return begin(&AxMissionTransfer::takeInUpload);
}

bool AxMissionTransfer::Download()
{
    if (IsRunning())
        return false;
    m_talk->hasHome = m_talk->aircraft && m_talk->aircraft->State().autopilot == axMavArduPilot;
    m_talk->items.clear();
    m_talk->total = -1;
    m_talk->mission = {};
    return begin(&AxMissionTransfer::takeInDownload);
}

bool AxMissionTransfer::begin(Accept accept)
{
    Talk& talk = *m_talk;
    talk.latest = -1;
    talk.tries = talk.repeats = 0;
    talk.hasRepeated = talk.isUntouched = false;
    talk.isInt = true;
    const bool isOpen =
        talk.aircraft && talk.aircraft->Station().Link().GetPhase() != AxTelemetryLink::Phase::Closed;
    if (!isOpen) {
        emit signalFinished(tr("There is no link to the aircraft."));
        return true;
    }
    talk.accept = accept;
    send();
    return true;
}

void AxMissionTransfer::Cancel()
{
    if (!IsRunning())
        return;
    if (m_talk->aircraft && !acknowledge(ResultCancelled))
        return;
    finish(m_talk->IsUpload() ? tr("The upload was cancelled.") : tr("The download was cancelled."));
}

// False where it has ended everything: the link may have closed, and whoever was told may have deleted this.
bool AxMissionTransfer::acknowledge(int result)
{
    const QPointer<AxMissionTransfer> alive(this);
    AxMavMissionAck message;
    message.type = static_cast<quint8>(result);
    m_talk->Send(message);
    return alive && IsRunning();
}

void AxMissionTransfer::finish(const QString& fault)
{
    // Autopilots may cut what they carry as soon as they hear how many items are to come.
    const bool isHalf = !fault.isEmpty() && m_talk->IsUpload() && !m_talk->isUntouched;
    m_talk->accept = nullptr;
    m_talk->items.clear();
    emit signalFinished(
        isHalf ? tr("%1 What the aircraft carries now may be incomplete: do not fly it.").arg(fault) : fault);
}

// Sends what the answer is waited for, for the first time or again.
void AxMissionTransfer::send()
{
    Talk& talk = *m_talk;
    talk.hasRepeated = talk.hasRepeated || talk.tries > 0;
    ++talk.tries;
    talk.due = talk.aircraft->Station().Now() + talk.waitMs;
    if (talk.IsUpload() && talk.latest < 0) {
        AxMavMissionCount message;
        message.count = static_cast<quint16>(talk.total);
        talk.Send(message);
    } else if (talk.IsUpload()) {
        giveItem(talk.latest, talk.isInt);
    } else if (talk.latest < 0) {
        talk.Send(AxMavMissionRequestList());
    } else if (talk.isInt) {
        AxMavMissionRequestInt message;
        message.seq = static_cast<quint16>(talk.latest);
        talk.Send(message);
    } else {
        AxMavMissionRequest message;
        message.seq = static_cast<quint16>(talk.latest);
        talk.Send(message);
    }
}

void AxMissionTransfer::tick(qint64 now)
{
    Talk& talk = *m_talk;
    if (!IsRunning() || now < talk.due)
        return;
    if (talk.tries >= talk.mostTries) {
        const bool isHeard = talk.aircraft->State().isHeard;
        return finish(isHeard ? tr("The aircraft has stopped answering.") : tr("The link was lost."));
    }
    if (!talk.IsUpload() && talk.latest == 0 && talk.tries >= floatAfterTries)
        talk.isInt = false; // it may know the older request only
    send();
}

void AxMissionTransfer::takeFrame(const AxMavFrame& frame)
{
    if (!IsRunning() || frame.componentId != m_talk->Component())
        return;
    if (const auto answer = ForUs<AxMavMissionAck>(frame); answer && answer->type != ResultAccepted) {
        // An item that went twice, because an answer was late, came out of turn the second time.
        if (answer->type == ResultInvalidSequence && m_talk->hasRepeated)
            return;
        if (!m_talk->IsUpload() && answer->type == ResultUnsupported && m_talk->latest == 0 &&
            m_talk->isInt) {
            m_talk->isInt = false;
            return send();
        }
        const std::size_t word = answer->type < std::size(resultWords) ? answer->type : 1;
        const QString reason = tr(resultWords[word]);
        m_talk->isUntouched = m_talk->latest < 0 && !m_talk->hasRepeated && answer->type != ResultCancelled;
        return finish(m_talk->latest < 0
                          ? tr("The aircraft refuses: %1.").arg(reason)
                          : tr("The aircraft refuses at item %1: %2.").arg(m_talk->latest).arg(reason));
    }
    (this->*m_talk->accept)(frame);
}

void AxMissionTransfer::takeInUpload(const AxMavFrame& frame)
{
    Talk& talk = *m_talk;
    if (ForUs<AxMavMissionAck>(frame)) { // of an earlier transfer, unless all is there
        if (talk.latest == talk.total - 1)
            finish({});
        return;
    }
    const auto asked = ForUs<AxMavMissionRequestInt>(frame);
    const auto askedFloat = ForUs<AxMavMissionRequest>(frame);
    if (!asked && !askedFloat)
        return;
    const int index = asked ? asked->seq : askedFloat->seq;
    if (index > talk.latest + 1 || index >= talk.total) {
        if (!acknowledge(ResultInvalidSequence))
            return;
        return finish(
            tr("The aircraft asks for item %1 where item %2 should be.").arg(index).arg(talk.latest + 1));
    }
    // A float keeps a place to a metre. The two that are known take whole numbers in answer to either.
    const int autopilot = talk.aircraft->State().autopilot;
    talk.isInt = asked || autopilot == axMavArduPilot || autopilot == axMavPx4;
    if (index <= talk.latest) { // its answer was lost, or the request comes late
        talk.hasRepeated = true;
        if (++talk.repeats > 3 * talk.mostTries)
            return finish(tr("The aircraft asks for item %1 again and again.").arg(index));
        return giveItem(index, talk.isInt);
    }
    talk.latest = index;
    talk.tries = talk.repeats = 0;
    const QPointer<AxMissionTransfer> alive(this);
    emit signalProgress(index + 1, talk.total);
    if (alive && IsRunning())
        send();
}

void AxMissionTransfer::giveItem(int index, bool asInt)
{
    Talk& talk = *m_talk;
    const AxMissionItem& item = talk.items[static_cast<std::size_t>(index)];
    const auto give = [&](auto message) {
        message.seq = static_cast<quint16>(index);
        message.current = index == 0 ? 1 : 0;
        talk.Send(message);
    };
    if (asInt)
        give(AxMessageOf(item, talk.hasHome ? 0 : axMavOpenPlace));
    else
        give(AxFloatMessageOf(item));
}

void AxMissionTransfer::takeInDownload(const AxMavFrame& frame)
{
    Talk& talk = *m_talk;
    if (const auto count = ForUs<AxMavMissionCount>(frame)) {
        if (talk.latest >= 0 && count->count != talk.total)
            return finish(tr("The mission on the aircraft has changed in the meantime."));
        if (talk.latest >= 0)
            return;
        talk.total = count->count;
        talk.latest = 0;
        talk.tries = 0;
        return talk.total == 0 ? endDownload() : send();
    }
    if (const auto item = ForUs<AxMavMissionItemInt>(frame))
        keepItem(item->seq, AxItemOf(*item));
    else if (const auto floatItem = ForUs<AxMavMissionItem>(frame))
        keepItem(floatItem->seq, AxItemOf(*floatItem));
}

void AxMissionTransfer::keepItem(int index, const AxMissionItem& item)
{
    Talk& talk = *m_talk;
    if (talk.latest < 0 || index != talk.latest)
        return; // one that came twice
    talk.items.push_back(item);
    talk.latest = index + 1;
    talk.tries = 0;
    const QPointer<AxMissionTransfer> alive(this);
    emit signalProgress(talk.latest, talk.total);
    if (!alive || !IsRunning())
        return;
    if (talk.latest == talk.total)
        endDownload();
    else
        send();
}

void AxMissionTransfer::endDownload()
{
    Talk& talk = *m_talk;
    if (!acknowledge(ResultAccepted))
        return;
    AxMission mission = AxMissionOfAircraft(talk.items, talk.hasHome);
    if (mission.items.empty())
        return finish(tr("The aircraft carries no mission."));
    const QString fault = AxMissionFault(mission);
    if (!fault.isEmpty())
        return finish(tr("The mission on the aircraft cannot be used. %1").arg(fault));
    const AxAircraftState& state = talk.aircraft->State();
    mission.name = state.name;
    mission.isFixedWing = state.planeType == PlaneFixedWing || state.planeType == PlaneTailSitter ||
                          state.planeType == PlaneQuadPlane;
    const auto isSpeed = [](const AxMissionItem& item) {
        return item.command == AxMissionItem::ChangeSpeed && item.params[1] > 0.0;
    };
    const auto speed = std::find_if(mission.items.begin(), mission.items.end(), isSpeed);
    if (speed != mission.items.end())
        mission.speed = speed->params[1];
    talk.mission = mission;
    finish({});
}

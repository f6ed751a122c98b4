#include <AxTelemetry/simulator/AxSimulatedExchange.h>

#include <AxAlgorthm/AxGeoid.h>
#include <AxTelemetry/AxMissionItems.h>

#include <utility>

namespace {
constexpr int mostTries = 5;
constexpr double patience = 1.0; // seconds
constexpr int allMissions = 255; // of MAV_MISSION_TYPE; 0 is the one that is flown

// MAV_MISSION_RESULT
constexpr int isAccepted = 0;
constexpr int isUnsupported = 3;
constexpr int isInvalid = 5;
constexpr int isOutOfSequence = 13;
constexpr int isDenied = 14;
constexpr int isCancelled = 15;
} // namespace

AxSimulatedExchange::AxSimulatedExchange(AxSimulatedVehicle& vehicle, bool keepsHome, Sender sender)
    : m_vehicle(vehicle), m_keepsHome(keepsHome), m_send(std::move(sender))
{
}

bool AxSimulatedExchange::Take(const AxMavFrame& frame, double now)
{
    AxMavMissionCount count;
    AxMavMissionItemInt itemInt;
    AxMavMissionItem item;
    AxMavMissionRequestList list;
    AxMavMissionRequestInt requestInt;
    AxMavMissionRequest request;
    AxMavMissionClearAll clear;
    AxMavMissionAck ack;
    const auto partner = [&] {
        m_partner = frame.systemId;
        m_partnerComponent = frame.componentId;
    };
    if (AxMavDecode(frame, count)) {
        begin(count, frame, now);
    } else if (AxMavDecode(frame, itemInt)) {
        takeItem(itemInt.seq, AxItemOf(itemInt), frame, now);
    } else if (AxMavDecode(frame, item)) {
        takeItem(item.seq, AxItemOf(item), frame, now);
    } else if (AxMavDecode(frame, list)) {
        partner();
        AxMavMissionCount answer;
        answer.target_system = quint8(m_partner);
        answer.target_component = quint8(m_partnerComponent);
        answer.mission_type = list.mission_type;
        m_given = list.mission_type == 0 ? itemsToGive() : std::vector<AxMissionItem>();
        answer.count = quint16(m_given.size());
        m_send.count(answer);
    } else if (AxMavDecode(frame, requestInt)) {
        partner();
        answer(requestInt.mission_type == 0 ? requestInt.seq : -1, true);
    } else if (AxMavDecode(frame, request)) {
        partner();
        answer(request.mission_type == 0 ? request.seq : -1, false);
    } else if (AxMavDecode(frame, clear)) {
        partner();
        m_isTaking = false;
        if (clear.mission_type == 0 || clear.mission_type == allMissions)
            m_vehicle.SetMission({});
        m_given.clear();
        acknowledge(isAccepted, clear.mission_type);
    } else if (AxMavDecode(frame, ack)) {
        if (m_isTaking && frame.systemId == m_giver && ack.type != isAccepted)
            m_isTaking = false; // the giver has thought better of it
    } else {
        return false;
    }
    return true;
}

void AxSimulatedExchange::begin(const AxMavMissionCount& count, const AxMavFrame& frame, double now)
{
    const bool isBusy = m_isTaking && frame.systemId != m_giver;
    m_partner = frame.systemId;
    m_partnerComponent = frame.componentId;
    if (isBusy || count.mission_type != 0)
        return acknowledge(isBusy ? isDenied : isUnsupported, count.mission_type);
    m_giver = frame.systemId;
    m_giverComponent = frame.componentId;
    m_expected = count.count;
    m_taken.clear();
    m_tries = 0;
    m_isTaking = true;
    if (m_expected == 0)
        end(isAccepted);
    else
        ask(now);
}

void AxSimulatedExchange::takeItem(int sequence, const AxMissionItem& item, const AxMavFrame& frame,
                                   double now)
{
    if (frame.systemId != m_giver)
        return;
    if (!m_isTaking && sequence == m_expected - 1)
        return finish(m_result); // the giver has not heard that it was the last one
    if (!m_isTaking || sequence != int(m_taken.size()))
        return; // a repeated one, or one that was not asked for: the right one is asked for again in time
    m_taken.push_back(item);
    m_tries = 0;
    if (int(m_taken.size()) < m_expected)
        ask(now);
    else
        end(isAccepted);
}

void AxSimulatedExchange::ask(double now)
{
    AxMavMissionRequestInt request;
    request.target_system = quint8(m_giver);
    request.target_component = quint8(m_giverComponent);
    request.seq = quint16(m_taken.size());
    m_asked = now;
    ++m_tries;
    m_send.request(request);
}

void AxSimulatedExchange::Tick(double now)
{
    if (!m_isTaking || now - m_asked < patience)
        return;
    if (m_tries < mostTries)
        ask(now);
    else
        end(isCancelled);
}

void AxSimulatedExchange::end(int result)
{
    m_isTaking = false;
    if (result == isAccepted) {
        AxMission mission = AxMissionOfAircraft(m_taken, m_keepsHome);
        mission.isFixedWing = m_vehicle.Aircraft().HasWings();
        const QString fault = m_vehicle.SetMission(mission);
        if (!fault.isEmpty()) {
            m_send.fault(fault);
            result = isInvalid;
        }
    }
    m_taken.clear();
    m_given.clear();
    finish(result);
}

void AxSimulatedExchange::finish(int result)
{
    m_result = result;
    m_partner = m_giver;
    m_partnerComponent = m_giverComponent;
    acknowledge(result, 0);
}

std::vector<AxMissionItem> AxSimulatedExchange::itemsToGive() const
{
    AxMission mission = m_vehicle.Mission();
    if (mission.items.empty())
        return {};
    if (const std::optional<AxPlace> home = m_vehicle.Home())
        mission.home = {home->latitude, home->longitude,
                        home->altitude - AxGeoidHeight(home->latitude, home->longitude).value_or(0.0)};
    return AxItemsForAircraft(mission, m_keepsHome);
}

void AxSimulatedExchange::answer(int sequence, bool asInt)
{
    if (m_given.empty())
        m_given = itemsToGive();
    if (sequence < 0 || sequence >= int(m_given.size()))
        return acknowledge(isOutOfSequence, 0);
    const AxMissionItem& item = m_given[std::size_t(sequence)];
    const auto address = [&](auto message) {
        message.seq = quint16(sequence);
        message.target_system = quint8(m_partner);
        message.target_component = quint8(m_partnerComponent);
        message.current = m_vehicle.State().currentItem == ItemOf(sequence) ? 1 : 0;
        return message;
    };
    if (asInt)
        m_send.itemInt(address(AxMessageOf(item, axMavOpenPlace)));
    else
        m_send.item(address(AxFloatMessageOf(item)));
}

void AxSimulatedExchange::acknowledge(int result, int type)
{
    AxMavMissionAck ack;
    ack.target_system = quint8(m_partner);
    ack.target_component = quint8(m_partnerComponent);
    ack.type = quint8(result);
    ack.mission_type = quint8(type);
    m_send.acknowledge(ack);
}

#include <AxTelemetry/simulator/AxSimulatedMission.h>

#include <cmath>

void AxSimulatedMission::Set(const AxMission& mission)
{
    m_mission = mission;
    Begin(0);
}

void AxSimulatedMission::Begin(int item)
{
    m_next = item;
    m_jumped.assign(m_mission.items.size(), 0.0);
    m_isEndless = false;
}

int AxSimulatedMission::Next()
{
    const int count = int(m_mission.items.size());
    for (int inARow = 0; m_next >= 0 && m_next < count; ++inARow) {
        const AxMissionItem& item = m_mission.items[std::size_t(m_next)];
        if (item.command != AxMissionItem::Jump || std::isnan(item.params[1]))
            return m_next++;
        if (inARow > count) {
            m_isEndless = true;
            break;
        }
        // Negative repeats for ever.
        const double repeats = item.params[1];
        double& jumped = m_jumped[std::size_t(m_next)];
        if (repeats < 0.0 || jumped < repeats) {
            jumped += 1.0;
            m_next = int(item.params[0]) - 1;
        } else {
            jumped = 0.0; // ready for when an outer jump comes by again
            ++m_next;
        }
    }
    return -1;
}

bool AxSimulatedMission::IsWaypoint(const AxMissionItem& item)
{
    return item.command == AxMissionItem::Waypoint || item.command == AxSimulatedCommand::Spline ||
           item.command == AxSimulatedCommand::CircleToAltitude ||
           item.command == AxSimulatedCommand::CircleForever ||
           item.command == AxSimulatedCommand::CircleTurns ||
           item.command == AxSimulatedCommand::CircleSeconds;
}

int AxSimulatedMission::PlaceAfter(int item) const
{
    for (std::size_t i = std::size_t(item) + 1; i < m_mission.items.size(); ++i) {
        const AxMissionItem& after = m_mission.items[i];
        if (IsWaypoint(after))
            return int(i);
        const bool isPassing =
            after.command == AxMissionItem::ChangeSpeed || after.command == AxMissionItem::TriggerDistance ||
            after.command == AxSimulatedCommand::CameraTilt || after.command == AxSimulatedCommand::Photo;
        if (!isPassing)
            return -1;
    }
    return -1;
}

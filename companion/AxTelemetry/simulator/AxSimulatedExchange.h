#pragma once

#include <AxTelemetry/simulator/AxSimulatedVehicle.h>

#include <AxTelemetry/mavlink/AxMavMessages.h>

#include <functional>

/// The aircraft's side of MAVLink's mission protocol: takes missions from one ground station at a time, and
/// gives out its own. Plain logic; whoever owns it sends what it hands out, and tells it the time.
class AxSimulatedExchange
{
public:
    /// What it wants sent, to the one who spoke last.
    struct Sender
    {
        std::function<void(const AxMavMissionRequestInt&)> request;
        std::function<void(const AxMavMissionAck&)> acknowledge;
        std::function<void(const AxMavMissionCount&)> count;
        std::function<void(const AxMavMissionItemInt&)> itemInt;
        std::function<void(const AxMavMissionItem&)> item;
        std::function<void(const QString&)> fault; ///< for people
    };

    /// `keepsHome`: home is item 0, as of ArduPilot.
    AxSimulatedExchange(AxSimulatedVehicle& vehicle, bool keepsHome, Sender sender);

    /// A message for this aircraft; false for one of no concern. Seconds of real time.
    bool Take(const AxMavFrame& frame, double now);
    /// Asks again for what did not come, five times, a second apart.
    void Tick(double now);

    /// Of an item of the vehicle's mission, in the protocol.
    int SequenceOf(int item) const { return item + (m_keepsHome ? 1 : 0); }
    /// And back; -1 is home.
    int ItemOf(int sequence) const { return sequence - (m_keepsHome ? 1 : 0); }

private:
    void begin(const AxMavMissionCount& count, const AxMavFrame& frame, double now);
    void takeItem(int sequence, const AxMissionItem& item, const AxMavFrame& frame, double now);
    void ask(double now);
    void end(int result);
    void finish(int result);
    std::vector<AxMissionItem> itemsToGive() const;
    void answer(int sequence, bool asInt);
    void acknowledge(int result, int type);

    AxSimulatedVehicle& m_vehicle;
    bool m_keepsHome;
    Sender m_send;
    int m_partner = 0; // system and component that are answered
    int m_partnerComponent = 0;
    bool m_isTaking = false;
    int m_giver = 0; // the system and component that the mission comes from
    int m_giverComponent = 0;
    int m_result = 0; // of the last one
    int m_expected = 0;
    std::vector<AxMissionItem> m_taken;
    std::vector<AxMissionItem> m_given; // as they are numbered; empty: not asked for yet
    double m_asked = 0.0;               // when, in seconds
    int m_tries = 0;
};

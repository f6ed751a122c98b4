#pragma once

#include <AxTelemetry/link/AxTelemetryLink.h>
#include <AxTelemetry/simulator/AxSimulatedVehicle.h>

#include <memory>

/**
 * Simulated aircraft in the place of a link: they speak MAVLink 2 as if they flew, take missions, and obey
 * commands (arm, start the mission, come home, land). Their time passes while the link is open, by its own
 * timer. Owned by the AxMavlinkStation that it is given to, or by whoever made it; GUI thread.
 *
 * Positions and attitudes are told 4 and 10 times in a second of the aircraft's time, but not more often than
 * 50 times in a real one. Aircraft that take their home from their mission tell no place before they have
 * one.
 */
class AXTELEMETRY_EXPORT AxSimulatorLink : public AxTelemetryLink
{
    Q_OBJECT

public:
    /// What its aircraft say they are steered by, which decides how missions are exchanged.
    enum class Autopilot
    {
        ArduPilot = 3,
        Px4 = 12
    };

    explicit AxSimulatorLink(QObject* parent = nullptr);
    ~AxSimulatorLink() override;

    /// Another aircraft, also while the link is open. Its system number: 1, 2, and so on; 0 beyond the 250th.
    int Add(const AxSimulatedAircraft& aircraft, Autopilot autopilot = Autopilot::ArduPilot);
    int Count() const;
    /// Null where there is no such system. Owned by the link.
    AxSimulatedVehicle* Vehicle(int systemId) const;

    /// How fast the aircraft's time passes, 0 to 100 times; at 0 it stands.
    void SetSpeed(double times);
    double Speed() const;
    /// Of all aircraft, a second of their time, 0.1 to 50 each; stations cannot change them then.
    void SetRates(double positions, double attitudes);
    /// Of what the aircraft send this share, 0 to 1, gets lost; which frames, the seed decides.
    void SetLoss(double share, unsigned seed = 1);
    /// Nothing passes for so many real seconds from now; the aircraft fly on.
    void Drop(double seconds);
    /// As AxMavlinkStation::SetKey(): signs what the aircraft send, and refuses what is not signed.
    bool SetKey(const QByteArray& key);

    /// Without its own timer real time passes by Advance() alone.
    void SetOwnTimer(bool isOn);
    /// Lets so many real seconds pass, at most 10; for those who have switched the timer off.
    void Advance(double seconds);

    bool Open(QString* fault) override;
    void Close() override;
    void Write(const QByteArray& bytes) override;
    QString Name() const override;
    bool BringsWholeFrames() const override { return true; }

private:
    struct State;

    void tick();
    void hear();
    void tell();

    std::unique_ptr<State> m_state;
};

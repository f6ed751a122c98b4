#pragma once

#include <AxTelemetry/AxMavlinkAircraft.h>

#include <AxData/exchange/AxMission.h>

#include <QObject>
#include <QString>

#include <memory>

/// Brings a mission to an aircraft, or from it, by MAVLink's mission protocol. One object does one thing at a
/// time, any number of them one after the other; two at once on one aircraft disturb each other. Owned by
/// whoever made it, it may outlive the aircraft; GUI thread.
///
/// Places and heights pass as they are: home's altitude and those of AxMissionItem::Global are above mean sea
/// level in the aircraft. ArduPilot keeps home as its item 0, and gets and gives it so; elsewhere home is not
/// part of a mission.
class AXTELEMETRY_EXPORT AxMissionTransfer : public QObject
{
    Q_OBJECT

public:
    /// The aircraft is not owned.
    explicit AxMissionTransfer(AxMavlinkAircraft* aircraft, QObject* parent = nullptr);
    /// Cancels.
    ~AxMissionTransfer() override;

    /// Begins. Each ends with signalFinished(), which comes before the return where it cannot begin. While
    /// one runs, another one is refused by false.
    bool Upload(const AxMission& mission);
    bool Download();
    /// Ends what runs, at once.
    void Cancel();

    /// From the beginning to signalFinished().
    bool IsRunning() const;
    /// What the last download brought; without items unless it was whole.
    const AxMission& Mission() const;

    /// How often a message is sent before the aircraft counts as silent, and how long each waits: 5
    /// times, 1.5 s.
    void SetPatience(int tries, int milliseconds);

signals:
    /// Items that have passed, of so many.
    void signalProgress(int done, int total);
    /// For people; empty: the mission has arrived whole.
    void signalFinished(const QString& fault);

private:
    struct Talk;
    using Accept = void (AxMissionTransfer::*)(const AxMavFrame& frame);

    bool begin(Accept accept);
    void takeFrame(const AxMavFrame& frame);
    void takeInUpload(const AxMavFrame& frame);
    void takeInDownload(const AxMavFrame& frame);
    void giveItem(int index, bool asInt);
    void keepItem(int index, const AxMissionItem& item);
    void endDownload();
    void tick(qint64 now);
    void send();
    bool acknowledge(int result);
    void finish(const QString& fault);

    std::unique_ptr<Talk> m_talk;
};

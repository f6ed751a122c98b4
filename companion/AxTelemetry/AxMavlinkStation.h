#pragma once

#include <AxTelemetry/AxMavlinkAircraft.h>
#include <AxTelemetry/AxTlogRecorder.h>
#include <AxTelemetry/link/AxTelemetryLink.h>

#include <QByteArray>
#include <QList>
#include <QObject>
#include <QString>

#include <functional>
#include <memory>

class AxMavWriter;

/// Milliseconds since 1970, UTC. Never runs backwards.
using AxTelemetryClock = std::function<qint64()>;

/// What a station has heard so far.
struct AXTELEMETRY_EXPORT AxStationCounts
{
    quint64 bytes = 0;             ///< of whatever sort
    quint64 frames = 0;            ///< taken
    quint64 lost = 0;              ///< that sequence numbers say are missing
    quint64 badChecksums = 0;      ///< frames that arrived damaged
    quint64 unknown = 0;           ///< frames of other messages
    quint64 garbageBytes = 0;      ///< bytes that belong to no frame
    quint64 refusedSignatures = 0; ///< frames not signed with the key, or signed where there is none
    quint64 oldSignatures = 0;     ///< of these, the ones signed with the key, over 60 s behind

    friend bool operator==(const AxStationCounts& a, const AxStationCounts& b);
};

/// A ground station on one link: finds the aircraft there, hands each its frames, says by a heartbeat that it
/// is there (system 255, component 190, once a second), and records what it hears. Owned by whoever made it;
/// GUI thread.
///
/// An aircraft is a system on a peer of the link. Two that have one number are two aircraft where the link
/// tells its peers apart; one that moves to another address or port stays the same: a new peer takes over an
/// aircraft that has been silent for 3 s, and makes another one only if the first speaks on beside it.
class AXTELEMETRY_EXPORT AxMavlinkStation : public QObject
{
    Q_OBJECT

public:
    /// Takes the link, closed.
    explicit AxMavlinkStation(std::unique_ptr<AxTelemetryLink> link, QObject* parent = nullptr);
    /// Closes. Aircraft go away, transfers end with a fault.
    ~AxMavlinkStation() override;

    /// As AxTelemetryLink::Open().
    bool Open(QString* fault);
    /// The aircraft stay, with a lost link; the record ends whole.
    void Close();
    AxTelemetryLink& Link() const;

    /// In the order in which they were first heard.
    QList<AxMavlinkAircraft*> Aircraft() const;
    /// Null when that system was never heard; of several with this number, the first.
    AxMavlinkAircraft* AircraftOf(int systemId) const;

    /// With 32 bytes, frames that they do not sign are refused, and what is sent is signed; a sender that is
    /// new may be 60 s behind this computer's clock at most: signalFault() tells once if that keeps an
    /// aircraft out. Empty: signed frames are refused. False, and nothing changes, with another number of
    /// bytes.
    bool SetKey(const QByteArray& key);

    /// Each flight is recorded into a new file of this folder from its first known message on, with those
    /// that are not known; empty: none. Counts from the next Open().
    void SetRecordFolder(const QString& folder);
    /// What has been recorded so far, or why it is not.
    const AxTlogRecorder& Recorder() const;

    /// Since the link was opened last.
    AxStationCounts Counts() const;

    /// For tests: another clock than the computer's. Call it before Open().
    void SetClock(const AxTelemetryClock& clock);
    qint64 Now() const;
    /// Does what has become due. The station calls it ten times a second while it is open.
    void Tick();

    /// For those who speak MAVLink: sends a frame that Writer() made, to all peers of the link or to one.
    void Send(const QByteArray& frame, int peer = 0);
    AxMavWriter& Writer();

signals:
    /// Another aircraft was heard for the first time.
    void signalAircraft(AxMavlinkAircraft* aircraft);
    /// Counts() are others; at most once a second.
    void signalCounts();
    /// For people: of the link, of the record, or of signatures.
    void signalFault(const QString& text);
    /// The link's phase is another one.
    void signalPhase();
    /// A new file is recorded into.
    void signalRecording(const QString& path);

private:
    struct Parts;

    void end();
    void tellRecordFault();
    void tellOldSignatures();
    void take(const QByteArray& bytes, int peer);
    void takeFrame(const AxMavFrame& frame, int peer, qint64 now);
    AxMavlinkAircraft* ofSilentPeer(int systemId, int peer, qint64 now, bool* isAnother);
    void recordUnknown(const AxMavFrame& frame, qint64 now);

    std::unique_ptr<Parts> m_parts;
};

#include <AxTelemetry/AxMavlinkStation.h>
#include <AxTelemetry/AxVehicleDecoder.h>

#include <AxTelemetry/mavlink/AxMavMessages.h>
#include <AxTelemetry/mavlink/AxMavParser.h>
#include <AxTelemetry/mavlink/AxMavWriter.h>

#include "AxVehicleKinds.h"
#include "mavlink/AxMavSigning.h"

#include <QDateTime>
#include <QElapsedTimer>
#include <QTimer>

#include <array>
#include <utility>
#include <vector>

namespace {
constexpr int tickMs = 100;
constexpr qint64 beatMs = 1000;
constexpr qint64 countsMs = 1000;
constexpr qint64 clockStepMs = 2000;

/// The computer's time, but for steps back and small steps ahead.
AxTelemetryClock ComputersClock()
{
    struct Anchor
    {
        QElapsedTimer since;
        qint64 start = 0;
    };
    auto anchor = std::make_shared<Anchor>();
    anchor->since.start();
    anchor->start = QDateTime::currentMSecsSinceEpoch();
    return [anchor] {
        const qint64 now = anchor->start + anchor->since.elapsed();
        const qint64 shown = QDateTime::currentMSecsSinceEpoch();
        if (shown - now <= clockStepMs)
            return now;
        anchor->start += shown - now; // it was asleep, or was set
        return shown;
    };
}
} // namespace

bool operator==(const AxStationCounts& a, const AxStationCounts& b)
{
    return a.bytes == b.bytes && a.frames == b.frames && a.lost == b.lost &&
           a.badChecksums == b.badChecksums && a.unknown == b.unknown && a.garbageBytes == b.garbageBytes &&
           a.refusedSignatures == b.refusedSignatures;
}

struct AxMavlinkStation::Parts
{
    std::unique_ptr<AxTelemetryLink> link;
    AxTelemetryClock clock = ComputersClock();
    AxMavParser parser;
    AxMavWriter writer{axMavStationSystem, axMavStationComponent};
    AxTlogRecorder recorder;
    QString recordFolder;
    bool isRecordFaultTold = false;
    std::array<std::unique_ptr<AxMavlinkAircraft>, 256> aircraft; // by system
    QList<AxMavlinkAircraft*> inOrder;
    QTimer timer;
    qint64 lastBeat = 0;
    qint64 lastCounts = 0;
    quint64 bytes = 0;
    AxStationCounts told;
    QByteArray key;
    bool hearsVersion2 = false;
    bool isBeatOfVersion2 = false; // the latest heartbeat

    int Version() const { return hearsVersion2 || !key.isEmpty() ? 2 : 1; }
};

AxMavlinkStation::AxMavlinkStation(std::unique_ptr<AxTelemetryLink> link, QObject* parent)
    : QObject(parent), m_parts(std::make_unique<Parts>())
{
    m_parts->link = std::move(link);
    m_parts->timer.setInterval(tickMs);
    connect(&m_parts->timer, &QTimer::timeout, this, &AxMavlinkStation::Tick);
    const AxTelemetryLink* const from = m_parts->link.get();
    connect(from, &AxTelemetryLink::signalBytes, this, &AxMavlinkStation::take);
    connect(from, &AxTelemetryLink::signalFault, this, &AxMavlinkStation::signalFault);
    connect(from, &AxTelemetryLink::signalPhase, this, &AxMavlinkStation::signalPhase);
    connect(from, &AxTelemetryLink::signalClosed, this, &AxMavlinkStation::end);
}

AxMavlinkStation::~AxMavlinkStation()
{
    Close();
    m_parts->link->disconnect(this);
}

bool AxMavlinkStation::Open(QString* fault)
{
    Parts& parts = *m_parts;
    if (parts.link->GetPhase() != AxTelemetryLink::Phase::Closed)
        return true;
    parts.parser.Reset();
    parts.bytes = 0;
    parts.hearsVersion2 = false;
    parts.isRecordFaultTold = false;
    parts.recorder.Start(parts.recordFolder, parts.link->Name());
    if (!parts.link->Open(fault))
        return false;
    parts.timer.start();
    Tick();
    return true;
}

void AxMavlinkStation::Close()
{
    m_parts->link->Close();
}

// Also of a port that was unplugged.
void AxMavlinkStation::end()
{
    m_parts->timer.stop();
    m_parts->recorder.Finish();
    tellRecordFault();
    for (AxMavlinkAircraft* aircraft : QList<AxMavlinkAircraft*>(m_parts->inOrder))
        aircraft->LoseLink();
}

AxTelemetryLink& AxMavlinkStation::Link() const
{
    return *m_parts->link;
}

QList<AxMavlinkAircraft*> AxMavlinkStation::Aircraft() const
{
    return m_parts->inOrder;
}

AxMavlinkAircraft* AxMavlinkStation::AircraftOf(int systemId) const
{
    return systemId >= 0 && systemId < 256 ? m_parts->aircraft[static_cast<std::size_t>(systemId)].get()
                                           : nullptr;
}

bool AxMavlinkStation::SetKey(const QByteArray& key)
{
    if (!m_parts->parser.SetKey(key))
        return false;
    m_parts->key = key;
    return m_parts->writer.SetKey(key, 0);
}

void AxMavlinkStation::SetRecordFolder(const QString& folder)
{
    m_parts->recordFolder = folder;
}

const AxTlogRecorder& AxMavlinkStation::Recorder() const
{
    return m_parts->recorder;
}

AxStationCounts AxMavlinkStation::Counts() const
{
    const AxMavCounts& counts = m_parts->parser.Counts();
    return {m_parts->bytes,      counts.frames,           counts.lost, counts.badChecksums, counts.unknown,
            counts.garbageBytes, counts.refusedSignatures};
}

void AxMavlinkStation::SetClock(const AxTelemetryClock& clock)
{
    m_parts->clock = clock;
}

qint64 AxMavlinkStation::Now() const
{
    return m_parts->clock();
}

void AxMavlinkStation::Tick()
{
    Parts& parts = *m_parts;
    if (parts.link->GetPhase() == AxTelemetryLink::Phase::Closed)
        return;
    const qint64 now = Now();
    if (now - parts.lastBeat >= beatMs) {
        parts.lastBeat = now;
        AxMavHeartbeat beat;
        beat.type = axMavGroundStation;
        beat.autopilot = axMavNoAutopilot;
        beat.system_status = 4; // MAV_STATE_ACTIVE
        beat.mavlink_version = 3;
        // An aircraft that could speak version 2 may wait until it hears it.
        parts.isBeatOfVersion2 = !parts.isBeatOfVersion2;
        if (parts.isBeatOfVersion2)
            parts.writer.SetVersion(2);
        Send(parts.writer.Write(beat));
        parts.writer.SetVersion(parts.Version());
    }
    parts.recorder.Tick(now);
    tellRecordFault();
    for (AxMavlinkAircraft* aircraft : QList<AxMavlinkAircraft*>(parts.inOrder))
        aircraft->Tick(now);
    if (now - parts.lastCounts >= countsMs && !(Counts() == parts.told)) {
        parts.lastCounts = now;
        parts.told = Counts();
        emit signalCounts();
    }
}

void AxMavlinkStation::tellRecordFault()
{
    if (m_parts->recorder.Fault().isEmpty() || m_parts->isRecordFaultTold)
        return;
    m_parts->isRecordFaultTold = true;
    emit signalFault(m_parts->recorder.Fault());
}

void AxMavlinkStation::Send(const QByteArray& frame)
{
    if (!m_parts->recorder.File().isEmpty()) // not before the first that was heard
        m_parts->recorder.Add(frame.constData(), frame.size(), Now());
    m_parts->link->Write(frame);
}

AxMavWriter& AxMavlinkStation::Writer()
{
    return m_parts->writer;
}

void AxMavlinkStation::take(const QByteArray& bytes)
{
    Parts& parts = *m_parts;
    parts.bytes += static_cast<quint64>(bytes.size());
    const qint64 now = Now();
    parts.parser.SetKey(parts.key, AxMavSignTimeNow()); // what was recorded a while ago does not count
    const auto takeOne = [&](const AxMavFrame& frame) { takeFrame(frame, now); };
    const auto recordOne = [&](const AxMavFrame& frame) { recordUnknown(frame, now); };
    parts.parser.Feed(bytes, takeOne, recordOne);
    if (parts.link->BringsWholeFrames())
        parts.parser.Flush(takeOne, recordOne);
}

void AxMavlinkStation::recordUnknown(const AxMavFrame& frame, qint64 now)
{
    if (!m_parts->recorder.File().isEmpty()) // noise can look like such a frame, and is no flight
        m_parts->recorder.Add(reinterpret_cast<const char*>(frame.raw), frame.rawSize, now);
}

void AxMavlinkStation::takeFrame(const AxMavFrame& frame, qint64 now)
{
    Parts& parts = *m_parts;
    if (parts.link->GetPhase() == AxTelemetryLink::Phase::Closed)
        return; // an earlier frame of the same bytes has led to that
    const bool wasRecording = !parts.recorder.File().isEmpty();
    parts.recorder.Add(reinterpret_cast<const char*>(frame.raw), frame.rawSize, now);
    if (!wasRecording && !parts.recorder.File().isEmpty())
        emit signalRecording(parts.recorder.File());
    // A station speaks as the aircraft do: an old one understands version 1 alone.
    parts.hearsVersion2 = parts.hearsVersion2 || frame.version == 2;
    parts.writer.SetVersion(parts.Version());
    std::unique_ptr<AxMavlinkAircraft>& aircraft = parts.aircraft[frame.systemId];
    const bool isNew = !aircraft;
    if (isNew) {
        if (frame.systemId == 0 || !AxIsVehicleHeartbeat(frame))
            return;
        aircraft = std::make_unique<AxMavlinkAircraft>(frame.systemId, *this);
        parts.inOrder << aircraft.get();
    }
    aircraft->Take(frame, now);
    if (isNew)
        emit signalAircraft(aircraft.get());
}

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

#include <algorithm>
#include <map>
#include <utility>
#include <vector>

namespace {
constexpr int tickMs = 100;
constexpr qint64 beatMs = 1000;
constexpr qint64 countsMs = 1000;
constexpr qint64 clockStepMs = 2000;
constexpr quint64 oldSignaturesTold = 3; // frames: one alone may be a recorded one
constexpr quint64 signTicks = 100000;    // of signature times, a second
constexpr quint64 mostSecondsBehind = 60;

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
           a.refusedSignatures == b.refusedSignatures && a.oldSignatures == b.oldSignatures;
}

struct AxMavlinkStation::Parts
{
    std::unique_ptr<AxTelemetryLink> link;
    AxTelemetryClock clock = ComputersClock();
    AxMavParser parser; // of peer 0, and the key of all
    std::map<int, AxMavParser> peerParsers;
    AxMavWriter writer{axMavStationSystem, axMavStationComponent};
    AxTlogRecorder recorder;
    QString recordFolder;
    bool isRecordFaultTold = false;
    bool areOldSignaturesTold = false;
    using Sender = std::pair<int, int>; // system and peer
    struct NewSender
    {
        qint64 since = 0;
        qint64 latest = 0;
    };
    std::vector<std::unique_ptr<AxMavlinkAircraft>> aircraft; // in order
    QList<AxMavlinkAircraft*> inOrder;
    std::map<Sender, AxMavlinkAircraft*> bySender;
    std::map<Sender, NewSender> newSenders; // of systems that another peer speaks for, too
    QTimer timer;
    qint64 lastBeat = 0;
    qint64 lastCounts = 0;
    quint64 bytes = 0;
    AxStationCounts told;
    QByteArray key;
    bool hearsVersion2 = false;
    bool isBeatOfVersion2 = false; // the latest heartbeat

    int Version() const { return hearsVersion2 || !key.isEmpty() ? 2 : 1; }
    AxMavParser& ParserOf(int peer)
    {
        if (peer == 0)
            return parser;
        const auto [place, isNew] = peerParsers.try_emplace(peer);
        if (isNew)
            place->second.ShareKey(parser);
        return place->second;
    }
    QList<AxMavlinkAircraft*> Of(int systemId) const
    {
        QList<AxMavlinkAircraft*> found;
        for (AxMavlinkAircraft* one : inOrder)
            if (one->State().systemId == systemId)
                found << one;
        return found;
    }
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
    for (auto& one : parts.peerParsers)
        one.second.Reset();
    parts.newSenders.clear();
    parts.areOldSignaturesTold = false;
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
    return m_parts->Of(systemId).value(0);
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
    AxStationCounts sum;
    sum.bytes = m_parts->bytes;
    const auto add = [&](const AxMavCounts& counts) {
        sum.frames += counts.frames;
        sum.lost += counts.lost;
        sum.badChecksums += counts.badChecksums;
        sum.unknown += counts.unknown;
        sum.garbageBytes += counts.garbageBytes;
        sum.refusedSignatures += counts.refusedSignatures;
        sum.oldSignatures += counts.oldSignatures;
    };
    add(m_parts->parser.Counts());
    for (const auto& one : m_parts->peerParsers)
        add(one.second.Counts());
    return sum;
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
    tellOldSignatures();
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

void AxMavlinkStation::tellOldSignatures()
{
    Parts& parts = *m_parts;
    if (parts.areOldSignaturesTold || Counts().oldSignatures < oldSignaturesTold)
        return;
    parts.areOldSignaturesTold = true;
    const quint64 old = parts.parser.OldSignTime();
    const quint64 clock = AxMavSignTimeNow();
    const quint64 newest = parts.parser.NewestSignTime();
    if (old + mostSecondsBehind * signTicks < clock)
        emit signalFault(tr("Frames are refused although they are signed with the key: the times of their "
                            "signatures are %1 s behind this computer's clock, and %2 s is the most. Set "
                            "this computer's clock right and connect again, or wait until the aircraft "
                            "knows the time.")
                             .arg((clock - old) / signTicks)
                             .arg(mostSecondsBehind));
    else
        emit signalFault(tr("Frames are refused although they are signed with the key: the times of their "
                            "signatures are %1 s behind those of another aircraft, and %2 s is the most. Set "
                            "the clock of that aircraft right and connect again.")
                             .arg((newest - qMin(old, newest)) / signTicks)
                             .arg(mostSecondsBehind));
}

void AxMavlinkStation::Send(const QByteArray& frame, int peer)
{
    if (!m_parts->recorder.File().isEmpty()) // not before the first that was heard
        m_parts->recorder.Add(frame.constData(), frame.size(), Now());
    m_parts->link->WriteTo(peer, frame);
}

AxMavWriter& AxMavlinkStation::Writer()
{
    return m_parts->writer;
}

void AxMavlinkStation::take(const QByteArray& bytes, int peer)
{
    Parts& parts = *m_parts;
    parts.bytes += static_cast<quint64>(bytes.size());
    const qint64 now = Now();
    parts.parser.SetKey(parts.key, AxMavSignTimeNow()); // what was recorded a while ago does not count
    const auto takeOne = [&](const AxMavFrame& frame) { takeFrame(frame, peer, now); };
    const auto recordOne = [&](const AxMavFrame& frame) {
        recordUnknown(frame, now);
        const auto known = parts.bySender.find({frame.systemId, peer});
        if (known != parts.bySender.end())
            known->second->CountUnknown(frame);
    };
    AxMavParser& parser = parts.ParserOf(peer);
    parser.Feed(bytes, takeOne, recordOne);
    if (parts.link->BringsWholeFrames())
        parser.Flush(takeOne, recordOne);
}

void AxMavlinkStation::recordUnknown(const AxMavFrame& frame, qint64 now)
{
    if (!m_parts->recorder.File().isEmpty()) // noise can look like such a frame, and is no flight
        m_parts->recorder.Add(reinterpret_cast<const char*>(frame.raw), frame.rawSize, now);
}

// An aircraft of this number whose own peer has fallen silent; null where there is none, or where it cannot
// be told yet: then `isAnother` is false.
AxMavlinkAircraft* AxMavlinkStation::ofSilentPeer(int systemId, int peer, qint64 now, bool* isAnother)
{
    Parts& parts = *m_parts;
    *isAnother = false;
    const QList<AxMavlinkAircraft*> namesakes = parts.Of(systemId);
    Parts::NewSender& sender = parts.newSenders[{systemId, peer}];
    if (now - sender.latest >= axMavSilentMs)
        sender.since = now;
    sender.latest = now;
    AxMavlinkAircraft* silent = nullptr;
    for (AxMavlinkAircraft* one : namesakes) {
        const qint64 heard = one->State().lastHeard;
        if (now - heard < axMavSilentMs && heard <= sender.since)
            return nullptr; // it may be the one that has moved
        if (now - heard >= axMavSilentMs && (!silent || heard > silent->State().lastHeard))
            silent = one;
    }
    *isAnother = !silent;
    parts.newSenders.erase({systemId, peer});
    return silent;
}

void AxMavlinkStation::takeFrame(const AxMavFrame& frame, int peer, qint64 now)
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
    const auto known = parts.bySender.find({frame.systemId, peer});
    if (known != parts.bySender.end())
        return known->second->Take(frame, now);
    if (frame.systemId == 0)
        return;
    const QList<AxMavlinkAircraft*> namesakes = parts.Of(frame.systemId);
    if (!AxIsVehicleHeartbeat(frame)) {
        // A camera or a companion computer may have an address of its own.
        if (namesakes.size() == 1 && frame.componentId != namesakes[0]->ComponentId())
            namesakes[0]->Take(frame, now);
        return;
    }
    const QString peerName = parts.link->PeerName(peer);
    bool isNew = true;
    AxMavlinkAircraft* aircraft =
        namesakes.isEmpty() ? nullptr : ofSilentPeer(frame.systemId, peer, now, &isNew);
    if (aircraft) {
        parts.bySender.erase({frame.systemId, aircraft->Peer()});
        aircraft->MoveTo(peer, peerName);
    } else if (isNew) {
        parts.aircraft.push_back(std::make_unique<AxMavlinkAircraft>(
            frame.systemId, *this, peer, namesakes.isEmpty() ? QString() : peerName));
        aircraft = parts.aircraft.back().get();
        parts.inOrder << aircraft;
    } else {
        return;
    }
    parts.bySender[{frame.systemId, peer}] = aircraft;
    aircraft->Take(frame, now);
    if (isNew)
        emit signalAircraft(aircraft);
}

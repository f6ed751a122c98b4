#include <AxTelemetry/mavlink/AxMavCandidate.h>
#include <AxTelemetry/mavlink/AxMavParser.h>
#include <AxTelemetry/record/AxRecordText.h>
#include <AxTelemetry/record/AxTlogClock.h>
#include <AxTelemetry/record/AxTlogFlight.h>
#include <AxTelemetry/record/AxTlogReader.h>

#include <QIODevice>

#include <algorithm>
#include <array>

namespace {
constexpr int stampSize = 8;
constexpr qint64 pieceSize = 1 << 20; // bytes between two reports of progress
constexpr quint64 dayOfMicroseconds = 86400000000;

quint64 StampAt(const quint8* bytes)
{
    quint64 stamp = 0;
    for (int i = 0; i < stampSize; ++i)
        stamp = stamp << 8 | bytes[i];
    return stamp;
}
} // namespace

struct AxTlogReader::State
{
    enum class Found
    {
        Record,
        Nothing,
        Unfinished
    };

    Found Judge(const quint8* at, const quint8* end, bool isLast, int& size) const;
    void Take(bool isLast);
    void TakeRecord(const quint8* at, int size);
    void Tell(std::optional<quint64> next);
    void EndDamage();
    QStringList Notes() const;

    AxMavParser parser;
    AxTlogClock clock;
    std::array<std::unique_ptr<AxTlogFlight>, 256> flights; // by the number of the system
    QByteArray waiting;
    std::optional<AxMavFrame> held; ///< until the next stamp is known
    quint64 heldStamp = 0;
    quint64 lastStamp = 0;
    quint64 records = 0;
    qint64 run = 0; ///< bytes of the damaged place that is being passed
    qint64 damagedBytes = 0;
    int damagedPlaces = 0;
    bool isRunUnfinished = false; ///< the place began as a record that the end of the file cuts
    bool isCut = false;
};

/// What starts here; of a record, how long it is.
AxTlogReader::State::Found AxTlogReader::State::Judge(const quint8* at, const quint8* end, bool isLast,
                                                      int& size) const
{
    const Found open = isLast ? Found::Nothing : Found::Unfinished;
    if (end - at <= stampSize)
        return open;
    // Behind damage, where records begin is not known, and chance must not make one.
    const quint64 stamp = StampAt(at);
    const bool isNear =
        lastStamp > 0 && stamp + dayOfMicroseconds >= lastStamp && stamp <= lastStamp + dayOfMicroseconds;
    const bool isTrusted = run == 0 || isNear || (AxHasDate(stamp / 1000) && stamp <= 4102444800000000);
    const quint8* const bytes = at + stampSize;
    if (!isTrusted || !AxIsMavMagic(*bytes))
        return Found::Nothing;
    AxMavCandidate frame = AxMavJudge(bytes, end, false);
    if (frame.size == 0)
        return frame.verdict == AxMavVerdict::Unfinished ? open : Found::Nothing;
    if (end - bytes < frame.size)
        return frame.verdict == AxMavVerdict::None ? Found::Nothing : open;
    if (frame.verdict != AxMavVerdict::Good)
        frame = AxMavJudge(bytes, bytes + frame.size, true);
    size = stampSize + frame.size;
    if (frame.verdict == AxMavVerdict::Good)
        return Found::Record;
    if (frame.verdict != AxMavVerdict::Unknown)
        return Found::Nothing;
    // Nobody can check a frame of an unknown message, but that another one follows.
    const quint8* const next = at + size;
    if (end - next > stampSize)
        return AxIsMavMagic(next[stampSize]) ? Found::Record : Found::Nothing;
    return isLast && next == end ? Found::Record : open;
}

void AxTlogReader::State::Take(bool isLast)
{
    const auto* at = reinterpret_cast<const quint8*>(waiting.constData());
    const auto* const begin = at;
    const auto* const end = at + waiting.size();
    while (at < end) {
        int size = 0;
        const Found found = Judge(at, end, isLast, size);
        if (found == Found::Unfinished)
            break;
        if (found == Found::Record) {
            EndDamage();
            TakeRecord(at, size);
            at += size;
        } else {
            int open = 0;
            if (run == 0)
                isRunUnfinished = isLast && Judge(at, end, false, open) == Found::Unfinished;
            ++run;
            ++at;
        }
    }
    waiting.remove(0, static_cast<int>(at - begin));
    if (isLast && isRunUnfinished && run > 0) {
        isCut = true;
        run = 0;
    }
}

void AxTlogReader::State::EndDamage()
{
    damagedPlaces += run > 0 ? 1 : 0;
    damagedBytes += run;
    run = 0;
}

void AxTlogReader::State::TakeRecord(const quint8* at, int size)
{
    const quint64 stamp = StampAt(at);
    lastStamp = stamp;
    ++records;
    const auto take = [&](const AxMavFrame& frame) {
        Tell(stamp);
        held = frame;
        held->raw = nullptr;
        heldStamp = stamp;
    };
    const auto count = [&](const AxMavFrame& frame) {
        if (flights[frame.systemId])
            flights[frame.systemId]->CountUnknown(frame);
    };
    const char* const bytes = reinterpret_cast<const char*>(at) + stampSize;
    parser.Feed(QByteArray::fromRawData(bytes, size - stampSize), take, count);
    parser.Flush(take, count);
}

void AxTlogReader::State::Tell(std::optional<quint64> next)
{
    if (!held)
        return;
    const auto time = static_cast<quint64>(clock.TimeOf(heldStamp, next)) / 1000;
    auto& flight = flights[held->systemId];
    if (!flight)
        flight = std::make_unique<AxTlogFlight>(held->systemId);
    flight->Feed(*held, time);
    held.reset();
}

QStringList AxTlogReader::State::Notes() const
{
    QStringList notes;
    if (isCut)
        notes << AxRecordText(QT_TRANSLATE_NOOP(
            "AxRecord", "The file ends in the middle of a record; all before it is there."));
    if (damagedPlaces > 0)
        notes << AxRecordText(
                     QT_TRANSLATE_NOOP("AxRecord", "%1 damaged places of %2 bytes together are left out."))
                     .arg(damagedPlaces)
                     .arg(damagedBytes);
    if (clock.TimesSet() > 0)
        notes << AxRecordText(QT_TRANSLATE_NOOP("AxRecord",
                                                "The clock of the recording was set %1 times; times go on "
                                                "from what they were before."))
                     .arg(clock.TimesSet());
    if (parser.Counts().refusedSignatures > 0)
        notes << AxRecordText(
                     QT_TRANSLATE_NOOP("AxRecord", "%1 frames are left out: they need another signing key."))
                     .arg(parser.Counts().refusedSignatures);
    for (const auto& flight : flights)
        if (flight && !flight->GeoidNote().isEmpty())
            return notes << flight->GeoidNote();
    return notes;
}

AxTlogReader::AxTlogReader() : m_state(std::make_unique<State>()) {}

AxTlogReader::~AxTlogReader() = default;

bool AxTlogReader::SetKey(const QByteArray& key)
{
    return m_state->parser.SetKey(key);
}

void AxTlogReader::Feed(const QByteArray& bytes)
{
    m_state->waiting += bytes;
    m_state->Take(false);
}

AxFlightRead AxTlogReader::Finish()
{
    m_state->Take(true);
    m_state->EndDamage();
    m_state->Tell(std::nullopt);
    AxFlightRead read;
    read.notes = m_state->Notes();
    for (const auto& flight : m_state->flights)
        if (const auto flown = flight ? flight->Finish() : nullptr)
            read.flights.push_back(flown);
    if (m_state->records == 0)
        read.fault = AxRecordText(QT_TRANSLATE_NOOP(
            "AxRecord", "This is no .tlog: it begins with no MAVLink frame behind a time."));
    else if (read.flights.empty() && m_state->parser.Counts().refusedSignatures > 0)
        read.fault = AxRecordText(
            QT_TRANSLATE_NOOP("AxRecord", "The file holds no flight that this signing key opens."));
    else if (read.flights.empty())
        read.fault = AxRecordText(
            QT_TRANSLATE_NOOP("AxRecord", "The file holds no flight: no aircraft tells where it is."));
    return read;
}

AxFlightRead AxReadTlog(QIODevice& device, const AxReadProgress& progress, const QByteArray& key)
{
    AxFlightRead read;
    AxTlogReader reader;
    if (!reader.SetKey(key)) {
        read.fault = AxRecordText(QT_TRANSLATE_NOOP("AxRecord", "A signing key has 32 bytes."));
        return read;
    }
    const auto size = static_cast<double>(std::max<qint64>(device.size(), 1));
    double taken = 0.0;
    for (;;) {
        const QByteArray piece = device.read(pieceSize);
        if (piece.isEmpty())
            break;
        reader.Feed(piece);
        taken += static_cast<double>(piece.size());
        if (progress && !progress(std::min(1.0, taken / size))) {
            read.isCancelled = true;
            return read;
        }
    }
    return reader.Finish();
}

#include "AxMavParser.h"

#include "AxMavCandidate.h"
#include "AxMavTrust.h"
#include "AxMavWire.h"

#include <algorithm>
#include <cstring>
#include <unordered_map>

namespace {
/// Longer than what may wait: a frame, and those that must follow it if its message is unknown.
constexpr std::size_t kKept = 2048; // bytes
static_assert(kKept > std::size_t(axMavMostFrame) * (axMavFollowers + 2), "a candidate must fit");

/// A number this much behind the expected one is a frame that came late or twice, not a gap of nearly 256.
constexpr int kLate = 16;

struct Sender
{
    quint8 expected = 0;
    quint8 pending = 0; ///< lost before frames that were passed over
};

quint8 Add(quint8 left, int right)
{
    return quint8(std::min(left + right, 255));
}
} // namespace

struct AxMavParser::State
{
    // The input is [at, end): either in `kept`, or in the caller's bytes, of which [rest, restEnd) are still
    // unread.
    std::array<quint8, kKept> kept;
    const quint8* at = nullptr;
    const quint8* end = nullptr;
    const quint8* rest = nullptr;
    const quint8* restEnd = nullptr;
    bool isInKept = true;
    bool isFeeding = false;
    bool isLast = false;
    QByteArray inHand;  ///< what is parsed of `waiting`
    QByteArray waiting; ///< fed by a handler

    AxMavFrame frame;
    AxMavCounts counts;
    std::shared_ptr<AxMavTrust> trust = std::make_shared<AxMavTrust>();
    std::unordered_map<quint16, Sender> senders;

    State() { Clear(); }

    void Clear()
    {
        at = end = kept.data();
        rest = restEnd = nullptr;
        isInKept = true;
        waiting.clear();
    }

    bool Refill();
    const AxMavFrame* Scan(bool* isKnown);
    bool Accept(const AxMavCandidate& candidate, bool* isKnown);
    int LostBefore(const AxMavCandidate& candidate);
    void Fill(const AxMavCandidate& candidate);
};

/// Makes more of the caller's bytes input, behind what waits. False when there are none.
bool AxMavParser::State::Refill()
{
    const std::size_t left = std::size_t(end - at);
    std::size_t unread = std::size_t(restEnd - rest);
    if (unread == 0 && !waiting.isEmpty() && isInKept) {
        inHand = waiting;
        waiting.clear();
        rest = reinterpret_cast<const quint8*>(inHand.constData());
        restEnd = rest + inHand.size();
        unread = std::size_t(inHand.size());
    }
    if (!isInKept) {
        std::memcpy(kept.data(), at, left);
        isInKept = true;
        rest = restEnd;
        unread = 0;
    } else if (left > 0 && at != kept.data()) {
        std::memmove(kept.data(), at, left);
    }
    at = kept.data();
    end = at + left;
    if (unread == 0)
        return !waiting.isEmpty();
    if (left == 0) {
        at = rest;
        end = restEnd;
        rest = restEnd;
        isInKept = false;
        return true;
    }
    const std::size_t more = std::min(unread, kKept - left);
    std::memcpy(kept.data() + left, rest, more);
    end += more;
    rest += more;
    return true;
}

/// Looks through the input up to the next frame that is to be given out, or to what must wait for more.
const AxMavFrame* AxMavParser::State::Scan(bool* isKnown)
{
    while (at != end) {
        const quint8* const start = std::find_if(at, end, AxIsMavMagic);
        counts.garbageBytes += quint64(start - at);
        at = start;
        if (at == end)
            break;
        const AxMavCandidate candidate = AxMavJudge(at, end, isLast);
        switch (candidate.verdict) {
        case AxMavVerdict::Unfinished:
            return nullptr;
        case AxMavVerdict::BadChecksum:
            ++counts.badChecksums;
            [[fallthrough]];
        case AxMavVerdict::None:
            ++counts.garbageBytes;
            ++at;
            break;
        case AxMavVerdict::Unknown:
        case AxMavVerdict::Good:
            at += candidate.size;
            if (Accept(candidate, isKnown))
                return &frame;
        }
    }
    return nullptr;
}

/// Whether `frame` is to be given out now.
bool AxMavParser::State::Accept(const AxMavCandidate& candidate, bool* isKnown)
{
    const AxMavTrusted trusted = trust->Judge(candidate);
    if (trusted != AxMavTrusted::Yes) {
        ++counts.refusedSignatures;
        counts.oldSignatures += trusted == AxMavTrusted::TooOld ? 1 : 0;
        return false;
    }
    const int lost = LostBefore(candidate);
    counts.lost += quint64(lost);
    Sender& sender = senders[candidate.SenderKey()];
    if (candidate.verdict == AxMavVerdict::Unknown) {
        ++counts.unknown;
        sender.pending = Add(sender.pending, lost);
        if (!isKnown)
            return false;
        *isKnown = false;
        Fill(candidate);
        frame.lostBefore = 0;
        return true;
    }
    if (isKnown)
        *isKnown = true;
    ++counts.frames;
    Fill(candidate);
    frame.lostBefore = Add(sender.pending, lost);
    sender.pending = 0;
    return true;
}

int AxMavParser::State::LostBefore(const AxMavCandidate& candidate)
{
    const auto [place, isFirst] = senders.try_emplace(candidate.SenderKey());
    Sender& sender = place->second;
    const quint8 gap = quint8(candidate.sequence - sender.expected);
    if (!isFirst && gap >= 256 - kLate)
        return 0;
    sender.expected = quint8(candidate.sequence + 1);
    return isFirst ? 0 : gap;
}

void AxMavParser::State::Fill(const AxMavCandidate& candidate)
{
    frame.version = candidate.version;
    frame.incompatFlags = candidate.version == 2 ? candidate.bytes[2] : 0;
    frame.compatFlags = candidate.version == 2 ? candidate.bytes[3] : 0;
    frame.sequence = candidate.sequence;
    frame.systemId = candidate.systemId;
    frame.componentId = candidate.componentId;
    frame.messageId = candidate.messageId;
    frame.length = candidate.length;
    std::memcpy(frame.payload.data(), candidate.Payload(), candidate.length);
    std::fill(frame.payload.begin() + candidate.length, frame.payload.end(), quint8(0));
    frame.isSigned = candidate.isSigned;
    frame.linkId = candidate.isSigned ? candidate.LinkId() : 0;
    frame.signTime = candidate.isSigned ? candidate.SignTime() : 0;
    frame.raw = candidate.bytes;
    frame.rawSize = candidate.size;
}

AxMavParser::AxMavParser() : m_state(std::make_unique<State>()) {}

AxMavParser::~AxMavParser() = default;

/// False when a handler is at work, whose Next() will come to these bytes.
bool AxMavParser::Begin(const quint8* data, std::size_t size, bool isLast)
{
    State& state = *m_state;
    if (state.isFeeding) {
        state.waiting.append(reinterpret_cast<const char*>(data), int(size));
        return false;
    }
    state.isFeeding = true;
    state.isLast = isLast;
    state.rest = data;
    state.restEnd = data + size;
    return true;
}

/// The next frame, null behind the last one. Frames of unknown messages come only if there is an `isKnown` to
/// tell them by.
const AxMavFrame* AxMavParser::Next(bool* isKnown)
{
    State& state = *m_state;
    do {
        if (const AxMavFrame* const frame = state.Scan(isKnown))
            return frame;
    } while (state.Refill());
    state.isFeeding = false;
    return nullptr;
}

bool AxMavParser::SetKey(const QByteArray& key, quint64 newestSignTime)
{
    return m_state->trust->SetKey(key, newestSignTime);
}

void AxMavParser::ShareKey(AxMavParser& other)
{
    m_state->trust = other.m_state->trust;
}

quint64 AxMavParser::NewestSignTime() const
{
    return m_state->trust->NewestTime();
}

quint64 AxMavParser::OldSignTime() const
{
    return m_state->trust->OldTime();
}

const AxMavCounts& AxMavParser::Counts() const
{
    return m_state->counts;
}

void AxMavParser::Reset()
{
    m_state->Clear();
    m_state->counts = AxMavCounts();
    m_state->senders.clear();
}

#include "AxMavCandidate.h"

#include "AxMavChecksum.h"
#include "AxMavMessageInfo.h"
#include "AxMavSigning.h"

namespace {
/// Reads the header; the verdict is Good if nothing speaks against it so far.
AxMavCandidate ReadHeader(const quint8* bytes, const quint8* end)
{
    AxMavCandidate candidate;
    candidate.bytes = bytes;
    candidate.version = bytes[0] == axMavMagic2 ? 2 : 1;
    const int header = candidate.version == 2 ? axMavHeader2 : axMavHeader1;
    // A frame with a flag that nobody knows must not be read.
    if (candidate.version == 2 && end - bytes > 2 && (bytes[2] & ~axMavIsSigned) != 0)
        return candidate;
    if (end - bytes < header) {
        candidate.verdict = AxMavVerdict::Unfinished;
        return candidate;
    }
    const quint8* const sender = bytes + (candidate.version == 2 ? 4 : 2);
    candidate.length = bytes[1];
    candidate.sequence = sender[0];
    candidate.systemId = sender[1];
    candidate.componentId = sender[2];
    candidate.messageId = sender[3];
    if (candidate.version == 2) {
        candidate.messageId |= quint32(sender[4]) << 8 | quint32(sender[5]) << 16;
        candidate.isSigned = (bytes[2] & axMavIsSigned) != 0;
    }
    candidate.size = header + candidate.length + 2 + (candidate.isSigned ? axMavSignatureSize : 0);
    candidate.verdict = AxMavVerdict::Good;
    return candidate;
}

void CheckKnown(AxMavCandidate& candidate, const quint8* end, const AxMavMessageInfo& info)
{
    // Version 1 sends whole payloads, some senders with extension fields.
    if (candidate.version == 1 && (candidate.length < info.baseSize || candidate.length > info.size)) {
        candidate.verdict = AxMavVerdict::None;
    } else if (end - candidate.bytes < candidate.size) {
        candidate.verdict = AxMavVerdict::Unfinished;
    } else {
        const quint8* const checksum = candidate.Payload() + candidate.length;
        const std::size_t covered = std::size_t(checksum - candidate.bytes) - 1;
        if (AxMavChecksum(candidate.bytes + 1, covered, info.extraCrc) != AxMavLoad<quint16>(checksum))
            candidate.verdict = AxMavVerdict::BadChecksum;
    }
}

/// Whether frames follow from here without a gap, up to one that is known, or so many unknown ones.
AxMavVerdict Followers(const quint8* bytes, const quint8* end, int unknown)
{
    if (bytes >= end)
        return AxMavVerdict::Unfinished;
    if (!AxIsMavMagic(*bytes))
        return AxMavVerdict::None;
    AxMavCandidate next = ReadHeader(bytes, end);
    if (next.verdict != AxMavVerdict::Good)
        return next.verdict;
    if (const AxMavMessageInfo* const info = AxMavInfo(next.messageId)) {
        CheckKnown(next, end, *info);
        return next.verdict;
    }
    if (unknown == 0)
        return AxMavVerdict::Good;
    return end - bytes < next.size ? AxMavVerdict::Unfinished
                                   : Followers(bytes + next.size, end, unknown - 1);
}
} // namespace

AxMavCandidate AxMavJudge(const quint8* bytes, const quint8* end, bool isLast)
{
    AxMavCandidate candidate = ReadHeader(bytes, end);
    if (candidate.verdict == AxMavVerdict::Good) {
        if (const AxMavMessageInfo* const info = AxMavInfo(candidate.messageId)) {
            CheckKnown(candidate, end, *info);
        } else if (end - bytes < candidate.size) {
            candidate.verdict = AxMavVerdict::Unfinished;
        } else {
            const AxMavVerdict followers = Followers(bytes + candidate.size, end, axMavFollowers - 1);
            const bool isBelieved =
                followers == AxMavVerdict::Good || (isLast && bytes + candidate.size == end);
            candidate.verdict = isBelieved                              ? AxMavVerdict::Unknown
                                : followers == AxMavVerdict::Unfinished ? AxMavVerdict::Unfinished
                                                                        : AxMavVerdict::None;
        }
    }
    if (isLast && candidate.verdict == AxMavVerdict::Unfinished)
        candidate.verdict = AxMavVerdict::None;
    return candidate;
}

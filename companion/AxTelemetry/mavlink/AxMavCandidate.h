#pragma once

#include <AxTelemetry/mavlink/AxMavWire.h>

/// How many frames must follow a frame of an unknown message, each at the other's end, before it is believed
/// without one of a known message among them.
constexpr int axMavFollowers = 3;

enum class AxMavVerdict
{
    None,        ///< no frame starts here
    BadChecksum, ///< nor here, though all but the checksum looks like a known message
    Unfinished,  ///< more bytes will tell
    Unknown,     ///< a whole frame of a message that is not known
    Good,
};

/// What starts at a byte that a frame could start with. Its bytes belong to whoever asked.
struct AxMavCandidate
{
    AxMavVerdict verdict = AxMavVerdict::None;
    const quint8* bytes = nullptr;
    int size = 0; ///< bytes, with checksum and signature
    quint8 version = 2;
    quint8 length = 0;
    quint8 sequence = 0;
    quint8 systemId = 0;
    quint8 componentId = 0;
    quint32 messageId = 0;
    bool isSigned = false;

    const quint8* Payload() const { return bytes + (version == 2 ? axMavHeader2 : axMavHeader1); }
    quint16 SenderKey() const { return static_cast<quint16>(systemId << 8 | componentId); }
    /// Of the signature.
    quint8 LinkId() const { return bytes[size - 13]; }
    quint64 SignTime() const { return AxMavLoad<quint64>(bytes + size - 14) >> 16; }
    const quint8* Tag() const { return bytes + size - 6; }
};

inline bool AxIsMavMagic(quint8 byte)
{
    return byte == axMavMagic1 || byte == axMavMagic2;
}

/// Judges what starts at `bytes`, which is such a byte. With `isLast`, no bytes follow `end`.
AxMavCandidate AxMavJudge(const quint8* bytes, const quint8* end, bool isLast);

#pragma once

#include <QtCore/qglobal.h>

#include <array>

/**
 * One MAVLink frame that a parser has accepted. A plain value, but for `raw`, which points into what the
 * parser was given and is valid while the parser's handler runs.
 */
struct AxMavFrame
{
    /// The header; version 1 has no flags.
    quint8 version = 2; ///< 1 or 2
    quint8 incompatFlags = 0;
    quint8 compatFlags = 0;
    quint8 sequence = 0;
    quint8 systemId = 0;
    quint8 componentId = 0;
    quint32 messageId = 0;

    quint8 length = 0;                 ///< bytes of payload that were sent
    std::array<quint8, 255> payload{}; ///< zero behind `length`
    quint8 lostBefore = 0;             ///< frames of this system and component missing just before this one
    bool isSigned = false;             ///< with the right key, when a parser gives it out
    quint8 linkId = 0;                 ///< of the signature
    quint64 signTime = 0;              ///< of the signature, in 10 microseconds since 2015-01-01 UTC
    const quint8* raw = nullptr;       ///< the whole frame as it came
    int rawSize = 0;                   ///< bytes
};

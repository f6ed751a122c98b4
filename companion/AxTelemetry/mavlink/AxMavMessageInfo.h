#pragma once

#include <AxTelemetry/AxTelemetryExport.h>

/// What the frame of a known message must look like.
struct AxMavMessageInfo
{
    quint32 id;       ///< its number
    quint8 extraCrc;  ///< goes into the checksum behind the payload
    quint8 baseSize;  ///< bytes of payload without extension fields
    quint8 size;      ///< bytes of payload
    const char* name; ///< as in the definition
};

/// Null for a message that is not known. Any thread.
AXTELEMETRY_EXPORT const AxMavMessageInfo* AxMavInfo(quint32 messageId);

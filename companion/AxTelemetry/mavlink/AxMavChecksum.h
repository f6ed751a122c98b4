#pragma once

#include <QtCore/qglobal.h>

#include <array>
#include <cstddef>

namespace AxMavChecksumTable {
constexpr std::array<quint16, 256> Make()
{
    std::array<quint16, 256> table{};
    for (unsigned byte = 0; byte < 256; ++byte) {
        unsigned crc = byte;
        for (int bit = 0; bit < 8; ++bit)
            crc = crc & 1u ? (crc >> 1) ^ 0x8408u : crc >> 1;
        table[byte] = static_cast<quint16>(crc);
    }
    return table;
}
inline constexpr std::array<quint16, 256> values = Make();
} // namespace AxMavChecksumTable

/// CRC-16/MCRF4XX of what follows a frame's first byte, up to the payload's end, and of the message's own
/// byte.
inline quint16 AxMavChecksum(const quint8* bytes, std::size_t size, quint8 extraCrc)
{
    unsigned crc = 0xFFFFu;
    for (std::size_t i = 0; i < size; ++i)
        crc = (crc >> 8) ^ AxMavChecksumTable::values[(crc ^ bytes[i]) & 0xFFu];
    return static_cast<quint16>((crc >> 8) ^ AxMavChecksumTable::values[(crc ^ extraCrc) & 0xFFu]);
}

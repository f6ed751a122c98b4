#pragma once

#include <QByteArray>

#include <array>

constexpr int axMavKeySize = 32;       ///< bytes
constexpr int axMavSignatureSize = 13; ///< bytes behind the checksum: link, time, tag
constexpr int axMavTagSize = 6;        ///< bytes, the last ones of a signature

/// The tag over a frame that ends before it.
std::array<quint8, axMavTagSize> AxMavTag(const QByteArray& key, const quint8* frame, int size);

/// Now, as signatures tell it: 10 microseconds since 2015-01-01 UTC.
quint64 AxMavSignTimeNow();

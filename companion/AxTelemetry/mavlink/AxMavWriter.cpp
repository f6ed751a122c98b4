#include "AxMavWriter.h"

#include "AxMavChecksum.h"
#include "AxMavFrame.h"
#include "AxMavSigning.h"
#include "AxMavWire.h"

#include <algorithm>

AxMavWriter::AxMavWriter(quint8 systemId, quint8 componentId)
    : m_systemId(systemId), m_componentId(componentId), m_clock(AxMavSignTimeNow)
{
}

bool AxMavWriter::SetKey(const QByteArray& key, quint8 linkId)
{
    if (!key.isEmpty() && key.size() != axMavKeySize)
        return false;
    m_key = key;
    m_linkId = linkId;
    return true;
}

void AxMavWriter::SetVersion(int version)
{
    m_version = version == 1 ? 1 : 2;
}

void AxMavWriter::SetSignClock(const std::function<quint64()>& clock)
{
    m_clock = clock;
}

QByteArray AxMavWriter::Frame(quint32 messageId, quint8 extraCrc, const quint8* payload, int baseSize,
                              int size)
{
    const bool isSigned = !m_key.isEmpty();
    const bool isFirst = m_version == 1 && !isSigned;
    if (isFirst && messageId > 0xFF)
        return {};
    int length = isFirst ? baseSize : size;
    while (!isFirst && length > 1 && payload[length - 1] == 0)
        --length;

    QByteArray frame;
    frame.reserve(axMavMostFrame);
    const auto append = [&frame](quint32 byte) { frame.append(static_cast<char>(byte & 0xFF)); };
    append(isFirst ? axMavMagic1 : axMavMagic2);
    append(quint32(length));
    if (!isFirst) {
        append(isSigned ? axMavIsSigned : 0);
        append(0);
    }
    append(m_sequence++);
    append(m_systemId);
    append(m_componentId);
    append(messageId);
    if (!isFirst) {
        append(messageId >> 8);
        append(messageId >> 16);
    }
    frame.append(reinterpret_cast<const char*>(payload), length);
    const auto* bytes = reinterpret_cast<const quint8*>(frame.constData());
    const quint16 checksum = AxMavChecksum(bytes + 1, std::size_t(frame.size() - 1), extraCrc);
    append(checksum);
    append(quint32(checksum >> 8));
    if (isSigned)
        Sign(frame);
    return frame;
}

void AxMavWriter::Sign(QByteArray& frame)
{
    m_signTime = std::max(m_signTime + 1, m_clock ? m_clock() : 0);
    frame.append(char(m_linkId));
    for (int byte = 0; byte < 6; ++byte)
        frame.append(char(m_signTime >> (8 * byte)));
    const auto* bytes = reinterpret_cast<const quint8*>(frame.constData());
    const auto tag = AxMavTag(m_key, bytes, frame.size());
    frame.append(reinterpret_cast<const char*>(tag.data()), int(tag.size()));
}

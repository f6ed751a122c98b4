#pragma once

#include <AxTelemetry/AxTelemetryExport.h>

#include <QByteArray>

#include <array>
#include <functional>

/**
 * Makes frames out of messages (AxMavMessages.h), numbered one after the other. A plain value that belongs to
 * whoever sends; any one thread.
 */
class AXTELEMETRY_EXPORT AxMavWriter
{
public:
    /// Who sends; the numbers of frames begin at 0.
    AxMavWriter(quint8 systemId, quint8 componentId);

    /// Signs each frame with a key of 32 bytes; an empty one ends that. False for a key of another size,
    /// which leaves all as it was. The times of signatures rise by the clock of this machine, and by 10
    /// microseconds at least.
    bool SetKey(const QByteArray& key, quint8 linkId);

    /// 1 or 2 (the one at first). Signed frames are of version 2 always.
    void SetVersion(int version);

    /// Tells the time for signatures, 10 microseconds since 2015-01-01 UTC.
    void SetSignClock(const std::function<quint64()>& clock);

    /// A whole frame. Trailing zeros of the payload are left out in version 2, extension fields in version 1.
    /// Empty if version 1 cannot bear the message, whose number is above 255.
    template <class Message> QByteArray Write(const Message& message)
    {
        std::array<quint8, 255> payload{};
        AxMavPack(message, payload.data());
        return Frame(Message::id, Message::extraCrc, payload.data(), Message::baseSize, Message::size);
    }

private:
    QByteArray Frame(quint32 messageId, quint8 extraCrc, const quint8* payload, int baseSize, int size);
    void Sign(QByteArray& frame);

    quint8 m_systemId;
    quint8 m_componentId;
    quint8 m_sequence = 0;
    int m_version = 2;
    QByteArray m_key;
    quint8 m_linkId = 0;
    quint64 m_signTime = 0;
    std::function<quint64()> m_clock;
};

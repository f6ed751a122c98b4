#pragma once

#include <AxTelemetry/mavlink/AxMavCandidate.h>

#include <QByteArray>

#include <unordered_map>

/// Whose frames count: those signed with the key, later than all before, or unsigned ones if there is no key.
class AxMavTrust
{
public:
    /// False for a key that has neither 32 bytes nor none. Another key forgets all times.
    bool SetKey(const QByteArray& key, quint64 newestTime);

    quint64 NewestTime() const { return m_newest; }

    /// Asked once for each whole frame.
    bool Accept(const AxMavCandidate& candidate);

private:
    QByteArray m_key;
    quint64 m_newest = 0;
    std::unordered_map<quint32, quint64> m_times; ///< of system, component and link
};

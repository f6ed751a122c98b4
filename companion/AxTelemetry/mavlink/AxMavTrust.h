#pragma once

#include <AxTelemetry/mavlink/AxMavCandidate.h>

#include <QByteArray>

#include <unordered_map>

enum class AxMavTrusted
{
    Yes,
    No,
    TooOld ///< signed with the key, by a sender that is new and too far behind
};

/// Whose frames count: those signed with the key, later than all before, or unsigned ones if there is no key.
class AxMavTrust
{
public:
    /// False for a key that has neither 32 bytes nor none. Another key forgets all times.
    bool SetKey(const QByteArray& key, quint64 newestTime);

    quint64 NewestTime() const { return m_newest; }

    /// The time of the latest signature that was too old; 0 before the first.
    quint64 OldTime() const { return m_old; }

    /// Asked once for each whole frame.
    AxMavTrusted Judge(const AxMavCandidate& candidate);

private:
    QByteArray m_key;
    quint64 m_newest = 0;
    quint64 m_old = 0;
    std::unordered_map<quint32, quint64> m_times; ///< of system, component and link
};

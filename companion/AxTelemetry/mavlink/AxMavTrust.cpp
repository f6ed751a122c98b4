#include "AxMavTrust.h"

#include "AxMavSigning.h"

#include <algorithm>

bool AxMavTrust::SetKey(const QByteArray& key, quint64 newestTime)
{
    if (!key.isEmpty() && key.size() != axMavKeySize)
        return false;
    if (key != m_key) {
        m_times.clear();
        m_newest = 0;
    }
    m_key = key;
    m_newest = std::max(m_newest, newestTime);
    return true;
}

AxMavTrusted AxMavTrust::Judge(const AxMavCandidate& candidate)
{
    constexpr quint64 kMostBehind = 6000000; // 60 s

    if (candidate.isSigned == m_key.isEmpty())
        return AxMavTrusted::No;
    if (!candidate.isSigned)
        return AxMavTrusted::Yes;
    const auto tag = AxMavTag(m_key, candidate.bytes, candidate.size - axMavTagSize);
    if (!std::equal(tag.begin(), tag.end(), candidate.Tag()))
        return AxMavTrusted::No;
    const quint64 time = candidate.SignTime();
    const quint32 stream = quint32(candidate.SenderKey()) << 8 | candidate.LinkId();
    const auto known = m_times.find(stream);
    if (known != m_times.end() && time <= known->second)
        return AxMavTrusted::No;
    if (known == m_times.end() && time + kMostBehind < m_newest) {
        m_old = time;
        return AxMavTrusted::TooOld;
    }
    m_times[stream] = time;
    m_newest = std::max(m_newest, time);
    return AxMavTrusted::Yes;
}

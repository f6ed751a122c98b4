#include <AxTelemetry/record/AxFlightRecord.h>
#include <AxTelemetry/record/AxTlogClock.h>

#include <algorithm>

namespace {
constexpr qint64 tlogSecond = 1000000;
constexpr qint64 tlogDay = 86400 * tlogSecond;
constexpr quint64 latestStamp = 4102444800000000; // the year 2100
} // namespace

qint64 AxTlogClock::TimeOf(quint64 stamp, std::optional<quint64> next)
{
    const bool isPossible = stamp <= latestStamp;
    const bool isNextPossible = next && *next <= latestStamp;
    const auto shifted = [this](quint64 time) { return static_cast<qint64>(time) + m_shift; };
    if (m_last < 0) {
        const bool isDated = isPossible && AxHasDate(stamp / 1000);
        const bool isWrong = isNextPossible && (!isPossible || (!isDated && AxHasDate(*next / 1000)) ||
                                                *next + tlogSecond < stamp);
        m_last = isWrong ? shifted(*next) : isPossible ? shifted(stamp) : 0;
        return m_last;
    }
    if (!isPossible)
        return m_last;
    const qint64 time = shifted(stamp);
    const bool isBack = time < m_last - tlogSecond;
    const bool isAhead = time > m_last + tlogSecond;
    const bool isAlone = isNextPossible && ((isBack && shifted(*next) >= m_last - tlogSecond) ||
                                            (isAhead && shifted(*next) < time - tlogSecond));
    if (!isAlone && (isBack || time > m_last + tlogDay)) {
        m_shift += m_last - time;
        ++m_timesSet;
    } else if (!isAlone)
        m_last = std::max(m_last, time);
    return m_last;
}

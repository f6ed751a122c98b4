#pragma once

#include <QtGlobal>

#include <algorithm>
#include <optional>

/// Tells when a sample was taken, by the time since the aircraft started that it bears. What a link delays
/// unevenly is even again: of the delays of late the shortest counts for all. Milliseconds; one aircraft.
class AxSampleClock
{
public:
    /// When a sample of one sort was taken, in the listener's time. Nothing for one that is older than the
    /// newest of its sort (`newest`, which it replaces otherwise). `boot` 0: the aircraft tells no time.
    std::optional<qint64> TimeOf(quint32 boot, qint64 heard, std::optional<quint32>& newest)
    {
        if (boot == 0)
            return heard;
        const qint64 ahead = newest ? static_cast<qint32>(boot - *newest) : 0; // also where it ran over
        if (ahead < 0 && ahead >= -outOfOrder)
            return {};
        if (ahead < 0)
            m_offset.reset(); // it has started anew
        newest = boot;
        const double offset = static_cast<double>(heard) - boot;
        const double drifted = m_offset.value_or(offset) + drift * static_cast<double>(heard - m_heard);
        m_offset = offset - drifted > longestDelay ? offset : std::min(drifted, offset);
        m_heard = heard;
        return static_cast<qint64>(boot + *m_offset);
    }

    void Reset() { m_offset.reset(); }

private:
    static constexpr qint64 outOfOrder = 1000;
    static constexpr double longestDelay = 2000.0;
    static constexpr double drift = 0.001; // by which two clocks may differ

    std::optional<double> m_offset; // listener's time less the aircraft's
    qint64 m_heard = 0;
};

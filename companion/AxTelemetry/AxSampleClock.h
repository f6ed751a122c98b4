#pragma once

#include <QtGlobal>

#include <algorithm>
#include <optional>

/// Tells when a sample was taken, by the time since the aircraft started that it bears. What a link delays
/// unevenly is even again: of the delays of late the shortest counts for all. Milliseconds; one aircraft.
class AxSampleClock
{
public:
    /// What is remembered of the samples of one sort.
    struct Order
    {
        std::optional<quint32> newest; ///< time since the aircraft's start
        bool isDoubted = false;        ///< the latest sample came from long before the newest
    };

    /// When a sample of one sort was taken, in the listener's time. Nothing for one that is older than the
    /// newest of its sort, which it replaces otherwise; two in succession that are much older tell that the
    /// aircraft has started anew. `boot` 0: the aircraft tells no time.
    std::optional<qint64> TimeOf(quint32 boot, qint64 heard, Order& order)
    {
        if (boot == 0)
            return heard;
        // Right also where the aircraft's clock ran over.
        const qint64 ahead = order.newest ? static_cast<qint32>(boot - *order.newest) : 0;
        const bool isLongBefore = ahead < -outOfOrder;
        const bool isAnew = isLongBefore && order.isDoubted;
        order.isDoubted = isLongBefore && !isAnew;
        if (ahead < 0 && !isAnew)
            return {};
        if (isAnew)
            m_offset.reset();
        order.newest = boot;
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

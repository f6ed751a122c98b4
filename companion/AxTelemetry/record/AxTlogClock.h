#pragma once

#include <QtGlobal>

#include <optional>

/// Makes the times of a .tlog rise. A value; any one thread.
class AxTlogClock
{
public:
    /// The time in microseconds of a frame that is stamped so, when the next one (if there is one) is stamped
    /// `next`. Never before the one answered last.
    qint64 TimeOf(quint64 stamp, std::optional<quint64> next);

    /// How often the clock of the recording was set.
    int TimesSet() const { return m_timesSet; }

private:
    qint64 m_last = -1;
    qint64 m_shift = 0;
    int m_timesSet = 0;
};

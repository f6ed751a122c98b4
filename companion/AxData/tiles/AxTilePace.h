#pragma once

#include <AxData/AxDataExport.h>

#include <QtGlobal>

#include <random>

/**
 * How fast a service is asked: how many requests at once, how long not at all, and when no more. A service
 * that says that it is busy gets half the requests, and one more again after each row of answers; a failure
 * is followed by a pause that doubles each time (with a random part, so that many programs do not come back
 * at one moment). Knows no clock: moments are milliseconds of any that goes evenly. One thread at a time.
 */
class AXDATA_EXPORT AxTilePace
{
public:
    /// So many requests at once at most. `seed` makes the random part the same again.
    explicit AxTilePace(int mostAtOnce, unsigned seed = std::random_device{}());

    /// How many requests may be under way.
    int AtOnce() const { return atOnce; }
    /// Until the next request may go; 0: now.
    qint64 Wait(qint64 now) const { return qMax<qint64>(0, pauseEnd - now); }
    /// That the server does not answer, or will be busy for longer than it is waited for.
    bool IsGivenUp() const { return isGivenUp; }

    /// An answer came, be it that there is no such tile.
    void Answered();
    /// The server asks to be left alone, for so many milliseconds; 0 where it does not say.
    void Busy(qint64 now, qint64 retryAfter);
    /// No answer came, or that of a server that is out of order.
    void Failed(qint64 now);

    static constexpr qint64 firstPause = 1000;
    static constexpr qint64 longestPause = 60000;
    /// A server that wants to be left alone for longer is left alone for good.
    static constexpr qint64 longestRetryAfter = 15LL * 60000;
    /// In a row; the last one lasts a minute.
    static constexpr int mostPauses = 8;

private:
    void pause(qint64 now, qint64 least);

    int most;
    int atOnce;
    int answered = 0; ///< since the number of requests changed
    int pauses = 0;   ///< in a row
    qint64 pauseEnd = 0;
    bool isGivenUp = false;
    std::minstd_rand random;
};

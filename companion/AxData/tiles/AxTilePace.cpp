#include <AxData/tiles/AxTilePace.h>

namespace {
constexpr int answersForOneMore = 50;
}

AxTilePace::AxTilePace(int mostAtOnce, unsigned seed) : most(qMax(1, mostAtOnce)), atOnce(most), random(seed)
{
}

void AxTilePace::Answered()
{
    pauses = 0;
    if (atOnce < most && ++answered >= answersForOneMore) {
        ++atOnce;
        answered = 0;
    }
}

void AxTilePace::Busy(qint64 now, qint64 retryAfter)
{
    if (now >= pauseEnd) {
        atOnce = qMax(1, atOnce / 2);
        answered = 0;
    }
    if (retryAfter > longestRetryAfter)
        isGivenUp = true;
    pause(now, retryAfter);
}

void AxTilePace::Failed(qint64 now)
{
    pause(now, 0);
}

void AxTilePace::pause(qint64 now, qint64 least)
{
    // Requests that were under way together fail together; that is one failure.
    if (now < pauseEnd) {
        pauseEnd = qMax(pauseEnd, now + least);
        return;
    }
    if (++pauses > mostPauses) {
        isGivenUp = true;
        return;
    }
    const qint64 whole = qMin(longestPause, firstPause << (pauses - 1));
    const qint64 part = std::uniform_int_distribution<qint64>(0, whole / 2)(random);
    pauseEnd = now + qMax(least + part, whole / 2 + part);
}

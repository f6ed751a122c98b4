#include "viewer/AxWaitRule.h"

namespace {
// What has come, or was changed by a host, is seen after so many seconds while more tiles are made.
constexpr double longestWait = 0.075;
// A loader that has brought nothing for so many seconds waits for a network, not for the processor.
constexpr double longestSilence = 1.0;

// A clock that ran backwards, or is no number, ends the waiting.
bool IsWithin(double now, double since, double seconds)
{
    return now >= since && now < since + seconds;
}
} // namespace

bool AxMayWaitForTiles(const AxWaitFacts& facts)
{
    // A tile that has come is waited for no longer when the pager has no other to make meanwhile.
    const bool isMaking = facts.wanted > 0 || (facts.isUnderWay && facts.made == 0);
    return isMaking && facts.isResting && !facts.hadInput && !facts.isAsked &&
           IsWithin(facts.now, facts.drawnAt, longestWait) &&
           IsWithin(facts.now, facts.lastTileAt, longestSilence);
}

#include "viewer/AxStillRule.h"

#include <algorithm>

bool AxStillRule::IsChange(const Facts& now) const
{
    return now.mayChange || now.isLoading || now.fingerprint != drawn.fingerprint;
}

bool AxStillRule::MustDraw(const Facts& now) const
{
    const double age = now.seconds - drawn.seconds;
    // A clock that ran backwards or is no number proves nothing.
    const bool isFresh = age >= 0.0 && age < oldest;
    return !isSaving || now.isAsked || IsChange(now) || settled < settlingFrames || !isFresh;
}

void AxStillRule::Drawn(const Facts& facts)
{
    settled = IsChange(facts) ? 0 : std::min(settled + 1, settlingFrames);
    drawn = facts;
}

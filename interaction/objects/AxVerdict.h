#pragma once

/// What became of the judging of a block's geometry.
enum class AxVerdict
{
    Accepted,
    NoExtent,     ///< refused without a word: the shape is flat
    Impossible,   ///< refused without a word: there is nothing to draw or to judge with
    WrongCount,   ///< refused without a word: not the number of vertices that the kind has
    RefusedAloud, ///< refused, and the operator was told why
};

/// The code of a verdict as CheckGeometry() answers it to hosts.
constexpr int AxCodeOf(AxVerdict verdict)
{
    switch (verdict) {
    case AxVerdict::Accepted:
        return 1;
    case AxVerdict::NoExtent:
        return 0;
    case AxVerdict::Impossible:
        return -1;
    case AxVerdict::WrongCount:
    case AxVerdict::RefusedAloud:
        break;
    }
    return -2;
}

/// What a code of CheckGeometry(), of a kind of the library or of a host's, means for the object.
enum class AxOutcome
{
    Accepted,
    Refused,
    RefusedWithReset, ///< and the host is told to start anew
};

constexpr AxOutcome AxOutcomeOf(int code)
{
    if (code >= 1)
        return AxOutcome::Accepted;
    return code == AxCodeOf(AxVerdict::RefusedAloud) ? AxOutcome::RefusedWithReset : AxOutcome::Refused;
}

#include <AxData/planner/AxPassOrder.h>

#include <algorithm>
#include <cmath>
#include <limits>

namespace {
CAxPoint2D StartOf(const AxPass& pass, bool isEastward)
{
    return {isEastward ? pass.from : pass.to, pass.y};
}

/// Passes of lines that follow each other, none of which has more than one neighbour on the next line.
using Part = std::vector<std::size_t>;

bool AreBeside(const AxPass& a, const AxPass& b)
{
    return a.from <= b.to && b.from <= a.to;
}

std::vector<Part> PartsOf(const std::vector<AxPass>& passes)
{
    constexpr std::size_t none = std::numeric_limits<std::size_t>::max();
    constexpr std::size_t several = none - 1;
    std::vector<std::size_t> next(passes.size(), none);
    std::vector<std::size_t> last(passes.size(), none);
    std::size_t firstBelow = 0;
    for (std::size_t i = 0; i < passes.size(); ++i) {
        while (passes[firstBelow].line + 1 < passes[i].line)
            ++firstBelow;
        for (std::size_t below = firstBelow; below < i && passes[below].line < passes[i].line; ++below)
            if (AreBeside(passes[below], passes[i])) {
                next[below] = next[below] == none ? i : several;
                last[i] = last[i] == none ? below : several;
            }
    }
    std::vector<Part> parts;
    std::vector<bool> isTaken(passes.size(), false);
    for (std::size_t i = 0; i < passes.size(); ++i) {
        if (isTaken[i])
            continue;
        Part part;
        for (std::size_t at = i;; at = next[at]) {
            part.push_back(at);
            isTaken[at] = true;
            if (next[at] >= several || last[next[at]] != at)
                break;
        }
        parts.push_back(std::move(part));
    }
    return parts;
}

double WayBetween(const std::vector<AxPass>& passes, const std::vector<AxFlownPass>& flown)
{
    double way = 0.0;
    for (std::size_t i = 0; i + 1 < flown.size(); ++i)
        way += AxApart(StartOf(passes[flown[i].pass], !flown[i].isEastward),
                       StartOf(passes[flown[i + 1].pass], flown[i + 1].isEastward));
    return way;
}

void FlyPart(const Part& part, bool isUpwards, bool isEastward, std::vector<AxFlownPass>& flown)
{
    for (std::size_t i = 0; i < part.size(); ++i, isEastward = !isEastward)
        flown.push_back({isUpwards ? part[i] : part[part.size() - 1 - i], isEastward});
}

std::vector<AxFlownPass> PartByPart(const std::vector<AxPass>& passes, std::size_t first, bool isUpwards,
                                    bool isEastward)
{
    std::vector<Part> parts = PartsOf(passes);
    std::vector<AxFlownPass> flown;
    const auto begin = std::find_if(parts.begin(), parts.end(), [first](const Part& part) {
        return part.front() == first || part.back() == first;
    });
    FlyPart(*begin, isUpwards, isEastward, flown);
    parts.erase(begin);
    while (!parts.empty()) {
        const AxFlownPass& last = flown.back();
        const CAxPoint2D here = StartOf(passes[last.pass], !last.isEastward);
        double least = std::numeric_limits<double>::max();
        std::size_t nearest = 0;
        for (std::size_t i = 0; i < parts.size(); ++i)
            for (const bool upwards : {true, false})
                for (const bool eastward : {true, false}) {
                    const AxPass& begins = passes[upwards ? parts[i].front() : parts[i].back()];
                    const double way = AxApart(here, StartOf(begins, eastward));
                    if (way < least) {
                        least = way;
                        nearest = i;
                        isUpwards = upwards;
                        isEastward = eastward;
                    }
                }
        FlyPart(parts[nearest], isUpwards, isEastward, flown);
        parts.erase(parts.begin() + static_cast<std::ptrdiff_t>(nearest));
    }
    return flown;
}

std::vector<AxFlownPass> LineByLine(const std::vector<AxPass>& passes, bool isUpwards, bool isEastward)
{
    std::vector<AxFlownPass> flown;
    for (std::size_t i = 0; i < passes.size();) {
        std::size_t end = i;
        while (end < passes.size() && passes[end].line == passes[i].line)
            ++end;
        // Whoever flies downwards gets the whole turned round below.
        for (std::size_t k = i; k < end; ++k)
            flown.push_back({k, true});
        i = end;
    }
    if (!isUpwards)
        std::reverse(flown.begin(), flown.end());
    for (std::size_t i = 0; i < flown.size();) {
        std::size_t end = i;
        while (end < flown.size() && passes[flown[end].pass].line == passes[flown[i].pass].line)
            ++end;
        std::sort(flown.begin() + static_cast<std::ptrdiff_t>(i),
                  flown.begin() + static_cast<std::ptrdiff_t>(end),
                  [isEastward](const AxFlownPass& a, const AxFlownPass& b) {
                      return isEastward ? a.pass < b.pass : a.pass > b.pass;
                  });
        for (std::size_t k = i; k < end; ++k)
            flown[k].isEastward = isEastward;
        isEastward = !isEastward;
        i = end;
    }
    return flown;
}
} // namespace

AxFlownPass AxEntryPass(const std::vector<AxPass>& passes, int entry)
{
    const bool isEastward = entry % 2 == 0;
    const int line = entry < 2 ? passes.front().line : passes.back().line;
    const auto isOnIt = [line](const AxPass& pass) { return pass.line == line; };
    if (isEastward)
        return {static_cast<std::size_t>(std::find_if(passes.begin(), passes.end(), isOnIt) - passes.begin()),
                true};
    const auto last = std::find_if(passes.rbegin(), passes.rend(), isOnIt);
    return {static_cast<std::size_t>(last.base() - passes.begin()) - 1, false};
}

std::vector<AxFlownPass> AxOrderPasses(const std::vector<AxPass>& passes, int entry)
{
    if (passes.empty())
        return {};
    const AxFlownPass begins = AxEntryPass(passes, entry);
    const bool isUpwards = entry < 2;
    std::vector<AxFlownPass> byPart = PartByPart(passes, begins.pass, isUpwards, begins.isEastward);
    std::vector<AxFlownPass> byLine = LineByLine(passes, isUpwards, begins.isEastward);
    return WayBetween(passes, byPart) <= WayBetween(passes, byLine) ? byPart : byLine;
}

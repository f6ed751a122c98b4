#include <AxData/planner/AxRouteHeights.h>

#include <algorithm>
#include <cmath>
#include <limits>

std::vector<double> AxFlyableHeights(const std::vector<AxWantedHeight>& wanted, double climb, double descent)
{
    std::vector<double> heights(wanted.size());
    for (std::size_t i = 0; i < wanted.size(); ++i) {
        heights[i] = wanted[i].height;
        // Whoever was high cannot fall faster.
        if (i > 0)
            heights[i] =
                std::max(heights[i], heights[i - 1] - descent * (wanted[i].along - wanted[i - 1].along));
    }
    for (std::size_t i = wanted.size(); i-- > 1;)
        heights[i - 1] =
            std::max(heights[i - 1], heights[i] - climb * (wanted[i].along - wanted[i - 1].along));
    return heights;
}

std::vector<std::size_t> AxNeededHeights(const std::vector<AxWantedHeight>& places,
                                         const std::vector<double>& heights, double tolerance)
{
    if (places.empty())
        return {};
    std::vector<std::size_t> needed{0};
    while (needed.back() + 1 < places.size()) {
        // As far as one straight line misses no place in between by more than the tolerance.
        const std::size_t from = needed.back();
        std::size_t to = from + 1;
        double lowest = std::numeric_limits<double>::lowest();
        double highest = std::numeric_limits<double>::max();
        for (std::size_t i = from + 1; i < places.size(); ++i) {
            const double run = places[i].along - places[from].along;
            const double slope = run > 0.0 ? (heights[i] - heights[from]) / run : 0.0;
            if (slope >= lowest && slope <= highest)
                to = i;
            if (places[i].isKept)
                break;
            if (!(run > 0.0))
                continue;
            lowest = std::max(lowest, (heights[i] - heights[from] - tolerance) / run);
            highest = std::min(highest, (heights[i] - heights[from] + tolerance) / run);
            if (lowest > highest)
                break;
        }
        // A kept place ends the line even where the line misses it: those before it are taken first.
        needed.push_back(to);
    }
    return needed;
}

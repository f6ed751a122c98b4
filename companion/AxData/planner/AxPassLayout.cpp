#include <AxData/planner/AxPassLayout.h>

#include <algorithm>
#include <cmath>
#include <limits>
#include <utility>

namespace {
/// Beyond that a block is no block.
constexpr int mostLines = 1000000;
/// Where a hole shares a side with the area, what rounding leaves between them is no area; metres.
constexpr double sliver = 1e-3;

struct Edge
{
    CAxPoint2D low;
    CAxPoint2D high;

    double At(double y) const
    {
        return low.x() + (high.x() - low.x()) * (y - low.y()) / (high.y() - low.y());
    }
};

std::vector<Edge> EdgesOf(const std::vector<AxPlanLine>& rings)
{
    std::vector<Edge> edges;
    for (const AxPlanLine& ring : rings)
        for (std::size_t i = 0; i < ring.size(); ++i) {
            const CAxPoint2D& a = ring[i];
            const CAxPoint2D& b = ring[(i + 1) % ring.size()];
            if (a.y() < b.y())
                edges.push_back({a, b});
            else if (b.y() < a.y())
                edges.push_back({b, a});
        }
    return edges;
}

using Reach = std::pair<double, double>;

/// One behind the other, with gaps in between that are flown across.
struct JoinedReach
{
    Reach whole;
    std::vector<Reach> gaps;
};

/// Adds where the area is between two heights that no vertex lies between.
void AddReaches(const std::vector<const Edge*>& edges, double low, double high, std::vector<Reach>& reaches)
{
    const double middle = 0.5 * (low + high);
    std::vector<std::pair<double, const Edge*>> crossed;
    for (const Edge* edge : edges)
        if (edge->low.y() <= middle && middle < edge->high.y())
            crossed.emplace_back(edge->At(middle), edge);
    std::sort(crossed.begin(), crossed.end());
    for (std::size_t i = 0; i + 1 < crossed.size(); i += 2) {
        const Edge& west = *crossed[i].second;
        const Edge& east = *crossed[i + 1].second;
        if (crossed[i + 1].first - crossed[i].first < sliver)
            continue;
        reaches.emplace_back(std::min(west.At(low), west.At(high)), std::max(east.At(low), east.At(high)));
    }
}

/// Where the area is anywhere between two heights, from west to east.
std::vector<JoinedReach> ReachesWithin(const std::vector<const Edge*>& edges, double low, double high,
                                       double shortestGap)
{
    std::vector<double> heights{low, high};
    for (const Edge* edge : edges)
        for (const double y : {edge->low.y(), edge->high.y()})
            if (y > low && y < high)
                heights.push_back(y);
    std::sort(heights.begin(), heights.end());
    heights.erase(std::unique(heights.begin(), heights.end()), heights.end());
    std::vector<Reach> reaches;
    for (std::size_t i = 0; i + 1 < heights.size(); ++i)
        if (heights.size() == 2 || heights[i + 1] - heights[i] >= sliver)
            AddReaches(edges, heights[i], heights[i + 1], reaches);
    std::sort(reaches.begin(), reaches.end());
    std::vector<JoinedReach> joined;
    for (const Reach& reach : reaches) {
        if (joined.empty() || reach.first > joined.back().whole.second + shortestGap) {
            joined.push_back({reach, {}});
            continue;
        }
        auto& [whole, gaps] = joined.back();
        if (reach.first > whole.second + sliver)
            gaps.emplace_back(whole.second, reach.first);
        whole.second = std::max(whole.second, reach.second);
    }
    return joined;
}
} // namespace

AxPassLayout AxLayPasses(const std::vector<AxPlanLine>& rings, double spacing, double shortestGap, int count)
{
    const std::vector<Edge> edges = EdgesOf(rings);
    AxPassLayout layout;
    if (edges.empty() || !(spacing > 0.0))
        return layout;
    double lowest = std::numeric_limits<double>::max();
    double highest = std::numeric_limits<double>::lowest();
    for (const Edge& edge : edges) {
        lowest = std::min(lowest, edge.low.y());
        highest = std::max(highest, edge.high.y());
    }
    const double wanted = count > 0 ? count : std::ceil((highest - lowest) / spacing - 1e-9);
    if (!(wanted <= mostLines))
        return layout;
    const int lines = std::max(1, static_cast<int>(wanted));
    layout.spacing = (highest - lowest) / lines;

    const auto lineAt = [&](double y) {
        return std::clamp(static_cast<int>((y - lowest) / layout.spacing), 0, lines - 1);
    };
    std::vector<std::vector<const Edge*>> edgesOfLine(static_cast<std::size_t>(lines));
    for (const Edge& edge : edges)
        for (int line = lineAt(edge.low.y()); line <= lineAt(edge.high.y()); ++line)
            edgesOfLine[static_cast<std::size_t>(line)].push_back(&edge);
    for (int line = 0; line < lines; ++line) {
        const double low = lowest + line * layout.spacing;
        for (JoinedReach& reach : ReachesWithin(edgesOfLine[static_cast<std::size_t>(line)], low,
                                                low + layout.spacing, shortestGap))
            layout.passes.push_back({line, low + 0.5 * layout.spacing, reach.whole.first, reach.whole.second,
                                     std::move(reach.gaps)});
    }
    return layout;
}

#include "mission/aircraft/AxLineThinning.h"

#include <algorithm>
#include <numeric>
#include <utility>

namespace {
constexpr double firstTolerance = 0.25; // metres
// The line is looked at in pieces of so many points, which bounds the cost of a winding one.
constexpr std::size_t pieceLength = 512;

double AwayFromSegment2(const osg::Vec3d& point, const osg::Vec3d& a, const osg::Vec3d& b)
{
    const osg::Vec3d along = b - a;
    const double length2 = along.length2();
    const double share = length2 > 0.0 ? std::clamp(((point - a) * along) / length2, 0.0, 1.0) : 0.0;
    return (point - a - along * share).length2();
}

std::vector<int> Thinner(const std::vector<osg::Vec3d>& points, const std::vector<int>& kept,
                         double tolerance)
{
    std::vector<int> fewer;
    std::vector<std::pair<std::size_t, std::size_t>> open;
    for (std::size_t first = 0; first + 1 < kept.size(); first += pieceLength) {
        // The halves that come first are looked at first, so that indices ascend.
        open.emplace_back(first, std::min(first + pieceLength, kept.size() - 1));
        while (!open.empty()) {
            const auto [begin, end] = open.back();
            open.pop_back();
            double farthest = tolerance * tolerance;
            std::size_t at = 0;
            for (std::size_t i = begin + 1; i < end; ++i) {
                const double away = AwayFromSegment2(points[static_cast<std::size_t>(kept[i])],
                                                     points[static_cast<std::size_t>(kept[begin])],
                                                     points[static_cast<std::size_t>(kept[end])]);
                if (away > farthest) {
                    farthest = away;
                    at = i;
                }
            }
            if (at == 0) {
                fewer.push_back(kept[begin]);
                continue;
            }
            open.emplace_back(at, end);
            open.emplace_back(begin, at);
        }
    }
    fewer.push_back(kept.back());
    return fewer;
}
} // namespace

std::vector<int> AxThinLine(const std::vector<osg::Vec3d>& points, int most)
{
    std::vector<int> kept(points.size());
    std::iota(kept.begin(), kept.end(), 0);
    const auto limit = static_cast<std::size_t>(std::max(most, 2));
    for (double tolerance = firstTolerance; kept.size() > limit; tolerance *= 2.0)
        kept = Thinner(points, kept, tolerance);
    return kept;
}

#include "text/LabelDeclutter.h"
#include <algorithm>
#include <cfloat>
#include <cmath>
#include <numeric>

namespace osgEarth {
namespace {
constexpr float kCellSize = 64.0f; // about half a label
}

ScreenOccupancy::ScreenOccupancy(float width, float height)
    : _columns(std::max(1, static_cast<int>(std::ceil(width / kCellSize)))),
      _rows(std::max(1, static_cast<int>(std::ceil(height / kCellSize)))),
      _cells(static_cast<size_t>(_columns) * static_cast<size_t>(_rows))
{
}

ScreenOccupancy::Range ScreenOccupancy::rangeOf(const ScreenBox& box) const
{
    const auto cell = [](float v, int count) {
        return std::clamp(static_cast<int>(std::floor(v / kCellSize)), 0, count - 1);
    };
    return {cell(box.left, _columns), cell(box.bottom, _rows), cell(box.right, _columns),
            cell(box.top, _rows)};
}

bool ScreenOccupancy::isFree(const ScreenBox& box, const void* owner) const
{
    const Range range = rangeOf(box);
    for (int y = range.y0; y <= range.y1; ++y)
        for (int x = range.x0; x <= range.x1; ++x)
            for (const uint32_t index :
                 _cells[static_cast<size_t>(y) * static_cast<size_t>(_columns) + static_cast<size_t>(x)])
                if (_taken[index].box.meets(box) && !(owner && _taken[index].owner == owner))
                    return false;
    return true;
}

void ScreenOccupancy::take(const ScreenBox& box, const void* owner)
{
    const Range range = rangeOf(box);
    _taken.push_back({box, owner});
    for (int y = range.y0; y <= range.y1; ++y)
        for (int x = range.x0; x <= range.x1; ++x)
            _cells[static_cast<size_t>(y) * static_cast<size_t>(_columns) + static_cast<size_t>(x)].push_back(
                uint32_t(_taken.size() - 1));
}

std::vector<size_t> chooseLabels(const std::vector<LabelCandidate>& candidates, float width, float height,
                                 size_t most)
{
    std::vector<size_t> order(candidates.size());
    std::iota(order.begin(), order.end(), static_cast<size_t>(0));
    std::stable_sort(order.begin(), order.end(), [&](size_t a, size_t b) {
        if (candidates[a].priority != candidates[b].priority)
            return candidates[a].priority > candidates[b].priority;
        return candidates[a].shownBefore && !candidates[b].shownBefore;
    });

    ScreenOccupancy screen(width, height);
    std::vector<size_t> chosen;
    for (const size_t index : order) {
        const LabelCandidate& candidate = candidates[index];
        const bool always = candidate.priority == FLT_MAX;
        if (!always) {
            if (chosen.size() >= most)
                continue;
            const float margin = candidate.shownBefore ? 0.0f : kComebackMargin;
            if (!screen.isFree(candidate.box.grownBy(margin), candidate.owner))
                continue;
        }
        screen.take(candidate.box, candidate.owner);
        chosen.push_back(index);
    }
    return chosen;
}
} // namespace osgEarth

#pragma once
#include <cstddef>
#include <cstdint>
#include <vector>

namespace osgEarth {
/// A rectangle on the screen in pixels, y upwards.
struct ScreenBox
{
    float left = 0.0f, bottom = 0.0f, right = 0.0f, top = 0.0f;

    bool meets(const ScreenBox& other) const
    {
        return left < other.right && other.left < right && bottom < other.top && other.bottom < top;
    }
    ScreenBox grownBy(float pixels) const
    {
        return {left - pixels, bottom - pixels, right + pixels, top + pixels};
    }
};

/// Which parts of the screen are taken. A coarse grid over the screen keeps
/// the test cheap; boxes beyond the rim count too.
class ScreenOccupancy
{
public:
    ScreenOccupancy(float width, float height);
    /// Boxes of one owner are in nobody's way among themselves; null is no owner.
    bool isFree(const ScreenBox& box, const void* owner = nullptr) const;
    void take(const ScreenBox& box, const void* owner = nullptr);

private:
    struct Range
    {
        int x0, y0, x1, y1;
    };
    Range rangeOf(const ScreenBox& box) const;
    int _columns, _rows;
    struct Taken
    {
        ScreenBox box;
        const void* owner;
    };
    std::vector<Taken> _taken;
    std::vector<std::vector<uint32_t>> _cells;
};

/// Something that wants to be shown.
struct LabelCandidate
{
    ScreenBox box;
    float priority = 0.0f; ///< higher first; FLT_MAX is always shown
    bool shownBefore = false;
    const void* owner = nullptr; ///< what belongs together, as the icon and the text of a place
};

/// A label that was hidden needs this many pixels of free room round it to come
/// back, so that two labels on the edge of touching do not take turns.
constexpr float kComebackMargin = 5.0f;

/// Which candidates are shown: by falling priority, each where it meets no
/// box of another owner shown before it. Equal priorities: those shown before first, then the
/// order given. At most `most` of them.
std::vector<size_t> chooseLabels(const std::vector<LabelCandidate>& candidates, float width, float height,
                                 size_t most = SIZE_MAX);
} // namespace osgEarth

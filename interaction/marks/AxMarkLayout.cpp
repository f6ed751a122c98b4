#include "interaction/marks/AxMarkLayout.h"

#include <QRect>

#include <algorithm>
#include <cstdint>
#include <cstdlib>
#include <unordered_map>
#include <unordered_set>

namespace {
constexpr int dotCell = 20;  // pixels: more of them tell no more, and are slow to draw
constexpr int labelCell = 4; // pixels
// As far apart two boxes never share a cell, pixels.
constexpr int labelGap = 4;

std::int64_t Key(int column, int row)
{
    return (static_cast<std::int64_t>(column) << 32) ^ static_cast<std::uint32_t>(row);
}

int Cell(int value, int size)
{
    return value >= 0 ? value / size : (value - size + 1) / size;
}

/// Which icons are drawn: never two in one cell.
class Icons
{
public:
    explicit Icons(const QSize& icon) : apart(icon) {}
    /// Whether the foot is behind the head of an icon, which is its upper half.
    bool Cover(const QPoint& foot) const
    {
        const int column = Cell(foot.x(), apart.width());
        const int row = Cell(foot.y(), apart.height());
        for (int x = column - 1; x <= column + 1; ++x)
            for (int y = row - 1; y <= row; ++y)
                if (const auto icon = feet.find(Key(x, y)); icon != feet.end()) {
                    const QPoint above = foot - icon->second;
                    if (2 * std::abs(above.x()) < apart.width() && 2 * above.y() >= apart.height() &&
                        above.y() < apart.height())
                        return true;
                }
        return false;
    }
    bool Take(const QPoint& foot)
    {
        const int column = Cell(foot.x(), apart.width());
        const int row = Cell(foot.y(), apart.height());
        for (int x = column - 1; x <= column + 1; ++x)
            for (int y = row - 1; y <= row + 1; ++y)
                if (const auto other = feet.find(Key(x, y)); other != feet.end())
                    if (std::abs(other->second.x() - foot.x()) < apart.width() &&
                        std::abs(other->second.y() - foot.y()) < apart.height())
                        return false;
        feet[Key(column, row)] = foot;
        return true;
    }

private:
    const QSize apart;
    std::unordered_map<std::int64_t, QPoint> feet;
};

/// Which part of the window is covered, in small squares.
class Cover
{
public:
    explicit Cover(const QSize& window)
        : columns(window.width() / labelCell + 1), rows(window.height() / labelCell + 1),
          taken(static_cast<std::size_t>(columns) * static_cast<std::size_t>(rows))
    {
    }
    bool IsFree(const QRect& box) const
    {
        return !any(box, [](char cell) { return cell != 0; });
    }
    void Take(const QRect& box)
    {
        any(box, [](char& cell) {
            cell = 1;
            return false;
        });
    }

private:
    template <typename Ask> bool any(const QRect& box, Ask ask) const
    {
        const int right = std::min(columns - 1, Cell(box.right(), labelCell));
        const int top = std::min(rows - 1, Cell(box.bottom(), labelCell));
        for (int y = std::max(0, Cell(box.top(), labelCell)); y <= top; ++y)
            for (int x = std::max(0, Cell(box.left(), labelCell)); x <= right; ++x)
                if (ask(taken[static_cast<std::size_t>(y * columns + x)]))
                    return true;
        return false;
    }

    const int columns;
    const int rows;
    mutable std::vector<char> taken;
};

std::optional<QPoint> RoomForLabel(const AxMarkPlaced& mark, const AxMarkSizes& sizes, const Cover& cover,
                                   bool isForced)
{
    const int width = sizes.labelWidth(mark.index);
    const int side = sizes.icon.width() / 2 + labelGap;
    const int middle = mark.foot.y() + (sizes.icon.height() - sizes.labelHeight) / 2;
    const QPoint places[] = {{mark.foot.x() + side, middle},
                             {mark.foot.x() - side - width, middle},
                             {mark.foot.x() - width / 2, mark.foot.y() - sizes.labelHeight - labelGap},
                             {mark.foot.x() - width / 2, mark.foot.y() + sizes.icon.height() + labelGap}};
    for (const QPoint& place : places) {
        const QRect box(place, QSize(width, sizes.labelHeight));
        if (QRect(QPoint(), sizes.window).contains(box) && cover.IsFree(box))
            return place;
    }
    return isForced ? std::optional(places[0]) : std::nullopt;
}
} // namespace

std::vector<AxMarkPlaced> AxPlaceMarks(std::vector<AxMarkOnScreen> marks, const AxMarkSizes& sizes)
{
    std::sort(marks.begin(), marks.end(), [](const AxMarkOnScreen& a, const AxMarkOnScreen& b) {
        if (a.isSelected != b.isSelected)
            return a.isSelected;
        return a.depth != b.depth ? a.depth < b.depth : a.index < b.index;
    });
    Icons icons(sizes.icon);
    Cover cover(sizes.window);
    std::unordered_set<std::int64_t> dots;
    std::vector<AxMarkPlaced> placed;
    std::vector<std::size_t> named;
    std::vector<const AxMarkOnScreen*> crowded;
    for (const AxMarkOnScreen& mark : marks) {
        if (!icons.Take(mark.foot)) {
            crowded.push_back(&mark);
            continue;
        }
        named.push_back(placed.size());
        cover.Take(QRect(mark.foot - QPoint(sizes.icon.width() / 2, 0), sizes.icon));
        placed.push_back({mark.index, mark.foot, true, {}});
    }
    int labels = 0;
    for (const std::size_t i : named) {
        if (labels >= sizes.mostLabels)
            break;
        const bool isForced = i == 0 && marks.front().isSelected;
        placed[i].label = RoomForLabel(placed[i], sizes, cover, isForced);
        if (!placed[i].label)
            continue;
        ++labels;
        cover.Take(QRect(*placed[i].label, QSize(sizes.labelWidth(placed[i].index), sizes.labelHeight)));
    }
    for (const AxMarkOnScreen* mark : crowded)
        if (!icons.Cover(mark->foot) &&
            dots.insert(Key(Cell(mark->foot.x(), dotCell), Cell(mark->foot.y(), dotCell))).second)
            placed.push_back({mark->index, mark->foot, false, {}});
    std::reverse(placed.begin(), placed.end());
    return placed;
}

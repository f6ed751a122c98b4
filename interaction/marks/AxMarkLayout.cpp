#include "interaction/marks/AxMarkLayout.h"

#include <QRect>

#include <algorithm>
#include <cstdlib>
#include <utility>

namespace {
constexpr int dotCell = 32;  // pixels: more of them tell no more, and are slow to draw
constexpr int labelCell = 4; // pixels
// As far apart two boxes never share a cell, pixels.
constexpr int labelGap = 4;

int Cell(int value, int size)
{
    return value >= 0 ? value / size : (value - size + 1) / size;
}

/// What is in each cell of the window and of those around it; beyond these there is nothing.
template <typename Content> class Grid
{
public:
    Grid(const QSize& window, const QSize& ofCell)
        : size(ofCell), columns(window.width() / size.width() + 5), rows(window.height() / size.height() + 5),
          contents(static_cast<std::size_t>(columns) * static_cast<std::size_t>(rows))
    {
    }
    /// Of the cell that is so many to the right and above that of a place; null for one that is none.
    Content* At(const QPoint& place, int right = 0, int above = 0)
    {
        const int column = Cell(place.x(), size.width()) + right + 2;
        const int row = Cell(place.y(), size.height()) + above + 2;
        return column >= 0 && column < columns && row >= 0 && row < rows
                   ? &contents[static_cast<std::size_t>(row) * static_cast<std::size_t>(columns) +
                               static_cast<std::size_t>(column)]
                   : nullptr;
    }

private:
    const QSize size;
    const int columns;
    const int rows;
    std::vector<Content> contents;
};

/// Which icons are drawn: never two in one cell.
class Icons
{
public:
    Icons(const QSize& window, const QSize& icon) : apart(icon), feet(window, icon) {}
    /// Whether the foot is behind the head of an icon, which is its upper half.
    bool Cover(const QPoint& foot)
    {
        return any(foot, 0, [this](const QPoint& above) {
            return 2 * std::abs(above.x()) < apart.width() && 2 * above.y() >= apart.height() &&
                   above.y() < apart.height();
        });
    }
    bool Take(const QPoint& foot)
    {
        const bool isCovering = any(foot, 1, [this](const QPoint& away) {
            return std::abs(away.x()) < apart.width() && std::abs(away.y()) < apart.height();
        });
        std::optional<QPoint>* cell = isCovering ? nullptr : feet.At(foot);
        if (cell)
            *cell = foot;
        return cell;
    }

private:
    /// Asks about the ways to the foot from those around it, up to so many cells above.
    template <typename Ask> bool any(const QPoint& foot, int above, Ask ask)
    {
        for (int y = -1; y <= above; ++y)
            for (int x = -1; x <= 1; ++x)
                if (const auto* other = feet.At(foot, x, y); other && *other && ask(foot - **other))
                    return true;
        return false;
    }

    const QSize apart;
    Grid<std::optional<QPoint>> feet;
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
                if (ask(taken[static_cast<std::size_t>(y) * static_cast<std::size_t>(columns) +
                              static_cast<std::size_t>(x)]))
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
    Icons icons(sizes.window, sizes.icon);
    Cover cover(sizes.window);
    Grid<char> dots(sizes.window, QSize(dotCell, dotCell));
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
    for (const AxMarkOnScreen* mark : crowded) {
        char* dot = icons.Cover(mark->foot) ? nullptr : dots.At(mark->foot);
        if (dot && !std::exchange(*dot, 1))
            placed.push_back({mark->index, mark->foot, false, {}});
    }
    std::reverse(placed.begin(), placed.end());
    return placed;
}

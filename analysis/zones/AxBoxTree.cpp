#include "analysis/zones/AxBoxTree.h"

#include <algorithm>
#include <cmath>
#include <limits>

namespace {
constexpr std::size_t boxesOfNode = 16;

float Down(double number)
{
    const auto rounded = static_cast<float>(number);
    return static_cast<double>(rounded) <= number
               ? rounded
               : std::nextafter(rounded, -std::numeric_limits<float>::infinity());
}

float Up(double number)
{
    return -Down(-number);
}

/// How many shares of that size it takes.
std::size_t Shares(std::size_t count, std::size_t size)
{
    return (count + size - 1) / size;
}
} // namespace

AxBoxTree::Box AxBoxTree::Around(const osgEarth::Bounds& box)
{
    return {Down(box.xMin()), Down(box.yMin()), Up(box.xMax()), Up(box.yMax())};
}

bool AxBoxTree::isMet(std::size_t box, const Box& area) const
{
    const Box& b = boxes[box];
    return b.west <= area.east && area.west <= b.east && b.south <= area.north && area.south <= b.north;
}

// Sort-tile-recursive: columns of equal numbers of boxes, and in each of them nodes from south to north.
AxBoxTree::AxBoxTree(const std::vector<osgEarth::Bounds>& all)
{
    for (std::size_t i = 0; i < all.size(); ++i)
        if (all[i].valid())
            items.push_back(static_cast<std::uint32_t>(i));
    const auto byMiddle = [&all](std::size_t axis) {
        return [&all, axis](std::uint32_t a, std::uint32_t b) {
            return all[a].center()[static_cast<int>(axis)] < all[b].center()[static_cast<int>(axis)];
        };
    };
    std::sort(items.begin(), items.end(), byMiddle(0));
    const std::size_t nodes = Shares(items.size(), boxesOfNode);
    const auto columns = static_cast<std::size_t>(std::ceil(std::sqrt(static_cast<double>(nodes))));
    const std::size_t column = boxesOfNode * Shares(nodes, std::max<std::size_t>(1, columns));
    for (std::size_t first = 0; first < items.size(); first += column)
        std::sort(items.begin() + static_cast<std::ptrdiff_t>(first),
                  items.begin() + static_cast<std::ptrdiff_t>(std::min(first + column, items.size())),
                  byMiddle(1));

    levels.push_back(0);
    for (const std::uint32_t item : items)
        boxes.push_back(Around(all[item]));
    levels.push_back(boxes.size());
    while (levels.back() - levels[levels.size() - 2] > 1) {
        const std::size_t below = levels[levels.size() - 2];
        const std::size_t end = levels.back();
        for (std::size_t first = below; first < end; first += boxesOfNode) {
            Box around = boxes[first];
            for (std::size_t i = first + 1; i < std::min(first + boxesOfNode, end); ++i)
                around = {std::min(around.west, boxes[i].west), std::min(around.south, boxes[i].south),
                          std::max(around.east, boxes[i].east), std::max(around.north, boxes[i].north)};
            boxes.push_back(around);
        }
        levels.push_back(boxes.size());
    }
    boxes.shrink_to_fit();
    items.shrink_to_fit();
}

void AxBoxTree::Find(const osgEarth::Bounds& area, std::vector<std::uint32_t>& found) const
{
    if (boxes.empty() || !area.valid())
        return;
    const Box wanted = Around(area);
    struct Node
    {
        std::size_t level, box;
    };
    std::vector<Node> open;
    const std::size_t root = levels.size() - 2;
    if (isMet(levels[root], wanted))
        open.push_back({root, levels[root]});
    while (!open.empty()) {
        const Node node = open.back();
        open.pop_back();
        if (node.level == 0) {
            found.push_back(items[node.box]);
            continue;
        }
        const std::size_t below = levels[node.level - 1];
        const std::size_t first = below + (node.box - levels[node.level]) * boxesOfNode;
        for (std::size_t i = first; i < std::min(first + boxesOfNode, levels[node.level]); ++i)
            if (isMet(i, wanted))
                open.push_back({node.level - 1, i});
    }
}

osgEarth::Bounds AxBoxTree::Extent() const
{
    if (boxes.empty())
        return osgEarth::Bounds();
    const Box& all = boxes.back();
    return osgEarth::Bounds(all.west, all.south, all.east, all.north);
}

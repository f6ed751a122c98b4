#pragma once
#include "scene/base/AxEarthViewerExport.h"

#include <osgEarth/Bounds>

#include <cstdint>
#include <vector>

/// Finds out of many boxes in a plane those that may meet another box: an R-tree that is packed once, of 21
/// bytes a box. Nothing changes it afterwards, so any thread may ask.
class AXEARTHVIEWER_EXPORT AxBoxTree
{
public:
    /// The boxes that are not valid are never found.
    explicit AxBoxTree(const std::vector<osgEarth::Bounds>& boxes);

    /// Appends the places in the list of all boxes that meet this one, touching included, and perhaps some
    /// that miss it by the rounding to single precision; in no order.
    void Find(const osgEarth::Bounds& area, std::vector<std::uint32_t>& found) const;

    /// Around all boxes, rounded outwards; not valid when there are none.
    osgEarth::Bounds Extent() const;

private:
    struct Box
    {
        float west, south, east, north;
    };

    static Box Around(const osgEarth::Bounds& box);
    bool isMet(std::size_t box, const Box& area) const;

    std::vector<Box> boxes;           ///< level by level; the first is the leaves
    std::vector<std::size_t> levels;  ///< where each begins, and the end
    std::vector<std::uint32_t> items; ///< which box of the list each leaf is
};

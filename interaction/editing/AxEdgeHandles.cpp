#include "interaction/editing/AxEdgeHandles.h"
#include "interaction/editing/AxEditRules.h"
#include "scene/base/AxGlobePoint.h"
#include "scene/shape/AxViewRay.h"

void AxEdgeHandles::Set(const std::vector<osg::Vec3d>& vertices, bool closed, const Ground& heights)
{
    outdated = false;
    middles.clear();
    for (const auto& [from, to] : AxEditRules::EdgesOf(static_cast<int>(vertices.size()), closed)) {
        const osg::Vec3d& a = vertices[std::size_t(from)];
        const osg::Vec3d& b = vertices[std::size_t(to)];
        osg::Vec3d place = AxEditRules::MiddleOf(a, b);
        const auto height = heights ? heights(place.x(), place.y()) : std::nullopt;
        if (height)
            place.z() = *height;
        middles.push_back({from, place, {AxGlobe::WorldOf(a), AxGlobe::WorldOf(b)}, height.has_value()});
    }
}

std::vector<AxEdgeHandles::Shown> AxEdgeHandles::InView(const AxViewRay& view, const Ground& ground) const
{
    std::vector<Shown> shown;
    for (const Middle& middle : middles) {
        const auto from = view.Project(middle.ends[0]);
        const auto to = view.Project(middle.ends[1]);
        if (from && to && (from->window - to->window).length() < AxEditRules::shortestEdgePixels)
            continue;
        osg::Vec3d place = middle.place;
        if (const auto height = middle.isSettled ? std::nullopt : ground(place.x(), place.y()))
            place.z() = *height;
        const osg::Vec3d world = AxGlobe::WorldOf(place);
        const auto where = view.Project(world);
        if (where && !AxIsBehindGlobe(view.eye, world))
            shown.push_back({middle.edge, place, world, where->window});
    }
    return shown;
}

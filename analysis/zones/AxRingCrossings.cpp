#include "analysis/zones/AxRingCrossings.h"

#include <algorithm>

namespace {
/// Of a ring with itself: with 5,000 it takes 0.7 s to find what the ring encloses, with 10,000 1.7 s.
constexpr int mostOwnCrossings = 5000;
/// Of rings with one another: 58,000 take a second to cut along.
constexpr int mostCrossings = 50000;
/// Pairs of edges whose boxes meet, which is all that a crossing could be between.
constexpr int mostPairs = 2000000;

bool AreOnOneSide(double a, double b)
{
    return (a > 0.0 && b > 0.0) || (a < 0.0 && b < 0.0);
}

osgEarth::Bounds BoxOf(const osg::Vec2d& from, const osg::Vec2d& to)
{
    osgEarth::Bounds box;
    box.expandBy(from.x(), from.y());
    box.expandBy(to.x(), to.y());
    return box;
}
} // namespace

std::vector<AxRingCrossings::Edge> AxRingCrossings::edgesOf(const std::vector<osg::Vec3d>& ring)
{
    std::vector<Edge> edges;
    edges.reserve(ring.size());
    for (std::size_t i = 0; i < ring.size(); ++i) {
        const osg::Vec3d& from = ring[i];
        const osg::Vec3d& to = ring[(i + 1) % ring.size()];
        if (from != to)
            edges.push_back({osg::Vec2d(from.x(), from.y()), osg::Vec2d(to.x(), to.y())});
    }
    return edges;
}

bool AxRingCrossings::doMeet(const Edge& a, const Edge& b)
{
    return !AreOnOneSide(AxTurnOf(a.from, a.to, b.from), AxTurnOf(a.from, a.to, b.to)) &&
           !AreOnOneSide(AxTurnOf(b.from, b.to, a.from), AxTurnOf(b.from, b.to, a.to));
}

bool AxRingCrossings::Add(const std::vector<osg::Vec3d>& points)
{
    std::vector<Edge> edges = edgesOf(points);
    std::vector<osgEarth::Bounds> boxes;
    boxes.reserve(edges.size());
    for (const Edge& edge : edges)
        boxes.push_back(BoxOf(edge.from, edge.to));
    rings.push_back({std::move(edges), AxBoxTree(boxes)});

    const Ring& added = rings.back();
    const std::size_t last = added.edges.size() - 1;
    int met = 0;
    int metOwn = 0;
    int pairs = 0;
    std::vector<std::uint32_t> found;
    for (const Ring& ring : rings) {
        if (!ring.tree.Extent().intersects(added.tree.Extent()))
            continue;
        const bool isOwn = &ring == &added;
        for (std::size_t i = 0; i < added.edges.size(); ++i) {
            found.clear();
            ring.tree.Find(boxes[i], found);
            pairs += static_cast<int>(found.size());
            for (const std::uint32_t other : found) {
                // Each pair of the ring's own edges once, and no neighbours.
                const bool isPassedOver = isOwn && (other <= i + 1 || (i == 0 && other == last));
                if (!isPassedOver && doMeet(added.edges[i], ring.edges[other]))
                    ++(isOwn ? metOwn : met);
            }
            if (own + metOwn > mostOwnCrossings || mutual + met > mostCrossings || pairs > mostPairs) {
                rings.pop_back();
                return false;
            }
        }
    }
    own += metOwn;
    mutual += met;
    return true;
}

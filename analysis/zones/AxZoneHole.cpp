#include "analysis/zones/AxZoneHole.h"

#include "analysis/zones/AxRingCrossings.h"

#include <algorithm>
#include <cmath>

using osgEarth::Symbology::MultiGeometry;
using osgEarth::Symbology::Polygon;
using osgEarth::Symbology::Ring;

namespace {
/// Every pair of edges is looked at.
constexpr std::size_t mostHolePoints = 400;
// Degrees. Qt's clipper merges what is 1e-12 apart, by difference or by the product of edge and distance.
constexpr double shortestEdge = 1e-5;
constexpr double nearest = 1e-6;
/// Square degrees: twice the area of a triangle that is none.
constexpr double flattest = 1e-9;

struct Edge
{
    osg::Vec2d from, to;
    // The box around it.
    double west, east, south, north;
};

/// Without the points that repeat the first one at the end.
std::vector<osg::Vec2d> Open(const AxRing& ring)
{
    std::vector<osg::Vec2d> points;
    points.reserve(ring.size() + 1);
    for (const osg::Vec3d& point : ring)
        points.emplace_back(point.x(), point.y());
    while (points.size() > 1 && points.back() == points.front())
        points.pop_back();
    return points;
}

/// The edges of a ring, none when one of them is too short or goes on straight in the next.
std::vector<Edge> EdgesOf(const std::vector<osg::Vec2d>& ring)
{
    std::vector<Edge> edges;
    const std::size_t count = ring.size();
    if (count < 3)
        return edges;
    edges.reserve(count);
    for (std::size_t i = 0; i < count; ++i) {
        const osg::Vec2d& from = ring[i];
        const osg::Vec2d& to = ring[(i + 1) % count];
        const bool isClear = (to - from).length2() > shortestEdge * shortestEdge &&
                             std::abs(AxTurnOf(from, to, ring[(i + 2) % count])) > flattest;
        if (!isClear)
            return {};
        const auto [west, east] = std::minmax({from.x(), to.x()});
        const auto [south, north] = std::minmax({from.y(), to.y()});
        edges.push_back({from, to, west, east, south, north});
    }
    return edges;
}

bool IsOnOneSide(const Edge& edge, const Edge& line)
{
    const double from = AxTurnOf(line.from, line.to, edge.from);
    const double to = AxTurnOf(line.from, line.to, edge.to);
    return (from > flattest && to > flattest) || (from < -flattest && to < -flattest);
}

bool AreApart(const Edge& a, const Edge& b)
{
    return a.west > b.east + nearest || b.west > a.east + nearest || a.south > b.north + nearest ||
           b.south > a.north + nearest || IsOnOneSide(a, b) || IsOnOneSide(b, a);
}

bool AreApart(const Edge& edge, const Edge* begin, const Edge* end)
{
    return std::all_of(begin, end, [&edge](const Edge& other) { return AreApart(edge, other); });
}

/// Neighbours meet in their corner, and nowhere else.
bool IsSimple(const std::vector<Edge>& ring)
{
    const Edge* const first = ring.data();
    const std::size_t count = ring.size();
    for (std::size_t i = 0; i + 2 < count; ++i)
        if (!AreApart(ring[i], first + i + 2, first + (i == 0 ? count - 1 : count)))
            return false;
    return true;
}

/// Qt's clipper has ways of its own with these, and names their corners in another order.
bool IsBox(const std::vector<Edge>& ring)
{
    return ring.size() == 4 && std::all_of(ring.begin(), ring.end(), [](const Edge& edge) {
               return edge.west == edge.east || edge.south == edge.north;
           });
}

bool IsInside(const osg::Vec2d& place, const std::vector<Edge>& ring)
{
    bool isInside = false;
    for (const Edge& edge : ring)
        if ((edge.from.y() > place.y()) != (edge.to.y() > place.y()) &&
            (AxTurnOf(edge.from, edge.to, place) > 0.0) == (edge.to.y() > edge.from.y()))
            isInside = !isInside;
    return isInside;
}

void AddClosed(const std::vector<osg::Vec2d>& ring, QPolygonF& outline)
{
    for (const osg::Vec2d& point : ring)
        outline += QPointF(point.x(), point.y());
    outline += outline[outline.size() - static_cast<int>(ring.size())];
}

void CopyTurned(const std::vector<osg::Vec2d>& from, bool isCounterClockwise, Ring& to)
{
    to.reserve(from.size());
    for (const osg::Vec2d& point : from)
        to.push_back(point.x(), point.y(), 0.0);
    AxTurnRing(to, isCounterClockwise);
}
} // namespace

std::optional<AxClippedZone> AxZoneWithHole(const AxRing& zone, const AxRing& lift)
{
    if (zone.size() + lift.size() > mostHolePoints)
        return std::nullopt;
    const std::vector<osg::Vec2d> shell = Open(zone);
    const std::vector<osg::Vec2d> hole = Open(lift);
    const std::vector<Edge> shellEdges = EdgesOf(shell);
    const std::vector<Edge> holeEdges = EdgesOf(hole);
    if (shellEdges.empty() || holeEdges.empty() || IsBox(shellEdges) || IsBox(holeEdges) ||
        !IsInside(hole.front(), shellEdges) || !IsSimple(shellEdges) || !IsSimple(holeEdges))
        return std::nullopt;
    for (const Edge& edge : holeEdges)
        if (!AreApart(edge, shellEdges.data(), shellEdges.data() + shellEdges.size()))
            return std::nullopt;

    AxClippedZone left;
    left.outline.reserve(static_cast<int>(shell.size() + hole.size() + 3));
    AddClosed(shell, left.outline);
    AddClosed(hole, left.outline);
    left.outline += left.outline.front();
    osg::ref_ptr<Polygon> piece = new Polygon;
    CopyTurned(shell, true, *piece);
    osg::ref_ptr<Ring> inner = new Ring;
    CopyTurned(hole, false, *inner);
    piece->getHoles().push_back(inner);
    left.display = new MultiGeometry;
    left.display->add(piece);
    return left;
}

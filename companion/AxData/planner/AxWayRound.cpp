#include <AxData/planner/AxWayRound.h>
#include <support/GeosContext.h>

#include <algorithm>
#include <cmath>
#include <limits>
#include <queue>

namespace {
double TurnOf(const CAxPoint2D& a, const CAxPoint2D& b, const CAxPoint2D& c)
{
    return (b.x() - a.x()) * (c.y() - a.y()) - (b.y() - a.y()) * (c.x() - a.x());
}

/// The polygons of a geometry, without the lines that making it valid may leave.
GeosContext::Geometry PolygonsOf(const GeosContext& geos, const GEOSGeometry* geometry)
{
    std::vector<GEOSGeometry*> polygons;
    const auto add = [&](const GEOSGeometry* part) {
        if (GEOSGeomTypeId_r(geos.handle(), part) == GEOS_POLYGON)
            polygons.push_back(GEOSGeom_clone_r(geos.handle(), part));
    };
    for (int i = 0; geometry && i < GEOSGetNumGeometries_r(geos.handle(), geometry); ++i) {
        const GEOSGeometry* const part = GEOSGetGeometryN_r(geos.handle(), geometry, i);
        for (int k = 0; k < GEOSGetNumGeometries_r(geos.handle(), part); ++k)
            add(GEOSGetGeometryN_r(geos.handle(), part, k));
    }
    return geos.own(GEOSGeom_createCollection_r(geos.handle(), GEOS_MULTIPOLYGON, polygons.data(),
                                                static_cast<unsigned>(polygons.size())));
}

/// Outlines clockwise and holes anticlockwise: the area lies to the right.
std::vector<AxPlanLine> RingsAround(const GeosContext& geos, const GEOSGeometry* source, double distance,
                                    double tolerance)
{
    constexpr int quarterSteps = 4;
    const auto wide =
        geos.own(source ? GEOSBuffer_r(geos.handle(), source, distance, quarterSteps) : nullptr);
    auto simple =
        geos.own(wide ? GEOSTopologyPreserveSimplify_r(geos.handle(), wide.get(), tolerance) : nullptr);
    std::vector<AxPlanLine> rings;
    if (!simple || GEOSNormalize_r(geos.handle(), simple.get()) != 0)
        return rings;
    for (int i = 0; i < GEOSGetNumGeometries_r(geos.handle(), simple.get()); ++i) {
        const GEOSGeometry* const part = GEOSGetGeometryN_r(geos.handle(), simple.get(), i);
        if (GEOSGeomTypeId_r(geos.handle(), part) != GEOS_POLYGON)
            continue;
        rings.push_back(geos.vertices<CAxPoint2D>(GEOSGetExteriorRing_r(geos.handle(), part)));
        for (int hole = 0; hole < GEOSGetNumInteriorRings_r(geos.handle(), part); ++hole)
            rings.push_back(geos.vertices<CAxPoint2D>(GEOSGetInteriorRingN_r(geos.handle(), part, hole)));
    }
    return rings;
}

class WaySearch
{
public:
    WaySearch(const CAxPoint2D& from, const CAxPoint2D& to, const std::vector<const AxObstacle*>& around,
              double& allowed)
        : obstacles(around), looks(allowed)
    {
        nodes.push_back({from, from, from});
        nodes.push_back({to, to, to});
        for (const AxObstacle* obstacle : obstacles)
            nodes.insert(nodes.end(), obstacle->corners.begin(), obstacle->corners.end());
    }

    /// A*: whether a leg is free is looked at when it would be the next to be flown, which few are.
    std::optional<AxPlanLine> Find()
    {
        constexpr std::size_t none = std::numeric_limits<std::size_t>::max();
        std::vector<std::size_t> reachedFrom(nodes.size(), none);
        std::priority_queue<Step> steps;
        steps.push({AxApart(nodes[0].at, nodes[1].at), 0.0, 0, 0});
        while (!steps.empty()) {
            const Step step = steps.top();
            steps.pop();
            if (reachedFrom[step.node] != none)
                continue;
            if (!IsFree(nodes[step.from].at, nodes[step.node].at)) {
                if (looks < 0.0)
                    return {};
                continue;
            }
            reachedFrom[step.node] = step.from;
            if (step.node == 1)
                return WayTo(reachedFrom);
            for (std::size_t next = 1; next < nodes.size(); ++next) {
                if (reachedFrom[next] != none || !MayTurn(nodes[step.node], nodes[next].at) ||
                    !MayTurn(nodes[next], nodes[step.node].at))
                    continue;
                const double flown = step.flown + AxApart(nodes[step.node].at, nodes[next].at);
                steps.push({flown + AxApart(nodes[next].at, nodes[1].at), flown, next, step.node});
            }
        }
        return {};
    }

private:
    struct Step
    {
        double least; ///< metres of a whole way by this step
        double flown;
        std::size_t node;
        std::size_t from;

        bool operator<(const Step& other) const { return least > other.least; }
    };

    /// A shortest way only touches the ring at whose corner it turns.
    static bool MayTurn(const AxObstacle::Corner& corner, const CAxPoint2D& other)
    {
        const double before = TurnOf(corner.at, other, corner.before);
        const double after = TurnOf(corner.at, other, corner.after);
        constexpr double rounding = 1e-6; // square metres
        return !((before > rounding && after < -rounding) || (before < -rounding && after > rounding));
    }

    bool IsFree(const CAxPoint2D& from, const CAxPoint2D& to)
    {
        const auto isMet = [&](const AxObstacle* obstacle) {
            looks -= 1.0;
            if (!obstacle->closed.MayMeet(from, to))
                return false;
            looks -= 0.05 * static_cast<double>(obstacle->closed.Edges());
            return !obstacle->closed.Inside(from, to).empty();
        };
        // What was in the way of one leg is often in the way of the next one.
        if (lastMet && isMet(lastMet))
            return false;
        const auto met = std::find_if(obstacles.begin(), obstacles.end(), isMet);
        if (met == obstacles.end())
            return true;
        lastMet = *met;
        return false;
    }

    AxPlanLine WayTo(const std::vector<std::size_t>& reachedFrom) const
    {
        AxPlanLine way;
        for (std::size_t node = reachedFrom[1]; node != 0; node = reachedFrom[node])
            way.push_back(nodes[node].at);
        std::reverse(way.begin(), way.end());
        return way;
    }

    const std::vector<const AxObstacle*>& obstacles;
    std::vector<AxObstacle::Corner> nodes; // begin, end, and all corners
    const AxObstacle* lastMet = nullptr;
    double& looks; // that are left
};
} // namespace

AxObstacle AxObstacleAround(const AxPlaneArea& area, double margin)
{
    const GeosContext geos;
    GeosContext::Geometry filled;
    for (const AxPlanLine& ring : area.Rings()) {
        const auto polygon = geos.polygon(ring);
        auto valid = PolygonsOf(
            geos, geos.own(polygon ? GEOSMakeValid_r(geos.handle(), polygon.get()) : nullptr).get());
        filled = filled ? geos.own(GEOSSymDifference_r(geos.handle(), filled.get(), valid.get()))
                        : std::move(valid);
    }
    const auto source = geos.own(
        filled ? GEOSTopologyPreserveSimplify_r(geos.handle(), filled.get(), 0.05 * margin) : nullptr);
    AxObstacle obstacle;
    // Far enough apart that no corner comes to lie inside, whatever is simplified; with that much of it a
    // right angle is gone round by two corners.
    obstacle.closed = AxPlaneArea(RingsAround(geos, source.get(), 1.15 * margin, 0.05 * margin));
    for (const AxPlanLine& ring : RingsAround(geos, source.get(), 1.95 * margin, 0.6 * margin))
        for (std::size_t i = 0; i < ring.size(); ++i) {
            const CAxPoint2D& before = ring[i > 0 ? i - 1 : ring.size() - 1];
            const CAxPoint2D& after = ring[i + 1 < ring.size() ? i + 1 : 0];
            if (TurnOf(before, ring[i], after) < 0.0)
                obstacle.corners.push_back({ring[i], before, after});
        }
    if (obstacle.closed.Rings().empty())
        obstacle.closed = area; // GEOS could not widen it
    return obstacle;
}

std::optional<AxPlanLine> AxShortestWay(const CAxPoint2D& from, const CAxPoint2D& to,
                                        const std::vector<const AxObstacle*>& obstacles, double& looks)
{
    return WaySearch(from, to, obstacles, looks).Find();
}

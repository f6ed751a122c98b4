#include <AxData/planner/AxPlaneArea.h>

#include <algorithm>
#include <cmath>
#include <limits>

namespace {
/// Calls visit(a, b) for each edge.
template <typename Visit> void VisitEdges(const std::vector<AxPlanLine>& rings, Visit visit)
{
    for (const AxPlanLine& ring : rings)
        for (std::size_t i = 0; i < ring.size(); ++i)
            visit(ring[i], ring[i + 1 < ring.size() ? i + 1 : 0]);
}
} // namespace

AxPlaneArea::AxPlaneArea(std::vector<AxPlanLine> rings) : m_rings(std::move(rings))
{
    constexpr double most = std::numeric_limits<double>::max();
    double west = most;
    double south = most;
    double east = -most;
    double north = -most;
    for (const AxPlanLine& ring : m_rings) {
        m_edges += ring.size();
        for (const CAxPoint2D& point : ring) {
            west = std::min(west, point.x());
            south = std::min(south, point.y());
            east = std::max(east, point.x());
            north = std::max(north, point.y());
        }
    }
    m_low = CAxPoint2D(west, south);
    m_high = CAxPoint2D(east, north);
}

bool AxPlaneArea::Contains(const CAxPoint2D& point) const
{
    if (!MayMeet(point, point))
        return false;
    bool isInside = false;
    VisitEdges(m_rings, [&](const CAxPoint2D& a, const CAxPoint2D& b) {
        if ((a.y() <= point.y()) != (b.y() <= point.y()) &&
            point.x() < a.x() + (b.x() - a.x()) * (point.y() - a.y()) / (b.y() - a.y()))
            isInside = !isInside;
    });
    return isInside;
}

bool AxPlaneArea::MayMeet(const CAxPoint2D& from, const CAxPoint2D& to, double metres) const
{
    return std::min(from.x(), to.x()) <= m_high.x() + metres &&
           std::max(from.x(), to.x()) >= m_low.x() - metres &&
           std::min(from.y(), to.y()) <= m_high.y() + metres &&
           std::max(from.y(), to.y()) >= m_low.y() - metres;
}

std::vector<std::pair<double, double>> AxPlaneArea::Inside(const CAxPoint2D& from, const CAxPoint2D& to) const
{
    constexpr double shortest = 1e-3; // metres
    std::vector<std::pair<double, double>> inside;
    const double dx = to.x() - from.x();
    const double dy = to.y() - from.y();
    const double length = std::hypot(dx, dy);
    if (length <= shortest || !MayMeet(from, to))
        return inside;
    std::vector<double> shares{0.0, 1.0};
    VisitEdges(m_rings, [&](const CAxPoint2D& a, const CAxPoint2D& b) {
        // Metres to the left of the leg's line, times its length.
        const double left = dx * (a.y() - from.y()) - dy * (a.x() - from.x());
        const double leftOfNext = dx * (b.y() - from.y()) - dy * (b.x() - from.x());
        if ((left > 0.0 && leftOfNext > 0.0) || (left < 0.0 && leftOfNext < 0.0) || left == leftOfNext)
            return;
        const CAxPoint2D met = AxBetween(a, b, left / (left - leftOfNext));
        const double share = ((met.x() - from.x()) * dx + (met.y() - from.y()) * dy) / (length * length);
        if (share > 0.0 && share < 1.0)
            shares.push_back(share);
    });
    std::sort(shares.begin(), shares.end());
    double begin = 0.0;
    for (std::size_t i = 1; i < shares.size(); ++i) {
        if ((shares[i] - begin) * length <= shortest)
            continue;
        if (Contains(AxBetween(from, to, 0.5 * (begin + shares[i])))) {
            if (!inside.empty() && inside.back().second == begin)
                inside.back().second = shares[i];
            else
                inside.emplace_back(begin, shares[i]);
        }
        begin = shares[i];
    }
    return inside;
}

double AxPlaneArea::DistanceTo(const CAxPoint2D& point) const
{
    double least = std::numeric_limits<double>::max();
    VisitEdges(m_rings, [&](const CAxPoint2D& a, const CAxPoint2D& b) {
        const double dx = b.x() - a.x();
        const double dy = b.y() - a.y();
        const double square = dx * dx + dy * dy;
        const double share =
            square > 0.0
                ? std::clamp(((point.x() - a.x()) * dx + (point.y() - a.y()) * dy) / square, 0.0, 1.0)
                : 0.0;
        least = std::min(least, AxApart(point, AxBetween(a, b, share)));
    });
    return least;
}

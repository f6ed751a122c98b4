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
    for (std::size_t ring = 0; ring < m_rings.size(); ++ring)
        AddPieces(ring);
}

void AxPlaneArea::AddPieces(std::size_t ring)
{
    constexpr std::size_t longest = 16;
    const AxPlanLine& line = m_rings[ring];
    for (std::size_t first = 0; first < line.size(); first += longest) {
        Piece piece{ring, first, std::min(first + longest, line.size()), line[first], line[first]};
        for (std::size_t i = first + 1; i <= piece.end; ++i) {
            const CAxPoint2D& point = line[i < line.size() ? i : 0];
            piece.low = {std::min(piece.low.x(), point.x()), std::min(piece.low.y(), point.y())};
            piece.high = {std::max(piece.high.x(), point.x()), std::max(piece.high.y(), point.y())};
        }
        m_pieces.push_back(piece);
    }
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
    // Metres to the left of the leg's line, times its length.
    const auto leftOf = [&](double x, double y) { return dx * (y - from.y()) - dy * (x - from.x()); };
    std::vector<double> shares; // where the line of the leg, on and on, crosses edges
    for (const Piece& piece : m_pieces) {
        const bool isLeft = leftOf(piece.low.x(), piece.low.y()) > 0.0;
        if (isLeft == (leftOf(piece.high.x(), piece.high.y()) > 0.0) &&
            isLeft == (leftOf(piece.low.x(), piece.high.y()) > 0.0) &&
            isLeft == (leftOf(piece.high.x(), piece.low.y()) > 0.0))
            continue;
        const AxPlanLine& ring = m_rings[piece.ring];
        for (std::size_t i = piece.first; i < piece.end; ++i) {
            const CAxPoint2D& a = ring[i];
            const CAxPoint2D& b = ring[i + 1 < ring.size() ? i + 1 : 0];
            const double left = leftOf(a.x(), a.y());
            const double leftOfNext = leftOf(b.x(), b.y());
            if ((left > 0.0) == (leftOfNext > 0.0))
                continue;
            const CAxPoint2D met = AxBetween(a, b, left / (left - leftOfNext));
            shares.push_back(((met.x() - from.x()) * dx + (met.y() - from.y()) * dy) / (length * length));
        }
    }
    std::sort(shares.begin(), shares.end());
    for (std::size_t i = 0; i + 1 < shares.size(); i += 2) {
        const double begin = std::max(0.0, shares[i]);
        const double end = std::min(1.0, shares[i + 1]);
        if ((end - begin) * length <= shortest)
            continue;
        if (!inside.empty() && (begin - inside.back().second) * length <= shortest)
            inside.back().second = end;
        else
            inside.emplace_back(begin, end);
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

#include <AxData/geofiles/AxGeoSimplify.h>

#include <algorithm>
#include <cmath>
#include <utility>

namespace {
constexpr double metresPerDegree = 111320.0;
constexpr std::size_t segmentsBetweenQuestions = 1000000;

double SquareToSegment(QPointF p, QPointF a, QPointF b)
{
    const QPointF way = b - a;
    const double square = QPointF::dotProduct(way, way);
    const double share = square > 0.0 ? std::clamp(QPointF::dotProduct(p - a, way) / square, 0.0, 1.0) : 0.0;
    const QPointF off = p - (a + share * way);
    return QPointF::dotProduct(off, off);
}

std::vector<QPointF> InMetres(const std::vector<QPointF>& points)
{
    double low = points.front().y();
    double high = low;
    for (const QPointF& point : points) {
        low = std::min(low, point.y());
        high = std::max(high, point.y());
    }
    const double narrow = std::cos((low + high) / 2.0 * std::acos(-1.0) / 180.0);
    std::vector<QPointF> plane;
    plane.reserve(points.size());
    for (const QPointF& point : points)
        plane.emplace_back(point.x() * narrow * metresPerDegree, point.y() * metresPerDegree);
    return plane;
}

/// Douglas and Peucker's rule, without recursion. `plane` ends with its first point if it is a ring. False
/// when called off.
bool Keep(const std::vector<QPointF>& plane, double tolerance, std::vector<char>& isKept,
          const std::function<bool()>& goesOn)
{
    std::vector<std::pair<std::size_t, std::size_t>> open{{0, plane.size() - 1}};
    isKept.assign(plane.size(), 0);
    isKept.front() = isKept.back() = 1;
    std::size_t steps = 0;
    while (!open.empty()) {
        const auto [from, to] = open.back();
        open.pop_back();
        double farthest = tolerance * tolerance;
        std::size_t at = from;
        for (std::size_t i = from + 1; i < to; ++i)
            if (const double off = SquareToSegment(plane[i], plane[from], plane[to]); off > farthest) {
                farthest = off;
                at = i;
            }
        steps += to - from;
        if (steps > segmentsBetweenQuestions) {
            steps = 0;
            if (!goesOn())
                return false;
        }
        if (at == from)
            continue;
        isKept[at] = 1;
        open.emplace_back(from, at);
        open.emplace_back(at, to);
    }
    return true;
}
} // namespace

std::vector<QPointF> AxGeoSimplified(const std::vector<QPointF>& points, bool isRing, int most,
                                     double& tolerance, const std::function<bool()>& goesOn)
{
    if (points.empty())
        return {};
    std::vector<QPointF> plane = InMetres(points);
    if (isRing)
        plane.push_back(plane.front());
    std::vector<char> isKept;
    while (Keep(plane, tolerance, isKept, goesOn)) {
        const auto kept = std::count(isKept.begin(), isKept.begin() + std::ptrdiff_t(points.size()), char(1));
        if (kept > most) {
            tolerance *= 2.0;
            continue;
        }
        std::vector<QPointF> left;
        for (std::size_t i = 0; i < points.size(); ++i)
            if (isKept[i])
                left.push_back(points[i]);
        return left;
    }
    return {};
}

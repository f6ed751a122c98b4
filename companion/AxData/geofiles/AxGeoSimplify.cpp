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

/// Douglas and Peucker's rule within pieces of the line, whose ends are kept: what it costs grows with the
/// square of a piece's length at worst, however the line runs. False when called off.
bool Keep(const std::vector<QPointF>& plane, double tolerance, std::vector<char>& isKept,
          const std::function<bool()>& goesOn)
{
    constexpr std::size_t longestPiece = 1000;
    isKept.assign(plane.size(), 0);
    isKept.back() = 1;
    std::vector<std::pair<std::size_t, std::size_t>> open;
    std::size_t steps = 0;
    for (std::size_t begin = 0; begin + 1 < plane.size(); begin += longestPiece) {
        isKept[begin] = 1;
        open.emplace_back(begin, std::min(begin + longestPiece, plane.size() - 1));
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
            if (at == from)
                continue;
            isKept[at] = 1;
            open.emplace_back(from, at);
            open.emplace_back(at, to);
        }
        if (steps > segmentsBetweenQuestions) {
            steps = 0;
            if (!goesOn())
                return false;
        }
    }
    return true;
}

template <typename Value> void LeaveOut(std::vector<Value>& values, const std::vector<char>& isKept)
{
    std::size_t left = 0;
    for (std::size_t i = 0; i < values.size(); ++i)
        if (isKept[i])
            values[left++] = values[i];
    values.resize(left);
}
} // namespace

std::vector<QPointF> AxGeoSimplified(const std::vector<QPointF>& points, bool isRing, int most,
                                     double& tolerance, const std::function<bool()>& goesOn)
{
    if (points.empty())
        return {};
    std::vector<QPointF> left = points;
    if (isRing)
        left.push_back(left.front());
    std::vector<QPointF> plane = InMetres(left);
    std::vector<char> isKept;
    const std::size_t wanted = std::size_t(most) + (isRing ? 1 : 0);
    double step = tolerance;
    for (tolerance = 0.0; left.size() > wanted; step *= 2.0) {
        if (!Keep(plane, step, isKept, goesOn))
            return {};
        LeaveOut(left, isKept);
        LeaveOut(plane, isKept);
        tolerance += step; // each round is measured against the line of the one before
    }
    if (isRing)
        left.pop_back();
    return left;
}

#include "featurelayers/LineWork.h"
#include <algorithm>
#include <cmath>
#include <cstring>
#include <map>
#include <unordered_set>

namespace osgEarth::Features {
namespace {
constexpr double kRim = 1e-4; // degrees

struct Segment
{
    osg::Vec2d a, b;
    bool operator==(const Segment& other) const { return a == other.a && b == other.b; }
};

struct SegmentHash
{
    size_t operator()(const Segment& s) const
    {
        uint64_t hash = 1469598103934665603ull;
        for (const double v : {s.a.x(), s.a.y(), s.b.x(), s.b.y()}) {
            uint64_t bits;
            std::memcpy(&bits, &v, sizeof bits);
            hash = (hash ^ bits) * 1099511628211ull;
            hash ^= hash >> 29;
        }
        return static_cast<size_t>(hash);
    }
};

bool alongRim(const osg::Vec2d& a, const osg::Vec2d& b)
{
    const auto both = [](double u, double v, double limit) { return u > limit - kRim && v > limit - kRim; };
    return both(a.x(), b.x(), 180.0) || both(-a.x(), -b.x(), 180.0) || both(a.y(), b.y(), 90.0) ||
           both(-a.y(), -b.y(), 90.0);
}

/// Whether a segment jumps across the antimeridian: its ends lie at opposite edges of the map and close
/// together on the globe.
bool acrossMap(const osg::Vec2d& a, const osg::Vec2d& b)
{
    return std::abs(a.x() - b.x()) > 180.0;
}

double distance2(const osg::Vec2d& p, const osg::Vec2d& a, const osg::Vec2d& b)
{
    const osg::Vec2d ab = b - a;
    const double length2 = ab.length2();
    const double t = length2 > 0.0 ? std::clamp(((p - a) * ab) / length2, 0.0, 1.0) : 0.0;
    return (p - (a + ab * t)).length2();
}

/// Marks the points of line[first..last] to keep.
void keepPoints(const LonLatLine& line, size_t first, size_t last, double tolerance2, std::vector<bool>& keep)
{
    std::vector<std::pair<size_t, size_t>> open{{first, last}};
    while (!open.empty()) {
        const auto [from, to] = open.back();
        open.pop_back();
        double farthest = tolerance2;
        size_t at = 0;
        for (size_t i = from + 1; i < to; ++i) {
            const double d = distance2(line[i], line[from], line[to]);
            if (d > farthest) {
                farthest = d;
                at = i;
            }
        }
        if (at == 0)
            continue;
        keep[at] = true;
        open.emplace_back(from, at);
        open.emplace_back(at, to);
    }
}
} // namespace

std::vector<LonLatLine> distinctLines(const FeatureList& features)
{
    std::vector<LonLatLine> lines;
    std::unordered_set<Segment, SegmentHash> drawn;
    for (const auto& feature : features) {
        for (ConstGeometryIterator it(feature->getGeometry()); it.hasMore();) {
            const Geometry* part = it.next();
            if (part->getType() == Geometry::TYPE_POINTSET || part->size() < 2)
                continue;
            const bool closed = dynamic_cast<const Ring*>(part) != nullptr;
            const size_t segments = closed ? part->size() : part->size() - 1;
            LonLatLine run;
            const auto finish = [&] {
                if (run.size() > 1)
                    lines.push_back(run);
                run.clear();
            };
            for (size_t i = 0; i < segments; ++i) {
                const osg::Vec3d &p = (*part)[i], &q = (*part)[(i + 1) % part->size()];
                const osg::Vec2d a(p.x(), p.y()), b(q.x(), q.y());
                const bool swap = b < a;
                if (a == b)
                    continue;
                if (alongRim(a, b) || acrossMap(a, b) ||
                    !drawn.insert(swap ? Segment{b, a} : Segment{a, b}).second) {
                    finish();
                    continue;
                }
                if (run.empty())
                    run.push_back(a);
                run.push_back(b);
            }
            finish();
        }
    }
    return lines;
}

LonLatLine simplified(const LonLatLine& line, double tolerance)
{
    if (line.size() < 3)
        return line;
    std::vector<bool> keep(line.size(), false);
    keep.front() = keep.back() = true;
    const double tolerance2 = tolerance * tolerance;
    if (line.front() == line.back()) {
        // A closed line has no straight line between its ends to measure from;
        // its point farthest from them divides it.
        size_t far = 0;
        for (size_t i = 1; i < line.size(); ++i)
            if ((line[i] - line[0]).length2() > (line[far] - line[0]).length2())
                far = i;
        if ((line[far] - line[0]).length2() < tolerance2)
            return {};
        keep[far] = true;
        keepPoints(line, 0, far, tolerance2, keep);
        keepPoints(line, far, line.size() - 1, tolerance2, keep);
    } else
        keepPoints(line, 0, line.size() - 1, tolerance2, keep);
    LonLatLine kept;
    for (size_t i = 0; i < line.size(); ++i)
        if (keep[i])
            kept.push_back(line[i]);
    return kept;
}

std::vector<LineCell> cellsOf(const std::vector<LonLatLine>& lines, double size, double longest)
{
    std::map<std::pair<int, int>, LineCell> cells;
    for (const LonLatLine& line : lines) {
        LineCell* current = nullptr;
        for (size_t i = 0; i + 1 < line.size(); ++i) {
            const osg::Vec2d step = line[i + 1] - line[i];
            const int pieces = std::clamp(static_cast<int>(std::ceil(step.length() / longest)), 1, 100000);
            for (int k = 0; k < pieces; ++k) {
                const osg::Vec2d a = line[i] + step * (static_cast<double>(k) / pieces);
                const osg::Vec2d b =
                    k + 1 == pieces ? line[i + 1] : line[i] + step * (static_cast<double>(k + 1) / pieces);
                const osg::Vec2d middle = (a + b) * 0.5;
                const std::pair<int, int> key(static_cast<int>(std::floor(middle.x() / size)),
                                              static_cast<int>(std::floor(middle.y() / size)));
                LineCell& cell = cells[key];
                cell.west = key.first * size;
                cell.south = key.second * size;
                cell.size = size;
                if (&cell != current || cell.runs.empty() || cell.runs.back().back() != a)
                    cell.runs.push_back({a});
                cell.runs.back().push_back(b);
                current = &cell;
            }
        }
    }
    std::vector<LineCell> result;
    for (auto& cell : cells)
        result.push_back(std::move(cell.second));
    return result;
}
} // namespace osgEarth::Features

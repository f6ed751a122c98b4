#include "drape/DrapeBlock.h"
#include "globe/Wgs84.h"
#include <algorithm>
#include <cmath>
#include <map>
#include <set>

namespace osgEarth {
namespace {
// Coarser levels: their largest error as shares of the shape's radius, and the share of the
// finer level's triangles that a level may have to be kept.
constexpr double kLevelErrors[] = {0.004, 0.016, 0.064};
constexpr double kWorthwhile = 0.75;
// Wider shapes keep their points, which make them follow the round earth.
constexpr double kWidestWithLevels = 200000.0;
// Lines that turn more sharply have no common corner: it would stick out too far.
constexpr double kLeastJoin = 0.4; // cosine of half the turn

using Chain = std::vector<unsigned>;

double distanceFrom(const osg::Vec3d& p, const osg::Vec3d& a, const osg::Vec3d& b)
{
    const osg::Vec3d along = b - a;
    const double length2 = along.length2();
    const double t = length2 > 0.0 ? std::clamp(((p - a) * along) / length2, 0.0, 1.0) : 0.0;
    return (a + along * t - p).length();
}

/// The points of a chain that a line through fewer of them needs, both ends included.
Chain thinned(const Chain& chain, const std::vector<osg::Vec3d>& points, double error)
{
    if (error <= 0.0 || chain.size() < 3)
        return chain;
    std::vector<char> keep(chain.size(), 0);
    keep.front() = keep.back() = 1;
    // Halves rather than farthest points: the work stays in bounds for every line.
    std::vector<std::pair<size_t, size_t>> open{{0, chain.size() - 1}};
    while (!open.empty()) {
        const auto [from, to] = open.back();
        open.pop_back();
        if (to - from < 2)
            continue;
        bool near = true;
        for (size_t i = from + 1; i < to && near; ++i)
            near = distanceFrom(points[chain[i]], points[chain[from]], points[chain[to]]) <= error;
        if (near)
            continue;
        const size_t middle = (from + to) / 2;
        keep[middle] = 1;
        open.push_back({from, middle});
        open.push_back({middle, to});
    }
    Chain kept;
    for (size_t i = 0; i < chain.size(); ++i)
        if (keep[i])
            kept.push_back(chain[i]);
    return kept;
}

/// Joins directed edges to chains, which are closed where they come back to their beginning.
std::vector<Chain> chainsOf(const std::vector<std::pair<unsigned, unsigned>>& edges)
{
    std::multimap<unsigned, size_t> starts;
    for (size_t i = 0; i < edges.size(); ++i)
        starts.emplace(edges[i].first, i);
    std::vector<char> used(edges.size(), 0);
    std::vector<Chain> chains;
    for (size_t first = 0; first < edges.size(); ++first) {
        if (used[first])
            continue;
        Chain chain{edges[first].first};
        for (size_t i = first; i != edges.size();) {
            used[i] = 1;
            chain.push_back(edges[i].second);
            if (chain.back() == chain.front())
                break;
            const auto range = starts.equal_range(chain.back());
            const auto next = std::find_if(range.first, range.second,
                                           [&used](const auto& start) { return !used[start.second]; });
            i = next == range.second ? edges.size() : next->second;
        }
        chains.push_back(chain);
    }
    return chains;
}

class BlockMaker
{
public:
    BlockMaker(const DrapeShape& shape, DrapeBlock& block)
        : _shape(shape), _points(shape.points), _block(block)
    {
    }

    void make()
    {
        addFinestArea();
        for (const auto& s : _shape.segments)
            if (s[0] != s[1])
                _segments.push_back({s[0], s[1]});
        const std::vector<Chain> rims = chainsOf(_rim);
        std::vector<Chain> lines = chainsOf(_segments);
        addLines(lines, 0.0);
        close(0.0, _block.sagitta);
        if (_block.bound.radius() > kWidestWithLevels)
            return;
        for (const double share : kLevelErrors) {
            const double error = share * _block.bound.radius();
            if (_block.levels.empty())
                return;
            addAreas(rims, error);
            addLines(lines, error);
            if (static_cast<double>(_caps.size() + _walls.size() + _lower.size()) <=
                kWorthwhile * static_cast<double>(_block.levels.back().indices.size()))
                close(error, _longest2 / (6.0 * wgs84::kPolarRadius));
            restart();
        }
    }

private:
    void close(double error, double sagitta)
    {
        DrapeBlock::Level level{error, sagitta, std::move(_caps), 0, 0};
        level.caps = level.indices.size();
        level.indices.insert(level.indices.end(), _walls.begin(), _walls.end());
        level.upper = level.indices.size();
        level.indices.insert(level.indices.end(), _lower.begin(), _lower.end());
        if (!level.indices.empty())
            _block.levels.push_back(std::move(level));
        restart();
    }
    void restart()
    {
        _caps.clear();
        _walls.clear();
        _lower.clear();
        _longest2 = 0.0;
    }
    unsigned add(const osg::Vec3d& ground, const osg::Vec3d& along, double pixels)
    {
        const unsigned index = static_cast<unsigned>(_block.positions.size());
        for (const float rim : {0.0f, 1.0f}) {
            _block.positions.emplace_back(ground - _block.origin);
            _block.ups.emplace_back(ellipsoidUp(ground));
            _block.shifts.emplace_back(osg::Vec3f(along), static_cast<float>(pixels));
            _block.rims.push_back(rim);
        }
        return index;
    }
    void cap(unsigned a, unsigned b, unsigned c)
    {
        _caps.insert(_caps.end(), {a + 1, b + 1, c + 1});
        _lower.insert(_lower.end(), {a, c, b});
    }
    void wall(unsigned a, unsigned b) { _walls.insert(_walls.end(), {a, b, b + 1, a, b + 1, a + 1}); }
    void noteEdge(unsigned a, unsigned b)
    {
        _longest2 = std::max(_longest2, (_points[a] - _points[b]).length2());
    }
    /// The vertices of a point of the area, the same in all levels.
    unsigned areaVertex(unsigned point)
    {
        const auto known = _areaVertices.find(point);
        if (known != _areaVertices.end())
            return known->second;
        return _areaVertices[point] = add(_points[point], osg::Vec3d(), 0.0);
    }

    void addFinestArea()
    {
        std::map<std::pair<unsigned, unsigned>, int> edges;
        for (const auto& t : _shape.triangles) {
            auto [a, b, c] = t;
            const double turn =
                ((_points[b] - _points[a]) ^ (_points[c] - _points[a])) * ellipsoidUp(_points[a]);
            if (turn == 0.0)
                continue;
            if (turn < 0.0)
                std::swap(b, c);
            cap(areaVertex(a), areaVertex(b), areaVertex(c));
            for (const auto& edge : {std::make_pair(a, b), std::make_pair(b, c), std::make_pair(c, a)})
                edges[std::minmax(edge.first, edge.second)] += edge.first < edge.second ? 1 : -1;
        }
        for (const auto& edge : edges)
            for (int i = 0; i < std::abs(edge.second); ++i) {
                const auto [a, b] = edge.first;
                _rim.push_back(edge.second > 0 ? std::make_pair(a, b) : std::make_pair(b, a));
                wall(areaVertex(_rim.back().first), areaVertex(_rim.back().second));
            }
    }

    void span(const Chain& ring, size_t a, size_t b, size_t c)
    {
        cap(areaVertex(ring[a]), areaVertex(ring[b]), areaVertex(ring[c]));
        noteEdge(ring[a], ring[b]);
        noteEdge(ring[b], ring[c]);
        noteEdge(ring[c], ring[a]);
    }
    void spanBetween(const Chain& ring, size_t from, size_t to)
    {
        if (to - from < 2)
            return;
        const size_t middle = (from + to) / 2;
        span(ring, from, middle, to);
        spanBetween(ring, from, middle);
        spanBetween(ring, middle, to);
    }

    /// Areas by their rims alone.
    void addAreas(const std::vector<Chain>& rims, double error)
    {
        for (const Chain& rim : rims) {
            if (rim.front() != rim.back() || rim.size() < 4)
                continue;
            // A ring has two ends for thinned() to keep; half way round is a second.
            const auto half = rim.begin() + std::ptrdiff_t(rim.size() / 2);
            Chain ring = thinned(Chain(rim.begin(), half + 1), _points, error);
            const Chain rest = thinned(Chain(half, rim.end()), _points, error);
            ring.insert(ring.end(), rest.begin() + 1, rest.end());
            if (ring.size() < 4)
                continue;
            // Large triangles inside and small ones at the rim cost fewer pixels than a fan's slivers.
            const size_t last = ring.size() - 1;
            const size_t corners[] = {0, last / 3, 2 * last / 3, last};
            span(ring, corners[0], corners[1], corners[2]);
            for (size_t i = 0; i < 3; ++i)
                spanBetween(ring, corners[i], corners[i + 1]);
            for (size_t i = 0; i + 1 < ring.size(); ++i) {
                wall(areaVertex(ring[i]), areaVertex(ring[i + 1]));
                noteEdge(ring[i], ring[i + 1]);
            }
        }
    }

    void addLines(const std::vector<Chain>& lines, double error)
    {
        for (const Chain& line : lines) {
            if (line.front() == line.back() && line.size() > 3) {
                const auto half = line.begin() + std::ptrdiff_t(line.size() / 2);
                Chain ring = thinned(Chain(line.begin(), half + 1), _points, error);
                const Chain rest = thinned(Chain(half, line.end()), _points, error);
                ring.insert(ring.end(), rest.begin() + 1, rest.end());
                addRibbon(ring);
            } else {
                addRibbon(thinned(line, _points, error));
            }
        }
    }

    /// A volume along a line, with a common corner where two pieces meet.
    void addRibbon(const Chain& line)
    {
        const size_t pieces = line.size() - 1;
        std::vector<osg::Vec3d> ahead(pieces);
        for (size_t i = 0; i < pieces; ++i) {
            ahead[i] = _points[line[i + 1]] - _points[line[i]];
            ahead[i].normalize();
            noteEdge(line[i], line[i + 1]);
        }
        const bool closed = line.front() == line.back() && pieces > 2;
        // The corner before piece i; an end that reaches half a width further where there is none.
        struct Corner
        {
            unsigned right, left;
        };
        const double half = 0.5 * _shape.lineWidth;
        const auto leftOf = [&](size_t piece, const osg::Vec3d& place) {
            osg::Vec3d left = ellipsoidUp(place) ^ ahead[piece];
            left.normalize();
            return left;
        };
        const auto end = [&](size_t piece, unsigned point, double forward) {
            const osg::Vec3d left = leftOf(piece, _points[point]);
            const osg::Vec3d along = ahead[piece] * forward;
            return Corner{add(_points[point], along - left, half), add(_points[point], along + left, half)};
        };
        const auto joined = [&](size_t before, size_t after, unsigned point, Corner& corner) {
            osg::Vec3d across = leftOf(before, _points[point]) + leftOf(after, _points[point]);
            const double cosine = 0.5 * across.length();
            if (cosine < kLeastJoin)
                return false;
            across /= 2.0 * cosine * cosine;
            corner = {add(_points[point], -across, half), add(_points[point], across, half)};
            return true;
        };
        Corner first{};
        const bool firstJoined = closed && joined(pieces - 1, 0, line.front(), first);
        bool open = !firstJoined;
        Corner from = firstJoined ? first : end(0, line.front(), -1.0);
        for (size_t i = 0; i < pieces; ++i) {
            const bool last = i + 1 == pieces;
            Corner to = first;
            const bool join = last ? firstJoined : joined(i, i + 1, line[i + 1], to);
            if (!join)
                to = end(i, line[i + 1], 1.0);
            cap(from.right, to.right, to.left);
            cap(from.right, to.left, from.left);
            wall(from.right, to.right);
            wall(to.left, from.left);
            if (open)
                wall(from.left, from.right);
            if (!join)
                wall(to.right, to.left);
            open = !join;
            from = join || last ? to : end(i + 1, line[i + 1], -1.0);
        }
    }

    const DrapeShape& _shape;
    const std::vector<osg::Vec3d>& _points;
    DrapeBlock& _block;
    std::vector<std::pair<unsigned, unsigned>> _rim;
    std::vector<std::pair<unsigned, unsigned>> _segments;
    std::map<unsigned, unsigned> _areaVertices;
    std::vector<unsigned> _caps;
    std::vector<unsigned> _walls;
    std::vector<unsigned> _lower; // faces that are always below the ground
    double _longest2 = 0.0;
};
} // namespace

DrapeBlock blockOf(const DrapeShape& source)
{
    DrapeBlock block;
    const DrapeShape shape = layOnGround(source, block);
    if (block.bound.valid())
        BlockMaker(shape, block).make();
    return block;
}
} // namespace osgEarth

#include "terrain/TileMesh.h"

#include "globe/Ellipsoid.h"
#include "globe/Wgs84.h"

#include <osg/Math>

#include <array>
#include <cmath>
#include <cstdint>

namespace osgEarth {
namespace {
constexpr std::uint16_t kUnused = 0xffff;
/// On level ground the tolerance of a mesh would let the horizon end some ten pixels early, in steps of a
/// tile.
constexpr double kRoundnessWeight = 12.0;

/// Metres by which a chord of the globe runs below it.
double sagittaOf(double chordSquared)
{
    return chordSquared / (8.0 * wgs84::kEquatorialRadius);
}

struct GridPoint
{
    int x;
    int y;
};

GridPoint middle(GridPoint a, GridPoint b)
{
    return {(a.x + b.x) / 2, (a.y + b.y) / 2};
}

/// A triangle of the bintree: hypotenuse from a to b, right angle at c, clockwise from above.
struct Triangle
{
    GridPoint a;
    GridPoint b;
    GridPoint c;

    Triangle left(GridPoint m) const { return {c, a, m}; }
    Triangle right(GridPoint m) const { return {b, c, m}; }
};

class Builder
{
public:
    Builder(const TileBounds& bounds, const HeightRaster& raster, TileMesh& mesh)
        : _bounds(bounds), _raster(raster), _cells((raster.size() - 1) / 2), _side(_cells + 1), _mesh(mesh)
    {
    }

    void run(double tolerance, double skirtDepth)
    {
        placeGrid();
        measureErrors();
        _index.assign(_grid.size(), kUnused);
        for (const Triangle& root : roots())
            extract(root, 0, tolerance);
        _mesh.surfaceIndexCount = _mesh.indices.size();
        hangSkirt(skirtDepth);
    }

private:
    std::size_t offset(GridPoint p) const
    {
        return static_cast<std::size_t>(p.y) * static_cast<std::size_t>(_side) +
               static_cast<std::size_t>(p.x);
    }
    double longitude(int x) const { return _bounds.west + _bounds.width() * x / _cells; }
    double latitude(int y) const { return _bounds.south + _bounds.height() * y / _cells; }
    float height(GridPoint p) const { return _raster.at(2 * p.x, 2 * p.y); }

    std::array<Triangle, 2> roots() const
    {
        const GridPoint southWest{0, 0};
        const GridPoint northEast{_cells, _cells};
        return {Triangle{southWest, northEast, {_cells, 0}}, Triangle{northEast, southWest, {0, _cells}}};
    }

    void placeGrid()
    {
        _mesh.origin =
            geodeticToWorld(0.5 * (_bounds.west + _bounds.east), 0.5 * (_bounds.south + _bounds.north),
                            height({_cells / 2, _cells / 2}));
        _grid.resize(static_cast<std::size_t>(_side) * static_cast<std::size_t>(_side));
        _mesh.minHeight = _mesh.maxHeight = height({0, 0});
        // A place is the one below it on the ellipsoid, and its height along the normal there.
        std::vector<osg::Vec2d> towards;
        for (int x = 0; x < _side; ++x) {
            const double angle = osg::DegreesToRadians(longitude(x));
            towards.emplace_back(std::cos(angle), std::sin(angle));
        }
        for (int y = 0; y < _side; ++y) {
            const osg::Vec3d foot = geodeticToWorld(0.0, latitude(y), 0.0);
            const double angle = osg::DegreesToRadians(latitude(y));
            const double c = std::cos(angle), s = std::sin(angle);
            for (int x = 0; x < _side; ++x) {
                const double h = height({x, y});
                const double fromAxis = foot.x() + h * c;
                const osg::Vec2d& to = towards[static_cast<std::size_t>(x)];
                _grid[offset({x, y})] =
                    osg::Vec3d(fromAxis * to.x(), fromAxis * to.y(), foot.z() + h * s) - _mesh.origin;
                _mesh.minHeight = std::min(_mesh.minHeight, h);
                _mesh.maxHeight = std::max(_mesh.maxHeight, h);
            }
        }
    }

    // The hypotenuse of a triangle is shared with its neighbour, so a level
    // must be complete before the next coarser one looks at it; otherwise one
    // side would split where the other does not and leave a crack.
    void measureErrors()
    {
        _errors.assign(_grid.size(), 0.0f);
        int depths = 0;
        for (int cells = _cells; cells >= 2; cells /= 2)
            depths += 2;
        for (int depth = depths - 1; depth >= 0; --depth)
            for (const Triangle& root : roots())
                measureAt(root, 0, depth, depths - 1);
        _lastDepth = depths - 1;
    }

    void measureAt(const Triangle& t, int depth, int wanted, int last)
    {
        const GridPoint m = middle(t.a, t.b);
        if (depth < wanted) {
            measureAt(t.left(m), depth + 1, wanted, last);
            measureAt(t.right(m), depth + 1, wanted, last);
            return;
        }
        const osg::Vec3d& a = _grid[offset(t.a)];
        const osg::Vec3d& b = _grid[offset(t.b)];
        const osg::Vec3d moved = _grid[offset(m)] - (a + b) * 0.5;
        float error =
            static_cast<float>(moved.length() + (kRoundnessWeight - 1.0) * sagittaOf((b - a).length2()));
        if (depth < last) {
            error = std::max(error, _errors[offset(middle(t.c, t.a))]);
            error = std::max(error, _errors[offset(middle(t.b, t.c))]);
        }
        float& stored = _errors[offset(m)];
        stored = std::max(stored, error);
    }

    void extract(const Triangle& t, int depth, double tolerance)
    {
        const GridPoint m = middle(t.a, t.b);
        if (depth <= _lastDepth && _errors[offset(m)] > tolerance) {
            extract(t.left(m), depth + 1, tolerance);
            extract(t.right(m), depth + 1, tolerance);
            return;
        }
        if (depth <= _lastDepth)
            _mesh.simplificationError =
                std::max(_mesh.simplificationError, static_cast<double>(_errors[offset(m)]));
        addTriangle(t);
    }

    void addTriangle(const Triangle& t)
    {
        // Along a pole a whole row is one point.
        const osg::Vec3d& a = _grid[offset(t.a)];
        const osg::Vec3d& b = _grid[offset(t.b)];
        const osg::Vec3d& c = _grid[offset(t.c)];
        if (((b - a) ^ (c - a)).length2() <= 1e-6)
            return;
        for (const GridPoint p : {t.a, t.c, t.b})
            _mesh.indices.push_back(vertex(p));
    }

    std::uint16_t vertex(GridPoint p)
    {
        std::uint16_t& index = _index[offset(p)];
        if (index == kUnused) {
            index = static_cast<std::uint16_t>(_mesh.positions.size());
            _mesh.positions.emplace_back(_grid[offset(p)]);
            _mesh.normals.push_back(normal(p));
            _mesh.unit.emplace_back(static_cast<float>(p.x) / static_cast<float>(_cells),
                                    static_cast<float>(p.y) / static_cast<float>(_cells));
        }
        return index;
    }

    osg::Vec3f normal(GridPoint p) const
    {
        const double lon = osg::DegreesToRadians(longitude(p.x));
        const double lat = osg::DegreesToRadians(latitude(p.y));
        const osg::Vec3d up(std::cos(lat) * std::cos(lon), std::cos(lat) * std::sin(lon), std::sin(lat));
        const osg::Vec3d east(-std::sin(lon), std::cos(lon), 0.0);
        const osg::Vec3d north = up ^ east;
        const double stepNorth = _bounds.height() / _cells * kMetresPerDegree;
        const double stepEast = std::max(_bounds.width() / _cells * kMetresPerDegree * std::cos(lat), 1e-3);
        const int column = 2 * p.x;
        const int row = 2 * p.y;
        const double slopeEast = (_raster.at(column + 1, row) - _raster.at(column - 1, row)) / stepEast;
        const double slopeNorth = (_raster.at(column, row + 1) - _raster.at(column, row - 1)) / stepNorth;
        osg::Vec3d n = up - east * slopeEast - north * slopeNorth;
        n.normalize();
        return osg::Vec3f(n);
    }

    void hangSkirt(double depth)
    {
        const auto side = [&](auto pointAt) {
            int previous = -1;
            for (int i = 0; i <= _cells; ++i) {
                if (_index[offset(pointAt(i))] == kUnused)
                    continue;
                if (previous >= 0)
                    addSkirtQuad(pointAt(previous), pointAt(i), depth);
                previous = i;
            }
        };
        // Walked so that the outside lies to the right.
        side([&](int i) { return GridPoint{i, 0}; });
        side([&](int i) { return GridPoint{_cells, i}; });
        side([&](int i) { return GridPoint{_cells - i, _cells}; });
        side([&](int i) { return GridPoint{0, _cells - i}; });
    }

    std::uint16_t lowered(GridPoint p, double depth)
    {
        const std::uint16_t top = _index[offset(p)];
        osg::Vec3d down = _grid[offset(p)] + _mesh.origin;
        down.normalize();
        _mesh.positions.emplace_back(_grid[offset(p)] - down * depth);
        _mesh.normals.push_back(_mesh.normals[top]);
        _mesh.unit.push_back(_mesh.unit[top]);
        return static_cast<std::uint16_t>(_mesh.positions.size() - 1);
    }

    void addSkirtQuad(GridPoint from, GridPoint to, double depth)
    {
        const std::uint16_t topFrom = _index[offset(from)];
        const std::uint16_t topTo = _index[offset(to)];
        const std::uint16_t lowFrom = _lastLowered == topFrom ? _lastLoweredIndex : lowered(from, depth);
        const std::uint16_t lowTo = lowered(to, depth);
        _lastLowered = topTo;
        _lastLoweredIndex = lowTo;
        for (const std::uint16_t i : {topFrom, lowFrom, topTo, topTo, lowFrom, lowTo})
            _mesh.indices.push_back(i);
    }

    const TileBounds& _bounds;
    const HeightRaster& _raster;
    const int _cells;
    const int _side;
    TileMesh& _mesh;
    std::vector<osg::Vec3d> _grid;
    std::vector<float> _errors;
    std::vector<std::uint16_t> _index;
    int _lastDepth = 0;
    std::uint16_t _lastLowered = kUnused;
    std::uint16_t _lastLoweredIndex = kUnused;
};

void measureHiddenDetail(const HeightRaster& raster, TileMesh& mesh)
{
    double sum = 0.0, most = 0.0;
    int count = 0;
    const auto add = [&](float sample, float interpolated) {
        const double difference = static_cast<double>(sample) - interpolated;
        sum += difference * difference;
        most = std::max(most, std::abs(difference));
        ++count;
    };
    for (int row = 0; row + 2 < raster.size(); row += 2)
        for (int column = 0; column + 2 < raster.size(); column += 2) {
            const float southWest = raster.at(column, row);
            const float southEast = raster.at(column + 2, row);
            const float northWest = raster.at(column, row + 2);
            const float northEast = raster.at(column + 2, row + 2);
            add(raster.at(column + 1, row), 0.5f * (southWest + southEast));
            add(raster.at(column, row + 1), 0.5f * (southWest + northWest));
            add(raster.at(column + 1, row + 1), 0.25f * (southWest + southEast + northWest + northEast));
        }
    mesh.hiddenDetail = std::sqrt(sum / std::max(1, count));
    mesh.mostHiddenDetail = most;
}
} // namespace

osg::Vec3d geodeticToWorld(double longitude, double latitude, double height)
{
    static const Ellipsoid ellipsoid(wgs84::kEquatorialRadius, wgs84::kPolarRadius);
    return ellipsoid.toGeocentric(osg::DegreesToRadians(latitude), osg::DegreesToRadians(longitude), height);
}

TileMesh buildTileMesh(const TileBounds& bounds, const HeightRaster& raster, double tolerance,
                       double skirtDepth)
{
    TileMesh mesh;
    Builder(bounds, raster, mesh).run(tolerance, skirtDepth);
    measureHiddenDetail(raster, mesh);
    // Gives back spare capacity, because hundreds of meshes stay in memory.
    mesh.positions.shrink_to_fit();
    mesh.normals.shrink_to_fit();
    mesh.unit.shrink_to_fit();
    mesh.indices.shrink_to_fit();
    return mesh;
}

double borderRelief(const TileBounds& bounds, const HeightRaster& raster)
{
    constexpr int kWidest = 16; // samples, two of which are a cell of the mesh
    const int last = raster.size() - 1;
    double most = 0.0;
    const auto side = [&](auto heightAt) {
        for (int span = 2; span <= kWidest; span *= 2)
            for (int from = 0; from + span <= last; from += span)
                for (int i = 1; i < span; ++i) {
                    const double chord = heightAt(from) + (heightAt(from + span) - heightAt(from)) * i / span;
                    most = std::max(most, std::abs(heightAt(from + i) - chord));
                }
    };
    side([&](int i) { return static_cast<double>(raster.at(i, 0)); });
    side([&](int i) { return static_cast<double>(raster.at(i, last)); });
    side([&](int i) { return static_cast<double>(raster.at(0, i)); });
    side([&](int i) { return static_cast<double>(raster.at(last, i)); });
    const double chord = std::max(bounds.width(), bounds.height()) * kMetresPerDegree * kWidest / last;
    return most + sagittaOf(chord * chord);
}
} // namespace osgEarth

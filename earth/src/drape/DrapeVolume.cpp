#include "drape/DrapeVolume.h"
#include "globe/Wgs84.h"
#include <algorithm>
#include <cmath>
#include <map>

namespace osgEarth {
namespace {
constexpr double kA = wgs84::kEquatorialRadius;
constexpr double kB = wgs84::kPolarRadius;
constexpr size_t kMostTriangles = 200000; // guards against shapes of absurd extent

osg::Vec3d upAt(const osg::Vec3d& p)
{
    osg::Vec3d up(p.x() / (kA * kA), p.y() / (kA * kA), p.z() / (kB * kB));
    up.normalize();
    return up;
}

/// The point on the ellipsoid below or above p. Going down the vertical of p
/// by the height along the radius leaves an error that the second step removes.
osg::Vec3d onEllipsoid(const osg::Vec3d& p)
{
    osg::Vec3d q = p;
    for (int i = 0; i < 2; ++i) {
        const double s = std::sqrt((q.x() * q.x() + q.y() * q.y()) / (kA * kA) + q.z() * q.z() / (kB * kB));
        if (s <= 0.0)
            return q;
        q -= upAt(q) * (q.length() * (1.0 - 1.0 / s));
    }
    return q;
}

osg::Vec3d middleOnEllipsoid(const osg::Vec3d& a, const osg::Vec3d& b)
{
    return onEllipsoid((a + b) * 0.5);
}

/// Points that lie in the same place become one, so that shared edges are found.
void mergePoints(DrapeShape& shape)
{
    std::map<osg::Vec3d, unsigned> known;
    std::vector<unsigned> target(shape.points.size());
    std::vector<osg::Vec3d> merged;
    for (size_t i = 0; i < shape.points.size(); ++i) {
        const osg::Vec3d ground = onEllipsoid(shape.points[i]);
        const auto inserted = known.emplace(ground, static_cast<unsigned>(merged.size()));
        if (inserted.second)
            merged.push_back(ground);
        target[i] = inserted.first->second;
    }
    shape.points.swap(merged);
    for (auto& t : shape.triangles)
        for (unsigned& i : t)
            i = target[i];
    for (auto& s : shape.segments)
        for (unsigned& i : s)
            i = target[i];
}

class Midpoints
{
public:
    explicit Midpoints(std::vector<osg::Vec3d>& points) : _points(points) {}
    bool tooLong(unsigned a, unsigned b) const
    {
        return (_points[a] - _points[b]).length() > kLongestDrapeEdge;
    }
    double length2(unsigned a, unsigned b) const { return (_points[a] - _points[b]).length2(); }
    unsigned between(unsigned a, unsigned b)
    {
        const auto inserted = _known.emplace(std::minmax(a, b), static_cast<unsigned>(_points.size()));
        if (inserted.second)
            _points.push_back(middleOnEllipsoid(_points[a], _points[b]));
        return inserted.first->second;
    }

private:
    std::vector<osg::Vec3d>& _points;
    std::map<std::pair<unsigned, unsigned>, unsigned> _known;
};

/// Collects the vertices and faces of a volume.
class VolumeMesh
{
public:
    explicit VolumeMesh(const osg::Vec3d& origin) : _origin(origin) {}

    unsigned add(const osg::Vec3d& ground, const osg::Vec3d& along, double pixels)
    {
        const unsigned index = static_cast<unsigned>(_positions->size());
        const osg::Vec3d up = upAt(ground);
        for (const float rim : {0.0f, 1.0f}) {
            _positions->push_back(osg::Vec3(ground - _origin));
            _ups->push_back(osg::Vec3(up));
            _shifts->push_back(osg::Vec4(osg::Vec3(along), static_cast<float>(pixels)));
            _rims->push_back(rim);
        }
        return index;
    }
    /// Upper and lower cap; a, b, c turn counter-clockwise seen from above.
    void cap(unsigned a, unsigned b, unsigned c)
    {
        face(a + 1, b + 1, c + 1);
        face(a, c, b);
    }
    /// The wall under the edge a, b, whose outside lies to the right.
    void wall(unsigned a, unsigned b)
    {
        face(a, b, b + 1);
        face(a, b + 1, a + 1);
    }
    osg::ref_ptr<osg::Geometry> build()
    {
        if (_indices->empty())
            return {};
        osg::ref_ptr<osg::Geometry> geometry = new osg::Geometry();
        geometry->setUseDisplayList(false);
        geometry->setUseVertexBufferObjects(true);
        geometry->setVertexArray(_positions.get());
        geometry->setNormalArray(_ups.get(), osg::Array::BIND_PER_VERTEX);
        geometry->setTexCoordArray(0, _shifts.get(), osg::Array::BIND_PER_VERTEX);
        geometry->setTexCoordArray(1, _rims.get(), osg::Array::BIND_PER_VERTEX);
        geometry->addPrimitiveSet(_indices.get());
        return geometry;
    }

private:
    void face(unsigned a, unsigned b, unsigned c)
    {
        _indices->push_back(a);
        _indices->push_back(b);
        _indices->push_back(c);
    }
    const osg::Vec3d _origin;
    osg::ref_ptr<osg::Vec3Array> _positions = new osg::Vec3Array();
    osg::ref_ptr<osg::Vec3Array> _ups = new osg::Vec3Array();
    osg::ref_ptr<osg::Vec4Array> _shifts = new osg::Vec4Array();
    osg::ref_ptr<osg::FloatArray> _rims = new osg::FloatArray();
    osg::ref_ptr<osg::DrawElementsUInt> _indices = new osg::DrawElementsUInt(GL_TRIANGLES);
};

void buildFill(const DrapeShape& shape, VolumeMesh& mesh)
{
    std::vector<unsigned> vertex(shape.points.size());
    for (size_t i = 0; i < shape.points.size(); ++i)
        vertex[i] = mesh.add(shape.points[i], osg::Vec3d(), 0.0);
    // Inner edges are passed once in each direction and cancel; what is left is the rim.
    std::map<std::pair<unsigned, unsigned>, int> edges;
    for (const auto& t : shape.triangles) {
        auto [a, b, c] = t;
        const osg::Vec3d normal = (shape.points[b] - shape.points[a]) ^ (shape.points[c] - shape.points[a]);
        const double turn = normal * upAt(shape.points[a]);
        if (turn == 0.0)
            continue;
        if (turn < 0.0)
            std::swap(b, c);
        mesh.cap(vertex[a], vertex[b], vertex[c]);
        for (const auto& edge : {std::make_pair(a, b), std::make_pair(b, c), std::make_pair(c, a)}) {
            if (edge.first < edge.second)
                ++edges[edge];
            else
                --edges[{edge.second, edge.first}];
        }
    }
    for (const auto& edge : edges)
        for (int i = 0; i < std::abs(edge.second); ++i)
            edge.second > 0 ? mesh.wall(vertex[edge.first.first], vertex[edge.first.second])
                            : mesh.wall(vertex[edge.first.second], vertex[edge.first.first]);
}

void buildLines(const DrapeShape& shape, VolumeMesh& mesh)
{
    const double half = 0.5 * shape.lineWidth;
    for (const auto& segment : shape.segments) {
        const osg::Vec3d &a = shape.points[segment[0]], &b = shape.points[segment[1]];
        osg::Vec3d ahead = b - a;
        if (ahead.normalize() <= 0.0)
            continue;
        osg::Vec3d left = upAt(a) ^ ahead;
        left.normalize();
        // Ends reach half a width further, which closes the joints.
        const unsigned corners[] = {mesh.add(a, -left - ahead, half), mesh.add(b, -left + ahead, half),
                                    mesh.add(b, left + ahead, half), mesh.add(a, left - ahead, half)};
        mesh.cap(corners[0], corners[1], corners[2]);
        mesh.cap(corners[0], corners[2], corners[3]);
        for (int i = 0; i < 4; ++i)
            mesh.wall(corners[i], corners[(i + 1) % 4]);
    }
}
} // namespace

void subdivideForGlobe(DrapeShape& shape)
{
    Midpoints midpoints(shape.points);
    for (size_t i = 0; i < shape.triangles.size() && shape.triangles.size() < kMostTriangles;) {
        auto [a, b, c] = shape.triangles[i];
        // Turned so that a-b is the longest edge; both neighbours choose it by its
        // length alone, so they cut it in the same place.
        if (midpoints.length2(b, c) > midpoints.length2(a, b) &&
            midpoints.length2(b, c) >= midpoints.length2(c, a))
            std::tie(a, b, c) = std::make_tuple(b, c, a);
        else if (midpoints.length2(c, a) > midpoints.length2(a, b))
            std::tie(a, b, c) = std::make_tuple(c, a, b);
        if (!midpoints.tooLong(a, b)) {
            ++i;
            continue;
        }
        const unsigned m = midpoints.between(a, b);
        shape.triangles[i] = {a, m, c};
        shape.triangles.push_back({m, b, c});
    }
    for (size_t i = 0; i < shape.segments.size() && shape.segments.size() < kMostTriangles;) {
        const auto [a, b] = shape.segments[i];
        if (!midpoints.tooLong(a, b)) {
            ++i;
            continue;
        }
        const unsigned m = midpoints.between(a, b);
        shape.segments[i] = {a, m};
        shape.segments.push_back({m, b});
    }
}

osg::Vec3d ellipsoidUp(const osg::Vec3d& geocentric)
{
    return upAt(geocentric);
}

DrapeShape layOnGround(const DrapeShape& source, DrapeExtent& volume)
{
    DrapeShape shape = source;
    mergePoints(shape);
    subdivideForGlobe(shape);

    // Only the points that are used count for extent and heights.
    std::vector<bool> used(shape.points.size(), false);
    double longest2 = 0.0;
    const auto edge = [&](unsigned a, unsigned b) {
        used[a] = used[b] = true;
        longest2 = std::max(longest2, (shape.points[a] - shape.points[b]).length2());
    };
    for (const auto& t : shape.triangles) {
        edge(t[0], t[1]);
        edge(t[1], t[2]);
        edge(t[2], t[0]);
        volume.samples.push_back((shape.points[t[0]] + shape.points[t[1]] + shape.points[t[2]]) / 3.0);
    }
    for (const auto& s : shape.segments)
        edge(s[0], s[1]);
    osg::BoundingBoxd box;
    for (size_t i = 0; i < used.size(); ++i) {
        if (used[i]) {
            box.expandBy(shape.points[i]);
            volume.samples.push_back(shape.points[i]);
        }
    }
    if (!box.valid())
        return shape;

    volume.origin = box.center();
    volume.bound = osg::BoundingSphered(box.center(), box.radius());
    volume.sagitta = longest2 / (6.0 * kB); // of the circle round an equilateral triangle of that edge
    std::vector<osg::Vec3f> relative;
    for (size_t i = 0; i < used.size(); ++i)
        if (used[i])
            relative.emplace_back(shape.points[i] - volume.origin);
    volume.occludee = occludeeOf(volume.origin, relative, 9000.0);
    return shape;
}

DrapeVolume volumeOf(const DrapeShape& source)
{
    DrapeVolume volume;
    const DrapeShape shape = layOnGround(source, volume);
    if (!volume.bound.valid())
        return volume;

    VolumeMesh mesh(volume.origin);
    buildFill(shape, mesh);
    buildLines(shape, mesh);
    volume.geometry = mesh.build();
    return volume;
}
} // namespace osgEarth

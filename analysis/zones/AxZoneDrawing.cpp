#include "analysis/zones/AxZoneDrawing.h"
#include "scene/shape/AxRingTriangles.h"

#include <osg/BoundingBox>
#include <osg/Geometry>
#include <osg/LineWidth>
#include <osg/MatrixTransform>

#include <algorithm>
#include <cmath>
#include <vector>

using osgEarth::SpatialReference;
using osgEarth::Symbology::Geometry;
using osgEarth::Symbology::MultiGeometry;
using osgEarth::Symbology::Polygon;

namespace {
using Plane = std::vector<osg::Vec2d>;

// Circles have 73 points.
constexpr std::size_t pointsOfFan = 74;
// Edges are straight in longitude and latitude, as zones are tested and cut; drawn they
// are straight over the ground, and at this length, degrees, the two are a metre apart at most.
constexpr double longestEdge = 0.1;
// Rings of more points lose those that are nearest to their neighbours, a metre (degrees) to a hundred.
constexpr std::size_t mostPoints = 5000;
constexpr double leastThinning = 1e-5;
constexpr double mostThinning = 1e-3;
// Fills before outlines.
constexpr int fillBin = 1;
constexpr int outlineBin = 2;

bool IsOnGlobe(const osg::Vec3d& point)
{
    return std::abs(point.x()) <= 720.0 && std::abs(point.y()) <= 90.0;
}

double Distance(const osg::Vec2d& a, const osg::Vec2d& b)
{
    return std::max(std::abs(a.x() - b.x()), std::abs(a.y() - b.y()));
}

// Without what is not on the globe and points upon their neighbours.
Plane Cleaned(const Geometry& source)
{
    Plane ring;
    ring.reserve(source.size());
    for (const osg::Vec3d& point : source.asVector()) {
        const osg::Vec2d place(point.x(), point.y());
        if (IsOnGlobe(point) && (ring.empty() || place != ring.back()))
            ring.push_back(place);
    }
    for (double apart = leastThinning; ring.size() > mostPoints && apart <= mostThinning; apart *= 2.0) {
        Plane thinner;
        for (const osg::Vec2d& place : ring)
            if (thinner.empty() || Distance(place, thinner.back()) >= apart)
                thinner.push_back(place);
        ring.swap(thinner);
    }
    // Points that are many and far from each other make no outline that could be kept.
    const std::size_t stride = (ring.size() + mostPoints - 1) / mostPoints;
    if (stride > 1) {
        for (std::size_t i = 0; i * stride < ring.size(); ++i)
            ring[i] = ring[i * stride];
        ring.resize((ring.size() + stride - 1) / stride);
    }
    return ring;
}

// The same without a closing point.
Plane CleanedRing(const Geometry& source)
{
    Plane ring = Cleaned(source);
    while (ring.size() > 1 && ring.back() == ring.front())
        ring.pop_back();
    return ring;
}

Plane WithShortEdges(const Plane& ring, bool closed)
{
    const std::size_t edges = closed || ring.empty() ? ring.size() : ring.size() - 1;
    double length = 0.0;
    for (std::size_t i = 0; i < edges; ++i)
        length += Distance(ring[i], ring[(i + 1) % ring.size()]);
    const double step = std::max(longestEdge, length / mostPoints);
    Plane dense;
    for (std::size_t i = 0; i < edges; ++i) {
        const osg::Vec2d& from = ring[i];
        const osg::Vec2d along = ring[(i + 1) % ring.size()] - from;
        const int pieces = std::max(1, static_cast<int>(std::ceil(Distance(along, osg::Vec2d()) / step)));
        for (int k = 0; k < pieces; ++k)
            dense.push_back(from + along * (static_cast<double>(k) / pieces));
    }
    if (!closed && !ring.empty())
        dense.push_back(ring.back());
    return dense;
}

// Whether the ring goes once around the place, always in the same direction.
bool IsFanAround(const Plane& ring, const osg::Vec2d& centre)
{
    double turned = 0.0;
    double all = 0.0;
    for (std::size_t i = 0; i < ring.size(); ++i) {
        const osg::Vec2d a = ring[i] - centre;
        const osg::Vec2d b = ring[(i + 1) % ring.size()] - centre;
        const double angle = std::atan2(a.x() * b.y() - a.y() * b.x(), a * b);
        turned += angle;
        all += std::abs(angle);
    }
    return std::abs(std::abs(turned) - 2.0 * osg::PI) < 1e-6 && all - std::abs(turned) < 1e-6;
}

// Drawn draped, it lies where the ground is and not where its vertices are, so
// nothing can be hit that is seen.
class GroundGeometry : public osg::Geometry
{
public:
    // It does not change by itself, which a viewer that leaves out frames has to be told of its class.
    GroundGeometry() { setDataVariance(STATIC); }
    GroundGeometry(const GroundGeometry& other, const osg::CopyOp& copy) : osg::Geometry(other, copy) {}
    osg::Object* cloneType() const override { return new GroundGeometry; }
    osg::Object* clone(const osg::CopyOp& copy) const override { return new GroundGeometry(*this, copy); }
    using osg::Geometry::accept;
    // By its points: the usual way asks for the primitives, and is refused.
    osg::BoundingBox computeBoundingBox() const override
    {
        osg::BoundingBox box;
        if (const auto* points = dynamic_cast<const osg::Vec3Array*>(getVertexArray()))
            for (const osg::Vec3& point : *points)
                box.expandBy(point);
        return box;
    }
    bool supports(const osg::PrimitiveFunctor&) const override { return false; }
    void accept(osg::PrimitiveFunctor&) const override {}
    bool supports(const osg::PrimitiveIndexFunctor&) const override { return false; }
    void accept(osg::PrimitiveIndexFunctor&) const override {}

protected:
    ~GroundGeometry() override = default;
};

/// Collects the parts of an area and makes the node of them.
class AreaMesh
{
public:
    explicit AreaMesh(const SpatialReference& reference) : srs(*reference.getGeographicSRS()) {}

    void AddPolygon(const Geometry& outer)
    {
        std::vector<Plane> rings;
        const auto add = [&rings](const Geometry& source) {
            const Plane ring = CleanedRing(source);
            if (ring.size() >= 3)
                rings.push_back(WithShortEdges(ring, true));
        };
        add(outer);
        if (rings.empty())
            return;
        if (const auto* polygon = dynamic_cast<const Polygon*>(&outer))
            for (const auto& hole : polygon->getHoles())
                if (hole)
                    add(*hole);
        Fill(rings);
        for (const Plane& ring : rings)
            Outline(ring, true);
    }

    void AddLine(const Geometry& source)
    {
        const Plane line = Cleaned(source);
        if (line.size() >= 2)
            Outline(WithShortEdges(line, false), false);
    }

    void AddFan(const osg::Vec2d& centre, const Plane& ring)
    {
        fans.push_back({Point(centre)});
        for (const osg::Vec2d& place : ring)
            fans.back().push_back(Point(place));
        fans.back().push_back(fans.back()[1]);
        Outline(ring, true);
    }

    osg::ref_ptr<osg::Node> Build(const AxAreaColors& colors) const
    {
        osg::BoundingBoxd box;
        for (const osg::Vec3d& point : points)
            box.expandBy(point);
        osg::ref_ptr<osg::MatrixTransform> node = new osg::MatrixTransform;
        if (!box.valid())
            return node;
        node->setMatrix(osg::Matrixd::translate(box.center()));
        osg::ref_ptr<osg::Vec3Array> vertices = new osg::Vec3Array;
        vertices->reserve(points.size());
        for (const osg::Vec3d& point : points)
            vertices->push_back(point - box.center());

        osg::ref_ptr<osg::Geometry> fill = Shape(vertices.get(), colors.fill, fillBin);
        if (!triangles.empty())
            fill->addPrimitiveSet(Elements(GL_TRIANGLES, triangles));
        for (const auto& fan : fans)
            fill->addPrimitiveSet(Elements(GL_TRIANGLE_FAN, fan));
        if (fill->getNumPrimitiveSets() > 0)
            node->addChild(fill);
        osg::ref_ptr<osg::Geometry> line = Shape(vertices.get(), colors.outline, outlineBin);
        line->getOrCreateStateSet()->setAttributeAndModes(new osg::LineWidth(colors.outlineWidth));
        for (const auto& ring : outlines)
            line->addPrimitiveSet(Elements(GL_LINE_STRIP, ring));
        if (line->getNumPrimitiveSets() > 0)
            node->addChild(line);
        return node;
    }

private:
    static osg::DrawElementsUInt* Elements(GLenum mode, const std::vector<unsigned>& indices)
    {
        return new osg::DrawElementsUInt(mode, static_cast<unsigned>(indices.size()), indices.data());
    }

    static osg::ref_ptr<osg::Geometry> Shape(osg::Vec3Array* vertices, const osg::Vec4f& color, int bin)
    {
        osg::ref_ptr<osg::Geometry> shape = new GroundGeometry;
        shape->setUseDisplayList(false);
        shape->setUseVertexBufferObjects(true);
        shape->setVertexArray(vertices);
        osg::ref_ptr<osg::Vec4Array> colors = new osg::Vec4Array(1, &color);
        shape->setColorArray(colors, osg::Array::BIND_OVERALL);
        osg::StateSet* state = shape->getOrCreateStateSet();
        state->setRenderBinDetails(bin, "RenderBin");
        state->setMode(GL_LIGHTING, osg::StateAttribute::OFF);
        return shape;
    }

    unsigned Point(const osg::Vec2d& place)
    {
        osg::Vec3d world;
        srs.transformToWorld(osg::Vec3d(place.x(), place.y(), 0.0), world);
        points.push_back(world);
        return static_cast<unsigned>(points.size() - 1);
    }

    void Outline(const Plane& ring, bool closed)
    {
        std::vector<unsigned> line;
        for (const osg::Vec2d& place : ring)
            line.push_back(Point(place));
        if (closed)
            line.push_back(line.front());
        outlines.push_back(line);
    }

    void Fill(const std::vector<Plane>& rings)
    {
        const AxRingFill fill = AxFillRings(rings);
        Plane corners;
        for (const Plane& ring : rings)
            corners.insert(corners.end(), ring.begin(), ring.end());
        if (fill.triangles.empty()) {
            // A scribble: a fan covers all of it, and more of the ground rather than less.
            fans.emplace_back();
            for (const osg::Vec2d& corner : rings.front())
                fans.back().push_back(Point(corner));
            return;
        }
        for (const AxRingFill::Crossing& crossing : fill.crossings) {
            osg::Vec2d place;
            for (std::size_t i = 0; i < crossing.of.size(); ++i)
                if (crossing.weight[i] != 0.0)
                    place += corners[crossing.of[i]] * crossing.weight[i];
            corners.push_back(place);
        }
        const auto first = static_cast<unsigned>(points.size());
        for (const osg::Vec2d& corner : corners)
            Point(corner);
        for (const unsigned index : fill.triangles)
            triangles.push_back(first + index);
    }

    const SpatialReference& srs;
    std::vector<osg::Vec3d> points; // geocentric
    std::vector<unsigned> triangles;
    std::vector<std::vector<unsigned>> fans;
    std::vector<std::vector<unsigned>> outlines;
};

void AddAll(const Geometry& area, AreaMesh& mesh)
{
    const auto* several = dynamic_cast<const MultiGeometry*>(&area);
    if (!several)
        return mesh.AddPolygon(area);
    for (const auto& component : several->getComponents())
        if (component)
            AddAll(*component, mesh);
}
} // namespace

AxAreaColors AxZoneColors()
{
    return {osg::Vec4f(1.0f, 1.0f, 0.0f, 0.3f), osg::Vec4f(1.0f, 0.0f, 0.0f, 1.0f), 2.0f};
}

osg::ref_ptr<osg::Node> AxDrawArea(const Geometry& area, const SpatialReference& srs,
                                   const AxAreaColors& colors)
{
    AreaMesh mesh(srs);
    AddAll(area, mesh);
    return mesh.Build(colors);
}

osg::ref_ptr<osg::Node> AxDrawLine(const Geometry& line, const SpatialReference& srs, const osg::Vec4f& color,
                                   float width)
{
    AreaMesh mesh(srs);
    mesh.AddLine(line);
    return mesh.Build({osg::Vec4f(), color, width});
}

osg::ref_ptr<osg::Node> DrawNoflyZonerCircle(const std::string& id, const osg::Vec3d& centre,
                                             const Polygon& polygon, const SpatialReference& srs)
{
    const Plane ring = CleanedRing(polygon);
    const osg::Vec2d middle(centre.x(), centre.y());
    if (!polygon.getHoles().empty() || !IsOnGlobe(centre) || ring.size() < 3 || !IsFanAround(ring, middle))
        return DrawNoflyZone(id, polygon, srs);
    AreaMesh mesh(srs);
    mesh.AddFan(middle, WithShortEdges(ring, true));
    osg::ref_ptr<osg::Node> node = mesh.Build(AxZoneColors());
    node->setName(id);
    return node;
}

osg::ref_ptr<osg::Node> DrawNoflyZone(const std::string& id, const Geometry& pieces,
                                      const SpatialReference& srs)
{
    osg::ref_ptr<osg::Node> node = AxDrawArea(pieces, srs, AxZoneColors());
    node->setName(id);
    return node;
}

osg::ref_ptr<osg::Node> AxDrawZone(const std::string& id, const osg::Vec3d& centre, const Polygon& polygon,
                                   const MultiGeometry* pieces, const SpatialReference& srs)
{
    if (pieces && !pieces->getComponents().empty())
        return DrawNoflyZone(id, *pieces, srs);
    if (polygon.size() < pointsOfFan)
        return DrawNoflyZonerCircle(id, centre, polygon, srs);
    return DrawNoflyZone(id, polygon, srs);
}

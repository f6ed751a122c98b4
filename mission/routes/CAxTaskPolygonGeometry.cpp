// Lines and areas of a route.
#include "mission/routes/CAxTaskPolygon.h"

#include "scene/shape/AxWorldGeometry.h"

#include <osg/TriangleIndexFunctor>
#include <osgUtil/Tessellator>

#include <algorithm>
#include <cmath>
#include <numeric>

namespace {
/// A list of colours that may be shorter than that of the points. What is handed to the graphics card is as
/// long as the points: it must not read beyond the end.
class GapColors : public osg::Vec4Array
{
public:
    GapColors(const std::vector<osg::Vec4f>& colors, std::size_t pointCount, const osg::Vec4f& missing)
        : padded(colors)
    {
        assign(colors.begin(), colors.end());
        padded.resize(std::max(pointCount, colors.size()), missing);
    }
    using osg::Vec4Array::getDataPointer;
    const GLvoid* getDataPointer() const override { return padded.empty() ? nullptr : padded.data(); }
    unsigned getTotalDataSize() const override
    {
        return static_cast<unsigned>(padded.size() * sizeof(osg::Vec4f));
    }

private:
    std::vector<osg::Vec4f> padded;
};

struct TriangleCollector
{
    std::vector<unsigned> indices;
    void operator()(unsigned a, unsigned b, unsigned c) { indices.insert(indices.end(), {a, b, c}); }
};

// Whether all corners turn the same way, once round. The points are about level.
bool IsConvex(const osg::Vec3Array& ring)
{
    bool turnsLeft = false, turnsRight = false;
    float angle = 0.0f;
    const std::size_t count = ring.size();
    for (std::size_t i = 0; i < count; ++i) {
        const osg::Vec3f in = ring[(i + 1) % count] - ring[i];
        const osg::Vec3f out = ring[(i + 2) % count] - ring[(i + 1) % count];
        const float cross = in.x() * out.y() - in.y() * out.x();
        turnsLeft |= cross > 0.0f;
        turnsRight |= cross < 0.0f;
        angle += std::atan2(cross, in.x() * out.x() + in.y() * out.y());
    }
    return turnsLeft != turnsRight && std::abs(angle) < 7.0f;
}
} // namespace

osg::ref_ptr<AxWorldGeometry> CAxTaskPolygon::CreateGeom(const osg::Vec4f& edge, const osg::Vec4f& fill,
                                                         float width, const std::vector<osg::Vec3d>& points,
                                                         bool filled, EdgeMode mode,
                                                         osg::Array::Binding binding)
{
    osg::ref_ptr<AxWorldGeometry> geometry = new AxWorldGeometry;
    setPoints(*geometry, points, binding);
    geometry->SetLineWidth(width);
    AddEdgePrimitiveSet(*geometry, 0, static_cast<unsigned>(points.size()), edge, mode);
    if (filled && fill.a() > AxWorldGeometry::visibleAlpha)
        AddFillPrimitiveSet(*geometry, points, edge, fill);
    return geometry;
}

void CAxTaskPolygon::setPoints(AxWorldGeometry& geometry, const std::vector<osg::Vec3d>& points,
                               osg::Array::Binding binding)
{
    geometry.SetPoints(points);
    geometry.setColorArray(new osg::Vec4Array, binding);
}

void CAxTaskPolygon::AddEdgePrimitiveSet(osg::Geometry& geometry, unsigned first, unsigned last,
                                         const osg::Vec4f& color, EdgeMode mode)
{
    auto* colors = dynamic_cast<osg::Vec4Array*>(geometry.getColorArray());
    if (!colors || last <= first)
        return;
    const GLenum modes[] = {GL_LINE_LOOP, GL_LINE_STRIP, GL_LINES};
    osg::ref_ptr<osg::DrawElementsUInt> edges = new osg::DrawElementsUInt(modes[mode], last - first);
    std::iota(edges->begin(), edges->end(), first);
    geometry.addPrimitiveSet(edges);
    if (colors->getBinding() == osg::Array::BIND_OVERALL)
        colors->assign(1, color);
    else
        colors->insert(colors->end(), last - first, color);
    colors->dirty();
}

void CAxTaskPolygon::AddEdgePrimitiveSet(osg::Geometry& geometry, int first, int count,
                                         const std::vector<osg::Vec4f>& colors, const osg::Vec4f& missing)
{
    const auto* old = dynamic_cast<const osg::Vec4Array*>(geometry.getColorArray());
    if (!old || old->getBinding() != osg::Array::BIND_PER_VERTEX || !geometry.getVertexArray())
        return;
    geometry.addPrimitiveSet(new osg::DrawArrays(GL_LINES, first, count));
    geometry.setColorArray(new GapColors(colors, geometry.getVertexArray()->getNumElements(), missing),
                           osg::Array::BIND_PER_VERTEX);
}

void CAxTaskPolygon::AddFillPrimitiveSet(AxWorldGeometry& geometry, const std::vector<osg::Vec3d>& ring,
                                         const osg::Vec4f& edge, const osg::Vec4f& fill)
{
    if (ring.size() < 3)
        return;
    // Around a point of the ring, because the tessellator reckons in single precision.
    osg::Matrixd level;
    level.makeRotate(ring.front(), osg::Vec3d(0.0, 0.0, 1.0));
    osg::ref_ptr<osg::Vec3Array> local = new osg::Vec3Array;
    for (const osg::Vec3d& point : ring)
        local->push_back(osg::Vec3f((point - ring.front()) * level));
    osg::ref_ptr<osg::Geometry> polygon = new osg::Geometry;
    polygon->setVertexArray(local);
    polygon->addPrimitiveSet(new osg::DrawArrays(GL_POLYGON, 0, static_cast<int>(ring.size())));
    if (!IsConvex(*local)) {
        osg::ref_ptr<osgUtil::Tessellator> tessellator = new osgUtil::Tessellator;
        tessellator->setTessellationType(osgUtil::Tessellator::TESS_TYPE_GEOMETRY);
        tessellator->setWindingType(osgUtil::Tessellator::TESS_WINDING_ODD);
        tessellator->retessellatePolygons(*polygon);
    }
    osg::TriangleIndexFunctor<TriangleCollector> triangles;
    polygon->accept(triangles);

    const osg::Matrixd back = osg::Matrixd::inverse(level);
    const auto& inside = static_cast<const osg::Vec3Array&>(*polygon->getVertexArray());
    std::vector<osg::Vec3d> points = ring;
    for (const osg::Vec3f& point : inside)
        points.push_back(ring.front() + osg::Vec3d(point) * back);
    setPoints(geometry, points, osg::Array::BIND_PER_VERTEX);
    auto* colors = static_cast<osg::Vec4Array*>(geometry.getColorArray());
    osg::ref_ptr<osg::DrawElementsUInt> elements = new osg::DrawElementsUInt(GL_TRIANGLES);
    for (const unsigned index : triangles.indices)
        elements->push_back(static_cast<unsigned>(ring.size()) + index);
    geometry.addPrimitiveSet(elements);
    AddEdgePrimitiveSet(geometry, 0, static_cast<unsigned>(ring.size()), edge, LineLoop);
    colors->insert(colors->end(), inside.size(), fill);
}

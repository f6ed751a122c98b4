#include "features/ShapeDrawables.h"
#include "drape/DrapeShape.h"
#include <osg/BlendFunc>
#include <osg/LineWidth>
#include <osg/Point>
#include <osgUtil/Tessellator>

namespace osgEarth::Features {
using namespace Symbology;

namespace {
osg::ref_ptr<osg::Geometry> newGeometry(const Color& color)
{
    osg::ref_ptr<osg::Geometry> geometry = new osg::Geometry();
    geometry->setUseDisplayList(false);
    geometry->setUseVertexBufferObjects(true);
    osg::ref_ptr<osg::Vec4Array> colors = new osg::Vec4Array(1, &color);
    geometry->setColorArray(colors.get(), osg::Array::BIND_OVERALL);
    if (color.a() < 1.0f) {
        osg::StateSet* state = geometry->getOrCreateStateSet();
        state->setAttributeAndModes(
            new osg::BlendFunc(osg::BlendFunc::SRC_ALPHA, osg::BlendFunc::ONE_MINUS_SRC_ALPHA));
        state->setRenderingHint(osg::StateSet::TRANSPARENT_BIN);
    }
    return geometry;
}

bool isArea(const Geometry& part)
{
    return part.getType() == Geometry::TYPE_POLYGON && part.size() > 2;
}

osg::ref_ptr<osg::Geometry> makeFill(const Geometry& part, const Color& color)
{
    osg::ref_ptr<osg::Geometry> geometry = newGeometry(color);
    osg::ref_ptr<osg::Vec3Array> points = new osg::Vec3Array();
    const auto addRing = [&](const Geometry& ring) {
        const GLint first = static_cast<GLint>(points->size());
        points->insert(points->end(), ring.begin(), ring.end());
        geometry->addPrimitiveSet(new osg::DrawArrays(GL_POLYGON, first, static_cast<GLsizei>(ring.size())));
    };
    addRing(part);
    for (const auto& hole : static_cast<const Polygon&>(part).getHoles())
        addRing(*hole);
    geometry->setVertexArray(points.get());
    osg::ref_ptr<osgUtil::Tessellator> tessellator = new osgUtil::Tessellator();
    tessellator->setTessellationType(osgUtil::Tessellator::TESS_TYPE_GEOMETRY);
    tessellator->setWindingType(osgUtil::Tessellator::TESS_WINDING_ODD);
    tessellator->setBoundaryOnly(false);
    tessellator->retessellatePolygons(*geometry);
    return geometry;
}

void addLine(const Geometry& part, osg::Vec3Array& points, osg::Geometry& geometry)
{
    const bool closed = dynamic_cast<const Ring*>(&part) != nullptr;
    const GLint first = static_cast<GLint>(points.size());
    points.insert(points.end(), part.begin(), part.end());
    geometry.addPrimitiveSet(
        new osg::DrawArrays(closed ? GL_LINE_LOOP : GL_LINE_STRIP, first, static_cast<GLsizei>(part.size())));
}
} // namespace

osg::ref_ptr<osg::Node> makeShape(const Geometry& shape, const Style& style)
{
    const PolygonSymbol* polygon = style.get<PolygonSymbol>();
    const LineSymbol* line = style.get<LineSymbol>();
    const PointSymbol* point = style.get<PointSymbol>();
    const Color fill = polygon ? polygon->fill()->color() : Color(0.0f, 0.0f, 0.0f, 0.0f);
    const Color stroke = line ? line->stroke()->color() : Color(0.0f, 0.0f, 0.0f, 0.0f);

    osg::ref_ptr<osg::Geode> geode = new osg::Geode();
    osg::ref_ptr<osg::Geometry> lines = newGeometry(stroke),
                                dots = newGeometry(point ? point->fill()->color() : stroke);
    osg::ref_ptr<osg::Vec3Array> linePoints = new osg::Vec3Array(), dotPoints = new osg::Vec3Array();
    if (fill.a() >= kLeastVisibleAlpha)
        for (ConstGeometryIterator it(&shape, false); it.hasMore();) {
            const Geometry* part = it.next();
            if (isArea(*part))
                geode->addDrawable(makeFill(*part, fill));
        }
    for (ConstGeometryIterator it(&shape); it.hasMore();) {
        const Geometry* part = it.next();
        if (part->getType() == Geometry::TYPE_POINTSET)
            dotPoints->insert(dotPoints->end(), part->begin(), part->end());
        else if (part->size() > 1 && stroke.a() >= kLeastVisibleAlpha)
            addLine(*part, *linePoints, *lines);
    }
    if (!linePoints->empty()) {
        lines->setVertexArray(linePoints.get());
        lines->getOrCreateStateSet()->setAttributeAndModes(
            new osg::LineWidth(line->stroke()->width().value()));
        geode->addDrawable(lines);
    }
    if (!dotPoints->empty() && point) {
        dots->setVertexArray(dotPoints.get());
        dots->addPrimitiveSet(new osg::DrawArrays(GL_POINTS, 0, static_cast<GLsizei>(dotPoints->size())));
        dots->getOrCreateStateSet()->setAttributeAndModes(new osg::Point(point->size().value()));
        geode->addDrawable(dots);
    }
    if (geode->getNumDrawables() == 0)
        return {};
    return geode;
}
} // namespace osgEarth::Features

#include "drape/DrapeShape.h"
#include <functional>

namespace osgEarth {
namespace {
bool isLine(GLenum mode)
{
    return mode == GL_LINES || mode == GL_LINE_STRIP || mode == GL_LINE_LOOP;
}

/// One run of indices of one mode, as triangles and segments.
void addRun(GLenum mode, const std::vector<unsigned>& run, DrapeShape& shape)
{
    const size_t n = run.size();
    const auto triangle = [&](size_t a, size_t b, size_t c) {
        shape.triangles.push_back({run[a], run[b], run[c]});
    };
    const auto segment = [&](size_t a, size_t b) { shape.segments.push_back({run[a], run[b]}); };
    switch (mode) {
    case GL_TRIANGLES:
        for (size_t i = 0; i + 2 < n; i += 3)
            triangle(i, i + 1, i + 2);
        break;
    case GL_TRIANGLE_STRIP:
    case GL_QUAD_STRIP:
        for (size_t i = 0; i + 2 < n; ++i)
            triangle(i, i + 1, i + 2);
        break;
    case GL_TRIANGLE_FAN:
    case GL_POLYGON:
        for (size_t i = 1; i + 1 < n; ++i)
            triangle(0, i, i + 1);
        break;
    case GL_QUADS:
        for (size_t i = 0; i + 3 < n; i += 4) {
            triangle(i, i + 1, i + 2);
            triangle(i, i + 2, i + 3);
        }
        break;
    case GL_LINES:
        for (size_t i = 0; i + 1 < n; i += 2)
            segment(i, i + 1);
        break;
    case GL_LINE_STRIP:
    case GL_LINE_LOOP:
        for (size_t i = 0; i + 1 < n; ++i)
            segment(i, i + 1);
        if (mode == GL_LINE_LOOP && n > 2)
            segment(n - 1, 0);
        break;
    default:
        break; // points have no area
    }
}

void forEachRun(const osg::PrimitiveSet& set, const std::function<void(const std::vector<unsigned>&)>& visit)
{
    std::vector<unsigned> run;
    if (const auto* lengths = dynamic_cast<const osg::DrawArrayLengths*>(&set)) {
        unsigned at = static_cast<unsigned>(lengths->getFirst());
        for (const GLsizei length : *lengths) {
            run.clear();
            for (GLsizei i = 0; i < length; ++i)
                run.push_back(at++);
            visit(run);
        }
        return;
    }
    for (unsigned i = 0; i < set.getNumIndices(); ++i)
        run.push_back(set.index(i));
    visit(run);
}

osg::Vec3d pointAt(const osg::Array& array, unsigned i)
{
    switch (array.getType()) {
    case osg::Array::Vec3ArrayType:
        return static_cast<const osg::Vec3Array&>(array)[i];
    case osg::Array::Vec3dArrayType:
        return static_cast<const osg::Vec3dArray&>(array)[i];
    case osg::Array::Vec4ArrayType: {
        const osg::Vec4& v = static_cast<const osg::Vec4Array&>(array)[i];
        return {v.x(), v.y(), v.z()};
    }
    case osg::Array::Vec2ArrayType: {
        const osg::Vec2& v = static_cast<const osg::Vec2Array&>(array)[i];
        return {v.x(), v.y(), 0.0};
    }
    default:
        return {};
    }
}

osg::Vec4f colorAt(const osg::Array* array, unsigned i)
{
    if (!array || i >= array->getNumElements())
        return {1.0f, 1.0f, 1.0f, 1.0f};
    if (const auto* floats = dynamic_cast<const osg::Vec4Array*>(array))
        return (*floats)[i];
    if (const auto* bytes = dynamic_cast<const osg::Vec4ubArray*>(array)) {
        const osg::Vec4ub& c = (*bytes)[i];
        return osg::Vec4f(c.r(), c.g(), c.b(), c.a()) / 255.0f;
    }
    if (const auto* rgb = dynamic_cast<const osg::Vec3Array*>(array))
        return {(*rgb)[i], 1.0f};
    return {1.0f, 1.0f, 1.0f, 1.0f};
}
} // namespace

std::vector<DrapeShape> shapesOf(const osg::Geometry& geometry, const osg::Matrixd& localToWorld,
                                 float lineWidth)
{
    std::vector<DrapeShape> shapes;
    const osg::Array* vertices = geometry.getVertexArray();
    if (!vertices || vertices->getNumElements() == 0)
        return shapes;

    const osg::Array* colors = geometry.getColorArray();
    const auto binding = colors ? colors->getBinding() : osg::Array::BIND_OVERALL;
    for (unsigned s = 0; s < geometry.getNumPrimitiveSets(); ++s) {
        const osg::PrimitiveSet& set = *geometry.getPrimitiveSet(s);
        if (set.getNumIndices() == 0)
            continue;
        const unsigned colorIndex = binding == osg::Array::BIND_PER_VERTEX          ? set.index(0)
                                    : binding == osg::Array::BIND_PER_PRIMITIVE_SET ? s
                                                                                    : 0u;
        const osg::Vec4f color = colorAt(colors, colorIndex);
        if (color.a() < kLeastVisibleAlpha)
            continue;
        const bool line = isLine(set.getMode());
        const bool same =
            !shapes.empty() && shapes.back().color == color && shapes.back().segments.empty() != line;
        if (!same) {
            shapes.emplace_back();
            shapes.back().color = color;
            shapes.back().lineWidth = lineWidth;
        }
        const unsigned count = vertices->getNumElements();
        forEachRun(set, [&](const std::vector<unsigned>& run) {
            for (const unsigned index : run)
                if (index >= count)
                    return; // an index that names no vertex makes the run meaningless
            addRun(set.getMode(), run, shapes.back());
        });
    }

    std::vector<osg::Vec3d> points(vertices->getNumElements());
    for (unsigned i = 0; i < points.size(); ++i)
        points[i] = pointAt(*vertices, i) * localToWorld;
    for (DrapeShape& shape : shapes)
        shape.points = points;
    return shapes;
}
} // namespace osgEarth

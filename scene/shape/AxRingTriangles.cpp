#include "scene/shape/AxRingTriangles.h"

#include <osg/GL>
#include <osg/GLU>

#include <algorithm>
#include <cstdint>
#include <memory>

namespace {
// What the tessellator carries for a point: its index, shifted past null.
void* ToHandle(std::size_t index)
{
    // NOLINTNEXTLINE(performance-no-int-to-ptr): pointers are all that the tessellator carries
    return reinterpret_cast<void*>(static_cast<std::uintptr_t>(index + 1));
}

unsigned ToIndex(const void* handle)
{
    return static_cast<unsigned>(reinterpret_cast<std::uintptr_t>(handle) - 1);
}

struct Filling
{
    AxRingFill fill;
    std::size_t ringSize = 0;
    bool failed = false;
};

void GL_APIENTRY TakeCorner(void* corner, void* filling)
{
    static_cast<Filling*>(filling)->fill.triangles.push_back(ToIndex(corner));
}

void GL_APIENTRY TakeCrossing(GLdouble*, void* of[4], GLfloat weight[4], void** made, void* filling)
{
    auto& target = *static_cast<Filling*>(filling);
    AxRingFill::Crossing crossing{};
    for (std::size_t i = 0; i < 4; ++i)
        if (of[i]) {
            crossing.of[i] = ToIndex(of[i]);
            crossing.weight[i] = static_cast<double>(weight[i]);
        }
    *made = ToHandle(target.ringSize + target.fill.crossings.size());
    target.fill.crossings.push_back(crossing);
}

// Asking for edge flags makes the tessellator hand out single triangles.
void GL_APIENTRY TakeEdgeFlag(GLboolean, void*) {}

void GL_APIENTRY TakeError(GLenum, void* filling)
{
    static_cast<Filling*>(filling)->failed = true;
}

double Turn(const osg::Vec2d& a, const osg::Vec2d& b, const osg::Vec2d& c)
{
    return (b.x() - a.x()) * (c.y() - a.y()) - (b.y() - a.y()) * (c.x() - a.x());
}

// The tessellator makes a point of every crossing, and a scribble of a thousand
// lines has a hundred thousand of them: a second's work for a picture that
// tells nothing. A sample of the pairs of edges finds it out beforehand.
bool IsScribble(const std::vector<std::vector<osg::Vec2d>>& rings)
{
    constexpr std::size_t fewEdges = 250;
    constexpr std::size_t samples = 1000;
    constexpr std::size_t mostCrossings = 10000;
    std::size_t count = 0;
    for (const std::vector<osg::Vec2d>& ring : rings)
        count += ring.size();
    if (count < fewEdges)
        return false;
    std::vector<std::array<osg::Vec2d, 2>> edges;
    edges.reserve(count);
    for (const std::vector<osg::Vec2d>& ring : rings)
        for (std::size_t i = 0; i < ring.size(); ++i)
            edges.push_back({ring[i], ring[(i + 1) % ring.size()]});
    std::uint32_t random = 1;
    const auto next = [&random, count] {
        random = random * 1664525u + 1013904223u; // Numerical Recipes' quick generator
        return static_cast<std::size_t>(random >> 8) % count;
    };
    std::size_t met = 0;
    for (std::size_t i = 0; i < samples; ++i) {
        const auto& [a, b] = edges[next()];
        const auto& [c, d] = edges[next()];
        met += Turn(a, b, c) * Turn(a, b, d) < 0.0 && Turn(c, d, a) * Turn(c, d, b) < 0.0;
    }
    return met * count / samples * count / 2 > mostCrossings;
}

template <typename Function> osg::_GLUfuncptr Callback(Function function)
{
    return reinterpret_cast<osg::_GLUfuncptr>(function);
}
} // namespace

AxRingFill AxFillRing(const std::vector<osg::Vec2d>& ring)
{
    return AxFillRings({ring});
}

AxRingFill AxFillRings(const std::vector<std::vector<osg::Vec2d>>& rings)
{
    if (std::none_of(rings.begin(), rings.end(), [](const auto& ring) { return ring.size() >= 3; }) ||
        IsScribble(rings))
        return {};
    const std::unique_ptr<osg::GLUtesselator, void (*)(osg::GLUtesselator*)> tess(
        osg::gluNewTess(), [](osg::GLUtesselator* t) { osg::gluDeleteTess(t); });
    if (!tess)
        return {};
    osg::gluTessCallback(tess.get(), GLU_TESS_VERTEX_DATA, Callback(&TakeCorner));
    osg::gluTessCallback(tess.get(), GLU_TESS_COMBINE_DATA, Callback(&TakeCrossing));
    osg::gluTessCallback(tess.get(), GLU_TESS_EDGE_FLAG_DATA, Callback(&TakeEdgeFlag));
    osg::gluTessCallback(tess.get(), GLU_TESS_ERROR_DATA, Callback(&TakeError));
    osg::gluTessProperty(tess.get(), GLU_TESS_WINDING_RULE, GLU_TESS_WINDING_ODD);
    osg::gluTessNormal(tess.get(), 0.0, 0.0, 1.0);

    Filling filling;
    for (const std::vector<osg::Vec2d>& ring : rings)
        filling.ringSize += ring.size();
    osg::gluTessBeginPolygon(tess.get(), &filling);
    std::size_t index = 0;
    for (const std::vector<osg::Vec2d>& ring : rings) {
        osg::gluTessBeginContour(tess.get());
        for (const osg::Vec2d& point : ring) {
            GLdouble location[3] = {point.x(), point.y(), 0.0};
            osg::gluTessVertex(tess.get(), location, ToHandle(index++));
        }
        osg::gluTessEndContour(tess.get());
    }
    osg::gluTessEndPolygon(tess.get());
    if (filling.failed || filling.fill.triangles.size() % 3 != 0)
        return {};
    return std::move(filling.fill);
}

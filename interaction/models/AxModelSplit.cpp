#include "interaction/models/AxModelSplit.h"
#include "scene/shape/AxTriangleChunks.h"

#include <osg/Geode>
#include <osg/Geometry>
#include <osg/Group>
#include <osg/ref_ptr>
#include <osg/TriangleIndexFunctor>

#include <algorithm>
#include <array>
#include <cstddef>
#include <vector>

namespace {
// A pick of so many takes a fraction of a millisecond; fewer make more to look at in each frame.
constexpr std::size_t mostTriangles = 20000;

using Triangle = std::array<unsigned, 3>;

struct TriangleList
{
    void operator()(unsigned a, unsigned b, unsigned c) { triangles.push_back({a, b, c}); }
    std::vector<Triangle> triangles;
};

struct Splitter
{
    osg::Geometry& whole;
    const osg::Vec3Array& vertices;
    std::vector<osg::ref_ptr<osg::Geometry>> parts;

    osg::Vec3 Middle(const Triangle& triangle) const
    {
        return (vertices[triangle[0]] + vertices[triangle[1]] + vertices[triangle[2]]) / 3.0f;
    }

    void Split(std::vector<Triangle>::iterator begin, std::vector<Triangle>::iterator end)
    {
        const auto half = begin + (end - begin) / 2;
        if (static_cast<std::size_t>(end - begin) <= mostTriangles || !Part(begin, half, end))
            return Keep(begin, end);
        Split(begin, half);
        Split(half, end);
    }

private:
    using Place = std::vector<Triangle>::iterator;

    // Those of one side come before `half`; false where all are at one place.
    bool Part(Place begin, Place half, Place end) const
    {
        osg::BoundingBox middles;
        for (auto triangle = begin; triangle != end; ++triangle)
            middles.expandBy(Middle(*triangle));
        const osg::Vec3 size = middles._max - middles._min;
        const int axis = static_cast<int>(std::max_element(size.ptr(), size.ptr() + 3) - size.ptr());
        if (!(size[axis] > 0.0f))
            return false;
        std::nth_element(begin, half, end, [this, axis](const Triangle& a, const Triangle& b) {
            return Middle(a)[axis] < Middle(b)[axis];
        });
        return true;
    }

    void Order(Place begin, Place end) const
    {
        constexpr auto few = static_cast<std::ptrdiff_t>(AxTriangleChunks::trianglesOfOne);
        // All chunks but the last are full.
        const auto half = begin + ((end - begin) / 2 + few - 1) / few * few;
        if (end - begin <= few || !Part(begin, half, end))
            return;
        Order(begin, half);
        Order(half, end);
    }

    void Keep(std::vector<Triangle>::iterator begin, std::vector<Triangle>::iterator end)
    {
        Order(begin, end);
        osg::ref_ptr<AxTriangleChunks> chunks = new AxTriangleChunks;
        osg::ref_ptr<osg::DrawElementsUInt> indices = new osg::DrawElementsUInt(GL_TRIANGLES);
        indices->reserve(static_cast<std::size_t>(3 * (end - begin)));
        for (auto triangle = begin; triangle != end; ++triangle) {
            if (static_cast<std::size_t>(triangle - begin) % AxTriangleChunks::trianglesOfOne == 0)
                chunks->boxes.emplace_back();
            for (const unsigned corner : *triangle) {
                indices->push_back(corner);
                chunks->boxes.back().expandBy(vertices[corner]);
            }
        }
        // The arrays are those of all parts, so a box around them would be that of the whole.
        for (const osg::BoundingBox& box : chunks->boxes)
            chunks->box.expandBy(box);
        osg::ref_ptr<osg::Geometry> part = new osg::Geometry(whole, osg::CopyOp::SHALLOW_COPY);
        part->removePrimitiveSet(0, part->getNumPrimitiveSets());
        part->addPrimitiveSet(indices);
        part->setComputeBoundingBoxCallback(chunks);
        parts.push_back(part);
    }
};

bool IsOfVertices(const osg::Array* array)
{
    return !array || array->getBinding() == osg::Array::BIND_OVERALL ||
           array->getBinding() == osg::Array::BIND_PER_VERTEX;
}
} // namespace

void AxSplitGeometry(osg::Geometry& geometry)
{
    const auto* vertices = dynamic_cast<const osg::Vec3Array*>(geometry.getVertexArray());
    if (!vertices || !IsOfVertices(geometry.getColorArray()) || !IsOfVertices(geometry.getNormalArray()))
        return;
    osg::TriangleIndexFunctor<TriangleList> list;
    geometry.accept(list);
    if (list.triangles.size() <= mostTriangles)
        return;
    Splitter splitter{geometry, *vertices, {}};
    splitter.Split(list.triangles.begin(), list.triangles.end());
    const osg::ref_ptr<osg::Geometry> kept(&geometry);
    // What counts its children, as levels of detail and switches do, has as many as before.
    const osg::ref_ptr<osg::Group> together = new osg::Group;
    together->setDataVariance(osg::Object::STATIC);
    for (const auto& part : splitter.parts)
        together->addChild(part);
    for (osg::Group* parent : osg::Node::ParentList(geometry.getParents())) {
        if (!parent->asGeode()) {
            parent->replaceChild(&geometry, together);
            continue;
        }
        for (const auto& part : splitter.parts)
            parent->addChild(part);
        parent->removeChild(&geometry);
    }
}

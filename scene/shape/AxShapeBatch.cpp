#include "scene/shape/AxShapeBatch.h"
#include "scene/shape/AxWorldUniforms.h"

#include <osgUtil/CullVisitor>

#include <algorithm>

namespace {
template <typename Array, typename Values> void Append(Array& array, const Values& values)
{
    array.insert(array.end(), values.begin(), values.end());
}

void AppendIndices(osg::DrawElementsUInt& set, const std::vector<unsigned>& indices, unsigned first)
{
    for (const unsigned index : indices)
        set.push_back(first + index);
}
} // namespace

/// The shapes of a frame that share a state. Built anew where they are others
/// than in the frame before.
class AxShapeBatches::Batch : public osg::Geometry
{
public:
    Batch()
    {
        setUseDisplayList(false);
        setSupportsDisplayList(false);
        setUseVertexBufferObjects(true);
        setCullingActive(false);
        setVertexArray(points);
        setVertexAttribArray(restAttribute, rest, osg::Array::BIND_PER_VERTEX);
        setColorArray(colors, osg::Array::BIND_PER_VERTEX);
        addPrimitiveSet(triangles);
        addPrimitiveSet(segments);
    }

    void drawImplementation(osg::RenderInfo& info) const override
    {
        const_cast<Batch*>(this)->build();
        AxSetEyeUniforms(*info.getState());
        osg::Geometry::drawImplementation(info);
    }

    const osgUtil::StateGraph* state = nullptr; // compared, never followed
    const osg::RefMatrix* place = nullptr;      // compared, never followed
    const osg::Camera* camera = nullptr;        // compared, never followed
    std::vector<std::shared_ptr<const AxBatchMesh>> shapes;

private:
    void build()
    {
        if (shapes == built)
            return;
        built = shapes;
        points->clear();
        rest->clear();
        colors->clear();
        triangles->clear();
        segments->clear();
        for (const auto& shape : built) {
            const auto first = static_cast<unsigned>(points->size());
            Append(*points, shape->points);
            Append(*rest, shape->rest);
            Append(*colors, shape->colors);
            AppendIndices(*triangles, shape->triangles, first);
            AppendIndices(*segments, shape->segments, first);
        }
        points->dirty();
        rest->dirty();
        colors->dirty();
        triangles->dirty();
        segments->dirty();
    }

    osg::Vec3Array* points = new osg::Vec3Array;
    osg::Vec3Array* rest = new osg::Vec3Array;
    osg::Vec4Array* colors = new osg::Vec4Array;
    osg::DrawElementsUInt* triangles = new osg::DrawElementsUInt(GL_TRIANGLES);
    osg::DrawElementsUInt* segments = new osg::DrawElementsUInt(GL_LINES);
    std::vector<std::shared_ptr<const AxBatchMesh>> built;
};

AxShapeBatches::AxShapeBatches() = default;
AxShapeBatches::~AxShapeBatches() = default;

void AxShapeBatches::Take(const std::shared_ptr<const AxBatchMesh>& mesh, osgUtil::CullVisitor& cull,
                          float depth)
{
    const unsigned number = cull.getTraversalNumber();
    if (frame != number) {
        frame = number;
        used = 0;
    }
    // All cameras of a frame are culled before the first of them is drawn.
    const osg::Camera* camera = cull.getCurrentCamera();
    const osgUtil::StateGraph* state = cull.getCurrentStateGraph();
    osg::RefMatrix* place = cull.getModelViewMatrix();
    const auto end = batches.begin() + static_cast<std::ptrdiff_t>(used);
    auto batch = std::find_if(batches.begin(), end, [&](const osg::ref_ptr<Batch>& known) {
        return known->state == state && known->place == place && known->camera == camera;
    });
    if (batch == end) {
        if (used == batches.size())
            batches.emplace_back(new Batch);
        batch = batches.begin() + static_cast<std::ptrdiff_t>(used++);
        (*batch)->state = state;
        (*batch)->place = place;
        (*batch)->camera = camera;
        (*batch)->shapes.clear();
        cull.addDrawableAndDepth(batch->get(), place, depth);
    }
    (*batch)->shapes.push_back(mesh);
}

void AxShapeBatches::ReleaseGLObjects(osg::State* state) const
{
    for (const auto& batch : batches)
        batch->releaseGLObjects(state);
}

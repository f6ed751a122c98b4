#include "analysis/models/AxModelBound.h"
#include "analysis/models/ModelComputeBounds.h"
#include "analysis/models/ModelVertexVisitor.h"

#include <osg/LineWidth>
#include <osg/PagedLOD>
#include <osg/ProxyNode>

#include <vector>

namespace {
// Light blue: neither a block's colour nor a zone's.
const osg::Vec4 outlineColor(0.35f, 0.85f, 1.0f, 0.9f);
constexpr float outlineWidth = 2.0f;
/// Above it somebody may move a model, or hang parts into it.
constexpr int depthOfWholes = 3;

osg::ref_ptr<osg::Node> SnapshotOf(osg::Node& node, int depth)
{
    osg::Group* const group = node.asGroup();
    if (!group)
        return &node;
    const auto* const paged = dynamic_cast<const osg::PagedLOD*>(group);
    unsigned kept = 0;
    while (kept < group->getNumChildren() && (!paged || paged->getFileName(kept).empty()))
        ++kept;
    std::vector<osg::ref_ptr<osg::Node>> children;
    bool isOther = paged || dynamic_cast<const osg::ProxyNode*>(group) || depth < depthOfWholes;
    for (unsigned i = 0; i < kept; ++i) {
        children.push_back(SnapshotOf(*group->getChild(i), depth + 1));
        isOther |= children.back() != group->getChild(i);
    }
    if (!isOther)
        return group;
    const osg::ref_ptr<osg::Group> copy = osg::clone(group, osg::CopyOp::SHALLOW_COPY);
    // A PagedLOD's own function would forget the names of the files.
    copy->osg::Group::removeChildren(kept, copy->getNumChildren() - kept);
    for (unsigned i = 0; i < kept; ++i)
        copy->setChild(i, children[i]);
    return copy;
}
} // namespace

osg::ref_ptr<osg::Node> AxModelSnapshot(osg::Node& model)
{
    return SnapshotOf(model, 0);
}

QVariantList AxModelOutline(const AxModelBoundJob& job, const std::function<bool()>& goOn)
{
    if (!job.model || !job.srs)
        return {};
    ModelVertexVisitor visitor(job.modelToWorld);
    visitor.SetLevelsToRead(job.levelsToRead, job.filesToRead);
    visitor.SetGoOn(goOn);
    ModelComputeBounds bounds(job.srs);
    visitor.SetReduce([&bounds](std::vector<osg::Vec3d>& vertices) { bounds.Reduce(vertices); });
    job.model->accept(visitor);
    if ((goOn && !goOn()) || !bounds.Compute(visitor.GetVertices(), job.margin))
        return {};
    QVariantList outline;
    for (const QPointF& place : bounds.GetHull())
        outline += QVariant(QVariantList{place.x(), place.y(), bounds.GetLowest()});
    return outline;
}

osg::ref_ptr<osg::Geometry> AxOutlineDrawable(const QVariantList& outline,
                                              const osgEarth::SpatialReference& srs)
{
    if (outline.isEmpty())
        return nullptr;
    osg::ref_ptr<osg::Vec3dArray> vertices = new osg::Vec3dArray;
    for (const QVariant& place : outline) {
        const QVariantList numbers = place.toList();
        osg::Vec3d world;
        srs.transformToWorld(
            {numbers.value(0).toDouble(), numbers.value(1).toDouble(), numbers.value(2).toDouble()}, world);
        vertices->push_back(world);
    }
    osg::ref_ptr<osg::Geometry> line = new osg::Geometry;
    line->setVertexArray(vertices);
    osg::ref_ptr<osg::Vec4Array> color = new osg::Vec4Array(1);
    (*color)[0] = outlineColor;
    line->setColorArray(color, osg::Array::BIND_OVERALL);
    osg::StateSet* state = line->getOrCreateStateSet();
    state->setAttributeAndModes(new osg::LineWidth(outlineWidth));
    state->setMode(GL_LIGHTING, osg::StateAttribute::OFF);
    line->addPrimitiveSet(new osg::DrawArrays(GL_LINE_LOOP, 0, static_cast<int>(vertices->size())));
    return line;
}

#include "interaction/models/AxModelGeometry.h"
#include "interaction/models/AxModelMerge.h"
#include "interaction/models/AxModelSplit.h"

#include <osg/Geometry>
#include <osg/Material>
#include <osg/NodeVisitor>
#include <osg/PagedLOD>
#include <osg/ProxyNode>
#include <osg/Texture>
#include <osg/Transform>
#include <osg/TriangleIndexFunctor>
#include <osgDB/Options>
#include <osgUtil/SmoothingVisitor>

#include <cmath>
#include <set>
#include <vector>

namespace {
// More nodes than this are put together: the still-picture rule looks at each of them in every frame.
constexpr std::size_t mostNodes = 4000;
// From here on single precision has coarser steps than a millimetre.
constexpr double farFromZero = 10000.0;
// A state looks through all its users whenever one goes.
constexpr unsigned mostUsersOfState = 1000;
const osg::Vec4 plainColour(0.75f, 0.75f, 0.75f, 1.0f);
const osg::Vec4 white(1.0f, 1.0f, 1.0f, 1.0f);

bool IsNumber(const osg::Vec3& vertex)
{
    return std::isfinite(vertex.x()) && std::isfinite(vertex.y()) && std::isfinite(vertex.z());
}

struct GoodTriangles
{
    void operator()(unsigned a, unsigned b, unsigned c)
    {
        const bool isGood = IsNumber((*vertices)[a]) && IsNumber((*vertices)[b]) && IsNumber((*vertices)[c]);
        if (isGood)
            for (const unsigned corner : {a, b, c})
                indices->push_back(corner);
        else
            ++lost;
    }
    const osg::Vec3Array* vertices = nullptr;
    osg::DrawElementsUInt* indices = nullptr;
    qint64 lost = 0;
};

// How many triangles have a vertex that is no number, and went. Lines and points of such a geometry go, too.
qint64 DropBadTriangles(osg::Geometry& geometry)
{
    auto* vertices = dynamic_cast<osg::Vec3Array*>(geometry.getVertexArray());
    if (!vertices)
        return 0;
    const osg::Vec3* someGood = nullptr;
    bool isAnyBad = false;
    for (const osg::Vec3& vertex : *vertices) {
        const bool isGood = IsNumber(vertex);
        isAnyBad = isAnyBad || !isGood;
        if (isGood && !someGood)
            someGood = &vertex;
    }
    if (!isAnyBad)
        return 0;
    osg::TriangleIndexFunctor<GoodTriangles> triangles;
    osg::ref_ptr<osg::DrawElementsUInt> good = new osg::DrawElementsUInt(GL_TRIANGLES);
    triangles.vertices = vertices;
    triangles.indices = good.get();
    geometry.accept(triangles);
    geometry.removePrimitiveSet(0, geometry.getNumPrimitiveSets());
    if (!good->empty())
        geometry.addPrimitiveSet(good);
    // Nothing refers to them any more but the box around the model.
    const osg::Vec3 stand = someGood ? *someGood : osg::Vec3();
    for (osg::Vec3& vertex : *vertices)
        if (!IsNumber(vertex))
            vertex = stand;
    vertices->dirty();
    geometry.dirtyBound();
    return triangles.lost;
}

bool HasPicture(const osg::StateSet* state)
{
    if (!state)
        return false;
    for (unsigned unit = 0; unit < state->getTextureAttributeList().size(); ++unit)
        if (const auto* texture = dynamic_cast<const osg::Texture*>(
                state->getTextureAttribute(unit, osg::StateAttribute::TEXTURE)))
            for (unsigned face = 0; face < texture->getNumImages(); ++face)
                if (texture->getImage(face))
                    return true;
    return false;
}

/// Goes through what was read, each geometry once.
class Preparer : public osg::NodeVisitor
{
public:
    explicit Preparer(osgDB::Options* pagerOptions)
        : osg::NodeVisitor(TRAVERSE_ALL_CHILDREN), options(pagerOptions)
    {
        setNodeMaskOverride(~0u);
    }

    void apply(osg::Node& node) override
    {
        const bool outer = isPictured;
        isPictured = isPictured || HasPicture(node.getStateSet());
        // What a file brings may run while it is drawn, and would have each frame drawn anew.
        KeepStatic(node);
        traverse(node);
        isPictured = outer;
    }
    void apply(osg::ProxyNode& node) override
    {
        node.setDatabaseOptions(options);
        apply(static_cast<osg::Node&>(node));
    }
    void apply(osg::PagedLOD& node) override
    {
        node.setDatabaseOptions(options);
        const osg::Vec3 center = node.getCenter();
        if (!IsNumber(center) || !std::isfinite(node.getRadius()))
            node.setCenterMode(osg::LOD::USE_BOUNDING_SPHERE_CENTER);
        apply(static_cast<osg::Node&>(node));
    }
    void apply(osg::Geometry& geometry) override
    {
        if (!seen.insert(&geometry).second)
            return;
        lost += DropBadTriangles(geometry);
        geometry.setUseDisplayList(false);
        geometry.setUseVertexBufferObjects(true);
        const bool isPlain = !isPictured && !HasPicture(geometry.getStateSet());
        if (isPlain)
            Shade(geometry);
        if (!geometry.getColorArray()) {
            osg::ref_ptr<osg::Vec4Array> colour = new osg::Vec4Array(osg::Array::BIND_OVERALL);
            colour->push_back(isPlain ? plainColour : white);
            geometry.setColorArray(colour);
        }
        KeepStatic(geometry);
    }

    qint64 lost = 0;

private:
    static void KeepStatic(osg::Node& node)
    {
        node.setDataVariance(osg::Object::STATIC);
        if (node.getStateSet())
            node.getStateSet()->setDataVariance(osg::Object::STATIC);
    }
    void Shade(osg::Geometry& geometry)
    {
        if (!geometry.getNormalArray() && geometry.getVertexArray() && geometry.getNumPrimitiveSets() > 0)
            osgUtil::SmoothingVisitor::smooth(geometry);
        if (!geometry.getNormalArray())
            return;
        if (!geometry.getStateSet()) {
            if (lit->getNumParents() >= mostUsersOfState)
                lit = new osg::StateSet;
            geometry.setStateSet(lit);
        }
        geometry.getStateSet()->setMode(GL_LIGHTING, osg::StateAttribute::ON);
    }

    osg::ref_ptr<osgDB::Options> options;
    std::set<const osg::Geometry*> seen;
    osg::ref_ptr<osg::StateSet> lit = new osg::StateSet; ///< of all that have none of their own
    bool isPictured = false;
};

struct Census : osg::NodeVisitor
{
    Census() : osg::NodeVisitor(TRAVERSE_ALL_CHILDREN) { setNodeMaskOverride(~0u); }
    void apply(osg::Node& node) override
    {
        ++nodes;
        traverse(node);
    }
    void apply(osg::Transform& node) override
    {
        ++transforms;
        apply(static_cast<osg::Node&>(node));
    }
    void apply(osg::PagedLOD& node) override
    {
        ++paged;
        apply(static_cast<osg::Node&>(node));
    }
    void apply(osg::ProxyNode& node) override
    {
        ++paged;
        apply(static_cast<osg::Node&>(node));
    }
    void apply(osg::Drawable& drawable) override
    {
        ++nodes;
        const osg::Geometry* geometry = drawable.asGeometry();
        drawables += !geometry || geometry->getNumPrimitiveSets() > 0;
        if (geometry && found.insert(&drawable).second)
            geometries.push_back(drawable.asGeometry());
    }
    std::size_t nodes = 0;
    std::size_t transforms = 0;
    std::size_t paged = 0;
    std::size_t drawables = 0;
    std::vector<osg::Geometry*> geometries; ///< each once
    std::set<const osg::Drawable*> found;
};

void MoveBy(const std::vector<osg::Geometry*>& geometries, const osg::Vec3d& center)
{
    std::set<const osg::Array*> moved;
    for (osg::Geometry* geometry : geometries) {
        auto* vertices = dynamic_cast<osg::Vec3Array*>(geometry->getVertexArray());
        if (!vertices || !moved.insert(vertices).second)
            continue;
        for (osg::Vec3& vertex : *vertices)
            vertex = osg::Vec3d(vertex) - center;
        vertices->dirty();
        geometry->dirtyBound();
    }
}
} // namespace

qint64 AxPrepareModel(osg::Node& model, osgDB::Options* options)
{
    Preparer preparer(options);
    model.accept(preparer);
    return preparer.lost;
}

osg::Vec3d AxGatherModel(osg::ref_ptr<osg::Node>& model)
{
    Census before;
    model->accept(before);
    if (before.paged > 0)
        return {};
    if (before.nodes > mostNodes)
        model = AxMergeModel(*model);
    Census census;
    model->accept(census);
    const osg::BoundingSphere bound = model->getBound();
    osg::Vec3d center = bound.center();
    if (census.transforms > 0 || !bound.valid() || center.length() < farFromZero)
        center = osg::Vec3d();
    else
        MoveBy(census.geometries, center);
    for (osg::Geometry* geometry : census.geometries)
        AxSplitGeometry(*geometry);
    return center;
}

bool AxIsDrawable(osg::Node& model)
{
    Census census;
    model.accept(census);
    return census.paged > 0 || (census.drawables > 0 && model.getBound().valid());
}

#include "interaction/models/AxModelGeometry.h"
#include "interaction/models/AxModelMerge.h"
#include "interaction/models/AxModelRepair.h"
#include "interaction/models/AxModelSplit.h"
#include "interaction/models/AxModelVertices.h"

#include <osg/Billboard>
#include <osg/Geometry>
#include <osg/Material>
#include <osg/NodeVisitor>
#include <osg/PagedLOD>
#include <osg/ProxyNode>
#include <osg/Texture>
#include <osg/Transform>
#include <osgDB/Options>
#include <osgUtil/SmoothingVisitor>

#include <cmath>
#include <map>
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
        lost += AxRepairGeometry(geometry, faulty);
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
    std::set<osg::ref_ptr<osg::Array>> faulty;

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
    void apply(osg::LOD& node) override
    {
        if (node.getCenterMode() != osg::LOD::USE_BOUNDING_SPHERE_CENTER)
            centered.insert(&node);
        apply(static_cast<osg::Node&>(node));
    }
    void apply(osg::Billboard& node) override
    {
        isMovable = false;
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
        const AxModelVertices vertices(geometry ? geometry->getVertexArray() : nullptr);
        isMovable = isMovable && geometry && (vertices.AreRead() || vertices.Count() == 0);
        if (geometry && found.insert(&drawable).second)
            geometries.push_back(drawable.asGeometry());
    }
    std::size_t nodes = 0;
    std::size_t transforms = 0;
    std::size_t paged = 0;
    std::size_t drawables = 0;
    std::vector<osg::Geometry*> geometries; ///< each once
    std::set<osg::LOD*> centered;           ///< around a place of their own
    std::set<const osg::Drawable*> found;
    bool isMovable = true; ///< all that is drawn has its places in arrays of vertices
};

// Arrays of other kinds become single precision, which is fine enough around the center.
void MoveBy(const Census& census, const osg::Vec3d& center)
{
    std::map<osg::ref_ptr<osg::Array>, osg::ref_ptr<osg::Vec3Array>> moved;
    for (osg::Geometry* geometry : census.geometries) {
        const osg::ref_ptr<osg::Array> had = geometry->getVertexArray();
        osg::ref_ptr<osg::Vec3Array>& around = moved[had];
        if (!around) {
            const AxModelVertices vertices(had);
            around = dynamic_cast<osg::Vec3Array*>(had.get());
            if (!around)
                around = new osg::Vec3Array(static_cast<unsigned>(vertices.Count()));
            for (std::size_t i = 0; i < vertices.Count(); ++i)
                (*around)[i] = vertices[i] - center;
            around->dirty();
        }
        geometry->setVertexArray(around);
        geometry->dirtyBound();
    }
    for (osg::LOD* lod : census.centered)
        lod->setCenter(lod->getCenter() - center);
}
} // namespace

qint64 AxPrepareModel(osg::Node& model, osgDB::Options* options)
{
    Preparer preparer(options);
    model.accept(preparer);
    for (const auto& vertices : preparer.faulty)
        AxFillFaultyVertices(*vertices);
    return preparer.lost;
}

osg::Vec3d AxGatherModel(osg::ref_ptr<osg::Node>& model)
{
    Census census;
    model->accept(census);
    if (census.paged > 0)
        return {};
    const osg::BoundingSphere bound = model->getBound();
    osg::Vec3d zero = bound.valid() ? osg::Vec3d(bound.center()) : osg::Vec3d();
    if (zero.length() < farFromZero)
        zero = osg::Vec3d();
    Census merged;
    const bool isToMerge = census.nodes > mostNodes;
    if (isToMerge) {
        model = AxMergeModel(*model, zero);
        model->accept(merged);
    } else if (census.transforms > 0 || !census.isMovable) {
        zero = osg::Vec3d();
    } else if (zero != osg::Vec3d()) {
        MoveBy(census, zero);
    }
    for (osg::Geometry* geometry : (isToMerge ? merged : census).geometries)
        AxSplitGeometry(*geometry);
    return zero;
}

bool AxIsDrawable(osg::Node& model)
{
    Census census;
    model.accept(census);
    return census.paged > 0 || (census.drawables > 0 && model.getBound().valid());
}

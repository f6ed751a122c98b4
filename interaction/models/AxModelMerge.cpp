#include "interaction/models/AxModelMerge.h"
#include "interaction/models/AxModelVertices.h"

#include <osg/Geode>
#include <osg/Geometry>
#include <osg/MatrixTransform>
#include <osg/NodeVisitor>
#include <osg/StateSet>
#include <osg/TriangleIndexFunctor>

#include <map>
#include <set>
#include <tuple>
#include <vector>

namespace {
constexpr unsigned mostVertices = 60000;

struct LessState
{
    bool operator()(const osg::StateSet* a, const osg::StateSet* b) const { return a->compare(*b, true) < 0; }
};

struct Corners
{
    void operator()(unsigned a, unsigned b, unsigned c)
    {
        for (const unsigned corner : {a, b, c})
            indices->push_back(first + corner);
    }
    osg::DrawElementsUInt* indices = nullptr;
    unsigned first = 0;
};

/// A geometry that others are added to: vertices, colours, and normals and picture's places if they have
/// them.
struct Sum
{
    osg::ref_ptr<osg::Vec3Array> vertices = new osg::Vec3Array;
    osg::ref_ptr<osg::Vec3Array> normals = new osg::Vec3Array(osg::Array::BIND_PER_VERTEX);
    osg::ref_ptr<osg::Vec4Array> colours = new osg::Vec4Array(osg::Array::BIND_PER_VERTEX);
    osg::ref_ptr<osg::Vec2Array> picture = new osg::Vec2Array(osg::Array::BIND_PER_VERTEX);
    osg::ref_ptr<osg::DrawElementsUInt> indices = new osg::DrawElementsUInt(GL_TRIANGLES);

    osg::ref_ptr<osg::Geometry> Made() const
    {
        osg::ref_ptr<osg::Geometry> made = new osg::Geometry;
        made->setUseDisplayList(false);
        made->setUseVertexBufferObjects(true);
        made->setDataVariance(osg::Object::STATIC);
        made->setVertexArray(vertices);
        made->setColorArray(colours);
        if (!normals->empty())
            made->setNormalArray(normals);
        if (!picture->empty())
            made->setTexCoordArray(0, picture);
        made->addPrimitiveSet(indices);
        return made;
    }
};

template <typename Array> const Array* PerVertex(const osg::Array* array, unsigned count)
{
    const auto* typed = dynamic_cast<const Array*>(array);
    return typed && typed->getBinding() == osg::Array::BIND_PER_VERTEX && typed->size() == count ? typed
                                                                                                 : nullptr;
}

class Merger : public osg::NodeVisitor
{
public:
    explicit Merger(const osg::Vec3d& zero)
        : osg::NodeVisitor(TRAVERSE_ACTIVE_CHILDREN), matrix(osg::Matrixd::translate(-zero))
    {
    }

    void apply(osg::Node& node) override
    {
        Enter(node, [this, &node] { traverse(node); });
    }
    void apply(osg::Transform& node) override
    {
        const osg::Matrixd above = matrix;
        node.computeLocalToWorldMatrix(matrix, this);
        apply(static_cast<osg::Node&>(node));
        matrix = above;
    }
    void apply(osg::Drawable& drawable) override
    {
        Enter(drawable, [this, &drawable] {
            const osg::Geometry* geometry = drawable.asGeometry();
            if (!geometry || !Add(*geometry))
                Keep(drawable);
        });
    }
    void apply(osg::Geometry& geometry) override { apply(static_cast<osg::Drawable&>(geometry)); }

    osg::ref_ptr<osg::Group> Result()
    {
        for (auto& [kind, sum] : sums)
            Flush(std::get<0>(kind), sum);
        return root;
    }

private:
    using States = std::vector<const osg::StateSet*>;
    /// The states from the top down, and whether there are normals and places in a picture.
    using Kind = std::tuple<States, bool, bool>;

    template <typename Inside> void Enter(const osg::Node& node, const Inside& inside)
    {
        const osg::StateSet* state = node.getStateSet();
        if (state)
            states.push_back(*known.insert(state).first);
        inside();
        if (state)
            states.pop_back();
    }

    bool Add(const osg::Geometry& geometry)
    {
        const AxModelVertices vertices(geometry.getVertexArray());
        if (!vertices.AreRead() || geometry.getNumTexCoordArrays() > 1 ||
            !geometry.getVertexAttribArrayList().empty())
            return false;
        const auto count = static_cast<unsigned>(vertices.Count());
        const auto* normals = PerVertex<osg::Vec3Array>(geometry.getNormalArray(), count);
        const auto* picture = PerVertex<osg::Vec2Array>(geometry.getTexCoordArray(0), count);
        const auto* colours = PerVertex<osg::Vec4Array>(geometry.getColorArray(), count);
        const auto* overall = dynamic_cast<const osg::Vec4Array*>(geometry.getColorArray());
        const bool isOneColour =
            overall && overall->getBinding() == osg::Array::BIND_OVERALL && !overall->empty();
        if ((geometry.getNormalArray() && !normals) || (geometry.getTexCoordArray(0) && !picture) ||
            (!colours && !isOneColour))
            return false;
        for (unsigned i = 0; i < geometry.getNumPrimitiveSets(); ++i)
            if (geometry.getPrimitiveSet(i)->getMode() < GL_TRIANGLES) // lines and points
                return false;

        Sum& sum = sums[Kind(states, normals != nullptr, picture != nullptr)];
        if (sum.vertices->size() + count > mostVertices)
            Flush(states, sum);
        osg::TriangleIndexFunctor<Corners> corners;
        corners.indices = sum.indices.get();
        corners.first = static_cast<unsigned>(sum.vertices->size());
        geometry.accept(corners);
        const osg::Matrixd forNormals = osg::Matrixd::inverse(matrix);
        for (unsigned i = 0; i < count; ++i) {
            sum.vertices->push_back(vertices[i] * matrix);
            sum.colours->push_back(colours ? (*colours)[i] : overall->front());
            if (normals)
                sum.normals->push_back(osg::Matrixd::transform3x3(forNormals, (*normals)[i]));
            if (picture)
                sum.picture->push_back((*picture)[i]);
        }
        return true;
    }

    osg::Group& Below(const States& above)
    {
        osg::ref_ptr<osg::Group>& group = groups[above];
        if (group)
            return *group;
        group = new osg::Group;
        group->setDataVariance(osg::Object::STATIC);
        if (above.empty()) {
            root->addChild(group);
            return *group;
        }
        group->setStateSet(const_cast<osg::StateSet*>(above.back()));
        Below(States(above.begin(), above.end() - 1)).addChild(group);
        return *groups[above];
    }

    void Flush(const States& above, Sum& sum)
    {
        if (sum.indices->empty())
            return;
        osg::ref_ptr<osg::Geode> geode = new osg::Geode;
        geode->setDataVariance(osg::Object::STATIC);
        geode->addDrawable(sum.Made());
        Below(above).addChild(geode);
        sum = Sum();
    }

    // As it is, under its own matrix; its state is among those above.
    void Keep(osg::Drawable& drawable)
    {
        const osg::ref_ptr<osg::StateSet> own = drawable.getStateSet();
        osg::ref_ptr<osg::Drawable> kept =
            static_cast<osg::Drawable*>(drawable.clone(osg::CopyOp::SHALLOW_COPY));
        kept->setStateSet(nullptr);
        osg::ref_ptr<osg::MatrixTransform> place = new osg::MatrixTransform(matrix);
        place->setDataVariance(osg::Object::STATIC);
        place->addChild(kept);
        Below(states).addChild(place);
    }

    osg::Matrixd matrix;
    States states;
    std::set<const osg::StateSet*, LessState> known;
    std::map<Kind, Sum> sums;
    std::map<States, osg::ref_ptr<osg::Group>> groups;
    osg::ref_ptr<osg::Group> root = new osg::Group;
};
} // namespace

osg::ref_ptr<osg::Node> AxMergeModel(osg::Node& model, const osg::Vec3d& zero)
{
    Merger merger(zero);
    model.accept(merger);
    return merger.Result();
}

#pragma once
#include "scene/base/AxEarthViewerExport.h"

#include <osg/NodeVisitor>
#include <osg/StateAttribute>

#include <cstdint>
#include <memory>
#include <unordered_map>

namespace osgViewer {
class Viewer;
}

/**
 * Looks through a scene for everything that makes its picture, and tells two
 * things: a fingerprint, which differs when any of it does, and whether there is
 * something in it whose picture may change without being seen here.
 *
 * Seen are: which nodes there are, in which order, shown by which masks,
 * switches and ranges, and where; states with their modes, attributes, pictures
 * and uniforms; drawables with their arrays and primitives; texts; the camera,
 * the light, the sky. Not seen is what a class of somebody else's does while it
 * is culled or drawn, so a node or drawable of an unknown class may change, as
 * may one with a callback for culling or drawing, one with arrays that OpenGL
 * reads anew each time, and one that says so (osg::Object::DYNAMIC).
 * osg::Object::STATIC says the contrary of a node or drawable of any class.
 *
 * GUI thread, between the update traversal and the cull traversal.
 */
class AXEARTHVIEWER_EXPORT AxSceneWalk : public osg::NodeVisitor
{
public:
    AxSceneWalk();
    ~AxSceneWalk() override;

    /// Looks at what a viewer would draw now.
    void Look(osgViewer::Viewer& viewer);
    std::size_t Fingerprint() const { return static_cast<std::size_t>(hash); }
    /// The first thing found that may change without being seen, or null.
    const osg::Object* Changeable() const { return changeable; }

    void apply(osg::Node& node) override;
    void apply(osg::Transform& node) override;
    void apply(osg::Camera& node) override;
    void apply(osg::LightSource& node) override;
    void apply(osg::Switch& node) override;
    void apply(osg::LOD& node) override;
    void apply(osg::Drawable& drawable) override;
    void apply(osg::Geometry& geometry) override;

private:
    struct Known;
    enum class Kind;

    Kind kindOf(const osg::Object& object);
    Kind visit(osg::Node& node);
    void visit(const osg::StateSet& state);
    void visit(const osg::StateAttribute& attribute);
    void visit(osg::Drawable& drawable, Kind kind);
    void visit(const osg::BufferData* data);
    void visitCamera(const osg::Camera& camera);
    /// Looks at which nodes there are below, so many floors down, and at nothing else.
    void visitChildren(const osg::Group& group, int depth);
    void changes(const osg::Object& object);
    void mayChange(const osg::Object& object);
    void forgetUnseen();

    void mix(std::uint64_t value);
    void mix(const void* pointer)
    {
        mix(static_cast<std::uint64_t>(reinterpret_cast<std::uintptr_t>(pointer)));
    }
    void mix(double value);
    template <typename Vector> void mixVector(const Vector& vector);
    void mixMatrix(const osg::Matrixd& matrix);

    std::uint64_t hash = 0;
    const osg::Object* changeable = nullptr;
    unsigned context = 0;
    unsigned look = 0;
    std::uint64_t attributeChanges = 0;
    int annotations = 0; // above the node that is looked at
    struct Copy
    {
        osg::ref_ptr<const osg::StateAttribute> copy;
        unsigned look = 0;
    };
    /// Attributes can be changed in place; these are as they were seen last.
    std::unordered_map<const osg::StateAttribute*, Copy> copies;
    std::unique_ptr<Known> known;
};

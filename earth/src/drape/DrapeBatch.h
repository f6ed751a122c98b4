#pragma once
#include "drape/DrapeBlock.h"
#include "drape/DrapeGround.h"
#include "drape/DrapePasses.h"
#include <memory>
#include <osg/Uniform>
#include <osgUtil/CullVisitor>

namespace osgEarth {
/// One frame's view of the ground.
struct DrapeView
{
    osg::Matrixd worldToView;
    osg::Matrixd worldToLocal; ///< of the node that drapes
    osg::Vec3d eye;            ///< geocentric
    Horizon horizon;
    double pixel = 0.0; ///< metres a pixel covers at one metre's distance
    unsigned frame = 0;
    osg::observer_ptr<MapNode> map;
};

/// Shapes of one colour that are drawn as one: marked together, a few draw calls
/// for hundreds of them, and painted once, so that their overlap is tinted once.
/// Thread of the cull traversal.
class DrapeBatch
{
public:
    /// A shape of a batch, for as long as its owner keeps it.
    class Member
    {
    public:
        explicit Member(DrapeBlock made) : block(std::move(made)) {}
        const DrapeBlock block;

    private:
        friend class DrapeBatch;
        DrapeGround ground;
    };

    explicit DrapeBatch(const osg::Vec4f& color, bool lines);
    ~DrapeBatch();

    void add(const std::shared_ptr<Member>& member);
    /// Forgets the members that nobody else keeps; false when none is left.
    bool tidy();
    /// Hands what is seen of it to the traversal. `lookUps` is how many heights
    /// may still be looked up in this frame.
    void cull(osgUtil::CullVisitor& cv, const DrapeView& view, const DrapePasses& passes, unsigned& lookUps);
    void releaseGLObjects(osg::State* state) const;

private:
    class Chunk;
    osg::ref_ptr<osg::StateSet> _paint; ///< colour and frame
    osg::ref_ptr<osg::Uniform> _frame;  ///< what of the window is painted
    osg::ref_ptr<osg::Geometry> _square;
    bool _lines;
    std::vector<std::unique_ptr<Chunk>> _chunks;
};
} // namespace osgEarth

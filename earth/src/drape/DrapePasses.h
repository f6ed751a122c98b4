#pragma once
#include <osg/Drawable>
#include <osg/StateSet>

namespace osgEarth {
/// Bin of all drapes: after the opaque ground, before whatever is transparent.
/// Its leaves are drawn in the order they are met, because each shape is
/// marked and coloured before the next.
constexpr int kDrapeBin = 1;

/// How many shapes DrapePasses::markMany can draw at once.
constexpr unsigned kDrapeSlots = 64;

/// The state sets of all drapes, shared by the nodes that drape anything.
struct DrapePasses : public osg::Referenced
{
    DrapePasses();
    static osg::ref_ptr<DrapePasses> shared();

    /// First pass of a shape: counts in the stencil buffer, for each pixel, the
    /// volumes that the ground there lies in.
    osg::ref_ptr<osg::StateSet> mark;
    /// Second pass: colours the pixels counted and takes the marks off again.
    osg::ref_ptr<osg::StateSet> paint;
    /// The first pass of several shapes at once, whose vertices tell which one they belong to.
    osg::ref_ptr<osg::StateSet> markMany;
    /// The same for volumes that the eye is not in, by their faces before the ground.
    osg::ref_ptr<osg::StateSet> markManyBefore;
    /// The same for upper faces that lie on the ground themselves, near enough.
    osg::ref_ptr<osg::StateSet> markManyFlat;
    /// The second pass of them, over a part of the window.
    osg::ref_ptr<osg::StateSet> paintFrame;
    /// Before the first shape of a frame.
    osg::ref_ptr<osg::StateSet> clear;
};

/// Clears the stencil buffer and finds out whether there is one.
class StencilClear : public osg::Drawable
{
public:
    StencilClear();
    void drawImplementation(osg::RenderInfo& info) const override;
    osg::Object* cloneType() const override { return new StencilClear(); }
    osg::Object* clone(const osg::CopyOp&) const override { return new StencilClear(); }

    /// Whether that context is known to have stencil bits; false until a clear was drawn in it.
    static bool contextHasStencil(unsigned contextId);
    /// To be called when a context closes: its number may come back for another one.
    static void forgetContext(unsigned contextId);

protected:
    ~StencilClear() override = default;
};
} // namespace osgEarth

#include "drape/DrapePainter.h"
#include <osgEarth/DrapeableNode>

namespace osgEarth {
DrapeableNode::DrapeableNode() : _drapingEnabled(true), _painter(new Painter())
{
    // The painter tests each shape where it lies on the ground; the children's own
    // bounds may be far above or below.
    setCullingActive(false);
}

DrapeableNode::DrapeableNode(const DrapeableNode& rhs, const osg::CopyOp& copy)
    : osg::Group(rhs, copy), _drapingEnabled(rhs._drapingEnabled), _painter(new Painter())
{
    setCullingActive(false);
}

DrapeableNode::~DrapeableNode() = default;

void DrapeableNode::setDrapingEnabled(bool value)
{
    _drapingEnabled = value;
}

void DrapeableNode::releaseGLObjects(osg::State* state) const
{
    osg::Group::releaseGLObjects(state);
    _painter->releaseGLObjects(state);
}

void DrapeableNode::traverse(osg::NodeVisitor& nv)
{
    auto* cv = _drapingEnabled ? nv.asCullVisitor() : nullptr;
    if (cv)
        _painter->cull(*this, *cv);
    else
        osg::Group::traverse(nv);
}
} // namespace osgEarth

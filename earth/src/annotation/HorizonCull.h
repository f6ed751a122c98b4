#pragma once
#include <osg/NodeCallback>

namespace osgEarth {
/// Cull callback that leaves a small node out while the globe hides its centre.
/// The node's local frame must lie in geocentric world coordinates.
class HorizonCullCallback : public osg::NodeCallback
{
public:
    void operator()(osg::Node* node, osg::NodeVisitor* nv) override;

protected:
    ~HorizonCullCallback() override = default;
};
} // namespace osgEarth

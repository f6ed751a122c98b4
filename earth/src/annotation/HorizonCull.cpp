#include "annotation/HorizonCull.h"
#include "globe/Horizon.h"
#include <osg/Transform>
#include <osgUtil/CullVisitor>

namespace osgEarth {
void HorizonCullCallback::operator()(osg::Node* node, osg::NodeVisitor* nv)
{
    auto* cv = nv->asCullVisitor();
    const osg::BoundingSphere& bound = node->getBound();
    if (cv && bound.valid() && cv->getModelViewMatrix()) {
        osg::NodePath path = cv->getNodePath();
        path.pop_back(); // the node's bound is in its parent's frame
        const osg::Matrixd localToWorld = osg::computeLocalToWorld(path, true);
        const osg::Vec3d eye =
            osg::Vec3d(cv->getEyeLocal()) * osg::computeLocalToWorld(cv->getNodePath(), true);
        const osg::Vec3d centre = osg::Vec3d(bound.center()) * localToWorld;
        // The radius stands for how far the node reaches above its centre. Nodes of more
        // than 100 km radius are always drawn.
        if (bound.radius() < 100000.0f &&
            Horizon(eye).hides(occludeeOf(centre, {osg::Vec3f()}, bound.radius())))
            return;
    }
    traverse(node, nv);
}
} // namespace osgEarth

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
        osg::Vec3d eye = cv->getEyeLocal();
        osg::Vec3d centre = bound.center();
        // Most annotations hang below no transform, which is cheap to see.
        const osg::Camera* camera = cv->getCurrentCamera();
        if (!camera || node->asTransform() || *cv->getModelViewMatrix() != camera->getViewMatrix()) {
            osg::NodePath path = cv->getNodePath();
            eye = eye * osg::computeLocalToWorld(path, true);
            path.pop_back(); // the node's bound is in its parent's frame
            centre = centre * osg::computeLocalToWorld(path, true);
        }
        // The radius stands for how far the node reaches above its centre. Nodes of more
        // than 100 km radius are always drawn.
        if (bound.radius() < 100000.0f &&
            Horizon(eye).hides(occludeeOf(centre, {osg::Vec3f()}, bound.radius())))
            return;
    }
    traverse(node, nv);
}
} // namespace osgEarth

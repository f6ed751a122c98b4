#include "analysis/CAxDrapeableNode.h"

#include <osg/CoordinateSystemNode>

namespace {
// The highest mountain and then some, metres.
constexpr double aboveGround = 10000.0;
} // namespace

CAxDrapeableNode::CAxDrapeableNode() : camera(new osg::Camera)
{
    camera->setReferenceFrame(osg::Transform::ABSOLUTE_RF);
}

CAxDrapeableNode::CAxDrapeableNode(const CAxDrapeableNode& other, const osg::CopyOp& copy)
    : osgEarth::DrapeableNode(other, copy), camera(new osg::Camera(*other.camera, copy))
{
}

void CAxDrapeableNode::SetUpCamera(const osgEarth::SpatialReference& srs)
{
    const double radius = srs.getEllipsoid()->getRadiusEquator();
    const double half = srs.isGeographic() ? radius + aboveGround : osg::PI * radius;
    const double high = srs.isGeographic() ? half : aboveGround;
    camera->setProjectionMatrixAsOrtho(-half, half, -half, half, 0.0, 2.0 * high);
    camera->setViewMatrixAsLookAt(osg::Vec3d(0.0, 0.0, high), osg::Vec3d(), osg::Vec3d(0.0, 1.0, 0.0));
}

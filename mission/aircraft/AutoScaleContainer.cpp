#include "mission/aircraft/AutoScaleContainer.h"
#include "scene/base/AxGlobePoint.h"

#include <osg/MatrixTransform>
#include <osgUtil/CullVisitor>

#include <algorithm>
#include <cmath>

AutoScaleContainer::AutoScaleContainer(const AutoScaleContainer& other, const osg::CopyOp& copy)
    : osg::Group(other, copy), sizeFactor(other.sizeFactor), targetPixels(other.targetPixels),
      minimumScale(other.minimumScale), maximumScale(other.maximumScale)
{
}

void AutoScaleContainer::SetScaled(osg::Node* placed, osg::PositionAttitudeTransform* scaled, double size)
{
    place = placed;
    transform = scaled;
    sizeFactor = size;
}

void AutoScaleContainer::SetLimits(double smallest, double largest)
{
    minimumScale = smallest;
    maximumScale = largest;
}

double AutoScaleContainer::ScaleFor(double pixels) const
{
    const double wanted = pixels > 0.0 ? targetPixels / pixels : 1.0;
    return std::max(minimumScale, std::min(wanted, maximumScale));
}

// Behind the globe, by more than mountains are high.
bool AutoScaleContainer::isHidden(const osg::Vec3d& world, const osg::Vec3d& eye) const
{
    constexpr double body = AxWgs84::semiMinorAxis - 12000.0;
    const double distance = eye.length();
    const double away = world.length();
    if (distance <= body || away <= body)
        return false;
    const double between = std::acos(std::clamp((eye * world) / (distance * away), -1.0, 1.0));
    return between > std::acos(body / distance) + std::acos(body / away);
}

void AutoScaleContainer::traverse(osg::NodeVisitor& visitor)
{
    auto* cull = visitor.getVisitorType() == osg::NodeVisitor::CULL_VISITOR
                     ? dynamic_cast<osgUtil::CullVisitor*>(&visitor)
                     : nullptr;
    osg::ref_ptr<osg::Node> placed;
    osg::ref_ptr<osg::PositionAttitudeTransform> scaled;
    if (!cull || !place.lock(placed) || !transform.lock(scaled)) {
        osg::Group::traverse(visitor);
        return;
    }
    osg::Matrixd local;
    if (const osg::Transform* placing = placed->asTransform())
        placing->computeLocalToWorldMatrix(local, &visitor);
    const osg::Vec3d world = scaled->getPosition() * local;
    const bool hidden = isHidden(world, cull->getEyeLocal());
    if (!hidden) {
        const double pixels =
            std::abs(static_cast<double>(cull->pixelSize(osg::Vec3(world), static_cast<float>(sizeFactor))));
        const double scale = ScaleFor(pixels);
        // A change that nobody can see is none, or the picture would never rest.
        if (std::abs(scaled->getScale().x() - scale) > 1e-6 * scale) {
            scaled->setScale(osg::Vec3d(scale, scale, scale));
            scaled->dirtyBound();
        }
    }
    for (const osg::ref_ptr<osg::Node>& child : _children)
        if (!hidden || child != placed)
            child->accept(visitor);
}

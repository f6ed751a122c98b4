#pragma once
#include "scene/base/AxEarthViewerExport.h"

#include <osg/Group>
#include <osg/observer_ptr>
#include <osg/PositionAttitudeTransform>

namespace osgUtil {
class CullVisitor;
}

/**
 * A group that keeps a model at a constant size on the screen: whenever it is culled it scales the transform
 * above the model so that a length of the model covers so many pixels, within limits of the scale. What the
 * globe hides of the transform's children is left out. GUI thread; reference-counted.
 */
class AXEARTHVIEWER_EXPORT AutoScaleContainer : public osg::Group
{
public:
    META_Node(ax, AutoScaleContainer);

    AutoScaleContainer() = default;
    AutoScaleContainer(const AutoScaleContainer& other, const osg::CopyOp& copy = osg::CopyOp::SHALLOW_COPY);

    /// `placed` is the child of this group that stands on the map, `scaled` the transform below it that is
    /// scaled. Neither is kept alive. `size` is the length that is measured, in metres.
    void SetScaled(osg::Node* placed, osg::PositionAttitudeTransform* scaled, double size);
    /// Of that length. Where both limits cannot be kept, `smallest` is.
    void SetPixels(double pixels) { targetPixels = pixels; }
    void SetLimits(double smallest, double largest);

    /// Of a length that covers so many pixels unscaled.
    double ScaleFor(double pixels) const;

    void traverse(osg::NodeVisitor& visitor) override;

protected:
    ~AutoScaleContainer() override = default;

private:
    bool isHidden(const osg::Vec3d& world, const osg::Vec3d& eye) const;

    osg::observer_ptr<osg::Node> place;
    osg::observer_ptr<osg::PositionAttitudeTransform> transform;
    double sizeFactor = 1.0;
    double targetPixels = 64.0;
    double minimumScale = 1.0;
    double maximumScale = 1e6;
};

#pragma once
#include <osg/Array>
#include <osg/ref_ptr>
#include <osg/Vec3d>
#include <osg/Vec4f>

namespace osgUtil {
class CullVisitor;
}

/**
 * Round handles of one frame: a thousand of them drawn at once, as discs with a
 * dark rim, on top of the ground. Later ones cover earlier ones. Made anew on
 * each cull traversal, so that a frame that is still being drawn keeps its own.
 */
class AxHandlePoints
{
public:
    /// The places are near this one on the scale of the view: the eye.
    explicit AxHandlePoints(const osg::Vec3d& eye);

    /// Geocentric metres, and a radius in pixels.
    void Add(const osg::Vec3d& world, float radius, const osg::Vec4f& color);
    void Draw(osgUtil::CullVisitor& cv) const;

private:
    osg::Vec3d origin;
    osg::ref_ptr<osg::Vec3Array> places; // from the origin
    osg::ref_ptr<osg::FloatArray> radii; // pixels
    osg::ref_ptr<osg::Vec4Array> colors;
};

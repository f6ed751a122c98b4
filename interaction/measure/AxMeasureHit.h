#pragma once
#include <osg/Matrixd>
#include <osg/Vec2d>
#include <osg/Vec3d>

#include <optional>

namespace osg {
class Camera;
class Drawable;
class Geometry;
class Node;
} // namespace osg

/**
 * Whether what is drawn is seen at a place of the picture, as the camera has it now. What the globe hides,
 * and what is behind the eye, is not. Geocentric metres. GUI thread.
 */
class AxMeasureHit
{
public:
    /// The place of the picture at which `world` is seen.
    AxMeasureHit(const osg::Camera& camera, const osg::Vec3d& world);

    /// One of the lines of a geometry that hangs below no transform, a few pixels wide at least. Its fill
    /// does not count.
    bool IsOnLine(osg::Geometry& drawn) const;
    /// The mark at a place.
    bool IsOnMark(const osg::Vec3d& world) const;
    /// A text that is drawn in pixels around its place, as a label has it.
    bool IsOnText(osg::Node& label) const;

private:
    std::optional<osg::Vec2d> windowOf(const osg::Vec3d& world) const;
    bool isOnEdge(const osg::Vec3d& from, const osg::Vec3d& to) const;
    bool isInText(const osg::Drawable& text, const osg::Vec3d& world) const;

    osg::Matrixd toClip;
    osg::Vec3d eye;
    osg::Vec2d size; ///< of the picture, pixels
    std::optional<osg::Vec2d> mouse;
};

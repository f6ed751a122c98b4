#pragma once
#include <array>
#include <osg/Geometry>
#include <osg/Matrixd>
#include <osg/Vec3d>
#include <osg/Vec4f>
#include <vector>

namespace osgEarth {
/// Triangles or line segments of one colour, points in geocentric metres.
struct DrapeShape
{
    std::vector<osg::Vec3d> points;
    std::vector<std::array<unsigned, 3>> triangles;
    std::vector<std::array<unsigned, 2>> segments;
    osg::Vec4f color;
    float lineWidth = 1.0f; ///< pixels
};

/// A shape with less alpha than this would change no pixel.
constexpr float kLeastVisibleAlpha = 0.5f / 255.0f;

/// The visible triangles and lines of a geometry, one shape for each colour
/// and kind, in the order they would be drawn.
std::vector<DrapeShape> shapesOf(const osg::Geometry& geometry, const osg::Matrixd& localToWorld,
                                 float lineWidth);
} // namespace osgEarth

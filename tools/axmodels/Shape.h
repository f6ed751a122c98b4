#pragma once
#include <osg/Array>
#include <osg/Geometry>
#include <osg/Vec2>
#include <osg/Vec3>

#include <vector>

/// What a part of an aircraft looks like.
struct Paint
{
    osg::Vec3 color;
};

/// A cross-section of a body, an ellipse at a right angle to its length. Metres.
struct Section
{
    float y;
    float z;
    float halfWidth;
    float halfHeight;
};

/// The surface of one part, in metres: x to the right, y ahead, z up.
class Shape
{
public:
    /// A smooth body through cross-sections from tail to nose, closed at both ends; x is where its middle
    /// lies.
    Shape& Body(const std::vector<Section>& sections, float x = 0.0f);
    /// A plate of some thickness over a convex outline, counter-clockwise as seen from above, that rises by
    /// `dihedral` metres for each metre to the side.
    Shape& Plate(const std::vector<osg::Vec2>& outline, float z, float thickness, float dihedral = 0.0f);
    /// The same standing upright at x: the outline's coordinates are y and z.
    Shape& Fin(const std::vector<osg::Vec2>& outline, float x, float thickness);
    /// A round rod between two points.
    Shape& Rod(const osg::Vec3& from, const osg::Vec3& to, float radius);
    /// Two blades that turn about an axis along z, or along y for `ahead`.
    Shape& Propeller(const osg::Vec3& hub, float radius, bool ahead, float angle);
    /// A box between two corners.
    Shape& Box(const osg::Vec3& low, const osg::Vec3& high);

    /// Adds the surface to one of several paints, that is drawn at once.
    void PaintOn(osg::Geometry& model, const Paint& paint) const;

private:
    void triangle(const osg::Vec3& a, const osg::Vec3& b, const osg::Vec3& c);
    void triangle(const osg::Vec3 (&points)[3], const osg::Vec3 (&across)[3]);
    /// Between two outlines of as many points.
    void prism(const std::vector<osg::Vec3>& below, const std::vector<osg::Vec3>& above);

    std::vector<osg::Vec3> places;
    std::vector<osg::Vec3> normals;
};

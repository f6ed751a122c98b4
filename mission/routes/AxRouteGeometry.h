#pragma once
#include <osg/Array>
#include <osg/Geometry>
#include <osg/ref_ptr>
#include <osg/Vec3d>
#include <osg/Vec4f>

#include <vector>

class AxWorldGeometry;

// Lines and fills of a route. Points are geocentric, metres. GUI thread, between frames.
namespace AxRouteGeometry {
enum EdgeMode
{
    LineLoop = 0,
    LineStrip = 1,
    Lines = 2
};

/// Points with a line along them in one colour and, if `filled` and `fill` can be seen, the area inside.
osg::ref_ptr<AxWorldGeometry> Create(const osg::Vec4f& edge, const osg::Vec4f& fill, float width,
                                     const std::vector<osg::Vec3d>& points, bool filled, EdgeMode mode,
                                     osg::Array::Binding binding);
/// Other points in place of those, without colours and lines.
void SetPoints(AxWorldGeometry& geometry, const std::vector<osg::Vec3d>& points, osg::Array::Binding binding);
/// A line along the points from `first` to the one before `last`, in one colour. Nothing where the colours of
/// the geometry are no osg::Vec4Array.
void AddEdgePrimitiveSet(osg::Geometry& geometry, unsigned first, unsigned last, const osg::Vec4f& color,
                         EdgeMode mode);
/// One line for each pair of points, with a colour for each point. There may be fewer colours than points:
/// the others are drawn in `missing`. Nothing without a binding for each vertex.
void AddEdgePrimitiveSet(osg::Geometry& geometry, int first, int count, const std::vector<osg::Vec4f>& colors,
                         const osg::Vec4f& missing);
/// The area that the points enclose, below lines that are there already; the points of the fill are added.
/// What a ring that crosses itself winds round twice stays open.
void AddFillPrimitiveSet(AxWorldGeometry& geometry, const std::vector<osg::Vec3d>& ring,
                         const osg::Vec4f& edge, const osg::Vec4f& fill);
} // namespace AxRouteGeometry

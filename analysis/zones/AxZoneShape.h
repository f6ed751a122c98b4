#pragma once
#include "scene/base/AxEarthViewerExport.h"

#include <osg/ref_ptr>
#include <osg/Vec2f>
#include <osgEarth/Bounds>
#include <osgEarthSymbology/Geometry>

#include <utility>
#include <vector>

/// The shape of a zone, degrees: its polygon, or for a circle no more than the middle, because most zones are
/// circles, and 73 points each would be most of the memory that zones take. Nothing changes it, so any thread
/// may read it.
class AXEARTHVIEWER_EXPORT AxZoneShape
{
public:
    /// Without points.
    AxZoneShape() = default;
    /// Not null.
    AxZoneShape(osg::ref_ptr<const osgEarth::Symbology::Polygon> ring) : polygon(ring) {}
    template <typename Shape>
    AxZoneShape(const osg::ref_ptr<Shape>& ring)
        : AxZoneShape(osg::ref_ptr<const osgEarth::Symbology::Polygon>(ring))
    {
    }
    /// The circle of AxZoneCircle().
    static AxZoneShape Circle(double longitude, double latitude);

    /// Whether it has no points.
    bool IsEmpty() const { return !isCircle && (!polygon || polygon->empty()); }
    /// Longitude, latitude, 0.
    std::vector<osg::Vec3d> Ring() const;
    /// The same as a polygon, never null; the one that is kept, or one of its own.
    osg::ref_ptr<const osgEarth::Symbology::Polygon> Polygon() const;
    /// Around the ring; not valid without points.
    osgEarth::Bounds Box() const;

private:
    osg::ref_ptr<const osgEarth::Symbology::Polygon> polygon;
    /// The middle passes through single precision anyway.
    osg::Vec2f middle;
    bool isCircle = false;
};

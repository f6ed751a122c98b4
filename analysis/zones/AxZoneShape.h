#pragma once
#include "analysis/zones/AxZoneRing.h"
#include "scene/base/AxEarthViewerExport.h"

#include <osg/ref_ptr>
#include <osg/Vec2f>
#include <osgEarth/Bounds>
#include <osgEarthSymbology/Geometry>

#include <variant>
#include <vector>

/// The shape of a zone, degrees: its ring, or for a circle no more than the middle, because most zones are
/// circles, and 73 points each would be most of the memory that zones take. Nothing changes it, so any thread
/// may read it.
class AXEARTHVIEWER_EXPORT AxZoneShape
{
public:
    /// Without points.
    AxZoneShape() = default;
    /// Longitude, latitude.
    explicit AxZoneShape(const std::vector<osg::Vec3d>& ring);
    /// Not null.
    AxZoneShape(osg::ref_ptr<const osgEarth::Symbology::Polygon> ring);
    template <typename Shape>
    AxZoneShape(const osg::ref_ptr<Shape>& ring)
        : AxZoneShape(osg::ref_ptr<const osgEarth::Symbology::Polygon>(ring))
    {
    }
    /// The circle of AxZoneCircle().
    static AxZoneShape Circle(double longitude, double latitude);

    /// Whether it has no points.
    bool IsEmpty() const;
    /// Longitude, latitude, 0; each within 6 mm of what was given, see AxZoneRing.
    std::vector<osg::Vec3d> Ring() const;
    /// The same as a polygon of its own, never null.
    osg::ref_ptr<const osgEarth::Symbology::Polygon> Polygon() const;
    /// Around the ring; not valid without points.
    osgEarth::Bounds Box() const;

private:
    using Whole = osg::ref_ptr<const osgEarth::Symbology::Polygon>;

    // A circle by its middle, which passes through single precision anyway; a polygon as it is where it has
    // holes or does not fit into a ring.
    std::variant<AxZoneRing, osg::Vec2f, Whole> form;
};

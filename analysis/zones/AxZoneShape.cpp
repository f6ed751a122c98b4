#include "analysis/zones/AxZoneShape.h"
#include "analysis/zones/AxZoneArea.h"

#include <cmath>

AxZoneShape AxZoneShape::Circle(double longitude, double latitude)
{
    AxZoneShape shape;
    shape.middle.set(static_cast<float>(longitude), static_cast<float>(latitude));
    shape.isCircle = true;
    return shape;
}

std::vector<osg::Vec3d> AxZoneShape::Ring() const
{
    if (isCircle)
        return AxZoneCircle(middle.x(), middle.y());
    return polygon ? polygon->asVector() : std::vector<osg::Vec3d>();
}

osg::ref_ptr<const osgEarth::Symbology::Polygon> AxZoneShape::Polygon() const
{
    if (polygon)
        return polygon;
    osg::ref_ptr<osgEarth::Symbology::Polygon> ring = new osgEarth::Symbology::Polygon;
    ring->asVector() = Ring();
    return ring;
}

osgEarth::Bounds AxZoneShape::Box() const
{
    if (isCircle)
        return AxZoneCircleBox(middle.x(), middle.y());
    return polygon ? polygon->getBounds() : osgEarth::Bounds();
}

#include "analysis/zones/AxZoneShape.h"
#include "analysis/zones/AxZoneArea.h"

namespace Symbology = osgEarth::Symbology;

AxZoneShape::AxZoneShape(const std::vector<osg::Vec3d>& ring)
{
    if (AxZoneRing::Fits(ring))
        form = AxZoneRing(ring);
    else
        form = Whole(new Symbology::Polygon(&ring));
}

AxZoneShape::AxZoneShape(osg::ref_ptr<const Symbology::Polygon> ring)
{
    if (ring->getHoles().empty())
        *this = AxZoneShape(ring->asVector());
    else
        form = ring;
}

AxZoneShape AxZoneShape::Circle(double longitude, double latitude)
{
    AxZoneShape shape;
    shape.form = osg::Vec2f(static_cast<float>(longitude), static_cast<float>(latitude));
    return shape;
}

bool AxZoneShape::IsEmpty() const
{
    if (const auto* ring = std::get_if<AxZoneRing>(&form))
        return ring->IsEmpty();
    const auto* whole = std::get_if<Whole>(&form);
    return whole && (*whole)->empty();
}

std::vector<osg::Vec3d> AxZoneShape::Ring() const
{
    if (const auto* middle = std::get_if<osg::Vec2f>(&form))
        return AxZoneCircle(middle->x(), middle->y());
    if (const auto* ring = std::get_if<AxZoneRing>(&form))
        return ring->Points();
    return std::get<Whole>(form)->asVector();
}

osg::ref_ptr<const Symbology::Polygon> AxZoneShape::Polygon() const
{
    if (const auto* whole = std::get_if<Whole>(&form))
        return *whole;
    osg::ref_ptr<Symbology::Polygon> polygon = new Symbology::Polygon;
    polygon->asVector() = Ring();
    return polygon;
}

osgEarth::Bounds AxZoneShape::Box() const
{
    if (const auto* middle = std::get_if<osg::Vec2f>(&form))
        return AxZoneCircleBox(middle->x(), middle->y());
    if (const auto* ring = std::get_if<AxZoneRing>(&form))
        return ring->Box();
    osgEarth::Bounds box;
    for (const osg::Vec3d& point : std::get<Whole>(form)->asVector())
        box.expandBy(point.x(), point.y());
    return box;
}

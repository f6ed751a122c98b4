#include <algorithm>
#include <cmath>
#include <osg/Math>
#include <osgEarth/GeoMath>
#include <osgEarthAnnotation/CircleNode>

namespace osgEarth::Annotation {
namespace {
// A circle whose radius is longer than a quarter of the earth's circumference
// covers more than half the globe; its outline then curves round the outside.
constexpr double kLargestRadius = 9900000.0; // metres
constexpr unsigned kFewestSegments = 16, kMostSegments = 360;
constexpr double kSegmentLength = 8.0; // metres, for circles too small for the fewest segments to show
} // namespace

CircleNode::CircleNode(MapNode* mapNode, const GeoPoint& position, const Distance& radius, const Style& style,
                       const Angle& arcStart, const Angle& arcEnd, const bool pie)
    : LocalGeometryNode(mapNode), _radius(radius), _arcStart(arcStart), _arcEnd(arcEnd), _pie(pie)
{
    _style = style;
    GeoPositionNode::setPosition(position); // builds the shape
    LocalGeometryNode::setStyle(style);
}

CircleNode::CircleNode(const CircleNode& rhs, const osg::CopyOp& op)
    : LocalGeometryNode(rhs, op), _numSegments(rhs._numSegments), _radius(rhs._radius),
      _arcStart(rhs._arcStart), _arcEnd(rhs._arcEnd), _pie(rhs._pie)
{
    rebuildGeometry();
}

void CircleNode::setRadius(const Distance& radius)
{
    if (_radius != radius) {
        _radius = radius;
        rebuildGeometry();
    }
}

void CircleNode::setNumSegments(unsigned int numSegments)
{
    if (_numSegments != numSegments) {
        _numSegments = numSegments;
        rebuildGeometry();
    }
}

void CircleNode::setArcStart(const Angle& arcStart)
{
    if (_arcStart != arcStart) {
        _arcStart = arcStart;
        rebuildGeometry();
    }
}

void CircleNode::setArcEnd(const Angle& arcEnd)
{
    if (_arcEnd != arcEnd) {
        _arcEnd = arcEnd;
        rebuildGeometry();
    }
}

void CircleNode::setPie(const bool& pie)
{
    if (_pie != pie) {
        _pie = pie;
        rebuildGeometry();
    }
}

void CircleNode::dirty()
{
    rebuildGeometry();
}

void CircleNode::rebuildGeometry()
{
    GeoPoint middle = getPosition();
    if (!middle.isValid() || !middle.makeGeographic())
        return;
    middle.altitudeMode() = ALTMODE_ABSOLUTE;
    osg::Matrixd worldToLocal;
    if (!middle.createWorldToLocal(worldToLocal))
        return;

    const double radius = std::clamp(_radius.as(Units::METERS), 0.0, kLargestRadius);
    const double start = _arcStart.as(Units::RADIANS), end = _arcEnd.as(Units::RADIANS);
    const double sweep = std::clamp(end - start, -2.0 * osg::PI, 2.0 * osg::PI);
    const bool whole = std::abs(sweep) >= 2.0 * osg::PI - 1e-9;
    unsigned segments = _numSegments;
    if (segments == 0)
        segments = static_cast<unsigned>(std::clamp(2.0 * osg::PI * radius / kSegmentLength,
                                                    static_cast<double>(kFewestSegments),
                                                    static_cast<double>(kMostSegments)));
    segments = std::max(3u, static_cast<unsigned>(std::ceil(segments * std::abs(sweep) / (2.0 * osg::PI))));

    // Closed shapes can be filled; an open arc is only a line.
    osg::ref_ptr<Geometry> shape;
    if (whole || _pie)
        shape = new Polygon(static_cast<int>(segments) + 1);
    else
        shape = new LineString(static_cast<int>(segments) + 1);
    const double lat = osg::DegreesToRadians(middle.y()), lon = osg::DegreesToRadians(middle.x());
    const unsigned points = whole ? segments : segments + 1;
    for (unsigned i = 0; i < points; ++i) {
        double pointLat = 0.0, pointLon = 0.0;
        GeoMath::destination(lat, lon, start + sweep * i / segments, radius, pointLat, pointLon);
        const GeoPoint place(middle.getSRS(), osg::RadiansToDegrees(pointLon),
                             osg::RadiansToDegrees(pointLat), middle.z(), ALTMODE_ABSOLUTE);
        osg::Vec3d world;
        if (place.toWorld(world))
            shape->push_back(world * worldToLocal);
    }
    if (_pie && !whole)
        shape->push_back(osg::Vec3d());
    setGeometry(shape.get());
}
} // namespace osgEarth::Annotation

#include <osgEarth/MapNode>
#include <osgEarthAnnotation/GeoPositionNode>

namespace osgEarth::Annotation {
GeoPositionNode::GeoPositionNode()
{
    init();
}

GeoPositionNode::GeoPositionNode(MapNode* mapNode)
{
    init();
    GeoPositionNode::setMapNode(mapNode);
}

GeoPositionNode::GeoPositionNode(MapNode* mapNode, const GeoPoint& position) : GeoPositionNode(mapNode)
{
    GeoPositionNode::setPosition(position);
}

// A copy gets a transform of its own: the copied children would hang under the original's.
GeoPositionNode::GeoPositionNode(const GeoPositionNode& rhs, const osg::CopyOp& op) : AnnotationNode(rhs, op)
{
    removeChildren(0, getNumChildren());
    init();
    GeoPositionNode::setMapNode(AnnotationNode::getMapNode());
    GeoPositionNode::setPosition(rhs.getPosition());
}

void GeoPositionNode::init()
{
    _geoxform = new GeoTransform();
    _paxform = new osg::PositionAttitudeTransform();
    _geoxform->addChild(_paxform);
    addChild(_geoxform);
}

void GeoPositionNode::setPosition(const GeoPoint& position)
{
    if (_geoxform->setPosition(position))
        dirty();
}

void GeoPositionNode::setLocalOffset(const osg::Vec3f& offset)
{
    _paxform->setPosition(offset);
    dirty();
}

void GeoPositionNode::setLocalRotation(const osg::Quat& rotation)
{
    _paxform->setAttitude(rotation);
    dirty();
}

void GeoPositionNode::setScale(const osg::Vec3f& scale)
{
    _paxform->setScale(scale);
    dirty();
}

void GeoPositionNode::setMapNode(MapNode* mapNode)
{
    AnnotationNode::setMapNode(mapNode);
    _geoxform->setTerrain(mapNode ? mapNode->getTerrain() : nullptr);
}

void GeoPositionNode::applyAltitudeSymbology(const Style& style)
{
    const AltitudeSymbol* altitude = style.get<AltitudeSymbol>();
    if (!altitude)
        return;
    if (altitude->verticalOffset().isSet())
        _paxform->setPosition(osg::Vec3d(0.0, 0.0, altitude->verticalOffset()->eval()));
    GeoPoint position = getPosition();
    if (!position.isValid() || altitude->technique().isSetTo(AltitudeSymbol::TECHNIQUE_DRAPE))
        return;
    if (altitude->clamping().isSetTo(AltitudeSymbol::CLAMP_TO_TERRAIN))
        position.set(position.getSRS(), position.x(), position.y(), 0.0, ALTMODE_RELATIVE);
    else if (altitude->clamping().isSetTo(AltitudeSymbol::CLAMP_RELATIVE_TO_TERRAIN))
        position.altitudeMode() = ALTMODE_RELATIVE;
    else
        return;
    _geoxform->setPosition(position);
}
} // namespace osgEarth::Annotation

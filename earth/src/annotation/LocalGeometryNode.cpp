#include "features/ShapeDrawables.h"
#include <osgEarth/DrapeableNode>
#include <osgEarthAnnotation/LocalGeometryNode>

namespace osgEarth::Annotation {
LocalGeometryNode::LocalGeometryNode() = default;

LocalGeometryNode::LocalGeometryNode(MapNode* mapNode) : GeoPositionNode(mapNode) {}

LocalGeometryNode::LocalGeometryNode(MapNode* mapNode, Geometry* geometry, const Style& style)
    : GeoPositionNode(mapNode), _geometry(geometry)
{
    LocalGeometryNode::setStyle(style);
}

LocalGeometryNode::LocalGeometryNode(MapNode* mapNode, osg::Node* node, const Style& style)
    : GeoPositionNode(mapNode), _node(node)
{
    LocalGeometryNode::setStyle(style);
}

LocalGeometryNode::LocalGeometryNode(const LocalGeometryNode& rhs, const osg::CopyOp& op)
    : GeoPositionNode(rhs, op), _geometry(rhs._geometry), _node(rhs._node)
{
    rebuild();
}

void LocalGeometryNode::setStyle(const Style& style)
{
    GeoPositionNode::setStyle(style);
    applyAltitudeSymbology(style);
    rebuild();
}

void LocalGeometryNode::setGeometry(Geometry* geometry)
{
    _geometry = geometry;
    _node = nullptr;
    rebuild();
}

void LocalGeometryNode::setNode(osg::Node* node)
{
    _node = node;
    _geometry = nullptr;
    rebuild();
}

void LocalGeometryNode::rebuild()
{
    if (_geometry.valid())
        _node = Features::makeShape(*_geometry, _style);
    install(_node.get());
}

void LocalGeometryNode::install(osg::Node* content)
{
    osg::Group* place = getPositionAttitudeTransform();
    place->removeChildren(0, place->getNumChildren());
    const AltitudeSymbol* altitude = _style.get<AltitudeSymbol>();
    const bool drape = altitude && altitude->technique().isSetTo(AltitudeSymbol::TECHNIQUE_DRAPE);
    // No horizon test here: it looks at a node's centre, which says nothing about a
    // shape that covers half the globe, and draped shapes are tested by the painter.
    setHorizonCulling(!drape && content && content->getBound().radius() < 100000.0f);
    if (!content)
        return;
    if (drape) {
        osg::ref_ptr<DrapeableNode> drapeable = new DrapeableNode();
        drapeable->addChild(content);
        place->addChild(drapeable);
    } else
        place->addChild(content);
}
} // namespace osgEarth::Annotation

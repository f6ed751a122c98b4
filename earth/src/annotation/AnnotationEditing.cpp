#include <osgEarthAnnotation/AnnotationEditing>

namespace osgEarth::Annotation {
namespace {
struct Follower : public Dragger::PositionChangedCallback
{
    explicit Follower(GeoPositionNode* node) : followed(node) {}
    void onPositionChanged(const Dragger*, const GeoPoint& position) override
    {
        followed->setPosition(position);
    }
    const osg::ref_ptr<GeoPositionNode> followed;
};
} // namespace

GeoPositionNodeEditor::GeoPositionNodeEditor(GeoPositionNode* localizedNode)
    : _node(localizedNode), _dragger(new SphereDragger(localizedNode->getMapNode())),
      _follower(new Follower(localizedNode))
{
    addChild(_dragger);
    GeoPositionNodeEditor::updateDraggers();
    _dragger->addPositionChangedCallback(_follower.get());
}

GeoPositionNodeEditor::~GeoPositionNodeEditor()
{
    _dragger->removePositionChangedCallback(_follower.get());
}

void GeoPositionNodeEditor::updateDraggers()
{
    _dragger->setPosition(_node->getPosition(), false);
}

void GeoPositionNodeEditor::setPosition(const GeoPoint& position)
{
    _node->setPosition(position);
    updateDraggers();
}
} // namespace osgEarth::Annotation

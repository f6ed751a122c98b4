#include "annotation/HorizonCull.h"
#include <osg/BlendFunc>
#include <osg/Depth>
#include <osgEarth/MapNode>
#include <osgEarthAnnotation/AnnotationNode>

namespace osgEarth::Annotation {
AnnotationNode::AnnotationNode()
{
    setLightingIfNotSet(false);
    setHorizonCulling(true);
}

AnnotationNode::AnnotationNode(const AnnotationNode& rhs, const osg::CopyOp& op)
    : osg::Group(rhs, op), _style(rhs._style), _priority(rhs._priority), _horizonCuller(rhs._horizonCuller),
      _mapNode(rhs._mapNode)
{
}

AnnotationNode::~AnnotationNode() = default;

void AnnotationNode::setPriority(float value)
{
    _priority = value;
}

void AnnotationNode::setHorizonCulling(bool value)
{
    if (value == _horizonCuller.valid())
        return;
    if (value) {
        _horizonCuller = new HorizonCullCallback();
        addCullCallback(_horizonCuller.get());
    } else {
        removeCullCallback(_horizonCuller.get());
        _horizonCuller = nullptr;
    }
}

void AnnotationNode::setDynamic(bool value)
{
    setDataVariance(value ? osg::Object::DYNAMIC : osg::Object::STATIC);
}

void AnnotationNode::setMapNode(MapNode* mapNode)
{
    _mapNode = mapNode;
}

MapNode* AnnotationNode::getMapNode()
{
    return _mapNode.get();
}

const MapNode* AnnotationNode::getMapNode() const
{
    return _mapNode.get();
}

void AnnotationNode::setStyle(const Style& style)
{
    _style = style;
    applyRenderSymbology(style);
}

void AnnotationNode::applyRenderSymbology(const Style& style)
{
    const RenderSymbol* render = style.get<RenderSymbol>();
    if (!render)
        return;
    osg::StateSet* state = getOrCreateStateSet();
    const auto flag = [](bool on) { return on ? osg::StateAttribute::ON : osg::StateAttribute::OFF; };
    if (render->depthTest().isSet())
        state->setMode(GL_DEPTH_TEST, flag(render->depthTest().value()));
    if (render->lighting().isSet())
        state->setMode(GL_LIGHTING, flag(render->lighting().value()));
    if (render->backfaceCulling().isSet())
        state->setMode(GL_CULL_FACE, flag(render->backfaceCulling().value()));
    if (render->transparent().isSetTo(true)) {
        state->setAttributeAndModes(
            new osg::BlendFunc(osg::BlendFunc::SRC_ALPHA, osg::BlendFunc::ONE_MINUS_SRC_ALPHA));
        state->setRenderingHint(osg::StateSet::TRANSPARENT_BIN);
    }
    if (render->order().isSet() || render->renderBin().isSet())
        state->setRenderBinDetails(render->order().isSet() ? static_cast<int>(render->order()->eval()) : 0,
                                   render->renderBin().isSet() ? render->renderBin().value()
                                                               : "DepthSortedBin");
}

void AnnotationNode::setLightingIfNotSet(bool lighting)
{
    osg::StateSet* state = getOrCreateStateSet();
    if (state->getMode(GL_LIGHTING) == osg::StateAttribute::INHERIT)
        state->setMode(GL_LIGHTING, lighting ? osg::StateAttribute::ON : osg::StateAttribute::OFF);
}
} // namespace osgEarth::Annotation

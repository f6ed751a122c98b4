#include "base/SharedWhileUsed.h"
#include "text/LabelLetters.h"
#include "text/ScreenSpaceBin.h"
#include "text/TextDrawables.h"
#include <osgEarthAnnotation/LabelNode>
#include <osgUtil/CullVisitor>

namespace osgEarth::Annotation {
LabelNode::LabelNode(MapNode* mapNode, const GeoPoint& position, const std::string& text, const Style& style)
    : GeoPositionNode(mapNode, position), _text(text)
{
    init(style);
}

LabelNode::LabelNode(MapNode* mapNode, const GeoPoint& position, const std::string& text,
                     const TextSymbol* symbol)
    : GeoPositionNode(mapNode, position), _text(text)
{
    Style style;
    if (symbol)
        style.add(osg::clone(symbol));
    init(style);
}

LabelNode::LabelNode(MapNode* mapNode, const GeoPoint& position, const Style& style)
    : GeoPositionNode(mapNode, position)
{
    init(style);
}

LabelNode::LabelNode(MapNode* mapNode, const Style& style) : GeoPositionNode(mapNode)
{
    init(style);
}

LabelNode::LabelNode(const std::string& text, const Style& style) : _text(text)
{
    init(style);
}

LabelNode::LabelNode(const LabelNode& rhs, const osg::CopyOp& op) : GeoPositionNode(rhs, op), _text(rhs._text)
{
    const osg::ref_ptr<osg::StateSet> state = getStateSet();
    init(rhs._style);
    setStateSet(state);
}

void LabelNode::init(const Style& style)
{
    // The layout's state has the lighting off; one of its own would cost each label a node of the state
    // graph.
    setStateSet(nullptr);
    _geode = new osg::Geode();
    _geode->setCullingActive(false);
    // All labels share one state set: OpenGL then changes no state between two labels.
    _geode->setStateSet(sharedWhileUsed<osg::StateSet, LabelNode>([] {
        osg::ref_ptr<osg::StateSet> state = new osg::StateSet();
        ScreenSpaceLayout::activate(state.get());
        return state;
    }));
    getPositionAttitudeTransform()->addChild(_geode);
    if (const TextSymbol* symbol = style.get<TextSymbol>())
        if (_text.empty() && symbol->content().isSet())
            _text = symbol->content()->eval();
    setStyle(style);
}

void LabelNode::setStyle(const Style& style)
{
    GeoPositionNode::setStyle(style);
    applyAltitudeSymbology(style);
    if (const TextSymbol* symbol = style.get<TextSymbol>())
        if (symbol->priority().isSet())
            _priority = static_cast<float>(symbol->priority()->eval());
    rebuild();
}

void LabelNode::setText(const std::string& text)
{
    if (text == _text)
        return;
    _text = text;
    rebuild();
}

void LabelNode::setPriority(float value)
{
    GeoPositionNode::setPriority(value);
    for (unsigned i = 0; i < _geode->getNumDrawables(); ++i)
        ScreenSpaceLayoutData::getOrCreate(_geode->getDrawable(i))->setPriority(value);
}

void LabelNode::setDynamic(bool value)
{
    GeoPositionNode::setDynamic(value);
    for (unsigned i = 0; i < _geode->getNumDrawables(); ++i)
        _geode->getDrawable(i)->setDataVariance(getDataVariance());
}

void LabelNode::traverse(osg::NodeVisitor& nv)
{
    osgUtil::CullVisitor* cull = nv.asCullVisitor();
    if (cull && isPlain(nv))
        cullPlain(*cull);
    else
        GeoPositionNode::traverse(nv);
}

/// Whether nobody has put anything between the node and its letters.
bool LabelNode::isPlain(const osg::NodeVisitor& nv) const
{
    const auto isBare = [&](const osg::Node& node) {
        return !node.getCullCallback() && nv.validNodeMask(node);
    };
    const auto isFrame = [&](const osg::Group& group) {
        return isBare(group) && group.getNumChildren() == 1 && !group.getStateSet();
    };
    return _isLetters && getNumChildren() == 1 && isFrame(*getGeoTransform()) &&
           isFrame(*getPositionAttitudeTransform()) &&
           getPositionAttitudeTransform()->getChild(0) == _geode && isBare(*_geode) &&
           _geode->getStateSet() && _geode->getNumChildren() == 1 && isBare(*_geode->getChild(0));
}

// Of thousands of labels most are out of view or without room: a walk through
// their transforms took half of the time of such a frame.
void LabelNode::cullPlain(osgUtil::CullVisitor& cull) const
{
    osg::Matrixd toEye = *cull.getModelViewMatrix();
    getGeoTransform()->computeLocalToWorldMatrix(toEye, &cull);
    getPositionAttitudeTransform()->computeLocalToWorldMatrix(toEye, &cull);
    if (!originOnScreen(toEye, *cull.getProjectionMatrix()))
        return;
    osg::Drawable* letters = _geode->getDrawable(0);
    cull.pushStateSet(_geode->getStateSet());
    cull.pushStateSet(letters->getStateSet());
    cull.addDrawableAndDepth(letters, new osg::RefMatrix(toEye), static_cast<float>(-toEye(3, 2)));
    cull.popStateSet();
    cull.popStateSet();
}

void LabelNode::rebuild()
{
    _isLetters = false;
    _geode->removeDrawables(0, _geode->getNumDrawables());
    if (_text.empty())
        return;
    const TextSymbol* symbol = _style.get<TextSymbol>();
    osg::ref_ptr<osg::Drawable> text = makeLetters(_text, symbol, _style.get<BBoxSymbol>());
    _isLetters = text.valid();
    if (!text)
        text = makeText(_text, symbol, _style.get<BBoxSymbol>());
    text->setDataVariance(getDataVariance());
    ScreenSpaceLayoutData* layout = ScreenSpaceLayoutData::getOrCreate(text.get());
    const bool always = symbol && symbol->declutter().isSetTo(false);
    layout->setPriority(always ? FLT_MAX : _priority);
    if (symbol && symbol->pixelOffset().isSet())
        layout->setPixelOffset(symbol->pixelOffset().value());
    _geode->addDrawable(text);
}
} // namespace osgEarth::Annotation

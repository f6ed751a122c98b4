#include "base/SharedWhileUsed.h"
#include "text/LabelLetters.h"
#include "text/TextDrawables.h"
#include <osgEarthAnnotation/LabelNode>

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
    init(rhs._style);
}

void LabelNode::init(const Style& style)
{
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

void LabelNode::rebuild()
{
    _geode->removeDrawables(0, _geode->getNumDrawables());
    if (_text.empty())
        return;
    const TextSymbol* symbol = _style.get<TextSymbol>();
    osg::ref_ptr<osg::Drawable> text = makeLetters(_text, symbol);
    if (!text)
        text = makeText(_text, symbol);
    text->setDataVariance(getDataVariance());
    ScreenSpaceLayoutData* layout = ScreenSpaceLayoutData::getOrCreate(text.get());
    const bool always = symbol && symbol->declutter().isSetTo(false);
    layout->setPriority(always ? FLT_MAX : _priority);
    if (symbol && symbol->pixelOffset().isSet())
        layout->setPixelOffset(symbol->pixelOffset().value());
    _geode->addDrawable(text);
}
} // namespace osgEarth::Annotation

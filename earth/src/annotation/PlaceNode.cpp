#include "base/SharedWhileUsed.h"
#include "text/TextDrawables.h"
#include <cfloat>
#include <osgDB/ReadFile>
#include <osgEarth/Notify>
#include <osgEarthAnnotation/PlaceNode>

namespace osgEarth::Annotation {
namespace {
constexpr short kGap = 4; // pixels between icon and text
}

PlaceNode::PlaceNode()
{
    init();
}

PlaceNode::PlaceNode(MapNode* mapNode, const GeoPoint& position, osg::Image* iconImage,
                     const std::string& labelText, const Style& style)
    : GeoPositionNode(mapNode, position), _image(iconImage), _imageGiven(iconImage != nullptr),
      _text(labelText)
{
    init();
    setStyle(style);
}

PlaceNode::PlaceNode(MapNode* mapNode, const GeoPoint& position, const std::string& labelText,
                     const Style& style)
    : PlaceNode(mapNode, position, nullptr, labelText, style)
{
}

PlaceNode::PlaceNode(MapNode* mapNode, const GeoPoint& position, const Style& style,
                     const osgDB::Options* dbOptions)
    : GeoPositionNode(mapNode, position), _dbOptions(dbOptions)
{
    init();
    if (const TextSymbol* symbol = style.get<TextSymbol>())
        if (symbol->content().isSet())
            _text = symbol->content()->eval();
    setStyle(style);
}

PlaceNode::PlaceNode(const PlaceNode& rhs, const osg::CopyOp& op)
    : GeoPositionNode(rhs, op), _image(rhs._image), _imageGiven(rhs._imageGiven), _text(rhs._text),
      _dbOptions(rhs._dbOptions)
{
    init();
    setStyle(rhs._style);
}

void PlaceNode::init()
{
    // The layout's state has the lighting off, and OpenGL changes no state between places that share it.
    setStateSet(nullptr);
    _geode = new osg::Geode();
    _geode->setCullingActive(false);
    _geode->setStateSet(sharedWhileUsed<osg::StateSet, PlaceNode>([] {
        osg::ref_ptr<osg::StateSet> state = new osg::StateSet();
        ScreenSpaceLayout::activate(state.get());
        return state;
    }));
    getPositionAttitudeTransform()->addChild(_geode);
}

void PlaceNode::setIconImage(osg::Image* image)
{
    _image = image;
    _imageGiven = image != nullptr;
    rebuild();
}

void PlaceNode::setText(const std::string& text)
{
    if (text == _text)
        return;
    _text = text;
    rebuild();
}

void PlaceNode::setStyle(const Style& style)
{
    GeoPositionNode::setStyle(style);
    applyAltitudeSymbology(style);
    const IconSymbol* icon = style.get<IconSymbol>();
    if (!_imageGiven) {
        _image = icon ? icon->getImage() : nullptr;
        if (!_image && icon && icon->url().isSet()) {
            const std::string file = icon->url()->eval();
            _image = osgDB::readRefImageFile(file, _dbOptions.get());
            if (!_image)
                notifyLine(osg::WARN, "icon \"" + file + "\" cannot be read");
        }
    }
    if (const TextSymbol* symbol = style.get<TextSymbol>())
        if (symbol->priority().isSet())
            _priority = static_cast<float>(symbol->priority()->eval());
    rebuild();
}

void PlaceNode::setPriority(float value)
{
    GeoPositionNode::setPriority(value);
    rebuild();
}

void PlaceNode::setDynamic(bool value)
{
    GeoPositionNode::setDynamic(value);
    rebuild();
}

void PlaceNode::rebuild()
{
    _geode->removeDrawables(0, _geode->getNumDrawables());
    const IconSymbol* icon = _style.get<IconSymbol>();
    const TextSymbol* symbol = _style.get<TextSymbol>();
    const auto add = [this](osg::Drawable* drawable, bool always, const osg::Vec2s& offset) {
        drawable->setDataVariance(getDataVariance());
        ScreenSpaceLayoutData* layout = ScreenSpaceLayoutData::getOrCreate(drawable);
        layout->setPriority(always ? FLT_MAX : _priority);
        layout->setPixelOffset(offset);
        _geode->addDrawable(drawable);
    };
    osg::Vec2s beside;
    if (_image.valid() && _image->s() > 0) {
        osg::ref_ptr<osg::Geometry> drawable = makeIcon(_image.get(), icon);
        beside.x() = short(drawable->getBoundingBox().xMax() + kGap);
        add(drawable.get(), icon && icon->declutter().isSetTo(false), osg::Vec2s());
    }
    if (!_text.empty()) {
        if (symbol && symbol->pixelOffset().isSet())
            beside = symbol->pixelOffset().value();
        osg::ref_ptr<osgText::Text> text = makeText(_text, symbol);
        if (_image.valid() && !(symbol && symbol->alignment().isSet()))
            text->setAlignment(osgText::Text::LEFT_CENTER);
        add(text.get(), symbol && symbol->declutter().isSetTo(false), beside);
    }
}
} // namespace osgEarth::Annotation

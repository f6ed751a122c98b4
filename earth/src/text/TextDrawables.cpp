#include "text/TextDrawables.h"
#include "text/Fonts.h"
#include <iterator>
#include <map>
#include <mutex>
#include <osg/BlendFunc>
#include <osg/Math>
#include <osg/observer_ptr>
#include <osg/Texture2D>

namespace osgEarth {
using namespace Symbology;

osgText::String::Encoding textEncodingOf(const TextSymbol* symbol)
{
    if (!symbol || !symbol->encoding().isSet())
        return osgText::String::ENCODING_UTF8; // of which ASCII is a part
    switch (symbol->encoding().value()) {
    case TextSymbol::ENCODING_UTF16:
        return osgText::String::ENCODING_UTF16;
    case TextSymbol::ENCODING_UTF32:
        return osgText::String::ENCODING_UTF32;
    default:
        return osgText::String::ENCODING_UTF8;
    }
}

osg::ref_ptr<osgText::Text> makeText(const std::string& content, const TextSymbol* symbol,
                                     const BBoxSymbol* plate)
{
    osg::ref_ptr<osgText::Text> text = new osgText::Text();
    text->setFont(fontNamed(symbol ? symbol->font().value() : std::string()));
    const float size =
        symbol && symbol->size().isSet() ? static_cast<float>(symbol->size()->eval()) : kTextSize;
    text->setCharacterSize(size > 0.0f ? size : kTextSize);
    text->setFontResolution(static_cast<unsigned>(text->getCharacterHeight()),
                            static_cast<unsigned>(text->getCharacterHeight()));
    text->setAxisAlignment(osgText::Text::XY_PLANE);
    text->setAlignment(
        osgText::Text::AlignmentType(symbol ? symbol->alignment().value() : TextSymbol::ALIGN_BASE_LINE));
    text->setColor(symbol && symbol->fill().isSet() ? symbol->fill()->color() : Color::White);
    const Color halo = symbol && symbol->halo().isSet() ? symbol->halo()->color() : Color(kTextHalo);
    if (halo.a() > 0.0f) {
        text->setBackdropType(osgText::Text::OUTLINE);
        text->setBackdropColor(halo);
        text->setBackdropOffset(symbol ? symbol->haloOffset().value() : 0.07f);
    }
    if (symbol && symbol->layout().isSetTo(TextSymbol::LAYOUT_RIGHT_TO_LEFT))
        text->setLayout(osgText::Text::RIGHT_TO_LEFT);
    else if (symbol && symbol->layout().isSetTo(TextSymbol::LAYOUT_VERTICAL))
        text->setLayout(osgText::Text::VERTICAL);
    if (symbol && symbol->onScreenRotation().isSet())
        text->setRotation(osg::Quat(osg::DegreesToRadians(symbol->onScreenRotation()->eval()), osg::Z_AXIS));
    if (plate && plate->fill().isSet() && plate->fill()->color().a() > 0.0f) {
        text->setDrawMode(osgText::Text::TEXT | osgText::Text::FILLEDBOUNDINGBOX);
        text->setBoundingBoxColor(plate->fill()->color());
        text->setBoundingBoxMargin(plate->margin().value());
    }
    text->setText(content, textEncodingOf(symbol));
    // The layout moves the text to its place on the screen after the cull test, which
    // would look for it in the wrong place.
    text->setCullingActive(false);
    return text;
}

namespace {
/// One for all icons with that picture, as long as one of them is there: it keeps the picture, so that no
/// other can have its address.
osg::ref_ptr<osg::StateSet> pictureState(osg::Image* image)
{
    static std::mutex mutex;
    static std::map<const osg::Image*, osg::observer_ptr<osg::StateSet>> known;
    std::lock_guard<std::mutex> lock(mutex);
    osg::ref_ptr<osg::StateSet> state;
    if (known[image].lock(state))
        return state;
    for (auto entry = known.begin(); entry != known.end();)
        entry = entry->second.valid() ? std::next(entry) : known.erase(entry);
    osg::ref_ptr<osg::Texture2D> texture = new osg::Texture2D(image);
    texture->setResizeNonPowerOfTwoHint(false);
    texture->setFilter(osg::Texture::MIN_FILTER, osg::Texture::LINEAR_MIPMAP_LINEAR);
    texture->setWrap(osg::Texture::WRAP_S, osg::Texture::CLAMP_TO_EDGE);
    texture->setWrap(osg::Texture::WRAP_T, osg::Texture::CLAMP_TO_EDGE);
    state = new osg::StateSet();
    state->setTextureAttributeAndModes(0, texture.get());
    known[image] = state.get();
    return state;
}
} // namespace

osg::ref_ptr<osg::Geometry> makeIcon(osg::Image* image, const IconSymbol* symbol)
{
    const double scale = symbol && symbol->scale().isSet() ? symbol->scale()->eval() : 1.0;
    const float width = static_cast<float>(image->s() * scale),
                height = static_cast<float>(image->t() * scale);
    const int alignment = symbol ? symbol->alignment().value() : IconSymbol::ALIGN_CENTER_CENTER;
    // Columns left, center, right and rows top, center, bottom of the alignments.
    const float left = -width * 0.5f * static_cast<float>(alignment / 3);
    const float bottom = height * (0.5f * static_cast<float>(alignment % 3) - 1.0f);

    osg::ref_ptr<osg::Vec3Array> corners = new osg::Vec3Array();
    osg::Quat turn;
    if (symbol && symbol->heading().isSet())
        turn.makeRotate(-osg::DegreesToRadians(symbol->heading()->eval()), osg::Z_AXIS);
    for (const osg::Vec2f& c : {osg::Vec2f(0, 0), osg::Vec2f(1, 0), osg::Vec2f(1, 1), osg::Vec2f(0, 1)})
        corners->push_back(turn * osg::Vec3f(left + c.x() * width, bottom + c.y() * height, 0.0f));
    osg::ref_ptr<osg::Vec2Array> picture = new osg::Vec2Array();
    const bool topDown = image->getOrigin() == osg::Image::TOP_LEFT;
    for (const osg::Vec2f& c : {osg::Vec2f(0, 0), osg::Vec2f(1, 0), osg::Vec2f(1, 1), osg::Vec2f(0, 1)})
        picture->push_back(osg::Vec2f(c.x(), topDown ? 1.0f - c.y() : c.y()));

    osg::ref_ptr<osg::Geometry> geometry = new osg::Geometry();
    geometry->setUseDisplayList(false);
    geometry->setUseVertexBufferObjects(true);
    geometry->setVertexArray(corners.get());
    geometry->setTexCoordArray(0, picture.get(), osg::Array::BIND_PER_VERTEX);
    osg::ref_ptr<osg::Vec4Array> white = new osg::Vec4Array(1, &Color::White);
    geometry->setColorArray(white.get(), osg::Array::BIND_OVERALL);
    geometry->addPrimitiveSet(new osg::DrawArrays(GL_TRIANGLE_FAN, 0, 4));
    geometry->setStateSet(pictureState(image));
    geometry->setCullingActive(false);
    return geometry;
}
} // namespace osgEarth

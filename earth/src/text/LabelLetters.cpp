#include "text/LabelLetters.h"
#include "text/Fonts.h"
#include "text/GlyphQuads.h"
#include "text/TextAlignment.h"
#include "text/TextDrawables.h"
#include <algorithm>
#include <atomic>
#include <cmath>
#include <map>
#include <memory>
#include <mutex>
#include <osg/Geometry>
#include <osg/Program>
#include <osgUtil/CullVisitor>

namespace osgEarth {
using namespace Symbology;
using Features::GlyphAtlas;

namespace {
constexpr double kSmallestText = 6.0, kLargestText = 64.0; // pixels
constexpr double kWidestRim = 3.0;                         // pixels
constexpr size_t kLongestText = 10000;

const char kLetterVertexShader[] = R"(#version 330 compatibility
in vec4 ax_halo;
out vec2 ax_place;
flat out vec4 ax_fillColor;
flat out vec4 ax_haloColor;
void main()
{
    gl_Position = gl_ModelViewProjectionMatrix * gl_Vertex;
    ax_place = gl_MultiTexCoord0.xy;
    ax_fillColor = gl_Color;
    ax_haloColor = ax_halo;
}
)";
const char kLetterFragmentShader[] = R"(#version 330 compatibility
uniform sampler2D ax_letters;
vec4 ax_letterCover(sampler2D letters, vec2 at);
in vec2 ax_place;
flat in vec4 ax_fillColor;
flat in vec4 ax_haloColor;
void main()
{
    vec4 cover = ax_letterCover(ax_letters, ax_place);
    gl_FragColor = vec4(mix(ax_haloColor.rgb, ax_fillColor.rgb, cover.r),
                        max(cover.a * ax_haloColor.a, cover.r * ax_fillColor.a));
}
)";

/// What texts of one font and size share while there are any.
struct Letters
{
    Letters(osgText::Font* font, unsigned pixels) : atlas(font, pixels), state(new osg::StateSet())
    {
        osg::ref_ptr<osg::Program> program = new osg::Program();
        program->setName("letters");
        program->addShader(new osg::Shader(osg::Shader::VERTEX, kLetterVertexShader));
        program->addShader(new osg::Shader(osg::Shader::FRAGMENT, kLetterFragmentShader));
        program->addShader(GlyphAtlas::coverShader());
        program->addBindAttribLocation("ax_halo", LetterBatch::kHaloAttribute);
        state->setDataVariance(osg::Object::DYNAMIC);
        // Nothing else can draw from this picture.
        state->setAttributeAndModes(program.get(), osg::StateAttribute::ON | osg::StateAttribute::PROTECTED);
        state->setTextureAttribute(0, atlas.texture());
        state->addUniform(new osg::Uniform("ax_letters", 0));
    }
    std::mutex mutex; // of the atlas
    GlyphAtlas atlas;
    osg::ref_ptr<osg::StateSet> state;
};

std::shared_ptr<Letters> lettersOf(osgText::Font* font, unsigned pixels)
{
    static std::mutex mutex;
    static std::map<std::pair<osgText::Font*, unsigned>, std::weak_ptr<Letters>> known;
    std::lock_guard<std::mutex> lock(mutex);
    std::weak_ptr<Letters>& slot = known[{font, pixels}];
    std::shared_ptr<Letters> letters = slot.lock();
    if (!letters)
        slot = letters = std::make_shared<Letters>(font, pixels);
    return letters;
}

class LetterDrawable : public LetteredText
{
public:
    explicit LetterDrawable(std::shared_ptr<Letters> letters) : _letters(std::move(letters))
    {
        setUseDisplayList(false);
        setUseVertexBufferObjects(true);
        // The layout moves the text to its place on the screen after the cull test, which
        // would look for it in the wrong place.
        setCullingActive(false);
        setStateSet(_letters->state.get());
    }

    /// False when there is nothing to see of it, or no room for all letters.
    bool write(const osgText::String& text, const TextSymbol* symbol, const BBoxSymbol* plate)
    {
        layOut(text);
        if (_letters->atlas.isFull() || !_box.valid())
            return false;
        align(symbol ? symbol->alignment().value() : TextSymbol::ALIGN_BASE_LINE);
        const osg::Vec4f fill = symbol && symbol->fill().isSet() ? symbol->fill()->color() : Color::White;
        osg::Vec4f halo = symbol && symbol->halo().isSet() ? symbol->halo()->color() : kTextHalo;
        // Without a rim the letters' soft edges keep their own colour.
        if (halo.a() <= 0.0f)
            halo.set(fill.r(), fill.g(), fill.b(), 0.0f);
        _fills->assign(_quads.corners->size(), fill);
        _halos->assign(_quads.corners->size(), halo);
        if (plate && plate->fill().isSet() && plate->fill()->color().a() > 0.0f)
            addPlate(*plate);
        setVertexArray(_quads.corners.get());
        setTexCoordArray(0, _quads.places.get(), osg::Array::BIND_PER_VERTEX);
        setColorArray(_fills.get(), osg::Array::BIND_PER_VERTEX);
        setVertexAttribArray(LetterBatch::kHaloAttribute, _halos.get(), osg::Array::BIND_PER_VERTEX);
        addPrimitiveSet(_quads.indices.get());
        dirtyBound();
        return true;
    }

    PlacedText at(const osg::Vec2f& place) const override
    {
        return {_number,      place,        _quads.corners.get(), _quads.places.get(),
                _fills.get(), _halos.get(), _quads.indices.get()};
    }
    osg::BoundingBox computeBoundingBox() const override { return _box; }

    using osg::Geometry::accept;
    void accept(osg::NodeVisitor& nv) override
    {
        osgUtil::CullVisitor* cull = nv.asCullVisitor();
        if (!cull)
            return osg::Geometry::accept(nv);
        // The text's depth is that of the screen, not of the world, so that the near and far
        // planes must not be computed from it.
        const osg::CullSettings::ComputeNearFarMode mode = cull->getComputeNearFarMode();
        const osg::CullSettings::InheritanceMask inherited = cull->getInheritanceMask();
        cull->setComputeNearFarMode(osg::CullSettings::DO_NOT_COMPUTE_NEAR_FAR);
        osg::Geometry::accept(nv);
        cull->setComputeNearFarMode(mode);
        cull->setInheritanceMask(inherited);
    }

private:
    void layOut(const osgText::String& text)
    {
        const std::lock_guard<std::mutex> lock(_letters->mutex);
        float pen = 0.0f;
        for (const unsigned code : text) {
            const GlyphAtlas::Glyph& glyph = _letters->atlas.glyph(code);
            if (glyph.drawn)
                add(glyph, pen);
            pen += glyph.advance;
        }
    }
    void add(const GlyphAtlas::Glyph& glyph, float pen)
    {
        _quads.add(glyph, {pen, 0.0f});
        const float rim = GlyphAtlas::rimPixels();
        const osg::Vec3f low(pen + glyph.left, glyph.bottom, 0.0f);
        _box.expandBy(low + osg::Vec3f(rim, rim, 0.0f));
        _box.expandBy(low + osg::Vec3f(glyph.width - rim, glyph.height - rim, 0.0f));
    }
    /// Behind the letters: they are drawn in order.
    void addPlate(const BBoxSymbol& plate)
    {
        const float margin = std::round(plate.margin().value());
        osg::Vec3f grown(margin, margin, 0.0f);
        if (plate.leastSize().isSet()) {
            const osg::Vec3f missing = osg::Vec3f(*plate.leastSize(), 0.0f) - (_box._max - _box._min);
            grown.x() = std::max(grown.x(), std::round(0.5f * missing.x()));
            grown.y() = std::max(grown.y(), std::round(0.5f * missing.y()));
        }
        _box = osg::BoundingBox(_box._min - grown, _box._max + grown);
        const osg::BoundingBox b = _box;
        addArea(b.xMin(), b.yMin(), b.xMax(), b.yMax(), plate.fill()->color());
        if (!plate.border().isSet())
            return;
        const osg::Vec4f rim = plate.border()->color();
        addArea(b.xMin() - 1.0f, b.yMin() - 1.0f, b.xMax() + 1.0f, b.yMin(), rim);
        addArea(b.xMin() - 1.0f, b.yMax(), b.xMax() + 1.0f, b.yMax() + 1.0f, rim);
        addArea(b.xMin() - 1.0f, b.yMin(), b.xMin(), b.yMax(), rim);
        addArea(b.xMax(), b.yMin(), b.xMax() + 1.0f, b.yMax(), rim);
        _box.expandBy(osg::Vec3f(b.xMin() - 1.0f, b.yMin() - 1.0f, 0.0f));
        _box.expandBy(osg::Vec3f(b.xMax() + 1.0f, b.yMax() + 1.0f, 0.0f));
    }
    void addArea(float left, float bottom, float right, float top, const osg::Vec4f& color)
    {
        // Each of its corners is in the middle of a mark, where that covers everything.
        GlyphAtlas::Glyph full = _letters->atlas.dot();
        full.u0 = full.u1 = 0.5f * (full.u0 + full.u1);
        full.v0 = full.v1 = 0.5f * (full.v0 + full.v1);
        full.left = left;
        full.bottom = bottom;
        full.width = right - left;
        full.height = top - bottom;
        _quads.add(full, osg::Vec2f());
        std::rotate(_quads.indices->begin(), _quads.indices->end() - 6, _quads.indices->end());
        _fills->resize(_quads.corners->size(), color);
        _halos->resize(_quads.corners->size(), color);
    }
    /// Puts the origin where the alignment wants it, in whole pixels: the letters are not blended between.
    void align(TextSymbol::Alignment alignment)
    {
        using T = TextSymbol;
        osg::Vec3f origin(_box.xMin() + acrossOf(alignment) * (_box.xMax() - _box.xMin()), 0.0f, 0.0f);
        switch (alignment) {
        case T::ALIGN_LEFT_TOP:
        case T::ALIGN_CENTER_TOP:
        case T::ALIGN_RIGHT_TOP:
            origin.y() = _box.yMax();
            break;
        case T::ALIGN_LEFT_CENTER:
        case T::ALIGN_CENTER_CENTER:
        case T::ALIGN_RIGHT_CENTER:
            origin.y() = _box.center().y();
            break;
        case T::ALIGN_LEFT_BOTTOM:
        case T::ALIGN_CENTER_BOTTOM:
        case T::ALIGN_RIGHT_BOTTOM:
            origin.y() = _box.yMin();
            break;
        default:
            break;
        }
        origin.set(std::round(origin.x()), std::round(origin.y()), 0.0f);
        for (osg::Vec3f& corner : *_quads.corners)
            corner -= origin;
        const osg::Vec3f rim(GlyphAtlas::rimPixels(), GlyphAtlas::rimPixels(), 0.0f);
        _box = osg::BoundingBox(_box._min - origin - rim, _box._max - origin + rim);
    }

    static std::uint64_t nextNumber()
    {
        static std::atomic<std::uint64_t> last{0};
        return ++last;
    }

    const std::shared_ptr<Letters> _letters;
    const std::uint64_t _number = nextNumber();
    Features::GlyphQuads _quads;
    osg::ref_ptr<osg::Vec4Array> _fills = new osg::Vec4Array();
    osg::ref_ptr<osg::Vec4Array> _halos = new osg::Vec4Array();
    osg::BoundingBox _box; // without the letters' rims until it is aligned
};
} // namespace

osg::ref_ptr<LetteredText> makeLetters(const std::string& content, const TextSymbol* symbol,
                                       const BBoxSymbol* plate)
{
    const double size = symbol && symbol->size().isSet() ? symbol->size()->eval() : kTextSize;
    const bool turned =
        symbol && symbol->onScreenRotation().isSet() && symbol->onScreenRotation()->eval() != 0.0;
    const bool leftToRight =
        !symbol || !symbol->layout().isSet() || symbol->layout().isSetTo(TextSymbol::LAYOUT_LEFT_TO_RIGHT);
    const osgText::String text(content, textEncodingOf(symbol));
    if (size < kSmallestText || size > kLargestText || size != std::round(size) || turned || !leftToRight ||
        (symbol && symbol->haloOffset().value() * size > kWidestRim) || text.size() > kLongestText ||
        std::find(text.begin(), text.end(), static_cast<unsigned>('\n')) != text.end())
        return nullptr;
    const auto letters =
        lettersOf(fontNamed(symbol ? symbol->font().value() : std::string()), static_cast<unsigned>(size));
    osg::ref_ptr<LetterDrawable> drawable = new LetterDrawable(letters);
    return drawable->write(text, symbol, plate) ? osg::ref_ptr<LetteredText>(drawable) : nullptr;
}
} // namespace osgEarth

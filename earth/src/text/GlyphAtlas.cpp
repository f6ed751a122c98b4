#include "text/GlyphAtlas.h"
#include <algorithm>
#include <cmath>
#include <cstring>
#include <osgText/Glyph>
#include <vector>

namespace osgEarth::Features {
namespace {
constexpr unsigned kWidth = 1024, kHeight = 512;
constexpr int kRim = 2; // pixels
// Share of a neighbour's coverage that the rim takes over, by squared distance.
float rimWeight(int distance2)
{
    return distance2 <= 2 ? 1.0f : distance2 <= 4 ? 0.8f : distance2 <= 5 ? 0.45f : 0.15f;
}
constexpr float kDotRadius = 2.5f;

// On the screen a letter's pixel is one of the picture, and nothing may be blended.
const char kCoverShader[] = R"(#version 330 compatibility
vec4 ax_letterCover(sampler2D letters, vec2 at)
{
    vec2 place = at * vec2(textureSize(letters, 0));
    float texels = length(dFdx(place)); // of a pixel
    if (texels > 0.98 || texels < 1e-6)
        return texture(letters, at);
    place -= 0.5;
    ivec2 corner = ivec2(floor(place));
    vec2 share = place - vec2(corner);
    vec4 below = mix(texelFetch(letters, corner, 0), texelFetch(letters, corner + ivec2(1, 0), 0), share.x);
    vec4 above = mix(texelFetch(letters, corner + ivec2(0, 1), 0),
                     texelFetch(letters, corner + ivec2(1, 1), 0), share.x);
    vec4 cover = mix(below, above, share.y);
    return clamp((cover - 0.5) * max(1.0, 0.6 / texels) + 0.5, 0.0, 1.0);
}
)";
} // namespace

GlyphAtlas::GlyphAtlas(osgText::Font* font, unsigned pixels)
    : _font(font ? font : osgText::Font::getDefaultFont().get()), _pixels(pixels), _image(new osg::Image()),
      _texture(new osg::Texture2D())
{
    _image->allocateImage(static_cast<int>(kWidth), static_cast<int>(kHeight), 1, GL_LUMINANCE_ALPHA,
                          GL_UNSIGNED_BYTE);
    _image->setInternalTextureFormat(GL_LUMINANCE8_ALPHA8);
    _texture->setImage(_image.get());
    _texture->setDataVariance(osg::Object::DYNAMIC);
    _texture->setResizeNonPowerOfTwoHint(false);
    // Letters stand on whole pixels, so nothing needs to be blended.
    _texture->setFilter(osg::Texture::MIN_FILTER, osg::Texture::NEAREST);
    _texture->setFilter(osg::Texture::MAG_FILTER, osg::Texture::NEAREST);
    reset();
}

osg::Shader* GlyphAtlas::coverShader()
{
    return new osg::Shader(osg::Shader::FRAGMENT, kCoverShader);
}

float GlyphAtlas::rimPixels()
{
    return static_cast<float>(kRim);
}

void GlyphAtlas::reset()
{
    std::memset(_image->data(), 0, _image->getTotalSizeInBytes());
    _glyphs.clear();
    _penX = _penY = _rowHeight = 0;
    _full = false;
    const unsigned side = 2 * static_cast<unsigned>(std::ceil(kDotRadius));
    std::vector<unsigned char> disc(side * side);
    for (unsigned y = 0; y < side; ++y)
        for (unsigned x = 0; x < side; ++x) {
            const float away = std::hypot(static_cast<float>(x) + 0.5f - 0.5f * static_cast<float>(side),
                                          static_cast<float>(y) + 0.5f - 0.5f * static_cast<float>(side));
            disc[y * side + x] =
                static_cast<unsigned char>(255.0f * std::clamp(kDotRadius + 0.5f - away, 0.0f, 1.0f));
        }
    _dot = add(side, side, disc.data());
    _dot.left = -0.5f * _dot.width;
    _dot.bottom = -0.5f * _dot.height;
    _image->dirty();
}

const GlyphAtlas::Glyph& GlyphAtlas::glyph(unsigned code)
{
    const auto known = _glyphs.find(code);
    if (known != _glyphs.end())
        return known->second;
    Glyph made;
    if (osgText::Glyph* source = _font->getGlyph(osgText::FontResolution(_pixels, _pixels), code)) {
        if (source->s() > 0 && source->t() > 0 && source->data() && code != ' ') {
            std::vector<unsigned char> coverage;
            for (int y = 0; y < source->t(); ++y)
                coverage.insert(coverage.end(), source->data(0, y), source->data(0, y) + source->s());
            made =
                add(static_cast<unsigned>(source->s()), static_cast<unsigned>(source->t()), coverage.data());
        }
        const float size = static_cast<float>(_pixels);
        made.left = std::round(source->getHorizontalBearing().x() * size) - static_cast<float>(kRim);
        made.bottom = std::round(source->getHorizontalBearing().y() * size) - static_cast<float>(kRim);
        made.advance = std::round(source->getHorizontalAdvance() * size);
        _image->dirty();
    }
    return _glyphs[code] = made;
}

GlyphAtlas::Glyph GlyphAtlas::add(unsigned width, unsigned height, const unsigned char* coverage)
{
    Glyph made;
    const unsigned w = width + 2 * static_cast<unsigned>(kRim), h = height + 2 * static_cast<unsigned>(kRim);
    if (_penX + w > kWidth) {
        _penX = 0;
        _penY += _rowHeight;
        _rowHeight = 0;
    }
    if (w > kWidth || _penY + h > kHeight) {
        _full = true;
        return made;
    }
    const auto at = [&](int x, int y) {
        return x < 0 || y < 0 || x >= static_cast<int>(width) || y >= static_cast<int>(height)
                   ? 0
                   : static_cast<int>(coverage[static_cast<unsigned>(y) * width + static_cast<unsigned>(x)]);
    };
    for (int y = 0; y < static_cast<int>(h); ++y) {
        unsigned char* row = _image->data(static_cast<int>(_penX), static_cast<int>(_penY) + y);
        for (int x = 0; x < static_cast<int>(w); ++x) {
            float rim = 0.0f;
            for (int dy = -kRim; dy <= kRim; ++dy)
                for (int dx = -kRim; dx <= kRim; ++dx)
                    rim = std::max(rim, rimWeight(dx * dx + dy * dy) *
                                            static_cast<float>(at(x - kRim + dx, y - kRim + dy)));
            row[2 * x] = static_cast<unsigned char>(at(x - kRim, y - kRim));
            row[2 * x + 1] = static_cast<unsigned char>(rim);
        }
    }
    made.drawn = true;
    made.width = static_cast<float>(w);
    made.height = static_cast<float>(h);
    made.u0 = static_cast<float>(_penX) / kWidth;
    made.v0 = static_cast<float>(_penY) / kHeight;
    made.u1 = static_cast<float>(_penX + w) / kWidth;
    made.v1 = static_cast<float>(_penY + h) / kHeight;
    _penX += w;
    _rowHeight = std::max(_rowHeight, h);
    return made;
}
} // namespace osgEarth::Features

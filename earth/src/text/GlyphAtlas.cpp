#include "text/GlyphAtlas.h"
#include <algorithm>
#include <cmath>
#include <cstring>
#include <osgText/Glyph>
#include <vector>

namespace osgEarth {
namespace Features {
namespace {
constexpr unsigned kWidth = 1024, kHeight = 512;
constexpr int kRim = 2; // pixels
// Share of a neighbour's coverage that the rim takes over, by squared distance.
float rimWeight(int distance2)
{
    return distance2 <= 2 ? 1.0f : distance2 <= 4 ? 0.8f : distance2 <= 5 ? 0.45f : 0.15f;
}
constexpr float kDotRadius = 2.5f;
} // namespace

GlyphAtlas::GlyphAtlas(osgText::Font* font, unsigned pixels)
    : _font(font ? font : osgText::Font::getDefaultFont().get()), _pixels(pixels), _image(new osg::Image()),
      _texture(new osg::Texture2D())
{
    _image->allocateImage(int(kWidth), int(kHeight), 1, GL_LUMINANCE_ALPHA, GL_UNSIGNED_BYTE);
    _image->setInternalTextureFormat(GL_LUMINANCE8_ALPHA8);
    _texture->setImage(_image.get());
    _texture->setDataVariance(osg::Object::DYNAMIC);
    _texture->setResizeNonPowerOfTwoHint(false);
    // Letters stand on whole pixels, so nothing needs to be blended.
    _texture->setFilter(osg::Texture::MIN_FILTER, osg::Texture::NEAREST);
    _texture->setFilter(osg::Texture::MAG_FILTER, osg::Texture::NEAREST);
    reset();
}

float GlyphAtlas::rimPixels()
{
    return float(kRim);
}

void GlyphAtlas::reset()
{
    std::memset(_image->data(), 0, _image->getTotalSizeInBytes());
    _glyphs.clear();
    _penX = _penY = _rowHeight = 0;
    _full = false;
    const unsigned side = 2 * unsigned(std::ceil(kDotRadius));
    std::vector<unsigned char> disc(side * side);
    for (unsigned y = 0; y < side; ++y)
        for (unsigned x = 0; x < side; ++x) {
            const float away =
                std::hypot(float(x) + 0.5f - 0.5f * float(side), float(y) + 0.5f - 0.5f * float(side));
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
            made = add(unsigned(source->s()), unsigned(source->t()), coverage.data());
        }
        const float size = float(_pixels);
        made.left = std::round(source->getHorizontalBearing().x() * size) - float(kRim);
        made.bottom = std::round(source->getHorizontalBearing().y() * size) - float(kRim);
        made.advance = std::round(source->getHorizontalAdvance() * size);
        _image->dirty();
    }
    return _glyphs[code] = made;
}

GlyphAtlas::Glyph GlyphAtlas::add(unsigned width, unsigned height, const unsigned char* coverage)
{
    Glyph made;
    const unsigned w = width + 2 * unsigned(kRim), h = height + 2 * unsigned(kRim);
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
        return x < 0 || y < 0 || x >= int(width) || y >= int(height)
                   ? 0
                   : int(coverage[unsigned(y) * width + unsigned(x)]);
    };
    for (int y = 0; y < int(h); ++y) {
        unsigned char* row = _image->data(int(_penX), int(_penY) + y);
        for (int x = 0; x < int(w); ++x) {
            float rim = 0.0f;
            for (int dy = -kRim; dy <= kRim; ++dy)
                for (int dx = -kRim; dx <= kRim; ++dx)
                    rim =
                        std::max(rim, rimWeight(dx * dx + dy * dy) * float(at(x - kRim + dx, y - kRim + dy)));
            row[2 * x] = static_cast<unsigned char>(at(x - kRim, y - kRim));
            row[2 * x + 1] = static_cast<unsigned char>(rim);
        }
    }
    made.drawn = true;
    made.width = float(w);
    made.height = float(h);
    made.u0 = float(_penX) / kWidth;
    made.v0 = float(_penY) / kHeight;
    made.u1 = float(_penX + w) / kWidth;
    made.v1 = float(_penY + h) / kHeight;
    _penX += w;
    _rowHeight = std::max(_rowHeight, h);
    return made;
}
} // namespace Features
} // namespace osgEarth

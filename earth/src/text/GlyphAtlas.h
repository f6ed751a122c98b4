#pragma once
#include <map>
#include <osg/Shader>
#include <osg/Texture2D>
#include <osgText/Font>

namespace osgEarth::Features {
/// Letters of one font and size in one picture, each with a rim baked in: the
/// first channel says how much of a pixel the letter covers, the second how
/// much letter and rim cover. One look-up a pixel then draws both. Not
/// locked: by one thread at a time.
class GlyphAtlas
{
public:
    struct Glyph
    {
        bool drawn = false;                ///< false for blanks and for what found no room
        float left = 0.0f, bottom = 0.0f;  ///< of the picture, pixels from the pen
        float width = 0.0f, height = 0.0f; ///< pixels
        float u0 = 0.0f, v0 = 0.0f, u1 = 0.0f, v1 = 0.0f;
        float advance = 0.0f; ///< pixels to the next pen position
    };

    /// A null font gives osgText's own, which has Latin letters only.
    GlyphAtlas(osgText::Font* font, unsigned pixels);

    /// The letter, added when it is new.
    const Glyph& glyph(unsigned code);
    /// A round mark with a rim, centred on the pen.
    const Glyph& dot() { return _dot; }

    /// How far a letter's picture reaches beyond the letter on each side, pixels.
    static float rimPixels();

    /// Whether a letter found no room since the last reset.
    bool isFull() const { return _full; }
    /// Forgets all letters.
    void reset();

    osg::Texture2D* texture() { return _texture.get(); }
    /// A fragment shader that has vec4 ax_letterCover(sampler2D letters, vec2 at): letter three times, and
    /// letter with rim. In a picture with larger letters their edges are as sharp.
    static osg::Shader* coverShader();
    unsigned pixels() const { return _pixels; }

private:
    Glyph add(unsigned width, unsigned height, const unsigned char* coverage);

    osg::ref_ptr<osgText::Font> _font;
    const unsigned _pixels;
    osg::ref_ptr<osg::Image> _image;
    osg::ref_ptr<osg::Texture2D> _texture;
    std::map<unsigned, Glyph> _glyphs;
    Glyph _dot;
    unsigned _penX = 0, _penY = 0, _rowHeight = 0;
    bool _full = false;
};
} // namespace osgEarth::Features

#pragma once
#include "text/GlyphAtlas.h"

#include <osg/Array>
#include <osg/PrimitiveSet>

namespace osgEarth::Features {
/// The rectangles on which letters of an atlas are drawn, in pixels.
struct GlyphQuads
{
    osg::ref_ptr<osg::Vec3Array> corners = new osg::Vec3Array();
    osg::ref_ptr<osg::Vec2Array> places = new osg::Vec2Array(); ///< in the atlas
    osg::ref_ptr<osg::DrawElementsUInt> indices = new osg::DrawElementsUInt(GL_TRIANGLES);

    void add(const GlyphAtlas::Glyph& glyph, const osg::Vec2f& pen)
    {
        if (!glyph.drawn)
            return;
        const unsigned first = static_cast<unsigned>(corners->size());
        const float x0 = pen.x() + glyph.left, y0 = pen.y() + glyph.bottom;
        const float x1 = x0 + glyph.width, y1 = y0 + glyph.height;
        for (const osg::Vec3f& c :
             {osg::Vec3f(x0, y0, 0), osg::Vec3f(x1, y0, 0), osg::Vec3f(x1, y1, 0), osg::Vec3f(x0, y1, 0)})
            corners->push_back(c);
        for (const osg::Vec2f& t : {osg::Vec2f(glyph.u0, glyph.v0), osg::Vec2f(glyph.u1, glyph.v0),
                                    osg::Vec2f(glyph.u1, glyph.v1), osg::Vec2f(glyph.u0, glyph.v1)})
            places->push_back(t);
        for (const unsigned i : {0u, 1u, 2u, 0u, 2u, 3u})
            indices->push_back(first + i);
    }
};
} // namespace osgEarth::Features

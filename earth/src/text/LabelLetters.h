#pragma once
#include "text/LetterBatch.h"
#include <osg/Geometry>
#include <osgEarthSymbology/BBoxSymbol>
#include <osgEarthSymbology/TextSymbol>
#include <string>

namespace osgEarth {
/// What makeLetters() makes: draws itself, or is drawn by a batch with others.
class LetteredText : public osg::Geometry
{
public:
    virtual PlacedText at(const osg::Vec2f& place) const = 0;

    /// The batch of the texts that it is drawn first of. The first text owns it, so that its OpenGL objects
    /// go with a text of the same scene; a text that comes first instead takes it over.
    osg::ref_ptr<LetterBatch> batch;

    void releaseGLObjects(osg::State* state) const override
    {
        osg::Geometry::releaseGLObjects(state);
        if (batch)
            batch->releaseGLObjects(state);
    }

protected:
    ~LetteredText() override = default;
};

/// A text of one line in pixels round its own origin, as the symbol says, made
/// of letters out of a picture that all such texts share: they take a fraction
/// of the time that texts of osgText take to draw, and one after the other no
/// change of state. Null for what such letters cannot do, which is up to
/// makeText(): turned texts, other directions, several lines, odd sizes, and
/// more different letters than the picture has room for. A plate lies behind
/// the letters as a part of them.
osg::ref_ptr<LetteredText> makeLetters(const std::string& text, const Symbology::TextSymbol* symbol,
                                       const Symbology::BBoxSymbol* plate = nullptr);
} // namespace osgEarth

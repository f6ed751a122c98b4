#pragma once
#include <osg/Drawable>
#include <osgEarthSymbology/TextSymbol>
#include <string>

namespace osgEarth {
/// A text of one line in pixels round its own origin, as the symbol says, made
/// of letters out of a picture that all such texts share: they take a fraction
/// of the time that texts of osgText take to draw, and one after the other no
/// change of state. Null for what such letters cannot do, which is up to
/// makeText(): turned texts, other directions, several lines, odd sizes, and
/// more different letters than the picture has room for.
osg::ref_ptr<osg::Drawable> makeLetters(const std::string& text, const Symbology::TextSymbol* symbol);
} // namespace osgEarth

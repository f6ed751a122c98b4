#pragma once
#include <osg/Geometry>
#include <osg/Image>
#include <osgEarthSymbology/IconSymbol>
#include <osgEarthSymbology/TextSymbol>
#include <osgText/Text>
#include <string>

namespace osgEarth {
/// A text in pixels round its own origin, as the symbol says; null symbol: white with a dark rim.
osg::ref_ptr<osgText::Text> makeText(const std::string& text, const Symbology::TextSymbol* symbol);

/// A picture in pixels round its own origin, as the symbol says.
osg::ref_ptr<osg::Geometry> makeIcon(osg::Image* image, const Symbology::IconSymbol* symbol);
} // namespace osgEarth

#pragma once
#include <osg/Geometry>
#include <osg/Image>
#include <osgEarthSymbology/BBoxSymbol>
#include <osgEarthSymbology/IconSymbol>
#include <osgEarthSymbology/TextSymbol>
#include <osgText/String>
#include <osgText/Text>
#include <string>

namespace osgEarth {
/// Height in pixels and colour of the rim of texts whose symbol names none.
constexpr float kTextSize = 16.0f;
const osg::Vec4f kTextHalo(0.1f, 0.1f, 0.1f, 1.0f);

/// How the symbol's texts are encoded, UTF-8 unless it says otherwise.
osgText::String::Encoding textEncodingOf(const Symbology::TextSymbol* symbol);

/// A text in pixels round its own origin, as the symbol says; null symbol: white with a dark rim.
osg::ref_ptr<osgText::Text> makeText(const std::string& text, const Symbology::TextSymbol* symbol,
                                     const Symbology::BBoxSymbol* plate = nullptr);

/// A picture in pixels round its own origin, as the symbol says.
osg::ref_ptr<osg::Geometry> makeIcon(osg::Image* image, const Symbology::IconSymbol* symbol);
} // namespace osgEarth

#pragma once
#include <osgEarthSymbology/Style>
#include <string>

namespace osgEarth::Symbology {
/// What became of one style property.
enum class PropertyResult
{
    Taken,
    BadValue,
    Unknown
};

/// Sets the property of that name, of any symbol kind, or only of the kind
/// whose table is named ("line", "polygon", "point", "text", "icon",
/// "altitude", "render").
PropertyResult readStyleProperty(const Config& property, Style& style, const char* onlyTable = nullptr);

/// "name: value;" for every property that is set.
std::string writeStyleProperties(const Style& style);
} // namespace osgEarth::Symbology

#pragma once
#include <osgText/Font>
#include <string>

namespace osgEarth {
/// The font of that file name, or when the name is empty or cannot be found
/// the one of all texts (see Registry::getDefaultFont()). Loaded once; any
/// thread.
osgText::Font* fontNamed(const std::string& name);
} // namespace osgEarth

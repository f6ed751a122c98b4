#pragma once
#include <osgText/Font>
#include <string>

namespace osgEarth {
/// The font of that file name, or of all texts when the name is empty or
/// cannot be found: the process' default font (see Registry), else
/// "msyh.ttc" beside the program or in osgDB's paths, else what the system has
/// for Latin and Chinese, else null, which osgText draws with its own
/// Latin-only glyphs. Loaded once; any thread.
osgText::Font* fontNamed(const std::string& name);
} // namespace osgEarth

#pragma once
#include <osgText/Font>
#include <string>
#include <vector>

namespace osgEarth {
/// Folders in which the system and its user keep fonts; some may not exist.
std::vector<std::string> machineFontFolders();

/// A font with Latin and Chinese letters from these folders or folders below
/// them: of one file or, where no file has both, of two. With one of the two
/// scripts only if there is nothing else; null if there is no font at all.
osg::ref_ptr<osgText::Font> findFontIn(const std::vector<std::string>& folders);

/// "msyh.ttc" beside the program or in osgDB's paths, else what
/// machineFontFolders() have. Searched once, with a line in the log when
/// letters will be missing; any thread.
osgText::Font* machineFont();
} // namespace osgEarth

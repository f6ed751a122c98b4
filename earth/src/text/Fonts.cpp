#include "text/Fonts.h"
#include <cstdlib>
#include <map>
#include <mutex>
#include <osgDB/FileNameUtils>
#include <osgDB/FileUtils>
#include <osgEarth/Registry>
#include <vector>

namespace osgEarth {
namespace {
const char kWantedFont[] = "msyh.ttc";

// Fonts that have both Latin and Chinese come first; then pairs.
const char* const kWholeFonts[] = {"truetype/wqy/wqy-microhei.ttc", "wqy-microhei/wqy-microhei.ttc",
                                   "opentype/noto/NotoSansCJK-Regular.ttc", "msyh.ttf", "simhei.ttf"};
const char* const kLatinFonts[] = {"truetype/dejavu/DejaVuSans.ttf", "dejavu/DejaVuSans.ttf",
                                   "truetype/liberation/LiberationSans-Regular.ttf", "segoeui.ttf",
                                   "arial.ttf"};
const char* const kChineseFonts[] = {"truetype/droid/DroidSansFallbackFull.ttf",
                                     "droid/DroidSansFallbackFull.ttf", "simsun.ttc"};

std::vector<std::string> systemFontFolders()
{
    std::vector<std::string> folders;
#ifdef _WIN32
    if (const char* windows = std::getenv("WINDIR"))
        folders.push_back(osgDB::concatPaths(windows, "Fonts"));
#else
    folders = {"/usr/share/fonts", "/usr/local/share/fonts"};
    if (const char* home = std::getenv("HOME"))
        folders.push_back(osgDB::concatPaths(home, ".fonts"));
#endif
    return folders;
}

osg::ref_ptr<osgText::Font> readFirst(const char* const* begin, const char* const* end)
{
    for (; begin != end; ++begin) {
        for (const std::string& folder : systemFontFolders()) {
            const std::string path = osgDB::concatPaths(folder, *begin);
            if (osgDB::fileExists(path))
                if (osg::ref_ptr<osgText::Font> font = osgText::readRefFontFile(path))
                    return font;
        }
    }
    return {};
}

bool isEastAsian(unsigned code)
{
    return (code >= 0x1100 && code < 0x1200) || (code >= 0x2e80 && code < 0xd800) ||
           (code >= 0xf900 && code < 0xfb00) || (code >= 0xfe30 && code < 0xfe50) ||
           (code >= 0xff00 && code < 0xfff0) || code >= 0x20000;
}

/// One font made of two: some systems have no file with both scripts.
class TwoScripts : public osgText::Font::FontImplementation
{
public:
    TwoScripts(osgText::Font* latin, osgText::Font* eastAsian) : _latin(latin), _eastAsian(eastAsian) {}

    std::string getFileName() const override { return _latin->getFileName(); }
    bool supportsMultipleFontResolutions() const override { return true; }
    osgText::Glyph* getGlyph(const osgText::FontResolution& size, unsigned int code) override
    {
        return pick(code)->getGlyph(size, code);
    }
    osgText::Glyph3D* getGlyph3D(const osgText::FontResolution& size, unsigned int code) override
    {
        return pick(code)->getGlyph3D(size, code);
    }
    osg::Vec2 getKerning(const osgText::FontResolution& size, unsigned int left, unsigned int right,
                         osgText::KerningType type) override
    {
        return pick(left) == pick(right) ? pick(left)->getKerning(size, left, right, type) : osg::Vec2();
    }
    bool hasVertical() const override { return _latin->hasVertical(); }
    bool getVerticalSize(float& ascender, float& descender) const override
    {
        return _latin->getVerticalSize(ascender, descender);
    }

private:
    osgText::Font* pick(unsigned code) const { return isEastAsian(code) ? _eastAsian.get() : _latin.get(); }
    osg::ref_ptr<osgText::Font> _latin, _eastAsian;
};

osg::ref_ptr<osgText::Font> findStandIn()
{
    std::string wanted = osgDB::findDataFile(kWantedFont);
    if (wanted.empty())
        for (const std::string& folder : systemFontFolders())
            if (osgDB::fileExists(osgDB::concatPaths(folder, kWantedFont)))
                wanted = osgDB::concatPaths(folder, kWantedFont);
    if (!wanted.empty())
        if (osg::ref_ptr<osgText::Font> font = osgText::readRefFontFile(wanted))
            return font;
    if (osg::ref_ptr<osgText::Font> whole = readFirst(std::begin(kWholeFonts), std::end(kWholeFonts)))
        return whole;
    osg::ref_ptr<osgText::Font> latin = readFirst(std::begin(kLatinFonts), std::end(kLatinFonts));
    osg::ref_ptr<osgText::Font> eastAsian = readFirst(std::begin(kChineseFonts), std::end(kChineseFonts));
    if (latin.valid() && eastAsian.valid())
        return new osgText::Font(new TwoScripts(latin.get(), eastAsian.get()));
    return latin.valid() ? latin : eastAsian;
}
} // namespace

osgText::Font* fontNamed(const std::string& name)
{
    static std::mutex mutex;
    static std::map<std::string, osg::ref_ptr<osgText::Font>> known;
    static bool searched = false;
    static osg::ref_ptr<osgText::Font> standIn;

    std::lock_guard<std::mutex> lock(mutex);
    if (!name.empty()) {
        const auto found = known.find(name);
        if (found == known.end()) {
            const std::string path = osgDB::fileExists(name) ? name : osgDB::findDataFile(name);
            known[name] = path.empty() ? nullptr : osgText::readRefFontFile(path);
        }
        if (known[name].valid())
            return known[name].get();
    }
    if (osgText::Font* preferred = Registry::instance()->getDefaultFont())
        return preferred;
    if (!searched) {
        searched = true;
        standIn = findStandIn();
    }
    return standIn.get();
}
} // namespace osgEarth

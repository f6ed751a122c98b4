#include "base/MachineFont.h"
#include <cstdlib>
#include <map>
#include <osgDB/FileNameUtils>
#include <osgDB/FileUtils>
#include <osgEarth/Notify>
#include <osgEarth/StringUtils>

namespace osgEarth {
namespace {
const char kWantedFont[] = "msyh.ttc";

// Names of files in lower case, best first.
const std::vector<std::string> kWholeFonts{kWantedFont,
                                           "msyh.ttf",
                                           "wqy-microhei.ttc",
                                           "notosanscjksc-regular.otf",
                                           "notosanscjk-regular.ttc",
                                           "sourcehansanssc-regular.otf",
                                           "wqy-zenhei.ttc",
                                           "simhei.ttf",
                                           "simsun.ttc"};
const std::vector<std::string> kLatinFonts{"dejavusans.ttf", "liberationsans-regular.ttf",
                                           "notosans-regular.ttf", "segoeui.ttf", "arial.ttf"};
const std::vector<std::string> kChineseFonts{"droidsansfallbackfull.ttf", "droidsansfallback.ttf"};

using FontFiles = std::multimap<std::string, std::string>; // name in lower case, path

void collectFonts(const std::string& folder, FontFiles& files, int depth = 0)
{
    constexpr int kDeepest = 8; // links may lead in circles
    for (const std::string& name : osgDB::getDirectoryContents(folder)) {
        if (name.front() == '.') // the folder itself, the one above, hidden ones
            continue;
        const std::string path = osgDB::concatPaths(folder, name);
        const std::string extension = osgDB::getLowerCaseFileExtension(name);
        if (extension == "ttf" || extension == "ttc" || extension == "otf")
            files.emplace(toLower(name), path);
        else if (depth < kDeepest && osgDB::fileType(path) == osgDB::DIRECTORY)
            collectFonts(path, files, depth + 1);
    }
}

osg::ref_ptr<osgText::Font> readFirst(const std::vector<std::string>& names, const FontFiles& files)
{
    for (const std::string& name : names) {
        const auto named = files.equal_range(name);
        for (auto file = named.first; file != named.second; ++file)
            if (osg::ref_ptr<osgText::Font> font = osgText::readRefFontFile(file->second))
                return font;
    }
    return {};
}

bool isEastAsian(unsigned code)
{
    return (code >= 0x1100 && code < 0x1200) || (code >= 0x2e80 && code < 0xd800) ||
           (code >= 0xf900 && code < 0xfb00) || (code >= 0xfe30 && code < 0xfe50) ||
           (code >= 0xff00 && code < 0xfff0) || code >= 0x20000;
}

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

/// One font made of two. Its letters lie in textures of the two, which it does not know by itself.
class TwoScriptsFont : public osgText::Font
{
public:
    TwoScriptsFont(osgText::Font* latin, osgText::Font* eastAsian)
        : osgText::Font(new TwoScripts(latin, eastAsian)), _latin(latin), _eastAsian(eastAsian)
    {
    }
    void resizeGLObjectBuffers(unsigned int maxSize) override
    {
        osgText::Font::resizeGLObjectBuffers(maxSize);
        _latin->resizeGLObjectBuffers(maxSize);
        _eastAsian->resizeGLObjectBuffers(maxSize);
    }
    void releaseGLObjects(osg::State* state) const override
    {
        osgText::Font::releaseGLObjects(state);
        _latin->releaseGLObjects(state);
        _eastAsian->releaseGLObjects(state);
    }

private:
    osg::ref_ptr<osgText::Font> _latin, _eastAsian;
};

osg::ref_ptr<osgText::Font> searchMachine()
{
    osg::ref_ptr<osgText::Font> font;
    const std::string wanted = osgDB::findDataFile(kWantedFont);
    if (!wanted.empty())
        font = osgText::readRefFontFile(wanted);
    if (!font)
        font = findFontIn(machineFontFolders());
    if (!font)
        notifyLine(osg::WARN, "No font was found; texts have the renderer's own Latin letters");
    return font;
}
} // namespace

std::vector<std::string> machineFontFolders()
{
    std::vector<std::string> folders;
    const auto addBelow = [&folders](const char* variable, const char* folder) {
        const char* parent = std::getenv(variable);
        if (parent && *parent)
            folders.push_back(osgDB::concatPaths(parent, folder));
    };
#ifdef _WIN32
    addBelow("WINDIR", "Fonts");
    addBelow("LOCALAPPDATA", "Microsoft\\Windows\\Fonts");
#else
    folders = {"/usr/share/fonts", "/usr/local/share/fonts"};
    addBelow("HOME", ".fonts");
    addBelow("HOME", ".local/share/fonts");
    addBelow("XDG_DATA_HOME", "fonts");
#endif
    return folders;
}

osg::ref_ptr<osgText::Font> findFontIn(const std::vector<std::string>& folders)
{
    FontFiles files;
    for (const std::string& folder : folders)
        collectFonts(folder, files);
    if (osg::ref_ptr<osgText::Font> whole = readFirst(kWholeFonts, files))
        return whole;
    osg::ref_ptr<osgText::Font> latin = readFirst(kLatinFonts, files);
    osg::ref_ptr<osgText::Font> chinese = readFirst(kChineseFonts, files);
    if (latin && chinese)
        return new TwoScriptsFont(latin.get(), chinese.get());
    if (latin)
        notifyLine(osg::WARN, "No font with Chinese letters was found; boxes stand for them");
    return latin ? latin : chinese;
}

osgText::Font* machineFont()
{
    static const osg::ref_ptr<osgText::Font> font = searchMachine();
    return font.get();
}
} // namespace osgEarth

#include "text/Fonts.h"
#include <map>
#include <mutex>
#include <osgDB/FileUtils>
#include <osgEarth/Registry>

namespace osgEarth {
osgText::Font* fontNamed(const std::string& name)
{
    static std::mutex mutex;
    static std::map<std::string, osg::ref_ptr<osgText::Font>> known;

    if (!name.empty()) {
        std::lock_guard<std::mutex> lock(mutex);
        const auto found = known.find(name);
        if (found == known.end()) {
            const std::string path = osgDB::fileExists(name) ? name : osgDB::findDataFile(name);
            known[name] = path.empty() ? nullptr : osgText::readRefFontFile(path);
        }
        if (known[name].valid())
            return known[name].get();
    }
    return Registry::instance()->getDefaultFont();
}
} // namespace osgEarth

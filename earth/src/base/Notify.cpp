#include <osgEarth/Notify>
#include <osgEarth/StringUtils>

#include <atomic>
#include <cstdlib>
#include <mutex>

namespace osgEarth {
namespace {
osg::NotifySeverity levelFromEnvironment()
{
    const char* value = std::getenv("OSGEARTH_NOTIFY_LEVEL");
    const std::string name = value ? toLower(value) : std::string();
    if (name == "always")
        return osg::ALWAYS;
    if (name == "fatal")
        return osg::FATAL;
    if (name == "warn")
        return osg::WARN;
    if (name == "info")
        return osg::INFO;
    if (name == "debug" || name == "debug_info")
        return osg::DEBUG_INFO;
    if (name == "debug_fp")
        return osg::DEBUG_FP;
    return osg::NOTICE;
}

std::atomic<osg::NotifySeverity>& level()
{
    static std::atomic<osg::NotifySeverity> value{levelFromEnvironment()};
    return value;
}

class NullBuffer : public std::streambuf
{
    int overflow(int c) override { return c; }
};
} // namespace

void setNotifyLevel(osg::NotifySeverity severity)
{
    level() = severity;
}

osg::NotifySeverity getNotifyLevel()
{
    return level();
}

bool isNotifyEnabled(osg::NotifySeverity severity)
{
    return severity <= level();
}

std::ostream& notify(osg::NotifySeverity severity)
{
    static NullBuffer buffer;
    static std::ostream sink(&buffer);
    if (!osgEarth::isNotifyEnabled(severity))
        return sink;
    return osg::notify(severity);
}

void notifyLine(osg::NotifySeverity severity, const std::string& text)
{
    if (!osgEarth::isNotifyEnabled(severity))
        return;
    static std::mutex mutex;
    const std::string line = (severity <= osg::WARN ? "[osgEarth]* " : "[osgEarth]  ") + text + "\n";
    std::lock_guard<std::mutex> lock(mutex);
    osg::notify(severity) << line << std::flush;
}
} // namespace osgEarth

#pragma once
#include <osg/Notify>

#include <algorithm>
#include <mutex>
#include <sstream>
#include <string>
#include <vector>

/// Keeps what the map engine logs at WARN and above while it lives.
class LogCapture
{
public:
    LogCapture() : _before(osg::getNotifyHandler()), _handler(new Handler)
    {
        osg::setNotifyHandler(_handler.get());
    }
    ~LogCapture() { osg::setNotifyHandler(_before.get()); }
    LogCapture(const LogCapture&) = delete;
    LogCapture& operator=(const LogCapture&) = delete;

    std::vector<std::string> lines() const
    {
        std::lock_guard<std::mutex> lock(_handler->mutex);
        std::vector<std::string> out;
        std::istringstream text(_handler->text);
        for (std::string line; std::getline(text, line);)
            if (!line.empty())
                out.push_back(line);
        return out;
    }

    size_t linesWith(const std::string& part) const
    {
        const auto all = lines();
        return static_cast<size_t>(std::count_if(
            all.begin(), all.end(), [&](const std::string& l) { return l.find(part) != std::string::npos; }));
    }

private:
    struct Handler : public osg::NotifyHandler
    {
        void notify(osg::NotifySeverity severity, const char* message) override
        {
            std::lock_guard<std::mutex> lock(mutex);
            if (severity <= osg::WARN)
                text += message;
        }
        std::mutex mutex;
        std::string text;
    };
    osg::ref_ptr<osg::NotifyHandler> _before;
    osg::ref_ptr<Handler> _handler;
};

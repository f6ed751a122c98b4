#include "viewer/AxSceneLog.h"
#include "scene/base/AxReaderNotices.h"
#include "scene/base/AxViewerLog.h"

#include <osg/Notify>

namespace {
class QtNotifyHandler : public osg::NotifyHandler
{
public:
    void notify(osg::NotifySeverity severity, const char* message) override
    {
        // osg ends its lines itself, Qt adds the end of the line.
        const QString text = QString::fromLocal8Bit(message).trimmed();
        if (text.isEmpty())
            return;
        if (AxReaderNotices::Take(text))
            qCDebug(axSceneLog).noquote() << text;
        else if (severity <= osg::WARN)
            qCWarning(axSceneLog).noquote() << text;
        else if (severity == osg::NOTICE)
            qCInfo(axSceneLog).noquote() << text;
        else
            qCDebug(axSceneLog).noquote() << text;
    }
};
} // namespace

void AxRouteSceneLog()
{
    osg::setNotifyHandler(new QtNotifyHandler);
}

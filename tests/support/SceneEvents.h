#pragma once
#include "ViewerFixture.h"

#include <osgGA/GUIEventHandler>

#include <functional>
#include <vector>

/// Input events that the scene of the shared viewer was given, in their order.
using SceneEvents = std::vector<osg::ref_ptr<osgGA::GUIEventAdapter>>;

/// Keeps what reaches the scene while it lives.
class SceneEventRecorder
{
public:
    SceneEventRecorder() : handler(new Handler)
    {
        ViewerFixture::viewer->getOSGViewer()->getEventHandlers().push_front(handler);
    }
    ~SceneEventRecorder() { ViewerFixture::viewer->getOSGViewer()->removeEventHandler(handler); }

    const SceneEvents& Events() const { return handler->events; }

    SceneEvents OfType(osgGA::GUIEventAdapter::EventType type) const
    {
        SceneEvents chosen;
        for (const auto& event : handler->events)
            if (event->getEventType() == type)
                chosen.push_back(event);
        return chosen;
    }

private:
    struct Handler : osgGA::GUIEventHandler
    {
        using osgGA::GUIEventHandler::handle;
        bool handle(const osgGA::GUIEventAdapter& event, osgGA::GUIActionAdapter&) override
        {
            if (event.getEventType() != osgGA::GUIEventAdapter::FRAME &&
                event.getEventType() != osgGA::GUIEventAdapter::RESIZE)
                events.push_back(new osgGA::GUIEventAdapter(event));
            return false;
        }
        SceneEvents events;
    };

    osg::ref_ptr<Handler> handler;
};

/// What reaches the scene while `act` runs and until an event of `type` has come.
inline SceneEvents recordSceneEvents(osgGA::GUIEventAdapter::EventType type, const std::function<void()>& act)
{
    const SceneEventRecorder recorder;
    act();
    EXPECT_TRUE(waitFor([&] { return !recorder.OfType(type).empty(); }));
    return recorder.Events();
}

/// Lets so many further frames be drawn.
inline bool waitFrames(unsigned count)
{
    const osg::FrameStamp* stamp = ViewerFixture::viewer->getOSGViewer()->getFrameStamp();
    const unsigned frame = stamp->getFrameNumber();
    return waitFor([&] { return stamp->getFrameNumber() >= frame + count; });
}

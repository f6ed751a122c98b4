#pragma once
#include <osgGA/GUIEventAdapter>

/// Makes the input events of a window by hand, with a clock of its own. Pixels, y upwards.
class WindowEvents
{
public:
    using EA = osgGA::GUIEventAdapter;

    WindowEvents(int windowWidth, int windowHeight) : _width(windowWidth), _height(windowHeight) {}
    virtual ~WindowEvents() = default;

    /// Whether the event was taken.
    virtual bool send(EA* event) = 0;

    osg::ref_ptr<EA> event(EA::EventType type, double x = 0.0, double y = 0.0) const
    {
        osg::ref_ptr<EA> ea = new EA;
        ea->setEventType(type);
        ea->setTime(time);
        ea->setWindowRectangle(0, 0, _width, _height);
        ea->setInputRange(0, 0, static_cast<float>(_width), static_cast<float>(_height));
        ea->setMouseYOrientation(EA::Y_INCREASING_UPWARDS);
        ea->setX(static_cast<float>(x));
        ea->setY(static_cast<float>(y));
        return ea;
    }
    void mouse(EA::EventType type, int button, double x, double y, int modkeys = 0)
    {
        const osg::ref_ptr<EA> ea = event(type, x, y);
        ea->setButton(button);
        ea->setButtonMask(type == EA::RELEASE ? 0 : button);
        ea->setModKeyMask(modkeys);
        send(ea);
    }
    void key(EA::EventType type, int code)
    {
        const osg::ref_ptr<EA> ea = event(type);
        ea->setKey(code);
        send(ea);
    }
    void scroll(EA::ScrollingMotion motion, double x, double y)
    {
        const osg::ref_ptr<EA> ea = event(EA::SCROLL, x, y);
        ea->setScrollingMotion(motion);
        send(ea);
    }

    double time = 100.0;

private:
    int _width, _height;
};

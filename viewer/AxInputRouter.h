#pragma once
#include <osg/ref_ptr>
#include <osgViewer/GraphicsWindow>

#include <QPointF>
#include <Qt>

class QKeyEvent;
class QMouseEvent;
class QWheelEvent;

/**
 * Translates Qt's input events into the event queue of the embedded graphics
 * window. Positions are widget pixels with y downwards, as the queue keeps
 * them; every event carries the queue's present time. GUI thread only.
 */
class AxInputRouter
{
public:
    explicit AxInputRouter(osgViewer::GraphicsWindowEmbedded* window);

    /// Bits of osg's modifier mask: both sides' bits of Shift (3), Control (12) and Alt (48).
    static unsigned ModifierMask(Qt::KeyboardModifiers modifiers);
    /// osg's button number: left 1, middle 2, right 3, any other 0.
    static unsigned Button(Qt::MouseButton button);

    void SetModifiers(Qt::KeyboardModifiers modifiers);
    void Press(const QMouseEvent& event);
    void Release(const QMouseEvent& event);
    /// Ends a drag whose release hit an overlay: a release at (0, 0) is a click on nothing.
    void ReleaseNowhere(const QMouseEvent& event);
    void Move(const QMouseEvent& event);
    void DoubleClick(const QMouseEvent& event);
    /// A vertical wheel turned forward is SCROLL_DOWN here, the reverse of
    /// the common mapping; the manipulator's bindings rely on it.
    void Wheel(const QWheelEvent& event);
    /// The key is the first character of the event's text, 0 when it has none.
    void KeyPress(const QKeyEvent& event);
    void KeyRelease(const QKeyEvent& event);
    void Resize(int x, int y, int width, int height);

private:
    osgGA::EventQueue* Queue() const;

    osg::ref_ptr<osgViewer::GraphicsWindowEmbedded> window;
};

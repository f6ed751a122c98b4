#include "viewer/AxInputRouter.h"

#include <osgGA/EventQueue>

#include <QKeyEvent>
#include <QMouseEvent>
#include <QWheelEvent>

namespace {
int FirstCharacter(const QKeyEvent& event)
{
    return event.text().isEmpty() ? 0 : event.text().at(0).unicode();
}
} // namespace

AxInputRouter::AxInputRouter(osgViewer::GraphicsWindowEmbedded* graphicsWindow) : window(graphicsWindow) {}

osgGA::EventQueue* AxInputRouter::Queue() const
{
    return window->getEventQueue();
}

unsigned AxInputRouter::ModifierMask(Qt::KeyboardModifiers modifiers)
{
    unsigned mask = 0;
    if (modifiers & Qt::ShiftModifier)
        mask |= osgGA::GUIEventAdapter::MODKEY_SHIFT;
    if (modifiers & Qt::ControlModifier)
        mask |= osgGA::GUIEventAdapter::MODKEY_CTRL;
    if (modifiers & Qt::AltModifier)
        mask |= osgGA::GUIEventAdapter::MODKEY_ALT;
    return mask;
}

unsigned AxInputRouter::Button(Qt::MouseButton button)
{
    switch (button) {
    case Qt::LeftButton:
        return 1;
    case Qt::MiddleButton:
        return 2;
    case Qt::RightButton:
        return 3;
    default:
        return 0;
    }
}

void AxInputRouter::SetModifiers(Qt::KeyboardModifiers modifiers)
{
    Queue()->getCurrentEventState()->setModKeyMask(static_cast<int>(ModifierMask(modifiers)));
}

void AxInputRouter::Press(const QMouseEvent& event)
{
    Queue()->mouseButtonPress(static_cast<float>(event.x()), static_cast<float>(event.y()),
                              Button(event.button()), Queue()->getTime());
}

void AxInputRouter::Release(const QMouseEvent& event)
{
    Queue()->mouseButtonRelease(static_cast<float>(event.x()), static_cast<float>(event.y()),
                                Button(event.button()), Queue()->getTime());
}

void AxInputRouter::ReleaseNowhere(const QMouseEvent& event)
{
    Queue()->mouseButtonRelease(0.0f, 0.0f, Button(event.button()), Queue()->getTime());
}

void AxInputRouter::Move(const QMouseEvent& event)
{
    Queue()->mouseMotion(static_cast<float>(event.x()), static_cast<float>(event.y()), Queue()->getTime());
}

void AxInputRouter::DoubleClick(const QMouseEvent& event)
{
    Queue()->mouseDoubleButtonPress(static_cast<float>(event.x()), static_cast<float>(event.y()),
                                    Button(event.button()), Queue()->getTime());
}

void AxInputRouter::Wheel(const QWheelEvent& event)
{
    using Adapter = osgGA::GUIEventAdapter;
    const QPoint delta = event.angleDelta();
    // A tilted wheel or a sideways swipe reports in x only.
    const bool vertical = delta.y() != 0 || delta.x() == 0;
    if (vertical)
        Queue()->mouseScroll(delta.y() > 0 ? Adapter::SCROLL_DOWN : Adapter::SCROLL_UP, Queue()->getTime());
    else
        Queue()->mouseScroll(delta.x() > 0 ? Adapter::SCROLL_LEFT : Adapter::SCROLL_RIGHT,
                             Queue()->getTime());
}

void AxInputRouter::KeyPress(const QKeyEvent& event)
{
    Queue()->keyPress(FirstCharacter(event), Queue()->getTime());
}

void AxInputRouter::KeyRelease(const QKeyEvent& event)
{
    Queue()->keyRelease(FirstCharacter(event), Queue()->getTime());
}

void AxInputRouter::Resize(int x, int y, int width, int height)
{
    window->resized(x, y, width, height);
    Queue()->windowResize(x, y, width, height, Queue()->getTime());
}

#include "viewer/AxInputRouter.h"
#include "viewer/AxKeySymbols.h"

#include <osgGA/EventQueue>

#include <QKeyEvent>
#include <QMouseEvent>
#include <QWheelEvent>

#include <algorithm>

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

void AxInputRouter::Press(const QMouseEvent& event, bool taken)
{
    heldButtons |= event.button();
    endedButtons &= ~Qt::MouseButtons(event.button());
    Queue()
        ->mouseButtonPress(static_cast<float>(event.x()), static_cast<float>(event.y()),
                           Button(event.button()), Queue()->getTime())
        ->setHandled(taken);
}

bool AxInputRouter::LetGo(Qt::MouseButton button)
{
    heldButtons &= ~Qt::MouseButtons(button);
    if (!endedButtons.testFlag(button))
        return true;
    endedButtons &= ~Qt::MouseButtons(button);
    return false;
}

void AxInputRouter::Release(const QMouseEvent& event)
{
    if (LetGo(event.button()))
        Queue()->mouseButtonRelease(static_cast<float>(event.x()), static_cast<float>(event.y()),
                                    Button(event.button()), Queue()->getTime());
}

void AxInputRouter::ReleaseNowhere(const QMouseEvent& event)
{
    if (LetGo(event.button()))
        Queue()->mouseButtonRelease(0.0f, 0.0f, Button(event.button()), Queue()->getTime());
}

void AxInputRouter::Move(const QMouseEvent& event, bool taken)
{
    Queue()
        ->mouseMotion(static_cast<float>(event.x()), static_cast<float>(event.y()), Queue()->getTime())
        ->setHandled(taken);
}

void AxInputRouter::DoubleClick(const QMouseEvent& event)
{
    heldButtons |= event.button();
    endedButtons &= ~Qt::MouseButtons(event.button());
    Queue()->mouseDoubleButtonPress(static_cast<float>(event.x()), static_cast<float>(event.y()),
                                    Button(event.button()), Queue()->getTime());
}

void AxInputRouter::Wheel(const QWheelEvent& event)
{
    using Adapter = osgGA::GUIEventAdapter;
    // A release that an overlay took has left the pointer at the origin.
    osgGA::GUIEventAdapter* state = Queue()->getCurrentEventState();
    state->setX(static_cast<float>(event.position().x()));
    state->setY(static_cast<float>(event.position().y()));
    const QPoint delta = event.angleDelta();
    // A tilted wheel or a sideways swipe reports in x only.
    const bool vertical = delta.y() != 0 || delta.x() == 0;
    if (vertical)
        Queue()->mouseScroll(delta.y() > 0 ? Adapter::SCROLL_DOWN : Adapter::SCROLL_UP, Queue()->getTime());
    else
        Queue()->mouseScroll(delta.x() > 0 ? Adapter::SCROLL_LEFT : Adapter::SCROLL_RIGHT,
                             Queue()->getTime());
}

AxInputRouter::HeldKey* AxInputRouter::FindHeld(const QKeyEvent& event)
{
    const auto isSame = [&event](const HeldKey& held) {
        return event.nativeScanCode() ? held.scanCode == event.nativeScanCode() : held.qtKey == event.key();
    };
    const auto found = std::find_if(heldKeys.begin(), heldKeys.end(), isSame);
    return found == heldKeys.end() ? nullptr : &*found;
}

bool AxInputRouter::IsHeld(Qt::Key key) const
{
    return std::any_of(heldKeys.begin(), heldKeys.end(),
                       [key](const HeldKey& held) { return held.qtKey == key; });
}

void AxInputRouter::KeyPress(const QKeyEvent& event, bool reachesScene)
{
    const int symbol = AxKeySymbol(event);
    HeldKey* held = FindHeld(event);
    if (!held) {
        heldKeys.append({event.key(), event.nativeScanCode(), symbol});
    } else if (held->symbol != symbol) {
        Queue()->keyRelease(held->symbol, Queue()->getTime());
        held->symbol = symbol;
    }
    if (reachesScene)
        Queue()->keyPress(symbol, Queue()->getTime());
}

void AxInputRouter::KeyRelease(const QKeyEvent& event)
{
    const int symbol = AxKeySymbol(event);
    if (HeldKey* held = FindHeld(event)) {
        if (held->symbol != symbol)
            Queue()->keyRelease(held->symbol, Queue()->getTime());
        heldKeys.erase(held);
    }
    Queue()->keyRelease(symbol, Queue()->getTime());
}

void AxInputRouter::ReleaseAll()
{
    for (const HeldKey& held : qAsConst(heldKeys))
        if (held.qtKey != Qt::Key_Delete)
            Queue()->keyRelease(held.symbol, Queue()->getTime());
    heldKeys.clear();
    SetModifiers(Qt::NoModifier);
    for (const Qt::MouseButton button : {Qt::LeftButton, Qt::MiddleButton, Qt::RightButton})
        if (heldButtons.testFlag(button))
            Queue()->mouseButtonRelease(0.0f, 0.0f, Button(button), Queue()->getTime());
    endedButtons |= heldButtons;
    heldButtons = Qt::NoButton;
}

void AxInputRouter::Resize(int x, int y, int width, int height)
{
    window->resized(x, y, width, height);
    Queue()->windowResize(x, y, width, height, Queue()->getTime());
}

#pragma once
#include <osg/ref_ptr>
#include <osgViewer/GraphicsWindow>

#include <Qt>
#include <QVector>

class QKeyEvent;
class QMouseEvent;
class QWheelEvent;

/**
 * Translates Qt's input events into the event queue of the embedded graphics
 * window. Positions are widget pixels with y downwards, as the queue keeps
 * them; every event carries the queue's present time. GUI thread only.
 *
 * It remembers what is held down, so that a press never waits in vain for its
 * release: not when the input focus goes elsewhere, and not when a key ends
 * under another character than it began (Shift let go before "+").
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
    /// A press that an overlay has taken reaches the scene as handled, and so do the moves until its release.
    void Press(const QMouseEvent& event, bool taken);
    void Release(const QMouseEvent& event);
    /// Ends a drag whose release hit an overlay: a release at (0, 0) is a click on nothing.
    void ReleaseNowhere(const QMouseEvent& event);
    void Move(const QMouseEvent& event, bool taken);
    void DoubleClick(const QMouseEvent& event);
    /// A vertical wheel turned forward is SCROLL_DOWN here, the reverse of
    /// the common mapping; the manipulator's bindings rely on it.
    void Wheel(const QWheelEvent& event);
    /// The keys are those of AxKeySymbol(). A repeat of a held key is a further
    /// press. One that an overlay swallows is only remembered.
    void KeyPress(const QKeyEvent& event, bool reachesScene);
    void KeyRelease(const QKeyEvent& event);
    bool IsHeld(Qt::Key key) const;
    /// Lets go of all keys and buttons that are held: keys where they are,
    /// buttons at (0, 0). Delete, which acts when it is released, is only
    /// forgotten. The release that a button still gets is then not passed on.
    void ReleaseAll();
    void Resize(int x, int y, int width, int height);

private:
    struct HeldKey
    {
        int qtKey;
        quint32 scanCode;
        int symbol;
    };

    osgGA::EventQueue* Queue() const;
    HeldKey* FindHeld(const QKeyEvent& event);
    /// Whether the release of this button belongs to a press that was passed on and not yet ended.
    bool LetGo(Qt::MouseButton button);

    osg::ref_ptr<osgViewer::GraphicsWindowEmbedded> window;
    QVector<HeldKey> heldKeys;
    Qt::MouseButtons heldButtons;
    Qt::MouseButtons endedButtons;
};

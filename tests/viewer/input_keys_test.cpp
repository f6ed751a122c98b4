// The keyboard: what the scene is told of a key, and what ends it.
#include "SceneEvents.h"

#include <osgEarth/Viewpoint>

#include <QFocusEvent>
#include <QKeyEvent>
#include <QMouseEvent>
#include <QSignalSpy>

#include <set>

using osgEarth::Viewpoint;
using osgGA::GUIEventAdapter;

namespace {
struct KeyStroke
{
    int key;
    Qt::KeyboardModifiers modifiers;
    const char* text;
};

void Send(QEvent::Type type, const KeyStroke& stroke, bool repeated = false)
{
    QKeyEvent event(type, stroke.key, stroke.modifiers, QString::fromLatin1(stroke.text), repeated);
    QCoreApplication::sendEvent(ViewerFixture::viewer, &event);
}

void LoseFocus()
{
    QFocusEvent event(QEvent::FocusOut);
    QCoreApplication::sendEvent(ViewerFixture::viewer, &event);
}

class Keys : public ViewerFixture
{
protected:
    void SetUp() override
    {
        home = Camera();
        // A key over an overlay is the overlay's, so the cursor must be over the globe.
        QCursor::setPos(viewer->mapToGlobal(QPoint(300, 300)));
        viewer->getManipulator()->setViewpoint(Viewpoint("", 10.0, 40.0, 0.0, 0.0, -60.0, 2e6));
        ASSERT_TRUE(WaitForPicture());
    }
    void TearDown() override
    {
        viewer->SetAppType(0);
        LoseFocus();
        EXPECT_EQ(viewer->GetToolType(), ToolNavigate);
        viewer->getManipulator()->slotResetMouse();
        viewer->getManipulator()->setViewpoint(home);
    }

    static Viewpoint Camera() { return viewer->getManipulator()->getViewpoint(); }
    static double Longitude() { return Camera().focalPoint()->x(); }
    static bool IsMoving()
    {
        const Viewpoint before = Camera();
        EXPECT_TRUE(waitFrames(3));
        const Viewpoint after = Camera();
        return before.focalPoint()->vec3d() != after.focalPoint()->vec3d() ||
               before.getRange() != after.getRange() || before.getHeading() != after.getHeading();
    }

    Viewpoint home;
};
} // namespace

TEST_F(Keys, ReachTheSceneAsCharactersOrAsItsOwnSymbols)
{
    const struct
    {
        KeyStroke stroke;
        int key;
    } rows[] = {
        {{Qt::Key_X, Qt::NoModifier, "x"}, 'x'},
        {{Qt::Key_4, Qt::KeypadModifier, "4"}, '4'},
        {{Qt::Key_Delete, Qt::NoModifier, "\x7f"}, 0x7f},
        {{Qt::Key_Delete, Qt::NoModifier, ""}, GUIEventAdapter::KEY_Delete},
        {{Qt::Key_Delete, Qt::KeypadModifier, ""}, GUIEventAdapter::KEY_KP_Delete},
        {{Qt::Key_Home, Qt::NoModifier, ""}, GUIEventAdapter::KEY_Home},
        {{Qt::Key_PageUp, Qt::KeypadModifier, ""}, GUIEventAdapter::KEY_KP_Page_Up},
        {{Qt::Key_Left, Qt::ControlModifier, ""}, GUIEventAdapter::KEY_Left},
        {{Qt::Key_F12, Qt::NoModifier, ""}, GUIEventAdapter::KEY_F12},
        {{Qt::Key_Shift, Qt::NoModifier, ""}, 0},
        {{Qt::Key_CapsLock, Qt::NoModifier, ""}, 0},
    };
    for (const auto& row : rows) {
        const SceneEvents events = recordSceneEvents(GUIEventAdapter::KEYUP, [&row] {
            Send(QEvent::KeyPress, row.stroke);
            Send(QEvent::KeyRelease, row.stroke);
        });
        QList<int> keys;
        for (const auto& event : events)
            if (event->getEventType() & (GUIEventAdapter::KEYDOWN | GUIEventAdapter::KEYUP))
                keys += event->getKey();
        EXPECT_EQ(keys, (QList<int>{row.key, row.key}));
    }
}

TEST_F(Keys, AKeyThatEndsAsAnotherCharacterIsLetGo)
{
    // "+" is Shift and "=" on many keyboards, and Shift is often let go first.
    const SceneEventRecorder recorder;
    QKeyEvent press(QEvent::KeyPress, Qt::Key_Plus, Qt::ShiftModifier, 21, 0, 0, "+");
    QKeyEvent release(QEvent::KeyRelease, Qt::Key_Equal, Qt::NoModifier, 21, 0, 0, "=");
    Send(QEvent::KeyPress, {Qt::Key_Shift, Qt::NoModifier, ""});
    QCoreApplication::sendEvent(viewer, &press);
    Send(QEvent::KeyRelease, {Qt::Key_Shift, Qt::ShiftModifier, ""});
    QCoreApplication::sendEvent(viewer, &release);
    ASSERT_TRUE(waitFrames(2));
    std::multiset<int> released;
    for (const auto& event : recorder.OfType(GUIEventAdapter::KEYUP))
        released.insert(event->getKey());
    EXPECT_EQ(released, (std::multiset<int>{0, '+', '='}));
}

TEST_F(Keys, ShiftHoldsTheMagnifierAndLetsItGo)
{
    // As a keyboard sends it: a release comes with the modifiers from before it.
    const auto press = [] { Send(QEvent::KeyPress, {Qt::Key_Shift, Qt::NoModifier, ""}); };
    const auto release = [] { Send(QEvent::KeyRelease, {Qt::Key_Shift, Qt::ShiftModifier, ""}); };
    for (const std::function<void()>& end :
         {std::function<void()>(release), std::function<void()>(LoseFocus)}) {
        press();
        ASSERT_TRUE(waitFor([] { return viewer->GetToolType() == ToolMagnifier; }));
        end();
        ASSERT_TRUE(waitFor([] { return viewer->GetToolType() == ToolNavigate; }));
    }
}

TEST_F(Keys, DeleteActsOnceWhenItIsLetGo)
{
    QSignalSpy deletes(viewer, &CAxEarthViewer::signalHandleKeyDelete);
    const KeyStroke del{Qt::Key_Delete, Qt::NoModifier, "\x7f"};
    Send(QEvent::KeyPress, del);
    for (int repeat = 0; repeat < 3; ++repeat) {
        Send(QEvent::KeyRelease, del, true);
        Send(QEvent::KeyPress, del, true);
    }
    EXPECT_EQ(deletes.count(), 0);
    Send(QEvent::KeyRelease, del);
    EXPECT_EQ(deletes.count(), 1);
    ASSERT_TRUE(waitFrames(2));

    // What is deleted must be deleted on purpose, not because a window came to the front.
    const SceneEventRecorder recorder;
    Send(QEvent::KeyPress, del);
    Send(QEvent::KeyPress, {Qt::Key_X, Qt::NoModifier, "x"});
    LoseFocus();
    ASSERT_TRUE(waitFor([&] { return !recorder.OfType(GUIEventAdapter::KEYUP).empty(); }));
    for (const auto& event : recorder.OfType(GUIEventAdapter::KEYUP))
        EXPECT_EQ(event->getKey(), 'x');
    EXPECT_EQ(deletes.count(), 1);
}

TEST_F(Keys, LosingTheFocusEndsAHeldKeyAndTheModifiers)
{
    Send(QEvent::KeyPress, {Qt::Key_Left, Qt::NoModifier, ""});
    ASSERT_TRUE(waitFor(IsMoving));
    const SceneEventRecorder recorder;
    LoseFocus();
    ASSERT_TRUE(waitFor([&] { return !recorder.OfType(GUIEventAdapter::KEYUP).empty(); }));
    EXPECT_EQ(recorder.OfType(GUIEventAdapter::KEYUP).front()->getKey(), GUIEventAdapter::KEY_Left);
    EXPECT_TRUE(waitFor([] { return !IsMoving(); }));

    viewer->SetAppType(1);
    QSignalSpy alt(viewer, &CAxEarthViewer::signalAltKey);
    Send(QEvent::KeyPress, {Qt::Key_Control, Qt::NoModifier, ""});
    Send(QEvent::KeyPress, {Qt::Key_Alt, Qt::ControlModifier, ""});
    ASSERT_TRUE(viewer->IsMultiSelect());
    LoseFocus();
    EXPECT_FALSE(viewer->IsMultiSelect());
    ASSERT_EQ(alt.count(), 2);
    EXPECT_FALSE(alt[1][0].toBool());
    LoseFocus();
    EXPECT_EQ(alt.count(), 2);
    const SceneEvents moves = recordSceneEvents(GUIEventAdapter::KEYUP, [] {
        Send(QEvent::KeyRelease, {Qt::Key_X, Qt::NoModifier, "x"});
    });
    EXPECT_EQ(moves.back()->getModKeyMask(), 0);
}

TEST_F(Keys, LosingTheFocusEndsADragAndItsLateReleaseIsNoClick)
{
    int releases = 0;
    const auto connection = QObject::connect(
        viewer->getManipulator(), QOverload<float, float>::of(&CAxEarthManipulator::mouseLeftBtnRelease),
        [&releases] { ++releases; });
    const auto dragTo = [](int x) {
        QMouseEvent move(QEvent::MouseMove, QPoint(x, 300), Qt::NoButton, Qt::LeftButton, Qt::NoModifier);
        QCoreApplication::sendEvent(viewer->viewport(), &move);
    };
    const double start = Longitude();
    QTest::mousePress(viewer->viewport(), Qt::LeftButton, Qt::NoModifier, QPoint(300, 300));
    dragTo(340);
    ASSERT_TRUE(waitFor([start] { return Longitude() < start; }));
    recordSceneEvents(GUIEventAdapter::RELEASE, LoseFocus);
    EXPECT_EQ(releases, 1);

    const SceneEvents moves = recordSceneEvents(GUIEventAdapter::MOVE, [&dragTo] { dragTo(400); });
    for (const auto& event : moves)
        EXPECT_NE(event->getEventType(), GUIEventAdapter::DRAG);
    EXPECT_FALSE(IsMoving());

    const SceneEvents late = recordSceneEvents(GUIEventAdapter::MOVE, [&dragTo] {
        QTest::mouseRelease(viewer->viewport(), Qt::LeftButton, Qt::NoModifier, QPoint(400, 300));
        dragTo(401);
    });
    for (const auto& event : late)
        EXPECT_NE(event->getEventType(), GUIEventAdapter::RELEASE);
    EXPECT_EQ(releases, 1);
    QObject::disconnect(connection);

    // The next press and release are whole again.
    recordSceneEvents(GUIEventAdapter::RELEASE, [] {
        QTest::mouseClick(viewer->viewport(), Qt::LeftButton, Qt::NoModifier, QPoint(300, 300));
    });
}

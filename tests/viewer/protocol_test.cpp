// From mouse events to picks and signals, tool by tool.
#include "ProtocolFixture.h"

#include "mission/landing/CAxDownhillAnglenode.h"

#include <osgEarth/Map>
#include <osgEarth/ModelLayer>

#include <QUndoStack>

#include <cmath>
#include <limits>

using osgGA::GUIEventAdapter;

class Protocol : public ProtocolFixture
{
protected:
    /// Makes `tool` draw blocks that the test counts.
    void Draw(EToolType tool, CAxBlock::EBlockType type = CAxBlock::PolygonBlock)
    {
        viewer->SetShapeFactory(tool, [this, type](CAxEarthViewer* earthViewer, QObject*) {
            begun.push_back(std::make_unique<TestBlock>(earthViewer, "drawn", type));
            return begun.back().get();
        });
        viewer->SetToolType(tool);
    }
    void TearDown() override
    {
        begun.clear();
        for (int tool = 0; tool <= 31; ++tool)
            viewer->SetShapeFactory(static_cast<EToolType>(tool), {});
        ProtocolFixture::TearDown();
    }

    std::vector<std::unique_ptr<TestBlock>> begun;
};

TEST_F(Protocol, PicksTheGroundAndZerosBesideTheGlobe)
{
    const osg::Vec2f place = WindowOf(25.0, 5.0);
    EXPECT_FALSE(Move(place.x(), place.y()));
    EXPECT_EQ(Heard(), QStringList{"move"});
    EXPECT_NEAR(lngLatPos.x(), 25.0, 0.2);
    EXPECT_NEAR(lngLatPos.y(), 5.0, 0.2);
    for (int i = 0; i < 3; ++i)
        EXPECT_EQ(lngLatPos[i], static_cast<double>(static_cast<float>(lngLatPos[i]))) << i;
    EXPECT_LT((WindowOf(worldCoordPos) - place).length(), 0.01f);

    Move(3.0f, 3.0f);
    EXPECT_EQ(lngLatPos, osg::Vec3d());
    EXPECT_EQ(worldCoordPos, osg::Vec3d());
}

TEST_F(Protocol, TellsAClickFromADrag)
{
    EXPECT_FALSE(Push(400, 300));
    EXPECT_EQ(Heard(), (QStringList{"press", "press window"}));
    EXPECT_FALSE(Release(400, 300.00001f));
    EXPECT_EQ(Heard(), (QStringList{"release", "click"}));

    Push(400, 300);
    EXPECT_FALSE(Drag(410, 300));
    EXPECT_FALSE(Release(410, 300));
    EXPECT_EQ(Heard(),
              (QStringList{"press", "press window", "drag", "drag window", "release", "release window"}));

    // The origin of the window is its lower left corner.
    Push(0, 599);
    Release(0, 599);
    EXPECT_EQ(Heard(), (QStringList{"press", "press window", "release", "release window"}));

    Push(300, 200, GUIEventAdapter::RIGHT_MOUSE_BUTTON);
    EXPECT_FALSE(Release(300, 200, GUIEventAdapter::RIGHT_MOUSE_BUTTON));
    EXPECT_EQ(Heard(), QStringList{"right click"});
    Push(300, 200, GUIEventAdapter::RIGHT_MOUSE_BUTTON);
    Release(330, 200, GUIEventAdapter::RIGHT_MOUSE_BUTTON);
    EXPECT_EQ(Heard(), QStringList());
}

TEST_F(Protocol, SwallowsTheReleaseAfterADoubleClickOnce)
{
    Push(400, 300);
    Release(400, 300);
    Heard();
    viewer->SetToolType(ToolPolygonBlock);
    EXPECT_TRUE(DoubleClick(400, 300));
    EXPECT_EQ(Heard(), QStringList{"double click"});
    EXPECT_FALSE(Release(400, 300));
    EXPECT_EQ(Heard(), QStringList());
    viewer->SetToolType(ToolNavigate);
    Push(400, 300);
    Release(400, 300);
    EXPECT_EQ(Heard(), (QStringList{"press", "press window", "release", "click"}));
}

TEST_F(Protocol, LeavesADoubleClickToTheToolOrElseFliesThere)
{
    const osgEarth::Viewpoint before = manipulator->getViewpoint();
    viewer->SetToolType(ToolPolygonBlock);
    EXPECT_TRUE(DoubleClick(300, 200));
    viewer->SetToolType(ToolNavigate);
    EXPECT_FALSE(manipulator->isSettingViewpoint());
    EXPECT_FALSE(DoubleClick(300, 200));
    EXPECT_TRUE(manipulator->isSettingViewpoint());
    manipulator->setViewpoint(before);

    // Nearer, or with Control and with the right button farther away; at the height of the ground there, not
    // of the chord that is drawn from so far away.
    const struct
    {
        int button, modifiers;
        double rangeFactor;
    } flights[] = {{Event::LEFT_MOUSE_BUTTON, 0, 0.4},
                   {Event::LEFT_MOUSE_BUTTON, Event::MODKEY_LEFT_CTRL, 2.5},
                   {Event::RIGHT_MOUSE_BUTTON, 0, 2.5}};
    for (const auto& flight : flights) {
        const auto event = Make(Event::DOUBLECLICK, 310, 290, flight.button);
        event->setModKeyMask(flight.modifiers);
        EXPECT_FALSE(Send(event));
        ASSERT_TRUE(waitFor([&] { return !manipulator->isSettingViewpoint(); }));
        const osgEarth::Viewpoint there = manipulator->getViewpoint();
        EXPECT_NEAR(there.getRange(), flight.rangeFactor * before.getRange(), 0.01 * before.getRange());
        EXPECT_NEAR(there.focalPoint()->z(), 500.0, 1500.0);
        Send(Make(Event::RELEASE, 310, 290, flight.button));
        manipulator->setViewpoint(before);
        ASSERT_TRUE(WaitForPicture());
    }

    TestBlock block(viewer, "current");
    block.Draw(FrameAt(20.0, 10.0), 200000.0f);
    ASSERT_TRUE(viewer->AddHandleAdapter(&block));
    viewer->SetNodeSelected(block.GetFeatureNode(), false, false);
    EXPECT_TRUE(DoubleClick(300, 200)) << "a current object owns double clicks";
    EXPECT_FALSE(manipulator->isSettingViewpoint());
}

TEST_F(Protocol, BeginsADrawingOnceAtTheToolsOwnMoment)
{
    struct Moment
    {
        int tool;
        const char* when;
    };
    const std::vector<Moment> moments{{4, "push"}, {3, "click"}, {10, "move"}, {16, "move"}};
    for (const Moment& moment : moments) {
        SCOPED_TRACE(moment.tool);
        Draw(static_cast<EToolType>(moment.tool));
        EXPECT_EQ(viewer->GetCurHandleAdapter(), nullptr);
        Move(400, 300);
        EXPECT_EQ(begun.size(), moment.when == std::string("move") ? 1u : 0u);
        Push(400, 300);
        EXPECT_EQ(begun.size(), moment.when == std::string("click") ? 0u : 1u);
        Release(400, 300);
        ASSERT_EQ(begun.size(), 1u);
        EXPECT_EQ(viewer->GetCurHandleAdapter(), begun[0].get());
        EXPECT_EQ(begun[0]->GetHandleOperation(), OperationDrawing);
        Move(410, 310);
        Push(410, 310);
        Release(410, 310);
        EXPECT_EQ(begun.size(), 1u) << "one drawing at a time";
        begun.clear();
    }
}

TEST_F(Protocol, BeginsNoDrawingWhereItIsNotWanted)
{
    Draw(ToolRectangleBlock);
    viewer->EnabledPickHandle(false);
    Push(400, 300);
    EXPECT_TRUE(begun.empty()) << "picking is off";
    viewer->EnabledPickHandle(true);
    Push(400, 300);
    ASSERT_EQ(begun.size(), 1u);
    begun[0]->SetOperation(OperationIdle);
    begun[0]->GetAnchorEditor()->SetDragState(true);
    Push(400, 300);
    EXPECT_EQ(begun.size(), 1u) << "a vertex is held";
}

TEST_F(Protocol, GoesOnWithAnObjectAndNeverLosesIt)
{
    viewer->GetUndoStack()->clear();
    for (const bool byDoubleClick : {true, false})
        for (const int verdict : {1, -2}) {
            SCOPED_TRACE(verdict);
            auto block = std::make_unique<TestBlock>(viewer, "video", CAxBlock::VideoBlock);
            block->GetAnchor() = {{18.0, 8.0, 0.0}, {22.0, 8.0, 0.0}, {20.0, 12.0, 0.0}};
            ASSERT_TRUE(viewer->AddHandleAdapter(block.get()));
            viewer->SetNodeSelected(block->GetFeatureNode(), false, false);
            viewer->SetToolType(ToolContinueBlock);
            Push(400, 300);
            Release(400, 300);
            EXPECT_EQ(block->GetHandleOperation(), OperationDrawing);
            block->GetAnchor()[0].x() = 17.0;
            block->verdict = verdict;
            if (byDoubleClick)
                DoubleClick(400, 300);
            viewer->SetToolType(ToolNavigate);
            Release(400, 300);
            ASSERT_EQ(viewer->FindExistNode(QStringLiteral("video")), block.get());
            EXPECT_EQ(block->GetHandleOperation(), OperationIdle);
            EXPECT_EQ(block->GetAnchor()[0].x(), verdict > 0 ? 17.0 : 18.0);
            ASSERT_NE(block->GetContainedBlock(), nullptr);
            EXPECT_EQ(block->GetContainedBlock()->GetAnchor()[0].x(), block->GetAnchor()[0].x());
            EXPECT_EQ(viewer->GetUndoStack()->canUndo(), verdict > 0);
            viewer->GetUndoStack()->clear();
        }
}

TEST_F(Protocol, HoldsTheCameraForToolsThatDrawByDragging)
{
    const double before = manipulator->getViewpoint().focalPoint()->x();
    viewer->SetToolType(ToolRectangleBlock);
    Push(400, 300);
    EXPECT_TRUE(Drag(430, 320));
    Release(430, 320);
    viewer->RemoveHanderAdapter(viewer->GetCurHandleAdapter(), true);
    EXPECT_EQ(manipulator->getViewpoint().focalPoint()->x(), before);
    viewer->SetToolType(ToolPolygonBlock);
    Push(400, 300);
    EXPECT_FALSE(Drag(430, 300));
    Release(430, 300);
    EXPECT_LT(manipulator->getViewpoint().focalPoint()->x(), before);
}

TEST_F(Protocol, NamesTheDrawableUnderTheMouse)
{
    TestBlock block(viewer, "shape");
    block.Draw(FrameAt(20.0, 10.0), 300000.0f);
    Move(400, 300);
    EXPECT_EQ(Heard(), (QStringList{"move", "move drawable"}));
    EXPECT_EQ(drawable, block.drawable.get());
    Push(400, 300);
    Release(400, 300);
    EXPECT_EQ(Heard(),
              (QStringList{"press drawable", "press", "press window", "click drawable", "release", "click"}));
    const osg::Vec2f beside = WindowOf(26.0, 10.0);
    Move(beside.x(), beside.y());
    EXPECT_EQ(Heard(), QStringList{"move"});
}

TEST_F(Protocol, SelectsAndDeselectsWithTheSelectionTool)
{
    TestBlock one(viewer, "one");
    TestBlock two(viewer, "two");
    one.Draw(FrameAt(20.0, 10.0), 300000.0f);
    two.Draw(FrameAt(30.0, 10.0), 300000.0f);
    ASSERT_TRUE(viewer->AddHandleAdapter(&one) && viewer->AddHandleAdapter(&two));
    const osg::Vec2f there = WindowOf(30.0, 10.0);

    viewer->SetToolType(ToolSelect);
    Push(there.x(), there.y());
    EXPECT_EQ(viewer->GetCurHandleAdapter(), &two);
    Heard();
    EXPECT_TRUE(Release(there.x(), there.y()));
    EXPECT_EQ(Heard(), QStringList()) << "the click is the selection's own";
    EXPECT_EQ(viewer->GetCurHandleAdapter(), nullptr);

    viewer->SetMultiSelect(true);
    for (const osg::Vec2f& place : {there, WindowOf(20.0, 10.0)}) {
        Push(place.x(), place.y());
        EXPECT_TRUE(Release(place.x(), place.y()));
    }
    EXPECT_EQ(viewer->GetMultiSelectAdapter(), (QList<CAxHandleAdapter*>{&two, &one}));
    Push(there.x(), there.y());
    Release(there.x(), there.y());
    EXPECT_EQ(viewer->GetMultiSelectAdapter(), QList<CAxHandleAdapter*>{&one})
        << "a second pick takes it out";
    viewer->SetMultiSelect(false);
    const osg::Vec2f nowhere = WindowOf(25.0, -10.0);
    Push(nowhere.x(), nowhere.y());
    EXPECT_TRUE(Release(nowhere.x(), nowhere.y()));
    EXPECT_TRUE(viewer->GetMultiSelectAdapter().isEmpty());
}

TEST_F(Protocol, DragsTheDownhillHandleAndTheGridByName)
{
    TestBlock handle(viewer, "handle");
    handle.Draw(FrameAt(20.0, 10.0), 300000.0f);
    CAxDownhillAnglenode tool(nullptr, nullptr);
    viewer->SetDownhillAngleNode(&tool);
    handle.place->setName("AngleComputer-2");
    Push(400, 300);
    EXPECT_FALSE(Drag(401, 300)) << "its handles are not shown";
    tool.SetHandlesVisible(true);
    Heard();
    EXPECT_TRUE(Drag(402, 300));
    EXPECT_EQ(Heard(), (QStringList{"drag", "drag window", "drag angle"}));
    EXPECT_TRUE(Drag(600, 450)) << "once grabbed it follows anywhere";
    EXPECT_TRUE(Drag(400, 300));
    Release(400, 300);
    Push(600, 450);
    EXPECT_FALSE(Drag(601, 450)) << "a release ends that, also where the push was";
    Release(601, 450);
    viewer->SetDownhillAngleNode(nullptr);

    handle.place->setName("TaskGrid7");
    Push(400, 300);
    Heard();
    EXPECT_TRUE(Drag(400, 302));
    EXPECT_EQ(Heard(), (QStringList{"drag", "drag window", "drag grid"}));
    Release(400, 302);
}

TEST_F(Protocol, AnswersKeysWithToolsAndDelete)
{
    viewer->SetToolType(ToolPolygonBlock);
    EXPECT_FALSE(Key(GUIEventAdapter::KEYUP, GUIEventAdapter::KEY_Delete));
    EXPECT_EQ(Heard(), QStringList{"delete"});
    EXPECT_FALSE(Key(GUIEventAdapter::KEYDOWN, 0, 3 | 12));
    EXPECT_EQ(viewer->GetToolType(), ToolPolygonBlock);
    EXPECT_FALSE(Key(GUIEventAdapter::KEYDOWN, 0, 3));
    EXPECT_EQ(viewer->GetToolType(), ToolMagnifier);
    Key(GUIEventAdapter::KEYUP, '1', 3);
    EXPECT_EQ(viewer->GetToolType(), ToolMagnifier);
    Key(GUIEventAdapter::KEYUP, 'a', 3);
    EXPECT_EQ(viewer->GetToolType(), ToolNavigate);
}

TEST_F(Protocol, OpensTheNearestMarkPointUnderADoubleClick)
{
    TestBlock marks(viewer, "marks", CAxBlock::MarkPointBlock);
    marks.GetAnchor() = {{20.0, 10.0, 0.0}, {20.0, 10.0, 5000.0}, {40.0, 10.0, 0.0}, {200.0, -10.0, 0.0}};
    ASSERT_TRUE(viewer->AddHandleAdapter(&marks));
    const osg::Vec2f point = WindowOf(20.0, 10.0);
    EXPECT_TRUE(DoubleClick(point.x(), point.y() - 5.0f));
    EXPECT_EQ(marks.doubleClicked, QList<int>{1}) << "the higher one is nearer";
    EXPECT_FALSE(DoubleClick(point.x(), point.y() + 5.0f)) << "the icon stands on its point";
    manipulator->clearViewpoint();
    const osg::Vec2f other = WindowOf(40.0, 10.0);
    EXPECT_TRUE(DoubleClick(other.x() + 3.0f, other.y()));
    EXPECT_EQ(marks.doubleClicked, (QList<int>{1, 2}));
}

TEST_F(Protocol, TakesNoHarmFromEventsWithoutSense)
{
    const double before = manipulator->getViewpoint().getRange();
    constexpr float nan = std::numeric_limits<float>::quiet_NaN();
    constexpr float infinite = std::numeric_limits<float>::infinity();
    for (const auto& [x, y] : {std::pair{nan, 300.0f}, {400.0f, infinite}, {-1e9f, 1e9f}, {900.0f, -50.0f}}) {
        Move(x, y);
        EXPECT_EQ(lngLatPos, osg::Vec3d()) << x;
        Release(x, y);
        Push(x, y);
        Drag(x + 5.0f, y);
        Release(x + 5.0f, y);
        DoubleClick(x, y);
        Scroll(GUIEventAdapter::SCROLL_2D, x, y);
    }
    const auto scroll = Make(GUIEventAdapter::SCROLL, 400, 300);
    scroll->setScrollingMotionDelta(nan, nan);
    Send(scroll);
    Drag(400, 300);
    EXPECT_TRUE(std::isfinite(manipulator->getViewpoint().getRange()));
    EXPECT_NEAR(manipulator->getViewpoint().getRange(), before, 0.1 * before);

    Heard();
    const auto handled = Make(GUIEventAdapter::MOVE, 400, 300);
    handled->setHandled(true);
    EXPECT_FALSE(Send(handled));
    EXPECT_EQ(Heard(), QStringList());
}

TEST(ProtocolOfItsOwn, AListenerMayDeleteTheViewer)
{
    using M = CAxEarthManipulator;
    using Listen = std::function<void(M*, QObject*, std::function<void()>)>;
    const auto on = [](auto signal) -> Listen {
        return [signal](M* mouse, QObject* context, std::function<void()> act) {
            QObject::connect(mouse, signal, context, [act] { act(); });
        };
    };
    using Point = void (M::*)(osg::Vec3d, osg::Vec3d);
    using Window = void (M::*)(float, float);
    const std::vector<std::pair<const char*, Listen>> rows{
        {"pointed", on(&M::signalPointed)},
        {"press", on(static_cast<Point>(&M::mouseLeftBtnPress))},
        {"press window", on(static_cast<Window>(&M::mouseLeftBtnPress))},
        {"move", on(&M::mouseLeftBtnMove)},
        {"drag", on(static_cast<Point>(&M::mouseLeftBtnDrag))},
        {"drag window", on(static_cast<Window>(&M::mouseLeftBtnDrag))},
        {"release", on(static_cast<Point>(&M::mouseLeftBtnRelease))},
        {"click", on(&M::mouseLeftBtnClick)},
        {"double click", on(&M::mouseLeftBtnDoubleClick)},
        {"right click", on(&M::signalRightBtnPicked)},
        {"delete", on(&M::signalHandleKeyDelete)}};
    for (const auto& [name, listen] : rows) {
        SCOPED_TRACE(name);
        QPointer<CAxEarthViewer> doomed = new CAxEarthViewer(nullptr);
        const osg::ref_ptr<osgViewer::Viewer> view = doomed->getOSGViewer(); // as its event traversal does
        listen(doomed->getManipulator(), doomed, [&doomed] { delete doomed.data(); });
        using EA = GUIEventAdapter;
        for (const auto& [type, button] : {std::pair{EA::MOVE, 0},
                                           {EA::PUSH, 1},
                                           {EA::RELEASE, 1},
                                           {EA::PUSH, 1},
                                           {EA::DRAG, 1},
                                           {EA::DOUBLECLICK, 1},
                                           {EA::RELEASE, 1},
                                           {EA::PUSH, 4},
                                           {EA::RELEASE, 4},
                                           {EA::KEYUP, 0}}) {
            osg::ref_ptr<EA> event = new EA;
            event->setEventType(type);
            event->setX(type == EA::DRAG ? 20.0f : 10.0f);
            event->setY(10.0f);
            event->setButton(button);
            event->setButtonMask(type == EA::RELEASE ? 0 : button);
            event->setKey(EA::KEY_Delete);
            if (doomed)
                doomed->getManipulator()->handle(*event, *view);
        }
        EXPECT_FALSE(doomed);
    }
}

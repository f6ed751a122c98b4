// The handles of an object's vertices under the mouse.
#include "EditorFixture.h"
#include "SceneEvents.h"

#include "interaction/models/AxModelPick.h"

#include <osg/ShapeDrawable>

#include <cmath>

using EditorMouse = EditorFixture;

TEST_F(EditorMouse, DragsAVertexOverTheGround)
{
    CAxHandleAdapterEditor& editor = object->Edit();
    const std::vector<osg::Vec3d> before = object->GetAnchor();
    const osg::Vec2f grip(4.0f, -3.0f);
    const osg::Vec2f from = Vertex(2);
    Heard();
    EXPECT_FALSE(Give(Event::MOVE, from + grip));
    int hovered = -1;
    EXPECT_EQ(editor.GetHoveredPoint(hovered), before[2]);
    EXPECT_EQ(hovered, 2);

    EXPECT_TRUE(Give(Event::PUSH, from + grip));
    EXPECT_TRUE(editor.GetDrag());
    EXPECT_EQ(object->moves, 0) << "a push alone moves nothing";
    EXPECT_TRUE(Give(Event::DRAG, from + grip + osg::Vec2f(1.0f, 1.0f)));
    EXPECT_EQ(object->moves, 0) << "nor does a trembling hand";
    const osg::Vec2f to = from + osg::Vec2f(60.0f, 40.0f);
    EXPECT_TRUE(Give(Event::DRAG, to + grip));
    EXPECT_EQ(object->moves, 1);
    EXPECT_EQ(object->moved, 2);
    EXPECT_EQ(object->GetHandleOperation(), OperationMovePoint);
    EXPECT_LT((Vertex(2) - to).length(), 0.5f);
    const osg::Vec3d& now = object->GetAnchor()[2];
    EXPECT_EQ(editor.GetDraggerList()[2]->GetPlace(), now);
    EXPECT_NEAR(now.z(), Ground(now.x() - longitude, now.y() - latitude).z(), 20.0);
    EXPECT_FALSE(Heard().contains("drag")) << "the camera must not see the drag";

    EXPECT_FALSE(Give(Event::RELEASE, to + grip));
    EXPECT_FALSE(editor.GetDrag());
    EXPECT_EQ(object->ends, 1);
    EXPECT_EQ(object->GetHandleOperation(), OperationIdle);
    for (const std::size_t i : {0u, 1u, 3u})
        EXPECT_EQ(object->GetAnchor()[i], before[i]);
}

TEST_F(EditorMouse, TakesTheNearestOfSeveralHandles)
{
    object->GetAnchor()[1] = object->GetAnchor()[0] + osg::Vec3d(0.0009, 0.0, 0.0);
    CAxHandleAdapterEditor& editor = object->Edit();
    const osg::Vec2f apart = Vertex(1) - Vertex(0);
    ASSERT_LT(apart.length(), 6.0f) << "both are within reach of the mouse";
    Give(Event::MOVE, Vertex(0) + apart * 0.4f);
    EXPECT_EQ(editor.HoveredVertex(), 0);
    EXPECT_FALSE(editor.GetDraggerList()[1]->getHovered());
    Give(Event::MOVE, Vertex(0) + apart * 0.6f);
    EXPECT_EQ(editor.HoveredVertex(), 1);
    EXPECT_FALSE(editor.GetDraggerList()[0]->getHovered());
    Give(Event::MOVE, Vertex(0) - apart * (7.5f / apart.length()));
    EXPECT_EQ(editor.HoveredVertex(), 0);
    EXPECT_FALSE(Give(Event::PUSH, Vertex(0) - apart * (8.5f / apart.length()))) << "out of reach";
    const osg::Vec3d first = object->GetAnchor()[0];
    EXPECT_TRUE(DragFromTo(Vertex(0) + apart * 0.6f, Vertex(0) + osg::Vec2f(0.0f, 80.0f)));
    EXPECT_EQ(object->GetAnchor()[0], first);
    EXPECT_EQ(object->moved, 1);
    Give(Event::MOVE, osg::Vec2f(5.0f, 5.0f));
    EXPECT_EQ(editor.HoveredVertex(), -1);
}

TEST_F(EditorMouse, LeavesAloneWhatMayNotBeEdited)
{
    CAxHandleAdapterEditor& editor = object->Edit();
    const auto isTaken = [&] {
        Give(Event::MOVE, Vertex(0));
        const bool isHovered = editor.HoveredVertex() >= 0;
        const bool isPushed = Give(Event::PUSH, Vertex(0));
        Give(Event::RELEASE, Vertex(0));
        EXPECT_EQ(isHovered, isPushed);
        return isPushed;
    };
    const std::pair<const char*, std::function<void(bool)>> rows[] = {
        {"hidden handles", [&](bool on) { editor.setNodeMask(on ? 0u : ~0u); }},
        {"a hidden object", [&](bool on) { object->SetAdapterVisible(!on, QString()); }},
        {"a locked object", [&](bool on) { object->SetLock(on); }},
        {"one that is being drawn",
         [&](bool on) { object->SetOperation(on ? OperationDrawing : OperationIdle); }},
        {"a hidden handle", [&](bool on) { editor.GetDraggerList()[0]->setNodeMask(on ? 0u : ~0u); }},
    };
    for (const auto& [name, set] : rows) {
        EXPECT_TRUE(isTaken()) << "before " << name;
        set(true);
        EXPECT_FALSE(isTaken()) << name;
        set(false);
    }
}

TEST_F(EditorMouse, StaysWhereItIsOverSpace)
{
    manipulator->setViewpoint(Straight(longitude, latitude, 2.0e7));
    ASSERT_TRUE(WaitForPicture());
    object->GetAnchor() = Square(6.0);
    CAxHandleAdapterEditor& editor = object->Edit();
    ASSERT_TRUE(Give(Event::PUSH, Vertex(0)));
    ASSERT_TRUE(Give(Event::DRAG, Vertex(0) + osg::Vec2f(10.0f, 10.0f)));
    const osg::Vec3d last = object->GetAnchor()[0];
    EXPECT_TRUE(Give(Event::DRAG, osg::Vec2f(2.0f, 2.0f)));
    EXPECT_EQ(object->GetAnchor()[0], last);
    Give(Event::RELEASE, osg::Vec2f(2.0f, 2.0f));
    EXPECT_EQ(object->ends, 1);

    object->GetAnchor()[0] = {longitude + 180.0, -latitude, 0.0};
    editor.Update();
    EXPECT_FALSE(Give(Event::PUSH, Vertex(0))) << "behind the globe";
}

TEST_F(EditorMouse, EndsADragWhoseReleaseNeverCame)
{
    CAxHandleAdapterEditor& editor = object->Edit();
    ASSERT_TRUE(Give(Event::PUSH, Vertex(0)));
    ASSERT_TRUE(Give(Event::DRAG, Vertex(0) + osg::Vec2f(30.0f, 0.0f)));
    EXPECT_FALSE(Give(Event::MOVE, Vertex(0) + osg::Vec2f(10.0f, 0.0f)));
    EXPECT_FALSE(editor.GetDrag());
    EXPECT_TRUE(waitFor([this] { return object->ends == 1; })) << "the edit ends as by a release";
    EXPECT_EQ(object->GetHandleOperation(), OperationIdle);
}

TEST_F(EditorMouse, DoesNotTakeADropForAClick)
{
    CAxHandleAdapterEditor& editor = object->Edit();
    const osg::Vec2f to = Vertex(0) + osg::Vec2f(70.0f, 20.0f);
    Give(Event::PUSH, to);
    Give(Event::RELEASE, to);
    Heard();
    DragFromTo(Vertex(0), to);
    EXPECT_EQ(Heard().filter("click"), QStringList()) << "where the last click was";
    EXPECT_EQ(object->ends, 1);
    EXPECT_EQ(editor.HoveredVertex(), 0);
}

TEST_F(EditorMouse, SurvivesTheEndOfItsObject)
{
    const osg::ref_ptr<CAxHandleAdapterEditor> editor = &object->Edit();
    const osg::Vec2f from = Vertex(0);
    ASSERT_TRUE(Give(Event::PUSH, from));
    ASSERT_TRUE(Give(Event::DRAG, from + osg::Vec2f(20.0f, 0.0f)));
    object.reset();
    viewer->GetDrawNodeGroup()->addChild(editor);
    EXPECT_TRUE(Give(Event::DRAG, from + osg::Vec2f(40.0f, 0.0f)));
    Give(Event::RELEASE, from);
    EXPECT_FALSE(editor->GetDrag());
    EXPECT_FALSE(Give(Event::PUSH, from));
    Give(Event::MOVE, from);
    editor->Update();
    EXPECT_TRUE(waitFrames(2));
    viewer->GetDrawNodeGroup()->removeChild(editor);
}

TEST_F(EditorMouse, FollowsTheNumberOfVertices)
{
    CAxHandleAdapterEditor& editor = object->Edit();
    const osg::ref_ptr<CAxDragger> first = editor.GetDraggerList()[0];
    const osg::Vec2f last = Vertex(3);
    ASSERT_TRUE(Give(Event::PUSH, last));
    ASSERT_TRUE(Give(Event::DRAG, last + osg::Vec2f(20.0f, 0.0f)));
    object->GetAnchor().pop_back();
    editor.Update();
    EXPECT_EQ(editor.GetDraggerList().size(), 3u);
    EXPECT_FALSE(editor.GetDrag()) << "the held vertex is gone";
    Give(Event::DRAG, last + osg::Vec2f(40.0f, 0.0f));
    EXPECT_EQ(object->GetAnchor().size(), 3u);
    Give(Event::RELEASE, last);

    // What Delete takes away is the vertex under the mouse, not its successor.
    Give(Event::MOVE, Vertex(1));
    ASSERT_EQ(editor.HoveredVertex(), 1);
    object->GetAnchor().erase(object->GetAnchor().begin() + 1);
    editor.Update();
    EXPECT_EQ(editor.HoveredVertex(), -1);

    object->GetAnchor().insert(object->GetAnchor().begin(), 3, Ground(0.0, 0.02));
    editor.Update();
    EXPECT_EQ(editor.GetDraggerList()[0], first) << "handles are kept";
    for (std::size_t i = 0; i < 5; ++i)
        EXPECT_EQ(editor.GetDraggerList()[i]->GetPlace(), object->GetAnchor()[i]);
    object->GetAnchor().clear();
    editor.Update();
    EXPECT_TRUE(editor.GetDraggerList().empty());
    Give(Event::MOVE, last);
    EXPECT_EQ(editor.HoveredVertex(), -1);
}

TEST_F(EditorMouse, DrawsHandlesInPixelsFromEveryRange)
{
    // How many of the pixels in the row of a place have a colour.
    const auto widthOf = [](QRgb color, const osg::Vec2f& at) {
        const QImage picture = viewer->GetCurrViewerImg();
        int count = 0;
        for (int dx = -15; dx <= 15; ++dx)
            count += picture.pixel(qRound(at.x()) + dx, qRound(at.y())) == color;
        return count;
    };
    constexpr QRgb green = 0xff00ff00;
    constexpr QRgb yellow = 0xffffff00;
    for (const double range : {20.0, 2000.0, 2e5, 2e6}) {
        SCOPED_TRACE(range);
        const osg::Vec3d middle = Ground(0.0, 0.0);
        manipulator->setViewpoint(
            osgEarth::Viewpoint("", middle.x(), middle.y(), middle.z(), 20.0, -50.0, range));
        ASSERT_TRUE(WaitForPicture());
        object->GetAnchor() = Square(range / 1.2e6);
        CAxHandleAdapterEditor& editor = object->Edit();
        Give(Event::MOVE, Vertex(0));
        ASSERT_TRUE(waitFrames(3));
        EXPECT_NEAR(widthOf(green, Vertex(1)), 7, 1) << "inside a dark rim";
        EXPECT_NEAR(widthOf(yellow, Vertex(0)), 7, 1);
        editor.SetDragType(CAxDragger::DragNone);
        ASSERT_TRUE(waitFrames(3));
        EXPECT_EQ(widthOf(green, Vertex(1)), 0);
    }
    manipulator->setViewpoint(Straight(longitude, latitude, 1.5e7));
    ASSERT_TRUE(WaitForPicture());
    object->GetAnchor() = {{longitude, latitude, 0.0}, {longitude + 180.0, -latitude, 0.0}};
    CAxHandleAdapterEditor& editor = object->Edit();
    editor.SetDraggerColor(1, osg::Vec4f(1.0f, 1.0f, 0.0f, 1.0f));
    ASSERT_TRUE(waitFrames(3));
    EXPECT_GT(widthOf(green, Vertex(0)), 5);
    EXPECT_EQ(widthOf(yellow, Vertex(1)), 0) << "the globe hides the other one behind it";
}

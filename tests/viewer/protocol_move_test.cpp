// Whole blocks moved with the mouse.
#include "ProtocolFixture.h"

#include <osgEarth/Terrain>

#include <functional>

class ProtocolMove : public ProtocolFixture
{
protected:
    void SetUp() override
    {
        ProtocolFixture::SetUp();
        viewer->SetToolType(ToolSelect);
    }

    std::unique_ptr<TestBlock> Block(const char* id, double lng, double lat)
    {
        auto block = std::make_unique<TestBlock>(viewer, id);
        block->GetAnchor() = {
            {lng - 1.0, lat - 1.0, 7.0}, {lng + 1.0, lat - 1.0, 7.0}, {lng, lat + 1.0, 7.0}};
        block->Draw(FrameAt(lng, lat), 200000.0f);
        EXPECT_TRUE(viewer->AddHandleAdapter(block.get()));
        return block;
    }
    bool PushAt(double lng, double lat)
    {
        const osg::Vec2f place = WindowOf(lng, lat);
        return Push(place.x(), place.y());
    }
    bool DragTo(double lng, double lat)
    {
        const osg::Vec2f place = WindowOf(lng, lat);
        return Drag(place.x(), place.y());
    }
    bool ReleaseAt(double lng, double lat)
    {
        const osg::Vec2f place = WindowOf(lng, lat);
        return Release(place.x(), place.y());
    }
};

TEST_F(ProtocolMove, TakesTheBlockAlongWithTheCursor)
{
    const auto block = Block("moved", 20.0, 10.0);
    const double camera = manipulator->getViewpoint().focalPoint()->x();
    PushAt(20.0, 10.0);
    Heard();
    EXPECT_TRUE(DragTo(20.3, 10.2));
    EXPECT_EQ(Heard(), (QStringList{"drag", "drag window", "object moved"}));
    EXPECT_EQ(movedBy, osg::Vec3d()) << "the first step only takes hold";
    const osg::Vec3d grabbed = lngLatPos;
    EXPECT_TRUE(DragTo(24.0, 13.0));
    const osg::Vec3d way = lngLatPos - grabbed;
    EXPECT_NEAR(movedBy.x(), way.x(), 1e-5);
    EXPECT_NEAR(movedBy.y(), way.y(), 1e-5);
    EXPECT_EQ(movedBy.z(), 0.0);
    EXPECT_NEAR(block->GetAnchor()[1].x(), 21.0 + way.x(), 1e-4);
    EXPECT_NEAR(block->GetAnchor()[1].y(), 9.0 + way.y(), 1e-4);
    double ground = 0.0;
    ASSERT_TRUE(viewer->getMapNode()->getTerrain()->getHeight(viewer->getSRS(), block->GetAnchor()[1].x(),
                                                              block->GetAnchor()[1].y(), &ground));
    EXPECT_EQ(block->GetAnchor()[1].z(), ground);
    Heard();
    EXPECT_TRUE(ReleaseAt(24.0, 13.0));
    EXPECT_EQ(Heard(), QStringList{"release"});
    EXPECT_EQ(viewer->GetCurHandleAdapter(), nullptr);
    EXPECT_EQ(manipulator->getViewpoint().focalPoint()->x(), camera);
}

TEST_F(ProtocolMove, LeavesBlocksWithRoutesAndLockedOnesWhereTheyAre)
{
    const auto block = Block("held", 20.0, 10.0);
    block->SetLock(true);
    PushAt(20.0, 10.0);
    EXPECT_FALSE(DragTo(22.0, 10.0)) << "locked";
    ReleaseAt(22.0, 10.0);
    block->SetLock(false);
    block->AddRoute();
    manipulator->setViewpoint(Straight(20.0, 10.0, 1.5e7));
    ASSERT_TRUE(WaitForPicture());
    PushAt(20.0, 10.0);
    EXPECT_FALSE(DragTo(22.0, 10.0)) << "has a route";
    ReleaseAt(22.0, 10.0);
    EXPECT_EQ(block->GetAnchor()[0], osg::Vec3d(19.0, 9.0, 7.0));
    EXPECT_LT(manipulator->getViewpoint().focalPoint()->x(), 19.9) << "the camera panned instead";
}

TEST_F(ProtocolMove, WaitsWhileTheCursorIsOverSpace)
{
    const auto block = Block("waiting", 20.0, 10.0);
    PushAt(20.0, 10.0);
    DragTo(20.0, 10.0);
    DragTo(22.0, 12.0);
    const std::vector<osg::Vec3d> there = block->GetAnchor();
    EXPECT_TRUE(Drag(2.0f, 2.0f));
    EXPECT_EQ(block->GetAnchor(), there);
    EXPECT_TRUE(Release(2.0f, 2.0f));
}

TEST_F(ProtocolMove, EndsWithTheReleaseWhateverElseThatMeans)
{
    const auto block = Block("ended", 20.0, 10.0);
    const std::vector<std::function<void()>> ends{[this] {
                                                      DragTo(20.0, 10.0);
                                                      ReleaseAt(20.0, 10.0); // where the push was
                                                  },
                                                  [this] { ReleaseAt(22.0, 12.0); },
                                                  [this] { Move(400, 300); }}; // told nowhere
    for (std::size_t i = 0; i < ends.size(); ++i) {
        SCOPED_TRACE(i);
        viewer->SetNodeSelected(block->GetFeatureNode(), false, false);
        const double before = block->GetAnchor()[0].x();
        i == 1 ? DoubleClick(400, 300) : PushAt(20.0, 10.0);
        viewer->SetNodeSelected(block->GetFeatureNode(), false, false);
        DragTo(20.5, 10.0);
        DragTo(22.0, 12.0);
        EXPECT_NE(block->GetAnchor()[0].x(), before);
        ends[i]();
        EXPECT_EQ(block->GetHandleOperation(), OperationIdle);
    }
}

TEST_F(ProtocolMove, IsOverWhenSomebodyElseEndsIt)
{
    const double camera = manipulator->getViewpoint().focalPoint()->x();
    auto block = Block("interrupted", 20.0, 10.0);
    for (const bool isRemoved : {false, true}) {
        PushAt(20.0, 10.0);
        DragTo(20.5, 10.0);
        DragTo(22.0, 12.0);
        isRemoved ? block.reset() : static_cast<void>(block->CancelHandle());
        EXPECT_TRUE(DragTo(24.0, 13.0)) << "the camera does not take over";
        EXPECT_TRUE(!block || block->GetAnchor()[0].x() == 19.0);
        ReleaseAt(24.0, 13.0);
    }
    EXPECT_EQ(manipulator->getViewpoint().focalPoint()->x(), camera);
}

struct Verdicts
{
    const char* name;
    int first;
    int second;
    bool kept;
};

class ProtocolMoveMany : public ProtocolMove, public testing::WithParamInterface<Verdicts>
{
};

TEST_P(ProtocolMoveMany, KeepsAllOrNone)
{
    const auto one = Block("a", 20.0, 10.0);
    const auto two = Block("b", 26.0, 10.0);
    const auto locked = Block("c", 20.0, 16.0);
    one->verdict = GetParam().first;
    two->verdict = GetParam().second;
    locked->SetLock(true);
    for (const auto* block : {one.get(), two.get(), locked.get()})
        viewer->SetNodeSelected(block->GetFeatureNode(), true, false);
    PushAt(20.0, 10.0);
    EXPECT_TRUE(DragTo(20.0, 10.0));
    EXPECT_TRUE(DragTo(23.0, 12.0));
    EXPECT_NEAR(one->moved.last().x(), 3.0, 0.1);
    EXPECT_NEAR(two->GetAnchor()[0].x(), 28.0, 0.1);
    EXPECT_EQ(locked->GetAnchor()[0], osg::Vec3d(19.0, 15.0, 7.0));
    EXPECT_EQ(two->GetHandleOperation(), OperationMoveHandle);
    Heard();
    EXPECT_TRUE(ReleaseAt(23.0, 12.0));
    EXPECT_EQ(Heard(), QStringList());
    EXPECT_EQ(two->checks, GetParam().first >= 1 ? 1 : 0) << "the first refusal ends the questions";
    for (const auto& [block, lng] : {std::pair{one.get(), 19.0}, {two.get(), 25.0}}) {
        EXPECT_EQ(block->GetHandleOperation(), OperationIdle);
        const double expected = GetParam().kept ? lng + 3.0 : lng;
        EXPECT_NEAR(block->GetAnchor()[0].x(), expected, 0.1);
        EXPECT_NEAR(CAxBlockManager::instance().GetBlock(block->GetHandleID())->GetAnchor()[0].x(), expected,
                    0.1);
    }
    EXPECT_TRUE(viewer->GetMultiSelectAdapter().isEmpty());
}

INSTANTIATE_TEST_SUITE_P(Moves, ProtocolMoveMany,
                         testing::Values(Verdicts{"BothFit", 1, 5, true},
                                         Verdicts{"FirstDoesNot", -1, 1, false},
                                         Verdicts{"SecondDoesNot", 1, 0, false}),
                         [](const auto& row) { return std::string(row.param.name); });

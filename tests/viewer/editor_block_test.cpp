// Handles of a real block: each edit ends in the record, or falls back to it.
#include "EditorFixture.h"
#include "ModalBox.h"

#include "mission/routes/CAxTaskPolygon.h"

#include <QUndoStack>

class EditorOfBlock : public EditorFixture
{
protected:
    void SetUp() override
    {
        EditorFixture::SetUp();
        object.reset();
        QList<QPointF> ring;
        for (const osg::Vec3d& corner : Square(0.012))
            ring += QPointF(corner.x(), corner.y());
        CAxBlockManager::instance().AddBlock(QStringLiteral("held"), CAxBlock::PolygonBlock)->SetAnchor(ring);
        block = viewer->ImportShapeNode(QStringLiteral("held"));
        ASSERT_TRUE(block);
        viewer->SetNodeSelected(block->GetFeatureNode(), false, false);
        ASSERT_TRUE(block->GetAnchorEditor());
    }
    void TearDown() override
    {
        viewer->RemoveAllHanderAdapter(true);
        viewer->GetUndoStack()->clear();
        EditorFixture::TearDown();
    }

    QList<QPointF> Record() const { return block->GetContainedBlock()->GetAnchor(); }
    osg::Vec2f Corner(int index) const { return PixelOf(block->GetAnchor()[std::size_t(index)]); }
    /// Each handle stands on its vertex, and each vertex on the record's.
    void ExpectInStep() const
    {
        const auto& draggers = block->GetAnchorEditor()->GetDraggerList();
        ASSERT_EQ(int(draggers.size()), Record().size());
        ASSERT_EQ(int(block->GetAnchor().size()), Record().size());
        for (int i = 0; i < Record().size(); ++i) {
            const osg::Vec3d place = draggers[std::size_t(i)]->GetPlace();
            EXPECT_EQ(place, block->GetAnchor()[std::size_t(i)]);
            EXPECT_NEAR(place.x(), Record()[i].x(), 1e-9);
            EXPECT_NEAR(place.y(), Record()[i].y(), 1e-9);
        }
    }

    /// Takes a corner and drags it somewhere else; where the mouse was pressed.
    osg::Vec2f BeginDrag(int index)
    {
        const osg::Vec2f from = Corner(index);
        Give(Event::PUSH, from);
        Give(Event::DRAG, from + osg::Vec2f(50.0f, 30.0f));
        EXPECT_EQ(block->GetHandleOperation(), OperationMovePoint);
        return from;
    }

    CAxHandleAdapter* block = nullptr;
};

TEST_F(EditorOfBlock, WritesADragIntoTheRecordAndTakesItBack)
{
    const QList<QPointF> before = Record();
    const osg::Vec2f to = Corner(1) + osg::Vec2f(40.0f, 15.0f);
    DragFromTo(Corner(1), to);
    EXPECT_NE(Record()[1], before[1]);
    EXPECT_LT((Corner(1) - to).length(), 0.7f);
    ExpectInStep();
    ASSERT_EQ(viewer->GetUndoStack()->count(), 1);
    viewer->GetUndoStack()->undo();
    EXPECT_EQ(Record(), before);
    ExpectInStep();
    viewer->GetUndoStack()->redo();
    EXPECT_LT((Corner(1) - to).length(), 0.7f);
    ExpectInStep();
    const QString name = block->GetContainedBlock()->GetBlockName();
    EXPECT_EQ(viewer->GetUndoStack()->undoText(), "Move vertex: " + name);
    const osg::Vec3d middle = AxEditRules::MiddleOf(block->GetAnchor()[2], block->GetAnchor()[3]);
    const osg::Vec2f onEdge = PixelOf(Ground(middle.x() - longitude, middle.y() - latitude));
    DragFromTo(onEdge, onEdge + osg::Vec2f(10.0f, -30.0f));
    EXPECT_EQ(viewer->GetUndoStack()->undoText(), "Insert vertex: " + name);
}

TEST_F(EditorOfBlock, FallsBackWhenTheEditIsRefused)
{
    const QList<QPointF> before = Record();
    ModalBox box;
    const osg::Vec2f across = (Corner(2) + Corner(3)) * 0.5f + (Corner(2) - Corner(1)) * 0.5f;
    DragFromTo(Corner(0), across);
    EXPECT_EQ(box.count, 1) << "the edges cross";
    EXPECT_EQ(Record(), before);
    EXPECT_EQ(block->GetHandleOperation(), OperationIdle);
    ExpectInStep();
    EXPECT_EQ(viewer->GetUndoStack()->count(), 0);

    const osg::Vec2f middle = PixelOf(AxEditRules::MiddleOf(block->GetAnchor()[0], block->GetAnchor()[1]));
    DragFromTo(middle, across);
    EXPECT_EQ(box.count, 2);
    EXPECT_EQ(Record(), before) << "the vertex that the drag inserted is gone";
    ExpectInStep();
}

TEST_F(EditorOfBlock, GivesADragUpWithEscape)
{
    const QList<QPointF> before = Record();
    const osg::Vec2f from = BeginDrag(2);
    QTest::keyClick(viewer, Qt::Key_Escape);
    EXPECT_EQ(block->GetHandleOperation(), OperationIdle);
    EXPECT_TRUE(Give(Event::DRAG, from + osg::Vec2f(80.0f, 30.0f)));
    Give(Event::RELEASE, from + osg::Vec2f(80.0f, 30.0f));
    EXPECT_EQ(Record(), before);
    ExpectInStep();
}

TEST_F(EditorOfBlock, GivesADragUpWithAToolThatStartsAnotherShape)
{
    const QList<QPointF> before = Record();
    const osg::Vec2f from = BeginDrag(2);
    viewer->SetToolType(ToolStripBlock);
    EXPECT_EQ(block->GetHandleOperation(), OperationIdle);
    EXPECT_EQ(Record(), before);
    EXPECT_NEAR(block->GetAnchor()[2].x(), before[2].x(), 1e-9) << "what is seen is the record";
    viewer->SetToolType(ToolNavigate);
    Give(Event::RELEASE, from + osg::Vec2f(50.0f, 30.0f));
    EXPECT_EQ(Record(), before);
}

TEST_F(EditorOfBlock, EndsWithTheBlockInTheMiddleOfADrag)
{
    const osg::Vec2f from = BeginDrag(2);
    EXPECT_TRUE(viewer->RemoveHanderAdapter(block, true));
    Give(Event::DRAG, from + osg::Vec2f(60.0f, 30.0f));
    Give(Event::RELEASE, from + osg::Vec2f(60.0f, 30.0f));
    EXPECT_FALSE(findNode(viewer->GetDrawNodeGroup(), "AnchorEditor"));
}

TEST_F(EditorOfBlock, HandlesFollowVerticesFromOutside)
{
    std::vector<osg::Vec3d> shifted = block->GetAnchor();
    for (osg::Vec3d& vertex : shifted)
        vertex.x() += 0.01;
    block->ImportGeometry(shifted, false);
    EXPECT_EQ(block->GetAnchorEditor()->GetDraggerList()[0]->GetPlace(), shifted[0]);
    // Told of by nobody, as in the middle of a check: tiles that arrive must not bring the old places back.
    block->GetAnchor()[0].x() += 0.02;
    shifted[0].x() += 0.02;
    manipulator->setViewpoint(osgEarth::Viewpoint("", longitude, latitude, 3027.0, 20.0, -50.0, 4000.0));
    ASSERT_TRUE(WaitForPicture());
    for (std::size_t i = 0; i < shifted.size(); ++i)
        EXPECT_EQ(block->GetAnchor()[i].x(), shifted[i].x()) << i;
}

TEST_F(EditorOfBlock, RoutesAndHidingEndItsEditAndGiveTheHandlesBack)
{
    CAxTaskPolygon route(viewer, block);
    for (const bool isHidden : {true, false}) {
        block->GetAnchor()[0].x() += 0.01;
        block->HandleMoved(0.01, 0.0, 0.0);
        isHidden ? viewer->slotBlockVisible(QStringLiteral("held"), false) : block->AddTask(&route);
        EXPECT_EQ(block->GetHandleOperation(), OperationIdle);
        EXPECT_EQ(block->GetAnchor()[0].x(), Record()[0].x());
        isHidden ? viewer->slotBlockVisible(QStringLiteral("held"), true)
                 : block->RemoveTask(route.GetTaskID());
        EXPECT_NE(block->GetAnchorEditor(), nullptr);
    }
    {
        CAxTaskPolygon dying(viewer, block);
        block->AddTask(&dying);
        EXPECT_EQ(block->GetAnchorEditor(), nullptr);
    }
    EXPECT_TRUE(block->GetTaskList().isEmpty()) << "its maker destroyed it without a word";
    EXPECT_NE(block->GetAnchorEditor(), nullptr);
}

// Blocks deleted together and brought back, and drawings taken up again after their refusal.
#include "ShapeFixture.h"

#include "mission/routes/CAxTaskPolygon.h"

#include <AxData/CAxTask.h>

#include <QAction>

class Deletion : public ShapeFixture
{
protected:
    static CAxBlockManager& Blocks() { return CAxBlockManager::instance(); }
    static QString Top() { return viewer->GetUndoStack()->undoText(); }
    static void Undo() { viewer->GetUndoAction()->trigger(); }
    static void Redo() { viewer->GetRedoAction()->trigger(); }
};

TEST_F(Deletion, IsOneStepThatBringsAllBack)
{
    const QStringList ids{"first", "hidden", "locked", "undrawn"};
    const int others = Blocks().GetBlockList().size();
    for (const QString& id : ids.mid(0, 3))
        ASSERT_TRUE(Import(id, square));
    Blocks().AddBlock("undrawn", CAxBlock::PolygonBlock);
    CAxBlock* record = Blocks().GetBlock("first");
    record->SetBlockName("A && B");
    CAxTask* task = record->AddTask(std::make_unique<CAxTask>("task", "Task", record->GetTaskPara()));
    CAxTaskPolygon kept(viewer, viewer->FindExistNode("first"));
    auto dropped = std::make_unique<CAxTaskPolygon>(viewer, viewer->FindExistNode("first"));
    for (CAxTaskPolygon* route : {&kept, dropped.get()})
        viewer->FindExistNode("first")->AddTask(route);
    viewer->slotBlockVisible("hidden", false);
    viewer->slotBlockLock("locked", true);
    for (const char* id : {"first", "locked"})
        viewer->SetNodeSelected(viewer->FindExistNode(id)->GetFeatureNode(), true, false);
    EXPECT_TRUE(viewer->RenameBlock("hidden", "Hidden"));

    EXPECT_EQ(viewer->DeleteBlocks(ids + QStringList{"unknown"}),
              (QStringList{"first", "hidden", "undrawn"}));
    EXPECT_EQ(Blocks().GetBlockList().size(), others + 1);
    EXPECT_EQ(viewer->GetHandleAdapters(), (QList<CAxHandleAdapter*>{viewer->FindExistNode("locked")}));
    EXPECT_EQ(viewer->GetMultiSelectAdapter().size(), 1) << "the locked one stays selected";
    EXPECT_TRUE(Top().startsWith("Delete blocks: A && B, Hidden, ")) << Top().toStdString();
    EXPECT_TRUE(viewer->GetUndoAction()->text().contains("A &&&& B")) << "no letter of the name is a key";
    dropped.reset();

    for (int round = 0; round < 2; ++round) {
        Undo();
        ASSERT_EQ(Blocks().GetBlock("first"), record) << "the very record";
        EXPECT_EQ(record->GetTask("task"), task);
        const CAxHandleAdapter* first = viewer->FindExistNode("first");
        ASSERT_TRUE(first && viewer->FindExistNode("hidden") && Blocks().GetBlock("undrawn"));
        EXPECT_EQ(first->GetTaskList(), QList<CAxTaskPolygon*>{&kept});
        EXPECT_FALSE(viewer->FindExistNode("hidden")->IsVisible());
        EXPECT_EQ(viewer->FindExistNode("undrawn"), nullptr);
        Redo();
        EXPECT_EQ(Blocks().GetBlockList().size(), others + 1);
    }
    // Edits from before the deletion are reached behind it.
    Undo();
    Undo();
    EXPECT_NE(Blocks().GetBlock("hidden")->GetBlockName(), "Hidden");
    Redo();
    // What was locked meanwhile is not deleted again.
    for (const char* id : {"first", "hidden"})
        viewer->slotBlockLock(id, true);
    Redo();
    EXPECT_EQ(Blocks().GetBlockList().size(), others + 3);
    EXPECT_EQ(Blocks().GetBlock("undrawn"), nullptr);
    viewer->FindExistNode("first")->RemoveAllTask();
}

TEST_F(Deletion, GetsAlongWithWhatHappensMeanwhile)
{
    // In the middle of a drag; somebody else takes the name.
    CAxHandleAdapter* block = Import("block", square);
    viewer->slotFocusBlock("block");
    manipulator->setViewpoint(Straight(20.0, 10.0, 1.5e7));
    const QString name = block->GetContainedBlock()->GetBlockName();
    block->GetAnchor()[1].x() += 1.0;
    block->slotPointMoved(23.0, 8.0, 0.0, 1);
    EXPECT_EQ(viewer->DeleteBlocks({"block"}), QStringList{"block"});
    EXPECT_EQ(Blocks().AddBlock("other", CAxBlock::PolygonBlock)->GetBlockName(), name);
    Undo();
    ASSERT_TRUE(viewer->FindExistNode("block"));
    EXPECT_EQ(Ring(viewer->FindExistNode("block")), square);
    EXPECT_EQ(Blocks().GetBlock("block")->GetBlockName(), name + " (2)");
    EXPECT_EQ(viewer->GetCurHandleAdapter(), viewer->FindExistNode("block"));

    // Its ID is taken, and a listener removes what it hears of.
    viewer->DeleteBlocks({"block"});
    Blocks().AddBlock("block", CAxBlock::PolygonBlock);
    Undo();
    EXPECT_EQ(Ring(Import("new", square)), square);
    EXPECT_EQ(viewer->FindExistNode("block"), nullptr);
    EXPECT_EQ(viewer->GetUndoStack()->count(), 0);
    const auto removing = QObject::connect(&Blocks(), &CAxBlockManager::blockDeleted, viewer,
                                           [](const QString& id) { viewer->RemoveHanderAdapter(id, true); });
    EXPECT_EQ(viewer->DeleteBlocks({"new"}), QStringList{"new"});
    QObject::disconnect(removing);
    Undo();
    EXPECT_TRUE(viewer->FindExistNode("new"));
    viewer->DeleteBlocks({"new"}); // and its record goes with the stack
}

TEST_F(Deletion, ARefusedDrawingIsTakenUpAgainWhereItWas)
{
    const std::vector<osg::Vec2d> bowTie{{18.0, 8.0}, {22.0, 12.0}, {22.0, 8.0}, {18.0, 12.0}};
    ModalBox box;
    EXPECT_EQ(DrawPolygon(bowTie), nullptr);
    ASSERT_EQ(Top(), "Refused drawing");
    CAxHandleAdapter* other = Import("other", {{25, 8}, {28, 8}, {28, 11}});
    EXPECT_TRUE(other->InsertVertex(3, osg::Vec3d(25.0, 11.0, 0.0)));
    Undo();
    EXPECT_EQ(Ring(other).size(), 3);
    Undo();
    CAxHandleAdapter* drawing = viewer->GetCurHandleAdapter();
    ASSERT_TRUE(drawing);
    EXPECT_EQ(viewer->GetToolType(), ToolPolygonBlock);
    EXPECT_EQ(drawing->GetHandleOperation(), OperationDrawing);
    ASSERT_EQ(drawing->GetAnchor().size(), 4u);
    EXPECT_NEAR(drawing->GetAnchor()[3].y(), 12.0, 0.1);
    EXPECT_FALSE(viewer->GetUndoAction()->isEnabled());
    // Ended by another tool it is refused again, and waits while somebody draws.
    viewer->SetToolType(ToolNavigate);
    EXPECT_EQ(Top(), "Refused drawing");
    viewer->SetToolType(ToolPolygonBlock);
    Click(19.0, 9.0);
    viewer->GetUndoStack()->undo();
    EXPECT_EQ(viewer->GetCurHandleAdapter()->GetAnchor().size(), 1u);
    PressKey(Qt::Key_Escape);
    viewer->GetUndoStack()->redo();
    Undo();
    ASSERT_TRUE(viewer->GetCurHandleAdapter());
    PressKey(Qt::Key_Backspace);
    DoubleClickAt(20.0, 6.0);
    ASSERT_TRUE(viewer->GetCurHandleAdapter()->GetContainedBlock());
    EXPECT_EQ(Ring(viewer->GetCurHandleAdapter()).size(), 4);
}

TEST_F(Deletion, ADrawingIsAStepThatTakesNothingElseAlong)
{
    const auto rectangle = [this] {
        viewer->SetToolType(ToolRectangleBlock);
        Click(18.0, 8.0);
        DoubleClickAt(22.0, 12.0);
    };
    const auto byAnotherTool = [this] {
        viewer->SetToolType(ToolPolygonBlock);
        for (const QPointF& corner : square)
            Click(corner.x(), corner.y());
    };
    for (const std::function<void()>& draw :
         {std::function<void()>(rectangle), std::function<void()>(byAnotherTool)}) {
        draw();
        viewer->SetToolType(ToolNavigate);
        const QPointer<CAxHandleAdapter> drawn = viewer->GetCurHandleAdapter();
        ASSERT_TRUE(drawn && drawn->GetContainedBlock());
        const QString id = drawn->GetHandleID();
        const QString name = drawn->GetContainedBlock()->GetBlockName();
        const QList<QPointF> ring = Ring(drawn);
        EXPECT_EQ(Top(), "Draw block: " + name);
        QList<QPointF> further = ring;
        further[0] += QPointF(-1.0, 0.0);
        further[3] += QPointF(-1.0, 0.0);
        std::vector<osg::Vec3d> wider;
        for (const QPointF& corner : qAsConst(further))
            wider.emplace_back(corner.x(), corner.y(), 0.0);
        ASSERT_TRUE(drawn->SetVertices(wider, "Wider"));

        // Locked it is not edited by a step either, and with tasks it does not go.
        const auto expectRefused = [&] {
            const ModalBox box;
            const int index = viewer->GetUndoStack()->index();
            const QList<QPointF> now = Blocks().GetBlock(id)->GetAnchor();
            Undo();
            EXPECT_EQ(box.count, 1);
            EXPECT_EQ(viewer->GetUndoStack()->index(), index);
            viewer->GetUndoStack()->undo();
            viewer->GetUndoStack()->redo();
            ASSERT_TRUE(viewer->FindExistNode(id));
            EXPECT_EQ(Ring(viewer->FindExistNode(id)), now) << "past the action";
        };
        viewer->slotBlockLock(id, true);
        expectRefused();
        viewer->slotBlockLock(id, false);
        {
            CAxTaskPolygon route(viewer, drawn);
            drawn->AddTask(&route);
            expectRefused();
        }
        Undo();
        CAxBlock* record = Blocks().GetBlock(id);
        record->AddTask(std::make_unique<CAxTask>("task", "Task", record->GetTaskPara()));
        expectRefused();
        record->RemoveTask("task");
        Undo();
        EXPECT_EQ(Blocks().GetBlock(id), nullptr);
        EXPECT_EQ(viewer->FindExistNode(id), nullptr);
        EXPECT_FALSE(viewer->GetUndoAction()->isEnabled());
        Redo();
        ASSERT_TRUE(viewer->FindExistNode(id));
        EXPECT_EQ(Blocks().GetBlock(id)->GetBlockName(), name);
        EXPECT_EQ(Ring(viewer->FindExistNode(id)), ring);
        Redo();
        EXPECT_EQ(Ring(viewer->FindExistNode(id)), further);
        viewer->RemoveHanderAdapter(id, true);
        Undo();
        Undo();
        EXPECT_EQ(viewer->GetUndoStack()->count(), 0) << "steps of a block that is gone are dropped";
    }
}

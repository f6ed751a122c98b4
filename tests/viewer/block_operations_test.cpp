// Whole blocks: duplicated, united, cut, grown, turned, replaced; the handles around them.
#include "ShapeFixture.h"

#include "interaction/editing/CAxHandleAdapterEditor.h"
#include "interaction/objects/AxBlockOperations.h"
#include "interaction/objects/AxRim.h"

#include <AxAlgorthm/AxUniqueID.h>
#include <AxData/CAxTask.h>

#include <QAction>

class BlockOperations : public ShapeFixture
{
protected:
    static AxBlockOperations& Operations() { return *viewer->GetBlockOperations(); }
    static CAxBlockManager& Blocks() { return CAxBlockManager::instance(); }
    static double AreaOf(const QString& id)
    {
        const CAxBlock* block = Blocks().GetBlock(id);
        return block ? AxAreaOperations::SquareMetres({block->GetAnchor(), {}}) : 0.0;
    }
    static QList<QPointF> Moved(QList<QPointF> ring, double lng, double lat)
    {
        for (QPointF& point : ring)
            point += QPointF(lng, lat);
        return ring;
    }
    /// Names and vertices of all blocks.
    static QMap<QString, QList<QPointF>> All()
    {
        QMap<QString, QList<QPointF>> all;
        for (const CAxBlock* block : Blocks().GetBlockList())
            all[block->GetBlockName()] = block->GetAnchor();
        return all;
    }
    /// One step of the undo stack, which goes back and forth.
    static void ExpectOneStep(const QMap<QString, QList<QPointF>>& before, int stepsBefore)
    {
        const auto after = All();
        EXPECT_EQ(viewer->GetUndoStack()->count(), stepsBefore + 1);
        viewer->GetUndoAction()->trigger();
        EXPECT_EQ(All(), before);
        viewer->GetRedoAction()->trigger();
        EXPECT_EQ(All(), after);
        for (const CAxBlock* block : Blocks().GetBlockList())
            EXPECT_NE(viewer->FindExistNode(block->GetBlockID()), nullptr);
    }
};

TEST_F(BlockOperations, AreOneStepEach)
{
    const double whole = 191e9;
    const struct
    {
        const char* what;
        std::function<QStringList()> run;
        int blocks;   ///< afterwards
        double first; ///< area of the first that came of it, against that of the square
    } rows[] = {
        {"duplicate", [] { return Operations().Duplicate({"a"}); }, 3, 1.0},
        {"unite",
         [] {
             return Operations().Unite({"a", "b"});
         },
         1, 1.75},
        {"subtract", [] { return Operations().Subtract("a", {"b"}); }, 2, 0.75},
        {"split",
         [] {
             return Operations().Split("a", {{20.0, 5.0}, {20.0, 15.0}});
         },
         3, 0.5},
        {"grow", [] { return Operations().Buffer("a", 50000.0); }, 2, 1.51},
        {"turn", [] { return Operations().Rotate("a", 30.0); }, 2, 1.0},
        {"scale", [] { return Operations().Scale("a", 0.5); }, 2, 0.25},
        {"simplify", [] { return Operations().Simplify("a", 2000.0); }, 2, 1.0},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.what);
        QList<QPointF> ring = square;
        if (row.what == std::string("simplify"))
            ring.insert(1, QPointF(20.0, 8.0001));
        ASSERT_TRUE(Import("a", ring));
        ASSERT_TRUE(Import("b", Moved(square, 2.0, 2.0)));
        Blocks().GetBlock("a")->GetTaskPara()->SetBandingOffset(7.0, 8.0);
        const auto before = All();
        const int steps = viewer->GetUndoStack()->count();
        const QStringList came = row.run();
        ASSERT_FALSE(came.isEmpty());
        EXPECT_EQ(Blocks().GetBlockList().size(), row.blocks);
        EXPECT_NEAR(AreaOf(came.first()) / whole, row.first, 0.04);
        double left = 0.0;
        double right = 0.0;
        Blocks().GetBlock(came.first())->GetTaskPara()->GetBandingOffset(left, right);
        EXPECT_EQ(left, 7.0) << "parameters are those of the block";
        ExpectOneStep(before, steps);
        viewer->RemoveAllHanderAdapter(true);
        Blocks().DeleteAllBlocks();
    }
}

TEST_F(BlockOperations, RefuseAloudAndChangeNothing)
{
    ASSERT_TRUE(Import("a", square));
    ASSERT_TRUE(Import("far", Moved(square, 10.0, 0.0)));
    ASSERT_TRUE(Import("hole", {{19.5, 9.5}, {20.5, 9.5}, {20.5, 10.5}, {19.5, 10.5}}));
    ASSERT_TRUE(Import("locked", Moved(square, 3.0, 0.0)));
    ASSERT_TRUE(Import("tasked", Moved(square, 3.0, 0.0)));
    viewer->slotBlockLock("locked", true);
    CAxBlock* tasked = Blocks().GetBlock("tasked");
    tasked->AddTask(std::make_unique<CAxTask>("task", "Task", tasked->GetTaskPara()));
    const std::function<QStringList()> rows[] = {
        [] {
            return Operations().Unite({"a", "far"});
        },
        [] {
            return Operations().Unite({"a", "locked"});
        },
        [] { return Operations().Unite({"a"}); },
        [] { return Operations().Subtract("a", {"hole"}); },
        [] { return Operations().Subtract("a", {"a"}); },
        [] { return Operations().Subtract("hole", {"a"}); },
        [] {
            return Operations().Split("a", {{20.0, 5.0}, {20.0, 9.0}});
        },
        [] {
            return Operations().Split("nobody", {{20.0, 5.0}, {20.0, 15.0}});
        },
        [] { return Operations().Buffer("tasked", 10.0); },
        [] { return Operations().Buffer("a", std::numeric_limits<double>::quiet_NaN()); },
        [] { return Operations().Rotate("locked", 10.0); },
        [] { return Operations().Scale("a", -1.0); },
        [] { return Operations().Simplify("a", 1.0); },
    };
    const auto before = All();
    for (const auto& row : rows) {
        SCOPED_TRACE(&row - rows);
        const ModalBox box;
        EXPECT_TRUE(row().isEmpty());
        EXPECT_EQ(box.count, 1);
        EXPECT_EQ(All(), before);
        EXPECT_EQ(viewer->GetUndoStack()->count(), 0);
    }
}

TEST_F(BlockOperations, ARectangleStaysOneWhereItsRingIs)
{
    const QList<QPointF> rectangle{{20.0, 10.0}, {20.02, 10.0}, {20.02, 10.01}, {20.0, 10.01}};
    const struct
    {
        QList<QPointF> other;
        CAxBlock::EBlockType kind;
    } rows[] = {
        {{{20.01, 9.9}, {20.1, 9.9}, {20.1, 10.1}, {20.01, 10.1}}, CAxBlock::RectangleBlock},
        {{{20.005, 9.99}, {20.1, 9.99}, {20.1, 10.02}, {20.02, 10.02}}, CAxBlock::PolygonBlock},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.kind);
        Blocks().AddBlock("a", CAxBlock::RectangleBlock)->SetAnchor(rectangle);
        ASSERT_NE(viewer->ImportShapeNode("a"), nullptr);
        ASSERT_TRUE(Import("b", row.other));
        const QStringList came = Operations().Subtract("a", {"b"});
        ASSERT_EQ(came.size(), 1);
        EXPECT_EQ(Blocks().GetBlock(came.first())->GetAnchor().size(), 4);
        EXPECT_EQ(Blocks().GetBlock(came.first())->GetBlockType(), row.kind);
        viewer->RemoveAllHanderAdapter(true);
        Blocks().DeleteAllBlocks();
    }
}

TEST_F(BlockOperations, AStripStaysOneWhereItsLineIsCrossed)
{
    const QList<QPointF> line{{20.0, 10.0}, {20.1, 10.0}, {20.1, 10.1}};
    const struct
    {
        const char* what;
        std::function<QStringList()> run;
        int blocks; ///< afterwards
        bool isRefused = false;
        CAxBlock::EBlockType kind = CAxBlock::StripBlock;
        double left = 30.0;
    } rows[] = {
        {"split",
         [] {
             return Operations().Split("strip", {{20.05, 9.9}, {20.05, 10.2}});
         },
         2},
        {"split near its end",
         [] {
             return Operations().Split("strip", {{20.0004, 9.9}, {20.0004, 10.2}});
         },
         1, true},
        {"split beside its line",
         [] {
             return Operations().Split("strip", {{19.9, 9.9998}, {20.3, 9.9998}});
         },
         2, false, CAxBlock::PolygonBlock},
        {"grow", [] { return Operations().Buffer("strip", 5.0); }, 1, false, CAxBlock::StripBlock, 35.0},
        {"shrink to nothing", [] { return Operations().Buffer("strip", -41.0); }, 1, true},
        {"no width", [] { return Operations().Buffer("strip", std::nan("")); }, 1, true},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.what);
        CAxBlock* strip = Blocks().AddBlock("strip", CAxBlock::StripBlock);
        strip->SetAnchor(line);
        strip->GetTaskPara()->SetBandingOffset(30.0, 40.0);
        ASSERT_NE(viewer->ImportShapeNode("strip"), nullptr);
        const int steps = viewer->GetUndoStack()->count();
        const ModalBox box;
        EXPECT_EQ(row.run().isEmpty(), row.isRefused);
        EXPECT_EQ(box.count, row.isRefused ? 1 : 0);
        EXPECT_EQ(viewer->GetUndoStack()->count(), steps + (row.isRefused ? 0 : 1));
        EXPECT_EQ(Blocks().GetBlockList().size(), row.blocks);
        for (const CAxBlock* block : Blocks().GetBlockList()) {
            double left = 0.0;
            double right = 0.0;
            block->GetTaskPara()->GetBandingOffset(left, right);
            EXPECT_EQ(block->GetBlockType(), row.kind);
            EXPECT_EQ(left, row.left);
            EXPECT_EQ(right, row.left + 10.0);
        }
        viewer->RemoveAllHanderAdapter(true);
        Blocks().DeleteAllBlocks();
        viewer->GetUndoStack()->clear();
    }
}

TEST_F(BlockOperations, ReplaceBringsRecordsOfAnyKindAsOneStep)
{
    ASSERT_TRUE(Import("a", square));
    const auto before = All();
    const auto records = [] {
        std::vector<std::unique_ptr<CAxBlock>> made;
        for (int i = 0; i < 3; ++i) {
            made.push_back(std::make_unique<CAxBlock>(CreateUniqueID(), i == 1 ? CAxBlock::StripBlock
                                                                               : CAxBlock::PolygonBlock));
            made.back()->SetBlockName("Import");
            made.back()->SetAnchor(i == 1 ? square.mid(0, 2) : Moved(square, 5.0 * i, 0.0));
            made.back()->GetTaskPara()->SetBandingOffset(5000.0, 5000.0);
        }
        return made;
    };
    EXPECT_TRUE(
        Operations().Replace({"a"}, records(), "Import", [](int done) { return done < 2; }).isEmpty());
    EXPECT_EQ(All(), before) << "it was given up";
    EXPECT_EQ(viewer->GetUndoStack()->count(), 0);
    EXPECT_EQ(Operations().Replace({"a"}, records(), "Import").size(), 3);
    EXPECT_EQ(All().keys(), (QStringList{"Import", "Import (2)", "Import (3)"}));
    ExpectOneStep(before, 0);
    viewer->slotBlockLock(Blocks().GetBlockList().first()->GetBlockID(), true);
    EXPECT_TRUE(
        Operations().Replace({Blocks().GetBlockList().first()->GetBlockID()}, {}, "Import").isEmpty());
    EXPECT_EQ(All().size(), 3);
    // What was locked, or has got a task, does not go with an undo, nor do the others.
    const auto after = All();
    CAxBlock* block = Blocks().GetBlockList().first();
    for (const bool isLocked : {true, false}) {
        SCOPED_TRACE(isLocked);
        viewer->slotBlockLock(block->GetBlockID(), isLocked);
        if (!isLocked)
            block->AddTask(std::make_unique<CAxTask>("task", "Task", block->GetTaskPara()));
        const ModalBox box;
        viewer->GetUndoAction()->trigger();
        EXPECT_EQ(box.count, 1);
        EXPECT_EQ(All(), after);
        EXPECT_TRUE(viewer->GetUndoAction()->isEnabled());
        viewer->GetUndoStack()->undo();
        viewer->GetUndoStack()->redo();
        EXPECT_EQ(All(), after) << "past the action";
    }
    block->RemoveTask("task");
    viewer->GetUndoAction()->trigger();
    EXPECT_EQ(All(), before);
}

TEST_F(BlockOperations, TheLineOfACutIsDrawnOrGivenUp)
{
    ASSERT_TRUE(Import("a", square));
    const auto before = All();
    for (const bool isGivenUp : {true, false}) {
        SCOPED_TRACE(isGivenUp);
        ASSERT_TRUE(Operations().BeginSplit("a"));
        EXPECT_FALSE(Operations().BeginSplit("a")) << "one is going on";
        Click(17.0, 10.0);
        MoveTo(20.0, 10.5);
        EXPECT_FALSE(CursorText().empty());
        if (isGivenUp) {
            PressKey(Qt::Key_Escape);
            EXPECT_EQ(All(), before);
            EXPECT_EQ(viewer->GetCurHandleAdapter(), viewer->FindExistNode("a"));
        } else {
            DoubleClickAt(23.0, 10.0);
            QTRY_COMPARE(Blocks().GetBlockList().size(), 2);
            ExpectOneStep(before, 0);
        }
        EXPECT_TRUE(CursorText().empty());
    }
    // Another tool takes it away.
    ASSERT_TRUE(Operations().BeginSplit(Blocks().GetBlockList().first()->GetBlockID()));
    viewer->SetToolType(ToolPolygonBlock);
    QCoreApplication::processEvents();
    EXPECT_EQ(viewer->GetGeomAdapterGroup()->getNumChildren(), 2u);
}

TEST_F(BlockOperations, HandlesAroundABlockStretchAndTurnIt)
{
    CAxHandleAdapter* block = Import("a", square);
    ASSERT_TRUE(block);
    viewer->SetNodeSelected(block->GetFeatureNode(), false, true);
    AxEditAids aids;
    aids.rimHandles = true;
    aids.snap = false;
    viewer->SetEditAids(aids);
    const auto& handles = block->GetAnchorEditor()->GetDraggerList();
    ASSERT_EQ(handles.size(), 4 + AxRim::count);
    const auto before = All();
    const double area = AreaOf("a");
    const auto drag = [&](std::size_t handle, const osg::Vec3d& to) {
        handles[4 + handle]->DragTo(
            osgEarth::GeoPoint(viewer->getSRS()->getGeographicSRS(), to, osgEarth::ALTMODE_ABSOLUTE));
        EXPECT_FALSE(CursorText().empty());
        EXPECT_NEAR(handles[4 + handle]->GetPlace().x(), to.x(), 0.1) << "the handle goes along";
        block->slotMouseRelease(osg::Vec3d(), osg::Vec3d());
    };
    // From the corner in the north-east to half the way from the opposite one.
    const osg::Vec3d corner = handles[4 + 2]->GetPlace();
    const osg::Vec3d opposite = handles[4]->GetPlace();
    drag(2, (corner + opposite) * 0.5);
    EXPECT_NEAR(AreaOf("a") / area, 0.25, 0.02);
    EXPECT_TRUE(CursorText().empty());
    ExpectOneStep(before, 0);
    viewer->GetUndoAction()->trigger();
    // A quarter turn of the square is a square again, of other corners.
    const osg::Vec3d turning = handles[4 + AxRim::turning]->GetPlace();
    drag(AxRim::turning, {20.0 + (turning.y() - 10.0) * 0.7, 10.0 + (turning.y() - 10.0) * 0.7, 0.0});
    EXPECT_NEAR(AreaOf("a") / area, 1.0, 0.01);
    EXPECT_NEAR(Ring(block)[0].y(), 10.0, 0.15)
        << "45 degrees clockwise: the south-west corner is in the west";
    EXPECT_NEAR(Ring(block)[0].x(), 20.0 - 2.0 * std::sqrt(2.0), 0.15);
    viewer->GetUndoAction()->trigger();
    // One that is given up leaves nothing to the drag of a vertex.
    const auto dragTo = [&](std::size_t handle, const osg::Vec3d& to) {
        handles[handle]->DragTo(
            osgEarth::GeoPoint(viewer->getSRS()->getGeographicSRS(), to, osgEarth::ALTMODE_ABSOLUTE));
    };
    dragTo(4 + 2, (corner + opposite) * 0.5);
    block->CancelHandle();
    dragTo(0, handles[0]->GetPlace() + osg::Vec3d(0.1, 0.1, 0.0));
    EXPECT_NEAR(handles[4 + 2]->GetPlace().x(), corner.x(), 0.01);
    block->CancelHandle();
}

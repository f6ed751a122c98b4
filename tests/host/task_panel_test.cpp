// Tasks of blocks: their routes on the map follow the records, the panel sets what is flown.
#include "host/tasks/TaskPanel.h"
#include "host/tasks/TaskRoutes.h"
#include "interaction/CAxHandleAdapter.h"
#include "mission/CAxTaskPolygon.h"
#include "ModalBox.h"
#include "ViewerFixture.h"

#include <AxData/CAxBlockManager.h>
#include <AxData/CAxTask.h>

#include <QAction>
#include <QComboBox>
#include <QDoubleSpinBox>
#include <QLabel>
#include <QListWidget>
#include <QUndoStack>

#include <memory>

namespace {
const QString blockID = QStringLiteral("quarry");
const QString taskID = QStringLiteral("survey");

class TasksOnMap : public ViewerFixture
{
protected:
    static void SetUpTestSuite()
    {
        Open();
        ASSERT_TRUE(viewer->getMapNode());
    }
    static void TearDownTestSuite() { Close(); }
    void SetUp() override
    {
        CAxBlock* block = CAxBlockManager::instance().AddBlock(blockID, CAxBlock::PolygonBlock);
        block->SetAnchor(Square(0.01));
        ASSERT_TRUE(viewer->ImportShapeNode(blockID));
        viewer->SetNodeSelected(Object()->GetFeatureNode(), false, false);
    }
    void TearDown() override
    {
        viewer->RemoveAllHanderAdapter(true);
        CAxBlockManager::instance().DeleteAllBlocks();
    }

    static QList<QPointF> Square(double degrees)
    {
        return {{10.0, 0.0}, {10.0 + degrees, 0.0}, {10.0 + degrees, degrees}, {10.0, degrees}};
    }
    static CAxBlock* Block() { return CAxBlockManager::instance().GetBlock(blockID); }
    static CAxHandleAdapter* Object() { return viewer->FindExistNode(blockID); }
    static CAxTaskPolygon* Drawn()
    {
        return Object() && !Object()->GetTaskList().isEmpty() ? Object()->GetTaskList().first() : nullptr;
    }
    // The farthest north that the drawn route comes, degrees; 0 for none.
    static double North()
    {
        double north = 0.0;
        if (Drawn() && Drawn()->GetGeometry())
            for (const osg::Vec3d& point : *Drawn()->GetGeometry())
                north = std::max(north, point.y());
        return north;
    }
    static double Altitude()
    {
        return Drawn() && Drawn()->GetGeometry() ? Drawn()->GetGeometry()->front().z() : 0.0;
    }
};
} // namespace

TEST_F(TasksOnMap, ARouteIsWhatItsRecordsSayWhoeverChangesThem)
{
    TaskRoutes routes(viewer, nullptr);
    Block()->AddTask(std::make_unique<CAxTask>(taskID, taskID, Block()->GetTaskPara()));
    ASSERT_TRUE(waitFor([] { return North() > 0.005; }));
    CAxAirLineParam& line = *Block()->GetTaskPara()->GetAirLineParam();
    const struct
    {
        const char* what;
        std::function<void()> change;
        std::function<bool()> isShown;
    } rows[] = {
        {"height", [&] { line.SetRelativeFlyHeight(120.0); },
         [] { return std::abs(Altitude() - Block()->GetAverageAltitude() - 120.0) < 1.0; }},
        {"mean ground", [] { Block()->SetAverageAltitude(500.0); },
         [] { return std::abs(Altitude() - 620.0) < 1.0; }},
        {"outline", [] { Block()->SetAnchor(Square(0.02)); }, [] { return North() > 0.015; }},
        {"entry point", [] { Block()->SetEnterDirection(2); }, [] { return Drawn()->GetEntryPoint() == 2; }},
        {"home",
         [] {
             Block()->SetHomePosition({10.01, 0.03, 5.0}, false);
         },
         [] { return Drawn()->GetHomePoint().y() == 0.03; }},
        {"no home", [] { Block()->SetHomePosition({}, false); },
         [] { return Drawn()->GetHomePoint().isNull(); }},
        {"hidden", [&] { routes.SetShown(blockID, taskID, false); }, [] { return !Drawn(); }},
        {"shown", [&] { routes.SetShown(blockID, taskID, true); }, [] { return North() > 0.015; }},
        {"a wind that nobody flies in",
         [] { Block()->GetTaskPara()->GetExtendedTaskParam()->SetWind(49.0, 0.0); },
         [&] { return !Drawn() && !routes.PlanOf(blockID, taskID)->plan.fault.isEmpty(); }},
        {"no wind", [] { Block()->GetTaskPara()->GetExtendedTaskParam()->SetWind(0.0, 0.0); },
         [] { return North() > 0.015; }},
        {"block deleted", [] { viewer->DeleteBlocks({blockID}); },
         [&] { return !routes.PlanOf(blockID, taskID); }},
        {"and back", [] { viewer->GetUndoStack()->undo(); }, [] { return North() > 0.015; }},
        {"object anew",
         [] {
             viewer->RemoveHanderAdapter(blockID, false);
             viewer->ImportShapeNode(blockID);
         },
         [] { return North() > 0.015; }},
        {"task deleted", [] { Block()->RemoveTask(taskID); },
         [&] { return !Drawn() && !routes.PlanOf(blockID, taskID); }},
    };
    for (const auto& row : rows) {
        row.change();
        EXPECT_TRUE(waitFor(row.isShown, 5000)) << row.what;
    }
}

TEST_F(TasksOnMap, TheOperatorAddsATaskSetsItRenamesItAndDeletesIt)
{
    TaskPanel panel(viewer);
    std::shared_ptr<const ShownPlan> shown;
    QObject::connect(&panel, &TaskPanel::PlanShown, [&shown](const auto& plan) { shown = plan; });
    panel.AddAction()->trigger();
    ASSERT_TRUE(waitFor([&shown] { return shown != nullptr; }, 5000));
    EXPECT_FALSE(panel.findChild<QLabel*>("RouteLength")->text() == QStringLiteral("-"));
    const auto field = [&panel](const char* name) {
        for (QDoubleSpinBox* box : panel.findChildren<QDoubleSpinBox*>())
            if (box->accessibleName() == QLatin1String(name))
                return box;
        return static_cast<QDoubleSpinBox*>(nullptr);
    };
    QDoubleSpinBox* height = field("Height");
    QDoubleSpinBox* sample = field("Sample distance");
    ASSERT_TRUE(height && sample && field("Wind"));
    height->setValue(200.0);
    const double coarse = sample->value();
    sample->setValue(coarse / 2.0);
    EXPECT_NEAR(height->value(), 100.0, 1.0) << "one follows from the other";
    EXPECT_TRUE(waitFor([&shown] { return shown && shown->plan.figures.height < 101.0; }, 5000));

    {
        const ModalBox noBox;
        field("Wind")->setValue(49.0);
        EXPECT_TRUE(waitFor([&shown] { return !shown; }, 5000));
        EXPECT_FALSE(panel.ExportAction()->isEnabled());
        field("Wind")->setValue(0.0);
        EXPECT_TRUE(waitFor([&shown] { return shown != nullptr; }, 5000));
        EXPECT_EQ(noBox.count, 0);
    }

    auto* list = panel.findChild<QListWidget*>("TaskList");
    panel.AddAction()->trigger();
    ASSERT_EQ(list->count(), 2);
    const QString first = list->item(0)->text();
    list->item(1)->setText(first);
    EXPECT_NE(list->item(1)->text(), first) << "two tasks of one name";
    list->item(1)->setText(QStringLiteral("  Pit "));
    EXPECT_EQ(Block()->GetMissionList().last()->GetTaskName(), QStringLiteral("Pit"));
    for (const char* answer : {"Cancel", "Delete"}) {
        ModalBox box;
        box.answers += ModalBox::Press(QLatin1String(answer));
        for (QAction* action : list->actions())
            action->trigger();
        EXPECT_EQ(list->count(), *answer == 'C' ? 2 : 1);
    }
    // The block goes in the middle of it.
    viewer->DeleteBlocks({blockID});
    EXPECT_EQ(list->count(), 0);
    EXPECT_FALSE(shown);
}

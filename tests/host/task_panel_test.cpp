// Tasks of blocks: their routes on the map follow the records, the panel sets what is flown.
#include "host/tasks/TaskPanel.h"
#include "host/tasks/TaskRoutes.h"
#include "interaction/CAxHandleAdapter.h"
#include "interaction/CAxOsgDrawPointSet.h"
#include "mission/CAxTaskPolygon.h"
#include "ModalBox.h"
#include "SuiteViewer.h"

#include <AxData/CAxBlockManager.h>
#include <AxData/CAxTask.h>
#include <AxData/exchange/AxQgcPlan.h>
#include <AxData/exchange/AxWplFile.h>

#include <osgEarth/SpatialReference>
#include <osgEarthAnnotation/PlaceNode>

#include <QAction>
#include <QComboBox>
#include <QDoubleSpinBox>
#include <QFile>
#include <QFileDialog>
#include <QLabel>
#include <QListWidget>
#include <QPushButton>
#include <QTemporaryDir>
#include <QUndoStack>

#include <memory>

namespace {
const QString blockID = QStringLiteral("quarry");
const QString taskID = QStringLiteral("survey");

class TasksOnMap : public SuiteViewer
{
protected:
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
    static QDoubleSpinBox* Field(QWidget& panel, const char* name)
    {
        for (QDoubleSpinBox* box : panel.findChildren<QDoubleSpinBox*>())
            if (box->accessibleName() == QLatin1String(name))
                return box;
        return nullptr;
    }
    // What is drawn of the marker whose picture has that name, or null.
    static osg::Drawable* MarkerOf(osg::Node* from, const char* picture, bool isBelow = false)
    {
        if (const auto* marker = dynamic_cast<osgEarth::Annotation::PlaceNode*>(from))
            isBelow = marker->getIconImage() && QString::fromStdString(marker->getIconImage()->getFileName())
                                                    .contains(QLatin1String(picture));
        osg::Drawable* found = isBelow ? dynamic_cast<osg::Drawable*>(from) : nullptr;
        osg::Group* group = from ? from->asGroup() : nullptr;
        for (unsigned i = 0; group && !found && i < group->getNumChildren(); ++i)
            found = MarkerOf(group->getChild(i), picture, isBelow);
        return found;
    }
    // Chooses a file, of that filter where there is one, in the next file dialog.
    static ModalBox::Answer Choose(const QString& file, const QString& filter = {})
    {
        return [=](QDialog& box) {
            auto& dialog = dynamic_cast<QFileDialog&>(box);
            for (const QString& name : dialog.nameFilters())
                if (!filter.isEmpty() && name.contains(filter))
                    dialog.selectNameFilter(name);
            dialog.selectFile(file);
            box.accept();
        };
    }
    static QByteArray Contents(const QString& path)
    {
        QFile file(path);
        return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
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
        {"hidden, as a project keeps it",
         [&] {
             routes.SetShown(blockID, taskID, false);
             const QString kept = routes.Hidden();
             routes.SetHidden(QStringLiteral("no list"));
             EXPECT_TRUE(routes.IsShown(blockID, taskID)) << "of the next project";
             routes.SetHidden(kept);
             EXPECT_FALSE(routes.IsShown(blockID, taskID));
         },
         [] { return !Drawn(); }},
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
    QDoubleSpinBox* height = Field(panel, "Height");
    QDoubleSpinBox* sample = Field(panel, "Sample distance");
    ASSERT_TRUE(height && sample && Field(panel, "Wind"));
    height->setValue(200.0);
    const double coarse = sample->value();
    sample->setValue(coarse / 2.0);
    EXPECT_NEAR(height->value(), 100.0, 1.0) << "one follows from the other";
    EXPECT_TRUE(waitFor([&shown] { return shown && shown->plan.figures.height < 101.0; }, 5000));
    // Typed, as a person does; a digit that is too many is not dropped.
    for (const auto& [typed, value] : {std::pair{"12000", 10000.0},
                                       {"0.2", 1.0},
                                       {"1234.56", 1234.6},
                                       {"1e308", 10000.0},
                                       {"100", 100.0},
                                       {"120,5", 100.0},
                                       {"abc", 100.0}}) {
        height->selectAll();
        QTest::keyClicks(height, QLatin1String(typed));
        QTest::keyClick(height, Qt::Key_Return);
        QCoreApplication::processEvents();
        EXPECT_EQ(height->value(), value) << typed;
        bool isTold = false;
        for (const QLabel* hint : panel.findChildren<QLabel*>())
            isTold =
                isTold || (!hint->isHidden() && hint->text().contains(QStringLiteral("beyond the limits")));
        EXPECT_EQ(isTold, value == 10000.0 || value == 1.0) << typed;
    }

    {
        const ModalBox noBox;
        Field(panel, "Wind")->setValue(49.0);
        EXPECT_TRUE(waitFor([&shown] { return !shown; }, 5000));
        EXPECT_FALSE(panel.ExportAction()->isEnabled());
        Field(panel, "Wind")->setValue(0.0);
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

TEST_F(TasksOnMap, HomeAndTheEntryPointAreSetByClicks)
{
    TaskPanel panel(viewer);
    panel.AddAction()->trigger();
    auto* button = panel.findChild<QPushButton*>("SetHome");
    const auto click = [](double longitude, double latitude) {
        const osg::Vec3d place(longitude, latitude, 0.0);
        osg::Vec3d world;
        viewer->getSRS()->getGeographicSRS()->transformToWorld(place, world);
        emit viewer->getManipulator()->mouseLeftBtnClick(place, world);
        QCoreApplication::processEvents();
    };
    button->click();
    EXPECT_TRUE(button->isChecked());
    QTest::keyClick(viewer, Qt::Key_Escape);
    EXPECT_FALSE(button->isChecked());
    EXPECT_EQ(viewer->GetCurHandleAdapter(), Object()) << "one Escape, one thing";
    click(10.02, 0.02);
    EXPECT_TRUE(Block()->GetHomePosition().isNull()) << "it was given up";

    CAxBlock* far = CAxBlockManager::instance().AddBlock(QStringLiteral("far"), CAxBlock::PolygonBlock);
    far->SetAnchor({{10.1, 0.0}, {10.11, 0.0}, {10.11, 0.01}});
    const auto choose = [](CAxHandleAdapter* object) {
        viewer->SetNodeSelected(object->GetFeatureNode(), false, false);
    };
    CAxHandleAdapter* farObject = viewer->ImportShapeNode(QStringLiteral("far"));
    ASSERT_TRUE(farObject);
    button->click();
    {
        ModalBox box;
        choose(farObject);
        click(10.105, 0.005);
        EXPECT_EQ(box.count, 1) << "far from the own block, on another one";
    }
    choose(farObject);
    QCoreApplication::processEvents();
    EXPECT_EQ(viewer->GetCurHandleAdapter(), Object()) << "home is that of its own block";
    EXPECT_TRUE(button->isChecked());
    CAxOsgDrawPointSet* marks = CAxOsgDrawPointSet::OfViewer(viewer);
    marks->SelectMark(marks->AddMark(10.005, 0.005));
    QCoreApplication::processEvents();
    EXPECT_FALSE(button->isChecked()) << "marks have no home";
    EXPECT_EQ(viewer->GetCurHandleAdapter(), marks);
    EXPECT_TRUE(Block()->GetHomePosition().isNull());
    button->click();
    click(10.02, 0.02);
    EXPECT_FALSE(button->isChecked());
    EXPECT_NEAR(Block()->GetHomePosition().x(), 10.02, 1e-9);
    EXPECT_EQ(viewer->GetToolType(), ToolNavigate);
    viewer->GetUndoStack()->undo();
    EXPECT_TRUE(Block()->GetHomePosition().isNull());
    viewer->GetUndoStack()->redo();
    EXPECT_NEAR(Block()->GetHomePosition().x(), 10.02, 1e-9);

    ASSERT_TRUE(waitFor([] { return North() > 0.005; }, 5000));
    osg::Drawable* marker = MarkerOf(Root(), "Waypoint_Set_3");
    ASSERT_TRUE(marker);
    emit viewer->getManipulator()->mouseLeftBtnClickSignal(marker);
    EXPECT_EQ(Block()->GetEnterDirection(), 2);
}

TEST_F(TasksOnMap, RoutesGoToFilesAsTheyAreAtThatMomentAndComeBack)
{
    const QTemporaryDir folder;
    const auto path = [&folder](const char* name) { return folder.filePath(QLatin1String(name)); };
    TaskPanel panel(viewer);
    Block()->SetHomePosition({10.0, -0.001, 5.0}, false);
    panel.AddAction()->trigger();
    ASSERT_TRUE(waitFor([&] { return panel.ExportAction()->isEnabled(); }, 5000));
    ModalBox box;
    const auto exportTo = [&](const char* file, const char* filter, double height) {
        box.answers += [&panel, &path, file, filter, height](QDialog& dialog) {
            // Not planned anew by itself in so short a time.
            Field(panel, "Height")->setValue(height);
            Choose(path(file), QLatin1String(filter))(dialog);
        };
        panel.ExportAction()->trigger();
        return Contents(path(file));
    };
    ASSERT_TRUE(waitFor([] { return Block()->GetAverageAltitude() != 0.0; }));
    const double base = Block()->GetAverageAltitude() - 5.0; // of the heights above home
    for (const auto& [file, filter, height] : {std::tuple{"a.plan", "waypoints (*.plan", 110.0},
                                               {"b.plan", "survey", 120.0},
                                               {"c.waypoints", "WPL", 130.0}}) {
        const QByteArray data = exportTo(file, filter, height);
        const AxMissionRead read = data.startsWith('{') ? AxReadQgcPlan(data) : AxReadWpl(data);
        ASSERT_TRUE(read.fault.isEmpty()) << file << read.fault.toStdString();
        for (const AxMissionItem& item : read.mission.items)
            if (item.command == AxMissionItem::Waypoint) {
                ASSERT_NEAR(item.altitude, base + height, 0.1) << file << " is of the route before";
            }
    }
    for (const auto& [file, filter] : {std::pair{"d.kml", "KML"}, {"e.csv", "CSV"}, {"f.geojson", "GeoJSON"}})
        EXPECT_FALSE(exportTo(file, filter, 140.0).isEmpty()) << file;

    const auto import = [&](const QString& file) {
        box.answers += Choose(file);
        panel.ImportAction()->trigger();
        return CAxBlockManager::instance().GetBlockList();
    };
    ASSERT_EQ(import(path("a.plan")).size(), 1) << "over the block, from its home";
    ASSERT_EQ(Block()->GetMissionList().size(), 2);
    ASSERT_TRUE(waitFor([] { return Object()->GetTaskList().size() == 2; }, 5000));
    EXPECT_TRUE(Object()->GetTaskList().last()->GetTaskLable());
    EXPECT_NEAR(Object()->GetTaskList().last()->GetGeometry()->front().z(), base + 5.0 + 110.0, 0.1);

    QFile elsewhere(path("g.waypoints"));
    ASSERT_TRUE(elsewhere.open(QIODevice::WriteOnly));
    elsewhere.write("QGC WPL 110\n0 1 0 16 0 0 0 0 -17.001 179.999 30 1\n"
                    "1 0 3 16 0 0 0 0 -17 179.999 50 1\n2 0 3 16 0 0 0 0 -17 -179.999 50 1\n");
    elsewhere.close();
    const QList<CAxBlock*> blocks = import(path("g.waypoints"));
    ASSERT_EQ(blocks.size(), 2);
    const CAxBlock* made = blocks.first() == Block() ? blocks.last() : blocks.first();
    EXPECT_EQ(made->GetHomePosition().z(), 30.0);
    for (const QPointF& corner : made->GetAnchor())
        EXPECT_NEAR(std::abs(corner.x()), 179.999, 0.001) << "across the antimeridian";
}

TEST_F(TasksOnMap, ADangerousRouteIsMarkedAndWrittenOnlyWhenThePilotSaysSo)
{
    const QTemporaryDir folder;
    const QString file = folder.filePath("a.plan");
    const auto marks = [] {
        const osg::Group& group = *viewer->GetBoundGroup();
        for (unsigned i = 0; i < group.getNumChildren(); ++i)
            if (group.getChild(i)->getName() == "Warning marks")
                return group.getChild(i)->asGroup()->getNumChildren();
        return 0U;
    };
    TaskPanel panel(viewer);
    Block()->SetHomePosition({10.0, -0.001, 5.0}, false);
    Block()->GetTaskPara()->GetAirLineParam()->SetClearance(2000.0);
    panel.AddAction()->trigger();
    const auto* danger = panel.findChild<QLabel*>("RouteDanger");
    ASSERT_TRUE(waitFor([&] { return !danger->isHidden(); }, 5000));
    EXPECT_FALSE(panel.findChild<QListWidget*>("TaskList")->item(0)->icon().isNull());
    EXPECT_TRUE(waitFor([&] { return marks() > 0U; }));
    viewer->SetNodeSelected(nullptr, false, false);
    viewer->slotBlockVisible(Block()->GetBlockID(), false);
    EXPECT_TRUE(waitFor([&] { return marks() == 0U; })) << "it is not shown";
    viewer->slotBlockVisible(Block()->GetBlockID(), true);
    EXPECT_TRUE(waitFor([&] { return marks() > 0U; })) << "it is dangerous, whatever is chosen";
    ModalBox box;
    for (const bool isWanted : {false, true}) {
        box.answers += Choose(file);
        box.answers += [isWanted](QDialog& asked) { isWanted ? asked.accept() : asked.reject(); };
        panel.ExportAction()->trigger();
        EXPECT_EQ(QFile::exists(file), isWanted);
    }
    Block()->GetTaskPara()->GetAirLineParam()->SetClearance(10.0);
    EXPECT_TRUE(waitFor([&] { return danger->isHidden() && marks() == 0U; }, 5000));
}

TEST_F(TasksOnMap, EachFlightIsListedAndGoesToAFileOfItsOwn)
{
    const QTemporaryDir folder;
    TaskPanel panel(viewer);
    Block()->SetHomePosition({10.0, -0.001, 5.0}, false);
    Block()->GetTaskPara()->GetExtendedTaskParam()->SetEndurance(300.0);
    panel.AddAction()->trigger();
    auto* list = panel.findChild<QListWidget*>("FlightList");
    ASSERT_TRUE(waitFor([list] { return list->count() > 2; }, 5000));
    ModalBox box;
    std::size_t waypoints = 0;
    for (int flight = 0; flight < list->count(); ++flight) {
        const QString file = folder.filePath(QStringLiteral("%1.plan").arg(flight));
        list->setCurrentRow(flight);
        box.answers += Choose(file);
        panel.findChild<QPushButton*>("ExportFlight")->click();
        const AxMission mission = AxReadQgcPlan(Contents(file)).mission;
        int shooting = 0;
        for (const AxMissionItem& item : mission.items) {
            waypoints += item.command == AxMissionItem::Waypoint ? 1 : 0;
            if (item.command == AxMissionItem::TriggerDistance)
                shooting += item.params[0] > 0.0 ? 1 : -1;
        }
        EXPECT_FALSE(mission.items.empty()) << flight;
        EXPECT_EQ(shooting, 0) << "the camera is off when flight " << flight << " goes home";
    }
    EXPECT_GE(waypoints, Drawn()->GetGeometry()->size());
}

TEST_F(TasksOnMap, TheListAndTheRoutesSelectEachOther)
{
    TaskPanel panel(viewer);
    panel.AddAction()->trigger();
    panel.AddAction()->trigger();
    auto* list = panel.findChild<QListWidget*>("TaskList");
    ASSERT_EQ(list->count(), 2);
    const auto idAt = [list](int row) { return list->item(row)->data(Qt::UserRole).toString(); };
    EXPECT_EQ(viewer->GetSelectedTask(), idAt(1)) << "the one that was added";
    ASSERT_TRUE(waitFor([] { return Object()->GetTaskList().size() == 2; }, 5000));
    for (const CAxTaskPolygon* route : Object()->GetTaskList())
        EXPECT_EQ(route->IsHighlighted(), route->GetTaskID() == idAt(1)) << "drawn after that";
    list->setCurrentRow(0);
    EXPECT_EQ(viewer->GetSelectedTask(), idAt(0));
    EXPECT_TRUE(viewer->SelectTaskID(idAt(1)));
    EXPECT_EQ(list->currentRow(), 1);
    viewer->SelectBlocks({});
    EXPECT_TRUE(viewer->GetSelectedTask().isEmpty());
    EXPECT_EQ(list->currentRow(), 1) << "the last one stays";
    viewer->SelectBlockID(blockID);
    EXPECT_EQ(viewer->GetSelectedTask(), idAt(1));
}

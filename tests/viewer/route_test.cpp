// The route of a task, over its block.
#include "ShapeFixture.h"

#include "mission/routes/CAxTaskLable.h"
#include "mission/routes/CAxTaskPolygon.h"
#include "viewer/AxSceneWalk.h"

#include <AxData/CAxTask.h>

#include <osg/Group>
#include <osgEarthAnnotation/LabelNode>
#include <osgEarthAnnotation/PlaceNode>

#include <cmath>
#include <functional>

namespace {
/// Nine points, in three sub-routes of a latitude each.
struct PlannedTask : CAxTask
{
    using CAxTask::CAxTask;
    QList<CAxVector3D> ComputeRoute(int, QList<QPair<int, CAxVector3D>>& markers, CAxBlock::EBlockType, int,
                                    int) override
    {
        QList<CAxVector3D> route;
        if (meanwhile)
            meanwhile();
        for (int i = 0; i < points; ++i) {
            const int row = i / 3;
            route += CAxVector3D(9.0 + row, 18.5 + i % 3, i == 1 ? 5000.0 : 0.0);
        }
        for (int i = 0; i < 4; ++i)
            markers += {i, route.value(2 * i)};
        return route;
    }
    int points = 9;
    std::function<void()> meanwhile;
};

class RouteOnMap : public ShapeFixture
{
protected:
    void SetUp() override
    {
        ShapeFixture::SetUp();
        block = Import("block", square);
        record = block->GetContainedBlock();
        task = static_cast<PlannedTask*>(
            record->AddTask(std::make_unique<PlannedTask>("task", "Noon", record->GetTaskPara())));
        record->SetAverageAltitude(100.0);
        record->GetTaskPara()->GetAirLineParam()->SetRelativeFlyHeight(200.0);
        route = std::make_unique<CAxTaskPolygon>(viewer, block);
        route->SetTaskID("task");
        block->AddTask(route.get());
        others = viewer->GetDrawNodeGroup()->getNumChildren();
    }
    void TearDown() override
    {
        route.reset();
        ShapeFixture::TearDown();
    }

    /// How many pixels of the picture are yellow, and how many of the grey of what was flown.
    static QPair<int, int> Pixels()
    {
        WaitForPicture();
        const QImage picture = viewer->GetCurrViewerImg();
        QPair<int, int> counts;
        for (int y = 0; y < picture.height(); ++y)
            for (int x = 0; x < picture.width(); ++x) {
                const QColor color = picture.pixelColor(x, y);
                const auto isNear = [&color](int red, int green, int blue) {
                    return std::abs(color.red() - red) + std::abs(color.green() - green) +
                               std::abs(color.blue() - blue) <
                           30;
                };
                counts.first += isNear(255, 255, 0);
                counts.second += isNear(132, 159, 164);
            }
        return counts;
    }
    osg::Geometry* Drawn() const { return route->GetAirLineNode()->getDrawable(0)->asGeometry(); }
    /// Of the number of a point; null for another node.
    static osgEarth::Annotation::LabelNode* Label(osg::Node* number)
    {
        osg::Group* group = number->asGroup();
        return group && group->getNumChildren() > 0
                   ? dynamic_cast<osgEarth::Annotation::LabelNode*>(group->getChild(0))
                   : nullptr;
    }
    unsigned Nodes() const { return viewer->GetDrawNodeGroup()->getNumChildren() - others; }

    CAx3DGeometry* block = nullptr;
    CAxBlock* record = nullptr;
    PlannedTask* task = nullptr;
    std::unique_ptr<CAxTaskPolygon> route;
    unsigned others = 0;
};
} // namespace

TEST_F(RouteOnMap, IsDrawnAtTheFlightHeightWithHomeMarkersAndWhatWasFlown)
{
    route->SetEntryPoint(1);
    ASSERT_TRUE(route->GetAirLineNode());
    EXPECT_EQ(route->GetAirLineNode()->getName(), "Task Polygon");
    EXPECT_EQ(Drawn()->getName(), "Feature");
    ASSERT_EQ(route->GetGeometry()->size(), 9u);
    EXPECT_EQ((*route->GetGeometry())[1], osg::Vec3d(19.5, 9.0, 300.0)) << "longitude first";
    EXPECT_EQ(Drawn()->getVertexArray()->getNumElements(), 9u);
    EXPECT_EQ(Nodes(), 7u) << "line, numbers, markers, label";

    route->SetHomePoint({20.0, 7.0, 0.0});
    EXPECT_EQ(Drawn()->getVertexArray()->getNumElements(), 12u) << "from above home, and back down to it";
    EXPECT_EQ(Nodes(), 8u);
    manipulator->setViewpoint(Straight(20.0, 10.0, 1.5e6));
    EXPECT_GT(Pixels().first, 500);
    route->UpdateAirLine(1);
    EXPECT_EQ(Drawn()->getVertexArray()->getNumElements(), 22u);
    EXPECT_EQ(Drawn()->getColorArray()->getNumElements(), 6u) << "without indices the legs alone have one";
    EXPECT_GE(Drawn()->getColorArray()->getTotalDataSize(), 22u * sizeof(osg::Vec4f));
    EXPECT_GT(Pixels().first, 500) << "drawn all the same";
    route->SetStartIndex(2);
    route->SetEndIndex(5);
    route->UpdateAirLine(1);
    EXPECT_EQ(Drawn()->getColorArray()->getNumElements(), 22u);
    const QPair<int, int> flown = Pixels();
    EXPECT_GT(flown.first, 200);
    EXPECT_GT(flown.second, 200);

    route->CreateNode({{18, 8}, {22, 8}, {20, 9}, {22, 12}, {18, 12}});
    EXPECT_EQ(route->GetFeatureNode()->getNodeMask(), 0x1234u);
    route->SetVisible(false);
    route->SetAirLineVisible(false);
    EXPECT_EQ(route->GetFeatureNode()->getNodeMask() | route->GetAirLineNode()->getNodeMask(), 0u);
    route->ClearFeatureNodeContained();
    EXPECT_EQ(Nodes(), 0u);
}

TEST_F(RouteOnMap, ShowsTheSubRouteOfItsOwnDirection)
{
    CAxTaskPara* para = record->GetTaskPara();
    para->SetCameraType(CameraOblique);
    para->GetExtendedTaskParam()->SetTaskType(TaskOblique);
    para->GetExtendedTaskParam()->SetFlyingMode(CAxExtendedTaskParam::ThreeDirections);
    for (const auto& [entryPoint, button, latitude] :
         {std::tuple{0, 1, 9.0}, {0, 2, 10.0}, {0, 3, 11.0}, {2, 1, 11.0}, {3, 7, 9.0}, {-1, 2, 9.0}}) {
        QMetaObject::invokeMethod(route.get(), "slotAirLineOmniDirectional", Q_ARG(int, button),
                                  Q_ARG(QString, QString()));
        route->SetEntryPoint(entryPoint);
        ASSERT_EQ(route->GetGeometry()->size(), 3u);
        EXPECT_EQ((*route->GetGeometry())[0].y(), latitude) << entryPoint << ", button " << button;
    }
    EXPECT_EQ(para->GetExtendedTaskParam()->direction, 0) << "of tasks to come";
    para->GetExtendedTaskParam()->SetTaskType(TaskVariableHeight);
    route->ComputerAirLine();
    EXPECT_EQ((*route->GetGeometry())[1].z(), 5000.0);
    EXPECT_EQ((*route->GetGeometry())[2].z(), 0.0);
}

TEST_F(RouteOnMap, EntryMarkersStandOnARouteOfChangingHeight)
{
    record->GetTaskPara()->SetChangeHighFlying(true);
    route->AddAirLineFlying(
        1, {{18.5, 9.0, 900.0}, {19.0, 9.5, 700.0}, {20.5, 9.0, 1100.0}, {19.5, 10.0, 1500.0}});
    route->SetEntryPoint(1);
    QList<double> heights;
    for (unsigned i = others; i < viewer->GetDrawNodeGroup()->getNumChildren(); ++i)
        if (auto* marker =
                dynamic_cast<osgEarth::Annotation::PlaceNode*>(viewer->GetDrawNodeGroup()->getChild(i)))
            heights += std::round(marker->getPosition().z());
    EXPECT_EQ(heights, (QList<double>{900.0, 1100.0, 1500.0, 1500.0})) << "the last one near a point";
}

TEST_F(RouteOnMap, TellsOfARouteThatCannotBeAndMayBeDestroyedMeanwhile)
{
    route->SetHomePoint({20.0, 7.0, 0.0});
    route->SetEntryPoint(0);
    EXPECT_EQ(Nodes(), 8u);
    route->CreateAirLine({{20.0, 7.0, 0.0}, {std::nan(""), 7.0, 0.0}});
    EXPECT_EQ(route->GetGeometry()->size(), 9u);
    task->points = 0;
    ModalBox box;
    box.answers = {[this](QDialog& dialog) {
        EXPECT_EQ(Nodes(), 1u) << "home";
        EXPECT_EQ(route->GetGeometry(), nullptr);
        route.reset();
        EXPECT_TRUE(viewer->DeleteBlocks({"block"}).contains("block"));
        dialog.accept();
    }};
    route->SetEntryPoint(0);
    EXPECT_EQ(box.title, "MissionDesk");
    EXPECT_TRUE(
        box.texts.contains("The Noon route parameter error,Please delete the current route and try again."));
    EXPECT_EQ(box.buttons.size(), 1);
}

TEST_F(RouteOnMap, MayGoWhileItsTaskPlans)
{
    auto deleted = std::make_unique<CAxTaskPolygon>(viewer, block);
    deleted->SetTaskID("task");
    task->meanwhile = [&] { deleted.reset(); };
    deleted->ComputerAirLine();
    EXPECT_EQ(deleted, nullptr);
    task->meanwhile = [] { viewer->DeleteBlocks({"block"}); };
    route->ComputerAirLine();
    EXPECT_EQ(route->GetGeometry(), nullptr);
}

TEST_F(RouteOnMap, NumbersItsPointsAndIsNamedBesideTheFirst)
{
    route->SetEntryPoint(0);
    manipulator->setViewpoint(Straight(19.5, 10.0, 1.5e6));
    WaitForPicture();
    osg::Group* numbers = nullptr;
    const auto texts = [&] {
        QStringList list;
        for (unsigned i = 0; numbers && i < numbers->getNumChildren(); ++i)
            list += QString::fromStdString(Label(numbers->getChild(i))->text());
        return list;
    };
    for (unsigned i = others; i < viewer->GetDrawNodeGroup()->getNumChildren(); ++i)
        if (osg::Group* group = viewer->GetDrawNodeGroup()->getChild(i)->asGroup();
            group && group->getNumChildren() > 0 && Label(group->getChild(0)))
            numbers = group;
    EXPECT_TRUE(texts().contains("1") && texts().contains("9")) << texts().join(' ').toStdString();
    const osg::Vec4f red(1, 0, 0, 1);
    route->UpdatePointColor(8, 20, red, red);
    osg::Vec4f text, rim;
    route->GetPointColor(8, text, rim);
    EXPECT_EQ(text, red);
    EXPECT_TRUE(texts().contains("9")) << "anew";
    manipulator->setViewpoint(Straight(19.5, 10.0, 6e7));
    EXPECT_TRUE(waitFor([&] { return numbers && numbers->getNodeMask() == 0; }, 5000))
        << "too small for numbers";

    CAxTaskLable* label = route->GetTaskLable();
    ASSERT_TRUE(label);
    EXPECT_EQ(label->GetRootNode()->getName(), "Noon");
    task->SetTaskName("Evening");
    route->ComputerAirLine();
    EXPECT_EQ(route->GetTaskLable()->GetRootNode()->getName(), "Evening");
    record->GetTaskPara()->GetExtendedTaskParam()->SetFlyingMode(CAxExtendedTaskParam::ThreeDirections);
    emit route->GetTaskLable()->PressedBtnSignal(2, "Evening");
    EXPECT_EQ(task->direction, 1);
    manipulator->setViewpoint(Straight(19.5, 10.0, 1.5e6));
    ASSERT_TRUE(WaitForPicture());
    AxSceneWalk walk;
    walk.Look(*viewer->getOSGViewer());
    const osg::Object* changing = walk.Changeable();
    EXPECT_FALSE(changing) << changing->className() << " of a route at rest has every frame drawn";
    route->SetAirLineVisible(false);
    EXPECT_EQ(route->GetTaskLable()->GetRootNode()->getNodeMask(), 0u);
}

TEST_F(RouteOnMap, GoesAndComesBackWithItsBlock)
{
    route->SetEntryPoint(0);
    viewer->DeleteBlocks({"block"});
    EXPECT_EQ(findNode(Root(), "Task Polygon"), nullptr);
    route->SetEntryPoint(1);
    viewer->GetUndoStack()->undo();
    EXPECT_NE(findNode(Root(), "Task Polygon"), nullptr);
    task->points = 6;
    route->SetEntryPoint(2);
    EXPECT_EQ(route->GetGeometry()->size(), 6u) << "of the object that came in its place";
    record->RemoveTask("task");
    route->SetEntryPoint(0);
    EXPECT_EQ(route->GetGeometry()->size(), 6u);
}

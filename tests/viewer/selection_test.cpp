// Objects and tasks that a host or the select tool selects, and the view of all blocks.
#include "ShapeFixture.h"

#include "mission/routes/CAxTaskPolygon.h"
#include "viewer/overlay/CAxMapToolsWidget.h"

#include <AxData/CAxTask.h>

#include <QGraphicsScene>
#include <QPushButton>
#include <QSignalSpy>

#include <algorithm>
#include <memory>

namespace {
constexpr int control = osgGA::GUIEventAdapter::MODKEY_CTRL;

class Selection : public ShapeFixture
{
protected:
    void SetUp() override
    {
        ShapeFixture::SetUp();
        for (const double lng : {14.0, 20.0, 26.0})
            ASSERT_TRUE(Import(QString::number(lng), {{lng - 2, 8}, {lng + 2, 8}, {lng, 12}}));
    }
    static QStringList Selected()
    {
        QStringList ids;
        for (const CAxHandleAdapter* one : viewer->GetMultiSelectAdapter())
            ids += one->GetHandleID();
        return ids;
    }
    static QString Current()
    {
        return viewer->GetCurHandleAdapter() ? viewer->GetCurHandleAdapter()->GetHandleID() : QString();
    }
    bool Mouse(Event::EventType type, double lng, double lat, int modifiers)
    {
        const osg::Vec2f place = WindowOf(lng, lat);
        const auto event =
            Make(type, place.x(), place.y(), type == Event::DRAG ? 0 : Event::LEFT_MOUSE_BUTTON);
        event->setButtonMask(type == Event::RELEASE ? 0 : Event::LEFT_MOUSE_BUTTON);
        event->setModKeyMask(modifiers);
        return Send(event);
    }
};
} // namespace

TEST_F(Selection, OfAHostIsToldOnceAndLeavesNoDrawing)
{
    QSignalSpy told(viewer, &CAxEarthViewer::signalMultiSelectBlock);
    EXPECT_TRUE(viewer->SelectBlocks({"26", "no such", "14", "26"}));
    EXPECT_EQ(Selected(), (QStringList{"26", "14"}));
    EXPECT_EQ(Current(), "26");
    EXPECT_TRUE(viewer->SelectBlocks({"26", "14"}));
    EXPECT_EQ(told.size(), 1) << "nothing has changed";
    EXPECT_TRUE(viewer->SelectBlocks({"20", "14", "26"}));
    EXPECT_EQ(Current(), "26") << "one of them is current already";
    EXPECT_TRUE(viewer->SelectBlockID("20"));
    EXPECT_EQ(Current(), "20");
    EXPECT_TRUE(Selected().isEmpty());
    EXPECT_FALSE(viewer->SelectBlockID("no such"));
    EXPECT_FALSE(viewer->SelectHandle(nullptr));
    EXPECT_EQ(Current(), "20");
    EXPECT_TRUE(viewer->SelectBlocks({"20", "14"}));
    PressKey(Qt::Key_Escape);
    EXPECT_TRUE(Selected().isEmpty());
    EXPECT_EQ(Current(), QString());

    viewer->SetToolType(ToolPolygonBlock);
    Click(18.0, 3.0);
    const QString drawing = Current();
    EXPECT_FALSE(viewer->SelectBlocks({"14"}));
    EXPECT_FALSE(viewer->SelectBlockID("14", true));
    EXPECT_EQ(Current(), drawing);
    PressKey(Qt::Key_Escape);
}

TEST_F(Selection, OfATaskHasItsRouteStandOutUntilAnotherBlockIsCurrent)
{
    std::vector<std::unique_ptr<CAxTaskPolygon>> routes;
    for (const char* id : {"14", "20"}) {
        const QString task = QStringLiteral("task ") + id;
        CAxBlockManager::instance().GetBlock(id)->AddTask(std::make_unique<CAxTask>(task, task, nullptr));
        CAxHandleAdapter* object = viewer->FindExistNode(QString(id));
        routes.push_back(std::make_unique<CAxTaskPolygon>(viewer, object));
        routes.back()->SetTaskID(task);
        if (routes.size() == 2) {
            EXPECT_TRUE(viewer->SelectTaskID(task)) << "its route is drawn later";
        }
        object->AddTask(routes.back().get());
        const double lng = QString(id).toDouble();
        routes.back()->CreateAirLine({{lng - 2.0, 5.0, 2e4}, {lng + 2.0, 5.0, 2e4}});
    }
    QSignalSpy told(viewer, &CAxEarthViewer::signalCurrentTask);
    EXPECT_FALSE(routes[0]->IsHighlighted());
    EXPECT_TRUE(routes[1]->IsHighlighted());
    Click(12.5, 5.0);
    EXPECT_EQ(viewer->GetSelectedTask(), "task 14") << "the route was clicked";
    EXPECT_EQ(Current(), "14");
    EXPECT_TRUE(routes[0]->IsHighlighted());
    EXPECT_FALSE(routes[1]->IsHighlighted());
    EXPECT_EQ(told.last(), (QVariantList{"14", "task 14"}));
    // A copy from elsewhere may have a task of the same ID.
    CAxBlockManager::instance().GetBlock("20")->AddTask(
        std::make_unique<CAxTask>("task 14", "Copy", nullptr));
    routes[1]->SetTaskID("task 14");
    Click(18.5, 5.0);
    EXPECT_EQ(Current(), "20");
    EXPECT_TRUE(routes[1]->IsHighlighted() && !routes[0]->IsHighlighted());
    EXPECT_TRUE(viewer->SelectTaskID("task 14"));
    EXPECT_EQ(Current(), "20") << "that of the current block";
    viewer->SelectBlockID("26");
    EXPECT_FALSE(routes[0]->IsHighlighted());
    EXPECT_EQ(told.last(), (QVariantList{QString(), QString()}));
    EXPECT_FALSE(viewer->SelectTaskID("no such"));
}

TEST_F(Selection, AFrameOfTheSelectToolSelectsWhatItMeets)
{
    viewer->SetToolType(ToolSelect);
    viewer->SelectBlockID("26");
    viewer->slotBlockVisible("14", false);
    const auto camera = [] { return viewer->getManipulator()->getViewpoint().focalPoint()->vec3d(); };
    const osg::Vec3d before = camera();
    const int items = viewer->scene()->items().size();
    const auto frame = [&](bool givesUp) {
        Mouse(Event::PUSH, 9.0, 14.0, control);
        EXPECT_TRUE(Mouse(Event::DRAG, 15.0, 10.0, control));
        EXPECT_EQ(viewer->scene()->items().size(), items + 1);
        if (givesUp)
            PressKey(Qt::Key_Escape);
        EXPECT_TRUE(Mouse(Event::DRAG, 20.5, 7.0, control)) << "the camera stays";
        EXPECT_TRUE(Mouse(Event::RELEASE, 20.5, 7.0, control));
        EXPECT_EQ(viewer->scene()->items().size(), items);
    };
    frame(true);
    EXPECT_EQ(Current(), "26") << "Escape gave up the frame alone";
    EXPECT_TRUE(Selected().isEmpty());
    frame(false);
    EXPECT_EQ(Selected(), (QStringList{"26", "20"})) << "what is hidden is not selected";
    EXPECT_LT((camera() - before).length(), 1e-9);
    // Another tool in the middle of it.
    Mouse(Event::PUSH, 9.0, 14.0, control);
    Mouse(Event::DRAG, 15.0, 10.0, control);
    viewer->SetToolType(ToolNavigate);
    EXPECT_EQ(viewer->scene()->items().size(), items);
}

TEST_F(Selection, AllVisibleBlocksAreInThePictureAfterTheButtonOfTheBar)
{
    ASSERT_TRUE(Import("far", {{-179.0, 60.0}, {178.0, 60.0}, {-179.0, 62.0}}));
    viewer->slotBlockVisible("26", false);
    viewer->slotBlockVisible("far", false);
    viewer->GetMapToolWidget()->findChild<QPushButton*>("m_pMapCtrlToEditAreaBtn")->click();
    const auto rests = [] {
        return !viewer->getManipulator()->isSettingViewpoint() && viewer->IsPictureComplete();
    };
    const auto outermost = [](const QStringList& ids) {
        double most = 0.0;
        for (const QString& id : ids)
            for (const osg::Vec3d& place : viewer->FindExistNode(id)->GetAnchor()) {
                const osg::Vec2f seen = WindowOf(place.x(), place.y());
                most = std::max({most, std::abs(seen.x() / 399.5 - 1.0), std::abs(seen.y() / 299.5 - 1.0)});
            }
        return most;
    };
    ASSERT_TRUE(waitFor([&] { return rests() && outermost({"14", "20"}) < 0.92; }));
    EXPECT_GT(outermost({"14", "20"}), 0.85);
    EXPECT_GT(outermost({"26"}), 1.0) << "hidden ones do not count";
    EXPECT_TRUE(viewer->SetBlockView({"far"}));
    ASSERT_TRUE(waitFor([&] { return rests() && outermost({"far"}) < 0.92; })) << "over the date line";
    EXPECT_FALSE(viewer->SetBlockView({"no such"}));

    viewer->RemoveAllHanderAdapter(true);
    ModalBox box;
    EXPECT_FALSE(viewer->SetAllBlockView(0.0));
}

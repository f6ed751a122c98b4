// Video blocks: a circle that is drawn, gone on with, edited, undone.
#include "ShapeFixture.h"

#include "analysis/CAxAncillaryProcess.h"
#include "interaction/editing/CAxHandleAdapterEditor.h"
#include "interaction/objects/CAxOsgDrawVideo.h"
#include "scene/shape/AxBlockArea.h"

#include <AxData/CAxTask.h>

#include <QAction>

class Video : public ShapeFixture
{
protected:
    void SetUp() override
    {
        ShapeFixture::SetUp();
        manipulator->setViewpoint(Straight(20.0, 10.0, 60000.0));
        ASSERT_TRUE(WaitForPicture());
    }
    static CAxOsgDrawVideo* Current()
    {
        return qobject_cast<CAxOsgDrawVideo*>(viewer->GetCurHandleAdapter());
    }
    static CAxOsgDrawVideo* ImportVideo(const QList<QPointF>& centre, int radius)
    {
        CAxBlock* block = CAxBlockManager::instance().AddBlock("video", CAxBlock::VideoBlock);
        block->SetBlockName("Tower");
        block->SetAnchor(centre);
        block->SetVideoRadius(radius);
        return qobject_cast<CAxOsgDrawVideo*>(viewer->ImportShapeNode("video"));
    }
    static int RecordRadius(const CAxHandleAdapter* video)
    {
        return video->GetContainedBlock()->GetVideoRadius();
    }
    /// Of what is drawn, by its area.
    static double DrawnRadius(CAxOsgDrawVideo* video)
    {
        return 1000.0 * std::sqrt(AxBlockArea(video->Outline(), *viewer->getSRS()) / osg::PI);
    }
    static void DragHandle(CAxOsgDrawVideo* video, std::size_t handle, double lng, double lat)
    {
        video->GetAnchorEditor()->GetDraggerList()[handle]->DragTo(osgEarth::GeoPoint(
            viewer->getSRS()->getGeographicSRS(), lng, lat, 0.0, osgEarth::ALTMODE_ABSOLUTE));
    }
    static void LetGo(CAxOsgDrawVideo* video) { video->slotMouseRelease(osg::Vec3d(), osg::Vec3d()); }
};

TEST_F(Video, IsDrawnByItsCentreAndRadiusAndGoneOnWith)
{
    viewer->SetToolType(ToolVideoArea);
    MoveTo(20.01, 10.0);
    MoveTo(20.0, 10.0);
    QPointer<CAxOsgDrawVideo> video = Current();
    ASSERT_TRUE(video);
    EXPECT_NE(CursorText().find("50.0 m"), std::string::npos) << CursorText();
    EXPECT_TRUE(video->GetAnchor().empty());
    Click(20.0, 10.0);
    EXPECT_EQ(video->GetAnchor().size(), 1u);
    MoveTo(20.02, 10.0);
    double kilometres = 0.0;
    ASSERT_EQ(std::sscanf(CursorText().c_str(), "radius %lf km", &kilometres), 1) << CursorText();
    EXPECT_NEAR(kilometres, 2.19, 0.05);
    Click(20.02, 10.0);
    EXPECT_EQ(ended, (QList<QPair<QString, bool>>{{video->GetHandleID(), true}}));
    EXPECT_NEAR(RecordRadius(video), 2190, 50);
    EXPECT_EQ(Ring(video).size(), 1);
    EXPECT_NEAR(DrawnRadius(video), RecordRadius(video), 20.0);
    EXPECT_TRUE(CursorText().empty());
    ASSERT_NE(video->GetAnchorEditor(), nullptr);
    EXPECT_EQ(video->GetAnchorEditor()->GetDraggerList().size(), 2u);

    // Elsewhere and smaller, as one step.
    const QList<QPointF> place = Ring(video);
    const int radius = RecordRadius(video);
    viewer->SetToolType(ToolContinueBlock);
    Click(20.03, 10.03);
    EXPECT_EQ(Current(), video.data());
    EXPECT_EQ(Ring(video), place);
    Click(20.04, 10.03);
    EXPECT_NEAR(RecordRadius(video), 1096, 50);
    EXPECT_NEAR(Ring(video)[0].x(), 20.03, 0.001);
    viewer->GetUndoAction()->trigger();
    EXPECT_EQ(Ring(video), place);
    EXPECT_EQ(RecordRadius(video), radius);
    EXPECT_EQ(viewer->GetUndoStack()->index(), 1) << "one step, behind the drawing";
    // Given up after the new centre.
    Click(20.03, 10.03);
    PressKey(Qt::Key_Escape);
    ASSERT_TRUE(video);
    EXPECT_EQ(Ring(video), place);
    EXPECT_EQ(video->GetAnchor()[0].x(), place[0].x());

    // A double click on the centre.
    viewer->SetToolType(ToolVideoArea);
    MoveTo(19.97, 9.97);
    DoubleClickAt(19.97, 9.97);
    ASSERT_TRUE(Current() && Current() != video);
    EXPECT_EQ(RecordRadius(Current()), 50);
}

TEST_F(Video, IsNotGoneOnWithWhileItIsLockedOrHasTasks)
{
    CAxOsgDrawVideo* video = ImportVideo({{20.0, 10.0}}, 500);
    ASSERT_NE(video, nullptr);
    viewer->SetNodeSelected(video->GetFeatureNode(), false, false);
    CAxBlock* record = video->GetContainedBlock();
    const auto goOn = [&](const std::function<void()>& between, bool leavesTheTool = false) {
        ModalBox box;
        viewer->SetToolType(ToolContinueBlock);
        Click(20.03, 10.03);
        between();
        if (leavesTheTool)
            viewer->SetToolType(ToolNavigate);
        else
            Click(20.04, 10.03);
        EXPECT_EQ(Ring(video), (QList<QPointF>{{20.0, 10.0}}));
        EXPECT_EQ(RecordRadius(video), 500);
        EXPECT_EQ(video->GetAnchor()[0].x(), 20.0);
        viewer->SetToolType(ToolNavigate);
        viewer->slotBlockLock("video", false);
        return box.count;
    };
    EXPECT_EQ(goOn([&] { video->SetLockBlock(true, true); }), 1) << "locked after the first click";
    EXPECT_EQ(goOn([&] { video->SetLockBlock(true, true); }, true), 0);
    viewer->slotBlockLock("video", true);
    EXPECT_EQ(goOn([] {}), 0);
    record->AddTask(std::make_unique<CAxTask>("task", "Task", record->GetTaskPara()));
    EXPECT_EQ(goOn([] {}), 0);
}

TEST_F(Video, IsMovedAndResizedByItsHandlesWithUndo)
{
    CAxOsgDrawVideo* video = ImportVideo({{20.0, 10.0}}, 500);
    ASSERT_NE(video, nullptr);
    viewer->SetNodeSelected(video->GetFeatureNode(), false, false);
    DragHandle(video, 1, 20.0, 10.01);
    EXPECT_NEAR(video->GetRadius(), 1106.0, 2.0);
    EXPECT_EQ(CursorText().find("radius 1.10"), 0u) << CursorText();
    EXPECT_EQ(RecordRadius(video), 500);
    LetGo(video);
    EXPECT_NEAR(RecordRadius(video), 1106, 2);
    EXPECT_TRUE(CursorText().empty());
    DragHandle(video, 0, 20.02, 10.0);
    LetGo(video);
    EXPECT_EQ(Ring(video), (QList<QPointF>{{20.02, 10.0}}));
    viewer->GetUndoAction()->trigger();
    EXPECT_EQ(Ring(video), (QList<QPointF>{{20.0, 10.0}}));
    EXPECT_NEAR(DrawnRadius(video), 1106.0, 10.0);
    viewer->GetUndoAction()->trigger();
    EXPECT_EQ(RecordRadius(video), 500);
    EXPECT_NEAR(DrawnRadius(video), 500.0, 5.0);

    // The map follows the record, whoever changes it.
    video->GetContainedBlock()->SetVideoRadius(300);
    EXPECT_NEAR(DrawnRadius(video), 300.0, 3.0);
    viewer->GetCurHandleAdapter()->SetVideoRadius(400);
    EXPECT_EQ(RecordRadius(video), 400);
    EXPECT_NEAR(DrawnRadius(video), 400.0, 4.0);
    video->SetVideoRadius(0);
    video->SetVideoPosition(osg::Vec3d(20.0, 91.0, 0.0));
    EXPECT_EQ(RecordRadius(video), 400);
    video->SetVideoPosition(osg::Vec3d(20.01, 10.01, 0.0));
    EXPECT_EQ(Ring(video), (QList<QPointF>{{20.01, 10.01}}));
    EXPECT_EQ(video->GetAnchor()[0].x(), 20.01);
    viewer->RemoveHanderAdapter(video, true);

    // The rim, not the centre, meets the zone, which begins 8 km around 60.2 E 45.3 N.
    video = ImportVideo({{60.2, 45.4}}, 2000);
    ASSERT_NE(video, nullptr);
    EXPECT_TRUE(video->Fault().isEmpty());
    video->SetAnchorEditorEnabled(true);
    ModalBox box;
    DragHandle(video, 1, 60.2, 45.36);
    LetGo(video);
    EXPECT_EQ(box.count, 1);
    EXPECT_EQ(RecordRadius(video), 2000);
    EXPECT_EQ(video->GetRadius(), 2000.0);
    viewer->GetAncillaryProcess()->FlashZones({});
}

TEST_F(Video, TakesATypedRadiusAndRecordsThatAreNone)
{
    CAxOsgDrawVideo* video = ImportVideo({{20.0, 10.0}}, 500);
    ASSERT_NE(video, nullptr);
    for (const char* wrong : {"", "abc", "-1", "0", "10001", "1e308", "3,5", "nan"}) {
        SCOPED_TRACE(wrong);
        ModalBox box;
        box.answers = {ModalBox::Fill({"Tower", wrong}), ModalBox::Press("OK"),
                       [](QDialog& form) { form.reject(); }};
        video->ResponseDoubleClickOnBlock();
        EXPECT_EQ(box.titles, (QStringList{"Video Info", "Block Information", "Video Info"}));
        EXPECT_EQ(RecordRadius(video), 500);
    }
    ModalBox box;
    box.answers = {ModalBox::Fill({"Mast", "120"})};
    video->ResponseDoubleClickOnPoint(0, osg::Vec3d());
    EXPECT_EQ(box.titles, (QStringList{"Video Info", "Change name"}));
    EXPECT_EQ(RecordRadius(video), 120);
    EXPECT_NEAR(DrawnRadius(video), 120.0, 2.0);
    EXPECT_EQ(video->GetContainedBlock()->GetBlockName(), "Mast");
    viewer->RemoveHanderAdapter(video, true);

    for (const int radius : {0, -5, 20000}) {
        video = ImportVideo({{20.0, 10.0}}, radius);
        ASSERT_NE(video, nullptr) << radius;
        EXPECT_FALSE(video->Fault().isEmpty()) << radius;
        viewer->RemoveHanderAdapter(video, true);
    }
    for (const QList<QPointF>& ring : {QList<QPointF>(), QList<QPointF>{{20.0, 10.0}, {20.1, 10.0}}}) {
        EXPECT_EQ(ImportVideo(ring, 50), nullptr);
        CAxBlockManager::instance().DeleteBlock("video");
    }
}

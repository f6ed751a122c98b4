// Which tool begins, ends or leaves alone which object.
#include "ShapeFixture.h"

#include "interaction/magnifier/AxMagnifier.h"
#include "interaction/objects/AxBlockRing.h"
#include "viewer/overlay/CAxMapToolsWidget.h"

#include <QPushButton>

class Tools : public ShapeFixture
{
protected:
    /// Makes a tool draw test blocks.
    void Provide(EToolType tool, CAxBlock::EBlockType type = CAxBlock::PolygonBlock)
    {
        viewer->SetShapeFactory(tool, [this, type](CAxEarthViewer* earthViewer, QObject*) {
            auto* made = new TestBlock(earthViewer, QString::number(++count), type);
            last = made;
            return made;
        });
        provided += tool;
    }
    void TearDown() override
    {
        viewer->SetToolType(ToolNavigate);
        for (const EToolType tool : provided)
            if (tool != ToolPolygonBlock)
                viewer->SetShapeFactory(tool, {});
        viewer->RemoveHanderAdapter(viewer->GetCurHandleAdapter(), true);
        ShapeFixture::TearDown();
    }

    QPointer<TestBlock> last;
    QList<EToolType> provided;
    int count = 0;
};

TEST_F(Tools, DrawWhatTheirTableSays)
{
    const QList<int> drawing{ToolPolygonBlock, ToolRectangleBlock, ToolStripBlock, ToolMeasureDistance,
                             ToolMarkPoint,    ToolProhibitedArea, ToolProjCoords, ToolMeasureAltitude,
                             ToolMeasurePlane, ToolMeasureArea,    ToolVideoArea,  ToolMeasureVolume,
                             ToolMagnifier};
    for (int tool = 0; tool <= 31; ++tool) {
        viewer->SetToolType(static_cast<EToolType>(tool));
        CAxHandleAdapter* drawn = viewer->createShapeNode();
        EXPECT_EQ(drawn != nullptr, drawing.contains(tool)) << tool;
        EXPECT_EQ(viewer->RemoveHanderAdapter(drawn, true), drawn != nullptr);
    }
    // Going on with a video area takes the current object, and no other kind.
    Provide(ToolVideoArea, CAxBlock::VideoBlock);
    viewer->SetToolType(ToolVideoArea);
    CAxHandleAdapter* video = viewer->createShapeNode();
    ASSERT_EQ(video, last.data());
    EXPECT_TRUE(viewer->AddHandleAdapter(video));
    last->SetOperation(OperationIdle);
    viewer->SetToolType(ToolContinueBlock);
    EXPECT_EQ(viewer->createShapeNode(), video);
    EXPECT_EQ(video->GetHandleOperation(), OperationDrawing);
    last->SetOperation(OperationIdle);
    viewer->SetNodeSelected(nullptr, false, false);
    EXPECT_EQ(viewer->createShapeNode(), nullptr);
}

TEST_F(Tools, EndWhatTheyWereDrawingAndClearWhatWasSelected)
{
    CAx3DGeometry* block = Import("block", {{18, 8}, {22, 8}, {20, 12}});
    Provide(ToolMeasureDistance, CAxBlock::StripBlock);
    QPushButton* measure = viewer->GetMapToolWidget()->findChild<QPushButton*>("m_pMeasureBtn");
    ASSERT_NE(measure, nullptr);

    // From browsing to the bar: only hosts of kind 1 lose the current object.
    for (const int appType : {0, 1}) {
        viewer->SetAppType(appType);
        viewer->SetNodeSelected(block->GetFeatureNode(), false, false);
        EXPECT_NE(block->GetAnchorEditor(), nullptr);
        viewer->SetToolType(ToolMeasureDistance);
        EXPECT_EQ(viewer->GetCurHandleAdapter(), appType == 1 ? nullptr : block);
        EXPECT_EQ(block->GetAnchorEditor() == nullptr, appType == 1);
        viewer->SetToolType(ToolNavigate);
    }
    // From the bar to a block: the measurement ends, the bar's button comes up.
    measure->click();
    ASSERT_EQ(viewer->GetToolType(), ToolMeasureDistance);
    CAxHandleAdapter* measurement = viewer->createShapeNode();
    viewer->SetToolType(ToolMeasureDistance);
    EXPECT_EQ(measurement->GetHandleOperation(), OperationDrawing) << "the same tool changes nothing";
    EXPECT_TRUE(measure->isChecked());
    viewer->SetToolType(ToolPolygonBlock);
    EXPECT_FALSE(measure->isChecked());
    EXPECT_EQ(measurement->GetHandleOperation(), OperationIdle);
    EXPECT_EQ(viewer->FindExistNode(measurement->GetHandleID()), measurement) << "it was accepted";
    EXPECT_EQ(viewer->GetCurHandleAdapter(), measurement) << "a drawing tool leaves the current object";

    viewer->SetAppType(0);
    // A refused one goes.
    viewer->SetToolType(ToolMeasureDistance);
    const QPointer<CAxHandleAdapter> refused = viewer->createShapeNode();
    last->verdict = -1;
    viewer->SetToolType(ToolNavigate);
    EXPECT_TRUE(waitFor([&] { return !refused; }));
    EXPECT_EQ(viewer->GetCurHandleAdapter(), nullptr);

    // An accepted one stays current, unless a host of kind 1 goes on to the bar.
    for (const int appType : {0, 1}) {
        viewer->SetAppType(appType);
        viewer->SetToolType(ToolPolygonBlock);
        for (const osg::Vec2d& corner : {osg::Vec2d(18.0, 3.0), osg::Vec2d(22.0, 3.0), osg::Vec2d(20.0, 6.0)})
            Click(corner.x(), corner.y());
        viewer->SetToolType(ToolMeasureDistance);
        EXPECT_EQ(viewer->GetCurHandleAdapter() == nullptr, appType == 1);
        viewer->SetToolType(ToolNavigate);
    }
    viewer->SetAppType(0);

    // A new shape starts with nothing selected.
    viewer->SetNodeSelected(block->GetFeatureNode(), false, false);
    viewer->SetNodeSelected(block->GetFeatureNode(), true, false);
    viewer->SetToolType(ToolPolygonBlock);
    EXPECT_EQ(viewer->GetCurHandleAdapter(), nullptr);
    EXPECT_TRUE(viewer->GetMultiSelectAdapter().isEmpty());
    EXPECT_EQ(block->GetAnchorEditor(), nullptr);
}

TEST_F(Tools, ControlOfTheMouseJoinsBlocksToTheFirstOne)
{
    QStringList ids;
    for (const double lng : {14.0, 20.0, 26.0}) {
        ids += QString::number(lng);
        ASSERT_TRUE(Import(ids.last(), {{lng - 2, 8}, {lng + 2, 8}, {lng, 12}}));
    }
    const auto click = [this](double lng, int modifiers) {
        const osg::Vec2f place = WindowOf(lng, 8.5);
        for (const auto type : {Event::PUSH, Event::RELEASE}) {
            const auto event = Make(type, place.x(), place.y(), Event::LEFT_MOUSE_BUTTON);
            event->setModKeyMask(modifiers);
            Send(event);
        }
    };
    const auto selected = [] {
        QStringList list;
        for (const CAxHandleAdapter* one : viewer->GetMultiSelectAdapter())
            list += one->GetHandleID();
        return list;
    };
    constexpr int control = Event::MODKEY_CTRL;
    click(14.0, 0);
    click(20.0, control);
    EXPECT_TRUE(selected().isEmpty()) << "this host has not asked for it";
    click(14.0, 0);
    viewer->SetAppType(1);
    click(20.0, control);
    EXPECT_EQ(selected(), ids.mid(0, 2));
    EXPECT_FALSE(viewer->IsMultiSelect()) << "the key counts for its click alone";
    click(14.0, control);
    EXPECT_EQ(selected(), QStringList{ids[1]});
    EXPECT_EQ(viewer->GetCurHandleAdapter(), nullptr) << "it was taken out";
    click(26.0, control);
    EXPECT_EQ(selected(), ids.mid(1));
    click(20.0, 0);
    EXPECT_TRUE(selected().isEmpty());
    EXPECT_EQ(viewer->GetCurHandleAdapter(), viewer->FindExistNode(ids[1]));
    click(26.0, control);
    viewer->slotFocusBlock(ids[0]);
    EXPECT_TRUE(selected().isEmpty());
}

TEST_F(Tools, PickLandingPlacesNearTheCurrentObjectOnly)
{
    QVector<QPointF> landings;
    QVector<QPointF> interests;
    const auto one = QObject::connect(viewer, &CAxEarthViewer::LandingPosPicked, viewer,
                                      [&](double lng, double lat, double, bool) {
                                          landings += {lng, lat};
                                      });
    const auto two = QObject::connect(viewer, &CAxEarthViewer::InterestPointPicked, viewer,
                                      [&](double lng, double lat, double) {
                                          interests += {lng, lat};
                                      });
    CAx3DGeometry* block = Import("block", {{19.99, 9.99}, {20.01, 9.99}, {20.01, 10.01}, {19.99, 10.01}});
    viewer->SetToolType(ToolLandingPosition);
    manipulator->setViewpoint(Straight(20.0, 10.0, 60000.0));
    ASSERT_TRUE(WaitForPicture());
    Click(20.02, 10.0);
    EXPECT_TRUE(landings.isEmpty()) << "nothing is current";
    viewer->SetNodeSelected(block->GetFeatureNode(), false, false);
    Click(20.02, 10.0);
    EXPECT_EQ(landings.size(), 1);
    EXPECT_EQ(viewer->GetCurHandleAdapter(), block) << "the click beside it is meant for it";
    {
        ModalBox box;
        Click(20.066, 10.0); // 7.2 km
        EXPECT_EQ(box.count, 1);
        EXPECT_EQ(box.title, "Route Information");
    }
    Click(20.0615, 10.0); // 6.7 km
    EXPECT_EQ(landings.size(), 2);
    viewer->SetToolType(ToolInterestPoint);
    Click(20.03, 10.0);
    EXPECT_EQ(interests.size(), 1);
    EXPECT_TRUE(viewer->GetInterestPointNode());
    viewer->RemoveInterestPoint();

    viewer->SetToolType(ToolAddPoint);
    Click(19.97, 10.0);
    EXPECT_EQ(Ring(block).size(), 5);
    QObject::disconnect(one);
    QObject::disconnect(two);
}

TEST_F(Tools, LetADrawingWaitWhileShiftIsHeld)
{
    constexpr int shift = Event::MODKEY_SHIFT;
    const auto key = [this](Event::EventType type) { Key(type, 0, shift); };
    const auto mouse = [this](Event::EventType type, float x, float y, int mask) {
        const auto event = Make(type, x, y, type == Event::DRAG ? 0 : Event::LEFT_MOUSE_BUTTON);
        event->setButtonMask(type == Event::RELEASE ? 0 : Event::LEFT_MOUSE_BUTTON);
        event->setModKeyMask(mask);
        Send(event);
    };
    const auto lens = [&] {
        mouse(Event::PUSH, 390, 290, shift);
        mouse(Event::DRAG, 410, 310, shift);
        mouse(Event::RELEASE, 410, 310, shift);
    };
    const struct
    {
        EToolType tool;
        std::vector<osg::Vec2d> clicks;
        int afterBackspace;
        bool hasHandles;
    } rows[] = {
        {ToolPolygonBlock, {{18, 8}, {22, 8}, {21, 12}}, 2, true},
        {ToolStripBlock, {{18, 8}, {22, 8}, {21, 12}}, 2, true},
        {ToolRectangleBlock, {{18, 8}, {22, 9}}, 1, true},
        {ToolVideoArea, {{18, 8}}, 0, true},
        {ToolMeasureDistance, {{18, 8}, {22, 8}, {21, 12}}, 2, false},
        {ToolMeasureArea, {{18, 8}, {22, 8}, {21, 12}}, 2, false},
        {ToolMeasureAltitude, {{18, 8}}, 0, false},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.tool);
        viewer->SetToolType(row.tool);
        for (const osg::Vec2d& place : row.clicks) {
            MoveTo(place.x(), place.y());
            Click(place.x(), place.y());
        }
        const QPointer<CAxHandleAdapter> drawn = viewer->GetCurHandleAdapter();
        ASSERT_TRUE(drawn);
        const QList<QPointF> points = AxRingOf(drawn->GetAnchor());
        ASSERT_EQ(points.size(), static_cast<int>(row.clicks.size()));
        for (const bool isLensDrawn : {false, true}) {
            key(Event::KEYDOWN);
            EXPECT_EQ(viewer->GetToolType(), ToolMagnifier);
            EXPECT_EQ(viewer->GetCurHandleAdapter(), nullptr);
            if (isLensDrawn)
                lens();
            EXPECT_FALSE(viewer->SelectBlocks({})) << "it is still being drawn";
            PressKey(Qt::Key_Escape);
            QCoreApplication::processEvents();
            key(Event::KEYUP);
            EXPECT_EQ(viewer->GetToolType(), row.tool);
            ASSERT_TRUE(drawn && viewer->GetCurHandleAdapter() == drawn);
            EXPECT_EQ(drawn->GetHandleOperation(), OperationDrawing);
            EXPECT_EQ(AxRingOf(drawn->GetAnchor()), points);
            EXPECT_EQ(drawn->GetAnchorEditor() != nullptr, row.hasHandles);
        }
        MoveTo(20, 10);
        EXPECT_NE(CursorText(), "");
        PressKey(Qt::Key_Backspace);
        EXPECT_EQ(static_cast<int>(drawn->GetAnchor().size()), row.afterBackspace);
        EXPECT_TRUE(drawn->CancelHandle());
        viewer->SetToolType(ToolNavigate);
    }

    const auto triangle = [&] {
        viewer->SetToolType(ToolPolygonBlock);
        for (const osg::Vec2d& corner : rows[0].clicks)
            Click(corner.x(), corner.y());
        return viewer->GetCurHandleAdapter();
    };
    // Where the release of the key goes elsewhere, the mouse tells. A button that is held is of the lens.
    CAxHandleAdapter* drawn = triangle();
    key(Event::KEYDOWN);
    MoveTo(20, 10);
    EXPECT_EQ(viewer->GetCurHandleAdapter(), drawn);
    key(Event::KEYDOWN);
    mouse(Event::PUSH, 390, 290, shift);
    const auto up = Make(Event::KEYUP, 390, 290);
    up->setModKeyMask(shift);
    up->setButtonMask(Event::LEFT_MOUSE_BUTTON);
    Send(up);
    EXPECT_EQ(viewer->GetToolType(), ToolNavigate);
    mouse(Event::RELEASE, 390, 290, 0);
    MoveTo(20, 10);
    EXPECT_EQ(viewer->GetCurHandleAdapter(), drawn);
    EXPECT_EQ(drawn->GetAnchor().size(), 3u);
    key(Event::KEYUP); // of a key that was pressed elsewhere
    EXPECT_EQ(viewer->GetCurHandleAdapter(), drawn);
    EXPECT_EQ(viewer->GetToolType(), ToolPolygonBlock);
    // Another tool ends it as ever, and what removes all removes it.
    key(Event::KEYDOWN);
    viewer->SetToolType(ToolMeasureDistance);
    EXPECT_EQ(viewer->FindExistNode(drawn->GetHandleID()), drawn);
    EXPECT_TRUE(viewer->GetUndoStack()->canUndo());
    viewer->SetToolType(ToolNavigate);
    triangle();
    key(Event::KEYDOWN);
    viewer->RemoveAllHanderAdapter(true);
    key(Event::KEYUP);
    EXPECT_EQ(viewer->GetToolType(), ToolNavigate);
    EXPECT_EQ(viewer->GetCurHandleAdapter(), nullptr);
    key(Event::KEYDOWN);
    MoveTo(20, 10);
    EXPECT_EQ(viewer->GetToolType(), ToolNavigate) << "with nothing drawn, too";
    viewer->GetMagnifier()->Close();
}

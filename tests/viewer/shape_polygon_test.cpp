// Polygon blocks: drawn, judged, edited, renamed, undone.
#include "ShapeFixture.h"

#include "viewer/overlay/CAxCoordinateWidget.h"

#include "interaction/editing/CAxHandleAdapterEditor.h"
#include "mission/routes/CAxTaskPolygon.h"

#include <AxData/CAxControl.h>

#include <osgEarthAnnotation/LabelNode>

#include <QAction>

namespace {
osg::Geometry* Drawn(const CAxHandleAdapter* block, const std::string& name)
{
    for (unsigned i = 0; i < block->GetFeatureNode()->getNumDrawables(); ++i)
        if (block->GetFeatureNode()->getDrawable(i)->getName() == name)
            return block->GetFeatureNode()->getDrawable(i)->asGeometry();
    return nullptr;
}
} // namespace

class PolygonBlock : public ShapeFixture
{
};

TEST_F(PolygonBlock, IsDrawnByClicksAndEndedByADoubleClick)
{
    viewer->SetToolType(ToolPolygonBlock);
    Click(18.0, 8.0);
    auto* block = qobject_cast<CAx3DGeometry*>(viewer->GetCurHandleAdapter());
    ASSERT_NE(block, nullptr);
    EXPECT_EQ(block->GetHandleOperation(), OperationDrawing);
    EXPECT_NE(block->GetAnchorEditor(), nullptr);
    EXPECT_EQ(Drawn(block, "Feature"), nullptr);
    MoveTo(21.0, 9.0);
    ASSERT_NE(Drawn(block, "Stipple"), nullptr);
    Click(22.0, 8.0);
    EXPECT_EQ(Drawn(block, "Stipple"), nullptr) << "a new corner clears the rubber band";
    Push(10, 10); // beside the globe
    Release(10, 10);
    EXPECT_EQ(block->GetAnchor().size(), 2u);
    DoubleClickAt(20.0, 12.0);

    const QString id = block->GetHandleID();
    EXPECT_EQ(ended, (QList<QPair<QString, bool>>{{id, true}}));
    EXPECT_EQ(pickEnded, QList<EToolType>{ToolPolygonBlock});
    ASSERT_EQ(Ring(block).size(), 3);
    EXPECT_NEAR(Ring(block)[2].y(), 12.0, 0.05);
    ASSERT_NE(block->GetNameLabel(), nullptr);
    EXPECT_EQ(block->GetNameLabel()->text(), block->GetContainedBlock()->GetBlockName().toStdString());
    ASSERT_NE(block->GetAnchorEditor(), nullptr);
    EXPECT_EQ(block->GetAnchorEditor()->GetDraggerList().size(), 3u);
}

TEST_F(PolygonBlock, SnapsToOtherBlocksAndShowsItsSizeWhileItIsDrawn)
{
    // A square of two degrees at the equator and the corner of a block beside it.
    ASSERT_TRUE(Import("neighbour", {{21.0, 1.0}, {25.0, 1.0}, {25.0, 5.0}}));
    manipulator->setViewpoint(Straight(20.0, 0.0, 5e6));
    ASSERT_TRUE(WaitForPicture());
    const osg::Vec2f beside = WindowOf(21.0, 1.0) + osg::Vec2f(-6.0f, 4.0f);
    const auto clickBeside = [&] { Push(beside.x(), beside.y()), Release(beside.x(), beside.y()); };
    viewer->SetToolType(ToolPolygonBlock);
    Click(19.0, -1.0);
    Click(21.0, -1.0);
    const CAxHandleAdapter* block = viewer->GetCurHandleAdapter();
    ASSERT_TRUE(block);
    clickBeside();
    clickBeside();
    auto& corners = viewer->GetCurHandleAdapter()->GetAnchor();
    ASSERT_EQ(corners.size(), 3u) << "one corner for two clicks on one place";
    EXPECT_EQ(osg::Vec2d(corners[2].x(), corners[2].y()), osg::Vec2d(21.0, 1.0));
    MoveTo(19.0, 1.0);
    double area = 0.0;
    double perimeter = 0.0;
    const std::string text = CursorText();
    ASSERT_EQ(std::sscanf(text.substr(text.find('\n') + 1).c_str(), "area %lf km\302\262, perimeter %lf km",
                          &area, &perimeter),
              2)
        << text;
    EXPECT_NEAR(area, 49230.0, 1500.0);
    EXPECT_NEAR(perimeter, 887.6, 15.0);
    MoveTo(22.5, -0.5);
    EXPECT_EQ(CursorText().find("area"), std::string::npos) << "it crosses itself";
    AxEditAids aids;
    aids.snap = false;
    viewer->SetEditAids(aids);
    clickBeside();
    EXPECT_NE(corners.back().x(), 21.0) << "switched off";
    PressKey(Qt::Key_Escape);
}

TEST_F(PolygonBlock, IsRefusedWholeWithTheReason)
{
    struct Row
    {
        const char* why;
        std::vector<osg::Vec2d> corners;
        QString message;
    };
    const std::vector<Row> rows{
        {"one click", {{18.0, 8.0}}, "Point count of block is less than 3."},
        {"two clicks", {{18.0, 8.0}, {22.0, 8.0}}, "Point count of block is less than 3."},
        {"ended on the last corner",
         {{18.0, 8.0}, {22.0, 8.0}, {22.0, 8.0}},
         "Point count of block is less than 3."},
        {"bow tie", {{18.0, 8.0}, {22.0, 12.0}, {22.0, 8.0}, {18.0, 12.0}}, "Block is invalid."},
    };
    for (const Row& row : rows) {
        SCOPED_TRACE(row.why);
        ModalBox box;
        ended.clear();
        EXPECT_EQ(DrawPolygon(row.corners), nullptr);
        EXPECT_EQ(box.count, 1);
        EXPECT_EQ(box.title, "Block Information");
        EXPECT_TRUE(box.texts.contains(row.message)) << box.texts.join("|").toStdString();
        EXPECT_EQ(box.buttons.size(), 1);
        EXPECT_EQ(ended, (QList<QPair<QString, bool>>{{QString(), true}}));
        EXPECT_EQ(viewer->GetGeomAdapterGroup()->getNumChildren(), 0u);
        EXPECT_TRUE(CAxBlockManager::instance().GetBlockList().isEmpty());
    }
    // The corner that the double click set on top of the one before is dropped.
    const CAx3DGeometry* triangle = DrawPolygon({{18.0, 8.0}, {22.0, 8.0}, {20.0, 12.0}, {20.0, 12.0}});
    ASSERT_NE(triangle, nullptr);
    EXPECT_EQ(Ring(triangle).size(), 3);
}

TEST_F(PolygonBlock, DrawingIsTakenBackByKeys)
{
    viewer->SetToolType(ToolPolygonBlock);
    Click(18.0, 8.0);
    Click(22.0, 8.0);
    Click(20.0, 11.0);
    QPointer<CAxHandleAdapter> block = viewer->GetCurHandleAdapter();
    ASSERT_TRUE(block);
    // The mouse may be over an overlay that has no field to type in.
    const QRect readOut = viewer->GetCoordinateWidget()->geometry();
    QCursor::setPos(viewer->mapToGlobal(readOut.center()));
    ASSERT_TRUE(waitFor([&] { return readOut.contains(viewer->mapFromGlobal(QCursor::pos())); }));
    PressKey(Qt::Key_Backspace);
    ASSERT_TRUE(block);
    EXPECT_EQ(block->GetAnchor().size(), 2u);
    QCursor::setPos(viewer->mapToGlobal(QPoint(300, 300)));
    ASSERT_TRUE(waitFor([&] { return !readOut.contains(viewer->mapFromGlobal(QCursor::pos())); }));
    PressKey(Qt::Key_Backspace);
    PressKey(Qt::Key_Backspace);
    PressKey(Qt::Key_Backspace);
    EXPECT_EQ(block->GetAnchor().size(), 0u);
    EXPECT_EQ(block->GetHandleOperation(), OperationDrawing) << "it goes on";
    Click(18.0, 8.0);
    MoveTo(20.0, 9.0);
    EXPECT_EQ(block->GetAnchor().size(), 1u);
    PressKey(Qt::Key_Escape);
    EXPECT_TRUE(waitFor([&] { return !block; }));
    EXPECT_EQ(ended, (QList<QPair<QString, bool>>{{QString(), false}}));
    EXPECT_EQ(viewer->GetGeomAdapterGroup()->getNumChildren(), 0u);
}

TEST_F(PolygonBlock, EditsAreJudgedThenCommittedOrTakenBack)
{
    CAx3DGeometry* block = Import("block", square);
    viewer->slotFocusBlock("block");
    manipulator->setViewpoint(Straight(20.0, 10.0, 1.5e7));
    const auto drag = [block](int index, double lng, double lat) {
        block->GetAnchor()[std::size_t(index)].set(lng, lat, 0.0);
        block->slotPointMoved(lng, lat, 0.0, index);
        EXPECT_EQ(block->GetHandleOperation(), OperationMovePoint);
        EXPECT_EQ(block->GetEditIndex(), index);
        block->slotMouseRelease(osg::Vec3d(lng, lat, 0.0), osg::Vec3d());
        EXPECT_EQ(block->GetHandleOperation(), OperationIdle);
        EXPECT_EQ(block->GetEditIndex(), -1);
    };
    drag(2, 24.0, 13.0);
    EXPECT_EQ(Ring(block)[2], QPointF(24.0, 13.0));
    const ModalBox refusal;
    drag(1, qQNaN(), 8.0);
    EXPECT_EQ(block->GetAnchor()[1].x(), 22.0);
    EXPECT_FALSE(block->DeleteVertex(4));
    EXPECT_FALSE(block->InsertVertex(0, osg::Vec3d(qQNaN(), 0.0, 0.0)));
    viewer->slotBlockLock("block", true);
    EXPECT_FALSE(block->DeleteVertex(0)) << "locked";
    viewer->slotBlockLock("block", false);

    // Moved as a whole: kept by a good end, taken back by any other.
    for (const int code : {0, -10, 1}) {
        for (osg::Vec3d& vertex : block->GetAnchor())
            vertex.x() += 1.0;
        block->HandleMoved(1.0, 0.0, 0.0);
        EXPECT_EQ(block->GetHandleOperation(), OperationMoveHandle);
        block->EndMoved(code);
        EXPECT_EQ(Ring(block)[0].x(), code > 0 ? 19.0 : 18.0) << code;
        EXPECT_EQ(block->GetAnchor()[0].x(), Ring(block)[0].x()) << code;
    }
    // Its record deleted behind its back, it stays as it is.
    CAxBlockManager::instance().DeleteBlock("block");
    drag(0, 18.5, 8.0);
    EXPECT_EQ(block->GetAnchor()[0].x(), 18.5);
    viewer->SetNodeSelected(nullptr, false, false);
    block->update();
    EXPECT_EQ(viewer->GetCurHandleAdapter(), nullptr) << "without a record there is nothing to differ from";
    block->ResponseDoubleClickOnBlock();
    block->ResponseDoubleClickOnPoint(0, osg::Vec3d());
}

TEST_F(PolygonBlock, SeveralAreMovedWithTheirNamesAndLeaveNoHandlesBehind)
{
    CAx3DGeometry* one = Import("one", square);
    CAx3DGeometry* two = Import("two", {{25, 8}, {28, 8}, {28, 11}, {25, 11}});
    viewer->slotFocusBlock("one");
    manipulator->setViewpoint(Straight(20.0, 10.0, 1.5e7));
    EXPECT_NE(one->GetAnchorEditor(), nullptr);
    CAxControl::GetInstance()->SetProjectModified(false);
    viewer->SetToolType(ToolSelect);
    const double name = one->GetNameLabel()->getPosition().x();
    for (CAxHandleAdapter* block : {one, two})
        viewer->SetNodeSelected(block->GetFeatureNode(), true, false);
    EXPECT_TRUE(one->IsSelectedAmongSeveral());
    viewer->SetNodeSelected(two->GetFeatureNode(), true, false);
    EXPECT_FALSE(two->IsSelectedAmongSeveral()) << "selected twice is not selected";
    viewer->SetNodeSelected(two->GetFeatureNode(), true, false);
    osg::Vec2f place = WindowOf(20.0, 10.0);
    Push(place.x(), place.y());
    Drag(place.x(), place.y());
    place = WindowOf(23.0, 12.0);
    Drag(place.x(), place.y());
    Release(place.x(), place.y());
    EXPECT_NEAR(Ring(one)[0].x(), 21.0, 0.1);
    EXPECT_NEAR(Ring(two)[0].x(), 28.0, 0.1);
    EXPECT_NEAR(one->GetNameLabel()->getPosition().x(), name + 3.0, 0.1);
    EXPECT_NEAR(two->GetNameLabel()->getPosition().x(), 29.5, 0.2);
    for (const CAxHandleAdapter* block : {one, two}) {
        EXPECT_EQ(block->GetAnchorEditor(), nullptr);
        EXPECT_FALSE(block->IsSelectedAmongSeveral());
    }
    EXPECT_TRUE(CAxControl::GetInstance()->IsProjectModified());
    CAxControl::GetInstance()->SetProjectModified(false);
    viewer->GetUndoAction()->trigger();
    EXPECT_EQ(Ring(one), square);
    EXPECT_NEAR(one->GetNameLabel()->getPosition().x(), name, 1e-6);
    EXPECT_TRUE(CAxControl::GetInstance()->IsProjectModified());
}

TEST_F(PolygonBlock, CommittedEditsAreUndoneAndRedone)
{
    QPointer<CAx3DGeometry> block = Import("block", square);
    viewer->slotFocusBlock("block");
    const double name = block->GetNameLabel()->getPosition().x();
    EXPECT_TRUE(block->InsertVertex(4, osg::Vec3d(16.0, 10.0, 0.0)));
    EXPECT_LT(block->GetNameLabel()->getPosition().x(), name - 0.1) << "the name goes along";
    EXPECT_TRUE(block->DeleteVertex(0));
    const QString first = block->GetContainedBlock()->GetBlockName();
    EXPECT_TRUE(viewer->RenameBlock("block", " Field\t"));
    EXPECT_EQ(block->GetNameLabel()->text(), "Field");
    EXPECT_FALSE(viewer->RenameBlock("block", "  "));
    CAxBlockManager::instance().AddBlock("other", CAxBlock::PolygonBlock)->SetBlockName("Taken");
    EXPECT_FALSE(viewer->RenameBlock("block", "Taken "));
    ASSERT_EQ(viewer->GetUndoStack()->count(), 3);
    EXPECT_EQ(viewer->GetUndoStack()->text(0), "Insert vertex: " + first);
    EXPECT_EQ(viewer->GetUndoStack()->text(1), "Delete vertex: " + first);
    EXPECT_EQ(viewer->GetUndoStack()->text(2), QString("Rename %1 to Field").arg(first));

    viewer->GetUndoAction()->trigger();
    EXPECT_EQ(block->GetNameLabel()->text(), first.toStdString());
    viewer->GetUndoAction()->trigger();
    viewer->GetUndoAction()->trigger();
    EXPECT_EQ(Ring(block), square);
    EXPECT_FALSE(viewer->GetUndoAction()->isEnabled());
    for (int i = 0; i < 3; ++i)
        viewer->GetRedoAction()->trigger();
    EXPECT_EQ(Ring(block).size(), 4);
    EXPECT_EQ(Ring(block)[3], QPointF(16.0, 10.0));
    EXPECT_EQ(block->GetContainedBlock()->GetBlockName(), "Field");

    viewer->RemoveHanderAdapter(block.data(), true);
    for (int i = 0; i < 4; ++i)
        viewer->GetUndoAction()->trigger();
    EXPECT_EQ(viewer->GetUndoStack()->count(), 0) << "edits of a block that is gone are dropped";
}

TEST_F(PolygonBlock, TheDeleteKeyTakesTheHoveredVertexAndTellsTheHost)
{
    CAx3DGeometry* block = Import("block", square);
    viewer->slotFocusBlock("block");
    manipulator->setViewpoint(Straight(20.0, 10.0, 3e6));
    ASSERT_TRUE(WaitForPicture());
    bool taken = false;
    const auto telling = QObject::connect(viewer, &CAxEarthViewer::signalHandleKeyDelete, viewer,
                                          [&taken] { taken = viewer->IsDeleteKeyTaken(); });
    const osg::Vec2f corner = WindowOf(22.0, 12.0);
    QTest::mouseMove(viewer->viewport(), QPoint(int(corner.x()), int(corner.y())));
    int hovered = -1;
    ASSERT_TRUE(waitFor([&] { return block->GetAnchorEditor()->GetHoveredPoint(hovered), hovered == 2; }));
    AxEditAids aids;
    aids.deleteKey = false;
    viewer->SetEditAids(aids);
    PressKey(Qt::Key_Delete);
    EXPECT_FALSE(taken);
    EXPECT_EQ(Ring(block).size(), 4);
    viewer->SetEditAids(AxEditAids());
    PressKey(Qt::Key_Delete);
    EXPECT_TRUE(taken);
    EXPECT_FALSE(viewer->IsDeleteKeyTaken()) << "the next one is free again";
    EXPECT_EQ(Ring(block), (QList<QPointF>{{18, 8}, {22, 8}, {18, 12}}));
    QObject::disconnect(telling);
}

TEST_F(PolygonBlock, ItsDialogShowsTheAreaAndRenames)
{
    CAx3DGeometry* block = Import("block", square);
    CAxBlockManager::instance().AddBlock("other", CAxBlock::PolygonBlock)->SetBlockName("Taken");
    const QString first = block->GetContainedBlock()->GetBlockName();
    const auto rename = [block](const QString& name, ModalBox::Answer further) {
        ModalBox box;
        box.answers = {ModalBox::Fill({name})};
        if (further)
            box.answers += further;
        block->ResponseDoubleClickOnBlock();
        return box.titles;
    };
    EXPECT_EQ(rename(first + ' ', {}), QStringList{"Polygon Info"});
    EXPECT_EQ(rename("Taken ", ModalBox::Press("OK")),
              (QStringList{"Polygon Info", "Information", "Polygon Info"}));
    EXPECT_EQ(rename("Field", ModalBox::Press("Cancel")), (QStringList{"Polygon Info", "Change name"}));
    EXPECT_EQ(block->GetContainedBlock()->GetBlockName(), first);
    const osg::ref_ptr<osg::Node> oldLabel = block->GetNameLabel();
    EXPECT_EQ(rename(QString::fromUtf8("麦田 3"), ModalBox::Press("OK")),
              (QStringList{"Polygon Info", "Change name"}));
    EXPECT_EQ(block->GetContainedBlock()->GetBlockName(), QString::fromUtf8("麦田 3"));
    EXPECT_EQ(block->GetNameLabel()->text(), "麦田 3");
    EXPECT_EQ(oldLabel->getNumParents(), oldLabel == block->GetNameLabel() ? 1u : 0u);

    // The map has room for 24 letters, however many characters make one.
    const QString whole = QString::fromUtf8("e\xcc\x81").repeated(24);
    for (const auto& [name, shown] :
         {std::pair{whole, whole}, {whole + 'x', whole.left(46) + QChar(0x2026)}}) {
        block->GetContainedBlock()->SetBlockName(name);
        block->DrawNameLabel();
        EXPECT_EQ(QString::fromStdString(block->GetNameLabel()->text()), shown);
    }

    CAxTaskPolygon route(viewer, block);
    block->AddTask(&route);
    ModalBox none;
    block->ResponseDoubleClickOnBlock();
    EXPECT_EQ(none.count, 0) << "a block with routes has no dialog";
    EXPECT_FALSE(block->DeleteVertex(0)) << "and is not edited";
    block->RemoveAllTask();
}

TEST_F(PolygonBlock, TellsItsMiddleAndItsHeights)
{
    CAx3DGeometry* block =
        Import("date line", {{179.0, 10.0}, {-179.0, 10.0}, {-179.0, 14.0}, {179.0, 14.0}});
    const CAxVector3D middle = block->GetGravityLatLng();
    EXPECT_DOUBLE_EQ(middle.x(), 12.0) << "latitude first";
    EXPECT_DOUBLE_EQ(std::abs(middle.y()), 180.0);
    double low = 0.0, high = 0.0, mean = 0.0;
    EXPECT_FALSE(CAx3DGeometry(viewer, nullptr).GetElevationMinMax(low, high));
    EXPECT_TRUE(block->GetBlockElevation());
    EXPECT_TRUE(block->GetElevationMinMax(low, high));
    EXPECT_TRUE(block->GetElevationsAverage(mean));
    EXPECT_LE(low, mean);
    EXPECT_LE(mean, high);
}

TEST_F(PolygonBlock, IsRecordedBetweenTheLongitudesOfBothEndsOfTheMap)
{
    const QList<QPointF> before{{179.9, 10.0}, {179.98, 10.0}, {179.98, 10.1}, {179.9, 10.1}};
    CAx3DGeometry* block = Import("block", before);
    const double area = block->GetArea();
    std::vector<osg::Vec3d> moved = block->GetAnchor();
    for (osg::Vec3d& corner : moved)
        corner.x() += 0.05;
    ASSERT_TRUE(block->SetVertices(moved, "Move block"));
    EXPECT_NEAR(Ring(block)[0].x(), 179.95, 1e-9);
    EXPECT_NEAR(Ring(block)[1].x(), -179.97, 1e-9);
    EXPECT_NEAR(block->GetArea(), area, 0.001 * area);
    EXPECT_FALSE(block->GeometryModifyed());
    viewer->GetUndoAction()->trigger();
    EXPECT_EQ(Ring(block), before);
    viewer->GetRedoAction()->trigger();
    EXPECT_NEAR(block->GetArea(), area, 0.001 * area);
    EXPECT_FALSE(block->GeometryModifyed());
}

TEST_F(PolygonBlock, ABlockThatIsNotEditedSaysSoInPlaceOfTheDialogOfACorner)
{
    CAx3DGeometry* block = Import("block", square);
    CAxTaskPolygon route(viewer, block);
    block->AddTask(&route);
    for (const char* why : {"routes", "locked", "locked while it is open"}) {
        SCOPED_TRACE(why);
        ModalBox box;
        if (why == QByteArray("locked while it is open"))
            box.answers = {[](QDialog& dialog) {
                viewer->slotBlockLock("block", true);
                ModalBox::Fill({"7.5", "23.25"})(dialog);
            }};
        block->ResponseDoubleClickOnPoint(1, osg::Vec3d());
        EXPECT_EQ(box.count, why == QByteArray("locked while it is open") ? 2 : 1);
        EXPECT_TRUE(
            box.texts.contains("The corners of a block that is locked or has routes cannot be changed."));
        EXPECT_EQ(Ring(block), square);
        block->RemoveAllTask();
        viewer->slotBlockLock("block", why == QByteArray("routes"));
    }
}

TEST_F(PolygonBlock, TheDialogOfACornerMovesAndDeletesIt)
{
    CAx3DGeometry* block = Import("block", square);
    const auto open = [block](int index, const QList<ModalBox::Answer>& answers) {
        ModalBox box;
        box.answers = answers;
        block->ResponseDoubleClickOnPoint(index, osg::Vec3d());
        EXPECT_TRUE(box.answers.isEmpty());
        return box.titles;
    };
    // The dialog comes back with what was typed, and its cross keeps the corner.
    const auto leaveWith = [](const QStringList& typed) {
        return [typed](QDialog& page) {
            QStringList shown;
            for (const QLineEdit* line : page.findChildren<QLineEdit*>())
                if (line->isVisible())
                    shown += line->text();
            EXPECT_EQ(shown, typed);
            page.findChild<QPushButton*>("m_pBtnClose")->click();
        };
    };
    open(1, {ModalBox::Fill({"7.5", "23.25"})});
    EXPECT_EQ(Ring(block)[1], QPointF(23.25, 7.5));
    EXPECT_EQ(block->GetAnchor()[1].x(), 23.25);
    for (const QStringList& wrong : {QStringList{"north", "23"}, {"91", "23"}, {"7.5", "180.5"}})
        EXPECT_EQ(open(1, {ModalBox::Fill(wrong), ModalBox::Press("OK"), leaveWith(wrong)}),
                  (QStringList{"Vertex", "Vertex", "Vertex"}))
            << wrong.join(' ').toStdString();
    EXPECT_EQ(open(1, {ModalBox::Fill({"13", "20"}), ModalBox::Press("OK"), leaveWith({"13", "20"})}),
              (QStringList{"Vertex", "Block Information", "Vertex"}))
        << "the ring would cross itself";
    EXPECT_EQ(Ring(block)[1], QPointF(23.25, 7.5));
    // OK rewrites even untouched values, which the dialog shows to eight decimals ...
    block->GetContainedBlock()->SetAnchor({{18, 8}, {22.123456789012, 8}, {22, 12}, {18, 12}});
    open(1, {ModalBox::Press("OK")});
    EXPECT_EQ(Ring(block)[1].x(), 22.12345679);
    // ... but not where latitude and longitude are the same number.
    block->GetContainedBlock()->SetAnchor({{18, 8}, {9.000000001, 9.000000001}, {22, 12}, {18, 12}});
    open(1, {ModalBox::Press("OK")});
    EXPECT_EQ(Ring(block)[1].x(), 9.000000001);

    block->GetContainedBlock()->SetAnchor(square);
    block->ReturnLastOperate();
    open(-2, {});
    open(3, {ModalBox::Press("Delete"), ModalBox::Press("Cancel")});
    EXPECT_EQ(Ring(block).size(), 4);
    open(3, {ModalBox::Press("Delete"), ModalBox::Press("OK")});
    EXPECT_EQ(Ring(block), square.mid(0, 3));
    EXPECT_EQ(open(0, {ModalBox::Press("Delete"), ModalBox::Press("OK"), ModalBox::Press("OK")}),
              (QStringList{"Vertex", "Delete vertex", "Delete Block"}));
    EXPECT_EQ(Ring(block).size(), 3);
}

// Rectangles: drawn, judged, kept rectangular.
#include "ShapeFixture.h"

#include "interaction/editing/CAxHandleAdapterEditor.h"
#include "interaction/objects/AxRectangleShape.h"
#include "interaction/objects/CAxOsgDrawRectange.h"

#include <osgEarthAnnotation/LabelNode>

#include <QAction>

#include <cmath>

class Rectangle : public ShapeFixture
{
protected:
    CAxOsgDrawRectange* Current() { return qobject_cast<CAxOsgDrawRectange*>(viewer->GetCurHandleAdapter()); }
    CAxOsgDrawRectange* ImportRectangle(const QList<QPointF>& ring)
    {
        CAxBlockManager::instance().AddBlock("rectangle", CAxBlock::RectangleBlock)->SetAnchor(ring);
        return qobject_cast<CAxOsgDrawRectange*>(viewer->ImportShapeNode("rectangle"));
    }
    CAxOsgDrawRectange* ImportRectangle(const AxRectangle& rectangle)
    {
        QList<QPointF> ring;
        for (const osg::Vec3d& corner : AxRectangleShape::CornersOf(rectangle))
            ring += QPointF(corner.x(), corner.y());
        return ImportRectangle(ring);
    }
    /// As the map has it.
    static AxRectangle Measures(CAxOsgDrawRectange* block)
    {
        return AxRectangleShape::Of(block->GetAnchor()).value_or(AxRectangle());
    }
    static void ExpectMeasures(CAxOsgDrawRectange* block, double length, double width, double heading)
    {
        const AxRectangle now = Measures(block);
        EXPECT_NEAR(now.length, length, 0.05);
        EXPECT_NEAR(now.width, width, 0.05);
        EXPECT_NEAR(now.heading, heading, 0.01);
    }
    static void DragHandle(CAxOsgDrawRectange* block, std::size_t handle, const osg::Vec3d& place)
    {
        block->GetAnchorEditor()->GetDraggerList()[handle]->DragTo(
            osgEarth::GeoPoint(viewer->getSRS()->getGeographicSRS(), place, osgEarth::ALTMODE_ABSOLUTE));
    }
    void DragFromTo(const osg::Vec2f& from, const osg::Vec2f& to)
    {
        Push(from.x(), from.y());
        Drag((from.x() + to.x()) / 2.0f, (from.y() + to.y()) / 2.0f);
        Drag(to.x(), to.y());
        Release(to.x(), to.y());
    }
};

TEST_F(Rectangle, IsDrawnUprightByADragOrADoubleClickAndNotWithoutExtent)
{
    const auto press = [this](float right, float up) {
        const osg::Vec2f place = WindowOf(18.0, 8.0) + osg::Vec2f(right, up);
        DoubleClick(place.x(), place.y());
        Release(place.x(), place.y());
    };
    const struct
    {
        const char* how;
        std::function<void()> draw;
        bool isRefused = false;
    } rows[] = {
        {"a double click on the second corner", [this] { Click(18.0, 8.0), DoubleClickAt(22.0, 12.0); }},
        {"a drag", [this] { DragFromTo(WindowOf(18.0, 8.0), WindowOf(22.0, 12.0)); }},
        {"a click and a drag",
         [this] { Click(18.0, 8.0), DragFromTo(WindowOf(19.0, 8.5), WindowOf(22.0, 12.0)); }},
        {"a trembling double click at the start", [&] { Click(18.0, 8.0), press(1.0f, -1.0f); }, true},
        {"a drag along a row of pixels",
         [this] { DragFromTo(WindowOf(18.0, 8.0), WindowOf(18.0, 8.0) + osg::Vec2f(40.0f, 1.0f)); }, true},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.how);
        const ModalBox box;
        ended.clear();
        viewer->SetToolType(ToolRectangleBlock);
        row.draw();
        const CAxOsgDrawRectange* block = row.isRefused ? nullptr : Current();
        EXPECT_EQ(box.texts.contains("Block is invalid."), row.isRefused);
        EXPECT_EQ(ended, (QList<QPair<QString, bool>>{{block ? block->GetHandleID() : QString(), true}}));
        EXPECT_EQ(CAxBlockManager::instance().GetBlockList().size(), row.isRefused ? 0 : 1);
        if (!row.isRefused) {
            ASSERT_NE(block, nullptr);
            for (int i = 0; i < 4; ++i)
                EXPECT_LT((Ring(block)[i] - square[i]).manhattanLength(), 0.1) << i;
            EXPECT_EQ(Ring(block)[0].y(), Ring(block)[1].y());
            EXPECT_EQ(Ring(block)[1].x(), Ring(block)[2].x());
            EXPECT_EQ(block->GetAnchorEditor()->GetDraggerList().size(), 9u) << "corners, sides, one to turn";
        }
        EXPECT_TRUE(CursorText().empty());
        viewer->SetToolType(ToolNavigate);
        viewer->RemoveAllHanderAdapter(true);
    }
}

TEST_F(Rectangle, IsDrawnInAnyDirectionByThreeClicks)
{
    manipulator->setViewpoint(Straight(20.0, 10.0, 60000.0));
    ASSERT_TRUE(WaitForPicture());
    viewer->SetToolType(ToolRectangleBlock);
    Click(19.98, 9.98);
    const QPointer<CAxOsgDrawRectange> block = Current();
    ASSERT_TRUE(block);
    MoveTo(20.02, 10.02);
    // Two hundredths of a degree on both sides.
    double along = 0.0;
    double across = 0.0;
    ASSERT_EQ(std::sscanf(CursorText().c_str(), "%lf km, %lf", &along, &across), 2) << CursorText();
    EXPECT_NEAR(along, 6.223, 0.1);
    EXPECT_NEAR(across, 44.7, 1.0);
    EXPECT_EQ(block->GetAnchor().size(), 1u) << "the band sets no corner";
    Click(20.02, 10.02);
    PressKey(Qt::Key_Backspace);
    EXPECT_EQ(block->GetAnchor().size(), 1u);
    Click(20.02, 10.02);
    Click(20.02, 10.02);
    EXPECT_EQ(block->GetAnchor().size(), 2u) << "a slow second click on the corner";
    MoveTo(20.04, 10.0);
    ASSERT_EQ(std::sscanf(CursorText().c_str(), "%lf km x %lf km", &along, &across), 2) << CursorText();
    EXPECT_NEAR(across, 3.11, 0.1);
    Click(20.04, 10.0);
    EXPECT_EQ(ended, (QList<QPair<QString, bool>>{{block->GetHandleID(), true}}));
    EXPECT_NEAR(Measures(block).length, 6223.0, 100.0);
    EXPECT_NEAR(Measures(block).width, 3110.0, 100.0);
    EXPECT_NEAR(Measures(block).heading, 44.7, 1.0);
    EXPECT_LT(AxRectangleShape::Skew(block->GetAnchor()), 0.01);
}

TEST_F(Rectangle, IsResizedAndTurnedByItsHandles)
{
    CAxOsgDrawRectange* block = ImportRectangle(AxRectangle{{20.0, 10.0, 0.0}, 2000.0, 1000.0, 30.0});
    ASSERT_NE(block, nullptr);
    const QList<QPointF> ring = Ring(block);
    const std::vector<osg::Vec3d> before = block->GetAnchor();
    const auto beyond = [&](double share, std::size_t from, std::size_t to) {
        return before[from] + (before[to] - before[from]) * share;
    };
    struct Row
    {
        const char* what;
        std::size_t handle;
        osg::Vec3d to;
        double length, width, heading;
    };
    const std::vector<Row> rows{
        {"a corner away from the opposite one", 2, beyond(1.5, 0, 2), 3000.0, 1500.0, 30.0},
        {"the first side outward", 4, beyond(1.5, 3, 0), 2000.0, 1500.0, 30.0},
        {"the second side inward", 5, beyond(0.5, 0, 1), 1000.0, 1000.0, 30.0},
        {"the handle that turns", 8, {20.05, 10.0, 0.0}, 2000.0, 1000.0, 90.0},
    };
    for (const Row& row : rows) {
        SCOPED_TRACE(row.what);
        block->SetAnchorEditorEnabled(true);
        DragHandle(block, row.handle, row.to);
        EXPECT_NE(CursorText().find(" x "), std::string::npos) << CursorText();
        EXPECT_EQ(Ring(block), ring) << "nothing is committed yet";
        block->slotMouseRelease(osg::Vec3d(), osg::Vec3d());
        EXPECT_TRUE(CursorText().empty());
        ExpectMeasures(block, row.length, row.width, row.heading);
        EXPECT_NE(Ring(block), ring);
        viewer->GetUndoAction()->trigger();
        EXPECT_EQ(Ring(block), ring);
        EXPECT_FALSE(viewer->GetUndoAction()->isEnabled()) << "one step";
    }
    // A side that is dragged onto the opposite one is refused, and so is the whole edit.
    DragHandle(block, 4, before[3]);
    DragHandle(block, 4, beyond(0.0, 3, 0));
    {
        ModalBox box;
        block->slotMouseRelease(osg::Vec3d(), osg::Vec3d());
        EXPECT_EQ(box.count, 1);
    }
    EXPECT_EQ(Ring(block), ring);
    // Five degrees to the north the same differences in degrees would make it narrower.
    for (osg::Vec3d& corner : block->GetAnchor())
        corner.y() += 5.0;
    block->slotHandleMoved(0.0, 5.0, 0.0);
    for (osg::Vec3d& corner : block->GetAnchor())
        corner.y() += 40.0;
    block->slotHandleMoved(0.0, 40.0, 0.0);
    block->slotMouseRelease(osg::Vec3d(), osg::Vec3d());
    ExpectMeasures(block, 2000.0, 1000.0, 30.0);
    EXPECT_EQ(Ring(block)[0], ring[0] + QPointF(0.0, 45.0));
}

TEST_F(Rectangle, TakesTypedMeasuresAndTellsWhatItCannotTake)
{
    CAxOsgDrawRectange* block = ImportRectangle(AxRectangle{{20.0, 10.0, 0.0}, 2000.0, 1000.0, 210.0});
    ASSERT_NE(block, nullptr);
    block->GetContainedBlock()->SetBlockName("Field");
    const QList<QPointF> ring = Ring(block);
    {
        ModalBox box;
        block->ResponseDoubleClickOnBlock();
        EXPECT_EQ(box.titles, QStringList{"Rectangle Info"});
    }
    EXPECT_EQ(Ring(block), ring) << "OK without a change";
    for (const char* wrong : {"", "abc", "-1", "1e308", "3,5", "nan", "0"}) {
        SCOPED_TRACE(wrong);
        ModalBox box;
        box.answers = {ModalBox::Fill({"Field", "2000.00", wrong, "30.00"}), ModalBox::Press("OK"),
                       [](QDialog& form) { form.reject(); }};
        block->ResponseDoubleClickOnBlock();
        EXPECT_EQ(box.titles, (QStringList{"Rectangle Info", "Block Information", "Rectangle Info"}));
        EXPECT_EQ(Ring(block), ring);
    }
    ModalBox box;
    box.answers = {ModalBox::Fill({"Meadow", "800", "1000.00", "45"})};
    block->ResponseDoubleClickOnPoint(8, osg::Vec3d());
    EXPECT_EQ(box.titles, (QStringList{"Rectangle Info", "Change name"}));
    ExpectMeasures(block, 800.0, 1000.0, 225.0);
    EXPECT_EQ(block->GetContainedBlock()->GetBlockName(), "Meadow");
    viewer->GetUndoAction()->trigger();
    viewer->GetUndoAction()->trigger();
    EXPECT_EQ(Ring(block), ring);
    EXPECT_EQ(block->GetContainedBlock()->GetBlockName(), "Field");

    // What was made elsewhere is drawn as it is, and the form says how far it is off.
    viewer->RemoveHanderAdapter(block, true);
    block = ImportRectangle(QList<QPointF>{{20, 10}, {20.02, 10}, {20.021, 10.01}, {20, 10.01}});
    ASSERT_NE(block, nullptr);
    EXPECT_TRUE(block->Fault().isEmpty()) << block->Fault().toStdString();
    block->ResponseDoubleClickOnBlock();
    EXPECT_EQ(box.texts.filter("beside those of a rectangle").size(), 1) << box.texts.join("|").toStdString();
}

// Rectangles: drawn, judged, kept rectangular.
#include "ShapeFixture.h"

#include "interaction/editing/CAxHandleAdapterEditor.h"
#include "interaction/objects/CAxOsgDrawRectange.h"

#include <osgEarthAnnotation/LabelNode>

#include <QAction>

#include <cmath>

class Rectangle : public ShapeFixture
{
protected:
    void SetUp() override
    {
        ShapeFixture::SetUp();
        viewer->SetShapeFactory(ToolRectangleBlock, [](CAxEarthViewer* earthViewer, QObject* parent) {
            return new CAxOsgDrawRectange(earthViewer, parent);
        });
    }
    void TearDown() override
    {
        viewer->SetToolType(ToolNavigate);
        ShapeFixture::TearDown();
        viewer->SetShapeFactory(ToolRectangleBlock, {});
    }

    CAxOsgDrawRectange* Current() { return qobject_cast<CAxOsgDrawRectange*>(viewer->GetCurHandleAdapter()); }
    CAxOsgDrawRectange* ImportRectangle(const QList<QPointF>& ring)
    {
        CAxBlockManager::instance().AddBlock("rectangle", CAxBlock::RectangleBlock)->SetAnchor(ring);
        return qobject_cast<CAxOsgDrawRectange*>(viewer->ImportShapeNode("rectangle"));
    }
    bool HasBand() { return Current() && findNode(Current()->GetFeatureNode(), "Stipple"); }
    void DragFromTo(const osg::Vec2f& from, const osg::Vec2f& to)
    {
        Push(from.x(), from.y());
        Drag((from.x() + to.x()) / 2.0f, (from.y() + to.y()) / 2.0f);
        Drag(to.x(), to.y());
        Release(to.x(), to.y());
    }
};

TEST_F(Rectangle, IsDrawnByClicksADoubleClickOrADrag)
{
    struct Row
    {
        const char* how;
        std::function<void()> finish;
    };
    const std::vector<Row> rows{
        {"two clicks", [this] { Click(18.0, 8.0), MoveTo(20.0, 10.0), Click(22.0, 12.0); }},
        {"a double click on the second corner", [this] { Click(18.0, 8.0), DoubleClickAt(22.0, 12.0); }},
        {"a drag", [this] { DragFromTo(WindowOf(18.0, 8.0), WindowOf(22.0, 12.0)); }},
        {"a click and a drag",
         [this] { Click(18.0, 8.0), DragFromTo(WindowOf(19.0, 8.5), WindowOf(22.0, 12.0)); }},
        {"two clicks of a trembling hand",
         [this] {
             DragFromTo(WindowOf(18.0, 8.0), WindowOf(18.0, 8.0) + osg::Vec2f(1.0f, 1.0f));
             DragFromTo(WindowOf(22.0, 12.0), WindowOf(22.0, 12.0) + osg::Vec2f(1.0f, 1.0f));
         }},
    };
    for (const Row& row : rows) {
        SCOPED_TRACE(row.how);
        ended.clear();
        pickEnded.clear();
        viewer->SetToolType(ToolRectangleBlock);
        row.finish();
        CAxOsgDrawRectange* block = Current();
        ASSERT_NE(block, nullptr);
        const QString id = block->GetHandleID();
        EXPECT_EQ(ended, (QList<QPair<QString, bool>>{{id, true}}));
        EXPECT_EQ(pickEnded, QList<EToolType>{ToolRectangleBlock});
        EXPECT_EQ(block->GetHandleOperation(), OperationIdle);
        ASSERT_EQ(Ring(block).size(), 4);
        const QList<QPointF> ring = Ring(block);
        const QList<QPointF> wanted{{18, 8}, {22, 8}, {22, 12}, {18, 12}};
        for (int i = 0; i < 4; ++i) {
            EXPECT_NEAR(ring[i].x(), wanted[i].x(), 0.05) << i;
            EXPECT_NEAR(ring[i].y(), wanted[i].y(), 0.05) << i;
        }
        EXPECT_EQ(ring[0].y(), ring[1].y());
        EXPECT_EQ(ring[1].x(), ring[2].x());
        EXPECT_FALSE(HasBand());
        EXPECT_TRUE(CursorText().empty());
        EXPECT_NE(block->GetNameLabel(), nullptr);
        ASSERT_NE(block->GetAnchorEditor(), nullptr);
        EXPECT_EQ(block->GetAnchorEditor()->GetDraggerList().size(), 4u);
        viewer->SetToolType(ToolNavigate);
        viewer->RemoveHanderAdapter(id, true);
    }
}

TEST_F(Rectangle, ShowsItsSizeWhileItIsDrawnAndIsTakenBackByKeys)
{
    viewer->SetToolType(ToolRectangleBlock);
    Click(19.0, 0.0);
    QPointer<CAxOsgDrawRectange> block = Current();
    ASSERT_TRUE(block);
    EXPECT_FALSE(HasBand());
    MoveTo(21.0, 1.0);
    EXPECT_TRUE(HasBand());
    // Two degrees of the equator and one of a meridian; a float away from the mouse's pixel.
    double width = 0.0;
    double height = 0.0;
    ASSERT_EQ(std::sscanf(CursorText().c_str(), "%lf km x %lf km", &width, &height), 2) << CursorText();
    EXPECT_NEAR(width, 222.6, 8.0);
    EXPECT_NEAR(height, 110.6, 8.0);
    EXPECT_EQ(block->GetAnchor().size(), 1u) << "the band sets no corner";

    PressKey(Qt::Key_Backspace);
    EXPECT_TRUE(block->GetAnchor().empty());
    MoveTo(21.0, 1.0);
    EXPECT_FALSE(HasBand()) << "there is no corner to begin from";
    Click(18.0, 8.0);
    MoveTo(21.0, 9.0);
    PressKey(Qt::Key_Escape);
    EXPECT_TRUE(waitFor([&] { return !block; }));
    EXPECT_EQ(ended, (QList<QPair<QString, bool>>{{QString(), false}}));
    EXPECT_TRUE(CursorText().empty());
}

TEST_F(Rectangle, WithoutExtentIsRefusedWithTheReason)
{
    struct Row
    {
        const char* why;
        std::function<void()> end;
    };
    const std::vector<Row> rows{
        {"a double click at the start", [this] { DoubleClickAt(18.0, 8.0); }},
        {"a trembling double click at the start",
         [this] {
             Click(18.0, 8.0);
             const osg::Vec2f place = WindowOf(18.0, 8.0) + osg::Vec2f(1.0f, -1.0f);
             DoubleClick(place.x(), place.y());
             Release(place.x(), place.y());
         }},
        {"a second corner on the meridian of the first",
         [this] {
             Click(18.0, 8.0);
             const osg::Vec3d corner = Current()->GetAnchor().front();
             Current()->slotPicked(osg::Vec3d(corner.x(), 12.0, 0.0), FrameAt(18.0, 12.0).getTrans());
         }},
        {"a drag along a row of pixels",
         [this] {
             const osg::Vec2f from = WindowOf(18.0, 8.0);
             DragFromTo(from, from + osg::Vec2f(40.0f, 1.0f));
         }},
    };
    for (const Row& row : rows) {
        SCOPED_TRACE(row.why);
        ModalBox box;
        ended.clear();
        viewer->SetToolType(ToolRectangleBlock);
        row.end();
        EXPECT_EQ(box.count, 1);
        EXPECT_EQ(box.title, "Block Information");
        EXPECT_TRUE(box.texts.contains("Block is invalid.")) << box.texts.join("|").toStdString();
        EXPECT_EQ(ended, (QList<QPair<QString, bool>>{{QString(), true}}));
        EXPECT_EQ(viewer->GetGeomAdapterGroup()->getNumChildren(), 0u);
        EXPECT_TRUE(CAxBlockManager::instance().GetBlockList().isEmpty());
        viewer->SetToolType(ToolNavigate);
    }
    // A slow second click on the first corner ends nothing.
    viewer->SetToolType(ToolRectangleBlock);
    Click(18.0, 8.0);
    Click(18.0, 8.0);
    ASSERT_NE(Current(), nullptr);
    EXPECT_EQ(Current()->GetHandleOperation(), OperationDrawing);
    Push(10, 10); // nor does one beside the globe
    Release(10, 10);
    EXPECT_EQ(Current()->GetHandleOperation(), OperationDrawing);
    PressKey(Qt::Key_Escape);
}

TEST_F(Rectangle, StaysOneWhenACornerIsDragged)
{
    struct Row
    {
        const char* what;
        QList<QPointF> ring;
        int corner;
        QPointF to;
        QList<QPointF> wanted;
    };
    const QList<QPointF> upFirst{{18, 8}, {18, 12}, {22, 12}, {22, 8}};
    const QList<QPointF> dateLine{{179, 8}, {-179, 8}, {-179, 12}, {179, 12}};
    const std::vector<Row> rows{
        {"first", square, 0, {17, 7}, {{17, 7}, {22, 7}, {22, 12}, {17, 12}}},
        {"second", square, 1, {23, 7}, {{18, 7}, {23, 7}, {23, 12}, {18, 12}}},
        {"fourth", square, 3, {17, 13}, {{17, 8}, {22, 8}, {22, 13}, {17, 13}}},
        {"past the opposite corner", square, 0, {24, 14}, {{24, 14}, {22, 14}, {22, 12}, {24, 12}}},
        {"a ring that begins along a meridian", upFirst, 1, {17, 13}, {{17, 8}, {17, 13}, {22, 13}, {22, 8}}},
        {"across the antimeridian", dateLine, 1, {-178, 7}, {{179, 7}, {-178, 7}, {-178, 12}, {179, 12}}},
    };
    for (const Row& row : rows) {
        SCOPED_TRACE(row.what);
        CAxOsgDrawRectange* block = ImportRectangle(row.ring);
        ASSERT_NE(block, nullptr);
        block->SetAnchorEditorEnabled(true);
        // By way of a place where the corner lies on the opposite one.
        const osg::Vec3d opposite = block->GetAnchor()[std::size_t(row.corner + 2) % 4];
        for (const osg::Vec3d& step : {opposite, osg::Vec3d(row.to.x(), row.to.y(), 0.0)})
            block->GetAnchorEditor()->GetDraggerList()[std::size_t(row.corner)]->DragTo(
                osgEarth::GeoPoint(viewer->getSRS()->getGeographicSRS(), step, osgEarth::ALTMODE_ABSOLUTE));
        for (std::size_t i = 0; i < 4; ++i) {
            const osg::Vec3d handle = block->GetAnchorEditor()->GetDraggerList()[i]->GetPlace();
            EXPECT_EQ(QPointF(handle.x(), handle.y()), row.wanted[int(i)]) << "the handles follow";
        }
        EXPECT_EQ(Ring(block), row.ring) << "nothing is committed yet";
        block->slotMouseRelease(osg::Vec3d(), osg::Vec3d());
        EXPECT_EQ(Ring(block), row.wanted);
        viewer->GetUndoAction()->trigger();
        EXPECT_EQ(Ring(block), row.ring);
        viewer->GetRedoAction()->trigger();
        EXPECT_EQ(Ring(block), row.wanted);

        EXPECT_FALSE(block->DeleteVertex(0));
        EXPECT_FALSE(block->InsertVertex(4, osg::Vec3d(20.0, 5.0, 0.0)));
        EXPECT_EQ(block->GetAnchor().size(), 4u);
        viewer->RemoveHanderAdapter(block, true);
        viewer->GetUndoStack()->clear();
    }
    EXPECT_EQ(ImportRectangle(square.mid(0, 3)), nullptr);
    CAxBlockManager::instance().DeleteBlock("rectangle");
    // Without extent it goes back to where it was.
    CAxOsgDrawRectange* block = ImportRectangle(square);
    ModalBox box;
    block->slotPointMoved(22.0, 7.0, 0.0, 0);
    block->slotMouseRelease(osg::Vec3d(), osg::Vec3d());
    EXPECT_EQ(box.count, 1);
    EXPECT_EQ(Ring(block), square);
    EXPECT_EQ(block->GetAnchor()[3].x(), 18.0);
}

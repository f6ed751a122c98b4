// Measuring tools: drawn, listed, removed; what is left in hand.
#include "ShapeFixture.h"

#include "analysis/AxMapHeights.h"
#include "interaction/measure/AxMeasureAdapter.h"
#include "interaction/measure/AxMeasurements.h"
#include "viewer/overlay/CAxMapToolsWidget.h"

#include <AxAlgorthm/AxCoordinate.h>

#include <QAction>
#include <QPushButton>

#include <cmath>

class Measuring : public ShapeFixture
{
protected:
    void SetUp() override
    {
        ShapeFixture::SetUp();
        kept = viewer->GetMeasurements();
        kept->Clear();
        listening = QObject::connect(kept, &AxMeasurements::changed, viewer, [this] { ++changes; });
    }
    void TearDown() override
    {
        QObject::disconnect(listening);
        viewer->SetToolType(ToolNavigate);
        kept->Clear();
        ShapeFixture::TearDown();
    }

    /// The only measurement, once its ground was read.
    AxMeasurement Only()
    {
        EXPECT_EQ(kept->All().size(), 1);
        EXPECT_TRUE(waitFor([this] { return kept->All().isEmpty() || !kept->All().first().isPending; }));
        return kept->All().value(0);
    }
    static double Ground(const osg::Vec3d& place)
    {
        return AxMapHeights(viewer->getMapNode()->getMap())(place.x(), place.y()).value();
    }
    void DragFrom(double lng, double lat, double toLng, double toLat)
    {
        const osg::Vec2f from = WindowOf(lng, lat);
        const osg::Vec2f to = WindowOf(toLng, toLat);
        Push(from.x(), from.y());
        Drag(to.x(), to.y());
        Release(to.x(), to.y());
    }

    AxMeasurements* kept = nullptr;
    int changes = 0;
    QMetaObject::Connection listening;
};

TEST_F(Measuring, ADistanceStaysOnTheMapAndIsNoBlock)
{
    viewer->SetToolType(ToolMeasureDistance);
    Click(18.0, 8.0);
    MoveTo(19.0, 8.5);
    EXPECT_NE(CursorText().find("km"), std::string::npos) << CursorText();
    Click(20.0, 9.0);
    Click(20.0, 9.0);
    DoubleClickAt(22.0, 8.0);

    const AxMeasurement one = Only();
    ASSERT_EQ(one.points.size(), 3u) << "the place that was clicked twice counts once";
    double length = 0.0;
    for (std::size_t i = 1; i < 3; ++i) {
        const osg::Vec3d& a = one.points[i - 1];
        const osg::Vec3d& b = one.points[i];
        length += DistanceBetweenTwoLatLng({a.x(), a.y(), 0.0}, {b.x(), b.y(), 0.0});
    }
    EXPECT_NEAR(one.values.Of(AxQuantity::Length), length, 1e-9 * length);
    EXPECT_NEAR(one.values.Of(AxQuantity::Rise), Ground(one.points[2]) - Ground(one.points[0]), 0.01);
    EXPECT_NEAR(one.values.Of(AxQuantity::OverGround), length, 1e-2 * length);
    EXPECT_EQ(one.values.parts.size(), 2);
    EXPECT_EQ(changes, 1) << "told once, when the ground was read";
    EXPECT_EQ(ended, (QList<QPair<QString, bool>>{{one.id, false}}));
    EXPECT_EQ(pickEnded, QList<EToolType>{ToolMeasureDistance});
    EXPECT_FALSE(viewer->GetCurHandleAdapter());
    EXPECT_TRUE(CAxBlockManager::instance().GetBlockList().isEmpty());
    EXPECT_EQ(viewer->GetUndoStack()->count(), 0);
    EXPECT_EQ(viewer->GetToolType(), ToolMeasureDistance) << "who measures once measures again";
    EXPECT_TRUE(CursorText().empty());

    kept->MeasureAgain();
    EXPECT_TRUE(kept->All().first().isPending) << "a file must not get the values of the former ground";
    EXPECT_EQ(changes, 2) << "lists hear of it";
    EXPECT_EQ(Only().values.Of(AxQuantity::OverGround), one.values.Of(AxQuantity::OverGround));

    const unsigned shown = viewer->GetGeomAdapterGroup()->getNumChildren();
    EXPECT_GT(shown, 0u);
    EXPECT_TRUE(kept->Remove(one.id));
    EXPECT_EQ(viewer->GetGeomAdapterGroup()->getNumChildren(), 0u);
    EXPECT_FALSE(kept->Remove(one.id));
}

TEST_F(Measuring, ADrawingEndsAsThePilotGoesOn)
{
    struct Case
    {
        const char* what;
        int points;
        std::function<void()> leave;
        int listed;
        EToolType tool;
    };
    const Case cases[] = {
        {"Escape gives it up", 2, [] { PressKey(Qt::Key_Escape); }, 0, ToolMeasureDistance},
        {"a second one leaves the tool", 2, [] { PressKey(Qt::Key_Escape), PressKey(Qt::Key_Escape); }, 0,
         ToolNavigate},
        {"another tool keeps what is enough", 2, [] { viewer->SetToolType(ToolPolygonBlock); }, 1,
         ToolPolygonBlock},
        {"and drops what is not", 1, [] { viewer->SetToolType(ToolNavigate); }, 0, ToolNavigate},
        {"a double click on the first point is no measurement", 0, [this] { DoubleClickAt(18.0, 8.0); }, 0,
         ToolMeasureDistance},
        {"points are taken back", 2,
         [this] {
             PressKey(Qt::Key_Backspace);
             PressKey(Qt::Key_Backspace);
             DoubleClickAt(20.0, 8.0);
         },
         0, ToolMeasureDistance},
        {"another object is current", 2,
         [this] {
             viewer->SetNodeSelected(Import("other", square)->GetFeatureNode(), false, false);
             viewer->GetCurHandleAdapter()->EndHandle();
         },
         1, ToolMeasureDistance},
    };
    for (const Case& one : cases) {
        viewer->SetToolType(ToolMeasureDistance);
        for (int i = 0; i < one.points; ++i)
            Click(18.0 + i, 8.0);
        one.leave();
        EXPECT_TRUE(waitFor([&] { return kept->All().size() == one.listed; })) << one.what;
        EXPECT_EQ(viewer->GetToolType(), one.tool) << one.what;
        EXPECT_TRUE(CursorText().empty()) << one.what;
        kept->Clear();
        viewer->SetToolType(ToolNavigate);
        viewer->RemoveAllHanderAdapter(true);
        EXPECT_EQ(viewer->GetGeomAdapterGroup()->getNumChildren(), 0u) << one.what;
    }
    const auto* ruler = viewer->GetMapToolWidget()->findChild<QPushButton*>(QStringLiteral("m_pMeasureBtn"));
    EXPECT_FALSE(ruler->isChecked());
}

TEST_F(Measuring, LeavesUndoAndListsFreeUntilTheFirstPoint)
{
    class Tips : public QObject
    {
    public:
        bool eventFilter(QObject*, QEvent* event) override
        {
            heard += event->type() == QEvent::StatusTip;
            return false;
        }
        int heard = 0;
    } tips;
    viewer->installEventFilter(&tips);
    Import("other", square);
    for (const auto& [tool, isFree] :
         {std::pair(ToolProjCoords, true), std::pair(ToolMeasureDistance, false)}) {
        ASSERT_TRUE(viewer->RenameBlock("other", QString::number(tool)));
        viewer->SetNodeSelected(nullptr, false, false);
        const auto begin = [&, tool = tool] {
            MoveTo(14.0, 5.0);
            MoveTo(15.0, 5.0);
            if (tool != ToolProjCoords)
                Click(15.0, 5.0);
        };
        viewer->SetToolType(tool);
        begin();
        EXPECT_EQ(viewer->SelectBlocks({"other"}), isFree) << tool;
        EXPECT_EQ(viewer->GetCurHandleAdapter()->GetHandleID() == "other", isFree) << tool;
        QCoreApplication::sendPostedEvents();
        begin();
        const int before = viewer->GetUndoStack()->index();
        viewer->GetUndoAction()->trigger();
        EXPECT_EQ(viewer->GetUndoStack()->index(), isFree ? before - 1 : before) << tool;
        EXPECT_EQ(tips.heard, isFree ? 0 : 2) << tool << ": both say why not";
    }
}

TEST_F(Measuring, HeightsAreMeasuredByADragOrTwoClicks)
{
    for (const bool isDrag : {true, false}) {
        viewer->SetToolType(ToolMeasureAltitude);
        if (isDrag) {
            DragFrom(18.0, 12.0, 22.0, 8.0);
        } else {
            Click(18.0, 12.0);
            MoveTo(20.0, 10.0);
            EXPECT_FALSE(CursorText().empty());
            Click(22.0, 8.0);
        }
        const AxMeasurement one = Only();
        ASSERT_EQ(one.points.size(), 2u);
        const osg::Vec3d& a = one.points[0];
        const osg::Vec3d& b = one.points[1];
        const double level = DistanceBetweenTwoLatLng({a.x(), a.y(), 0.0}, {b.x(), b.y(), 0.0});
        const double rise = Ground(b) - Ground(a);
        EXPECT_NEAR(one.values.Of(AxQuantity::Rise), rise, 1e-6);
        EXPECT_NEAR(one.values.Of(AxQuantity::Length), level, 1e-9 * level);
        EXPECT_NEAR(one.values.Of(AxQuantity::Slope), std::atan2(rise, level) * 180.0 / std::acos(-1.0),
                    1e-9);
        EXPECT_EQ(viewer->GetToolType(), ToolMeasureAltitude);
        kept->Clear();
    }
    // What is gone before its ground was read is not told of.
    viewer->SetToolType(ToolMeasureAltitude);
    changes = 0;
    DragFrom(18.0, 12.0, 22.0, 8.0);
    kept->Clear();
    QCoreApplication::processEvents();
    EXPECT_EQ(changes, 0);
}

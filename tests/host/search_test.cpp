// Search, picks for the line of sight and control points, on a real viewer.
#include "ModalBox.h"
#include "SuiteViewer.h"

#include "host/layers/LayerPanel.h"
#include "host/marks/ControlPointPanel.h"
#include "host/search/SearchBox.h"
#include "host/sight/SightPick.h"
#include "interaction/CAxOsgDrawPointSet.h"
#include "viewer/AxMapLayers.h"

#include <AxAlgorthm/AxCoordinateSystem.h>

#include <QFile>
#include <QListWidget>
#include <QSignalSpy>
#include <QSlider>
#include <QTemporaryDir>
#include <QTreeWidget>
#include <QUndoStack>

class Search : public SuiteViewer
{
protected:
    void TearDown() override
    {
        viewer->SetCoordSys(QString());
        viewer->RemoveAllHanderAdapter(true);
    }
};

TEST_F(Search, FindsMarksWhereTheyAreNowAndReadsTheChosenSystem)
{
    QWidget window;
    SearchBox box(viewer, &window);
    window.show();
    auto* list = window.findChild<QListWidget*>(QStringLiteral("SearchList"));
    ASSERT_TRUE(list);
    CAxOsgDrawPointSet& set = *CAxOsgDrawPointSet::OfViewer(viewer);
    QString last;
    for (int i = 0; i < 20; ++i)
        last = set.AddMark(-105.0, 37.4, QStringLiteral("San %1").arg(i));
    QFocusEvent focus(QEvent::FocusIn);
    QCoreApplication::sendEvent(&box, &focus);
    QTest::keyClicks(&box, QStringLiteral("San"));
    EXPECT_EQ(list->count(), 12);
    EXPECT_EQ(list->findItems(QStringLiteral("(mark)"), Qt::MatchContains).size(), 8)
        << "there is room for places";

    box.clear();
    QTest::keyClicks(&box, QStringLiteral("San 19"));
    QTest::keyClick(&box, Qt::Key_Return);
    EXPECT_EQ(set.SelectedMark(), last);
    set.RemoveMarks({last});
    QSignalSpy told(&box, &SearchBox::Told);
    QTest::keyClick(&box, Qt::Key_Return);
    EXPECT_EQ(told.count(), 1) << "it is gone";

    ASSERT_TRUE(viewer->SetCoordSys(QStringLiteral("EPSG:32613")));
    box.clear();
    QTest::keyClicks(&box, QStringLiteral("500000, 4140000"));
    ASSERT_GE(list->count(), 1);
    EXPECT_EQ(list->item(0)->text(), QStringLiteral("500000.00, 4140000.00"));
}

TEST_F(Search, AnotherToolEndsThePicksAndKeepsItsEscape)
{
    struct Listener : QWidget
    {
        int escapes = 0;
        void keyPressEvent(QKeyEvent* event) override { escapes += event->key() == Qt::Key_Escape; }
    } listener;
    SightPick pick(viewer, viewer);
    for (const bool isLeft : {false, true}) {
        pick.Want(2);
        ASSERT_EQ(pick.Wanted(), 2);
        if (isLeft)
            viewer->SetToolType(ToolMeasureDistance);
        QTest::keyClick(&listener, Qt::Key_Escape);
        EXPECT_EQ(pick.Wanted(), 0);
        EXPECT_EQ(listener.escapes, isLeft ? 1 : 0);
        EXPECT_EQ(viewer->GetToolType(), isLeft ? ToolMeasureDistance : ToolNavigate);
    }
    pick.Want(2);
    viewer->SetToolType(ToolMeasureDistance);
    EXPECT_EQ(pick.Wanted(), 0) << "nothing is drawn behind the mouse of another tool";
    viewer->SetToolType(ToolNavigate);
}

TEST_F(Search, ANewLayerIsChosenAndKeepsItsRowWhileItIsFaded)
{
    LayerPanel panel(viewer);
    auto* tree = panel.findChild<QTreeWidget*>(QStringLiteral("Layers"));
    panel.Add(QCoreApplication::applicationDirPath() + "/trinidad_relief.tif", false);
    const QTreeWidgetItem* row = tree->currentItem();
    ASSERT_TRUE(row && row->text(0) == "trinidad_relief");
    panel.findChild<QSlider*>(QStringLiteral("LayerOpacity"))->setValue(40);
    EXPECT_EQ(tree->currentItem(), row);
    const AxMapLayer faded = viewer->GetMapLayers()->All().at(tree->indexOfTopLevelItem(tree->currentItem()));
    EXPECT_NEAR(faded.opacity, 0.4, 1e-6);
    EXPECT_TRUE(viewer->GetMapLayers()->Remove(faded.id));
}

TEST_F(Search, ControlPointsAreImportedAndGoWithTheProject)
{
    const QTemporaryDir folder;
    QFile file(folder.filePath(QStringLiteral("points.csv")));
    ASSERT_TRUE(file.open(QIODevice::WriteOnly));
    file.write("name,longitude,latitude,altitude\nGCP 1,-105,37.4,2500.5\nGCP 1,-105.1,37.4,2501\n");
    file.close();
    ModalBox boxes;
    ControlPointPanel panel(viewer);
    panel.Import(file.fileName());
    const QMap<QString, osg::Vec3d> points = viewer->GetControlPoints();
    ASSERT_EQ(points.keys(), (QStringList{"GCP 1", "GCP 1 2"}));
    EXPECT_EQ(boxes.count, 0);
    EXPECT_EQ(points["GCP 1"], osg::Vec3d(-105.0, 37.4, 2500.5));
    viewer->GetUndoStack()->undo();
    EXPECT_TRUE(viewer->GetControlPoints().isEmpty());
    viewer->GetUndoStack()->redo();
    EXPECT_EQ(viewer->GetControlPoints(), points);
    const QString kept = panel.Text();
    panel.SetText(QString());
    EXPECT_TRUE(viewer->GetControlPoints().isEmpty());
    panel.SetText(kept);
    EXPECT_EQ(viewer->GetControlPoints(), points);
    QSignalSpy told(&panel, &ControlPointPanel::Told);
    panel.SetText(QStringLiteral(R"([["A", 1, 2, 3], ["B", 1, 95, 3], 7])"));
    EXPECT_EQ(viewer->GetControlPoints().keys(), QStringList{"A"});
    EXPECT_EQ(told.count(), 1);
    panel.SetText(QString());
}

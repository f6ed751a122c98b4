// The panel of mark points on a real viewer, its files, and marks in a project.
#include "ModalBox.h"
#include "SuiteViewer.h"

#include "host/marks/MarkFiles.h"
#include "host/marks/MarkListModel.h"
#include "host/marks/MarkPanel.h"
#include "host/project/ProjectOnMap.h"
#include "interaction/marks/CAxOsgDrawPointSet.h"

#include <QFile>
#include <QSignalSpy>
#include <QTableView>
#include <QTemporaryDir>
#include <QUndoStack>

namespace {
class MarkPanels : public SuiteViewer
{
protected:
    void TearDown() override
    {
        viewer->RemoveAllHanderAdapter(true);
        viewer->GetUndoStack()->clear();
    }
    static CAxOsgDrawPointSet* Set() { return CAxOsgDrawPointSet::OfViewer(viewer); }
    static QString NameIn(const QTableView& list, int row)
    {
        return list.model()->index(row, MarkListModel::NameColumn).data().toString();
    }
};
} // namespace

TEST_F(MarkPanels, ListAndMapSelectRenameAndDeleteTheSameMarks)
{
    MarkPanel panel(viewer);
    auto* list = panel.findChild<QTableView*>("MarkList");
    QSignalSpy told(&panel, &MarkPanel::Told);
    panel.show();
    for (const char* name : {"Mark 10", "Mark 9", "Gate"})
        Set()->AddMark(-105.0, 37.4, name);
    ASSERT_TRUE(waitFor([&] { return list->model()->rowCount() == 3; }));
    EXPECT_EQ(NameIn(*list, 1), "Mark 9") << "numbers count as such";
    Set()->SelectMark(Set()->Marks()[0].id);
    ASSERT_TRUE(waitFor([&] { return list->currentIndex().row() == 2; }));
    Set()->SelectMarks({Set()->Marks()[0].id, Set()->Marks()[2].id});
    EXPECT_EQ(list->selectionModel()->selectedRows().size(), 2);
    EXPECT_EQ(list->currentIndex().row(), 0);
    Set()->SelectMark(Set()->Marks()[0].id);
    EXPECT_EQ(list->selectionModel()->selectedRows().size(), 1);
    QTest::keyClick(list, Qt::Key_Up, Qt::ShiftModifier);
    EXPECT_EQ(Set()->SelectedMarks().size(), 2);
    QTest::keyClick(list, Qt::Key_Down);
    QTest::keyClick(list, Qt::Key_Up);
    EXPECT_EQ(Set()->SelectedMark(), Set()->Marks()[1].id);

    EXPECT_FALSE(list->model()->setData(list->model()->index(1, MarkListModel::NameColumn), "Gate"));
    ASSERT_EQ(told.count(), 1);
    EXPECT_TRUE(list->model()->setData(list->model()->index(1, MarkListModel::NameColumn), "Tower"));
    EXPECT_EQ(Set()->Marks()[1].name, "Tower");
    ASSERT_TRUE(waitFor([&] { return NameIn(*list, 2) == "Tower"; })) << "it is sorted anew";
    QTest::keyClick(list, Qt::Key_Delete);
    EXPECT_EQ(Set()->GetMarkerPointName(), (QStringList{"Mark 10", "Gate"}));
    ASSERT_TRUE(waitFor([&] { return list->model()->rowCount() == 2; }));
    // Another project has another set.
    viewer->RemoveAllHanderAdapter(true);
    EXPECT_TRUE(waitFor([&] { return list->model()->rowCount() == 0; }));
    Set()->AddMark(-105.0, 37.4);
    EXPECT_TRUE(waitFor([&] { return list->model()->rowCount() == 1; }));
}

TEST_F(MarkPanels, FilesBringBackWhatWasWritten)
{
    QTemporaryDir folder;
    MarkPanel panel(viewer);
    const QString id = Set()->AddMark(-105.123456, 37.4, "Gate <1>, \"north\"");
    AxProjectMark mark = *Set()->Find(id);
    mark.description = "closed; ask";
    ASSERT_TRUE(Set()->EditMark(mark));
    Set()->AddMark(179.9999, -89.5, QStringLiteral("标记"));
    const QVector<AxProjectMark> before = Set()->Marks();
    QCoreApplication::processEvents();
    for (const char* name : {"marks.kml", "marks.csv", "marks.geojson", "marks.kmz"}) {
        const QString file = folder.filePath(QLatin1String(name));
        ModalBox box; // closes what tells of notes
        panel.show();
        ASSERT_TRUE(
            waitFor([&] { return panel.findChild<QTableView*>("MarkList")->model()->rowCount() == 2; }));
        ASSERT_TRUE(panel.Export(file)) << name;
        const auto read = MarkFiles::MarksOf(AxReadGeoFile(file));
        ASSERT_EQ(read.size(), 2) << name;
        for (int i = 0; i < 2; ++i) {
            EXPECT_EQ(read[i].name, before[i].name) << name;
            EXPECT_EQ(read[i].description, before[i].description) << name;
            EXPECT_NEAR(read[i].longitude, before[i].longitude, 1e-7) << name;
            EXPECT_NEAR(read[i].latitude, before[i].latitude, 1e-7) << name;
        }
        const int told = box.count;
        panel.Import(file);
        EXPECT_EQ(box.count, told) << name << ": there is nothing to tell of points";
        EXPECT_EQ(Set()->Marks().size(), 4);
        EXPECT_NE(Set()->Marks()[2].name, before[0].name);
        viewer->GetUndoStack()->undo();
        EXPECT_EQ(Set()->Marks().size(), 2) << "an import is one step";
        ASSERT_TRUE(
            waitFor([&] { return panel.findChild<QTableView*>("MarkList")->model()->rowCount() == 2; }));
    }
    QFile area(folder.filePath("area.csv"));
    ASSERT_TRUE(area.open(QIODevice::WriteOnly));
    area.write("nothing,here\n1,2\n");
    area.close();
    for (const QString& wrong : {area.fileName(), folder.filePath("none.kml")}) {
        ModalBox box;
        panel.Import(wrong);
        EXPECT_EQ(box.count, 1) << wrong.toStdString();
        EXPECT_FALSE(box.texts.join(QString()).contains("shapes")) << "of points it is told";
        EXPECT_EQ(Set()->Marks().size(), 2);
    }
    ModalBox box;
    EXPECT_FALSE(panel.Export(folder.filePath("marks.txt")));
    EXPECT_FALSE(panel.Export(folder.filePath("no/such/marks.kml")));
    EXPECT_EQ(box.count, 2);
}

TEST_F(MarkPanels, AProjectHasTheMarksOfTheMap)
{
    Set()->AddMark(-105.0, 37.4, "Gate");
    const AxProject saved = ProjectOnMap::Look(*viewer, {});
    ASSERT_EQ(saved.marks, Set()->Marks());
    ProjectOnMap::Show(*viewer, {});
    EXPECT_TRUE(ProjectOnMap::Look(*viewer, saved).marks.isEmpty()) << "those of the former project are gone";
    CAxControl::GetInstance()->SetProjectModified(false);
    ProjectOnMap::Show(*viewer, saved);
    EXPECT_EQ(ProjectOnMap::Look(*viewer, {}).marks, saved.marks);
    EXPECT_FALSE(CAxControl::GetInstance()->IsProjectModified());
    EXPECT_FALSE(viewer->GetUndoStack()->canUndo());
}

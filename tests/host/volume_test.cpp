// The panel of volumes: another base without drawing again, and files.
#include "analysis/AxVolumeAnalysis.h"
#include "host/volume/VolumeFile.h"
#include "host/volume/VolumePanel.h"
#include "NamedChild.h"
#include "SuiteViewer.h"

#include <AxData/CAxBlockManager.h>

#include <QComboBox>
#include <QFile>
#include <QPushButton>
#include <QSignalSpy>
#include <QTemporaryDir>
#include <QTreeWidget>

class Volumes : public SuiteViewer
{
protected:
    static AxVolumeAnalysis& Analysis() { return *viewer->GetVolumeAnalysis(); }
};

TEST_F(Volumes, AreListedMeasuredAnewAndWritten)
{
    VolumePanel panel(viewer);
    auto* list = child<QTreeWidget>(panel, "VolumeList");
    auto* base = child<QComboBox>(panel, "VolumeBase");
    QSignalSpy wanted(&panel, &VolumePanel::Wanted);
    AxVolumeQuestion question;
    question.ring = {{-105.01, 37.37}, {-104.98, 37.37}, {-104.98, 37.39}, {-105.01, 37.39}};
    question.cell = 50.0;
    ASSERT_TRUE(Analysis().Ask("one", "Volume 1", question));
    EXPECT_EQ(wanted.count(), 1);
    const auto answered = [] { return !Analysis().GetResult("one").isPending; };
    ASSERT_TRUE(QTest::qWaitFor(answered, 20000));
    ASSERT_EQ(list->topLevelItemCount(), 1);
    const QString cut = list->topLevelItem(0)->text(1);
    EXPECT_TRUE(cut.contains(QString::fromUtf8("m³"))) << qPrintable(cut);
    base->setCurrentIndex(base->findData(static_cast<int>(AxVolumeBase::LowestOfRim)));
    child<QPushButton>(panel, "VolumeCompute")->click();
    ASSERT_TRUE(QTest::qWaitFor(answered, 20000));
    EXPECT_NE(list->topLevelItem(0)->text(1), cut);
    list->topLevelItem(0)->setCheckState(0, Qt::Unchecked);
    EXPECT_FALSE(Analysis().GetResult("one").isVisible);

    // Of a block, which is no measurement; one without an area is told.
    CAxBlockManager::instance().AddBlock("block", CAxBlock::PolygonBlock)->SetAnchor(question.ring);
    ASSERT_TRUE(viewer->ImportShapeNode("block"));
    EXPECT_EQ(VolumePanel::MeasureBlock(*viewer, "block"), QString());
    ASSERT_TRUE(QTest::qWaitFor([] { return !Analysis().GetResult("block").isPending; }, 20000));
    ASSERT_TRUE(Analysis().GetResult("block").volume);
    EXPECT_NEAR(Analysis().GetResult("block").volume->area, Analysis().GetResult("one").volume->area, 1.0);
    viewer->RemoveAllHanderAdapter(true);
    EXPECT_TRUE(Analysis().Remove("block"));
    list->setCurrentItem(list->topLevelItem(0));

    const AxVolume& volume = *Analysis().GetResult("one").volume;
    const QTemporaryDir folder;
    const QString picture = folder.filePath("v.tif"), table = folder.filePath("v.csv");
    const std::atomic<bool> isOff = false;
    EXPECT_EQ(WriteVolumeFile(picture, volume, false, isOff), QString());
    EXPECT_EQ(WriteVolumeFile(table, volume, true, isOff), QString());
    for (const bool isTable : {false, true})
        EXPECT_TRUE(WriteVolumeFile(folder.filePath("none/v"), volume, isTable, isOff).contains("none"));
    QFile rows(table);
    ASSERT_TRUE(rows.open(QIODevice::ReadOnly));
    EXPECT_GT(rows.readAll().count('\n'), 1000);

    child<QPushButton>(panel, "VolumeRemove")->click();
    EXPECT_EQ(list->topLevelItemCount(), 0);
    EXPECT_TRUE(Analysis().GetResults().isEmpty());
}

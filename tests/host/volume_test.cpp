// The panel of volumes: another base without drawing again, and files.
#include "analysis/AxVolumeAnalysis.h"
#include "host/volume/VolumeFile.h"
#include "host/volume/VolumeKept.h"
#include "host/volume/VolumePanel.h"
#include "interaction/AxMeasurements.h"
#include "ModalBox.h"
#include "NamedChild.h"
#include "SuiteViewer.h"

#include <AxData/CAxBlockManager.h>

#include <QComboBox>
#include <QFile>
#include <QJsonArray>
#include <QJsonDocument>
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
    const std::atomic<bool> wasOff = true;
    EXPECT_NE(WriteVolumeFile(folder.filePath("off.tif"), volume, false, wasOff), QString());
    EXPECT_FALSE(QFile::exists(folder.filePath("off.tif")));
    QFile rows(table);
    ASSERT_TRUE(rows.open(QIODevice::ReadOnly));
    EXPECT_GT(rows.readAll().count('\n'), 1000);

    ModalBox box;
    box.answers = {ModalBox::Press("Cancel"), ModalBox::Press("Remove")};
    child<QPushButton>(panel, "VolumeRemove")->click();
    EXPECT_EQ(list->topLevelItemCount(), 1);
    child<QPushButton>(panel, "VolumeRemove")->click();
    EXPECT_EQ(list->topLevelItemCount(), 0);
    EXPECT_TRUE(Analysis().GetResults().isEmpty());
}

TEST_F(Volumes, GoWithTheProjectAndAreComputedAnew)
{
    VolumePanel panel(viewer);
    VolumeKept& kept = *panel.Kept();
    AxMeasurements& measured = *viewer->GetMeasurements();
    const auto answered = [] { return !Analysis().IsBusy(); };
    AxVolumeQuestion question;
    question.base = AxVolumeBase::Height;
    question.height = 3000.5;
    question.cell = 50.0;
    Analysis().SetNext(question);
    AxMeasurement drawn;
    drawn.id = "drawn";
    drawn.tool = ToolMeasureVolume;
    drawn.name = "Volume 1";
    drawn.points = {{-105.01, 37.37, 0}, {-104.98, 37.37, 0}, {-104.98, 37.39, 0}};
    ASSERT_TRUE(measured.Restore(drawn));
    EXPECT_FALSE(measured.Restore(drawn)) << "the ID is in use";
    ASSERT_TRUE(QTest::qWaitFor(answered, 20000));
    question.ring = {{-105.01, 37.37}, {-104.98, 37.37}, {-104.98, 37.39}, {-105.01, 37.39}};
    ASSERT_TRUE(Analysis().Ask("block", "Volume of A", question));
    Analysis().SetVisible("block", false);
    ASSERT_TRUE(QTest::qWaitFor(answered, 20000));
    const double cut = Analysis().GetResult("drawn").volume->cut;
    const QString text = kept.Text();

    QSignalSpy wanted(&panel, &VolumePanel::Wanted);
    kept.SetText(QString());
    EXPECT_TRUE(Analysis().GetResults().isEmpty());
    EXPECT_TRUE(measured.All().isEmpty());
    EXPECT_EQ(kept.Text(), QString());
    kept.SetText(text);
    EXPECT_EQ(kept.Text(), text) << "opening changes nothing, whatever is found yet";
    ASSERT_TRUE(QTest::qWaitFor(answered, 20000));
    EXPECT_EQ(wanted.count(), 0) << "no panel comes up";
    ASSERT_TRUE(measured.Find("drawn"));
    EXPECT_EQ(measured.Find("drawn")->values.Of(AxQuantity::Cut), cut);
    EXPECT_FALSE(measured.Find("drawn")->isPending);
    EXPECT_FALSE(measured.Find("block"));
    EXPECT_FALSE(Analysis().GetResult("block").isVisible);
    EXPECT_TRUE(Analysis().GetResult("block").volume);

    // Each with the field that is told, between others that open all the same.
    const QString good = R"({"id":"g","name":"G","ring":[[-105.01,37.37],[-104.98,37.37],[-104.98,37.39]],)"
                         R"("base":"mean","height":0,"cell":%1})";
    const struct
    {
        const char* what;
        const char* wrong;
        const char* field;
    } damaged[] = {{R"("id":"g")", R"("id":"")", "id"},
                   {R"("name":"G")", R"("name":7)", "name"},
                   {"37.37]", R"("x"])", "ring"},
                   {"mean", "mode", "base"},
                   {R"("height":0)", R"("height":null)", "height"},
                   {"%1", "-1", "cell"},
                   {"}", R"(,"hidden":1})", "hidden"}};
    QSignalSpy told(&kept, &VolumeKept::Unread);
    for (const auto& one : damaged) {
        const QString entry = QString(good).replace(one.what, one.wrong).replace("%1", "50");
        kept.SetText('[' + entry + ',' + good.arg(50) + ']');
        ASSERT_EQ(told.count(), 1) << one.field;
        EXPECT_TRUE(told.takeFirst()[0].toString().endsWith(QString(": ") + one.field)) << one.field;
        EXPECT_EQ(Analysis().GetResults().size(), 1) << one.field;
        EXPECT_EQ(QJsonDocument::fromJson(kept.Text().toUtf8()).array().size(), 2) << "nothing is lost";
    }
    kept.SetText("no list");
    EXPECT_EQ(told.count(), 1);
    // A large one waits until somebody asks for it.
    kept.SetText('[' + good.arg(1) + ']');
    EXPECT_EQ(Analysis().GetResult("g").fault, AxVolumeFault::Many);
    EXPECT_FALSE(Analysis().IsBusy());
    kept.SetText(QString());
}

// Measurements beside the map: the list, what is copied, what is written.
#include "host/measure/MeasureFile.h"
#include "host/measure/MeasureKept.h"
#include "host/measure/MeasureList.h"
#include "host/measure/MeasurePanel.h"
#include "interaction/AxMeasurements.h"
#include "interaction/CAxHandleAdapter.h"
#include "SuiteViewer.h"

#include <AxData/CAxControl.h>

#include <osgEarth/GeoData>
#include <osgEarth/SpatialReference>
#include <osgEarth/Viewpoint>

#include <QAction>
#include <QApplication>
#include <QClipboard>
#include <QMimeData>
#include <QSignalSpy>
#include <QTemporaryDir>

#include <algorithm>

namespace {
/// Measures a path without the mouse.
void MeasurePath(CAxEarthViewer& viewer, const std::vector<osg::Vec3d>& path)
{
    viewer.SetToolType(ToolMeasureDistance);
    CAxHandleAdapter* drawn = viewer.createShapeNode();
    ASSERT_TRUE(drawn);
    const osg::Vec3d onGlobe(6378137.0, 0.0, 0.0);
    for (const osg::Vec3d& place : path)
        drawn->slotPicked(place, onGlobe);
    drawn->slotDoubleClicked(path.back(), onGlobe);
    viewer.SetToolType(ToolNavigate);
}
} // namespace

class Measurements : public SuiteViewer
{
};

TEST_F(Measurements, AreShownCopiedAndWrittenWithTheSameValues)
{
    AxMeasurements& kept = *viewer->GetMeasurements();
    kept.Clear();
    MeasurePanel panel(viewer);
    panel.show();
    MeasurePath(*viewer, {{-105.0, 37.4, 0.0}, {-104.9, 37.45, 0.0}, {-104.8, 37.4, 0.0}});
    MeasurePath(*viewer, {{179.99, -17.0, 0.0}, {-179.99, -17.0, 0.0}});
    ASSERT_EQ(kept.All().size(), 2);
    ASSERT_TRUE(QTest::qWaitFor([&] { return !kept.All()[0].isPending && !kept.All()[1].isPending; }, 60000));

    auto* list = panel.findChild<MeasureList*>();
    ASSERT_EQ(list->topLevelItemCount(), 2);
    const QVector<AxMeasurement> all = kept.All();
    EXPECT_EQ(list->ChosenIDs(), QStringList{all[1].id}) << "the latest one";
    EXPECT_EQ(kept.Highlighted(), QStringList{all[1].id});
    EXPECT_LT(all[1].values.Of(AxQuantity::Length), 3000.0) << "not around the earth";
    EXPECT_EQ(list->topLevelItem(0)->childCount(), 2);
    const int lengths = 1 + AxMeasureText::All().indexOf(AxQuantity::Length);
    for (int i = 0; i < 2; ++i)
        EXPECT_EQ(list->topLevelItem(i)->text(lengths),
                  AxMeasureText::Value({AxQuantity::Length, all[i].values.Of(AxQuantity::Length)}));

    list->selectAll();
    const QTemporaryDir folder;
    const QString kml = folder.filePath(QStringLiteral("measured.kml"));
    ASSERT_EQ(MeasureFile::Write(kml, list->Chosen()), QString());
    const AxGeoContent read = AxReadGeoFile(kml);
    ASSERT_EQ(read.shapes.size(), 2) << read.fault.toStdString();
    const QList<QByteArray> rows = MeasureFile::Csv(list->Chosen()).split('\n');
    ASSERT_EQ(rows.size(), 1 + 3 + 2 + 1)
        << "titles, the whole and two parts, the whole and its part, the end";
    const int column = rows[0].split(',').indexOf("over_ground_m");
    for (int i = 0; i < 2; ++i) {
        EXPECT_EQ(read.shapes[i].name, all[i].name);
        EXPECT_EQ(read.shapes[i].attributes.value(QStringLiteral("over_ground_m")).toDouble(),
                  rows[i == 0 ? 1 : 4].split(',').value(column).toDouble());
        EXPECT_NEAR(read.shapes[i].attributes.value(QStringLiteral("length_m")).toDouble(),
                    all[i].values.Of(AxQuantity::Length), 1e-6);
    }
    EXPECT_FALSE(MeasureFile::Write(folder.filePath(QStringLiteral("no/such.csv")), all).isEmpty());
    EXPECT_FALSE(MeasureFile::Write(folder.filePath(QStringLiteral("measured.txt")), all).isEmpty());

    const auto trigger = [&](const QKeySequence& keys) {
        for (QAction* action : panel.Actions())
            if (action->shortcut() == keys)
                action->trigger();
    };
    trigger(QKeySequence::Copy);
    EXPECT_EQ(QApplication::clipboard()->mimeData()->data(QStringLiteral("text/csv")), MeasureFile::Csv(all));
    EXPECT_TRUE(QApplication::clipboard()->text().contains(all[0].name));
    list->Select(all[0].id);
    trigger(QKeySequence::Delete);
    EXPECT_EQ(kept.All().size(), 1);
    EXPECT_EQ(list->topLevelItemCount(), 1);
    kept.Clear();
}

TEST_F(Measurements, AClickWhileBrowsingSelectsWhatIsSeenThere)
{
    AxMeasurements& kept = *viewer->GetMeasurements();
    kept.Clear();
    MeasurePanel panel(viewer);
    panel.show();
    MeasurePath(*viewer, {{-105.05, 37.4, 0.0}, {-104.95, 37.4, 0.0}});
    MeasurePath(*viewer, {{-105.05, 37.43, 0.0}, {-104.95, 37.43, 0.0}});
    const QStringList ids{kept.All()[0].id, kept.All()[1].id};
    auto* list = panel.findChild<MeasureList*>();
    CAxEarthManipulator* camera = viewer->getManipulator();
    camera->setViewpoint(osgEarth::Viewpoint("", -104.95, 37.4, 2500.0, 0.0, -90.0, 20000.0), 0.0);
    ASSERT_TRUE(WaitForPicture());
    ASSERT_TRUE(waitFor([&] { return !kept.All()[0].isPending && !kept.All()[1].isPending; }));
    const osgEarth::SpatialReference* geographic = viewer->getSRS()->getGeographicSRS();
    // About 18 m a pixel; the texts stand to the upper right of the last points, far from the border.
    const struct
    {
        const char* what;
        double longitude, latitude;
        EToolType tool;
        QStringList chosen;
    } rows[] = {
        {"a line", -105.01, 37.4, ToolNavigate, {ids[0]}},
        {"beside all", -105.01, 37.41, ToolNavigate, {ids[0]}},
        {"another tool", -105.01, 37.43, ToolMeasureDistance, {ids[0]}},
        {"a text", -104.938, 37.434, ToolNavigate, {ids[1]}},
        {"the point", -104.95, 37.4, ToolNavigate, {ids[0]}},
    };
    for (const auto& row : rows) {
        viewer->SetToolType(row.tool);
        osg::Vec3d world;
        const double ground = viewer->GetElevation(row.longitude, row.latitude);
        osgEarth::GeoPoint(geographic, row.longitude, row.latitude, ground, osgEarth::ALTMODE_ABSOLUTE)
            .toWorld(world);
        emit camera->mouseLeftBtnClick(osg::Vec3d(row.longitude, row.latitude, ground), world);
        QCoreApplication::processEvents();
        EXPECT_EQ(list->ChosenIDs(), row.chosen) << row.what;
        EXPECT_EQ(kept.Highlighted(), row.chosen) << row.what;
    }
    viewer->SetToolType(ToolNavigate);
    kept.Clear();
}

TEST_F(Measurements, GoWithTheProjectAndAreMeasuredAnew)
{
    AxMeasurements& all = *viewer->GetMeasurements();
    all.Clear();
    MeasurePanel panel(viewer);
    MeasureKept& kept = *panel.Kept();
    const auto measured = [&] {
        const auto isDone = [&] {
            const QVector<AxMeasurement> now = all.All();
            return std::none_of(now.begin(), now.end(),
                                [](const AxMeasurement& one) { return one.isPending; });
        };
        return QTest::qWaitFor(isDone, 60000);
    };
    MeasurePath(*viewer, {{-105.0, 37.4, 0.0}, {-104.9, 37.45, 0.0}});
    AxMeasurement area;
    area.id = "area";
    area.tool = ToolMeasureArea;
    area.name = "Area 7";
    area.points = {{179.99, -17.0, 0.0}, {-179.99, -17.0, 0.0}, {180.0, -16.99, 0.0}};
    ASSERT_TRUE(all.Restore(area));
    ASSERT_TRUE(measured());
    const double length = all.All()[0].values.Of(AxQuantity::OverGround);
    const QString text = kept.Text();
    kept.SetText({});
    EXPECT_TRUE(all.All().isEmpty());
    CAxControl::GetInstance()->SetProjectModified(false);
    kept.SetText(text);
    EXPECT_FALSE(CAxControl::GetInstance()->IsProjectModified()) << "opening changes nothing";
    ASSERT_EQ(all.All().size(), 2);
    ASSERT_TRUE(measured());
    EXPECT_DOUBLE_EQ(all.All()[0].values.Of(AxQuantity::OverGround), length);
    EXPECT_EQ(all.All()[1].name, "Area 7");
    EXPECT_EQ(kept.Text(), text);
    all.Remove("area");
    EXPECT_TRUE(CAxControl::GetInstance()->IsProjectModified());

    QSignalSpy told(&kept, &MeasureKept::Unread);
    for (const auto& [field, entry] :
         {std::pair{"id", R"([{"name":"A","kind":"area","points":[[0,1]]}])"},
          {"kind", R"([{"id":"a","name":"A","kind":"mass","points":[[0,1]]}])"},
          {"points", R"([{"id":"a","name":"A","kind":"area","points":[[0,"x"]]}])"},
          {"points", R"([{"id":"a","name":"A","kind":"area","points":[[0,91]]}])"},
          {"without a name", "7"}}) {
        told.clear();
        kept.SetText(entry);
        ASSERT_EQ(told.size(), 1) << entry;
        EXPECT_TRUE(told[0][0].toString().contains(field)) << told[0][0].toString().toStdString();
        EXPECT_FALSE(kept.Text().isEmpty()) << "nothing is lost";
    }
    kept.SetText({});
}

// The host's list of no-fly zones.
#include "analysis/CAxAncillaryProcess.h"
#include "host/CameraRest.h"
#include "host/ZoneListModel.h"
#include "host/ZonePanel.h"
#include "viewer/overlay/CAxMapToolsWidget.h"
#include "ViewerFixture.h"

#include <QAbstractItemModelTester>
#include <QAction>
#include <QBrush>
#include <QCheckBox>
#include <QCursor>
#include <QSignalSpy>
#include <QTreeView>

#include <cmath>
#include <memory>

namespace {
AxNoflyZoneNear Zone(const char* id, double distance = 1000.0, double bearing = 0.0,
                     const QList<AxNoflyLift>& lifts = {})
{
    return {QString::fromUtf8(id), 8.0, 47.0, distance, bearing, lifts};
}

std::string TextAt(const QAbstractItemModel& model, int row, int column,
                   const QModelIndex& parent = QModelIndex())
{
    return model.index(row, column, parent).data().toString().toStdString();
}

class ZonePanelOnMap : public ViewerFixture
{
protected:
    static void SetUpTestSuite()
    {
        Open();
        ASSERT_TRUE(viewer->GetAncillaryProcess());
        // Rows under the mouse stay, wherever the suite before has left it.
        QCursor::setPos(1500, 1100);
        camera = new CameraRest(viewer, nullptr);
        panel = new ZonePanel(viewer, camera);
        panel->resize(400, 300);
        panel->show();
        panel->Start();
        camera->Start();
    }
    static void TearDownTestSuite()
    {
        delete panel;
        delete camera;
        Close();
    }

    static QTreeView* List() { return panel->findChild<QTreeView*>(QStringLiteral("ZoneList")); }
    /// The zones of the list and, behind them, their lifts.
    static QString Listed()
    {
        const QAbstractItemModel* model = List()->model();
        QStringList texts;
        for (int row = 0; row < model->rowCount(); ++row) {
            const QModelIndex zone = model->index(row, 0);
            texts += zone.data().toString();
            for (int lift = 0; lift < model->rowCount(zone); ++lift)
                texts += model->index(lift, 0, zone).data().toString();
        }
        return texts.join(QStringLiteral("; "));
    }
    static void LookAt(double longitude, double latitude)
    {
        constexpr double range = 30000.0;
        viewer->getManipulator()->setViewpoint(
            osgEarth::Viewpoint("", longitude, latitude, 0.0, 0.0, -90.0, range), 0.0);
    }

    static CameraRest* camera;
    static ZonePanel* panel;
};

CameraRest* ZonePanelOnMap::camera = nullptr;
ZonePanel* ZonePanelOnMap::panel = nullptr;
} // namespace

TEST(ZoneListModel, WritesDistancesAndBearingsForPeople)
{
    const struct
    {
        double distance, bearing;
        const char *distanceText, *bearingText;
    } rows[] = {
        {0.0, 0.0, "0 m", ""},
        {994.0, 44.6, "990 m", "045\u00b0 NE"},
        {996.0, 67.4, "1.0 km", "067\u00b0 NE"},
        {12340.0, 180.0, "12.3 km", "180\u00b0 S"},
        {99960.0, 270.2, "100 km", "270\u00b0 W"},
        {250400.0, 359.7, "250 km", "000\u00b0 N"},
    };
    ZoneListModel model;
    for (const auto& row : rows) {
        model.SetZones({Zone("Z", row.distance, row.bearing)});
        EXPECT_EQ(TextAt(model, 0, ZoneListModel::DistanceColumn), row.distanceText);
        EXPECT_EQ(TextAt(model, 0, ZoneListModel::BearingColumn), row.bearingText);
    }
}

TEST(ZoneListModel, MarksLiftsThatAreOutOfDate)
{
    ZoneListModel model;
    QAbstractItemModelTester tester(&model, QAbstractItemModelTester::FailureReportingMode::Fatal);
    const AxNoflyLift valid{QStringLiteral("2026-01-01"), QStringLiteral("2099-12-31"), false};
    const AxNoflyLift past{QStringLiteral("2019-05-01"), QStringLiteral("2020-05-01"), true};
    model.SetZones({Zone("A"), Zone("B", 2.0, 0.0, {valid, past, {QString(), QString(), false}})});
    const QModelIndex zone = model.index(1, 0);
    EXPECT_EQ(model.rowCount(model.index(0, 0)), 0);
    ASSERT_EQ(model.rowCount(zone), 3);
    EXPECT_EQ(TextAt(model, 0, 0, zone), "Lift from 2026-01-01 until 2099-12-31");
    EXPECT_EQ(TextAt(model, 1, 0, zone), "Lift from 2019-05-01 until 2020-05-01: out of date");
    EXPECT_EQ(TextAt(model, 2, 0, zone), "Lift without dates");
    const auto colour = [&](int lift) { return model.index(lift, 0, zone).data(Qt::ForegroundRole); };
    EXPECT_FALSE(colour(0).isValid());
    EXPECT_TRUE(colour(1).isValid());
    EXPECT_TRUE(model.index(1, 0, zone).data(Qt::ToolTipRole).toString().contains(QStringLiteral("expired")));
    EXPECT_EQ(model.ZoneOf(model.index(1, 0, zone))->id, QStringLiteral("B"));
}

TEST(ZoneListModel, OtherDistancesAloneKeepItsRows)
{
    ZoneListModel model;
    model.SetZones({Zone("A", 10.0), Zone("B", 20.0)});
    QSignalSpy reset(&model, &ZoneListModel::modelReset);
    QSignalSpy changed(&model, &ZoneListModel::dataChanged);
    model.SetZones({Zone("A", 30.0), Zone("B", 40.0)});
    EXPECT_EQ(reset.size(), 0);
    EXPECT_EQ(changed.size(), 1);
    EXPECT_EQ(TextAt(model, 1, ZoneListModel::DistanceColumn), "40 m");
    model.SetZones({Zone("A", 30.0), Zone("B", 40.0, 0.0, {{QString(), QString(), true}})});
    EXPECT_EQ(reset.size(), 1);
    model.UpdateRows({Zone("C", 5.0), Zone("B", 60.0)});
    EXPECT_EQ(reset.size(), 1);
    EXPECT_EQ(TextAt(model, 0, ZoneListModel::ZoneColumn), "A");
    EXPECT_EQ(TextAt(model, 0, ZoneListModel::DistanceColumn), "") << "not known any more";
    EXPECT_EQ(TextAt(model, 1, ZoneListModel::DistanceColumn), "60 m");
    model.SetZones({});
    EXPECT_EQ(model.rowCount(), 0);
    EXPECT_EQ(model.RowOf(QStringLiteral("A")), -1);
}

TEST_F(ZonePanelOnMap, FollowsTheCameraAndListsTheNearestFirst)
{
    LookAt(60.2, 45.3);
    EXPECT_TRUE(waitFor([] { return Listed() == QStringLiteral("T1; T2"); })) << Listed().toStdString();
    LookAt(61.55, 46.5);
    const QString both = QStringLiteral("T4; Lift from 2019-05-01 until 2020-05-01: out of date");
    EXPECT_TRUE(waitFor([&] { return Listed() == both; })) << Listed().toStdString();
    LookAt(0.0, 0.0);
    EXPECT_TRUE(waitFor([] { return Listed().isEmpty(); }));
}

TEST_F(ZonePanelOnMap, RowsStayWhereTheyAreUnderTheMouse)
{
    LookAt(60.2, 45.3);
    ASSERT_TRUE(waitFor([] { return Listed() == QStringLiteral("T1; T2"); }));
    QEvent enter(QEvent::Enter);
    QCoreApplication::sendEvent(List()->viewport(), &enter);
    QSignalSpy rested(camera, &CameraRest::Rested);
    LookAt(60.6, 45.5);
    ASSERT_TRUE(waitFor([&] { return !rested.isEmpty(); }));
    EXPECT_EQ(Listed(), QStringLiteral("T1; T2"));
    EXPECT_EQ(TextAt(*List()->model(), 1, ZoneListModel::DistanceColumn), "0 m");
    QEvent leave(QEvent::Leave);
    QCoreApplication::sendEvent(List()->viewport(), &leave);
    EXPECT_TRUE(waitFor([] { return Listed() == QStringLiteral("T2; T1"); })) << Listed().toStdString();
}

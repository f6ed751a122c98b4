// The host's window: from a list of no-fly zones to an application that a server takes.
#include "DrivenHost.h"
#include "LoopbackFormServer.h"

#include <QTest>

#include <cmath>
#include <memory>

namespace {
using Event = DrivenHost::Event;

class DrivenZones : public testing::Test
{
protected:
    // Over the zone T1 of the tests' zone file, with T2 in the north-east of it.
    void SetUp() override
    {
        const QString folder = QCoreApplication::applicationDirPath();
        host = std::make_unique<DrivenHost>(QStringList{
            "--map", folder + QStringLiteral("/google_cn_net_no.earth"), "--zones",
            folder + QStringLiteral("/TestZones.db"), "--apply-url", server.url().toString(), "--view",
            "60.2,45.3,0,0,-90,40000", "--size", "1200x800", "--lang", "en", "--log", "-", "--no-voice"});
        ASSERT_TRUE(host->NextSignal("signalLoadEarth"));
        ASSERT_TRUE(RestsAt(60.2, 45.3));
        ASSERT_TRUE(host->NextOf("picture"));
        host->TakeFocus();
    }
    void TearDown() override { EXPECT_EQ(host->Quit(), 0); }

    bool RestsAt(double longitude, double latitude)
    {
        return host
            ->NextView([=](const Event& view) {
                return std::abs(view["longitude"].toDouble() - longitude) < 1e-3 &&
                       std::abs(view["latitude"].toDouble() - latitude) < 1e-3;
            })
            .has_value();
    }

    LoopbackFormServer server;
    std::unique_ptr<DrivenHost> host;
};
} // namespace

TEST_F(DrivenZones, TheBoxShowsZonesAndARowFliesToItsZone)
{
    const auto shown = [this](bool wanted) {
        return host
            ->Next([wanted](const Event& event) {
                return event["event"] == "zones" && event["shown"].toBool() == wanted;
            })
            .has_value();
    };
    host->Do(host->ToShowZones() << QStringList{"click", "1"});
    EXPECT_TRUE(shown(true));
    host->Do(host->ToZone(1) << QStringList{"click", "1"});
    EXPECT_TRUE(RestsAt(60.6, 45.5));
    host->Do(host->ToShowZones() << QStringList{"click", "1"});
    EXPECT_TRUE(shown(false));
}

TEST_F(DrivenZones, AnAreaIsDrawnAndItsApplicationArrivesAtTheServer)
{
    constexpr int applicationTool = 7;
    host->Do(host->ToTool(applicationTool) << QStringList{"click", "1"});
    const QPoint centre = host->Centre();
    host->Do(host->To(centre + QPoint(-90, -60)) << QStringList{"click", "1"});
    ASSERT_TRUE(host->NextSignal("mouseLeftBtnClick"));
    host->Do(host->To(centre + QPoint(90, 60)) << QStringList{"click", "1"});
    const auto met = host->NextSignal("signalIntersection");
    ASSERT_TRUE(met);
    EXPECT_EQ((*met)["args"].toArray().at(1), QJsonValue(QJsonArray{"T1"}));

    const QString form = QStringLiteral("^Application to fly$");
    host->TakeFocus(form);
    // Each of the two times takes a tab for year, month, day, hour and minute.
    host->Do({"type", "--delay", "20",
              "Ming\t\t12345678\tming@survey.example\tVTOL\tB-71\tQuarry\t\t\t\t\t\t\t\t\t\t\t90"});
    host->Do({"key", "Return"});
    ASSERT_TRUE(QTest::qWaitFor([this] { return server.bodies.size() == 1; }, 60000));
    for (const char* part : {"name=\"zone_id\"\r\nContent-Type: text/plain; charset=utf-8\r\n\r\nT1\r\n",
                             "\r\n\r\nMing\r\n", "\r\n\r\nQuarry\r\n", "\r\n\r\n90\r\n", "\x89PNG\r\n"})
        EXPECT_TRUE(server.bodies[0].contains(part)) << part;
    EXPECT_TRUE(QTest::qWaitFor([&form] { return !DrivenHost::HasWindow(form); }, 60000)) << "it was sent";
    const QString notice = QStringLiteral("^Application Information$");
    host->TakeFocus(notice);
    host->Do({"key", "Return"});
    EXPECT_TRUE(QTest::qWaitFor([&notice] { return !DrivenHost::HasWindow(notice); }, 60000));
    host->TakeFocus();
}

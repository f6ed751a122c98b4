// What the window keeps from one run to the next.
#include "DrivenHost.h"

#include <QSettings>
#include <QTemporaryDir>

#include <cmath>

namespace {
using Event = DrivenHost::Event;

class KeptState : public testing::Test
{
protected:
    QStringList Words(const QStringList& further = {}) const
    {
        const QString programs = QCoreApplication::applicationDirPath();
        return QStringList{"--map",      programs + "/google_cn_net_no.earth",
                           "--zones",    programs + "/TestZones.db",
                           "--settings", folder.filePath("settings.ini"),
                           "--lang",     "en",
                           "--log",      "-",
                           "--no-voice"} +
               further;
    }
    static bool ShowsZones(DrivenHost& host)
    {
        return host
            .Next([](const Event& event) { return event["event"] == "zones" && event["shown"].toBool(); })
            .has_value();
    }

    QTemporaryDir folder;
};
} // namespace

TEST_F(KeptState, WindowViewAndSwitchesAreAsTheyWereLeft)
{
    const auto isAlps = [](const Event& view) {
        return std::abs(view["longitude"].toDouble() - 8.0) < 1e-6 &&
               std::abs(view["range"].toDouble() - 5e4) < 1.0;
    };
    QSize globe;
    {
        DrivenHost host(Words({"--size", "900x700", "--view", "8,47,0,0,-90,50000"}));
        ASSERT_TRUE(host.NextSignal("signalLoadEarth"));
        ASSERT_TRUE(host.NextView(isAlps));
        host.TakeFocus();
        host.Do(host.ToShowZones() << QStringList{"click", "1"});
        ASSERT_TRUE(ShowsZones(host));
        globe = host.GlobeSize();
        EXPECT_EQ(host.Quit(), 0);
    }
    {
        DrivenHost host(Words());
        ASSERT_TRUE(host.NextSignal("signalLoadEarth"));
        EXPECT_TRUE(ShowsZones(host));
        EXPECT_TRUE(host.NextView(isAlps));
        EXPECT_EQ(host.GlobeSize(), globe);
        host.TakeFocus();
        EXPECT_EQ(host.Quit(), 0);
    }
    // What somebody else wrote there is no reason not to start.
    QSettings settings(folder.filePath("settings.ini"), QSettings::IniFormat);
    for (const QString& key : settings.allKeys())
        settings.setValue(key, QByteArray("nonsense"));
    settings.sync();
    DrivenHost host(Words());
    EXPECT_TRUE(host.NextView([](const Event& view) { return view["range"].toDouble() > 2e7; })) << "at home";
    host.TakeFocus();
    EXPECT_EQ(host.Quit(), 0);
}

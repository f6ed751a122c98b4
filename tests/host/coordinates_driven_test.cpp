// A coordinate is typed in the chosen system, and flown to.
#include "DrivenHost.h"

#include <QSettings>
#include <QTemporaryDir>

#include <cmath>

TEST(Coordinates, ATypedOneIsFlownToInTheKeptSystem)
{
    QTemporaryDir folder;
    const QString settings = folder.filePath("settings.ini");
    QSettings(settings, QSettings::IniFormat).setValue("coordinates", QByteArray("EPSG:32632"));
    const QString programs = QCoreApplication::applicationDirPath();
    DrivenHost host({"--map", programs + "/google_cn_net_no.earth", "--zones", programs + "/TestZones.db",
                     "--settings", settings, "--lang", "en", "--log", "-", "--no-voice", "--view",
                     "20,10,0,0,-90,50000"});
    ASSERT_TRUE(host.NextSignal("signalLoadEarth"));
    ASSERT_TRUE(host.NextView(
        [](const DrivenHost::Event& view) { return std::abs(view["longitude"].toDouble() - 20.0) < 1e-6; }));
    host.TakeFocus();
    host.Do({"key", "ctrl+g"});
    host.TakeFocus(QStringLiteral("^Go to a coordinate$"));
    // Half of it is not taken, and Enter leaves the box open.
    host.Do({"type", "500000,"});
    host.Do({"key", "Return"});
    host.Do({"type", "5205000"});
    host.Do({"key", "Return"});
    // As gdaltransform converts it.
    EXPECT_TRUE(host.NextView([](const DrivenHost::Event& view) {
        return std::abs(view["longitude"].toDouble() - 9.0) < 1e-6 &&
               std::abs(view["latitude"].toDouble() - 46.9985232) < 1e-6;
    }));
    host.TakeFocus();
    EXPECT_EQ(host.Quit(), 0);
}

// The host that is killed, and what the next one finds.
#include "DrivenHost.h"

#include <AxData/project/AxProjectFile.h>

#include <QDir>
#include <QFile>
#include <QTemporaryDir>

namespace {
using Event = DrivenHost::Event;

bool isNamed(const Event& event, const char* name)
{
    return event["event"] == "block" && event["name"] == QLatin1String(name);
}

QString nameInFile(const QString& path)
{
    const AxProject project = AxReadProject(path).project;
    return project.blocks.isEmpty() ? QString() : project.blocks[0].name;
}
} // namespace

TEST(ProjectDriven, AnEditIsFoundAgainAfterTheProgramWasKilled)
{
    const QTemporaryDir folder;
    const QString path = folder.filePath(QStringLiteral("survey.axproject"));
    AxProject project;
    project.blocks.resize(1);
    project.blocks[0].id = QStringLiteral("id");
    project.blocks[0].name = QStringLiteral("Quarry");
    project.blocks[0].anchors = {{116.0, 39.0}, {116.5, 39.0}, {116.5, 39.5}};
    ASSERT_TRUE(AxWriteProject(path, project));
    const QString programs = QCoreApplication::applicationDirPath();
    const QStringList words{"--map",      programs + "/google_cn_net_no.earth",
                            "--zones",    programs + "/TestZones.db",
                            "--settings", folder.filePath("settings.ini"),
                            "--size",     "1000x720",
                            "--lang",     "en",
                            "--log",      "-",
                            "--no-voice"};
    const QDir recovery(folder.filePath(QStringLiteral("settings.ini.recovery")));
    const auto isKept = [&recovery] {
        for (const QFileInfo& info : recovery.entryInfoList({QStringLiteral("*.axrecovery")})) {
            QFile file(info.filePath());
            if (!file.open(QIODevice::ReadOnly) || !file.readAll().contains("Gravel pit"))
                continue;
            // A transaction that is still going on would be taken back after the kill. The journal of one
            // that has ended is empty or begins with zeros.
            QFile journal(info.filePath() + QStringLiteral("-journal"));
            const QByteArray head = journal.open(QIODevice::ReadOnly) ? journal.read(8) : QByteArray();
            return head.count('\0') == head.size();
        }
        return false;
    };
    {
        DrivenHost host(words + QStringList{"--project", path});
        ASSERT_TRUE(host.Next([](const Event& event) { return isNamed(event, "Quarry"); }));
        ASSERT_TRUE(host.NextOf("picture"));
        host.TakeFocus();
        host.Do(host.ToFirstBlock() << QStringList{"click", "1", "key", "F2", "key", "ctrl+a", "type",
                                                   "Gravel pit"});
        host.Do({"key", "Return"});
        ASSERT_TRUE(host.Next([](const Event& event) { return isNamed(event, "Gravel pit"); }));
        ASSERT_TRUE(QTest::qWaitFor(isKept, 60000));
        host.Kill();
    }
    EXPECT_EQ(nameInFile(path), QStringLiteral("Quarry"));
    {
        DrivenHost host(words);
        host.TakeFocus(QStringLiteral("^Recover project$"));
        host.Do({"key", "alt+r"});
        ASSERT_TRUE(host.Next([](const Event& event) { return isNamed(event, "Gravel pit"); }));
        host.TakeFocus();
        host.Do({"key", "ctrl+s"});
        EXPECT_TRUE(
            QTest::qWaitFor([&path] { return nameInFile(path) == QStringLiteral("Gravel pit"); }, 60000));
        EXPECT_EQ(host.Quit(), 0);
    }
    EXPECT_TRUE(recovery.isEmpty());
}

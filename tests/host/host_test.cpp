// The host program as its users start it.
#include <QApplication>
#include <QDir>
#include <QFileInfo>
#include <QImage>
#include <QImageReader>
#include <QProcess>
#include <QSet>
#include <QTemporaryDir>

#include <gtest/gtest.h>

namespace {
struct Outcome
{
    int status = -1;
    QString output;
    QString errors;
};

// The host lies beside this program. A picture takes seconds, under a
// sanitizer minutes.
Outcome RunHost(const QStringList& arguments, int limitMs = 300000)
{
    QProcess host;
    host.start(QCoreApplication::applicationDirPath() + QStringLiteral("/AxGroundControl"), arguments);
    EXPECT_TRUE(host.waitForFinished(limitMs)) << host.errorString().toStdString();
    EXPECT_EQ(host.exitStatus(), QProcess::NormalExit);
    return {host.exitCode(), QString::fromUtf8(host.readAllStandardOutput()),
            QString::fromUtf8(host.readAllStandardError())};
}

// A map that looks the same on every machine, whatever its network, and zones far from what is drawn.
QStringList OnLocalMap(QStringList arguments)
{
    const QString folder = QCoreApplication::applicationDirPath();
    return arguments << QStringLiteral("--map") << folder + QStringLiteral("/google_cn_net_no.earth")
                     << QStringLiteral("--zones") << folder + QStringLiteral("/TestZones.db");
}

int ColourCount(const QImage& picture)
{
    QSet<QRgb> colours;
    for (int y = 0; y < picture.height(); y += 3)
        for (int x = 0; x < picture.width(); x += 3)
            colours += picture.pixel(x, y);
    return colours.size();
}
} // namespace

TEST(Host, HelpNeedsNoDisplayAndWhatDoesSaysSo)
{
    const auto start = [](const QStringList& arguments, const QString& platform) {
        QProcess host;
        QProcessEnvironment variables = QProcessEnvironment::systemEnvironment();
        for (const char* name : {"DISPLAY", "WAYLAND_DISPLAY", "QT_QPA_PLATFORM"})
            variables.remove(QLatin1String(name));
        if (!platform.isEmpty())
            variables.insert(QStringLiteral("QT_QPA_PLATFORM"), platform);
        host.setProcessEnvironment(variables);
        host.start(QCoreApplication::applicationDirPath() + QStringLiteral("/AxGroundControl"), arguments);
        EXPECT_TRUE(host.waitForFinished());
        EXPECT_EQ(host.exitStatus(), QProcess::NormalExit);
        return Outcome{host.exitCode(), QString::fromUtf8(host.readAllStandardOutput()),
                       QString::fromUtf8(host.readAllStandardError())};
    };
    const Outcome help = start({"--help"}, {});
    EXPECT_EQ(help.status, 0);
    for (const char* option :
         {"--tour DIR", "--map FILE", "--size WxH", "--zones FILE", "--key-file FILE", "--apply-url URL",
          "--blocks FILE", "--view lon,lat,alt,heading,pitch,range", "--shot FILE", "--quit-after S",
          "--log FILE", "--no-voice", "--lang LOCALE", "--settings FILE", "--no-settings", "--help"})
        EXPECT_TRUE(help.output.contains(QLatin1String(option))) << option;
    for (const auto& [platform, named] : {std::pair{"", "DISPLAY"}, {"minimal", "OpenGL"}}) {
        const Outcome outcome = start({"--lang", "en"}, QLatin1String(platform));
        EXPECT_EQ(outcome.status, 1);
        EXPECT_TRUE(outcome.errors.contains(QLatin1String(named))) << outcome.errors.toStdString();
    }
}

TEST(Host, RefusesWrongOptionsWithStatusTwoAndNamesThem)
{
    struct Row
    {
        QStringList arguments;
        const char* named;
    };
    const Row rows[] = {
        {{"--toru", "x"}, "toru"},
        {{"stray"}, "stray"},
        {{"--size"}, "size"},
        {{"--size", "800"}, "--size"},
        {{"--size", "0x600"}, "--size"},
        {{"--size", "99999x600"}, "--size"},
        {{"--size", "32767x600"}, "--size: this display draws at most"},
        {{"--view", "1,2,3"}, "--view"},
        {{"--view", "200,0,0,0,-90,1000"}, "--view"},
        {{"--view", "0,0,0,0,-90,0"}, "--view"},
        {{"--view", "0,0,nan,0,-90,10"}, "--view"},
        {{"--quit-after", "soon"}, "--quit-after"},
        {{"--quit-after", "-1"}, "--quit-after"},
        {{"--lang", "xx"}, "--lang"},
        {{"--blocks", "no/such/blocks.json"}, "no/such/blocks.json"},
        {{"--zones", "no/such/zones.db"}, "no/such/zones.db"},
        {{"--key-file", "no/such/key"}, "no/such/key"},
        {{"--apply-url", "ftp://example.org/"}, "--apply-url"},
        {{"--apply-url", "https://"}, "--apply-url"},
        {{"--map", "no/such/map.earth"}, "no/such/map.earth"},
        {{"--log", "no/such/folder/log"}, "no/such/folder/log"},
    };
    for (const Row& row : rows) {
        const Outcome outcome = RunHost(row.arguments);
        EXPECT_EQ(outcome.status, 2) << row.arguments.join(' ').toStdString();
        EXPECT_TRUE(outcome.errors.contains(QLatin1String(row.named))) << outcome.errors.toStdString();
    }
}

TEST(Host, RefusesWrongBlockFilesAndNamesBlockAndField)
{
    const struct
    {
        const char* text;
        QStringList named;
    } rows[] = {
        {"", {"empty"}},
        {"[{\"name\": \"A\",\n]", {"line 2"}},
        {"{\"name\": \"A\"}", {"list of blocks"}},
        {"[5]", {"block 1"}},
        {"[{\"name\": \"A\"}]", {"block 1", "anchor"}},
        {"[{\"name\": \"A\", \"anchor\": [[1,2],[2,2],[1,2]]}]", {"block 1", "anchor", "2 vertices"}},
        {"[{\"anchor\": [[1,2],[2,2],[2,3]]}, {\"anchor\": [[1,2],[2,\"x\"],[2,3]]}]",
         {"block 2", "anchor", "vertex 2"}},
        {"[{\"anchor\": [[1,2],[2,2],[2,91]]}]", {"block 1", "anchor", "vertex 3", "globe"}},
        {"[{\"name\": 7, \"anchor\": [[1,2],[2,2],[2,3]]}]", {"block 1", "name"}},
        {"[{\"type\": 42, \"anchor\": [[1,2],[2,2],[2,3]]}]", {"block 1", "type"}},
        {"[{\"type\": 1, \"anchor\": [[1,2],[2,2],[2,3]]}]", {"block 1", "anchor", "3 vertices"}},
        {"[{\"type\": 3, \"anchor\": [[1,2],[2,2]]}]", {"block 1", "anchor", "2 vertices are too many"}},
        {"[{\"type\": 3, \"anchor\": [[1,2]], \"radius\": 0}]", {"block 1", "radius"}},
        {"[{\"name\": \"A\", \"anchor\": [[1,2],[2,2],[2,3]]}, {\"name\": \"A\", \"anchor\": "
         "[[1,2],[2,2],[2,3]]}]",
         {"block 2", "name", "'A'"}},
    };
    QTemporaryDir folder;
    const QString path = folder.filePath(QStringLiteral("blocks.json"));
    for (const auto& row : rows) {
        QFile file(path);
        ASSERT_TRUE(file.open(QIODevice::WriteOnly));
        file.write(row.text);
        file.close();
        const Outcome outcome = RunHost({"--blocks", path});
        EXPECT_EQ(outcome.status, 2) << row.text;
        for (const QString& part : QStringList{"--blocks", "blocks.json"} + row.named)
            EXPECT_TRUE(outcome.errors.contains(part))
                << part.toStdString() << " in " << outcome.errors.toStdString();
    }
}

TEST(Host, DrawsTheBlocksOfAFile)
{
    QTemporaryDir folder;
    const QString path = folder.filePath(QStringLiteral("blocks.json"));
    QFile file(path);
    ASSERT_TRUE(file.open(QIODevice::WriteOnly));
    // The first one must not take the name that the second one wants; its ring is closed.
    file.write(
        "[{\"anchor\": [[1,2],[2,2],[2,3],[1,2]]}, {\"name\": \"Block 1\", \"type\": 0, \"anchor\": "
        "[[5,2],[6,2],[6,3],[5,3]]}, {\"name\": \" Bow tie \", \"anchor\": [[1,5],[2,6],[2,5],[1,6]]}, "
        "{\"name\": \"Over T1\", \"anchor\": [[60.1,45.2],[60.3,45.2],[60.2,45.4]]}]");
    file.close();
    const QString picture = folder.filePath(QStringLiteral("picture"));
    const Outcome outcome = RunHost(
        OnLocalMap({"--blocks", path, "--log", "-", "--shot", picture, "--size", "400x300", "--lang", "en"}));
    EXPECT_EQ(outcome.status, 0) << outcome.errors.toStdString();
    EXPECT_EQ(QImageReader::imageFormat(picture), QByteArray("png"));
    const QStringList faults = outcome.errors.split('\n').filter(QStringLiteral("drawing would refuse it"));
    ASSERT_EQ(faults.size(), 2) << "what drawing refuses is not drawn in silence: "
                                << outcome.errors.toStdString();
    EXPECT_TRUE(faults[0].contains("'Bow tie'") && faults[0].contains("Block is invalid."));
    EXPECT_TRUE(faults[1].contains("'Over T1'") && faults[1].endsWith("No-fly zones: T1"));
    EXPECT_TRUE(outcome.output.contains(QStringLiteral("\"name\":\"Block 1\"")));
    EXPECT_TRUE(outcome.output.contains(QStringLiteral("\"name\":\"Block 2\"")));
    EXPECT_TRUE(outcome.output.contains(QStringLiteral("\"vertices\":3")));
    EXPECT_TRUE(outcome.output.contains(QStringLiteral("\"vertices\":4")));
}

TEST(Host, TourWritesAPictureOfEachOfItsFourPlacesAndPrintsThePaths)
{
    QTemporaryDir folder;
    const QString target = folder.filePath(QStringLiteral("new/tour"));
    const Outcome outcome = RunHost(OnLocalMap({"--tour", target, "--size", "640x480"}));
    EXPECT_EQ(outcome.status, 0) << outcome.errors.toStdString();
    const QStringList paths = outcome.output.split('\n', Qt::SkipEmptyParts);
    ASSERT_EQ(paths.size(), 4) << outcome.output.toStdString();
    QList<QImage> pictures;
    for (const QString& path : paths) {
        EXPECT_EQ(QFileInfo(path).absolutePath(), QFileInfo(target).absoluteFilePath());
        pictures += QImage(path);
        EXPECT_EQ(pictures.last().size(), QSize(640, 480)) << path.toStdString();
        EXPECT_GT(ColourCount(pictures.last()), 100) << path.toStdString();
    }
    for (int i = 1; i < pictures.size(); ++i)
        EXPECT_NE(pictures[i], pictures[i - 1]);
}

TEST(Host, EndsByItselfAndSaysWhenAPictureCannotBeWritten)
{
    EXPECT_EQ(RunHost(OnLocalMap({"--quit-after", "0.1", "--size", "400x300"})).status, 0);
    QTemporaryDir folder;
    const QString blocked = folder.filePath(QStringLiteral("file"));
    QFile file(blocked);
    ASSERT_TRUE(file.open(QIODevice::WriteOnly));
    file.close();
    const Outcome outcome =
        RunHost(OnLocalMap({"--shot", blocked + QStringLiteral("/shot.png"), "--size", "400x300"}));
    EXPECT_EQ(outcome.status, 1);
    EXPECT_TRUE(outcome.errors.contains(QStringLiteral("shot.png")));
}

int main(int argc, char** argv)
{
    QApplication app(argc, argv);
    testing::InitGoogleTest(&argc, argv);
    return RUN_ALL_TESTS();
}

#include "LoopbackTiles.h"

#include <AxData/tiles/AxTileEstimate.h>
#include <AxData/tiles/AxTileFetch.h>

#include <QDateTime>
#include <QElapsedTimer>
#include <QEventLoop>
#include <QLocale>
#include <QNetworkProxy>
#include <QSignalSpy>
#include <QSqlDatabase>
#include <QSqlQuery>
#include <QTemporaryDir>
#include <QTest>

#include <gdal_priv.h>

#include <gtest/gtest.h>

#include <cmath>
#include <memory>
#include <random>

namespace {
using Manner = LoopbackTiles::Manner;
using Answer = LoopbackTiles::Answer;
using Asked = LoopbackTiles::Asked;

AxTileArea Rectangle(double west, double south, double east, double north)
{
    return AxTileArea::OfRectangle({west, south, east, north}).value_or(AxTileArea());
}

// 3 columns and 2 rows of level 10 around the Spanish Peaks.
AxTileArea Peaks()
{
    return Rectangle(-105.4, 37.2, -104.7, 37.6);
}

QVariant Ask(const QString& file, const QString& statement)
{
    QVariant value;
    {
        QSqlDatabase database = QSqlDatabase::addDatabase(QStringLiteral("QSQLITE"), QStringLiteral("tiles"));
        database.setDatabaseName(file);
        QSqlQuery query(database);
        if (database.open() && query.exec(statement) && query.next())
            value = query.value(0);
    }
    QSqlDatabase::removeDatabase(QStringLiteral("tiles"));
    return value;
}

struct Ended
{
    AxTileEnd end = AxTileEnd::NotBegun;
    QString why;
    AxTileProgress progress;
};

class Tiles : public testing::Test
{
protected:
    AxTileJob Job(int firstLevel, int lastLevel) const
    {
        AxTileJob job;
        job.file = folder.filePath(QStringLiteral("area.mbtiles"));
        job.name = QStringLiteral("Area");
        job.service.address = server.Address();
        job.service.attribution = QStringLiteral("(c) Nobody");
        job.area = Peaks();
        job.firstLevel = firstLevel;
        job.lastLevel = lastLevel;
        job.timeoutMs = 500;
        return job;
    }
    /// `cancelAfter` requests it is called off; never for 0.
    Ended Run(const AxTileJob& job, int cancelAfter = 0)
    {
        AxTileFetch fetch(job);
        Ended result;
        QEventLoop loop;
        bool hasEnded = false;
        QObject::connect(&fetch, &AxTileFetch::ended, &loop,
                         [&](AxTileEnd end, const QString& why, const AxTileProgress& progress) {
                             result = {end, why, progress};
                             hasEnded = true;
                             loop.quit();
                         });
        const int before = server.paths.size();
        QTimer look;
        QObject::connect(&look, &QTimer::timeout, &fetch, [&] {
            if (cancelAfter > 0 && server.paths.size() - before >= cancelAfter)
                fetch.Cancel();
        });
        look.start(1);
        QTimer::singleShot(60000, &loop, &QEventLoop::quit);
        fetch.Start();
        loop.exec();
        EXPECT_TRUE(hasEnded);
        return result;
    }

    QTemporaryDir folder;
    LoopbackTiles server;
};
} // namespace

TEST_F(Tiles, GoIntoAFileThatGdalShowsInTheirPlace)
{
    server.delayMs = 5;
    const AxTileJob job = Job(8, 11);
    const Ended ended = Run(job);
    EXPECT_EQ(ended.end, AxTileEnd::Complete) << qPrintable(ended.why);
    EXPECT_EQ(ended.progress.fetched, job.area.Count(8, 11));
    EXPECT_EQ(ended.progress.all, ended.progress.fetched);
    EXPECT_EQ(server.atOnce, 4);
    EXPECT_TRUE(server.latestHead.contains("User-Agent: AxEarthViewer")) << server.latestHead.constData();
    const QPair<const char*, const char*> facts[] = {
        {"format", "png"}, {"minzoom", "8"}, {"maxzoom", "11"}, {"attribution", "(c) Nobody"}};
    for (const auto& [name, value] : facts)
        EXPECT_EQ(
            Ask(job.file,
                QStringLiteral("SELECT value FROM metadata WHERE name = '%1'").arg(QLatin1String(name))),
            QVariant(QLatin1String(value)))
            << name;
    GDALAllRegister();
    const std::unique_ptr<GDALDataset, void (*)(GDALDataset*)> data(
        GDALDataset::Open(job.file.toUtf8().constData(), GDAL_OF_RASTER),
        [](GDALDataset* opened) { GDALClose(opened); });
    ASSERT_TRUE(data);
    double at[6];
    ASSERT_EQ(data->GetGeoTransform(at), CE_None);
    // The summit of West Spanish Peak, column 426 and row 795 of level 11.
    const double x = -104.9935 / 180.0 * 20037508.342789244;
    const double y = std::asinh(std::tan(37.3753 * std::acos(-1.0) / 180.0)) * 6378137.0;
    const auto level = [](double size) { return std::log2(2.0 * 20037508.342789244 / 256.0 / size); };
    EXPECT_NEAR(level(at[1]), 11.0, 1e-6);
    const int column = static_cast<int>((x + 20037508.342789244) / (256.0 * at[1]));
    const int row = static_cast<int>((20037508.342789244 - y) / (256.0 * at[1]));
    unsigned char pixel[3];
    for (int band = 0; band < 3; ++band)
        ASSERT_EQ(data->GetRasterBand(band + 1)->RasterIO(GF_Read, static_cast<int>((x - at[0]) / at[1]),
                                                          static_cast<int>((y - at[3]) / at[5]), 1, 1,
                                                          &pixel[band], 1, 1, GDT_Byte, 0, 0),
                  CE_None);
    EXPECT_EQ(QColor(pixel[0], pixel[1], pixel[2]), LoopbackTiles::ColorOf(11, column, row));
}

TEST_F(Tiles, OfServicesThatMisbehave)
{
    const QByteArray picture = LoopbackTiles::Picture(Qt::green);
    const auto inTwoSeconds = [] {
        return QLocale::c()
            .toString(QDateTime::currentDateTimeUtc().addSecs(2),
                      QStringLiteral("ddd, dd MMM yyyy hh:mm:ss 'GMT'"))
            .toLatin1();
    };
    // What the first request of the third tile gets, or all of them; the rest are pictures.
    const struct
    {
        const char* what;
        Answer answer;
        bool isAlways;
        AxTileEnd end;
        int missing;
        int unusable;
        int leastMs;
    } cases[] = {
        {"there is no such tile",
         {"404 Not Found", "", "", Manner::Whole},
         false,
         AxTileEnd::Complete,
         1,
         0,
         0},
        {"an empty answer", {"204 No Content", "", "", Manner::Whole}, false, AxTileEnd::Complete, 1, 0, 0},
        {"a picture of one pixel",
         {"200 OK", LoopbackTiles::Picture(Qt::black, 1), "", Manner::Whole},
         false,
         AxTileEnd::Complete,
         1,
         0,
         0},
        {"busy",
         {"429 Too Many Requests", "slow down", "Retry-After: 1\r\n", Manner::Whole},
         false,
         AxTileEnd::Complete,
         0,
         0,
         1000},
        {"busy until a moment",
         {"503 Service Unavailable", "", "Retry-After: {then}\r\n", Manner::Whole},
         false,
         AxTileEnd::Complete,
         0,
         0,
         1000},
        {"busy for an hour",
         {"429 Too Many Requests", "", "Retry-After: 3600\r\n", Manner::Whole},
         false,
         AxTileEnd::GivenUp,
         0,
         0,
         0},
        {"an error of the server",
         {"500 Oops", "", "", Manner::Whole},
         false,
         AxTileEnd::Complete,
         0,
         0,
         500},
        {"half an answer", {"200 OK", picture, "", Manner::Cut}, false, AxTileEnd::Complete, 0, 0, 500},
        {"silence", {"200 OK", picture, "", Manner::Silent}, false, AxTileEnd::Complete, 0, 0, 500},
        {"a web page",
         {"200 OK", "<html>Please log in</html>", "", Manner::Whole},
         false,
         AxTileEnd::Incomplete,
         0,
         1,
         0},
        {"half a picture",
         {"200 OK", picture.left(picture.size() / 2), "", Manner::Whole},
         false,
         AxTileEnd::Incomplete,
         0,
         1,
         0},
        {"a picture of another size",
         {"200 OK", LoopbackTiles::Picture(Qt::red, 512), "", Manner::Whole},
         false,
         AxTileEnd::Incomplete,
         0,
         1,
         0},
        {"only web pages", {"200 OK", "<html>", "", Manner::Whole}, true, AxTileEnd::GivenUp, 0, 25, 0},
        {"only refusals", {"403 Forbidden", "", "", Manner::Whole}, true, AxTileEnd::GivenUp, 0, 25, 0},
        {"no tile at all", {"404 Not Found", "", "", Manner::Whole}, true, AxTileEnd::GivenUp, 200, 0, 0},
        {"an address elsewhere",
         {"302 Found", "", "Location: /0/0/0.png\r\n", Manner::Whole},
         false,
         AxTileEnd::Complete,
         0,
         0,
         0},
        {"an address that leads to itself",
         {"302 Found", "", "Location: /0/0/0.png\r\n", Manner::Whole},
         true,
         AxTileEnd::GivenUp,
         0,
         25,
         0},
        {"more than a tile can be",
         {"200 OK", QByteArray(9 << 20, 'x'), "", Manner::Whole},
         false,
         AxTileEnd::Incomplete,
         0,
         1,
         0},
        {"a byte now and then",
         {"200 OK", picture, "", Manner::Slow},
         false,
         AxTileEnd::Complete,
         0,
         0,
         1000},
    };
    for (const auto& one : cases) {
        SCOPED_TRACE(one.what);
        server.paths.clear();
        server.answer = [&](const Asked& asked) {
            if (!one.isAlways && (asked.before != 2 || asked.times > 0))
                return Answer{"200 OK", picture, {}, Manner::Whole};
            Answer answer = one.answer;
            answer.headers.replace("{then}", inTwoSeconds());
            return answer;
        };
        const AxTileJob job = Job(10, one.isAlways ? 14 : 11);
        QFile::remove(job.file);
        QElapsedTimer clock;
        clock.start();
        const Ended ended = Run(job);
        EXPECT_EQ(static_cast<int>(ended.end), static_cast<int>(one.end)) << qPrintable(ended.why);
        EXPECT_EQ(ended.why.isEmpty(), one.end == AxTileEnd::Complete);
        EXPECT_EQ(ended.progress.missing, one.missing);
        EXPECT_EQ(ended.progress.unusable, one.unusable);
        EXPECT_EQ(QFile::exists(job.file), ended.progress.fetched > 0);
        EXPECT_GE(clock.elapsed(), one.leastMs);
        if (one.end == AxTileEnd::Complete) {
            EXPECT_EQ(Ask(job.file, QStringLiteral("SELECT count(*) FROM tiles")).toInt(),
                      ended.progress.all - one.missing);
        }
    }
}

TEST_F(Tiles, ThatAreThereAreNotAskedForAgain)
{
    server.answer = [](const Asked& asked) {
        return asked.row % 3 == 0 ? Answer{"404 Not Found", {}, {}, Manner::Whole}
                                  : Answer{"200 OK", LoopbackTiles::Picture(Qt::blue), {}, Manner::Whole};
    };
    AxTileJob job = Job(9, 12);
    EXPECT_EQ(Run(job, 12).end, AxTileEnd::CalledOff);
    const int finest =
        Ask(job.file, QStringLiteral("SELECT value FROM metadata WHERE name = 'maxzoom'")).toInt();
    EXPECT_LT(finest, 12) << "readers show no level with gaps";
    const Ended second = Run(job);
    EXPECT_EQ(second.end, AxTileEnd::Complete) << qPrintable(second.why);
    EXPECT_GE(second.progress.kept, 8) << "but for the requests that were under way";
    EXPECT_EQ(second.progress.Done(), second.progress.all);
    const int asked = server.paths.size();
    EXPECT_EQ(Run(job).progress.kept, second.progress.all);
    EXPECT_EQ(server.paths.size(), asked);
    // More ground, from the same service, goes into the same file, which keeps what nobody names anew.
    job.name.clear();
    job.service.attribution.clear();
    job.area = Rectangle(-105.4, 37.2, -104.2, 37.6);
    const Ended wider = Run(job);
    EXPECT_EQ(wider.end, AxTileEnd::Complete);
    EXPECT_EQ(wider.progress.kept, second.progress.all);
    EXPECT_EQ(Ask(job.file, QStringLiteral("SELECT value FROM metadata WHERE name = 'bounds'")).toString(),
              QStringLiteral("-105.4000000,37.2000000,-104.2000000,37.6000000"));
    const QPair<const char*, const char*> kept[] = {{"name", "Area"}, {"attribution", "(c) Nobody"}};
    for (const auto& [fact, value] : kept)
        EXPECT_EQ(Ask(job.file,
                      QStringLiteral("SELECT value FROM metadata WHERE name = '%1'").arg(QLatin1String(fact)))
                      .toString(),
                  QLatin1String(value));
    const AxTileFileState state = AxLookAtTileFile(job);
    EXPECT_EQ(state.tiles + state.missing, wider.progress.all);
    // Unless somebody says that the service has them now.
    server.answer = nullptr;
    job.isMissingAskedAgain = true;
    EXPECT_EQ(Run(job).progress.fetched, state.missing);
    EXPECT_EQ(AxLookAtTileFile(job).missing, 0);
}

TEST_F(Tiles, AreKnownToLieAcross180Degrees)
{
    const struct
    {
        const char* what;
        AxTileArea added;
        double west;
        double east;
        const char* bounds;
    } rows[] = {
        {"on both sides", Rectangle(179.0, 10.0, -179.5, 11.0), 179.0, -179.5,
         "-180.0000000,10.0000000,180.0000000,11.0000000"},
        {"more in the east", Rectangle(-179.8, 10.0, -178.0, 11.0), 179.0, -178.0,
         "-180.0000000,10.0000000,180.0000000,11.0000000"},
        {"more in the west", Rectangle(177.0, 10.0, 178.0, 11.0), 177.0, -178.0,
         "-180.0000000,10.0000000,180.0000000,11.0000000"},
        {"the whole turn", Rectangle(-180.0, 10.0, 180.0, 11.0), -180.0, 180.0,
         "-180.0000000,10.0000000,180.0000000,11.0000000"},
    };
    AxTileJob job = Job(4, 5);
    for (const auto& row : rows) {
        job.area = row.added;
        ASSERT_EQ(Run(job).end, AxTileEnd::Complete) << row.what;
        const auto bounds = AxTileFileBounds(job.file);
        ASSERT_TRUE(bounds) << row.what;
        EXPECT_NEAR(bounds->west, row.west, 1e-6) << row.what;
        EXPECT_NEAR(bounds->east, row.east, 1e-6) << row.what;
        EXPECT_EQ(Ask(job.file, QStringLiteral("SELECT value FROM metadata WHERE name = 'bounds'")),
                  row.bounds);
    }
    EXPECT_FALSE(AxTileFileBounds(folder.filePath(QStringLiteral("none.mbtiles"))));
}

TEST_F(Tiles, ThatAreRefusedDoNotKeepTheOthersOut)
{
    const auto isRefused = [](const Asked& asked) { return asked.level == 12 && asked.column < 855; };
    bool hasKey = true;
    server.answer = [&](const Asked& asked) {
        return !hasKey || isRefused(asked)
                   ? Answer{"403 Forbidden", {}, {}, Manner::Whole}
                   : Answer{"200 OK", LoopbackTiles::Picture(Qt::blue), {}, Manner::Whole};
    };
    const AxTileJob job = Job(10, 12);
    const Ended first = Run(job);
    EXPECT_EQ(first.end, AxTileEnd::Incomplete) << qPrintable(first.why);
    EXPECT_GT(first.progress.unusable, 40);
    EXPECT_EQ(first.progress.fetched, first.progress.all - first.progress.unusable);
    const Ended second = Run(job);
    EXPECT_EQ(second.end, AxTileEnd::Incomplete) << qPrintable(second.why);
    EXPECT_EQ(second.progress.unusable, first.progress.unusable);
    // What the service had before it refuses, too.
    hasKey = false;
    const Ended third = Run(job);
    EXPECT_EQ(third.end, AxTileEnd::GivenUp);
    EXPECT_LT(third.progress.unusable, 30);
}

TEST_F(Tiles, CanBeReadWhileTheyAreWritten)
{
    QImage noise(256, 256, QImage::Format_RGB32);
    std::mt19937 random(4);
    for (int i = 0; i < noise.width() * noise.height(); ++i)
        noise.setPixel(i % noise.width(), i / noise.width(), static_cast<QRgb>(random()));
    QBuffer png;
    noise.save(&png, "PNG");
    const AxTileJob job = Job(10, 12);
    server.answer = [&](const Asked& asked) {
        if (asked.before > 0 && asked.before % 20 == 0) {
            EXPECT_TRUE(Ask(job.file, QStringLiteral("SELECT count(*) FROM tiles")).isValid())
                << asked.before;
        }
        return Answer{"200 OK", png.data(), {}, Manner::Whole};
    };
    EXPECT_EQ(Run(job).end, AxTileEnd::Complete);
    EXPECT_GT(server.paths.size(), 60);
}

TEST_F(Tiles, AreNotSaidToBeInAFileThatHasGone)
{
#ifdef Q_OS_WIN
    GTEST_SKIP() << "no file goes there while it is open";
#endif
    const AxTileJob job = Job(10, 13);
    EXPECT_EQ(Run(job, 30).end, AxTileEnd::CalledOff);
    server.answer = [&](const Asked& asked) {
        if (asked.column % 4 == 0)
            QFile::remove(job.file);
        return Answer{"200 OK", LoopbackTiles::Picture(Qt::blue), {}, Manner::Whole};
    };
    const Ended ended = Run(job);
    EXPECT_EQ(ended.end, AxTileEnd::NotWritten);
    EXPECT_EQ(ended.progress.Done(), 0);
    EXPECT_TRUE(ended.why.contains(QStringLiteral("deleted or moved away"))) << qPrintable(ended.why);
}

TEST_F(Tiles, NeedAJobAndAFileOfTheirOwn)
{
    const AxTileJob good = Job(8, 9);
    ASSERT_EQ(Run(good).end, AxTileEnd::Complete);
    QFile text(folder.filePath(QStringLiteral("notes.txt")));
    ASSERT_TRUE(text.open(QIODevice::WriteOnly) && text.write("These are my notes.\n") > 0);
    text.close();
    const struct
    {
        const char* what;
        std::function<void(AxTileJob&)> change;
        AxTileEnd end;
    } cases[] = {
        {"no area", [](AxTileJob& job) { job.area = AxTileArea(); }, AxTileEnd::NotBegun},
        {"levels the wrong way round", [](AxTileJob& job) { job.lastLevel = 7; }, AxTileEnd::NotBegun},
        {"a level too fine", [](AxTileJob& job) { job.lastLevel = 23; }, AxTileEnd::NotBegun},
        {"a level that the service does not have", [](AxTileJob& job) { job.service.lastLevel = 8; },
         AxTileEnd::NotBegun},
        {"no template", [](AxTileJob& job) { job.service.address = QStringLiteral("http://a.org/"); },
         AxTileEnd::NotBegun},
        {"too many", [](AxTileJob& job) { job.mostTiles = 2; }, AxTileEnd::NotBegun},
        {"far too many",
         [](AxTileJob& job) {
             job.area = Rectangle(-180.0, -80.0, 180.0, 80.0);
             job.lastLevel = 22;
             job.mostTiles = std::numeric_limits<qint64>::max();
         },
         AxTileEnd::NotBegun},
        {"a file of another service", [](AxTileJob& job) { job.service.address += QStringLiteral("?v=2"); },
         AxTileEnd::NotWritten},
        {"a file of other levels", [](AxTileJob& job) { job.lastLevel = 10; }, AxTileEnd::NotWritten},
        {"a file of something else", [&](AxTileJob& job) { job.file = text.fileName(); },
         AxTileEnd::NotWritten},
        {"a folder", [&](AxTileJob& job) { job.file = folder.path(); }, AxTileEnd::NotWritten},
        {"no such folder",
         [&](AxTileJob& job) { job.file = folder.filePath(QStringLiteral("no/a.mbtiles")); },
         AxTileEnd::NotWritten},
    };
    const int asked = server.paths.size();
    for (const auto& one : cases) {
        AxTileJob job = good;
        one.change(job);
        const Ended ended = Run(job);
        EXPECT_EQ(static_cast<int>(ended.end), static_cast<int>(one.end)) << one.what;
        EXPECT_FALSE(ended.why.isEmpty()) << one.what;
    }
    EXPECT_EQ(server.paths.size(), asked);
    EXPECT_TRUE(text.open(QIODevice::ReadOnly) && text.readAll() == "These are my notes.\n");
    EXPECT_NE(AxLookAtTileFile(Job(8, 10)).fault, QString());
    EXPECT_EQ(AxLookAtTileFile(good).fault, QString());

    // A second fetch into the same file while the first one is under way.
    server.answer = [](const Asked&) { return Answer{"200 OK", {}, {}, Manner::Silent}; };
    AxTileJob other = Job(8, 12);
    other.file = folder.filePath(QStringLiteral("other.mbtiles"));
    AxTileFetch first(other);
    first.Start();
    EXPECT_EQ(Run(other).end, AxTileEnd::NotWritten);
}

TEST_F(Tiles, AreEstimatedFromAFew)
{
    const QByteArray picture = LoopbackTiles::Picture(Qt::green);
    AxTileJob job = Job(6, 15);
    const auto guess = [&job] {
        AxTileEstimate estimate(job);
        QSignalSpy done(&estimate, &AxTileEstimate::done);
        estimate.Start();
        EXPECT_TRUE(done.wait(20000));
        return done.value(0).value(0).value<AxTileGuess>();
    };
    server.answer = [&](const Asked&) { return Answer{"200 OK", picture, {}, Manner::Whole}; };
    const AxTileGuess well = guess();
    EXPECT_EQ(well.tiles, job.area.Count(6, 15));
    EXPECT_DOUBLE_EQ(well.bytes, static_cast<double>(well.tiles * picture.size()));
    EXPECT_LE(server.paths.size(), 20);
    EXPECT_LE(server.atOnce, 2);
    server.answer = [&](const Asked& asked) {
        return asked.level == 15 ? Answer{"404 Not Found", {}, {}, Manner::Whole}
                                 : Answer{"200 OK", picture, {}, Manner::Whole};
    };
    EXPECT_DOUBLE_EQ(guess().bytes, static_cast<double>(job.area.Count(6, 14) * picture.size()));
    server.answer = [](const Asked&) { return Answer{"403 Forbidden", {}, {}, Manner::Whole}; };
    server.paths.clear();
    EXPECT_FALSE(guess().why.isEmpty());
    EXPECT_LE(server.paths.size(), 2) << "a service that refuses is asked no more";
    const QNetworkProxy before = QNetworkProxy::applicationProxy();
    QTcpServer nobody;
    ASSERT_TRUE(nobody.listen(QHostAddress::LocalHost));
    QNetworkProxy::setApplicationProxy({QNetworkProxy::HttpProxy, "127.0.0.1", nobody.serverPort()});
    nobody.close();
    job.service.address = QStringLiteral("http://tiles.invalid/{z}/{x}/{y}.png");
    const QString why = guess().why;
    EXPECT_TRUE(why.contains(QStringLiteral("proxy"))) << qPrintable(why);
    QNetworkProxy::setApplicationProxy(before);
}

TEST_F(Tiles, MayBeLetGoByTheListenerOfTheirEnd)
{
    auto fetch = std::make_unique<AxTileFetch>(Job(10, 10));
    auto estimate = std::make_unique<AxTileEstimate>(Job(10, 10));
    QEventLoop loop;
    const auto quitAfterBoth = [&] {
        if (!fetch && !estimate)
            loop.quit();
    };
    QObject::connect(fetch.get(), &AxTileFetch::ended, &loop, [&] {
        fetch.reset();
        quitAfterBoth();
    });
    QObject::connect(estimate.get(), &AxTileEstimate::done, &loop, [&] {
        estimate.reset();
        quitAfterBoth();
    });
    QTimer::singleShot(60000, &loop, &QEventLoop::quit);
    fetch->Start();
    estimate->Start();
    loop.exec();
    EXPECT_FALSE(fetch);
    EXPECT_FALSE(estimate);
}

// The program axtiles: its command line and how it ends.
#include "LoopbackTiles.h"

#include <QCoreApplication>
#include <QDir>
#include <QEventLoop>
#include <QFile>
#include <QProcess>
#include <QTemporaryDir>

#include <gtest/gtest.h>

namespace {
class AxTilesProgram : public testing::Test
{
protected:
    /// The server answers meanwhile. Asked to end after so many requests; 0: not at all.
    int Run(const QStringList& arguments, int endAfter = 0)
    {
        QProcess process;
        QEventLoop loop;
        QObject::connect(&process, qOverload<int, QProcess::ExitStatus>(&QProcess::finished), &loop,
                         &QEventLoop::quit);
        QObject::connect(&process, &QProcess::errorOccurred, &loop, &QEventLoop::quit);
        QTimer look;
        const int before = server.paths.size();
        QObject::connect(&look, &QTimer::timeout, &loop, [&] {
            if (endAfter <= 0 || server.paths.size() - before < endAfter)
                return;
            // A second time it would end at once.
            process.terminate();
            look.stop();
        });
        look.start(1);
        QTimer::singleShot(60000, &loop, &QEventLoop::quit);
        process.start(QDir(QCoreApplication::applicationDirPath()).filePath(QStringLiteral("axtiles")),
                      arguments);
        loop.exec();
        EXPECT_EQ(process.state(), QProcess::NotRunning);
        EXPECT_EQ(process.exitStatus(), QProcess::NormalExit);
        output = QString::fromUtf8(process.readAllStandardOutput());
        complaints = QString::fromUtf8(process.readAllStandardError());
        return process.exitCode();
    }
    QStringList Wanted(const QString& levels) const
    {
        return {QStringLiteral("--area"),   QStringLiteral("-105.4,37.2,-104.7,37.6"),
                QStringLiteral("--levels"), levels,
                server.Address(),           file};
    }

    QTemporaryDir folder;
    const QString file = folder.filePath(QStringLiteral("area.mbtiles"));
    LoopbackTiles server;
    QString output;
    QString complaints;
};
} // namespace

TEST_F(AxTilesProgram, RefusesWhatItCannotDo)
{
    const QString area = QStringLiteral("--area=1,2,3,4");
    const QString levels = QStringLiteral("--levels=3-4");
    const QString address = QStringLiteral("http://127.0.0.1:1/{z}/{x}/{y}");
    const QStringList wrong[] = {
        {},
        {area, levels, address},
        {area, address, file},
        {levels, address, file},
        {area, QStringLiteral("--outline=a.kml"), levels, address, file},
        {QStringLiteral("--outline=none.kml"), levels, address, file},
        {QStringLiteral("--area=1;2;3;4"), levels, address, file},
        {area, QStringLiteral("--levels=4-3"), address, file},
        {area, QStringLiteral("--levels=a-b"), address, file},
        {area, QStringLiteral("--levels=3-"), address, file},
        {area, levels, QStringLiteral("--parallel=9"), address, file},
        {area, levels, QStringLiteral("--timeout=0"), address, file},
        {area, levels, QStringLiteral("--most=1"), address, file},
        {area, levels, QStringLiteral("http://127.0.0.1/"), file},
        {area, levels, QStringLiteral("--no-such"), address, file},
    };
    for (const QStringList& arguments : wrong) {
        EXPECT_EQ(Run(arguments), 2) << qPrintable(arguments.join(QLatin1Char(' ')));
        EXPECT_FALSE(complaints.isEmpty());
    }
    EXPECT_FALSE(QFile::exists(file));
    EXPECT_EQ(Run({area, levels, address, folder.filePath(QStringLiteral("no/a.mbtiles"))}), 1);
}

TEST_F(AxTilesProgram, GoesOnWhereItWasEnded)
{
#ifdef Q_OS_WIN
    GTEST_SKIP() << "no other program can send it Ctrl+C";
#endif
    server.delayMs = 2;
    EXPECT_EQ(Run(Wanted(QStringLiteral("10-14")), 20), 3) << qPrintable(complaints);
    const int asked = server.paths.size();
    EXPECT_LT(asked, 200);
    EXPECT_EQ(Run(Wanted(QStringLiteral("10-14"))), 0) << qPrintable(complaints);
    EXPECT_EQ(complaints, QString()) << "nobody looks at a terminal";
    QStringList once = server.paths;
    once.removeDuplicates();
    EXPECT_LE(server.paths.size() - once.size(), 4) << "those that were under way";
    EXPECT_TRUE(output.contains(QStringLiteral("%1 of %1 tiles").arg(once.size()))) << qPrintable(output);
    server.answer = [](const LoopbackTiles::Asked& request) {
        LoopbackTiles::Answer answer;
        answer.body = request.row % 2 == 0 ? QByteArray("<html>") : LoopbackTiles::Picture(Qt::red);
        return answer;
    };
    QFile::remove(file);
    EXPECT_EQ(Run(Wanted(QStringLiteral("10-11"))), 3);
    EXPECT_TRUE(complaints.contains(QStringLiteral("PNG"))) << qPrintable(complaints);
    EXPECT_EQ(Run(QStringList{QStringLiteral("--estimate"), QStringLiteral("--most=1")} +
                  Wanted(QStringLiteral("10-11"))),
              1);
    QFile::remove(file);
    server.answer = [](const LoopbackTiles::Asked&) {
        return LoopbackTiles::Answer{"404 Not Found", {}, {}, LoopbackTiles::Manner::Whole};
    };
    EXPECT_EQ(Run(Wanted(QStringLiteral("10-11"))), 1) << "there is no file to go on with";
    EXPECT_FALSE(QFile::exists(file));
    server.paths.clear();
    server.answer = [](const LoopbackTiles::Asked& request) {
        return request.times == 0
                   ? LoopbackTiles::Answer{"500 Oops", {}, {}, LoopbackTiles::Manner::Whole}
                   : LoopbackTiles::Answer{
                         "200 OK", LoopbackTiles::Picture(Qt::red), {}, LoopbackTiles::Manner::Whole};
    };
    EXPECT_EQ(Run(Wanted(QStringLiteral("10-10"))), 0);
    EXPECT_EQ(complaints.count(QStringLiteral("waiting")), 1) << qPrintable(complaints);
}

#include "Progress.h"
#include "ZoneCheck.h"
#include "ZoneDatabase.h"
#include "ZoneShapes.h"

#include <AxData/AxSealedFile.h>

#include <QCoreApplication>
#include <QDir>
#include <QFile>
#include <QProcess>
#include <QTemporaryDir>

#include <gtest/gtest.h>

namespace {
QVariantList ZoneRow(const QVariant& id, const QString& area, const QVariant& enable = 1,
                     const QVariant& lng = 1.0)
{
    return {lng, 2.0, id, enable, area};
}

QVariantList LiftRow(const QString& begin, const QString& expiry, const QString& area, const QString& ids,
                     const QVariant& status = 2)
{
    return {begin, expiry, area, ids, QStringLiteral("u"), status};
}

const QString square = QStringLiteral("1,2|1.1,2|1.1,2.1|1,2.1");

class Program : public testing::Test
{
protected:
    int Run(const QStringList& arguments, const QByteArray& key = {})
    {
        QProcess process;
        QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
        environment.remove(QStringLiteral("AXNOFLY_KEY"));
        if (!key.isNull())
            environment.insert(QStringLiteral("AXNOFLY_KEY"), QString::fromLatin1(key));
        process.setProcessEnvironment(environment);
        process.start(QDir(QCoreApplication::applicationDirPath()).filePath(QStringLiteral("axnofly")),
                      arguments);
        EXPECT_TRUE(process.waitForFinished(60000));
        EXPECT_EQ(process.exitStatus(), QProcess::NormalExit);
        output = QString::fromUtf8(process.readAllStandardOutput());
        complaints = QString::fromUtf8(process.readAllStandardError());
        return process.exitCode();
    }

    static QByteArray Contents(const QString& path)
    {
        QFile file(path);
        return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
    }

    QTemporaryDir folder;
    const QString target = folder.filePath(QStringLiteral("zones.db"));
    const QString source = QStringLiteral(AX_TEST_DATA "/zones.csv");
    const QStringList build{QStringLiteral("build"), QStringLiteral("--zones"), source, target};
    QString output;
    QString complaints;
};
} // namespace

TEST(ZoneCheck, FindsEverythingDoubtful)
{
    Progress progress(Progress::Kind::Never);
    const QDateTime now(QDate(2026, 6, 1), QTime(12, 0));
    const auto fields = [&](const ZoneRows& rows) {
        QStringList found;
        for (const Note& note : CheckZones(rows, now, progress))
            found << note.field;
        return found.join(QLatin1Char(' '));
    };
    const QVariantList good = ZoneRow(QStringLiteral("z1"), square);
    const QList<QPair<QVariantList, const char*>> zones{
        {good, "local_id"}, // stands twice
        {ZoneRow(QVariant(), square), "local_id"},
        {ZoneRow(QStringLiteral("a"), QStringLiteral("1,2|3")), "area"},
        {ZoneRow(QStringLiteral("a"), QStringLiteral("1,2|1.1,2.1|1.1,2|1,2.1")), "area"},
        {ZoneRow(QStringLiteral("a"), QStringLiteral("1,2|1.1,2.1|200,2")), "area"},
        {ZoneRow(QStringLiteral("a"), QStringLiteral("1,2|1.5,2|1.5,2.1|1,2.1")), "area"}, // reaches far
        {ZoneRow(QStringLiteral("a"), QStringLiteral("179.9,2|-179.9,2|-179.9,2.1|179.9,2.1")), ""},
        {ZoneRow(QStringLiteral("a"), QStringLiteral("0,80|90,80|180,80|-90,80")), "area"},
        {ZoneRow(QStringLiteral("a"), square, QVariant()), "enable"},
        {ZoneRow(QStringLiteral("a"), square, 1, QStringLiteral("east")), "lng"},
        {ZoneRow(QStringLiteral("a"), QStringLiteral("1,2")), ""}};
    for (const auto& [row, expected] : zones)
        EXPECT_EQ(fields({{good, row}, {}}), QString::fromLatin1(expected))
            << qPrintable(row.at(2).toString() + row.at(4).toString());

    const QString first = QStringLiteral("2026-01-01");
    const QString last = QStringLiteral("2026-06-01");
    const QString z1 = QStringLiteral("z1");
    const QList<QPair<QVariantList, const char*>> lifts{
        {LiftRow(first, last, square, z1), ""}, // its last day
        {LiftRow(first, QStringLiteral("2026-06-01 11:00:00"), square, z1), "expired_at"},
        {LiftRow(last, QStringLiteral("2026-05-01"), square, z1), "expired_at expired_at"},
        {LiftRow(first, QStringLiteral("1780315200"), square, z1), ""}, // that noon
        {LiftRow(first, QStringLiteral("1700000000"), square, z1), "expired_at expired_at"},
        {LiftRow(QStringLiteral("soon"), last, square, z1), "begin_at"},
        {LiftRow(first, last, QStringLiteral("1,2"), z1), "area"},
        {LiftRow(first, last, square, QStringLiteral("z1,z2")), "local_ids"},
        {LiftRow(first, last, square, QString()), "local_ids"},
        {LiftRow(first, last, square, z1, QStringLiteral("granted")), "status"}};
    for (const auto& [row, expected] : lifts)
        EXPECT_EQ(fields({{good}, {row}}), QString::fromLatin1(expected)) << qPrintable(row.at(1).toString());
}

TEST_F(Program, WhatIsBuiltIsListedOpenedAndSealed)
{
    ASSERT_EQ(Run(build + QStringList{QStringLiteral("--lifts"), QStringLiteral(AX_TEST_DATA "/lifts.csv")}),
              0)
        << qPrintable(complaints);
    EXPECT_EQ(AxSealedFile::FormOf(target), AxSealedFile::Form::Sealed);
    ASSERT_EQ(Run({QStringLiteral("list"), target}), 0);
    EXPECT_TRUE(output.contains(QStringLiteral("T4\t61.600000\t46.508439\t120\t1\t1\n")))
        << qPrintable(output);
    ASSERT_EQ(Run({QStringLiteral("list"), QStringLiteral("--near"), QStringLiteral("61,46,20"), target}), 0);
    EXPECT_EQ(output.count(QLatin1Char('\n')), 2) << qPrintable(output);
    ASSERT_EQ(Run({QStringLiteral("list"), QStringLiteral("--show-lifts"), target}), 0);
    EXPECT_EQ(output.count(QLatin1Char('\n')), 4) << qPrintable(output);
    EXPECT_EQ(Run({QStringLiteral("check"), target}), 3) << "a lift of it is out of date";
    EXPECT_TRUE(output.contains(QStringLiteral("row 2 (T4): expired_at"))) << qPrintable(output);

    const QString plain = folder.filePath(QStringLiteral("plain.db"));
    ASSERT_EQ(Run({QStringLiteral("open"), target, plain}), 0) << qPrintable(complaints);
    EXPECT_EQ(AxSealedFile::FormOf(plain), AxSealedFile::Form::Database);
    ASSERT_EQ(Run({QStringLiteral("seal"), plain, target}, "own key"), 0) << qPrintable(complaints);
    EXPECT_EQ(Run({QStringLiteral("list"), target}), 1);
    EXPECT_TRUE(complaints.contains(target)) << qPrintable(complaints);
    EXPECT_EQ(Run({QStringLiteral("list"), target}, "own key"), 0);
    // A journal beside it holds changes that the database does not have yet.
    QFile journal(plain + QStringLiteral("-wal"));
    ASSERT_TRUE(journal.open(QIODevice::WriteOnly));
    journal.write("pages");
    journal.close();
    EXPECT_EQ(Run({QStringLiteral("seal"), plain, target}), 1);
}

TEST_F(Program, WhatFailsLeavesTheTargetAsItWas)
{
    ASSERT_EQ(Run(build), 0);
    const QByteArray before = Contents(target);
    const QString faulty = folder.filePath(QStringLiteral("faulty.csv"));
    QFile file(faulty);
    ASSERT_TRUE(file.open(QIODevice::WriteOnly));
    file.write("id,lng,lat\na,x,2\nb,1,2\nb,3,4\n");
    file.close();

    const QStringList faultyBuild{QStringLiteral("build"), QStringLiteral("--zones"), faulty, target};
    EXPECT_EQ(Run(faultyBuild + QStringList{QStringLiteral("--strict")}), 3);
    EXPECT_TRUE(complaints.contains(QStringLiteral("faulty.csv:2: lng: "))) << qPrintable(complaints);
    EXPECT_EQ(Run({QStringLiteral("build"), QStringLiteral("--zones"), target, target}), 1);
    EXPECT_EQ(Run({QStringLiteral("build"), QStringLiteral("--zones"),
                   folder.filePath(QStringLiteral("no.csv")), target}),
              1);
    EXPECT_EQ(Run({QStringLiteral("build"), target}), 1);
    EXPECT_EQ(Run({QStringLiteral("seal"), faulty, target}), 1);
    EXPECT_EQ(Run({QStringLiteral("open"), faulty, target}), 1);
    EXPECT_EQ(Run({QStringLiteral("build")}), 2);
    EXPECT_EQ(Run({QStringLiteral("unseal"), target}), 2);
    EXPECT_EQ(Run({QStringLiteral("list"), target, QStringLiteral("--near"), QStringLiteral("1,2")}), 2);
    EXPECT_EQ(Run({QStringLiteral("list"), target, QStringLiteral("--key-file"), faulty + QLatin1Char('x')}),
              1);
    EXPECT_EQ(Contents(target), before);
    EXPECT_EQ(QDir(folder.path()).entryList(QDir::Files | QDir::Hidden),
              (QStringList{QStringLiteral("faulty.csv"), QStringLiteral("zones.db")}));

    ASSERT_EQ(Run(faultyBuild), 0) << "without --strict the rest is written";
    ASSERT_EQ(Run({QStringLiteral("list"), target}), 0);
    EXPECT_EQ(output.count(QLatin1Char('\n')), 2) << qPrintable(output);
}

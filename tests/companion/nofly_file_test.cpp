#include <AxData/AxSealedFile.h>
#include <AxData/CAxNoflyZoneMgr.h>

#include <QBuffer>
#include <QCoreApplication>
#include <QDir>
#include <QFile>
#include <QLockFile>
#include <QSqlDatabase>
#include <QSqlError>
#include <QSqlQuery>
#include <QTemporaryDir>
#include <QTest>

#include <gtest/gtest.h>

#include <algorithm>
#include <atomic>
#include <thread>
#include <vector>

#ifdef Q_OS_UNIX
#include <csignal>
#include <cstdlib>
#include <sys/resource.h>
#include <unistd.h>
#endif

namespace {
constexpr int zoneCount = 900;

void Execute(const QString& path, const QStringList& statements)
{
    {
        QSqlDatabase database = QSqlDatabase::addDatabase(QStringLiteral("QSQLITE"), QStringLiteral("make"));
        database.setDatabaseName(path);
        ASSERT_TRUE(database.open());
        QSqlQuery query(database);
        for (const QString& statement : statements)
            ASSERT_TRUE(query.exec(statement)) << qPrintable(query.lastError().text());
        database.close();
    }
    QSqlDatabase::removeDatabase(QStringLiteral("make"));
}

QByteArray Contents(const QString& path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

void Put(const QString& path, const QByteArray& bytes)
{
    QFile file(path);
    ASSERT_TRUE(file.open(QIODevice::WriteOnly));
    ASSERT_EQ(file.write(bytes), bytes.size());
}

class NoflyFile : public testing::Test
{
protected:
    // Some chunks of the cipher long.
    void SetUp() override
    {
        qputenv("TMPDIR", temporary.path().toUtf8()); // what others do among the temporary files is no matter
        Execute(plain, {QStringLiteral("CREATE TABLE no_fly_zone(lng REAL, lat REAL, local_id TEXT, "
                                       "enable INTEGER, area TEXT)"),
                        QStringLiteral("CREATE TABLE lift_no_fly_zone(begin_at TEXT, expired_at TEXT, "
                                       "area TEXT, local_ids TEXT, user_id TEXT, status INTEGER)"),
                        QStringLiteral("WITH RECURSIVE n(i) AS (SELECT 0 UNION ALL SELECT i + 1 FROM n "
                                       "WHERE i < %1) INSERT INTO no_fly_zone SELECT i, i / 100.0, 'zone-' "
                                       "|| i, 1, hex(zeroblob(100)) FROM n")
                            .arg(zoneCount - 1)});
        QString error;
        ASSERT_TRUE(AxSealedFile::Seal(plain, path, CAxNoflyZoneMgr::GetNoflyKey(), error))
            << qPrintable(error);
        sealed = Contents(path);
        ASSERT_GT(sealed.size(), 3 * 65536);
    }
    void TearDown() override
    {
        CAxNoflyZoneMgr::UseSampleKey();
        qputenv("TMPDIR", usual);
    }

    /// Folders with plain forms that are read aside.
    static QStringList Asides()
    {
        return QDir::temp().entryList({QStringLiteral("axzones.plain.*")}, QDir::Dirs);
    }
    /// The end of a process that has the file open.
    static void Die(const QString& file)
    {
        CAxNoflyZoneMgr zones;
        zones.DecryptionNoflyFile(file, file);
        std::_Exit(0);
    }

    /// What a start-up does; the number of zones, -1 when something of it fails.
    static int Start(const QString& file, QString* error = nullptr)
    {
        CAxNoflyZoneMgr zones;
        QList<QVariant> rows;
        const bool done = zones.DecryptionNoflyFile(file, file) && zones.ConnectDataBase(file) &&
                          zones.SelectRecord(QStringLiteral("lng, local_id"), QStringLiteral("no_fly_zone"),
                                             {}, {}, rows) &&
                          zones.CloseDataBase() && zones.EncryptionNoflyFile(file, file);
        if (error)
            *error = zones.GetLastError();
        return done ? rows.size() : -1;
    }

    /// The next start reads everything, and leaves a sealed file and nothing else.
    void ExpectNextStartIsWell()
    {
        EXPECT_EQ(Start(path), zoneCount);
        EXPECT_EQ(AxSealedFile::FormOf(path), AxSealedFile::Form::Sealed);
        EXPECT_EQ(QDir(folder.path()).entryList(QDir::AllEntries | QDir::Hidden | QDir::NoDotAndDotDot),
                  (QStringList{QStringLiteral("plain.db"), QStringLiteral("zones.db")}));
    }

    const QByteArray usual = qgetenv("TMPDIR");
    QTemporaryDir temporary;
    QTemporaryDir folder;
    const QString plain = folder.filePath(QStringLiteral("plain.db"));
    const QString path = folder.filePath(QStringLiteral("zones.db"));
    QByteArray sealed;
};
} // namespace

TEST_F(NoflyFile, IsPlainBetweenOpeningAndSealingOnly)
{
    CAxNoflyZoneMgr zones;
    ASSERT_TRUE(zones.DecryptionNoflyFile(path, path));
    EXPECT_EQ(Contents(path), Contents(plain));
    for (int twice = 0; twice < 2; ++twice) {
        ASSERT_TRUE(zones.EncryptionNoflyFile(path, path));
        EXPECT_EQ(Contents(path), sealed);
    }
    ExpectNextStartIsWell();

    // What is written into the plain form is kept.
    ASSERT_TRUE(zones.DecryptionNoflyFile(path, path));
    Execute(path, {QStringLiteral("UPDATE no_fly_zone SET local_id = 'other' || local_id")});
    ASSERT_TRUE(zones.EncryptionNoflyFile(path, path));
    EXPECT_NE(Contents(path).left(64), sealed.left(64)) << "the same random numbers give the contents away";
    ExpectNextStartIsWell();

    const QString there = folder.filePath(QString::fromUtf8("区 #1?.db"));
    ASSERT_TRUE(zones.DecryptionNoflyFile(path, there));
    EXPECT_EQ(AxSealedFile::FormOf(path), AxSealedFile::Form::Sealed);
    EXPECT_TRUE(zones.ConnectDataBase(there)) << qPrintable(zones.GetLastError());
    ASSERT_TRUE(zones.EncryptionNoflyFile(there, path));
    ASSERT_TRUE(QFile::remove(there));
#ifdef Q_OS_UNIX
    const QString link = folder.filePath(QStringLiteral("link.db"));
    ASSERT_TRUE(QFile::link(path, link));
    EXPECT_EQ(Start(link), zoneCount);
    EXPECT_TRUE(QFileInfo(link).isSymLink());
    ASSERT_TRUE(QFile::remove(link));
#endif
    {
        CAxNoflyZoneMgr forgetful;
        ASSERT_TRUE(forgetful.DecryptionNoflyFile(path, path));
        ASSERT_TRUE(forgetful.ConnectDataBase(path));
    }
    EXPECT_EQ(AxSealedFile::FormOf(path), AxSealedFile::Form::Sealed);
    ExpectNextStartIsWell();
}

TEST_F(NoflyFile, EveryChangedMissingOrAppendedByteIsNoticed)
{
    const QByteArray key = CAxNoflyZoneMgr::GetNoflyKey();
    const auto opens = [&key](QByteArray bytes) {
        QBuffer from(&bytes), to;
        from.open(QIODevice::ReadOnly);
        to.open(QIODevice::WriteOnly);
        QString error;
        const bool done = AxSealedFile::Open(from, to, key, error);
        EXPECT_NE(done, !error.isEmpty());
        return done;
    };
    ASSERT_TRUE(opens(sealed));
    EXPECT_FALSE(opens(sealed + '\0'));
    EXPECT_FALSE(opens(sealed + sealed));
    // All of the header, and the rest in strides that meet every kind of place in a chunk.
    for (int i = 0; i < sealed.size(); i += i < 200 ? 1 : 1009) {
        EXPECT_FALSE(opens(sealed.left(i))) << i;
        QByteArray changed = sealed;
        changed[i] = char(changed[i] ^ 0x10);
        EXPECT_FALSE(opens(changed)) << i;
    }
    constexpr int header = 8 + 32 + 24;
    constexpr int chunk = 65536 + 17;
    for (int i = header; i < sealed.size(); i += chunk)
        for (const int cut : {i - 1, i, i + 1, i + 16, i + 17})
            EXPECT_FALSE(opens(sealed.left(cut))) << cut;
    QByteArray swapped = sealed;
    swapped.replace(header, chunk, sealed.mid(header + chunk, chunk));
    swapped.replace(header + chunk, chunk, sealed.mid(header, chunk));
    EXPECT_FALSE(opens(swapped));
}

TEST_F(NoflyFile, WhatIsNoZoneFileIsRefusedAndLeftAlone)
{
    Put(path, sealed);
    CAxNoflyZoneMgr::SetNoflyKey("another");
    QString error;
    EXPECT_EQ(Start(path, &error), -1);
    EXPECT_TRUE(error.contains(QDir::toNativeSeparators(path))) << qPrintable(error);
    EXPECT_EQ(Contents(path), sealed);
    EXPECT_FALSE(CAxNoflyZoneMgr::SetNoflyKey({}));
    for (const QByteArray& form : {sealed, Contents(plain)}) {
        Put(path, form);
        EXPECT_EQ(Start(path, &error), -1) << "with an empty key";
        EXPECT_EQ(Contents(path), form);
    }
    CAxNoflyZoneMgr::UseSampleKey();

    QByteArray noise(100000, 'x');
    for (int i = 0; i < noise.size(); ++i)
        noise[i] = char(i * 2654435761u >> 13);
    const QByteArray database = Contents(plain);
    QByteArray scrambled = database;
    scrambled.replace(100, database.size() - 100, noise.repeated(4).left(database.size() - 100));
    // Asked for its rows, this view never ends.
    Execute(plain,
            {QStringLiteral("DROP TABLE no_fly_zone"),
             QStringLiteral("CREATE VIEW no_fly_zone AS WITH RECURSIVE n(lng, local_id) AS (SELECT 0, 0 "
                            "UNION ALL SELECT lng + 1, 0 FROM n) SELECT * FROM n")});
    const QList<QPair<const char*, QByteArray>> cases{{"empty", {}},
                                                      {"noise", noise},
                                                      {"text", "lng,lat,local_id\n"},
                                                      {"start of the header", sealed.left(8)},
                                                      {"cut", sealed.left(sealed.size() / 2)},
                                                      {"plain header only", database.left(16)},
                                                      {"plain and cut", database.left(database.size() / 2)},
                                                      {"plain with noise", scrambled},
                                                      {"a view instead of stored rows", Contents(plain)}};
    for (const auto& [name, bytes] : cases) {
        Put(path, bytes);
        EXPECT_EQ(Start(path, &error), -1) << name;
        EXPECT_FALSE(error.isEmpty()) << name;
        EXPECT_FALSE(QFile::exists(path + QStringLiteral(".lock"))) << name;
        if (!bytes.startsWith("SQLite")) {
            EXPECT_EQ(Contents(path), bytes) << name;
        }
    }

    ASSERT_TRUE(QFile::remove(path));
    EXPECT_EQ(Start(path), -1);
    EXPECT_FALSE(QFile::exists(path));
    EXPECT_EQ(Start(folder.path()), -1);

    // Its size alone tells; nobody waits for its bytes.
    for (const QByteArray& start : {sealed.left(200), database.left(100)}) {
        Put(path, start);
        ASSERT_TRUE(QFile::resize(path, qint64(1) << 40));
        EXPECT_EQ(Start(path), -1);
    }
}

TEST_F(NoflyFile, RowsComeAsTheyStandInTheTable)
{
    Execute(plain, {QStringLiteral("DELETE FROM no_fly_zone"),
                    QStringLiteral("INSERT INTO no_fly_zone VALUES(1.5, 2, '禁飞区 \"7\"''s', 1, '1,2|3,4'), "
                                   "(NULL, 'north', 'b', NULL, NULL), (-3, 4, 'a', 0, '')")});
    CAxNoflyZoneMgr zones;
    ASSERT_TRUE(zones.ConnectDataBase(plain));
    const QString table = QStringLiteral("no_fly_zone");
    const auto ids = [&](const QString& condition, const QString& order) {
        QList<QVariant> rows;
        QStringList found;
        EXPECT_TRUE(zones.SelectRecord(QStringLiteral("local_id"), table, condition, order, rows))
            << qPrintable(zones.GetLastError());
        for (const QVariant& row : rows)
            found << row.toList().at(0).toString().left(1);
        return found.join(QString());
    };

    QList<QVariant> rows{QVariant(7)};
    ASSERT_TRUE(zones.SelectRecord(QStringLiteral("enable,lng , LAT,local_id"), table, {}, {}, rows));
    ASSERT_EQ(rows.size(), 4) << "rows are appended";
    EXPECT_EQ(rows.at(1).toList(), (QVariantList{1, 1.5, 2.0, QString::fromUtf8("禁飞区 \"7\"'s")}));
    EXPECT_TRUE(rows.at(2).toList().at(0).isNull());
    EXPECT_EQ(rows.at(2).toList().at(2), QVariant(QStringLiteral("north")));

    EXPECT_EQ(ids({}, QStringLiteral("lng DESC")), QString::fromUtf8("禁ab"));
    EXPECT_EQ(ids({}, QStringLiteral("enable desc, local_id")), QString::fromUtf8("禁ab"));
    EXPECT_EQ(ids(QStringLiteral("lng > -5 AND (enable = 0 OR local_id LIKE '%''s')"), QStringLiteral("lng")),
              QString::fromUtf8("a禁"));

    rows.clear();
    EXPECT_TRUE(zones.SelectRecord(QStringLiteral("lng"), table, {}, QStringLiteral("lng DESC"),
                                   [&rows](const QVariantList& row) { rows += row; }));
    EXPECT_EQ(rows.mid(0, 2), (QVariantList{1.5, -3.0})) << "row by row";
    EXPECT_EQ(rows.size(), 3);

    rows = {QVariant(7)};
    for (const QStringList& query : // columns, table, condition, order
         {QStringList{"lng", "zones", "", ""},
          {"lng, height", table, "", ""},
          {"", table, "", ""},
          {"lng,", table, "", ""},
          {"lng", "no_fly_zone\" --", "", ""},
          {"count(*)", table, "", ""},
          {"lng", table, "height > 1", ""},
          {"lng", table, "1) UNION SELECT (1", ""},
          {"lng", table, "1; DROP TABLE no_fly_zone", ""},
          {"lng", table, "1 -- ", ""},
          {"lng", table, "'", ""},
          {"lng", table, "", "height"},
          {"lng", table, "", "lng; DELETE FROM no_fly_zone"}}) {
        EXPECT_FALSE(zones.SelectRecord(query[0], query[1], query[2], query[3], rows))
            << qPrintable(query.join('|'));
        EXPECT_EQ(rows, QList<QVariant>{QVariant(7)});
    }
    EXPECT_FALSE(zones.SelectRecord(QStringLiteral("height"), table, {}, {}, rows));
    EXPECT_TRUE(zones.GetLastError().contains(QStringLiteral("height"))) << qPrintable(zones.GetLastError());
    EXPECT_TRUE(zones.CloseDataBase());
    EXPECT_FALSE(zones.CloseDataBase());
    EXPECT_FALSE(zones.SelectRecord(QStringLiteral("lng"), table, {}, {}, rows));
}

TEST_F(NoflyFile, WhereItCannotBeWrittenItIsReadAsideAndNeverPlain)
{
    // A folder in the way of the lock: as unwritable for the superuser as for anybody.
    ASSERT_TRUE(QDir(path + QStringLiteral(".lock")).mkpath(QStringLiteral("x")));
    {
        CAxNoflyZoneMgr zones;
        QList<QVariant> rows;
        ASSERT_TRUE(zones.DecryptionNoflyFile(path, path)) << qPrintable(zones.GetLastError());
        EXPECT_EQ(Contents(path), sealed);
        EXPECT_EQ(Asides().size(), 1);
        ASSERT_TRUE(zones.ConnectDataBase(path)) << qPrintable(zones.GetLastError());
        EXPECT_TRUE(zones.SelectRecord(QStringLiteral("*"), QStringLiteral("no_fly_zone"), {}, {}, rows));
        EXPECT_EQ(rows.size(), zoneCount);
        EXPECT_TRUE(zones.EncryptionNoflyFile(path, path));
        EXPECT_EQ(Contents(path), sealed);
    }
    EXPECT_EQ(Asides(), QStringList());
}

TEST_F(NoflyFile, AnotherProgramThatHoldsItIsNotWaitedForForEver)
{
    QLockFile other(path + QStringLiteral(".lock"));
    ASSERT_TRUE(other.tryLock(0));
    EXPECT_EQ(Start(path), zoneCount);
    EXPECT_EQ(Contents(path), sealed);
    Put(path, Contents(plain)); // which the other program has opened
    EXPECT_EQ(Start(path), zoneCount);
    EXPECT_EQ(Contents(path), Contents(plain)) << "the other program's file was replaced";
    other.unlock();
    ExpectNextStartIsWell();
}

TEST_F(NoflyFile, ManyStartsAtOnceAllReadEverything)
{
    std::vector<std::thread> programs;
    std::atomic<int> complete{0};
    for (int i = 0; i < 4; ++i)
        programs.emplace_back([&] {
            for (int round = 0; round < 5; ++round)
                complete += Start(path) == zoneCount ? 1 : 0;
        });
    for (std::thread& program : programs)
        program.join();
    EXPECT_EQ(complete, 20);
    ExpectNextStartIsWell();
}

TEST_F(NoflyFile, WhatDiedStartsLeaveIsTakenUp)
{
    // Plain, with the lock of a process that died before it had written its name, and with what is written
    // aside in both of its stages.
    Put(path, Contents(plain));
    Put(path + QStringLiteral(".lock"), {});
    Put(path + QStringLiteral(".axpart"), sealed.left(1000));
    Put(path + QStringLiteral(".axpart.Qw12zX"), sealed.left(10));
    ExpectNextStartIsWell();
}

#ifdef Q_OS_UNIX
namespace {
/// From now on files of this process end after so many bytes: what a full disk does, or, as long as the
/// signal is not ignored, a death in the middle of writing.
void LimitFiles(rlim_t bytes)
{
    rlimit limit{};
    getrlimit(RLIMIT_FSIZE, &limit);
    limit.rlim_cur = bytes;
    setrlimit(RLIMIT_FSIZE, &limit);
}

void NoCore()
{
    rlimit limit{0, 0};
    setrlimit(RLIMIT_CORE, &limit);
}
} // namespace

TEST_F(NoflyFile, AFullDiskLosesNothing)
{
    const auto ignored = std::signal(SIGXFSZ, SIG_IGN);
    for (const int room : {1000, 65536, Contents(plain).size() - 1}) {
        Put(path, sealed);
        LimitFiles(rlim_t(room));
        CAxNoflyZoneMgr zones;
        EXPECT_FALSE(zones.DecryptionNoflyFile(path, path)) << room;
        LimitFiles(RLIM_INFINITY);
        EXPECT_EQ(Contents(path), sealed) << room;
        ExpectNextStartIsWell();

        ASSERT_TRUE(zones.DecryptionNoflyFile(path, path));
        LimitFiles(rlim_t(room));
        EXPECT_TRUE(zones.EncryptionNoflyFile(path, path)) << "sealing takes no room";
        LimitFiles(RLIM_INFINITY);
        EXPECT_EQ(Contents(path), sealed) << room;
        ExpectNextStartIsWell();

        // One without a sealed form, to which it could go back.
        Put(path, Contents(plain));
        ASSERT_TRUE(zones.DecryptionNoflyFile(path, path));
        LimitFiles(rlim_t(room));
        EXPECT_FALSE(zones.EncryptionNoflyFile(path, path)) << room;
        LimitFiles(RLIM_INFINITY);
        EXPECT_EQ(Contents(path), Contents(plain)) << room;
        EXPECT_TRUE(QTest::qWaitFor(
            [this] { return AxSealedFile::FormOf(path) == AxSealedFile::Form::Sealed; }, 20000))
            << "nobody tried again";
        ExpectNextStartIsWell();
    }
    std::signal(SIGXFSZ, ignored);
}

TEST_F(NoflyFile, ADeathAtAnyMomentLosesNothing)
{
    testing::FLAGS_gtest_death_test_style = "fast";
    for (const int room : {100, 5000, 65536, 200000, sealed.size() - 1}) {
        Put(path, sealed);
        const rlim_t opening = rlim_t(std::min(room, Contents(plain).size() - 1));
        EXPECT_EXIT((NoCore(), LimitFiles(opening), Start(path)), testing::KilledBySignal(SIGXFSZ), "")
            << room;
        ExpectNextStartIsWell();
        EXPECT_EXIT(
            {
                CAxNoflyZoneMgr zones;
                Put(path, Contents(plain));
                zones.DecryptionNoflyFile(path, path);
                NoCore();
                LimitFiles(rlim_t(room));
                zones.EncryptionNoflyFile(path, path);
            },
            testing::KilledBySignal(SIGXFSZ), "")
            << room;
        EXPECT_EQ(AxSealedFile::FormOf(path), AxSealedFile::Form::Database);
        ExpectNextStartIsWell();
    }
    EXPECT_EXIT(
        {
            CAxNoflyZoneMgr zones;
            zones.DecryptionNoflyFile(path, path);
            zones.ConnectDataBase(path);
            std::_Exit(0);
        },
        testing::ExitedWithCode(0), "");
    ExpectNextStartIsWell();
}

TEST_F(NoflyFile, APlainFormAsideGoesWithTheNextStartAfterADeath)
{
    const QString lock = path + QStringLiteral(".lock");
    ASSERT_TRUE(QDir(lock).mkpath(QStringLiteral("x")));
    EXPECT_EXIT(Die(path), testing::ExitedWithCode(0), "");
    EXPECT_EQ(Asides().size(), 1);
    ASSERT_TRUE(QDir(lock).removeRecursively());
    EXPECT_EQ(Start(path), zoneCount) << "in place";
    EXPECT_EQ(Asides(), QStringList());
}

TEST_F(NoflyFile, APlainFormLeftBehindIsItsOwnersAndNoStrangerSealsIt)
{
    CAxNoflyZoneMgr::SetNoflyKey("the host's");
    QString error;
    ASSERT_TRUE(AxSealedFile::Seal(plain, path, CAxNoflyZoneMgr::GetNoflyKey(), error));
    sealed = Contents(path);
    EXPECT_EXIT(Die(path), testing::ExitedWithCode(0), "");
    ASSERT_EQ(AxSealedFile::FormOf(path), AxSealedFile::Form::Database);
    CAxNoflyZoneMgr::UseSampleKey();
    EXPECT_EQ(Start(path, &error), -1) << "by a program without the key";
    CAxNoflyZoneMgr::SetNoflyKey("the host's");
    EXPECT_EQ(Contents(path), sealed);
    ExpectNextStartIsWell();

    // Other zones, put there after the death, are not given up for the old ones.
    EXPECT_EXIT(Die(path), testing::ExitedWithCode(0), "");
    Execute(plain, {QStringLiteral("UPDATE no_fly_zone SET lat = 7")});
    ASSERT_TRUE(QFile::remove(path) && QFile::copy(plain, path));
    ExpectNextStartIsWell();
    CAxNoflyZoneMgr zones;
    ASSERT_TRUE(zones.DecryptionNoflyFile(path, path));
    EXPECT_EQ(Contents(path), Contents(plain));
}

TEST_F(NoflyFile, ThePlainFormMayBeReadByItsOwnerOnlyAndTheSealedOneIsWhatItWas)
{
    constexpr QFile::Permissions owner = QFile::ReadOwner | QFile::WriteOwner;
    constexpr QFile::Permissions all = owner | QFile::ReadGroup | QFile::ReadOther;
    // Qt speaks of the calling user besides.
    const auto permissions = [](const QString& file) {
        return QFile::permissions(file) & ~(QFile::ReadUser | QFile::WriteUser | QFile::ExeUser);
    };
    const QString victim = folder.filePath(QStringLiteral("victim"));
    Put(victim, "untouched");
    for (const char* name : {".axpart", ".axsealed."})
        ASSERT_TRUE(QFile::link(victim, path + QLatin1String(name)));
    ASSERT_TRUE(QFile::setPermissions(path, all));
    constexpr uid_t somebody = 4321;
    const bool isRoot = ::geteuid() == 0;
    if (isRoot) {
        ASSERT_EQ(::chown(QFile::encodeName(path).constData(), somebody, somebody), 0);
    }
    for (int round = 0; round < 3; ++round) {
        CAxNoflyZoneMgr zones;
        ASSERT_TRUE(zones.DecryptionNoflyFile(path, path));
        EXPECT_EQ(permissions(path), owner);
        EXPECT_TRUE(!isRoot || QFileInfo(path).ownerId() == somebody) << round;
        if (round == 1)
            Execute(path, {QStringLiteral("UPDATE no_fly_zone SET lat = 8")});
        ASSERT_TRUE(zones.EncryptionNoflyFile(path, path));
        EXPECT_EQ(permissions(path), all) << round;
        EXPECT_TRUE(!isRoot || QFileInfo(path).ownerId() == somebody) << round;
    }
    EXPECT_EQ(Contents(victim), "untouched");
    ASSERT_TRUE(QFile::remove(victim));
    const QString there = folder.filePath(QStringLiteral("there.db"));
    CAxNoflyZoneMgr zones;
    ASSERT_TRUE(zones.DecryptionNoflyFile(path, there));
    EXPECT_EQ(permissions(there), owner);
    ASSERT_TRUE(QFile::remove(there));
    ExpectNextStartIsWell();
}
#endif

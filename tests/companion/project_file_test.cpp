#include "MadeUpProject.h"

#include <AxData/CAxBlockManager.h>
#include <AxData/project/AxProjectFile.h>

#include <QDir>
#include <QFile>
#include <QSqlDatabase>
#include <QSqlError>
#include <QSqlQuery>
#include <QTemporaryDir>

#include <gtest/gtest.h>

#include <limits>

namespace {
using State = AxProjectRead::State;
constexpr double notKnown = std::numeric_limits<double>::quiet_NaN();

/// Changes a file as another program might.
void edit(const QString& path, const QStringList& statements)
{
    {
        QSqlDatabase database = QSqlDatabase::addDatabase(QStringLiteral("QSQLITE"), QStringLiteral("edit"));
        database.setDatabaseName(path);
        ASSERT_TRUE(database.open());
        for (const QString& statement : statements) {
            QSqlQuery query(database);
            EXPECT_TRUE(query.exec(statement))
                << statement.toStdString() << query.lastError().text().toStdString();
        }
    }
    QSqlDatabase::removeDatabase(QStringLiteral("edit"));
}

QByteArray bytesOf(const QString& path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

class ProjectFile : public testing::Test
{
protected:
    void SetUp() override
    {
        QString fault;
        ASSERT_TRUE(AxWriteProject(path, project, &fault)) << fault.toStdString();
    }
    void TearDown() override { CAxBlockManager::instance().DeleteAllBlocks(); }
    QTemporaryDir folder;
    const QString path = folder.filePath(QString::fromUtf8("测试 %20#.axproject"));
    AxProject project = aProject(7);
};
} // namespace

TEST_F(ProjectFile, GivesBackWhatWasSaved)
{
    for (unsigned seed = 1; seed <= 20; ++seed) {
        const AxProject saved = aProject(seed);
        QString fault;
        ASSERT_TRUE(AxWriteProject(path, saved, &fault)) << fault.toStdString();
        const AxProjectRead read = AxReadProject(path);
        ASSERT_EQ(read.state, State::Whole) << read.fault.toStdString();
        EXPECT_TRUE(read.project == saved) << "seed " << seed;
    }
    EXPECT_EQ(QDir(folder.path()).entryList(QDir::Files | QDir::Hidden).size(), 1) << "something lies beside";
#ifndef Q_OS_WIN
    EXPECT_EQ(AxReadProject(QLatin1Char('/') + path).state, State::Whole) << "two slashes, as of a share";
#endif
    project.view->range = -1.0;
    ASSERT_TRUE(AxWriteProject(path, project)) << "for the camera's sake";
    EXPECT_FALSE(AxReadProject(path).project.view);
}

TEST_F(ProjectFile, FillsRecordsWithAllThatTheyHold)
{
    CAxBlockManager& records = CAxBlockManager::instance();
    QVector<AxProjectBlock> wanted = project.blocks;
    for (AxProjectBlock& block : wanted) {
        CAxBlock* record = records.AddBlock(block.id, block.type);
        AxFillBlock(*record, block);
        AxFillBlock(*record, block); // its tasks are replaced
        block.isLocked = false;      // the viewer's
        block.isVisible = true;
    }
    EXPECT_TRUE(AxProjectBlocks() == wanted);
    const CAxTask* task = records.GetBlock(wanted[0].id)->GetTask(QStringLiteral("task 1"));
    EXPECT_TRUE(task->KeepsItsRoute());
    records.GetBlock(wanted[0].id)->SetAverageAltitude(notKnown);
    EXPECT_TRUE(AxIsSameWork(AxProjectBlocks()[0], wanted[0]));
    EXPECT_FALSE(AxProjectBlocks()[0] == wanted[0]);
    records.GetBlock(wanted[1].id)->GetTaskPara()->GetExtendedTaskParam()->SetEndurance(5.0);
    EXPECT_FALSE(AxIsSameWork(AxProjectBlocks()[1], wanted[1]));
}

TEST_F(ProjectFile, OfVersion1IsReadAndStays)
{
    edit(path, {QStringLiteral("ALTER TABLE mark DROP COLUMN description"),
                QStringLiteral("ALTER TABLE mark DROP COLUMN follows_ground"),
                QStringLiteral("ALTER TABLE block DROP COLUMN wind_speed"),
                QStringLiteral("ALTER TABLE block DROP COLUMN wind_from"),
                QStringLiteral("ALTER TABLE block DROP COLUMN endurance"),
                QStringLiteral("PRAGMA user_version = 1")});
    const QByteArray before = bytesOf(path);
    for (AxProjectBlock& block : project.blocks) {
        block.parameters.GetExtendedTaskParam()->SetWind(0.0, 0.0);
        block.parameters.GetExtendedTaskParam()->SetEndurance(0.0);
    }
    project.marks[0].description.clear();
    project.marks[0].followsGround = false;
    const AxProjectRead read = AxReadProject(path);
    EXPECT_EQ(read.state, State::Migrated) << read.fault.toStdString();
    EXPECT_TRUE(read.project == project);
    EXPECT_EQ(bytesOf(path), before);
    for (const char* name : {".v1.axproject", ".v1-2.axproject"}) {
        QString kept;
        ASSERT_TRUE(AxWriteProject(path, read.project, nullptr, &kept));
        EXPECT_EQ(AxReadProject(path).state, State::Whole);
        EXPECT_TRUE(kept.endsWith(QLatin1String(name)) && bytesOf(kept) == before) << kept.toStdString();
        ASSERT_TRUE(AxWriteProject(path, read.project, nullptr, &kept));
        EXPECT_TRUE(kept.isEmpty()) << "a copy of today's version";
        QFile file(path);
        ASSERT_TRUE(file.open(QIODevice::WriteOnly) && file.write(before) > 0);
    }
}

TEST_F(ProjectFile, ThatIsNotWholeIsToldAndNotOverwritten)
{
    const QByteArray whole = bytesOf(path);
    const auto row = [](const char* statement) { return QStringList(QLatin1String(statement)); };
    const struct
    {
        const char* what;
        std::function<void()> make;
        State state;
        QStringList told;
    } rows[] = {
        {"another program's", [&] { edit(path, row("PRAGMA application_id = 5")); }, State::NotAProject, {}},
        {"a later version's", [&] { edit(path, row("PRAGMA user_version = 4")); }, State::Newer, {}},
        {"a text",
         [&] {
             QFile file(path);
             file.open(QIODevice::WriteOnly);
             file.write(QByteArray(500, 'x'));
         },
         State::NotAProject,
         {}},
        {"cut", [&] { QFile::resize(path, whole.size() / 2); }, State::Damaged, {}},
        {"scratched",
         [&] {
             QFile file(path);
             file.open(QIODevice::ReadWrite);
             file.seek(whole.size() / 2);
             file.write(QByteArray(9000, '\xff'));
         },
         State::Damaged,
         {}},
        {"without a table", [&] { edit(path, row("DROP TABLE task")); }, State::Damaged, {}},
        {"a view for a table",
         [&] {
             edit(path, {"ALTER TABLE mark RENAME TO m", "CREATE VIEW mark AS SELECT * FROM m"});
         },
         State::Damaged,
         {}},
        {"without a column",
         [&] { edit(path, row("ALTER TABLE block DROP COLUMN name")); },
         State::Damaged,
         {"name"}},
        {"no number",
         [&] { edit(path, row("UPDATE block SET fly_height = NULL WHERE type = 4")); },
         State::Damaged,
         {"Block 1", "fly_height"}},
        {"infinite",
         [&] { edit(path, row("UPDATE block SET band_left = 9e999 WHERE type = 4")); },
         State::Damaged,
         {"Block 1", "band_left"}},
        {"a text for a number",
         [&] { edit(path, row("UPDATE block SET wind_speed = 'abc' WHERE type = 4")); },
         State::Damaged,
         {"Block 1", "wind_speed"}},
        {"an unknown kind",
         [&] { edit(path, row("UPDATE block SET type = 77 WHERE type = 4")); },
         State::Damaged,
         {"Block 1", "type"}},
        {"latitude 91",
         [&] { edit(path, row("UPDATE block SET anchors = '[[0,0],[1,91]]' WHERE type = 4")); },
         State::Damaged,
         {"Block 1", "anchors", "2"}},
        {"a ring that is none",
         [&] { edit(path, row("UPDATE block SET anchors = '[[0,' WHERE type = 4")); },
         State::Damaged,
         {"Block 1", "anchors"}},
        {"half a home",
         [&] { edit(path, row("UPDATE block SET home_latitude = 5 WHERE type = 4")); },
         State::Damaged,
         {"Block 1", "home_latitude"}},
        {"a task of no block",
         [&] { edit(path, row("UPDATE task SET block = 'x' WHERE position = 1")); },
         State::Damaged,
         {"task"}},
        {"a task twice",
         [&] { edit(path, row("UPDATE task SET id = 'y' WHERE block LIKE '%-3'")); },
         State::Damaged,
         {"Block 1", "id"}},
        {"a route that is none",
         [&] { edit(path, row("UPDATE task SET route = '{}' WHERE block LIKE '%-3'")); },
         State::Damaged,
         {"Block 1", "route"}},
        {"a mark off the globe",
         [&] { edit(path, row("UPDATE mark SET latitude = -91")); },
         State::Damaged,
         {"latitude"}},
    };
    for (const auto& one : rows) {
        QFile::remove(path);
        ASSERT_TRUE(AxWriteProject(path, project));
        one.make();
        const QByteArray before = bytesOf(path);
        const AxProjectRead read = AxReadProject(path);
        EXPECT_EQ(read.state, one.state) << one.what;
        EXPECT_TRUE(read.project == AxProject()) << one.what;
        const bool hasRest = read.rest && read.rest->marks == project.marks && !read.leftOut.isEmpty();
        EXPECT_TRUE(hasRest || one.told.size() < 2) << one.what << ": no more than a block or task is lost";
        for (const QString& word : one.told + QStringList(QDir::toNativeSeparators(path)))
            EXPECT_TRUE(read.fault.contains(word)) << one.what << ": " << read.fault.toStdString();
        QString fault;
        EXPECT_FALSE(AxWriteProject(path, project, &fault)) << one.what;
        EXPECT_FALSE(fault.isEmpty()) << one.what;
        EXPECT_EQ(bytesOf(path), before) << one.what;
    }
    EXPECT_EQ(AxReadProject(folder.filePath(QStringLiteral("none"))).state, State::NotThere);
    EXPECT_EQ(AxReadProject(folder.path()).state, State::NotReadable);
    EXPECT_FALSE(AxWriteProject(folder.path(), project));
    EXPECT_FALSE(AxWriteProject(folder.filePath(QStringLiteral("no/folder.axproject")), project));
}

TEST_F(ProjectFile, IsNotWrittenWhereItCouldNotBeReadAgain)
{
    const QByteArray before = bytesOf(path);
    AxProject wrong = project;
    wrong.blocks[3].anchors[1].setY(notKnown);
    QString fault;
    EXPECT_FALSE(AxWriteProject(path, wrong, &fault));
    EXPECT_TRUE(fault.contains(QStringLiteral("Block 1")) && fault.contains(QStringLiteral("anchors")))
        << fault.toStdString();
    wrong = project;
    wrong.blocks[1].id = wrong.blocks[0].id;
    EXPECT_FALSE(AxWriteProject(path, wrong));
#ifdef Q_OS_LINUX
    const QByteArray room = qgetenv("TMPDIR");
    qputenv("TMPDIR", "/proc");
    EXPECT_FALSE(AxWriteProject(path, project, &fault));
    EXPECT_TRUE(fault.contains(QStringLiteral("\"/proc\""))) << fault.toStdString();
    room.isNull() ? qunsetenv("TMPDIR") : qputenv("TMPDIR", room);
#endif
    EXPECT_EQ(bytesOf(path), before);
}

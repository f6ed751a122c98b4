#include "MadeUpProject.h"

#include <AxData/project/AxProjectJournal.h>
#include <AxData/project/AxProjectLock.h>
#include <AxData/project/AxRecovery.h>

#include <QCoreApplication>
#include <QDir>
#include <QElapsedTimer>
#include <QFile>
#include <QProcess>
#include <QSignalSpy>
#include <QTemporaryDir>

#include <gtest/gtest.h>

#include <algorithm>

namespace {
constexpr int longMs = 20000;
const QString childFolder = QStringLiteral("AX_JOURNAL_CHILD");

class ProjectJournal : public testing::Test
{
protected:
    /// What is found in the folder is what the project holds.
    void expectFound(const AxProject& wanted, const QString& path)
    {
        QList<AxRecovery> found = AxFindRecoveries(folder.path());
        ASSERT_EQ(found.size(), 1);
        EXPECT_TRUE(found[0].project == wanted) << found[0].fault.toStdString();
        EXPECT_EQ(found[0].projectPath, path);
        EXPECT_LT(std::abs(found[0].time.secsTo(QDateTime::currentDateTimeUtc())), 60);
        EXPECT_EQ(AxFindRecoveries(folder.path()).size(), 0) << "offered twice at once";
        AxDropRecovery(found[0]);
        EXPECT_EQ(QDir(folder.path()).entryList(QDir::Files).size(), 0);
    }
    QTemporaryDir folder;
    AxProject project = aProject(3);
    std::unique_ptr<AxProjectJournal> journal =
        std::make_unique<AxProjectJournal>(folder.path(), [this] { return project; });
};
} // namespace

TEST_F(ProjectJournal, KeepsWhatIsNotSavedUntilItIs)
{
    const QString path = QStringLiteral("/a/b.axproject");
    const AxProject saved = project;
    journal->Begin(path, saved);
    QSignalSpy changes(journal.get(), &AxProjectJournal::modifiedChanged);
    project.view->range = 5.0; // is no edit
    project.blocks[1].averageAltitude = 9.0;
    journal->LookNow();
    ASSERT_TRUE(journal->Flush(longMs));
    EXPECT_TRUE(QDir(folder.path()).isEmpty());
    project.blocks[1].name = QStringLiteral("Quarry");
    journal->LookNow();
    ASSERT_TRUE(journal->Flush(longMs));
    EXPECT_TRUE(journal->IsModified());
    EXPECT_EQ(AxFindRecoveries(folder.path()).size(), 0) << "its program lives";
    project = saved; // undone
    journal->LookNow();
    ASSERT_TRUE(journal->Flush(longMs));
    EXPECT_TRUE(QDir(folder.path()).isEmpty());
    EXPECT_EQ(changes.size(), 2);

    project.blocks.removeAt(0);
    journal->LookNow();
    journal.reset();
    expectFound(project, path);
}

TEST_F(ProjectJournal, LooksOnceSoonAfterItWasTouched)
{
    int looks = 0;
    journal = std::make_unique<AxProjectJournal>(folder.path(), [this, &looks] {
        ++looks;
        return project;
    });
    journal->Touch(); // nothing is open yet
    journal->Begin({}, project);
    QSignalSpy changes(journal.get(), &AxProjectJournal::modifiedChanged);
    project.blocks[1].name = QStringLiteral("Quarry");
    for (int i = 0; i < 5; ++i)
        journal->Touch();
    ASSERT_TRUE(changes.wait(5000)); // less than without a touch
    EXPECT_EQ(looks, 1);
}

TEST_F(ProjectJournal, HoldsTheLastStateWhateverChanged)
{
    for (unsigned seed = 1; seed <= 6; ++seed) {
        std::mt19937 random(seed);
        journal = std::make_unique<AxProjectJournal>(folder.path(), [this] { return project; });
        journal->Begin({}, AxProject());
        for (int step = 0; step < 12; ++step) {
            QVector<AxProjectBlock>& blocks = project.blocks;
            const int place = blocks.isEmpty() ? 0 : static_cast<int>(random() % unsigned(blocks.size()));
            switch (blocks.isEmpty() ? 0 : random() % 5) {
            case 0:
                blocks += aProject(100 * seed + unsigned(step)).blocks;
                break;
            case 1:
                blocks.removeAt(place);
                break;
            case 2:
                std::swap(blocks[0], blocks[place]);
                break;
            case 3:
                blocks[place].tasks.clear();
                blocks[place].anchors += QPointF(1.0, 2.0);
                break;
            default:
                project.marks.clear();
                project.values[QString::number(step)] = QStringLiteral("x");
            }
            journal->LookNow();
            if (random() % 2 == 0) {
                ASSERT_TRUE(journal->Flush(longMs));
            }
        }
        journal.reset();
        expectFound(project, {});
    }
}

TEST_F(ProjectJournal, TellsOfWhatCannotBeKeptOrRecovered)
{
    QFile(folder.filePath(QStringLiteral("x.axrecovery"))).open(QIODevice::WriteOnly); // died at its birth
    EXPECT_EQ(AxFindRecoveries(folder.path()).size(), 0);
    EXPECT_TRUE(QDir(folder.path()).isEmpty());
    QString inFile; // where no folder can be made
    for (const char* name : {"y.axrecovery.damaged", "y.axrecovery.damaged-2"}) {
        QFile other(folder.filePath(QStringLiteral("y.axrecovery")));
        other.open(QIODevice::WriteOnly);
        other.write(QByteArray(5000, 'y'));
        other.close();
        QList<AxRecovery> found = AxFindRecoveries(folder.path());
        ASSERT_EQ(found.size(), 1);
        EXPECT_TRUE(found[0].fault.contains(QStringLiteral("y.axrecovery")));
        inFile = AxPutRecoveryAside(found[0]);
        EXPECT_EQ(inFile, folder.filePath(QLatin1String(name)));
    }
    EXPECT_EQ(AxFindRecoveries(folder.path()).size(), 0) << "offered for ever";

    journal = std::make_unique<AxProjectJournal>(inFile, [this] { return project; });
    QSignalSpy faults(journal.get(), &AxProjectJournal::failed);
    journal->Begin({}, AxProject());
    journal->LookNow();
    EXPECT_FALSE(journal->Flush(longMs));
    EXPECT_TRUE(faults.size() == 1 || faults.wait(longMs));
}

TEST_F(ProjectJournal, OneBadValueCostsItsBlockAloneAndIsToldAtOnce)
{
    project = AxProject();
    for (unsigned seed = 3; project.blocks.size() < 3; ++seed)
        project.blocks += aProject(seed).blocks;
    AxProject wanted = project;
    journal->Begin({}, AxProject());
    QSignalSpy refusals(journal.get(), &AxProjectJournal::refused);
    project.blocks[0].anchors += QPointF(180.03, 1.0);
    project.blocks[2].name = QString(20000, QLatin1Char('n'));
    for (const char* value : {"1", "2"}) { // the same faults again
        project.values[QStringLiteral("edit")] = QLatin1String(value);
        journal->LookNow();
        ASSERT_TRUE(journal->Flush(longMs));
    }
    QCoreApplication::processEvents();
    EXPECT_EQ(refusals.size(), 1);
    wanted.values = project.values;
    wanted.blocks.removeAt(2);
    wanted.blocks.removeAt(0);
    journal.reset();
    const QList<AxRecovery> found = AxFindRecoveries(folder.path());
    ASSERT_EQ(found.size(), 1);
    EXPECT_TRUE(found[0].fault.isEmpty() && found[0].project == wanted) << found[0].fault.toStdString();
    ASSERT_EQ(found[0].leftOut.size(), 2);
    EXPECT_TRUE(found[0].leftOut[0].contains(project.blocks[0].name.left(200).simplified()) &&
                found[0].leftOut[1].contains(QStringLiteral("nnn")))
        << found[0].leftOut.join('\n').toStdString();
}

// Not for people: edits on and on, and tells each edit, until it is killed.
TEST(ProjectJournalChild, DISABLED_Edits)
{
    AxProject project;
    AxProjectJournal journal(qEnvironmentVariable(qPrintable(childFolder)), [&] { return project; });
    journal.Begin(QStringLiteral("killed"), project);
    project.blocks.resize(1);
    project.blocks[0].id = QStringLiteral("edited");
    QFile told;
    told.open(stdout, QIODevice::WriteOnly);
    while (true) {
        ++project.blocks[0].videoRadius;
        journal.Touch();
        told.write(QStringLiteral("\nedit %1\n").arg(project.blocks[0].videoRadius).toLatin1());
        told.flush();
        QElapsedTimer rest;
        rest.start();
        while (rest.elapsed() < 5)
            QCoreApplication::processEvents(QEventLoop::AllEvents, 1);
    }
}

TEST(ProjectJournalOfAKilledProgram, LacksTheEditsOfASecondAtMost)
{
    for (const int wantedMs : {1300, 1750, 2211}) {
        const QTemporaryDir folder;
        QProcess child;
        QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
        environment.insert(childFolder, folder.path());
        child.setProcessEnvironment(environment);
        child.start(QCoreApplication::applicationFilePath(),
                    {QStringLiteral("--gtest_filter=*DISABLED_Edits"),
                     QStringLiteral("--gtest_also_run_disabled_tests")});
        QList<QPair<qint64, int>> edits; // when it was heard of, and its number
        QElapsedTimer clock;
        clock.start();
        while (edits.isEmpty() || clock.elapsed() - edits.first().first < wantedMs) {
            ASSERT_TRUE(child.waitForReadyRead(longMs));
            while (child.canReadLine()) {
                const QByteArray line = child.readLine();
                if (line.startsWith("edit "))
                    edits.append({clock.elapsed(), line.mid(5).trimmed().toInt()});
            }
        }
        child.kill();
        const qint64 killed = clock.elapsed();
        ASSERT_TRUE(child.waitForFinished(longMs));
        const QList<AxRecovery> found = AxFindRecoveries(folder.path());
        ASSERT_EQ(found.size(), 1);
        ASSERT_EQ(found[0].project.blocks.size(), 1) << found[0].fault.toStdString();
        const int kept = found[0].project.blocks[0].videoRadius;
        const auto lost =
            std::find_if(edits.begin(), edits.end(), [kept](const auto& edit) { return edit.second > kept; });
        ASSERT_NE(lost, edits.end()) << "it was killed before it edited";
        EXPECT_LT(killed - lost->first, 1000) << "milliseconds before the kill";
        if (qEnvironmentVariableIsSet("AX_JOURNAL_TELL"))
            printf("lost %lld ms\n", static_cast<long long>(killed - lost->first));
    }
}

TEST(ProjectLock, IsOneProgramsUntilItIsReleasedOrDies)
{
    const QTemporaryDir folder;
    const QString path = folder.filePath(QStringLiteral("a.axproject"));
    AxProjectLock mine;
    AxProjectLock others;
    EXPECT_EQ(mine.Take(path), AxProjectLock::Answer::Held);
    EXPECT_EQ(mine.Take(path), AxProjectLock::Answer::Held);
    EXPECT_EQ(others.Take(path), AxProjectLock::Answer::Taken);
    EXPECT_TRUE(others.Owner().contains(QString::number(QCoreApplication::applicationPid())))
        << others.Owner().toStdString();
    EXPECT_EQ(mine.Take(folder.filePath(QStringLiteral("b.axproject"))), AxProjectLock::Answer::Held);
    EXPECT_EQ(others.Take(path), AxProjectLock::Answer::Held) << "saved under another name, it is free";
    EXPECT_EQ(mine.Take(path), AxProjectLock::Answer::Taken);
    EXPECT_FALSE(mine.MayBeGone());
    EXPECT_EQ(mine.TakeOver(path), AxProjectLock::Answer::Taken) << "it lives, on this computer";
    // Of another computer, and one that a power cut has left empty.
    for (const char* text : {"77\nAxGroundControl\nfield-laptop-of-a-test\n\n\n", ""}) {
        const QString left = folder.filePath(QStringLiteral("left.axproject"));
        QFile file(left + QStringLiteral(".lock"));
        ASSERT_TRUE(file.open(QIODevice::WriteOnly));
        file.write(text);
        file.close();
        AxProjectLock next;
        ASSERT_EQ(next.Take(left), AxProjectLock::Answer::Taken) << text;
        EXPECT_TRUE(next.MayBeGone());
        EXPECT_EQ(next.Owner().contains(QStringLiteral("field-laptop")), *text != 0);
        EXPECT_EQ(next.TakeOver(left), AxProjectLock::Answer::Held) << text;
    }
    EXPECT_TRUE(mine.IsOf(folder.filePath(QStringLiteral("b.axproject"))));
    EXPECT_EQ(mine.Take(folder.filePath(QStringLiteral("no/c.axproject"))),
              AxProjectLock::Answer::NotPossible);
    mine.Release();
    others.Release();
    EXPECT_TRUE(QDir(folder.path()).isEmpty());
}

// Projects on a real viewer, and files that are dropped.
#include "ModalBox.h"
#include "SuiteViewer.h"

#include "host/FileDrop.h"
#include "host/project/ProjectOnMap.h"
#include "host/project/ProjectSession.h"
#include "interaction/AxBlockOperations.h"
#include "interaction/objects/CAxHandleAdapter.h"

#include <AxData/CAxBlockManager.h>
#include <AxData/project/AxProjectFile.h>

#include <QDropEvent>
#include <QFile>
#include <QFileDialog>
#include <QLineEdit>
#include <QListView>
#include <QMenu>
#include <QMimeData>
#include <QTemporaryDir>
#include <QTimer>
#include <QUndoStack>
#include <QUrl>
#include <QWidget>

#include <memory>

namespace {
class Project : public SuiteViewer
{
protected:
    void SetUp() override
    {
        NewSession();
        session->Start({});
    }
    void TearDown() override
    {
        session->End();
        session.reset();
        ProjectOnMap::Show(*viewer, {});
    }
    void NewSession()
    {
        window.setWindowTitle(QStringLiteral("Host"));
        session = std::make_unique<ProjectSession>(viewer, &window, folder.filePath("recovery"), false);
        QObject::connect(session.get(), &ProjectSession::Told, &window,
                         [this](const QString& text) { told = text; });
    }

    static AxProject Two()
    {
        AxProject project;
        for (int i = 0; i < 2; ++i) {
            AxProjectBlock block;
            block.id = QStringLiteral("id%1").arg(i);
            block.name = QStringLiteral("Block of %1").arg(i);
            block.anchors = {{10.0 + i, 0.0}, {10.01 + i, 0.0}, {10.01 + i, 0.01}};
            block.isLocked = i == 0;
            block.isVisible = i == 1;
            block.tasks += AxProjectTask{QStringLiteral("t"), QStringLiteral("Task"), {}, 1, {}, nullptr};
            project.blocks += block;
        }
        project.marks += AxProjectMark{QStringLiteral("m"), QStringLiteral("Gate"), 1.0, 2.0, 3.0, {}};
        project.values[QStringLiteral("units")] = QStringLiteral("mu");
        project.view = AxProjectView{10.5, 0.005, 0.0, 30.0, -40.0, 90000.0};
        return project;
    }
    QString Saved(const char* name, const AxProject& project = Two()) const
    {
        const QString path = folder.filePath(QLatin1String(name));
        EXPECT_TRUE(AxWriteProject(path, project));
        return path;
    }
    /// Writes a name into the box for files; the question whether to replace one comes while it is open.
    static ModalBox::Answer Name(const QString& file)
    {
        return [file](QDialog& box) {
            auto* line = box.findChild<QLineEdit*>(QStringLiteral("fileNameEdit"));
            ASSERT_TRUE(line) << box.windowTitle().toStdString();
            line->setText(file);
            // Whoever types has nothing selected there any more.
            box.findChild<QListView*>(QStringLiteral("listView"))->selectionModel()->clearSelection();
            QTimer::singleShot(0, &box, [&box] { box.accept(); });
        };
    }
    static void Rename(const char* name)
    {
        CAxBlockManager::instance().GetBlock("id1")->SetBlockName(QLatin1String(name));
    }

    QTemporaryDir folder;
    QWidget window;
    QMenu menu;
    ModalBox boxes;
    QString told;
    std::unique_ptr<ProjectSession> session;
};
} // namespace

TEST_F(Project, IsShownAsItWasSaved)
{
    const AxProject saved = Two();
    viewer->GetUndoStack()->push(new QUndoCommand(QStringLiteral("of the former project")));
    const QString path = Saved("a.axproject");
    ASSERT_TRUE(session->Open(path));
    EXPECT_EQ(viewer->GetUndoStack()->count(), 0);
    const AxProject seen = ProjectOnMap::Look(*viewer, saved);
    EXPECT_TRUE(AxIsSameWork(seen, saved));
    EXPECT_NEAR(seen.view->range, 90000.0, 1.0);
    EXPECT_NEAR(seen.view->longitude, 10.5, 1e-6);
    EXPECT_TRUE(viewer->FindExistNode("id0")->IsLock());
    EXPECT_FALSE(viewer->FindExistNode("id0")->IsVisible());
    EXPECT_EQ(window.windowTitle(), QStringLiteral("a[*] - Host"));
    // What nothing shows is saved again.
    Rename("Quarry");
    ASSERT_TRUE(waitFor([this] { return window.isWindowModified(); }, 5000));
    boxes.answers = {ModalBox::Press(QStringLiteral("&Save"))};
    EXPECT_TRUE(session->MayLeave({}, {}, {}));
    EXPECT_FALSE(window.isWindowModified());
    AxProject wanted = saved;
    wanted.blocks[1].name = QStringLiteral("Quarry");
    EXPECT_TRUE(AxIsSameWork(AxReadProject(path).project, wanted));
}

TEST_F(Project, EndsTheLineThatCutsABlock)
{
    AxProject project = Two();
    project.blocks[1].tasks.clear();
    ASSERT_TRUE(session->Open(Saved("a.axproject", project)));
    ASSERT_TRUE(viewer->GetBlockOperations()->BeginSplit(QStringLiteral("id1")));
    ASSERT_TRUE(viewer->GetCurHandleAdapter());
    ProjectOnMap::Show(*viewer, {});
    EXPECT_FALSE(viewer->GetCurHandleAdapter());
    ASSERT_TRUE(session->Open(Saved("b.axproject", project)));
    EXPECT_TRUE(viewer->GetBlockOperations()->BeginSplit(QStringLiteral("id1")));
}

TEST_F(Project, IsLeftOnlyAfterAQuestion)
{
    const QString path = Saved("a.axproject");
    ASSERT_TRUE(session->Open(path));
    EXPECT_TRUE(session->MayLeave({}, {}, {}));
    EXPECT_EQ(boxes.count, 0);
    // Undone edits are no changes.
    const QString name = QStringLiteral("Block of 1");
    Rename("Quarry");
    Rename("Block of 1");
    EXPECT_TRUE(session->MayLeave({}, {}, {}));
    EXPECT_EQ(boxes.count, 0);
    Rename("Quarry");
    boxes.answers = {ModalBox::Press(QStringLiteral("Cancel")),
                     ModalBox::Press(QStringLiteral("&Discard changes")),
                     ModalBox::Press(QStringLiteral("Cancel"))};
    EXPECT_FALSE(session->Open(Saved("b.axproject", {})));
    EXPECT_TRUE(CAxBlockManager::instance()._exist(QStringLiteral("Quarry")));
    EXPECT_TRUE(session->MayLeave({}, {}, {}));
    EXPECT_FALSE(
        session->MayLeave(QStringLiteral("It flies."), QStringLiteral("Close?"), QStringLiteral("Close")));
    EXPECT_TRUE(boxes.texts.join(QLatin1Char(' ')).contains(QStringLiteral("It flies. Close?")));
    // What cannot be opened asks nothing and changes nothing.
    boxes.answers = {ModalBox::Press(QStringLiteral("OK"))};
    QFile broken(folder.filePath(QStringLiteral("c.axproject")));
    ASSERT_TRUE(broken.open(QIODevice::WriteOnly));
    broken.write("no project");
    broken.close();
    EXPECT_FALSE(session->Open(broken.fileName()));
    EXPECT_EQ(boxes.titles.last(), QStringLiteral("Open project"));
    EXPECT_TRUE(CAxBlockManager::instance()._exist(QStringLiteral("Quarry")));
}

TEST_F(Project, OfAnotherProgramIsOpenedAsACopyThatHasNoFile)
{
    const QString path = Saved("a.axproject");
    AxProjectLock others;
    ASSERT_EQ(others.Take(path), AxProjectLock::Answer::Held);
    boxes.answers = {ModalBox::Press(QStringLiteral("Cancel")),
                     ModalBox::Press(QStringLiteral("Open as a copy"))};
    EXPECT_FALSE(session->Open(path));
    ASSERT_TRUE(session->Open(path));
    EXPECT_EQ(window.windowTitle(), QStringLiteral("Copy of a[*] - Host"));
    Rename("Quarry");
    bool isNameAsked = false;
    boxes.answers = {ModalBox::Press(QStringLiteral("&Save")), [&isNameAsked](QDialog& box) {
                         isNameAsked = qobject_cast<QFileDialog*>(&box);
                         box.reject();
                     }};
    EXPECT_FALSE(session->MayLeave({}, {}, {}));
    EXPECT_TRUE(isNameAsked) << "saved over the other program's file";
    EXPECT_TRUE(AxIsSameWork(AxReadProject(path).project, Two()));
}

TEST_F(Project, ThatSomebodyElseHasChangedIsNotOverwrittenWithoutAQuestion)
{
    const QString path = Saved("a.axproject");
    ASSERT_TRUE(session->Open(path));
    Rename("Quarry");
    AxProject others = Two();
    others.blocks.removeLast();
    ASSERT_TRUE(AxWriteProject(path, others));
    const auto save = ModalBox::Press(QStringLiteral("&Save"));
    bool isNameAsked = false;
    boxes.answers = {save, ModalBox::Press(QStringLiteral("Cancel")), save,
                     ModalBox::Press(QStringLiteral("Save &as...")), [&isNameAsked](QDialog& box) {
                         isNameAsked = qobject_cast<QFileDialog*>(&box);
                         box.reject();
                     }};
    EXPECT_FALSE(session->MayLeave({}, {}, {}));
    EXPECT_FALSE(session->MayLeave({}, {}, {}));
    EXPECT_TRUE(isNameAsked && AxIsSameWork(AxReadProject(path).project, others));
    boxes.answers = {save, ModalBox::Press(QStringLiteral("&Overwrite"))};
    EXPECT_TRUE(session->MayLeave({}, {}, {}));
    EXPECT_EQ(AxReadProject(path).project.blocks.size(), 2);
    Rename("Gravel pit");
    const int before = boxes.count;
    boxes.answers = {save};
    EXPECT_TRUE(session->MayLeave({}, {}, {}));
    EXPECT_EQ(boxes.count, before + 1) << "its own file";
}

TEST_F(Project, IsSavedUnderOtherNamesThatAreItsOwnThen)
{
    const QString path = Saved("a.axproject");
    const QString yes = QStringLiteral("&Yes");
    ASSERT_TRUE(session->Open(path));
    AxProject others = Two();
    others.marks.clear();
    ASSERT_TRUE(AxWriteProject(path, others));
    session->FillMenu(&menu);
    QAction* saveAs = menu.actions()[4];
    saveAs->setEnabled(true);
    // Its own name, which is another program's now; on the way the pilot takes a third one.
    boxes.answers = {Name(path), ModalBox::Press(yes), ModalBox::Press(QStringLiteral("Save &as...")),
                     Name(folder.filePath("Field 1.2"))};
    saveAs->trigger();
    const QString whole = folder.filePath("Field 1.2.axproject");
    EXPECT_EQ(window.windowTitle(), QStringLiteral("Field 1.2[*] - Host"));
    EXPECT_TRUE(AxIsSameWork(AxReadProject(whole).project, Two()) && !QFile::exists(whole.chopped(10)));
    AxProjectLock second;
    EXPECT_EQ(second.Take(whole), AxProjectLock::Answer::Taken) << "two programs have it";
    EXPECT_EQ(second.Take(path), AxProjectLock::Answer::Held);
    const QString cancel = QStringLiteral("Cancel");
    // What is there is replaced after a question, also where the point of the name hides it from the box.
    const QString taken = Saved("Field 3.4.axproject", {});
    boxes.answers = {Name(taken.chopped(10)), ModalBox::Press(cancel)};
    saveAs->trigger();
    EXPECT_TRUE(AxReadProject(taken).project.blocks.isEmpty());
    EXPECT_TRUE(boxes.answers.isEmpty());
}

TEST_F(Project, OfAComputerThatIsGoneIsTakenOver)
{
    const QString path = Saved("a.axproject");
    QFile left(path + QStringLiteral(".lock"));
    ASSERT_TRUE(left.open(QIODevice::WriteOnly));
    left.write("77\nAxGroundControl\nfield-laptop-of-a-test\n\n\n");
    left.close();
    boxes.answers = {ModalBox::Press(QStringLiteral("Cancel")),
                     ModalBox::Press(QStringLiteral("&Take over"))};
    EXPECT_FALSE(session->Open(path));
    EXPECT_TRUE(boxes.texts.join(QLatin1Char(' ')).contains(QStringLiteral("field-laptop")));
    ASSERT_TRUE(session->Open(path));
    EXPECT_EQ(window.windowTitle(), QStringLiteral("a[*] - Host"));
}

TEST_F(Project, WithAValueThatCannotBeIsOpenedWithoutIt)
{
    const QString path = Saved("a.axproject");
    QFile file(path);
    ASSERT_TRUE(file.open(QIODevice::ReadWrite));
    QByteArray bytes = file.readAll();
    ASSERT_TRUE(bytes.contains("[[11"));
    ASSERT_TRUE(file.seek(0) && file.write(bytes.replace("[[11", "[[1x")) == bytes.size());
    file.close();
    boxes.answers = {ModalBox::Press(QStringLiteral("Cancel")),
                     ModalBox::Press(QStringLiteral("Open the &rest as a copy"))};
    EXPECT_FALSE(session->Open(path));
    ASSERT_TRUE(session->Open(path));
    EXPECT_TRUE(boxes.texts.join(QLatin1Char(' ')).contains(QStringLiteral("Block of 1")));
    EXPECT_EQ(CAxBlockManager::instance().GetBlockList().size(), 1);
    EXPECT_EQ(window.windowTitle(), QStringLiteral("Copy of a[*] - Host"));
}

TEST_F(Project, LeavesADrawingThatGoesOnUntilThePilotWantsToGo)
{
    viewer->SetToolType(ToolPolygonBlock);
    CAxHandleAdapter* drawing = viewer->createShapeNode();
    ASSERT_TRUE(drawing);
    EXPECT_TRUE(session->MayLeave({}, {}, {})) << "without a corner";
    viewer->SetToolType(ToolPolygonBlock);
    drawing = viewer->createShapeNode();
    drawing->slotPicked(osg::Vec3d(10.0, 0.0, 0.0), osg::Vec3d(1.0, 1.0, 1.0));
    ASSERT_TRUE(ProjectOnMap::IsDrawing(*viewer));
    boxes.answers = {ModalBox::Press(QStringLiteral("Cancel")),
                     ModalBox::Press(QStringLiteral("&Discard changes"))};
    EXPECT_FALSE(session->MayLeave({}, {}, {}));
    EXPECT_TRUE(ProjectOnMap::IsDrawing(*viewer));
    EXPECT_TRUE(session->MayLeave({}, {}, {}));
    EXPECT_FALSE(ProjectOnMap::IsDrawing(*viewer));
    EXPECT_EQ(viewer->GetToolType(), ToolNavigate);
}

TEST_F(Project, OfAProgramThatDiedIsOffered)
{
    const QString path = Saved("a.axproject");
    ASSERT_TRUE(session->Open(path));
    Rename("Quarry");
    CAxBlockManager::instance().GetBlock("id0")->SetBlockName(QString(20000, QLatin1Char('n')));
    ASSERT_TRUE(waitFor([this] { return told.contains(QStringLiteral("cannot be saved")); }, 5000));
    session.reset(); // without an end
    ProjectOnMap::Show(*viewer, {});
    for (const char* button : {"Ask again later", "&Recover"}) {
        NewSession();
        boxes.answers = {ModalBox::Press(QLatin1String(button))};
        session->Start({});
        EXPECT_EQ(boxes.title, QStringLiteral("Recover project"));
        if (QLatin1String(button) != QLatin1String("&Recover")) {
            session->End();
            session.reset();
        }
    }
    EXPECT_TRUE(CAxBlockManager::instance()._exist(QStringLiteral("Quarry")));
    EXPECT_EQ(CAxBlockManager::instance().GetBlockList().size(), 1) << "what cannot be saved is left out";
    EXPECT_TRUE(boxes.texts.last().contains(QStringLiteral("nnn")) && told.contains(".damaged"))
        << boxes.texts.last().toStdString() << told.toStdString();
    EXPECT_TRUE(window.isWindowModified());
    EXPECT_EQ(window.windowTitle(), QStringLiteral("a[*] - Host"));
    EXPECT_TRUE(AxIsSameWork(AxReadProject(path).project, Two())) << "saved by itself";
}

TEST(FileDrop, GivesEachFileToTheFirstThatWantsIt)
{
    QWidget window;
    FileDrop drop(&window);
    QStringList projects;
    QStringList others;
    bool isOpened = true;
    drop.Add(&ProjectSession::IsProjectFile, [&](const QStringList& files) {
        projects += files;
        QTest::qWait(1); // as a box
        EXPECT_TRUE(others.isEmpty()) << "before the project is there";
        return isOpened;
    });
    drop.Add([](const QString& file) { return file.contains(QLatin1Char('a')); },
             [&](const QStringList& files) {
                 others += files;
                 return true;
             });
    const auto dropped = [&window](const QStringList& urls) {
        QMimeData data;
        QList<QUrl> list;
        for (const QString& url : urls)
            list += QUrl(url);
        data.setUrls(list);
        QDragEnterEvent enter(QPoint(1, 1), Qt::CopyAction, &data, Qt::LeftButton, Qt::NoModifier);
        enter.ignore();
        QCoreApplication::sendEvent(&window, &enter);
        if (!enter.isAccepted())
            return false;
        QDropEvent event(QPointF(1, 1), Qt::CopyAction, &data, Qt::LeftButton, Qt::NoModifier);
        event.ignore();
        QCoreApplication::sendEvent(&window, &event);
        return event.isAccepted();
    };
    EXPECT_TRUE(dropped({"file:///tmp/a.AXPROJECT", "file:///tmp/a%20b.kml", "file:///x/y"}));
    EXPECT_TRUE(projects.isEmpty()) << "opened while the other program waits";
    QTest::qWait(0);
    EXPECT_EQ(projects, QStringList("/tmp/a.AXPROJECT"));
    EXPECT_EQ(others, QStringList("/tmp/a b.kml"));
    others.clear();
    isOpened = false;
    EXPECT_TRUE(dropped({"file:///tmp/a.axproject", "file:///tmp/a.kml"}));
    QTest::qWait(0);
    EXPECT_TRUE(projects.size() == 2 && others.isEmpty()) << "imported into the project that stays";
    EXPECT_FALSE(dropped({"file:///x/y", "https://example.org/a.axproject"}));
    QDialog box;
    box.setModal(true);
    box.show();
    EXPECT_FALSE(dropped({"file:///tmp/a.axproject"})) << "while a box waits";
}

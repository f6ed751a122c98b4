#include "host/project/ProjectSession.h"
#include "host/project/EditWatch.h"
#include "host/project/ProjectOnMap.h"
#include "host/project/RecentProjects.h"
#include "viewer/CAxEarthViewer.h"

#include <AxData/CAxControl.h>
#include <AxData/project/AxProjectFile.h>
#include <AxData/project/AxProjectJournal.h>

#include <QAction>
#include <QCryptographicHash>
#include <QDebug>
#include <QDir>
#include <QFile>
#include <QFileDialog>
#include <QFileInfo>
#include <QMenu>
#include <QMessageBox>
#include <QPushButton>
#include <QStandardPaths>

#include <utility>

namespace {
constexpr int recoveredMs = 10000;
constexpr int mostLeftOut = 8;

QString Shown(const QString& file)
{
    return QDir::toNativeSeparators(file);
}

// Empty when it cannot be read.
QByteArray ContentsOf(const QString& path)
{
    QFile file(path);
    QCryptographicHash hash(QCryptographicHash::Sha256);
    return file.open(QIODevice::ReadOnly) && hash.addData(&file) ? hash.result() : QByteArray();
}

// As many names as a box has room for.
QString Few(const QStringList& names)
{
    constexpr int few = 8;
    constexpr int longest = 40;
    QStringList shown;
    for (const QString& name : names.mid(0, few)) {
        const QString line = name.simplified();
        shown += line.size() > longest ? line.left(longest) + QStringLiteral("...") : line;
    }
    if (names.size() > few)
        shown += QStringLiteral("... (%1)").arg(names.size());
    return shown.join(QStringLiteral(", "));
}

// A box whose texts are all of this program, and that has no markup in it.
class Question : public QMessageBox
{
public:
    Question(QWidget* window, const QString& title, const QString& text)
        : QMessageBox(QMessageBox::Question, title, text, QMessageBox::NoButton, window)
    {
        setTextFormat(Qt::PlainText);
    }
    /// The button that was pressed.
    QAbstractButton* Ask()
    {
        exec();
        return clickedButton();
    }
};
} // namespace

ProjectSession::ProjectSession(CAxEarthViewer* earthViewer, QWidget* ofWindow, const QString& folder,
                               bool unattended)
    : QObject(ofWindow), viewer(earthViewer), window(ofWindow), recoveryFolder(folder),
      isUnattended(unattended), journal(new AxProjectJournal(
                                    folder, [this] { return ProjectOnMap::Look(*viewer, rest); }, this)),
      lock(std::make_unique<AxProjectLock>()), recent(new RecentProjects(this)),
      windowTitle(ofWindow->windowTitle())
{
    CAxControl* control = CAxControl::GetInstance();
    connect(journal, &AxProjectJournal::modifiedChanged, this, [this, control](bool modified) {
        control->SetProjectModified(modified);
        window->setWindowModified(modified);
    });
    connect(journal, &AxProjectJournal::failed, this, [this](const QString& fault) {
        emit Told(tr("What is not saved cannot be kept for a crash: %1").arg(fault));
    });
    connect(journal, &AxProjectJournal::refused, this, [this](const QString& fault) {
        emit Told(tr("The project cannot be saved as it is now: %1").arg(fault));
    });
    connect(recent, &RecentProjects::Changed, this, &ProjectSession::RecentChanged);
    // Not while the menu is open, which the list may change.
    connect(recent, &RecentProjects::Chosen, this, &ProjectSession::OpenRecent, Qt::QueuedConnection);
    connect(new EditWatch(viewer->GetUndoStack(), this), &EditWatch::Edited, journal,
            &AxProjectJournal::Touch);
    // The mark is there as soon as the edit is; what turns out to be none takes it away again.
    connect(
        control, &CAxControl::projectModifiedChanged, this,
        [this, control](bool modified) {
            if (!modified)
                return;
            journal->LookNow();
            control->SetProjectModified(journal->IsModified());
        },
        Qt::QueuedConnection);
    ShowTitle();
}

ProjectSession::~ProjectSession() = default;

QByteArray ProjectSession::Recent() const
{
    return recent->Bytes();
}

void ProjectSession::SetRecent(const QByteArray& kept)
{
    recent->SetBytes(kept);
}

void ProjectSession::FillMenu(QMenu* menu)
{
    const QList<QAction*> before = menu->actions();
    menu->addAction(tr("&New project"), this, &ProjectSession::New, QKeySequence::New);
    menu->addAction(tr("&Open project..."), this, &ProjectSession::ChooseFile, QKeySequence::Open);
    recent->SetMenu(menu->addMenu(tr("&Recent projects")));
    menu->addAction(
        tr("&Save project"), this, [this] { Save(); }, QKeySequence::Save);
    menu->addAction(
        tr("Save project &as..."), this, [this] { SaveAs(); }, QKeySequence(QStringLiteral("Ctrl+Shift+S")));
    actions = menu->actions().mid(before.size());
    for (QAction* action : qAsConst(actions))
        action->setEnabled(false);
}

bool ProjectSession::Start(const QString& file)
{
    journal->Begin({}, ProjectOnMap::Look(*viewer, rest));
    CAxControl::GetInstance()->SetProjectModified(false);
    for (QAction* action : qAsConst(actions))
        action->setEnabled(true);
    recent->Enable();
    if (!isUnattended && !recoveryFolder.isEmpty())
        OfferRecoveries();
    if (file.isEmpty())
        return true;
    if (!journal->IsModified())
        return Open(file);
    emit Told(tr("%1 was not opened, because another project was recovered.").arg(Shown(file)));
    return true;
}

bool ProjectSession::IsProjectFile(const QString& file)
{
    return file.endsWith(axProjectSuffix, Qt::CaseInsensitive);
}

void ProjectSession::ShowProject(const AxProject& project)
{
    rest = project;
    rest.blocks.clear();
    rest.view.reset();
    const QStringList notDrawn = ProjectOnMap::Show(*viewer, project);
    if (!notDrawn.isEmpty())
        Warn(tr("Open project"),
             tr("This program cannot draw these blocks; they stay in the project: %1").arg(Few(notDrawn)));
}

void ProjectSession::New()
{
    if (!MayReplace(tr("Do you want to begin a new project all the same?"), tr("New project")))
        return;
    ShowProject({});
    lock->Release();
    path.clear();
    copyOf.clear();
    contents.clear();
    journal->Begin(path, ProjectOnMap::Look(*viewer, rest));
    CAxControl::GetInstance()->SetProjectModified(false);
    ShowTitle();
}

void ProjectSession::ChooseFile()
{
    const QString file = QFileDialog::getOpenFileName(window, tr("Open project"), Folder(),
                                                      tr("Projects (*%1)").arg(axProjectSuffix));
    if (!file.isEmpty())
        Open(file);
}

bool ProjectSession::Open(const QString& file)
{
    auto taken = std::make_unique<AxProjectLock>();
    const bool isOpenAlready = lock->IsOf(file);
    bool isCopy = false;
    // First, because a file that cannot be opened is no reason to save anything.
    if (!isOpenAlready) {
        const AxProjectRead look = AxReadProject(file);
        if (!look.IsRead()) {
            Warn(tr("Open project"), look.fault);
            return false;
        }
    }
    if (!MayReplace(tr("Do you want to open the other project all the same?"), tr("Open")))
        return false;
    if (!isOpenAlready) {
        std::swap(lock, taken);
        const bool isWanted = TakeLock(file, isCopy);
        if (!isWanted) {
            std::swap(lock, taken);
            return false;
        }
    }
    const QByteArray found = ContentsOf(file);
    const AxProjectRead read = AxReadProject(file); // as it is now that nobody else writes it
    if (!read.IsRead()) {
        if (!isOpenAlready)
            std::swap(lock, taken);
        Warn(tr("Open project"), read.fault);
        return false;
    }
    path = isCopy ? QString() : file;
    copyOf = isCopy ? QFileInfo(file).completeBaseName() : QString();
    contents = isCopy ? QByteArray() : found;
    ShowProject(read.project);
    journal->Begin(path, ProjectOnMap::Look(*viewer, rest));
    CAxControl::GetInstance()->SetProjectModified(false);
    recent->Add(file);
    ShowTitle();
    if (read.state == AxProjectRead::State::Migrated)
        emit Told(tr("An earlier version of the program has written this project. It stays as it is until "
                     "you save it; the earlier version cannot read it then."));
    else
        emit Told(tr("Opened %1").arg(Shown(file)));
    return true;
}

bool ProjectSession::TakeLock(const QString& file, bool& isCopy)
{
    isCopy = false;
    switch (lock->Take(file)) {
    case AxProjectLock::Answer::Held:
        return true;
    case AxProjectLock::Answer::NotPossible:
        emit Told(tr("The folder of %1 cannot be written.").arg(Shown(file)));
        return true;
    case AxProjectLock::Answer::Taken:
        break;
    }
    if (isUnattended)
        return isCopy = true;
    Question box(window, tr("Open project"),
                 tr("%1 is open in another program: %2. It can be opened as a copy, which is saved under "
                    "another name.")
                     .arg(Shown(file), lock->Owner()));
    QAbstractButton* copy = box.addButton(tr("Open as a copy"), QMessageBox::AcceptRole);
    box.setDefaultButton(box.addButton(tr("Cancel"), QMessageBox::RejectRole));
    isCopy = box.Ask() == copy;
    return isCopy;
}

bool ProjectSession::Save()
{
    return path.isEmpty() ? SaveAs() : SaveTo(path);
}

bool ProjectSession::SaveAs()
{
    QFileDialog dialog(window, tr("Save project"), Folder(), tr("Projects (*%1)").arg(axProjectSuffix));
    dialog.setAcceptMode(QFileDialog::AcceptSave);
    dialog.setDefaultSuffix(axProjectSuffix.mid(1));
    const QString unsaved = copyOf.isEmpty() ? tr("project") : Name();
    dialog.selectFile(path.isEmpty() ? unsaved : QFileInfo(path).fileName());
    if (dialog.exec() != QDialog::Accepted)
        return false;
    const QString file = dialog.selectedFiles().constFirst();
    auto wanted = std::make_unique<AxProjectLock>();
    const bool isTaken = !lock->IsOf(file) && wanted->Take(file) == AxProjectLock::Answer::Taken;
    if (isTaken) {
        Warn(tr("Save project"),
             tr("%1 is open in another program: %2. Choose another name.").arg(Shown(file), wanted->Owner()));
        return false;
    }
    if (!SaveTo(file))
        return false;
    if (!lock->IsOf(file))
        lock = std::move(wanted);
    return true;
}

ProjectSession::Overwrite ProjectSession::AskOverwrite(const QString& file)
{
    const bool isOwn = !path.isEmpty() && QFileInfo(file) == QFileInfo(path);
    const QByteArray now = isOwn && !contents.isEmpty() ? ContentsOf(file) : QByteArray();
    if (now.isEmpty() || now == contents)
        return Overwrite::Yes;
    const QString text =
        tr("%1 was changed by another program since it was opened here. Saving would undo what was changed.")
            .arg(Shown(file));
    if (isUnattended) {
        Warn(tr("Save project"), text);
        return Overwrite::No;
    }
    Question box(window, tr("Save project"), text);
    const QAbstractButton* overwrite = box.addButton(tr("&Overwrite"), QMessageBox::DestructiveRole);
    const QAbstractButton* elsewhere = box.addButton(tr("Save &as..."), QMessageBox::AcceptRole);
    box.setDefaultButton(box.addButton(tr("Cancel"), QMessageBox::RejectRole));
    const QAbstractButton* answer = box.Ask();
    return answer == overwrite ? Overwrite::Yes : answer == elsewhere ? Overwrite::Elsewhere : Overwrite::No;
}

bool ProjectSession::SaveTo(const QString& file)
{
    const Overwrite may = AskOverwrite(file);
    if (may != Overwrite::Yes)
        return may == Overwrite::Elsewhere && SaveAs();
    const AxProject now = ProjectOnMap::Look(*viewer, rest);
    QString fault;
    if (!AxWriteProject(file, now, &fault)) {
        Warn(tr("Save project"), tr("The project is not saved. %1").arg(fault));
        return false;
    }
    path = file;
    copyOf.clear();
    contents = ContentsOf(file);
    journal->Begin(path, now);
    CAxControl::GetInstance()->SetProjectModified(false);
    recent->Add(file);
    ShowTitle();
    emit Told(tr("Saved %1").arg(Shown(file)));
    return true;
}

bool ProjectSession::MayReplace(const QString& otherwise, const QString& go)
{
    const QString wait = ProjectOnMap::ReasonToWait(*viewer);
    if (!wait.isEmpty()) {
        emit Told(wait);
        return false;
    }
    return MayLeave(reasonToStay ? reasonToStay() : QString(), otherwise, go);
}

bool ProjectSession::MayLeave(const QString& reason, const QString& otherwise, const QString& go)
{
    if (isUnattended)
        return true;
    // What is drawn is kept where it is a shape already, so it is a change to be saved.
    if (viewer->GetToolType() != ToolNavigate)
        viewer->SetToolType(ToolNavigate);
    journal->LookNow();
    if (reason.isEmpty() && !journal->IsModified())
        return true;
    QStringList lines;
    if (!reason.isEmpty())
        lines += reason + QLatin1Char(' ') + otherwise;
    if (journal->IsModified())
        lines += tr("\"%1\" has changes that are not saved.").arg(Name());
    Question box(window, journal->IsModified() ? tr("Unsaved changes") : windowTitle,
                 lines.join(QStringLiteral("\n\n")));
    QPushButton* save = nullptr;
    QPushButton* leave = nullptr;
    if (journal->IsModified()) {
        save = box.addButton(tr("&Save"), QMessageBox::AcceptRole);
        leave = box.addButton(tr("&Discard changes"), QMessageBox::DestructiveRole);
    } else {
        leave = box.addButton(go, QMessageBox::AcceptRole);
    }
    QPushButton* stay = box.addButton(tr("Cancel"), QMessageBox::RejectRole);
    box.setDefaultButton(reason.isEmpty() ? save : stay);
    const QAbstractButton* answer = box.Ask();
    return (save && answer == save) ? Save() : answer == leave;
}

void ProjectSession::End()
{
    journal->Drop();
    journal->Flush(recoveredMs);
    lock->Release();
}

void ProjectSession::OfferRecoveries()
{
    QList<AxRecovery> found = AxFindRecoveries(recoveryFolder);
    for (int i = 0; i < found.size(); ++i) {
        if (!Offer(found[i]))
            continue;
        // The others are offered at the next start, when this one is saved.
        if (i + 1 < found.size())
            emit Told(tr("What else was not saved is offered at the next start."));
        return;
    }
}

bool ProjectSession::Offer(AxRecovery& recovery)
{
    const QString name =
        recovery.projectPath.isEmpty() ? tr("a project without a name") : Shown(recovery.projectPath);
    if (!recovery.fault.isEmpty()) {
        // It stays for whoever can make more of it, but is not offered again.
        const QString kept = recovery.file + QStringLiteral(".damaged");
        QFile::rename(recovery.file, kept);
        Warn(tr("Recover project"),
             tr("A program has ended before it saved its project, and what it left cannot be read. %1 It is "
                "kept as %2.")
                 .arg(recovery.fault, Shown(kept)));
        return false;
    }
    QString text = tr("The program has ended before %1 was saved. The last changes are of %2.")
                       .arg(name, QLocale().toString(recovery.time.toLocalTime(), QLocale::ShortFormat));
    const QFileInfo file(recovery.projectPath);
    if (file.exists() && file.lastModified() > recovery.time.toLocalTime())
        text += QLatin1Char(' ') + tr("The file was changed after that.");
    if (!recovery.leftOut.isEmpty())
        text +=
            QStringLiteral("\n\n") +
            tr("This of it cannot be and is left out: %1")
                .arg(recovery.leftOut.mid(0, mostLeftOut).join(QStringLiteral("; "))) +
            (recovery.leftOut.size() > mostLeftOut ? QStringLiteral("; ... (%1)").arg(recovery.leftOut.size())
                                                   : QString());
    Question box(window, tr("Recover project"), text);
    const QAbstractButton* recover = box.addButton(tr("&Recover"), QMessageBox::AcceptRole);
    const QAbstractButton* discard = box.addButton(tr("&Throw away"), QMessageBox::DestructiveRole);
    box.addButton(tr("Ask again later"), QMessageBox::RejectRole);
    const QAbstractButton* answer = box.Ask();
    if (answer == discard)
        AxDropRecovery(recovery);
    if (answer != recover)
        return false;
    Recover(recovery);
    return true;
}

void ProjectSession::Recover(AxRecovery& recovery)
{
    bool isCopy = false;
    const bool hasFile = !recovery.projectPath.isEmpty();
    const bool isOwn = hasFile && TakeLock(recovery.projectPath, isCopy) && !isCopy;
    path = isOwn ? recovery.projectPath : QString();
    contents = ContentsOf(path); // whoever changed it after the crash was told of in the question
    copyOf = hasFile && !isOwn ? QFileInfo(recovery.projectPath).completeBaseName() : QString();
    ShowProject(recovery.project);
    journal->Begin(path, hasFile ? AxReadProject(recovery.projectPath).project : AxProject());
    journal->LookNow();
    // Only when it is kept once more.
    const bool isKept = !journal->IsModified() || journal->Flush(recoveredMs);
    ShowTitle();
    emit Told(tr("Recovered; nothing of it is saved yet."));
    if (isKept && !recovery.leftOut.isEmpty()) {
        // It stays for whoever can make more of it, but is not offered again.
        const QString kept = recovery.file + QStringLiteral(".damaged");
        if (QFile::rename(recovery.file, kept))
            emit Told(tr("Recovered; nothing of it is saved yet. What was left out is kept in %1.")
                          .arg(Shown(kept)));
    } else if (isKept) {
        AxDropRecovery(recovery);
    }
}

void ProjectSession::OpenRecent(const QString& file)
{
    if (QFileInfo::exists(file)) {
        Open(file);
        return;
    }
    recent->Remove(file);
    Warn(tr("Open project"), tr("There is no file %1 any more. It is taken off the list.").arg(Shown(file)));
}

QString ProjectSession::Folder() const
{
    const QString last = path.isEmpty() ? recent->Last() : path;
    const QFileInfo folder(QFileInfo(last).absolutePath());
    return !last.isEmpty() && folder.isDir()
               ? folder.filePath()
               : QStandardPaths::writableLocation(QStandardPaths::DocumentsLocation);
}

QString ProjectSession::Name() const
{
    if (!path.isEmpty())
        return QFileInfo(path).completeBaseName();
    return copyOf.isEmpty() ? tr("New project") : tr("Copy of %1").arg(copyOf);
}

void ProjectSession::ShowTitle()
{
    const bool isNew = path.isEmpty() && copyOf.isEmpty();
    window->setWindowFilePath(QString());
    window->setWindowTitle(
        isNew ? windowTitle + QStringLiteral("[*]")
              : QStringLiteral("%1[*] - %2")
                    .arg(QString(Name()).replace(QLatin1String("[*]"), QLatin1String("[**]")), windowTitle));
    window->setWindowModified(journal->IsModified());
}

void ProjectSession::Warn(const QString& title, const QString& text)
{
    if (isUnattended) {
        qWarning().noquote() << text;
        return;
    }
    QMessageBox box(QMessageBox::Warning, title, text, QMessageBox::NoButton, window);
    box.setTextFormat(Qt::PlainText);
    box.addButton(tr("OK"), QMessageBox::AcceptRole);
    box.exec();
}

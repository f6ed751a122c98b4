#include "host/project/ProjectSession.h"
#include "host/files/SaveBox.h"
#include "host/project/EditWatch.h"
#include "host/project/ProjectOnMap.h"
#include "host/project/ProjectQuestion.h"
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
constexpr int endMs = 10000;

QString Shown(const QString& file)
{
    return QDir::toNativeSeparators(file);
}

} // namespace

ProjectSession::ProjectSession(CAxEarthViewer* earthViewer, QWidget* ofWindow, const QString& folder,
                               bool unattended)
    : QObject(ofWindow), viewer(earthViewer), window(ofWindow), recoveryFolder(folder),
      isUnattended(unattended), journal(new AxProjectJournal(
                                    folder, [this] { return Look(); }, this)),
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

QByteArray ProjectSession::ContentsOf(const QString& path)
{
    QFile file(path);
    QCryptographicHash hash(QCryptographicHash::Sha256);
    return file.open(QIODevice::ReadOnly) && hash.addData(&file) ? hash.result() : QByteArray();
}

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
    journal->Begin({}, Look());
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

void ProjectSession::KeepValue(const QString& name, std::function<QString()> look,
                               std::function<void(const QString&)> show)
{
    keptValues.insert(name, {std::move(look), std::move(show)});
}

AxProject ProjectSession::Look() const
{
    AxProject project = ProjectOnMap::Look(*viewer, rest);
    for (auto value = keptValues.begin(); value != keptValues.end(); ++value) {
        const QString text = value->look();
        if (text.isEmpty())
            project.values.remove(value.key());
        else
            project.values.insert(value.key(), text);
    }
    return project;
}

void ProjectSession::ShowProject(const AxProject& project)
{
    rest = project;
    rest.blocks.clear();
    rest.view.reset();
    unread.clear();
    for (auto value = keptValues.begin(); value != keptValues.end(); ++value)
        value->show(project.values.value(value.key()));
    const QStringList notDrawn = ProjectOnMap::Show(*viewer, project);
    if (!notDrawn.isEmpty())
        Warn(tr("Open project"), tr("This program cannot draw these blocks; they stay in the project: %1")
                                     .arg(ProjectQuestion::Few(notDrawn)));
    // The journal begins first: what is open is no change of what was.
    if (!unread.isEmpty())
        QMetaObject::invokeMethod(
            this, [this, text = unread.join(QStringLiteral("\n\n"))] { Warn(tr("Open project"), text); },
            Qt::QueuedConnection);
}

void ProjectSession::New()
{
    if (!MayReplace(tr("Do you want to begin a new project all the same?"), tr("New project")))
        return;
    ShowProject({});
    lock->Release();
    path.clear();
    home.clear();
    copyOf.clear();
    contents.clear();
    journal->Begin(path, Look());
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
        if (!look.IsRead())
            return OpenRest(file, look);
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
    home = QFileInfo(file).absolutePath();
    copyOf = isCopy ? QFileInfo(file).completeBaseName() : QString();
    contents = isCopy ? QByteArray() : found;
    ShowProject(read.project);
    journal->Begin(path, Look());
    CAxControl::GetInstance()->SetProjectModified(false);
    recent->Add(file);
    ShowTitle();
    if (read.state == AxProjectRead::State::Migrated)
        emit Told(tr("An earlier version of the program has written this project. When you save it, the file "
                     "of that version is kept beside it."));
    else
        emit Told(tr("Opened %1").arg(Shown(file)));
    return true;
}

bool ProjectSession::OpenRest(const QString& file, const AxProjectRead& look)
{
    if (!look.rest || isUnattended) {
        Warn(tr("Open project"), look.fault);
        return false;
    }
    ProjectQuestion box(window, tr("Open project"), look.fault + ProjectQuestion::LeftOut(look.leftOut));
    const QAbstractButton* copy = box.addButton(tr("Open the &rest as a copy"), QMessageBox::AcceptRole);
    box.setDefaultButton(box.addButton(tr("Cancel"), QMessageBox::RejectRole));
    if (box.Ask() != copy ||
        !MayReplace(tr("Do you want to open the other project all the same?"), tr("Open")))
        return false;
    lock->Release();
    path.clear();
    home = QFileInfo(file).absolutePath();
    copyOf = QFileInfo(file).completeBaseName();
    contents.clear();
    ShowProject(*look.rest);
    journal->Begin(path, Look());
    CAxControl::GetInstance()->SetProjectModified(false);
    ShowTitle();
    emit Told(tr("The rest of %1 is open as a copy; the file stays as it is.").arg(Shown(file)));
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
    ProjectQuestion box(
        window, tr("Open project"),
        tr("%1 is open in another program: %2. It can be opened as a copy, which is saved under "
           "another name.")
                .arg(Shown(file), lock->Owner()) +
            TakeOverText(*lock));
    const QAbstractButton* copy = box.addButton(tr("Open as a copy"), QMessageBox::AcceptRole);
    const QAbstractButton* takeOver =
        lock->MayBeGone() ? box.addButton(tr("&Take over"), QMessageBox::DestructiveRole) : nullptr;
    box.setDefaultButton(box.addButton(tr("Cancel"), QMessageBox::RejectRole));
    const QAbstractButton* answer = box.Ask();
    if (takeOver && answer == takeOver)
        return TakeOver(*lock, file, tr("Open project"));
    isCopy = answer == copy;
    return isCopy;
}

QString ProjectSession::TakeOverText(const AxProjectLock& taken)
{
    return taken.MayBeGone() ? QStringLiteral("\n\n") +
                                   tr("If that program has ended without an end, because its computer lost "
                                      "its power for one, you can take the project over. If it is still "
                                      "running, one of both undoes what the other saves.")
                             : QString();
}

bool ProjectSession::TakeOver(AxProjectLock& taken, const QString& file, const QString& title)
{
    if (taken.TakeOver(file) == AxProjectLock::Answer::Held)
        return true;
    Warn(title, tr("%1 cannot be taken over: %2 still has it.").arg(Shown(file), taken.Owner()));
    return false;
}

bool ProjectSession::MayTake(AxProjectLock& wanted, const QString& file)
{
    if (wanted.Take(file) != AxProjectLock::Answer::Taken)
        return true;
    const QString text =
        tr("%1 is open in another program: %2. Choose another name.").arg(Shown(file), wanted.Owner());
    if (!wanted.MayBeGone() || isUnattended) {
        Warn(tr("Save project"), text);
        return false;
    }
    ProjectQuestion box(window, tr("Save project"), text + TakeOverText(wanted));
    const QAbstractButton* takeOver = box.addButton(tr("&Take over"), QMessageBox::DestructiveRole);
    box.setDefaultButton(box.addButton(tr("Cancel"), QMessageBox::RejectRole));
    return box.Ask() == takeOver && TakeOver(wanted, file, tr("Save project"));
}

bool ProjectSession::Save()
{
    return path.isEmpty() ? SaveAs() : SaveTo(path);
}

bool ProjectSession::SaveAs()
{
    const QString unsaved = copyOf.isEmpty() ? tr("project") : Name();
    const auto chosen = SaveBox::Ask(window, tr("Save project"), Folder(),
                                     path.isEmpty() ? unsaved : QFileInfo(path).fileName(),
                                     {{tr("Projects (*%1)").arg(axProjectSuffix), {axProjectSuffix.mid(1)}}});
    if (!chosen)
        return false;
    std::unique_ptr<AxProjectLock> wanted;
    if (!lock->IsOf(chosen->file)) {
        wanted = std::make_unique<AxProjectLock>();
        if (!MayTake(*wanted, chosen->file))
            return false;
    }
    return SaveTo(chosen->file, std::move(wanted));
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
    ProjectQuestion box(window, tr("Save project"), text);
    const QAbstractButton* overwrite = box.addButton(tr("&Overwrite"), QMessageBox::DestructiveRole);
    const QAbstractButton* elsewhere = box.addButton(tr("Save &as..."), QMessageBox::AcceptRole);
    box.setDefaultButton(box.addButton(tr("Cancel"), QMessageBox::RejectRole));
    const QAbstractButton* answer = box.Ask();
    return answer == overwrite ? Overwrite::Yes : answer == elsewhere ? Overwrite::Elsewhere : Overwrite::No;
}

bool ProjectSession::SaveTo(const QString& file, std::unique_ptr<AxProjectLock> wanted)
{
    const Overwrite may = AskOverwrite(file);
    if (may != Overwrite::Yes)
        return may == Overwrite::Elsewhere && SaveAs();
    const QString formerHome = std::exchange(home, QFileInfo(file).absolutePath());
    const AxProject now = Look();
    QString fault;
    QString former;
    if (!AxWriteProject(file, now, &fault, &former)) {
        home = formerHome;
        Warn(tr("Save project"), tr("The project is not saved. %1").arg(fault));
        return false;
    }
    // Only here: whatever is saved under yet another name on the way has a lock of its own by now.
    if (wanted)
        lock = std::move(wanted);
    path = file;
    copyOf.clear();
    contents = ContentsOf(file);
    journal->Begin(path, now);
    CAxControl::GetInstance()->SetProjectModified(false);
    recent->Add(file);
    ShowTitle();
    emit Told(
        former.isEmpty()
            ? tr("Saved %1").arg(Shown(file))
            : tr("Saved %1; the file of the earlier version is kept as %2").arg(Shown(file), Shown(former)));
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
    journal->LookNow();
    const bool isDrawing = ProjectOnMap::IsDrawing(*viewer);
    const bool isUnsaved = journal->IsModified() || isDrawing;
    if (reason.isEmpty() && !isUnsaved)
        return true;
    QStringList lines;
    if (!reason.isEmpty())
        lines += reason + QLatin1Char(' ') + otherwise;
    if (journal->IsModified())
        lines += tr("\"%1\" has changes that are not saved.").arg(Name());
    if (isDrawing)
        lines += tr("A drawing is not finished. Save ends it, and keeps it where it is a shape already.");
    ProjectQuestion box(window, isUnsaved ? tr("Unsaved changes") : windowTitle,
                        lines.join(QStringLiteral("\n\n")));
    QPushButton* save = nullptr;
    QPushButton* leave = nullptr;
    if (isUnsaved) {
        save = box.addButton(tr("&Save"), QMessageBox::AcceptRole);
        leave = box.addButton(tr("&Discard changes"), QMessageBox::DestructiveRole);
    } else {
        leave = box.addButton(go, QMessageBox::AcceptRole);
    }
    QPushButton* stay = box.addButton(tr("Cancel"), QMessageBox::RejectRole);
    box.setDefaultButton(reason.isEmpty() ? save : stay);
    const QAbstractButton* answer = box.Ask();
    if (answer == leave) {
        ProjectOnMap::DropDrawing(*viewer);
        return true;
    }
    if (!save || answer != save)
        return false;
    viewer->SetToolType(ToolNavigate);
    return Save();
}

void ProjectSession::End()
{
    journal->Drop();
    journal->Flush(endMs);
    lock->Release();
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

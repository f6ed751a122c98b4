// What programs that died have left: the questions at the start.
#include "host/project/ProjectQuestion.h"
#include "host/project/ProjectSession.h"

#include <AxData/project/AxProjectFile.h>
#include <AxData/project/AxProjectJournal.h>

#include <QDir>
#include <QFileInfo>
#include <QLocale>
#include <QPushButton>

namespace {
constexpr int recoveredMs = 10000;

QString ShownPath(const QString& file)
{
    return QDir::toNativeSeparators(file);
}
} // namespace

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
        recovery.projectPath.isEmpty() ? tr("a project without a name") : ShownPath(recovery.projectPath);
    if (!recovery.fault.isEmpty()) {
        // It stays for whoever can make more of it, but is not offered again.
        const QString aside = AxPutRecoveryAside(recovery);
        const QString text =
            tr("A program has ended before it saved its project, and what it left cannot be read. %1")
                .arg(recovery.fault);
        Warn(tr("Recover project"),
             text + QLatin1Char(' ') +
                 (aside.isEmpty() ? tr("It cannot be put aside either, and is told again at the next start.")
                                  : tr("It is kept as %1.").arg(ShownPath(aside))));
        return false;
    }
    QString text = tr("The program has ended before %1 was saved. The last changes are of %2.")
                       .arg(name, QLocale().toString(recovery.time.toLocalTime(), QLocale::ShortFormat));
    const QFileInfo file(recovery.projectPath);
    if (file.exists() && file.lastModified() > recovery.time.toLocalTime())
        text += QLatin1Char(' ') + tr("The file was changed after that.");
    text += ProjectQuestion::LeftOut(recovery.leftOut);
    ProjectQuestion box(window, tr("Recover project"), text);
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
    home = hasFile ? QFileInfo(recovery.projectPath).absolutePath() : QString();
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
        const QString aside = AxPutRecoveryAside(recovery);
        emit Told(
            aside.isEmpty()
                ? tr("Recovered; nothing of it is saved yet. What was left out is offered again at the next "
                     "start, because %1 cannot be put aside.")
                      .arg(ShownPath(recovery.file))
                : tr("Recovered; nothing of it is saved yet. What was left out is kept in %1.")
                      .arg(ShownPath(aside)));
    } else if (isKept) {
        AxDropRecovery(recovery);
    }
}

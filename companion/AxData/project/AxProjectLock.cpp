#include <AxData/AxReplaceFile.h>
#include <AxData/project/AxProjectFields.h>
#include <AxData/project/AxProjectLock.h>

#include <QDateTime>
#include <QFileInfo>
#include <QLocale>
#include <QLockFile>
#include <QSysInfo>

namespace {
std::unique_ptr<QLockFile> LockOf(const QString& real)
{
    auto lock = std::make_unique<QLockFile>(real + QStringLiteral(".lock"));
    lock->setStaleLockTime(0); // an owner may live for any time
    return lock;
}
} // namespace

AxProjectLock::AxProjectLock() = default;
AxProjectLock::~AxProjectLock() = default;

AxProjectLock::Answer AxProjectLock::Take(const QString& path)
{
    const QString real = AxRealPath(path);
    if (lock && real == held)
        return Answer::Held;
    auto wanted = LockOf(real);
    if (!wanted->tryLock(0)) {
        if (wanted->error() != QLockFile::LockFailedError)
            return Answer::NotPossible;
        qint64 process = 0;
        QString computer;
        QString program;
        const bool isKnown = wanted->getLockInfo(&process, &computer, &program);
        const QDateTime since = QFileInfo(real + QStringLiteral(".lock")).lastModified();
        owner = isKnown ? AxProjectText::tr("%1 on %2, process %3").arg(program, computer).arg(process)
                        : AxProjectText::tr("a program that is not known");
        if (since.isValid())
            owner =
                AxProjectText::tr("%1, since %2").arg(owner, QLocale().toString(since, QLocale::ShortFormat));
        // A file that a power cut has left empty names nobody.
        mayBeGone = !isKnown || (!computer.isEmpty() && computer != QSysInfo::machineHostName());
        return Answer::Taken;
    }
    lock = std::move(wanted);
    held = real;
    owner.clear();
    mayBeGone = false;
    return Answer::Held;
}

AxProjectLock::Answer AxProjectLock::TakeOver(const QString& path)
{
    if (mayBeGone)
        LockOf(AxRealPath(path))->removeStaleLockFile();
    return Take(path);
}

void AxProjectLock::Release()
{
    lock.reset();
    held.clear();
}

bool AxProjectLock::IsOf(const QString& path) const
{
    return lock && AxRealPath(path) == held;
}

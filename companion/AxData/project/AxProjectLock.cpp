#include <AxData/AxReplaceFile.h>
#include <AxData/project/AxProjectFields.h>
#include <AxData/project/AxProjectLock.h>

#include <QLockFile>

AxProjectLock::AxProjectLock() = default;
AxProjectLock::~AxProjectLock() = default;

AxProjectLock::Answer AxProjectLock::Take(const QString& path)
{
    const QString real = AxRealPath(path);
    if (lock && real == held)
        return Answer::Held;
    auto wanted = std::make_unique<QLockFile>(real + QStringLiteral(".lock"));
    wanted->setStaleLockTime(0); // an owner may live for any time
    if (!wanted->tryLock(0)) {
        if (wanted->error() != QLockFile::LockFailedError)
            return Answer::NotPossible;
        qint64 process = 0;
        QString computer;
        QString program;
        owner = wanted->getLockInfo(&process, &computer, &program)
                    ? AxProjectText::tr("%1 on %2, process %3").arg(program, computer).arg(process)
                    : AxProjectText::tr("a program that is not known");
        return Answer::Taken;
    }
    lock = std::move(wanted);
    held = real;
    owner.clear();
    return Answer::Held;
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

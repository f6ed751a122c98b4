#include <AxData/project/AxProjectFields.h>
#include <AxData/project/AxProjectTables.h>
#include <AxData/project/AxRecoveryWriter.h>
#include <AxData/project/AxSqlFile.h>

#include <QCryptographicHash>
#include <QDateTime>
#include <QDir>
#include <QFile>
#include <QLockFile>
#include <QRandomGenerator>
#include <QSqlQuery>

#include <chrono>
#include <utility>

std::unique_ptr<QLockFile> AxRecoveryFile::LockOf(const QString& file)
{
    auto lock = std::make_unique<QLockFile>(file + QStringLiteral(".lock"));
    lock->setStaleLockTime(0); // a program may live for any time
    return lock;
}

void AxRecoveryFile::Remove(const QString& file)
{
    QFile::remove(file);
    QFile::remove(file + QStringLiteral("-journal"));
}

AxRecoveryWriter::AxRecoveryWriter(const QString& inFolder, Tell failed, Tell refused)
    : folder(inFolder), tellFailure(std::move(failed)), tellRefusal(std::move(refused)),
      thread([this] { Run(); })
{
}

AxRecoveryWriter::~AxRecoveryWriter()
{
    {
        const std::lock_guard<std::mutex> guard(mutex);
        isEnding = true;
    }
    changed.notify_all();
    thread.join();
}

void AxRecoveryWriter::Keep(const AxProject& project, const QString& path)
{
    {
        const std::lock_guard<std::mutex> guard(mutex);
        waiting = Job{project, path};
    }
    changed.notify_all();
}

void AxRecoveryWriter::Clear()
{
    {
        const std::lock_guard<std::mutex> guard(mutex);
        waiting = Job();
    }
    changed.notify_all();
}

bool AxRecoveryWriter::Wait(int milliseconds)
{
    std::unique_lock<std::mutex> guard(mutex);
    return changed.wait_for(guard, std::chrono::milliseconds(milliseconds), [this] {
        return !waiting && !isBusy;
    }) && !hasFailed;
}

bool AxRecoveryWriter::HasFailed() const
{
    const std::lock_guard<std::mutex> guard(mutex);
    return hasFailed;
}

void AxRecoveryWriter::Run()
{
    std::unique_lock<std::mutex> guard(mutex);
    while (true) {
        changed.wait(guard, [this] { return waiting || isEnding; });
        if (!waiting)
            break;
        {
            Job job = std::move(*waiting);
            waiting.reset();
            isBusy = true;
            guard.unlock();
            QString fault;
            const bool isDone = Do(job, fault);
            Check(job.project ? *job.project : AxProject());
            guard.lock();
            const bool isFirst = !isDone && !hasFailed;
            hasFailed = !isDone;
            if (isFirst && !isEnding) {
                guard.unlock();
                tellFailure(fault);
                guard.lock();
            }
        }
        isBusy = false;
        changed.notify_all();
    }
    guard.unlock();
    file.reset();
    lock.reset();
}

bool AxRecoveryWriter::Do(const Job& job, QString& fault)
{
    if (!job.project || (file && openedFor != job.path))
        Close();
    if (!job.project)
        return true;
    if ((file || Open(job.path, fault)) && Write(job, fault))
        return true;
    // The state before is better than none.
    if (file && !isNew)
        file->Run(QStringLiteral("ROLLBACK"));
    else
        Close();
    return false;
}

bool AxRecoveryWriter::Open(const QString& path, QString& fault)
{
    const auto number = QRandomGenerator::system()->generate64();
    const QByteArray hash =
        QCryptographicHash::hash(path.toUtf8(), QCryptographicHash::Sha1).toHex().left(16);
    name = QStringLiteral("%1-%2").arg(QString::fromLatin1(hash)).arg(number, 16, 16, QLatin1Char('0'));
    name = QDir(folder).filePath(name + AxRecoveryFile::suffix);
    lock = AxRecoveryFile::LockOf(name);
    if (!QDir().mkpath(folder) || !lock->tryLock(0)) {
        fault =
            AxProjectText::tr("The folder \"%1\" cannot be written.").arg(QDir::toNativeSeparators(folder));
        lock.reset();
        return false;
    }
    file = std::make_unique<AxSqlFile>(name, AxSqlFile::Mode::Write);
    openedFor = path;
    written = AxProject();
    isNew = true;
    const bool isOpen = file->IsOpen() && file->Run(QStringLiteral("PRAGMA locking_mode = EXCLUSIVE")) &&
                        file->Run(QStringLiteral("PRAGMA synchronous = NORMAL"));
    QFile::setPermissions(name, QFile::ReadOwner | QFile::WriteOwner);
    if (!isOpen)
        fault = file->Fault();
    return isOpen;
}

bool AxRecoveryWriter::Write(const Job& job, QString& fault)
{
    const bool hasTables =
        file->Run(QStringLiteral("BEGIN")) &&
        (!isNew || (AxProjectTables::Create(file->database, AxRecoveryFile::applicationID, fault) &&
                    file->Run(QStringLiteral("CREATE TABLE [recovery] ([path] TEXT, [written] TEXT)"))));
    QSqlQuery told(file->database);
    const bool isTold = hasTables && file->Run(QStringLiteral("DELETE FROM [recovery]")) &&
                        told.prepare(QStringLiteral("INSERT INTO [recovery] VALUES (?, ?)"));
    told.addBindValue(job.path);
    told.addBindValue(QDateTime::currentDateTimeUtc().toString(Qt::ISODateWithMs));
    if (isTold && told.exec() && AxProjectTables::Change(file->database, written, *job.project, fault) &&
        file->Run(QStringLiteral("COMMIT"))) {
        written = *job.project;
        isNew = false;
        return true;
    }
    if (fault.isEmpty())
        fault = file->Fault();
    return false;
}

void AxRecoveryWriter::Check(const AxProject& project)
{
    const QString fault = AxProjectTables::FaultOf(project);
    if (fault != std::exchange(refusal, fault) && !fault.isEmpty())
        tellRefusal(fault);
}

void AxRecoveryWriter::Close()
{
    if (file) {
        file.reset();
        AxRecoveryFile::Remove(name);
    }
    lock.reset();
    written = AxProject();
}

#pragma once

#include <AxData/project/AxProject.h>

#include <QString>

#include <condition_variable>
#include <functional>
#include <memory>
#include <mutex>
#include <optional>
#include <thread>

class AxSqlFile;
class QLockFile;

/// The table and the name that recovery files have beside those of a project, and what they are called.
namespace AxRecoveryFile {
constexpr quint32 applicationID = 0x41785263; // "AxRc"
const QString suffix = QStringLiteral(".axrecovery");
/// The lock that tells whether the program of a file lives.
std::unique_ptr<QLockFile> LockOf(const QString& file);
/// With the journal of the database.
void Remove(const QString& file);
} // namespace AxRecoveryFile

/// A thread that keeps a recovery file as it is told; of several states that wait only the latest counts.
class AxRecoveryWriter
{
public:
    using Tell = std::function<void(const QString& fault)>;
    /// Both are called by the thread: `failed` for the first of several faults, `refused` when something is
    /// kept that a project file would not take (AxProjectFault()), once until that is another.
    AxRecoveryWriter(const QString& folder, Tell failed, Tell refused);
    /// Writes what waits. The file stays.
    ~AxRecoveryWriter();

    /// Any thread.
    void Keep(const AxProject& project, const QString& path);
    void Clear();
    /// Whether all is done that was asked for, and has succeeded.
    bool Wait(int milliseconds);
    bool HasFailed() const;

private:
    struct Job
    {
        std::optional<AxProject> project; // nothing: no file
        QString path;
    };
    void Run();
    bool Do(const Job& job, QString& fault);
    bool Open(const QString& path, QString& fault);
    bool Write(const Job& job, QString& fault);
    void Close();
    void Check(const AxProject& project);

    const QString folder;
    const Tell tellFailure;
    const Tell tellRefusal;

    mutable std::mutex mutex; // of these:
    std::condition_variable changed;
    std::optional<Job> waiting;
    bool isBusy = false;
    bool isEnding = false;
    bool hasFailed = false;

    // The thread's own.
    std::unique_ptr<AxSqlFile> file;
    std::unique_ptr<QLockFile> lock;
    QString name;
    QString openedFor;
    QString refusal;
    AxProject written;
    bool isNew = false; // no tables yet

    std::thread thread; // last: it runs from here on
};

#include "AxPrivateFolder.h"

#include <QDateTime>
#include <QDir>

namespace {
/// Not the name of a program and a hyphen: so QTemporaryDir calls the folders of that program itself.
const QString prefix = QStringLiteral("axzones.plain.");
const QString lockName = QStringLiteral("owner.lock");
const QString fileName = QStringLiteral("zones.db");
/// A folder is this long without a lock at most, while its maker is alive.
constexpr qint64 secondsToLock = 60;

std::unique_ptr<QLockFile> OwnerLock(const QString& folder)
{
    auto lock = std::make_unique<QLockFile>(QDir(folder).filePath(lockName));
    lock->setStaleLockTime(0); // an owner may live for any time
    return lock;
}
} // namespace

AxPrivateFolder::AxPrivateFolder()
    : m_folder(QDir(QDir::tempPath()).filePath(prefix + QStringLiteral("XXXXXX")))
{
    RemoveLeftovers();
    if (m_folder.isValid()) {
        m_lock = OwnerLock(m_folder.path());
        m_lock->tryLock(0);
    }
}

AxPrivateFolder::~AxPrivateFolder()
{
    m_lock.reset();
}

bool AxPrivateFolder::IsValid() const
{
    return m_folder.isValid() && m_lock && m_lock->isLocked();
}

QString AxPrivateFolder::FilePath() const
{
    return m_folder.filePath(fileName);
}

void AxPrivateFolder::RemoveLeftovers()
{
    const QFileInfoList folders =
        QDir(QDir::tempPath())
            .entryInfoList({prefix + QLatin1Char('*')}, QDir::Dirs | QDir::NoDotAndDotDot | QDir::NoSymLinks);
    for (const QFileInfo& folder : folders) {
        const QDir dir(folder.filePath());
        if (!dir.exists(lockName) &&
            folder.lastModified().secsTo(QDateTime::currentDateTime()) < secondsToLock)
            continue;
        const std::unique_ptr<QLockFile> lock = OwnerLock(folder.filePath());
        if (!lock->tryLock(0))
            continue;
        // By name: whatever else lies in it was not left by this program.
        for (const QString& name : dir.entryList({fileName + QLatin1Char('*')}, QDir::Files | QDir::Hidden))
            QFile::remove(dir.filePath(name));
        lock->unlock();
        QDir().rmdir(folder.filePath());
    }
}

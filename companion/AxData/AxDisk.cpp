// Calls the operating system itself: Qt neither makes a file that is private from its first moment on, nor
// brings files and folders to the disk, nor changes owners.
#include "AxDisk.h"

#if defined(Q_OS_UNIX)
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

bool AxDisk::CreatePrivate(QFile& file, QString& error)
{
    const int descriptor = ::open(QFile::encodeName(file.fileName()).constData(),
                                  O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, S_IRUSR | S_IWUSR);
    if (descriptor < 0)
        error = qt_error_string();
    return descriptor >= 0 && file.open(descriptor, QIODevice::WriteOnly, QFileDevice::AutoCloseHandle);
}

bool AxDisk::Sync(QFile& file, QString& error)
{
    if (file.flush() && ::fsync(file.handle()) == 0)
        return true;
    error = qt_error_string();
    return false;
}

void AxDisk::SyncFolder(const QString& folder)
{
    const int descriptor = ::open(QFile::encodeName(folder).constData(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
    if (descriptor < 0)
        return;
    ::fsync(descriptor); // some file systems cannot, and need not
    ::close(descriptor);
}

void AxDisk::TakeOwner(const QFile& file, const QString& from)
{
    struct stat owner = {};
    if (::stat(QFile::encodeName(from).constData(), &owner) != 0)
        return;
    constexpr uid_t same = static_cast<uid_t>(-1);
    if (::fchown(file.handle(), owner.st_uid, owner.st_gid) != 0 &&
        ::fchown(file.handle(), same, owner.st_gid) != 0)
        return; // it is this user's, as any file that he makes
}
#else
#include <io.h>

// What a folder's files may be read by is inherited there, and the profile's own folders are private.
bool AxDisk::CreatePrivate(QFile& file, QString& error)
{
    if (file.open(QIODevice::WriteOnly | QIODevice::NewOnly))
        return true;
    error = file.errorString();
    return false;
}

bool AxDisk::Sync(QFile& file, QString& error)
{
    if (file.flush() && ::_commit(file.handle()) == 0)
        return true;
    error = qt_error_string();
    return false;
}

// The file system keeps a journal of its names.
void AxDisk::SyncFolder(const QString&) {}

void AxDisk::TakeOwner(const QFile&, const QString&) {}
#endif

#pragma once

#include <QLockFile>
#include <QString>
#include <QTemporaryDir>

#include <memory>

/// A folder among the system's temporary ones that only this user may look into. It goes with the object;
/// what died processes left behind goes when the next one is made. One thread at a time.
class AxPrivateFolder
{
public:
    AxPrivateFolder();
    ~AxPrivateFolder();

    bool IsValid() const;
    QString ErrorString() const { return m_folder.errorString(); }
    /// Path of the one file the folder is for; it does not exist until somebody writes it.
    QString FilePath() const;

private:
    static void RemoveLeftovers();

    QTemporaryDir m_folder;
    std::unique_ptr<QLockFile> m_lock;
};

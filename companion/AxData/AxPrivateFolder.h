#pragma once

#include <AxData/AxDataExport.h>

#include <QLockFile>
#include <QString>
#include <QTemporaryDir>

#include <memory>

/// A folder among the system's temporary ones that only this user may look into, for the plain form of a zone
/// file. It goes with the object; what died processes left behind goes when the next one is made, or by
/// RemoveLeftovers(). One thread at a time.
class AXDATA_EXPORT AxPrivateFolder
{
public:
    AxPrivateFolder();
    ~AxPrivateFolder();

    bool IsValid() const;
    QString ErrorString() const { return m_folder.errorString(); }
    /// Path of the one file the folder is for; it does not exist until somebody writes it.
    QString FilePath() const;

    /// Removes the folders of processes that have died. Any thread.
    static void RemoveLeftovers();

private:
    QTemporaryDir m_folder;
    std::unique_ptr<QLockFile> m_lock;
};

#pragma once

#include <AxData/AxDataExport.h>
#include <AxData/project/AxProject.h>

#include <QDateTime>
#include <QList>
#include <QString>
#include <QStringList>

#include <memory>

class QLockFile;

/// What a program that died had not saved.
struct AXDATA_EXPORT AxRecovery
{
    QString file;        ///< that holds it
    QString projectPath; ///< of the project that was open; empty when it had never been saved
    QDateTime time;      ///< of the last edit that it holds, UTC
    AxProject project;   ///< as it was then
    QString fault;       ///< for people; not empty when nothing can be recovered, and the project is empty
    QStringList leftOut; ///< what of it cannot be, for people, with names; the project lacks it
    std::shared_ptr<QLockFile> hold; ///< keeps other programs from offering it, too
};

/// Where the journals of a program lie if its host does not say otherwise: the application's data folder.
AXDATA_EXPORT QString AxRecoveryFolder();

/// What programs that are not alive have left in a folder, the newest first. Any thread.
AXDATA_EXPORT QList<AxRecovery> AxFindRecoveries(const QString& folder);

/// Puts what cannot be recovered, or not all of it, aside under a name that ends in ".damaged", so that it is
/// not offered again. The name; empty when that fails, and it stays where it is. Any thread.
AXDATA_EXPORT QString AxPutRecoveryAside(AxRecovery& recovery);

/// Removes what the pilot has taken over or does not want. Any thread.
AXDATA_EXPORT void AxDropRecovery(AxRecovery& recovery);

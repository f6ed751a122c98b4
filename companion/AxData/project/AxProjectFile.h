#pragma once

#include <AxData/AxDataExport.h>
#include <AxData/project/AxProject.h>

#include <QString>
#include <QStringList>

#include <optional>

/// What became of reading a project file.
struct AXDATA_EXPORT AxProjectRead
{
    /// Kinds of files that are not read as they are are told apart, because none of them may be overwritten.
    enum class State
    {
        Whole,       ///< read
        Migrated,    ///< read; it was written by an earlier version and is as it was
        NotThere,    ///< no such file
        NotReadable, ///< a folder, not permitted, the disk fails
        NotAProject, ///< of another program
        Damaged,     ///< a project once; some of it is lost, or holds values that cannot be
        Newer        ///< written by a later version
    };
    State state = State::NotThere; ///< of the file
    AxProject project;             ///< whole, or empty
    QString fault;                 ///< for people; names the file and, where it is one, block and field
    /// Of a damaged file whose tables can be read: all but the blocks, tasks and marks that cannot be, which
    /// `leftOut` names for people.
    std::optional<AxProject> rest;
    QStringList leftOut;

    /// Whether there is a project.
    bool IsRead() const { return state == State::Whole || state == State::Migrated; }
};

/// What a project file's name ends with, ".axproject".
AXDATA_EXPORT extern const QString axProjectSuffix;

/// Reads a project file. The file is only looked at, whatever lies beside it. A view that cannot be is no
/// fault: there is none then. Any thread that is Qt's or has a QCoreApplication.
AXDATA_EXPORT AxProjectRead AxReadProject(const QString& path);

/// Puts the project in the place of the file in one step: a power cut, a full or a read-only disk leaves the
/// old one whole. False where something is there that AxReadProject() does not read, but an empty file, or
/// where the project holds what could not be read again; `fault`, which may be null, then says why. A view
/// that could not be is not written. A file of an earlier version is copied first, NAME.v1.axproject beside
/// NAME.axproject; `kept`, which may be null, gets the name of the copy, else nothing. Any thread, as above.
AXDATA_EXPORT bool AxWriteProject(const QString& path, const AxProject& project, QString* fault = nullptr,
                                  QString* kept = nullptr);

/// What of a project could not be read again, a NaN for one, with the names of block and field; empty when
/// there is nothing.
AXDATA_EXPORT QString AxProjectFault(const AxProject& project);

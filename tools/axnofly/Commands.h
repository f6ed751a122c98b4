#pragma once

#include <QString>
#include <QStringList>

/// How the program ends.
enum ExitStatus
{
    Done = 0,
    Failed = 1,
    WrongUse = 2,
    Doubtful = 3, ///< "check" found something, or "build --strict" left something out
};

struct BuildJob
{
    QString target;
    QStringList airports;
    QStringList zones;
    QStringList lifts;
    bool isSealed = true;
    bool isStrict = false;
    bool isQuiet = false; ///< counts only, not each thing that could not be used
};

struct ListJob
{
    QString source;
    bool showsLifts = false;
    QString around; ///< "lng,lat,km"; empty: all
};

class Progress;

ExitStatus Build(const BuildJob& job, Progress& progress);
ExitStatus List(const ListJob& job);
ExitStatus Check(const QString& source, Progress& progress);
ExitStatus Seal(const QString& source, const QString& target);
ExitStatus Open(const QString& source, const QString& target);

/// Prints "axnofly: reason" on standard error and gives the status back.
ExitStatus Complain(ExitStatus status, const QString& reason);

#pragma once

#include <AxData/project/AxProject.h>

#include <QString>
#include <QStringList>

class QSqlDatabase;

/// The tables of a project in an open SQLite database. What fails says why in `fault`, for people. Whoever
/// writes opens a transaction around it. The thread of the connection.
namespace AxProjectTables {
/// Of the tables as they are made now. Version 1 had no descriptions of marks, no wind and no endurance,
/// version 2 did not tell which marks have their height from the ground.
constexpr int version = 3;
/// The application ID in the header of a project file, "AxPr".
constexpr quint32 projectID = 0x41785072;

/// Makes empty tables, with version and application ID.
bool Create(QSqlDatabase& database, quint32 applicationID, QString& fault);

/// Reads tables of that version or an earlier one. No other thing of the file's schema is looked at. A value
/// that cannot be fails all of it; with `leftOut`, only its block, task or mark point is left out, and named
/// there for people. A view that cannot be is never a fault, only no view.
bool Read(QSqlDatabase& database, int fileVersion, AxProject& project, QString& fault,
          QStringList* leftOut = nullptr);

/// Writes everything into empty tables, but a view that could not be read again.
bool Write(QSqlDatabase& database, const AxProject& project, QString& fault);

/// Changes tables that hold `from` so that they hold `to`; rows that are the same stay.
bool Change(QSqlDatabase& database, const AxProject& from, const AxProject& to, QString& fault);

/// What of it would not be read again; a view never counts.
QString FaultOf(const AxProject& project);
} // namespace AxProjectTables

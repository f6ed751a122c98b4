#pragma once

#include <AxData/project/AxProject.h>

#include <QByteArray>
#include <QCoreApplication>
#include <QVariant>

#include <vector>

/// One column of a table: how it is written, and how it is read. `set` says what is wrong with a value, for
/// people; the record may then hold a part of it.
template <typename Record> struct AxProjectField
{
    const char* column;                                    // of the table
    const char* type;                                      // SQLite's
    int since;                                             // the version that brought it
    QVariant (*get)(const Record& record);                 // null: nothing
    QString (*set)(Record& record, const QVariant& value); // empty: taken
};

/// Columns of blocks, tasks, marks and of the one row of the view. Those before the first are keys.
const std::vector<AxProjectField<AxProjectBlock>>& AxBlockFields();
const std::vector<AxProjectField<AxProjectTask>>& AxTaskFields();
const std::vector<AxProjectField<AxProjectMark>>& AxMarkFields();
const std::vector<AxProjectField<AxProjectView>>& AxViewFields();

/// Their words.
class AxProjectText
{
    Q_DECLARE_TR_FUNCTIONS(AxProjectFile)
};

/// A route as JSON, and back; null, with the reason, for what is none.
QByteArray AxKeptRouteText(const AxKeptRoute& route);
std::shared_ptr<const AxKeptRoute> AxKeptRouteOf(const QByteArray& text, QString& reason);

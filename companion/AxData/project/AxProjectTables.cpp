#include <AxData/project/AxProjectFields.h>
#include <AxData/project/AxProjectTables.h>

#include <QHash>
#include <QSet>
#include <QSqlDatabase>
#include <QSqlError>
#include <QSqlQuery>

namespace {
constexpr int mostRows = 1000000;

// Names stand in brackets: SQLite takes a name in quotes that is no column for a text.

// A table: keys that its rows do not hold themselves come first.
struct Table
{
    const char* name;
    QStringList keys;
};
const Table& Blocks()
{
    static const Table table{"block", {QStringLiteral("position")}};
    return table;
}
const Table& Tasks()
{
    static const Table table{"task", {QStringLiteral("block"), QStringLiteral("position")}};
    return table;
}
const Table& Marks()
{
    static const Table table{"mark", {QStringLiteral("position")}};
    return table;
}
const Table& Views()
{
    static const Table table{"view", {}};
    return table;
}

bool Fail(const QSqlQuery& query, QString& fault)
{
    fault = query.lastError().databaseText();
    return false;
}

bool Run(QSqlDatabase& database, const QString& statement, QString& fault)
{
    QSqlQuery query(database);
    return query.exec(statement) || Fail(query, fault);
}

template <typename Record>
QStringList ColumnsOf(const Table& table, const std::vector<AxProjectField<Record>>& fields, int version)
{
    QStringList columns = table.keys;
    for (const auto& field : fields)
        if (field.since <= version)
            columns += QLatin1String(field.column);
    return columns;
}

template <typename Record>
bool Make(QSqlDatabase& database, const Table& table, const std::vector<AxProjectField<Record>>& fields,
          QString& fault)
{
    QStringList columns;
    for (const QString& key : table.keys)
        columns += QStringLiteral("[%1] %2").arg(
            key, key == QLatin1String("block") ? QStringLiteral("TEXT") : QStringLiteral("INTEGER"));
    for (const auto& field : fields)
        columns += QStringLiteral("[%1] %2").arg(QLatin1String(field.column), QLatin1String(field.type));
    return Run(database,
               QStringLiteral("CREATE TABLE [%1] (%2)")
                   .arg(QLatin1String(table.name), columns.join(QStringLiteral(", "))),
               fault);
}

// Writes rows of one table, one after the other.
template <typename Record> class RowWriter
{
public:
    RowWriter(QSqlDatabase& database, const Table& table, const std::vector<AxProjectField<Record>>& columns)
        : query(database), fields(columns)
    {
        const QStringList names = ColumnsOf(table, fields, AxProjectTables::version);
        const QString marks = QString(QStringLiteral("?, ")).repeated(names.size()).chopped(2);
        isReady =
            query.prepare(QStringLiteral("INSERT INTO [%1] ([%2]) VALUES (%3)")
                              .arg(QLatin1String(table.name), names.join(QStringLiteral("], [")), marks));
    }
    bool Put(const QVariantList& keys, const Record& record, QString& fault)
    {
        for (const QVariant& key : keys)
            query.addBindValue(key);
        for (const auto& field : fields)
            query.addBindValue(field.get(record));
        return (isReady && query.exec()) || Fail(query, fault);
    }

private:
    QSqlQuery query;
    const std::vector<AxProjectField<Record>>& fields;
    bool isReady = false;
};

// Rows of one table, in the order of their last key. `key` gets what comes first in each row.
template <typename Record> class RowReader
{
public:
    RowReader(QSqlDatabase& database, const Table& table, const std::vector<AxProjectField<Record>>& columns,
              int fileVersion)
        : query(database), fields(columns), keys(table.keys.size()), version(fileVersion)
    {
        const QStringList names = ColumnsOf(table, fields, version);
        QString text = QStringLiteral("SELECT [%1] FROM [%2]")
                           .arg(names.join(QStringLiteral("], [")), QLatin1String(table.name));
        if (!table.keys.isEmpty())
            text += QStringLiteral(" ORDER BY [%1]").arg(table.keys.last());
        query.setForwardOnly(true);
        isReady = query.exec(text);
    }
    /// False at the end, and when no more can be read. A row that cannot be is told by the fault as well.
    bool Next(Record& record, QVariant& key, QString& fault)
    {
        if (!isReady || !query.next()) {
            if (query.lastError().isValid())
                Fail(query, fault);
            return false;
        }
        record = Record();
        if (++count > mostRows) {
            fault = AxProjectText::tr("there are more than %1 rows").arg(mostRows);
            return false;
        }
        key = query.value(0);
        int column = keys;
        for (const auto& field : fields) {
            if (field.since > version)
                continue;
            const QString reason = field.set(record, query.value(column++));
            if (!reason.isEmpty()) {
                fault = AxProjectText::tr("field %1: %2").arg(QLatin1String(field.column), reason);
                break;
            }
        }
        return true;
    }

private:
    QSqlQuery query;
    const std::vector<AxProjectField<Record>>& fields;
    int keys;
    int version;
    int count = 0;
    bool isReady = false;
};

QString OfBlock(const QString& name, const QString& fault)
{
    return AxProjectText::tr("block \"%1\", %2").arg(name.left(200).simplified(), fault);
}

QString OfTask(const QString& name, const QString& fault)
{
    return AxProjectText::tr("task \"%1\", %2").arg(name.left(200).simplified(), fault);
}

QString OfMark(const QString& name, const QString& fault)
{
    return AxProjectText::tr("mark point \"%1\", %2").arg(name.left(200).simplified(), fault);
}

QString Twice()
{
    return AxProjectText::tr("field id: another one has it, too");
}

// What is wrong with a record by itself: what a file would give back of it is refused.
template <typename Record>
QString FaultOfRecord(const Record& record, const std::vector<AxProjectField<Record>>& fields)
{
    Record again;
    for (const auto& field : fields) {
        const QString reason = field.set(again, field.get(record));
        if (!reason.isEmpty())
            return AxProjectText::tr("field %1: %2").arg(QLatin1String(field.column), reason);
    }
    return {};
}

// Whether reading goes on without a row that cannot be.
bool LeaveOut(const QString& named, QString& fault, QStringList* leftOut)
{
    if (!leftOut)
        return false;
    *leftOut += named;
    fault.clear();
    return true;
}

bool ReadBlocks(QSqlDatabase& database, int version, AxProject& project, QString& fault, QStringList* leftOut)
{
    QHash<QString, int> places;
    QSet<QString> gone; // their tasks go with them
    QVariant key;
    {
        RowReader<AxProjectBlock> rows(database, Blocks(), AxBlockFields(), version);
        AxProjectBlock block;
        while (rows.Next(block, key, fault)) {
            if (fault.isEmpty() && places.contains(block.id))
                fault = Twice();
            if (!fault.isEmpty()) {
                if (!LeaveOut(OfBlock(block.name, fault), fault, leftOut))
                    break;
                gone.insert(block.id);
                continue;
            }
            places.insert(block.id, project.blocks.size());
            project.blocks += block;
        }
        if (!fault.isEmpty())
            fault = OfBlock(block.name, fault);
    }
    if (!fault.isEmpty())
        return false;
    RowReader<AxProjectTask> rows(database, Tasks(), AxTaskFields(), version);
    QSet<QPair<QString, QString>> known;
    AxProjectTask task;
    while (rows.Next(task, key, fault)) {
        const QString block = key.toString();
        const int place = places.value(block, -1);
        if (place < 0 && gone.contains(block)) {
            fault.clear();
            continue;
        }
        if (fault.isEmpty() && place < 0)
            fault = AxProjectText::tr("field block: there is no such block");
        else if (fault.isEmpty() && known.contains({block, task.id}))
            fault = Twice();
        if (!fault.isEmpty()) {
            const QString named = OfTask(task.name, fault);
            if (!LeaveOut(place < 0 ? named : OfBlock(project.blocks[place].name, named), fault, leftOut))
                break;
            continue;
        }
        known.insert({block, task.id});
        project.blocks[place].tasks += task;
    }
    if (fault.isEmpty())
        return true;
    const int place = places.value(key.toString(), -1);
    fault = OfTask(task.name, fault);
    if (place >= 0)
        fault = OfBlock(project.blocks[place].name, fault);
    return false;
}

bool ReadMarks(QSqlDatabase& database, int version, AxProject& project, QString& fault, QStringList* leftOut)
{
    RowReader<AxProjectMark> rows(database, Marks(), AxMarkFields(), version);
    AxProjectMark mark;
    QVariant key;
    QSet<QString> known;
    while (rows.Next(mark, key, fault)) {
        if (fault.isEmpty() && known.contains(mark.id))
            fault = Twice();
        if (!fault.isEmpty()) {
            if (!LeaveOut(OfMark(mark.name, fault), fault, leftOut))
                break;
            continue;
        }
        known.insert(mark.id);
        project.marks += mark;
    }
    if (!fault.isEmpty())
        fault = OfMark(mark.name, fault);
    return fault.isEmpty();
}

bool ReadRest(QSqlDatabase& database, int version, AxProject& project, QString& fault)
{
    RowReader<AxProjectView> views(database, Views(), AxViewFields(), version);
    AxProjectView view;
    QVariant key;
    const bool isThere = views.Next(view, key, fault);
    if (isThere && fault.isEmpty())
        project.view = view;
    if (!isThere && !fault.isEmpty()) {
        fault = AxProjectText::tr("view, %1").arg(fault);
        return false;
    }
    fault.clear(); // where the camera stood is no work that could be lost
    QSqlQuery values(database);
    values.setForwardOnly(true);
    if (!values.exec(QStringLiteral("SELECT [name], [text] FROM [value]")))
        return Fail(values, fault);
    while (values.next() && project.values.size() < mostRows)
        project.values.insert(values.value(0).toString(), values.value(1).toString());
    return !values.lastError().isValid() || Fail(values, fault);
}

// A view or a virtual table could be anything, an endless one included: only stored rows are read.
bool AreTables(QSqlDatabase& database, QString& fault)
{
    QSqlQuery tables(database);
    if (!tables.exec(
            QStringLiteral("SELECT count(*) FROM sqlite_master WHERE type = 'table' AND rootpage > 0 "
                           "AND name IN ('block', 'task', 'mark', 'view', 'value')")) ||
        !tables.next())
        return Fail(tables, fault);
    constexpr int count = 5;
    if (tables.value(0).toInt() == count)
        return true;
    fault = AxProjectText::tr("tables are missing");
    return false;
}

bool WriteRest(QSqlDatabase& database, const AxProject& project, QString& fault)
{
    RowWriter<AxProjectMark> marks(database, Marks(), AxMarkFields());
    for (int i = 0; i < project.marks.size(); ++i)
        if (!marks.Put({i}, project.marks[i], fault))
            return false;
    RowWriter<AxProjectView> views(database, Views(), AxViewFields());
    const bool isView = project.view && FaultOfRecord(*project.view, AxViewFields()).isEmpty();
    if (isView && !views.Put({}, *project.view, fault))
        return false;
    QSqlQuery values(database);
    if (!values.prepare(QStringLiteral("INSERT INTO [value] ([name], [text]) VALUES (?, ?)")))
        return Fail(values, fault);
    for (auto value = project.values.begin(); value != project.values.end(); ++value) {
        values.addBindValue(value.key());
        values.addBindValue(value.value());
        if (!values.exec())
            return Fail(values, fault);
    }
    return true;
}

// Writes blocks with their tasks.
class BlockWriter
{
public:
    explicit BlockWriter(QSqlDatabase& database)
        : blocks(database, Blocks(), AxBlockFields()), tasks(database, Tasks(), AxTaskFields())
    {
    }
    bool Put(int position, const AxProjectBlock& block, QString& fault)
    {
        if (!blocks.Put({position}, block, fault))
            return false;
        for (int i = 0; i < block.tasks.size(); ++i)
            if (!tasks.Put({block.id, i}, block.tasks[i], fault))
                return false;
        return true;
    }

private:
    RowWriter<AxProjectBlock> blocks;
    RowWriter<AxProjectTask> tasks;
};
} // namespace

bool AxProjectTables::Create(QSqlDatabase& database, quint32 applicationID, QString& fault)
{
    return Run(database, QStringLiteral("PRAGMA application_id = %1").arg(applicationID), fault) &&
           Run(database, QStringLiteral("PRAGMA user_version = %1").arg(version), fault) &&
           Make(database, Blocks(), AxBlockFields(), fault) &&
           Make(database, Tasks(), AxTaskFields(), fault) && Make(database, Marks(), AxMarkFields(), fault) &&
           Make(database, Views(), AxViewFields(), fault) &&
           Run(database, QStringLiteral("CREATE INDEX [task_of_block] ON [task] ([block])"), fault) &&
           Run(database, QStringLiteral("CREATE TABLE [value] ([name] TEXT PRIMARY KEY, [text] TEXT)"),
               fault);
}

bool AxProjectTables::Read(QSqlDatabase& database, int fileVersion, AxProject& project, QString& fault,
                           QStringList* leftOut)
{
    project = AxProject();
    fault.clear();
    if (AreTables(database, fault) && ReadBlocks(database, fileVersion, project, fault, leftOut) &&
        ReadMarks(database, fileVersion, project, fault, leftOut) &&
        ReadRest(database, fileVersion, project, fault))
        return true;
    project = AxProject();
    return false;
}

bool AxProjectTables::Write(QSqlDatabase& database, const AxProject& project, QString& fault)
{
    BlockWriter writer(database);
    for (int i = 0; i < project.blocks.size(); ++i)
        if (!writer.Put(i, project.blocks[i], fault))
            return false;
    return WriteRest(database, project, fault);
}

bool AxProjectTables::Change(QSqlDatabase& database, const AxProject& from, const AxProject& to,
                             QString& fault)
{
    QHash<QString, int> places; // of the blocks that are there
    for (int i = 0; i < from.blocks.size(); ++i)
        places.insert(from.blocks[i].id, i);
    const auto drop = [&](const QString& id) {
        for (const char* text :
             {"DELETE FROM [task] WHERE [block] = ?", "DELETE FROM [block] WHERE [id] = ?"}) {
            QSqlQuery query(database);
            query.prepare(QLatin1String(text));
            query.addBindValue(id);
            if (!query.exec())
                return Fail(query, fault);
        }
        return true;
    };
    QSqlQuery move(database);
    move.prepare(QStringLiteral("UPDATE [block] SET [position] = ? WHERE [id] = ?"));
    BlockWriter writer(database);
    for (int i = 0; i < to.blocks.size(); ++i) {
        const AxProjectBlock& block = to.blocks[i];
        const auto place = places.find(block.id);
        const bool isThere = place != places.end();
        const bool isSame = isThere && from.blocks[*place] == block;
        if (isSame && *place != i) {
            move.addBindValue(i);
            move.addBindValue(block.id);
            if (!move.exec())
                return Fail(move, fault);
        }
        if (!isSame && ((isThere && !drop(block.id)) || !writer.Put(i, block, fault)))
            return false;
        if (isThere)
            places.erase(place);
    }
    for (auto gone = places.begin(); gone != places.end(); ++gone)
        if (!drop(gone.key()))
            return false;
    for (const char* table : {"mark", "view", "value"})
        if (!Run(database, QStringLiteral("DELETE FROM [%1]").arg(QLatin1String(table)), fault))
            return false;
    return WriteRest(database, to, fault);
}

QString AxProjectTables::FaultOf(const AxProject& project)
{
    QSet<QString> ids;
    for (const AxProjectBlock& block : project.blocks) {
        QString fault = ids.contains(block.id) ? Twice() : FaultOfRecord(block, AxBlockFields());
        ids.insert(block.id);
        QSet<QString> taskIDs;
        for (const AxProjectTask& task : block.tasks) {
            if (!fault.isEmpty())
                break;
            fault = taskIDs.contains(task.id) ? Twice() : FaultOfRecord(task, AxTaskFields());
            taskIDs.insert(task.id);
            if (!fault.isEmpty())
                fault = OfTask(task.name, fault);
        }
        if (!fault.isEmpty())
            return OfBlock(block.name, fault);
    }
    ids.clear();
    for (const AxProjectMark& mark : project.marks) {
        const QString fault = ids.contains(mark.id) ? Twice() : FaultOfRecord(mark, AxMarkFields());
        ids.insert(mark.id);
        if (!fault.isEmpty())
            return OfMark(mark.name, fault);
    }
    return {};
}

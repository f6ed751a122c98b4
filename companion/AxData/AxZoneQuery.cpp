#include "AxZoneQuery.h"

#include <QSqlDatabase>
#include <QSqlDriver>
#include <QSqlError>
#include <QSqlQuery>

namespace {
/// Whether a text stays inside the parentheses that are put around it: quotes end, parentheses match, and
/// neither a comment nor a second statement begins.
bool IsClosedExpression(const QString& text)
{
    int depth = 0;
    for (int i = 0; i < text.size(); ++i) {
        const QChar c = text.at(i);
        const QChar next = i + 1 < text.size() ? text.at(i + 1) : QChar();
        if (c == QLatin1Char('\'') || c == QLatin1Char('"') || c == QLatin1Char('`') ||
            c == QLatin1Char('[')) {
            i = text.indexOf(c == QLatin1Char('[') ? QLatin1Char(']') : c, i + 1);
            if (i < 0)
                return false;
        } else if (c == QLatin1Char('(')) {
            ++depth;
        } else if (c == QLatin1Char(')')) {
            if (--depth < 0)
                return false;
        } else if (c == QLatin1Char(';') || c.isNull() ||
                   (c == QLatin1Char('-') && next == QLatin1Char('-')) ||
                   (c == QLatin1Char('/') && next == QLatin1Char('*'))) {
            return false;
        }
    }
    return depth == 0;
}

int IndexOf(const QStringList& columns, const QString& name)
{
    for (int i = 0; i < columns.size(); ++i)
        if (columns.at(i).compare(name, Qt::CaseInsensitive) == 0)
            return i;
    return -1;
}
} // namespace

QString AxZoneQuery::Quoted(const QString& name) const
{
    // Not the driver's own quoting: that takes a dot for the end of a table's name.
    return QLatin1Char('"') + QString(name).replace(QLatin1Char('"'), QLatin1String("\"\"")) +
           QLatin1Char('"');
}

bool AxZoneQuery::ColumnsOf(const QString& table, QStringList& columns, QString& error) const
{
    // A view or a virtual table could be anything, an endless one included: only stored rows are read.
    QSqlQuery tables(m_database);
    tables.prepare(QStringLiteral("SELECT name FROM sqlite_master WHERE type = 'table' AND rootpage > 0 AND "
                                  "name = ? COLLATE NOCASE"));
    tables.addBindValue(table);
    if (!tables.exec()) {
        error = tr("The database is damaged: %1.").arg(tables.lastError().databaseText());
        return false;
    }
    if (!tables.next()) {
        error = tr("There is no table \"%1\".").arg(table);
        return false;
    }
    QSqlQuery query(m_database);
    if (!query.exec(QStringLiteral("PRAGMA table_info(%1)").arg(Quoted(table)))) {
        error = tr("The database is damaged: %1.").arg(query.lastError().databaseText());
        return false;
    }
    while (query.next())
        columns << query.value(1).toString();
    return true;
}

bool AxZoneQuery::Select(const QString& columns, const QString& table, const QString& condition,
                         const QString& order, const TakeRow& take, QString& error) const
{
    QStringList known;
    if (!ColumnsOf(table.trimmed(), known, error))
        return false;

    // SQLite takes a quoted name that is no column for a text, so names are looked up here.
    QStringList wanted;
    for (const QString& part : columns.split(QLatin1Char(','))) {
        const QString name = part.trimmed();
        if (name == QLatin1String("*")) {
            for (const QString& column : qAsConst(known))
                wanted << Quoted(column);
            continue;
        }
        const int index = IndexOf(known, name);
        if (index < 0) {
            error = tr("Table \"%1\" has no column \"%2\".").arg(table.trimmed(), name);
            return false;
        }
        wanted << Quoted(known.at(index));
    }
    QString text =
        QStringLiteral("SELECT %1 FROM %2").arg(wanted.join(QStringLiteral(", ")), Quoted(table.trimmed()));

    if (!condition.trimmed().isEmpty()) {
        if (!IsClosedExpression(condition)) {
            error = tr("\"%1\" is no condition.").arg(condition);
            return false;
        }
        text += QStringLiteral(" WHERE (%1)").arg(condition);
    }
    if (!order.trimmed().isEmpty()) {
        QStringList terms;
        for (const QString& term : order.split(QLatin1Char(','))) {
            QString name = term.trimmed();
            QString direction = QStringLiteral("ASC");
            for (const QString& word : {QStringLiteral("ASC"), QStringLiteral("DESC")}) {
                if (name.endsWith(QLatin1Char(' ') + word, Qt::CaseInsensitive)) {
                    direction = word;
                    name = name.left(name.size() - word.size() - 1).trimmed();
                    break;
                }
            }
            const int index = IndexOf(known, name);
            if (index < 0) {
                error = tr("Table \"%1\" has no column \"%2\".").arg(table.trimmed(), name);
                return false;
            }
            terms << Quoted(known.at(index)) + QLatin1Char(' ') + direction;
        }
        text += QStringLiteral(" ORDER BY ") + terms.join(QStringLiteral(", "));
    }

    QSqlQuery query(m_database);
    query.setForwardOnly(true);
    if (!query.exec(text)) {
        error = tr("Table \"%1\" cannot be read: %2.").arg(table.trimmed(), query.lastError().databaseText());
        return false;
    }
    while (query.next()) {
        QVariantList row;
        row.reserve(wanted.size());
        for (int i = 0; i < wanted.size(); ++i)
            row << query.value(i);
        take(row);
    }
    if (query.lastError().isValid()) {
        error = tr("Table \"%1\" cannot be read: %2.").arg(table.trimmed(), query.lastError().databaseText());
        return false;
    }
    return true;
}

bool AxZoneQuery::IsSound(QString& error) const
{
    QSqlQuery query(m_database);
    if (query.exec(QStringLiteral("PRAGMA quick_check(1)")) && query.next()) {
        const QString answer = query.value(0).toString();
        if (answer == QLatin1String("ok"))
            return true;
        error = tr("The database is damaged: %1.").arg(answer.simplified());
    } else {
        error = tr("The database is damaged: %1.").arg(query.lastError().databaseText());
    }
    return false;
}

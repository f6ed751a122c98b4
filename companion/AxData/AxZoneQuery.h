#pragma once

#include <QCoreApplication>
#include <QList>
#include <QString>
#include <QStringList>
#include <QVariant>

#include <functional>

class QSqlDatabase;

/// Reading rows of tables whose names come from callers, in a database that may come from anywhere.
class AxZoneQuery
{
    Q_DECLARE_TR_FUNCTIONS(AxZoneQuery)

public:
    explicit AxZoneQuery(const QSqlDatabase& database) : m_database(database) {}

    using TakeRow = std::function<void(const QVariantList& row)>;
    /// See CAxNoflyZoneMgr::SelectRecord.
    bool Select(const QString& columns, const QString& table, const QString& condition, const QString& order,
                const TakeRow& take, QString& error) const;

    /// Whether the pages of the database hang together. What was authenticated needs no such look.
    bool IsSound(QString& error) const;

private:
    bool ColumnsOf(const QString& table, QStringList& columns, QString& error) const;
    QString Quoted(const QString& name) const;

    const QSqlDatabase& m_database;
};

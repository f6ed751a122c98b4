#include <AxData/project/AxProjectFields.h>
#include <AxData/project/AxSqlFile.h>

#include <QDir>
#include <QFileInfo>
#include <QSqlError>
#include <QSqlQuery>
#include <QUrl>

#include <atomic>

namespace {
QString NextName()
{
    static std::atomic<unsigned> count{0};
    return QStringLiteral("AxProject-%1").arg(++count);
}

// SQLite takes no authority, so that the server of a share is a part of the path: file:////server/share/a.
QString AddressOf(const QString& path)
{
    QString whole = QDir::fromNativeSeparators(path);
    if (QFileInfo(whole).isRelative())
        whole = QFileInfo(whole).absoluteFilePath();
    if (!whole.startsWith(QLatin1Char('/')))
        whole.prepend(QLatin1Char('/'));
    return QStringLiteral("file://") + QString::fromLatin1(QUrl::toPercentEncoding(whole, "/:"));
}
} // namespace

AxSqlFile::AxSqlFile(const QString& path, Mode mode)
    : database(QSqlDatabase::addDatabase(QStringLiteral("QSQLITE"), NextName())),
      name(database.connectionName())
{
    if (mode == Mode::Look) {
        database.setDatabaseName(AddressOf(path) + QStringLiteral("?immutable=1"));
        database.setConnectOptions(QStringLiteral("QSQLITE_OPEN_READONLY;QSQLITE_OPEN_URI"));
    } else {
        database.setDatabaseName(path);
    }
    if (!database.open())
        fault = database.lastError().text();
    else
        Run(QStringLiteral("PRAGMA trusted_schema = OFF"));
}

AxSqlFile::~AxSqlFile()
{
    database = QSqlDatabase();
    QSqlDatabase::removeDatabase(name);
}

QString AxSqlFile::Fault() const
{
    return fault;
}

bool AxSqlFile::Run(const QString& statement)
{
    QSqlQuery query(database);
    if (query.exec(statement))
        return true;
    fault = query.lastError().databaseText();
    return false;
}

qint64 AxSqlFile::Number(const QString& statement)
{
    QSqlQuery query(database);
    return query.exec(statement) && query.next() ? query.value(0).toLongLong() : 0;
}

bool AxSqlFile::IsSound()
{
    QSqlQuery query(database);
    const bool hasAnswer = query.exec(QStringLiteral("PRAGMA quick_check(1)")) && query.next();
    fault = hasAnswer ? query.value(0).toString().simplified() : query.lastError().databaseText();
    if (fault != QLatin1String("ok"))
        return false;
    fault.clear();
    return true;
}

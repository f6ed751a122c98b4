#pragma once

#include <QSqlDatabase>
#include <QString>

/// A connection to one SQLite file, closed with the object. The thread that made it.
class AxSqlFile
{
public:
    /// How it is opened.
    enum class Mode
    {
        Look, ///< for reading; nothing is written beside the file, and no journal that lies there played back
        Write ///< made where it is not there; a journal that lies there is played back
    };
    AxSqlFile(const QString& path, Mode mode);
    ~AxSqlFile();
    AxSqlFile(const AxSqlFile&) = delete;
    AxSqlFile& operator=(const AxSqlFile&) = delete;

    bool IsOpen() const { return database.isOpen(); }
    /// Why it is not open, or what failed last, for people.
    QString Fault() const;
    /// Whether a statement without answer succeeds.
    bool Run(const QString& statement);
    /// The first number that a statement answers; nothing, 0.
    qint64 Number(const QString& statement);
    /// Whether nothing of the file is lost.
    bool IsSound();

    QSqlDatabase database;

private:
    QString name;
    QString fault;
};

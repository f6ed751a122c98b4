#pragma once

#include <AxData/AxDataExport.h>

#include <QByteArray>
#include <QList>
#include <QObject>
#include <QString>
#include <QVariant>

#include <functional>
#include <memory>

/**
 * Owner of the sealed no-fly-zone file (see AxSealedFile.h) and of a read-only
 * database connection to its plain form, an SQLite database. The order is
 * DecryptionNoflyFile, ConnectDataBase, SelectRecord as often as needed,
 * CloseDataBase, EncryptionNoflyFile.
 *
 * An object is used on the thread that made it, any number of objects on any
 * number of threads, and needs a QCoreApplication. Every operation that returns
 * false leaves things as they were, says why through GetLastError() and in the
 * log category "ax.data".
 */
class AXDATA_EXPORT CAxNoflyZoneMgr : public QObject
{
    Q_OBJECT

public:
    explicit CAxNoflyZoneMgr(QObject* parent = nullptr);
    /// Closes the connection, and seals the file that this object opened in place, if it still can.
    ~CAxNoflyZoneMgr() override;

    /// Names the zone file to use instead of "NoflyZone.db" beside the application. Call it before the
    /// globe starts; an empty name restores the rule. Any thread.
    static void SetNoflyFile(const QString& path);
    /// Full path of the file that is used, whether there is one or not. Any thread.
    static QString GetNoflyFile();

    /// The key with which zone files are opened and sealed from now on. Any bytes; 32 random ones are best,
    /// because a guessable key can be guessed. False for an empty one: no file is opened or sealed then until
    /// a key is named. Until the first call the key is that of the shipped sample. Any thread.
    static bool SetNoflyKey(const QByteArray& key);
    /// The same with the bytes of a file; without a name, with the value of the environment variable
    /// AXNOFLY_KEY, and where that does not exist the key stays. False with a sentence in `error`.
    static bool TakeNoflyKey(const QString& keyFile, QString& error);
    /// The key of the shipped sample, which is no secret, from now on. Any thread.
    static void UseSampleKey();
    /// The key in force, for programs that make zone files; empty when an empty one was named.
    static QByteArray GetNoflyKey();

    /// Full path of the zone file; empty when there is none.
    QString CheckExistNoflyFile() const;

    /// Writes the plain form of the sealed `source` to `target`. A plain database is taken as it is.
    ///
    /// With source and target the same, the file is opened in place and locked against other programs
    /// until it is sealed. Where that cannot be (the folder cannot be written, the disk is full, another
    /// program has had it open for some seconds), the plain form goes to a temporary file that only this
    /// object knows, and ConnectDataBase(target) uses that one. Wherever it lies, only this user may read it.
    bool DecryptionNoflyFile(QString source, QString target);

    /// Writes the sealed form of the plain database `source` to `target`. A file that is sealed already
    /// stays as it is. With source and target the same, this ends what DecryptionNoflyFile began; where that
    /// fails, it is tried again until it is done, as long as this object lives and its thread has an event
    /// loop.
    bool EncryptionNoflyFile(QString source, QString target);

    /// Opens a plain database for reading; an earlier connection of this object is closed.
    bool ConnectDataBase(QString path);

    /// Appends the rows of a table to `rows`, each a QVariant that holds a QVariantList in the order of
    /// the columns. NULLs and values of other types than expected come as they stand in the table.
    ///
    /// columns    names separated by commas, or "*"
    /// condition  an SQL condition that rows must meet; empty: all rows
    /// order      names of columns separated by commas, each with or without "ASC" or "DESC"; empty: the
    ///            order of the file
    ///
    /// False, with `rows` untouched, when there is no such table or column, when condition or order is
    /// none, and when the database turns out to be damaged.
    bool SelectRecord(QString columns, QString table, QString condition, QString order,
                      QList<QVariant>& rows);

    /// Gets one row of a table, in the order of the columns.
    using TakeRow = std::function<void(const QVariantList& row)>;
    /// The same, but each row is handed over as it is read, so that no large table is ever in memory as a
    /// whole. When the database turns out to be damaged, `take` has had the rows before the damage.
    bool SelectRecord(QString columns, QString table, QString condition, QString order, const TakeRow& take);

    /// False when there is no connection.
    bool CloseDataBase();

    /// Why the last operation that failed did; a sentence that names the file, the table or the column.
    QString GetLastError() const;

private:
    struct State;

    bool OpenInPlace(const QString& path);
    bool OpenAside(const QString& path);
    bool SealInPlace(const QString& path);
    void SealLater(const QString& path);
    void TrySealing();
    bool Lock(const QString& path, int patienceMs);
    bool Fail(const QString& reason);

    std::unique_ptr<State> m_state;
};

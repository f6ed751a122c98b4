#pragma once

#include <AxData/tiles/AxTileArea.h>

#include <QLockFile>
#include <QString>

#include <memory>
#include <optional>
#include <vector>

class AxSqlFile;
class QSqlQuery;
struct AxTileJob;
struct AxTilePicture;

/**
 * A file of tiles, MBTiles 1.3, as it grows. Only tiles that a commit follows stay: a program that dies
 * leaves the file as it was after the last one. A file without a picture goes with the object. Beside it lies
 * NAME.lock while it is open. The table "ax_missing" has the tiles that the service does not have. One
 * thread.
 */
class AxTileFile
{
public:
    AxTileFile();
    ~AxTileFile();

    /// Makes the file, or goes on with one that was fetched from the same service for the same levels, be it
    /// for other ground; `why` says, for people, what stands in the way: another program has it, it holds
    /// something else, the disk.
    bool Open(const AxTileJob& job, QString& why);
    /// Whether the rows of a run are settled: there, or known to be missing. Null, with `why`, where the file
    /// cannot be read.
    std::unique_ptr<std::vector<bool>> Settled(int level, const AxTileRun& run, QString& why);
    /// Keeps a picture, which has to have Pixels() pixels where there are any.
    bool Put(const AxTile& tile, const QByteArray& bytes, const AxTilePicture& picture, QString& why);
    bool PutMissing(const AxTile& tile, QString& why);
    /// A tile of which there is a picture.
    std::optional<AxTile> AnyPicture();
    /// Brings what was put to the disk; nothing to do is well, too.
    bool Commit(QString& why);
    /// The finest level that is whole, as far as the service has it: readers show no finer one.
    bool SetFinestLevel(int level, QString& why);

    /// Of the pictures that are there, on each side; 0 without any.
    int Pixels() const { return pixels; }

private:
    bool Begin(QString& why);
    bool Make();
    bool Prepare(const AxTileJob& job, QString& why);
    bool CheckKept(const AxTileJob& job, QString& why);
    bool WriteFacts(const AxTileJob& job);
    bool SetFact(const QString& name, const QString& value);
    QString Fact(const QString& name);
    bool Refuse(const QString& reason, QString& why);

    QString path;
    QString shownPath;
    std::unique_ptr<QLockFile> lock;
    std::unique_ptr<AxSqlFile> file;
    std::unique_ptr<QSqlQuery> put;
    std::unique_ptr<QSqlQuery> miss;
    std::unique_ptr<QSqlQuery> look;
    int pixels = 0;
    bool isInTransaction = false;
    bool isNew = false;       ///< nothing of it was fetched before
    bool hasContents = false; ///< a picture is on the disk
};

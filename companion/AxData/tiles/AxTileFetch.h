#pragma once

#include <AxData/AxDataExport.h>
#include <AxData/tiles/AxTileArea.h>
#include <AxData/tiles/AxTileService.h>

#include <QMetaType>
#include <QObject>
#include <QString>

#include <memory>

// Ground and levels of a tile service, fetched into one MBTiles file that is read without a network.

/// What is to be fetched, and how. A plain value.
struct AxTileJob
{
    QString file; ///< MBTiles; one that the same service and levels were fetched into is gone on with
    QString name; ///< of the map, for people; empty: as the file has it, or else the name of the file
    AxTileService service;            ///< that is asked
    AxTileArea area;                  ///< ground whose tiles are wanted
    int firstLevel = 0;               ///< of the pyramid, coarse
    int lastLevel = 0;                ///< fine; both are fetched, and those between them
    int atOnce = 4;                   ///< requests under way at most, 1 to axMostTilesAtOnce
    int timeoutMs = 20000;            ///< of silence; a request may last three times as long
    qint64 mostTiles = 100000;        ///< more are refused, so that somebody is asked
    bool isMissingAskedAgain = false; ///< what the file knows to be missing may be there now
    QByteArray userAgent;             ///< who asks, told to the service; empty: AxEarthViewer
};
constexpr int axMostTilesAtOnce = 8;
/// Nobody may raise AxTileJob::mostTiles beyond.
constexpr qint64 axMostTilesOfJob = 5000000;

/// Why a job cannot be begun, for people; empty when it can. Any thread.
AXDATA_EXPORT QString AxTileJobFault(const AxTileJob& job);

/// What there is of the file of a job, which is to be gone on with. A plain value.
struct AxTileFileState
{
    bool isThere = false; ///< there is a file
    QString fault;        ///< why it cannot be gone on with, for people; empty: it can, or it is not there
    qint64 tiles = 0;     ///< pictures
    qint64 missing = 0;   ///< that the service does not have
    qint64 bytes = 0;     ///< of the file
};
/// Looks without changing it. Any thread.
AXDATA_EXPORT AxTileFileState AxLookAtTileFile(const AxTileJob& job);

/// Where the tiles are of a file that AxTileFetch has written; nothing for other files. Any thread.
AXDATA_EXPORT std::optional<AxTileBounds> AxTileFileBounds(const QString& file);

/// How far a job is. A plain value.
struct AxTileProgress
{
    qint64 all = 0;      ///< tiles of the job
    qint64 kept = 0;     ///< of them, were in the file, or known to be missing, before
    qint64 fetched = 0;  ///< now, and put into the file
    qint64 missing = 0;  ///< the service does not have them
    qint64 unusable = 0; ///< no pictures came, or refusals; they are asked for again the next time
    qint64 bytes = 0;    ///< fetched
    qint64 waitMs = 0;   ///< the service is left alone for so long from now on; 0: it is asked
    int level = 0;       ///< that is being fetched
    QString why;         ///< of the latest unusable answer, wait or failure, for people

    /// Tiles of the job that are settled for this time.
    qint64 Done() const { return kept + fetched + missing + unusable; }
};
Q_DECLARE_METATYPE(AxTileProgress)

/// How a job ended.
enum class AxTileEnd
{
    Complete,   ///< all that the service has is in the file
    Incomplete, ///< all was asked for; some answers were unusable
    CalledOff,  ///< Cancel()
    GivenUp,    ///< the service does not answer, refuses, or wants to be left alone for long
    NotBegun,   ///< the job cannot be done as it is
    NotWritten, ///< the file cannot be written: the disk is full, say
};
Q_DECLARE_METATYPE(AxTileEnd)

/**
 * One job. It goes from coarse levels to fine ones, a few requests at once; after failures it waits longer
 * each time, and as long as a busy service asks. Whatever way it ends, what came is in the file and is not
 * asked for again. Lives in one thread with an event loop, into which it may be moved before Start(); reading
 * and writing of the file happens there.
 */
class AXDATA_EXPORT AxTileFetch : public QObject
{
    Q_OBJECT
public:
    /// Nothing is asked or written before Start().
    explicit AxTileFetch(const AxTileJob& job);
    /// What came is in the file.
    ~AxTileFetch() override;

public slots:
    /// Once. ended() follows later.
    void Start();
    /// ended() follows later, where it has not come.
    void Cancel();

signals:
    /// Several times a second while something changes.
    void progressed(const AxTileProgress& progress);
    /// Once; `why` is for people and empty when all is well.
    void ended(AxTileEnd end, const QString& why, const AxTileProgress& progress);

private:
    class Work;
    std::unique_ptr<Work> work;
};

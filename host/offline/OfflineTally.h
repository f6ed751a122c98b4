#pragma once
#include <AxData/tiles/AxTileEstimate.h>
#include <AxData/tiles/AxTileFetch.h>

#include <QDateTime>
#include <QString>

/// How much a job is, and how far: its tiles, about how many bytes these are, what its file has already, in
/// words as the box shows them. GUI thread.
class OfflineTally
{
public:
    /// Counts what has changed since the job that was looked at last.
    void Look(const AxTileJob& job);
    /// What a few tiles weigh; an estimate that failed counts as none.
    void SetGuess(const AxTileGuess& guess);
    void ForgetGuess() { guessedTiles = 0; }

    /// Of the file of that job.
    const AxTileFileState& File() const { return ofFile; }
    QString Text() const;
    QString PixelText() const; ///< how wide a pixel of its finest level is

    static QString ProgressText(const AxTileProgress& progress);
    static QString EndText(const QString& file, AxTileEnd end, const QString& why,
                           const AxTileProgress& progress);
    static QString Number(qint64 number);

private:
    AxTileJob counted;
    qint64 countedTiles = 0;
    AxTileFileState ofFile;
    QDateTime ofFileSince; ///< when that file changed
    qint64 guessedTiles = 0;
    double guessedBytes = 0.0;
};

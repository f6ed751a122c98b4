#pragma once

#include <AxData/tiles/AxTileFetch.h>

#include <QMap>

/// What a job would fetch, told from a few of its tiles. A plain value.
struct AxTileGuess
{
    qint64 tiles = 0;   ///< of the job
    int asked = 0;      ///< tiles that were asked for
    int pictures = 0;   ///< of them came
    int missing = 0;    ///< of them the service does not have
    double bytes = 0.0; ///< expected; the service's missing tiles, as many as of the sample, are none
    int pixels = 0;     ///< of a tile, on each side
    QString why;        ///< of an answer that was none, for people; empty when all went well
};
Q_DECLARE_METATYPE(AxTileGuess)

/// Asks for a few tiles of a job, two at once, most of them of its finest levels, which make its size. The
/// same thread as AxTileFetch; nothing is written.
class AXDATA_EXPORT AxTileEstimate : public QObject
{
    Q_OBJECT
public:
    /// Nothing is asked before Start().
    explicit AxTileEstimate(const AxTileJob& job);
    ~AxTileEstimate() override;

    /// Those that would be asked for; the same for the same job.
    static QList<AxTile> Sample(const AxTileArea& area, int firstLevel, int lastLevel);

public slots:
    /// Once. done() follows later.
    void Start();

signals:
    /// Once.
    void done(const AxTileGuess& guess);

private:
    class Work;
    std::unique_ptr<Work> work;
};

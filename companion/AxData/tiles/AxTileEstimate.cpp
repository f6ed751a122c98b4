#include <AxData/tiles/AxTileAsker.h>
#include <AxData/tiles/AxTileEstimate.h>

#include <algorithm>

namespace {
constexpr int sampledAtOnce = 2;
/// Of the finest level, of the one above, and of each further one.
constexpr int sampledOfLevel[] = {6, 3, 1};
constexpr int sampledLevels = 5;

/// The tile that has so many before it in its level.
AxTile TileAt(const QVector<AxTileRun>& runs, int level, qint64 place)
{
    for (const AxTileRun& run : runs) {
        const qint64 rows = run.lastRow - run.firstRow + 1;
        if (place < rows)
            return {level, run.column, run.firstRow + static_cast<int>(place)};
        place -= rows;
    }
    return {};
}
} // namespace

QList<AxTile> AxTileEstimate::Sample(const AxTileArea& area, int firstLevel, int lastLevel)
{
    QList<AxTile> sample;
    for (int up = 0; up < sampledLevels && lastLevel - up >= firstLevel; ++up) {
        const int level = lastLevel - up;
        const QVector<AxTileRun> runs = area.Runs(level);
        const qint64 count = area.Count(level);
        const qint64 wanted = std::min<qint64>(sampledOfLevel[std::min(up, 2)], count);
        for (qint64 i = 0; i < wanted; ++i)
            sample += TileAt(runs, level, (2 * i + 1) * count / (2 * wanted));
    }
    return sample;
}

class AxTileEstimate::Work : public QObject
{
public:
    Work(AxTileEstimate& owner, const AxTileJob& wanted) : QObject(&owner), estimate(owner), job(wanted) {}

    void Start()
    {
        guess.why = AxTileJobFault(job);
        if (!guess.why.isEmpty())
            return Tell();
        guess.tiles = job.area.Count(job.firstLevel, job.lastLevel);
        left = Sample(job.area, job.firstLevel, job.lastLevel);
        asker = std::make_unique<AxTileAsker>(job.service, job.timeoutMs, job.userAgent);
        Pump();
    }

private:
    struct OfLevel
    {
        int answers = 0;
        qint64 bytes = 0;
    };

    void Pump()
    {
        while (running < sampledAtOnce && !left.isEmpty()) {
            const AxTile tile = left.takeFirst();
            ++running;
            ++guess.asked;
            asker->Ask(tile, [this, tile](const AxTileAnswer& answer) {
                --running;
                Take(tile, answer);
                Pump();
            });
        }
        if (running == 0)
            Finish();
    }

    void Take(const AxTile& tile, const AxTileAnswer& answer)
    {
        using Kind = AxTileAnswer::Kind;
        OfLevel& level = levels[tile.level];
        if (answer.kind == Kind::Picture || answer.kind == Kind::Missing) {
            ++level.answers;
            level.bytes += answer.bytes.size();
            ++(answer.kind == Kind::Picture ? guess.pictures : guess.missing);
            guess.pixels = std::max(guess.pixels, answer.picture.pixels);
            return;
        }
        guess.why = answer.why;
        // A service in trouble is not asked for more.
        left.clear();
    }

    void Finish()
    {
        OfLevel all;
        for (const OfLevel& one : qAsConst(levels)) {
            all.answers += one.answers;
            all.bytes += one.bytes;
        }
        // Levels without a sample are like the nearest finer one that has some.
        double mean = all.answers > 0 ? static_cast<double>(all.bytes) / all.answers : 0.0;
        for (int level = job.lastLevel; level >= job.firstLevel; --level) {
            const OfLevel& one = levels[level];
            if (one.answers > 0)
                mean = static_cast<double>(one.bytes) / one.answers;
            guess.bytes += mean * static_cast<double>(job.area.Count(level));
        }
        Tell();
    }

    void Tell()
    {
        QMetaObject::invokeMethod(
            this, [this] { emit estimate.done(guess); }, Qt::QueuedConnection);
    }

    AxTileEstimate& estimate;
    const AxTileJob job;
    AxTileGuess guess;
    std::unique_ptr<AxTileAsker> asker;
    QList<AxTile> left;
    QMap<int, OfLevel> levels;
    int running = 0;
};

AxTileEstimate::AxTileEstimate(const AxTileJob& job) : work(std::make_unique<Work>(*this, job))
{
    qRegisterMetaType<AxTileGuess>();
}

AxTileEstimate::~AxTileEstimate() = default;

void AxTileEstimate::Start()
{
    work->Start();
}

#include <AxData/tiles/AxTileAsker.h>
#include <AxData/tiles/AxTileFetch.h>
#include <AxData/tiles/AxTileFile.h>
#include <AxData/tiles/AxTilePace.h>
#include <AxData/tiles/AxTileText.h>
#include <AxData/tiles/AxTileWalk.h>

#include <QDir>
#include <QElapsedTimer>
#include <QFileInfo>
#include <QTimer>

#include <algorithm>
#include <deque>
#include <optional>
#include <utility>
#include <vector>

namespace {
constexpr int tilesOfCommit = 100;
/// They are held in memory until then.
constexpr qint64 bytesOfCommit = 16LL * 1024 * 1024;
constexpr int commitMs = 2000;
constexpr int tellMs = 200;
/// A tile that fails so often is left for the next time.
constexpr int mostTries = 5;
/// A service that gives nothing usable so often in a row has to prove that it gives anything.
constexpr int mostUnusableInRow = 25;
/// A service without any of so many tiles has another address.
constexpr std::size_t mostMissingAtFirst = 200;

struct Try
{
    AxTile tile;
    int tries = 0;
    bool isProof = false; ///< of a service that had it before
};
} // namespace

QString AxTileJobFault(const AxTileJob& job)
{
    const QString address = AxTileAddressFault(job.service.address);
    if (!address.isEmpty())
        return address;
    if (job.area.IsEmpty())
        return AxTileText::tr("There is no area.");
    if (job.firstLevel < 0 || job.lastLevel > axMostTileLevel || job.firstLevel > job.lastLevel)
        return AxTileText::tr("The levels are 0 to %1, the coarse one first.").arg(axMostTileLevel);
    if (job.lastLevel > job.service.lastLevel)
        return AxTileText::tr("The finest level of the service is %1.").arg(job.service.lastLevel);
    if (job.file.isEmpty())
        return AxTileText::tr("There is no file.");
    const qint64 tiles = job.area.Count(job.firstLevel, job.lastLevel);
    const qint64 most = std::min(job.mostTiles, axMostTilesOfJob);
    if (tiles > most)
        return AxTileText::tr("These are %1 tiles; no more than %2 are fetched.").arg(tiles).arg(most);
    return {};
}

class AxTileFetch::Work : public QObject
{
public:
    Work(AxTileFetch& owner, const AxTileJob& wanted)
        : QObject(&owner), fetch(owner), job(wanted), pace(std::clamp(wanted.atOnce, 1, axMostTilesAtOnce))
    {
        for (QTimer* timer : {&wake, &commit, &tell})
            timer->setParent(this);
        wake.setSingleShot(true);
        connect(&wake, &QTimer::timeout, this, &Work::Pump);
        connect(&commit, &QTimer::timeout, this, &Work::Commit);
        connect(&tell, &QTimer::timeout, this, &Work::Tell);
    }

    ~Work() override
    {
        asker.reset();
        QString why;
        if (file)
            file->Commit(why);
    }

    void Start()
    {
        QString why = AxTileJobFault(job);
        if (hasEnded)
            return;
        if (!why.isEmpty())
            return End(AxTileEnd::NotBegun, why);
        file = std::make_unique<AxTileFile>();
        if (!file->Open(job, why))
            return End(AxTileEnd::NotWritten, why);
        progress.all = job.area.Count(job.firstLevel, job.lastLevel);
        walk.emplace(job.area, job.firstLevel, job.lastLevel, *file);
        asker = std::make_unique<AxTileAsker>(job.service, job.timeoutMs, job.userAgent);
        clock.start();
        commit.start(commitMs);
        tell.start(tellMs);
        Pump();
    }

    void Cancel()
    {
        if (!hasEnded)
            End(AxTileEnd::CalledOff,
                AxTileText::tr("It was called off; the next time it goes on from here."));
    }

private:
    std::optional<Try> Next()
    {
        if (!again.empty()) {
            const Try next = again.front();
            again.pop_front();
            return next;
        }
        QString why;
        const std::optional<AxTile> tile = walk->Next(progress.kept, why);
        if (!why.isEmpty())
            End(AxTileEnd::NotWritten, why);
        if (!tile)
            return {};
        progress.level = tile->level;
        return Try{*tile, 0};
    }

    void Pump()
    {
        while (!hasEnded && running < pace.AtOnce()) {
            const qint64 wait = pace.Wait(clock.elapsed());
            if (wait > 0)
                return wake.start(static_cast<int>(wait));
            if (const std::optional<Try> next = Next()) {
                Ask(*next);
                continue;
            }
            // The answers that are awaited come back here.
            if (hasEnded || running > 0)
                return;
            // Among many tiles that are there already other events have their turn.
            if (!walk->IsLevelDone())
                return wake.start(0);
            if (!CloseLevel())
                return;
            if (!walk->NextLevel())
                return Finish();
        }
    }

    void Ask(const Try& next)
    {
        ++running;
        asker->Ask(next.tile, [this, next](const AxTileAnswer& answer) {
            --running;
            Take(next, answer);
            Pump();
        });
    }

    void Take(Try one, const AxTileAnswer& answer)
    {
        using Kind = AxTileAnswer::Kind;
        if (!answer.why.isEmpty() && answer.kind != Kind::Missing)
            progress.why = answer.why;
        const qint64 now = clock.elapsed();
        const bool isFinal = answer.kind != Kind::Busy && answer.kind != Kind::Failed;
        if (one.isProof && isFinal && answer.kind != Kind::Hopeless) {
            pace.Answered();
            return Prove(answer);
        }
        switch (answer.kind) {
        case Kind::Picture:
            pace.Answered();
            if (file->Pixels() != 0 && file->Pixels() != answer.picture.pixels)
                return Leave(AxTileText::tr("A picture has %1 pixels instead of %2.")
                                 .arg(answer.picture.pixels)
                                 .arg(file->Pixels()));
            return Keep(one.tile, answer);
        case Kind::Missing:
            pace.Answered();
            return Miss(one.tile);
        case Kind::Unusable:
            pace.Answered();
            return Leave(answer.why);
        case Kind::Hopeless:
            return End(AxTileEnd::GivenUp, answer.why);
        case Kind::Busy:
            pace.Busy(now, answer.retryAfter);
            again.push_back(one);
            if (pace.IsGivenUp())
                End(AxTileEnd::GivenUp,
                    AxTileText::tr("%1 Go on later; what has come is kept.").arg(answer.why));
            return;
        case Kind::Failed:
            pace.Failed(now);
            if (++one.tries < mostTries)
                again.push_back(one);
            else if (one.isProof)
                Refused(answer.why);
            else
                Leave(answer.why);
            if (pace.IsGivenUp())
                End(AxTileEnd::GivenUp,
                    AxTileText::tr("%1 Go on later; what has come is kept.").arg(answer.why));
            return;
        }
    }

    void Keep(const AxTile& tile, const AxTileAnswer& answer)
    {
        QString why;
        if (!file->Put(tile, answer.bytes, answer.picture, why))
            return End(AxTileEnd::NotWritten, why);
        unusableInRow = 0;
        ++progress.fetched;
        progress.bytes += answer.bytes.size();
        uncommittedBytes += answer.bytes.size();
        // The address is right, so that what was missing before is missing.
        for (const AxTile& missing : std::exchange(firstMissing, {}))
            if (!file->PutMissing(missing, why))
                return End(AxTileEnd::NotWritten, why);
        Count();
    }

    void Miss(const AxTile& tile)
    {
        unusableInRow = 0;
        ++progress.missing;
        if (file->Pixels() == 0) {
            firstMissing.push_back(tile);
            if (firstMissing.size() >= mostMissingAtFirst)
                HasNone();
            return;
        }
        QString why;
        if (!file->PutMissing(tile, why))
            return End(AxTileEnd::NotWritten, why);
        Count();
    }

    void HasNone()
    {
        End(AxTileEnd::GivenUp,
            AxTileText::tr("The service has none of the first %1 tiles. Is its address right?")
                .arg(progress.missing));
    }

    void Leave(const QString& reason)
    {
        progress.why = reason;
        ++progress.unusable;
        if (++unusableInRow < mostUnusableInRow || isProving)
            return;
        const std::optional<AxTile> known = file->AnyPicture();
        if (!known)
            return Refused(reason);
        // Some services refuse what they do not have. A key that has run out is refused everywhere.
        isProving = true;
        again.push_front({*known, 0, true});
    }

    void Prove(const AxTileAnswer& answer)
    {
        isProving = false;
        if (answer.kind != AxTileAnswer::Kind::Picture)
            return Refused(answer.why);
        unusableInRow = 0;
    }

    void Refused(const QString& reason)
    {
        End(AxTileEnd::GivenUp,
            AxTileText::tr("%1 tiles in a row could not be had. %2").arg(unusableInRow).arg(reason));
    }

    void Count()
    {
        if (++uncommitted >= tilesOfCommit || uncommittedBytes >= bytesOfCommit)
            Commit();
    }

    void Commit()
    {
        uncommitted = 0;
        uncommittedBytes = 0;
        QString why;
        if (!hasEnded && !file->Commit(why))
            End(AxTileEnd::NotWritten, why);
    }

    bool CloseLevel()
    {
        QString why;
        if (file->SetFinestLevel(walk->Level(), why) && file->Commit(why))
            return true;
        End(AxTileEnd::NotWritten, why);
        return false;
    }

    void Tell()
    {
        progress.waitMs = pace.Wait(clock.elapsed());
        emit fetch.progressed(progress);
    }

    void Finish()
    {
        if (progress.unusable > 0)
            End(AxTileEnd::Incomplete,
                AxTileText::tr("%1 tiles could not be had: %2").arg(progress.unusable).arg(progress.why));
        else if (!firstMissing.empty())
            HasNone();
        else
            End(AxTileEnd::Complete, {});
    }

    void End(AxTileEnd end, const QString& reason)
    {
        if (hasEnded)
            return;
        hasEnded = true;
        for (QTimer* timer : {&wake, &commit, &tell})
            timer->stop();
        if (asker)
            asker->CallOff();
        QString why = reason;
        QString fault;
        if (file && !file->Commit(fault) && end != AxTileEnd::NotWritten) {
            end = AxTileEnd::NotWritten;
            why = fault;
        }
        walk.reset();
        // Whoever hears of the end may open the file.
        file.reset();
        progress.waitMs = 0;
        if (progress.kept + progress.fetched > 0 && !QFileInfo::exists(job.file)) {
            if (end != AxTileEnd::NotWritten)
                why = AxTileText::tr("\"%1\" was deleted or moved away while it was saved.")
                          .arg(QDir::toNativeSeparators(job.file));
            end = AxTileEnd::NotWritten;
            AxTileProgress nothing;
            nothing.all = progress.all;
            nothing.level = progress.level;
            progress = nothing;
        }
        QMetaObject::invokeMethod(
            this, [this, end, why, last = progress] { emit fetch.ended(end, why, last); },
            Qt::QueuedConnection);
    }

    AxTileFetch& fetch;
    const AxTileJob job;
    AxTilePace pace;
    AxTileProgress progress;
    std::unique_ptr<AxTileFile> file;
    std::unique_ptr<AxTileAsker> asker;
    std::optional<AxTileWalk> walk;
    std::deque<Try> again;
    std::vector<AxTile> firstMissing; ///< while no picture has come; not in the file
    QElapsedTimer clock;
    QTimer wake;
    QTimer commit;
    QTimer tell;
    int running = 0;
    int uncommitted = 0;
    qint64 uncommittedBytes = 0;
    int unusableInRow = 0;
    bool isProving = false;
    bool hasEnded = false;
};

AxTileFetch::AxTileFetch(const AxTileJob& job) : work(std::make_unique<Work>(*this, job))
{
    qRegisterMetaType<AxTileProgress>();
    qRegisterMetaType<AxTileEnd>();
}

AxTileFetch::~AxTileFetch() = default;

void AxTileFetch::Start()
{
    work->Start();
}

void AxTileFetch::Cancel()
{
    work->Cancel();
}

#include "host/offline/OfflineTally.h"
#include "host/offline/OfflineBox.h"

#include <AxAlgorthm/AxUnits.h>

#include <QFileInfo>
#include <QLocale>
#include <QStorageInfo>

namespace {
constexpr int msOfSecond = 1000;

QString Size(double bytes)
{
    constexpr double gigabyte = 1e9;
    constexpr double megabyte = 1e6;
    return bytes >= gigabyte ? OfflineBox::tr("%1 GB").arg(QLocale().toString(bytes / gigabyte, 'f', 1))
                             : OfflineBox::tr("%1 MB").arg(QLocale().toString(bytes / megabyte, 'f', 1));
}
} // namespace

QString OfflineTally::Number(qint64 number)
{
    return QLocale().toString(number);
}

void OfflineTally::Look(const AxTileJob& job)
{
    const bool areLevelsSame = job.firstLevel == counted.firstLevel && job.lastLevel == counted.lastLevel;
    if (!areLevelsSame || !(job.area == counted.area))
        countedTiles = job.area.Count(job.firstLevel, job.lastLevel);
    // A large file takes a moment to be looked through, and the map moves all the time.
    const QDateTime since = QFileInfo(job.file).lastModified();
    if (!areLevelsSame || job.file != counted.file || since != ofFileSince ||
        job.service.address != counted.service.address) {
        ofFile = AxLookAtTileFile(job);
        ofFileSince = since;
    }
    counted = job;
}

void OfflineTally::SetGuess(const AxTileGuess& guess)
{
    guessedTiles = guess.why.isEmpty() ? guess.tiles : 0;
    guessedBytes = guess.bytes;
}

QString OfflineTally::PixelText() const
{
    const AxTileBounds bounds = counted.area.Bounds();
    return OfflineBox::tr("a pixel of the finest is %1")
        .arg(AxUnits::Length(AxTilePixelMetres(counted.lastLevel, (bounds.south + bounds.north) / 2.0)));
}

QString OfflineTally::Text() const
{
    QString text = OfflineBox::tr("%1 tiles").arg(Number(countedTiles));
    if (guessedTiles > 0)
        text += OfflineBox::tr(", about %1")
                    .arg(Size(guessedBytes / static_cast<double>(guessedTiles) *
                              static_cast<double>(countedTiles)));
    const QStorageInfo disk(QFileInfo(counted.file).absolutePath());
    if (disk.isValid())
        text += OfflineBox::tr("; %1 are free").arg(Size(static_cast<double>(disk.bytesAvailable())));
    if (!ofFile.fault.isEmpty())
        text += QLatin1Char('\n') + ofFile.fault;
    else if (ofFile.tiles + ofFile.missing > 0)
        text +=
            QLatin1Char('\n') +
            OfflineBox::tr("The file has %1 tiles already; it is gone on with.").arg(Number(ofFile.tiles));
    return text;
}

QString OfflineTally::ProgressText(const AxTileProgress& progress)
{
    QString text = OfflineBox::tr("Level %1: %2 of %3 tiles, %4 fetched")
                       .arg(QString::number(progress.level), Number(progress.Done()), Number(progress.all),
                            Size(static_cast<double>(progress.bytes)));
    if (progress.unusable > 0)
        text += QLatin1Char('\n') +
                OfflineBox::tr("%1 could not be had: %2").arg(Number(progress.unusable), progress.why);
    else if (progress.waitMs > 0)
        text += QLatin1Char('\n') +
                OfflineBox::tr("Waiting for %1 s: %2")
                    .arg(Number((progress.waitMs + msOfSecond - 1) / msOfSecond), progress.why);
    return text;
}

QString OfflineTally::EndText(const QString& file, AxTileEnd end, const QString& why,
                              const AxTileProgress& progress)
{
    QString text =
        OfflineBox::tr("%1: %2 of %3 tiles are saved.")
            .arg(file, Number(progress.Done() - progress.unusable - progress.missing), Number(progress.all));
    if (progress.missing > 0)
        text += QLatin1Char(' ') +
                OfflineBox::tr("The service has no more: %1 are missing.").arg(Number(progress.missing));
    if (!why.isEmpty())
        text = end == AxTileEnd::NotBegun || progress.all == 0 ? why : text + QLatin1Char('\n') + why;
    return text;
}

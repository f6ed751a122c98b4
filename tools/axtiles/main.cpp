#include "TilesOptions.h"
#include "TilesText.h"

#include <AxData/tiles/AxTileEstimate.h>

#include <QCoreApplication>
#include <QDir>
#include <QElapsedTimer>
#include <QFileInfo>
#include <QLocale>
#include <QTextStream>
#include <QTimer>
#include <QTranslator>

#include <csignal>
#include <cstdio>

#ifdef Q_OS_WIN
#include <io.h>
#else
#include <unistd.h>
#endif

namespace {
constexpr double bytesOfMegabyte = 1e6;

volatile std::sig_atomic_t wasInterrupted = 0;

// The second one ends the program at once.
void OnInterrupt(int number)
{
    wasInterrupted = 1;
    std::signal(number, SIG_DFL);
}

bool IsTerminal()
{
#ifdef Q_OS_WIN
    return _isatty(_fileno(stderr)) != 0;
#else
    return isatty(fileno(stderr)) != 0;
#endif
}

void InstallTexts()
{
    if (QLocale::system().language() != QLocale::Chinese)
        return;
    const QDir texts(QStringLiteral(":/axtiles"));
    for (const QString& file : texts.entryList({QStringLiteral("*.qm")})) {
        auto* const translator = new QTranslator(QCoreApplication::instance());
        if (translator->load(texts.filePath(file)))
            QCoreApplication::installTranslator(translator);
    }
}

int Complain(int status, const QString& reason)
{
    QTextStream(stderr) << "axtiles: " << reason << Qt::endl;
    return status;
}

QString Megabytes(double bytes)
{
    return QString::number(bytes / bytesOfMegabyte, 'f', 1);
}

/// How far it is, on standard error.
class Console
{
public:
    explicit Console(const TilesOptions& options)
        : isTerminal(IsTerminal()), isShown(!options.isQuiet && (isTerminal || options.isTalkative)),
          isWaitTold(options.isQuiet || isShown)
    {
    }

    void Tell(const AxTileProgress& progress)
    {
        constexpr int otherMs = 2000;
        const QString waiting =
            TilesText::tr("waiting for %1 s: %2").arg((progress.waitMs + 999) / 1000).arg(progress.why);
        if (!isWaitTold && progress.waitMs > 0 && !progress.why.isEmpty()) {
            isWaitTold = true;
            QTextStream(stderr) << "axtiles: " << waiting << Qt::endl;
        }
        if (!isShown || (!isTerminal && since.isValid() && !since.hasExpired(otherMs)))
            return;
        since.start();
        const qint64 percent = progress.all > 0 ? progress.Done() * 100 / progress.all : 0;
        QString line = TilesText::tr("%1 % of %2 tiles, level %3, %4 MB")
                           .arg(percent)
                           .arg(progress.all)
                           .arg(progress.level)
                           .arg(Megabytes(static_cast<double>(progress.bytes)));
        if (progress.waitMs > 0)
            line += QStringLiteral("; ") + waiting;
        QTextStream out(stderr);
        if (!isTerminal) {
            out << line << Qt::endl;
            return;
        }
        out << '\r' << line.leftJustified(width) << Qt::flush;
        width = line.size();
    }

    void End()
    {
        if (isShown && isTerminal && width > 0)
            QTextStream(stderr) << '\r' << QString(width, QLatin1Char(' ')) << '\r' << Qt::flush;
    }

private:
    bool isTerminal;
    bool isShown;
    bool isWaitTold; ///< once, where how far it is is not shown
    int width = 0;
    QElapsedTimer since;
};

int Estimate(const AxTileJob& job)
{
    AxTileEstimate estimate(job);
    int status = TilesFailed;
    QObject::connect(&estimate, &AxTileEstimate::done, qApp, [&status](const AxTileGuess& guess) {
        QTextStream out(stdout);
        out << TilesText::tr("%1 tiles").arg(guess.tiles);
        if (guess.pictures + guess.missing > 0)
            out << TilesText::tr(", about %1 MB (of %2 tiles that were asked for the service has %3)")
                       .arg(Megabytes(guess.bytes))
                       .arg(guess.asked)
                       .arg(guess.pictures);
        out << Qt::endl;
        status = guess.why.isEmpty() ? TilesDone : Complain(TilesFailed, guess.why);
        QCoreApplication::quit();
    });
    estimate.Start();
    QCoreApplication::exec();
    return status;
}

int StatusOf(AxTileEnd end, const QString& file)
{
    switch (end) {
    case AxTileEnd::Complete:
        return TilesDone;
    case AxTileEnd::NotBegun:
        return TilesWrongUse;
    case AxTileEnd::NotWritten:
        return TilesFailed;
    default:
        return QFileInfo::exists(file) ? TilesGoOn : TilesFailed;
    }
}

int Fetch(const TilesOptions& options)
{
    AxTileFetch fetch(options.job);
    Console console(options);
    int status = TilesFailed;
    QObject::connect(&fetch, &AxTileFetch::progressed, qApp,
                     [&console](const AxTileProgress& progress) { console.Tell(progress); });
    QObject::connect(&fetch, &AxTileFetch::ended, qApp,
                     [&](AxTileEnd end, const QString& why, const AxTileProgress& progress) {
                         console.End();
                         status = StatusOf(end, options.job.file);
                         if (end != AxTileEnd::NotBegun && progress.all > 0 && !options.isQuiet)
                             QTextStream(stdout)
                                 << TilesText::tr(
                                        "%1: %2 of %3 tiles: %4 fetched, %5 kept, %6 missing, %7 unusable")
                                        .arg(options.job.file)
                                        .arg(progress.Done() - progress.unusable)
                                        .arg(progress.all)
                                        .arg(progress.fetched)
                                        .arg(progress.kept)
                                        .arg(progress.missing)
                                        .arg(progress.unusable)
                                 << Qt::endl;
                         if (!why.isEmpty())
                             Complain(status, why);
                         QCoreApplication::quit();
                     });
    // A handler may do no more than set a flag.
    constexpr int lookMs = 100;
    QTimer look;
    QObject::connect(&look, &QTimer::timeout, &fetch, [&fetch] {
        if (wasInterrupted != 0)
            fetch.Cancel();
    });
    look.start(lookMs);
    std::signal(SIGINT, &OnInterrupt);
    std::signal(SIGTERM, &OnInterrupt);
    fetch.Start();
    QCoreApplication::exec();
    return status;
}
} // namespace

int main(int argc, char** argv)
{
    QCoreApplication application(argc, argv);
    QCoreApplication::setApplicationName(QStringLiteral("axtiles"));
    QCoreApplication::setApplicationVersion(QStringLiteral(AX_VERSION));
    InstallTexts();
    TilesOptions options;
    QString error;
    if (!ReadTilesOptions(QCoreApplication::arguments(), options, error))
        return Complain(TilesWrongUse, error);
    return options.isEstimateOnly ? Estimate(options.job) : Fetch(options);
}

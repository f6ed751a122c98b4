// The host as a user starts it: time to signalLoadEarth and to a complete
// first picture, and its resident memory after the tour. Reads /proc, so it
// gives figures on Linux only.
#include "BenchGlobe.h"

#include <benchmark/benchmark.h>

#include <QCoreApplication>
#include <QElapsedTimer>
#include <QFile>
#include <QProcess>
#include <QTemporaryDir>

#include <map>

namespace {

QString hostProgram()
{
    return QCoreApplication::applicationDirPath() + QStringLiteral("/AxGroundControl");
}

QString shippedMap()
{
    return QCoreApplication::applicationDirPath() + QStringLiteral("/google_cn_net_no.earth");
}

/// Seconds from the start of the host to the first line of its output that
/// begins so; negative when it never comes.
double secondsToLine(const QByteArray& beginning)
{
    QProcess host;
    QElapsedTimer clock;
    clock.start();
    host.start(hostProgram(),
               {QStringLiteral("--map"), shippedMap(), QStringLiteral("--size"), QStringLiteral("1280x800"),
                QStringLiteral("--report"), QStringLiteral("--quit-after"), QStringLiteral("20")});
    double seconds = -1.0;
    while (seconds < 0.0 && host.waitForReadyRead(30000))
        while (host.canReadLine())
            if (host.readLine().startsWith(beginning)) {
                seconds = static_cast<double>(clock.nsecsElapsed()) / 1e9;
                break;
            }
    host.terminate();
    host.waitForFinished(5000);
    return seconds;
}

void startup(benchmark::State& state, const QByteArray& line)
{
    secondsToLine(line); // warms the disk cache
    for (auto _ : state) {
        const double seconds = bench::median(5, [&] { return secondsToLine(line); });
        if (seconds < 0.0)
            state.SkipWithError("the host did not report");
        else
            state.SetIterationTime(seconds);
    }
}

void StartupLoad(benchmark::State& state)
{
    startup(state, "loaded");
}

void StartupPicture(benchmark::State& state)
{
    startup(state, "picture complete");
}

/// Resident memory now, in megabytes, by the names that /proc gives its parts; empty once the process is
/// gone.
std::map<QByteArray, double> residentMegabytes(qint64 process)
{
    QFile status(QStringLiteral("/proc/%1/status").arg(process));
    std::map<QByteArray, double> parts;
    if (!status.open(QIODevice::ReadOnly))
        return parts;
    for (const QByteArray& line : status.readAll().split('\n'))
        if (line.startsWith("VmRSS:") || line.startsWith("Rss"))
            parts[line.left(line.indexOf(':'))] =
                line.mid(line.indexOf(':') + 1).trimmed().split(' ').first().toDouble() / 1024.0;
    return parts;
}

void MemoryTour(benchmark::State& state)
{
    for (auto _ : state) {
        QTemporaryDir pictures;
        QProcess host;
        QElapsedTimer clock;
        clock.start();
        host.start(hostProgram(), {QStringLiteral("--map"), shippedMap(), QStringLiteral("--size"),
                                   QStringLiteral("1280x800"), QStringLiteral("--tour"), pictures.path()});
        // The line of the last picture ends the tour; the process leaves soon after it.
        std::map<QByteArray, double> megabytes;
        while (host.waitForReadyRead(60000))
            while (host.canReadLine()) {
                host.readLine();
                megabytes = residentMegabytes(host.processId());
            }
        host.waitForFinished(5000);
        if (megabytes.empty())
            state.SkipWithError("the host made no tour");
        state.SetIterationTime(static_cast<double>(clock.nsecsElapsed()) / 1e9);
        state.counters["resident_MB"] = megabytes["VmRSS"];
        // Heap, stacks, relocations; libraries and other files; what is shared with the X server.
        state.counters["own_MB"] = megabytes["RssAnon"];
        state.counters["libraries_MB"] = megabytes["RssFile"];
        state.counters["shared_MB"] = megabytes["RssShmem"];
    }
}

BENCHMARK(StartupLoad)->Name("Startup/load")->Iterations(1)->UseManualTime()->Unit(benchmark::kMillisecond);
BENCHMARK(StartupPicture)
    ->Name("Startup/picture")
    ->Iterations(1)
    ->UseManualTime()
    ->Unit(benchmark::kMillisecond);
BENCHMARK(MemoryTour)->Name("Memory/tour")->Iterations(1)->UseManualTime()->Unit(benchmark::kMillisecond);

} // namespace

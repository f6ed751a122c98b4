// Projects of 500 blocks and 2,000 tasks: opening, saving, what keeping an edit for a crash costs the GUI
// thread, and how much memory a block takes (of Linux, which tells it).
#include "BenchGlobe.h"

#include "host/project/ProjectOnMap.h"
#include "interaction/input/CAxEarthManipulator.h"
#include "viewer/CAxEarthViewer.h"

#include <AxData/CAxBlockManager.h>
#include <AxData/project/AxProjectFile.h>
#include <AxData/project/AxProjectJournal.h>

#include <benchmark/benchmark.h>

#include <QElapsedTimer>
#include <QFile>
#include <QTemporaryDir>

#include <algorithm>
#include <cmath>

namespace {
constexpr int kBlocks = 500;
constexpr int kTasks = 4;
constexpr int kVertices = 12;
constexpr int kLongMs = 60000;

AxProject bigProject()
{
    AxProject project;
    for (int i = 0; i < kBlocks; ++i) {
        AxProjectBlock block;
        block.id = QStringLiteral("block-%1").arg(i, 4, 10, QLatin1Char('0'));
        block.name = QStringLiteral("Block %1").arg(i);
        for (int v = 0; v < kVertices; ++v)
            block.anchors += QPointF(-105.1 + 0.01 * (i % 25) + 0.003 * std::cos(v * 6.283185 / kVertices),
                                     37.3 + 0.01 * (i / 25) + 0.003 * std::sin(v * 6.283185 / kVertices));
        block.home = CAxVector3D(-105.0, 37.4, 3000.0);
        for (int t = 0; t < kTasks; ++t)
            block.tasks += AxProjectTask{QStringLiteral("%1-%2").arg(i).arg(t),
                                         QStringLiteral("Task %1").arg(t),
                                         block.anchors,
                                         0,
                                         {},
                                         nullptr};
        project.blocks += block;
    }
    return project;
}

double residentKilobytes()
{
    QFile status(QStringLiteral("/proc/self/status"));
    if (!status.open(QIODevice::ReadOnly))
        return 0.0;
    for (const QByteArray& line : status.readAll().split('\n'))
        if (line.startsWith("VmRSS:"))
            return line.mid(6).trimmed().split(' ').first().toDouble();
    return 0.0;
}

double milliseconds(const QElapsedTimer& clock)
{
    return static_cast<double>(clock.nsecsElapsed()) / 1e6;
}

void save(benchmark::State& state)
{
    const QTemporaryDir folder;
    const AxProject project = bigProject();
    for (auto _ : state)
        if (!AxWriteProject(folder.filePath(QStringLiteral("a.axproject")), project))
            state.SkipWithError("nothing was written");
}
BENCHMARK(save)->Name("Project/save")->Unit(benchmark::kMillisecond);

// From the file to the first picture with its blocks.
void open(benchmark::State& state)
{
    const QTemporaryDir folder;
    const QString path = folder.filePath(QStringLiteral("a.axproject"));
    AxWriteProject(path, bigProject());
    bench::goTo(bench::kOblique20km);
    double firstKilobytes = 0.0;
    for (auto _ : state) {
        ProjectOnMap::Show(bench::globe(), {});
        const double before = residentKilobytes();
        QElapsedTimer clock;
        clock.start();
        const AxProjectRead read = AxReadProject(path);
        const double readMs = milliseconds(clock);
        ProjectOnMap::Show(bench::globe(), read.project);
        bench::frameMilliseconds();
        state.SetIterationTime(milliseconds(clock) / 1e3);
        state.counters["read_ms"] = readMs;
        bench::waitFor([] { return bench::globe().IsPictureComplete(); }, kLongMs);
        if (firstKilobytes == 0.0)
            firstKilobytes = residentKilobytes() - before;
    }
    // Later ones use again what the first has left.
    state.counters["kB_a_block"] = firstKilobytes / kBlocks;
    ProjectOnMap::Show(bench::globe(), {});
}
BENCHMARK(open)->Name("Project/open")->Iterations(5)->UseManualTime()->Unit(benchmark::kMillisecond);

// A vertex is moved, and the journal looks.
void autosave(benchmark::State& state)
{
    const QTemporaryDir folder;
    CAxEarthViewer& globe = bench::globe();
    ProjectOnMap::Show(globe, bigProject());
    AxProjectJournal journal(folder.path(), [&globe] { return ProjectOnMap::Look(globe, {}); });
    journal.Begin({}, ProjectOnMap::Look(globe, {}));
    const QList<CAxBlock*> blocks = CAxBlockManager::instance().GetBlockList();
    double worst = 0.0;
    int edit = 0;
    for (auto _ : state) {
        CAxBlock* block = blocks[edit++ % blocks.size()];
        QList<QPointF> ring = block->GetAnchor();
        ring[0] += QPointF(1e-6, 0.0);
        block->SetAnchor(ring);
        QElapsedTimer clock;
        clock.start();
        journal.LookNow();
        const double taken = milliseconds(clock);
        state.SetIterationTime(taken / 1e3);
        worst = std::max(worst, taken);
        if (!journal.Flush(kLongMs))
            state.SkipWithError("nothing was kept");
    }
    state.counters["worst_ms"] = worst;
    journal.Drop();
    journal.Flush(kLongMs);
    ProjectOnMap::Show(globe, {});
}
BENCHMARK(autosave)
    ->Name("Project/autosave")
    ->Iterations(200)
    ->UseManualTime()
    ->Unit(benchmark::kMillisecond);
} // namespace

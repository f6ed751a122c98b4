// What the magnifier adds to a frame, and how long a picture takes that is larger than the window.
#include "BenchGlobe.h"

#include "interaction/magnifier/AxMagnifier.h"
#include "viewer/capture/AxPictureCapture.h"
#include "viewer/CAxEarthViewer.h"

#include <benchmark/benchmark.h>

#include <memory>
#include <vector>

namespace {

/// Frames with and without the lens in turns, so that a load that comes and goes meets both.
void MagnifyFrame(benchmark::State& state)
{
    bench::goTo(bench::kOblique20km);
    CAxEarthViewer& globe = bench::globe();
    AxMagnifier& lens = *globe.GetMagnifier();
    constexpr int kTurns = 8;
    constexpr int kFramesInTurn = 12;
    std::vector<double> with;
    std::vector<double> without;
    const auto open = [&lens] { lens.Look({-0.15, -0.15}, {0.15, 0.15}); };
    // What it shows is loaded once.
    open();
    if (!bench::waitFor([&globe] { return globe.IsPictureComplete(); }, 60000))
        state.SkipWithError("the lens is never complete");
    for (auto _ : state) {
        for (int turn = 0; turn < 2 * kTurns; ++turn) {
            const bool isOpen = turn % 2 == 0;
            if (isOpen)
                open();
            else
                lens.Close();
            bench::frameMilliseconds();
            std::vector<double>& times = isOpen ? with : without;
            for (int i = 0; i < kFramesInTurn; ++i)
                times.push_back(bench::frameMilliseconds());
        }
    }
    const auto median = [](std::vector<double>& times) {
        std::size_t next = 0;
        return bench::median(static_cast<int>(times.size()), [&] { return times[next++]; });
    };
    const double ours = median(with);
    const double reference = median(without);
    state.counters["with_ms"] = ours;
    state.counters["reference_ms"] = reference;
    state.counters["ratio"] = ours / reference;
    state.counters["pixels"] = lens.Frame().width() * lens.Frame().height();
    lens.Close();
}

BENCHMARK(MagnifyFrame)->Name("Magnify/frame")->Iterations(1)->Unit(benchmark::kMillisecond);

/// A picture of 8192 x 8192 pixels into memory, its tiles loaded by a picture before.
void Capture8k(benchmark::State& state)
{
    bench::goTo(bench::kOblique20km);
    AxPictureCapture& capture = *bench::globe().GetPictureCapture();
    const QSize size(8192, 8192);
    qint64 bytes = 0;
    const auto take = [&] {
        bytes = 0;
        auto taker = std::make_unique<AxImageTaker>(std::vector<QSize>{size}, [&bytes](int, QImage&& image) {
            bytes = image.sizeInBytes();
            return QString();
        });
        return capture.Begin({capture.AsSeen(size)}, std::move(taker)) &&
               bench::waitFor([&] { return !capture.IsBusy(); }, 300000) && bytes > 0;
    };
    bool isTaken = take();
    for (auto _ : state)
        isTaken = isTaken && take();
    state.counters["megabytes"] = static_cast<double>(bytes) / 1e6;
    if (!isTaken || capture.IsDetailMissing())
        state.SkipWithError("there is no whole picture");
}

BENCHMARK(Capture8k)->Name("Capture/8k")->Iterations(1)->UseRealTime()->Unit(benchmark::kMillisecond);

} // namespace

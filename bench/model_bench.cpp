// A frame with a paged model of five million triangles in view, against a plain static scene with what of it,
// and of the ground, is drawn.
#include "BenchGlobe.h"
#include "StaticScene.h"

#include "interaction/input/CAxEarthManipulator.h"
#include "interaction/models/AxModelLayers.h"
#include "viewer/CAxEarthViewer.h"

#include "../tests/support/MadeUpExport.h"

#include <benchmark/benchmark.h>
#include <osgEarth/Viewpoint>

#include <QTemporaryDir>

namespace {
constexpr int kModelFrames = 40;
constexpr int kModelWaitMs = 300000;

void ModelFrame(benchmark::State& state)
{
    MadeUpExport made;
    made.origin = QStringLiteral("500000,4100000,2500"); // over the ground there
    made.tilesOnSide = 10;
    made.coarse = 30;
    made.fine = 159;
    made.finerFrom = 100.0f;
    const QTemporaryDir folder;
    const QString path = made.Write(folder.path());
    CAxEarthViewer& globe = bench::globe();
    AxModelLayers& models = *globe.GetModelLayers();
    const QString id = models.Add(path);
    const auto isLoaded = [&] { return models.Find(id) && !models.Find(id)->isLoading; };
    if (!bench::waitFor(isLoaded, kModelWaitMs)) {
        state.SkipWithError("the made-up model was not loaded");
        return;
    }
    const QPointF middle = models.Find(id)->extent->center();
    globe.getManipulator()->setViewpoint(
        osgEarth::Viewpoint("", middle.x(), middle.y(), 2520.0, 0.0, -45.0, 1500.0), 0.0);
    bench::waitFor([&] { return globe.IsPictureComplete(); }, kModelWaitMs);
    double ours = 0.0;
    for (auto _ : state) {
        ours = bench::median(kModelFrames, bench::frameMilliseconds);
        state.SetIterationTime(ours / 1e3);
    }
    const bench::StaticScene scene = bench::copyDrawnTerrain(*globe.getOSGViewer());
    const double whole = 2.0 * made.fine * made.fine * made.tilesOnSide * made.tilesOnSide;
    if (scene.triangles < 0.9 * whole)
        state.SkipWithError("most of the model is not drawn");
    const double reference =
        bench::staticFrameMilliseconds(scene, *globe.getOSGViewer()->getCamera(), kModelFrames);
    state.counters["reference_ms"] = reference;
    state.counters["ratio"] = ours / reference;
    state.counters["triangles_drawn"] = scene.triangles;
    state.counters["triangles"] = whole;
    models.Remove(id);
}
BENCHMARK(ModelFrame)->Name("Model/frame")->Iterations(1)->UseManualTime()->Unit(benchmark::kMillisecond);
} // namespace

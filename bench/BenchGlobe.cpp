#include "BenchGlobe.h"
#include "BenchZones.h"

#include "host/TourStops.h"
#include "interaction/input/CAxEarthManipulator.h"
#include "viewer/CAxEarthViewer.h"

#include <AxData/CAxNoflyZoneMgr.h>

#include <QCoreApplication>
#include <QElapsedTimer>
#include <QTimer>

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <memory>
#include <vector>

namespace bench {
namespace {
std::unique_ptr<CAxEarthViewer> viewer;
constexpr int kLookMs = 5;
} // namespace

CAxEarthViewer& globe()
{
    if (!viewer) {
        CAxNoflyZoneMgr::SetNoflyFile(zoneFile());
        viewer = std::make_unique<CAxEarthViewer>(nullptr);
        viewer->SetMapFile(QCoreApplication::applicationDirPath() +
                           QStringLiteral("/google_cn_net_no.earth"));
        viewer->resize(kWidth, kHeight);
        viewer->show();
        if (!viewer->CheckAdapterGLSupport())
            std::exit(1);
        viewer->InitEarthViewer();
        // Frames are measured, also where nothing has changed.
        viewer->SetStillPictureKept(false);
    }
    return *viewer;
}

bool waitFor(const std::function<bool()>& condition, int milliseconds)
{
    QElapsedTimer clock;
    clock.start();
    // Asleep between events, as a program is: asking over and over would take a core from what is measured.
    QTimer wake;
    wake.start(kLookMs);
    while (!condition()) {
        if (clock.elapsed() > milliseconds)
            return false;
        QCoreApplication::processEvents(QEventLoop::AllEvents | QEventLoop::WaitForMoreEvents);
    }
    return true;
}

osgEarth::Viewpoint viewpointOf(View view)
{
    return tourStops[view].Viewpoint();
}

void goTo(View view)
{
    CAxEarthViewer& widget = globe();
    const TourStop& stop = tourStops[view];
    widget.getManipulator()->setViewpoint(viewpointOf(view), 0.0);
    if (!waitFor([&] { return widget.IsPictureComplete(); }, 60000)) {
        std::fprintf(stderr, "the picture of %s did not become complete within a minute\n", stop.name);
        std::exit(1);
    }
}

double frameMilliseconds()
{
    QElapsedTimer clock;
    clock.start();
    globe().viewport()->repaint();
    return static_cast<double>(clock.nsecsElapsed()) / 1e6;
}

double median(int count, const std::function<double()>& measure)
{
    std::vector<double> times;
    times.reserve(static_cast<std::size_t>(count));
    for (int i = 0; i < count; ++i)
        times.push_back(measure());
    std::nth_element(times.begin(), times.begin() + count / 2, times.end());
    return times[static_cast<std::size_t>(count) / 2];
}

void close()
{
    if (viewer)
        viewer->ReleaseAll();
    viewer.reset();
}

} // namespace bench

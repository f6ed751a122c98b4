#include "BenchGlobe.h"

#include "interaction/CAxEarthManipulator.h"
#include "viewer/CAxEarthViewer.h"

#include <osgEarth/Viewpoint>

#include <QCoreApplication>
#include <QElapsedTimer>
#include <QThread>

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <memory>
#include <vector>

namespace bench {
namespace {
std::unique_ptr<CAxEarthViewer> viewer;

constexpr double kEquatorialRadius = 6378137.0;
} // namespace

const View kSpace{"space", 116.3, 39.9, 0.0, 0.0, -90.0, 4.0 * kEquatorialRadius};
const View kRange350km{"range350km", 10.0, 46.5, 0.0, 0.0, -90.0, 350e3};
const View kOblique20km{"oblique20km", -105.0, 37.4, 2500.0, 0.0, -30.0, 20e3};
const View kNear500m{"near500m", -105.0, 37.4, 3000.0, 0.0, -30.0, 1000.0};

CAxEarthViewer& globe()
{
    if (!viewer) {
        viewer = std::make_unique<CAxEarthViewer>(nullptr);
        viewer->SetMapFile(QCoreApplication::applicationDirPath() +
                           QStringLiteral("/google_cn_net_no.earth"));
        viewer->resize(kWidth, kHeight);
        viewer->show();
        if (!viewer->CheckAdapterGLSupport())
            std::exit(1);
        viewer->InitEarthViewer();
    }
    return *viewer;
}

bool waitFor(const std::function<bool()>& condition, int milliseconds)
{
    QElapsedTimer clock;
    clock.start();
    while (!condition()) {
        if (clock.elapsed() > milliseconds)
            return false;
        QCoreApplication::processEvents(QEventLoop::AllEvents, 20);
    }
    return true;
}

void goTo(const View& view)
{
    CAxEarthViewer& widget = globe();
    widget.getManipulator()->setViewpoint(osgEarth::Viewpoint(view.name, view.longitude, view.latitude,
                                                              view.altitude, view.heading, view.pitch,
                                                              view.range),
                                          0.0);
    if (!waitFor([&] { return widget.IsPictureComplete(); }, 60000)) {
        std::fprintf(stderr, "the picture of %s did not become complete within a minute\n", view.name);
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

#include "host/Tour.h"
#include "interaction/CAxEarthManipulator.h"
#include "viewer/CAxEarthViewer.h"

#include <QTextStream>

namespace {
constexpr int tourLookMs = 50;
constexpr qint64 patienceMs = 60000;
} // namespace

Tour::Tour(CAxEarthViewer* earthViewer, QVector<Stop> tourStopList,
           std::function<bool(const QString&)> keepPicture, QObject* parent)
    : QObject(parent), viewer(earthViewer), stops(std::move(tourStopList)), keep(std::move(keepPicture))
{
    clock.setInterval(tourLookMs);
    connect(&clock, &QTimer::timeout, this, &Tour::Look);
}

void Tour::Start()
{
    GoToNext();
    clock.start();
}

void Tour::GoToNext()
{
    if (++current >= stops.size()) {
        clock.stop();
        emit Finished(allWell);
        return;
    }
    if (stops[current].viewpoint.isValid())
        viewer->getManipulator()->setViewpoint(stops[current].viewpoint, 0.0);
    waiting.start();
}

void Tour::Look()
{
    const bool complete = viewer->IsPictureComplete();
    if (!complete && waiting.elapsed() < patienceMs)
        return;
    const QString& file = stops[current].file;
    QTextStream errors(stderr);
    if (!complete) {
        errors << tr("%1: the picture was still incomplete after a minute").arg(file) << Qt::endl;
        allWell = false;
    }
    if (keep(file)) {
        QTextStream(stdout) << file << Qt::endl;
    } else {
        errors << tr("%1: the picture cannot be written").arg(file) << Qt::endl;
        allWell = false;
    }
    GoToNext();
}

#include "host/EventLog.h"
#include "interaction/CAxEarthManipulator.h"
#include "viewer/CAxEarthViewer.h"

#include <QJsonArray>
#include <QJsonDocument>

#include <cstdio>

namespace {
// Two looks with the same view mean that the camera rests.
constexpr int lookEveryMs = 50;

bool IsSame(const osgEarth::Viewpoint& left, const osgEarth::Viewpoint& right)
{
    return left.isValid() && right.isValid() && left.focalPoint()->vec3d() == right.focalPoint()->vec3d() &&
           left.getHeading() == right.getHeading() && left.getPitch() == right.getPitch() &&
           left.getRange() == right.getRange();
}
} // namespace

EventLog::EventLog(QObject* parent) : QObject(parent)
{
    clock.setInterval(lookEveryMs);
    connect(&clock, &QTimer::timeout, this, &EventLog::Look);
}

bool EventLog::Open(const QString& file, QString& error)
{
    const bool isOpen = file == QLatin1String("-")
                            ? output.open(stdout, QIODevice::WriteOnly)
                            : (output.setFileName(file), output.open(QIODevice::WriteOnly));
    if (!isOpen)
        error = output.errorString();
    sinceOpened.start();
    return isOpen;
}

void EventLog::Follow(CAxEarthViewer* earthViewer)
{
    viewer = earthViewer;
    Look();
    clock.start();
}

void EventLog::Signal(const char* from, const QString& name, const QJsonArray& arguments)
{
    if (name != QLatin1String("signalHeading"))
        Write("signal", {{"from", QLatin1String(from)}, {"name", name}, {"args", arguments}});
}

void EventLog::Write(const char* event, QJsonObject fields)
{
    if (!output.isOpen())
        return;
    fields["event"] = QLatin1String(event);
    fields["time"] = static_cast<double>(sinceOpened.elapsed()) / 1000.0;
    output.write(QJsonDocument(fields).toJson(QJsonDocument::Compact) + '\n');
    output.flush();
}

void EventLog::Look()
{
    const QRect place(viewer->mapToGlobal(QPoint()), viewer->size());
    if (place != globe) {
        globe = place;
        Write("window", {{"id", static_cast<double>(viewer->window()->winId())},
                         {"globe", QJsonArray{place.x(), place.y(), place.width(), place.height()}}});
    }
    LookAtCamera();
    const bool complete = viewer->IsPictureComplete();
    if (complete && !pictureComplete)
        Write("picture", {});
    pictureComplete = complete;
}

void EventLog::LookAtCamera()
{
    const osgEarth::Viewpoint view = viewer->getManipulator()->getViewpoint();
    if (!view.isValid())
        return;
    if (IsSame(view, seen) && !IsSame(view, written)) {
        written = view;
        const osg::Vec3d focus = view.focalPoint()->vec3d();
        Write("viewpoint", {{"longitude", focus.x()},
                            {"latitude", focus.y()},
                            {"altitude", focus.z()},
                            {"heading", view.getHeading()},
                            {"pitch", view.getPitch()},
                            {"range", view.getRange()}});
    }
    seen = view;
}

#include "host/EventLog.h"
#include "analysis/CAxAncillaryProcess.h"
#include "host/CameraRest.h"
#include "viewer/CAxEarthViewer.h"

#include <AxData/CAxBlockManager.h>

#include <QAbstractScrollArea>
#include <QJsonArray>
#include <QJsonDocument>
#include <QToolBar>

#include <cstdio>

namespace {
constexpr int readEveryMs = 50;

QJsonArray RectValue(const QRect& rect)
{
    return {rect.x(), rect.y(), rect.width(), rect.height()};
}
} // namespace

EventLog::EventLog(QObject* parent) : QObject(parent)
{
    clock.setInterval(readEveryMs);
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

void EventLog::Follow(CAxEarthViewer* earthViewer, const CameraRest& camera)
{
    viewer = earthViewer;
    connect(&camera, &CameraRest::Rested, this, &EventLog::View);
    const CAxBlockManager* records = &CAxBlockManager::instance();
    connect(records, &CAxBlockManager::blockAdded, this, &EventLog::Block);
    connect(records, &CAxBlockManager::blockChanged, this, &EventLog::Block);
    connect(records, &CAxBlockManager::blockDeleted, this, &EventLog::Block);
    Look();
    clock.start();
}

void EventLog::Signal(const char* from, const QString& name, const QJsonArray& arguments)
{
    if (name != QLatin1String("signalHeading"))
        Write("signal", {{"from", QLatin1String(from)}, {"name", name}, {"args", arguments}});
}

void EventLog::Block(const QString& id)
{
    const CAxBlock* block = CAxBlockManager::instance().GetBlock(id);
    if (block)
        Write("block", {{"id", id},
                        {"name", block->GetBlockName()},
                        {"type", block->GetBlockType()},
                        {"vertices", block->GetAnchor().size()}});
    else
        Write("block", {{"id", id}, {"deleted", true}});
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
    const auto onScreen = [](const QWidget* widget) {
        return widget ? QRect(widget->mapToGlobal(QPoint()), widget->size()) : QRect();
    };
    const auto rowsOf = [&](const char* name) {
        const auto* list = viewer->window()->findChild<QAbstractScrollArea*>(QLatin1String(name));
        return onScreen(list ? list->viewport() : nullptr);
    };
    const QRect newGlobe = onScreen(viewer);
    const QRect newRows = rowsOf("BlockList");
    const QRect newZones = rowsOf("ZoneList");
    if (newGlobe != globe || newRows != blockRows || newZones != zoneRows) {
        globe = newGlobe;
        blockRows = newRows;
        zoneRows = newZones;
        const auto* showZones = viewer->window()->findChild<QWidget*>(QStringLiteral("ShowZones"));
        QJsonArray tools;
        if (const auto* bar = viewer->window()->findChild<QToolBar*>(QStringLiteral("ToolBar")))
            for (QAction* action : bar->actions())
                tools += RectValue(onScreen(bar->widgetForAction(action)));
        Write("window", {{"id", static_cast<double>(viewer->window()->winId())},
                         {"globe", RectValue(globe)},
                         {"blocks", RectValue(blockRows)},
                         {"zones", RectValue(zoneRows)},
                         {"showZones", RectValue(onScreen(showZones))},
                         {"tools", tools}});
    }
    const CAxAncillaryProcess* process = viewer->GetAncillaryProcess();
    const bool shown = process && process->NoFlyZoneMask();
    if (shown != zonesShown)
        Write("zones", {{"shown", shown}});
    zonesShown = shown;
    const bool complete = viewer->IsPictureComplete();
    if (complete && !pictureComplete)
        Write("picture", {});
    pictureComplete = complete;
}

void EventLog::View(const osgEarth::Viewpoint& view)
{
    const osg::Vec3d focus = view.focalPoint()->vec3d();
    Write("viewpoint", {{"longitude", focus.x()},
                        {"latitude", focus.y()},
                        {"altitude", focus.z()},
                        {"heading", view.getHeading()},
                        {"pitch", view.getPitch()},
                        {"range", view.getRange()}});
}

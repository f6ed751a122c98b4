#pragma once
#include <osgEarth/Viewpoint>

#include <QElapsedTimer>
#include <QFile>
#include <QJsonObject>
#include <QObject>
#include <QRect>
#include <QTimer>

class CAxEarthViewer;
class CameraRest;

/**
 * Writes for other programs what happens in the viewer: one JSON object a
 * line, each with "event" and "time" (seconds since the log was opened).
 *
 * - "signal": "from" (viewer or manipulator), "name" and "args"; every signal
 *   but the heading that the manipulator repeats with each event.
 * - "viewpoint": where the camera has come to rest: "longitude" and "latitude"
 *   in degrees, "altitude" in metres, "heading" and "pitch" in degrees,
 *   "range" in metres.
 * - "picture": nothing more is to be loaded for what the camera sees.
 * - "window": "id" of the native window, and where on the screen are "globe",
 *   the rows of the lists "blocks" and "zones", and the box "showZones": left,
 *   top, width, height in pixels; "tools" has the like for each button of the
 *   tool bar.
 * - "zones": the no-fly zones are "shown" on the map now, or not any more.
 * - "block": a block record is new or changed: "id", "name", "type" and the
 *   number of "vertices"; or it is gone: "id" and "deleted".
 *
 * GUI thread; owned by its parent.
 */
class EventLog : public QObject
{
    Q_OBJECT
public:
    explicit EventLog(QObject* parent = nullptr);

    /// Starts the file anew; "-" is standard output. On failure says why.
    bool Open(const QString& file, QString& error);
    bool IsOpen() const { return output.isOpen(); }

    /// Begins to follow a viewer that has its map and lives as long as the event loop runs.
    void Follow(CAxEarthViewer* viewer, const CameraRest& camera);
    void Signal(const char* from, const QString& name, const QJsonArray& arguments);

private:
    void Block(const QString& id);
    void Write(const char* event, QJsonObject fields);
    void Look();
    void View(const osgEarth::Viewpoint& view);

    QFile output;
    QElapsedTimer sinceOpened;
    QTimer clock;
    CAxEarthViewer* viewer = nullptr;
    bool pictureComplete = false;
    bool zonesShown = false;
    QRect globe;
    QRect blockRows;
    QRect zoneRows;
};

#pragma once
#include "host/aircraft/BatteryAlarm.h"

#include <AxTelemetry/AxTelemetrySource.h>

#include <QObject>
#include <QPointer>

#include <optional>
#include <vector>

class AxReplaySource;
class CAxEarthViewer;
class CAxUavNode;

/**
 * An aircraft of the panel and what is drawn of it. It is drawn as soon as there is a map, and leaves it when
 * this is destroyed. The source and the viewer may go away first. GUI thread.
 */
class AircraftOnMap : public QObject
{
    Q_OBJECT
public:
    AircraftOnMap(CAxEarthViewer* viewer, AxTelemetrySource* source);
    /// Of a recorded flight: its line follows the bar.
    AircraftOnMap(CAxEarthViewer* viewer, AxReplaySource* replay);
    ~AircraftOnMap() override;

    AxTelemetrySource* Source() const { return source; } ///< null once it is gone
    CAxUavNode* Node() const;                            ///< null while nothing is drawn
    /// The last that is known.
    const AxAircraftState& State() const;
    QString Name() const;
    /// Metres, by the finest heights of the map.
    std::optional<double> AboveGround() const;
    const std::vector<AxPhotoRecord>& Photos() const;

    /// Whether it has been heard, and is not now.
    bool IsSilent() const { return State().lastHeard > 0 && !State().isHeard; }
    BatteryAlarm& Battery() { return battery; }

    void SetTrailVisible(bool visible);
    void SetBlockType(int type);
    void ClearTrail();
    /// Draws what has changed with time alone; milliseconds since 1970, UTC.
    void Refresh(qint64 now);

private:
    void draw();
    void drawFlight(const AxReplaySource& replay);
    void take();

    QPointer<CAxEarthViewer> viewer;
    QPointer<AxTelemetrySource> source;
    QPointer<AxReplaySource> replay; ///< null for a live one
    QPointer<CAxUavNode> node;
    AxAircraftState state;
    std::vector<AxPhotoRecord> photos; ///< of a live one
    BatteryAlarm battery;
    int blockType = 0;
    bool isTrailVisible = true;
    bool isLost = false;
    bool wasDrawn = false;
};

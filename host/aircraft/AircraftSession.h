#pragma once
#include "host/aircraft/LinkSettings.h"
#include "host/aircraft/PanelRules.h"
#include "host/tasks/ShownPlan.h"

#include <AxTelemetry/record/AxFlightRecord.h>

#include <QObject>
#include <QPointer>
#include <QTimer>

#include <memory>
#include <vector>

class AircraftOnMap;
class AxFlightLoader;
class AxMavlinkAircraft;
class AxMavlinkStation;
class AxReplaySource;
class AxSimulatorLink;
class AxTelemetryLink;
class CAxEarthViewer;

/**
 * The one connection of the program to aircraft: a link and those that are heard on it, or a recorded flight.
 * A live flight and a replay are never on the map together, so that nobody takes one for the other. What a
 * closed link has left stays, grey, until an aircraft is heard on the next one, a recorded flight is open, or
 * Remove(). GUI thread.
 */
class AircraftSession : public QObject
{
    Q_OBJECT
public:
    /// The viewer may go away first; everything is closed then.
    explicit AircraftSession(CAxEarthViewer* viewer, QObject* parent = nullptr);
    /// Disconnects; the record ends whole.
    ~AircraftSession() override;

    /// False where nothing is connected, or something was already; Fault() says why. The route is what the
    /// simulator flies. The key is empty or has 32 bytes.
    bool Connect(const LinkSettings& settings, const QByteArray& key,
                 const std::shared_ptr<const ShownPlan>& route);
    void Disconnect();
    /// Takes off the map what a closed link has left there.
    void Remove();

    bool IsConnected() const;
    const QString& Fault() const { return fault; }
    /// What has gone wrong with a connection is no longer told, as another one is being set up.
    void ForgetFault();
    /// On an open or waiting link; names for people.
    QStringList InTheAir() const;
    /// Adds what is known here to the facts.
    void AddTo(AircraftFacts& facts) const;

    /// On the link, or the flights of the file, and which of them is in focus; -1 for none.
    QStringList Names() const;
    int FocusIndex() const;
    /// Whether that one of Names() is live, and no longer heard.
    bool IsSilent(int index) const;
    void SetFocus(int index);
    AircraftOnMap* Focus() const;                                 ///< null for none
    AxMavlinkAircraft* LiveAircraft() const;                      ///< in focus; null unless the link is open
    AxReplaySource* Replay() const { return replay.get(); }       ///< null unless a recorded flight is open
    std::shared_ptr<const AxFlightRecord> ReplayedFlight() const; ///< its record
    /// What "now" is for the states of the aircraft; milliseconds since 1970, UTC.
    qint64 Now() const;

    /// Full path of the file that is recorded into, or was; why it is not.
    QString RecordFile() const;
    QString RecordFault() const;

    /// Of the simulator, at once; times.
    void SetSimulatorSpeed(double times);
    bool IsSimulated() const { return !simulator.isNull(); }
    void SetTrailVisible(bool visible);
    void SetBlockType(int type);
    void ClearTrail();

signals:
    /// The link, the file or the list of aircraft is another one.
    void Changed();
    /// Another aircraft or flight is in focus, or none.
    void FocusChanged();
    /// An aircraft has said something, or the link has; MAV_SEVERITY. `isLive`: it happens now.
    void Said(const QString& who, int severity, const QString& text, bool isLive);

private:
    std::unique_ptr<AxTelemetryLink> makeLink(const LinkSettings& settings, const QByteArray& key,
                                              const ShownPlan* route);
    std::unique_ptr<AxTelemetryLink> makeSimulator(const LinkSettings& settings, const QByteArray& key,
                                                   const ShownPlan& route);
    bool openStation(std::unique_ptr<AxTelemetryLink> link, const LinkSettings& settings,
                     const QByteArray& key);
    void addAircraft(AxMavlinkAircraft* aircraft);
    void takeFlights(const AxFlightRead& read);
    void showFlight(int index);
    void put(std::unique_ptr<AircraftOnMap> one);
    void tellBattery(AircraftOnMap& one);
    void lookAtFlight();
    void refresh();
    void clear();
    void takeOff();

    QPointer<CAxEarthViewer> viewer;
    AxFlightLoader* loader;
    int loadingPercent = 0;
    AxMavlinkStation* station = nullptr; ///< also closed, while its aircraft are still shown
    /// Closed, and the one whose aircraft are shown while the new one has heard none; or null.
    AxMavlinkStation* before = nullptr;
    QPointer<AxSimulatorLink> simulator;
    std::vector<std::shared_ptr<const AxFlightRecord>> flights;
    std::unique_ptr<AxReplaySource> replay;
    int flight = -1;
    QString file;
    std::vector<std::unique_ptr<AircraftOnMap>> shown; ///< they leave the map before their sources
    QTimer clock;
    QString fault;
    bool isTrailVisible = true;
    bool isClosing = false;
    int blockType = 0;
};

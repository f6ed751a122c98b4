#include "host/aircraft/AircraftSession.h"
#include "host/aircraft/AircraftOnMap.h"
#include "host/aircraft/AircraftText.h"
#include "host/aircraft/MavSeverity.h"
#include "interaction/input/CAxEarthManipulator.h"
#include "mission/aircraft/CAxUavNode.h"
#include "viewer/CAxEarthViewer.h"

#include <AxAlgorthm/AxCoordinate.h>
#include <AxAlgorthm/AxGeoid.h>
#include <AxTelemetry/AxMavlinkStation.h>
#include <AxTelemetry/record/AxFlightLoader.h>
#include <AxTelemetry/record/AxReplaySource.h>
#include <AxTelemetry/simulator/AxSimulatorLink.h>

#include <QDateTime>
#include <QFileInfo>
#include <QScopedValueRollback>

#include <algorithm>
#include <cmath>
#include <utility>

namespace {
constexpr int refreshMs = 500;
} // namespace

AircraftSession::AircraftSession(CAxEarthViewer* earthViewer, QObject* parent)
    : QObject(parent), viewer(earthViewer), loader(new AxFlightLoader(this))
{
    connect(loader, &AxFlightLoader::signalProgress, this, [this](int percent) {
        loadingPercent = percent;
        emit Changed();
    });
    connect(loader, &AxFlightLoader::signalLoaded, this, &AircraftSession::takeFlights);
    connect(viewer, &CAxEarthViewer::signalAircraft, this, &AircraftSession::FocusChanged);
    connect(viewer, &QObject::destroyed, this, [this] {
        Disconnect();
        clear();
    });
    clock.setInterval(refreshMs);
    connect(&clock, &QTimer::timeout, this, &AircraftSession::refresh);
}

AircraftSession::~AircraftSession()
{
    const QSignalBlocker quiet(this);
    Disconnect();
    clear();
}

bool AircraftSession::Connect(const LinkSettings& settings, const QByteArray& key,
                              const std::shared_ptr<const ShownPlan>& route)
{
    if (IsConnected()) {
        fault = tr("Something is connected already: disconnect first.");
        return false;
    }
    fault.clear();
    if (settings.kind == LinkSettings::Kind::File) {
        if (settings.file.isEmpty()) {
            fault = tr("No file is chosen.");
            emit Changed();
            return false;
        }
        file = settings.file;
        loadingPercent = 0;
        loader->Load(settings.file, key);
        emit Changed();
        return true;
    }
    // What is shown stays until there is something in its place.
    if (before) {
        station->deleteLater();
        station = before;
    }
    before = std::exchange(station, nullptr);
    if (before)
        before->disconnect(this);
    simulator = nullptr;
    std::unique_ptr<AxTelemetryLink> link = makeLink(settings, key, route.get());
    const bool isOpen = link && openStation(std::move(link), settings, key);
    if (!isOpen) {
        if (station)
            station->deleteLater();
        station = std::exchange(before, nullptr);
        simulator = nullptr;
    }
    emit Changed();
    return isOpen;
}

bool AircraftSession::openStation(std::unique_ptr<AxTelemetryLink> link, const LinkSettings& settings,
                                  const QByteArray& key)
{
    station = new AxMavlinkStation(std::move(link), this);
    if (!station->SetKey(key)) {
        fault = tr("The key has not 32 bytes.");
        return false;
    }
    station->SetRecordFolder(settings.RecordFolder());
    connect(station, &AxMavlinkStation::signalAircraft, this, &AircraftSession::addAircraft);
    connect(station, &AxMavlinkStation::signalCounts, this, &AircraftSession::Changed);
    connect(station, &AxMavlinkStation::signalRecording, this, &AircraftSession::Changed);
    connect(station, &AxMavlinkStation::signalFault, this, [this](const QString& text) {
        // The link goes on where the record has ended.
        if (text != station->Recorder().Fault())
            fault = text;
        emit Said(QString(), MavSeverity::error, text, true);
        emit Changed();
    });
    connect(station, &AxMavlinkStation::signalPhase, this, [this] {
        if (station->Link().GetPhase() == AxTelemetryLink::Phase::Open)
            fault.clear();
        emit Changed();
    });
    QString why;
    if (!station->Open(&why)) {
        fault = why;
        return false;
    }
    clock.start();
    return true;
}

void AircraftSession::addAircraft(AxMavlinkAircraft* aircraft)
{
    if (before) {
        takeOff();
        std::exchange(before, nullptr)->deleteLater();
    }
    connect(aircraft, &AxTelemetrySource::signalMessage, this, [=](int severity, const QString& text) {
        emit Said(aircraft->State().name, severity, text, true);
    });
    connect(aircraft, &AxTelemetrySource::signalLinkLost, this, [=] {
        refresh();
        if (!isClosing)
            emit Said(aircraft->State().name, MavSeverity::alert, tr("The link is lost."), true);
    });
    connect(aircraft, &AxTelemetrySource::signalLinkBack, this,
            [=] { emit Said(aircraft->State().name, MavSeverity::notice, tr("The link is back."), true); });
    if (viewer)
        put(std::make_unique<AircraftOnMap>(viewer, aircraft));
    const QString noGeoid = AxGeoidFault();
    if (shown.size() == 1 && !noGeoid.isEmpty())
        emit Said(QString(), MavSeverity::notice, tr("Heights may be wrong by up to 110 m. %1").arg(noGeoid),
                  false);
    emit Changed();
    if (shown.size() == 1)
        emit FocusChanged();
}

void AircraftSession::put(std::unique_ptr<AircraftOnMap> one)
{
    one->SetTrailVisible(isTrailVisible);
    one->SetBlockType(blockType);
    shown.push_back(std::move(one));
}

void AircraftSession::takeFlights(const AxFlightRead& read)
{
    fault = read.fault;
    if (!read.flights.empty())
        clear();
    flights = read.flights;
    for (const QString& note : read.notes)
        emit Said(QString(), MavSeverity::notice, note, false);
    if (!flights.empty()) {
        showFlight(0);
        clock.start();
        lookAtFlight();
    } else if (fault.isEmpty()) {
        fault = tr("%1: no flight is in it.").arg(file);
    }
    emit Changed();
}

void AircraftSession::lookAtFlight()
{
    const std::vector<AxFlightSample>& samples = replay->Flight().Samples();
    if (!viewer || samples.empty())
        return;
    constexpr double leastRange = 500.0; // metres
    constexpr double pitch = -50.0;
    constexpr double seconds = 1.5;
    // Longitudes within half a turn of the first one.
    const double middle = samples.front().longitude;
    double west = 0.0, east = 0.0;
    double south = samples.front().latitude, north = south;
    for (const AxFlightSample& sample : samples) {
        const double aside = std::remainder(sample.longitude - middle, 360.0);
        west = std::min(west, aside);
        east = std::max(east, aside);
        south = std::min(south, sample.latitude);
        north = std::max(north, sample.latitude);
    }
    const double wide = DistanceBetweenTwoLatLng({middle + west, south, 0.0}, {middle + east, north, 0.0});
    const CAxVector3D place(middle + 0.5 * (west + east), 0.5 * (south + north), samples.front().altitude);
    viewer->getManipulator()->setViewpoint(
        osgEarth::Viewpoint("", place.x(), place.y(), viewer->GetHAE(place.x(), place.y(), place.z()), 0.0,
                            pitch, std::max(leastRange, 2.0 * wide)),
        seconds);
}

void AircraftSession::showFlight(int index)
{
    const std::optional<quint64> time = replay ? std::make_optional(replay->Time()) : std::nullopt;
    const double speed = replay ? replay->Speed() : 1.0;
    takeOff();
    flight = index;
    replay = std::make_unique<AxReplaySource>(flights[static_cast<std::size_t>(index)]);
    replay->SetSpeed(speed);
    connect(replay.get(), &AxTelemetrySource::signalMessage, this, [this](int severity, const QString& text) {
        emit Said(replay->State().name, severity, text, false);
    });
    if (viewer)
        put(std::make_unique<AircraftOnMap>(viewer, replay.get()));
    replay->SetTime(time.value_or(replay->Flight().Begin()));
    emit FocusChanged();
}

void AircraftSession::Disconnect()
{
    const QScopedValueRollback<bool> guard(isClosing, true);
    const bool wasConnected = IsConnected();
    loader->Cancel();
    if (station)
        station->Close();
    if (replay)
        clear();
    if (!wasConnected)
        return;
    fault.clear();
    emit Changed();
}

void AircraftSession::Remove()
{
    if (IsConnected())
        return;
    clear();
    emit Changed();
    emit FocusChanged();
}

void AircraftSession::clear()
{
    clock.stop();
    takeOff();
    replay.reset();
    flights.clear();
    flight = -1;
    simulator = nullptr;
    if (station)
        station->deleteLater();
    station = nullptr;
    if (before)
        before->deleteLater();
    before = nullptr;
}

void AircraftSession::ForgetFault()
{
    if (IsConnected() || fault.isEmpty())
        return;
    fault.clear();
    emit Changed();
}

QStringList AircraftSession::InTheAir() const
{
    QStringList names;
    if (!station || before || station->Link().GetPhase() == AxTelemetryLink::Phase::Closed)
        return names;
    for (const auto& one : shown)
        if (IsInTheAir(one->State()))
            names += one->Name();
    return names;
}

// Each tells of its end while it goes, and whoever listens looks at those that are left.
void AircraftSession::takeOff()
{
    auto gone = std::exchange(shown, {});
    gone.clear();
}

void AircraftSession::refresh()
{
    const qint64 now = Now();
    for (const auto& one : shown) {
        one->Refresh(now);
        tellBattery(*one);
    }
}

void AircraftSession::tellBattery(AircraftOnMap& one)
{
    const AxAircraftState& known = one.State();
    if (replay || !known.isHeard)
        return;
    const BatteryLevel level = one.Battery().Take(known);
    if (level == BatteryLevel::Low)
        emit Said(known.name, MavSeverity::warning,
                  tr("The battery is low: %1 %.").arg(*known.batteryPercent), true);
    else if (level == BatteryLevel::Critical)
        emit Said(known.name, MavSeverity::critical,
                  tr("The battery is nearly empty: %1 %. Land.").arg(*known.batteryPercent), true);
}

bool AircraftSession::IsConnected() const
{
    return loader->IsLoading() || replay ||
           (station && station->Link().GetPhase() != AxTelemetryLink::Phase::Closed);
}

void AircraftSession::AddTo(AircraftFacts& facts) const
{
    facts.fault = fault;
    facts.isReplay = replay != nullptr;
    facts.loadingPercent = loader->IsLoading() ? loadingPercent : -1;
    facts.aircraft = replay ? static_cast<int>(flights.size()) : static_cast<int>(shown.size());
    if (station) {
        const AxStationCounts counts = station->Counts();
        facts.linkName = station->Link().Name();
        facts.phase = station->Link().GetPhase();
        facts.hasHeardBytes = counts.bytes > 0;
        facts.refusedSignatures = counts.refusedSignatures;
        // The others are not of this link.
        if (before && facts.phase != AxTelemetryLink::Phase::Closed)
            facts.aircraft = 0;
        else
            facts.silent = static_cast<int>(
                std::count_if(shown.begin(), shown.end(), [](const auto& one) { return one->IsSilent(); }));
    } else {
        facts.linkName = QFileInfo(file).fileName();
    }
    if (const AircraftOnMap* focus = Focus()) {
        const AxAircraftState& state = focus->State();
        facts.hasPlace = focus->Node() && focus->Node()->HasPosition();
        facts.hasHome = state.home.has_value();
        facts.isHeard = state.isHeard;
        facts.heardAgo = state.HeardAgo(Now());
        facts.photos = static_cast<int>(focus->Photos().size());
        facts.isArmed = state.isArmed;
        facts.isInTheAir = IsInTheAir(state);
        const AxMavlinkAircraft* live = LiveAircraft();
        facts.canPause = live && live->CanPause() && !IsSimulated(); // the simulator does not know how
    }
}

QStringList AircraftSession::Names() const
{
    QStringList names;
    if (replay)
        for (const auto& one : flights)
            names += one->name.isEmpty() ? tr("Aircraft %1").arg(one->systemId) : one->name;
    else
        for (const auto& one : shown)
            names += one->Name();
    return names;
}

bool AircraftSession::IsSilent(int index) const
{
    return !replay && index >= 0 && index < static_cast<int>(shown.size()) &&
           shown[static_cast<std::size_t>(index)]->IsSilent();
}

int AircraftSession::FocusIndex() const
{
    if (replay)
        return flight;
    const CAxUavNode* focus = viewer ? viewer->GetUavNode() : nullptr;
    const auto found = std::find_if(shown.begin(), shown.end(),
                                    [focus](const auto& one) { return focus && one->Node() == focus; });
    if (found != shown.end())
        return static_cast<int>(found - shown.begin());
    return shown.empty() ? -1 : 0;
}

void AircraftSession::SetFocus(int index)
{
    if (index < 0 || index == FocusIndex() || !viewer)
        return;
    if (replay) {
        if (index < static_cast<int>(flights.size()))
            showFlight(index);
        return;
    }
    if (index < static_cast<int>(shown.size()) && shown[static_cast<std::size_t>(index)]->Node())
        viewer->SetFocusAircraft(shown[static_cast<std::size_t>(index)]->Node());
}

AircraftOnMap* AircraftSession::Focus() const
{
    if (shown.empty())
        return nullptr;
    const int index = replay ? 0 : FocusIndex();
    return shown[static_cast<std::size_t>(index)].get();
}

AxMavlinkAircraft* AircraftSession::LiveAircraft() const
{
    const bool isOpen = station && station->Link().GetPhase() == AxTelemetryLink::Phase::Open;
    return isOpen && !before && Focus() ? qobject_cast<AxMavlinkAircraft*>(Focus()->Source()) : nullptr;
}

std::shared_ptr<const AxFlightRecord> AircraftSession::ReplayedFlight() const
{
    return replay ? flights[static_cast<std::size_t>(flight)] : nullptr;
}

qint64 AircraftSession::Now() const
{
    if (replay)
        return static_cast<qint64>(replay->Time());
    return station ? station->Now() : QDateTime::currentMSecsSinceEpoch();
}

QString AircraftSession::RecordFile() const
{
    return station ? station->Recorder().File() : QString();
}

QString AircraftSession::RecordFault() const
{
    return station ? station->Recorder().Fault() : QString();
}

void AircraftSession::SetSimulatorSpeed(double times)
{
    if (simulator)
        simulator->SetSpeed(times);
}

void AircraftSession::SetTrailVisible(bool visible)
{
    isTrailVisible = visible;
    for (const auto& one : shown)
        one->SetTrailVisible(visible);
}

void AircraftSession::SetBlockType(int type)
{
    blockType = type;
    for (const auto& one : shown)
        one->SetBlockType(type);
}

void AircraftSession::ClearTrail()
{
    for (const auto& one : shown)
        one->ClearTrail();
}

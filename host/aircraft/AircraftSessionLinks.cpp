// What a session connects to: the links, and the simulated aircraft.
#include "host/aircraft/AircraftSession.h"
#include "host/aircraft/MavSeverity.h"
#include "host/aircraft/MissionDoubts.h"
#include "host/aircraft/MissionOfPlan.h"
#include "host/tasks/PlanWarnings.h"
#include "viewer/CAxEarthViewer.h"

#include <AxTelemetry/link/AxSerialLink.h>
#include <AxTelemetry/link/AxTcpLink.h>
#include <AxTelemetry/link/AxUdpLink.h>
#include <AxTelemetry/simulator/AxSimulatorLink.h>

#include <AxData/CAxControl.h>

namespace {
// What is only simulated may take off anywhere.
ShownPlan WithHome(ShownPlan route)
{
    if (route.request.home || route.plan.points.empty())
        return route;
    const AxPlanPoint& first = route.plan.points.front();
    const AxPlanGround ground = CAxControl::GetInstance()->GetGround();
    route.request.home = QPointF(first.longitude, first.latitude);
    route.request.homeAltitude =
        (ground ? ground(first.longitude, first.latitude) : std::nullopt).value_or(0.0);
    return route;
}
} // namespace

std::unique_ptr<AxTelemetryLink> AircraftSession::makeLink(const LinkSettings& settings,
                                                           const QByteArray& key, const ShownPlan* route)
{
    switch (settings.kind) {
    case LinkSettings::Kind::Udp:
        return std::make_unique<AxUdpLink>(static_cast<quint16>(settings.udpPort));
    case LinkSettings::Kind::Tcp:
        return std::make_unique<AxTcpLink>(settings.tcpHost.trimmed(),
                                           static_cast<quint16>(settings.tcpPort));
    case LinkSettings::Kind::Serial:
        if (!settings.serialPort.trimmed().isEmpty())
            return std::make_unique<AxSerialLink>(settings.serialPort.trimmed(), settings.baud);
        fault = tr("No serial port is chosen.");
        return nullptr;
    default:
        if (route && viewer)
            return makeSimulator(settings, key, *route);
        fault = tr("The simulator flies the route of a task: choose a task that has one.");
        return nullptr;
    }
}

std::unique_ptr<AxTelemetryLink> AircraftSession::makeSimulator(const LinkSettings& settings,
                                                                const QByteArray& key, const ShownPlan& route)
{
    const ShownPlan flown = WithHome(route);
    if (!route.request.home)
        emit Said(QString(), MavSeverity::notice,
                  tr("The block has no home: the simulator takes off below the first point of the route."),
                  true);
    const AxMissionRead made = MissionOfPlan(flown);
    fault = made.fault;
    if (!fault.isEmpty())
        return nullptr;
    const QString danger = PlanWarnings::Summary(flown.plan.warnings);
    if (!danger.isEmpty())
        emit Said(QString(), MavSeverity::warning, tr("Simulated all the same: %1").arg(danger), true);
    for (const QString& doubt : MissionDoubts::OfPlan(flown))
        emit Said(QString(), MavSeverity::warning, doubt, true);
    AxSimulatedAircraft aircraft = SimulatedAircraftOfPlan(*viewer, flown);
    aircraft.wind = {settings.windSpeed, settings.windFrom};
    auto link = std::make_unique<AxSimulatorLink>();
    AxSimulatedVehicle& vehicle = *link->Vehicle(link->Add(aircraft));
    link->SetSpeed(settings.speed);
    link->SetKey(key);
    fault = vehicle.SetMission(made.mission);
    if (fault.isEmpty())
        fault = vehicle.Arm();
    if (fault.isEmpty())
        fault = vehicle.Start();
    if (!fault.isEmpty())
        return nullptr;
    simulator = link.get();
    return link;
}

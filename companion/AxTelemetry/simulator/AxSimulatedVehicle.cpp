#include <AxTelemetry/simulator/AxSimulatedFlight.h>
#include <AxTelemetry/simulator/AxSimulatedVehicle.h>

#include <cmath>
#include <utility>

AxSimulatedVehicle::AxSimulatedVehicle(const AxSimulatedAircraft& aircraft)
    : m_flight(std::make_unique<Flight>(aircraft))
{
}

AxSimulatedVehicle::~AxSimulatedVehicle() = default;

QString AxSimulatedVehicle::SetMission(const AxMission& mission)
{
    return m_flight->SetMission(mission);
}

const AxMission& AxSimulatedVehicle::Mission() const
{
    return m_flight->mission.Mission();
}

bool AxSimulatedVehicle::SetCurrentItem(int item)
{
    return m_flight->SetCurrentItem(item);
}

QString AxSimulatedVehicle::Arm()
{
    return m_flight->Arm();
}

QString AxSimulatedVehicle::Disarm()
{
    return m_flight->Disarm();
}

QString AxSimulatedVehicle::Start()
{
    return m_flight->Start();
}

void AxSimulatedVehicle::ReturnHome()
{
    m_flight->ReturnHome();
}

void AxSimulatedVehicle::LandHere()
{
    m_flight->LandAt(m_flight->state.place);
}

void AxSimulatedVehicle::SetWind(const AxSimulatedWind& wind)
{
    if (wind.speed >= 0.0 && wind.speed <= 200.0 && std::isfinite(wind.from))
        m_flight->aircraft.wind = wind;
}

void AxSimulatedVehicle::Step(double seconds)
{
    m_flight->Step(seconds);
}

const AxSimulatedState& AxSimulatedVehicle::State() const
{
    return m_flight->state;
}

const AxSimulatedAircraft& AxSimulatedVehicle::Aircraft() const
{
    return m_flight->aircraft;
}

std::optional<AxPlace> AxSimulatedVehicle::Home() const
{
    return m_flight->home;
}

std::vector<AxSimulatedEvent> AxSimulatedVehicle::TakeEvents()
{
    return std::exchange(m_flight->events, {});
}

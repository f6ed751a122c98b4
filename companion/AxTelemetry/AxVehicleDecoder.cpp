#include <AxTelemetry/AxVehicleDecoder.h>

#include "AxSampleClock.h"
#include "AxStatusTexts.h"
#include "AxVehicleCamera.h"
#include "AxVehicleKinds.h"
#include "AxVehicleModes.h"
#include "AxVehiclePlaces.h"
#include "AxVehicleText.h"

#include <AxAlgorthm/AxGeoid.h>
#include <AxTelemetry/mavlink/AxMavMessages.h>

#include <QtMath>

#include <algorithm>
#include <cmath>
#include <map>

namespace {
constexpr int firstAutopilot = 1; // MAV_COMP_ID_AUTOPILOT1
constexpr quint16 notTold = 65535;
constexpr int flatFix = 2;              // the first GPS_FIX_TYPE with a place
constexpr int isArmedBit = 128;         // of a heartbeat's base mode
constexpr qint64 sourceSilentMs = 3000; // then the second best source of the same values counts
constexpr double fastestMetresPerSecond = 1000.0;

struct EulerAngles
{
    double roll;
    double pitch;
    double yaw;
};

std::optional<EulerAngles> AnglesOf(double w, double x, double y, double z)
{
    const double norm = std::sqrt(w * w + x * x + y * y + z * z);
    if (!(norm > 0.9 && norm < 1.1))
        return {};
    const double n = 1.0 / norm;
    w *= n, x *= n, y *= n, z *= n;
    return EulerAngles{std::atan2(2.0 * (w * x + y * z), 1.0 - 2.0 * (x * x + y * y)),
                       std::asin(qBound(-1.0, 2.0 * (w * y - z * x), 1.0)),
                       std::atan2(2.0 * (w * z + x * y), 1.0 - 2.0 * (y * y + z * z))};
}

bool IsSpeed(double metresPerSecond)
{
    return std::fabs(metresPerSecond) <= fastestMetresPerSecond; // false for what is no number, too
}

AxVehicleEvents& Nobody()
{
    static AxVehicleEvents nobody;
    return nobody;
}
} // namespace

struct AxVehicleDecoder::Memory
{
    Memory(AxAircraftState& ofState, AxVehicleEvents& toEvents)
        : state(ofState), events(toEvents),
          texts([this](int severity, const QString& text) { events.Message(severity, text); })
    {
    }

    AxAircraftState& state;
    AxVehicleEvents& events;
    AxStatusTexts texts;
    AxVehicleCamera camera;
    AxSampleClock clock;
    AxSampleClock::Order places, attitudes, receiverPlaces;
    qint64 placeTime = 0;                // of the latest place that was told
    qint64 attitudeTime = 0;             // of the latest attitude
    std::optional<qint64> positionHeard; // the latest GLOBAL_POSITION_INT; none while the receiver stands in
    qint64 anglesHeard = 0;              // the latest ATTITUDE
    bool tellsHeading = false;
    bool tellsLanding = false;
    bool tellsSpeed = false;
    int component = 0;
    std::map<int, int> batteryPercents; // by battery

    bool Take(const AxMavFrame& frame, qint64 time);
    void Refuse() { ++state.refused; }

    void TakeHeartbeat(const AxMavHeartbeat& beat, int ofComponent);
    void TakePosition(const AxMavGlobalPositionInt& position, qint64 heard);
    void TakeGps(const AxMavGpsRawInt& gps, qint64 heard);
    void TakeAngles(const std::optional<EulerAngles>& angles, quint32 boot, qint64 heard);
    void TakeHud(const AxMavVfrHud& hud);
    void TakePower(const AxMavSysStatus& status);
    void TakeBattery(const AxMavBatteryStatus& battery);
    void TakeHome(const AxMavHomePosition& home);
    void TakeMission(const AxMavMissionCurrent& mission);
    void TakeWind(double north, double east);
    void StandIn();
    void Place(const AxPlace& aboveSea, const AxPlace& place, qint64 time, qint64 heard);
    void Percent(int battery, int percent);
};

AxVehicleDecoder::AxVehicleDecoder(int systemId, AxVehicleEvents* events)
    : m_events(events ? events : &Nobody()), m_memory(std::make_unique<Memory>(m_state, *m_events))
{
    m_state.systemId = systemId;
    m_state.name = AxVehicleText(QT_TRANSLATE_NOOP("AxVehicle", "Aircraft %1")).arg(systemId);
}

AxVehicleDecoder::~AxVehicleDecoder() = default;

int AxVehicleDecoder::ComponentId() const
{
    return m_memory->component;
}

void AxVehicleDecoder::Flush(qint64 time)
{
    m_memory->texts.Flush(time);
}

void AxVehicleDecoder::Feed(const AxMavFrame& frame, qint64 time)
{
    if (frame.systemId != m_state.systemId)
        return;
    Memory& memory = *m_memory;
    if (time < m_state.lastHeard) { // a record whose times jump
        memory.clock.Reset();
        memory.placeTime = memory.attitudeTime = memory.anglesHeard = 0;
        memory.positionHeard.reset();
        m_state.placeHeard = std::min(m_state.placeHeard, time);
        m_state.attitudeHeard = std::min(m_state.attitudeHeard, time);
    }
    AxMavHeartbeat beat;
    const bool isBeat = AxMavDecode(frame, beat);
    if (isBeat && AxIsVehicleHeartbeat(frame))
        memory.TakeHeartbeat(beat, frame.componentId);
    // Another component may go on when the autopilot has died, and may have a place of its own.
    const bool isOfAutopilot = memory.component == 0 || memory.component == frame.componentId;
    if (isOfAutopilot) {
        m_state.lastHeard = time;
        m_state.isHeard = true;
    }
    ++m_state.framesHeard;
    m_state.framesLost += frame.lostBefore;
    memory.texts.Flush(time);
    memory.camera.ForgetYaw(time, m_state);
    AxMavStatustext text;
    if (AxMavDecode(frame, text))
        return memory.texts.Take(frame.componentId, text, time);
    if (memory.camera.Take(frame, time, m_state, memory.events))
        return;
    if (isOfAutopilot && !isBeat)
        memory.Take(frame, time);
}

void AxVehicleDecoder::CountUnknown(const AxMavFrame& frame)
{
    m_state.framesHeard += frame.systemId == m_state.systemId ? 1 : 0;
}

bool AxVehicleDecoder::Memory::Take(const AxMavFrame& frame, qint64 time)
{
    // Decodes, and hands over what was decoded.
    const auto taken = [&](auto message, auto&& take) {
        AxMavDecode(frame, message);
        take(message);
        return true;
    };
    switch (frame.messageId) {
    case AxMavGlobalPositionInt::id:
        return taken(AxMavGlobalPositionInt(), [&](const auto& position) { TakePosition(position, time); });
    case AxMavGpsRawInt::id:
        return taken(AxMavGpsRawInt(), [&](const auto& gps) { TakeGps(gps, time); });
    case AxMavAttitude::id:
        return taken(AxMavAttitude(), [&](const auto& attitude) {
            anglesHeard = time;
            const bool isFinite =
                std::isfinite(attitude.roll) && std::isfinite(attitude.pitch) && std::isfinite(attitude.yaw);
            TakeAngles(isFinite ? std::optional<EulerAngles>({attitude.roll, attitude.pitch, attitude.yaw})
                                : std::nullopt,
                       attitude.time_boot_ms, time);
        });
    case AxMavAttitudeQuaternion::id:
        return taken(AxMavAttitudeQuaternion(), [&](const auto& attitude) {
            if (time - anglesHeard >= sourceSilentMs)
                TakeAngles(AnglesOf(attitude.q1, attitude.q2, attitude.q3, attitude.q4),
                           attitude.time_boot_ms, time);
        });
    case AxMavVfrHud::id:
        return taken(AxMavVfrHud(), [&](const auto& hud) { TakeHud(hud); });
    case AxMavSysStatus::id:
        return taken(AxMavSysStatus(), [&](const auto& status) { TakePower(status); });
    case AxMavBatteryStatus::id:
        return taken(AxMavBatteryStatus(), [&](const auto& battery) { TakeBattery(battery); });
    case AxMavHomePosition::id:
        return taken(AxMavHomePosition(), [&](const auto& home) { TakeHome(home); });
    case AxMavMissionCurrent::id:
        return taken(AxMavMissionCurrent(), [&](const auto& mission) { TakeMission(mission); });
    case AxMavWind::id:
        return taken(AxMavWind(), [&](const auto& wind) {
            const double towards = qDegreesToRadians(static_cast<double>(wind.direction)) + M_PI;
            TakeWind(wind.speed * std::cos(towards), wind.speed * std::sin(towards));
        });
    case AxMavWindCov::id:
        return taken(AxMavWindCov(), [&](const auto& wind) { TakeWind(wind.wind_x, wind.wind_y); });
    case AxMavExtendedSysState::id:
        return taken(AxMavExtendedSysState(), [&](const auto& extended) {
            tellsLanding = extended.landed_state >= 1 && extended.landed_state <= 4;
            if (tellsLanding)
                state.isLanded = extended.landed_state == 1;
        });
    default:
        return false;
    }
}

void AxVehicleDecoder::Memory::TakeHeartbeat(const AxMavHeartbeat& beat, int ofComponent)
{
    if (component != 0 && component != ofComponent && ofComponent != firstAutopilot)
        return;
    component = ofComponent;
    state.planeType = AxPlaneTypeOf(beat.type);
    state.autopilot = beat.autopilot;
    state.mode = AxModeName(beat.autopilot, beat.type, beat.base_mode, beat.custom_mode);
    state.isArmed = (beat.base_mode & isArmedBit) != 0;
    constexpr int standsBy = 3; // MAV_STATE
    constexpr int isActive = 4;
    if (tellsLanding)
        return;
    if (beat.system_status == standsBy)
        state.isLanded = true;
    else if (beat.system_status == isActive && beat.autopilot == axMavArduPilot)
        state.isLanded = false; // elsewhere it may be armed and on the ground
    else
        state.isLanded.reset();
}

void AxVehicleDecoder::Memory::TakePosition(const AxMavGlobalPositionInt& position, qint64 heard)
{
    const auto aboveSea = AxPlaceAboveSea(position.lat, position.lon, position.alt);
    // With a fix, too: some autopilots send 0/0 until their estimate of the place has begun.
    if (!aboveSea || AxIsNowhere(position.lat, position.lon))
        return Refuse();
    const auto time = clock.TimeOf(position.time_boot_ms, heard, places);
    if (!time)
        return Refuse();
    positionHeard = heard;
    state.heightAboveHome = position.relative_alt * 1e-3;
    state.groundSpeed = std::hypot(position.vx, position.vy) * 0.01;
    state.climbRate = position.vz * -0.01;
    tellsSpeed = true;
    tellsHeading = position.hdg != notTold;
    if (tellsHeading)
        state.heading = AxCompassDegrees(position.hdg * 0.01);
    Place(*aboveSea, AxAboveEllipsoid(*aboveSea), *time, heard);
}

void AxVehicleDecoder::Memory::TakeGps(const AxMavGpsRawInt& gps, qint64 heard)
{
    state.fixType = gps.fix_type;
    state.satellites.reset();
    if (gps.satellites_visible != 255)
        state.satellites = gps.satellites_visible;
    if ((positionHeard && heard - *positionHeard < sourceSilentMs) || gps.fix_type < flatFix)
        return;
    const auto aboveSea = AxPlaceAboveSea(gps.lat, gps.lon, gps.alt);
    const auto since = static_cast<quint32>(gps.time_usec / 1000);
    // A clock of its own: only the order counts here.
    AxSampleClock order;
    if (!aboveSea || AxIsNowhere(gps.lat, gps.lon) || !order.TimeOf(since, heard, receiverPlaces))
        return Refuse();
    AxPlace place = AxAboveEllipsoid(*aboveSea);
    // Without the geoid nothing could take it off again: all heights are those above the sea then.
    if (gps.alt_ellipsoid != 0 && AxGeoidFault().isEmpty())
        place.altitude = gps.alt_ellipsoid * 1e-3;
    if (positionHeard)
        StandIn();
    if (gps.vel != notTold)
        state.groundSpeed = gps.vel * 0.01;
    Place(*aboveSea, place, heard, heard);
}

// The receiver does not tell what GLOBAL_POSITION_INT told last: other messages may, or nothing does.
void AxVehicleDecoder::Memory::StandIn()
{
    positionHeard.reset();
    state.heightAboveHome.reset();
    state.groundSpeed.reset();
    state.climbRate.reset();
    state.heading.reset();
    tellsSpeed = tellsHeading = false;
}

void AxVehicleDecoder::Memory::Place(const AxPlace& aboveSea, const AxPlace& place, qint64 time, qint64 heard)
{
    placeTime = std::max(placeTime, time);
    state.placeHeard = heard;
    state.longitude = place.longitude;
    state.latitude = place.latitude;
    state.altitude = place.altitude;
    state.altitudeAboveSea = aboveSea.altitude;
    const QString fault = AxGeoidFault();
    state.geoidNote =
        fault.isEmpty() ? QString()
                        : AxVehicleText(QT_TRANSLATE_NOOP("AxVehicle",
                                                          "Altitudes above the sea stand for those above the "
                                                          "ellipsoid: %1"))
                              .arg(fault);
    events.Position(place, static_cast<quint64>(placeTime));
}

void AxVehicleDecoder::Memory::TakeAngles(const std::optional<EulerAngles>& angles, quint32 boot,
                                          qint64 heard)
{
    if (!angles)
        return Refuse();
    const auto time = clock.TimeOf(boot, heard, attitudes);
    if (!time)
        return Refuse();
    attitudeTime = std::max(attitudeTime, *time);
    const double yaw = std::remainder(angles->yaw, 2.0 * M_PI);
    state.attitudeHeard = heard;
    state.roll = angles->roll;
    state.pitch = angles->pitch;
    state.yaw = yaw;
    if (!tellsHeading)
        state.heading = AxCompassDegrees(qRadiansToDegrees(yaw));
    events.Attitude(angles->roll, angles->pitch, yaw, static_cast<quint64>(attitudeTime));
}

void AxVehicleDecoder::Memory::TakeHud(const AxMavVfrHud& hud)
{
    // Without a sensor for it the air speed is no number, and the others count.
    state.airSpeed.reset();
    if (IsSpeed(hud.airspeed))
        state.airSpeed = static_cast<double>(hud.airspeed);
    const auto take = [this](double told, std::optional<double>& known) {
        if (!IsSpeed(told))
            Refuse();
        else if (!tellsSpeed)
            known = told;
    };
    take(hud.groundspeed, state.groundSpeed);
    take(hud.climb, state.climbRate);
}

void AxVehicleDecoder::Memory::TakePower(const AxMavSysStatus& status)
{
    if (status.voltage_battery != notTold && status.voltage_battery != 0)
        state.batteryVolts = status.voltage_battery * 1e-3;
    if (status.current_battery >= 0)
        state.batteryAmperes = status.current_battery * 0.01;
    Percent(0, status.battery_remaining);
}

void AxVehicleDecoder::Memory::TakeBattery(const AxMavBatteryStatus& battery)
{
    Percent(battery.id_, battery.battery_remaining);
    if (battery.id_ != 0)
        return;
    double millivolts = 0.0;
    for (quint16 cell : battery.voltages)
        millivolts += cell != notTold ? cell : 0;
    for (quint16 cell : battery.voltages_ext)
        millivolts += cell != notTold ? cell : 0;
    if (millivolts > 0.0)
        state.batteryVolts = millivolts * 1e-3;
    if (battery.current_battery >= 0)
        state.batteryAmperes = battery.current_battery * 0.01;
}

void AxVehicleDecoder::Memory::Percent(int battery, int percent)
{
    if (percent < 0 || percent > 100)
        return;
    batteryPercents[battery] = percent;
    state.batteryPercent =
        std::min_element(batteryPercents.begin(), batteryPercents.end(), [](const auto& a, const auto& b) {
            return a.second < b.second;
        })->second;
}

void AxVehicleDecoder::Memory::TakeHome(const AxMavHomePosition& home)
{
    const auto aboveSea = AxPlaceAboveSea(home.latitude, home.longitude, home.altitude);
    if (!aboveSea || AxIsNowhere(home.latitude, home.longitude))
        return Refuse();
    state.home = AxAboveEllipsoid(*aboveSea);
}

void AxVehicleDecoder::Memory::TakeMission(const AxMavMissionCurrent& mission)
{
    state.missionCurrent = mission.seq - (state.autopilot == axMavArduPilot ? 1 : 0);
    if (mission.total != 0)
        state.missionCount = mission.total == notTold ? 0 : mission.total;
}

void AxVehicleDecoder::Memory::TakeWind(double north, double east)
{
    const double speed = std::hypot(north, east);
    if (!IsSpeed(speed))
        return Refuse();
    state.windSpeed = speed;
    state.windFrom = AxCompassDegrees(qRadiansToDegrees(std::atan2(-east, -north)));
}

bool AxIsVehicleHeartbeat(const AxMavFrame& frame)
{
    AxMavHeartbeat beat;
    return AxMavDecode(frame, beat) && beat.autopilot != axMavNoAutopilot &&
           AxFlightOf(beat.type) != AxVehicleFlight::None;
}

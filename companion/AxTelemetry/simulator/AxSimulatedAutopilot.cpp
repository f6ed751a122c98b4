#include <AxTelemetry/simulator/AxSimulatedAutopilot.h>
#include <AxTelemetry/simulator/AxSimulatedBody.h>

#include <AxAlgorthm/AxConstants.h>
#include <AxAlgorthm/AxGeoid.h>
#include <AxAlgorthm/AxMath.h>

#include <algorithm>
#include <cmath>
#include <limits>
#include <utility>

namespace {
using Phase = AxSimulatedState::Phase;

constexpr quint8 autopilotComponent = 1;
constexpr int arduPilot = 3;

quint8 KindOf(EPlaneType type)
{
    switch (type) {
    case PlaneFixedWing:
        return 1;
    case PlaneTailSitter:
        return 19;
    case PlaneQuadPlane:
        return 22;
    case PlaneHexacopter:
        return 13;
    case PlaneOctocopter:
        return 14;
    default:
        return 2;
    }
}

qint32 TenMillionths(double degrees)
{
    return static_cast<qint32>(std::lround(degrees * 1e7));
}

qint32 Millimetres(double metres)
{
    return static_cast<qint32>(std::lround(std::clamp(metres, -2e6, 2e6) * 1e3));
}

qint16 Centimetres(double metres)
{
    return static_cast<qint16>(std::lround(std::clamp(metres, -320.0, 320.0) * 100.0));
}

double AboveSea(const AxPlace& place)
{
    return place.altitude - AxGeoidHeight(place.latitude, place.longitude).value_or(0.0);
}

quint16 CompassCentidegrees(double yaw)
{
    return static_cast<quint16>(std::lround(Radian2Angle(yaw) * 100.0) % 36000);
}

std::array<float, 4> QuaternionOf(double roll, double pitch, double yaw)
{
    const double cr = std::cos(0.5 * roll), sr = std::sin(0.5 * roll);
    const double cp = std::cos(0.5 * pitch), sp = std::sin(0.5 * pitch);
    const double cy = std::cos(0.5 * yaw), sy = std::sin(0.5 * yaw);
    return {float(cr * cp * cy + sr * sp * sy), float(sr * cp * cy - cr * sp * sy),
            float(cr * sp * cy + sr * cp * sy), float(cr * cp * sy - sr * sp * cy)};
}
} // namespace

AxSimulatedAutopilot::AxSimulatedAutopilot(const AxSimulatedAircraft& aircraft, int systemId, int autopilot)
    : m_vehicle(aircraft), m_systemId(systemId), m_autopilot(autopilot),
      m_writer(quint8(systemId), autopilotComponent),
      m_exchange(
          m_vehicle, autopilot == arduPilot,
          {[this](const auto& message) { send(message); }, [this](const auto& message) { send(message); },
           [this](const auto& message) { send(message); }, [this](const auto& message) { send(message); },
           [this](const auto& message) { send(message); },
           [this](const QString& fault) { tellText(3, fault); }})
{
}

void AxSimulatedAutopilot::SetRates(double positions, double attitudes)
{
    m_places.interval = 1.0 / std::clamp(positions, 0.1, 50.0);
    m_attitudes.interval = 1.0 / std::clamp(attitudes, 0.1, 50.0);
    m_hasOwnRates = true;
}

QList<QByteArray> AxSimulatedAutopilot::TakeFrames()
{
    return std::exchange(m_frames, {});
}

bool AxSimulatedAutopilot::isDue(Stream& stream, double speed)
{
    const double now = m_vehicle.State().seconds;
    if (now < stream.due - 1e-6)
        return false;
    const double interval = std::max(stream.interval, stream.least * speed);
    stream.due = std::max(stream.due + interval, now + 0.5 * interval);
    return true;
}

quint32 AxSimulatedAutopilot::bootTime(double seconds) const
{
    return static_cast<quint32>(static_cast<quint64>(std::llround(seconds * 1e3)) + 1000); // 0 is "none"
}

void AxSimulatedAutopilot::Step(double seconds, const Moment& moment)
{
    const AxSimulatedState before = m_vehicle.State();
    m_vehicle.Step(seconds);
    const AxSimulatedState& state = m_vehicle.State();
    if (state.seconds > before.seconds) {
        const double passed = state.seconds - before.seconds;
        m_rollSpeed = float((state.roll - before.roll) / passed);
        m_pitchSpeed = float((state.pitch - before.pitch) / passed);
        m_yawSpeed = float(std::remainder(state.yaw - before.yaw, 2.0 * PI) / passed);
    }
    if (m_beat < 0.0 || moment.now - m_beat >= 1.0 || m_toldArmed != state.isArmed) {
        m_beat = moment.now;
        tellHeartbeat();
    }
    if (isDue(m_slow, moment.speed))
        tellSystem(moment);
    if (isDue(m_places, moment.speed))
        tellPlace();
    if (isDue(m_attitudes, moment.speed))
        tellAttitude();
    const int items = int(m_vehicle.Mission().items.size());
    if (m_toldItem != state.currentItem || m_toldItems != items)
        tellMission();
    for (const AxSimulatedEvent& event : m_vehicle.TakeEvents()) {
        if (event.kind == AxSimulatedEvent::Kind::Photo) {
            tellPhoto(event, moment);
        } else if (event.kind == AxSimulatedEvent::Kind::Text) {
            tellText(event.severity, event.text);
        } else {
            AxMavMissionItemReached reached;
            reached.seq = quint16(m_exchange.SequenceOf(event.number));
            send(reached);
        }
    }
    m_exchange.Tick(moment.now);
}

void AxSimulatedAutopilot::tellHeartbeat()
{
    const AxSimulatedState& state = m_vehicle.State();
    AxMavHeartbeat beat;
    beat.type = KindOf(m_vehicle.Aircraft().type);
    beat.autopilot = quint8(m_autopilot);
    beat.base_mode = quint8(1 | (state.IsFlying() ? 4 | 8 | 16 : 64) | (state.isArmed ? 128 : 0));
    beat.custom_mode = customMode();
    beat.system_status = state.isArmed ? 4 : 3;
    beat.mavlink_version = 3;
    m_toldArmed = state.isArmed;
    send(beat);
}

quint32 AxSimulatedAutopilot::customMode() const
{
    const AxSimulatedState& state = m_vehicle.State();
    const bool isReturning = state.phase == Phase::Return || state.phase == Phase::Landing;
    const bool isOnGround = state.phase == Phase::Ground || state.phase == Phase::RollOut;
    if (m_autopilot != arduPilot) {
        const auto automatic = [](quint32 mode) { return (4U << 16) | (mode << 24); };
        if (isOnGround)
            return 3U << 16;
        if (state.phase == Phase::TakeOff)
            return automatic(2);
        return automatic(isReturning ? (state.phase == Phase::Landing ? 6 : 5) : 4);
    }
    if (m_vehicle.Aircraft().HasWings())
        return isOnGround ? 0 : isReturning ? 11 : 10;
    return isOnGround ? 0 : isReturning ? 6 : 3;
}

void AxSimulatedAutopilot::tellPlace()
{
    if (!m_vehicle.Home())
        return;
    const AxSimulatedState& state = m_vehicle.State();
    AxMavGlobalPositionInt place;
    place.time_boot_ms = bootTime(state.seconds);
    place.lat = TenMillionths(state.place.latitude);
    place.lon = TenMillionths(state.place.longitude);
    place.alt = Millimetres(AboveSea(state.place));
    place.relative_alt = Millimetres(state.heightAboveHome);
    place.vx = Centimetres(state.velocityNorth);
    place.vy = Centimetres(state.velocityEast);
    place.vz = Centimetres(-state.velocityUp);
    place.hdg = CompassCentidegrees(state.yaw);
    send(place);
    AxMavVfrHud hud;
    hud.airspeed = float(state.airSpeed);
    hud.groundspeed = float(std::hypot(state.velocityNorth, state.velocityEast));
    hud.heading = qint16(place.hdg / 100);
    hud.throttle = state.IsFlying() ? 50 : 0;
    hud.alt = float(AboveSea(state.place));
    hud.climb = float(state.velocityUp);
    send(hud);
}

void AxSimulatedAutopilot::tellAttitude()
{
    const AxSimulatedState& state = m_vehicle.State();
    AxMavAttitude attitude;
    attitude.time_boot_ms = bootTime(state.seconds);
    attitude.roll = float(state.roll);
    attitude.pitch = float(state.pitch);
    attitude.yaw = float(state.yaw);
    attitude.rollspeed = m_rollSpeed;
    attitude.pitchspeed = m_pitchSpeed;
    attitude.yawspeed = m_yawSpeed;
    send(attitude);
}

void AxSimulatedAutopilot::tellSystem(const Moment& moment)
{
    const AxSimulatedState& state = m_vehicle.State();
    const auto boot = bootTime(state.seconds);
    AxMavSystemTime time;
    time.time_unix_usec = moment.utc;
    time.time_boot_ms = boot;
    send(time);

    const bool hasPlace = m_vehicle.Home().has_value();
    AxMavGpsRawInt gps;
    gps.time_usec = quint64(boot) * 1000;
    gps.fix_type = hasPlace ? 3 : 1;
    gps.satellites_visible = hasPlace ? 14 : 3;
    gps.eph = gps.epv = hasPlace ? 80 : 65535;
    gps.vel = gps.cog = 65535;
    if (hasPlace) {
        gps.lat = TenMillionths(state.place.latitude);
        gps.lon = TenMillionths(state.place.longitude);
        gps.alt = Millimetres(AboveSea(state.place));
        gps.alt_ellipsoid = Millimetres(state.place.altitude);
        gps.vel = quint16(
            std::lround(std::min(std::hypot(state.velocityNorth, state.velocityEast), 600.0) * 100.0));
        gps.cog = CompassCentidegrees(std::atan2(state.velocityEast, state.velocityNorth));
    }
    send(gps);

    AxMavSysStatus status;
    status.load = 200;
    status.voltage_battery = quint16(std::lround(state.batteryVolts * 1e3));
    status.current_battery = qint16(std::lround(state.batteryAmperes * 100.0));
    status.battery_remaining = qint8(std::floor(state.batteryPercent));
    send(status);
    AxMavBatteryStatus battery;
    battery.temperature = std::numeric_limits<qint16>::max();
    battery.voltages.fill(65535);
    std::fill_n(battery.voltages.begin(), 6, quint16(std::lround(state.batteryVolts * 1e3 / 6.0)));
    battery.current_battery = status.current_battery;
    battery.current_consumed = battery.energy_consumed = -1;
    battery.battery_remaining = status.battery_remaining;
    send(battery);

    AxMavExtendedSysState extended;
    extended.landed_state = state.phase == Phase::Ground || state.phase == Phase::RollOut ? 1
                            : state.phase == Phase::TakeOff                               ? 3
                            : state.phase == Phase::Landing                               ? 4
                                                                                          : 2;
    send(extended);
    if (hasPlace)
        tellHome();
    tellMission();

    AxMavMountOrientation mount;
    mount.time_boot_ms = boot;
    mount.pitch = float(state.cameraPitch);
    mount.yaw_absolute = float(Radian2Angle(state.yaw));
    send(mount);
    const AxGroundOffset wind = AxMotionOf(m_vehicle.Aircraft().wind);
    AxMavWindCov motion;
    motion.time_usec = quint64(boot) * 1000;
    motion.wind_x = float(wind.north);
    motion.wind_y = float(wind.east);
    send(motion);
}

void AxSimulatedAutopilot::tellHome()
{
    const std::optional<AxPlace> place = m_vehicle.Home();
    AxMavHomePosition home;
    home.latitude = TenMillionths(place->latitude);
    home.longitude = TenMillionths(place->longitude);
    home.altitude = Millimetres(AboveSea(*place));
    home.q = {1.0F, 0.0F, 0.0F, 0.0F};
    home.time_usec = quint64(bootTime(m_vehicle.State().seconds)) * 1000;
    send(home);
}

void AxSimulatedAutopilot::tellMission()
{
    m_toldItem = m_vehicle.State().currentItem;
    m_toldItems = int(m_vehicle.Mission().items.size());
    AxMavMissionCurrent current;
    current.seq = quint16(std::max(m_exchange.SequenceOf(m_toldItem), 0));
    current.total = m_toldItems > 0 ? quint16(m_toldItems) : quint16(65535);
    send(current);
}

void AxSimulatedAutopilot::tellVersion()
{
    AxMavAutopilotVersion version;
    version.capabilities = 1 | 4 | 8192; // missions with float and with integer places, version 2 frames
    version.uid = quint64(m_systemId);
    send(version);
}

void AxSimulatedAutopilot::tellPhoto(const AxSimulatedEvent& photo, const Moment& moment)
{
    // The image first: it says where it was taken, and a trigger behind it means the same photo.
    const double before = (m_vehicle.State().seconds - photo.seconds) / std::max(moment.speed, 1e-3);
    const quint64 utc = moment.utc - std::min(moment.utc, quint64(std::llround(std::max(before, 0.0) * 1e6)));
    AxMavCameraImageCaptured image;
    image.time_boot_ms = bootTime(photo.seconds);
    image.time_utc = utc;
    image.lat = TenMillionths(photo.place.latitude);
    image.lon = TenMillionths(photo.place.longitude);
    image.alt = Millimetres(AboveSea(photo.place));
    image.relative_alt = Millimetres(photo.place.altitude - m_vehicle.Home()->altitude);
    image.q = QuaternionOf(photo.roll, photo.pitch, photo.yaw);
    image.image_index = photo.number;
    image.capture_result = 1;
    send(image);
    AxMavCameraTrigger trigger;
    trigger.time_usec = utc;
    trigger.seq = quint32(photo.number);
    send(trigger);
}

void AxSimulatedAutopilot::tellText(int severity, const QString& text)
{
    const QByteArray bytes = text.toUtf8();
    AxMavStatustext part;
    part.severity = quint8(severity);
    const int room = int(part.text.size());
    const bool isLong = bytes.size() >= room;
    if (isLong)
        m_text = m_text == 65535 ? 1 : quint16(m_text + 1);
    part.id_ = isLong ? m_text : 0;
    // A part that is full has another one behind it, be it empty.
    for (int begin = 0; begin <= bytes.size(); begin += room, ++part.chunk_seq) {
        part.text.fill('\0');
        const QByteArray piece = bytes.mid(begin, room);
        std::copy(piece.begin(), piece.end(), part.text.begin());
        send(part);
    }
}

#include <AxTelemetry/simulator/AxSimulatedFlight.h>

#include <AxAlgorthm/AxConstants.h>
#include <AxAlgorthm/AxMath.h>

#include <QCoreApplication>

#include <algorithm>
#include <cmath>

namespace {
constexpr double stepSeconds = 0.05;
constexpr double gentleSink = 0.7; // m/s in hover, near the ground

void MakeGood(double& value, double least, double most, double otherwise)
{
    if (!(value >= least && value <= most))
        value = otherwise;
}
} // namespace

QString AxSimulatorText(const char* text)
{
    return QCoreApplication::translate("AxSimulator", text);
}

AxSimulatedVehicle::Flight::Flight(const AxSimulatedAircraft& given) : aircraft(given)
{
    const AxSimulatedAircraft usual;
    MakeGood(aircraft.speed, 0.5, 300.0, usual.speed);
    MakeGood(aircraft.turnRadius, 1.0, 1e5, usual.turnRadius);
    MakeGood(aircraft.climb, 0.1, 100.0, usual.climb);
    MakeGood(aircraft.descent, 0.1, 100.0, usual.descent);
    MakeGood(aircraft.takeOffHeight, 1.0, 1e4, usual.takeOffHeight);
    MakeGood(aircraft.returnHeight, 1.0, 1e4, usual.returnHeight);
    MakeGood(aircraft.acceptance, 0.5, 1e4, aircraft.HasWings() ? 20.0 : 2.0);
    MakeGood(aircraft.endurance, 1.0, 1e7, usual.endurance);
    MakeGood(aircraft.returnBattery, 0.0, 100.0, usual.returnBattery);
    MakeGood(aircraft.cameraPitch, -180.0, 180.0, usual.cameraPitch);
    MakeGood(aircraft.wind.speed, 0.0, 200.0, 0.0);
    MakeGood(aircraft.wind.from, -720.0, 720.0, 0.0);
    const bool isPlace = aircraft.home && std::fabs(aircraft.home->latitude) <= 90.0 &&
                         std::fabs(aircraft.home->longitude) <= 180.0 &&
                         std::isfinite(aircraft.home->altitude);
    if (isPlace) {
        home = aircraft.home;
        m_body.place = *home;
    }
    state.cameraPitch = aircraft.cameraPitch;
    m_speed = aircraft.speed;
    tell();
}

void AxSimulatedVehicle::Flight::Step(double seconds)
{
    if (!std::isfinite(seconds))
        return;
    while (seconds > 1e-9) {
        const double share = std::min(seconds, stepSeconds);
        pass(share);
        seconds -= share;
    }
}

void AxSimulatedVehicle::Flight::pass(double seconds)
{
    state.seconds += seconds;
    switch (state.phase) {
    case Phase::Ground:
        m_body.airSpeed = 0.0;
        break;
    case Phase::TakeOff:
        takeOff(seconds);
        break;
    case Phase::Mission:
    case Phase::Return:
        followLegs(seconds);
        break;
    case Phase::Landing:
        land(seconds);
        break;
    case Phase::RollOut:
        AxRollOnGround(m_body, aircraft, 0.0, seconds);
        m_body.place.altitude = groundHere();
        if (m_body.motion.Length() < 0.1)
            touchDown();
        break;
    }
    // Whoever flies into a hill has landed.
    if (state.IsFlying() && state.phase != Phase::TakeOff && state.phase != Phase::Landing &&
        m_body.place.altitude < groundHere() - 0.5) {
        say(2, AxSimulatorText(QT_TRANSLATE_NOOP("AxSimulator", "The aircraft has hit the ground.")));
        touchDown();
    }
    if (state.isArmed)
        drain(seconds);
    tell();
}

void AxSimulatedVehicle::Flight::takeOff(double seconds)
{
    const double top = home->altitude + m_takeOffHeight;
    AxSimulatedDemand demand;
    if (aircraft.CanHover()) {
        const AxGroundOffset wind = AxMotionOf(aircraft.wind);
        const AxGroundOffset aside = AxOffsetBetween(m_body.place, *home);
        demand.course = aside.Course();
        demand.speed = std::min(0.5 * aside.Length(), 3.0);
        demand.up = std::clamp(0.8 * (top - m_body.place.altitude) + 0.3, 0.3, aircraft.climb);
        if (aircraft.HasWings() && wind.Length() > 0.5)
            demand.yaw = wind.Course() + PI;
        AxFlyInHover(m_body, aircraft, demand, seconds);
        m_isHovering = true;
    } else if (m_body.airSpeed < 0.75 * aircraft.speed && m_body.place.altitude < home->altitude + 1.0) {
        AxRollOnGround(m_body, aircraft, 2.0 * aircraft.speed, seconds);
        m_body.place.altitude = groundHere();
    } else {
        const AxGroundOffset wind = AxMotionOf(aircraft.wind);
        // Straight on, as the nose points.
        demand.course = AxGroundOffset{m_body.airSpeed * std::cos(m_body.yaw) + wind.north,
                                       m_body.airSpeed * std::sin(m_body.yaw) + wind.east}
                            .Course();
        demand.speed = aircraft.speed;
        demand.up = aircraft.climb;
        AxFlyOnWings(m_body, aircraft, demand, seconds);
        m_isHovering = false;
    }
    if (m_body.place.altitude >= top - 0.5) {
        m_isHovering = !aircraft.HasWings();
        state.phase = Phase::Mission;
        AxSimulatedLeg here;
        here.from = here.to = m_body.place;
        begin(here); // to stay at, until the mission leads elsewhere
        advance();
    }
}

void AxSimulatedVehicle::Flight::followLegs(double seconds)
{
    if (m_delay > 0.0) {
        m_delay -= seconds;
        if (m_delay <= 0.0)
            advance();
    }
    // An aircraft that flies on wings hovers for the last metres: those that it needs to stop in.
    if (aircraft.HasWings() && aircraft.CanHover() && state.phase == Phase::Return && !m_isHovering) {
        const double speed = m_body.motion.Length();
        if (AxOffsetBetween(m_body.place, m_landing).Length() < 0.3 * speed * speed + aircraft.acceptance) {
            m_isHovering = true;
            m_legs.clear();
            AxSimulatedLeg leg;
            leg.from = m_body.place;
            leg.to = m_landing;
            leg.to.altitude = std::max(m_body.place.altitude, m_landing.altitude + 5.0);
            begin(leg);
        }
    }
    const AxPlace before = m_body.place;
    const AxSimulatedDemand demand = m_guide.Follow(m_body, aircraft, m_speed, m_isHovering, seconds);
    if (m_isHovering)
        AxFlyInHover(m_body, aircraft, demand, seconds);
    else
        AxFlyOnWings(m_body, aircraft, demand, seconds);
    takePhotos(before); // those on the way to a place belong to what was on before it
    if (!m_guide.IsDone() || m_delay > 0.0)
        return;
    const int item = m_guide.Leg().item;
    if (item >= 0) {
        AxSimulatedEvent reached;
        reached.kind = AxSimulatedEvent::Kind::Reached;
        reached.seconds = state.seconds;
        reached.number = item;
        events.push_back(reached);
        if (m_guide.MissedBy() > 0.0)
            say(4, AxSimulatorText(QT_TRANSLATE_NOOP("AxSimulator", "Waypoint %1 was missed by %2 m."))
                       .arg(item + 1)
                       .arg(m_guide.MissedBy(), 0, 'f', 0));
    }
    if (!m_legs.empty()) {
        const AxSimulatedLeg leg = m_legs.front();
        m_legs.pop_front();
        begin(leg);
        if (m_legs.empty() && state.phase == Phase::Return && !m_isHovering)
            state.phase = Phase::Landing; // the glide
    } else if (state.phase == Phase::Mission) {
        advance();
    } else {
        state.phase = Phase::Landing;
    }
}

void AxSimulatedVehicle::Flight::land(double seconds)
{
    const double height = m_body.place.altitude - groundHere();
    AxSimulatedDemand demand;
    if (m_isHovering) {
        const AxGroundOffset aside = AxOffsetBetween(m_body.place, m_landing);
        demand.course = aside.Course();
        demand.speed = m_isEmpty ? 0.0 : std::min(0.5 * aside.Length(), 3.0);
        demand.up = -std::clamp(0.3 * height, gentleSink, aircraft.descent);
        AxFlyInHover(m_body, aircraft, demand, seconds);
    } else {
        demand = m_guide.Follow(m_body, aircraft, 0.8 * aircraft.speed, false, seconds);
        m_isOver = m_isOver || m_guide.IsDone() || m_isEmpty ||
                   AxOffsetBetween(m_body.place, m_landing).Length() < 30.0;
        // It does not go round low above the ground: what lies ahead will do.
        if (m_isOver) {
            demand.course = m_body.motion.Course();
            demand.up = -std::max(1.0, 0.1 * m_body.airSpeed);
        }
        demand.up = std::min(demand.up, height < 3.0 ? -0.7 : 0.0); // the flare
        demand.up = std::max(demand.up, height < 3.0 ? -1.0 : -0.3 * m_body.airSpeed);
        AxFlyOnWings(m_body, aircraft, demand, seconds);
    }
    const double ground = groundHere();
    if (m_body.place.altitude > ground)
        return;
    m_body.place.altitude = ground;
    if (m_isHovering)
        touchDown();
    else
        state.phase = Phase::RollOut;
}

void AxSimulatedVehicle::Flight::touchDown()
{
    m_body.place.altitude = groundBelow(m_body.place);
    m_body.motion = {};
    m_body.up = m_body.roll = m_body.pitch = m_body.airSpeed = 0.0;
    m_legs.clear();
    m_photoDistance = 0.0;
    m_delay = 0.0;
    m_isHovering = aircraft.CanHover();
    state.phase = Phase::Ground;
    state.isArmed = false;
    state.currentItem = -1;
    say(6, AxSimulatorText(QT_TRANSLATE_NOOP("AxSimulator", "Landed and disarmed.")));
}

void AxSimulatedVehicle::Flight::drain(double seconds)
{
    double load = 0.05; // of level flight
    if (state.IsFlying())
        load = m_isHovering || !aircraft.HasWings() ? (aircraft.HasWings() ? 2.5 : 1.0) : 0.9;
    load *= 1.0 + 0.6 * std::clamp(m_body.up / aircraft.climb, -0.5, 1.0);
    state.batteryPercent = std::max(0.0, state.batteryPercent - 100.0 * load * seconds / aircraft.endurance);
    state.batteryAmperes = 15.0 * load;
    if (!state.IsFlying() || m_isEmpty)
        return;
    if (state.batteryPercent <= 0.0) {
        m_isEmpty = true;
        say(0, AxSimulatorText(QT_TRANSLATE_NOOP("AxSimulator", "The battery is empty: landing here.")));
        LandAt(m_body.place);
    } else if (!m_isLow && state.batteryPercent <= aircraft.returnBattery) {
        m_isLow = true;
        if (state.phase != Phase::Landing && state.phase != Phase::Return) {
            say(2, AxSimulatorText(QT_TRANSLATE_NOOP("AxSimulator", "The battery is low.")));
            ReturnHome();
        }
    }
}

void AxSimulatedVehicle::Flight::tell()
{
    state.place = m_body.place;
    state.heightAboveHome = home ? m_body.place.altitude - home->altitude : 0.0;
    state.heightAboveGround = m_body.place.altitude - groundHere();
    state.velocityNorth = m_body.motion.north;
    state.velocityEast = m_body.motion.east;
    state.velocityUp = m_body.up;
    state.airSpeed = m_body.airSpeed;
    state.roll = m_body.roll;
    state.pitch = m_body.pitch;
    state.yaw = m_body.yaw;
    if (!state.isArmed)
        state.batteryAmperes = 0.0;
    state.batteryVolts = 21.0 + 0.042 * state.batteryPercent - 0.01 * state.batteryAmperes; // six cells
}

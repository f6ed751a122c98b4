#include <AxTelemetry/simulator/AxSimulatedFlight.h>

#include <AxAlgorthm/AxConstants.h>
#include <AxAlgorthm/AxGeoid.h>
#include <AxAlgorthm/AxMath.h>

#include <algorithm>
#include <cmath>
#include <limits>

namespace {
constexpr double glide = 0.1;           // rise over run, of planes that land
constexpr double approachHeight = 40.0; // metres above the ground where they land

bool IsAboveSea(int frame)
{
    return frame == AxMissionItem::Global || frame == 5;
}

bool IsAboveGround(int frame)
{
    return frame == 10 || frame == 11;
}

/// A parameter of an item, or what stands for one that is left open.
double Given(double param, double otherwise)
{
    return std::isfinite(param) ? param : otherwise;
}
} // namespace

void AxSimulatedVehicle::Flight::say(int severity, const QString& text)
{
    AxSimulatedEvent event;
    event.seconds = state.seconds;
    event.severity = severity;
    event.text = text;
    events.push_back(event);
}

double AxSimulatedVehicle::Flight::groundBelow(const AxPlace& place) const
{
    if (aircraft.ground && m_trustsGround) {
        const std::optional<double> height = aircraft.ground(place.longitude, place.latitude);
        if (height && std::isfinite(*height))
            return *height;
    }
    return home ? home->altitude : place.altitude;
}

double AxSimulatedVehicle::Flight::groundHere()
{
    if (!aircraft.ground)
        return groundBelow(m_body.place);
    // A host's heights may take their time; the ground of a metre ago will do.
    if (!m_hasAsked || AxOffsetBetween(m_asked, m_body.place).Length() > 1.0) {
        m_asked = m_body.place;
        m_groundThere = groundBelow(m_body.place);
        m_hasAsked = true;
    }
    return m_groundThere;
}

AxPlace AxSimulatedVehicle::Flight::placeOf(const AxMissionItem& item) const
{
    AxPlace place = m_body.place;
    // Both open, or both zero as ArduPilot has it: where the aircraft is.
    const bool isOpen = item.latitude == 0.0 && item.longitude == 0.0;
    if (!isOpen && AxIsOnGlobe(item.latitude, item.longitude)) {
        place.latitude = item.latitude;
        place.longitude = item.longitude;
    }
    if (!std::isfinite(item.altitude))
        return place;
    if (IsAboveSea(item.frame))
        place.altitude = item.altitude + AxGeoidHeight(place.latitude, place.longitude).value_or(0.0);
    else
        place.altitude = item.altitude + (IsAboveGround(item.frame) ? groundBelow(place) : home->altitude);
    return place;
}

QString AxSimulatedVehicle::Flight::knowHome(const AxMission& carried)
{
    if (home)
        return {};
    AxPlace place;
    const auto stand = [&](double latitude, double longitude, double aboveSea) {
        place.latitude = latitude;
        place.longitude = longitude;
        place.altitude = aboveSea + AxGeoidHeight(latitude, longitude).value_or(0.0);
        if (aircraft.ground)
            place.altitude = aircraft.ground(longitude, latitude).value_or(place.altitude);
        home = m_body.place = place;
    };
    if (!carried.home.IsOpen())
        stand(carried.home.latitude, carried.home.longitude, Given(carried.home.altitude, 0.0));
    for (const AxMissionItem& item : carried.items)
        if (!home && AxSimulatedMission::IsWaypoint(item) && AxIsOnGlobe(item.latitude, item.longitude))
            stand(item.latitude, item.longitude, 0.0);
    tell();
    return home
               ? QString()
               : AxSimulatorText(QT_TRANSLATE_NOOP("AxSimulator", "The mission has no place to start from."));
}

QString AxSimulatedVehicle::Flight::SetMission(const AxMission& carried)
{
    if (!carried.items.empty()) {
        QString fault = AxMissionFault(carried);
        if (fault.isEmpty())
            fault = knowHome(carried);
        if (!fault.isEmpty())
            return fault;
    }
    mission.Set(carried);
    state.currentItem = -1;
    const bool followsGround =
        std::any_of(carried.items.begin(), carried.items.end(),
                    [](const AxMissionItem& item) { return IsAboveGround(item.frame); });
    if (followsGround && !aircraft.ground)
        say(4, AxSimulatorText(QT_TRANSLATE_NOOP(
                   "AxSimulator",
                   "The ground is not known: heights above it are taken for heights above home.")));
    if (state.phase == Phase::Mission) {
        say(5, AxSimulatorText(QT_TRANSLATE_NOOP("AxSimulator", "A new mission: flown from its beginning.")));
        advance();
    }
    return {};
}

bool AxSimulatedVehicle::Flight::SetCurrentItem(int item)
{
    if (item < 0 || item >= int(mission.Mission().items.size()))
        return false;
    mission.Begin(item);
    state.currentItem = item;
    if (state.phase == Phase::Mission)
        advance();
    return true;
}

QString AxSimulatedVehicle::Flight::Arm()
{
    if (!home)
        return AxSimulatorText(QT_TRANSLATE_NOOP("AxSimulator", "Not armed: no position yet."));
    if (state.batteryPercent <= aircraft.returnBattery)
        return AxSimulatorText(QT_TRANSLATE_NOOP("AxSimulator", "Not armed: the battery is low."));
    if (!state.isArmed)
        say(6, AxSimulatorText(QT_TRANSLATE_NOOP("AxSimulator", "Armed.")));
    state.isArmed = true;
    return {};
}

QString AxSimulatedVehicle::Flight::Disarm()
{
    if (state.phase != Phase::Ground)
        return AxSimulatorText(QT_TRANSLATE_NOOP("AxSimulator", "Not disarmed: the aircraft is in the air."));
    if (state.isArmed)
        say(6, AxSimulatorText(QT_TRANSLATE_NOOP("AxSimulator", "Disarmed.")));
    state.isArmed = false;
    return {};
}

QString AxSimulatedVehicle::Flight::Start()
{
    const QString fault = AxMissionFault(mission.Mission());
    if (!fault.isEmpty())
        return fault;
    if (state.IsFlying()) {
        if (state.phase == Phase::TakeOff || state.phase == Phase::Mission)
            return {};
        if (m_isLow)
            return AxSimulatorText(QT_TRANSLATE_NOOP("AxSimulator", "The battery is low."));
        m_isHovering = !aircraft.HasWings();
        m_legs.clear();
        mission.Begin(std::max(state.currentItem, 0));
        state.phase = Phase::Mission;
        advance();
        return {};
    }
    if (state.phase == Phase::RollOut)
        return AxSimulatorText(QT_TRANSLATE_NOOP("AxSimulator", "The aircraft still rolls."));
    const QString notArmed = Arm();
    if (!notArmed.isEmpty())
        return notArmed;
    // Where it stands is home from now on. Ground that nobody knows there would be no measure elsewhere: it
    // may become known in flight, far above or below what was taken for it.
    home = m_body.place;
    m_trustsGround = aircraft.ground && aircraft.ground(home->longitude, home->latitude).has_value();
    m_hasAsked = false;
    m_body.place.altitude = home->altitude = groundBelow(m_body.place);
    mission.Begin(std::max(state.currentItem, 0));
    m_speed = aircraft.speed;
    m_photoDistance = 0.0;
    m_lastPhoto.reset();
    m_takeOffHeight = aircraft.takeOffHeight;
    std::optional<double> bearing;
    for (const AxMissionItem& item : mission.Mission().items) {
        const bool isTakeOff =
            item.command == AxSimulatedCommand::TakeOff || item.command == AxSimulatedCommand::HoverTakeOff;
        if (!isTakeOff && !AxSimulatedMission::IsWaypoint(item))
            continue;
        const AxPlace place = placeOf(item);
        const double height = place.altitude - home->altitude;
        // A mission that flies low is not climbed over first.
        m_takeOffHeight = isTakeOff ? std::max(height, 2.0) : std::clamp(height, 5.0, m_takeOffHeight);
        if (AxOffsetBetween(*home, place).Length() > 1.0)
            bearing = AxOffsetBetween(*home, place).Course();
        break;
    }
    const AxGroundOffset wind = AxMotionOf(aircraft.wind);
    if (aircraft.HasWings() && wind.Length() > 0.5)
        m_body.yaw = AxTurnOf(wind.Course() + PI);
    else if (bearing)
        m_body.yaw = *bearing;
    m_isHovering = aircraft.CanHover();
    state.phase = Phase::TakeOff;
    say(6, AxSimulatorText(QT_TRANSLATE_NOOP("AxSimulator", "Taking off.")));
    return {};
}

void AxSimulatedVehicle::Flight::begin(AxSimulatedLeg leg)
{
    if (leg.item < 0) {
        leg.acceptance = m_isHovering ? 2.0 : aircraft.acceptance;
        leg.heightTolerance = m_isHovering ? 1.5 : 10.0;
    }
    m_guide = AxSimulatedGuide(leg);
}

void AxSimulatedVehicle::Flight::advance()
{
    // Items that fly nowhere are done at once. There can be no more of them in a row than items, unless jumps
    // lead round and round among them.
    const std::size_t most = 2 * mission.Mission().items.size() + 2;
    m_delay = 0.0;
    for (std::size_t passed = 0; passed < most; ++passed) {
        const int index = mission.Next();
        if (index < 0)
            break;
        const AxMissionItem& item = mission.Mission().items[std::size_t(index)];
        state.currentItem = index;
        if (fly(item, index))
            return;
        obey(item, index);
        if (state.phase != Phase::Mission || m_delay > 0.0)
            return;
        if (passed + 1 == most) {
            say(3, AxSimulatorText(
                       QT_TRANSLATE_NOOP("AxSimulator", "The mission jumps without flying anywhere.")));
            ReturnHome();
            return;
        }
    }
    if (mission.IsEndless())
        say(3,
            AxSimulatorText(QT_TRANSLATE_NOOP("AxSimulator", "The mission jumps without flying anywhere.")));
    else
        say(6, AxSimulatorText(QT_TRANSLATE_NOOP("AxSimulator", "The mission is flown.")));
    ReturnHome();
}

bool AxSimulatedVehicle::Flight::fly(const AxMissionItem& item, int index)
{
    const bool isClimb =
        item.command == AxSimulatedCommand::TakeOff || item.command == AxSimulatedCommand::HoverTakeOff;
    if (!AxSimulatedMission::IsWaypoint(item) && !isClimb)
        return false;
    AxSimulatedLeg leg;
    leg.item = index;
    leg.to = placeOf(item);
    if (isClimb) {
        // The take-off that the flight began with is behind it.
        if (m_body.place.altitude > leg.to.altitude - 5.0 || aircraft.HasWings())
            return false;
        leg.to.latitude = m_body.place.latitude;
        leg.to.longitude = m_body.place.longitude;
    }
    const AxSimulatedLeg& last = m_guide.Leg();
    const bool goesOn = last.item >= 0 && m_guide.IsDone() && last.circle == 0.0 &&
                        AxOffsetBetween(m_body.place, last.to).Length() <= last.acceptance;
    leg.from = goesOn ? last.to : m_body.place;
    leg.climbsFirst = !goesOn;
    leg.acceptance = item.command == AxMissionItem::Waypoint && item.params[1] >= 0.5 && item.params[1] <= 1e4
                         ? item.params[1]
                         : aircraft.acceptance;
    leg.heightTolerance = aircraft.HasWings() ? 10.0 : 1.5;
    const int after = mission.PlaceAfter(index);
    if (after >= 0)
        leg.next = placeOf(mission.Mission().items[std::size_t(after)]);
    if (m_isHovering && std::isfinite(item.params[3]))
        leg.yaw = DegreeToRadians(item.params[3]);
    constexpr double endless = std::numeric_limits<double>::infinity();
    const double radius = Given(item.params[2], 0.0);
    const double least = m_isHovering ? 10.0 : aircraft.turnRadius;
    const double circle = std::copysign(std::max(std::fabs(radius), least), radius);
    switch (item.command) {
    case AxMissionItem::Waypoint:
    case AxSimulatedCommand::Spline:
        leg.hold = m_isHovering ? std::max(0.0, Given(item.params[0], 0.0)) : 0.0;
        break;
    case AxSimulatedCommand::CircleForever:
        leg.circle = circle;
        leg.turns = endless;
        break;
    case AxSimulatedCommand::CircleTurns:
        leg.circle = circle;
        leg.turns = std::max(0.0, Given(item.params[0], 0.0));
        break;
    case AxSimulatedCommand::CircleSeconds:
        leg.circle = circle;
        leg.seconds = std::max(0.0, Given(item.params[0], 0.0));
        break;
    default:
        break;
    }
    begin(leg);
    return true;
}

void AxSimulatedVehicle::Flight::obey(const AxMissionItem& item, int index)
{
    const auto without = [&](double value) {
        if (std::isfinite(value))
            return false;
        say(4, AxSimulatorText(QT_TRANSLATE_NOOP("AxSimulator", "Item %1 lacks a number and is passed over."))
                   .arg(index + 1));
        return true;
    };
    switch (item.command) {
    case AxMissionItem::ChangeSpeed:
        if (!without(item.params[1]) && item.params[1] > 0.0)
            m_speed = std::clamp(item.params[1], 0.5 * aircraft.speed * (aircraft.HasWings() ? 1.2 : 0.1),
                                 2.0 * aircraft.speed);
        break;
    case AxMissionItem::Jump: // of those without a number of times; the others have been taken
        without(item.params[1]);
        break;
    case AxMissionItem::TriggerDistance:
        if (without(item.params[0]))
            break;
        m_photoDistance = std::max(0.0, item.params[0]);
        m_lastPhoto = m_body.place;
        if (m_photoDistance > 0.0 && item.params[2] == 1.0)
            takePhoto(m_body.place);
        break;
    case AxSimulatedCommand::Photo:
    case AxSimulatedCommand::PhotoFromImage:
        takePhoto(m_body.place);
        break;
    case AxSimulatedCommand::CameraTilt:
        if (!without(item.params[0]))
            state.cameraPitch = std::clamp(item.params[0], -180.0, 180.0);
        break;
    case AxSimulatedCommand::Delay:
        if (!without(item.params[0]))
            m_delay = std::max(0.0, item.params[0]);
        break;
    case AxSimulatedCommand::ReturnHome:
        ReturnHome();
        break;
    case AxSimulatedCommand::Land:
    case AxSimulatedCommand::HoverLand:
        LandAt(placeOf(item));
        break;
    case AxSimulatedCommand::TakeOff:
    case AxSimulatedCommand::HoverTakeOff:
    case AxSimulatedCommand::LandingBegins:
        break;
    default:
        say(5, AxSimulatorText(QT_TRANSLATE_NOOP("AxSimulator", "Item %1: the command %2 is passed over."))
                   .arg(index + 1)
                   .arg(item.command));
    }
}

void AxSimulatedVehicle::Flight::ReturnHome()
{
    if (!state.IsFlying() || !home)
        return;
    say(5, AxSimulatorText(QT_TRANSLATE_NOOP("AxSimulator", "Returning home.")));
    landAt(*home, std::max(m_body.place.altitude, home->altitude + aircraft.returnHeight));
}

void AxSimulatedVehicle::Flight::LandAt(const AxPlace& place)
{
    if (state.IsFlying())
        landAt(place, m_body.place.altitude);
}

void AxSimulatedVehicle::Flight::landAt(const AxPlace& place, double height)
{
    m_photoDistance = 0.0;
    m_delay = 0.0;
    m_legs.clear();
    m_speed = aircraft.speed;
    m_landing = place;
    m_landing.altitude = groundBelow(place);
    m_isOver = false;
    state.phase = Phase::Return;
    if (m_isEmpty) {
        state.phase = Phase::Landing;
        return;
    }
    AxSimulatedLeg leg;
    leg.climbsFirst = true;
    leg.from = m_body.place;
    leg.to = m_landing;
    leg.to.altitude = std::max(height, m_landing.altitude + 20.0);
    if (aircraft.CanHover()) {
        begin(leg);
        return;
    }
    // A plane comes down behind the place where it lands, and glides onto it against the wind.
    const AxGroundOffset wind = AxMotionOf(aircraft.wind);
    const double course =
        wind.Length() > 0.5 ? wind.Course() + PI : AxOffsetBetween(m_body.place, m_landing).Course();
    const auto behind = [&](double metres) {
        AxPlace at = AxMovedBy(m_landing, {-metres * std::cos(course), -metres * std::sin(course)});
        at.altitude = m_landing.altitude + approachHeight;
        return at;
    };
    const double run = approachHeight / glide;
    const double arrival = leg.to.altitude;
    AxSimulatedLeg sink;
    sink.from = sink.to = behind(run + 4.0 * aircraft.turnRadius + 100.0);
    leg.to = sink.to;
    leg.to.altitude = arrival; // it sinks there in circles, and not on the way
    AxSimulatedLeg straight;
    straight.from = sink.to;
    straight.to = behind(run);
    AxSimulatedLeg down;
    down.from = straight.to;
    down.to = m_landing;
    m_legs = {sink, straight, down};
    begin(leg);
}

void AxSimulatedVehicle::Flight::takePhotos(const AxPlace& before)
{
    if (!(m_photoDistance > 0.0) || !m_lastPhoto)
        return;
    // Of the way since the moment before, the point at which the distance is full.
    for (AxPlace from = before; AxOffsetBetween(*m_lastPhoto, m_body.place).Length() >= m_photoDistance;) {
        const double near = AxOffsetBetween(*m_lastPhoto, from).Length();
        const double far = AxOffsetBetween(*m_lastPhoto, m_body.place).Length();
        const double share = far > near ? std::clamp((m_photoDistance - near) / (far - near), 0.0, 1.0) : 1.0;
        const AxGroundOffset way = AxOffsetBetween(from, m_body.place);
        AxPlace at = AxMovedBy(from, {way.north * share, way.east * share});
        at.altitude = from.altitude + share * (m_body.place.altitude - from.altitude);
        takePhoto(at);
        if (share >= 1.0 || m_photoDistance < 0.1)
            return;
        from = at;
    }
}

void AxSimulatedVehicle::Flight::takePhoto(const AxPlace& place)
{
    AxSimulatedEvent photo;
    photo.kind = AxSimulatedEvent::Kind::Photo;
    photo.seconds = state.seconds;
    photo.number = state.photos++;
    photo.place = place;
    photo.roll = m_body.roll;
    photo.pitch = m_body.pitch;
    photo.yaw = m_body.yaw;
    m_lastPhoto = place;
    events.push_back(photo);
}

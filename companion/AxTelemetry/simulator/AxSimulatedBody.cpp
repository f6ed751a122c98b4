#include <AxTelemetry/simulator/AxSimulatedBody.h>

#include <AxAlgorthm/AxConstants.h>
#include <AxAlgorthm/AxMath.h>

#include <algorithm>
#include <cmath>

namespace {
constexpr double gravity = 9.80665;         // m/s^2
constexpr double equatorRadius = 6378137.0; // metres
constexpr double eccentricity2 = 6.69437999014e-3;
constexpr double throttle = 3.0;     // m/s^2 along the flight path
constexpr double hoverPush = 2.5;    // m/s^2 level
constexpr double verticalPush = 2.0; // m/s^2
constexpr double rollRate = 1.2;     // rad/s
constexpr double turnRate = 1.0;     // rad/s, of the nose in hover

/// Metres that a radian makes to the north and to the east.
AxGroundOffset MetresOfRadian(double latitude, double altitude)
{
    const double sine = std::sin(DegreeToRadians(latitude));
    const double root = std::sqrt(1.0 - eccentricity2 * sine * sine);
    const double across = equatorRadius / root;
    const double along = across * (1.0 - eccentricity2) / (root * root);
    // At the poles, where longitudes meet, a metre is still no more than 6 degrees.
    const double cosine = std::max(std::cos(DegreeToRadians(latitude)), 1e-6);
    return {along + altitude, (across + altitude) * cosine};
}

double Towards(double value, double wanted, double most)
{
    return value + std::clamp(wanted - value, -most, most);
}

void Move(AxSimulatedBody& body, double seconds)
{
    body.place = AxMovedBy(body.place, {body.motion.north * seconds, body.motion.east * seconds});
    body.place.altitude += body.up * seconds;
}
} // namespace

double AxGroundOffset::Length() const
{
    return std::hypot(north, east);
}

double AxGroundOffset::Course() const
{
    return std::atan2(east, north);
}

double AxTurnOf(double angle)
{
    return std::remainder(angle, 2.0 * PI);
}

AxGroundOffset AxOffsetBetween(const AxPlace& from, const AxPlace& to)
{
    const AxGroundOffset metres =
        MetresOfRadian(0.5 * (from.latitude + to.latitude), 0.5 * (from.altitude + to.altitude));
    return {metres.north * DegreeToRadians(to.latitude - from.latitude),
            metres.east * DegreeToRadians(std::remainder(to.longitude - from.longitude, 360.0))};
}

AxPlace AxMovedBy(const AxPlace& place, const AxGroundOffset& offset)
{
    const AxGroundOffset metres = MetresOfRadian(place.latitude, place.altitude);
    AxPlace moved = place;
    moved.latitude = std::clamp(place.latitude + RadiansToDegree(offset.north / metres.north), -90.0, 90.0);
    moved.longitude = std::remainder(place.longitude + RadiansToDegree(offset.east / metres.east), 360.0);
    return moved;
}

AxGroundOffset AxMotionOf(const AxSimulatedWind& wind)
{
    const double from = DegreeToRadians(wind.from);
    return {-wind.speed * std::cos(from), -wind.speed * std::sin(from)};
}

double AxHeadingFor(double course, double airSpeed, const AxGroundOffset& wind)
{
    const double across = -wind.north * std::sin(course) + wind.east * std::cos(course);
    if (airSpeed <= 0.0)
        return course;
    return course - std::asin(std::clamp(across / airSpeed, -1.0, 1.0));
}

void AxFlyOnWings(AxSimulatedBody& body, const AxSimulatedAircraft& aircraft, const AxSimulatedDemand& demand,
                  double seconds)
{
    const AxGroundOffset wind = AxMotionOf(aircraft.wind);
    body.airSpeed = Towards(body.airSpeed, demand.speed, throttle * seconds);
    body.up = Towards(body.up, demand.up, verticalPush * seconds);
    const double level = std::sqrt(std::max(body.airSpeed * body.airSpeed - body.up * body.up, 1.0));
    // The nose is to be round in a second or so; the bank that this takes is rolled to, never beyond the
    // tightest turn's.
    const double fastest = level / aircraft.turnRadius;
    const double turn = AxTurnOf(AxHeadingFor(demand.course, level, wind) - body.yaw);
    const double rate = std::clamp(turn / 0.8, -fastest, fastest);
    const double steepest = std::atan(level * fastest / gravity);
    body.roll = std::clamp(Towards(body.roll, std::atan(level * rate / gravity), rollRate * seconds),
                           -steepest, steepest);
    const double turned = gravity * std::tan(body.roll) / level * seconds;
    const double heading = body.yaw + 0.5 * turned;
    body.yaw = AxTurnOf(body.yaw + turned);
    body.pitch = Towards(body.pitch, std::atan2(body.up, level) + 0.03, 0.5 * seconds);
    body.motion = {level * std::cos(heading) + wind.north, level * std::sin(heading) + wind.east};
    Move(body, seconds);
}

void AxFlyInHover(AxSimulatedBody& body, const AxSimulatedAircraft& aircraft, const AxSimulatedDemand& demand,
                  double seconds)
{
    const AxGroundOffset wind = AxMotionOf(aircraft.wind);
    const double fastest = 1.6 * std::max(aircraft.speed, demand.speed); // m/s through the air
    AxGroundOffset air{demand.speed * std::cos(demand.course) - wind.north,
                       demand.speed * std::sin(demand.course) - wind.east};
    const double share = std::min(1.0, fastest / std::max(air.Length(), 1e-9));
    const AxGroundOffset wanted{air.north * share + wind.north, air.east * share + wind.east};
    AxGroundOffset change{wanted.north - body.motion.north, wanted.east - body.motion.east};
    const double push = std::min(1.0, hoverPush * seconds / std::max(change.Length(), 1e-9));
    change = {change.north * push, change.east * push};
    body.motion = {body.motion.north + change.north, body.motion.east + change.east};
    body.up = Towards(body.up, demand.up, verticalPush * seconds);
    air = {body.motion.north - wind.north, body.motion.east - wind.east};
    body.airSpeed = std::hypot(air.Length(), body.up);
    if (demand.yaw)
        body.yaw = AxTurnOf(
            body.yaw + std::clamp(AxTurnOf(*demand.yaw - body.yaw), -turnRate * seconds, turnRate * seconds));
    // It leans into what it accelerates towards and against the drag of the air, 20 degrees at full speed.
    const double drag = gravity * std::tan(PI / 9.0) / fastest;
    const AxGroundOffset force{change.north / seconds + drag * air.north,
                               change.east / seconds + drag * air.east};
    const double ahead = force.north * std::cos(body.yaw) + force.east * std::sin(body.yaw);
    const double right = -force.north * std::sin(body.yaw) + force.east * std::cos(body.yaw);
    body.pitch = Towards(body.pitch, -std::atan(ahead / gravity), rollRate * seconds);
    body.roll = Towards(body.roll, std::atan(right / gravity), rollRate * seconds);
    Move(body, seconds);
}

void AxRollOnGround(AxSimulatedBody& body, const AxSimulatedAircraft& aircraft, double wantedSpeed,
                    double seconds)
{
    const AxGroundOffset wind = AxMotionOf(aircraft.wind);
    const double speed = body.motion.north * std::cos(body.yaw) + body.motion.east * std::sin(body.yaw);
    const double rolling = Towards(std::max(speed, 0.0), wantedSpeed, throttle * seconds);
    body.motion = {rolling * std::cos(body.yaw), rolling * std::sin(body.yaw)};
    body.up = 0.0;
    body.roll = Towards(body.roll, 0.0, rollRate * seconds);
    body.pitch = Towards(body.pitch, 0.0, rollRate * seconds);
    const double tail = wind.north * std::cos(body.yaw) + wind.east * std::sin(body.yaw);
    body.airSpeed = std::max(rolling - tail, 0.0);
    Move(body, seconds);
}

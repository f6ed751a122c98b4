#include <AxTelemetry/simulator/AxSimulatedGuide.h>

#include <AxAlgorthm/AxConstants.h>

#include <algorithm>
#include <cmath>

namespace {
constexpr double braking = 1.5; // m/s^2 in hover
constexpr int mostMisses = 4;

/// A place against a leg that ends in `end`: metres along it and to the right of it.
struct OnLeg
{
    double along = 0.0;
    double right = 0.0;
};

OnLeg AgainstCourse(const AxGroundOffset& offset, double course)
{
    return {offset.north * std::cos(course) + offset.east * std::sin(course),
            -offset.north * std::sin(course) + offset.east * std::cos(course)};
}
} // namespace

AxSimulatedDemand AxSimulatedGuide::Follow(const AxSimulatedBody& body, const AxSimulatedAircraft& aircraft,
                                           double speed, bool isHovering, double seconds)
{
    if (m_leg.circle != 0.0 && m_isThere)
        return round(body, aircraft, speed, isHovering, seconds);
    return isHovering ? inHover(body, aircraft, speed, seconds) : onWings(body, aircraft, speed);
}

double AxSimulatedGuide::towardsHeight(const AxSimulatedBody& body, const AxSimulatedAircraft& aircraft,
                                       double share, double slope, double groundSpeed) const
{
    const bool isEven = !m_leg.climbsFirst && !m_isDirect && !m_isThere;
    const double wanted =
        isEven ? m_leg.from.altitude + std::clamp(share, 0.0, 1.0) * (m_leg.to.altitude - m_leg.from.altitude)
               : m_leg.to.altitude;
    const double ahead = isEven && share > 0.0 && share < 1.0 ? slope * groundSpeed : 0.0;
    return std::clamp(0.6 * (wanted - body.place.altitude) + ahead, -aircraft.descent, aircraft.climb);
}

AxSimulatedDemand AxSimulatedGuide::onWings(const AxSimulatedBody& body, const AxSimulatedAircraft& aircraft,
                                            double speed)
{
    const AxGroundOffset way = AxOffsetBetween(m_leg.from, m_leg.to);
    const AxGroundOffset rest = AxOffsetBetween(body.place, m_leg.to);
    const double length = way.Length();
    const double course = length > 0.1 ? way.Course() : rest.Course();
    const OnLeg toEnd = AgainstCourse(rest, course);               // how far the end is
    const OnLeg ahead = AgainstCourse(rest, body.motion.Course()); // the same as the aircraft flies
    const double distance = rest.Length();
    const double offHeight = std::fabs(m_leg.to.altitude - body.place.altitude);
    const double groundSpeed = body.motion.Length();

    AxSimulatedDemand demand;
    demand.speed = speed;
    const double slope = length > 0.1 ? (m_leg.to.altitude - m_leg.from.altitude) / length : 0.0;
    demand.up =
        towardsHeight(body, aircraft, length > 0.1 ? 1.0 - toEnd.along / length : 1.0, slope, groundSpeed);

    const bool isPast = m_isDirect ? ahead.along <= 0.0 : toEnd.along <= 0.0 || ahead.along <= 0.0;
    if (isPast && distance <= m_leg.acceptance && offHeight <= m_leg.heightTolerance) {
        m_isThere = true;
        m_isDone = m_leg.circle == 0.0;
    } else if (!m_isDirect && (toEnd.along <= 0.0 || length <= 0.1)) {
        m_isDirect = true;
        m_misses = 1;
    } else if (m_isDirect && m_wasAhead && ahead.along <= 0.0 && distance < 2.0 * aircraft.turnRadius) {
        ++m_misses;
        // Height takes its time; the place must be met.
        if (m_misses > mostMisses && offHeight <= m_leg.heightTolerance) {
            m_missedBy = distance;
            m_isThere = true;
            m_isDone = m_leg.circle == 0.0;
        }
    }
    m_wasAhead = ahead.along > 0.0;

    if (!m_isDirect) {
        // It flies to a point of the line some way ahead, round a gentle corner as well.
        const double reach = std::max(2.5 * groundSpeed, 0.7 * aircraft.turnRadius);
        const double beyond = reach - toEnd.along;
        AxGroundOffset aim{rest.north - std::cos(course) * (toEnd.along - reach),
                           rest.east - std::sin(course) * (toEnd.along - reach)};
        if (beyond > 0.0 && m_leg.next) {
            const AxGroundOffset after = AxOffsetBetween(m_leg.to, *m_leg.next);
            if (after.Length() > 0.1 && std::fabs(AxTurnOf(after.Course() - course)) < PI / 6.0)
                aim = {rest.north + std::cos(after.Course()) * beyond,
                       rest.east + std::sin(after.Course()) * beyond};
        }
        demand.course = aim.Course();
        return demand;
    }
    // Straight on while the place lies inside the circle of the tightest turn, and wind widens that circle.
    const double wind = AxMotionOf(aircraft.wind).Length();
    const double circle = 1.15 * aircraft.turnRadius * (1.0 + wind / std::max(speed, 1.0));
    const bool isAimedAt = ahead.along > 0.0 && std::fabs(ahead.right) < 0.5 * m_leg.acceptance;
    const bool isInside = std::hypot(ahead.along, std::fabs(ahead.right) - circle) < circle;
    demand.course = isInside && !isAimedAt ? body.motion.Course() : rest.Course();
    return demand;
}

AxSimulatedDemand AxSimulatedGuide::inHover(const AxSimulatedBody& body, const AxSimulatedAircraft& aircraft,
                                            double speed, double seconds)
{
    const AxGroundOffset way = AxOffsetBetween(m_leg.from, m_leg.to);
    const AxGroundOffset rest = AxOffsetBetween(body.place, m_leg.to);
    const double length = way.Length();
    const double distance = rest.Length();
    const bool hasLine = length > 0.5 && !m_isDirect;
    const double course = hasLine ? way.Course() : rest.Course();
    const OnLeg toEnd = AgainstCourse(rest, course);
    const double rise = m_leg.to.altitude - m_leg.from.altitude;
    const double slope = hasLine ? rise / length : 0.0;

    // Through a gentle bend it keeps its speed, before a sharp one it stops.
    double speedThere = 0.0;
    if (m_leg.next && m_leg.hold <= 0.0 && m_leg.circle == 0.0 && hasLine) {
        const AxGroundOffset after = AxOffsetBetween(m_leg.to, *m_leg.next);
        const double bend = after.Length() > 0.5 ? std::fabs(AxTurnOf(after.Course() - course)) : PI;
        speedThere = speed * std::clamp(1.0 - bend / (PI / 4.0), 0.0, 1.0);
    }
    const double offHeight = std::fabs(m_leg.to.altitude - body.place.altitude);
    const bool isNear = distance <= m_leg.acceptance && offHeight <= m_leg.heightTolerance;
    if (isNear && (speedThere > 0.5 ? toEnd.along <= 0.0 : body.motion.Length() < 0.5 || m_isThere))
        m_isThere = true;
    if (hasLine && toEnd.along <= 0.0 && !isNear)
        m_isDirect = true;

    AxSimulatedDemand demand;
    // Slower where its climb or descent would not keep up with the line.
    double fastest = speed;
    if (!m_leg.climbsFirst && slope > 1e-6)
        fastest = std::min(fastest, aircraft.climb / slope);
    if (!m_leg.climbsFirst && slope < -1e-6)
        fastest = std::min(fastest, -aircraft.descent / slope);
    demand.up = towardsHeight(body, aircraft, hasLine ? 1.0 - toEnd.along / length : 1.0, slope,
                              body.motion.Length());
    const double left = std::max(hasLine ? toEnd.along : distance, 0.0);
    const double forward =
        std::min({fastest, std::sqrt(speedThere * speedThere + 2.0 * braking * left), speedThere + left});
    const double aside = hasLine ? std::clamp(0.8 * toEnd.right, -4.0, 4.0) : 0.0;
    demand.course = course + std::atan2(aside, std::max(forward, 1e-3));
    demand.speed = std::hypot(forward, aside);
    if (m_leg.yaw)
        demand.yaw = m_leg.yaw;
    else if (distance > 2.0)
        demand.yaw = course;
    if (m_isThere) {
        m_isDone = m_leg.circle == 0.0 && m_waited >= m_leg.hold;
        m_waited += seconds;
    }
    return demand;
}

AxSimulatedDemand AxSimulatedGuide::round(const AxSimulatedBody& body, const AxSimulatedAircraft& aircraft,
                                          double speed, bool isHovering, double seconds)
{
    const double side = m_leg.circle < 0.0 ? -1.0 : 1.0;
    const double margin = 1.0 + AxMotionOf(aircraft.wind).Length() / std::max(speed, 1.0);
    const double radius = isHovering ? std::fabs(m_leg.circle)
                                     : std::max(std::fabs(m_leg.circle), 1.1 * margin * aircraft.turnRadius);
    const AxGroundOffset out = AxOffsetBetween(m_leg.to, body.place);
    const double bearing = out.Course();
    if (m_bearing && out.Length() > 0.5 * radius)
        m_turned += side * AxTurnOf(bearing - *m_bearing);
    m_bearing = bearing;
    m_waited += seconds;
    m_isDone = m_turned >= m_leg.turns * 2.0 * PI && m_waited >= m_leg.seconds;

    AxSimulatedDemand demand;
    demand.speed = isHovering ? std::min(speed, std::sqrt(braking * radius)) : speed;
    const double inwards = std::atan((out.Length() - radius) / (0.5 * radius));
    demand.course = bearing + side * (0.5 * PI + inwards);
    demand.up = towardsHeight(body, aircraft, 1.0, 0.0, 0.0);
    demand.yaw = bearing + PI; // looks at what it circles
    return demand;
}

#include <AxData/planner/AxGroundSpeed.h>
#include <AxData/planner/AxHomeLegs.h>
#include <AxData/planner/AxPlanFlights.h>
#include <AxData/planner/AxWayCheck.h>

#include <algorithm>
#include <cmath>
#include <limits>
#include <tuple>

namespace {
using Role = AxPlanPoint::Role;

/// Two ends of a flight that lie closer together, metres, are no progress.
constexpr double leastProgress = 1.0;
/// By which coordinates are off that were in degrees meanwhile, metres.
constexpr double rounding = 0.01;

class Splitter
{
    struct Place
    {
        CAxPoint2D at;
        double altitude = 0.0;
        double along = 0.0; // metres over ground from the start of the route
    };

public:
    Splitter(const AxPlanRequest& asked, const AxPlanResult& planned)
        : request(asked), plan(planned), plane(asked.outline), zones(request, plane), homeLegs(request, zones)
    {
        // Each flight has its own ways from and to home.
        for (const AxPlanPoint& point : plan.points)
            if (point.role != Role::HomeLeg)
                points.push_back(point);
        places.reserve(points.size());
        for (const AxPlanPoint& point : points) {
            Place place = PlaceOf(point);
            if (!places.empty())
                place.along = places.back().along + AxApart(places.back().at, place.at);
            places.push_back(place);
        }
        if (request.home)
            home = {plane.ToPlane(*request.home), request.homeAltitude};
    }

    std::vector<AxPlanFlight> Split()
    {
        const bool isThree = request.kind == AxPlanRequest::Kind::Area && request.isThreeDirections;
        const std::size_t parts = isThree && places.size() % 3 == 0 ? 3 : 1;
        for (std::size_t part = 0; part < parts && !isLost; ++part)
            SplitPart(places.size() * part / parts, places.size() * (part + 1) / parts);
        if (isLost)
            return {};
        GivePhotos();
        AddWaysHome();
        for (AxPlanFlight& flight : flights)
            Check(flight);
        return isLost ? std::vector<AxPlanFlight>() : std::move(flights);
    }

private:
    struct Progress
    {
        std::size_t at = 0;      // the first point that cannot be reached
        Place place;             // the last place that can, and
        double flown = 0.0;      // seconds up to there
        std::size_t whole = 0;   // all points before it end with a pass that is flown whole, and
        double wholeFlown = 0.0; // seconds up to there
    };

    Place PlaceOf(const AxPlanPoint& point) const
    {
        return {plane.ToPlane(QPointF(point.longitude, point.latitude)), point.altitude};
    }

    /// The points from `next` to before `end`.
    void SplitPart(std::size_t next, std::size_t end)
    {
        bool isBegunAt = true; // the flight begins at the very point that is to be flown to next
        AxPlanPoint begin = points[next];
        Place beginPlace = places[next];
        while (next < end && !isLost) {
            AxPlanFlight flight;
            if (!isBegunAt)
                flight.points.push_back(begin);
            const double away = FromHome(beginPlace);
            Progress made = Advance(next, end, beginPlace, away, false);
            if (made.whole > next) {
                flight.points.insert(flight.points.end(), Point(next), Point(made.whole));
                flight.seconds = made.wholeFlown + ToHome(places[made.whole - 1]);
                next = made.whole;
                isBegunAt = true;
                ends.push_back(places[next - 1].along);
                if (next < end) {
                    begin = points[next];
                    beginPlace = places[next];
                }
            } else {
                made = Advance(next, end, beginPlace, away, true);
                const auto& [at, place, flown] = std::tie(made.at, made.place, made.flown);
                // The one pass is too long: as far along the leg as the way home allows.
                const double share = ShareOf(place, places[at], request.aircraft.endurance - flown);
                const Place cut = On(place, places[at], share);
                if (AxApart(beginPlace.at, cut.at) < leastProgress) {
                    isLost = true;
                    return;
                }
                flight.points.insert(flight.points.end(), Point(next), Point(at));
                const AxPlanPoint& before = at > next ? points[at - 1] : begin;
                begin = Between(before, points[at], cut);
                beginPlace = cut;
                isBegunAt = false;
                flight.points.push_back(begin);
                flight.seconds = flown + Seconds(place, cut) + ToHome(cut);
                next = at;
                ends.push_back(cut.along);
            }
            flights.push_back(std::move(flight));
        }
    }

    /// How far a flight comes from `begin`, `away` seconds from home, by way of the points from `next` to
    /// before `end`.
    /// The ends of passes leave time for the way home; the last place does so only if isExact, because ways
    /// round zones take long to find.
    Progress Advance(std::size_t next, std::size_t end, const Place& begin, double away, bool isExact)
    {
        Progress made{next, begin, away, next, away};
        std::vector<std::pair<std::size_t, double>> passEnds; // and the seconds up to there
        for (; made.at < end; ++made.at) {
            const Place& to = places[made.at];
            const double leg = Seconds(made.place, to);
            const double back = isExact ? ToHome(to) : SecondsHome({}, to, home);
            if (made.flown + leg + back > request.aircraft.endurance)
                break;
            made.flown += leg;
            made.place = to;
            if ((points[made.at].role == Role::PassEnd && !IsAtHole(made.at)) || made.at + 1 == end)
                passEnds.emplace_back(made.at, made.flown);
        }
        while (!passEnds.empty() &&
               passEnds.back().second + ToHome(places[passEnds.back().first]) > request.aircraft.endurance)
            passEnds.pop_back();
        if (!passEnds.empty()) {
            made.whole = passEnds.back().first + 1;
            made.wholeFlown = passEnds.back().second;
        }
        return made;
    }

    /// Whether the pass goes on behind a hole, where a flight from home could not begin with its lead-in.
    bool IsAtHole(std::size_t passEnd) const
    {
        return request.aircraft.leadIn > 0.0 && passEnd + 1 < points.size() &&
               points[passEnd + 1].role == Role::PassStart;
    }

    std::vector<AxPlanPoint>::const_iterator Point(std::size_t index) const
    {
        return points.begin() + static_cast<std::ptrdiff_t>(index);
    }
    static Place On(const Place& from, const Place& to, double share)
    {
        return {AxBetween(from.at, to.at, share), from.altitude + share * (to.altitude - from.altitude),
                from.along + share * (to.along - from.along)};
    }
    double Seconds(const Place& from, const Place& to) const
    {
        return std::hypot(AxApart(from.at, to.at), to.altitude - from.altitude) /
               AxGroundSpeed(request, from.at, to.at);
    }
    AxPlanLine WayBetween(const Place& from, const Place& to)
    {
        AxHomeLegs::Way way = homeLegs.Between(from.at, to.at);
        isLost = isLost || !way.isFound;
        return std::move(way.corners);
    }
    double FromHome(const Place& place)
    {
        return request.home ? SecondsHome(WayBetween(home, place), home, place) : 0.0;
    }
    double ToHome(const Place& place)
    {
        return request.home ? SecondsHome(WayBetween(place, home), place, home) : 0.0;
    }
    /// Level, with the climb or the fall over home.
    double SecondsHome(const AxPlanLine& corners, const Place& from, const Place& to) const
    {
        if (!request.home)
            return 0.0;
        double seconds = std::abs(to.altitude - from.altitude) / request.aircraft.speed;
        CAxPoint2D last = from.at;
        const auto fly = [&](const CAxPoint2D& next) {
            seconds += AxApart(last, next) / AxGroundSpeed(request, last, next);
            last = next;
        };
        std::for_each(corners.begin(), corners.end(), fly);
        fly(to.at);
        return seconds;
    }

    void AddWaysHome()
    {
        if (!request.home || !homeLegs.MayBend())
            return;
        for (AxPlanFlight& flight : flights) {
            const auto along = [&](const AxPlanPoint& end, bool isBack) {
                const Place place = PlaceOf(end);
                std::vector<AxPlanPoint> corners;
                for (const CAxPoint2D& corner : isBack ? WayBetween(place, home) : WayBetween(home, place)) {
                    const QPointF at = plane.ToLngLat(corner);
                    corners.push_back({at.x(), at.y(), end.altitude, Role::HomeLeg, -1});
                }
                return corners;
            };
            const std::vector<AxPlanPoint> there = along(flight.points.front(), false);
            const std::vector<AxPlanPoint> back = along(flight.points.back(), true);
            flight.points.insert(flight.points.begin(), there.begin(), there.end());
            flight.points.insert(flight.points.end(), back.begin(), back.end());
        }
    }

    /// How far a leg can be flown in so many seconds, with the way home from there.
    double ShareOf(const Place& from, const Place& to, double seconds)
    {
        double low = 0.0;
        double high = 1.0;
        for (int i = 0; i < 50; ++i) {
            const double share = 0.5 * (low + high);
            const Place end = On(from, to, share);
            (Seconds(from, end) + ToHome(end) <= seconds ? low : high) = share;
        }
        return low;
    }

    AxPlanPoint Between(const AxPlanPoint& before, const AxPlanPoint& after, const Place& place) const
    {
        const QPointF lngLat = plane.ToLngLat(place.at);
        const bool isOnPass = before.pass >= 0 && before.pass == after.pass;
        return {lngLat.x(), lngLat.y(), place.altitude, isOnPass ? Role::OnPass : Role::Turn,
                isOnPass ? before.pass : -1};
    }

    /// Each to the flight that comes by its place.
    void GivePhotos()
    {
        std::size_t flight = 0;
        std::size_t leg = 0; // that the photo before was taken on
        for (const AxPlanPhoto& photo : plan.photos) {
            const double along = AlongOf(photo, leg);
            while (flight + 1 < flights.size() && along > ends[flight] + rounding)
                ++flight;
            flights[flight].photos.push_back(photo);
        }
    }

    /// Metres from the start of the route to a photo, whose leg is the one given or a later one: a pass may
    /// come by the same place twice, and a circle begins where it ends.
    double AlongOf(const AxPlanPhoto& photo, std::size_t& leg) const
    {
        const CAxPoint2D at = plane.ToPlane(QPointF(photo.longitude, photo.latitude));
        while (leg + 1 < points.size() && points[leg].pass < photo.pass)
            ++leg;
        double along = places[leg].along;
        double least = std::numeric_limits<double>::max();
        for (std::size_t i = leg; i + 1 < points.size() && points[i].pass == photo.pass; ++i) {
            const CAxPoint2D from = places[i].at;
            const CAxPoint2D to = places[i + 1].at;
            const double length = AxApart(from, to);
            const double ahead =
                (at.x() - from.x()) * (to.x() - from.x()) + (at.y() - from.y()) * (to.y() - from.y());
            const double share = length > 0.0 ? std::clamp(ahead / (length * length), 0.0, 1.0) : 0.0;
            const double away = AxApart(at, AxBetween(from, to, share));
            if (away < least) {
                least = away;
                along = places[i].along + share * length;
                leg = i;
            }
            if (away < rounding)
                break;
        }
        return along;
    }

    void Check(AxPlanFlight& flight)
    {
        std::vector<AxRoutePlace> way;
        const auto add = [&way](const Place& place, Role role, int pass) {
            const double along = way.empty() ? 0.0 : way.back().along + AxApart(way.back().place, place.at);
            way.push_back({place.at, role, pass, along, place.altitude});
        };
        if (request.home)
            add({home.at, flight.points.front().altitude}, Role::HomeLeg, -1);
        for (const AxPlanPoint& point : flight.points)
            add(PlaceOf(point), point.role, point.pass);
        if (request.home)
            add({home.at, flight.points.back().altitude}, Role::HomeLeg, -1);
        flight.warnings = AxCheckWay(request, plane, zones, way).warnings;
    }

    const AxPlanRequest& request;
    const AxPlanResult& plan;
    AxPlanPlane plane;
    AxZonesAround zones;
    AxHomeLegs homeLegs;
    std::vector<AxPlanPoint> points; // of the route without its ways from and to home
    std::vector<Place> places;       // of these points
    Place home;
    std::vector<AxPlanFlight> flights;
    std::vector<double> ends; // metres along the route, of the flights
    bool isLost = false;      // for some place no way from or to home was found, or it is too far
};
} // namespace

std::vector<AxPlanFlight> AxSplitIntoFlights(const AxPlanRequest& request, const AxPlanResult& plan)
{
    return plan.IsPlanned() ? Splitter(request, plan).Split() : std::vector<AxPlanFlight>();
}

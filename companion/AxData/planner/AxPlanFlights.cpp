#include <AxData/planner/AxGroundSpeed.h>
#include <AxData/planner/AxHomeLegs.h>
#include <AxData/planner/AxPlanFlights.h>

#include <algorithm>
#include <tuple>

namespace {
using Role = AxPlanPoint::Role;

/// Two ends of a flight that lie closer together, metres, are no progress.
constexpr double leastProgress = 1.0;

class Splitter
{
    struct Place
    {
        CAxPoint2D at;
        double altitude = 0.0;
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
        for (const AxPlanPoint& point : points)
            places.push_back({plane.ToPlane(QPointF(point.longitude, point.latitude)), point.altitude});
        if (request.home)
            home = {plane.ToPlane(*request.home), request.homeAltitude};
    }

    std::vector<AxPlanFlight> Split()
    {
        std::vector<AxPlanFlight> flights;
        std::size_t next = 0;  // the first point that is still to be flown to
        bool isBegunAt = true; // the flight begins at that very point
        AxPlanPoint begin = points.front();
        Place beginPlace = places.front();
        while (next < places.size() && !isLost) {
            AxPlanFlight flight;
            if (!isBegunAt)
                flight.points.push_back(begin);
            const double away = FromHome(beginPlace);
            Progress made = Advance(next, beginPlace, away, false);
            if (made.whole > next) {
                flight.points.insert(flight.points.end(), Point(next), Point(made.whole));
                flight.seconds = made.wholeFlown + ToHome(places[made.whole - 1]);
                next = made.whole;
                isBegunAt = true;
                if (next < places.size()) {
                    begin = points[next];
                    beginPlace = places[next];
                }
            } else {
                made = Advance(next, beginPlace, away, true);
                const auto& [at, place, flown] = std::tie(made.at, made.place, made.flown);
                // The one pass is too long: as far along the leg as the way home allows.
                const double share = ShareOf(place, places[at], request.aircraft.endurance - flown);
                const Place end = On(place, places[at], share);
                if (AxApart(beginPlace.at, end.at) < leastProgress)
                    return {};
                flight.points.insert(flight.points.end(), Point(next), Point(at));
                const AxPlanPoint& before = at > next ? points[at - 1] : begin;
                begin = Between(before, points[at], end);
                beginPlace = end;
                isBegunAt = false;
                flight.points.push_back(begin);
                flight.seconds = flown + Seconds(place, end) + ToHome(end);
                next = at;
            }
            flights.push_back(std::move(flight));
        }
        GivePhotos(flights);
        AddWaysHome(flights);
        return isLost ? std::vector<AxPlanFlight>() : flights;
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

    /// How far a flight comes from `begin`, `away` seconds from home, by way of the points from `next` on.
    /// The ends of passes leave time for the way home; the last place does so only if isExact, because ways
    /// round zones take long to find.
    Progress Advance(std::size_t next, const Place& begin, double away, bool isExact)
    {
        Progress made{next, begin, away, next, away};
        std::vector<std::pair<std::size_t, double>> ends; // of passes, and the seconds up to there
        for (; made.at < places.size(); ++made.at) {
            const Place& to = places[made.at];
            const double leg = Seconds(made.place, to);
            const double back = isExact ? ToHome(to) : SecondsHome({}, to, home);
            if (made.flown + leg + back > request.aircraft.endurance)
                break;
            made.flown += leg;
            made.place = to;
            if (points[made.at].role == Role::PassEnd || made.at + 1 == places.size())
                ends.emplace_back(made.at, made.flown);
        }
        while (!ends.empty() &&
               ends.back().second + ToHome(places[ends.back().first]) > request.aircraft.endurance)
            ends.pop_back();
        if (!ends.empty()) {
            made.whole = ends.back().first + 1;
            made.wholeFlown = ends.back().second;
        }
        return made;
    }

    std::vector<AxPlanPoint>::const_iterator Point(std::size_t index) const
    {
        return points.begin() + static_cast<std::ptrdiff_t>(index);
    }
    static Place On(const Place& from, const Place& to, double share)
    {
        return {AxBetween(from.at, to.at, share), from.altitude + share * (to.altitude - from.altitude)};
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

    void AddWaysHome(std::vector<AxPlanFlight>& flights)
    {
        if (!request.home || !homeLegs.MayBend())
            return;
        for (AxPlanFlight& flight : flights) {
            const auto along = [&](const AxPlanPoint& end, bool isBack) {
                const Place place{plane.ToPlane(QPointF(end.longitude, end.latitude)), end.altitude};
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

    /// In their order: those of a pass that two flights share go by the place where the first one ends.
    void GivePhotos(std::vector<AxPlanFlight>& flights) const
    {
        std::size_t photo = 0;
        for (std::size_t i = 0; i < flights.size(); ++i) {
            const AxPlanPoint& end = flights[i].points.back();
            const bool isCut = i + 1 < flights.size() && end.role == Role::OnPass;
            const CAxPoint2D endPlace = plane.ToPlane(QPointF(end.longitude, end.latitude));
            int lastPass = -1;
            for (const AxPlanPoint& point : flights[i].points)
                lastPass = std::max(lastPass, point.pass);
            for (; photo < plan.photos.size(); ++photo) {
                const AxPlanPhoto& taken = plan.photos[photo];
                if (i + 1 < flights.size() &&
                    (taken.pass > lastPass || (isCut && taken.pass == lastPass && IsBeyond(taken, endPlace))))
                    break;
                flights[i].photos.push_back(taken);
            }
        }
    }

    bool IsBeyond(const AxPlanPhoto& photo, const CAxPoint2D& end) const
    {
        const CAxPoint2D at = plane.ToPlane(QPointF(photo.longitude, photo.latitude));
        const double heading = DegreeToRadians(photo.heading);
        return (at.x() - end.x()) * std::sin(heading) + (at.y() - end.y()) * std::cos(heading) > 0.0;
    }

    const AxPlanRequest& request;
    const AxPlanResult& plan;
    AxPlanPlane plane;
    AxZonesAround zones;
    AxHomeLegs homeLegs;
    std::vector<AxPlanPoint> points; // of the route without its ways from and to home
    std::vector<Place> places;       // of these points
    Place home;
    bool isLost = false; // for some place no way from or to home was found
};
} // namespace

std::vector<AxPlanFlight> AxSplitIntoFlights(const AxPlanRequest& request, const AxPlanResult& plan)
{
    return plan.IsPlanned() ? Splitter(request, plan).Split() : std::vector<AxPlanFlight>();
}

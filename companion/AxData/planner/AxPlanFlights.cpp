#include <AxData/planner/AxGroundSpeed.h>
#include <AxData/planner/AxPlanFlights.h>

#include <algorithm>

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
        : request(asked), plan(planned), plane(asked.outline)
    {
        places.reserve(plan.points.size());
        for (const AxPlanPoint& point : plan.points)
            places.push_back({plane.ToPlane(QPointF(point.longitude, point.latitude)), point.altitude});
        if (request.home)
            home = {plane.ToPlane(*request.home), request.homeAltitude};
    }

    std::vector<AxPlanFlight> Split()
    {
        std::vector<AxPlanFlight> flights;
        std::size_t next = 0;  // the first point that is still to be flown to
        bool isBegunAt = true; // the flight begins at that very point
        AxPlanPoint begin = plan.points.front();
        Place beginPlace = places.front();
        while (next < places.size()) {
            AxPlanFlight flight;
            if (!isBegunAt)
                flight.points.push_back(begin);
            double flown = FromHome(beginPlace);
            std::size_t whole = next; // all before it end with a pass that is flown whole
            double wholeFlown = flown;
            std::size_t at = next;
            Place place = beginPlace;
            double left = 0.0; // seconds for the leg that is too long
            for (; at < places.size(); ++at) {
                const double leg = Seconds(place, places[at]);
                left = request.aircraft.endurance - flown;
                if (flown + leg + ToHome(places[at]) > request.aircraft.endurance)
                    break;
                flown += leg;
                place = places[at];
                if (plan.points[at].role == Role::PassEnd || at + 1 == places.size()) {
                    whole = at + 1;
                    wholeFlown = flown;
                }
            }
            if (whole > next) {
                flight.points.insert(flight.points.end(), Point(next), Point(whole));
                flight.seconds = wholeFlown + ToHome(places[whole - 1]);
                next = whole;
                isBegunAt = true;
                if (next < places.size()) {
                    begin = plan.points[next];
                    beginPlace = places[next];
                }
            } else {
                // The one pass is too long: as far along the leg as the way home allows.
                const double share = ShareOf(place, places[at], left);
                const Place end = On(place, places[at], share);
                if (AxApart(beginPlace.at, end.at) < leastProgress)
                    return {};
                flight.points.insert(flight.points.end(), Point(next), Point(at));
                const AxPlanPoint& before = at > next ? plan.points[at - 1] : begin;
                begin = Between(before, plan.points[at], end);
                beginPlace = end;
                isBegunAt = false;
                flight.points.push_back(begin);
                flight.seconds = flown + Seconds(place, end) + ToHome(end);
                next = at;
            }
            flights.push_back(std::move(flight));
        }
        GivePhotos(flights);
        return flights;
    }

private:
    std::vector<AxPlanPoint>::const_iterator Point(std::size_t index) const
    {
        return plan.points.begin() + static_cast<std::ptrdiff_t>(index);
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
    double FromHome(const Place& place) const { return request.home ? Seconds(home, place) : 0.0; }
    double ToHome(const Place& place) const { return request.home ? Seconds(place, home) : 0.0; }

    /// How far a leg can be flown in so many seconds, with the way home from there.
    double ShareOf(const Place& from, const Place& to, double seconds) const
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
    std::vector<Place> places; // of the route's points
    Place home;
};
} // namespace

std::vector<AxPlanFlight> AxSplitIntoFlights(const AxPlanRequest& request, const AxPlanResult& plan)
{
    return plan.IsPlanned() ? Splitter(request, plan).Split() : std::vector<AxPlanFlight>();
}

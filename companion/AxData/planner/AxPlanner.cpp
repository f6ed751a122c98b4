#include <AxAlgorthm/AxConstants.h>
#include <AxAlgorthm/AxCoordinate.h>
#include <AxAlgorthm/AxMath.h>
#include <AxAlgorthm/AxPlaneGeometry.h>
#include <AxData/planner/AxGroundSpeed.h>
#include <AxData/planner/AxHomeLegs.h>
#include <AxData/planner/AxPlanCheck.h>
#include <AxData/planner/AxPlanner.h>
#include <AxData/planner/AxPlanPasses.h>
#include <AxData/planner/AxTurn.h>
#include <AxData/planner/AxWayCheck.h>

#include <QCoreApplication>

#include <algorithm>
#include <array>
#include <cmath>
#include <limits>

namespace {
using Role = AxPlanPoint::Role;
using Route = std::vector<AxRoutePlace>;

/// More photos than that are no flight of any drone, and fill the memory.
constexpr double mostPhotos = 5e6;
/// Beside one line; a strip of more is an area.
constexpr double mostStripPasses = 1000.0;

/// At the first or the last point of a pass, as it is flown.
AxPlanPose PoseAt(const AxPlanLine& pass, bool isStart, double ahead)
{
    const CAxPoint2D& at = isStart ? pass.front() : pass.back();
    const CAxPoint2D& from = isStart ? pass.front() : pass[pass.size() - 2];
    const CAxPoint2D& to = isStart ? pass[1] : pass.back();
    const double course = std::atan2(to.y() - from.y(), to.x() - from.x());
    return {{at.x() + ahead * std::cos(course), at.y() + ahead * std::sin(course)}, course};
}

Route RouteOver(const std::vector<std::vector<AxPlanLine>>& passes, const AxPlanAircraft& aircraft)
{
    Route route;
    const auto add = [&route](const CAxPoint2D& place, Role role, int pass) {
        const double along = route.empty() ? 0.0 : route.back().along + AxApart(route.back().place, place);
        route.push_back({place, role, pass, along, 0.0});
    };
    int pass = 0;
    for (std::size_t i = 0; i < passes.size(); ++i) {
        const AxPlanPose begins = PoseAt(passes[i].front(), true, -aircraft.leadIn);
        if (i > 0)
            for (const CAxPoint2D& place : AxTurnBetween(PoseAt(passes[i - 1].back(), false, aircraft.leadIn),
                                                         begins, aircraft.turnRadius))
                add(place, Role::Turn, -1);
        if (aircraft.leadIn > 0.0)
            add(begins.place, Role::LeadIn, -1);
        for (const AxPlanLine& line : passes[i]) {
            for (std::size_t k = 0; k < line.size(); ++k)
                add(line[k],
                    k == 0                ? Role::PassStart
                    : k + 1 < line.size() ? Role::OnPass
                                          : Role::PassEnd,
                    pass);
            ++pass;
        }
        if (aircraft.leadIn > 0.0)
            add(PoseAt(passes[i].back(), false, aircraft.leadIn).place, Role::Turn, -1);
    }
    return route;
}

/// Adds places on its longest legs until there are so many; what is flown stays the same.
void FillUp(Route& route, std::size_t count)
{
    while (route.size() < count && route.size() > 1) {
        std::size_t longest = 0;
        for (std::size_t i = 0; i + 1 < route.size(); ++i)
            if (route[i + 1].along - route[i].along > route[longest + 1].along - route[longest].along)
                longest = i;
        AxRoutePlace middle = route[longest];
        const AxRoutePlace& next = route[longest + 1];
        middle.role = middle.pass >= 0 && middle.pass == next.pass ? Role::OnPass : Role::Turn;
        middle.pass = middle.role == Role::OnPass ? middle.pass : -1;
        middle.place = AxBetween(middle.place, next.place, 0.5);
        middle.along = 0.5 * (middle.along + next.along);
        middle.altitude = 0.5 * (middle.altitude + next.altitude);
        route.insert(route.begin() + static_cast<std::ptrdiff_t>(longest) + 1, middle);
    }
}

class Planner
{
public:
    explicit Planner(const AxPlanRequest& asked)
        : request(asked), plane(asked.outline), zones(request, plane), homeLegs(request, zones),
          height(AxPlannedHeight(asked))
    {
    }

    AxPlanResult Plan()
    {
        const AxPlanCamera& camera = request.camera;
        const double swath = camera.WidthFrom(height);
        const double spacing = swath * (1.0 - request.sideOverlap);
        result.figures.photoDistance = camera.LengthFrom(height) * (1.0 - request.forwardOverlap);
        const bool isArea = request.kind == AxPlanRequest::Kind::Area;
        if (isArea && RingArea(request.outline) > mostPhotos * spacing * result.figures.photoDistance)
            return Refuse(QT_TRANSLATE_NOOP("AxPlanner", "The route has too many photos."));
        result.heading = !isArea           ? 0.0
                         : request.heading ? std::fmod(*request.heading + 720.0, 360.0)
                                           : AxBestHeading(request, plane, spacing);
        if (const char* fault = FaultOfStrip(spacing))
            return Refuse(fault);
        std::vector<Route> sets;
        const int count = !isArea ? 1 : request.isThreeDirections ? 3 : request.isCrossed ? 2 : 1;
        std::vector<std::vector<AxPlanLine>> crossed;
        for (int i = 0; i < count; ++i) {
            const AxPassSet set = AxPassesOf(request, plane, spacing,
                                             result.heading + i * (count == 3 ? 60.0 : 90.0), request.entry);
            if (set.passes.empty())
                return Refuse(QT_TRANSLATE_NOOP("AxPlanner", "There is nothing to fly over."));
            if (i == 0) {
                result.figures.spacing = set.spacing;
                result.entries = EntriesOf(set);
            }
            if (count != 3) {
                crossed.insert(crossed.end(), set.passes.begin(), set.passes.end());
            } else {
                sets.push_back(RouteOver(set.passes, request.aircraft));
                result.figures.turns += static_cast<int>(set.passes.size()) - 1;
                result.entriesOfDirections.push_back(EntriesOf(set));
            }
        }
        if (count != 3) {
            sets.push_back(RouteOver(crossed, request.aircraft));
            result.figures.turns = static_cast<int>(crossed.size()) - 1;
        } else if (request.entry >= 2)
            std::reverse(sets.begin(), sets.end());
        for (Route& set : sets) {
            const QString fault = AxSetAltitudes(request, plane, height, swath, set);
            if (!fault.isEmpty()) {
                AxPlanResult refused;
                refused.fault = fault;
                return refused;
            }
        }
        std::size_t longest = 0;
        for (const Route& set : sets)
            longest = std::max(longest, set.size());
        for (Route& set : sets)
            FillUp(set, longest);
        for (const Route& set : sets)
            if (!Take(set))
                return Refuse(QT_TRANSLATE_NOOP("AxPlanner", "The route has too many photos."));
        Finish(spacing);
        return std::move(result);
    }

private:
    static AxPlanResult Refuse(const char* why)
    {
        AxPlanResult refused;
        refused.fault = QCoreApplication::translate("AxPlanner", why);
        return refused;
    }

    std::array<AxPlanPoint, 4> EntriesOf(const AxPassSet& set) const
    {
        std::array<AxPlanPoint, 4> entries;
        for (std::size_t i = 0; i < 4; ++i) {
            const QPointF place = plane.ToLngLat(set.entries[i]);
            entries[i] = {place.x(), place.y(), request.meanGround + height, Role::PassStart, -1};
        }
        return entries;
    }

    /// Why there are too many passes to lay, null where there are not: each takes its time.
    const char* FaultOfStrip(double spacing) const
    {
        if (request.kind != AxPlanRequest::Kind::Strip)
            return nullptr;
        const double lines = request.passes > 0
                                 ? request.passes
                                 : std::ceil((request.leftWidth + request.rightWidth) / spacing - 1e-9);
        if (lines > mostStripPasses)
            return QT_TRANSLATE_NOOP("AxPlanner", "The strip has too many passes.");
        const AxPlanLine centre = plane.ToPlane(request.outline);
        double length = 0.0;
        for (std::size_t i = 1; i < centre.size(); ++i)
            length += AxApart(centre[i - 1], centre[i]);
        return lines * length > mostPhotos * result.figures.photoDistance
                   ? QT_TRANSLATE_NOOP("AxPlanner", "The route has too many photos.")
                   : nullptr;
    }

    /// The route from home and back, if there is a home.
    Route WithHomeLegs(const Route& route)
    {
        if (!request.home || route.empty())
            return route;
        const CAxPoint2D home = plane.ToPlane(*request.home);
        Route flown;
        const auto add = [&flown](AxRoutePlace place) {
            place.along = flown.empty() ? 0.0 : flown.back().along + AxApart(flown.back().place, place.place);
            flown.push_back(place);
        };
        const auto addLeg = [&](const AxPlanLine& places, double altitude) {
            for (const CAxPoint2D& place : places)
                add({place, Role::HomeLeg, -1, 0.0, altitude});
        };
        add({home, Role::HomeLeg, -1, 0.0, route.front().altitude});
        addLeg(WayOf(homeLegs.Between(home, route.front().place), route.front()), route.front().altitude);
        std::for_each(route.begin(), route.end(), add);
        addLeg(WayOf(homeLegs.Between(route.back().place, home), route.back()), route.back().altitude);
        add({home, Role::HomeLeg, -1, 0.0, route.back().altitude});
        return flown;
    }

    AxPlanLine WayOf(const AxHomeLegs::Way& way, const AxRoutePlace& end)
    {
        if (!way.isFound)
            result.warnings.push_back({AxPlanWarning::Kind::NoWayRound, plane.ToLngLat(end.place)});
        return way.corners;
    }

    bool Take(const Route& passes)
    {
        const Route route = WithHomeLegs(passes);
        AxPlanFigures& figures = result.figures;
        const int passesBefore = figures.passes;
        for (std::size_t i = 0; i < route.size(); ++i) {
            const QPointF place = plane.ToLngLat(route[i].place);
            const int pass = route[i].pass < 0 ? -1 : passesBefore + route[i].pass;
            const bool isHome = request.home && (i == 0 || i + 1 == route.size());
            if (!isHome)
                result.points.push_back({place.x(), place.y(), route[i].altitude, route[i].role, pass});
            figures.passes = std::max(figures.passes, pass + 1);
            if (i > 0)
                AddLeg(route[i - 1], route[i]);
        }
        if (request.home)
            for (const AxRoutePlace* end : {&route.front(), &route.back()}) {
                const double climb = std::abs(end->altitude - request.homeAltitude);
                figures.length += climb;
                figures.seconds += climb / request.aircraft.speed;
            }
        const AxAboveGround above = AxCheckWay(request, plane, zones, route);
        result.warnings.insert(result.warnings.end(), above.warnings.begin(), above.warnings.end());
        if (above.looks > 0) {
            figures.leastHeight = looks == 0 ? above.least : std::min(figures.leastHeight, above.least);
            figures.meanHeight += (above.mean - figures.meanHeight) * above.looks / (looks + above.looks);
            looks += above.looks;
        }
        if (above.passLooks > 0) {
            const double least = request.camera.SampleFrom(above.passLeast);
            const double mean = request.camera.SampleFrom(above.passMean);
            figures.sampleLeast = passLooks == 0 ? least : std::min(figures.sampleLeast, least);
            figures.sampleMean +=
                (mean - figures.sampleMean) * above.passLooks / (passLooks + above.passLooks);
            passLooks += above.passLooks;
        }
        return TakePhotos(route, passesBefore);
    }

    void AddLeg(const AxRoutePlace& from, const AxRoutePlace& to)
    {
        const double ground = AxApart(from.place, to.place);
        const double length = std::hypot(ground, to.altitude - from.altitude);
        const double speed = AxGroundSpeed(request, from.place, to.place);
        result.figures.length += length;
        result.figures.seconds += length / speed;
        if (from.pass >= 0 && from.pass == to.pass)
            fastest = std::max(fastest, speed);
    }

    bool TakePhotos(const Route& route, int passesBefore)
    {
        const double apart = result.figures.photoDistance;
        for (std::size_t i = 0; i < route.size();) {
            std::size_t end = i + 1;
            while (end < route.size() && route[end].pass == route[i].pass)
                ++end;
            if (route[i].pass >= 0) {
                const double length = route[end - 1].along - route[i].along;
                if (static_cast<double>(result.photos.size()) + length / apart > mostPhotos)
                    return false;
                const int steps = static_cast<int>(std::ceil(length / apart - 1e-9));
                std::size_t leg = i;
                for (int step = 0; step <= steps; ++step) {
                    const double along = route[i].along + (steps > 0 ? length * step / steps : 0.0);
                    while (leg + 2 < end && route[leg + 1].along <= along)
                        ++leg;
                    AddPhoto(route[leg], route[std::min(leg + 1, end - 1)], along,
                             passesBefore + route[i].pass);
                }
            }
            i = end;
        }
        return true;
    }

    void AddPhoto(const AxRoutePlace& from, const AxRoutePlace& to, double along, int pass)
    {
        const double run = to.along - from.along;
        const double share = run > 0.0 ? (along - from.along) / run : 0.0;
        const QPointF place = plane.ToLngLat(AxBetween(from.place, to.place, share));
        const double heading =
            RadiansToDegree(std::atan2(to.place.x() - from.place.x(), to.place.y() - from.place.y()));
        result.photos.push_back({place.x(), place.y(), from.altitude + share * (to.altitude - from.altitude),
                                 heading < 0.0 ? heading + 360.0 : heading, pass});
    }

    void Finish(double spacing)
    {
        using Kind = AxPlanWarning::Kind;
        AxPlanFigures& figures = result.figures;
        figures.photos = static_cast<int>(result.photos.size());
        figures.height = height;
        figures.sample = request.camera.SampleFrom(height);
        figures.interval = fastest > 0.0 ? figures.photoDistance / fastest : 0.0;
        figures.area = AreaAsked();
        const QPointF start(result.photos.front().longitude, result.photos.front().latitude);
        if (request.goesRoundZones && request.home && !request.zones)
            result.warnings.push_back({Kind::UnknownZones, *request.home});
        if (figures.interval < request.camera.shortestInterval && figures.photos > 1)
            result.warnings.push_back(
                {Kind::Interval, start, figures.interval, request.camera.shortestInterval});
        if (figures.spacing > spacing * (1.0 + 1e-9))
            result.warnings.push_back({Kind::Overlap, start,
                                       1.0 - figures.spacing / request.camera.WidthFrom(height),
                                       request.sideOverlap});
    }

    double AreaAsked() const
    {
        switch (request.kind) {
        case AxPlanRequest::Kind::Area: {
            double area = RingArea(request.outline);
            for (const QList<QPointF>& hole : request.holes)
                area -= RingArea(hole);
            return area;
        }
        case AxPlanRequest::Kind::Strip: {
            AxPlanLine ring;
            QList<int> indices;
            CreateStripPolygon(plane.ToPlane(request.outline), request.leftWidth, request.rightWidth, ring,
                               indices);
            QList<QPointF> outline;
            for (const CAxPoint2D& point : ring)
                outline += plane.ToLngLat(point);
            return RingArea(outline);
        }
        case AxPlanRequest::Kind::Orbit:
            return PI * request.radius * request.radius;
        }
        return 0.0;
    }

    static double RingArea(const QList<QPointF>& ring)
    {
        std::vector<CAxPoint2D> points;
        for (const QPointF& point : ring)
            points.emplace_back(point.x(), point.y());
        const double area = GeodesicRingArea(points);
        return area == INVALID_DOUBLE_VALUE ? 0.0 : area;
    }

    const AxPlanRequest& request;
    AxPlanPlane plane;
    AxZonesAround zones;
    AxHomeLegs homeLegs;
    double height;
    double fastest = 0.0; // over ground, on a pass
    int looks = 0;        // at the ground below the sets so far
    int passLooks = 0;    // of them on passes
    AxPlanResult result;
};
} // namespace

AxPlanResult AxPlanRoute(const AxPlanRequest& request)
{
    const QString fault = AxPlanFault(request);
    if (!fault.isEmpty()) {
        AxPlanResult refused;
        refused.fault = fault;
        return refused;
    }
    return Planner(request).Plan();
}

#include <AxData/CAxBlockManager.h>
#include <AxData/CAxControl.h>
#include <AxData/CAxTask.h>
#include <AxData/planner/AxPlanCameras.h>
#include <AxData/planner/AxPlanCoverage.h>
#include <AxData/planner/AxPlanFlights.h>
#include <AxData/planner/AxPlanner.h>
#include <AxData/planner/AxPlanPlane.h>
#include <AxData/planner/AxTurn.h>

#include <support/GeosContext.h>

#include <gtest/gtest.h>
#include <QFile>
#include <QTemporaryDir>

#include <algorithm>
#include <cmath>
#include <functional>
#include <limits>
#include <random>
#include <set>

namespace {
using Role = AxPlanPoint::Role;
constexpr double pi = 3.14159265358979323846;

/// Blocks of many shapes and sizes in many places, the same in every run.
struct RandomBlock
{
    explicit RandomBlock(unsigned seed) : random(seed)
    {
        const QPointF places[] = {{-105.0, 37.4}, {12.0, 0.001}, {179.99, -17.0}, {24.0, 78.0}};
        middle = places[seed % 4];
        radius = std::pow(10.0, Within(2.0, 3.3));
        const int corners = 3 + static_cast<int>(Within(0.0, 30.0));
        request.outline = Star(corners, radius);
        if (seed % 3 == 0)
            request.holes = {Star(5, 0.2 * radius)};
        request.height = Within(60.0, 200.0);
        request.sideOverlap = Within(0.3, 0.8);
        request.forwardOverlap = Within(0.3, 0.8);
        if (seed % 2) {
            request.aircraft.turnRadius = Within(20.0, 90.0);
            request.aircraft.leadIn = Within(0.0, 80.0);
        }
        if (seed % 5 == 0)
            request.heading = Within(-360.0, 360.0);
    }
    double Within(double from, double to) { return std::uniform_real_distribution<double>(from, to)(random); }
    QList<QPointF> Star(int corners, double size)
    {
        const double perDegree = 111320.0;
        QList<QPointF> ring;
        for (int i = 0; i < corners; ++i) {
            const double angle = 2.0 * pi * (i + Within(-0.3, 0.3)) / corners;
            const double away = size * Within(0.35, 1.0) / perDegree;
            double longitude = middle.x() + away * std::cos(angle) / std::cos(middle.y() * pi / 180.0);
            if (longitude > 180.0)
                longitude -= 360.0;
            ring += QPointF(longitude, middle.y() + away * std::sin(angle));
        }
        return ring;
    }

    std::mt19937 random;
    QPointF middle;
    double radius = 0.0;
    AxPlanRequest request;
};

GeosContext::Geometry AreaOf(const GeosContext& geos, const AxPlanRequest& request, const AxPlanPlane& plane)
{
    const auto polygon = [&](const QList<QPointF>& ring) {
        auto closed = geos.ring(plane.ToPlane(ring));
        auto area = geos.own(GEOSGeom_createPolygon_r(geos.handle(), closed.release(), nullptr, 0));
        return geos.own(GEOSMakeValid_r(geos.handle(), area.get()));
    };
    auto area = polygon(request.outline);
    for (const QList<QPointF>& hole : request.holes)
        area = geos.own(GEOSDifference_r(geos.handle(), area.get(), polygon(hole).get()));
    return area;
}

double AreaOf(const GeosContext& geos, const GeosContext::Geometry& geometry)
{
    double area = 0.0;
    GEOSArea_r(geos.handle(), geometry.get(), &area);
    return area;
}

/// What the photos show, less the overlap that was asked for.
GeosContext::Geometry ShownBy(const GeosContext& geos, const AxPlanResult& plan, const AxPlanRequest& request,
                              const AxPlanPlane& plane)
{
    const double across = request.camera.WidthFrom(request.height) * (1.0 - request.sideOverlap);
    const double along = request.camera.LengthFrom(request.height) * (1.0 - request.forwardOverlap);
    std::vector<GEOSGeometry*> shown;
    for (const AxPlanPhoto& photo : plan.photos) {
        const CAxPoint2D at = plane.ToPlane(QPointF(photo.longitude, photo.latitude));
        const double east = std::sin(photo.heading * pi / 180.0),
                     north = std::cos(photo.heading * pi / 180.0);
        AxPlanLine ring;
        for (const auto& [a, b] : {std::pair{-0.5, -0.5}, {0.5, -0.5}, {0.5, 0.5}, {-0.5, 0.5}}) {
            const double ahead = a * along * 1.0001, aside = b * across * 1.0001;
            ring.emplace_back(at.x() + ahead * east - aside * north, at.y() + ahead * north + aside * east);
        }
        shown.push_back(GEOSGeom_createPolygon_r(geos.handle(), geos.ring(ring).release(), nullptr, 0));
    }
    const auto all = geos.own(GEOSGeom_createCollection_r(geos.handle(), GEOS_GEOMETRYCOLLECTION,
                                                          shown.data(), static_cast<unsigned>(shown.size())));
    return geos.own(GEOSUnaryUnion_r(geos.handle(), all.get()));
}

/// Passes as they are flown, first and last point.
std::vector<std::pair<CAxPoint2D, CAxPoint2D>> PassesOf(const AxPlanResult& plan, const AxPlanPlane& plane)
{
    std::vector<std::pair<CAxPoint2D, CAxPoint2D>> passes;
    for (const AxPlanPoint& point : plan.points) {
        const CAxPoint2D at = plane.ToPlane(QPointF(point.longitude, point.latitude));
        if (point.role == Role::PassStart)
            passes.emplace_back(at, at);
        if (point.pass >= 0)
            passes.back().second = at;
    }
    return passes;
}

int Count(const std::vector<AxPlanWarning>& warnings, AxPlanWarning::Kind kind)
{
    return static_cast<int>(std::count_if(warnings.begin(), warnings.end(),
                                          [kind](const auto& warning) { return warning.kind == kind; }));
}

std::optional<double> Hills(double longitude, double latitude)
{
    return 1500.0 + 180.0 * std::sin(longitude * 700.0) * std::cos(latitude * 900.0) +
           10.0 * std::sin(longitude * 5000.0);
}
} // namespace

TEST(Planner, ShowsAllOfTheBlockAtTheAskedOverlapAndFliesNowhereElse)
{
    for (unsigned seed = 0; seed < 24; ++seed) {
        SCOPED_TRACE(seed);
        const RandomBlock block(seed);
        const AxPlanResult plan = AxPlanRoute(block.request);
        ASSERT_TRUE(plan.IsPlanned()) << plan.fault.toStdString();
        const AxPlanPlane plane(block.request.outline);
        const GeosContext geos;
        const auto area = AreaOf(geos, block.request, plane);
        const auto missed = geos.own(
            GEOSDifference_r(geos.handle(), area.get(), ShownBy(geos, plan, block.request, plane).get()));
        EXPECT_LT(AreaOf(geos, missed), 0.001 * AreaOf(geos, area));

        const auto passes = PassesOf(plan, plane);
        EXPECT_EQ(static_cast<int>(passes.size()), plan.figures.passes);
        const double aside = 0.5 * plan.figures.spacing + 0.01;
        const auto near = geos.own(GEOSBuffer_r(geos.handle(), area.get(), aside, 8));
        std::set<std::pair<long, long>> middles;
        for (std::size_t i = 0; i < passes.size(); ++i) {
            const auto& [from, to] = passes[i];
            for (const CAxPoint2D& end : {from, to}) {
                const auto point = geos.own(GEOSGeom_createPointFromXY_r(geos.handle(), end.x(), end.y()));
                double away = 0.0;
                GEOSDistance_r(geos.handle(), near.get(), point.get(), &away);
                EXPECT_LT(away, 0.01 * aside) << "pass " << i; // the buffer's arcs are made of chords
            }
            EXPECT_TRUE(
                middles.insert({std::lround(from.x() + to.x()), std::lround(from.y() + to.y())}).second)
                << "pass " << i << " is flown twice";
            if (i == 0)
                continue;
            const auto& [lastFrom, lastTo] = passes[i - 1];
            const CAxPoint2D way(to.x() - from.x(), to.y() - from.y());
            const CAxPoint2D lastWay(lastTo.x() - lastFrom.x(), lastTo.y() - lastFrom.y());
            const double length = std::hypot(way.x(), way.y());
            const double apart =
                std::abs(way.x() * (lastFrom.y() - from.y()) - way.y() * (lastFrom.x() - from.x())) / length;
            const bool areNeighbours = std::abs(apart - plan.figures.spacing) < 0.1 * plan.figures.spacing;
            if (areNeighbours) {
                EXPECT_LT(way.x() * lastWay.x() + way.y() * lastWay.y(), 0.0)
                    << "passes " << i - 1 << " and " << i << " go the same way";
            }
        }
        EXPECT_EQ(plan.figures.photos, static_cast<int>(plan.photos.size()));
        EXPECT_GT(plan.figures.seconds, 0.9 * plan.figures.length / block.request.aircraft.speed);
    }
}

TEST(Planner, BeginsEachFlightAtItsOwnCornerOnTheShortestHeading)
{
    for (unsigned seed = 1; seed < 12; seed += 2) {
        SCOPED_TRACE(seed);
        RandomBlock block(seed);
        block.request.heading.reset();
        AxPlanResult plan = AxPlanRoute(block.request);
        for (int entry = 0; entry < 4; ++entry) {
            block.request.entry = entry;
            const AxPlanResult other = AxPlanRoute(block.request);
            const auto first =
                std::find_if(other.points.begin(), other.points.end(),
                             [](const AxPlanPoint& point) { return point.role == Role::PassStart; });
            const AxPlanPoint& corner = plan.entries[static_cast<std::size_t>(entry)];
            EXPECT_NEAR(first->longitude, corner.longitude, 1e-9);
            EXPECT_NEAR(first->latitude, corner.latitude, 1e-9);
        }
        EXPECT_NE(plan.entries[0].longitude, plan.entries[1].longitude);
        block.request.entry = 0;
        double shortest = std::numeric_limits<double>::max();
        for (int heading = 0; heading < 180; ++heading) {
            block.request.heading = heading;
            shortest = std::min(shortest, AxPlanRoute(block.request).figures.length);
        }
        EXPECT_LT(plan.figures.length, 1.1 * shortest);
    }
}

TEST(Planner, TurnsNoTighterThanTheAircraftCan)
{
    std::mt19937 random(5);
    const auto within = [&](double from, double to) {
        return std::uniform_real_distribution<double>(from, to)(random);
    };
    for (int i = 0; i < 500; ++i) {
        const double radius = 50.0;
        const AxPlanPose from{{0.0, 0.0}, within(-pi, pi)};
        const AxPlanPose to{{within(-300.0, 300.0), within(-300.0, 300.0)}, within(-pi, pi)};
        AxPlanLine way = AxTurnBetween(from, to, radius);
        way.insert(way.begin(), from.place);
        way.push_back(to.place);
        double course = from.course;
        double last = 0.0; // chord
        for (std::size_t k = 0; k + 1 < way.size(); ++k) {
            const double next = std::atan2(way[k + 1].y() - way[k].y(), way[k + 1].x() - way[k].x());
            const double chord = AxApart(way[k], way[k + 1]);
            const double turned = std::abs(std::remainder(next - course, 2.0 * pi));
            // From the middle of one chord to that of the next at most 20 degrees are turned; a chord begins
            // with half of its own.
            ASSERT_LT(turned, pi / 9.0 + 1e-6) << i << ", " << k << " of " << way.size();
            ASSERT_LT(turned, 1e-6 + 1.1 * (chord + last) / (2.0 * radius));
            last = chord;
            course = next;
        }
        EXPECT_LT(std::abs(std::remainder(to.course - course, 2.0 * pi)), pi / 9.0 + 1e-6) << i;
    }
}

TEST(Planner, FollowsTheGroundWithinTheLimitsOfTheAircraft)
{
    for (const auto heights : {AxPlanRequest::Heights::Terrain, AxPlanRequest::Heights::KeepOverlap})
        for (unsigned seed = 0; seed < 12; seed += 4) {
            RandomBlock block(seed);
            AxPlanRequest& request = block.request;
            request.ground = Hills;
            request.heights = heights;
            request.clearance = request.height;
            request.aircraft.climb = 0.15;
            request.aircraft.descent = 0.1;
            const AxPlanResult plan = AxPlanRoute(request);
            ASSERT_TRUE(plan.IsPlanned()) << plan.fault.toStdString();
            const AxPlanPlane plane(request.outline);
            for (std::size_t i = 0; i + 1 < plan.points.size(); ++i) {
                const AxPlanPoint& from = plan.points[i];
                const AxPlanPoint& to = plan.points[i + 1];
                const double length = AxApart(plane.ToPlane(QPointF(from.longitude, from.latitude)),
                                              plane.ToPlane(QPointF(to.longitude, to.latitude)));
                const double rise = to.altitude - from.altitude;
                ASSERT_LE(rise, 0.15 * length + 0.01) << i;
                ASSERT_GE(rise, -0.1 * length - 0.01) << i;
                if (heights == AxPlanRequest::Heights::KeepOverlap && from.pass < 0)
                    continue; // passes keep the overlap, not the way between them
                for (double share = 0.0; share <= 1.0; share += 3.0 / std::max(3.0, length)) {
                    const QPointF at =
                        plane.ToLngLat(AxBetween(plane.ToPlane(QPointF(from.longitude, from.latitude)),
                                                 plane.ToPlane(QPointF(to.longitude, to.latitude)), share));
                    ASSERT_GE(from.altitude + share * rise - *Hills(at.x(), at.y()),
                              request.height - (heights == AxPlanRequest::Heights::Terrain ? 0.3 : 2.0))
                        << seed << ": leg " << i << " at " << share;
                }
            }
        }
}

TEST(Planner, WarnsOfGroundThatComesNearOrIsUnknown)
{
    AxPlanRequest request = RandomBlock(4).request;
    request.meanGround = 1500.0;
    request.height = 150.0;
    request.clearance = 100.0;
    request.ground = Hills;
    const auto count = [&](AxPlanWarning::Kind kind) { return Count(AxPlanRoute(request).warnings, kind); };
    EXPECT_GT(count(AxPlanWarning::Kind::Clearance), 0);
    request.meanGround = 2000.0;
    EXPECT_EQ(count(AxPlanWarning::Kind::Clearance), 0);
    // A mast on the way home, which has no other point near it.
    request.home = request.outline[0] + QPointF(0.2, 0.0);
    const double mast = request.outline[0].x() + 0.1;
    request.ground = [mast](double longitude, double) {
        return std::abs(longitude - mast) < 1e-4 ? 2100.0 : 1500.0;
    };
    EXPECT_EQ(count(AxPlanWarning::Kind::Clearance), 2) << "there and back";
    const AxPlanFigures figures = AxPlanRoute(request).figures;
    EXPECT_NEAR(figures.leastHeight, 50.0, 1e-6);
    for (const double sample : {figures.sampleLeast, figures.sampleMean})
        EXPECT_NEAR(sample, request.camera.SampleFrom(650.0), 1e-9) << "the mast is below no pass";
    request.home.reset();
    for (const AxPlanGround& ground :
         {AxPlanGround(), AxPlanGround([](double, double) { return std::optional<double>(); })}) {
        request.ground = ground;
        for (const double clearance : {0.0, 100.0}) {
            request.clearance = clearance;
            EXPECT_EQ(count(AxPlanWarning::Kind::UnknownGround), 1);
        }
    }
    request.heights = AxPlanRequest::Heights::Terrain;
    EXPECT_TRUE(AxPlanRoute(request).fault.contains("not known"));
}

namespace {
using Rings = std::vector<AxPlanLine>;

AxPlanLine Box(double west, double south, double east, double north)
{
    return {{west, south}, {east, south}, {east, north}, {west, north}};
}

GeosContext::Geometry LineOf(const GeosContext& geos, const AxPlanLine& points)
{
    GEOSCoordSequence* const sequence =
        GEOSCoordSeq_create_r(geos.handle(), static_cast<unsigned>(points.size()), 2);
    for (unsigned i = 0; i < points.size(); ++i)
        GEOSCoordSeq_setXY_r(geos.handle(), sequence, i, points[i].x(), points[i].y());
    return geos.own(GEOSGeom_createLineString_r(geos.handle(), sequence));
}

/// A small block with home 6 km to the east, and zones in metres from the block's middle.
struct ZonedBlock
{
    ZonedBlock(const QPointF& middle, const Rings& rings) : plane({middle})
    {
        for (const CAxPoint2D& corner : Box(-200.0, -200.0, 200.0, 200.0))
            request.outline += plane.ToLngLat(corner);
        request.height = 100.0;
        request.forwardOverlap = 0.6;
        request.home = plane.ToLngLat({6000.0, 0.0});
        request.goesRoundZones = true;
        request.zoneMargin = 5.0;
        request.ground = [](double, double) { return 0.0; };
        GeosContext::Geometry all = geos.own(GEOSGeom_createEmptyPolygon_r(geos.handle()));
        for (std::size_t i = 0; i < rings.size(); ++i) {
            AxPlanZone zone{QString::number(i), {}};
            for (const CAxPoint2D& corner : rings[i])
                zone.ring += plane.ToLngLat(corner);
            zones.push_back(zone);
            const auto polygon = geos.polygon(rings[i]);
            const auto valid = geos.own(GEOSMakeValid_r(geos.handle(), polygon.get()));
            // Without the lines that hang holes and pieces together.
            const auto area = geos.own(GEOSBuffer_r(geos.handle(), valid.get(), -0.01, 4));
            all = geos.own(GEOSUnion_r(geos.handle(), all.get(), area.get()));
            corners.insert(corners.end(), rings[i].begin(), rings[i].end());
        }
        // No way leads between two that touch.
        all = geos.own(GEOSBuffer_r(geos.handle(), all.get(), 0.02, 4));
        closed = geos.own(GEOSBuffer_r(geos.handle(), all.get(), -0.02, 4));
        request.zones = [this](double, double, double) { return zones; };
    }
    double MetresInside(const AxPlanLine& way) const
    {
        const auto line = LineOf(geos, way);
        const auto inside = geos.own(GEOSIntersection_r(geos.handle(), line.get(), closed.get()));
        double length = 0.0;
        GEOSLength_r(geos.handle(), inside.get(), &length);
        return length;
    }
    double ApartFromZones(const AxPlanLine& way) const
    {
        double apart = 0.0;
        GEOSDistance_r(geos.handle(), LineOf(geos, way).get(), closed.get(), &apart);
        return apart;
    }
    /// Of all ways over corners of zones.
    double ShortestWay(const CAxPoint2D& from, const CAxPoint2D& to) const
    {
        AxPlanLine nodes{from, to};
        nodes.insert(nodes.end(), corners.begin(), corners.end());
        std::vector<double> least(nodes.size(), std::numeric_limits<double>::max());
        least[0] = 0.0;
        for (bool isShorter = true; isShorter;) {
            isShorter = false;
            for (std::size_t a = 0; a < nodes.size(); ++a)
                for (std::size_t b = 0; b < nodes.size(); ++b) {
                    const double length = least[a] + AxApart(nodes[a], nodes[b]);
                    if (length < least[b] - 1e-6 && MetresInside({nodes[a], nodes[b]}) < 0.1) {
                        least[b] = length;
                        isShorter = true;
                    }
                }
        }
        return least[1];
    }
    AxPlanLine InPlane(const std::vector<AxPlanPoint>& points) const
    {
        AxPlanLine line;
        for (const AxPlanPoint& point : points)
            line.push_back(plane.ToPlane(QPointF(point.longitude, point.latitude)));
        return line;
    }

    GeosContext geos;
    AxPlanPlane plane;
    AxPlanRequest request;
    std::vector<AxPlanZone> zones;
    GeosContext::Geometry closed{nullptr, {nullptr}};
    AxPlanLine corners;
};
} // namespace

TEST(Planner, HomeLegsGoTheShortestWayRoundZones)
{
    std::mt19937 random(11);
    const auto within = [&](double from, double to) {
        return std::uniform_real_distribution<double>(from, to)(random);
    };
    Rings many;
    for (int i = 0; i < 14; ++i) {
        const double x = within(1200.0, 5000.0), y = within(-1500.0, 1500.0);
        many.push_back(
            {{x, y}, {x + within(-600.0, 600.0), y + 500.0}, {x + 400.0, y + within(-600.0, 300.0)}});
    }
    const struct
    {
        const char* named;
        Rings zones;
        int bends; // of both ways together at least
    } rows[] = {
        {"beside", {Box(2000.0, 300.0, 3000.0, 900.0)}, 0},
        {"across", {Box(2000.0, -1000.0, 3000.0, 500.0)}, 4},
        {"touching", {Box(2000.0, 0.0, 3000.0, 800.0), Box(2000.0, -900.0, 3000.0, 0.0)}, 4},
        {"overlapping", {Box(2000.0, -900.0, 3000.0, 400.0), Box(2500.0, -300.0, 3500.0, 1500.0)}, 4},
        {"crossing itself", {{{2000.0, -800.0}, {4000.0, 900.0}, {4000.0, -800.0}, {2000.0, 900.0}}}, 4},
        {"a hole by a line without width",
         {{{2000.0, -900.0},
           {4000.0, -900.0},
           {4000.0, 700.0},
           {2000.0, 700.0},
           {2000.0, -100.0},
           {2200.0, -100.0},
           {2200.0, 300.0},
           {3800.0, 300.0},
           {3800.0, -300.0},
           {2200.0, -300.0},
           {2200.0, -100.0},
           {2000.0, -100.0}}},
         4},
        {"a pocket around home",
         {{{4000.0, -1000.0},
           {8000.0, -1000.0},
           {8000.0, -800.0},
           {4200.0, -800.0},
           {4200.0, 1200.0},
           {8000.0, 1200.0},
           {8000.0, 1400.0},
           {4000.0, 1400.0}}},
         6},
        {"beside home and the block", {Box(1000.0, -900.0, 5997.0, 500.0)}, 4},
        {"many", many, 2},
    };
    for (const QPointF& middle : {QPointF(10.0, 45.0), QPointF(179.97, -17.0)})
        for (const auto& row : rows) {
            SCOPED_TRACE(row.named);
            ZonedBlock block(middle, row.zones);
            const AxPlanResult plan = AxPlanRoute(block.request);
            ASSERT_TRUE(plan.IsPlanned()) << plan.fault.toStdString();
            EXPECT_TRUE(plan.warnings.empty());
            AxPlanLine flown = block.InPlane(plan.points);
            const CAxPoint2D home = block.plane.ToPlane(*block.request.home);
            flown.insert(flown.begin(), home);
            flown.push_back(home);
            EXPECT_GT(block.ApartFromZones(flown), 1.2); // less than the margin near home
            int bends = 0;
            for (const AxPlanPoint& point : plan.points)
                bends += point.role == Role::HomeLeg ? 1 : 0;
            EXPECT_GE(bends, row.bends);
            // From the beginning to the end, however the shortest way is found; margins make it longer.
            const auto isOut = [](const AxPlanPoint& point) { return point.role != Role::HomeLeg; };
            const auto first = std::find_if(plan.points.begin(), plan.points.end(), isOut);
            const auto there = static_cast<std::size_t>(first - plan.points.begin()) + 1;
            double length = 0.0;
            for (std::size_t i = 0; i < there; ++i)
                length += AxApart(flown[i], flown[i + 1]);
            const double shortest = block.ShortestWay(home, flown[there]);
            EXPECT_GE(length, shortest - 1.0);
            EXPECT_LE(length, shortest + 25.0 * static_cast<double>(there - 1) + 1e-6);

            // Each flight goes home round the zones, too.
            block.request.aircraft.endurance = 0.9 * plan.figures.seconds;
            const std::vector<AxPlanFlight> flights = AxSplitIntoFlights(block.request, plan);
            ASSERT_GT(flights.size(), 1u);
            for (const AxPlanFlight& flight : flights) {
                AxPlanLine way = block.InPlane(flight.points);
                way.insert(way.begin(), home);
                way.push_back(home);
                EXPECT_GT(block.ApartFromZones(way), 1.2);
                EXPECT_LE(flight.seconds, block.request.aircraft.endurance);
            }
        }
}

TEST(Planner, WarnsOfEachStretchInAZone)
{
    using Kind = AxPlanWarning::Kind;
    const AxPlanLine ring{{5000.0, -800.0}, {7000.0, -800.0}, {7000.0, 800.0}, {5000.0, 800.0},
                          {5000.0, 0.0},    {5300.0, 0.0},    {5300.0, 500.0}, {6700.0, 500.0},
                          {6700.0, -500.0}, {5300.0, -500.0}, {5300.0, 0.0},   {5000.0, 0.0}};
    const struct
    {
        const char* named;
        Rings zones;
        bool goesRound;
        int stretches;
        int noWays;
    } rows[] = {
        {"not asked to go round", {Box(2000.0, -1000.0, 3000.0, 500.0)}, false, 2, 0},
        {"home inside", {Box(5000.0, -1000.0, 7000.0, 500.0)}, true, 2, 0},
        {"home enclosed", {ring}, true, 2, 2},
        {"all inside", {Box(-9000.0, -9000.0, 9000.0, 9000.0)}, true, 1, 0},
        {"a strip across each pass", {Box(-900.0, 10.0, 900.0, 30.0)}, false, -1, 0},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.named);
        ZonedBlock block({10.0, 45.0}, row.zones);
        block.request.goesRoundZones = row.goesRound;
        block.request.heading = 0.0;
        const AxPlanResult plan = AxPlanRoute(block.request);
        EXPECT_EQ(Count(plan.warnings, Kind::Zone), row.stretches < 0 ? plan.figures.passes : row.stretches);
        EXPECT_EQ(Count(plan.warnings, Kind::NoWayRound), row.noWays);
        AxPlanLine flown = block.InPlane(plan.points);
        const CAxPoint2D home = block.plane.ToPlane(*block.request.home);
        flown.insert(flown.begin(), home);
        flown.push_back(home);
        const auto metresInside = [&block](const AxPlanLine& way) {
            double metres = 0.0;
            for (std::size_t i = 0; i + 1 < way.size(); ++i)
                metres += block.MetresInside({way[i], way[i + 1]});
            return metres;
        };
        double inside = 0.0;
        const double whole = metresInside(flown);
        for (const AxPlanWarning& warning : plan.warnings)
            if (warning.kind == Kind::Zone) {
                inside += warning.value;
                EXPECT_EQ(warning.zone, QStringLiteral("0"));
                const AxPlanLine at{block.plane.ToPlane(warning.place), home};
                EXPECT_LT(block.ApartFromZones(at), 0.1) << "the place is where the zone begins";
            }
        EXPECT_NEAR(inside, whole, 0.5 + 1e-3 * whole);
        // Of flights that are resumed, the ways home are others.
        block.request.aircraft.endurance = 0.9 * plan.figures.seconds;
        const std::vector<AxPlanFlight> flights = AxSplitIntoFlights(block.request, plan);
        EXPECT_EQ(flights.empty(), row.noWays > 0);
        for (const AxPlanFlight& flight : flights) {
            AxPlanLine way = block.InPlane(flight.points);
            way.insert(way.begin(), home);
            way.push_back(home);
            double warned = 0.0;
            for (const AxPlanWarning& warning : flight.warnings)
                warned += warning.kind == Kind::Zone ? warning.value : 0.0;
            EXPECT_NEAR(warned, metresInside(way), 0.5 + 1e-3 * whole);
        }
    }
    // Nobody has given zones: that is not the same as none.
    ZonedBlock block({10.0, 45.0}, {});
    block.request.zones = {};
    EXPECT_EQ(Count(AxPlanRoute(block.request).warnings, Kind::UnknownZones), 1);
}

TEST(Planner, ThreeDirectionsAreThreeRoutesOfEquallyManyPoints)
{
    AxPlanRequest request = RandomBlock(7).request;
    request.isThreeDirections = true;
    request.home = request.outline[0] + QPointF(0.1, 0.0);
    request.goesRoundZones = true;
    request.zones = [&request](double, double, double) {
        const QPointF corner = *request.home - QPointF(0.05, 0.03);
        return std::vector<AxPlanZone>{{{},
                                        {corner, corner + QPointF(0.01, 0.0), corner + QPointF(0.01, 0.06),
                                         corner + QPointF(0.0, 0.06)}}};
    };
    const AxPlanResult plan = AxPlanRoute(request);
    EXPECT_EQ(Count(plan.warnings, AxPlanWarning::Kind::Zone), 6) << "there and back straight, three times";
    ASSERT_EQ(plan.points.size() % 3, 0u);
    const std::size_t third = plan.points.size() / 3;
    for (std::size_t k = 0; k < 3; ++k)
        EXPECT_EQ(plan.points[k * third].role,
                  request.aircraft.leadIn > 0.0 ? Role::LeadIn : Role::PassStart);
    // The display shows the last third as the first direction where the flight begins at entry 2 or 3.
    for (std::size_t entry = 0; entry < 4; ++entry)
        for (std::size_t direction = 0; direction < 3; ++direction) {
            request.entry = static_cast<int>(entry);
            const AxPlanResult other = AxPlanRoute(request);
            const std::size_t shown = entry >= 2 ? 2 - direction : direction;
            const auto begins = std::find_if(
                other.points.begin() + static_cast<std::ptrdiff_t>(shown * other.points.size() / 3),
                other.points.end(), [](const AxPlanPoint& point) { return point.role == Role::PassStart; });
            const AxPlanPoint& corner = plan.entriesOfDirections.at(direction)[entry];
            EXPECT_NEAR(begins->longitude, corner.longitude, 1e-9) << entry << ", " << direction;
            EXPECT_NEAR(begins->latitude, corner.latitude, 1e-9);
        }
    request.entry = 0;
    request.aircraft.endurance = plan.figures.seconds;
    double seconds = 0.0;
    const std::vector<AxPlanFlight> flights = AxSplitIntoFlights(request, plan);
    for (const AxPlanFlight& flight : flights)
        seconds += flight.seconds;
    EXPECT_EQ(flights.size(), 3u) << "each goes home, however long one may take";
    EXPECT_NEAR(seconds, plan.figures.seconds, 0.01);
}

TEST(Planner, FliesStripsAndCircles)
{
    AxPlanRequest request;
    request.kind = AxPlanRequest::Kind::Strip;
    request.outline = {{10.0, 45.0}, {10.01, 45.0}, {10.02, 45.005}};
    request.leftWidth = 120.0;
    request.rightWidth = 60.0;
    request.height = 100.0;
    const AxPlanPlane plane(request.outline);
    const AxPlanLine centre = plane.ToPlane(request.outline);
    for (int entry = 0; entry < 4; ++entry) {
        request.entry = entry;
        const AxPlanResult plan = AxPlanRoute(request);
        ASSERT_TRUE(plan.IsPlanned()) << plan.fault.toStdString();
        const auto passes = PassesOf(plan, plane);
        EXPECT_EQ(static_cast<double>(passes.size()), std::ceil(180.0 / (102.6 * 0.3)));
        for (std::size_t i = 1; i < passes.size(); ++i)
            EXPECT_LT(AxApart(passes[i - 1].second, passes[i].first), 60.0)
                << "comes back along the next pass";
        EXPECT_LT(AxApart(passes[0].first, entry % 2 ? centre.back() : centre.front()), 130.0);
        const double length = AxApart(centre[0], centre[1]) + AxApart(centre[1], centre[2]);
        EXPECT_NEAR(plan.figures.area, 180.0 * length, 0.03 * 180.0 * length);
    }
    request.kind = AxPlanRequest::Kind::Orbit;
    request.radius = 80.0;
    const AxPlanResult orbit = AxPlanRoute(request);
    ASSERT_TRUE(orbit.IsPlanned());
    for (const AxPlanPoint& point : orbit.points)
        EXPECT_NEAR(AxApart(plane.ToPlane(QPointF(point.longitude, point.latitude)), centre.front()), 80.0,
                    0.5);
}

TEST(Planner, WarnsOfBendsTighterThanTheAircraftTurns)
{
    const struct
    {
        const char* named;
        QList<QPointF> line; // of a strip, or the middle of a circle
        double radius;
        int bends;
    } rows[] = {
        {"a tight circle", {{10.0, 45.0}}, 50.0, 1},
        {"a slightly tight circle", {{10.0, 45.0}}, 59.0, 1},
        {"a wide circle", {{10.0, 45.0}}, 61.0, 0},
        {"a corner", {{10.0, 45.0}, {10.01, 45.0}, {10.01, 45.01}}, 0.0, 1},
        {"two corners", {{10.0, 45.0}, {10.01, 45.0}, {10.01, 45.01}, {10.02, 45.01}}, 0.0, 2},
        {"a slight bend", {{10.0, 45.0}, {10.01, 45.0}, {10.02, 45.003}}, 0.0, 0},
    };
    for (const auto& row : rows) {
        AxPlanRequest request;
        request.kind = row.radius > 0.0 ? AxPlanRequest::Kind::Orbit : AxPlanRequest::Kind::Strip;
        request.outline = row.line;
        request.radius = row.radius;
        request.leftWidth = request.rightWidth = 10.0;
        request.height = 100.0;
        request.aircraft.turnRadius = 60.0;
        AxPlanResult plan = AxPlanRoute(request);
        EXPECT_EQ(Count(plan.warnings, AxPlanWarning::Kind::Bend), row.bends) << row.named;
        request.aircraft.turnRadius = 0.0;
        plan = AxPlanRoute(request);
        EXPECT_EQ(Count(plan.warnings, AxPlanWarning::Kind::Bend), 0) << row.named;
    }
}

TEST(Planner, RefusesWhatAllowsNoRouteAndSaysWhy)
{
    static constexpr double nan = std::numeric_limits<double>::quiet_NaN();
    const struct
    {
        const char* named;
        void (*spoil)(AxPlanRequest&);
    } rows[] = {
        {"side overlap", [](AxPlanRequest& r) { r.sideOverlap = 1.0; }},
        {"forward overlap", [](AxPlanRequest& r) { r.forwardOverlap = 1.2; }},
        {"forward overlap", [](AxPlanRequest& r) { r.forwardOverlap = nan; }},
        {"height", [](AxPlanRequest& r) { r.height = -5.0; }},
        {"height", [](AxPlanRequest& r) { r.height = 0.0; }},
        {"speed", [](AxPlanRequest& r) { r.aircraft.speed = 0.0; }},
        {"focal length", [](AxPlanRequest& r) { r.camera.focalLength = 0.0; }},
        {"direction of the passes", [](AxPlanRequest& r) { r.heading = nan; }},
        {"wind", [](AxPlanRequest& r) { r.windSpeed = 15.0; }},
        {"entry", [](AxPlanRequest& r) { r.entry = 4; }},
        {"too few points", [](AxPlanRequest& r) { r.outline = r.outline.mid(0, 2); }},
        {"no place", [](AxPlanRequest& r) { r.outline[1].setY(nan); }},
        {"nothing to fly over",
         [](AxPlanRequest& r) {
             r.outline = {r.outline[0], r.outline[0], r.outline[0]};
         }},
        {"too many photos",
         [](AxPlanRequest& r) {
             r.outline = {{0.0, 0.0}, {8.0, 0.0}, {8.0, 8.0}, {0.0, 8.0}};
             r.height = 20.0;
         }},
        {"too many photos",
         [](AxPlanRequest& r) {
             r.kind = AxPlanRequest::Kind::Strip;
             r.outline = {{0.0, 0.0}, {8.0, 0.0}};
             r.leftWidth = 500.0;
             r.height = 20.0;
         }},
        {"too many passes",
         [](AxPlanRequest& r) {
             r.kind = AxPlanRequest::Kind::Strip;
             r.leftWidth = 1e5;
             r.height = 1e-5;
             r.sideOverlap = 0.99;
         }},
        {"no-fly zones", [](AxPlanRequest& r) { r.zoneMargin = 0.0; }},
        {"follow it", [](AxPlanRequest& r) { r.heights = AxPlanRequest::Heights::Terrain; }},
    };
    for (const auto& row : rows) {
        AxPlanRequest request = RandomBlock(2).request;
        row.spoil(request);
        const AxPlanResult plan = AxPlanRoute(request);
        EXPECT_TRUE(plan.points.empty()) << row.named;
        EXPECT_TRUE(plan.fault.contains(QLatin1String(row.named)))
            << row.named << ": " << plan.fault.toStdString();
    }
    // Smaller than one photo, it is flown all the same.
    AxPlanRequest tiny = RandomBlock(2).request;
    tiny.outline = {{0.0, 0.0}, {1e-5, 0.0}, {0.0, 1e-5}};
    EXPECT_EQ(AxPlanRoute(tiny).figures.passes, 1);
    // More points than 16 bits count.
    AxPlanRequest many = RandomBlock(2).request;
    many.passes = 40000;
    many.forwardOverlap = 0.0;
    many.heading = 30.0;
    EXPECT_GT(AxPlanRoute(many).points.size(), 65535u);
}

TEST(Planner, CountsThePhotosThatReallyShowAPieceOfGround)
{
    const std::atomic<bool> isOff{false};
    AxPlanRequest request = RandomBlock(0).request; // with a hole
    request.height = 100.0;
    request.sideOverlap = 0.5;
    request.forwardOverlap = 0.5;
    const AxPlanCoverage flat = AxCoverageOf(request, AxPlanRoute(request), 3.0, isOff);
    EXPECT_GE(flat.leastPhotos, 1);
    const double sample = request.camera.SampleFrom(100.0);
    EXPECT_NEAR(flat.coarsestSample, sample, 1e-6);
    double sum = 0.0, inside = 0.0;
    for (std::size_t i = 0; i < flat.photos.size(); ++i)
        if (flat.isInside[i]) {
            sum += flat.photos[i];
            inside += 1.0;
        }
    EXPECT_NEAR(inside * 9.0, AxPlanRoute(request).figures.area, 0.02 * inside * 9.0);
    EXPECT_NEAR(sum / inside, 4.0, 1.2) << "twice along and twice across";

    // A plateau 60 m below the aircraft: fewer photos show it, and a basin more coarsely than the plain.
    const double middle = request.outline[0].x();
    request.ground = [middle](double longitude, double) { return longitude > middle ? 40.0 : -20.0; };
    const AxPlanCoverage uneven = AxCoverageOf(request, AxPlanRoute(request), 3.0, isOff);
    EXPECT_LT(uneven.leastPhotos, flat.leastPhotos + 1);
    EXPECT_NEAR(uneven.coarsestSample, 1.2 * sample, 1e-6);
    EXPECT_LE(uneven.coarsestSampleAt.x(), middle);
    request.ground = [](double, double) { return std::optional<double>(); };
    const AxPlanCoverage unknown = AxCoverageOf(request, AxPlanRoute(request), 3.0, isOff);
    EXPECT_EQ(unknown.unknown, static_cast<int>(inside)) << "never taken as level ground";
    EXPECT_EQ(unknown.leastPhotos, 0);
    request.ground = [middle](double longitude, double) {
        return longitude > middle ? std::nullopt : std::make_optional(0.0);
    };
    const AxPlanCoverage half = AxCoverageOf(request, AxPlanRoute(request), 3.0, isOff);
    EXPECT_GE(half.leastPhotos, 1) << "ground that is not known is not the worst";
    EXPECT_LE(half.leastPhotosAt.x(), middle);

    request.ground = {};
    request.kind = AxPlanRequest::Kind::Strip;
    request.outline = {{10.0, 45.0}, {10.01, 45.0}, {10.01, 45.005}};
    request.leftWidth = 30.0;
    request.rightWidth = 60.0;
    const AxPlanResult strip = AxPlanRoute(request);
    const AxPlanCoverage band = AxCoverageOf(request, strip, 3.0, isOff);
    EXPECT_NEAR(band.cells * 9.0, 1344.0 * 90.0, 0.03 * 1344.0 * 90.0) << "the line times the width";
    EXPECT_GE(band.leastPhotos, 1);
    request.kind = AxPlanRequest::Kind::Orbit;
    EXPECT_TRUE(AxCoverageOf(request, strip, 3.0, isOff).photos.empty());
}

TEST(Planner, SplitsIntoFlightsAndLosesNoPhoto)
{
    for (unsigned seed = 0; seed < 12; ++seed) {
        SCOPED_TRACE(seed);
        AxPlanRequest request = RandomBlock(seed).request;
        request.home = request.outline[0];
        request.windSpeed = 5.0;
        request.windFrom = 240.0;
        const AxPlanResult plan = AxPlanRoute(request);
        // From half of a pass to several passes a flight.
        for (const double share : {0.02, 0.2, 0.7, 2.0}) {
            request.aircraft.endurance = 600.0 + share * plan.figures.seconds;
            const std::vector<AxPlanFlight> flights = AxSplitIntoFlights(request, plan);
            ASSERT_FALSE(flights.empty());
            if (share == 2.0) {
                EXPECT_EQ(flights.size(), 1u);
            }
            if (plan.figures.seconds > request.aircraft.endurance) {
                EXPECT_GT(flights.size(), 1u);
            }
            std::size_t photos = 0;
            for (const AxPlanFlight& flight : flights) {
                EXPECT_LE(flight.seconds, request.aircraft.endurance);
                for (const AxPlanPhoto& photo : flight.photos)
                    EXPECT_EQ(photo.longitude, plan.photos[photos++].longitude);
                for (std::size_t i = 1; i < flight.points.size(); ++i)
                    EXPECT_TRUE(flight.points[i].longitude != flight.points[i - 1].longitude ||
                                flight.points[i].latitude != flight.points[i - 1].latitude)
                        << "point " << i << " stands twice";
            }
            EXPECT_EQ(photos, plan.photos.size());
            EXPECT_EQ(flights.back().points.back().longitude, plan.points.back().longitude);
        }
        request.home = QPointF(request.outline[0].x(), request.outline[0].y() - 3.0);
        EXPECT_TRUE(AxSplitIntoFlights(request, plan).empty()) << "too far away";
    }
}

TEST(Planner, EachPhotoOfABentPassBelongsToTheFlightThatComesByIt)
{
    AxPlanRequest circle;
    circle.kind = AxPlanRequest::Kind::Orbit;
    circle.outline = {{10.0, 45.0}};
    circle.radius = 500.0;
    circle.height = 100.0;
    AxPlanRequest bent = circle;
    bent.kind = AxPlanRequest::Kind::Strip;
    bent.outline = {{10.0, 45.0}, {10.01, 45.0}, {10.01, 45.002}, {10.0, 45.002}};
    bent.leftWidth = bent.rightWidth = 10.0;
    for (AxPlanRequest& request : {std::ref(circle), std::ref(bent)})
        for (const double share : {0.23, 0.55, 0.75, 0.9}) {
            const AxPlanResult plan = AxPlanRoute(request);
            ASSERT_EQ(plan.figures.passes, 1);
            request.aircraft.endurance = share * plan.figures.seconds;
            const AxPlanPlane plane(request.outline);
            const std::vector<AxPlanFlight> flights = AxSplitIntoFlights(request, plan);
            EXPECT_EQ(static_cast<double>(flights.size()), std::ceil(1.0 / share));
            for (const AxPlanFlight& flight : flights) {
                double length = 0.0;
                for (std::size_t i = 1; i < flight.points.size(); ++i)
                    length +=
                        AxApart(plane.ToPlane(QPointF(flight.points[i].longitude, flight.points[i].latitude)),
                                plane.ToPlane(
                                    QPointF(flight.points[i - 1].longitude, flight.points[i - 1].latitude)));
                EXPECT_NEAR(static_cast<double>(flight.photos.size()), length / plan.figures.photoDistance,
                            2.0);
            }
        }
}

TEST(Planner, ATaskPlansItsBlockWithItsParameters)
{
    CAxBlockManager& blocks = CAxBlockManager::instance();
    CAxBlock* const block = blocks.AddBlock(QStringLiteral("planned"), CAxBlock::PolygonBlock);
    block->SetAnchor({{10.0, 45.0}, {10.01, 45.0}, {10.01, 45.008}, {10.0, 45.008}});
    block->SetAverageAltitude(400.0);
    CAxTaskPara* const para = block->GetTaskPara();
    CAxTask* const task =
        block->AddTask(std::make_unique<CAxTask>(QStringLiteral("t"), QStringLiteral("T"), para));
    QList<QPair<int, CAxVector3D>> markers;
    const auto route = [&](int entry, int count) {
        return task->ComputeRoute(entry, markers, CAxBlock::PolygonBlock, count, 1);
    };
    const QList<CAxVector3D> first = route(0, 0);
    ASSERT_FALSE(first.isEmpty());
    EXPECT_NEAR(first[0].x(), 45.004, 0.01) << "latitude comes first";
    EXPECT_NEAR(first[0].z(), 700.0, 1e-6) << "mean ground and relative height";
    ASSERT_EQ(markers.size(), 4);
    EXPECT_EQ(markers[3].first, 3);
    EXPECT_NE(route(3, 0)[0], first[0]);
    EXPECT_EQ(route(-1, 0), first);
    const CAxVector3D inserted(45.002, 10.005, 900.0);
    task->InsertVariableHeightRoutePt(1, {inserted});
    EXPECT_EQ(route(0, 0), first) << "heights do not change";
    CAxControl::GetInstance()->SetGround([](double, double) { return 400.0; }, block);
    para->SetChangeHighFlying(true);
    EXPECT_EQ(route(0, 0)[2], inserted);
    para->SetChangeHighFlying(false);
    CAxControl::GetInstance()->RemoveGround(block);
    task->TakePlan(AxPlanRoute(task->RequestOf(2, CAxBlock::PolygonBlock, 3)));
    EXPECT_NE(route(0, 0), first) << "planned by somebody else";
    EXPECT_EQ(route(0, 0), first) << "once";
    para->SetPlaneType(PlaneQuadcopter);
    EXPECT_EQ(route(0, 7).size(), 14);
    CAxControl::GetInstance()->SetZones(
        [](double, double, double) {
            return std::vector<AxPlanZone>{
                {{}, {{10.03, 44.99}, {10.04, 44.99}, {10.04, 45.02}, {10.03, 45.02}}}};
        },
        block);
    block->SetHomePosition(CAxVector3D(10.05, 45.004, 390.0), false);
    EXPECT_EQ(route(0, 7).size(), 14) << "straight until it is asked to go round";
    para->SetHomeLegRoundZones(true);
    EXPECT_EQ(route(0, 7).size(), 14 + 6) << "corners there and back";
    // One zone inside, and two that overlap along a whole side and stick out.
    const auto box = [](double west, double south, double east, double north) {
        return AxPlanZone{{}, {{west, south}, {east, south}, {east, north}, {west, north}}};
    };
    CAxControl::GetInstance()->SetZones(
        [box](double, double, double) {
            return std::vector<AxPlanZone>{box(10.002, 45.002, 10.004, 45.004),
                                           box(10.006, 44.99, 10.02, 45.01), box(10.007, 44.9, 10.009, 45.1)};
        },
        block);
    para->SetZonesAsHoles(true);
    const AxPlanRequest cut = task->RequestOf(0, CAxBlock::PolygonBlock, 0);
    EXPECT_EQ(cut.holes.size(), 2);
    const AxPlanResult plan = AxPlanRoute(cut);
    EXPECT_NEAR(plan.figures.area, 0.55 * 788.0 * 889.0, 0.01 * 788.0 * 889.0);
    EXPECT_GT(plan.photos.size(), 10u);
    for (const AxPlanPhoto& photo : plan.photos) {
        EXPECT_LT(photo.longitude, 10.0064) << "photos end with the area, half a spacing on at most";
        EXPECT_FALSE(photo.longitude > 10.0025 && photo.longitude < 10.0035 && photo.latitude > 45.0025 &&
                     photo.latitude < 45.0035);
    }
    para->SetZonesAsHoles(false);
    CAxControl::GetInstance()->RemoveZones(block);
    para->GetAirLineParam()->SetRelativeFlyHeight(0.0);
    EXPECT_TRUE(route(0, 0).isEmpty());
    EXPECT_TRUE(markers.isEmpty());
    EXPECT_TRUE(CAxTask(QStringLiteral("u"), {}, nullptr)
                    .ComputeRoute(0, markers, CAxBlock::PolygonBlock, 0, 0)
                    .isEmpty())
        << "without a block";
    blocks.DeleteBlock(QStringLiteral("planned"));
}

TEST(PlanCameras, TheShippedListIsReadAndABadOneNamesCameraAndField)
{
    QFile shipped(QStringLiteral(AX_RESOURCES "/planning/cameras.json"));
    ASSERT_TRUE(shipped.open(QIODevice::ReadOnly));
    QList<AxListedCamera> cameras;
    EXPECT_EQ(AxReadCameras(shipped.readAll(), cameras), QString());
    std::set<ECameraType> types;
    for (const AxListedCamera& listed : cameras)
        types.insert(listed.type);
    EXPECT_EQ(types.size(), 10u) << "each type has one";
    const int count = cameras.size();

    const char* good = R"([{"name": "A", "type": "apsC", "sensor": [23.5, 15.6], "image": [6000, 4000],
                            "focalLength": 20, "shortestInterval": 1}])";
    const struct
    {
        const char* from;
        const char* to;
        const char* named;
    } rows[] = {
        {"\"A\"", "7", "name"},          {"apsC", "x", "type"},       {"[23.5, 15.6]", "[23.5]", "sensor"},
        {"15.6", "0", "sensor"},         {"6000", "6e9", "image"},    {"4000", "4000.5", "image"},
        {"20", "\"20\"", "focalLength"}, {"20", "-3", "focalLength"}, {": 1", ": null", "shortestInterval"},
        {"}]", "}", "no JSON"},          {"[{", "{", "no JSON"}};
    for (const auto& row : rows) {
        const QString fault = AxReadCameras(QByteArray(good).replace(row.from, row.to), cameras);
        EXPECT_TRUE(fault.contains(QLatin1String(row.named))) << row.to << ": " << fault.toStdString();
        EXPECT_EQ(cameras.size(), count) << "the old list stands";
    }
    EXPECT_TRUE(AxReadCameras("[]", cameras).contains("array"));
    EXPECT_EQ(AxReadCameras(good, cameras), QString());
    EXPECT_EQ(cameras.size(), 1);
}

TEST(PlanCameras, NoOtherCameraStandsForOneThatTheFileLacks)
{
    const QTemporaryDir folder;
    const QString path = folder.filePath(QStringLiteral("cameras.json"));
    EXPECT_EQ(AxCameraIn(AxReadCameraFile(path), CameraThermal).fault, QString())
        << "there is no file at all";
    const QByteArray list = R"([{"name": "A", "type": "apsC", "sensor": [23.5, 15.6], "image": [6000, 4000],
                                 "focalLength": 20, "shortestInterval": 1}])";
    const struct
    {
        ECameraType type;
        const char* name;
        QByteArray list;
        const char* fault; // in its text; none
    } rows[] = {{CameraApsC, "", list, nullptr},
                {CameraApsC, "A", list, nullptr},
                {CameraThermal, "", list, "thermal"},
                {CameraThermal, "A", list, "thermal"},
                {CameraApsC, "B", list, "B"},
                {static_cast<ECameraType>(15), "", list, "15"},
                {CameraApsC, "A", QByteArray(list).replace("23.5", "0"), "sensor"}};
    for (const auto& row : rows) {
        QFile file(path);
        ASSERT_TRUE(file.open(QIODevice::WriteOnly));
        file.write(row.list);
        file.close();
        AxPlanRequest request = RandomBlock(1).request;
        request.camera = AxCameraIn(AxReadCameraFile(path), row.type, QLatin1String(row.name));
        const QString fault = AxPlanRoute(request).fault;
        if (row.fault)
            EXPECT_TRUE(fault.contains(QLatin1String(row.fault)) && fault.contains("cameras.json"))
                << row.fault << ": " << fault.toStdString();
        else
            EXPECT_TRUE(fault.isEmpty() && request.camera.imageWidth == 6000) << fault.toStdString();
    }
}

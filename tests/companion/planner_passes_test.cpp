// Passes over a block and their heights.
#include "Planned.h"

#include <AxData/planner/AxPlanFlights.h>
#include <AxData/planner/AxTurn.h>

#include <support/GeosContext.h>

#include <gtest/gtest.h>

#include <functional>
#include <limits>
#include <set>

namespace {
using namespace Planned;

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
        const CAxPoint2D at = At(plane, photo);
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
        const CAxPoint2D at = At(plane, point);
        if (point.role == Role::PassStart)
            passes.emplace_back(at, at);
        if (point.pass >= 0)
            passes.back().second = at;
    }
    return passes;
}

std::optional<double> Hills(double longitude, double latitude)
{
    return 1500.0 + 180.0 * std::sin(longitude * 700.0) * std::cos(latitude * 900.0) +
           10.0 * std::sin(longitude * 5000.0);
}
} // namespace

TEST(PlannerPasses, ShowsAllOfTheBlockAtTheAskedOverlapAndFliesNowhereElse)
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

TEST(PlannerPasses, BeginsEachFlightAtItsOwnCornerOnTheShortestHeading)
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

TEST(PlannerPasses, FlyStraightAcrossHolesThatAreTooShortToTurnAtAndTakeNoPhotosThere)
{
    const struct
    {
        double width; // of the hole, metres
        bool isPausedAt;
        bool isTurnedAt;
    } rows[] = {{8.0, false, false}, {120.0, true, false}, {400.0, false, true}};
    for (const auto& row : rows) {
        SCOPED_TRACE(row.width);
        AxPlanRequest request = RequestOver(Box(-500.0, -200.0, 500.0, 200.0));
        const AxPlanPlane plane({{10.0, 45.0}});
        const double half = 0.5 * row.width;
        request.holes = {RequestOver(Box(-half, -150.0, half, 150.0)).outline};
        request.heading = 90.0;
        request.aircraft.turnRadius = 50.0; // turns take 260 m
        request.aircraft.leadIn = 30.0;
        request.home = request.outline[0];
        const AxPlanResult plan = AxPlanRoute(request);
        EXPECT_EQ(plan.figures.passes > plan.figures.turns + 1, row.isPausedAt);
        EXPECT_EQ(plan.figures.turns > 13, row.isTurnedAt) << "14 lines";
        const bool isSeen = std::any_of(plan.photos.begin(), plan.photos.end(), [&](const auto& photo) {
            const CAxPoint2D at = At(plane, photo);
            return std::abs(at.x()) < half - 0.1 && std::abs(at.y()) < 150.0 - plan.figures.spacing;
        });
        EXPECT_FALSE(isSeen && row.width > plan.figures.photoDistance);
        request.aircraft.endurance = 0.3 * plan.figures.seconds;
        for (const AxPlanFlight& flight : AxSplitIntoFlights(request, plan))
            EXPECT_NE(flight.points.front().role, Role::PassStart) << "without a way to lead in";
    }
}

TEST(PlannerPasses, TurnsNoTighterThanTheAircraftCan)
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

TEST(PlannerPasses, FollowsTheGroundWithinTheLimitsOfTheAircraft)
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
                const double length = AxApart(At(plane, from), At(plane, to));
                const double rise = to.altitude - from.altitude;
                ASSERT_LE(rise, 0.15 * length + 0.01) << i;
                ASSERT_GE(rise, -0.1 * length - 0.01) << i;
                if (heights == AxPlanRequest::Heights::KeepOverlap && from.pass < 0)
                    continue; // passes keep the overlap, not the way between them
                for (double share = 0.0; share <= 1.0; share += 3.0 / std::max(3.0, length)) {
                    const QPointF at = plane.ToLngLat(AxBetween(At(plane, from), At(plane, to), share));
                    ASSERT_GE(from.altitude + share * rise - *Hills(at.x(), at.y()),
                              request.height - (heights == AxPlanRequest::Heights::Terrain ? 0.3 : 2.0))
                        << seed << ": leg " << i << " at " << share;
                }
            }
        }
}

TEST(PlannerPasses, WarnsOfGroundThatComesNearOrIsUnknown)
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

TEST(PlannerPasses, FliesStripsAndCircles)
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
        EXPECT_NEAR(AxApart(At(plane, point), centre.front()), 80.0, 0.5);
}

TEST(PlannerPasses, WarnsOfBendsTighterThanTheAircraftTurns)
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

TEST(PlannerPasses, RefusesWhatAllowsNoRouteAndSaysWhy)
{
    static constexpr double nan = std::numeric_limits<double>::quiet_NaN();
    const struct
    {
        const char* named;
        void (*spoil)(AxPlanRequest&);
    } rows[] = {
        {"side overlap", [](AxPlanRequest& r) { r.sideOverlap = 1.0; }},
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

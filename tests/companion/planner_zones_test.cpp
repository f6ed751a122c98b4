// No-fly zones, ways between home and block, and three directions.
#include "Planned.h"

#include <AxData/planner/AxPlanFlights.h>

#include <support/GeosContext.h>

#include <gtest/gtest.h>

#include <limits>

namespace {
using namespace Planned;
using Rings = std::vector<AxPlanLine>;

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
    ZonedBlock(const QPointF& middle, const Rings& rings)
        : plane({middle}), request(RequestOver(Box(-200.0, -200.0, 200.0, 200.0), middle))
    {
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
    CAxPoint2D Home() const { return plane.ToPlane(*request.home); }
    AxPlanLine FromHomeToHome(const std::vector<AxPlanPoint>& points) const
    {
        AxPlanLine line{Home()};
        for (const AxPlanPoint& point : points)
            line.push_back(At(plane, point));
        line.push_back(Home());
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

TEST(PlannerZones, HomeLegsGoTheShortestWayRoundZones)
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
            const AxPlanLine flown = block.FromHomeToHome(plan.points);
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
            const double shortest = block.ShortestWay(block.Home(), flown[there]);
            EXPECT_GE(length, shortest - 1.0);
            EXPECT_LE(length, shortest + 25.0 * static_cast<double>(there - 1) + 1e-6);

            // Each flight goes home round the zones, too.
            block.request.aircraft.endurance = 0.9 * plan.figures.seconds;
            const std::vector<AxPlanFlight> flights = AxSplitIntoFlights(block.request, plan);
            ASSERT_GT(flights.size(), 1u);
            for (const AxPlanFlight& flight : flights) {
                EXPECT_GT(block.ApartFromZones(block.FromHomeToHome(flight.points)), 1.2);
                EXPECT_LE(flight.seconds, block.request.aircraft.endurance);
            }
        }
}

TEST(PlannerZones, WarnsOfEachStretchInAZone)
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
        const auto metresInside = [&block](const AxPlanLine& way) {
            double metres = 0.0;
            for (std::size_t i = 0; i + 1 < way.size(); ++i)
                metres += block.MetresInside({way[i], way[i + 1]});
            return metres;
        };
        double inside = 0.0;
        const double whole = metresInside(block.FromHomeToHome(plan.points));
        for (const AxPlanWarning& warning : plan.warnings)
            if (warning.kind == Kind::Zone) {
                inside += warning.value;
                EXPECT_EQ(warning.zone, QStringLiteral("0"));
                const AxPlanLine at{block.plane.ToPlane(warning.place), block.Home()};
                EXPECT_LT(block.ApartFromZones(at), 0.1) << "the place is where the zone begins";
            }
        EXPECT_NEAR(inside, whole, 0.5 + 1e-3 * whole);
        // Of flights that are resumed, the ways home are others.
        block.request.aircraft.endurance = 0.9 * plan.figures.seconds;
        const std::vector<AxPlanFlight> flights = AxSplitIntoFlights(block.request, plan);
        EXPECT_EQ(flights.empty(), row.noWays > 0);
        for (const AxPlanFlight& flight : flights) {
            double warned = 0.0;
            for (const AxPlanWarning& warning : flight.warnings)
                warned += warning.kind == Kind::Zone ? warning.value : 0.0;
            EXPECT_NEAR(warned, metresInside(block.FromHomeToHome(flight.points)), 0.5 + 1e-3 * whole);
        }
    }
    // Nobody has given zones: that is not the same as none.
    ZonedBlock block({10.0, 45.0}, {});
    block.request.zones = {};
    EXPECT_EQ(Count(AxPlanRoute(block.request).warnings, Kind::UnknownZones), 1);
}

TEST(PlannerZones, ThreeDirectionsAreThreeRoutesOfEquallyManyPoints)
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

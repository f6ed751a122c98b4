#include "SimulatedMissions.h"

#include <AxTelemetry/simulator/AxSimulatedVehicle.h>

#include <AxData/planner/AxPlanAircraft.h>
#include <AxData/planner/AxPlanner.h>

#include <gtest/gtest.h>

#include <QStringList>

#include <cmath>
#include <limits>
#include <random>

namespace simulated {
namespace {
constexpr double step = 0.1; // seconds between samples

struct Flown
{
    std::vector<AxSimulatedState> samples;
    std::vector<AxSimulatedEvent> events;
    QString refused;

    const AxSimulatedState& End() const { return samples.back(); }
    std::vector<AxSimulatedEvent> Of(AxSimulatedEvent::Kind kind) const
    {
        std::vector<AxSimulatedEvent> some;
        for (const AxSimulatedEvent& event : events)
            if (event.kind == kind)
                some.push_back(event);
        return some;
    }
    QString Texts() const
    {
        QStringList texts;
        for (const AxSimulatedEvent& event : Of(AxSimulatedEvent::Kind::Text))
            texts += event.text;
        return texts.join('\n');
    }
};

/// Flies until it stands again, for so many seconds at most.
Flown Fly(const AxSimulatedAircraft& aircraft, const AxMission& mission, double most = 20000.0)
{
    Flown flown;
    AxSimulatedVehicle vehicle(aircraft);
    flown.refused = vehicle.SetMission(mission);
    if (flown.refused.isEmpty())
        flown.refused = vehicle.Start();
    flown.samples.push_back(vehicle.State());
    while (vehicle.State().isArmed && vehicle.State().seconds < most) {
        vehicle.Step(step);
        flown.samples.push_back(vehicle.State());
        for (const AxSimulatedEvent& event : vehicle.TakeEvents())
            flown.events.push_back(event);
    }
    return flown;
}

void ExpectLanded(const Flown& flown, const AxPlace& at, double metres, const std::string& what)
{
    EXPECT_FALSE(flown.End().isArmed) << what;
    EXPECT_EQ(flown.End().phase, AxSimulatedState::Phase::Ground) << what;
    EXPECT_NEAR(flown.End().place.altitude, at.altitude, 5.0) << what;
    EXPECT_LT(Metres(flown.End().place, at), metres) << what;
    for (std::size_t i = 1; i < flown.samples.size(); ++i)
        ASSERT_LE(flown.samples[i].batteryPercent, flown.samples[i - 1].batteryPercent) << what;
}

/// The tightest turn through the air, metres.
double TightestTurn(const Flown& flown, const AxSimulatedWind& wind)
{
    double tightest = std::numeric_limits<double>::infinity();
    const double from = wind.from * PI / 180.0;
    const auto heading = [&](const AxSimulatedState& state) {
        return std::atan2(state.velocityEast + wind.speed * std::sin(from),
                          state.velocityNorth + wind.speed * std::cos(from));
    };
    for (std::size_t i = 1; i < flown.samples.size(); ++i) {
        const AxSimulatedState& now = flown.samples[i];
        if (now.phase != AxSimulatedState::Phase::Mission && now.phase != AxSimulatedState::Phase::Return)
            continue;
        const double turn = std::fabs(std::remainder(heading(now) - heading(flown.samples[i - 1]), 2.0 * PI));
        const double level = std::sqrt(now.airSpeed * now.airSpeed - now.velocityUp * now.velocityUp);
        if (turn > 1e-6)
            tightest = std::min(tightest, level * step / turn);
    }
    return tightest;
}
} // namespace

TEST(SimulatedVehicle, PassesEachWaypointInOrderAndLandsAtHome)
{
    const AxPlace onAntimeridian{179.998, -17.8, 20.0};
    const struct
    {
        EPlaneType type;
        AxSimulatedWind wind;
        AxPlace from;
        double lands; // metres from home at most
    } rows[] = {{PlaneQuadcopter, {}, home, 2.0},
                {PlaneQuadcopter, {8.0, 250.0}, home, 2.0},
                {PlaneObliqueCopter, {5.0, 10.0}, onAntimeridian, 2.0},
                {PlaneFixedWing, {}, home, 100.0},
                {PlaneFixedWing, {9.0, 40.0}, home, 100.0},
                {PlaneFixedWing, {6.0, 300.0}, onAntimeridian, 100.0},
                {PlaneQuadPlane, {6.0, 180.0}, home, 3.0},
                {PlaneTailSitter, {}, home, 3.0}};
    std::mt19937 random(20261122);
    for (const auto& row : rows) {
        // Anywhere at all: many of these are not to be met in one turn.
        std::uniform_real_distribution<double> metres(-500.0, 500.0);
        std::uniform_real_distribution<double> heights(40.0, 120.0);
        std::vector<AxMissionItem> items;
        for (int i = 0; i < 12; ++i) {
            AxPlace place = Beside(row.from, metres(random), metres(random));
            place.longitude = std::remainder(place.longitude, 360.0);
            items.push_back(Waypoint(place, heights(random)));
        }
        AxSimulatedAircraft aircraft = Aircraft(row.type, row.wind, row.from);
        aircraft.endurance = 20000.0;
        const Flown flown = Fly(aircraft, MissionOf(items));
        const std::string what =
            "type " + std::to_string(row.type) + ", wind " + std::to_string(row.wind.speed);
        ASSERT_EQ(flown.refused, QString()) << what;
        const auto reached = flown.Of(AxSimulatedEvent::Kind::Reached);
        ASSERT_EQ(reached.size(), items.size()) << what << '\n' << flown.Texts().toStdString();
        const double acceptance = aircraft.HasWings() ? 20.0 : 2.0;
        for (std::size_t i = 0; i < reached.size(); ++i) {
            EXPECT_EQ(reached[i].number, int(i)) << what;
            const AxSimulatedState& there =
                flown.samples[std::size_t(std::lround(reached[i].seconds / step))];
            const AxPlace place{items[i].longitude, items[i].latitude, 0.0};
            EXPECT_LT(Metres(there.place, place), acceptance + 2.5)
                << what << " item " << i; // and one sample
            EXPECT_NEAR(there.heightAboveHome, items[i].altitude, 11.0) << what << " item " << i;
        }
        if (row.type == PlaneFixedWing) {
            EXPECT_GT(TightestTurn(flown, row.wind), 0.98 * aircraft.turnRadius) << what;
            for (const AxSimulatedState& state : flown.samples) // never stands in the air
                ASSERT_TRUE(state.phase != AxSimulatedState::Phase::Mission || state.airSpeed > 10.0) << what;
        }
        ExpectLanded(flown, row.from, row.lands, what);
    }
}

TEST(SimulatedVehicle, HoldsItsPassInTheWindAndTakesPhotosByDistance)
{
    for (EPlaneType type : {PlaneQuadcopter, PlaneFixedWing})
        for (const AxSimulatedWind& wind :
             {AxSimulatedWind{}, AxSimulatedWind{7.0, 0.0}, AxSimulatedWind{7.0, 270.0}}) {
            // A pass to the east, with room before it to come onto it.
            const AxMission mission = MissionOf(
                {Waypoint(Beside(home, 300.0, 0.0), 80.0), Waypoint(Beside(home, 300.0, 400.0), 80.0),
                 Doing(AxMissionItem::TriggerDistance, {35.0, 0.0, 1.0, 0.0}),
                 Waypoint(Beside(home, 300.0, 1400.0), 80.0),
                 Doing(AxMissionItem::TriggerDistance, {0.0, 0.0, 1.0, 0.0})});
            const Flown flown = Fly(Aircraft(type, wind), mission);
            const std::string what = std::to_string(type) + ", wind from " + std::to_string(wind.from);
            const auto photos = flown.Of(AxSimulatedEvent::Kind::Photo);
            ASSERT_EQ(photos.size(), 29U) << what;
            EXPECT_LT(Metres(photos.front().place, Beside(home, 300.0, 400.0)), 2.5) << what;
            for (std::size_t i = 0; i < photos.size(); ++i) {
                EXPECT_EQ(photos[i].number, int(i));
                if (i > 0) {
                    EXPECT_NEAR(Metres(photos[i - 1].place, photos[i].place), 35.0, 0.1) << what;
                }
                EXPECT_NEAR(photos[i].place.latitude, Beside(home, 300.0, 0.0).latitude, 3.0 / 111000.0)
                    << what;
                EXPECT_NEAR(photos[i].place.altitude, home.altitude + 80.0, 1.0) << what;
            }
            const AxSimulatedEvent& middle = photos[15];
            if (type == PlaneFixedWing) { // crabs into the wind
                const double across = wind.from == 0.0 ? wind.speed : 0.0;
                EXPECT_NEAR(middle.yaw, PI / 2.0 - std::asin(across / 18.0), 0.03) << what;
                EXPECT_NEAR(middle.roll, 0.0, 0.03) << what;
            } else if (wind.speed > 0.0) { // leans into it
                EXPECT_GT(std::fabs(wind.from == 0.0 ? middle.roll : middle.pitch), 0.02) << what;
            }
            ExpectLanded(flown, home, 100.0, what);
        }
}

TEST(SimulatedVehicle, MissionsThatAreOddEndWithAWord)
{
    const AxPlace north = Beside(home, 200.0, 0.0);
    const AxPlace east = Beside(home, 0.0, 200.0);
    AxMissionItem offGlobe = Waypoint(north, 50.0);
    offGlobe.latitude = noNumber;
    AxMissionItem aboveGround = Waypoint(north, 50.0);
    aboveGround.frame = 10;
    const AxMissionItem forEver = Doing(AxMissionItem::Jump, {1.0, -1.0, 0.0, 0.0});
    const struct
    {
        const char* what;
        std::vector<AxMissionItem> items;
        bool isRefused;
        const char* says;
    } rows[] = {
        {"none", {}, true, "no items"},
        {"a place that is no number", {offGlobe}, true, "not on the globe"},
        {"a jump to nowhere", {Waypoint(north, 50.0), Doing(177, {9.0, 1.0, 0, 0})}, true, "does not exist"},
        {"one point", {Waypoint(north, 50.0)}, false, "The mission is flown"},
        {"one point at home", {Waypoint(home, 0.0)}, false, "The mission is flown"},
        {"the same point twice",
         {Waypoint(north, 50.0), Waypoint(north, 50.0)},
         false,
         "The mission is flown"},
        {"a loop flown thrice",
         {Waypoint(north, 50.0), Waypoint(east, 50.0), Doing(177, {1.0, 2.0, 0, 0})},
         false,
         "The mission is flown"},
        {"a loop for ever", {Waypoint(north, 50.0), Waypoint(east, 50.0), forEver}, false, "battery is low"},
        {"a point for ever", {Waypoint(north, 50.0), forEver}, false, "battery is low"},
        {"a circle for ever", {Item(17, {0.0, 0.0, 30.0, 0.0}, north, 50.0)}, false, "battery is low"},
        {"a jump to itself", {forEver}, false, "without flying anywhere"},
        {"a jump among speeds",
         {Doing(178, {0.0, 9.0, -1.0, 0.0}), forEver},
         false,
         "without flying anywhere"},
        {"a speed that is no number",
         {Doing(178, {0.0, noNumber, -1.0, 0.0}), Waypoint(north, 50.0)},
         false,
         "Item 1 lacks a number"},
        {"photos at no distance",
         {Waypoint(north, 50.0), Doing(206, {noNumber, 0.0, 1.0, 0.0})},
         false,
         "Item 2 lacks a number"},
        {"a jump no number of times",
         {Waypoint(north, 50.0), Doing(177, {1.0, noNumber, 0, 0})},
         false,
         "Item 2 lacks a number"},
        {"an unknown command", {Waypoint(north, 50.0), Doing(31010, {})}, false, "31010 is passed over"},
        {"heights above a ground that is not known", {aboveGround}, false, "ground is not known"},
        {"waits, circles, lands at home",
         {Doing(93, {5.0, 0, 0, 0}), Item(18, {2.0, 0.0, -40.0, 0.0}, north, 50.0),
          Item(19, {20.0, 0.0, 0.0, 0.0}, east, 50.0), Doing(20, {})},
         false,
         "Returning home"}};
    for (EPlaneType type : {PlaneQuadcopter, PlaneFixedWing, PlaneQuadPlane})
        for (const auto& row : rows) {
            const std::string what = std::string(row.what) + ", type " + std::to_string(type);
            AxSimulatedAircraft aircraft = Aircraft(type, {3.0, 90.0});
            aircraft.endurance = 900.0;
            const Flown flown = Fly(aircraft, MissionOf(row.items));
            EXPECT_EQ(!flown.refused.isEmpty(), row.isRefused) << what << flown.refused.toStdString();
            EXPECT_TRUE((flown.refused + flown.Texts()).contains(row.says)) << what << '\n'
                                                                            << flown.Texts().toStdString();
            ExpectLanded(flown, home, 100.0, what);
            for (const AxSimulatedState& state : flown.samples)
                ASSERT_TRUE(std::isfinite(state.place.longitude + state.place.latitude +
                                          state.place.altitude + state.roll + state.pitch + state.yaw))
                    << what;
        }
}

TEST(SimulatedVehicle, WithoutPowerOrAgainstTooMuchWindItStillComesDown)
{
    const AxMission far = MissionOf({Waypoint(Beside(home, 5000.0, 0.0), 60.0)});
    for (EPlaneType type : {PlaneQuadcopter, PlaneFixedWing, PlaneQuadPlane})
        for (double wind : {0.0, 60.0}) {
            AxSimulatedAircraft aircraft = Aircraft(type, {wind, 0.0});
            aircraft.endurance = 100.0;
            aircraft.returnBattery = 0.0;
            const Flown flown = Fly(aircraft, far, 3000.0);
            const std::string what = std::to_string(type) + ", wind " + std::to_string(wind);
            EXPECT_TRUE(flown.Texts().contains("battery is empty")) << what;
            EXPECT_FALSE(flown.End().isArmed) << what;
            EXPECT_NEAR(flown.End().place.altitude, home.altitude, 1.0) << what;
        }
    // On what is not flat: down to the ground that is there, and home again at its own.
    AxSimulatedAircraft hilly = Aircraft(PlaneQuadcopter, {});
    hilly.ground = [](double, double latitude) { return 500.0 + (latitude - home.latitude) * 11117.0; };
    AxSimulatedVehicle vehicle(hilly);
    ASSERT_EQ(vehicle.SetMission(MissionOf({Item(21, {}, Beside(home, 400.0, 0.0), 0.0)})), QString());
    ASSERT_EQ(vehicle.Start(), QString());
    for (int i = 0; i < 3000 && vehicle.State().isArmed; ++i)
        vehicle.Step(step);
    EXPECT_NEAR(vehicle.State().place.altitude, 540.0, 0.5);
    EXPECT_NEAR(vehicle.State().heightAboveGround, 0.0, 0.1);

    // Ground that becomes known in flight, far above where the aircraft took off, is no hill that it hits.
    AxSimulatedAircraft late = Aircraft(PlaneQuadcopter, {});
    bool isKnown = false;
    late.ground = [&](double, double) { return isKnown ? std::optional<double>(2000.0) : std::nullopt; };
    AxSimulatedVehicle unaware(late);
    ASSERT_EQ(unaware.SetMission(MissionOf({Waypoint(Beside(home, 100.0, 0.0), 50.0)})), QString());
    ASSERT_EQ(unaware.Start(), QString());
    isKnown = true;
    for (int i = 0; i < 3000 && unaware.State().isArmed; ++i)
        unaware.Step(step);
    EXPECT_NEAR(unaware.State().place.altitude, home.altitude, 0.5);
}

TEST(SimulatedVehicle, FliesWhatThePlannerPlans)
{
    for (EPlaneType type : {PlaneQuadcopter, PlaneFixedWing, PlaneQuadPlane})
        for (double wind : {0.0, 7.0}) {
            AxPlanRequest request;
            request.outline = {{7.40, 46.90}, {7.406, 46.90}, {7.406, 46.905}, {7.40, 46.905}};
            request.height = 100.0;
            request.meanGround = request.homeAltitude = home.altitude;
            request.home = QPointF(home.longitude, home.latitude);
            request.aircraft = AxAircraftOfType(type);
            request.windSpeed = wind;
            request.windFrom = 60.0;
            const AxPlanResult plan = AxPlanRoute(request);
            const AxMissionRead mission = AxMissionOf(plan, request, "survey");
            ASSERT_EQ(mission.fault, QString());
            AxSimulatedAircraft aircraft = AxSimulatedAircraftOf(type, request.aircraft);
            aircraft.wind = {wind, request.windFrom};
            aircraft.home = home;
            const Flown flown = Fly(aircraft, mission.mission);
            const std::string what = "type " + std::to_string(type) + ", wind " + std::to_string(wind);
            EXPECT_FALSE(flown.Texts().contains("missed")) << what;
            EXPECT_TRUE(flown.Texts().contains("The mission is flown")) << what;
            // A plan that ends a pass with a photo counts one more than are taken at even distances.
            const auto photos = double(flown.Of(AxSimulatedEvent::Kind::Photo).size());
            EXPECT_NEAR(photos, plan.figures.photos - 0.5 * plan.figures.passes, 0.6 * plan.figures.passes)
                << what;
            if (aircraft.HasWings()) { // copters keep their speed over the ground, whatever the wind
                EXPECT_NEAR(flown.End().seconds, plan.figures.seconds, 0.2 * plan.figures.seconds) << what;
            }
        }
}
} // namespace simulated

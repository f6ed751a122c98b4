#include <AxTelemetry/AxMavlinkStation.h>
#include <AxTelemetry/AxMissionTransfer.h>
#include <AxTelemetry/link/AxUdpLink.h>
#include <AxTelemetry/mavlink/AxMavMessages.h>
#include <AxTelemetry/mavlink/AxMavParser.h>
#include <AxTelemetry/mavlink/AxMavWriter.h>
#include <AxTelemetry/simulator/AxSimulatedVehicle.h>
#include <AxTelemetry/simulator/AxSimulatorLink.h>
#include <AxTelemetry/simulator/AxUdpBridge.h>

#include <AxAlgorthm/AxConstants.h>
#include <AxAlgorthm/AxCoordinate.h>

#include <gtest/gtest.h>

#include <QSignalSpy>
#include <QStringList>
#include <QTest>

#include <cmath>
#include <limits>
#include <random>

namespace {
constexpr double noNumber = std::numeric_limits<double>::quiet_NaN();
constexpr double step = 0.1; // seconds between samples
const AxPlace home{7.4, 46.9, 600.0};

/// A place so many metres from home, on the ellipsoid's own terms.
AxPlace Beside(const AxPlace& from, double north, double east)
{
    return {from.longitude + east / (111320.0 * std::cos(from.latitude * PI / 180.0)),
            from.latitude + north / 111170.0, from.altitude};
}

double Metres(const AxPlace& a, const AxPlace& b)
{
    return DistanceBetweenTwoLatLng(CAxVector3D(a.longitude, a.latitude, 0),
                                    CAxVector3D(b.longitude, b.latitude, 0));
}

AxMissionItem Item(int command, std::array<double, 4> params, const AxPlace& place, double height)
{
    AxMissionItem item;
    item.command = command;
    item.params = params;
    item.latitude = place.latitude;
    item.longitude = place.longitude;
    item.altitude = height;
    return item;
}

AxMissionItem Waypoint(const AxPlace& place, double height)
{
    return Item(AxMissionItem::Waypoint, {0.0, 0.0, 0.0, noNumber}, place, height);
}

AxMissionItem Doing(int command, std::array<double, 4> params)
{
    AxMissionItem item;
    item.command = command;
    item.frame = AxMissionItem::Mission;
    item.params = params;
    return item;
}

AxMission MissionOf(std::vector<AxMissionItem> items)
{
    AxMission mission;
    mission.home = {home.latitude, home.longitude, home.altitude};
    mission.items = std::move(items);
    return mission;
}

AxSimulatedAircraft Aircraft(EPlaneType type, const AxSimulatedWind& wind, const AxPlace& from = home)
{
    AxSimulatedAircraft aircraft;
    aircraft.type = type;
    aircraft.speed = aircraft.HasWings() ? 18.0 : 10.0;
    aircraft.wind = wind;
    aircraft.home = from;
    return aircraft;
}

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
}

namespace {
/// A station that hears simulated aircraft. Time passes by Run() alone.
struct Chain
{
    AxSimulatorLink* link = new AxSimulatorLink; // the station's
    AxMavlinkStation station{std::unique_ptr<AxTelemetryLink>(link)};
    qint64 now = 1790000000000; // milliseconds since 1970

    Chain()
    {
        link->SetOwnTimer(false);
        station.SetClock([this] { return now; });
    }
    void Open()
    {
        QString fault;
        ASSERT_TRUE(station.Open(&fault)) << fault.toStdString();
    }
    /// Until it is so, for so many real seconds at most.
    template <class Condition> bool Run(double seconds, Condition isSo)
    {
        for (int tick = 0; tick < seconds * 50.0; ++tick) {
            if (isSo())
                return true;
            now += 20;
            link->Advance(0.02);
            station.Tick();
        }
        return isSo();
    }
    void Run(double seconds)
    {
        Run(seconds, [] { return false; });
    }
};

AxMission Survey()
{
    return MissionOf(
        {Doing(AxMissionItem::ChangeSpeed, {1.0, 9.0, -1.0, 0.0}), Waypoint(Beside(home, 100.0, 0.0), 60.0),
         Doing(AxMissionItem::TriggerDistance, {30.0, 0.0, 1.0, 0.0}),
         Waypoint(Beside(home, 100.0, 400.0), 60.0),
         Doing(AxMissionItem::TriggerDistance, {0.0, 0.0, 1.0, 0.0}),
         Doing(AxMissionItem::Jump, {2.0, 1.0, 0.0, 0.0}), Waypoint(Beside(home, 200.0, 0.0), 70.0)});
}

void ExpectSame(const AxMission& a, const AxMission& b)
{
    ASSERT_EQ(a.items.size(), b.items.size());
    for (std::size_t i = 0; i < a.items.size(); ++i) {
        EXPECT_EQ(a.items[i].command, b.items[i].command) << i;
        EXPECT_EQ(a.items[i].frame, b.items[i].frame) << i;
        for (int p = 0; p < 4; ++p)
            EXPECT_TRUE(a.items[i].params[p] == b.items[i].params[p] ||
                        (std::isnan(a.items[i].params[p]) && std::isnan(b.items[i].params[p])))
                << i << ' ' << p;
        EXPECT_NEAR(a.items[i].latitude, b.items[i].latitude, 1e-7) << i;
        EXPECT_NEAR(a.items[i].longitude, b.items[i].longitude, 1e-7) << i;
        EXPECT_NEAR(a.items[i].altitude, b.items[i].altitude, 1e-4) << i;
    }
}
} // namespace

TEST(SimulatorLink, AMissionIsUploadedFlownAtAHundredTimesAndSeen)
{
    for (const auto autopilot : {AxSimulatorLink::Autopilot::ArduPilot, AxSimulatorLink::Autopilot::Px4}) {
        Chain chain;
        chain.link->Add(Aircraft(PlaneHexacopter, {4.0, 270.0}), autopilot);
        const AxPlace far{-70.0, -30.0, 50.0};
        chain.link->Add(Aircraft(PlaneFixedWing, {}, far), autopilot);
        chain.Open();
        chain.Run(2.0);
        AxMavlinkAircraft* const flown = chain.station.AircraftOf(1);
        AxMavlinkAircraft* const other = chain.station.AircraftOf(2);
        ASSERT_TRUE(flown && other && chain.station.Aircraft().size() == 2);
        EXPECT_EQ(flown->State().planeType, PlaneHexacopter);
        EXPECT_EQ(other->State().planeType, PlaneFixedWing);
        EXPECT_NEAR(flown->State().altitude.value_or(0.0), home.altitude,
                    0.01); // down to the sea and up again
        EXPECT_EQ(flown->State().isLanded, true);
        EXPECT_NEAR(flown->State().windFrom.value_or(0.0), 270.0, 0.1);
        EXPECT_EQ(flown->State().batteryPercent, 100);

        AxMissionTransfer transfer(flown);
        QSignalSpy finished(&transfer, &AxMissionTransfer::signalFinished);
        ASSERT_TRUE(transfer.Upload(Survey()));
        ASSERT_TRUE(chain.Run(20.0, [&] { return !finished.isEmpty(); }));
        EXPECT_EQ(finished.takeFirst().at(0).toString(), QString());
        ExpectSame(chain.link->Vehicle(1)->Mission(), Survey());
        ASSERT_TRUE(transfer.Download());
        ASSERT_TRUE(chain.Run(20.0, [&] { return !finished.isEmpty(); }));
        EXPECT_EQ(finished.takeFirst().at(0).toString(), QString());
        ExpectSame(transfer.Mission(), Survey());

        std::vector<AxPhotoRecord> photos;
        QStringList messages;
        QObject::connect(flown, &AxTelemetrySource::signalPhoto,
                         [&](const AxPhotoRecord& photo) { photos.push_back(photo); });
        QObject::connect(flown, &AxTelemetrySource::signalMessage,
                         [&](int, const QString& text) { messages += text; });
        QSignalSpy otherPhotos(other, &AxTelemetrySource::signalPhoto);
        flown->StartMission();
        ASSERT_TRUE(chain.Run(5.0, [&] { return flown->State().isArmed; }));
        chain.link->SetSpeed(100.0);
        double farthest = 0.0; // metres between what is flown and what is seen
        int latest = -1;       // item
        ASSERT_TRUE(chain.Run(30.0, [&] {
            const AxAircraftState& seen = flown->State();
            farthest = std::max(farthest, Metres(chain.link->Vehicle(1)->State().place,
                                                 {*seen.longitude, *seen.latitude, 0.0}));
            latest = std::max(latest, seen.missionCurrent);
            return !seen.isArmed;
        }));
        chain.Run(1.0);
        EXPECT_LT(farthest, 45.0); // two ticks of 2 s each
        EXPECT_EQ(latest, int(Survey().items.size()) - 1);
        EXPECT_EQ(flown->State().missionCount, int(Survey().items.size()));
        EXPECT_EQ(photos.size(), 28U); // along 400 m, twice
        for (std::size_t i = 0; i < photos.size(); ++i) {
            EXPECT_EQ(photos[i].index, int(i));
            EXPECT_NEAR(photos[i].altitude, home.altitude + 60.0, 1.0);
            EXPECT_TRUE(i == 0 || photos[i].time >= photos[i - 1].time);
        }
        EXPECT_TRUE(messages.contains("The mission is flown.")) << messages.join('|').toStdString();
        EXPECT_LT(Metres(home, {*flown->State().longitude, *flown->State().latitude, 0.0}), 2.0);
        EXPECT_EQ(flown->State().isLanded, true);
        EXPECT_LT(*flown->State().batteryPercent, 100);
        EXPECT_EQ(chain.station.Counts().lost + chain.station.Counts().garbageBytes, 0U);
        // The other one has stood still meanwhile.
        EXPECT_TRUE(otherPhotos.isEmpty());
        EXPECT_NEAR(*other->State().longitude, far.longitude, 1e-6);
        EXPECT_NEAR(*other->State().altitude, far.altitude, 0.01);
    }
}

TEST(SimulatorLink, LostFramesCountAsLostAndALinkComesBack)
{
    Chain chain;
    chain.link->Add(Aircraft(PlaneQuadcopter, {}));
    chain.Open();
    chain.Run(2.0);
    AxMavlinkAircraft* const aircraft = chain.station.AircraftOf(1);
    ASSERT_TRUE(aircraft);
    chain.link->SetLoss(0.2, 7);
    AxMissionTransfer transfer(aircraft);
    QSignalSpy finished(&transfer, &AxMissionTransfer::signalFinished);
    ASSERT_TRUE(transfer.Upload(Survey()));
    ASSERT_TRUE(chain.Run(60.0, [&] { return !finished.isEmpty(); }));
    EXPECT_EQ(finished.takeFirst().at(0).toString(), QString());
    ExpectSame(chain.link->Vehicle(1)->Mission(), Survey());
    chain.Run(60.0);
    const AxStationCounts counts = chain.station.Counts();
    EXPECT_GT(counts.frames, 500U);
    EXPECT_NEAR(double(counts.lost) / double(counts.lost + counts.frames), 0.2, 0.05);
    EXPECT_EQ(aircraft->State().framesLost, counts.lost);

    chain.link->SetLoss(0.0);
    QSignalSpy lost(aircraft, &AxTelemetrySource::signalLinkLost);
    QSignalSpy back(aircraft, &AxTelemetrySource::signalLinkBack);
    chain.link->Drop(5.0);
    chain.Run(4.0);
    EXPECT_EQ(lost.size(), 1);
    EXPECT_FALSE(aircraft->State().isHeard);
    chain.Run(3.0);
    EXPECT_EQ(back.size(), 1);
    EXPECT_TRUE(aircraft->State().isHeard);

    // Signed: heard by those who have the key only.
    ASSERT_TRUE(chain.link->SetKey(QByteArray(32, 'k')));
    chain.Run(4.0);
    EXPECT_EQ(lost.size(), 2);
    EXPECT_GT(chain.station.Counts().refusedSignatures, 0U);
    ASSERT_TRUE(chain.station.SetKey(QByteArray(32, 'k')));
    chain.Run(2.0);
    EXPECT_EQ(back.size(), 2);
}

TEST(SimulatorLink, AnswersWhatIsWrong)
{
    AxSimulatorLink link;
    link.SetOwnTimer(false);
    link.Add(Aircraft(PlaneQuadcopter, {}));
    link.Add(Aircraft(PlaneQuadcopter, {}));
    QString fault;
    ASSERT_TRUE(link.Open(&fault));
    AxMavParser parser;
    std::vector<AxMavFrame> frames;
    QObject::connect(&link, &AxTelemetryLink::signalBytes, [&](const QByteArray& bytes) {
        parser.Feed(bytes, [&](const AxMavFrame& frame) { frames.push_back(frame); });
    });
    AxMavWriter station(255, 190);
    const auto answerTo = [&](const QByteArray& bytes, int system) {
        frames.clear();
        link.Write(bytes);
        link.Advance(0.1);
        int result = -1;
        for (const AxMavFrame& frame : frames) {
            AxMavMissionAck mission;
            AxMavCommandAck command;
            if (frame.systemId == system && AxMavDecode(frame, mission))
                result = mission.type;
            if (frame.systemId == system && AxMavDecode(frame, command))
                result = command.result;
        }
        return result;
    };
    const auto command = [&](int number, double param) {
        AxMavCommandLong message;
        message.target_system = 2;
        message.command = quint16(number);
        message.param1 = float(param);
        return station.Write(message);
    };
    const auto missionMessage = [&](auto message, int sequence, int type) {
        message.target_system = 2;
        message.seq = quint16(sequence);
        message.mission_type = quint8(type);
        return station.Write(message);
    };
    AxMavMissionCount fence;
    fence.target_system = 2;
    fence.count = 3;
    fence.mission_type = 1;
    AxMavMissionClearAll clear;
    clear.target_system = 2;
    const struct
    {
        const char* what;
        QByteArray bytes;
        int result; // MAV_MISSION_RESULT or MAV_RESULT; -1 no answer
    } rows[] = {{"noise", QByteArray(5000, '\xfd'), -1},
                {"a fence", station.Write(fence), 3},
                {"an item that is not there", missionMessage(AxMavMissionRequestInt(), 0, 0), 13},
                {"an item that nobody asked for", missionMessage(AxMavMissionItemInt(), 0, 0), -1},
                {"starting without a mission", command(300, 0.0), 4},
                {"an unknown command", command(31000, 0.0), 3},
                {"disarming on the ground", command(400, 0.0), 0},
                {"clearing", station.Write(clear), 0}};
    for (const auto& row : rows) {
        EXPECT_EQ(answerTo(row.bytes, 1), -1) << row.what; // is not meant
        EXPECT_EQ(answerTo(row.bytes, 2), row.result) << row.what;
    }
    // An upload of a thousand items whose giver falls silent ends, and another giver has its turn.
    AxMavMissionCount count;
    count.target_system = 2;
    count.count = 1000;
    EXPECT_EQ(answerTo(station.Write(count), 2), -1);
    AxMavWriter second(254, 190);
    EXPECT_EQ(answerTo(second.Write(count), 2), 14);
    link.Advance(6.0);
    EXPECT_EQ(answerTo(second.Write(count), 2), -1);
    EXPECT_TRUE(link.Vehicle(2)->Mission().items.empty());
}

TEST(SimulatorLink, IsHeardOverUdpAndMayGoAwayWhileItSpeaks)
{
    auto made = std::make_unique<AxUdpLink>(quint16(0));
    AxUdpLink* const udp = made.get();
    auto station = std::make_unique<AxMavlinkStation>(std::move(made));
    QString fault;
    ASSERT_TRUE(station->Open(&fault)) << fault.toStdString();
    auto simulator = std::make_unique<AxSimulatorLink>();
    simulator->Add(Aircraft(PlaneTailSitter, {}));
    AxSimulatorLink* const link = simulator.get();
    AxUdpBridge bridge(std::move(simulator), "127.0.0.1", udp->Port());
    ASSERT_TRUE(bridge.Open(&fault)) << fault.toStdString();
    ASSERT_TRUE(QTest::qWaitFor(
        [&] { return station->AircraftOf(1) && station->AircraftOf(1)->State().longitude; }, 10000));
    station->AircraftOf(1)->Arm(true);
    EXPECT_TRUE(QTest::qWaitFor([&] { return link->Vehicle(1)->State().isArmed; }, 10000));
    bridge.Close();

    // A handler that ends it all.
    auto gone = std::make_unique<AxSimulatorLink>();
    gone->Add(Aircraft(PlaneQuadcopter, {}));
    gone->SetSpeed(50.0);
    QObject::connect(gone.get(), &AxTelemetryLink::signalBytes, [&] { gone.reset(); });
    ASSERT_TRUE(gone->Open(&fault));
    EXPECT_TRUE(QTest::qWaitFor([&] { return !gone; }, 10000));
}

// What frames of an aircraft mean.
#include <AxTelemetry/AxVehicleDecoder.h>
#include <AxTelemetry/mavlink/AxMavMessages.h>
#include <AxTelemetry/mavlink/AxMavParser.h>
#include <AxTelemetry/mavlink/AxMavWriter.h>

#include <AxAlgorthm/AxGeoid.h>

#include <QStringList>

#include <gtest/gtest.h>

#include <cmath>
#include <functional>
#include <limits>

namespace {
constexpr qint64 start = 1'700'000'000'000; // ms
constexpr float notANumber = std::numeric_limits<float>::quiet_NaN();

struct Told : AxVehicleEvents
{
    void Position(const AxPlace& place, quint64 time) override
    {
        places.push_back(place);
        times.push_back(static_cast<qint64>(time) - start);
    }
    void Attitude(double roll, double, double yaw, quint64) override
    {
        rolls.push_back(roll);
        yaws.push_back(yaw);
    }
    void Photo(const AxPhotoRecord& photo) override { photos.push_back(photo); }
    void Camera(double angle) override { angles.push_back(angle); }
    void Message(int severity, const QString& text) override
    {
        texts << QStringLiteral("%1 %2").arg(severity).arg(text);
    }

    std::vector<AxPlace> places;
    std::vector<qint64> times;
    std::vector<double> rolls, yaws, angles;
    std::vector<AxPhotoRecord> photos;
    QStringList texts;
};

/// An aircraft whose words go straight to a decoder.
struct Vehicle
{
    template <class Message> void Say(const Message& message, qint64 after = 0, quint8 component = 1)
    {
        AxMavParser parser;
        const auto feed = [&](const AxMavFrame& frame) { decoder.Feed(frame, start + after); };
        parser.Feed(AxMavWriter(7, component).Write(message), feed);
        parser.Flush(feed);
    }
    void Beat(quint8 autopilot, quint8 type, quint8 baseMode = 0, quint32 customMode = 0)
    {
        AxMavHeartbeat beat;
        beat.autopilot = autopilot;
        beat.type = type;
        beat.base_mode = baseMode;
        beat.custom_mode = customMode;
        Say(beat);
    }
    /// At 100 m above the sea, 5 m/s to the north, climbing with 2 m/s.
    void Fly(double latitude, double longitude, quint32 boot = 0, qint64 after = 0)
    {
        AxMavGlobalPositionInt position;
        position.time_boot_ms = boot;
        position.lat = static_cast<qint32>(std::lround(latitude * 1e7));
        position.lon = static_cast<qint32>(std::lround(longitude * 1e7));
        position.alt = 100000;
        position.relative_alt = 40000;
        position.vx = 500;
        position.vz = -200;
        position.hdg = 27000;
        Say(position, after);
    }
    const AxAircraftState& State() const { return decoder.State(); }

    Told told;
    AxVehicleDecoder decoder{7, &told};
};
} // namespace

TEST(VehicleDecoder, GivesHeightsAboveTheEllipsoid)
{
    Vehicle vehicle;
    vehicle.Fly(37.5, -105.25);
    const auto geoid = AxGeoidHeight(37.5, -105.25);
    ASSERT_EQ(vehicle.told.places.size(), 1u);
    EXPECT_NEAR(vehicle.told.places[0].altitude, 100.0 + geoid.value_or(0.0), 1e-6);
    EXPECT_EQ(vehicle.State().geoidNote.isEmpty(), geoid.has_value());
    EXPECT_NEAR(*vehicle.State().longitude, -105.25, 1e-9);
    EXPECT_NEAR(*vehicle.State().altitudeAboveSea, 100.0, 1e-9);
    EXPECT_NEAR(*vehicle.State().heightAboveHome, 40.0, 1e-9);
    EXPECT_NEAR(*vehicle.State().groundSpeed, 5.0, 1e-9);
    EXPECT_NEAR(*vehicle.State().climbRate, 2.0, 1e-9);
    EXPECT_NEAR(*vehicle.State().heading, 270.0, 1e-9);
}

TEST(VehicleDecoder, ReadsWhatTheAircraftHasAndWhereItIs)
{
    Vehicle vehicle;
    vehicle.Beat(3, 13, 128, 5);
    AxMavSysStatus power;
    power.voltage_battery = 15200;
    power.current_battery = 1234;
    power.battery_remaining = 80;
    vehicle.Say(power);
    AxMavBatteryStatus second;
    second.id_ = 1;
    second.battery_remaining = 35;
    vehicle.Say(second);
    AxMavHomePosition home;
    home.latitude = 375000000;
    home.longitude = -1052500000;
    home.altitude = 60000;
    vehicle.Say(home);
    AxMavWindCov wind; // towards the south west
    wind.wind_x = -3.0f;
    wind.wind_y = -4.0f;
    vehicle.Say(wind);
    AxMavMissionCurrent mission;
    mission.seq = 3;
    mission.total = 9;
    vehicle.Say(mission);
    AxMavExtendedSysState extended;
    extended.landed_state = 2;
    vehicle.Say(extended);
    AxMavGimbalDeviceAttitudeStatus gimbal; // 60 degrees down, to the east
    gimbal.flags = 64;
    gimbal.q = {0.6123724f, 0.3535534f, -0.3535534f, 0.6123724f};
    vehicle.Say(gimbal, 0, 154);
    const AxAircraftState& state = vehicle.State();
    EXPECT_EQ(state.planeType, PlaneHexacopter);
    EXPECT_TRUE(state.isArmed);
    EXPECT_NEAR(*state.batteryVolts, 15.2, 1e-9);
    EXPECT_NEAR(*state.batteryAmperes, 12.34, 1e-9);
    EXPECT_EQ(*state.batteryPercent, 35) << "the emptiest";
    EXPECT_NEAR(state.home->altitude, 60.0 + AxGeoidHeight(37.5, -105.25).value_or(0.0), 1e-6);
    EXPECT_NEAR(*state.windSpeed, 5.0, 1e-6);
    EXPECT_NEAR(*state.windFrom, 53.13, 0.01);
    EXPECT_EQ(state.missionCurrent, 2) << "home is item 0 there";
    EXPECT_EQ(state.missionCount, 9);
    EXPECT_FALSE(*state.isLanded);
    EXPECT_NEAR(*state.cameraPitch, -60.0, 0.01);
    EXPECT_NEAR(vehicle.told.angles.at(0), 30.0, 0.01);
    EXPECT_NEAR(state.cameraYaw.value_or(0.0), 90.0, 0.01);
    vehicle.Say(mission, 3000);
    EXPECT_FALSE(state.cameraYaw) << "told no longer";
    vehicle.Beat(12, 1); // another airframe under the same number
    EXPECT_EQ(state.planeType, PlaneFixedWing);
    EXPECT_FALSE(state.isArmed);
}

TEST(VehicleDecoder, NamesModesByTheAutopilot)
{
    const struct
    {
        quint8 autopilot, type, baseMode;
        quint32 customMode;
        const char* mode;
    } rows[] = {
        {3, 2, 1, 3, "Mission"},
        {3, 14, 1, 6, "Return"},
        {3, 1, 1, 11, "Return"},
        {3, 1, 1, 5, "Fly by wire A"},
        {3, 22, 1, 20, "Hovering: land"},
        {3, 2, 1, 99, "Mode 99"},
        {12, 2, 1, 3 << 16, "Position hold"},
        {12, 2, 1, (5 << 24) | (4 << 16), "Return"},
        {12, 2, 1, (77u << 24) | (4 << 16), "Mode 77"},
        {0, 2, 4, 3, "Automatic"},
        {3, 10, 64, 3, "Manual"},
        {0, 2, 0, 3, ""},
    };
    for (const auto& row : rows) {
        Vehicle vehicle;
        vehicle.Beat(row.autopilot, row.type, row.baseMode, row.customMode);
        EXPECT_EQ(vehicle.State().mode.toStdString(), row.mode)
            << int(row.autopilot) << ' ' << int(row.type) << ' ' << row.customMode;
    }
}

TEST(VehicleDecoder, RefusesWhatCannotBe)
{
    const struct
    {
        const char* name;
        std::function<void(Vehicle&)> say;
        quint64 refused = 1;
    } rows[] = {
        {"latitude 91", [](Vehicle& v) { v.Fly(91.0, 8.0); }},
        {"longitude 181", [](Vehicle& v) { v.Fly(47.0, 181.0); }},
        {"0/0 with a fix",
         [](Vehicle& v) {
             AxMavGpsRawInt gps;
             gps.fix_type = 3;
             gps.lat = gps.lon = 10000000;
             gps.alt = std::numeric_limits<qint32>::max();
             v.Say(gps);
             v.Fly(0.0, 0.0);
         },
         2},
        {"no altitude",
         [](Vehicle& v) {
             AxMavGlobalPositionInt position;
             position.lat = position.lon = 10000000;
             position.alt = std::numeric_limits<qint32>::max();
             v.Say(position);
         }},
        {"attitude that is no number",
         [](Vehicle& v) {
             AxMavAttitude attitude;
             attitude.yaw = notANumber;
             v.Say(attitude);
         }},
        {"no rotation", [](Vehicle& v) { v.Say(AxMavAttitudeQuaternion()); }},
        {"infinite wind",
         [](Vehicle& v) {
             AxMavWindCov wind;
             wind.wind_x = std::numeric_limits<float>::infinity();
             v.Say(wind);
         }},
        {"home nowhere", [](Vehicle& v) { v.Say(AxMavHomePosition()); }},
        {"camera that points nowhere",
         [](Vehicle& v) {
             AxMavMountOrientation mount;
             mount.pitch = notANumber;
             v.Say(mount);
         }},
        {"photo before any place", [](Vehicle& v) { v.Say(AxMavCameraTrigger()); }},
    };
    for (const auto& row : rows) {
        Vehicle vehicle;
        row.say(vehicle);
        const AxAircraftState& state = vehicle.State();
        EXPECT_EQ(state.refused, row.refused) << row.name;
        EXPECT_FALSE(state.longitude || state.altitude || state.yaw || state.windSpeed || state.home ||
                     state.cameraPitch || state.heading)
            << row.name;
        const Told& told = vehicle.told;
        EXPECT_TRUE(told.places.empty() && told.rolls.empty() && told.photos.empty() && told.angles.empty())
            << row.name;
    }
}

// Radio links deliver in bursts; display and record want the times at which the samples were taken.
TEST(VehicleDecoder, TimesSamplesByTheAircraftsClock)
{
    Vehicle vehicle;
    const qint64 heard[] = {20, 280, 780, 780, 1030}; // of samples a quarter of a second apart
    for (int i = 0; i < 5; ++i)
        vehicle.Fly(47.0, 8.0 + i * 0.001, 5000 + 250u * i, heard[i]);
    ASSERT_EQ(vehicle.told.times.size(), 5u);
    for (int i = 0; i < 5; ++i)
        EXPECT_LE(std::abs(vehicle.told.times[i] - (20 + 250 * i)), 2) << i;
    vehicle.Fly(47.0, 9.0, 5500, 1100);
    EXPECT_EQ(vehicle.told.times.size(), 5u) << "older than the newest";
    EXPECT_NEAR(*vehicle.State().longitude, 8.004, 1e-9);
    vehicle.Fly(47.0, 9.0, 3000, 1150);
    vehicle.Fly(47.0, 8.005, 6250, 1270);
    vehicle.Fly(47.0, 9.0, 300, 1300);
    EXPECT_EQ(vehicle.told.times.size(), 6u) << "one that is late is no new start";
    EXPECT_NEAR(*vehicle.State().longitude, 8.005, 1e-9);
    vehicle.Fly(47.0, 9.0, 550, 1550);
    ASSERT_EQ(vehicle.told.times.size(), 7u) << "started anew";
    EXPECT_EQ(vehicle.told.times.back(), 1550);
    EXPECT_TRUE(std::is_sorted(vehicle.told.times.begin(), vehicle.told.times.end()));
    Vehicle old; // for 49 days, when the clock runs over
    old.Fly(47.0, 9.0, 0xFFFFFFF0, 0);
    old.Fly(47.0, 9.0, 0x00000010, 32);
    EXPECT_EQ(old.told.times, std::vector<qint64>({0, 32}));
}

TEST(VehicleDecoder, TakesThePlaceFromTheReceiverWhereNothingBetterIsTold)
{
    Vehicle vehicle;
    AxMavGpsRawInt gps;
    gps.fix_type = 3;
    gps.lat = 470000000;
    gps.lon = 80000000;
    gps.alt = 500000;
    gps.alt_ellipsoid = 548000;
    gps.satellites_visible = 12;
    gps.time_usec = 1000000;
    vehicle.Say(gps);
    EXPECT_NEAR(*vehicle.State().altitude, AxGeoidFault().isEmpty() ? 548.0 : 500.0, 1e-9);
    EXPECT_EQ(*vehicle.State().satellites, 12);
    vehicle.Beat(3, 2);
    vehicle.Fly(47.1, 8.1, 2000, 1000);
    gps.time_usec = 2100000;
    vehicle.Say(gps, 1100);
    EXPECT_NEAR(*vehicle.State().latitude, 47.1, 1e-9);
    AxMavGlobalPositionInt elsewhere;
    elsewhere.lat = elsewhere.lon = 10000000;
    vehicle.Say(elsewhere, 1200, 191);
    EXPECT_NEAR(*vehicle.State().latitude, 47.1, 1e-9) << "another computer on board";
    EXPECT_EQ(vehicle.State().lastHeard, start + 1100);
    EXPECT_EQ(vehicle.State().PlaceAgo(start + 5000), 4000);
    gps.time_usec = 6000000;
    gps.vel = 65535;
    vehicle.Say(gps, 5000);
    EXPECT_NEAR(*vehicle.State().latitude, 47.0, 1e-9);
    EXPECT_EQ(vehicle.State().placeHeard, start + 5000);
    EXPECT_FALSE(vehicle.State().heightAboveHome || vehicle.State().climbRate || vehicle.State().heading ||
                 vehicle.State().groundSpeed)
        << "of the place before";
    AxMavVfrHud hud;
    hud.climb = -3.0f;
    vehicle.Say(hud, 5100);
    hud.climb = -2.0f;
    hud.airspeed = notANumber;
    vehicle.Say(hud, 5200);
    EXPECT_NEAR(vehicle.State().climbRate.value_or(0.0), -2.0, 1e-6);
    EXPECT_FALSE(vehicle.State().airSpeed) << "told by no sensor any longer";
}

TEST(VehicleDecoder, JoinsMessagesInParts)
{
    Vehicle vehicle;
    const auto say = [&](const QByteArray& text, quint16 id, quint8 part, qint64 after) {
        AxMavStatustext message;
        message.severity = 4;
        std::copy(text.begin(), text.end(), message.text.begin());
        message.id_ = id;
        message.chunk_seq = part;
        vehicle.Say(message, after);
    };
    const QByteArray full(50, 'a');
    say("plain", 0, 0, 0);
    say(full, 1, 0, 10);
    say("end", 1, 1, 20);
    say(full, 2, 0, 30); // its second part is lost
    say("end", 2, 2, 40);
    say(full, 3, 0, 50);
    vehicle.Beat(3, 2); // its end is late
    vehicle.decoder.Flush(start + 1100);
    const QString a = QString::fromLatin1(full);
    EXPECT_EQ(vehicle.told.texts,
              QStringList({"4 plain", "4 " + a + "end", "4 " + a + "...", "4 ...end", "4 " + a + "..."}));
}

TEST(VehicleDecoder, CountsEachPhotoOnce)
{
    Vehicle vehicle;
    vehicle.Fly(47.0, 8.0);
    AxMavAttitude attitude;
    attitude.roll = 0.1f;
    attitude.yaw = 3.5f; // beyond half a turn
    vehicle.Say(attitude);
    EXPECT_NEAR(vehicle.told.yaws.at(0), 3.5 - 2.0 * std::acos(-1.0), 1e-6);
    AxMavCameraTrigger trigger;
    trigger.seq = 1;
    vehicle.Say(trigger, 1000);
    AxMavCameraImageCaptured image; // of the same photo
    image.image_index = 1;
    image.capture_result = 1;
    vehicle.Say(image, 1500, 100);
    trigger.seq = 2;
    vehicle.Say(trigger, 5000);
    image.image_index = 2;
    image.lat = 471000000;
    image.lon = 81000000;
    image.alt = 90000;
    image.time_utc = (start + 4990) * 1000ull;
    for (int i = 0; i < 3; ++i) // repeated by the camera
        vehicle.Say(image, 5200 + i * 100, 100);
    image.image_index = 3;
    image.capture_result = 0; // failed
    vehicle.Say(image, 9000, 100);
    ASSERT_EQ(vehicle.told.photos.size(), 2u);
    image.capture_result = 1; // tried again
    vehicle.Say(image, 9500, 100);
    EXPECT_EQ(vehicle.told.photos.size(), 3u);
    EXPECT_NEAR(vehicle.told.photos[0].latitude, 47.0, 1e-9);
    EXPECT_NEAR(vehicle.told.photos[0].roll, 0.1, 1e-6);
    EXPECT_EQ(vehicle.told.photos[1].index, 2);
    EXPECT_NEAR(vehicle.told.photos[1].latitude, 47.1, 1e-9);
    EXPECT_EQ(static_cast<qint64>(vehicle.told.photos[1].time), start + 4990);
}

TEST(VehicleDecoder, TakesTheMessageThatKnowsMostOfAPhoto)
{
    Vehicle vehicle;
    AxMavCameraFeedback feedback;
    AxMavCameraTrigger trigger;
    AxMavCameraImageCaptured image;
    image.capture_result = 1;
    vehicle.Say(feedback, 0);
    vehicle.Say(image, 0, 100);
    EXPECT_TRUE(vehicle.told.photos.empty()) << "there is no place yet";
    vehicle.Fly(47.0, 8.0);
    vehicle.Say(feedback, 1000);
    ASSERT_EQ(vehicle.told.photos.size(), 1u) << "of the same number, but not told before";
    EXPECT_NEAR(vehicle.told.photos[0].latitude, 47.0, 1e-9);
    feedback.time_usec = (start + 4900) * 1000ull;
    feedback.img_idx = 2;
    feedback.lat = 471000000;
    feedback.lng = 81000000;
    feedback.alt_msl = 90.0f;
    feedback.roll = 30.0f;
    feedback.yaw = 270.0f;
    vehicle.Say(trigger, 5000);
    vehicle.Say(feedback, 5100);
    vehicle.Say(feedback, 5200);
    ASSERT_EQ(vehicle.told.photos.size(), 2u);
    const AxPhotoRecord& photo = vehicle.told.photos[1];
    EXPECT_EQ(static_cast<qint64>(photo.time), start + 4900);
    EXPECT_NEAR(photo.longitude, 8.1, 1e-9);
    EXPECT_NEAR(photo.altitude, 90.0 + AxGeoidHeight(47.1, 8.1).value_or(0.0), 1e-6);
    EXPECT_NEAR(photo.roll, 0.523599, 1e-6);
    EXPECT_NEAR(photo.yaw, -1.570796, 1e-6);
    vehicle.Say(image, 5900, 100); // the camera tells of it itself
    feedback.img_idx = 3;
    vehicle.Say(feedback, 9000);
    image.image_index = 3;
    vehicle.Say(image, 9100, 100);
    EXPECT_EQ(vehicle.told.photos.size(), 3u);
}

#include "SimulatedMissions.h"

#include <AxTelemetry/AxMavlinkStation.h>
#include <AxTelemetry/AxMissionTransfer.h>
#include <AxTelemetry/link/AxUdpLink.h>
#include <AxTelemetry/mavlink/AxMavMessages.h>
#include <AxTelemetry/mavlink/AxMavParser.h>
#include <AxTelemetry/mavlink/AxMavWriter.h>
#include <AxTelemetry/simulator/AxSimulatorLink.h>
#include <AxTelemetry/simulator/AxUdpBridge.h>

#include <gtest/gtest.h>

#include <QSet>
#include <QSignalSpy>
#include <QTest>

namespace simulated {
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

    // And obeyed: called home before the first photo.
    aircraft->StartMission();
    ASSERT_TRUE(chain.Run(60.0, [&] { return aircraft->State().heightAboveHome.value_or(0.0) > 20.0; }));
    aircraft->ReturnHome();
    chain.link->SetSpeed(100.0);
    QSet<QString> modes;
    ASSERT_TRUE(chain.Run(30.0, [&] {
        modes += aircraft->State().mode;
        return !aircraft->State().isArmed;
    }));
    EXPECT_EQ(modes, QSet<QString>({"Mission", "Return", "Stabilize"}));
    EXPECT_EQ(chain.link->Vehicle(1)->State().photos, 0);
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
} // namespace simulated

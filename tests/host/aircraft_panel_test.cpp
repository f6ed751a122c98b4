// The panel of aircraft: its words, what may be pressed, and a flight from the simulator to the replay.
#include "host/aircraft/AircraftOnMap.h"
#include "host/aircraft/AircraftPanel.h"
#include "host/aircraft/AircraftSession.h"
#include "host/aircraft/AircraftText.h"
#include "host/aircraft/BatteryAlarm.h"
#include "host/aircraft/ConnectForm.h"
#include "host/aircraft/MissionDoubts.h"
#include "host/aircraft/TimeBar.h"
#include "host/tasks/CarriedMissions.h"
#include "host/tasks/TaskPanel.h"
#include "interaction/CAxHandleAdapter.h"
#include "mission/aircraft/CAxUavNode.h"
#include "ModalBox.h"
#include "SuiteViewer.h"

#include <AxAlgorthm/AxGeoid.h>
#include <AxTelemetry/AxMavlinkAircraft.h>
#include <AxTelemetry/record/AxFlightLoader.h>
#include <AxTelemetry/record/AxReplaySource.h>

#include <AxData/CAxBlockManager.h>
#include <AxData/CAxTask.h>

#include <QAction>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QTemporaryDir>
#include <QTreeWidget>
#include <QUdpSocket>

#include <cmath>
#include <limits>

using LinkKind = LinkSettings::Kind;
using LinkPhase = AxTelemetryLink::Phase;

TEST(AircraftText, WhatIsNotKnownIsADashAndTheRestHasItsUnit)
{
    const auto valueOf = [](const AxAircraftState& state, const char* name) {
        for (const AircraftText::Line& line : AircraftText::Lines(state, {}, -1))
            if (line.name == QLatin1String(name))
                return line.value.toStdString();
        return std::string("no such line");
    };
    for (const AircraftText::Line& line : AircraftText::Lines({}, {}, -1))
        EXPECT_EQ(line.value, QStringLiteral("-")) << line.name.toStdString();
    AxAircraftState state;
    state.mode = QStringLiteral("Auto");
    state.latitude = -0.00000001;
    state.altitudeAboveSea = std::numeric_limits<double>::quiet_NaN();
    state.heightAboveHome = 0.0;
    state.heading = 359.97;
    state.yaw = -M_PI / 2.0;
    state.isLanded = false;
    state.isArmed = true;
    state.batteryVolts = 15.24;
    state.fixType = 3;
    state.missionCurrent = 0;
    state.missionCount = 7;
    state.framesHeard = 99;
    state.framesLost = 1;
    const struct
    {
        const char* name;
        const char* value;
    } rows[] = {
        {"Latitude", "0.0000000\302\260"},
        {"Height above the sea", "-"},
        {"Height above home", "0.0 m"},
        {"Height above the ground", "-"},
        {"Heading", "0\302\260"},
        {"Yaw", "270.0\302\260"},
        {"Motors", "armed, in the air"},
        {"Battery", "15.2 V"},
        {"Satellites", "-, 3D fix"},
        {"Mission", "item 1 of 7"},
        {"Lost on the way", "1 of 100 messages"},
    };
    for (const auto& row : rows)
        EXPECT_EQ(valueOf(state, row.name), row.value) << row.name;
    state.attitudeHeard = 4000;
    state.lastHeard = 9000;
    EXPECT_EQ(valueOf(state, "Roll"), "no attitude for 5 s");
    EXPECT_EQ(valueOf(state, "Yaw"), "-");
    EXPECT_EQ(AircraftText::Span(59999), "59 s");
    EXPECT_EQ(AircraftText::Span(185000), "3 min 05 s");
    EXPECT_EQ(AircraftText::Span(7380000), "2 h 03 min");
    EXPECT_EQ(AircraftText::Time(1700000000123), "2023-11-14 22:13:20.1 UTC");
    EXPECT_EQ(AircraftText::Time(90061200), "25:01:01.2") << "a clock without a date";
}

TEST(AircraftPanelRules, SayWhatIsWrongAndWhatMayBePressed)
{
    const auto with = [](auto change) {
        AircraftFacts facts;
        facts.kind = LinkKind::Udp;
        facts.hasRoute = true;
        facts.linkName = QStringLiteral("UDP 1");
        change(facts);
        return facts;
    };
    const auto live = [](AircraftFacts& facts) {
        facts.phase = LinkPhase::Open;
        facts.aircraft = 1;
        facts.isHeard = facts.hasPlace = true;
    };
    const struct
    {
        AircraftFacts facts;
        const char* text;
        bool isBad;
        const char* pressed; // of connect, disconnect, remove, upload, download, cancel, arm, kill, start,
                             // pause, home
    } rows[] = {
        {with([](AircraftFacts&) {}), "Not connected.", false, "c"},
        {with([](AircraftFacts& f) { f.hasMap = false; }), "still loading", false, ""},
        {with([](AircraftFacts& f) { f.isKeyBad = true; }), "key cannot be used", false, ""},
        {with([](AircraftFacts& f) {
             f.kind = LinkKind::Simulator;
             f.hasRoute = false;
         }),
         "choose a task", false, ""},
        {with([](AircraftFacts& f) { f.fault = QStringLiteral("UDP 1: in use"); }), "UDP 1: in use", true,
         "c"},
        {with([](AircraftFacts& f) {
             f.phase = LinkPhase::Waiting;
             f.fault = QStringLiteral("TCP: refused");
         }),
         "TCP: refused. It is tried again", true, "d"},
        {with([](AircraftFacts& f) { f.phase = LinkPhase::Open; }), "nothing has been heard", false, "d"},
        {with([](AircraftFacts& f) {
             f.phase = LinkPhase::Open;
             f.hasHeardBytes = true;
         }),
         "no aircraft", false, "d"},
        {with([](AircraftFacts& f) {
             f.phase = LinkPhase::Open;
             f.refusedSignatures = 3;
         }),
         "3 messages were refused", true, "d"},
        {with(live), "UDP 1: connected.", false, "dulas"},
        {with([&](AircraftFacts& f) {
             live(f);
             f.isArmed = f.isInTheAir = f.canPause = true;
         }),
         "connected", false, "dulksph"},
        {with([&](AircraftFacts& f) {
             live(f);
             f.isArmed = f.isInTheAir = f.canPause = f.isAwaited = true;
         }),
         "connected", false, "dulkh"},
        {with([&](AircraftFacts& f) {
             live(f);
             f.hasRoute = false;
         }),
         "connected", false, "dlas"},
        {with([&](AircraftFacts& f) {
             live(f);
             f.isTransferring = true;
         }),
         "connected", false, "dx"},
        {with([&](AircraftFacts& f) {
             live(f);
             f.isHeard = false;
             f.isArmed = f.isInTheAir = true;
             f.heardAgo = 65000;
         }),
         "LINK LOST for 1 min 05 s", true, "d"},
        {with([&](AircraftFacts& f) {
             live(f);
             f.aircraft = 2;
             f.silent = 1;
         }),
         "1 of 2 aircraft lost", true, "dulas"},
        {with([](AircraftFacts& f) { f.aircraft = 1; }), "Not connected.", false, "cr"},
        {with([](AircraftFacts& f) {
             f.isReplay = f.isHeard = f.isArmed = f.isInTheAir = true;
             f.aircraft = 2;
         }),
         "nothing is live", false, "d"},
        {with([](AircraftFacts& f) { f.loadingPercent = 40; }), "40 %", false, "d"},
    };
    for (const auto& row : rows) {
        EXPECT_TRUE(LinkText::Of(row.facts).contains(QLatin1String(row.text)))
            << LinkText::Of(row.facts).toStdString();
        EXPECT_EQ(LinkText::IsBad(row.facts), row.isBad) << row.text;
        const AircraftEnabled can = EnabledBy(row.facts);
        std::string pressed;
        for (const auto& [isOn, letter] : {std::pair{can.connect, 'c'},
                                           {can.disconnect, 'd'},
                                           {can.remove, 'r'},
                                           {can.upload, 'u'},
                                           {can.download, 'l'},
                                           {can.cancel, 'x'},
                                           {can.arm, 'a'},
                                           {can.disarm, 'k'},
                                           {can.start, 's'},
                                           {can.pause, 'p'},
                                           {can.comeHome, 'h'}})
            if (isOn)
                pressed += letter;
        EXPECT_EQ(pressed, row.pressed) << row.text;
        EXPECT_EQ(can.settings, !row.facts.IsConnected()) << row.text;
    }
}

TEST(MissionDoubts, TellAnAircraftThatStartsElsewhere)
{
    AxMission mission;
    mission.home = {37.4, -105.0, 2700.0};
    mission.isFixedWing = true;
    const auto fits = [] {
        AxAircraftState state;
        state.home = AxPlace{-105.0, 37.4, 2700.0 + AxGeoidHeight(37.4, -105.0).value_or(0.0)};
        return state;
    };
    const struct
    {
        void (*change)(AxAircraftState&);
        const char* text; // null: nothing speaks against it
    } rows[] = {
        {[](AxAircraftState&) {}, nullptr},
        {[](AxAircraftState& state) { state.home.reset(); }, nullptr},
        {[](AxAircraftState& state) { state.home->altitude -= 60.0; }, "60 m lower"},
        {[](AxAircraftState& state) { state.home->altitude += 9.0; }, "9 m higher"},
        {[](AxAircraftState& state) { state.home->latitude += 0.01; }, "m away"},
        {[](AxAircraftState& state) { state.planeType = PlaneQuadcopter; }, "with wings"},
        {[](AxAircraftState& state) {
             state.home.reset();
             state.longitude = -105.0;
             state.latitude = 37.4;
             state.altitudeAboveSea = 2640.0;
         },
         "60 m lower"},
        {[](AxAircraftState& state) {
             state.home.reset();
             state.isArmed = true;
             state.longitude = state.latitude = state.altitudeAboveSea = 10.0;
         },
         "home is not known"},
        {[](AxAircraftState& state) {
             state.home.reset();
             state.isLanded = false;
             state.altitudeAboveSea = 2800.0;
             state.heightAboveHome = 40.0;
         },
         "60 m higher"},
    };
    for (const auto& row : rows) {
        AxAircraftState state = fits();
        row.change(state);
        const QStringList doubts = MissionDoubts::Of(mission, state);
        EXPECT_EQ(doubts.size(), row.text ? 1 : 0) << doubts.join(' ').toStdString();
        EXPECT_TRUE(!row.text || doubts.join(' ').contains(row.text)) << doubts.join(' ').toStdString();
    }
}

TEST(BatteryAlarm, TellsEachStepOnceInAFlight)
{
    AxAircraftState state;
    BatteryAlarm alarm;
    const auto take = [&](bool isLanded, int percent) {
        state.isLanded = isLanded;
        state.batteryPercent = percent;
        return alarm.Take(state);
    };
    EXPECT_EQ(take(true, 10), BatteryLevel::Usual) << "on the ground it may be empty";
    EXPECT_EQ(take(false, 26), BatteryLevel::Usual);
    EXPECT_EQ(take(false, 25), BatteryLevel::Low);
    EXPECT_EQ(take(false, 26), BatteryLevel::Usual);
    EXPECT_EQ(take(false, 25), BatteryLevel::Usual) << "once";
    EXPECT_EQ(take(false, 15), BatteryLevel::Critical);
    EXPECT_EQ(take(false, 20), BatteryLevel::Usual) << "for the worse only";
    take(true, 100);
    EXPECT_EQ(take(false, 5), BatteryLevel::Critical) << "the next flight";
}

TEST(LinkSettings, KeysAreReadAndNeverKept)
{
    const QByteArray bytes = QByteArray::fromHex("00").repeated(31) + "k";
    const QByteArray digits = QByteArray("0f").repeated(32);
    const struct
    {
        QByteArray contents;
        bool isKey;
    } rows[] = {
        {bytes, true},
        {digits, true},
        {digits.toUpper() + "\r\n", true},
        {"", false},
        {digits.left(62), false},
        {digits.left(32), false},
        {digits + "00", false},
        {bytes + "x", false},
        {"g" + digits.mid(1), false},
    };
    for (const auto& row : rows)
        EXPECT_EQ(ParseSigningKey(row.contents).has_value(), row.isKey) << row.contents.toStdString();
    ConnectForm form;
    LinkSettings settings;
    settings.kind = LinkKind::Tcp;
    settings.tcpPort = 4711;
    form.SetSettings(settings);
    auto* line = form.findChild<QLineEdit*>(QStringLiteral("SigningKey"));
    line->setText(QString::fromLatin1(digits));
    EXPECT_EQ(form.Key().size(), 32);
    EXPECT_FALSE(form.Settings().ToBytes().contains("0f0f"));
    EXPECT_EQ(LinkSettings::FromBytes(form.Settings().ToBytes()).tcpPort, 4711);
    line->setText(QStringLiteral("0f"));
    EXPECT_TRUE(form.IsKeyBad());
    for (const char* broken : {"", "{", "[]", R"({"udpPort": 70000, "kind": 9, "speed": "fast"})"})
        EXPECT_EQ(LinkSettings::FromBytes(broken).ToBytes(), LinkSettings().ToBytes()) << broken;
}

TEST(TimeBar, EachPlaceIsItsTimeAndBack)
{
    auto flight = std::make_shared<AxFlightRecord>();
    for (const quint64 time : {1000, 2000, 90000, 101000}) {
        AxFlightSample sample;
        sample.time = time;
        flight->AddSample(sample);
    }
    TimeBar bar;
    bar.resize(212, 20);
    bar.SetFlight(flight);
    QList<quint64> wanted;
    QObject::connect(&bar, &TimeBar::Wanted, &bar, [&](quint64 time) { wanted += time; });
    for (const quint64 time : {quint64(1000), quint64(51000), quint64(101000)})
        EXPECT_NEAR(double(bar.TimeAt(bar.PlaceOf(time))), double(time), 1.0);
    QTest::mousePress(&bar, Qt::LeftButton, {}, QPoint(106, 10));
    QTest::mouseMove(&bar, QPoint(500, 10));
    QTest::keyClick(&bar, Qt::Key_Escape);
    QTest::keyClick(&bar, Qt::Key_Left);
    QTest::keyClick(&bar, Qt::Key_End);
    EXPECT_EQ(wanted.first(), 51000U);
    EXPECT_EQ(wanted.mid(wanted.size() - 3), (QList<quint64>{1000, 1000, 101000})) << "Escape takes it back";
    QTest::mouseRelease(&bar, Qt::LeftButton, {}, QPoint(500, 10));
}

namespace {
class AircraftOnGlobe : public SuiteViewer
{
protected:
    void SetUp() override
    {
        CAxBlock* block =
            CAxBlockManager::instance().AddBlock(QStringLiteral("field"), CAxBlock::PolygonBlock);
        block->SetAnchor({{10.0, 0.0}, {10.004, 0.0}, {10.004, 0.004}, {10.0, 0.004}});
        block->SetHomePosition({10.002, -0.001, 0.0}, false);
        ASSERT_TRUE(viewer->ImportShapeNode(QStringLiteral("field")));
        viewer->SetNodeSelected(viewer->FindExistNode(QStringLiteral("field"))->GetFeatureNode(), false,
                                false);
        tasks = std::make_unique<TaskPanel>(viewer);
        panel = std::make_unique<AircraftPanel>(viewer);
        QObject::connect(tasks.get(), &TaskPanel::PlanShown, panel.get(), [this](const auto& plan) {
            hasPlan = plan != nullptr;
            panel->ShowPlan(plan);
        });
        tasks->AddAction()->trigger();
        ASSERT_TRUE(waitFor([this] { return hasPlan; }));
        settings.speed = 20.0;
        settings.recordFolder = records.path();
        panel->SetSettings(settings.ToBytes());
    }
    void TearDown() override
    {
        panel.reset();
        tasks.reset();
        EXPECT_TRUE(viewer->Aircraft().isEmpty());
        viewer->RemoveAllHanderAdapter(true);
        CAxBlockManager::instance().DeleteAllBlocks();
    }

    void Press(const char* name) const { panel->findChild<QPushButton*>(QLatin1String(name))->click(); }
    QString Text(const char* name) const { return panel->findChild<QLabel*>(QLatin1String(name))->text(); }
    AircraftSession& Session() const { return panel->Session(); }
    bool IsFlying() const
    {
        if (!Session().IsConnected())
            return false;
        const AircraftOnMap* focus = Session().Focus();
        return focus && focus->Node() && focus->Node()->HasPosition() && IsInTheAir(focus->State()) &&
               focus->State().heightAboveHome.value_or(0.0) > 10.0;
    }
    // Of all blocks: what comes from a home of its own has a block of its own.
    static int Tasks()
    {
        int count = 0;
        for (const CAxBlock* block : CAxBlockManager::instance().GetBlockList())
            count += block->GetMissionList().size();
        return count;
    }

    std::unique_ptr<TaskPanel> tasks;
    std::unique_ptr<AircraftPanel> panel;
    QTemporaryDir records;
    LinkSettings settings;
    bool hasPlan = false;
};
} // namespace

TEST_F(AircraftOnGlobe, ARouteIsFlownRecordedAndReplayed)
{
    Press("ConnectButton");
    ASSERT_TRUE(waitFor([this] { return IsFlying(); })) << Text("LinkState").toStdString();
    EXPECT_FALSE(Session().Connect(settings, {}, nullptr)) << "one connection at a time";
    const CAxUavNode* node = Session().Focus()->Node();
    EXPECT_NEAR(node->GetPosition().x(), 10.0, 0.02);
    EXPECT_TRUE(node->GetFlightMode());
    // The block is edited meanwhile; the aircraft carries its own mission.
    CAxBlockManager::instance().GetBlock("field")->GetTaskPara()->SetPlaneType(PlaneFixedWing);
    viewer->RemoveAllHanderAdapter(true);
    CAxBlockManager::instance().DeleteAllBlocks();
    ASSERT_TRUE(waitFor([this] { return !Session().Focus()->Photos().empty(); }));
    Session().Disconnect();
    EXPECT_FALSE(Session().IsConnected());
    EXPECT_EQ(viewer->Aircraft().size(), 1) << "what was flown stays in sight";
    const QString file = Session().RecordFile();
    const AxFlightRead read = AxReadFlights(file);
    ASSERT_EQ(read.flights.size(), 1U) << read.fault.toStdString();
    EXPECT_FALSE(read.flights[0]->Photos().empty());

    settings.kind = LinkKind::File;
    settings.file = file;
    panel->SetSettings(settings.ToBytes());
    Press("ConnectButton");
    ASSERT_TRUE(waitFor([this] { return Session().Replay(); })) << Text("LinkState").toStdString();
    EXPECT_TRUE(waitFor([this] { return Text("LinkState").contains(QLatin1String("nothing is live")); }));
    ASSERT_EQ(viewer->Aircraft().size(), 1) << "the live one has gone";
    const AxFlightRecord& flight = Session().Replay()->Flight();
    Session().Replay()->SetTime(flight.End());
    const CAxVector3D last = viewer->Aircraft().first()->GetPosition();
    EXPECT_NEAR(last.y(), flight.Samples().back().latitude, 1e-9);
    EXPECT_EQ(viewer->Aircraft().first()->GetPicPointCount(), static_cast<int>(flight.Photos().size()));
    Session().Replay()->SetIndex(0);
    EXPECT_NEAR(viewer->Aircraft().first()->GetPosition().y(), flight.Samples().front().latitude, 1e-9);
    Session().Replay()->Play();
    viewer->ClearUavMarker();
    Session().Disconnect();
    EXPECT_FALSE(Session().Replay());
}

TEST_F(AircraftOnGlobe, MissionsGoBothWaysAndEndWithTheLink)
{
    Press("ConnectButton");
    ASSERT_TRUE(waitFor([this] { return IsFlying(); }));
    const auto isUploadable = [this] {
        return panel->findChild<QPushButton*>(QStringLiteral("UploadMission"))->isEnabled();
    };
    ASSERT_TRUE(waitFor(isUploadable));
    ModalBox box;
    box.answers = {ModalBox::Press(QStringLiteral("Cancel")), ModalBox::Press(QStringLiteral("Replace")),
                   ModalBox::Press(QStringLiteral("Replace"))};
    Press("UploadMission");
    EXPECT_EQ(Text("MissionOutcome"), QString()) << "in the air one is asked";
    Press("UploadMission");
    EXPECT_TRUE(waitFor([this] { return Text("MissionOutcome").contains(QLatin1String("has the mission")); }))
        << Text("MissionOutcome").toStdString();
    const QString taskID =
        CAxBlockManager::instance().GetBlock("field")->GetMissionList().constFirst()->GetTaskID();
    const CarriedMissions& carried = CarriedMissions::Of(viewer);
    EXPECT_TRUE(carried.Warning("field", taskID).contains(Session().LiveAircraft()->State().name));
    EXPECT_FALSE(carried.Warning("field").isEmpty());
    EXPECT_EQ(carried.Warning("field", "another"), QString());
    const int before = Tasks();
    Press("DownloadMission");
    EXPECT_TRUE(waitFor([&] { return Tasks() == before + 1; })) << Text("MissionOutcome").toStdString();
    ASSERT_TRUE(waitFor(isUploadable));
    Press("UploadMission");
    Session().Disconnect();
    EXPECT_TRUE(Text("MissionOutcome").contains(QLatin1String("not uploaded")))
        << Text("MissionOutcome").toStdString();
    EXPECT_EQ(box.count, 3);
    EXPECT_EQ(carried.Warning("field"), QString()) << "nobody knows what it has";
}

TEST_F(AircraftOnGlobe, CommandsAreAskedForAndTheirAnswersTold)
{
    Press("ConnectButton");
    ASSERT_TRUE(waitFor([this] { return IsFlying(); }));
    ASSERT_TRUE(waitFor([this] { return panel->findChild<QPushButton*>("DisarmButton")->isEnabled(); }));
    const auto isTold = [this](const char* text) {
        return waitFor([&] { return Text("CommandOutcome").contains(QLatin1String(text)); });
    };
    ModalBox box;
    box.answers = {ModalBox::Press("No"), ModalBox::Press("Disarm"), ModalBox::Press("No")};
    Press("DisarmButton");
    Press("DisarmButton");
    EXPECT_EQ(box.count, 3);
    EXPECT_EQ(Text("CommandOutcome"), QString()) << "nothing was sent";
    box.answers = {ModalBox::Press("Disarm"), ModalBox::Press("Stop motors")};
    Press("DisarmButton");
    EXPECT_TRUE(isTold("has tried and failed")) << Text("CommandOutcome").toStdString();
    Press("ReturnButton");
    EXPECT_TRUE(isTold("Return - the aircraft obeys")) << Text("CommandOutcome").toStdString();
    // The link is closed while the question is open.
    box.answers = {[this](QDialog& asked) {
                       Session().Disconnect();
                       ModalBox::Press("Disarm")(asked);
                   },
                   ModalBox::Press("Stop motors")};
    Press("DisarmButton");
    EXPECT_TRUE(isTold("not sent")) << Text("CommandOutcome").toStdString();
}

TEST_F(AircraftOnGlobe, FaultsAreToldAndNothingStaysBehind)
{
    QUdpSocket taken;
    ASSERT_TRUE(taken.bind(QHostAddress::AnyIPv4, 0, QUdpSocket::DontShareAddress));
    QTemporaryDir folder;
    LinkSettings inUse, noPort, noFile;
    inUse.kind = LinkKind::Udp;
    inUse.udpPort = taken.localPort();
    noPort.kind = LinkKind::Serial;
    noPort.serialPort = QStringLiteral("no-such-port");
    noFile.kind = LinkKind::File;
    noFile.file = folder.filePath(QStringLiteral("none.tlog"));
    const struct
    {
        LinkSettings settings;
        QString named;
    } rows[] = {
        {inUse, QString::number(taken.localPort())},
        {noPort, QStringLiteral("no-such-port")},
        {noFile, QStringLiteral("none.tlog")},
    };
    for (const auto& row : rows) {
        panel->SetSettings(row.settings.ToBytes());
        Press("ConnectButton");
        EXPECT_TRUE(waitFor([&] {
            return !Session().IsConnected() && Session().Fault().contains(row.named);
        })) << Session().Fault().toStdString();
        EXPECT_TRUE(Text("LinkState").contains(row.named)) << Text("LinkState").toStdString();
    }
    panel->SetSettings(settings.ToBytes());
    EXPECT_TRUE(Session().Fault().isEmpty()) << "the form is another one";
    Press("ConnectButton");
    ASSERT_TRUE(waitFor([this] { return IsFlying(); }));
    // In flight one is asked; what the closed link has left stays where the next one cannot be opened.
    ModalBox box;
    box.answers = {ModalBox::Press("Cancel"), ModalBox::Press("Disconnect")};
    Press("DisconnectButton");
    EXPECT_TRUE(Session().IsConnected());
    Press("DisconnectButton");
    EXPECT_FALSE(Session().IsConnected());
    EXPECT_EQ(box.count, 2);
    for (const auto& row : rows) {
        panel->SetSettings(row.settings.ToBytes());
        Press("ConnectButton");
        EXPECT_TRUE(
            waitFor([&] { return !Session().IsConnected() && Session().Fault().contains(row.named); }));
        EXPECT_EQ(viewer->Aircraft().size(), 1) << row.named.toStdString();
        EXPECT_TRUE(panel->findChild<QPushButton*>("RemoveButton")->isEnabled());
    }
    // The panel goes away while an aircraft flies.
    panel->SetSettings(settings.ToBytes());
    Press("ConnectButton");
    EXPECT_EQ(Session().LiveAircraft(), nullptr) << "those of before take no commands";
    ASSERT_TRUE(waitFor([this] { return Session().LiveAircraft() && IsFlying(); }));
    EXPECT_EQ(viewer->Aircraft().size(), 1);
    const QString file = Session().RecordFile();
    panel.reset();
    EXPECT_TRUE(viewer->Aircraft().isEmpty());
    EXPECT_EQ(AxReadFlights(file).flights.size(), 1U);
}

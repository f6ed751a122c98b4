// A ground station, on real sockets of the loopback interface where sockets matter.
#include "MemoryLink.h"

#include <AxTelemetry/link/AxSerialLink.h>
#include <AxTelemetry/link/AxTcpLink.h>
#include <AxTelemetry/link/AxUdpLink.h>
#include <AxTelemetry/record/AxTlogReader.h>

#include <QDir>
#include <QSignalSpy>
#include <QTcpServer>
#include <QTcpSocket>
#include <QTemporaryDir>
#include <QtEndian>
#include <QTest>
#include <QUdpSocket>

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <map>
#include <utility>

namespace {
template <typename Predicate> bool waitUntil(Predicate predicate)
{
    return QTest::qWaitFor(predicate, 20000);
}

QByteArray BeatOf(quint8 systemId, quint8 type = 2)
{
    AxMavHeartbeat beat;
    beat.type = type;
    beat.autopilot = 3;
    return AxMavWriter(systemId, 1).Write(beat);
}

QByteArray PlaceOf(quint8 systemId, double latitude)
{
    AxMavGlobalPositionInt position;
    position.lat = static_cast<qint32>(latitude * 1e7);
    position.lon = 80000000;
    return AxMavWriter(systemId, 1).Write(position);
}

/// Of a message that is in no table here.
struct UnlistedMessage
{
    static constexpr quint32 id = 179;
    static constexpr quint8 extraCrc = 7;
    static constexpr quint8 baseSize = 30;
    static constexpr quint8 size = 30;
};

int AxMavPack(const UnlistedMessage&, quint8* payload)
{
    std::fill_n(payload, UnlistedMessage::size, quint8(0xFD));
    return UnlistedMessage::size;
}

QByteArray UnlistedFrame(int version, const QByteArray& key = {})
{
    AxMavWriter writer(1, 1);
    writer.SetVersion(version);
    writer.SetKey(key, 0);
    return writer.Write(UnlistedMessage());
}

/// Messages that a peer of a station has got, by number.
int CountOf(const QByteArray& bytes, quint32 messageId)
{
    int count = 0;
    AxMavParser parser;
    const auto take = [&](const AxMavFrame& frame) { count += frame.messageId == messageId ? 1 : 0; };
    parser.Feed(bytes, take);
    parser.Flush(take);
    return count;
}
} // namespace

TEST(Station, HearsAircraftOverUdpAndAnswers)
{
    auto* const link = new AxUdpLink(0);
    AxMavlinkStation station{std::unique_ptr<AxTelemetryLink>(link)};
    QString fault;
    ASSERT_TRUE(station.Open(&fault)) << fault.toStdString();
    QUdpSocket peers[2];
    for (quint8 i = 0; i < 2; ++i) {
        ASSERT_TRUE(peers[i].bind(QHostAddress(QHostAddress::LocalHost), 0));
        const auto say = [&](const QByteArray& bytes) {
            peers[i].writeDatagram(bytes, QHostAddress(QHostAddress::LocalHost), link->Port());
        };
        say(BeatOf(250, 6)); // another ground station
        say(BeatOf(i + 1, i == 0 ? 1 : 2));
        say(PlaceOf(i + 1, 47.0 + i));
    }
    const auto isFlying = [&](int system) {
        return station.AircraftOf(system) && station.AircraftOf(system)->State().latitude;
    };
    ASSERT_TRUE(waitUntil([&] { return isFlying(1) && isFlying(2); }));
    EXPECT_EQ(station.Aircraft().size(), 2);
    EXPECT_NEAR(*station.AircraftOf(1)->State().latitude, 47.0, 1e-6);
    EXPECT_NEAR(*station.AircraftOf(2)->State().latitude, 48.0, 1e-6);
    EXPECT_EQ(station.AircraftOf(1)->State().planeType, PlaneFixedWing);
    for (QUdpSocket& peer : peers) {
        QByteArray got;
        EXPECT_TRUE(waitUntil([&] {
            while (peer.hasPendingDatagrams()) {
                QByteArray datagram(static_cast<int>(peer.pendingDatagramSize()), Qt::Uninitialized);
                peer.readDatagram(datagram.data(), datagram.size());
                got += datagram;
            }
            return CountOf(got, AxMavHeartbeat::id) > 0 && CountOf(got, AxMavCommandLong::id) > 0;
        })) << "a heartbeat, and requests for data";
        AxMavParser parser;
        parser.Feed(got, [&](const AxMavFrame& frame) {
            AxMavCommandLong command;
            EXPECT_TRUE(!AxMavDecode(frame, command) || command.target_system == 1 + (&peer - peers))
                << "what is for one goes to its peer alone";
        });
    }
    std::array<QUdpSocket, 20> others; // more than a small table holds
    for (QUdpSocket& other : others) {
        ASSERT_TRUE(other.bind(QHostAddress(QHostAddress::LocalHost), 0));
        other.writeDatagram("x", QHostAddress(QHostAddress::LocalHost), link->Port());
    }
    for (QUdpSocket& other : others)
        EXPECT_TRUE(waitUntil([&] { return other.hasPendingDatagrams(); })) << "a heartbeat";
    AxUdpLink next(link->Port());
    station.Close();
    for (int i = 0; i < 2; ++i, next.Close())
        EXPECT_TRUE(next.Open(&fault)) << fault.toStdString();
}

TEST(Station, ConnectsAgainOverTcp)
{
    QTcpServer server;
    ASSERT_TRUE(server.listen(QHostAddress::LocalHost));
    auto* const link = new AxTcpLink(QStringLiteral("127.0.0.1"), server.serverPort());
    link->SetRetry(10);
    AxMavlinkStation station{std::unique_ptr<AxTelemetryLink>(link)};
    QSignalSpy faults(&station, &AxMavlinkStation::signalFault);
    QString fault;
    ASSERT_TRUE(station.Open(&fault));
    for (quint8 round = 1; round <= 2; ++round) {
        ASSERT_TRUE(waitUntil([&] { return server.hasPendingConnections(); }));
        QTcpSocket* const peer = server.nextPendingConnection();
        const QByteArray beat = BeatOf(round);
        const quint64 before = station.Counts().bytes;
        peer->write(beat.left(5)); // cut anywhere
        peer->flush();
        ASSERT_TRUE(waitUntil([&] { return station.Counts().bytes > before; }));
        peer->write(beat.mid(5));
        ASSERT_TRUE(waitUntil([&] { return station.AircraftOf(round) != nullptr; }));
        EXPECT_EQ(link->GetPhase(), AxTelemetryLink::Phase::Open);
        peer->close();
        ASSERT_TRUE(waitUntil([&] { return faults.size() == round; }));
        EXPECT_TRUE(faults.last()[0].toString().contains(QLatin1String("closed the connection")));
    }
    ASSERT_TRUE(waitUntil([&] { return server.hasPendingConnections(); }));
    link->SetPatience(50);
    server.nextPendingConnection()->write(BeatOf(1)); // and never again: its end of the link is dead
    ASSERT_TRUE(waitUntil([&] { return faults.size() == 3; }));
    EXPECT_TRUE(faults.last()[0].toString().contains(QLatin1String("fallen silent")));
    EXPECT_TRUE(waitUntil([&] { return link->GetPhase() == AxTelemetryLink::Phase::Open; }));
    station.Close();
    EXPECT_EQ(link->GetPhase(), AxTelemetryLink::Phase::Closed);
    EXPECT_FALSE(station.AircraftOf(1)->State().isHeard);
}

TEST(Station, SaysWhyALinkDoesNotOpen)
{
    QUdpSocket taken;
    ASSERT_TRUE(taken.bind(QHostAddress(QHostAddress::AnyIPv4), 0, QUdpSocket::DontShareAddress));
    QTcpServer gone;
    ASSERT_TRUE(gone.listen(QHostAddress::LocalHost));
    const quint16 nobody = gone.serverPort();
    gone.close();
    const QString host = QStringLiteral("127.0.0.1");
    const struct
    {
        AxTelemetryLink* link;
        QString fault;
        AxTelemetryLink::Phase phase;
    } rows[] = {
        {new AxUdpLink(taken.localPort()),
         QStringLiteral("UDP %1: another program uses the port").arg(taken.localPort()),
         AxTelemetryLink::Phase::Closed},
        {new AxTcpLink(host, nobody), QStringLiteral("TCP 127.0.0.1:%1: nobody listens there").arg(nobody),
         AxTelemetryLink::Phase::Waiting},
        {new AxTcpLink(host, 0), QStringLiteral("TCP 127.0.0.1:0: a host and a port are needed"),
         AxTelemetryLink::Phase::Closed},
        {new AxSerialLink(QStringLiteral("noSuchPort"), 57600),
         QStringLiteral("noSuchPort (57600): there is no such port"), AxTelemetryLink::Phase::Closed},
    };
    for (const auto& row : rows) {
        AxMavlinkStation station{std::unique_ptr<AxTelemetryLink>(row.link)};
        QSignalSpy faults(&station, &AxMavlinkStation::signalFault);
        QString fault;
        if (station.Open(&fault)) {
            EXPECT_TRUE(waitUntil([&] { return !faults.isEmpty(); })) << row.fault.toStdString();
            fault = faults.value(0).value(0).toString();
        }
        EXPECT_EQ(fault, row.fault);
        EXPECT_EQ(row.link->GetPhase(), row.phase) << row.fault.toStdString();
        station.Close();
        EXPECT_EQ(row.link->GetPhase(), AxTelemetryLink::Phase::Closed);
    }
}

TEST(Station, TellsALostLinkAfterThreeSeconds)
{
    MemoryStation flight;
    int beats[3] = {}; // of the station, by version
    flight.link->written = [&](const AxMavFrame& frame) {
        beats[frame.version] += frame.messageId == AxMavHeartbeat::id ? 1 : 0;
    };
    flight.aircraft.SetVersion(1);
    flight.Open();
    QSignalSpy lost(&flight.Aircraft(), &AxTelemetrySource::signalLinkLost);
    QSignalSpy back(&flight.Aircraft(), &AxTelemetrySource::signalLinkBack);
    flight.Pass(2900);
    EXPECT_EQ(lost.size(), 0);
    flight.Pass(100);
    EXPECT_EQ(lost.size(), 1);
    EXPECT_EQ(beats[1], 2);
    EXPECT_EQ(beats[2], 2) << "an aircraft that could speak it, too, may wait for it";
    emit flight.link->signalBytes(AxMavWriter(1, 154).Write(AxMavHeartbeat()));
    EXPECT_EQ(back.size(), 0) << "a gimbal does not fly";
    flight.Pass(4900);
    EXPECT_EQ(lost.size(), 1);
    EXPECT_FALSE(flight.Aircraft().State().isHeard);
    EXPECT_EQ(flight.Aircraft().State().HeardAgo(flight.now), 7900);
    flight.Beat();
    flight.Pass(1000);
    EXPECT_EQ(back.size(), 1);
    EXPECT_TRUE(flight.Aircraft().State().isHeard);
    EXPECT_EQ(lost.size(), 1);
    flight.station.Close();
    EXPECT_EQ(lost.size(), 2);
    flight.Open();
    EXPECT_EQ(back.size(), 2);
    EXPECT_EQ(flight.station.Aircraft().size(), 1);
    QSignalSpy messages(&flight.Aircraft(), &AxTelemetrySource::signalMessage);
    emit flight.link->signalBytes(PlaceOf(1, 47.0));
    for (int second = 0; second < 10; ++second) {
        flight.Beat();
        flight.Pass(1000);
        EXPECT_EQ(messages.size(), second < 2 ? 0 : 1) << "the place is old, and told so once";
    }
}

TEST(Station, TellsAircraftOfOneNumberApartByTheirPeers)
{
    MemoryStation flight;
    flight.Open();
    const auto say = [&](int peer, double latitude) {
        emit flight.link->signalBytes(PlaceOf(1, latitude), peer);
        emit flight.link->signalBytes(BeatOf(1), peer);
    };
    const auto latitude = [&](int index) {
        return flight.station.Aircraft().value(index)->State().latitude.value_or(0.0);
    };
    say(0, 10.0);
    QSignalSpy photos(&flight.Aircraft(), &AxTelemetrySource::signalPhoto);
    emit flight.link->signalBytes(AxMavWriter(1, 100).Write(AxMavCameraTrigger()), 1);
    EXPECT_EQ(photos.size(), 1) << "a camera with an address of its own";
    const struct
    {
        int first, second; // peers
        double at;         // of the second
    } rows[] = {{0, 2, 20.0}, {0, 3, 30.0}, {4, 3, 40.0}, {0, 3, 50.0}};
    for (const auto& row : rows) {
        for (int i = 0; i < 10; ++i, flight.Pass(500)) {
            say(row.first, 10.0);
            say(row.second, row.at);
        }
        ASSERT_EQ(flight.station.Aircraft().size(), 2) << row.at;
        EXPECT_NEAR(latitude(0), 10.0, 1e-6);
        EXPECT_NEAR(latitude(1), row.at, 1e-6);
        EXPECT_EQ(flight.Aircraft().State().name, QStringLiteral("Aircraft 1"));
        EXPECT_EQ(flight.station.Aircraft()[1]->State().name,
                  QStringLiteral("Aircraft 1 (peer %1)").arg(row.second));
        for (int i = 0; i < 2; ++i) {
            flight.station.Aircraft()[i]->Arm(true);
            EXPECT_EQ(flight.link->latestPeer, i == 0 ? row.first : row.second);
            flight.Pass(4000); // nobody answers
            say(row.first, 10.0);
            say(row.second, row.at);
        }
    }
}

TEST(Station, AsksAgainForWhatDoesNotCome)
{
    const struct
    {
        quint8 result; // MAV_RESULT
        int byStream;
    } rows[] = {{2, 1}, {3, 4}};
    for (const auto& row : rows) {
        MemoryStation flight;
        std::map<quint32, int> asked;
        int streams = 0, atOnce = 0, most = 0;
        flight.link->written = [&](const AxMavFrame& frame) {
            AxMavCommandLong command;
            AxMavRequestDataStream stream;
            streams += AxMavDecode(frame, stream) && stream.req_stream_id == 11 ? 1 : 0;
            if (!AxMavDecode(frame, command))
                return;
            ++asked[quint32(command.param1)];
            most = std::max(most, ++atOnce);
            if (quint32(command.param1) != AxMavVfrHud::id)
                return;
            AxMavCommandAck answer;
            answer.command = 511;
            answer.result = row.result;
            flight.Say(answer);
        };
        flight.Open();
        const int first = std::exchange(most, 0);
        for (int i = 0; i < 120; ++i, atOnce = 0) {
            flight.Beat();
            flight.Say(AxMavAttitude());
            flight.Pass(500);
        }
        EXPECT_EQ(first, 14);
        EXPECT_EQ(most, 1);
        EXPECT_EQ(asked[AxMavAttitude::id], 1);
        EXPECT_EQ(asked[AxMavVfrHud::id], 2) << "an answer at the start may be that to another one";
        EXPECT_EQ(streams, row.byStream);
        EXPECT_EQ(asked[AxMavGpsRawInt::id], 5);
        flight.Pass(4000);
        flight.Beat();
        EXPECT_EQ(asked[AxMavAttitude::id], 2) << "the link was lost";
        EXPECT_EQ(asked[AxMavVfrHud::id], 2);
    }
}

TEST(Station, TakesSignedFramesByTheKeyOnly)
{
    const QByteArray key(32, 'k');
    const struct
    {
        QByteArray station, aircraft;
        bool isHeard;
        int age = 0; // of what is heard, seconds
    } rows[] = {{key, key, true},     {key, {}, false},
                {{}, key, false},     {key, QByteArray(32, 'x'), false},
                {key, key, true, 50}, {key, key, false, 70}};
    for (const auto& row : rows) {
        MemoryStation flight;
        EXPECT_TRUE(flight.station.SetKey(row.station));
        EXPECT_FALSE(flight.station.SetKey(QByteArray(31, 'k')));
        flight.aircraft.SetKey(row.aircraft, 0);
        flight.aircraft.SetSignClock([&] {
            const qint64 epoch = QDateTime(QDate(2015, 1, 1), QTime(0, 0), Qt::UTC).toMSecsSinceEpoch();
            return quint64(QDateTime::currentMSecsSinceEpoch() - epoch - row.age * 1000) * 100;
        });
        QSignalSpy faults(&flight.station, &AxMavlinkStation::signalFault);
        flight.Open();
        flight.Beat();
        flight.Beat();
        flight.Pass(1000);
        EXPECT_EQ(flight.station.Aircraft().size(), row.isHeard ? 1 : 0);
        EXPECT_EQ(flight.station.Counts().refusedSignatures, row.isHeard ? 0u : 3u);
        EXPECT_EQ(flight.station.Counts().oldSignatures, row.age > 60 ? 3u : 0u);
        EXPECT_EQ(faults.size(), row.age > 60 ? 1 : 0) << "told, because the key is right";
    }
}

TEST(Station, RepeatsCommandsUntilTheyAreAnswered)
{
    const struct
    {
        int answer; // MAV_RESULT; -1: none
        int sent;
        const char* fault;
        quint8 toSystem = 0, toComponent = 0;
    } rows[] = {{0, 1, ""},
                {2, 1, "The aircraft refuses."},
                {-1, 3, "The aircraft does not answer."},
                {2, 1, "The aircraft refuses.", 255, 190},
                {0, 3, "The aircraft does not answer.", 254, 190},
                {0, 3, "The aircraft does not answer.", 255, 1}};
    for (const auto& row : rows) {
        MemoryStation flight;
        flight.Open();
        int sent = 0;
        flight.link->written = [&](const AxMavFrame& frame) {
            AxMavCommandLong command;
            if (!AxMavDecode(frame, command) || command.command != 400)
                return;
            EXPECT_EQ(command.param1, 1.0f);
            EXPECT_EQ(command.confirmation, sent++);
            AxMavCommandAck answer;
            answer.command = 400;
            answer.result = static_cast<quint8>(row.answer);
            answer.target_system = row.toSystem;
            answer.target_component = row.toComponent;
            if (row.answer >= 0)
                flight.Say(answer);
        };
        QSignalSpy answers(&flight.Aircraft(), &AxMavlinkAircraft::signalCommand);
        flight.Aircraft().Arm(true);
        flight.Pass(10000);
        ASSERT_EQ(answers.size(), 1);
        EXPECT_EQ(answers[0][1].toString().toStdString(), row.fault);
        EXPECT_EQ(sent, row.sent);
    }
}

// Both have one number, and so have their answers.
TEST(Station, StopsTheMotorsWhateverAnArmingIsAnswered)
{
    const struct
    {
        int obeyed; // which try
        int sent;
        const char* fault;
    } rows[] = {{1, 2, ""}, {2, 2, ""}, {3, 3, ""}, {9, 3, "The aircraft does not say that it is disarmed."}};
    for (const auto& row : rows) {
        MemoryStation flight;
        flight.Open();
        bool isArmed = true;
        int sent = 0;
        const auto beat = [&] {
            AxMavHeartbeat told;
            told.type = 2;
            told.autopilot = 3;
            told.base_mode = isArmed ? 128 : 0;
            flight.Say(told);
        };
        beat();
        flight.link->written = [&](const AxMavFrame& frame) {
            AxMavCommandLong command;
            if (AxMavDecode(frame, command) && command.command == 400 && command.param1 == 0.0f)
                isArmed = ++sent < row.obeyed && isArmed;
        };
        QSignalSpy answers(&flight.Aircraft(), &AxMavlinkAircraft::signalCommand);
        flight.Aircraft().Arm(true);
        QObject::connect(&flight.Aircraft(), &AxMavlinkAircraft::signalCommand, &flight.station,
                         [&] { EXPECT_GT(sent, 0) << "before anybody hears"; });
        flight.Aircraft().StopMotors();
        EXPECT_EQ(answers.size(), 1) << "of the arming";
        AxMavCommandAck ofArming;
        ofArming.command = 400;
        flight.Say(ofArming);
        EXPECT_EQ(answers.size(), 1);
        for (int second = 0; second < 8; ++second, beat()) {
            flight.Pass(1000);
            flight.Say(ofArming);
        }
        ASSERT_EQ(answers.size(), 2);
        EXPECT_EQ(answers[1][1].toString().toStdString(), row.fault) << row.obeyed;
    }
}

TEST(Station, RecordsFromTheFirstByte)
{
    const QTemporaryDir folder;
    MemoryStation flight;
    flight.station.SetRecordFolder(folder.filePath(QStringLiteral("flights")));
    QString fault;
    flight.station.Open(&fault);
    flight.Pass(3000);
    const QByteArray unlisted = UnlistedFrame(2);
    emit flight.link->signalBytes(unlisted);
    EXPECT_EQ(flight.station.Recorder().File(), QString()) << "noise may look so";
    const QByteArray beat = BeatOf(1);
    const QByteArray place = PlaceOf(1, 47.0);
    const struct
    {
        const char* what;
        QByteArray heard;
        QByteArrayList recorded;
    } rows[] = {
        {"a known message", beat, {beat}},
        {"one that is not known", unlisted, {unlisted}},
        {"one before a known one", unlisted + place, {unlisted, place}},
        {"one of version 1", UnlistedFrame(1), {UnlistedFrame(1)}},
        {"noise that looks like one", QByteArray(300, char(0xFE)), {QByteArray(262, char(0xFE))}},
        {"one with a signature", UnlistedFrame(2, QByteArray(32, 'k')), {}},
        {"another known message", place, {place}},
    };
    for (const auto& row : rows)
        emit flight.link->signalBytes(row.heard);
    EXPECT_EQ(flight.Aircraft().State().framesHeard, 6u) << "known or not";
    const qint64 heard = flight.now;
    flight.Pass(1000);
    QFile file(flight.station.Recorder().File()); // as after a crash: nothing was closed
    ASSERT_TRUE(file.open(QIODevice::ReadOnly)) << file.fileName().toStdString();
    EXPECT_TRUE(file.fileName().endsWith(QLatin1String("Z_Memory.tlog"))) << file.fileName().toStdString();
    const QByteArray record = file.readAll();
    EXPECT_EQ(qFromBigEndian<qint64>(record.constData()), heard * 1000);
    int at = 0;
    for (const auto& row : rows)
        for (const QByteArray& frame : row.recorded) {
            at = record.indexOf(record.left(8) + frame, at); // between what the station says
            ASSERT_GE(at, 0) << row.what;
            at += 8 + frame.size();
        }
    AxTlogReader reader;
    reader.Feed(record);
    const AxFlightRead read = reader.Finish();
    ASSERT_EQ(read.flights.size(), 1u) << read.fault.toStdString();
    EXPECT_EQ(read.flights[0]->Samples().size(), 2u);
    EXPECT_FALSE(read.notes.join(' ').contains(QLatin1String("left out")))
        << read.notes.join(' ').toStdString();
    const QString first = file.fileName();
    flight.now -= 1000; // opened again within the same second
    flight.station.Close();
    flight.Open();
    flight.station.Close();
    EXPECT_NE(flight.station.Recorder().File(), first);
    EXPECT_EQ(QDir(folder.filePath(QStringLiteral("flights"))).entryList(QDir::Files).size(), 2);
}

TEST(Station, FliesOnWithoutARecord)
{
    const QTemporaryDir folder;
    QFile inTheWay(folder.filePath(QStringLiteral("file")));
    ASSERT_TRUE(inTheWay.open(QIODevice::WriteOnly));
    MemoryStation flight;
    QSignalSpy faults(&flight.station, &AxMavlinkStation::signalFault);
    flight.station.SetRecordFolder(inTheWay.fileName() + QStringLiteral("/flights"));
    flight.Open();
    flight.Beat();
    flight.Pass(5000);
    EXPECT_EQ(faults.size(), 1);
    EXPECT_TRUE(faults.value(0).value(0).toString().contains(QLatin1String("The flight is not recorded")));
    EXPECT_EQ(flight.Aircraft().State().framesHeard, 2u);
}

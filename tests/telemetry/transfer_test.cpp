// Missions go to an aircraft and come back. The aircraft is a peer in the same process that follows the
// mission protocol, or does not.
#include "MemoryLink.h"
#include "SimulatedMissions.h"

#include <AxTelemetry/AxMissionTransfer.h>

#include <QRandomGenerator>

#include <gtest/gtest.h>

#include <cmath>
#include <deque>
#include <limits>

namespace {
constexpr double leftOpen = std::numeric_limits<double>::quiet_NaN();

AxMission SampleMission()
{
    AxMission mission;
    mission.home = {47.1234567, 8.7654321, 400.0};
    const auto add = [&](int command, int frame, std::array<double, 4> params, double latitude,
                         double longitude, double altitude) {
        AxMissionItem item;
        item.command = command;
        item.frame = frame;
        item.params = params;
        item.latitude = latitude;
        item.longitude = longitude;
        item.altitude = altitude;
        mission.items.push_back(item);
    };
    add(AxMissionItem::ChangeSpeed, AxMissionItem::Mission, {1, 7, -1, 0}, 0, 0, 0);
    add(22, AxMissionItem::AboveHome, {15, 0, 0, leftOpen}, leftOpen, leftOpen, 30); // takes off where it is
    for (int i = 0; i < 6; ++i)
        add(AxMissionItem::Waypoint, AxMissionItem::AboveHome, {0, 0, 0, leftOpen}, 47.1234567 + i * 1e-3,
            -105.7654321, 80.5 + i);
    add(AxMissionItem::Jump, AxMissionItem::Mission, {3, 2, 0, 0}, 0, 0, 0);
    return mission;
}

/// An aircraft that keeps a mission as its autopilot does.
class MissionPeer : public MemoryStation
{
public:
    explicit MissionPeer(quint8 autopilot) : MemoryStation(autopilot)
    {
        Open();
        link->written = [this](const AxMavFrame& frame) { hear(frame); };
    }

    /// Lets both talk, and time pass while they wait, until the transfer has ended.
    QString Run(AxMissionTransfer& transfer, const std::function<void()>& begin)
    {
        QString told = QStringLiteral("nothing");
        QObject::connect(&transfer, &AxMissionTransfer::signalFinished, link,
                         [&](const QString& fault) { told = fault; });
        begin();
        for (int i = 0; i < 5000 && transfer.IsRunning(); ++i) {
            if (answers.empty()) {
                beats ? Beat() : void();
                Pass(100);
                continue;
            }
            const auto answer = answers.front();
            answers.pop_front();
            answer();
        }
        QObject::disconnect(&transfer, nullptr, link, nullptr);
        return told;
    }
    template <class Message> void Answer(Message message)
    {
        message.target_system = 255;
        const auto say = [this, message] { Say(message); };
        const int chance = lostPercent > 0 ? random.bounded(100) : 50;
        if (Message::id == AxMavMissionAck::id || chance >= lostPercent)
            answers.push_back(say);
        if (chance > 100 - lostPercent) // comes twice, the second time late
            answers.insert(answers.begin() + random.bounded(static_cast<int>(answers.size()) + 1), say);
    }

    std::vector<AxMavMissionItemInt> items;
    bool asksForFloats = false;
    bool beats = true;      // while nothing is said
    int lostPercent = 0;    // of what comes and goes; as much comes twice
    int silentAfter = 1000; // messages
    /// May misbehave: true, and the peer does nothing else about the frame.
    std::function<bool(const AxMavFrame&)> manner = [](const AxMavFrame&) { return false; };

private:
    void hear(const AxMavFrame& frame)
    {
        if (--silentAfter < 0 || random.bounded(100) < lostPercent || manner(frame))
            return;
        AxMavMissionCount count;
        AxMavMissionItemInt item;
        AxMavMissionItem floatItem;
        AxMavMissionRequestList list;
        AxMavMissionRequestInt request;
        AxMavMissionRequest floatRequest;
        if (AxMavDecode(frame, count)) {
            items.clear();
            expected = count.count;
            ask();
        } else if (AxMavDecode(frame, item)) {
            take(item);
        } else if (AxMavDecode(frame, floatItem)) {
            item.seq = floatItem.seq;
            item.command = floatItem.command;
            item.frame = floatItem.frame;
            item.param1 = floatItem.param1;
            item.param2 = floatItem.param2;
            item.param3 = floatItem.param3;
            item.param4 = floatItem.param4;
            item.x = static_cast<qint32>(std::lround(floatItem.x * 1e7));
            item.y = static_cast<qint32>(std::lround(floatItem.y * 1e7));
            item.z = floatItem.z;
            take(item);
        } else if (AxMavDecode(frame, list)) {
            count.count = static_cast<quint16>(items.size());
            Answer(count);
        } else if (AxMavDecode(frame, request)) {
            if (!asksForFloats)
                Answer(items.at(request.seq));
        } else if (AxMavDecode(frame, floatRequest)) {
            Answer(items.at(floatRequest.seq));
        }
    }
    void take(const AxMavMissionItemInt& item)
    {
        if (item.seq < items.size()) { // came twice: autopilots complain, and ask again in time
            AxMavMissionAck outOfTurn;
            outOfTurn.type = 13;
            Answer(outOfTurn);
            return ask();
        }
        items.push_back(item);
        ask();
    }
    void ask()
    {
        AxMavMissionRequestInt request;
        AxMavMissionRequest floatRequest;
        request.seq = floatRequest.seq = static_cast<quint16>(items.size());
        if (static_cast<int>(items.size()) == expected)
            Answer(AxMavMissionAck());
        else
            asksForFloats ? Answer(floatRequest) : Answer(request);
    }

    std::deque<std::function<void()>> answers;
    int expected = 0;
    QRandomGenerator random{7};
};
} // namespace

TEST(MissionTransfer, BringsBackWhatItTook)
{
    const struct
    {
        quint8 autopilot;
        bool asksForFloats;
        int lostPercent;
        std::size_t carried; // items in the aircraft
        double tolerance;    // degrees
    } rows[] = {{3, false, 0, 10, 1e-9}, {12, false, 0, 9, 1e-9}, {3, true, 0, 10, 1e-9},
                {12, true, 0, 9, 1e-9},  {0, true, 0, 9, 1e-5},   {3, false, 20, 10, 1e-9},
                {12, false, 20, 9, 1e-9}};
    for (const auto& row : rows) {
        SCOPED_TRACE(testing::Message()
                     << int(row.autopilot) << ' ' << row.asksForFloats << ' ' << row.lostPercent);
        MissionPeer peer(row.autopilot);
        peer.asksForFloats = row.asksForFloats;
        peer.lostPercent = row.lostPercent;
        AxMissionTransfer transfer(&peer.Aircraft());
        transfer.SetPatience(20, 500);
        int done = 0;
        QObject::connect(&transfer, &AxMissionTransfer::signalProgress, [&](int now, int total) {
            EXPECT_EQ(now, done % total + 1);
            ++done;
        });
        const AxMission sent = SampleMission();
        EXPECT_EQ(peer.Run(transfer, [&] { EXPECT_TRUE(transfer.Upload(sent)); }), QString());
        ASSERT_EQ(peer.items.size(), row.carried);
        const bool hasHome = row.autopilot == 3;
        EXPECT_EQ(peer.items.back().param1, hasHome ? 3.0f : 2.0f) << "the item to jump to";
        EXPECT_EQ(peer.Run(transfer, [&] { EXPECT_TRUE(transfer.Download()); }), QString());
        simulated::ExpectSame(transfer.Mission(), sent, row.tolerance);
        EXPECT_EQ(transfer.Mission().home.IsOpen(), !hasHome);
        EXPECT_EQ(done, 2 * static_cast<int>(row.carried));
    }
}

TEST(MissionTransfer, EndsWithAReason)
{
    const auto refuses = [](quint8 type, int atItem) {
        return [type, atItem](MissionPeer& peer, AxMissionTransfer&) {
            peer.manner = [&peer, type, atItem](const AxMavFrame& frame) {
                AxMavMissionItemInt item;
                const bool isThere = atItem < 0 ? frame.messageId != AxMavHeartbeat::id
                                                : AxMavDecode(frame, item) && item.seq == atItem;
                if (!isThere)
                    return false;
                AxMavMissionAck no;
                no.type = type;
                peer.Answer(no);
                return true;
            };
        };
    };
    const auto asks = [](quint16 index) {
        return [index](MissionPeer& peer, AxMissionTransfer&) {
            peer.manner = [&peer, index](const AxMavFrame& frame) {
                AxMavMissionItemInt item;
                if (!AxMavDecode(frame, item) || item.seq != 2)
                    return false;
                AxMavMissionRequestInt request;
                request.seq = index;
                peer.Answer(request);
                return true;
            };
        };
    };
    const struct
    {
        const char* name;
        bool isUpload;
        std::function<void(MissionPeer&, AxMissionTransfer&)> spoil;
        const char* fault; // a part of it; with a full stop, its end
    } rows[] = {
        {"never answers", true, [](MissionPeer& peer, AxMissionTransfer&) { peer.silentAfter = 0; },
         "The aircraft has stopped answering. What"},
        {"stops in the middle", true, [](MissionPeer& peer, AxMissionTransfer&) { peer.silentAfter = 5; },
         "stopped answering. What the aircraft carries now may be incomplete"},
        {"stops in the middle of a download", false,
         [](MissionPeer& peer, AxMissionTransfer&) { peer.silentAfter = 5; }, "stopped answering"},
        {"flies out of reach", true,
         [](MissionPeer& peer, AxMissionTransfer&) {
             peer.silentAfter = 5;
             peer.beats = false;
         },
         "The link was lost. What"},
        {"has no room", true, refuses(4, 3),
         "refuses at item 3: the mission has more items than it can keep"},
        {"wants no mission", true, refuses(14, -1), "refuses: it takes no missions from this station."},
        {"gives up at once", true, refuses(15, -1), "it was cancelled there. What"},
        {"gives none away", false, refuses(1, -1), "refuses: it gives no reason"},
        {"answers by an unknown number", true, refuses(200, 1), "it gives no reason"},
        {"asks for an item that there is not", true, asks(99), "asks for item 99 where item 3 should be"},
        {"leaves an item out", true, asks(4), "asks for item 4 where item 3 should be"},
        {"asks for ever", true, asks(2), "asks for item 2 again and again"},
        {"says yes at once", true,
         [](MissionPeer& peer, AxMissionTransfer&) {
             peer.manner = [&peer](const AxMavFrame& frame) {
                 if (frame.messageId == AxMavMissionItemInt::id)
                     peer.Answer(AxMavMissionAck());
                 return frame.messageId == AxMavMissionItemInt::id;
             };
         },
         "stopped answering"},
        {"carries nothing", false, [](MissionPeer& peer, AxMissionTransfer&) { peer.items.resize(1); },
         "carries no mission"},
        {"is given another mission meanwhile", false,
         [](MissionPeer& peer, AxMissionTransfer&) {
             peer.manner = [&peer](const AxMavFrame& frame) {
                 AxMavMissionRequestInt request;
                 if (!AxMavDecode(frame, request) || request.seq != 3)
                     return false;
                 AxMavMissionCount other;
                 other.count = 4;
                 peer.Answer(other);
                 return true;
             };
         },
         "has changed in the meantime"},
        {"carries a place off the globe", false,
         [](MissionPeer& peer, AxMissionTransfer&) { peer.items[5].x = 910000000; },
         "Item 5: the place is not on the globe"},
        {"is cancelled", true,
         [](MissionPeer&, AxMissionTransfer& transfer) {
             QObject::connect(&transfer, &AxMissionTransfer::signalProgress, &transfer,
                              &AxMissionTransfer::Cancel);
         },
         "The upload was cancelled. What"},
        {"has its cable pulled", true,
         [](MissionPeer& peer, AxMissionTransfer& transfer) {
             QObject::connect(&transfer, &AxMissionTransfer::signalProgress, &peer.station,
                              &AxMavlinkStation::Close);
         },
         "The link was closed. What"},
        {"loses its link while it is cancelled", true,
         [](MissionPeer& peer, AxMissionTransfer& transfer) {
             QObject::connect(&transfer, &AxMissionTransfer::signalProgress, &transfer,
                              &AxMissionTransfer::Cancel);
             peer.manner = [&peer](const AxMavFrame& frame) {
                 if (frame.messageId == AxMavMissionAck::id)
                     peer.station.Close();
                 return false;
             };
         },
         "The link was closed. What"},
        {"has no link", true, [](MissionPeer& peer, AxMissionTransfer&) { peer.station.Close(); },
         "There is no link to the aircraft."},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.name);
        MissionPeer peer(3);
        AxMissionTransfer transfer(&peer.Aircraft());
        if (!row.isUpload) {
            EXPECT_EQ(peer.Run(transfer, [&] { transfer.Upload(SampleMission()); }), QString());
            EXPECT_EQ(peer.Run(transfer, [&] { transfer.Download(); }), QString());
        }
        row.spoil(peer, transfer);
        const QString fault = peer.Run(
            transfer, [&] { row.isUpload ? transfer.Upload(SampleMission()) : transfer.Download(); });
        const QLatin1String part(row.fault);
        EXPECT_TRUE(part.endsWith('.') ? fault.endsWith(part) : fault.contains(part)) << fault.toStdString();
        EXPECT_TRUE(transfer.Mission().items.empty()) << "half a mission";
    }
}

TEST(MissionTransfer, IgnoresWhatIsNotItsOwn)
{
    MissionPeer peer(12);
    AxMissionTransfer transfer(&peer.Aircraft());
    peer.manner = [&](const AxMavFrame& frame) {
        AxMavMissionAck fence;
        fence.type = 1;
        fence.mission_type = 1;
        peer.Answer(fence);
        AxMavMissionRequestInt rally;
        rally.mission_type = 2;
        rally.seq = 99;
        peer.Answer(rally);
        if (frame.messageId == AxMavMissionCount::id) {
            AxMavMissionAck toAnother;
            toAnother.type = 4;
            toAnother.target_system = 254;
            peer.Say(toAnother);
            EXPECT_FALSE(transfer.Download()) << "while one runs";
        }
        return false;
    };
    EXPECT_EQ(peer.Run(transfer, [&] { transfer.Upload(SampleMission()); }), QString());
    AxMission tooLong = SampleMission();
    tooLong.items.resize(axMostMissionItems, tooLong.items[2]);
    EXPECT_TRUE(peer.Run(transfer, [&] { transfer.Upload(tooLong); }).contains(QLatin1String("65535")));
}

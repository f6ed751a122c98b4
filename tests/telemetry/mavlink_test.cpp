// The codec against frames that another implementation made (tools/make_mavlink_frames.mjs), and against what
// links do to frames.
#include <AxTelemetry/mavlink/AxMavMessages.h>
#include <AxTelemetry/mavlink/AxMavParser.h>
#include <AxTelemetry/mavlink/AxMavWriter.h>

#include <QFile>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>

#include <gtest/gtest.h>

#include <algorithm>
#include <cstring>
#include <random>
#include <set>

#include "MessageTable.h"

namespace {
QJsonObject MadeElsewhere()
{
    QFile file(QStringLiteral(AX_TEST_DATA "/mavlink_frames.json"));
    EXPECT_TRUE(file.open(QIODevice::ReadOnly));
    return QJsonDocument::fromJson(file.readAll()).object();
}

QByteArray BytesOf(const QJsonValue& hex)
{
    return QByteArray::fromHex(hex.toString().toLatin1());
}

/// Sets a message's fields to what a file tells of them, or compares them with it.
struct Fields
{
    QJsonObject told;
    bool isSetting;
    int seen = 0;

    template <class T> void One(T& field, const QJsonValue& value)
    {
        T meant;
        if constexpr (sizeof(T) == 8 && std::is_integral_v<T>)
            meant = T(value.toString().toULongLong());
        else
            meant = T(value.toDouble());
        if (isSetting)
            field = meant;
        else
            EXPECT_EQ(field, meant);
    }
    template <class T> void operator()(const char* name, T& field)
    {
        SCOPED_TRACE(name);
        ++seen;
        EXPECT_TRUE(told.contains(QLatin1String(name)));
        One(field, told.value(QLatin1String(name)));
    }
    template <class T, std::size_t length> void operator()(const char* name, std::array<T, length>& field)
    {
        SCOPED_TRACE(name);
        ++seen;
        const QJsonValue value = told.value(QLatin1String(name));
        if constexpr (std::is_same_v<T, char>) {
            const QByteArray text = value.toString().toLatin1().leftJustified(int(length), '\0');
            if (isSetting)
                std::memcpy(field.data(), text.data(), length);
            else
                EXPECT_EQ(QByteArray(field.data(), int(length)), text);
        } else {
            EXPECT_EQ(value.toArray().size(), int(length));
            for (std::size_t i = 0; i < length; ++i)
                One(field[i], value.toArray().at(int(i)));
        }
    }
};

std::vector<AxMavFrame> Parse(AxMavParser& parser, const QByteArray& bytes)
{
    std::vector<AxMavFrame> frames;
    parser.Feed(bytes, [&](const AxMavFrame& frame) { frames.push_back(frame); });
    return frames;
}

/// The numbers of the frames that come out of bytes with nothing behind them.
std::vector<int> Sequences(AxMavParser& parser, const QByteArray& bytes)
{
    std::vector<int> sequences;
    const auto take = [&](const AxMavFrame& frame) { sequences.push_back(frame.sequence); };
    parser.Feed(bytes, take);
    parser.Flush(take);
    return sequences;
}

AxMavGlobalPositionInt SomePosition()
{
    AxMavGlobalPositionInt position;
    position.lat = 374000000;
    position.lon = -1050000000;
    position.hdg = 9000;
    return position;
}

/// As many frames as wanted, with the numbers from 0.
std::vector<QByteArray> Frames(int count)
{
    AxMavWriter writer(3, 4);
    std::vector<QByteArray> frames;
    frames.reserve(std::size_t(count));
    for (int i = 0; i < count; ++i)
        frames.push_back(writer.Write(SomePosition()));
    return frames;
}

QByteArray Noise(int size, unsigned seed)
{
    std::mt19937 random(seed);
    QByteArray bytes(size, '\0');
    for (char& byte : bytes)
        byte = char(random());
    return bytes;
}

/// A message that is in no table, with a payload that its sender chooses.
struct Stranger
{
    static constexpr quint32 id = 77777;
    static constexpr quint8 extraCrc = 1;
    static constexpr quint8 baseSize = 200;
    static constexpr quint8 size = 200;
    QByteArray payload;
};

int AxMavPack(const Stranger& message, quint8* payload)
{
    std::memcpy(payload, message.payload.constData(), std::size_t(message.payload.size()));
    return Stranger::size;
}

/// HEARTBEAT as a later definition might have it: two extension fields more, a byte each.
struct LaterHeartbeat : AxMavHeartbeat
{
    static constexpr quint8 size = 11;
};

int AxMavPack(const LaterHeartbeat& message, quint8* payload)
{
    AxMavPack(static_cast<const AxMavHeartbeat&>(message), payload);
    payload[9] = 5;
    payload[10] = 6;
    return LaterHeartbeat::size;
}

const QByteArray kKey(32, 'k');
} // namespace

TEST(Mavlink, ReadsAndWritesWhatAnotherImplementationWrites)
{
    const QJsonObject file = MadeElsewhere();
    const QByteArray key = BytesOf(file.value(QLatin1String("key")));
    AxMavWriter writer(quint8(file.value(QLatin1String("systemId")).toInt()),
                       quint8(file.value(QLatin1String("componentId")).toInt()));
    std::set<quint32> seen;
    const QJsonArray rows = file.value(QLatin1String("frames")).toArray();
    for (const QJsonValue& value : rows) {
        const QJsonObject row = value.toObject();
        SCOPED_TRACE(qPrintable(row.value(QLatin1String("message")).toString()));
        const bool isSigned = row.contains(QLatin1String("signTime"));
        const auto signTime = quint64(row.value(QLatin1String("signTime")).toDouble());
        const QByteArray bytes = BytesOf(row.value(QLatin1String("hex")));

        AxMavParser parser;
        EXPECT_TRUE(parser.SetKey(isSigned ? key : QByteArray()));
        const std::vector<AxMavFrame> frames = Parse(parser, bytes);
        ASSERT_EQ(frames.size(), 1u);
        const AxMavFrame& frame = frames.front();
        EXPECT_EQ(frame.version, row.value(QLatin1String("version")).toInt());
        EXPECT_EQ(frame.sequence, row.value(QLatin1String("sequence")).toInt());
        EXPECT_EQ(frame.systemId, file.value(QLatin1String("systemId")).toInt());
        EXPECT_EQ(frame.componentId, file.value(QLatin1String("componentId")).toInt());
        EXPECT_EQ(frame.isSigned, isSigned);
        EXPECT_EQ(frame.linkId, row.value(QLatin1String("linkId")).toInt());
        EXPECT_EQ(frame.signTime, signTime);

        const auto id = quint32(row.value(QLatin1String("id")).toInt());
        seen.insert(id);
        EXPECT_TRUE(AxMavVisit(id, [&](auto message) {
            using Message = decltype(message);
            const QJsonObject told = row.value(QLatin1String("fields")).toObject();
            EXPECT_TRUE(AxMavDecode(frame, message));
            Fields compared{told, false};
            Message::Visit(message, compared);
            EXPECT_EQ(compared.seen, told.size());

            Message made;
            Message::Visit(made, Fields{told, true});
            writer.SetVersion(frame.version);
            writer.SetKey(isSigned ? key : QByteArray(), quint8(frame.linkId));
            writer.SetSignClock([signTime] { return signTime; });
            const QByteArray written = writer.Write(made);
            // Version 1 knows no extension fields; the other implementation sends them all the same.
            if (frame.version == 2 || Message::baseSize == Message::size) {
                EXPECT_EQ(written.toHex(), bytes.toHex());
            }
        }));
    }
    QFile table(QStringLiteral(AX_TEST_DATA "/../../companion/AxTelemetry/mavlink/messages.json"));
    ASSERT_TRUE(table.open(QIODevice::ReadOnly));
    QString fault;
    EXPECT_EQ(axmavlink::ReadMessages(table.readAll(), fault).size(), seen.size())
        << "a message has no frame made elsewhere";
    EXPECT_EQ(AxMavWriter(1, 1).Write(AxMavMissionItemReached()).at(1), 1) << "no payload is empty";
}

TEST(Mavlink, LosesNoFrameInPiecesOfAnySize)
{
    QByteArray stream;
    std::vector<int> numbers;
    const QJsonArray rows = MadeElsewhere().value(QLatin1String("frames")).toArray();
    for (const QJsonValue& value : rows)
        if (const QJsonObject row = value.toObject(); !row.contains(QLatin1String("signTime"))) {
            stream += BytesOf(row.value(QLatin1String("hex")));
            numbers.push_back(row.value(QLatin1String("sequence")).toInt());
        }
    std::mt19937 random(11);
    for (const int most : {1, 2, 7, 40, 300, 5000}) {
        AxMavParser parser;
        std::vector<int> seen;
        for (int at = 0; at < stream.size();) {
            const int size = 1 + int(random() % unsigned(most));
            parser.Feed(stream.mid(at, size), [&](const AxMavFrame& frame) {
                seen.push_back(frame.sequence);
                const auto sent = frame.payload.begin() + frame.length;
                EXPECT_TRUE(std::all_of(sent, frame.payload.end(), [](quint8 byte) { return byte == 0; }));
            });
            at += size;
        }
        EXPECT_EQ(seen, numbers) << most;
        EXPECT_EQ(parser.Counts().lost, 0u);
        EXPECT_EQ(parser.Counts().garbageBytes, 0u);
    }
}

TEST(Mavlink, FindsTheFramesBehindWhatIsNone)
{
    const std::vector<QByteArray> frames = Frames(2);
    const QByteArray good = frames[0] + frames[1];
    const QByteArray oversized = QByteArray::fromHex("fdff000000");
    const struct
    {
        const char* what;
        QByteArray before;
    } rows[] = {
        {"nothing", {}},
        {"an oversized length", oversized},
        {"an oversized length of a known message", QByteArray::fromHex("fdff000000030421")},
        {"an oversized length, version 1", QByteArray::fromHex("feff")},
        {"a first byte of version 2", QByteArray::fromHex("fd")},
        {"a first byte of version 1", QByteArray::fromHex("fe")},
        {"the beginning of a frame", frames[0].left(frames[0].size() - 1)},
        {"a header that waits for all that follows", QByteArray::fromHex("fdff000000030400ab00")},
        {"a million bytes of noise", Noise(1000000, 5)},
        {"first bytes of version 2", QByteArray(10000, char(0xFD))},
        {"first bytes of version 1", QByteArray(10000, char(0xFE))},
        {"zeros", QByteArray(10000, '\0')},
    };
    for (const auto& row : rows) {
        AxMavParser parser;
        const std::vector<int> sequences = Sequences(parser, row.before + good);
        EXPECT_EQ(sequences, (std::vector<int>{0, 1})) << row.what;
        EXPECT_EQ(parser.Counts().frames, 2u) << row.what;
    }
}

TEST(Mavlink, DamageToOneFrameHarmsNoOther)
{
    const std::vector<QByteArray> frames = Frames(3);
    for (int at = 0; at < frames[1].size(); ++at) {
        QByteArray shorter = frames[1];
        shorter.remove(at, 1);
        std::vector<QByteArray> damaged{shorter, frames[1].left(at)};
        for (int bit = 0; bit < 8; ++bit) {
            damaged.push_back(frames[1]);
            damaged.back()[at] = char(damaged.back()[at] ^ (1 << bit));
        }
        for (const QByteArray& one : damaged) {
            AxMavParser parser;
            EXPECT_EQ(Sequences(parser, frames[0] + one + frames[2]), (std::vector<int>{0, 2}))
                << "byte " << at << " " << one.toHex().constData();
            EXPECT_EQ(parser.Counts().lost + parser.Counts().unknown, 1u);
        }
    }
}

TEST(Mavlink, PassesOverMessagesThatItDoesNotKnow)
{
    AxMavWriter writer(3, 4);
    const QByteArray inner = Frames(1).front();
    Stranger stranger{QByteArray(120, 'x') + inner};
    const auto write = [&] { return writer.Write(stranger); };
    QByteArray stream = writer.Write(SomePosition());
    for (int i = 0; i < 5; ++i)
        stream += write();
    stream += writer.Write(SomePosition());

    AxMavParser parser;
    EXPECT_EQ(Sequences(parser, stream), (std::vector<int>{0, 6})) << "what they carry is not read";
    EXPECT_EQ(parser.Counts().unknown, 5u);
    EXPECT_EQ(parser.Counts().lost, 0u);

    // A frame at the end of all, and one that says it goes on where a frame begins.
    EXPECT_EQ(Sequences(parser, write()), std::vector<int>());
    EXPECT_EQ(parser.Counts().unknown, 6u);
    stream = write().left(20);
    stream += writer.Write(SomePosition());
    EXPECT_EQ(Sequences(parser, stream), std::vector<int>{9});

    // What is lost before such frames is told with the next one that is given out.
    writer.Write(SomePosition());
    stream = write();
    stream += writer.Write(SomePosition());
    const std::vector<AxMavFrame> after = Parse(parser, stream);
    ASSERT_EQ(after.size(), 1u);
    EXPECT_EQ(after.front().lostBefore, 1);

    // Later definitions add fields, which this one cuts off.
    LaterHeartbeat later;
    later.custom_mode = 4;
    const std::vector<AxMavFrame> frames = Parse(parser, writer.Write(later));
    ASSERT_EQ(frames.size(), 1u);
    AxMavHeartbeat heartbeat;
    EXPECT_TRUE(AxMavDecode(frames.front(), heartbeat));
    EXPECT_EQ(heartbeat.custom_mode, 4u);
    AxMavAttitude other;
    EXPECT_FALSE(AxMavDecode(frames.front(), other));

    writer.SetVersion(1);
    EXPECT_TRUE(writer.Write(AxMavCameraImageCaptured()).isEmpty()) << "its number does not fit";
}

TEST(Mavlink, CountsGapsOfEachSender)
{
    const std::vector<QByteArray> frames = Frames(256 + 40);
    AxMavWriter second(3, 5);
    const QByteArray other = second.Write(SomePosition());
    const struct
    {
        const char* what;
        std::vector<int> order;
        quint64 lost;
        int lostBeforeLast;
    } rows[] = {
        {"in order", {0, 1, 2}, 0, 0},        {"starts anywhere", {77, 78}, 0, 0},
        {"a gap", {0, 1, 5}, 3, 3},           {"over 255", {254, 255, 256, 257}, 0, 0},
        {"a gap over 255", {254, 257}, 2, 2}, {"twice, and late", {0, 1, 1, 4, 2, 5}, 2, 0},
        {"a long gap", {0, 201}, 200, 200},
    };
    for (const auto& row : rows) {
        AxMavParser parser;
        int lostBefore = -1;
        for (const int i : row.order) {
            Parse(parser, other); // its own count, and always the same number
            for (const AxMavFrame& frame : Parse(parser, frames[std::size_t(i)]))
                lostBefore = frame.lostBefore;
        }
        EXPECT_EQ(parser.Counts().lost, row.lost) << row.what;
        EXPECT_EQ(lostBefore, row.lostBeforeLast) << row.what;
    }
}

TEST(Mavlink, TrustsSignaturesByTheKeyAndByTheirTimes)
{
    constexpr quint64 kSecond = 100000;
    constexpr quint64 kNow = 1000000 * kSecond;
    const auto frameAt = [&](quint64 time, quint8 system = 1, quint8 link = 1, const QByteArray& key = kKey) {
        AxMavWriter writer(system, 1);
        writer.SetKey(key, link);
        writer.SetSignClock([time] { return time; });
        return writer.Write(SomePosition());
    };
    const QByteArray first = frameAt(kNow);
    QByteArray badTag = frameAt(kNow + 1);
    badTag[badTag.size() - 1] = char(badTag[badTag.size() - 1] ^ 1);
    QByteArray badTime = frameAt(kNow + 1);
    badTime[badTime.size() - 12] = char(badTime[badTime.size() - 12] ^ 8);
    const QByteArray unsignedOne = Frames(1).front();
    const struct
    {
        const char* what;
        QByteArray key;
        QByteArray before;
        QByteArray frame;
        bool isTaken;
    } rows[] = {
        {"signed, key given", kKey, {}, first, true},
        {"signed, no key", {}, {}, first, false},
        {"signed with another key", QByteArray(32, 'z'), {}, first, false},
        {"unsigned, key given", kKey, {}, unsignedOne, false},
        {"unsigned, no key", {}, {}, unsignedOne, true},
        {"tag changed", kKey, {}, badTag, false},
        {"time changed", kKey, {}, badTime, false},
        {"sent again", kKey, first, first, false},
        {"later", kKey, first, frameAt(kNow + 1), true},
        {"earlier", kKey, first, frameAt(kNow - 1), false},
        {"earlier on another link", kKey, first, frameAt(kNow - 59 * kSecond, 1, 2), true},
        {"much earlier on another link", kKey, first, frameAt(kNow - 61 * kSecond, 1, 2), false},
        {"much earlier from another system", kKey, first, frameAt(kNow - 61 * kSecond, 2), false},
        {"after one with a tag changed", kKey, badTag, first, true},
    };
    for (const auto& row : rows) {
        AxMavParser parser;
        EXPECT_TRUE(parser.SetKey(row.key));
        Parse(parser, row.before);
        const quint64 refused = parser.Counts().refusedSignatures;
        EXPECT_EQ(Parse(parser, row.frame).size(), row.isTaken ? 1u : 0u) << row.what;
        EXPECT_EQ(parser.Counts().refusedSignatures - refused, row.isTaken ? 0u : 1u) << row.what;
        EXPECT_EQ(parser.Counts().lost, 0u) << row.what;
    }

    AxMavParser parser;
    parser.SetKey(kKey);
    EXPECT_FALSE(parser.SetKey("too short"));
    EXPECT_EQ(Parse(parser, first).size(), 1u);
    parser.Reset();
    EXPECT_TRUE(Parse(parser, first).empty()) << "a reset link is still no place for old frames";
    AxMavParser tomorrow;
    tomorrow.SetKey(kKey, parser.NewestSignTime() + 61 * kSecond);
    EXPECT_TRUE(Parse(tomorrow, first).empty());

    AxMavWriter writer(1, 1);
    EXPECT_FALSE(writer.SetKey("too short", 0));
    EXPECT_TRUE(writer.SetKey(kKey, 0));
    writer.SetVersion(1);
    AxMavParser later;
    later.SetKey(kKey);
    for (int i = 0; i < 2; ++i)
        EXPECT_EQ(Parse(later, writer.Write(SomePosition())).size(), 1u) << "within one tick of the clock";
}

TEST(Mavlink, HandlersMayFeedAndReset)
{
    const std::vector<QByteArray> frames = Frames(4);
    AxMavParser parser;
    std::vector<int> seen;
    const auto late = [](const AxMavFrame&) { FAIL() << "the first call's handler is the one"; };
    parser.Feed(frames[0] + frames[1] + frames[3].left(9), [&](const AxMavFrame& frame) {
        seen.push_back(frame.sequence);
        if (frame.sequence == 0)
            parser.Feed(frames[3].mid(9) + frames[2], late);
    });
    EXPECT_EQ(seen, (std::vector<int>{0, 1, 3, 2}));
    parser.Feed(frames[0] + frames[1] + frames[2].left(5), [&](const AxMavFrame&) { parser.Reset(); });
    EXPECT_EQ(parser.Counts().frames, 0u);
    EXPECT_EQ(Sequences(parser, frames[3]), std::vector<int>{3});
}

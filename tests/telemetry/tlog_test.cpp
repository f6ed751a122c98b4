// Reading .tlog files: made here frame by frame, cut, damaged, with clocks that jump.
#include <AxAlgorthm/AxGeoid.h>
#include <AxTelemetry/mavlink/AxMavMessages.h>
#include <AxTelemetry/mavlink/AxMavWriter.h>
#include <AxTelemetry/record/AxFlightLoader.h>
#include <AxTelemetry/record/AxTlogReader.h>

#include <QBuffer>
#include <QFile>
#include <QSignalSpy>
#include <QTemporaryDir>
#include <QtEndian>

#include <gtest/gtest.h>

#include <algorithm>

namespace {
constexpr qint64 tlogStart = 1700000000000; // milliseconds

/// The bytes of a .tlog in the making.
struct TlogMaker
{
    explicit TlogMaker(quint8 systemId = 1) : writer(systemId, 1) {}

    template <class Message> void Add(qint64 time, const Message& message)
    {
        const QByteArray frame = writer.Write(message);
        QByteArray stamp(8, '\0');
        qToBigEndian<quint64>(quint64(time + shift) * 1000, stamp.data());
        starts.push_back(bytes.size());
        bytes += stamp + frame;
    }
    void Beat(qint64 time, quint8 type = 2, quint8 autopilot = 3)
    {
        AxMavHeartbeat beat;
        beat.type = type;
        beat.autopilot = autopilot;
        beat.system_status = 4;
        Add(time, beat);
    }
    void Position(qint64 time, int north)
    {
        AxMavGlobalPositionInt position;
        position.time_boot_ms = quint32(time - tlogStart + 60000);
        position.lat = -353629904 + north;
        position.lon = 1491649392;
        position.alt = 587850;
        position.relative_alt = 6750;
        Add(time, position);
    }

    AxMavWriter writer;
    qint64 shift = 0; // of the clock of the recording, milliseconds
    QByteArray bytes;
    std::vector<int> starts; // of the records
};

/// Ten seconds at 4 Hz with attitudes, a photo and a message in the middle; steps of 0.00001 degrees.
TlogMaker tenSeconds(const std::function<void(TlogMaker&, int)>& before = {})
{
    TlogMaker made;
    for (int i = 0; i < 40; ++i) {
        const qint64 time = tlogStart + 250 * i;
        if (before)
            before(made, i);
        if (i % 4 == 0)
            made.Beat(time);
        AxMavAttitude attitude;
        attitude.time_boot_ms = quint32(60000 + 250 * i);
        attitude.roll = 0.01f * float(i);
        attitude.yaw = 1.0f;
        made.Add(time, attitude);
        made.Position(time + 1, 100 * i);
        if (i == 20) {
            AxMavCameraTrigger trigger;
            trigger.seq = 77;
            made.Add(time + 2, trigger);
            AxMavStatustext text;
            text.severity = 4;
            std::copy_n("Wind is high", 12, text.text.begin());
            made.Add(time + 2, text);
        }
    }
    return made;
}

AxFlightRead readTlog(const QByteArray& bytes, int piece = 1 << 20)
{
    AxTlogReader reader;
    for (int at = 0; at < bytes.size(); at += piece)
        reader.Feed(bytes.mid(at, piece));
    return reader.Finish();
}

std::size_t samplesOf(const AxFlightRead& read)
{
    return read.flights.size() == 1 ? read.flights[0]->Samples().size() : 0;
}
} // namespace

TEST(Tlog, BecomesAFlightWithAllThatWasTold)
{
    const QByteArray bytes = tenSeconds().bytes;
    for (const int piece : {1 << 20, 1, 7, 300}) {
        const AxFlightRead read = readTlog(bytes, piece);
        ASSERT_TRUE(read.fault.isEmpty()) << read.fault.toStdString();
        EXPECT_EQ(read.notes.size(), AxGeoidFault().isEmpty() ? 0 : 1) << read.notes.join("\n").toStdString();
        ASSERT_EQ(read.flights.size(), 1u);
        const AxFlightRecord& flight = *read.flights[0];
        ASSERT_EQ(flight.Samples().size(), 40u) << "pieces of " << piece;
        EXPECT_EQ(flight.Attitudes().size(), 40u);
        EXPECT_TRUE(flight.Gaps().empty());
        const AxFlightSample& sample = flight.Samples()[20];
        EXPECT_EQ(sample.time, quint64(tlogStart + 5001));
        EXPECT_NEAR(sample.latitude, -35.3629904 + 20e-5, 1e-9);
        EXPECT_NEAR(sample.altitude, 587.85 + AxGeoidHeight(sample.latitude, sample.longitude).value_or(0.0),
                    1e-6);
        EXPECT_NEAR(double(sample.heightAboveHome), 6.75, 1e-4);
        EXPECT_NEAR(double(sample.roll), 0.2, 1e-6);
        ASSERT_EQ(flight.Photos().size(), 1u);
        EXPECT_EQ(flight.Photos()[0].index, 77);
        EXPECT_EQ(flight.Photos()[0].time, quint64(tlogStart + 5002));
        ASSERT_EQ(flight.Messages().size(), 1u);
        EXPECT_EQ(flight.Messages()[0].text, QStringLiteral("Wind is high"));
        EXPECT_EQ(flight.StateAt(quint64(tlogStart + 9000)).planeType, PlaneQuadcopter);
        EXPECT_FALSE(flight.StateAt(quint64(tlogStart + 9000)).mode.isEmpty());
    }
}

TEST(Tlog, SeveralSystemsDoNotMixAndStationsAreNone)
{
    TlogMaker second(2), station(255);
    station.Beat(tlogStart, 6, 8);
    second.Beat(tlogStart + 1, 1);
    for (int i = 0; i < 10; ++i) {
        second.Position(tlogStart + 2 + i, 1000000 + i);
        station.Position(tlogStart + 2 + i, 0);
    }
    const AxFlightRead read = readTlog(station.bytes + second.bytes + tenSeconds().bytes);
    ASSERT_EQ(read.flights.size(), 2u) << read.fault.toStdString();
    EXPECT_EQ(read.flights[0]->systemId, 1);
    EXPECT_EQ(read.flights[0]->Samples().size(), 40u);
    EXPECT_EQ(read.flights[1]->systemId, 2);
    ASSERT_EQ(read.flights[1]->Samples().size(), 10u);
    EXPECT_NEAR(read.flights[1]->Samples()[9].latitude, -35.2629895, 1e-9);
    EXPECT_FALSE(readTlog(station.bytes).fault.isEmpty());
}

TEST(Tlog, CutAnywhereKeepsWhatIsWholeAndSaysSo)
{
    const TlogMaker made = tenSeconds();
    const std::size_t plainNotes = AxGeoidFault().isEmpty() ? 0 : 1;
    std::size_t before = 0;
    for (int size = 1; size <= made.bytes.size(); ++size) {
        const AxFlightRead read = readTlog(made.bytes.left(size));
        const std::size_t samples = samplesOf(read);
        ASSERT_TRUE(samples == before || samples == before + 1) << size;
        before = samples;
        const bool isWhole = size == made.bytes.size() ||
                             std::find(made.starts.begin(), made.starts.end(), size) != made.starts.end();
        if (samples > 0) {
            ASSERT_EQ(std::size_t(read.notes.size()), plainNotes + (isWhole ? 0 : 1)) << size;
        }
    }
    EXPECT_EQ(before, 40u);
}

TEST(Tlog, DamageCostsNoMoreThanItsRecord)
{
    const TlogMaker made = tenSeconds();
    const auto at = std::size_t(made.starts[50]);
    const struct
    {
        const char* what;
        std::function<void(QByteArray&)> harm;
    } rows[] = {
        {"a flipped byte",
         [&](QByteArray& bytes) { bytes[int(at) + 20] = char(bytes[int(at) + 20] ^ 0x40); }},
        {"a false length", [&](QByteArray& bytes) { bytes[int(at) + 9] = char(255); }},
        {"a lost byte", [&](QByteArray& bytes) { bytes.remove(int(at) + 12, 1); }},
        {"a false magic", [&](QByteArray& bytes) { bytes[int(at) + 8] = 0; }},
        {"garbage", [&](QByteArray& bytes) { bytes.insert(int(at), QByteArray(5000, char(0xFD))); }},
        {"zeros", [&](QByteArray& bytes) { bytes.insert(int(at), QByteArray(70000, '\0')); }},
        {"two files in one",
         [&](QByteArray& bytes) { bytes = bytes.left(int(at) + 15) + bytes.mid(int(at)); }},
    };
    for (const auto& row : rows) {
        QByteArray bytes = made.bytes;
        row.harm(bytes);
        const AxFlightRead read = readTlog(bytes, 1000);
        EXPECT_GE(samplesOf(read), 39u) << row.what << read.fault.toStdString();
        EXPECT_TRUE(read.notes.join(' ').contains(QLatin1String("1 damaged places"))) << row.what;
    }
    for (const QByteArray& none : {QByteArray(), QByteArray("hello, this is a text"),
                                   QByteArray(1000000, char(0xFE)), QByteArray(1000, '\0')})
        EXPECT_FALSE(readTlog(none).fault.isEmpty());
}

TEST(Tlog, TimesRiseWhateverTheClockDid)
{
    const auto from = [](int first, qint64 shift) {
        return [=](TlogMaker& made, int i) { made.shift = i >= first ? shift : 0; };
    };
    const auto only = [](int index, qint64 shift) {
        return [=](TlogMaker& made, int i) {
            made.shift = 0;
            if (i != index)
                return;
            made.shift = shift;
            made.Beat(tlogStart + 250 * i);
            made.shift = 0;
        };
    };
    constexpr qint64 year = 31557600000;
    const struct
    {
        const char* what;
        std::function<void(TlogMaker&, int)> before;
        qint64 length; // milliseconds
        int notes;
    } rows[] = {
        {"set back by an hour", from(20, -3600000), 9501, 1},
        {"set forward by years", from(20, 9 * year), 9501, 1},
        {"not recording for an hour", from(20, 3600000), 9751 + 3600000, 0},
        {"one wrong stamp", only(20, 3 * year), 9751, 0},
        {"one without a date", only(20, -tlogStart), 9751, 0},
        {"the first without a date", only(0, -tlogStart), 9751, 0},
        {"never a date", from(0, -tlogStart + 5000), 9751, 0},
    };
    for (const auto& row : rows) {
        const AxFlightRead read = readTlog(tenSeconds(row.before).bytes);
        ASSERT_EQ(samplesOf(read), 40u) << row.what << read.fault.toStdString();
        const AxFlightRecord& flight = *read.flights[0];
        EXPECT_NEAR(double(flight.End() - flight.Begin()), double(row.length), 3.0) << row.what;
        EXPECT_EQ(read.notes.size() - (AxGeoidFault().isEmpty() ? 0 : 1), row.notes) << row.what;
        EXPECT_EQ(flight.Gaps().size(), row.length > 100000 ? 1u : 0u) << row.what;
    }
}

TEST(Tlog, ACameraThatSpeaksOnDoesNotHideASilence)
{
    TlogMaker made;
    const AxMavWriter autopilot = made.writer;
    AxMavMountOrientation camera;
    camera.pitch = -90.0f;
    for (int second = 0; second <= 30; ++second) {
        made.writer = autopilot;
        if (second == 0)
            made.Beat(tlogStart);
        if (second <= 2 || second == 20)
            made.Position(tlogStart + 1000 * second, second);
        made.writer = AxMavWriter(1, 154);
        made.Add(tlogStart + 1000 * second, camera);
    }
    const AxFlightRead read = readTlog(made.bytes);
    ASSERT_EQ(samplesOf(read), 4u);
    const AxFlightRecord& flight = *read.flights[0];
    EXPECT_EQ(flight.End() - flight.Begin(), 30000u);
    for (const int second : {1, 2, 3, 19, 20, 21, 30})
        EXPECT_EQ(flight.GapAt(quint64(tlogStart + 1000 * second)) != nullptr,
                  (second > 2 && second < 20) || second > 20)
            << second;
}

TEST(Tlog, SignedFramesNeedTheirKey)
{
    const QByteArray key(32, 'k');
    TlogMaker made;
    EXPECT_TRUE(made.writer.SetKey(key, 1));
    made.Beat(tlogStart);
    made.Position(tlogStart + 1, 0);
    const struct
    {
        QByteArray key;
        bool isRead;
    } rows[] = {{key, true}, {QByteArray(32, 'x'), false}, {{}, false}, {"short", false}};
    for (const auto& row : rows) {
        QByteArray bytes = made.bytes;
        QBuffer buffer(&bytes);
        buffer.open(QIODevice::ReadOnly);
        const AxFlightRead read = AxReadTlog(buffer, {}, row.key);
        EXPECT_EQ(samplesOf(read), row.isRead ? 1u : 0u) << row.key.toStdString();
        EXPECT_EQ(read.fault.isEmpty(), row.isRead) << row.key.toStdString();
    }
}

TEST(FlightLoader, ReadsRecordingsBesideTheGuiThread)
{
    QTemporaryDir folder;
    const TlogMaker made = tenSeconds();
    QFile recorded(folder.filePath(QStringLiteral("flight.tlog")));
    ASSERT_TRUE(recorded.open(QIODevice::WriteOnly));
    recorded.write(made.bytes);
    recorded.close();

    AxFlightLoader loader;
    QSignalSpy loaded(&loader, &AxFlightLoader::signalLoaded);
    const auto load = [&](const QString& path) {
        loaded.clear();
        loader.Load(path);
        EXPECT_TRUE(loader.IsLoading());
        EXPECT_TRUE(loaded.wait(20000));
        EXPECT_FALSE(loader.IsLoading());
        return loaded.takeFirst()[0].value<AxFlightRead>();
    };
    EXPECT_EQ(samplesOf(load(recorded.fileName())), 40u);
    EXPECT_EQ(samplesOf(load(QStringLiteral(AX_TEST_DATA "/vtol_track.csv"))), 806u);
    EXPECT_TRUE(load(folder.filePath("none")).fault.contains(QLatin1String("none")));

    loader.Load(recorded.fileName());
    loader.Load(QStringLiteral(AX_TEST_DATA "/vtol_track.csv"));
    EXPECT_TRUE(loaded.wait(20000));
    loader.Load(recorded.fileName());
    loader.Cancel();
    QCoreApplication::processEvents();
    ASSERT_EQ(loaded.count(), 1) << "only the latest is told, and nothing that was cancelled";
    EXPECT_EQ(samplesOf(loaded[0][0].value<AxFlightRead>()), 806u);
}

// Recorded flights: what a record answers, tables of text, replay, exports of photos.
#include <AxAlgorthm/AxGeoid.h>
#include <AxTelemetry/record/AxFlightCsv.h>
#include <AxTelemetry/record/AxPhotoExport.h>
#include <AxTelemetry/record/AxReplaySource.h>

#include <QBuffer>
#include <QFile>
#include <QSignalSpy>
#include <QtMath>
#include <QXmlStreamReader>

#include <gtest/gtest.h>

#include <cmath>

namespace {
constexpr quint64 recordStart = 1700000000000; // 2023-11-14T22:13:20Z
constexpr double notKnown = std::numeric_limits<double>::quiet_NaN();

AxFlightRead readTable(QByteArray table)
{
    QBuffer buffer(&table);
    buffer.open(QIODevice::ReadOnly);
    return AxReadFlightCsv(buffer);
}

/// A sample each second; silence from 10 s to 20 s, with the photos 0 to 29 half a second behind each sample.
std::shared_ptr<AxFlightRecord> flightWithGap()
{
    auto flight = std::make_shared<AxFlightRecord>();
    for (int i = 0; i < 40; ++i) {
        const quint64 time = recordStart + 1000 * quint64(i <= 10 ? i : i + 9);
        AxFlightSample sample;
        sample.time = time;
        sample.longitude = 10.0 + 0.001 * i;
        sample.latitude = 50.0;
        sample.altitude = 100.0 + i;
        sample.yaw = 1.5f;
        EXPECT_TRUE(flight->AddSample(sample));
        AxPhotoRecord photo;
        photo.index = i;
        photo.time = time + (i < 10 || i > 10 ? 500 : 0);
        photo.longitude = sample.longitude;
        photo.latitude = sample.latitude;
        if (i < 30) {
            EXPECT_TRUE(flight->AddPhoto(photo));
        }
    }
    EXPECT_TRUE(flight->AddMessage({recordStart + 5200, 4, QStringLiteral("wind")}));
    return flight;
}

struct ReplaySpies
{
    explicit ReplaySpies(AxReplaySource& source)
        : positions(&source, &AxReplaySource::globalPositionChanged),
          attitudes(&source, &AxReplaySource::attitudeChanged),
          pictures(&source, &AxReplaySource::picture_Idx), photosTo(&source, &AxReplaySource::signalPhotosTo),
          messages(&source, &AxReplaySource::signalMessage), lost(&source, &AxReplaySource::signalLinkLost),
          back(&source, &AxReplaySource::signalLinkBack), ended(&source, &AxReplaySource::signalEnded),
          indexes(&source, &AxReplaySource::signalIndex)
    {
    }
    void Clear()
    {
        for (QSignalSpy* spy :
             {&positions, &attitudes, &pictures, &photosTo, &messages, &lost, &back, &ended, &indexes})
            spy->clear();
    }
    QSignalSpy positions, attitudes, pictures, photosTo, messages, lost, back, ended, indexes;
};

AxPhotoRecord photoOf(int index, quint64 time, double longitude, double latitude)
{
    AxPhotoRecord photo;
    photo.index = index;
    photo.time = time;
    photo.longitude = longitude;
    photo.latitude = latitude;
    photo.altitude = 606.5;
    return photo;
}
} // namespace

TEST(FlightRecord, AnswersByTimeAndKeepsGaps)
{
    const auto flight = flightWithGap();
    ASSERT_EQ(flight->Gaps().size(), 1u);
    EXPECT_EQ(flight->Gaps()[0].begin, recordStart + 10000);
    EXPECT_EQ(flight->Gaps()[0].end, recordStart + 20000);
    const struct
    {
        qint64 offset;
        int index;
        bool isGap;
    } rows[] = {{-5000, 0, false},  {0, 0, false},     {999, 0, false},   {1000, 1, false},
                {10000, 10, false}, {10001, 10, true}, {19999, 10, true}, {20000, 11, false},
                {48000, 39, false}, {99000, 39, false}};
    for (const auto& row : rows) {
        const quint64 time = recordStart + quint64(row.offset);
        EXPECT_EQ(flight->IndexAt(time), row.index) << row.offset;
        EXPECT_EQ(flight->GapAt(time) != nullptr, row.isGap) << row.offset;
        const AxAircraftState state = flight->StateAt(time);
        EXPECT_EQ(state.isHeard, row.offset >= 0 && !row.isGap) << row.offset;
        if (row.isGap) {
            EXPECT_EQ(quint64(state.lastHeard), recordStart + 10000);
        }
    }
    EXPECT_EQ(flight->TimeAt(11), recordStart + 20000);
    EXPECT_EQ(flight->TimeAt(1000), recordStart + 48000);

    AxFlightSample wrong = flight->Samples().back();
    for (const double latitude : {91.0, notKnown, double(INFINITY)}) {
        wrong.latitude = latitude;
        EXPECT_FALSE(flight->AddSample(wrong));
    }
    wrong = flight->Samples().front();
    EXPECT_FALSE(flight->AddSample(wrong)) << "older than the last one";
    EXPECT_EQ(flight->Samples().size(), 40u);
}

TEST(FlightCsv, ReadsAFlightAndWritesItTheSame)
{
    QFile file(QStringLiteral(AX_TEST_DATA "/vtol_track.csv"));
    ASSERT_TRUE(file.open(QIODevice::ReadOnly));
    const AxFlightRead read = AxReadFlightCsv(file);
    ASSERT_TRUE(read.fault.isEmpty()) << read.fault.toStdString();
    ASSERT_EQ(read.flights.size(), 1u);
    const AxFlightRecord& flight = *read.flights[0];
    ASSERT_EQ(flight.Samples().size(), 806u);
    const AxFlightSample& first = flight.Samples()[0];
    EXPECT_NEAR(first.longitude, 149.1649392, 1e-9);
    EXPECT_NEAR(first.latitude, -35.3629904, 1e-9);
    EXPECT_NEAR(first.altitude - AxGeoidHeight(-35.3629904, 149.1649392).value_or(0.0), 587.85, 1e-6);
    EXPECT_NEAR(double(first.heightAboveHome), 6.75, 1e-4);
    EXPECT_NEAR(double(first.yaw), 140.37 * M_PI / 180.0, 1e-6);
    EXPECT_NEAR(*flight.StateAt(608582).altitudeAboveSea, 587.85, 1e-6);

    const AxExported written = AxWriteFlightCsv(flight);
    const AxFlightRead again = readTable(written.data);
    ASSERT_EQ(again.flights.size(), 1u) << again.fault.toStdString();
    EXPECT_TRUE(again.notes.isEmpty());
    EXPECT_EQ(AxWriteFlightCsv(*again.flights[0]).data, written.data);
    EXPECT_FALSE(AxWriteFlightCsv(AxFlightRecord()).fault.isEmpty());
}

TEST(FlightCsv, KnowsTheColumnsByTheirNames)
{
    const struct
    {
        const char* table;
        quint64 time;
    } rows[] = {
        {"t_ms,lat,lon,alt_ellipsoid,hdg\n5000,50.5,10.25,300,90\n", 5000},
        {"\xEF\xBB\xBFLongitude [deg];Latitude [deg];Note;HAE;Time "
         "(s);Heading\r\n10.25;50.5;\"a;b\";300;5;90\r\n",
         5000},
        {"sep=\t\nyaw_rad\tlng\tlatitude_deg\tEllipsoid altitude (m)\ttime_us\n"
         "1.5707963\t10.25\t50.5\t300\t5000000\n",
         5000},
        {"time,lat,lon,alt_hae,yaw_deg\n2023-11-14T22:13:20.5Z,50.5,10.25,300,-270", recordStart + 500},
        {"timestamp,lat,lon,alt_hae,yaw_deg\n1700000000.5,50.5,10.25,300,90\n\n", recordStart + 500},
        {"# made by hand\ntimestamp,lat,lon,alt_hae,yaw_deg\n2023-11-15T00:13:20+02:00,50.5,10.25,300,450\n"
         "1700000000000,50.5,10.25,300,90\n",
         recordStart},
        {"Timestamp,gps.lat,gps.lon,alt_hae,yaw_deg,roll_deg,hdg,alt_rel\n"
         "2016-12-31 23:59:60.250,50.5,10.25,300,90,--.--,N/A,-\n",
         1483228799250},
        {"time,lat,lon,alt_hae,yaw_deg\n2024-03-31T02:30:00,50.5,10.25,300,90\n",
         1711852200000}, // a skipped hour
    };
    for (const auto& row : rows) {
        const AxFlightRead read = readTable(row.table);
        ASSERT_EQ(read.flights.size(), 1u) << row.table << read.fault.toStdString();
        const AxFlightSample& sample = read.flights[0]->Samples().back();
        EXPECT_EQ(sample.time, row.time) << row.table;
        EXPECT_EQ(sample.longitude, 10.25) << row.table;
        EXPECT_EQ(sample.latitude, 50.5) << row.table;
        EXPECT_EQ(sample.altitude, 300.0) << row.table;
        EXPECT_NEAR(double(sample.yaw), M_PI / 2, 1e-6) << row.table;
    }
}

TEST(FlightCsv, SaysWhatIsWrongAndWhere)
{
    const struct
    {
        const char* table;
        const char* words;
    } faults[] = {
        {"", "empty"},
        {"a,b\n1,2\n", "latitude"},
        {"t_ms,lat,lon,alt_rel\n1,2,3,4\n", "altitude"},
        {"lat,lon,alt\n1,2,3\n", "time"},
        {"t_ms;lat;lon;alt\n1;2;3;4\n2;2,5;3;4\n3;2;3;4\n", "Line 3: lat has a decimal comma: \"2,5\""},
        {"t_ms,lat,lon,alt\n1,\"2,5\",3,4\n", "Line 2: lat has a decimal comma"},
        {"t_ms,lat,lon,alt\n1,2,5,3,0,4,0\n", "Line 2: 7 columns instead of 4"},
        {"t_ms,lat,lon,alt\n1,2,3,4\n1,2,3\n1,2,3,4\n", "Line 3: 3 columns instead of 4"},
        {"t_ms,lat,lon,alt\n1,2,3,high\n2,2,3,4\n", "Line 2: alt is no number: \"high\""},
        {"time,lat,lon,alt\n12,2,3,4\n", "t_ms"},
        {"t_ms,lat,lon,alt\n1,91,3,4\n2,nan,3,4\n3,0,0,4\n-5,1,1,4\n", "No line"},
    };
    for (const auto& row : faults) {
        const AxFlightRead read = readTable(row.table);
        EXPECT_TRUE(read.fault.contains(QLatin1String(row.words))) << row.table << read.fault.toStdString();
        EXPECT_TRUE(read.flights.empty());
    }
    EXPECT_FALSE(readTable(QByteArray("t_ms,lat,lon,alt\n\0\1\2", 20)).fault.isEmpty());
    EXPECT_FALSE(readTable(QByteArray(200000, 'x')).fault.isEmpty());

    const struct
    {
        const char* table;
        std::vector<std::size_t> samples; // of each flight
        int notes;
    } taken[] = {
        {"t_ms,lat,lon,alt_hae\n1,2,3,4\n2,2,3,4\n3,2,3", {2}, 1}, // cut
        {"t_ms,lat,lon,alt_hae\n1,2,3,4\n2,2,3,400", {1}, 1},      // perhaps cut in the altitude
        {"t_ms,lat,lon,alt_hae\n1,2,3,4\n2,,3,4\n3,2,3,4\n4,2,361,4\n", {2}, 1},    // no place
        {"t_ms,lat,lon,alt_hae\n60000,2,3,4\n100,2,3,4\n61000,2,3,4\n", {3}, 0},    // a late one
        {"t_ms,lat,lon,alt_hae\n50000,2,3,4\n60000,2,3,4\n100,2,3,4\n", {2, 1}, 1}, // started anew
        {"t_ms,lat,lon,alt,roll\n1,2,3,4,5\n", {1}, 2},
        {"time,lat,lon,alt_hae\n2023-11-14 22:13:20.5,2,3,4\n", {1}, 1}, // in which zone?
        {"time_utc,lat,lon,alt_hae\n2023-11-14 22:13:20.5,2,3,4\n", {1}, 0},
        {"t_ms,lat,lon,alt_hae,sysid\n1,2,3,4,1\n2,5,3,4,2\n3,2,3,4,1\n", {2, 1}, 0},
    };
    for (const auto& row : taken) {
        const AxFlightRead read = readTable(row.table);
        ASSERT_EQ(read.flights.size(), row.samples.size()) << row.table << read.fault.toStdString();
        for (std::size_t i = 0; i < row.samples.size(); ++i)
            EXPECT_EQ(read.flights[i]->Samples().size(), row.samples[i]) << row.table;
        EXPECT_EQ(read.notes.size(), row.notes) << row.table << read.notes.join("\n").toStdString();
    }
    // Dates are put in order; a table with a line every ten seconds has no gaps but where lines are missing.
    QByteArray slow = "t_s,lat,lon,alt_hae\n";
    for (const int second : {0, 10, 20, 40, 30, 50, 200, 210})
        slow += QByteArray::number(1700000000 + second) + ",2,3,4\n";
    const AxFlightRead read = readTable(slow);
    ASSERT_EQ(read.flights.size(), 1u);
    EXPECT_EQ(read.flights[0]->Samples().size(), 8u);
    ASSERT_EQ(read.flights[0]->Gaps().size(), 1u);
    EXPECT_EQ(read.flights[0]->Gaps()[0].begin, recordStart + 50000);
}

TEST(Replay, AJumpEmitsOnePositionAndThePhotosUpToIt)
{
    AxReplaySource source(flightWithGap(), nullptr, AxReplaySource::Clock::Driven);
    ReplaySpies spies(source);
    const struct
    {
        quint64 to; // milliseconds from the start
        int index;
        int photos;
        bool isLost;
    } rows[] = {{48000, 39, 30, false}, {25300, 16, 16, false}, {15000, 10, 11, true}, {0, 0, 0, false}};
    for (const auto& row : rows) {
        spies.Clear();
        source.SetTime(recordStart + row.to);
        ASSERT_EQ(spies.positions.count(), 1) << row.to;
        EXPECT_EQ(spies.positions[0][0].toDouble(), 10.0 + 0.001 * row.index);
        EXPECT_EQ(spies.attitudes.count(), 1);
        EXPECT_EQ(spies.pictures.count() + spies.messages.count(), 0);
        ASSERT_EQ(spies.photosTo.count(), 1);
        EXPECT_EQ(spies.photosTo[0][0].toInt(), row.photos) << row.to;
        EXPECT_EQ(spies.lost.count(), row.isLost ? 1 : 0);
        EXPECT_EQ(source.State().isHeard, !row.isLost);
        EXPECT_EQ(*source.State().altitude, 100.0 + row.index);
        EXPECT_EQ(source.Index(), row.index);
    }
    EXPECT_EQ(spies.back.count(), 1);
    source.SetIndex(20);
    EXPECT_EQ(source.Time(), recordStart + 29000);
    source.SetIndex(-7);
    EXPECT_EQ(source.Time(), recordStart);
    source.SetTime(0);
    EXPECT_EQ(source.Time(), recordStart);
}

TEST(Replay, PlaysInTrueTimeAndStandsStillInAGap)
{
    AxReplaySource source(flightWithGap(), nullptr, AxReplaySource::Clock::Driven);
    ReplaySpies spies(source);
    source.Advance(1000.0);
    EXPECT_EQ(source.Time(), recordStart) << "it does not play yet";
    source.Play();
    spies.Clear();
    for (int i = 0; i < 400; ++i)
        source.Advance(25.0);
    EXPECT_EQ(source.Time(), recordStart + 10000);
    EXPECT_EQ(spies.positions.count(), 10);
    EXPECT_EQ(spies.pictures.count(), 11);
    EXPECT_EQ(spies.messages.count(), 1);
    EXPECT_EQ(spies.photosTo.count(), 0);

    spies.Clear();
    source.SetSpeed(4.0);
    for (int i = 0; i < 80; ++i)
        source.Advance(25.0);
    EXPECT_EQ(source.Time(), recordStart + 18000);
    EXPECT_TRUE(source.IsInGap());
    EXPECT_FALSE(source.State().isHeard);
    EXPECT_EQ(source.State().HeardAgo(qint64(source.Time())), 8000);
    EXPECT_EQ(spies.positions.count() + spies.attitudes.count() + spies.pictures.count(), 0);
    EXPECT_EQ(spies.lost.count(), 1);

    source.SetSpeed(0.01);
    EXPECT_EQ(source.Speed(), AxReplaySource::slowest);
    for (int i = 0; i < 800; ++i)
        source.Advance(25.1); // 2.51 ms of the flight, of which 0.51 ms must not get lost
    EXPECT_EQ(source.Time(), recordStart + 20008);
    EXPECT_EQ(spies.back.count(), 1);

    spies.Clear();
    source.SetSpeed(1e9);
    source.Advance(100.0); // ten seconds at once
    EXPECT_EQ(spies.positions.count(), 1);
    EXPECT_EQ(spies.pictures.count(), 10);
    source.Advance(1000.0);
    EXPECT_EQ(source.Time(), recordStart + 48000);
    EXPECT_EQ(spies.ended.count(), 1);
    EXPECT_FALSE(source.IsPlaying());
    source.Play();
    EXPECT_EQ(source.Time(), recordStart) << "from the beginning again";
    source.Pause();
    source.Advance(1000.0);
    EXPECT_EQ(source.Time(), recordStart);
}

TEST(Replay, ReceiversMayMoveOnOrDeleteIt)
{
    auto* source = new AxReplaySource(flightWithGap(), nullptr, AxReplaySource::Clock::Driven);
    QSignalSpy pictures(source, &AxReplaySource::picture_Idx);
    QObject::connect(source, &AxReplaySource::picture_Idx, source, [source](int index) {
        if (index == 3)
            source->SetTime(recordStart + 30000);
    });
    source->Play();
    source->Advance(9000.0);
    EXPECT_EQ(source->Time(), recordStart + 30000);
    EXPECT_EQ(pictures.count(), 4) << "those behind the jump are told by it";
    EXPECT_TRUE(source->IsPlaying());
    QObject::connect(source, &AxReplaySource::globalPositionChanged, source, [source] { delete source; });
    source->Advance(1000.0);

    for (const auto& flight : {std::shared_ptr<AxFlightRecord>(), std::make_shared<AxFlightRecord>()}) {
        AxReplaySource empty(flight, nullptr, AxReplaySource::Clock::Driven);
        empty.Play();
        empty.SetTime(5);
        empty.SetIndex(5);
        empty.Advance(5.0);
        EXPECT_FALSE(empty.IsPlaying());
        EXPECT_EQ(empty.Index(), -1);
    }
}

TEST(PhotoExport, TellsPlaceTimeHeightsAndAttitude)
{
    AxPhotoRecord first = photoOf(7, recordStart + 500, 149.1649392, -35.3629904);
    first.roll = 0.1;
    first.pitch = -0.05;
    first.yaw = -M_PI / 2;
    AxPhotoRecord bare = photoOf(8, 5000, -179.5, 0.25);
    bare.altitude = notKnown;
    const std::vector<AxPhotoRecord> photos = {first, photoOf(9, recordStart, 10.0, 91.0), bare};
    const double sea = 606.5 - AxGeoidHeight(-35.3629904, 149.1649392).value_or(0.0);

    const AxExported csv = AxWritePhotoCsv(photos);
    const QList<QByteArray> lines = csv.data.split('\n');
    ASSERT_EQ(lines.size(), 4);
    EXPECT_EQ(lines[1].trimmed(), "7,2023-11-14T22:13:20.500Z,149.164939200,-35.362990400,606.500," +
                                      QByteArray::number(sea, 'f', 3) + ",5.730,-2.865,270.000");
    EXPECT_EQ(lines[2].trimmed(), "8,,-179.500000000,0.250000000,,,,,");
    EXPECT_GE(csv.notes.size(), 2) << "one is off the globe, one has no date";

    const AxExported kml = AxWritePhotoKml(photos, QString::fromUtf8("采石场 <1>&\x01"));
    QXmlStreamReader xml(kml.data);
    QStringList names, coordinates, times, data;
    while (!xml.atEnd()) {
        xml.readNext();
        if (!xml.isStartElement())
            continue;
        if (xml.name() == QLatin1String("name"))
            names << xml.readElementText();
        else if (xml.name() == QLatin1String("coordinates"))
            coordinates << xml.readElementText();
        else if (xml.name() == QLatin1String("when"))
            times << xml.readElementText();
        else if (xml.name() == QLatin1String("value"))
            data << xml.readElementText();
    }
    EXPECT_FALSE(xml.hasError()) << xml.errorString().toStdString();
    EXPECT_EQ(names, QStringList({QString::fromUtf8("采石场 <1>&"), "7", "8"}));
    EXPECT_EQ(coordinates, QStringList({"149.164939200,-35.362990400," + QString::number(sea, 'f', 3),
                                        "-179.500000000,0.250000000"}));
    EXPECT_EQ(times, QStringList({"2023-11-14T22:13:20.500Z"}));
    EXPECT_EQ(data, QStringList({"606.500", "5.730", "-2.865", "270.000"}));
    EXPECT_FALSE(AxWritePhotoCsv({}).fault.isEmpty());
    EXPECT_FALSE(AxWritePhotoKml({photos[1]}, {}).fault.isEmpty());
}

// Files of flights: any bytes end in flights that hold together, or in a fault, and in the same ones however
// the bytes come. The first byte says how long the pieces are; 0 makes the rest a table of text.
#include <AxTelemetry/record/AxFlightCsv.h>
#include <AxTelemetry/record/AxTlogReader.h>

#include <QBuffer>

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <cstdlib>

namespace {
void Require(bool holds)
{
    if (!holds)
        std::abort();
}

void CheckFlight(const AxFlightRecord& flight)
{
    Require(!flight.IsEmpty() && flight.Begin() <= flight.End());
    const auto isRising = [](const auto& list) {
        return std::is_sorted(list.begin(), list.end(),
                              [](const auto& a, const auto& b) { return a.time < b.time; });
    };
    Require(isRising(flight.Samples()) && isRising(flight.Attitudes()) && isRising(flight.Photos()) &&
            isRising(flight.Messages()) && isRising(flight.Cameras()) && isRising(flight.States()));
    for (const AxFlightSample& sample : flight.Samples()) {
        Require(std::fabs(sample.latitude) <= 90.0 && std::fabs(sample.longitude) <= 180.0);
        Require(std::isfinite(sample.altitude));
        Require(flight.Samples()[std::size_t(flight.IndexAt(sample.time))].time == sample.time);
        Require(!flight.GapAt(sample.time) && flight.StateAt(sample.time).isHeard);
    }
    for (const AxFlightGap& gap : flight.Gaps())
        Require(gap.begin < gap.end && flight.GapAt(gap.begin + 1) == &gap);
}

void CheckRead(const AxFlightRead& read)
{
    Require(read.fault.isEmpty() == !read.flights.empty());
    for (const auto& flight : read.flights)
        CheckFlight(*flight);
}

void CheckTable(QByteArray table)
{
    QBuffer buffer(&table);
    buffer.open(QIODevice::ReadOnly);
    const AxFlightRead read = AxReadFlightCsv(buffer);
    CheckRead(read);
    for (const auto& flight : read.flights) {
        AxExported written = AxWriteFlightCsv(*flight);
        QBuffer again(&written.data);
        again.open(QIODevice::ReadOnly);
        Require(AxReadFlightCsv(again).fault.isEmpty());
    }
}
} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    if (size == 0)
        return 0;
    const QByteArray bytes(reinterpret_cast<const char*>(data + 1), int(size - 1));
    if (data[0] == 0) {
        CheckTable(bytes);
        return 0;
    }
    AxTlogReader pieces;
    for (int at = 0; at < bytes.size(); at += data[0])
        pieces.Feed(bytes.mid(at, data[0]));
    const AxFlightRead read = pieces.Finish();
    CheckRead(read);
    AxTlogReader once;
    once.Feed(bytes);
    const AxFlightRead whole = once.Finish();
    Require(whole.fault == read.fault && whole.notes == read.notes);
    Require(whole.flights.size() == read.flights.size());
    for (std::size_t i = 0; i < read.flights.size(); ++i) {
        Require(whole.flights[i]->Samples().size() == read.flights[i]->Samples().size());
        Require(whole.flights[i]->End() == read.flights[i]->End());
    }
    return 0;
}

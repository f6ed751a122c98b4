// How fast a link's bytes become messages, and how fast noise is looked through.
#include <AxTelemetry/mavlink/AxMavMessages.h>
#include <AxTelemetry/mavlink/AxMavParser.h>
#include <AxTelemetry/mavlink/AxMavWriter.h>

#include <benchmark/benchmark.h>

#include <algorithm>
#include <random>

namespace {
constexpr int kRead = 4096; // bytes that come from a socket at once

/// What an aircraft sends, 1.1 MB of it.
QByteArray flight(int& messages)
{
    AxMavWriter writer(1, 1);
    AxMavGlobalPositionInt position;
    AxMavAttitude attitude;
    AxMavGpsRawInt gps;
    AxMavSysStatus status;
    AxMavVfrHud hud;
    QByteArray bytes;
    const auto write = [&](const auto& message) {
        bytes += writer.Write(message);
        ++messages;
    };
    for (int i = 0; i < 5000; ++i) {
        position.time_boot_ms = attitude.time_boot_ms = quint32(100 * i);
        position.lat = gps.lat = 374000000 + 10 * i;
        position.lon = gps.lon = -1050000000 - 10 * i;
        position.alt = gps.alt = 2500000 + i;
        position.hdg = quint16(i);
        attitude.yaw = attitude.yawspeed = 0.001f * float(i);
        status.voltage_battery = quint16(12000 - i);
        hud.groundspeed = hud.climb = 15.0f;
        write(position);
        write(attitude);
        write(attitude);
        write(gps);
        write(status);
        write(hud);
        write(AxMavHeartbeat());
    }
    return bytes;
}

template <class Handler> void feed(AxMavParser& parser, const QByteArray& bytes, const Handler& handler)
{
    const auto* data = reinterpret_cast<const quint8*>(bytes.constData());
    for (int at = 0; at < bytes.size(); at += kRead)
        parser.Feed(data + at, std::size_t(std::min(kRead, bytes.size() - at)), handler);
}

/// Each frame is found, checked and decoded.
void Decode(benchmark::State& state)
{
    int messages = 0;
    const QByteArray bytes = flight(messages);
    AxMavParser parser;
    const auto decode = [](const AxMavFrame& frame) {
        AxMavVisit(frame.messageId, [&](auto message) {
            AxMavDecode(frame, message);
            benchmark::DoNotOptimize(message);
        });
    };
    for (auto _ : state)
        feed(parser, bytes, decode);
    const double runs = double(state.iterations());
    if (parser.Counts().frames != quint64(messages) * quint64(state.iterations()))
        state.SkipWithError("frames are missing");
    state.counters["messages/s"] = benchmark::Counter(runs * messages, benchmark::Counter::kIsRate);
    state.counters["MB/s"] = benchmark::Counter(runs * bytes.size() / 1e6, benchmark::Counter::kIsRate);
}
BENCHMARK(Decode)->Name("Mavlink/decode")->Unit(benchmark::kMillisecond);

void Garbage(benchmark::State& state)
{
    std::mt19937 random(7);
    QByteArray bytes(16000000, '\0');
    for (char& byte : bytes)
        byte = char(random());
    AxMavParser parser;
    for (auto _ : state)
        feed(parser, bytes, [](const AxMavFrame&) {});
    const double runs = double(state.iterations());
    state.counters["MB/s"] = benchmark::Counter(runs * bytes.size() / 1e6, benchmark::Counter::kIsRate);
}
BENCHMARK(Garbage)->Name("Mavlink/garbage")->Unit(benchmark::kMillisecond);
} // namespace

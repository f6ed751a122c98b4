// Streams of bytes: any pieces give the same frames, no byte is read twice, and what is decoded packs to the
// same. The first byte says whether there is a key, the second one how long the pieces are.
#include <AxTelemetry/mavlink/AxMavMessageInfo.h>
#include <AxTelemetry/mavlink/AxMavMessages.h>
#include <AxTelemetry/mavlink/AxMavParser.h>

#include <algorithm>
#include <cstdint>
#include <cstdlib>
#include <vector>

namespace {
void Require(bool holds)
{
    if (!holds)
        std::abort();
}

/// The key of tests/data/mavlink_frames.json.
QByteArray Key()
{
    QByteArray key;
    for (int i = 0; i < 32; ++i)
        key.append(char(5 * i + 3));
    return key;
}

void CheckFrame(const AxMavFrame& frame)
{
    Require(AxMavInfo(frame.messageId) != nullptr);
    Require(AxMavVisit(frame.messageId, [&](auto message) {
        std::array<quint8, 255> packed{};
        Require(AxMavDecode(frame, message));
        const int size = AxMavPack(message, packed.data());
        Require(std::equal(packed.begin(), packed.begin() + size, frame.payload.begin()));
    }));
}

struct Run
{
    std::vector<std::vector<quint8>> frames;
    AxMavCounts counts;
};

Run Parse(const std::uint8_t* data, std::size_t size, bool hasKey, std::size_t piece)
{
    Run run;
    AxMavParser parser;
    parser.SetKey(hasKey ? Key() : QByteArray());
    std::size_t bytes = 0;
    const auto take = [&](const AxMavFrame& frame) {
        CheckFrame(frame);
        Require(frame.isSigned == hasKey);
        bytes += std::size_t(frame.rawSize);
        run.frames.emplace_back(frame.raw, frame.raw + frame.rawSize);
    };
    quint64 unknown = 0;
    const auto pass = [&](const AxMavFrame& frame) {
        ++unknown;
        bytes += std::size_t(frame.rawSize);
    };
    for (std::size_t at = 0; at < size; at += piece) {
        // Bytes of their own, so that the sanitizer sees what is read behind them.
        const std::vector<quint8> own(data + at, data + at + std::min(piece, size - at));
        parser.Feed(QByteArray::fromRawData(reinterpret_cast<const char*>(own.data()), int(own.size())), take,
                    pass);
    }
    parser.Flush(take, pass);
    run.counts = parser.Counts();
    const bool isAllTaken = run.counts.refusedSignatures == 0;
    Require(run.counts.unknown == unknown);
    Require(run.counts.frames == run.frames.size());
    Require(isAllTaken ? bytes + run.counts.garbageBytes == size : bytes + run.counts.garbageBytes < size);
    return run;
}
} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    if (size < 2)
        return 0;
    const bool hasKey = (data[0] & 1) != 0;
    const Run whole = Parse(data + 2, size - 2, hasKey, size);
    const Run pieces = Parse(data + 2, size - 2, hasKey, std::size_t(data[1]) + 1);
    Require(whole.frames == pieces.frames);
    Require(whole.counts.garbageBytes == pieces.counts.garbageBytes &&
            whole.counts.lost == pieces.counts.lost);
    return 0;
}

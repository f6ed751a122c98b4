#pragma once

#include <AxTelemetry/record/AxFlightRecord.h>
#include <AxTelemetry/record/AxReadProgress.h>

#include <QByteArray>

#include <memory>

class QIODevice;

/// Makes flights, one for each aircraft, out of a .tlog: MAVLink frames, each behind the time at which it was
/// heard (microseconds since 1970, UTC; eight bytes, the first counts most). AxTlogRecorder writes such
/// files, and so do other ground stations. Belongs to whoever reads; any one thread.
///
/// A file that ends in the middle of a frame keeps all before it; damaged places are passed over; notes say
/// so. A time that does not fit its neighbours is taken from them. Where the clock of the recording was set
/// back, or forward by more than a day, times go on from what they were.
class AXTELEMETRY_EXPORT AxTlogReader
{
public:
    AxTlogReader();
    ~AxTlogReader();
    AxTlogReader(const AxTlogReader&) = delete;
    AxTlogReader& operator=(const AxTlogReader&) = delete;

    /// Before the first bytes: the key of 32 bytes that the frames were signed with; false for another size.
    /// Without a key signed frames are left out, with one those that it has not signed.
    bool SetKey(const QByteArray& key);

    /// The next bytes of the file, in pieces of any size.
    void Feed(const QByteArray& bytes);

    /// No more follow. Once.
    AxFlightRead Finish();

private:
    struct State;

    std::unique_ptr<State> m_state;
};

/// Reads the rest of a device in pieces. Any thread. The key as in AxTlogReader::SetKey(), empty for none.
AXTELEMETRY_EXPORT AxFlightRead AxReadTlog(QIODevice& device, const AxReadProgress& progress = {},
                                           const QByteArray& key = {});

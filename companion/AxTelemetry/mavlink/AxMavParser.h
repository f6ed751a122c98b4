#pragma once

#include <AxTelemetry/AxTelemetryExport.h>
#include <AxTelemetry/mavlink/AxMavFrame.h>

#include <QByteArray>

#include <cstddef>
#include <memory>
#include <utility>

/// What a parser has seen since it was made or reset.
struct AxMavCounts
{
    quint64 frames = 0;            ///< given to the handler
    quint64 badChecksums = 0;      ///< of messages that are known; noise can look like one
    quint64 unknown = 0;           ///< frames of messages that are not known
    quint64 garbageBytes = 0;      ///< in no frame
    quint64 lost = 0;              ///< frames, by gaps in the numbers of each system and component
    quint64 refusedSignatures = 0; ///< whole frames that the key, or the want of one, has kept out
    quint64 oldSignatures = 0;     ///< of these, the ones that a new sender has signed too far behind
};

/**
 * Finds MAVLink frames, versions 1 and 2, in a stream of bytes that comes in pieces of any size. Belongs to
 * whoever reads the link or the file; any one thread. Memory is bounded, whatever comes.
 *
 * A frame counts when its message is known (AxMavMessages.h) and its checksum is right. The search goes on
 * behind the first byte of what only looked like a frame, so that no good frame is lost to it. A frame of an
 * unknown message, whose checksum nobody can know, is taken as a whole when frames follow it without a gap.
 *
 * With a key, only frames signed with it are given out, and the times of their signatures must rise for each
 * system, component and link; a sender that is new may be 60 s behind the newest time at most. Without a key,
 * only unsigned ones are.
 */
class AXTELEMETRY_EXPORT AxMavParser
{
public:
    AxMavParser();
    ~AxMavParser();
    AxMavParser(const AxMavParser&) = delete;
    AxMavParser& operator=(const AxMavParser&) = delete;

    /// Calls handler(const AxMavFrame&) for each frame that these bytes complete. What a handler feeds to the
    /// same parser comes behind these bytes, and goes to this call's handler. A handler may reset the parser,
    /// which drops the rest of these bytes, but not destroy it.
    template <class Handler> void Feed(const quint8* data, std::size_t size, Handler&& handler)
    {
        if (Begin(data, size, false))
            while (const AxMavFrame* frame = Next(nullptr))
                handler(*frame);
    }
    template <class Handler> void Feed(const QByteArray& data, Handler&& handler)
    {
        Feed(reinterpret_cast<const quint8*>(data.constData()), std::size_t(data.size()),
             std::forward<Handler>(handler));
    }
    /// Calls unknown(const AxMavFrame&) in its turn for each frame of an unknown message, too; it may do what
    /// the other handler may. Such a frame is as it came, maybe damaged, rarely mere noise, and its
    /// `lostBefore` is 0: the next known one tells.
    template <class Handler, class Unknown>
    void Feed(const QByteArray& data, Handler&& handler, Unknown&& unknown)
    {
        if (Begin(reinterpret_cast<const quint8*>(data.constData()), std::size_t(data.size()), false))
            GiveOut(handler, unknown);
    }

    /// Nothing follows for now: gives out what only waited for bytes that would have told whether it lies
    /// inside of another frame. For the end of a file or of a datagram, and for a link that has fallen
    /// silent.
    template <class Handler> void Flush(Handler&& handler)
    {
        if (Begin(nullptr, 0, true))
            while (const AxMavFrame* frame = Next(nullptr))
                handler(*frame);
    }
    template <class Handler, class Unknown> void Flush(Handler&& handler, Unknown&& unknown)
    {
        if (Begin(nullptr, 0, true))
            GiveOut(handler, unknown);
    }

    /// A key of 32 bytes, or an empty one; false for another size, which leaves all as it was.
    /// `newestSignTime` is what NewestSignTime() answered when this key was last in use, and keeps out frames
    /// that were recorded before.
    bool SetKey(const QByteArray& key, quint64 newestSignTime = 0);

    /// From now on has the key and the times of signatures in common with another one: for the peers of one
    /// link, whose bytes do not mix. Either may go away first.
    void ShareKey(AxMavParser& other);

    /// The newest time of an accepted signature, 10 microseconds since 2015-01-01 UTC; 0 before the first.
    quint64 NewestSignTime() const;
    /// The time of the latest that is counted as an old one, likewise.
    quint64 OldSignTime() const;

    /// Since the parser was made or reset.
    const AxMavCounts& Counts() const;

    /// Forgets the bytes that wait, all numbers of frames and the counts; the key and the times of signatures
    /// stay.
    void Reset();

private:
    struct State;

    bool Begin(const quint8* data, std::size_t size, bool isLast);
    const AxMavFrame* Next(bool* isKnown);
    template <class Handler, class Unknown> void GiveOut(Handler& handler, Unknown& unknown)
    {
        bool isKnown = true;
        while (const AxMavFrame* frame = Next(&isKnown)) {
            if (isKnown)
                handler(*frame);
            else
                unknown(*frame);
        }
    }

    std::unique_ptr<State> m_state;
};

#pragma once

#include <QtGlobal>

#include <vector>

class AxMavlinkAircraft;

/// Asks an aircraft for the messages that a station needs, and again for those that do not come: a radio
/// loses the one or the other request. Belongs to its AxMavlinkAircraft, which hands it what it hears.
class AxDataRequests
{
public:
    /// Asks nothing yet.
    explicit AxDataRequests(AxMavlinkAircraft& aircraft);

    /// Asks for all of them. The aircraft is heard for the first time, or again.
    void Start(qint64 now);
    /// The aircraft has sent a message of that number.
    void Hear(quint32 messageId);
    /// It has answered a command that nobody waits for.
    void Take(int command, int result);
    /// Asks again for one of those that have not come, where it is time.
    void Tick(qint64 now);

private:
    struct Request
    {
        int tries = 0;
        qint64 asked = 0;
        bool hasCome = false;
        bool isDenied = false;
        bool goesByStream = false; // the aircraft does not know how to be asked for one message
    };

    void ask(std::size_t index);
    void askStream(quint8 stream, quint16 rate);

    AxMavlinkAircraft& m_aircraft;
    std::vector<Request> m_requests; // in order of the table
    int m_unanswered = -1;           // the one that was asked for again last
    qint64 m_next = 0;
};

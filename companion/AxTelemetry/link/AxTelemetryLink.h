#pragma once

#include <AxTelemetry/AxTelemetryExport.h>

#include <QByteArray>
#include <QObject>
#include <QString>

/// What carries bytes to and from aircraft: a socket, a serial port, a simulator. An AxMavlinkStation owns
/// it; GUI thread.
class AXTELEMETRY_EXPORT AxTelemetryLink : public QObject
{
    Q_OBJECT

public:
    /// How far a link is.
    enum class Phase
    {
        Closed,
        Waiting, ///< tries to connect, for the first time or again
        Open
    };

    using QObject::QObject;

    /// False with a text for people that names the port and the reason. True also while it still connects:
    /// what fails later comes by signalFault(). Open already: does nothing.
    virtual bool Open(QString* fault) = 0;
    /// Silent at once; signalClosed() where it was not closed.
    virtual void Close() = 0;
    /// Dropped unless the link is open and there is somebody to write to.
    virtual void Write(const QByteArray& bytes) = 0;
    /// To one of several peers, by the number that signalBytes() has told; to all where it is 0.
    virtual void WriteTo(int /*peer*/, const QByteArray& bytes) { Write(bytes); }
    /// For people: where that peer is, "192.168.4.1:14550"; empty for 0.
    virtual QString PeerName(int /*peer*/) const { return {}; }
    /// For people and file names: "UDP 14550".
    virtual QString Name() const = 0;
    /// Whether what one signalBytes() brings holds whole frames only, as datagrams do.
    virtual bool BringsWholeFrames() const { return false; }

    /// At this moment.
    Phase GetPhase() const { return m_phase; }

signals:
    /// What has come, in pieces of any size. `peer` is who has sent it, a number that stays while the link
    /// lives; 0 where a link has one peer, or cannot tell.
    void signalBytes(const QByteArray& bytes, int peer = 0);
    /// For people; names the port and the reason. The phase says whether the link tries again.
    void signalFault(const QString& text);
    void signalPhase();
    /// No bytes come any more, and nothing is tried again.
    void signalClosed();

protected:
    /// Tells where it is another one.
    void SetPhase(Phase phase);

private:
    Phase m_phase = Phase::Closed;
};

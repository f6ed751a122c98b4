#include <AxTelemetry/link/AxLinkText.h>
#include <AxTelemetry/link/AxTcpLink.h>

#include <QTcpSocket>
#include <QTimer>

namespace {
/// Bytes that may wait for a peer that does not read; what comes after is dropped: old frames are of no use.
constexpr qint64 mostWaitingBytes = 1 << 20;
} // namespace

struct AxTcpLink::State
{
    QString host;
    quint16 port = 0;
    QTcpSocket socket;
    QTimer retry;
    QTimer silence; // since the latest bytes of this connection
    QString told;   // the fault, until a connection stands
};

AxTcpLink::AxTcpLink(const QString& host, quint16 port, QObject* parent)
    : AxTelemetryLink(parent), m_state(std::make_unique<State>())
{
    m_state->host = host;
    m_state->port = port;
    m_state->retry.setSingleShot(true);
    m_state->retry.setInterval(2000);
    QTcpSocket* const socket = &m_state->socket;
    connect(&m_state->retry, &QTimer::timeout, this, &AxTcpLink::connectNow);
    connect(socket, &QTcpSocket::connected, this, [this] {
        m_state->told.clear();
        SetPhase(Phase::Open);
    });
    m_state->silence.setSingleShot(true);
    m_state->silence.setInterval(10000);
    connect(&m_state->silence, &QTimer::timeout, this, [this] {
        m_state->socket.abort();
        fail(AxLinkText(QT_TRANSLATE_NOOP("AxTelemetryLink", "the peer has fallen silent")));
    });
    connect(socket, &QTcpSocket::disconnected, &m_state->silence, &QTimer::stop);
    connect(socket, &QTcpSocket::readyRead, this, [this] {
        m_state->silence.start();
        emit signalBytes(m_state->socket.readAll());
    });
    connect(socket, &QTcpSocket::errorOccurred, this, [this](QAbstractSocket::SocketError error) {
        if (error == QAbstractSocket::RemoteHostClosedError)
            return fail(
                AxLinkText(QT_TRANSLATE_NOOP("AxTelemetryLink", "the peer has closed the connection")));
        if (error == QAbstractSocket::ConnectionRefusedError)
            return fail(AxLinkText(QT_TRANSLATE_NOOP("AxTelemetryLink", "nobody listens there")));
        fail(m_state->socket.errorString());
    });
}

AxTcpLink::~AxTcpLink()
{
    m_state->socket.disconnect(this);
}

bool AxTcpLink::Open(QString* fault)
{
    if (GetPhase() != Phase::Closed)
        return true;
    if (m_state->host.isEmpty() || m_state->port == 0) {
        *fault = AxLinkFault(
            Name(), AxLinkText(QT_TRANSLATE_NOOP("AxTelemetryLink", "a host and a port are needed")));
        return false;
    }
    SetPhase(Phase::Waiting);
    connectNow();
    return true;
}

void AxTcpLink::connectNow()
{
    m_state->socket.abort(); // it may still be closing
    m_state->socket.connectToHost(m_state->host, m_state->port);
}

void AxTcpLink::fail(const QString& reason)
{
    if (GetPhase() == Phase::Closed)
        return;
    const QString fault = AxLinkFault(Name(), reason);
    const bool isNews = fault != m_state->told;
    m_state->told = fault;
    m_state->retry.start();
    SetPhase(Phase::Waiting);
    if (isNews)
        emit signalFault(fault);
}

void AxTcpLink::Close()
{
    m_state->retry.stop();
    m_state->silence.stop();
    m_state->told.clear();
    const bool wasOpen = GetPhase() != Phase::Closed;
    m_state->socket.blockSignals(true);
    m_state->socket.abort();
    m_state->socket.blockSignals(false);
    if (wasOpen)
        SetPhase(Phase::Closed);
}

void AxTcpLink::Write(const QByteArray& bytes)
{
    if (GetPhase() == Phase::Open && m_state->socket.bytesToWrite() < mostWaitingBytes)
        m_state->socket.write(bytes);
}

QString AxTcpLink::Name() const
{
    return QStringLiteral("TCP %1:%2").arg(m_state->host).arg(m_state->port);
}

void AxTcpLink::SetPatience(int milliseconds)
{
    m_state->silence.setInterval(milliseconds);
}

void AxTcpLink::SetRetry(int milliseconds)
{
    m_state->retry.setInterval(milliseconds);
}

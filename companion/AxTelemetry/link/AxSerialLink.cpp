#include <AxTelemetry/link/AxLinkText.h>
#include <AxTelemetry/link/AxSerialLink.h>

#include <QSerialPort>
#include <QSerialPortInfo>

namespace {
/// As AxTcpLink's: of a radio whose flow stands still.
constexpr qint64 mostSerialBytes = 1 << 16;

QString SerialReason(const QSerialPort& port)
{
    switch (port.error()) {
    case QSerialPort::DeviceNotFoundError:
        return AxLinkText(QT_TRANSLATE_NOOP("AxTelemetryLink", "there is no such port"));
    case QSerialPort::PermissionError:
        return AxLinkText(
            QT_TRANSLATE_NOOP("AxTelemetryLink", "another program uses the port, or this user may not"));
    case QSerialPort::ResourceError:
        return AxLinkText(QT_TRANSLATE_NOOP("AxTelemetryLink", "the port was unplugged"));
    default:
        return port.errorString();
    }
}
} // namespace

struct AxSerialLink::State
{
    QString name;
    int baud = 0;
    QSerialPort port;
};

AxSerialLink::AxSerialLink(const QString& port, int baud, QObject* parent)
    : AxTelemetryLink(parent), m_state(std::make_unique<State>())
{
    m_state->name = port;
    m_state->baud = baud;
    connect(&m_state->port, &QSerialPort::readyRead, this,
            [this] { emit signalBytes(m_state->port.readAll()); });
    connect(&m_state->port, &QSerialPort::errorOccurred, this, [this](QSerialPort::SerialPortError error) {
        if (GetPhase() != Phase::Open || error == QSerialPort::NoError || error == QSerialPort::TimeoutError)
            return;
        const QString fault = AxLinkFault(Name(), SerialReason(m_state->port));
        Close();
        emit signalFault(fault);
    });
}

AxSerialLink::~AxSerialLink()
{
    m_state->port.disconnect(this);
}

QStringList AxSerialLink::Ports()
{
    QStringList names;
    for (const QSerialPortInfo& port : QSerialPortInfo::availablePorts())
        names << port.portName();
    return names;
}

bool AxSerialLink::Open(QString* fault)
{
    if (GetPhase() == Phase::Open)
        return true;
    QSerialPort& port = m_state->port;
    port.setPortName(m_state->name);
    if (!port.open(QIODevice::ReadWrite) || !port.setBaudRate(m_state->baud)) {
        *fault = AxLinkFault(Name(), SerialReason(port));
        port.close();
        return false;
    }
    SetPhase(Phase::Open);
    return true;
}

void AxSerialLink::Close()
{
    if (m_state->port.isOpen())
        m_state->port.close();
    SetPhase(Phase::Closed);
}

void AxSerialLink::Write(const QByteArray& bytes)
{
    if (GetPhase() == Phase::Open && m_state->port.bytesToWrite() < mostSerialBytes)
        m_state->port.write(bytes);
}

QString AxSerialLink::Name() const
{
    return QStringLiteral("%1 (%2)").arg(m_state->name).arg(m_state->baud);
}

#pragma once

#include <AxTelemetry/link/AxTelemetryLink.h>

#include <QStringList>

#include <memory>

/// A serial port with 8 data bits, no parity and one stop bit. Unplugged, it closes and says so.
class AXTELEMETRY_EXPORT AxSerialLink : public AxTelemetryLink
{
    Q_OBJECT

public:
    /// The port by its name ("ttyUSB0", "COM3") or its path; baud, bits a second.
    AxSerialLink(const QString& port, int baud, QObject* parent = nullptr);
    ~AxSerialLink() override;

    /// The names of the ports that the computer has now.
    static QStringList Ports();

    bool Open(QString* fault) override;
    void Close() override;
    void Write(const QByteArray& bytes) override;
    QString Name() const override;

private:
    struct State;

    std::unique_ptr<State> m_state;
};

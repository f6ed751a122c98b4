#pragma once

#include <AxTelemetry/link/AxTelemetryLink.h>

#include <memory>

/// Connects to a TCP port, and again, every 2 s, when the peer refuses, closes or falls silent: signalFault()
/// tells the first time why.
class AXTELEMETRY_EXPORT AxTcpLink : public AxTelemetryLink
{
    Q_OBJECT

public:
    /// A numeric address or a name, and the port to which to connect.
    AxTcpLink(const QString& host, quint16 port, QObject* parent = nullptr);
    ~AxTcpLink() override;

    bool Open(QString* fault) override;
    void Close() override;
    void Write(const QByteArray& bytes) override;
    QString Name() const override;

    /// Milliseconds between attempts.
    void SetRetry(int milliseconds);
    /// Milliseconds without bytes, 10 s unless told, after which a connection that had brought some is dead.
    void SetPatience(int milliseconds);

private:
    struct State;

    void connectNow();
    void fail(const QString& reason);

    std::unique_ptr<State> m_state;
};

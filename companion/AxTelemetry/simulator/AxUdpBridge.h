#pragma once

#include <AxTelemetry/link/AxTelemetryLink.h>

#include <memory>

/// Carries what one link brings out on another, both ways: simulated aircraft on a UDP port, for another
/// program or another computer; a radio, for a second station. Opens and closes both. Owned by whoever made
/// it; GUI thread.
class AXTELEMETRY_EXPORT AxUdpBridge : public QObject
{
    Q_OBJECT

public:
    /// Sends to a port of a host (numeric or by name), and hands back what comes from there.
    AxUdpBridge(std::unique_ptr<AxTelemetryLink> link, const QString& host, quint16 port,
                QObject* parent = nullptr);
    ~AxUdpBridge() override;

    /// As AxTelemetryLink::Open(), of both.
    bool Open(QString* fault);
    void Close();

signals:
    /// Of either, for people.
    void signalFault(const QString& text);

private:
    std::unique_ptr<AxTelemetryLink> m_inner;
    std::unique_ptr<AxTelemetryLink> m_outer;
};

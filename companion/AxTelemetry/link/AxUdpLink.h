#pragma once

#include <AxTelemetry/link/AxTelemetryLink.h>

#include <memory>

/// Listens on a UDP port and answers to everybody it has heard, or talks to one peer from the start. An
/// address and port that have been silent are answered to as well, up to 256 of them; where there are more,
/// those that have been silent for a minute make room. Each address and port is a peer of its own, up to
/// 4096.
class AXTELEMETRY_EXPORT AxUdpLink : public AxTelemetryLink
{
    Q_OBJECT

public:
    /// Port 0: the system chooses one.
    explicit AxUdpLink(quint16 port, QObject* parent = nullptr);
    ~AxUdpLink() override;

    /// Writes to this peer, too, before it is heard. The host is a numeric address or a name.
    void SetPeer(const QString& host, quint16 port);

    bool Open(QString* fault) override;
    void Close() override;
    void Write(const QByteArray& bytes) override;
    void WriteTo(int peer, const QByteArray& bytes) override;
    QString PeerName(int peer) const override;
    QString Name() const override;
    bool BringsWholeFrames() const override { return true; }

    /// On which it listens; 0 while closed.
    quint16 Port() const;

private:
    struct State;

    void read();

    std::unique_ptr<State> m_state;
};

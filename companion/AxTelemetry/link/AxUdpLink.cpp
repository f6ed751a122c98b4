#include <AxTelemetry/link/AxLinkText.h>
#include <AxTelemetry/link/AxUdpLink.h>

#include <QElapsedTimer>
#include <QHash>
#include <QHostAddress>
#include <QHostInfo>
#include <QUdpSocket>

#include <algorithm>
#include <iterator>
#include <optional>
#include <vector>

namespace {
constexpr std::size_t mostPeers = 256;
constexpr qint64 forgottenMs = 60000; // a peer that is silent for so long makes room for another one
constexpr std::size_t mostNumbers = 4096;

struct UdpPeer
{
    QHostAddress address;
    quint16 port = 0;
    qint64 heard = 0; // milliseconds, by the link's own clock

    friend bool operator==(const UdpPeer& a, const UdpPeer& b)
    {
        return a.port == b.port && a.address == b.address;
    }
};
} // namespace

struct AxUdpLink::State
{
    quint16 port = 0;
    QString peerHost;
    quint16 peerPort = 0;
    std::unique_ptr<QUdpSocket> socket;
    QElapsedTimer clock;
    std::optional<UdpPeer> fixed;  // is written to, whether heard or not
    std::vector<UdpPeer> peers;    // the one heard last at the end
    std::vector<UdpPeer> numbered; // number 1 first
    QHash<quint64, int> numbers;   // by address and port

    int NumberOf(const UdpPeer& peer)
    {
        const quint64 key = static_cast<quint64>(peer.address.toIPv4Address()) << 16 | peer.port;
        const auto known = numbers.constFind(key);
        if (known != numbers.constEnd())
            return *known;
        if (numbered.size() >= mostNumbers)
            return 0;
        numbered.push_back(peer);
        return numbers[key] = static_cast<int>(numbered.size());
    }
    const UdpPeer* Numbered(int number) const
    {
        const auto index = static_cast<std::size_t>(number - 1);
        return number > 0 && index < numbered.size() ? &numbered[index] : nullptr;
    }
    void Hear(UdpPeer peer)
    {
        if (fixed && *fixed == peer)
            return;
        peer.heard = clock.elapsed();
        const auto last = std::find(peers.rbegin(), peers.rend(), peer);
        if (last != peers.rend()) {
            last->heard = peer.heard;
            std::rotate(std::prev(last.base()), last.base(), peers.end());
            return;
        }
        if (peers.size() >= mostPeers && peer.heard - peers.front().heard >= forgottenMs)
            peers.erase(peers.begin());
        if (peers.size() < mostPeers)
            peers.push_back(peer);
    }
};

AxUdpLink::AxUdpLink(quint16 port, QObject* parent)
    : AxTelemetryLink(parent), m_state(std::make_unique<State>())
{
    m_state->port = port;
}

AxUdpLink::~AxUdpLink() = default;

void AxUdpLink::SetPeer(const QString& host, quint16 port)
{
    m_state->peerHost = host;
    m_state->peerPort = port;
}

bool AxUdpLink::Open(QString* fault)
{
    if (m_state->socket)
        return true;
    auto socket = std::make_unique<QUdpSocket>();
    // An address that is shared would split the frames between two programs.
    if (!socket->bind(QHostAddress(QHostAddress::AnyIPv4), m_state->port, QUdpSocket::DontShareAddress)) {
        *fault = AxLinkFault(
            Name(), socket->error() == QAbstractSocket::AddressInUseError
                        ? AxLinkText(QT_TRANSLATE_NOOP("AxTelemetryLink", "another program uses the port"))
                        : socket->errorString());
        return false;
    }
    m_state->peers.clear();
    m_state->fixed.reset();
    m_state->clock.start();
    m_state->socket = std::move(socket);
    connect(m_state->socket.get(), &QUdpSocket::readyRead, this, &AxUdpLink::read);
    if (!m_state->peerHost.isEmpty())
        QHostInfo::lookupHost(m_state->peerHost, this, [this](const QHostInfo& info) {
            if (!m_state->socket)
                return;
            for (const QHostAddress& address : info.addresses())
                if (address.protocol() == QAbstractSocket::IPv4Protocol) {
                    const UdpPeer peer{address, m_state->peerPort};
                    std::vector<UdpPeer>& peers = m_state->peers;
                    peers.erase(std::remove(peers.begin(), peers.end(), peer), peers.end());
                    m_state->fixed = peer;
                    return;
                }
            emit signalFault(AxLinkFault(
                Name(), AxLinkText(QT_TRANSLATE_NOOP("AxTelemetryLink", "there is no computer named \"%1\""))
                            .arg(m_state->peerHost)));
        });
    SetPhase(Phase::Open);
    return true;
}

void AxUdpLink::Close()
{
    if (m_state->socket) {
        m_state->socket->close();                 // the port is free at once
        m_state->socket.release()->deleteLater(); // it may be what has called
    }
    SetPhase(Phase::Closed);
}

void AxUdpLink::read()
{
    // A handler of the bytes may close the link.
    while (m_state->socket && m_state->socket->hasPendingDatagrams()) {
        QByteArray bytes(static_cast<int>(std::max<qint64>(m_state->socket->pendingDatagramSize(), 0)),
                         Qt::Uninitialized);
        UdpPeer peer;
        const qint64 size =
            m_state->socket->readDatagram(bytes.data(), bytes.size(), &peer.address, &peer.port);
        if (size < 0)
            continue; // the echo of a datagram that a peer did not take
        bytes.resize(static_cast<int>(size));
        m_state->Hear(peer);
        emit signalBytes(bytes, m_state->NumberOf(peer));
    }
}

void AxUdpLink::Write(const QByteArray& bytes)
{
    if (!m_state->socket)
        return;
    if (m_state->fixed)
        m_state->socket->writeDatagram(bytes, m_state->fixed->address, m_state->fixed->port);
    for (const UdpPeer& peer : m_state->peers)
        m_state->socket->writeDatagram(bytes, peer.address, peer.port);
}

void AxUdpLink::WriteTo(int peer, const QByteArray& bytes)
{
    const UdpPeer* const to = m_state->Numbered(peer);
    if (to && m_state->socket)
        m_state->socket->writeDatagram(bytes, to->address, to->port);
    else
        Write(bytes);
}

QString AxUdpLink::PeerName(int peer) const
{
    const UdpPeer* const named = m_state->Numbered(peer);
    return named ? QStringLiteral("%1:%2").arg(named->address.toString()).arg(named->port) : QString();
}

QString AxUdpLink::Name() const
{
    if (m_state->peerHost.isEmpty())
        return QStringLiteral("UDP %1").arg(m_state->port);
    return QStringLiteral("UDP %1:%2").arg(m_state->peerHost).arg(m_state->peerPort);
}

quint16 AxUdpLink::Port() const
{
    return m_state->socket ? m_state->socket->localPort() : 0;
}

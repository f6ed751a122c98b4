#include <AxTelemetry/simulator/AxUdpBridge.h>

#include <AxTelemetry/link/AxUdpLink.h>

#include <utility>

AxUdpBridge::AxUdpBridge(std::unique_ptr<AxTelemetryLink> link, const QString& host, quint16 port,
                         QObject* parent)
    : QObject(parent), m_inner(std::move(link))
{
    auto udp = std::make_unique<AxUdpLink>(quint16(0));
    udp->SetPeer(host, port);
    m_outer = std::move(udp);
    connect(m_inner.get(), &AxTelemetryLink::signalBytes, m_outer.get(), &AxTelemetryLink::Write);
    connect(m_outer.get(), &AxTelemetryLink::signalBytes, m_inner.get(), &AxTelemetryLink::Write);
    for (const AxTelemetryLink* side : {m_inner.get(), m_outer.get()})
        connect(side, &AxTelemetryLink::signalFault, this, &AxUdpBridge::signalFault);
}

AxUdpBridge::~AxUdpBridge() = default;

bool AxUdpBridge::Open(QString* fault)
{
    if (!m_outer->Open(fault))
        return false;
    if (m_inner->Open(fault))
        return true;
    m_outer->Close();
    return false;
}

void AxUdpBridge::Close()
{
    m_inner->Close();
    m_outer->Close();
}

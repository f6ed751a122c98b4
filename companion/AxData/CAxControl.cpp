#include <AxData/CAxControl.h>

#include <QHostAddress>
#include <QNetworkInterface>

#include <algorithm>

namespace {
bool reachesBeyondLink(const QNetworkAddressEntry& entry)
{
    const QHostAddress address = entry.ip();
    return !address.isNull() && !address.isLoopback() && !address.isLinkLocal() && !address.isMulticast() &&
           !address.isBroadcast();
}

bool isConnected(const QNetworkInterface& card)
{
    const QNetworkInterface::InterfaceFlags flags = card.flags();
    if (!flags.testFlag(QNetworkInterface::IsUp) || !flags.testFlag(QNetworkInterface::IsRunning) ||
        flags.testFlag(QNetworkInterface::IsLoopBack))
        return false;
    const QList<QNetworkAddressEntry> entries = card.addressEntries();
    return std::any_of(entries.begin(), entries.end(), reachesBeyondLink);
}
} // namespace

CAxControl* CAxControl::GetInstance()
{
    static CAxControl* const instance = new CAxControl;
    return instance;
}

bool CAxControl::IsNetWorkConnected() const
{
    if (m_networkProbe)
        return m_networkProbe();
    const QList<QNetworkInterface> interfaces = QNetworkInterface::allInterfaces();
    return std::any_of(interfaces.begin(), interfaces.end(), isConnected);
}

void CAxControl::SetNetworkProbe(std::function<bool()> probe)
{
    m_networkProbe = std::move(probe);
}

void CAxControl::SetProjectModified(bool modified)
{
    if (m_modified.exchange(modified) != modified)
        emit projectModifiedChanged(modified);
}

AxPlanGround CAxControl::GetGround() const
{
    return m_grounds.empty() ? AxPlanGround() : m_grounds.back().second;
}

void CAxControl::SetGround(AxPlanGround ground, const void* giver)
{
    RemoveGround(giver);
    m_grounds.emplace_back(giver, std::move(ground));
}

void CAxControl::RemoveGround(const void* giver)
{
    m_grounds.erase(std::remove_if(m_grounds.begin(), m_grounds.end(),
                                   [giver](const auto& known) { return known.first == giver; }),
                    m_grounds.end());
}

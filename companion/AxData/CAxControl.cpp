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

template <typename Given> Given LastOf(const std::vector<std::pair<const void*, Given>>& all)
{
    return all.empty() ? Given() : all.back().second;
}

template <typename Given> bool RemoveFrom(std::vector<std::pair<const void*, Given>>& all, const void* giver)
{
    const auto rest =
        std::remove_if(all.begin(), all.end(), [giver](const auto& known) { return known.first == giver; });
    const bool wasThere = rest != all.end();
    all.erase(rest, all.end());
    return wasThere;
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
    if (modified)
        emit projectEdited();
}

AxPlanGround CAxControl::GetGround() const
{
    return LastOf(m_grounds);
}

void CAxControl::SetGround(AxPlanGround ground, const void* giver)
{
    RemoveFrom(m_grounds, giver);
    m_grounds.emplace_back(giver, std::move(ground));
    emit planBasisChanged();
}

void CAxControl::RemoveGround(const void* giver)
{
    if (RemoveFrom(m_grounds, giver))
        emit planBasisChanged();
}

AxPlanZones CAxControl::GetZones() const
{
    return LastOf(m_zones);
}

void CAxControl::SetZones(AxPlanZones zones, const void* giver)
{
    RemoveFrom(m_zones, giver);
    m_zones.emplace_back(giver, std::move(zones));
    emit planBasisChanged();
}

void CAxControl::RemoveZones(const void* giver)
{
    if (RemoveFrom(m_zones, giver))
        emit planBasisChanged();
}

#pragma once

#include <AxData/AxDataExport.h>
#include <AxData/planner/AxPlanRequest.h>

#include <QObject>

#include <atomic>
#include <functional>
#include <utility>
#include <vector>

/// The process-wide control object: network state and the project's modified flag. It lives from its first
/// use to the end of the process, so it may be used at any time, even while the program shuts down.
/// The first use belongs to the GUI thread. The modified flag may be read from any thread; everything else
/// is called on the GUI thread.
class AXDATA_EXPORT CAxControl : public QObject
{
    Q_OBJECT

public:
    /// The one object of the process; never null.
    static CAxControl* GetInstance();

    /// Whether this machine is on a network now: some interface other than loopback is up, has a carrier
    /// and has an address that reaches beyond its own link. Looks at the machine's interfaces anew on each
    /// call and sends nothing, so it returns at once and does not know whether a given server answers.
    bool IsNetWorkConnected() const;

    /// Replaces the look at the interfaces, for a host that knows better and for tests; an empty function
    /// restores it.
    void SetNetworkProbe(std::function<bool()> probe);

    /// Heights of the ground for whoever plans a route; empty until somebody gives them: the viewer, from its
    /// map, or a host. Asked on the GUI thread. Of several givers the last one counts; who gave them removes
    /// them before it goes, and those of the one before count again. Who has new ones gives them again.
    AxPlanGround GetGround() const;
    void SetGround(AxPlanGround ground, const void* giver);
    void RemoveGround(const void* giver);

    /// The same for the no-fly zones.
    AxPlanZones GetZones() const;
    void SetZones(AxPlanZones zones, const void* giver);
    void RemoveZones(const void* giver);

    /// Whether the project has changes that no file holds yet.
    bool IsProjectModified() const { return m_modified; }
    void SetProjectModified(bool modified);

signals:
    /// Sent when the modified flag changes.
    void projectModifiedChanged(bool modified);
    /// Sent with each SetProjectModified(true), also when the flag was set before.
    void projectEdited();
    /// Sent after heights of the ground or no-fly zones were given or removed: what was planned with the
    /// former ones may not hold any more.
    void planBasisChanged();

private:
    CAxControl() = default;
    ~CAxControl() override = default;

    // Of several givers, which are never followed, the last one counts.
    template <typename Given> using ByGiver = std::vector<std::pair<const void*, Given>>;

    std::function<bool()> m_networkProbe;
    ByGiver<AxPlanGround> m_grounds;
    ByGiver<AxPlanZones> m_zones;
    std::atomic<bool> m_modified{false};
};

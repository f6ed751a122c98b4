#include "host/tasks/CarriedMissions.h"
#include "viewer/CAxEarthViewer.h"

#include <algorithm>

CarriedMissions& CarriedMissions::Of(CAxEarthViewer* viewer)
{
    auto* known = viewer->findChild<CarriedMissions*>(QString(), Qt::FindDirectChildrenOnly);
    return known ? *known : *new CarriedMissions(viewer);
}

void CarriedMissions::Take(const Carrier& carrier, const QString& blockID, const QString& taskID)
{
    const auto isPast = [&carrier](const Entry& entry) {
        return !entry.carrier.aircraft || entry.carrier.aircraft == carrier.aircraft;
    };
    entries.erase(std::remove_if(entries.begin(), entries.end(), isPast), entries.end());
    if (!taskID.isEmpty())
        entries.push_back({carrier, blockID, taskID});
}

QString CarriedMissions::Warning(const QString& blockID, const QString& taskID) const
{
    QStringList names;
    for (const Entry& entry : entries)
        if (entry.blockID == blockID && (taskID.isEmpty() || entry.taskID == taskID) &&
            entry.carrier.aircraft && entry.carrier.isInTheAir())
            names += entry.carrier.name;
    return names.isEmpty() ? QString()
                           : tr("%1 is in the air with this mission, and goes on flying it.")
                                 .arg(names.join(QStringLiteral(", ")));
}

#include "analysis/AxPlanZoneGiver.h"
#include "analysis/zones/AxZoneIndex.h"

#include <AxData/CAxControl.h>

#include <utility>
#include <vector>

AxPlanZoneGiver::AxPlanZoneGiver(std::shared_ptr<const AxZoneIndex> index)
{
    CAxControl::GetInstance()->SetZones(
        [zones = std::move(index)](double longitude, double latitude, double metres) {
            std::vector<AxPlanZone> found;
            for (const std::uint32_t place : zones->Near(longitude, latitude, metres)) {
                const AxZoneOutline& zone = zones->Outlines()[place];
                AxPlanZone given{zone.id, {}};
                if (zone.shape.IsEmpty())
                    given.ring = zone.lifted.toList();
                else
                    for (const osg::Vec3d& point : zone.shape.Ring())
                        given.ring += QPointF(point.x(), point.y());
                found.push_back(std::move(given));
            }
            return found;
        },
        this);
}

AxPlanZoneGiver::~AxPlanZoneGiver()
{
    CAxControl::GetInstance()->RemoveZones(this);
}

#pragma once
#include <memory>

class AxZoneIndex;

/**
 * Gives whoever plans a route (CAxControl::GetZones()) the no-fly zones of the viewer, less what is lifted of
 * them. Of several viewers the last one gives them, until it goes; whoever has got them by then keeps them.
 *
 * Owned by CAxAncillaryProcess. GUI thread; what it gives may be asked on any.
 */
class AxPlanZoneGiver
{
public:
    /// Not null.
    explicit AxPlanZoneGiver(std::shared_ptr<const AxZoneIndex> index);
    AxPlanZoneGiver(const AxPlanZoneGiver&) = delete;
    AxPlanZoneGiver& operator=(const AxPlanZoneGiver&) = delete;
    ~AxPlanZoneGiver();
};

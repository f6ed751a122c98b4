#pragma once

class AxScene;

/**
 * Gives whoever plans a route (CAxControl::GetGround()) the heights of the viewer's map. Of several viewers
 * the last one gives them, until it goes.
 *
 * Owned by CAxAncillaryProcess. GUI thread, which waits where a file is read.
 */
class AxPlanHeights
{
public:
    explicit AxPlanHeights(AxScene& drawn);
    AxPlanHeights(const AxPlanHeights&) = delete;
    AxPlanHeights& operator=(const AxPlanHeights&) = delete;
    ~AxPlanHeights();
};

#include "analysis/AxPlanHeights.h"
#include "analysis/AxMapHeights.h"
#include "scene/AxScene.h"

#include <AxData/CAxControl.h>

#include <osgEarth/MapNode>

AxPlanHeights::AxPlanHeights(AxScene& drawn)
{
    CAxControl::GetInstance()->SetGround(AxMapHeights(drawn.MapNode()->getMap()), this);
}

AxPlanHeights::~AxPlanHeights()
{
    CAxControl::GetInstance()->RemoveGround(this);
}

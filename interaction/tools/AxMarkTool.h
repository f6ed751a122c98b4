#pragma once
#include "interaction/tools/AxDrawTool.h"

/// Sets mark points: each click one, in the set of the viewer, until the tool is put down, as by Escape.
class AxMarkTool : public AxDrawTool
{
public:
    using AxDrawTool::AxDrawTool;

    bool Click(AxMouseStep& step) override;
    bool GiveUp() override;
};

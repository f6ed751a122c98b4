#pragma once
#include "interaction/tools/AxTool.h"

/// Selects map objects and moves them. A click of it belongs to the selection alone.
class AxSelectTool : public AxTool
{
public:
    using AxTool::AxTool;

    void Press(AxMouseStep& step) override;
    bool Drag(AxMouseStep& step) override;
    bool Click(AxMouseStep& step) override;
};

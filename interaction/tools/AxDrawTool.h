#pragma once
#include "interaction/tools/AxTool.h"

/// Draws an object; which one, and when it begins, the tables say. What it was drawing ends with the tool.
class AxDrawTool : public AxTool
{
public:
    AxDrawTool(AxViewerParts& viewer, const AxToolRow& toolRow) : AxTool(viewer), row(toolRow) {}

    void Deactivate() override;
    void Move(AxMouseStep& step) override;
    void Press(AxMouseStep& step) override;
    bool Drag(AxMouseStep& step) override;
    bool Click(AxMouseStep& step) override;

protected:
    /// Whether a move of the mouse begins a shape, with a tool whose shapes begin so.
    virtual bool WantsShape() const { return true; }

    const AxToolRow& row;
};

/// Draws the video area, which stands under the mouse from its first move on: there is one of it at most.
class AxVideoTool : public AxDrawTool
{
public:
    using AxDrawTool::AxDrawTool;

    bool LeavesCurrent() const override { return true; }
    void Activate() override;

protected:
    bool WantsShape() const override;
};

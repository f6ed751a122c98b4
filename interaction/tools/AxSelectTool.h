#pragma once
#include "interaction/tools/AxTool.h"

#include <memory>

class AxRubberFrame;

/**
 * Selects map objects and moves them. A click of it belongs to the selection alone. A drag from beside all
 * objects with Ctrl or Shift, or while picks add to the selection, draws a frame: what is visible and has
 * a part of its outline in it when the button is let go joins the selection, as do the marks that stand in
 * it.
 */
class AxSelectTool : public AxTool
{
public:
    explicit AxSelectTool(AxViewerParts& viewer);
    ~AxSelectTool() override;

    void Deactivate() override;
    void Move(AxMouseStep& step) override;
    void Press(AxMouseStep& step) override;
    bool Drag(AxMouseStep& step) override;
    bool Release(AxMouseStep& step) override;
    bool Click(AxMouseStep& step) override;
    bool GiveUp() override;

private:
    enum class Frame
    {
        None,
        Drawn,
        GivenUp, ///< and the button is still held
    };
    bool mayBeginFrame(AxMouseStep& step) const;
    void endFrame(Frame now);
    void selectIn(const osg::Vec2d& corner);

    Frame frame = Frame::None;
    osg::Vec2d begin;
    std::unique_ptr<AxRubberFrame> drawn;
};

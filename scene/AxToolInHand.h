#pragma once
#include <AxBaseUI/EToolType.h>

class AxTool;

/// The tool in hand and what else decides about the mouse. GUI thread.
class AxToolInHand
{
public:
    virtual ~AxToolInHand() = default;

    virtual EToolType Tool() const = 0;
    virtual AxTool& InHand() = 0;
    virtual void TakeUp(EToolType tool) = 0;
    /// Takes up browsing and then the magnifier, for as long as its key is held. A drawing that has a point
    /// is put aside meanwhile. It ends when another tool is taken up, as if it had been in hand.
    virtual void HoldMagnifier() = 0;
    /// Takes up browsing, whatever is in hand; a drawing is put aside as above.
    virtual void LetGoOfMagnifier() = 0;
    /// The key is no longer held: takes up what was put aside, with its tool; where there is nothing, or it
    /// was removed, no more than browsing.
    virtual void ContinueDrawing() = 0;
    /// Begins a drawing with the tool in hand, unless picking is off or one is going on.
    virtual void BeginDrawShape() = 0;
    /// Whether map objects may be picked.
    virtual bool MayPick() const = 0;
    /// Whether picks add to the selection.
    virtual bool IsMultiSelect() const = 0;
    /// The modifier keys, osg's bits, of the mouse event that is being handled; 0 between events. Returns
    /// those before.
    virtual int SetMouseModifiers(int modKeyMask) = 0;
    /// Whether a handle of the current object is held.
    virtual bool IsHandleHeld() const = 0;
    /// Whether an object is drawn, also when put aside, or moved, or one of its handles is held.
    virtual bool IsBusy() const = 0;
    /// The kind of host application, as the host has set it.
    virtual int AppType() const = 0;
    /// Says that the press of the mouse belongs to an overlay.
    virtual void TakePress() = 0;
};

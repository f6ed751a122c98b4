#pragma once
#include "interaction/tools/AxTool.h"
#include "scene/AxToolInHand.h"

#include <QObject>

#include <array>
#include <functional>
#include <memory>
#include <optional>
#include <utility>

class AxObjects;
class CAxHandleAdapter;

/**
 * All tools, and the one in hand. Owned by the viewer. GUI thread.
 */
class AxToolBox : public QObject, public AxToolInHand
{
    Q_OBJECT
public:
    AxToolBox(AxViewerParts& viewer, AxObjects& objects);
    ~AxToolBox() override;

    AxTool& InHand() override { return *tools[static_cast<std::size_t>(AxToolRowOf(tool).tool)]; }
    EToolType Tool() const override { return tool; }
    void TakeUp(EToolType wanted) override;
    void HoldMagnifier() override;
    void LetGoOfMagnifier() override;
    void ContinueDrawing() override;
    void BeginDrawShape() override;
    /// Begins a drawing with the tool in hand, whatever is going on; null for a tool that draws nothing.
    CAxHandleAdapter* CreateShape();

    bool MayPick() const override { return mayPick; }
    void SetMayPick(bool may) { mayPick = may; }
    bool IsMultiSelect() const override;
    void SetMultiSelect(bool multi) { multiSelect = multi; }
    int SetMouseModifiers(int modKeyMask) override { return std::exchange(mouseModifiers, modKeyMask); }
    /// The kind of host application; kind 1 leaves the current object for a tool of the bar.
    int AppType() const override { return appType; }
    void SetAppType(int type) { appType = type; }
    /// Whether the press of the mouse belongs to an overlay.
    bool IsPressTaken() const { return isPressTaken; }
    void SetPressTaken(bool taken) { isPressTaken = taken; }
    void TakePress() override { isPressTaken = true; }
    bool IsHandleHeld() const override;
    /// Whether a place may be one for a landing or of interest, as AxPlaceTool picks it.
    bool IsNearCurrent(const osg::Vec3d& lngLatPos) const;
    bool IsBusy() const override;

signals:
    /// A tool of the bar was left for one that is not on it.
    void barLeft();
    /// A tool of the bar is in hand, whoever has taken it up.
    void barTaken(EToolType tool);
    /// Another tool is in hand, on the bar or not.
    void taken(EToolType tool);
    /// The tool that picks a landing point is being left; it is still in hand.
    void landingLeft();
    /// A place was picked with that tool: degrees, degrees, metres.
    void placePicked(EToolType tool, double lon, double lat, double alt);

private:
    std::unique_ptr<AxTool> make(const AxToolRow& row);
    void tell(const QString& text);
    bool putAside();

    AxViewerParts& parts;
    AxObjects& objects;
    std::array<std::unique_ptr<AxTool>, AxTools.size()> tools;
    EToolType tool = ToolNavigate;
    std::optional<EToolType> asideTool; ///< of the drawing that waits
    bool isMagnifierOfKey = false;      ///< in hand only while its key is held
    bool mayPick = true;
    bool multiSelect = false;
    int mouseModifiers = 0;
    bool isPressTaken = false;
    int appType = 0;
};

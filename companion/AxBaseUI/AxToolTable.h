#pragma once

#include <AxBaseUI/EToolType.h>

#include <array>

/// When the shape that a tool draws begins.
enum class AxDrawStart
{
    Never, ///< the tool draws nothing by itself
    Click, ///< with a click of the left button, which is also its first point
    Push,  ///< with a push of it; the shape is drawn by dragging, while the camera stays where it is
    Move,  ///< with the first move of the mouse
};

/// What the mouse of a tool looks for, unless the event begins or continues a drawing.
enum class AxToolOver
{
    Anything, ///< drawables, models and map objects under it hear of the mouse
    Objects,  ///< it selects and moves map objects
    Ground,   ///< nothing but places: nothing below it is chosen, lit up or held
};

/// What a tool is.
struct AxToolRow
{
    EToolType tool;                         ///< whose row it is
    EToolKind kind = ToolKindOther;         ///< what GetToolKind() answers
    AxDrawStart start = AxDrawStart::Never; ///< when its shape begins
    AxToolOver over = AxToolOver::Anything; ///< what its mouse looks for
    /// A double click is the tool's even before it has an object.
    bool ownsDoubleClick = false;
    /// It begins a shape from nothing: taking it up leaves what is selected.
    bool startsAnew = false;
    /// It measures, and leaves no block behind.
    bool measures = false;
    /// It belongs to the bar on the map.
    bool isOnBar = false;
};

/// All tools, the row of a tool at its value. What a tool is stands here and nowhere else.
inline constexpr std::array<AxToolRow, 32> AxTools = [] {
    using Start = AxDrawStart;
    using Over = AxToolOver;
    constexpr bool doubleClick = true;
    constexpr bool anew = true;
    constexpr bool measures = true;
    constexpr bool onBar = true;
    constexpr bool no = false;
    const AxToolRow rows[] = {
        {ToolNavigate, ToolKindNavigate},
        {ToolSelect, ToolKindNavigate, Start::Never, Over::Objects},
        {ToolPolygonBlock, ToolKindDraw, Start::Click, Over::Anything, doubleClick, anew},
        {ToolRectangleBlock, ToolKindDraw, Start::Push, Over::Anything, doubleClick, anew},
        {ToolStripBlock, ToolKindDraw, Start::Click, Over::Anything, doubleClick, anew},
        {ToolMeasureDistance, ToolKindDraw, Start::Click, Over::Anything, doubleClick, no, measures, onBar},
        {ToolMarkPoint, ToolKindDraw, Start::Click, Over::Anything, no, no, no, onBar},
        {ToolProhibitedArea, ToolKindDraw, Start::Push, Over::Anything, no, anew},
        {ToolProjCoords, ToolKindDraw, Start::Move, Over::Ground, no, no, measures},
        {ToolMeasureAltitude, ToolKindDraw, Start::Push, Over::Anything, no, no, measures},
        {ToolMeasurePlane, ToolKindDraw, Start::Push, Over::Anything, no, no, measures},
        {ToolMeasureArea, ToolKindDraw, Start::Click, Over::Anything, doubleClick, no, measures},
        {ToolMeasureVolume, ToolKindDraw, Start::Click, Over::Anything, doubleClick, no, measures},
        {ToolHost15, ToolKindDraw, Start::Never, Over::Anything, doubleClick},
        {ToolVideoArea, ToolKindDraw, Start::Move, Over::Anything, doubleClick},
        {ToolContinueBlock, ToolKindDraw, Start::Click, Over::Anything, doubleClick},
        {ToolAddPoint, ToolKindPick},
        {ToolHost21, ToolKindOther, Start::Never, Over::Ground},
        {ToolLandingPosition, ToolKindPick},
        {ToolInterestPoint, ToolKindPick},
        {ToolMagnifier, ToolKindDraw, Start::Push, Over::Anything, no, anew},
    };
    std::array<AxToolRow, 32> table{};
    for (int i = 0; i < 32; ++i)
        table[static_cast<std::size_t>(i)].tool = static_cast<EToolType>(i);
    for (const AxToolRow& row : rows)
        table[static_cast<std::size_t>(row.tool)] = row;
    return table;
}();

/// The row of a tool; that of ToolNone, which is nothing, for a value that is none.
constexpr const AxToolRow& AxToolRowOf(EToolType tool)
{
    const auto index = static_cast<std::size_t>(tool);
    return AxTools[index < AxTools.size() ? index : 0];
}

#pragma once

#include <AxBaseUI/AxBaseUIExport.h>

#include <QMetaType>

/// The interactive tools of the globe. Those marked "host" mean nothing to the viewer itself; a host may
/// use them for tools of its own.
enum EToolType
{
    ToolNone = 0, ///< host
    ToolNavigate = 1,
    ToolSelect = 2,
    ToolPolygonBlock = 3,
    ToolRectangleBlock = 4,
    ToolStripBlock = 5,
    ToolHost6 = 6, ///< host
    ToolMeasureDistance = 7,
    ToolMarkPoint = 8,
    ToolProhibitedArea = 9,
    ToolProjCoords = 10,
    ToolMeasureAltitude = 11,
    ToolMeasurePlane = 12,
    ToolMeasureArea = 13,
    ToolMeasureVolume = 14,
    ToolHost15 = 15, ///< host; a double click ends it
    ToolVideoArea = 16,
    ToolContinueBlock = 17,
    ToolHost18 = 18, ///< host
    ToolAddPoint = 19,
    ToolHost20 = 20, ///< host
    ToolHost21 = 21, ///< host
    ToolHost22 = 22, ///< host
    ToolHost23 = 23, ///< host
    ToolHost24 = 24, ///< host
    ToolHost25 = 25, ///< host
    ToolLandingPosition = 26,
    ToolHost27 = 27, ///< host
    ToolHost28 = 28, ///< host
    ToolHost29 = 29, ///< host
    ToolInterestPoint = 30,
    ToolMagnifier = 31,
};

/// What a tool does with the mouse.
enum EToolKind
{
    ToolKindOther = 0,    ///< nothing that the viewer knows of
    ToolKindNavigate = 1, ///< moves the camera, selects and moves finished objects
    ToolKindDraw = 2,     ///< draws: its running operation has to be ended when another tool is chosen
    ToolKindPick = 3,     ///< every click is a complete answer, nothing is left running
};

/// The kind of a tool:
/// - ToolKindNavigate: ToolNavigate, ToolSelect;
/// - ToolKindDraw: every tool that draws an object or a measurement (3, 4, 5, 7 to 17 and 31);
/// - ToolKindPick: ToolAddPoint, ToolLandingPosition, ToolInterestPoint;
/// - ToolKindOther: all others, and values that are no tool.
AXBASEUI_EXPORT EToolKind GetToolKind(EToolType type);

Q_DECLARE_METATYPE(EToolType)

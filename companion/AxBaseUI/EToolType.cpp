#include <AxBaseUI/EToolType.h>

EToolKind GetToolKind(EToolType type)
{
    switch (type) {
    case ToolNavigate:
    case ToolSelect:
        return ToolKindNavigate;
    case ToolPolygonBlock:
    case ToolRectangleBlock:
    case ToolStripBlock:
    case ToolMeasureDistance:
    case ToolMarkPoint:
    case ToolProhibitedArea:
    case ToolProjCoords:
    case ToolMeasureAltitude:
    case ToolMeasurePlane:
    case ToolMeasureArea:
    case ToolMeasureVolume:
    case ToolHost15:
    case ToolVideoArea:
    case ToolContinueBlock:
    case ToolMagnifier:
        return ToolKindDraw;
    case ToolAddPoint:
    case ToolLandingPosition:
    case ToolInterestPoint:
        return ToolKindPick;
    default:
        return ToolKindOther;
    }
}

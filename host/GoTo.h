#pragma once

class CAxEarthViewer;
class QWidget;

/// Asks for a coordinate, in any way that docs/coordinates.md tells or in the viewer's system, and flies
/// there or sets a mark point.
void AskAndGo(CAxEarthViewer* viewer, QWidget* parent);

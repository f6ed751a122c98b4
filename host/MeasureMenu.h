#pragma once

class MeasurePanel;
class QDockWidget;
class QMenu;
class ToolActions;

/// Puts the tools that measure, and what is done with what they have measured, into a menu. The tools are
/// among the others, so that one of all is checked.
void FillMeasureMenu(QMenu* menu, ToolActions* tools, const MeasurePanel* panel, QDockWidget* dock);

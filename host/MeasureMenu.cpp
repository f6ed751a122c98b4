#include "host/MeasureMenu.h"
#include "host/measure/MeasurePanel.h"
#include "host/ToolActions.h"

#include <QCoreApplication>
#include <QDockWidget>
#include <QMenu>

namespace {
struct MeasureTool
{
    EToolType tool;
    const char* name;
    const char* tip;
    const char* keys;
};
const MeasureTool measureTools[] = {
    {ToolMeasureDistance, QT_TRANSLATE_NOOP("MeasureMenu", "&Distance"),
     QT_TRANSLATE_NOOP(
         "MeasureMenu",
         "Click the points of a path, the last one by a double click; Backspace takes one back, "
         "Escape gives it up, and a second Escape leaves the tool"),
     "Ctrl+Shift+D"},
    {ToolMeasureAltitude, QT_TRANSLATE_NOOP("MeasureMenu", "&Height difference"),
     QT_TRANSLATE_NOOP("MeasureMenu",
                       "Drag from one place to another, or click on each; Escape leaves the tool"),
     "Ctrl+Shift+H"},
    {ToolMeasureArea, QT_TRANSLATE_NOOP("MeasureMenu", "&Area"),
     QT_TRANSLATE_NOOP(
         "MeasureMenu",
         "Click the corners of an area, the last one by a double click; Backspace takes one back, "
         "Escape gives it up, and a second Escape leaves the tool"),
     "Ctrl+Shift+A"},
    {ToolMeasurePlane, QT_TRANSLATE_NOOP("MeasureMenu", "&Plane"),
     QT_TRANSLATE_NOOP("MeasureMenu",
                       "Drag a rectangle, or click on two opposite corners: slope, direction and "
                       "roughness of the ground in it; Escape leaves the tool"),
     "Ctrl+Shift+L"},
    {ToolMeasureVolume, QT_TRANSLATE_NOOP("MeasureMenu", "&Volume"),
     QT_TRANSLATE_NOOP(
         "MeasureMenu",
         "Click the corners of an area, the last one by a double click: cut and fill against a base that "
         "the panel on the map chooses; Escape leaves the tool"),
     "Ctrl+Shift+V"},
    {ToolProjCoords, QT_TRANSLATE_NOOP("MeasureMenu", "&Coordinates"),
     QT_TRANSLATE_NOOP(
         "MeasureMenu",
         "The coordinates under the mouse, in the system of View > Coordinate system; a click keeps "
         "them, Escape leaves the tool"),
     "Ctrl+Shift+C"},
};

QString MeasureMenuText(const char* text)
{
    return QCoreApplication::translate("MeasureMenu", text);
}
} // namespace

void FillMeasureMenu(QMenu* menu, ToolActions* tools, const MeasurePanel* panel, QDockWidget* dock)
{
    for (const MeasureTool& row : measureTools) {
        QAction* action = tools->Add(row.tool, MeasureMenuText(row.name), MeasureMenuText(row.tip));
        action->setShortcut(QKeySequence(QLatin1String(row.keys)));
        menu->addAction(action);
    }
    menu->addSeparator();
    menu->addActions(panel->MenuActions());
    menu->addAction(dock->toggleViewAction());
}

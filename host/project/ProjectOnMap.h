#pragma once
#include <AxData/project/AxProject.h>

#include <QStringList>

class CAxEarthViewer;

/// A project as the map shows it. GUI thread; the viewer has its map.
namespace ProjectOnMap {
/// All blocks, the marks of the viewer's set, and the camera. Values are those of `rest`, which nothing
/// shows.
AxProject Look(const CAxEarthViewer& viewer, const AxProject& rest);

/// Puts the project in the place of all that is drawn: objects, records and undo history. The names of
/// blocks that this program cannot draw; their records are there all the same.
QStringList Show(CAxEarthViewer& viewer, const AxProject& project);

/// Whether a block is being drawn that has a corner already; not a measurement, nor marks.
bool IsDrawing(const CAxEarthViewer& viewer);
/// Ends that drawing as if it had not been begun.
void DropDrawing(CAxEarthViewer& viewer);

/// Why nothing else can be shown at this moment, for people: something is held with the mouse, or a box waits
/// for an answer. Empty when it can; a drawing is ended by it.
QString ReasonToWait(const CAxEarthViewer& viewer);
} // namespace ProjectOnMap

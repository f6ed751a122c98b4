#pragma once
#include "host/tasks/TaskFiles.h"

class CAxBlock;
class CAxEarthViewer;

/// The block under which a route from a file is shown: the one given where the route flies over it from the
/// same home in one direction, else a new one around the route, drawn, with the file's home. Null, and
/// nothing changes, where none can be drawn. There is at least one point. GUI thread.
CAxBlock* BlockOfRoute(CAxEarthViewer& viewer, CAxBlock* block, const TaskFiles::Read& route);

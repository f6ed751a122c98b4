#pragma once
#include "analysis/AxSightAnalysis.h"

#include <QString>

class QWidget;

/// Asks where, and writes a line of sight as CSV, KML or GeoJSON or a viewshed as GeoTIFF. Returns what the
/// status bar says; empty when nothing was written. The operator is shown what is wrong.
QString AskAndExportSight(const AxSightResult& result, QWidget* window);

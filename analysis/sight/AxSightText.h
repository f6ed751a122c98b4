#pragma once
#include "analysis/sight/AxLineOfSight.h"
#include "analysis/sight/AxViewshed.h"
#include "scene/base/AxEarthViewerExport.h"

#include <AxData/geofiles/AxGeoFile.h>
#include <AxData/geofiles/AxGeoRaster.h>

#include <QString>
#include <QVector>

// What is shown, listed, copied and exported of a line of sight or a viewshed, made of the same values. Texts
// are in the language of the program, numbers have a point, lengths are in the units of AxUnits.

/// One line: "Hidden from 3.214 km on: the ground stands 45.2 m in the way".
AXEARTHVIEWER_EXPORT QString AxSightText(const AxSightLine& line);
/// One line: "24.3 % of 10.000 km around is visible, 75.7 % hidden".
AXEARTHVIEWER_EXPORT QString AxSightText(const AxViewshed& viewshed);
/// Two short lines for the map.
AXEARTHVIEWER_EXPORT QString AxSightLabel(const AxSightLine& line);
/// Everything, line by line.
AXEARTHVIEWER_EXPORT QString AxSightReport(const AxSightLine& line);
AXEARTHVIEWER_EXPORT QString AxSightReport(const AxViewshed& viewshed);
/// Why there is no viewshed; empty when there is one.
AXEARTHVIEWER_EXPORT QString AxSightFaultText(AxViewshedFault fault);

/// A line of sight for files: the line from end to end with its figures as fields (metres, metres above the
/// ground), and the place from which on it is hidden.
AXEARTHVIEWER_EXPORT QVector<AxGeoShape> AxSightShapes(const AxSightLine& line, const QString& name);
/// A viewshed for files and for the map.
AXEARTHVIEWER_EXPORT AxGeoRaster AxSightRaster(const AxViewshed& viewshed);

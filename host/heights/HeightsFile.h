#pragma once
#include "analysis/AxHeightGrid.h"

#include <QByteArray>
#include <QString>

/// The known heights as a CSV table for programs: a line of names, then longitude, latitude (degrees) and
/// height (metres above the ellipsoid) of each cell, row by row from the south-west, with points and commas.
QByteArray HeightsTable(const AxHeightGrid& grid);

/// Writes the grid, by the file's ending as that table or else as GeoTIFF. What is wrong, for people; empty
/// when it was written.
QString WriteHeights(const QString& file, const AxHeightGrid& grid);

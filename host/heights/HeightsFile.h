#pragma once
#include "analysis/AxHeightGrid.h"

#include <QByteArray>
#include <QString>

/// The known heights as a CSV table for programs: a line of names, then longitude, latitude (degrees) and
/// height (metres) of each cell, row by row from the south-west, with points and commas. The name of the
/// last column tells what heights are counted from: "alt_ellipsoid", or "alt_amsl" for mean sea level.
QByteArray HeightsTable(const AxHeightGrid& grid, bool aboveEllipsoid);

/// Writes the grid, by the file's ending as that table or else as GeoTIFF, whose item HEIGHTS tells what they
/// are counted from. What is wrong, for people; empty when it was written.
QString WriteHeights(const QString& file, const AxHeightGrid& grid, bool aboveEllipsoid);

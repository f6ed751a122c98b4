#pragma once

#include <AxData/AxDataExport.h>

#include <QMap>
#include <QString>

#include <vector>

/// Heights of the ground on a grid of equal steps in longitude and latitude.
struct AxGeoHeights
{
    double west = 0.0;            ///< edge of the first column, degrees
    double south = 0.0;           ///< edge of the first row, degrees
    double stepLng = 0.0;         ///< of a cell, degrees
    double stepLat = 0.0;         ///< of a cell, degrees
    int columns = 0;              ///< of cells
    int rows = 0;                 ///< of cells
    std::vector<float> heights;   ///< row by row from the south-west, metres; NaN where there is none
    QMap<QString, QString> facts; ///< written beside the cells, for programs
};

/// Writes a GeoTIFF in WGS 84 (EPSG:4326), as programs for elevation models take it: one band of 32-bit
/// numbers in metres with NaN as "no data", and the facts as metadata. The file that was there is replaced
/// when the new one is whole. What is wrong, in the language of the program; empty when it was written. Any
/// thread.
AXDATA_EXPORT QString AxWriteGeoHeights(const QString& path, const AxGeoHeights& heights);

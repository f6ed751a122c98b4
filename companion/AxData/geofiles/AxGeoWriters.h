#pragma once

#include <AxData/geofiles/AxGeoFile.h>

#include <QByteArray>

class AxGeoSession;

/// How shapes are put into one layer of a file.
struct AxGeoLayer
{
    const char* driver;
    QList<const AxGeoShape*> shapes;
    QByteArray file; ///< as GDAL names it
    QStringList layerSettings;
    bool isOneKind = false; ///< the layer tells of which kind its shapes are, and whether they have heights
    bool isDrawing = false; ///< metres, the name as layer of each entity, no further fields
};

/// Writes the layer; `epsg` is the coordinate system of a drawing then. What is wrong; empty when it is
/// written.
QString AxWriteGeoLayer(const AxGeoLayer& layer, AxGeoSession& session, int& epsg);

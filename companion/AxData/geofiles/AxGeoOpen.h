#pragma once

#include <AxData/geofiles/AxGeoFile.h>
#include <AxData/geofiles/AxGeoSession.h>

#include <gdal_priv.h>

/// A file that GDAL has opened.
struct AxGeoOpened
{
    GDALDatasetUniquePtr data; ///< null with a fault; the session outlives it
    QString fault;
    QStringList notes;
    QByteArray codec = "GB18030"; ///< of texts that are not in UTF-8
    QString system;               ///< that the file names where GDAL does not look
    bool isKml = false;
    bool isDrawing = false;
    bool isTable = false;
};

/// Opens a file by its suffix, with the driver of that format alone. What GDAL would write beside the file,
/// or what may be larger than it looks, goes through memory.
AxGeoOpened AxOpenGeoFile(const QString& path, const AxGeoReadOptions& options, AxGeoSession& session);

#pragma once

#include <AxData/AxDataExport.h>

#include <QList>
#include <QMap>
#include <QPointF>
#include <QString>
#include <QStringList>
#include <QVector>

#include <functional>
#include <limits>

// Areas, lines and points from and to files that other programs share: KML, KMZ, GeoJSON, Shapefile,
// GeoPackage, DXF, CSV. Any thread; one call knows nothing of another. Files are only read: nothing is
// written beside them, nothing is fetched from the network.

/// One area, line or point. Places are (longitude, latitude) in degrees, WGS 84, longitudes in [-180, 180].
struct AxGeoShape
{
    /// What its points make.
    enum Kind
    {
        Area,  ///< a ring
        Line,  ///< a line
        Point, ///< one place
    };

    Kind kind = Area;            ///< of the points
    QString name;                ///< one line, 200 characters at most
    QString layer;               ///< that it comes from; empty where the file has only one
    QList<QPointF> points;       ///< a ring does not repeat its first point
    QList<QList<QPointF>> holes; ///< of an area, likewise
    /// Metres, the same for all points; NaN where there is none or where they differ.
    double altitude = std::numeric_limits<double>::quiet_NaN();
    QMap<QString, QString> attributes; ///< further fields
    /// Of a strip along the line, metres to the left and to the right; NaN where the file says nothing.
    double leftWidth = std::numeric_limits<double>::quiet_NaN();
    double rightWidth = std::numeric_limits<double>::quiet_NaN();
    /// Of a circle around the point, metres; NaN where the file says nothing.
    double radius = std::numeric_limits<double>::quiet_NaN();
};

/// What a file holds.
struct AxGeoContent
{
    QVector<AxGeoShape> shapes;   ///< in the order of the file
    QStringList notes;            ///< for people: what was changed or left out, and where
    QString fault;                ///< why there are no shapes; empty when the file was read
    QString coordinateSystem;     ///< name of the one that the file uses
    bool isSystemMissing = false; ///< the fault is that a coordinate system has to be chosen
    bool isCancelled = false;     ///< the fault is that the caller has cancelled
};

/// How a file is read.
struct AxGeoReadOptions
{
    /// The coordinate system of a file that names none: "EPSG:32725", WKT or a PROJ string. Without one such
    /// a file is read as WGS 84 if its coordinates can be degrees, which a note tells, and else refused.
    QString assumedSystem;
    /// Whether the caller wants points and tells in which system they are: it need not hear that rows of a
    /// table are points, or that WGS 84 is assumed for them, and faults speak of points.
    bool arePointsWanted = false;
    /// Rings and lines of more points are simplified: by so many metres, or by as many more as it takes.
    int mostPoints = 10000;
    double tolerance = 1.0;
    /// Files of more are refused.
    qint64 mostBytes = 512LL * 1024 * 1024;
    int mostShapes = 20000;
    int mostPointsOfAll = 5000000;
};

/// Told how many of all features are read, 0 for all while it is not known. Called on the reading thread;
/// reading ends when it returns false.
using AxGeoProgress = std::function<bool(int done, int all)>;

/// Reads all shapes of a file, whose format its suffix names. Curves become lines, several parts become
/// several shapes "name 1", "name 2", closed lines of a DXF file areas. What cannot be taken over is left out
/// and told by a note that names layer and feature.
AXDATA_EXPORT AxGeoContent AxReadGeoFile(const QString& path, const AxGeoReadOptions& options = {},
                                         const AxGeoProgress& progress = {});

/// By the suffixes kml, kmz, geojson, shp, gpkg, dxf and csv.
enum class AxGeoFormat
{
    Kml,
    Kmz,
    GeoJson,
    Shapefile,
    GeoPackage,
    Dxf,
    Csv,
};

/// What became of a file.
struct AxGeoWritten
{
    QString fault;     ///< why nothing was written; empty when the file was
    QStringList notes; ///< for people: what the file does not say
};

/// Writes shapes so that AxReadGeoFile() gives the same ones. WGS 84, UTF-8, widths and radius as the fields
/// "left_m", "right_m", "radius_m"; DXF has metres in the UTM zone of the first point. The file that was
/// there is replaced when the new one is whole. A shapefile has one kind of shape: lines and points beside
/// areas go to files of their own, which a note names. Such a file that is there already is replaced with the
/// one at `path` where it has the fields of an earlier call; any other is a fault, and nothing is written.
AXDATA_EXPORT AxGeoWritten AxWriteGeoFile(const QString& path, AxGeoFormat format,
                                          const QVector<AxGeoShape>& shapes);

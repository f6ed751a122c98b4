#pragma once
#include "analysis/zones/AxZoneShape.h"
#include "scene/base/AxEarthViewerExport.h"

#include <osg/ref_ptr>
#include <osgEarthSymbology/Geometry>

#include <QDateTime>
#include <QList>
#include <QMap>
#include <QPolygonF>
#include <QString>
#include <QStringList>
#include <QVariant>

class CAxNoflyZoneMgr;

/// A lift of a no-fly zone, as the operator reads of it.
struct AxNoflyLift
{
    QString begin;  ///< as it stands in the file, a date or not
    QString expiry; ///< as it stands in the file, a date or not
    /// The expiry is a date and has passed. Such a lift applies all the same.
    bool isOutOfDate = false;
};

/// All no-fly zones as they are drawn and tested, by ascending zone id. Longitude (x) and latitude (y)
/// in degrees. Nothing of it changes once it is loaded, so any thread may read it.
struct AxNoflyZones
{
    QMap<QString, AxZoneShape> zonePolygons; ///< as decreed
    /// Zones with lifts: what is left of them, in as many pieces as it takes; this is what is drawn.
    QMap<QString, osg::ref_ptr<const osgEarth::Symbology::MultiGeometry>> zoneDisplayGeometry;
    /// Zones with lifts: their outline less the lifted areas; this is what areas are tested against.
    QMap<QString, QPolygonF> zoneOutlines;
    /// For each lift of a zone "begin;expiry;area" as they stand in the file.
    QMultiMap<QString, QString> liftEntries;
};

/// Turns rows of the two tables into zones, columns in the order of AxLoadZones(). Rows that are switched
/// off, lifts that are not granted and whatever cannot be read are left out, the last with a line in the log.
AXEARTHVIEWER_EXPORT AxNoflyZones AxReadZones(const QList<QVariant>& zoneRows,
                                              const QList<QVariant>& liftRows);

/// Opens a zone file in place, reads it and seals it again. False, `zones` untouched, when it holds no zone
/// row; `reason` then says to a person what went wrong.
AXEARTHVIEWER_EXPORT bool AxLoadZones(CAxNoflyZoneMgr& zoneFile, const QString& file, AxNoflyZones& zones,
                                      QString* reason = nullptr);

/// The lifts of a zone in the order of the file.
AXEARTHVIEWER_EXPORT QList<AxNoflyLift> AxLiftsOf(const AxNoflyZones& zones, const QString& id,
                                                  const QDateTime& now);
/// Whether a time of the file has passed: ISO 8601, local time unless it says otherwise, with "T" or a blank
/// before the hour; a day alone lasts to its end; a whole number counts seconds since 1970. False for
/// anything else.
AXEARTHVIEWER_EXPORT bool AxIsPast(const QString& time, const QDateTime& now);

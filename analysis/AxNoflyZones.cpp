#include "analysis/AxNoflyZones.h"

QString AxZoneColumns()
{
    return QStringLiteral("lng, lat, local_id, enable, area");
}

QString AxZoneTable()
{
    return QStringLiteral("no_fly_zone");
}

QString AxLiftColumns()
{
    return QStringLiteral("begin_at, expired_at, area, local_ids, user_id, status");
}

QString AxLiftTable()
{
    return QStringLiteral("lift_no_fly_zone");
}

osg::ref_ptr<osgEarth::Symbology::Polygon> AxZonePolygon(const QString&)
{
    return new osgEarth::Symbology::Polygon;
}

AxNoflyZones AxReadZones(const QList<QVariant>&, const QList<QVariant>&)
{
    return {};
}

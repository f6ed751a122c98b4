#pragma once

#include <AxData/geofiles/AxGeoCollector.h>

#include <QSet>

class OGRFeature;
class OGRFeatureDefn;

/// What the fields of a layer say of its features.
class AxGeoFields
{
public:
    /// `geometry` are fields that hold places and no texts; `codec` is that of texts that are not in UTF-8.
    AxGeoFields(const OGRFeatureDefn& layer, const QByteArray& codec, const QSet<int>& geometry = {});

    /// Name and further fields; `where` stays empty.
    AxGeoFeature Of(const OGRFeature& feature);
    bool IsForeign() const { return isForeign; } ///< a text was not in UTF-8

private:
    struct Field
    {
        int index;
        QString key;
    };
    QByteArray codec;
    QList<Field> kept;
    int name = -1;
    int heights = -1; // KML's mode of altitudes
    bool isForeign = false;
};

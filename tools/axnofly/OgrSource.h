#pragma once

#include <QString>
#include <QStringList>

#include <memory>
#include <vector>

class GDALDataset;
class OGRFeature;
class OGRLayer;

/// A file of features that OGR reads: CSV (compressed or not), GeoJSON, KML, Shapefile and what else the
/// installed OGR knows.
class OgrSource
{
public:
    OgrSource();
    ~OgrSource();

    bool Open(const QString& path, QString& error);

    int LayerCount() const;
    OGRLayer* Layer(int index) const;

    /// Where a feature stands: "file.csv:17", or "file.kml, layer Zones, feature 3".
    QString PlaceOf(const OGRLayer* layer, const OGRFeature& feature, qint64 ordinal) const;

    /// Number of the field whose name is one of `names` in any case, the earlier the better; -1 without.
    static int FieldOf(OGRLayer* layer, const QStringList& names);

private:
    struct Close
    {
        void operator()(GDALDataset* dataset) const;
    };

    QString m_path;
    std::unique_ptr<GDALDataset, Close> m_dataset;
    /// Of a CSV file: the line on which each record begins, the header included.
    std::vector<qint64> m_recordLines;
};

#pragma once
#include <gdal.h>
#include <memory>
#include <mutex>
#include <osgEarthDrivers/feature_ogr/OGRFeatureOptions>

namespace osgEarth::Features {
/// Features from anything OGR opens. The dataset is shared by all cursors, so
/// each query is read into memory at once under a lock.
class OgrFeatureSource : public FeatureSource
{
public:
    explicit OgrFeatureSource(const Drivers::OGRFeatureOptions& options);

    FeatureCursor* createFeatureCursor(const Symbology::Query& query) override;
    int getFeatureCount() const override { return _count; }
    Geometry::Type getGeometryType() const override { return _type; }

    /// Why the last query gave no cursor; empty when it did.
    std::string lastError() const;
    /// File or connection, for messages.
    const std::string& location() const { return _location; }

protected:
    ~OgrFeatureSource() override = default;
    Status initialize(const osgDB::Options* readOptions) override;

private:
    struct DatasetCloser
    {
        void operator()(void* dataset) const { GDALClose(dataset); }
    };

    Status openDataset();
    Status chooseLayer();
    void readSchema();
    Feature* convert(OGRFeatureH row) const;

    const Drivers::OGRFeatureOptions _ogr;
    std::string _location;
    mutable std::mutex _mutex; ///< guards the dataset, which is for one thread at a time
    std::unique_ptr<void, DatasetCloser> _dataset;
    OGRLayerH _layer = nullptr;
    int _count = -1;
    int _lonField = -1, _latField = -1;
    Geometry::Type _type = Geometry::TYPE_UNKNOWN;
    std::string _error;
};
} // namespace osgEarth::Features

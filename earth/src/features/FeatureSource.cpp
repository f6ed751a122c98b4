#include "features/OgrFeatureSource.h"
#include <osgEarthFeatures/FeatureSource>

namespace osgEarth::Features {
const Status& FeatureSource::open(const osgDB::Options* readOptions)
{
    std::lock_guard<std::mutex> lock(_openMutex);
    if (!_opened) {
        _status = initialize(readOptions ? readOptions : _readOptions.get());
        _opened = true;
    }
    return _status;
}

FeatureSource* FeatureSourceFactory::create(const FeatureSourceOptions& options)
{
    if (options.getDriver() != "ogr" && !options.getDriver().empty())
        return nullptr;
    return new OgrFeatureSource(Drivers::OGRFeatureOptions(options));
}
} // namespace osgEarth::Features

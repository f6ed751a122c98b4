#pragma once
#include <osgEarth/ModelSource>

namespace osgEarth::Drivers {
/// The source behind the driver "feature_geom". Opening it only looks whether
/// the data is there; reading and building happen on the pager's threads once
/// the layer is first seen, so that they hold up neither start-up nor frames.
/// What fails then is logged in one line and leaves the layer empty.
ModelSource* createFeatureGeomModelSource(const ModelSourceOptions& options);
} // namespace osgEarth::Drivers

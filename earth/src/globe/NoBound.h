#pragma once
#include <osg/Drawable>

namespace osgEarth {
/// For what is drawn around the whole globe or sky: it counts in no bound.
class NoBound : public osg::Drawable::ComputeBoundingBoxCallback
{
public:
    osg::BoundingBox computeBound(const osg::Drawable&) const override { return {}; }
};
} // namespace osgEarth

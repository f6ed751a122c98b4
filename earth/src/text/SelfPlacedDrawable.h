#pragma once
#include <osg/Geometry>

namespace osgEarth {
/// A drawable that knows its place on the screen itself and so passes the
/// screen-space layout untouched: many labels in one.
class SelfPlacedDrawable : public osg::Geometry
{
protected:
    ~SelfPlacedDrawable() override = default;
};
} // namespace osgEarth

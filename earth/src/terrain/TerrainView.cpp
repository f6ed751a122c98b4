#include "terrain/TerrainView.h"

#include "terrain/TileContent.h"

namespace osgEarth {
namespace {
/// Pictures are made this share of a tile's radius before the tile comes into view.
constexpr double kAhead = 0.3;
} // namespace

TerrainView::TerrainView(const osg::Matrixd& worldToEye, const osg::Matrixd& projection, double height)
    : eye(osg::Matrixd::inverse(worldToEye).getTrans()), horizon(eye),
      pixelSize(2.0 / (projection(1, 1) * height)), perspective(projection(3, 3) == 0.0)
{
    // A point is inside when -w <= x <= w in clip coordinates, and y alike.
    const osg::Matrixd toClip = worldToEye * projection;
    const auto column = [&toClip](int c) {
        return osg::Vec4d(toClip(0, c), toClip(1, c), toClip(2, c), toClip(3, c));
    };
    const osg::Vec4d w = column(3);
    sides = {osg::Plane(w + column(0)), osg::Plane(w - column(0)), osg::Plane(w + column(1)),
             osg::Plane(w - column(1))};
    for (osg::Plane& side : sides)
        side.makeUnitLength();
}

bool TerrainView::isNear(const TileBulk& bulk) const
{
    if (horizon.hides(bulk.occludee))
        return false;
    const double slack = (1.0 + kAhead) * bulk.sphere.radius();
    for (const osg::Plane& side : sides)
        if (side.distance(bulk.sphere.center()) < -slack)
            return false;
    return true;
}
} // namespace osgEarth

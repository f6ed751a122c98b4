#include "terrain/TerrainView.h"

#include "terrain/TileContent.h"
#include "terrain/TilePicture.h"

namespace osgEarth {
namespace {
/// Pictures are made this share of a tile's radius before the tile comes into view.
constexpr double kAhead = 0.3;
/// A texel may cover this many pixels before the next level is fetched.
constexpr double kTexelPixels = 1.5;
/// The surface may typically be off by this many pixels; colour and shade come from the picture and are not.
constexpr double kSurfacePixels = 2.5;

/// To the nearest place of the tile, found in longitude and latitude; exact
/// enough for a level of detail and free of the slack of a sphere.
double distanceTo(const TileContent& tile, const osg::Vec3d& eye, const osg::Vec3d& eyeGeodetic)
{
    const TileBounds& bounds = tile.bounds;
    double longitude = eyeGeodetic.x();
    const double middle = 0.5 * (bounds.west + bounds.east);
    if (longitude < middle - 180.0)
        longitude += 360.0;
    else if (longitude > middle + 180.0)
        longitude -= 360.0;
    const osg::Vec3d nearest = geodeticToWorld(std::clamp(longitude, bounds.west, bounds.east),
                                               std::clamp(eyeGeodetic.y(), bounds.south, bounds.north),
                                               std::clamp(eyeGeodetic.z(), tile.lowest, tile.highest));
    return (nearest - eye).length();
}
} // namespace

TerrainView::TerrainView(const osg::Matrixd& worldToEye, const osg::Matrixd& projection, double height,
                         bool deep)
    : eye(osg::Matrixd::inverse(worldToEye).getTrans()), horizon(eye, deep ? kLowestSeaFloor : kLowestLand),
      seaFloor(deep), pixelSize(2.0 / (projection(1, 1) * height)), perspective(projection(3, 3) == 0.0)
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

double TerrainView::excessOf(const TileContent& tile) const
{
    if (!tile.refinable)
        return 0.0;
    const double pixel = pixelSize * (perspective ? std::max(0.1, distanceTo(tile, eye, eyeGeodetic)) : 1.0);
    double excess = tile.geometricError / (kSurfacePixels * pixel);
    if (tile.pictureRefinable) {
        const double texel = tile.bounds.height() * kMetresPerDegree / kTilePictureSize;
        excess = std::max(excess, texel / (kTexelPixels * pixel));
    }
    return excess;
}

bool TerrainView::hides(const TileBulk& bulk) const
{
    return horizon.hides(seaFloor ? bulk.overSeaFloor : bulk.occludee);
}

bool TerrainView::isNear(const TileBulk& bulk) const
{
    if (hides(bulk))
        return false;
    const double slack = (1.0 + kAhead) * bulk.sphere.radius();
    for (const osg::Plane& side : sides)
        if (side.distance(bulk.sphere.center()) < -slack)
            return false;
    return true;
}
} // namespace osgEarth

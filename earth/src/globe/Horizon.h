#ifndef OSGEARTH_TERRAIN_HORIZON_H
#define OSGEARTH_TERRAIN_HORIZON_H 1

#include <osg/Vec3d>
#include <osg/Vec3f>

#include <vector>

namespace osgEarth {
/**
 * Stands for a whole tile in horizon tests: hidden exactly when every point
 * it was made of is hidden by the ellipsoid. Not every tile has one; a tile
 * of a quarter of the globe is never hidden as a whole.
 */
struct OccludeePoint
{
    bool exists = false;
    /** Geocentric, divided by the radii of the occluding ellipsoid. */
    osg::Vec3d scaled;
};

/**
 * The ellipsoid as an obstacle, as seen from an eye. The ellipsoid is WGS84
 * shrunk below the lowest ground, so that a sea-level tile is never thought
 * hidden behind itself.
 *
 * The test works in a space scaled so that the ellipsoid is the unit sphere:
 * a point is hidden when it lies beyond the plane of the horizon circle and
 * inside the cone from the eye through that circle.
 */
class Horizon
{
public:
    Horizon() = default;
    explicit Horizon(const osg::Vec3d& eyeWorld);

    bool hides(const OccludeePoint& point) const;

private:
    osg::Vec3d _eye;
    /** Squared distance from the eye to the horizon circle; not positive inside the ellipsoid. */
    double _horizonSquared = 0.0;
};

/** The occludee point of positions given relative to a geocentric origin. */
OccludeePoint occludeeOf(const osg::Vec3d& origin, const std::vector<osg::Vec3f>& positions,
                         double extraHeight);
} // namespace osgEarth

#endif

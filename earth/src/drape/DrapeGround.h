#pragma once
#include "drape/DrapeVolume.h"
#include <osg/observer_ptr>
#include <osgEarth/MapNode>

namespace osgEarth {
/// The ground under a shape, as far as the terrain in memory knows it, from
/// lowest to highest with some to spare.
class DrapeGround
{
public:
    /// Whether it is time to look the heights up; they change with the terrain's detail.
    bool isDue(unsigned frame, unsigned interval) const;
    /// Looks them up; returns at how many places.
    unsigned lookUp(const DrapeExtent& extent, const osg::observer_ptr<MapNode>& map, const osg::Vec3d& eye,
                    unsigned frame);
    bool isKnown() const { return _known; }
    /// Lower rim, upper rim and ground for the shader, metres above the ellipsoid, for an eye this far away.
    osg::Vec3f heights(double sagitta, double distance) const;

    /// How far the ground found may be off its middle height; the whole range while nothing is known.
    double relief() const { return _relief; }
    double middle() const { return _heights.z(); }

    /// What the ground can be at most while nobody knows it, metres above the ellipsoid.
    static constexpr double kLowest = -11500.0;
    static constexpr double kHighest = 9500.0;

private:
    unsigned _frame = 0;
    bool _looked = false;
    bool _known = false;
    double _relief = kHighest - kLowest;
    osg::Vec3d _heights{kLowest, kHighest, 0.0}; ///< lowest, highest and middle height
};
} // namespace osgEarth

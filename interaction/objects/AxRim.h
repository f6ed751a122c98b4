#pragma once
#include "scene/base/AxEarthViewerExport.h"

#include <osg/Vec3d>

#include <cstddef>
#include <vector>

/**
 * The handles around an object that stretch and turn it as a whole: the corners of the box around it, from
 * the south-western one anticlockwise, and one to the north that turns it. Places are longitude and latitude
 * in degrees; altitudes are left out of account. Any thread.
 */
namespace AxRim {

constexpr std::size_t turning = 4; ///< the index of the handle that turns
constexpr std::size_t count = 5;

/// Where they stand, a little outside. None for fewer than two places.
AXEARTHVIEWER_EXPORT std::vector<osg::Vec3d> Places(const std::vector<osg::Vec3d>& vertices);

struct Drag
{
    std::size_t handle = 0;
    osg::Vec3d to;
    bool keepsProportion = false;
    double stepDegrees = 0.0; ///< of a turn; 0 for any angle
};
/// Points as the drag of one of the handles at these places takes them along. A corner stretches them from
/// the opposite one, which stays; nothing is turned inside out.
AXEARTHVIEWER_EXPORT std::vector<osg::Vec3d>
Dragged(const std::vector<osg::Vec3d>& points, const std::vector<osg::Vec3d>& handles, const Drag& drag);

} // namespace AxRim

/// A drag of such a handle while it goes on.
struct AxRimDrag
{
    std::vector<osg::Vec3d> vertices; ///< when it began
    std::vector<osg::Vec3d> handles;  ///< likewise
    std::vector<osg::Vec3d> now;      ///< the handles as they went along
};

#pragma once
#include "drape/DrapeVolume.h"

namespace osgEarth {
/// A shape's volume as plain arrays that several shapes can be joined from, in
/// several degrees of detail. The vertices are those of DrapeVolume. A plain value.
///
/// The triangles of a coarser level are spanned from its rim and may overlap.
/// They keep the rim's direction of rotation, so that the faces behind a point,
/// counted by their sign, say how often the rim goes round it.
struct DrapeBlock : DrapeExtent
{
    struct Level
    {
        double error = 0.0; ///< metres that its rim may be off the shape's
        double sagitta = 0.0;
        std::vector<unsigned> indices;
        /// The first so many indices are those of the upper face.
        size_t caps = 0;
        /// And so many those of it and the walls: all that can lie before the
        /// ground for an eye outside of the volume.
        size_t upper = 0;
    };
    std::vector<osg::Vec3f> positions;
    std::vector<osg::Vec3f> ups;
    std::vector<osg::Vec4f> shifts;
    std::vector<float> rims;
    std::vector<Level> levels; ///< the finest first
};

/// No levels when the shape has neither area nor length.
DrapeBlock blockOf(const DrapeShape& shape);
} // namespace osgEarth

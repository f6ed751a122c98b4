#pragma once
#include <osg/BoundingBox>
#include <osg/Drawable>

#include <vector>

/**
 * The box around a geometry whose triangles lie in the order of space, and the boxes around each few of them,
 * so that a ray passes over most. It is the geometry's bounding box callback. The geometry has osg::Vec3
 * vertices and one set of primitives, triangles in an osg::DrawElementsUInt; nothing of it changes any more.
 */
struct AxTriangleChunks : osg::Drawable::ComputeBoundingBoxCallback
{
    static constexpr std::size_t trianglesOfOne = 256;

    osg::BoundingBox computeBound(const osg::Drawable& /*drawable*/) const override { return box; }

    osg::BoundingBox box;                ///< around all
    std::vector<osg::BoundingBox> boxes; ///< around each trianglesOfOne of them, the last around the rest
};

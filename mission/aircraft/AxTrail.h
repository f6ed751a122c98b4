#pragma once
#include "mission/aircraft/AxTrailGeometry.h"

#include <osg/Geode>

#include <string>

/// The way that an aircraft has flown, as line strips of at most AxTrailGeometry::mostVertices points each
/// below one geode. GUI thread.
class AXEARTHVIEWER_EXPORT AxTrail
{
public:
    /// Null until a point was added.
    osg::Geode* Node() const { return geode; }
    /// False when it is where the last one is. The first point makes the node, of that name.
    bool Append(const osg::Vec3d& world, float width, const osg::Vec4f& color, const std::string& name);
    /// Where the line is drawn to instead of its last point, while the aircraft is drawn on its way there.
    void SetHead(const std::optional<osg::Vec3d>& world);
    /// Takes all points away; the node stays.
    void Clear();
    /// Takes the node out of the scene as well.
    void Remove();

    int Count() const;
    std::size_t Bytes() const;

private:
    AxTrailGeometry* newest() const;

    osg::ref_ptr<osg::Geode> geode;
    osg::Vec3d last;
};

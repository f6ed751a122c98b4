#pragma once
#include "scene/base/AxLongitudes.h"

#include <osg/Vec3d>

#include <QList>
#include <QPointF>

#include <vector>

// The vertices of a map object as its block record keeps them.

/// Longitude, brought into [-180, 180], and latitude in degrees; the altitudes are dropped.
inline QList<QPointF> AxRingOf(const std::vector<osg::Vec3d>& vertices)
{
    QList<QPointF> ring;
    ring.reserve(static_cast<int>(vertices.size()));
    for (const osg::Vec3d& vertex : vertices)
        ring += QPointF(AxLongitudes::Normalized(vertex.x()), vertex.y());
    return ring;
}

/// The way back, with altitudes of 0.
inline std::vector<osg::Vec3d> AxVerticesOf(const QList<QPointF>& ring)
{
    std::vector<osg::Vec3d> vertices;
    vertices.reserve(static_cast<std::size_t>(ring.size()));
    for (const QPointF& point : ring)
        vertices.emplace_back(point.x(), point.y(), 0.0);
    return vertices;
}

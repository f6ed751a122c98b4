#pragma once
#include <osg/Array>
#include <osg/ref_ptr>

#include <QtGlobal>

#include <set>

namespace osg {
class Geometry;
}

/// Makes a geometry safe to be drawn and searched, whatever its file says: triangles with a corner that is no
/// number, or that is not among the vertices, go, and lines and points with them; so do colours, normals and
/// places in pictures that are fewer than the vertices. How many triangles went. Arrays with vertices that
/// are no numbers are added to `faulty`: other geometries may have to look at them still. Any thread; the
/// geometry is nobody else's.
qint64 AxRepairGeometry(osg::Geometry& geometry, std::set<osg::ref_ptr<osg::Array>>& faulty);

/// Puts the vertices that are no numbers where others are, when nothing is drawn with them any more, as boxes
/// go around all of them.
void AxFillFaultyVertices(osg::Array& vertices);

#pragma once
#include <QtGlobal>

namespace osg {
class Geometry;
}

/// Makes a geometry safe to be drawn and searched, whatever its file says: triangles with a corner that is no
/// number, or that is not among the vertices, go, and lines and points with them; so do colours, normals and
/// places in pictures that are fewer than the vertices. How many triangles went. Any thread; the geometry is
/// nobody else's.
qint64 AxRepairGeometry(osg::Geometry& geometry);

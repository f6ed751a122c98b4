#pragma once

namespace osg {
class Geometry;
}

/// Puts several geometries in the place of a large one, each with the triangles of one part of the space,
/// which share its arrays: so that what is out of view is left out, and a pick looks at few. Lines and points
/// among them go. Nothing for a smaller one, and for one whose colours or normals belong to its primitives.
void AxSplitGeometry(osg::Geometry& geometry);

#pragma once
#include "interaction/editing/AxEditRules.h"

#include <QElapsedTimer>

class AxEditedShape;
class AxObjectBook;
class AxViewerParts;
struct AxViewRay;

/// Adds the vertices and edges of all visible objects but one, which may be null.
void AxAddSnapTargets(AxSnapTargets& targets, const AxObjectBook& objects, const AxEditedShape* except);
/// The screen around a place (degrees, degrees, metres) that is wanted at a window position.
AxSnapView AxSnapViewOf(const AxViewRay& view, const osg::Vec2d& target, const osg::Vec3d& place);

/// What the vertices of an object snap to while it is drawn: the vertices and edges of the other objects. It
/// belongs to the object. GUI thread.
class AxDrawingSnap
{
public:
    /// Where a vertex goes that the mouse asks for at a place, degrees, degrees, metres: the place itself
    /// when nothing is near it on the screen, or snapping is off.
    osg::Vec3d Find(AxViewerParts& viewer, const AxEditedShape& drawn, const osg::Vec3d& place);

private:
    AxSnapTargets targets;
    QElapsedTimer age;
};

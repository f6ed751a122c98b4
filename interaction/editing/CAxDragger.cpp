#include "interaction/editing/CAxDragger.h"
#include "scene/shape/AxHandleShape.h"

#include <osgUtil/CullVisitor>

CAxDragger::CAxDragger(osgEarth::MapNode* mapNode, DragType type)
    : osgEarth::Annotation::Dragger(mapNode), dragType(type)
{
    // Drawn in pixels, its bound in metres says nothing; its editor looks for the horizon.
    setCullingActive(false);
    setHorizonCulling(false);
    // Its altitude is absolute: tiles that arrive are its editor's business.
    getGeoTransform()->setTerrain(nullptr);
    updateShape();
}

void CAxDragger::setColor(const osg::Vec4f& value)
{
    color = value;
    updateShape();
}

void CAxDragger::setPickColor(const osg::Vec4f& value)
{
    pickColor = value;
    updateShape();
}

void CAxDragger::SetSize(float pixels)
{
    size = pixels;
    updateShape();
}

void CAxDragger::SetDragType(DragType type)
{
    dragType = type;
    updateShape();
}

osg::Vec3d CAxDragger::GetPlace() const
{
    return getPosition().isValid() ? getPosition().vec3d() : osg::Vec3d();
}

void CAxDragger::updateShape()
{
    const osg::ref_ptr<osg::Geode> wanted = AxHandleShape(dragType, size, GetShownColor());
    if (wanted == shape)
        return;
    if (shape)
        getPositionAttitudeTransform()->removeChild(shape);
    shape = wanted;
    if (shape)
        getPositionAttitudeTransform()->addChild(shape);
}

void CAxDragger::BeginDrag()
{
    _dragging = true;
    updateShape();
    emit signalDrag(true);
}

void CAxDragger::DragTo(const osgEarth::GeoPoint& place)
{
    setPosition(place, true);
    emit signalPositionChanged(place.x(), place.y(), place.z(), index);
}

void CAxDragger::EndDrag()
{
    if (!_dragging)
        return;
    _dragging = false;
    updateShape();
    emit signalDrag(false);
}

void CAxDragger::traverse(osg::NodeVisitor& nv)
{
    osgUtil::CullVisitor* cv = nv.asCullVisitor();
    if (!cv)
        osgEarth::Annotation::Dragger::traverse(nv);
    else if (shape)
        AxDrawInPixels(*cv, getGeoTransform()->getMatrix(), *shape);
}

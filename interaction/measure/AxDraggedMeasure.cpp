#include "interaction/measure/AxDraggedMeasure.h"
#include "interaction/editing/AxEditRules.h"
#include "interaction/objects/AxHandleAdapterState.h"

bool AxDraggedMeasure::isTremble(float windowX, float windowY) const
{
    return static_cast<double>((osg::Vec2f(windowX, windowY) - press->window).length()) <
           AxEditRules::tremblePixels;
}

void AxDraggedMeasure::slotMousePressed(osg::Vec3d lngLatPos, osg::Vec3d worldCoordPos)
{
    AxMeasureAdapter::slotMousePressed(lngLatPos, worldCoordPos);
    press.reset();
    if (d->operation == OperationDrawing)
        press = Press{{lngLatPos, worldCoordPos}, {}};
}

void AxDraggedMeasure::slotMousePressed(float windowX, float windowY)
{
    AxMeasureAdapter::slotMousePressed(windowX, windowY);
    if (press)
        press->window.set(windowX, windowY);
}

void AxDraggedMeasure::slotDragging(osg::Vec3d lngLatPos, osg::Vec3d worldCoordPos)
{
    underMouse = {lngLatPos, worldCoordPos};
}

void AxDraggedMeasure::slotDragging(float windowX, float windowY)
{
    if (d->operation != OperationDrawing || !press || (d->anchors.empty() && isTremble(windowX, windowY)))
        return;
    if (d->anchors.empty())
        take(press->place);
    slotMoving(underMouse.lngLat, underMouse.world);
}

void AxDraggedMeasure::slotMouseRelease(osg::Vec3d lngLatPos, osg::Vec3d worldCoordPos)
{
    AxMeasureAdapter::slotMouseRelease(lngLatPos, worldCoordPos);
    underMouse = {lngLatPos, worldCoordPos};
}

// Comes at the end of a drag alone, not of a click.
void AxDraggedMeasure::slotMouseRelease(float windowX, float windowY)
{
    AxMeasureAdapter::slotMouseRelease(windowX, windowY);
    if (d->operation != OperationDrawing || !press)
        return;
    const Place place = isTremble(windowX, windowY) ? press->place : underMouse;
    press.reset();
    take(place);
}

void AxDraggedMeasure::slotPicked(osg::Vec3d lngLatPos, osg::Vec3d worldCoordPos)
{
    press.reset();
    if (d->operation == OperationDrawing)
        take({lngLatPos, worldCoordPos});
}

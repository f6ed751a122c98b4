// What a drag of a handle makes of a block, and what it shows meanwhile.
#include "interaction/editing/AxEditRules.h"
#include "interaction/editing/CAxHandleAdapterEditor.h"
#include "interaction/objects/AxBlockAdapter.h"
#include "interaction/objects/AxHandleAdapterState.h"
#include "scene/AxEditAids.h"
#include "scene/AxObjectBook.h"
#include "scene/AxScene.h"

#include <QGuiApplication>

#include <algorithm>

bool AxBlockAdapter::hasRim()
{
    return d->viewer && d->viewer->Objects().Aids().rimHandles && ShapeKind().countMayChange &&
           ShapeKind().edges != AxShapeKind::Edges::None && d->operation != OperationDrawing;
}

std::vector<AxFurtherHandle> AxBlockAdapter::FurtherHandles()
{
    if (!hasRim())
        return {};
    QList<osg::Vec3d> places;
    const bool isDragged = d->rim && d->operation == OperationMovePoint;
    for (const osg::Vec3d& place : isDragged ? d->rim->now : AxRim::Places(Outline()))
        places += place;
    d->viewer->Scene().GetElevations(places);
    std::vector<AxFurtherHandle> handles;
    for (const osg::Vec3d& place : qAsConst(places))
        handles.push_back({place, AxFurtherHandle::Does::Resizes});
    if (!handles.empty())
        handles.back().does = AxFurtherHandle::Does::Turns;
    return handles;
}

void AxBlockAdapter::slotPointMoved(double lng, double lat, double alt, int index)
{
    const bool isFirst = d->operation == OperationIdle;
    const int handle = index - static_cast<int>(d->anchors.size());
    const bool isOfRim = handle >= 0 && hasRim() && (isFirst || d->operation == OperationMovePoint);
    const osg::Vec3d place(lng, lat, alt);
    // A drag that was given up has left its own.
    if (isFirst)
        d->rim.reset();
    if (isOfRim) {
        if (!d->rim)
            d->rim = AxRimDrag{d->anchors, AxRim::Places(Outline()), {}};
        dragRim(static_cast<std::size_t>(handle), place);
    }
    CAxHandleAdapter::slotPointMoved(lng, lat, alt, index);
    if (isOfRim && d->anchorEditor)
        d->anchorEditor->Update();
    if (isOfRim && isFirst)
        d->editText =
            static_cast<std::size_t>(handle) == AxRim::turning ? tr("Turn block") : tr("Change size");
    const std::size_t vertex = isOfRim ? d->anchors.size() : static_cast<std::size_t>(std::max(0, index));
    if (d->operation == OperationMovePoint && ShapeKind().countMayChange && d->viewer)
        ShowBesideCursor(place, DragText(vertex));
}

QString AxBlockAdapter::DragText(std::size_t vertex)
{
    return AxVertexText(d->anchors, vertex, ShapeKind().IsClosed(), *d->viewer->Scene().MapSRS());
}

void AxBlockAdapter::dragRim(std::size_t handle, const osg::Vec3d& place)
{
    AxRim::Drag drag;
    drag.handle = handle;
    drag.to = place;
    drag.keepsProportion = QGuiApplication::keyboardModifiers().testFlag(Qt::ShiftModifier);
    drag.stepDegrees = d->viewer->Objects().Aids().angleSteps ? AxEditRules::angleStepDegrees : 0.0;
    d->anchors = AxRim::Dragged(d->rim->vertices, d->rim->handles, drag);
    d->rim->now = AxRim::Dragged(d->rim->handles, d->rim->handles, drag);
    GetBlockElevation();
}

void AxBlockAdapter::ResponseHandlePointMoved(osg::Vec3d, osg::Vec3d)
{
    const Running self(this);
    d->cursorLabel.Hide();
    d->rim.reset();
    _ReponseHandleMove();
    // The box around it has changed with it.
    if (self.IsWanted() && d->anchorEditor)
        d->anchorEditor->Update();
}

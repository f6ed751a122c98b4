#include "interaction/objects/AxCutLine.h"
#include "interaction/objects/AxBlockOperations.h"
#include "interaction/objects/AxBlockRing.h"
#include "interaction/objects/AxHandleAdapterState.h"
#include "interaction/objects/AxObjects.h"
#include "scene/AxToolInHand.h"
#include "scene/base/AxExactPlace.h"
#include "scene/base/AxLongitudes.h"

#include <QTimer>

#include <cmath>

namespace {
const osg::Vec4f cutColor(1.0f, 0.25f, 0.2f, 1.0f);
} // namespace

AxCutLine::AxCutLine(CAxEarthViewer* viewer, QObject* parent, AxObjects& objects, const QString& blockID)
    : AxBlockAdapter(viewer, parent, CAxBlock::StripBlock), book(objects), cut(blockID)
{
    SetColors(cutColor, {});
    // Left for another object or tool it would stay on the map. Queued, because it is on its way out of
    // being the current one.
    connect(
        &book, &AxObjects::currentChanged, this,
        [this] {
            if (book.Current() != this && book.Aside() != this)
                Leave();
        },
        Qt::QueuedConnection);
}

AxCutLine::~AxCutLine() = default;

bool AxCutLine::hasOtherTool() const
{
    return d->viewer && d->viewer->Tools().Tool() != ToolNavigate;
}

bool AxCutLine::CancelHandle()
{
    const QPointer<AxObjects> objects(&book);
    const QString id = cut;
    const bool isDone = AxBlockAdapter::CancelHandle();
    // The object may be gone by now.
    if (isDone && objects && objects->Find(id) && !objects->Current())
        objects->SetCurrent(objects->Find(id));
    return isDone;
}

void AxCutLine::slotPicked(osg::Vec3d lngLatPos, osg::Vec3d worldCoordPos)
{
    if (d->operation != OperationDrawing || !IsOverGround(lngLatPos, worldCoordPos))
        return;
    if (hasOtherTool()) {
        CancelHandle();
        return;
    }
    const osg::Vec3d place = Snapped(AxExactPlace(lngLatPos, worldCoordPos));
    if (!d->anchors.empty() && std::abs(place.x() - d->anchors.back().x()) < AxLongitudes::sameDegrees &&
        std::abs(place.y() - d->anchors.back().y()) < AxLongitudes::sameDegrees)
        return;
    d->anchors.push_back(place);
    DropRubberBand();
    if (d->anchors.size() > 1)
        updateAdapter();
}

void AxCutLine::slotMoving(osg::Vec3d lngLatPos, osg::Vec3d worldCoordPos)
{
    if (d->operation != OperationDrawing || !IsOverGround(lngLatPos, worldCoordPos))
        return;
    if (hasOtherTool()) {
        CancelHandle();
        return;
    }
    if (d->anchors.empty()) {
        ShowBesideCursor(lngLatPos, tr("click: the line along which the block is cut"));
        return;
    }
    const osg::Vec3d place = Snapped(AxExactPlace(lngLatPos, worldCoordPos));
    DrawRubberBand({d->anchors.back(), place}, false);
    ShowBesideCursor(lngLatPos, AxRunningLengthText(d->anchors, place) + QLatin1Char('\n') +
                                    tr("double click: cut; Escape: leave it"));
}

void AxCutLine::slotDoubleClicked(osg::Vec3d, osg::Vec3d)
{
    // One point alone cuts nothing, and goes on.
    if (d->operation != OperationDrawing || d->anchors.size() < 2)
        return;
    const Running self(this);
    const QPointer<AxObjects> objects(&book);
    const QString id = cut;
    const QList<QPointF> line = AxRingOf(d->anchors);
    CancelHandle();
    if (objects)
        QTimer::singleShot(0, objects, [objects, id, line] { objects->Operations().Split(id, line); });
}

// The part of the map object that edits its vertices and writes them to its record.
#include "interaction/editing/AxBlockCommands.h"
#include "interaction/editing/AxEditTitle.h"
#include "interaction/editing/CAxHandleAdapterEditor.h"
#include "interaction/objects/AxBlockRing.h"
#include "interaction/objects/AxHandleAdapterState.h"
#include "interaction/objects/AxVerdict.h"
#include "interaction/objects/CAxHandleAdapter.h"
#include "scene/AxObjectBook.h"
#include "scene/base/AxLongitudes.h"

#include <AxData/CAxBlock.h>
#include <AxData/CAxControl.h>

#include <QUndoStack>

#include <algorithm>
#include <cmath>
#include <utility>

namespace {
// QPointF compares with a tolerance of its own. A record from elsewhere may count longitudes past 180.
bool IsSame(const QList<QPointF>& a, const QList<QPointF>& b)
{
    return std::equal(a.begin(), a.end(), b.begin(), b.end(), [](const QPointF& p, const QPointF& q) {
        return AxLongitudes::Normalized(p.x()) == AxLongitudes::Normalized(q.x()) && p.y() == q.y();
    });
}
} // namespace

bool CAxHandleAdapter::GeometryModifyed() const
{
    const CAxBlock* block = GetContainedBlock();
    // The base's accessor is virtual for subclasses that keep their vertices elsewhere.
    auto* self = const_cast<CAxHandleAdapter*>(this);
    return d->featureNode && block && !IsSame(AxRingOf(self->GetAnchor()), block->GetAnchor());
}

void CAxHandleAdapter::UpdateCurrentOperate()
{
    const Running self(this);
    update();
    if (!self.IsWanted())
        return;
    DrawNameLabel();
    CAxBlock* block = GetContainedBlock();
    if (!block)
        return;
    const QList<QPointF> before = block->GetAnchor();
    const QList<QPointF> after = AxRingOf(GetAnchor());
    QString text = std::exchange(d->editText, QString());
    if (IsSame(before, after))
        return;
    if (text.isEmpty())
        text = tr("Change");
    text = AxEditTitle(text, {block->GetBlockName()});
    block->SetAnchor(after);
    CAxControl::GetInstance()->SetProjectModified(true);
    if (self.IsWanted() && d->viewer)
        d->viewer->Objects().Edits().push(new AxAnchorCommand(d->viewer, d->handleID, before, after, text));
}

void CAxHandleAdapter::ReturnLastOperate()
{
    d->editText.clear();
    const CAxBlock* block = GetContainedBlock();
    if (!block)
        return;
    const QList<QPointF> ring = block->GetAnchor();
    const auto isPlace = [](const QPointF& point) {
        return std::isfinite(point.x()) && std::isfinite(point.y());
    };
    if (!std::all_of(ring.begin(), ring.end(), isPlace))
        return;
    GetAnchor() = AxVerticesOf(ring);
    GetBlockElevation();
    // A copy, because importing replaces the vertices.
    ImportGeometry(std::vector<osg::Vec3d>(GetAnchor()), false);
    if (d->anchorEditor)
        d->anchorEditor->Update();
}

bool CAxHandleAdapter::_ReponseHandleMove()
{
    const Running self(this);
    const bool isAccepted = AxOutcomeOf(CheckGeometry()) == AxOutcome::Accepted;
    if (!self.IsWanted())
        return false;
    isAccepted ? UpdateCurrentOperate() : ReturnLastOperate();
    return isAccepted;
}

bool CAxHandleAdapter::mayEdit() const
{
    return d->operation == OperationIdle && !d->lock && d->tasks.isEmpty() && GetContainedBlock();
}

bool CAxHandleAdapter::mayChangeCount() const
{
    return mayEdit() && ShapeKind().countMayChange;
}

bool CAxHandleAdapter::ChangeVertices(std::vector<osg::Vec3d> points, const QString& text)
{
    GetAnchor() = std::move(points);
    GetBlockElevation();
    d->editText = text;
    const Running self(this);
    const bool isAccepted = _ReponseHandleMove();
    if (isAccepted && self.IsWanted() && d->anchorEditor)
        d->anchorEditor->Update();
    return isAccepted;
}

bool CAxHandleAdapter::DeleteVertex(int index)
{
    std::vector<osg::Vec3d> points = GetAnchor();
    if (!mayChangeCount() || index < 0 || index >= static_cast<int>(points.size()))
        return false;
    points.erase(points.begin() + index);
    return ChangeVertices(std::move(points), tr("Delete vertex"));
}

bool CAxHandleAdapter::InsertVertex(int index, const osg::Vec3d& lngLatAlt)
{
    std::vector<osg::Vec3d> points = GetAnchor();
    if (!mayChangeCount() || index < 0 || index > static_cast<int>(points.size()) || !lngLatAlt.valid())
        return false;
    points.insert(points.begin() + index, lngLatAlt);
    return ChangeVertices(std::move(points), tr("Insert vertex"));
}

bool CAxHandleAdapter::SetVertices(std::vector<osg::Vec3d> points, const QString& text)
{
    return mayEdit() && ShapeKind().Allows(static_cast<int>(points.size())) &&
           ChangeVertices(std::move(points), text);
}

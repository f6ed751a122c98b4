// The polygon block on the map; its dialogs are in a file of their own.
#include "interaction/objects/CAx3DGeometry.h"
#include "interaction/editing/CAxHandleAdapterEditor.h"
#include "interaction/objects/AxBlockRefusal.h"
#include "interaction/objects/AxHandleAdapterState.h"
#include "scene/AxScene.h"
#include "scene/base/AxExactPlace.h"
#include "scene/base/AxLongitudes.h"
#include "scene/shape/AxRingInPlane.h"

#include <AxBaseUI/AxPolygonTest.h>

#include <cmath>

namespace {
using AxLongitudes::sameDegrees;

bool IsSamePlace(const osg::Vec3d& a, const osg::Vec3d& b)
{
    return std::abs(a.x() - b.x()) < sameDegrees && std::abs(a.y() - b.y()) < sameDegrees;
}
bool Crosses(const std::vector<osg::Vec3d>& vertices)
{
    std::vector<QPointF> ring = AxRingInPlane(vertices);
    ring.push_back(ring.front());
    return isSelfIntersection(ring);
}
} // namespace

CAx3DGeometry::CAx3DGeometry(CAxEarthViewer* viewer, QObject* parent)
    : AxBlockAdapter(viewer, parent, CAxBlock::PolygonBlock)
{
}

CAx3DGeometry::~CAx3DGeometry() = default;

// Drawing

void CAx3DGeometry::slotPicked(osg::Vec3d lngLatPos, osg::Vec3d worldCoordPos)
{
    if (d->operation != OperationDrawing || !IsOverGround(lngLatPos, worldCoordPos))
        return;
    lngLatPos = AxExactPlace(lngLatPos, worldCoordPos);
    const osg::Vec3d place = Snapped(lngLatPos);
    // A second click beside a corner that it snaps to is no second vertex there.
    if (place != lngLatPos && !d->anchors.empty() && IsSamePlace(place, d->anchors.back()))
        return;
    d->anchors.push_back(place);
    ShowHandles();
    DropRubberBand();
    if (d->anchors.size() > 1)
        updateAdapter();
}

void CAx3DGeometry::slotMoving(osg::Vec3d lngLatPos, osg::Vec3d worldCoordPos)
{
    if (d->operation != OperationDrawing || d->anchors.empty() || !IsOverGround(lngLatPos, worldCoordPos))
        return;
    lngLatPos = AxExactPlace(lngLatPos, worldCoordPos);
    const osg::Vec3d place = Snapped(lngLatPos);
    DrawRubberBand({d->anchors.front(), place, d->anchors.back()}, false);
    QString text = AxRunningLengthText(d->anchors, place);
    if (d->anchors.size() > 1 && d->viewer) {
        std::vector<osg::Vec3d> ring = d->anchors;
        ring.push_back(place);
        text += QLatin1Char('\n') + AxRingSizeText(ring, *d->viewer->Scene().MapSRS());
    }
    ShowBesideCursor(lngLatPos, text);
}

void CAx3DGeometry::slotDoubleClicked(osg::Vec3d lngLatPos, osg::Vec3d worldCoordPos)
{
    AxBlockAdapter::slotDoubleClicked(lngLatPos, worldCoordPos);
}

// Judging

AxVerdict CAx3DGeometry::JudgeShape()
{
    std::vector<osg::Vec3d>& anchors = d->anchors;
    if (IsSamePlace(anchors[anchors.size() - 1], anchors[anchors.size() - 2])) {
        anchors.pop_back();
        if (d->anchorEditor)
            d->anchorEditor->Update();
        if (static_cast<int>(anchors.size()) < ShapeKind().leastVertices)
            return AxBlockRefusal::TooFewPoints(BoxParent());
    }
    return Crosses(anchors) ? AxBlockRefusal::Invalid(BoxParent()) : AxVerdict::Accepted;
}

QString CAx3DGeometry::ShapeFault()
{
    std::vector<osg::Vec3d> anchors = d->anchors;
    if (IsSamePlace(anchors[anchors.size() - 1], anchors[anchors.size() - 2]))
        anchors.pop_back();
    if (static_cast<int>(anchors.size()) < ShapeKind().leastVertices)
        return AxBlockRefusal::TooFewPointsText();
    return Crosses(anchors) ? AxBlockRefusal::InvalidText() : QString();
}

// The polygon block on the map; its dialogs are in a file of their own.
#include "interaction/CAx3DGeometry.h"
#include "interaction/AxBlockArea.h"
#include "interaction/AxBlockColors.h"
#include "interaction/AxBlockRefusal.h"
#include "interaction/AxRingInPlane.h"
#include "interaction/CAxHandleAdapterEditor.h"
#include "viewer/CAxEarthViewer.h"

#include <AxBaseUI/AxPolygonTest.h>

#include <cmath>

namespace {
// Degrees within which the finishing double click counts as on the last corner.
constexpr double sameDegrees = 1e-8;

bool IsSamePlace(const osg::Vec3d& a, const osg::Vec3d& b)
{
    return std::abs(a.x() - b.x()) < sameDegrees && std::abs(a.y() - b.y()) < sameDegrees;
}
} // namespace

CAx3DGeometry::CAx3DGeometry(CAxEarthViewer* earthViewer, QObject* parent)
    : CAxHandleAdapter(earthViewer, parent)
{
    blockType = CAxBlock::PolygonBlock;
    const AxBlockColors colors = AxBlockColors::OfBlock(false);
    edgeColor = colors.edge;
    fillColor = colors.fill;
    JoinScene();
}

CAx3DGeometry::~CAx3DGeometry() = default;

double CAx3DGeometry::GetArea()
{
    return viewer && viewer->getSRS() ? AxBlockArea(GetAnchor(), *viewer->getSRS()) : 0.0;
}

void CAx3DGeometry::SetAdapterVisible(bool isVisible, QString)
{
    ShowParts(isVisible);
}

// Drawing

void CAx3DGeometry::slotPicked(osg::Vec3d lngLatPos, osg::Vec3d worldCoordPos)
{
    if (operation != OperationDrawing || !IsOverGround(lngLatPos, worldCoordPos))
        return;
    anchors.push_back(lngLatPos);
    if (anchorEditor)
        anchorEditor->Update();
    else
        CreateEditor();
    DropRubberBand();
    if (anchors.size() > 1)
        updateAdapter();
}

void CAx3DGeometry::slotMoving(osg::Vec3d lngLatPos, osg::Vec3d worldCoordPos)
{
    if (operation != OperationDrawing || anchors.empty() || !IsOverGround(lngLatPos, worldCoordPos))
        return;
    DrawRubberBand({anchors.front(), lngLatPos, anchors.back()}, false);
    ShowRunningLength(lngLatPos);
}

void CAx3DGeometry::slotDoubleClicked(osg::Vec3d lngLatPos, osg::Vec3d worldCoordPos)
{
    CAxHandleAdapter::slotDoubleClicked(lngLatPos, worldCoordPos);
}

void CAx3DGeometry::HandleEnd()
{
    ShowFinished();
}

void CAx3DGeometry::UpdateColor()
{
    PaintByRoutes();
}

void CAx3DGeometry::ImportGeometry(const std::vector<osg::Vec3d>& points, bool enableEditor)
{
    TakeVertices(points, enableEditor);
}

void CAx3DGeometry::ClearPoints()
{
    DropVertices();
}

// Judging

int CAx3DGeometry::CheckGeometry()
{
    if (!featureNode)
        return -1;
    const Running self(this);
    if (anchors.size() < 3)
        return AxBlockRefusal::TooFewPoints(viewer);
    if (IsSamePlace(anchors[anchors.size() - 1], anchors[anchors.size() - 2])) {
        anchors.pop_back();
        if (anchorEditor)
            anchorEditor->Update();
        if (anchors.size() < 3)
            return AxBlockRefusal::TooFewPoints(viewer);
    }
    std::vector<QPointF> ring = AxRingInPlane(anchors);
    ring.push_back(ring.front());
    if (isSelfIntersection(ring))
        return AxBlockRefusal::Invalid(viewer);
    if (!viewer)
        return 1;
    const QStringList zones = AxZonesUnder(*viewer, anchors);
    if (!zones.isEmpty())
        return AxBlockRefusal::OverZones(viewer, zones);
    viewer->IntersectionModelLayer(this);
    return 1;
}

void CAx3DGeometry::ResponseHandlePointMoved(osg::Vec3d, osg::Vec3d)
{
    EndEdit();
}

void CAx3DGeometry::ResponseHandleMoved(osg::Vec3d, osg::Vec3d)
{
    EndEdit();
}

// The polygon block on the map; its dialogs are in a file of their own.
#include "interaction/CAx3DGeometry.h"
#include "analysis/CAxAncillaryProcess.h"
#include "interaction/AxBlockArea.h"
#include "interaction/AxNotice.h"
#include "interaction/AxRingInPlane.h"
#include "interaction/CAxEarthManipulator.h"
#include "interaction/CAxHandleAdapterEditor.h"
#include "viewer/CAxEarthViewer.h"

#include <AxBaseUI/AxPolygonTest.h>

#include <osgEarth/MapNode>
#include <osgEarthAnnotation/LabelNode>

#include <algorithm>
#include <cmath>

namespace {
osg::Vec4f Rgba(int red, int green, int blue, int alpha)
{
    constexpr float full = 255.0f;
    return {static_cast<float>(red) / full, static_cast<float>(green) / full, static_cast<float>(blue) / full,
            static_cast<float>(alpha) / full};
}

const osg::Vec4f freeFill = Rgba(49, 155, 208, 102);
const osg::Vec4f freeEdge = Rgba(49, 155, 208, 255);
const osg::Vec4f routedFill = Rgba(88, 0, 176, 102);
const osg::Vec4f routedEdge = Rgba(88, 0, 176, 255);
constexpr float lineWidth = 2.0f;

// Degrees within which the finishing double click counts as on the last corner.
constexpr double sameDegrees = 1e-8;

bool IsSamePlace(const osg::Vec3d& a, const osg::Vec3d& b)
{
    return std::abs(a.x() - b.x()) < sameDegrees && std::abs(a.y() - b.y()) < sameDegrees;
}

bool IsOverGround(const osg::Vec3d& lngLatPos, const osg::Vec3d& worldCoordPos)
{
    return lngLatPos.valid() && worldCoordPos.valid() && worldCoordPos != osg::Vec3d();
}
} // namespace

CAx3DGeometry::CAx3DGeometry(CAxEarthViewer* earthViewer, QObject* parent)
    : CAxHandleAdapter(earthViewer, parent)
{
    blockType = CAxBlock::PolygonBlock;
    edgeColor = freeEdge;
    fillColor = freeFill;
    JoinScene();
}

CAx3DGeometry::~CAx3DGeometry() = default;

double CAx3DGeometry::GetArea()
{
    return viewer && viewer->getSRS() ? AxBlockArea(GetAnchor(), *viewer->getSRS()) : 0.0;
}

void CAx3DGeometry::SetAdapterVisible(bool isVisible, QString)
{
    // Nobody goes on dragging what is not seen.
    if (!isVisible && operation == OperationMovePoint)
        CancelHandle();
    visible = isVisible;
    SetFeatureNodeVisible(visible);
    SetNameVisible(visible);
    SetLockBlock(lock, visible && lock);
    if (anchorEditor)
        anchorEditor->setNodeMask(visible ? ~0u : 0u);
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
    dropRubberBand();
    if (anchors.size() > 1)
        updateAdapter();
}

void CAx3DGeometry::slotMoving(osg::Vec3d lngLatPos, osg::Vec3d worldCoordPos)
{
    if (operation != OperationDrawing || anchors.empty() || !IsOverGround(lngLatPos, worldCoordPos))
        return;
    dropRubberBand();
    osgEarth::Symbology::Geometry band;
    band.push_back(anchors.front());
    band.push_back(lngLatPos);
    band.push_back(anchors.back());
    const osg::ref_ptr<osg::Geometry> line =
        CreateGeom(edgeColor, osg::Vec4f(), lineWidth, band, false, false);
    if (line) {
        line->setName("Stipple");
        featureNode->addDrawable(line);
    }
    ShowRunningLength(lngLatPos);
}

void CAx3DGeometry::dropRubberBand()
{
    if (osg::Drawable* band = FindDrawable("Stipple"))
        featureNode->removeDrawable(band);
}

void CAx3DGeometry::slotDoubleClicked(osg::Vec3d lngLatPos, osg::Vec3d worldCoordPos)
{
    CAxHandleAdapter::slotDoubleClicked(lngLatPos, worldCoordPos);
}

void CAx3DGeometry::HandleEnd()
{
    dropRubberBand();
    UpdateColor();
    DrawNameLabel();
    SetAnchorEditorEnabled(true);
}

void CAx3DGeometry::updateAdapter()
{
    if (operation != OperationDrawing)
        dropRubberBand();
    CAxHandleAdapter::updateAdapter();
}

void CAx3DGeometry::UpdateColor()
{
    const bool hasRoutes = !tasks.isEmpty();
    edgeColor = hasRoutes ? routedEdge : freeEdge;
    fillColor = hasRoutes ? routedFill : freeFill;
    updateAdapter();
}

void CAx3DGeometry::ImportGeometry(const std::vector<osg::Vec3d>& points, bool enableEditor)
{
    if (!std::all_of(points.begin(), points.end(), [](const osg::Vec3d& point) { return point.valid(); }))
        return;
    anchors = points;
    updateAdapter();
    DrawNameLabel();
    if (enableEditor)
        SetAnchorEditorEnabled(true);
}

void CAx3DGeometry::ClearPoints()
{
    anchors.clear();
    SetAnchorEditorEnabled(false);
    updateAdapter();
}

// Judging

int CAx3DGeometry::reject(const QString& text)
{
    AxShowNotice(viewer, tr("Block Information"), text);
    constexpr int rejectedAloud = -2;
    return rejectedAloud;
}

int CAx3DGeometry::CheckGeometry()
{
    if (!featureNode)
        return -1;
    const Running self(this);
    const QString tooFew = tr("Point count of block is less than 3.");
    if (anchors.size() < 3)
        return reject(tooFew);
    if (IsSamePlace(anchors[anchors.size() - 1], anchors[anchors.size() - 2])) {
        anchors.pop_back();
        if (anchorEditor)
            anchorEditor->Update();
        if (anchors.size() < 3)
            return reject(tooFew);
    }
    std::vector<QPointF> ring = AxRingInPlane(anchors);
    ring.push_back(ring.front());
    if (isSelfIntersection(ring))
        return reject(tr("Block is invalid."));
    if (!viewer)
        return 1;
    QStringList zones;
    CAxAncillaryProcess* zoneProcess = viewer->GetAncillaryProcess();
    if (zoneProcess && zoneProcess->Intersection(GetGeometry().get(), zones, false))
        return reject(tr("The current measurement area contains information no-fly area."));
    viewer->IntersectionModelLayer(this);
    return 1;
}

void CAx3DGeometry::ResponseHandlePointMoved(osg::Vec3d, osg::Vec3d)
{
    const Running self(this);
    if (_ReponseHandleMove() && self.IsWanted())
        DrawNameLabel();
}

void CAx3DGeometry::ResponseHandleMoved(osg::Vec3d, osg::Vec3d)
{
    const Running self(this);
    if (_ReponseHandleMove() && self.IsWanted())
        DrawNameLabel();
}

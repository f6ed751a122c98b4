// The part of the map object that the kinds of block have in common.
#include "interaction/AxBlockColors.h"
#include "interaction/CAxHandleAdapter.h"
#include "interaction/CAxHandleAdapterEditor.h"

#include <algorithm>

namespace {
constexpr float bandWidth = 2.0f;
} // namespace

bool CAxHandleAdapter::IsOverGround(const osg::Vec3d& lngLatPos, const osg::Vec3d& worldCoordPos)
{
    return lngLatPos.valid() && worldCoordPos.valid() && worldCoordPos != osg::Vec3d();
}

void CAxHandleAdapter::DrawRubberBand(const std::vector<osg::Vec3d>& points, bool closed)
{
    DropRubberBand();
    osgEarth::Symbology::Geometry band;
    for (const osg::Vec3d& point : points)
        band.push_back(point);
    const osg::ref_ptr<osg::Geometry> drawn =
        CreateGeom(edgeColor, closed ? fillColor : osg::Vec4f(), bandWidth, band, closed, closed);
    if (!drawn)
        return;
    drawn->setName("Stipple");
    featureNode->addDrawable(drawn);
}

void CAxHandleAdapter::DropRubberBand()
{
    if (osg::Drawable* band = FindDrawable("Stipple"))
        featureNode->removeDrawable(band);
}

void CAxHandleAdapter::ShowFinished()
{
    DropRubberBand();
    UpdateColor();
    DrawNameLabel();
    SetAnchorEditorEnabled(true);
}

void CAxHandleAdapter::ShowParts(bool shown)
{
    // Nobody goes on dragging what is not seen.
    if (!shown && operation == OperationMovePoint)
        CancelHandle();
    visible = shown;
    SetFeatureNodeVisible(visible);
    SetNameVisible(visible);
    SetLockBlock(lock, visible && lock);
    if (anchorEditor)
        anchorEditor->setNodeMask(visible ? ~0u : 0u);
}

void CAxHandleAdapter::PaintByRoutes()
{
    const AxBlockColors colors = AxBlockColors::OfBlock(!tasks.isEmpty());
    edgeColor = colors.edge;
    fillColor = colors.fill;
    updateAdapter();
}

bool CAxHandleAdapter::TakeVertices(const std::vector<osg::Vec3d>& points, bool enableEditor)
{
    if (!std::all_of(points.begin(), points.end(), [](const osg::Vec3d& point) { return point.valid(); }))
        return false;
    GetAnchor() = points;
    updateAdapter();
    DrawNameLabel();
    if (lockNode->getNodeMask() != 0)
        DrawBlockLock();
    if (enableEditor)
        SetAnchorEditorEnabled(true);
    return true;
}

void CAxHandleAdapter::DropVertices()
{
    GetAnchor().clear();
    SetAnchorEditorEnabled(false);
    updateAdapter();
}

void CAxHandleAdapter::EndEdit()
{
    const Running self(this);
    if (_ReponseHandleMove() && self.IsWanted())
        DrawNameLabel();
}

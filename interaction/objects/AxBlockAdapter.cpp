#include "interaction/objects/AxBlockAdapter.h"
#include "interaction/editing/CAxHandleAdapterEditor.h"
#include "interaction/objects/AxBlockRefusal.h"
#include "interaction/objects/AxHandleAdapterState.h"
#include "interaction/objects/AxZonesUnder.h"
#include "scene/AxObjectBook.h"
#include "scene/AxScene.h"
#include "scene/shape/AxBlockArea.h"
#include "scene/shape/AxBlockColors.h"

#include <QGraphicsView>

#include <algorithm>

namespace {
constexpr float bandWidth = 2.0f;
constexpr int leastOfAnArea = 3;
} // namespace

AxBlockAdapter::AxBlockAdapter(CAxEarthViewer* viewer, QObject* parent, CAxBlock::EBlockType type)
    : CAxHandleAdapter(viewer, parent)
{
    SetBlockType(type);
    const AxBlockColors colors = AxBlockColors::OfBlock(false);
    SetColors(colors.edge, colors.fill);
    JoinScene();
}

AxBlockAdapter::~AxBlockAdapter() = default;

// Judging

int AxBlockAdapter::CheckGeometry()
{
    const Running self(this);
    return AxCodeOf(Judge());
}

AxVerdict AxBlockAdapter::Judge()
{
    if (!d->featureNode)
        return AxVerdict::Impossible;
    if (ShapeKind().IsClosed() && static_cast<int>(d->anchors.size()) < leastOfAnArea)
        return AxBlockRefusal::TooFewPoints(BoxParent());
    const AxVerdict shape = JudgeShape();
    if (shape != AxVerdict::Accepted || !d->viewer)
        return shape;
    const QStringList zones = AxZonesUnder(*d->viewer, Outline());
    if (!zones.isEmpty())
        return AxBlockRefusal::OverZones(*d->viewer, zones);
    d->viewer->Objects().IntersectModelLayers(this);
    return AxVerdict::Accepted;
}

QString AxBlockAdapter::Fault()
{
    if (ShapeKind().IsClosed() && static_cast<int>(d->anchors.size()) < leastOfAnArea)
        return AxBlockRefusal::TooFewPointsText();
    const QString ofShape = ShapeFault();
    if (!ofShape.isEmpty() || !d->viewer)
        return ofShape;
    const QStringList zones = AxZonesUnder(*d->viewer, Outline());
    return zones.isEmpty() ? QString()
                           : AxBlockRefusal::OverZonesText() + QLatin1Char('\n') + AxZoneDetails(zones);
}

double AxBlockAdapter::GetArea()
{
    const osgEarth::SpatialReference* srs = d->viewer ? d->viewer->Scene().MapSRS() : nullptr;
    return srs && IsOutlineClosed() ? AxBlockArea(Outline(), *srs) : 0.0;
}

QString AxBlockAdapter::ShapeFault()
{
    return {};
}

// Drawing

bool AxBlockAdapter::IsOverGround(const osg::Vec3d& lngLatPos, const osg::Vec3d& worldCoordPos)
{
    return lngLatPos.valid() && worldCoordPos.valid() && worldCoordPos != osg::Vec3d();
}

osg::Vec3d AxBlockAdapter::Snapped(const osg::Vec3d& lngLatPos)
{
    return d->viewer ? d->drawingSnap.Find(*d->viewer, *this, lngLatPos) : lngLatPos;
}

void AxBlockAdapter::DrawRubberBand(const std::vector<osg::Vec3d>& points, bool closed)
{
    DropRubberBand();
    osgEarth::Symbology::Geometry band;
    for (const osg::Vec3d& point : points)
        band.push_back(point);
    const osg::ref_ptr<osg::Geometry> drawn =
        CreateGeom(d->edgeColor, closed ? d->fillColor : osg::Vec4f(), bandWidth, band, closed, closed);
    if (!drawn)
        return;
    drawn->setName("Stipple");
    d->featureNode->addDrawable(drawn);
}

void AxBlockAdapter::ShowBesideCursor(const osg::Vec3d& lngLatPos, const QString& text)
{
    if (d->viewer)
        d->cursorLabel.Show(d->viewer->Scene(), d->style, lngLatPos, text);
}

void AxBlockAdapter::ShowHandles()
{
    if (d->anchorEditor)
        d->anchorEditor->Update();
    else
        CreateEditor();
}

void AxBlockAdapter::HandleEnd()
{
    DropRubberBand();
    UpdateColor();
    DrawNameLabel();
    SetAnchorEditorEnabled(true);
}

// Shown, coloured, edited

void AxBlockAdapter::SetAdapterVisible(bool visible, QString)
{
    // Nobody goes on dragging what is not seen.
    if (!visible)
        GiveUpEdit();
    d->visible = visible;
    SetFeatureNodeVisible(visible);
    SetNameVisible(visible);
    SetLockBlock(d->lock, visible && d->lock);
    if (d->anchorEditor)
        d->anchorEditor->setNodeMask(visible ? ~0u : 0u);
}

void AxBlockAdapter::UpdateColor()
{
    const AxBlockColors colors = AxBlockColors::OfBlock(!d->tasks.isEmpty());
    SetColors(colors.edge, colors.fill);
    updateAdapter();
}

void AxBlockAdapter::ImportGeometry(const std::vector<osg::Vec3d>& points, bool enableEditor)
{
    if (!std::all_of(points.begin(), points.end(), [](const osg::Vec3d& point) { return point.valid(); }))
        return;
    GetAnchor() = points;
    if (d->anchorEditor)
        d->anchorEditor->Update();
    updateAdapter();
    DrawNameLabel();
    if (d->lockNode->getNodeMask() != 0)
        DrawBlockLock();
    if (enableEditor)
        SetAnchorEditorEnabled(true);
}

void AxBlockAdapter::ClearPoints()
{
    GetAnchor().clear();
    SetAnchorEditorEnabled(false);
    updateAdapter();
}

void AxBlockAdapter::ResponseHandleMoved(osg::Vec3d, osg::Vec3d)
{
    _ReponseHandleMove();
}

QWidget* AxBlockAdapter::BoxParent() const
{
    return d->viewer ? d->viewer->Widget() : nullptr;
}

// The part of the map object that keeps its record, its vertices and its nodes.
#include "interaction/objects/CAxHandleAdapter.h"
#include "interaction/editing/CAxHandleAdapterEditor.h"
#include "interaction/objects/AxHandleAdapterState.h"
#include "interaction/objects/AxShapeFactories.h"
#include "scene/AxObjectBook.h"
#include "scene/AxScene.h"
#include "scene/base/AxLongitudes.h"
#include "scene/shape/AxBlockColors.h"

#include <AxAlgorthm/AxUniqueID.h>
#include <AxData/CAxBlockManager.h>

#include <osg/BoundingBox>
#include <osgEarth/MapNode>

#include <QGraphicsView>

#include <algorithm>
#include <numeric>

namespace {
constexpr float edgeWidth = 2.0f; // pixels
constexpr float selectedWidth = 4.0f;

void TakeOutOfScene(osg::Node* node)
{
    while (node && node->getNumParents() > 0)
        node->getParent(0)->removeChild(node);
}
} // namespace

AxEditedShapeRef::AxEditedShapeRef(CAxHandleAdapter* object) : alive(object), shape(object) {}

CAxHandleAdapter::Running::Running(CAxHandleAdapter* object) : adapter(object)
{
    ++object->d->running;
}

CAxHandleAdapter::Running::~Running()
{
    if (adapter && --adapter->d->running == 0 && adapter->d->leaving)
        adapter->deleteLater();
}

bool CAxHandleAdapter::Running::IsWanted() const
{
    return adapter && !adapter->IsLeaving();
}

bool CAxHandleAdapter::Running::IsGone() const
{
    return !adapter;
}

CAxHandleAdapter::CAxHandleAdapter(CAxEarthViewer* viewer, QObject* parent)
    : QObject(parent), d(std::make_unique<AxHandleAdapterState>())
{
    d->handleID = CreateUniqueID();
    d->featureNode = new osg::Geode;
    d->earthViewer = viewer;
    d->viewer = AxPartsOf(viewer);
    prepareDrawing();
    if (!d->viewer)
        return;
    d->drawGroup = d->viewer->Scene().DrawGroup();
    const QObject* host = d->viewer->Widget();
    connect(this, SIGNAL(signalHandlePickEnded(EToolType)), host, SIGNAL(signalHandlePickEnded(EToolType)));
    connect(this, SIGNAL(signalHandleEnd(QString, bool)), host, SLOT(slotHandleEnd(QString, bool)));
    connect(this, SIGNAL(signalAddMarkPoint(QString, QString)), host,
            SIGNAL(signalAddMarkPoint(QString, QString)));
    connect(this, SIGNAL(signalDelMarkPoint(QString, QString)), host,
            SIGNAL(signalDelMarkPoint(QString, QString)));
    connect(this, SIGNAL(signalIntersection(QString, QStringList)), host,
            SIGNAL(signalIntersection(QString, QStringList)));
}

CAxHandleAdapter::~CAxHandleAdapter()
{
    leaveScene();
    if (d->viewer)
        d->viewer->Objects().Forget(this);
}

void CAxHandleAdapter::Leave()
{
    if (d->running == 0) {
        delete this;
        return;
    }
    // One of its slots is still running; whoever looks meanwhile finds it nowhere.
    d->leaving = true;
    leaveScene();
    if (d->viewer)
        d->viewer->Objects().Forget(this);
}

void CAxHandleAdapter::JoinScene()
{
    osg::Group* group = d->viewer ? d->viewer->Scene().ObjectGroup() : nullptr;
    if (group && !group->containsNode(d->featureNode))
        group->addChild(d->featureNode);
}

void CAxHandleAdapter::leaveScene()
{
    DisconnectMouseEvent();
    d->cursorLabel.Hide();
    SetAnchorEditorEnabled(false);
    for (osg::Node* node :
         {static_cast<osg::Node*>(d->featureNode.get()), static_cast<osg::Node*>(d->nameLabel.get()),
          static_cast<osg::Node*>(d->lockNode.get())})
        TakeOutOfScene(node);
}

osg::ref_ptr<osgEarth::Symbology::Geometry> CAxHandleAdapter::GetGeometry()
{
    osg::ref_ptr<osgEarth::Symbology::Geometry> geometry =
        osgEarth::Symbology::Geometry::create(osgEarth::Symbology::Geometry::TYPE_POLYGON, &GetAnchor());
    return geometry;
}

CAxEarthViewer* CAxHandleAdapter::GetViewer() const
{
    return d->viewer ? d->earthViewer : nullptr;
}

AxViewerParts* CAxHandleAdapter::Parts() const
{
    return d->viewer;
}

AxShapeKind CAxHandleAdapter::ShapeKind() const
{
    return AxShapeKindOf(d->blockType);
}

std::vector<osg::Vec3d> CAxHandleAdapter::Outline()
{
    return GetGeometry()->asVector();
}

bool CAxHandleAdapter::IsOutlineClosed()
{
    return ShapeKind().IsClosed();
}

std::vector<osg::Vec3d> CAxHandleAdapter::InnerLine()
{
    return {};
}

std::vector<osg::Vec3d>& CAxHandleAdapter::GetAnchor()
{
    return d->anchors;
}

QString CAxHandleAdapter::GetHandleID() const
{
    return d->handleID;
}

void CAxHandleAdapter::SetHandleID(const QString& id)
{
    d->handleID = id;
}

CAxBlock::EBlockType CAxHandleAdapter::GetBlockType() const
{
    return d->blockType;
}

void CAxHandleAdapter::SetBlockType(CAxBlock::EBlockType type)
{
    d->blockType = type;
}

void CAxHandleAdapter::SetColors(const osg::Vec4f& edge, const osg::Vec4f& fill)
{
    d->edgeColor = edge;
    d->fillColor = fill;
}

EHandleOperation CAxHandleAdapter::GetHandleOperation() const
{
    return d->operation;
}

int CAxHandleAdapter::GetEditIndex() const
{
    return d->editIndex;
}

bool CAxHandleAdapter::IsLock() const
{
    return d->lock;
}

bool CAxHandleAdapter::IsVisible() const
{
    return d->visible;
}

bool CAxHandleAdapter::IsFilter() const
{
    return d->filter;
}

bool CAxHandleAdapter::IsSegment() const
{
    return d->segment;
}

bool CAxHandleAdapter::IsLeaving() const
{
    return d->leaving;
}

osg::Geode* CAxHandleAdapter::GetFeatureNode() const
{
    return d->featureNode;
}

CAxHandleAdapterEditor* CAxHandleAdapter::GetAnchorEditor() const
{
    return d->anchorEditor;
}

osgEarth::Annotation::LabelNode* CAxHandleAdapter::GetNameLabel() const
{
    return d->nameLabel;
}

osg::Group* CAxHandleAdapter::GetLockNode() const
{
    return d->lockNode;
}

CAxBlock* CAxHandleAdapter::GetContainedBlock() const
{
    return CAxBlockManager::instance().GetBlock(d->handleID);
}

// Shown, hidden, locked

void CAxHandleAdapter::SetFeatureNodeVisible(bool featureVisible)
{
    d->featureNode->setNodeMask(featureVisible ? ~0u : 0u);
}

void CAxHandleAdapter::SetNameVisible(bool nameVisible)
{
    if (d->nameLabel)
        d->nameLabel->setNodeMask(nameVisible ? ~0u : 0u);
}

void CAxHandleAdapter::SetLockBlock(bool locked, bool drawLock)
{
    if (!d->lockNode)
        return;
    d->lock = locked;
    d->lockNode->setNodeMask(drawLock ? ~0u : 0u);
    if (drawLock)
        DrawBlockLock();
}

bool CAxHandleAdapter::IsSelectedAmongSeveral() const
{
    return d->selectedAmongSeveral;
}

void CAxHandleAdapter::SetSelectedAmongSeveral(bool selected)
{
    if (std::exchange(d->selectedAmongSeveral, selected) != selected && !d->leaving)
        updateAdapter();
}

bool CAxHandleAdapter::HandleIsPicked(osg::Node* node)
{
    if (!node)
        return false;
    const auto isOwn = [this](const osg::Node* above) {
        return above == d->featureNode || above == d->nameLabel || above == d->lockNode ||
               above == d->anchorEditor.get() ||
               std::find(d->containedNodes.begin(), d->containedNodes.end(), above) !=
                   d->containedNodes.end();
    };
    const osg::NodePathList paths = node->getParentalNodePaths();
    return std::any_of(paths.begin(), paths.end(), [&isOwn](const osg::NodePath& path) {
        return std::any_of(path.begin(), path.end(), isOwn);
    });
}

void CAxHandleAdapter::ClearFeatureNodeContained()
{
    d->containedNodes.clear();
    d->containedLabels.clear();
}

// Vertices

CAxVector3D CAxHandleAdapter::GetGravityLatLng()
{
    const std::vector<osg::Vec3d>& points = GetAnchor();
    if (!d->featureNode || points.empty())
        return {};
    osg::BoundingBoxd box;
    for (const osg::Vec3d& point : points)
        box.expandBy(AxLongitudes::NearestTo(points.front().x(), point.x()), point.y(), 0.0);
    d->gravity = CAxVector3D(box.center().y(), AxLongitudes::Normalized(box.center().x()), 0.0);
    return d->gravity;
}

bool CAxHandleAdapter::GetBlockElevation()
{
    std::vector<osg::Vec3d>& points = GetAnchor();
    d->elevations.clear();
    if (points.empty() || !d->viewer)
        return false;
    QList<osg::Vec3d> sampled;
    sampled.reserve(static_cast<int>(points.size()));
    std::copy(points.begin(), points.end(), std::back_inserter(sampled));
    d->viewer->Scene().GetElevations(sampled);
    std::copy(sampled.begin(), sampled.end(), points.begin());
    for (const osg::Vec3d& point : qAsConst(sampled))
        d->elevations += point.z();
    return true;
}

bool CAxHandleAdapter::GetElevationMinMax(double& min, double& max) const
{
    min = 999999.0;
    max = -999999.0;
    for (const double elevation : d->elevations) {
        min = std::min(min, elevation);
        max = std::max(max, elevation);
    }
    return !d->elevations.isEmpty();
}

bool CAxHandleAdapter::GetElevationsAverage(double& average) const
{
    if (d->elevations.isEmpty())
        return false;
    average = std::accumulate(d->elevations.begin(), d->elevations.end(), 0.0) / d->elevations.size();
    return true;
}

void CAxHandleAdapter::update()
{
    if (!GeometryModifyed())
        return;
    updateAdapter();
    if (d->viewer && !d->leaving)
        d->viewer->Objects().SetCurrent(this);
}

void CAxHandleAdapter::updateAdapter()
{
    if (d->operation != OperationDrawing)
        DropRubberBand();
    while (osg::Drawable* drawn = FindDrawable("Feature"))
        d->featureNode->removeDrawable(drawn);
    const osg::Vec4f edge = d->selectedAmongSeveral ? AxBlockColors::SelectedEdge() : d->edgeColor;
    const float width = d->selectedAmongSeveral ? selectedWidth : edgeWidth;
    const osg::ref_ptr<osg::Geometry> shape = CreateOwnGeom(edge, d->fillColor, width);
    if (!shape)
        return;
    for (const osg::ref_ptr<osg::Geometry>& drawn : {shape, CreateInnerGeom(edge, 1.0f)}) {
        if (!drawn)
            continue;
        drawn->setName("Feature");
        d->featureNode->addDrawable(drawn);
    }
    // A name left behind by a drag would be taken for that of a neighbour.
    if (const auto place = d->nameLabel ? namePlace() : std::nullopt)
        d->nameLabel->setPosition(*place);
}

// Handles of the vertices

void CAxHandleAdapter::CreateEditor()
{
    if (d->anchorEditor || !d->viewer || !d->drawGroup)
        return;
    d->anchorEditor = new CAxHandleAdapterEditor(this, d->viewer->Scene().MapNode(), 1, true,
                                                 CAxDragger::DragSphere, osg::Vec3d());
    d->editorMoves = connect(d->anchorEditor.get(), SIGNAL(PositionChanged(double, double, double, int)),
                             this, SLOT(slotPointMoved(double, double, double, int)));
    d->drawGroup->addChild(d->anchorEditor);
}

void CAxHandleAdapter::SetAnchorEditorEnabled(bool enabled)
{
    // Mark points are dragged by their icons, and there may be thousands.
    if (!enabled || d->lock || !d->tasks.isEmpty() || GetAnchor().empty() ||
        d->blockType == CAxBlock::MarkPointBlock) {
        disconnect(d->editorMoves);
        TakeOutOfScene(d->anchorEditor.get());
        d->anchorEditor = nullptr;
        return;
    }
    if (GetBlockElevation())
        updateAdapter();
    if (d->anchorEditor)
        d->anchorEditor->Update();
    else
        CreateEditor();
    if (d->anchorEditor)
        d->anchorEditor->ResetClampAlt();
}

// What only some kinds of object do

void CAxHandleAdapter::ImportGeometry(const std::vector<osg::Vec3d>&, bool) {}
void CAxHandleAdapter::HandleEnd() {}
void CAxHandleAdapter::UpdateColor() {}
void CAxHandleAdapter::SetWidth(double, double) {}
void CAxHandleAdapter::SetVideoRadius(int) {}
void CAxHandleAdapter::SetVideoPosition(const osg::Vec3d&) {}
void CAxHandleAdapter::RemoveMarkerPoint(QString) {}
void CAxHandleAdapter::SetMarkerPointName(const QStringList&) {}
QStringList CAxHandleAdapter::GetMarkerPointName()
{
    return {};
}

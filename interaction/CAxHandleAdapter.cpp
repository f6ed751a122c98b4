// The part of the map object that keeps its record, its routes and its nodes.
#include "interaction/CAxHandleAdapter.h"
#include "interaction/AxBlockColors.h"
#include "interaction/AxBlockCommands.h"
#include "interaction/AxLongitudes.h"
#include "interaction/CAxEarthManipulator.h"
#include "interaction/CAxHandleAdapterEditor.h"
#include "mission/CAxTaskPolygon.h"
#include "viewer/CAxEarthViewer.h"

#include <AxAlgorthm/AxUniqueID.h>
#include <AxData/CAxBlockManager.h>
#include <AxData/CAxControl.h>

#include <osg/BoundingBox>
#include <osgEarth/MapNode>
#include <osgEarthAnnotation/LabelNode>

#include <QUndoStack>

#include <algorithm>
#include <cmath>
#include <numeric>

namespace {
void TakeOutOfScene(osg::Node* node)
{
    while (node && node->getNumParents() > 0)
        node->getParent(0)->removeChild(node);
}

QList<QPointF> RingOf(const std::vector<osg::Vec3d>& points)
{
    QList<QPointF> ring;
    ring.reserve(static_cast<int>(points.size()));
    for (const osg::Vec3d& point : points)
        ring += QPointF(point.x(), point.y());
    return ring;
}

// QPointF compares with a tolerance of its own.
bool IsSame(const QList<QPointF>& a, const QList<QPointF>& b)
{
    return std::equal(a.begin(), a.end(), b.begin(), b.end(), [](const QPointF& p, const QPointF& q) {
        return osg::Vec2d(p.x(), p.y()) == osg::Vec2d(q.x(), q.y());
    });
}
} // namespace

CAxHandleAdapter::Running::Running(CAxHandleAdapter* object) : adapter(object)
{
    ++object->running;
}

CAxHandleAdapter::Running::~Running()
{
    if (adapter && --adapter->running == 0 && adapter->leaving)
        adapter->deleteLater();
}

bool CAxHandleAdapter::Running::IsWanted() const
{
    return adapter && !adapter->leaving;
}

CAxHandleAdapter::CAxHandleAdapter(CAxEarthViewer* earthViewer, QObject* parent)
    : QObject(parent), viewer(earthViewer), featureNode(new osg::Geode), handleID(CreateUniqueID())
{
    prepareDrawing();
    if (!viewer)
        return;
    drawGroup = viewer->GetDrawNodeGroup();
    manipulator = viewer->getManipulator();
    connect(this, SIGNAL(signalHandlePickEnded(EToolType)), viewer, SIGNAL(signalHandlePickEnded(EToolType)));
    connect(this, SIGNAL(signalHandleEnd(QString, bool)), viewer, SLOT(slotHandleEnd(QString, bool)));
    connect(this, SIGNAL(signalAddMarkPoint(QString, QString)), viewer,
            SIGNAL(signalAddMarkPoint(QString, QString)));
    connect(this, SIGNAL(signalDelMarkPoint(QString, QString)), viewer,
            SIGNAL(signalDelMarkPoint(QString, QString)));
    connect(this, SIGNAL(signalIntersection(QString, QStringList)), viewer,
            SIGNAL(signalIntersection(QString, QStringList)));
}

CAxHandleAdapter::~CAxHandleAdapter()
{
    leaveScene();
    if (viewer)
        viewer->forget(this);
}

void CAxHandleAdapter::JoinScene()
{
    osg::Group* group = viewer ? viewer->GetGeomAdapterGroup() : nullptr;
    if (group && !group->containsNode(featureNode))
        group->addChild(featureNode);
}

void CAxHandleAdapter::leaveScene()
{
    DisconnectMouseEvent();
    HideRunningLength();
    SetAnchorEditorEnabled(false);
    for (osg::Node* node :
         {static_cast<osg::Node*>(featureNode.get()), static_cast<osg::Node*>(nameLabel.get()),
          static_cast<osg::Node*>(lockNode.get())})
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
    return viewer;
}

CAxBlock* CAxHandleAdapter::GetContainedBlock() const
{
    return CAxBlockManager::instance().GetBlock(handleID);
}

// Routes

CAxTaskPolygon* CAxHandleAdapter::GetTask(const QString& taskID) const
{
    const auto found = std::find_if(tasks.begin(), tasks.end(), [&taskID](const CAxTaskPolygon* task) {
        return task && task->GetTaskID() == taskID;
    });
    return found == tasks.end() ? nullptr : *found;
}

void CAxHandleAdapter::AddTask(CAxTaskPolygon* task)
{
    if (!task || tasks.contains(task))
        return;
    tasks += task;
    SetAnchorEditorEnabled(false);
    UpdateColor();
}

void CAxHandleAdapter::RemoveTask(const QString& taskID)
{
    if (tasks.removeOne(GetTask(taskID)))
        UpdateColor();
}

void CAxHandleAdapter::RemoveAllTask()
{
    if (tasks.isEmpty())
        return;
    tasks.clear();
    UpdateColor();
}

CAxVector3D CAxHandleAdapter::GetTaskLingPosition(const QString& taskID) const
{
    const CAxTaskPolygon* task = GetTask(taskID);
    return task ? task->GetHomePoint() : CAxVector3D();
}

void CAxHandleAdapter::SetTaskEntryPoint(int index, const QString& taskID)
{
    if (CAxTaskPolygon* task = GetTask(taskID))
        task->SetEntryPoint(index);
}

void CAxHandleAdapter::SetTaskLandingPosition(const CAxVector3D& position, const QString& taskID)
{
    if (CAxTaskPolygon* task = GetTask(taskID))
        task->SetHomePoint(position);
}

void CAxHandleAdapter::SetTaskLandingMethod(bool downhill, const QString& taskID)
{
    if (CAxTaskPolygon* task = GetTask(taskID))
        task->SetLandingMethod(downhill);
}

// Shown, hidden, locked

void CAxHandleAdapter::SetFeatureNodeVisible(bool featureVisible)
{
    featureNode->setNodeMask(featureVisible ? ~0u : 0u);
}

void CAxHandleAdapter::SetNameVisible(bool nameVisible)
{
    if (nameLabel)
        nameLabel->setNodeMask(nameVisible ? ~0u : 0u);
}

void CAxHandleAdapter::SetLockBlock(bool locked, bool drawLock)
{
    if (!lockNode)
        return;
    lock = locked;
    lockNode->setNodeMask(drawLock ? ~0u : 0u);
    if (drawLock)
        DrawBlockLock();
}

void CAxHandleAdapter::SetSelectedAmongSeveral(bool selected)
{
    if (std::exchange(selectedAmongSeveral, selected) != selected && !leaving)
        updateAdapter();
}

bool CAxHandleAdapter::HandleIsPicked(osg::Node* node)
{
    if (!node)
        return false;
    const auto isOwn = [this](const osg::Node* above) {
        return above == featureNode || above == nameLabel || above == lockNode ||
               above == anchorEditor.get() ||
               std::find(containedNodes.begin(), containedNodes.end(), above) != containedNodes.end();
    };
    const osg::NodePathList paths = node->getParentalNodePaths();
    return std::any_of(paths.begin(), paths.end(), [&isOwn](const osg::NodePath& path) {
        return std::any_of(path.begin(), path.end(), isOwn);
    });
}

void CAxHandleAdapter::ClearFeatureNodeContained()
{
    containedNodes.clear();
    containedLabels.clear();
}

// Vertices

CAxVector3D CAxHandleAdapter::GetGravityLatLng()
{
    const std::vector<osg::Vec3d>& points = GetAnchor();
    if (!featureNode || points.empty())
        return {};
    osg::BoundingBoxd box;
    for (const osg::Vec3d& point : points)
        box.expandBy(AxLongitudes::NearestTo(points.front().x(), point.x()), point.y(), 0.0);
    gravity = CAxVector3D(box.center().y(), AxLongitudes::Normalized(box.center().x()), 0.0);
    return gravity;
}

bool CAxHandleAdapter::GetBlockElevation()
{
    std::vector<osg::Vec3d>& points = GetAnchor();
    elevations.clear();
    if (points.empty() || !manipulator)
        return false;
    QList<osg::Vec3d> sampled;
    sampled.reserve(static_cast<int>(points.size()));
    std::copy(points.begin(), points.end(), std::back_inserter(sampled));
    manipulator->GetElevations(sampled, false);
    std::copy(sampled.begin(), sampled.end(), points.begin());
    for (const osg::Vec3d& point : qAsConst(sampled))
        elevations += point.z();
    return true;
}

bool CAxHandleAdapter::GetElevationMinMax(double& min, double& max) const
{
    min = 999999.0;
    max = -999999.0;
    for (const double elevation : elevations) {
        min = std::min(min, elevation);
        max = std::max(max, elevation);
    }
    return !elevations.isEmpty();
}

bool CAxHandleAdapter::GetElevationsAverage(double& average) const
{
    if (elevations.isEmpty())
        return false;
    average = std::accumulate(elevations.begin(), elevations.end(), 0.0) / elevations.size();
    return true;
}

bool CAxHandleAdapter::GeometryModifyed() const
{
    const CAxBlock* block = GetContainedBlock();
    // The base's accessor is virtual for subclasses that keep their vertices elsewhere.
    auto* self = const_cast<CAxHandleAdapter*>(this);
    return featureNode && (!block || !IsSame(RingOf(self->GetAnchor()), block->GetAnchor()));
}

void CAxHandleAdapter::update()
{
    if (!GeometryModifyed())
        return;
    updateAdapter();
    if (viewer && !leaving)
        viewer->_SetCurHandleAdapter(this);
}

void CAxHandleAdapter::updateAdapter()
{
    if (operation != OperationDrawing)
        DropRubberBand();
    if (osg::Drawable* drawn = FindDrawable("Feature"))
        featureNode->removeDrawable(drawn);
    const std::vector<osg::Vec3d>& points = GetAnchor();
    if (points.size() < 2)
        return;
    const bool isClosed = blockType != CAxBlock::StripBlock && points.size() > 2;
    const osg::ref_ptr<osg::Geometry> shape =
        CreateGeom(selectedAmongSeveral ? AxBlockColors::SelectedEdge() : edgeColor, fillColor, 2.0f,
                   *GetGeometry(), isClosed, isClosed);
    if (!shape)
        return;
    shape->setName("Feature");
    featureNode->addDrawable(shape);
}

void CAxHandleAdapter::UpdateCurrentOperate()
{
    const Running self(this);
    update();
    CAxBlock* block = GetContainedBlock();
    if (!block || !self.IsWanted())
        return;
    const QList<QPointF> before = block->GetAnchor();
    const QList<QPointF> after = RingOf(GetAnchor());
    QString text = std::exchange(editText, QString());
    if (IsSame(before, after))
        return;
    if (text.isEmpty())
        text = tr("Change of %1").arg(block->GetBlockName());
    block->SetAnchor(after);
    CAxControl::GetInstance()->SetProjectModified(true);
    if (self.IsWanted() && viewer)
        viewer->GetUndoStack()->push(new AxAnchorCommand(viewer, handleID, before, after, text));
}

void CAxHandleAdapter::ReturnLastOperate()
{
    editText.clear();
    const CAxBlock* block = GetContainedBlock();
    if (!block)
        return;
    const QList<QPointF> ring = block->GetAnchor();
    const auto isPlace = [](const QPointF& point) {
        return std::isfinite(point.x()) && std::isfinite(point.y());
    };
    if (!std::all_of(ring.begin(), ring.end(), isPlace))
        return;
    std::vector<osg::Vec3d>& points = GetAnchor();
    points.clear();
    for (const QPointF& point : ring)
        points.emplace_back(point.x(), point.y(), 0.0);
    GetBlockElevation();
    // A copy, because importing replaces the vertices.
    ImportGeometry(std::vector<osg::Vec3d>(points), false);
    if (anchorEditor)
        anchorEditor->Update();
}

bool CAxHandleAdapter::_ReponseHandleMove()
{
    const Running self(this);
    const bool isAccepted = CheckGeometry() >= 1;
    if (!self.IsWanted())
        return false;
    isAccepted ? UpdateCurrentOperate() : ReturnLastOperate();
    return isAccepted;
}

bool CAxHandleAdapter::mayEdit() const
{
    return operation == OperationIdle && !lock && tasks.isEmpty() && GetContainedBlock();
}

bool CAxHandleAdapter::mayChangeCount() const
{
    // A rectangle has four corners for good.
    return mayEdit() && blockType != CAxBlock::RectangleBlock && blockType != CAxBlock::ProhibitedAreaBlock;
}

bool CAxHandleAdapter::ChangeVertices(std::vector<osg::Vec3d> points, const QString& text)
{
    GetAnchor() = std::move(points);
    GetBlockElevation();
    editText = text;
    const Running self(this);
    const bool isAccepted = _ReponseHandleMove();
    if (isAccepted && self.IsWanted() && anchorEditor)
        anchorEditor->Update();
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

// Handles of the vertices

void CAxHandleAdapter::CreateEditor()
{
    if (anchorEditor || !viewer || !drawGroup)
        return;
    anchorEditor =
        new CAxHandleAdapterEditor(this, viewer->getMapNode(), 1, true, CAxDragger::DragSphere, osg::Vec3d());
    editorMoves = connect(anchorEditor.get(), SIGNAL(PositionChanged(double, double, double, int)), this,
                          SLOT(slotPointMoved(double, double, double, int)));
    drawGroup->addChild(anchorEditor);
}

void CAxHandleAdapter::SetAnchorEditorEnabled(bool enabled)
{
    if (!enabled || lock || !tasks.isEmpty() || GetAnchor().empty()) {
        disconnect(editorMoves);
        TakeOutOfScene(anchorEditor.get());
        anchorEditor = nullptr;
        return;
    }
    if (GetBlockElevation())
        updateAdapter();
    if (anchorEditor)
        anchorEditor->Update();
    else
        CreateEditor();
    if (anchorEditor)
        anchorEditor->ResetClampAlt();
}

// What only some kinds of object do

void CAxHandleAdapter::RemoveMarkerPoint(QString) {}
void CAxHandleAdapter::ImportGeometry(const std::vector<osg::Vec3d>&, bool) {}
void CAxHandleAdapter::SetWidth(double, double) {}
void CAxHandleAdapter::SetVideoRadius(int) {}
void CAxHandleAdapter::SetVideoPosition(const osg::Vec3d&) {}
void CAxHandleAdapter::HandleEnd() {}
void CAxHandleAdapter::SetMarkerPointName(const QStringList&) {}
QStringList CAxHandleAdapter::GetMarkerPointName()
{
    return {};
}
void CAxHandleAdapter::UpdateColor() {}

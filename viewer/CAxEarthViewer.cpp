// The face of the viewer: the operations that hosts call.
#include "viewer/CAxEarthViewer.h"
#include "analysis/CAxAncillaryProcess.h"
#include "interaction/editing/CAxHandleAdapterEditor.h"
#include "interaction/input/CAxEarthManipulator.h"
#include "interaction/models/AxModelLayers.h"
#include "interaction/objects/CAxHandleAdapter.h"
#include "scene/base/AxNotice.h"
#include "viewer/AxFrame.h"
#include "viewer/AxFrameCapture.h"
#include "viewer/AxGlViewport.h"
#include "viewer/AxSceneStartup.h"
#include "viewer/AxViewerPrivate.h"
#include "viewer/overlay/CAxCoordinateWidget.h"
#include "viewer/overlay/CAxGraphicsCompassItem.h"

#include <osgEarth/Capabilities>
#include <osgEarth/Registry>

#include <QPointer>

#include <utility>

namespace {
constexpr unsigned requiredGlsl = 330;
} // namespace

CAxEarthViewer::CAxEarthViewer(QWidget* parent)
    : QGraphicsView(parent), d(std::make_unique<AxViewerPrivate>(this))
{
    d->initParameters();
}

CAxEarthViewer::~CAxEarthViewer()
{
    ReleaseAll();
    d->shutDown();
}

bool CAxEarthViewer::CheckAdapterGLSupport()
{
    if (!d->graphicsWindow)
        return false;
    if (osgEarth::Registry::capabilities().supportsGLSL(requiredGlsl))
        return true;
    d->glWidget->makeCurrent();
    const auto glText = [](GLenum name) {
        const auto* text = reinterpret_cast<const char*>(glGetString(name));
        return text ? QString::fromLatin1(text) : QString();
    };
    AxShowProblem(
        this, tr("Video adapter tips"),
        tr("Unable to run application,the video adapter not support GLSL 330 .Please check you adapter "
           "driver version or hardware supported."),
        tr("Video adapter: %1, OpenGL %2, GLSL %3")
            .arg(glText(GL_RENDERER), glText(GL_VERSION), glText(GL_SHADING_LANGUAGE_VERSION)));
    return false;
}

void CAxEarthViewer::InitEarthViewer()
{
    d->objects.SetCurrent(nullptr);
    d->tools.SetMultiSelect(false);
    d->objects.EmptySelected();
    // The splash screen lets events through, so a host's second call can come in the middle.
    if (d->earthLoaded || d->starting)
        return;
    const QPointer<CAxEarthViewer> self(this);
    if (!d->startUp())
        return;
    emit signalLoadEarth();
    if (self)
        d->manipulator->setViewpoint(AxSceneStartup::HomeViewpoint(*d->map), 0.0);
}

void CAxEarthViewer::ReleaseAll()
{
    delete std::exchange(d->ancillaryProcess, nullptr);
}

void CAxEarthViewer::SetMapFile(const QString& file)
{
    d->mapFile = file;
}

QImage CAxEarthViewer::GetCurrViewerImg()
{
    if (!d->graphicsWindow)
        return {};
    d->glWidget->makeCurrent();
    const QImage shown = AxCaptureBuffer(*d->graphicsWindow, GL_FRONT);
    if (!AxIsBlack(shown) || !d->earthLoaded || !isVisible())
        return shown;
    // Software renderers keep no front buffer, and a covered window need not have one either.
    const QImage painted = d->paintedPicture();
    d->glWidget->swapBuffers();
    return painted;
}

bool CAxEarthViewer::IsPictureComplete() const
{
    return d->earthLoaded && d->frame->IsPictureComplete();
}

void CAxEarthViewer::SetStillPictureKept(bool kept)
{
    d->frame->SetSaving(kept);
}

bool CAxEarthViewer::IsStillPictureKept() const
{
    return d->frame->IsSaving();
}

void CAxEarthViewer::RequestRedraw()
{
    d->frame->Request();
}

AxViewerParts* CAxEarthViewer::Parts() const
{
    return d.get();
}

CAxEarthManipulator* CAxEarthViewer::getManipulator() const
{
    return d->manipulator;
}

CAxAncillaryProcess* CAxEarthViewer::GetAncillaryProcess() const
{
    return d->ancillaryProcess;
}

CAxMapToolsWidget* CAxEarthViewer::GetMapToolWidget() const
{
    return d->mapToolsWidget;
}

CAxCoordinateWidget* CAxEarthViewer::GetCoordinateWidget() const
{
    return d->coordinateWidget;
}

osgViewer::Viewer* CAxEarthViewer::getOSGViewer() const
{
    return d->viewer;
}

osgEarth::MapNode* CAxEarthViewer::getMapNode() const
{
    return d->mapNode;
}

const osgEarth::SpatialReference* CAxEarthViewer::getSRS() const
{
    return d->mapSRS;
}

osg::Group* CAxEarthViewer::GetDrawNodeGroup() const
{
    return d->drawGroup;
}

osg::Group* CAxEarthViewer::GetGeomAdapterGroup() const
{
    return d->geomAdapterGroup;
}

osg::Group* CAxEarthViewer::GetBoundGroup() const
{
    return d->boundGroup;
}

// Tools

void CAxEarthViewer::SetAppType(int type)
{
    d->tools.SetAppType(type);
}

int CAxEarthViewer::GetAppType() const
{
    return d->tools.AppType();
}

void CAxEarthViewer::SetToolType(EToolType eToolType)
{
    d->tools.TakeUp(eToolType);
}

EToolType CAxEarthViewer::GetToolType() const
{
    return d->tools.Tool();
}

void CAxEarthViewer::SetShapeFactory(EToolType tool, ShapeFactory factory)
{
    d->objects.Factories().Set(tool, std::move(factory));
}

CAxHandleAdapter* CAxEarthViewer::createShapeNode()
{
    return d->tools.CreateShape();
}

void CAxEarthViewer::SetMultiSelect(bool enabled)
{
    d->tools.SetMultiSelect(enabled);
}

bool CAxEarthViewer::IsMultiSelect() const
{
    return d->tools.IsMultiSelect();
}

void CAxEarthViewer::EnabledPickHandle(bool enabled)
{
    d->tools.SetMayPick(enabled);
}

bool CAxEarthViewer::IsEnabledPickHandle() const
{
    return d->tools.MayPick();
}

void CAxEarthViewer::SetFocusToMaptool(bool focus)
{
    d->tools.SetPressTaken(focus);
}

bool CAxEarthViewer::GetFocusToMaptool() const
{
    return d->tools.IsPressTaken();
}

void CAxEarthViewer::slotMouseLeftBtnClick(osg::Vec3d lngLatPos, osg::Vec3d worldCoordPos)
{
    // A click beside the globe picks nothing.
    if (worldCoordPos != osg::Vec3d())
        d->tools.InHand().Pick(lngLatPos);
}

// Map objects

CAxHandleAdapter* CAxEarthViewer::GetCurHandleAdapter() const
{
    return d->objects.Current();
}

bool CAxEarthViewer::AddHandleAdapter(CAxHandleAdapter* adapter)
{
    return d->objects.Add(adapter);
}

CAxHandleAdapter* CAxEarthViewer::ImportShapeNode(const QString& blockID)
{
    return d->objects.Import(blockID);
}

CAxHandleAdapter* CAxEarthViewer::FindExistNode(const QString& id) const
{
    return d->objects.Find(id);
}

CAxHandleAdapter* CAxEarthViewer::GetHandleAdapter(const QString& id) const
{
    return d->objects.Find(id);
}

QList<CAxHandleAdapter*> CAxEarthViewer::FindExistNode(CAxBlock::EBlockType type) const
{
    return d->objects.OfKind(type);
}

CAxHandleAdapter* CAxEarthViewer::FindExistNode(osg::Node* node) const
{
    return d->objects.Find(node);
}

QList<CAxHandleAdapter*> CAxEarthViewer::GetHandleAdapters() const
{
    return d->objects.All();
}

bool CAxEarthViewer::RemoveHanderAdapter(const QString& id, bool deleteBlock)
{
    return d->objects.Remove(d->objects.Find(id), deleteBlock);
}

bool CAxEarthViewer::RemoveHanderAdapter(CAxHandleAdapter* adapter, bool deleteBlock)
{
    return d->objects.Remove(adapter, deleteBlock);
}

bool CAxEarthViewer::RemoveAllHanderAdapter(bool deleteBlock)
{
    d->objects.RemoveAll(deleteBlock);
    return true;
}

void CAxEarthViewer::RemoveCurHandle()
{
    d->objects.RemoveCurrentEntry();
}

void CAxEarthViewer::slotHandleEnd(QString strHanleID, bool bReset)
{
    emit signalHandleEnd(strHanleID, bReset);
}

void CAxEarthViewer::slotBlockVisible(QString strHanleID, bool bVisible)
{
    CAxHandleAdapter* object = d->objects.Find(strHanleID);
    if (!object || object->IsVisible() == bVisible)
        return;
    object->SetAdapterVisible(bVisible, QString());
    emit signalBlockState(strHanleID);
}

void CAxEarthViewer::slotBlockLock(QString strHanleID, bool bLock)
{
    CAxHandleAdapter* object = d->objects.Find(strHanleID);
    if (!object || object->IsLock() == bLock)
        return;
    object->CancelHandle();
    object->SetLockBlock(bLock, bLock && object->IsVisible());
    object->SetAnchorEditorEnabled(!bLock && object == d->objects.Current());
    emit signalBlockState(strHanleID);
}

bool CAxEarthViewer::RenameBlock(const QString& id, const QString& name)
{
    return d->objects.Rename(id, name);
}

QStringList CAxEarthViewer::DeleteBlocks(const QStringList& ids)
{
    return d->objects.Delete(ids);
}

AxBlockOperations* CAxEarthViewer::GetBlockOperations()
{
    return &d->objects.Operations();
}

// Editing

QUndoStack* CAxEarthViewer::GetUndoStack() const
{
    return d->history.Stack();
}

QAction* CAxEarthViewer::GetUndoAction() const
{
    return d->history.UndoAction();
}

QAction* CAxEarthViewer::GetRedoAction() const
{
    return d->history.RedoAction();
}

void CAxEarthViewer::SetEditAids(const AxEditAids& aids)
{
    const bool isOtherGround = aids.clampToModels != GetEditAids().clampToModels;
    d->history.SetAids(aids);
    d->clampToModels();
    if (isOtherGround)
        for (const AxModelLayer& layer : d->modelLayers->All())
            d->layNearModel(layer.id);
    const CAxHandleAdapter* current = d->objects.Current();
    if (CAxHandleAdapterEditor* editor = current ? current->GetAnchorEditor() : nullptr)
        editor->Update();
    emit signalEditAids();
}

const AxEditAids& CAxEarthViewer::GetEditAids() const
{
    return d->history.Aids();
}

bool CAxEarthViewer::DeleteHoveredVertex()
{
    return d->objects.DeleteHoveredVertex();
}

bool CAxEarthViewer::IsDeleteKeyTaken() const
{
    return d->deleteKeyTaken;
}

// What is shown

void CAxEarthViewer::SetProjPlaneCenter(const osg::Vec3d& center)
{
    d->projPlaneCenter = center;
}

const osg::Vec3d& CAxEarthViewer::GetProjPlaneCenter() const
{
    return d->projPlaneCenter;
}

void CAxEarthViewer::SetProjPlaneMatrix(const osg::Matrixd& matrix)
{
    d->projPlaneMatrix = matrix;
}

const osg::Matrixd& CAxEarthViewer::GetProjPlaneMatrix() const
{
    return d->projPlaneMatrix;
}

const QString& CAxEarthViewer::GetCoordSys() const
{
    return d->coordSystem.Text();
}

void CAxEarthViewer::SetSkyNodeVisible(bool visible)
{
    const osg::Node::NodeMask mask = visible ? 1u : 0u;
    if (d->skyNode)
        d->skyNode->setNodeMask(mask);
    if (d->graticule)
        d->graticule->setNodeMask(mask);
}

void CAxEarthViewer::SetCompassVisible(bool visible)
{
    d->compassItem->setVisible(visible);
}

void CAxEarthViewer::SetCoordinateVisible(bool visible)
{
    d->coordinateWidget->setVisible(visible);
}

void CAxEarthViewer::SetCoordinate(const QString& longitude, const QString& latitude, const QString& altitude,
                                   const QString& range)
{
    d->setCoordinate({longitude, latitude, altitude, range});
}

void CAxEarthViewer::SetTextToSpeechEnabled(bool enabled)
{
    emit signalTextSpeechEnabled(!enabled);
}

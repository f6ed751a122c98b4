#include "viewer/AxViewerPrivate.h"
#include "analysis/CAxAncillaryProcess.h"
#include "analysis/models/AxOutlinesMeet.h"
#include "analysis/sight/AxSightAnalysis.h"
#include "analysis/volume/AxVolumeAnalysis.h"
#include "interaction/editing/CAxHandleAdapterEditor.h"
#include "interaction/input/CAxEarthManipulator.h"
#include "interaction/magnifier/AxMagnifier.h"
#include "interaction/magnifier/CAxOsgDrawMagnifyRectange.h"
#include "interaction/marks/CAxOsgDrawPointSet.h"
#include "interaction/measure/AxMeasurements.h"
#include "interaction/measure/CAxMeasurePlane.h"
#include "interaction/models/AxModelLayers.h"
#include "interaction/models/AxModelPick.h"
#include "mission/landing/CAxDownhillAnglenode.h"
#include "mission/landing/CAxInterestPointNode.h"
#include "mission/landing/CAxLandingAreaNode.h"
#include "scene/base/AxGlobePoint.h"
#include "scene/shape/AxShapeClamp.h"
#include "viewer/AxControlPoints.h"
#include "viewer/AxFrame.h"
#include "viewer/AxGroundRequests.h"
#include "viewer/AxInputRouter.h"
#include "viewer/AxLensPicture.h"
#include "viewer/AxMapLayers.h"
#include "viewer/AxModelOutlines.h"
#include "viewer/AxVolumeDesk.h"
#include "viewer/capture/AxPictureCapture.h"
#include "viewer/overlay/CAxMapToolsWidget.h"

#include <AxData/CAxControl.h>

#include <algorithm>

namespace {
bool AreModelsSeenWithin(const AxModelLayers& models, const QList<QPointF>& ring)
{
    const std::vector<QPointF> outline(ring.begin(), ring.end());
    const QList<AxModelLayer> all = models.All();
    return std::any_of(all.begin(), all.end(), [&outline](const AxModelLayer& model) {
        if (!model.options.isVisible || !model.extent)
            return false;
        const QRectF& box = *model.extent;
        return AxOutlinesMeet({box.topLeft(), box.topRight(), box.bottomRight(), box.bottomLeft()}, outline);
    });
}
} // namespace

AxViewerPrivate::AxViewerPrivate(CAxEarthViewer* earthViewer)
    : q(earthViewer), objects(*this, earthViewer), history(earthViewer, objects), tools(*this, objects),
      aircraft(*this, earthViewer), blockFlight(*this)
{
    objects.SetHistory(&history);
    connect(&objects, &AxObjects::currentChanged, q, &CAxEarthViewer::signalCurrentBlock);
    connect(&objects, &AxObjects::selectedChanged, q, &CAxEarthViewer::signalMultiSelectBlock);
    connect(&objects, &AxObjects::taskChanged, q, &CAxEarthViewer::signalCurrentTask);
    connect(&objects, &AxObjects::imported, q, &CAxEarthViewer::signalBlockState);
    connect(&objects, &AxObjects::moveGivenUp, q, [this] { manipulator->CancelBlockMove(); });
    connect(&tools, &AxToolBox::barLeft, q, [this] { mapToolsWidget->ResetToolType(); });
    connect(&tools, &AxToolBox::barTaken, q, [this](EToolType tool) { mapToolsWidget->ShowTool(tool); });
    connect(&tools, &AxToolBox::taken, q, [this](EToolType tool) { emit mapToolsWidget->ToolInHand(tool); });
    connect(&tools, &AxToolBox::placePicked, q, [this](EToolType tool, double lon, double lat, double alt) {
        if (tool == ToolLandingPosition)
            emit q->LandingPosPicked(lon, lat, alt, true);
        else
            pickInterestPoint(lon, lat, alt);
    });
    connect(&tools, &AxToolBox::landingLeft, q, [this] { q->SetLandingAreaVisible(false); });
    connect(&objects, &AxObjects::currentChanged, q, [this] { followLandingArea(); });
    controlPoints = std::make_unique<AxControlPoints>(*this);
    connect(controlPoints.get(), &AxControlPoints::added, q, &CAxEarthViewer::signalAddControlPoint);
    layers = std::make_unique<AxMapLayers>();
    connect(layers.get(), &AxMapLayers::changed, q, &CAxEarthViewer::RequestRedraw);
    connect(layers.get(), &AxMapLayers::elevationAdded, q, &CAxEarthViewer::signalElevationLayer);
    measurements = std::make_unique<AxMeasurements>(*this, objects, q);
    volumeAnalysis = std::make_unique<AxVolumeAnalysis>(*this);
    AxAddMeasureTools(objects.Factories(), *measurements, *volumeAnalysis);
    connect(&tools, &AxToolBox::taken, q,
            [this](EToolType tool) { q->slotGridWidget(QString(), tool == ToolMeasureVolume); });
    connect(layers.get(), &AxMapLayers::groundChanged, measurements.get(), &AxMeasurements::MeasureAgain);
    connect(layers.get(), &AxMapLayers::groundChanged, volumeAnalysis.get(), &AxVolumeAnalysis::ForgetGround);
    connect(layers.get(), &AxMapLayers::groundChanged, q, [this] {
        if (CAxOsgDrawPointSet* marks = CAxOsgDrawPointSet::FindOfViewer(q))
            marks->ReadHeightsAgain();
    });
    // Not given again: of several viewers that would make this the one that gives them.
    connect(layers.get(), &AxMapLayers::groundChanged, CAxControl::GetInstance(),
            &CAxControl::planBasisChanged);
    objects.Factories().SetOwn(ToolMeasurePlane,
                               [this](CAxEarthViewer* earth, QObject* parent) -> CAxHandleAdapter* {
                                   auto* plane = new CAxMeasurePlane(earth, parent, *measurements);
                                   plane->SetPlane(projPlaneCenter, projPlaneMatrix);
                                   return plane;
                               });
    groundRequests = std::make_unique<AxGroundRequests>();
    connect(groundRequests.get(), &AxGroundRequests::answered, q,
            &CAxEarthViewer::signalRequestElevationReturn);
    sightAnalysis = std::make_unique<AxSightAnalysis>(*this);
    magnifier = std::make_unique<AxMagnifier>(*this);
    connect(magnifier.get(), &AxMagnifier::changed, q, &CAxEarthViewer::RequestRedraw);
    objects.Factories().SetOwn(ToolMagnifier,
                               [this](CAxEarthViewer* earth, QObject* parent) -> CAxHandleAdapter* {
                                   return new CAxOsgDrawMagnifyRectange(earth, parent, *magnifier);
                               });
    modelLayers = std::make_unique<AxModelLayers>(*this);
    connect(modelLayers.get(), &AxModelLayers::loaded, q, [this](const QString& id) {
        if (const auto layer = modelLayers->Find(id))
            emit q->signalAddModelLayer(id, layer->name, layer->files, layer->options.isVisible, layer->path,
                                        layer->options.coordinateSystem);
    });
    for (const auto change : {&AxModelLayers::changed, &AxModelLayers::removed})
        connect(modelLayers.get(), change, q, [this](const QString& layer) {
            clampToModels();
            layNearModel(layer);
        });
    volumeAnalysis->SetModels(
        [this](const QList<QPointF>& ring) { return AreModelsSeenWithin(*modelLayers, ring); });
    for (const auto change : {&AxModelLayers::changed, &AxModelLayers::removed, &AxModelLayers::loaded})
        connect(modelLayers.get(), change, volumeAnalysis.get(), [this] { volumeAnalysis->LookForModels(); });
    modelOutlines = std::make_unique<AxModelOutlines>(*this, *modelLayers);
    connect(modelOutlines.get(), &AxModelOutlines::answered, q,
            &CAxEarthViewer::signalRequestIntersectionReturn);
    connect(layers.get(), &AxMapLayers::groundChanged, q, [this] {
        if (ancillaryProcess)
            ancillaryProcess->FollowGround();
    });
}

AxViewerPrivate::~AxViewerPrivate() = default;

void AxViewerPrivate::clampToModels()
{
    const bool isOn = history.Aids().clampToModels && viewer && AxIsModelShown(viewer->getSceneData());
    for (const CAxHandleAdapter* object : objects.All())
        if (CAxHandleAdapterEditor* const editor = object->GetAnchorEditor())
            editor->SetIntersectModelLayer(isOn);
}

void AxViewerPrivate::layNearModel(const QString& layer)
{
    const std::optional<AxModelLayer> known = modelLayers->Find(layer);
    const QRectF extent =
        known ? known->extent.value_or(QRectF()).united(modelExtents.value(layer)) : modelExtents.take(layer);
    if (known && known->extent)
        modelExtents[layer] = *known->extent;
    if (extent.isNull() || !mapNode)
        return;
    std::vector<osg::Vec3d> normals;
    for (const QPointF& place :
         {extent.topLeft(), extent.topRight(), extent.bottomLeft(), extent.bottomRight()})
        normals.push_back(AxGlobe::NormalAt({place.x(), place.y(), 0.0}));
    AxShapeClamp::AskNear(mapNode->getTerrain(), normals);
}

AxZoneAnswers* AxViewerPrivate::Zones()
{
    return ancillaryProcess;
}

QObject* AxViewerPrivate::Mouse()
{
    return manipulator.get();
}

std::optional<bool> AxViewerPrivate::AngleHandlesShown() const
{
    return downhillAngleNode ? std::make_optional(downhillAngleNode->IsHandlesVisible()) : std::nullopt;
}

void AxViewerPrivate::GetElevations(QList<osg::Vec3d>& points) const
{
    manipulator->GetElevations(points, history.Aids().clampToModels);
}

AxViewerParts* AxPartsOf(CAxEarthViewer* viewer)
{
    return viewer ? viewer->Parts() : nullptr;
}

AxViewerParts* AxPartsOf(QObject* viewer)
{
    return AxPartsOf(qobject_cast<CAxEarthViewer*>(viewer));
}

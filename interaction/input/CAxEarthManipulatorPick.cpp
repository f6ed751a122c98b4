// What is under the mouse: ground, models, drawables, map objects, mark points.
#include "interaction/input/CAxEarthManipulator.h"
#include "interaction/marks/AxMarkHit.h"
#include "interaction/marks/CAxOsgDrawPointSet.h"
#include "interaction/models/AxModelPick.h"
#include "interaction/objects/CAxHandleAdapter.h"
#include "scene/AxObjectBook.h"
#include "scene/AxScene.h"
#include "scene/AxToolInHand.h"
#include "scene/AxViewerParts.h"
#include "scene/base/AxExactPlace.h"
#include "scene/base/AxGlobePoint.h"
#include "scene/shape/AxDrawnGround.h"
#include "scene/shape/AxScenePick.h"

#include <osgEarth/MapNode>
#include <osgEarth/SpatialReference>
#include <osgEarth/Terrain>
#include <osgEarthAnnotation/AnnotationEditing>
#include <osgViewer/Viewer>

#include <algorithm>

using osgEarth::GeoPoint;
using osgGA::GUIEventAdapter;

namespace {
// Lines are a pixel or two wide; nobody hits them to the pixel.
constexpr double lineTolerancePixels = 4.0;

// Handles that are picked by their names.
bool IsNamedHandle(const osg::Node& node)
{
    for (const char* prefix : {"AngleComputer-", "InterestPoint-", "TaskGrid"})
        if (node.getName().rfind(prefix, 0) == 0)
            return true;
    return false;
}
} // namespace

std::optional<AxViewRay> CAxEarthManipulator::rayUnderMouse(const GUIEventAdapter& ea) const
{
    return AxViewRay::Through(*viewer->Scene().View()->getCamera(), ea.getXnormalized(), ea.getYnormalized());
}

osg::Vec3d CAxEarthManipulator::getPos(const GUIEventAdapter& ea, osgGA::GUIActionAdapter&, float lngLat[4],
                                       bool& modelHit, QString& currNode, QString& parentNode)
{
    const auto ray = rayUnderMouse(ea);
    const Pick pick = ray ? pickAlong(*ray) : Pick();
    std::copy_n(pick.lngLat, 4, lngLat);
    modelHit = pick.modelHit;
    currNode = pick.currNode;
    parentNode = pick.parentNode;
    return pick.world;
}

CAxEarthManipulator::Pick CAxEarthManipulator::pickAlong(const AxViewRay& ray) const
{
    AxTellExactPlace(std::nullopt);
    osgEarth::MapNode* mapNode = viewer->Scene().MapNode();
    if (!mapNode)
        return {};
    const std::optional<osg::Vec3d> ground = AxDrawnGround(*mapNode, ray);
    GeoPoint point;
    const bool isGround = ground && point.fromWorld(viewer->Scene().MapSRS(), *ground);
    if (!isGround && operateMode != OperateModel)
        return {};
    const std::optional<AxModelHit> model = modelAlong(ray);
    if (!isGround && !model)
        return {};
    Pick pick;
    const osg::Vec3d lngLatAlt = model ? model->lngLatAlt : point.vec3d();
    for (int i = 0; i < 3; ++i)
        pick.lngLat[i] = static_cast<float>(lngLatAlt[i]);
    pick.world = isGround ? *ground : model->world;
    if (model) {
        AxTellExactPlace(model->lngLatAlt);
        pick.lngLat[3] = static_cast<float>(model->height);
        pick.modelHit = true;
        pick.currNode = model->currNode;
        pick.parentNode = model->parentNode;
    }
    return pick;
}

std::optional<AxModelHit> CAxEarthManipulator::modelAlong(const AxViewRay& ray) const
{
    osgEarth::MapNode* mapNode = viewer->Scene().MapNode();
    // On the globe those that the map file brings count, too.
    osg::Group* ofMap = operateMode == OperateGlobe && mapNode ? mapNode->getModelLayerGroup() : nullptr;
    std::optional<AxModelHit> nearest;
    for (osg::Group* branch : {ofMap, AxFindModelRoot(viewer->Scene().View()->getSceneData())}) {
        if (!branch || branch->getNumChildren() == 0)
            continue;
        const auto hit = AxPickModelLayer(*branch, ray, *viewer->Scene().MapSRS());
        if (hit && (!nearest || (hit->world - ray.eye).length2() < (nearest->world - ray.eye).length2()))
            nearest = hit;
    }
    return nearest;
}

bool CAxEarthManipulator::IntersectModelLayer(const GUIEventAdapter& ea, double& lon, double& lat,
                                              double& alt, double& height, osg::Vec3d& world,
                                              QString& currNode, QString& parentNode)
{
    const auto ray = rayUnderMouse(ea);
    const auto hit = ray ? modelAlong(*ray) : std::nullopt;
    if (!hit)
        return false;
    lon = hit->lngLatAlt.x();
    lat = hit->lngLatAlt.y();
    alt = hit->lngLatAlt.z();
    height = hit->height;
    world = hit->world;
    currNode = hit->currNode;
    parentNode = hit->parentNode;
    return true;
}

osg::Drawable* CAxEarthManipulator::pickDrawable(const GUIEventAdapter& ea, osgGA::GUIActionAdapter&)
{
    osg::Group* drawn = viewer->Scene().DrawGroup();
    if (!drawn || drawn->getNumChildren() == 0)
        return nullptr;
    const auto ray = rayUnderMouse(ea);
    if (!ray)
        return nullptr;
    AxSceneQuery query;
    query.tolerancePixels = lineTolerancePixels;
    query.labels = true;
    // Map objects are picked as a whole, and their handles take the mouse themselves.
    const osg::Node* objects = viewer->Scene().ObjectGroup();
    const auto isPartOfObject = [objects](const osg::Node* node) {
        return node == objects || dynamic_cast<const osgEarth::Annotation::AnnotationEditor*>(node);
    };
    for (const AxSceneHit& hit : AxPickScene(*drawn, *ray, query))
        if (std::none_of(hit.path.begin(), hit.path.end(), isPartOfObject))
            return hit.drawable;
    return nullptr;
}

osg::Node* CAxEarthManipulator::pickNode(osgGA::GUIActionAdapter&, const osg::Vec3d&,
                                         const osg::Vec3d& worldCoordPos)
{
    osg::Group* drawn = viewer->Scene().DrawGroup();
    if (!drawn || drawn->getNumChildren() == 0 || worldCoordPos == osg::Vec3d())
        return nullptr;
    const osg::Camera& camera = *viewer->Scene().View()->getCamera();
    const osg::Vec3d clip = worldCoordPos * camera.getViewMatrix() * camera.getProjectionMatrix();
    const auto ray = AxViewRay::Through(camera, clip.x(), clip.y());
    if (!ray)
        return nullptr;
    AxSceneQuery query;
    query.tolerancePixels = lineTolerancePixels;
    query.labels = true;
    for (const AxSceneHit& hit : AxPickScene(*drawn, *ray, query)) {
        const auto object = std::find_if(hit.path.rbegin(), hit.path.rend(), [this, &hit](osg::Node* node) {
            return IsNamedHandle(*node) ||
                   (!hit.onScreen && viewer->Tools().MayPick() && viewer->Objects().Find(node));
        });
        if (object != hit.path.rend())
            return *object;
    }
    return nullptr;
}

bool CAxEarthManipulator::IntersectMarkPoint(const GUIEventAdapter& ea, osgGA::GUIActionAdapter&)
{
    const QList<CAxHandleAdapter*> markPoints = viewer->Objects().OfKind(CAxBlock::MarkPointBlock);
    if (markPoints.isEmpty())
        return false;
    const auto ray = rayUnderMouse(ea);
    if (!ray)
        return false;
    CAxHandleAdapter* nearest = nullptr;
    AxMarkHit hit;
    for (CAxHandleAdapter* adapter : markPoints) {
        if (auto* set = qobject_cast<CAxOsgDrawPointSet*>(adapter)) {
            const QString id = set->MarkUnderDoubleClick(*ray);
            if (id.isEmpty())
                continue;
            // Not in the middle of an event: the dialog lets further ones come.
            QMetaObject::invokeMethod(
                set, [set, id] { set->ShowInformation(id); }, Qt::QueuedConnection);
            return true;
        }
        std::vector<osg::Vec3d> points;
        for (const osg::Vec3d& place : adapter->GetAnchor())
            points.push_back(AxGlobe::WorldOf(place));
        const auto ofAdapter = AxNearestMark(*ray, points);
        if (!ofAdapter || (nearest && ofAdapter->depth >= hit.depth))
            continue;
        nearest = adapter;
        hit = *ofAdapter;
    }
    if (!nearest)
        return false;
    nearest->ResponseDoubleClickOnPoint(hit.index, nearest->GetAnchor()[std::size_t(hit.index)]);
    return true;
}

void CAxEarthManipulator::GetElevations(QList<osg::Vec3d>& points, bool bModelLayers)
{
    osgEarth::MapNode* mapNode = viewer ? viewer->Scene().MapNode() : nullptr;
    if (!mapNode || !mapNode->getTerrain())
        return;
    const osgEarth::SpatialReference* srs = viewer->Scene().MapSRS()->getGeographicSRS();
    osg::Group* models = bModelLayers ? AxFindModelRoot(viewer->Scene().View()->getSceneData()) : nullptr;
    for (osg::Vec3d& point : points) {
        double height = 0.0;
        if (mapNode->getTerrain()->getHeight(srs, point.x(), point.y(), &height))
            point.z() = height;
        if (!models)
            continue;
        if (const auto top = AxTopOfModels(*models, point.x(), point.y(), *srs))
            point.z() = *top;
    }
}

// What the mouse does to the handles: hover, grab, drag with its aids, let go.
#include "interaction/editing/AxEdgeHandles.h"
#include "interaction/editing/AxEditRules.h"
#include "interaction/editing/AxSnapping.h"
#include "interaction/editing/CAxClampObjectCallback.h"
#include "interaction/editing/CAxHandleAdapterEditor.h"
#include "interaction/models/AxModelPick.h"
#include "scene/shape/AxViewRay.h"

#include "scene/AxEditAids.h"
#include "scene/AxObjectBook.h"
#include "scene/AxScene.h"
#include "scene/AxViewerParts.h"

#include <osgEarth/MapNode>
#include <osgEarth/SpatialReference>
#include <osgEarth/Terrain>
#include <osgViewer/Viewer>

#include <QTimer>

using osgGA::GUIEventAdapter;

namespace {
const osg::Camera* CameraOf(osgGA::GUIActionAdapter& aa)
{
    const osg::View* view = aa.asView();
    return view ? view->getCamera() : nullptr;
}

std::optional<AxViewRay> RayThrough(const osg::Camera* camera, const osg::Vec2d& window)
{
    const osg::Viewport* viewport = camera ? camera->getViewport() : nullptr;
    if (!viewport)
        return std::nullopt;
    return AxViewRay::Through(*camera, 2.0 * (window.x() - viewport->x()) / viewport->width() - 1.0,
                              2.0 * (window.y() - viewport->y()) / viewport->height() - 1.0);
}
} // namespace

bool CAxHandleAdapterEditor::handle(const GUIEventAdapter& ea, osgGA::GUIActionAdapter& aa)
{
    switch (ea.getEventType()) {
    case GUIEventAdapter::MOVE: {
        swallowDrag = false;
        // No button is held: the release went elsewhere, and with it the end of the edit.
        if (endDrag())
            finishLater(&CAxHandleAdapterEditor::commit);
        const osg::Camera* camera = CameraOf(aa);
        const auto ray =
            camera ? AxViewRay::Through(*camera, ea.getXnormalized(), ea.getYnormalized()) : std::nullopt;
        if (hover(ray && mayEdit() && !ea.getHandled() ? handleUnder(*ray) : Handle()))
            aa.requestRedraw();
        return false;
    }
    case GUIEventAdapter::PUSH: {
        if (grip)
            return true; // another button, while the first one drags
        swallowDrag = false;
        const osg::Camera* camera = CameraOf(aa);
        if (ea.getHandled() || ea.getButton() != GUIEventAdapter::LEFT_MOUSE_BUTTON || !camera || !mayEdit())
            return false;
        const auto ray = AxViewRay::Through(*camera, ea.getXnormalized(), ea.getYnormalized());
        if (!ray || !push(*ray))
            return false;
        aa.requestRedraw();
        return true;
    }
    case GUIEventAdapter::DRAG:
        if (!grip)
            return swallowDrag;
        drag(ea, aa);
        aa.requestRedraw();
        return true;
    case GUIEventAdapter::RELEASE:
        if (ea.getButton() == GUIEventAdapter::LEFT_MOUSE_BUTTON) {
            swallowDrag = false;
            if (endDrag())
                aa.requestRedraw();
        }
        return false;
    case GUIEventAdapter::KEYDOWN:
        if (ea.getKey() != GUIEventAdapter::KEY_Escape || !CancelDrag())
            return false;
        finishLater(&CAxHandleAdapterEditor::giveUp);
        aa.requestRedraw();
        return true;
    default:
        return false;
    }
}

CAxHandleAdapterEditor::Handle CAxHandleAdapterEditor::handleUnder(const AxViewRay& ray) const
{
    Handle found;
    double nearest = AxEditRules::pickPixels;
    for (std::size_t i = 0; i < draggers.size(); ++i) {
        if (!draggers[i]->HasShape() || draggers[i]->getNodeMask() == 0)
            continue;
        const osg::Vec3d world = draggers[i]->GetWorld();
        const auto place = ray.Project(world);
        if (!place)
            continue;
        const double distance = (place->window - ray.window).length();
        if (distance > nearest || AxIsBehindGlobe(ray.eye, world))
            continue;
        nearest = distance;
        found.vertex = static_cast<int>(i);
    }
    if (found.vertex >= 0 || !hasEdgeHandles())
        return found;
    if (edges->outdated)
        setEdges();
    const auto ground = [this](double lng, double lat) { return groundAt(lng, lat); };
    for (const AxEdgeHandles::Shown& edge : edges->InView(ray, ground)) {
        const double distance = (edge.window - ray.window).length();
        if (distance > nearest)
            continue;
        nearest = distance;
        found.edge = edge.edge;
    }
    return found;
}

bool CAxHandleAdapterEditor::hover(const Handle& under)
{
    bool changed = edges->hovered != under.edge;
    edges->hovered = under.edge;
    for (std::size_t i = 0; i < draggers.size(); ++i) {
        const bool hovered = static_cast<int>(i) == under.vertex;
        changed = changed || hovered != draggers[i]->getHovered();
        draggers[i]->SetHovered(hovered);
    }
    return changed;
}

bool CAxHandleAdapterEditor::push(const AxViewRay& ray)
{
    Grip begun;
    begun.handle = handleUnder(ray);
    hover(begun.handle);
    begun.pushed = ray.window;
    if (begun.handle.vertex >= 0) {
        begun.dragger = draggers[std::size_t(begun.handle.vertex)];
        begun.offset = ray.window - ray.Project(begun.dragger->GetWorld())->window;
        begun.before = begun.dragger->GetPlace();
        const osg::ref_ptr<CAxDragger> held = begun.dragger;
        grip = std::move(begun);
        held->BeginDrag();
        return true;
    }
    if (begun.handle.edge < 0)
        return false;
    const auto ground = [this](double lng, double lat) { return groundAt(lng, lat); };
    for (const AxEdgeHandles::Shown& edge : edges->InView(ray, ground))
        if (edge.edge == begun.handle.edge) {
            begun.before = edge.place;
            begun.offset = ray.window - edge.window;
        }
    grip = std::move(begun);
    dragging = true;
    return true;
}

bool CAxHandleAdapterEditor::beginMoving()
{
    grip->moved = true;
    if (grip->handle.edge >= 0) {
        std::vector<osg::Vec3d>& anchors = shape->GetAnchor();
        const int vertex = grip->handle.edge + 1;
        if (vertex > static_cast<int>(anchors.size())) {
            endDrag();
            return false;
        }
        anchors.insert(anchors.begin() + vertex, grip->before);
        grip->handle = Handle{vertex, -1};
        grip->inserted = true;
        _initEditor();
        hover(grip->handle);
        grip->dragger = draggers[std::size_t(vertex)];
        const osg::ref_ptr<CAxDragger> held = grip->dragger;
        held->BeginDrag();
        if (!grip || !shape)
            return false;
    }
    gatherSnapTargets();
    return true;
}

void CAxHandleAdapterEditor::drag(const GUIEventAdapter& ea, osgGA::GUIActionAdapter& aa)
{
    const osg::Camera* camera = CameraOf(aa);
    const auto mouse =
        camera ? AxViewRay::Through(*camera, ea.getXnormalized(), ea.getYnormalized()) : std::nullopt;
    if (!mouse || !shape || !mayEdit())
        return;
    if (!grip->moved && (mouse->window - grip->pushed).length() < AxEditRules::tremblePixels)
        return;
    const auto target = RayThrough(camera, mouse->window - grip->offset);
    const auto wanted = target ? placeUnder(ea, aa, *target) : std::nullopt;
    if (!wanted || (!grip->moved && !beginMoving()))
        return;
    const osg::ref_ptr<CAxDragger> held = grip->dragger;
    // The ground of its new place may be drawn coarser than where it was clamped last.
    const auto found = std::find(draggers.begin(), draggers.end(), held.get());
    const auto at = static_cast<std::size_t>(found - draggers.begin());
    if (at < clamps.size() && clamps[at])
        clamps[at]->Forget();
    held->DragTo(osgEarth::GeoPoint(held->getPosition().getSRS(), aided(*wanted, *target),
                                    osgEarth::ALTMODE_ABSOLUTE));
}

bool CAxHandleAdapterEditor::endDrag()
{
    if (!grip)
        return false;
    const Grip ended = std::move(*grip);
    grip.reset();
    snapTargets->Clear();
    dragging = false;
    if (ended.dragger)
        ended.dragger->EndDrag();
    return true;
}

bool CAxHandleAdapterEditor::CancelDrag()
{
    if (!grip)
        return false;
    const Grip given = *grip;
    swallowDrag = true;
    if (shape && given.moved) {
        std::vector<osg::Vec3d>& anchors = shape->GetAnchor();
        const int vertex = given.handle.vertex;
        if (vertex >= 0 && vertex < static_cast<int>(anchors.size())) {
            if (given.inserted)
                anchors.erase(anchors.begin() + vertex);
            else
                anchors[std::size_t(vertex)] = given.before;
        }
    }
    endDrag();
    _initEditor();
    return true;
}

// The end of an edit may open a box or take the object's nodes out of the scene,
// which the event that is being handled is still on its way through.
void CAxHandleAdapterEditor::finishLater(void (CAxHandleAdapterEditor::*finish)())
{
    const osg::ref_ptr<CAxHandleAdapterEditor> self(this);
    QTimer::singleShot(0, this, [self, finish] {
        if (self->shape && self->shape->GetHandleOperation() == OperationMovePoint)
            (self.get()->*finish)();
    });
}

void CAxHandleAdapterEditor::commit()
{
    const int vertex = shape->GetEditIndex();
    const bool isKnown = vertex >= 0 && vertex < static_cast<int>(draggers.size());
    const osg::ref_ptr<CAxDragger> dragger = isKnown ? draggers[std::size_t(vertex)] : nullptr;
    shape->EndDrag(dragger ? dragger->GetPlace() : osg::Vec3d(),
                   dragger ? dragger->GetWorld() : osg::Vec3d());
}

void CAxHandleAdapterEditor::giveUp()
{
    shape->CancelHandle();
}

std::optional<osg::Vec3d> CAxHandleAdapterEditor::placeUnder(const GUIEventAdapter& ea,
                                                             osgGA::GUIActionAdapter& aa,
                                                             const AxViewRay& target) const
{
    if (intersectModel)
        if (const auto model = placeOnModel(target))
            return model;
    osg::ref_ptr<osgEarth::MapNode> map;
    const osg::Viewport* viewport = CameraOf(aa)->getViewport();
    if (!mapNode.lock(map) || !map->getTerrain() || !viewport)
        return std::nullopt;
    // Back into the range that the event's positions are meant in.
    const double up = ea.getMouseYOrientation() == GUIEventAdapter::Y_INCREASING_UPWARDS ? 1.0 : -1.0;
    const double x = ea.getX() - grip->offset.x() / viewport->width() * (ea.getXmax() - ea.getXmin());
    const double y = ea.getY() - grip->offset.y() / viewport->height() * (ea.getYmax() - ea.getYmin()) * up;
    osg::Vec3d world;
    osgEarth::GeoPoint place;
    if (!map->getTerrain()->getWorldCoordsUnderMouse(aa.asView(), static_cast<float>(x),
                                                     static_cast<float>(y), world) ||
        !place.fromWorld(map->getMapSRS()->getGeographicSRS(), world))
        return std::nullopt;
    return place.vec3d();
}

std::optional<osg::Vec3d> CAxHandleAdapterEditor::placeOnModel(const AxViewRay& target) const
{
    AxViewerParts* const parts = shape->Parts();
    osg::ref_ptr<osgEarth::MapNode> map;
    if (!parts || !mapNode.lock(map))
        return std::nullopt;
    std::optional<AxModelHit> nearest;
    for (osg::Group* models :
         {map->getModelLayerGroup(), AxFindModelRoot(parts->Scene().View()->getSceneData())}) {
        const auto hit =
            models ? AxPickModelLayer(*models, target, *map->getMapSRS()->getGeographicSRS()) : std::nullopt;
        if (hit &&
            (!nearest || (hit->world - target.eye).length2() < (nearest->world - target.eye).length2()))
            nearest = hit;
    }
    return nearest ? std::make_optional(nearest->lngLatAlt) : std::nullopt;
}

osg::Vec3d CAxHandleAdapterEditor::aided(const osg::Vec3d& wanted, const AxViewRay& target) const
{
    AxViewerParts* const parts = shape->Parts();
    if (!parts)
        return wanted;
    const AxEditAids& aids = parts->Objects().Aids();
    osg::Vec3d place = wanted;
    bool isPlaced = false;
    if (aids.snap) {
        if (const auto snapped = snapTargets->Find(wanted, AxSnapViewOf(target, target.window, wanted))) {
            place = *snapped;
            isPlaced = true;
        }
    }
    const std::vector<osg::Vec3d>& anchors = shape->GetAnchor();
    const auto previous =
        AxEditRules::PreviousEdge(grip->handle.vertex, static_cast<int>(anchors.size()), isClosed());
    if (aids.angleSteps && !isPlaced && previous)
        place = AxEditRules::KeepAngle(anchors[std::size_t(previous->first)],
                                       anchors[std::size_t(previous->second)], wanted,
                                       AxEditRules::angleStepDegrees);
    const bool isElsewhere = place.x() != wanted.x() || place.y() != wanted.y();
    if (isElsewhere && !intersectModel)
        if (const auto height = groundAt(place.x(), place.y()))
            place.z() = *height;
    return place;
}

void CAxHandleAdapterEditor::gatherSnapTargets()
{
    snapTargets->Clear();
    AxViewerParts* const viewer = shape->Parts();
    if (!viewer || !viewer->Objects().Aids().snap)
        return;
    const std::vector<osg::Vec3d>& own = shape->GetAnchor();
    const bool isVertex = grip->handle.vertex < static_cast<int>(own.size());
    const auto parts =
        isVertex ? AxEditRules::SnapPartsFor(grip->handle.vertex, static_cast<int>(own.size()), isClosed())
                 : AxEditRules::OwnParts();
    for (const int vertex : parts.vertices)
        snapTargets->AddVertex(own[std::size_t(vertex)]);
    for (const auto& [from, to] : parts.edges)
        snapTargets->AddEdge(own[std::size_t(from)], own[std::size_t(to)]);
    AxAddSnapTargets(*snapTargets, viewer->Objects(), shape.operator->());
}

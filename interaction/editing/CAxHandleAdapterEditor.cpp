// The handles of an object's vertices: one for each, in step, coloured, on the ground.
#include "interaction/editing/CAxHandleAdapterEditor.h"
#include "interaction/editing/AxEdgeHandles.h"
#include "interaction/editing/AxEditRules.h"
#include "interaction/editing/CAxClampObjectCallback.h"
#include "interaction/models/AxModelPick.h"
#include "scene/shape/AxHandlePoints.h"
#include "scene/shape/AxViewRay.h"

#include "scene/AxEditAids.h"
#include "scene/AxObjectBook.h"
#include "scene/AxScene.h"
#include "scene/AxToolInHand.h"
#include "scene/AxViewerParts.h"

#include <AxBaseUI/AxToolTable.h>

#include <osg/ValueObject>
#include <osgEarth/MapNode>
#include <osgEarth/SpatialReference>
#include <osgEarth/Terrain>
#include <osgGA/EventVisitor>
#include <osgUtil/CullVisitor>
#include <osgViewer/Viewer>

#include <cmath>
#include <limits>

namespace {
// The tiles of the whole globe are too coarse to stand on.
constexpr int coarsestLod = 0;

// Of the handle of an edge beside that of a vertex.
constexpr float edgeHandleSize = 0.7f;
constexpr float edgeHandleOpacity = 0.6f;
// Of the handle that turns an object: a light blue.
const osg::Vec4f turnColor(0.3f, 0.8f, 1.0f, 1.0f);

osg::ref_ptr<const osgEarth::SpatialReference> GeographicOf(const osgEarth::MapNode* mapNode)
{
    return mapNode ? mapNode->getMapSRS()->getGeographicSRS() : osgEarth::SpatialReference::get("wgs84");
}

// The view of a cull traversal, whose camera need not be the viewer's.
std::optional<AxViewRay> ViewOf(osgUtil::CullVisitor& cv)
{
    const osg::Viewport* viewport = cv.getViewport();
    if (!viewport || !cv.getModelViewMatrix() || !cv.getProjectionMatrix())
        return std::nullopt;
    const osg::Matrixd& projection = *cv.getProjectionMatrix();
    AxViewRay view;
    const osg::Matrixd viewToWorld = osg::Matrixd::inverse(*cv.getModelViewMatrix());
    view.eye = viewToWorld.getTrans();
    view.forward = osg::Matrixd::transform3x3(osg::Vec3d(0.0, 0.0, -1.0), viewToWorld);
    view.pixelSize = 2.0 / (std::abs(projection(1, 1)) * viewport->height());
    view.worldToWindow = *cv.getModelViewMatrix() * projection * viewport->computeWindowMatrix();
    return view;
}

bool IsInWindow(const osg::Vec2d& place, const osg::Viewport& viewport, double margin)
{
    return place.x() > viewport.x() - margin && place.x() < viewport.x() + viewport.width() + margin &&
           place.y() > viewport.y() - margin && place.y() < viewport.y() + viewport.height() + margin;
}
} // namespace

CAxHandleAdapterEditor::CAxHandleAdapterEditor(CAxHandleAdapter* owner, osgEarth::MapNode* map, int number,
                                               bool srs, CAxDragger::DragType type, osg::Vec3d position)
    : shape(owner), mapNode(map), index(number), dragType(type), srsFlag(srs), planeCenter(position),
      snapTargets(std::make_unique<AxSnapTargets>()), edges(std::make_unique<AxEdgeHandles>())
{
    setName("AnchorEditor");
    setCullingActive(false);
    // Without a model handles follow the ground as finer tiles come.
    if (AxViewerParts* const parts = shape->Parts(); parts && parts->Objects().Aids().clampToModels)
        intersectModel = AxIsModelShown(parts->Scene().View()->getSceneData());
    _initEditor();
}

CAxHandleAdapterEditor::~CAxHandleAdapterEditor()
{
    removeDraggersFrom(0);
}

void CAxHandleAdapterEditor::Update()
{
    _initEditor();
}

void CAxHandleAdapterEditor::_initEditor()
{
    edges->outdated = true;
    if (!shape)
        return;
    std::vector<osg::Vec3d> anchors = shape->GetAnchor();
    vertices = anchors.size();
    further = shape->FurtherHandles();
    for (const AxFurtherHandle& handle : further)
        anchors.push_back(handle.place);
    if (grip && grip->handle.vertex >= static_cast<int>(anchors.size()))
        endDrag();
    removeDraggersFrom(anchors.size());
    osg::ref_ptr<osgEarth::MapNode> map;
    mapNode.lock(map);
    const auto srs = GeographicOf(map);
    for (std::size_t i = 0; i < anchors.size(); ++i) {
        if (i == draggers.size())
            addDragger();
        CAxDragger& dragger = *draggers[i];
        // What was a vertex' handle may be a further one by now.
        if (dragger.GetDragType() != typeOf(i) || i >= vertices) {
            dragger.SetDragType(typeOf(i));
            paint(dragger);
        }
        const osg::Vec3d before = dragger.GetPlace();
        if (dragger.getPosition().isValid() && before == anchors[i])
            continue;
        if (before.x() != anchors[i].x() || before.y() != anchors[i].y()) {
            if (clamps[i])
                clamps[i]->Forget();
            dragger.SetHovered(false);
        }
        dragger.setPosition(osgEarth::GeoPoint(srs, anchors[i], osgEarth::ALTMODE_ABSOLUTE), false);
    }
}

void CAxHandleAdapterEditor::addDragger()
{
    osg::ref_ptr<osgEarth::MapNode> map;
    mapNode.lock(map);
    const int vertex = static_cast<int>(draggers.size());
    auto* dragger = new CAxDragger(map, typeOf(draggers.size()));
    addChild(dragger);
    draggers.push_back(dragger);
    dragger->SetIndex(vertex);
    paint(*dragger);
    if (intersectModel)
        dragger->setUserValue("IntersectModel", true);
    if (moveAdapter)
        dragger->setUserValue("MoveAdapter", true);
    connect(dragger, &CAxDragger::signalDrag, this, &CAxHandleAdapterEditor::slotDrag);
    connect(dragger, &CAxDragger::signalPositionChanged, this, &CAxHandleAdapterEditor::slotPositionChanged);
    connect(dragger, &CAxDragger::signalPositionChanged, this, &CAxHandleAdapterEditor::PositionChanged);

    osg::ref_ptr<CAxClampObjectCallback> clamp;
    if (map && map->getTerrain()) {
        clamp = new CAxClampObjectCallback(dragger, vertex, coarsestLod);
        connect(clamp.get(), &CAxClampObjectCallback::signalPositionChanged, this,
                [this](double lng, double lat, double alt, int at) { takeHeight(lng, lat, alt, at); });
        map->getTerrain()->addTerrainCallback(clamp);
    }
    clamps.push_back(clamp);
}

void CAxHandleAdapterEditor::removeDraggersFrom(std::size_t first)
{
    if (first >= draggers.size())
        return;
    osg::ref_ptr<osgEarth::MapNode> map;
    mapNode.lock(map);
    for (std::size_t i = first; i < draggers.size(); ++i) {
        draggers[i]->disconnect(this);
        if (!clamps[i])
            continue;
        clamps[i]->Detach();
        if (map && map->getTerrain())
            map->getTerrain()->removeTerrainCallback(clamps[i]);
    }
    clamps.resize(first);
    removeChildren(static_cast<unsigned>(first), static_cast<unsigned>(draggers.size() - first));
    draggers.resize(first);
}

void CAxHandleAdapterEditor::paint(CAxDragger& dragger)
{
    const auto own = colorDraggers.find(dragger.GetIndex());
    const std::size_t handle = static_cast<std::size_t>(dragger.GetIndex());
    const bool turns = handle >= vertices && handle - vertices < further.size() &&
                       further[handle - vertices].does == AxFurtherHandle::Does::Turns;
    dragger.setColor(own != colorDraggers.end() ? own->second : turns ? turnColor : color);
    dragger.setPickColor(pickColor);
    dragger.SetSize(size);
}

// What changes an object's size is a box.
CAxDragger::DragType CAxHandleAdapterEditor::typeOf(std::size_t handle) const
{
    const bool resizes = handle >= vertices && handle - vertices < further.size() &&
                         further[handle - vertices].does == AxFurtherHandle::Does::Resizes;
    return dragType == CAxDragger::DragSphere && resizes ? CAxDragger::DragBox : dragType;
}

void CAxHandleAdapterEditor::SetPickColor(const osg::Vec4f& value)
{
    pickColor = value;
    for (CAxDragger* dragger : draggers)
        paint(*dragger);
}

void CAxHandleAdapterEditor::SetColor(const osg::Vec4f& value)
{
    color = value;
    for (CAxDragger* dragger : draggers)
        paint(*dragger);
}

void CAxHandleAdapterEditor::SetSize(float value)
{
    size = value;
    for (CAxDragger* dragger : draggers)
        paint(*dragger);
}

void CAxHandleAdapterEditor::SetDragType(CAxDragger::DragType type)
{
    dragType = type;
    for (std::size_t i = 0; i < draggers.size(); ++i)
        draggers[i]->SetDragType(typeOf(i));
}

void CAxHandleAdapterEditor::SetDraggerColor(int vertex, osg::Vec4f own)
{
    colorDraggers[vertex] = own;
    if (vertex >= 0 && vertex < static_cast<int>(draggers.size()))
        paint(*draggers[std::size_t(vertex)]);
}

void CAxHandleAdapterEditor::RemoveColorDragger(int vertex)
{
    if (colorDraggers.erase(vertex) > 0 && vertex >= 0 && vertex < static_cast<int>(draggers.size()))
        paint(*draggers[std::size_t(vertex)]);
}

void CAxHandleAdapterEditor::RemoveAllColorDragger()
{
    colorDraggers.clear();
    for (CAxDragger* dragger : draggers)
        paint(*dragger);
}

void CAxHandleAdapterEditor::setUserValueOnAll(const char* name, bool value)
{
    for (CAxDragger* dragger : draggers)
        dragger->setUserValue(name, value);
}

void CAxHandleAdapterEditor::SetIntersectModelLayer(bool intersect)
{
    if (intersectModel == intersect)
        return;
    intersectModel = intersect;
    edges->outdated = true;
    setUserValueOnAll("IntersectModel", intersect);
}

void CAxHandleAdapterEditor::SetMoveAdapter(bool move)
{
    moveAdapter = move;
    setUserValueOnAll("MoveAdapter", move);
}

void CAxHandleAdapterEditor::ResetClampAlt()
{
    setUserValueOnAll("ResetClampAlt", true);
}

osg::Vec3d CAxHandleAdapterEditor::GetHoveredPoint(int& hovered) const
{
    // Hidden handles get no events, and so do not hear that the mouse has left them.
    const bool isShown = getNodeMask() != 0 && shape && shape->IsVisible();
    for (std::size_t i = 0; isShown && i < draggers.size(); ++i) {
        if (!draggers[i]->getHovered())
            continue;
        hovered = static_cast<int>(i);
        return draggers[i]->GetPlace();
    }
    return {};
}

int CAxHandleAdapterEditor::HoveredVertex() const
{
    int hovered = -1;
    GetHoveredPoint(hovered);
    return hovered;
}

void CAxHandleAdapterEditor::slotDrag(bool bDrag)
{
    dragging = bDrag;
    // Vertices that follow from each other: the others go along with the one that is held.
    if (!shape || shape->ShapeKind().countMayChange)
        return;
    const QObject* held = sender();
    for (CAxDragger* dragger : draggers)
        if (dragger != held)
            dragger->setUserValue("Hover", bDrag);
}

void CAxHandleAdapterEditor::slotPositionChanged(double dLng, double dLat, double dAlt, int nIndex)
{
    if (!shape || nIndex < 0 || nIndex >= static_cast<int>(shape->GetAnchor().size()))
        return;
    shape->GetAnchor()[std::size_t(nIndex)].set(dLng, dLat, dAlt);
    edges->outdated = true;
}

// A tile may come while the vertices are elsewhere already, and the handles are not in step yet: a height
// holds for its place alone, and says nothing of longitude and latitude.
void CAxHandleAdapterEditor::takeHeight(double lng, double lat, double alt, int vertex)
{
    if (!shape || vertex < 0 || vertex >= static_cast<int>(shape->GetAnchor().size()))
        return;
    osg::Vec3d& anchor = shape->GetAnchor()[std::size_t(vertex)];
    if (anchor.x() != lng || anchor.y() != lat)
        return;
    anchor.z() = alt;
    edges->outdated = true;
}

bool CAxHandleAdapterEditor::isClosed() const
{
    return shape->ShapeKind().IsClosed();
}

bool CAxHandleAdapterEditor::mayEdit() const
{
    if (!shape || shape->IsLock() || !shape->IsVisible() || getNodeMask() == 0)
        return false;
    // A tool that takes places takes them from the handles, too.
    AxViewerParts* parts = shape->Parts();
    if (!grip && parts && AxToolRowOf(parts->Tools().Tool()).over == AxToolOver::Ground)
        return false;
    return shape->GetHandleOperation() == OperationIdle || (grip && grip->moved);
}

bool CAxHandleAdapterEditor::hasEdgeHandles() const
{
    if (!mayEdit() || (grip && grip->moved) || draggers.empty() || !draggers.front()->HasShape())
        return false;
    AxViewerParts* const parts = shape->Parts();
    const AxShapeKind kind = shape->ShapeKind();
    return parts && parts->Objects().Aids().edgeHandles && kind.countMayChange &&
           kind.edges != AxShapeKind::Edges::None;
}

std::optional<double> CAxHandleAdapterEditor::groundAt(double lng, double lat) const
{
    osg::ref_ptr<osgEarth::MapNode> map;
    double height = 0.0;
    if (mapNode.lock(map) && map->getTerrain() &&
        map->getTerrain()->getHeight(GeographicOf(map), lng, lat, &height))
        return height;
    return std::nullopt;
}

void CAxHandleAdapterEditor::setEdges() const
{
    AxViewerParts* const parts = shape->Parts();
    if (!intersectModel || !parts) {
        edges->Set(shape->GetAnchor(), isClosed());
        return;
    }
    // A model takes longer to be asked than a frame has time for.
    edges->Set(shape->GetAnchor(), isClosed(), [parts](double lng, double lat) {
        QList<osg::Vec3d> place{osg::Vec3d(lng, lat, std::numeric_limits<double>::quiet_NaN())};
        parts->Scene().GetElevations(place);
        const double height = place.front().z();
        return std::isfinite(height) ? std::make_optional(height) : std::nullopt;
    });
}

void CAxHandleAdapterEditor::traverse(osg::NodeVisitor& nv)
{
    if (osgUtil::CullVisitor* cv = nv.asCullVisitor()) {
        draw(*cv);
        return;
    }
    osgGA::EventVisitor* events = nv.asEventVisitor();
    if (!events) {
        osgEarth::Annotation::AnnotationEditor::traverse(nv);
        return;
    }
    // A listener may drop the object and its editor.
    const osg::ref_ptr<CAxHandleAdapterEditor> self(this);
    for (const auto& event : events->getEvents()) {
        const osgGA::GUIEventAdapter* ea = event->asGUIEventAdapter();
        if (ea && events->getActionAdapter() && handle(*ea, *events->getActionAdapter()))
            ea->setHandled(true);
    }
}

void CAxHandleAdapterEditor::draw(osgUtil::CullVisitor& cv)
{
    const auto view = ViewOf(cv);
    if (!view || !shape || !shape->IsVisible())
        return;
    const osg::Viewport& viewport = *cv.getViewport();
    AxHandlePoints round(view->eye);
    if (hasEdgeHandles()) {
        if (edges->outdated)
            setEdges();
        const auto ground = [this](double lng, double lat) { return groundAt(lng, lat); };
        for (const AxEdgeHandles::Shown& edge : edges->InView(*view, ground)) {
            osg::Vec4f tint = edge.edge == edges->hovered ? pickColor : color;
            tint.a() *= edgeHandleOpacity;
            if (IsInWindow(edge.window, viewport, size))
                round.Add(edge.world, edgeHandleSize * size, tint);
        }
    }
    for (CAxDragger* dragger : draggers) {
        if (!dragger->HasShape() || !cv.validNodeMask(*dragger))
            continue;
        const osg::Vec3d world = dragger->GetWorld();
        const auto place = view->Project(world);
        if (!place || !IsInWindow(place->window, viewport, 2.0 * dragger->GetSize()) ||
            AxIsBehindGlobe(view->eye, world))
            continue;
        // One by one, a thousand of them would take longer than the ground.
        if (dragger->GetDragType() == CAxDragger::DragSphere)
            round.Add(world, dragger->GetSize(), dragger->GetShownColor());
        else
            dragger->accept(cv);
    }
    round.Draw(cv);
}

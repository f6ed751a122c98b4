// The nodes of a route.
#include "mission/routes/AxRouteRules.h"
#include "mission/routes/AxTaskPolygonState.h"
#include "mission/routes/CAxTaskLable.h"
#include "scene/AxScene.h"
#include "scene/AxViewerParts.h"
#include "scene/base/AxSceneImage.h"
#include "scene/shape/AxStateOverGround.h"
#include "scene/shape/AxWorldGeometry.h"

#include <AxData/CAxBlock.h>
#include <AxData/CAxTask.h>

#include <osg/Camera>
#include <osg/Group>
#include <osg/observer_ptr>
#include <osg/Viewport>
#include <osgEarth/GeoData>
#include <osgEarth/MapNode>
#include <osgEarthSymbology/AltitudeSymbol>
#include <osgEarthSymbology/Color>
#include <osgEarthSymbology/IconSymbol>

#include <osgViewer/Viewer>

#include <QHash>

#include <algorithm>
#include <cmath>
#include <numeric>
#include <string>
#include <utility>

using osgEarth::Annotation::PlaceNode;
using osgEarth::Symbology::AltitudeSymbol;
using osgEarth::Symbology::Color;
using osgEarth::Symbology::Geometry;
using osgEarth::Symbology::IconSymbol;
using osgEarth::Symbology::LineString;
using osgEarth::Symbology::Style;

namespace {
constexpr float routeWidth = 2.0f; // pixels
// Seen on snow as on woods, and no other line has it.
constexpr float highlightedWidth = 3.0f;
const osg::Vec4f highlightedColor(1.0f, 0.3f, 0.0f, 1.0f);
// Hosts find the area of a task by this mask.
constexpr osg::Node::NodeMask areaMask = 0x1234;
// Areas of tasks are drawn among those of blocks, routes over them and below what is laid out on the screen.
constexpr int areaBin = 10;
constexpr int routeBin = 11;
constexpr int highlightedBin = 12;
constexpr std::size_t leastThinned = 64; // points of a line
// Over the numbers of points; home and entry points are never left out for them.
constexpr float markerPriority = 100.0f;

osg::ref_ptr<PlaceNode> MakeMarker(const AxScene& scene, const osgEarth::GeoPoint& place, const QString& icon,
                                   double liftMetres)
{
    Style style;
    auto* symbol = style.getOrCreate<IconSymbol>();
    symbol->alignment() = IconSymbol::ALIGN_CENTER_BOTTOM;
    symbol->declutter() = false;
    if (liftMetres > 0.0)
        style.getOrCreate<AltitudeSymbol>()->verticalOffset() =
            osgEarth::Symbology::NumericExpression(liftMetres);
    osg::ref_ptr<PlaceNode> marker =
        new PlaceNode(scene.MapNode(), place, AxSharedSceneImage(icon), std::string(), style);
    marker->setDynamic(true);
    marker->setPriority(markerPriority);
    return marker;
}

void SetIcon(PlaceNode& marker, const QString& path)
{
    if (!marker.getIconImage() || marker.getIconImage()->getFileName() != path.toStdString())
        marker.setIconImage(AxSharedSceneImage(path));
}

// Over the ground and the areas of blocks, whatever lies in front. One for all routes, so that lines of the
// same state are drawn together.
void DrawOverGround(osg::Geode& node, int bin)
{
    static QHash<int, osg::observer_ptr<osg::StateSet>> known;
    osg::ref_ptr<osg::StateSet> state;
    if (!known.value(bin).lock(state)) {
        state = AxStateOverGround();
        state->setRenderBinDetails(bin, bin == areaBin ? "DepthSortedBin" : "RenderBin");
        known[bin] = state.get();
    }
    node.setStateSet(state);
}

void LeaveScene(osg::Node* node)
{
    while (node && node->getNumParents() > 0)
        node->getParent(0)->removeChild(node);
}

AxWorldGeometry* RouteDrawable(const osg::Geode* node)
{
    return node && node->getNumDrawables() > 0
               ? dynamic_cast<AxWorldGeometry*>(const_cast<osg::Drawable*>(node->getDrawable(0)))
               : nullptr;
}
} // namespace

osg::Vec3d CAxTaskPolygon::world(const osg::Vec3d& place) const
{
    osg::Vec3d geocentric;
    const osgEarth::SpatialReference* srs = parts ? parts->Scene().MapSRS() : nullptr;
    if (srs)
        osgEarth::GeoPoint(srs->getGeographicSRS(), place, osgEarth::ALTMODE_ABSOLUTE).toWorld(geocentric);
    return geocentric;
}

// Nodes of an object that is gone wait for the one that comes in its place.
void CAxTaskPolygon::addToScene(osg::Node* node) const
{
    osg::Group* group = parts ? parts->Scene().DrawGroup() : nullptr;
    if (node && group && (!adapter || adapterAlive) && !group->containsNode(node))
        group->addChild(node);
}

std::vector<osg::Node*> CAxTaskPolygon::routeNodes() const
{
    std::vector<osg::Node*> nodes{airLineNode.get(), d->numbers.Node(), homeMarker.get()};
    for (const auto& marker : markerNodes)
        nodes.push_back(marker.get());
    if (label)
        nodes.push_back(label->GetRootNode());
    return nodes;
}

void CAxTaskPolygon::ClearFeatureNodeContained()
{
    LeaveScene(featureNode);
    for (osg::Node* node : routeNodes())
        LeaveScene(node);
}

// A route that does not hold any more must not be flown by. Home stays.
void CAxTaskPolygon::dropRoute()
{
    for (osg::Node* node : routeNodes())
        if (node != homeMarker)
            LeaveScene(node);
    airLine = nullptr;
}

void CAxTaskPolygon::CreateNode(const std::vector<CAxPoint2D>& outline)
{
    if (!parts || !parts->Scene().DrawGroup())
        return;
    if (!featureNode) {
        featureNode = new osg::Geode;
        DrawOverGround(*featureNode, areaBin);
    }
    featureNode->removeDrawables(0, featureNode->getNumDrawables());
    std::vector<osg::Vec3d> ring;
    ring.reserve(outline.size());
    const double height = flightHeight();
    for (const CAxPoint2D& point : outline)
        ring.push_back(world({point.x(), point.y(), height}));
    featureNode->addDrawable(
        CreateGeom(outlineColor, fillColor, routeWidth, ring, true, LineLoop, osg::Array::BIND_PER_VERTEX));
    SetVisible(areaVisible);
    addToScene(featureNode);
}

void CAxTaskPolygon::CreateAirLine(const std::vector<CAxVector3D>& points)
{
    const auto isFinite = [](const CAxVector3D& point) {
        return std::isfinite(point.x()) && std::isfinite(point.y()) && std::isfinite(point.z());
    };
    if (points.empty() || !parts || !parts->Scene().DrawGroup() ||
        !std::all_of(points.begin(), points.end(), isFinite))
        return;
    if (!airLine)
        airLine = new LineString;
    airLine->clear();
    for (const CAxVector3D& point : points)
        airLine->push_back(point.x(), point.y(), point.z());
    lineColor = highlighted ? highlightedColor : Color(Color::Yellow);
    if (airLineNode) {
        addToScene(airLineNode);
        return UpdateAirLine(drawingMode);
    }
    airLineNode = new osg::Geode;
    airLineNode->setName("Task Polygon");
    DrawOverGround(*airLineNode, highlighted ? highlightedBin : routeBin);
    osg::ref_ptr<AxWorldGeometry> drawable =
        CreateGeom(lineColor, osg::Vec4f(1, 0, 0, 0), highlighted ? highlightedWidth : routeWidth, {}, false,
                   LineStrip, osg::Array::BIND_PER_VERTEX);
    drawable->setName("Feature");
    airLineNode->addDrawable(drawable);
    applyVisible();
    addToScene(airLineNode);
    UpdateAirLine(drawingMode);
}

std::vector<osg::Vec3d> CAxTaskPolygon::worldOf(const Geometry& points) const
{
    const double height = flightHeight();
    const ETaskType type = taskType();
    std::vector<osg::Vec3d> drawn;
    drawn.reserve(points.size());
    for (const osg::Vec3d& point : points)
        drawn.push_back(world({point.x(), point.y(), AxRouteRules::DrawnAltitude(point.z(), height, type)}));
    return drawn;
}

std::vector<osg::Vec3d> CAxTaskPolygon::ComputerAirLineNormalPoint(const std::vector<int>& kept) const
{
    std::vector<osg::Vec3d> points;
    points.reserve(kept.size() + 3);
    for (const int i : kept)
        points.push_back(d->places[static_cast<std::size_t>(i)]);
    if (homePoint.isNull())
        return points;
    const osg::Vec3d aboveHome = world({homePoint.x(), homePoint.y(), flightHeight()});
    points.insert(points.begin(), aboveHome);
    points.push_back(aboveHome);
    points.push_back(world({homePoint.x(), homePoint.y(), homePoint.z()}));
    return points;
}

void CAxTaskPolygon::UpdateAirLine(int mode)
{
    drawingMode = mode;
    AxWorldGeometry* drawable = RouteDrawable(airLineNode);
    if (!drawable || !airLine || airLine->empty() || !parts || !parts->Scene().MapSRS())
        return;
    d->places = worldOf(*airLine);
    UpdateAirLinePoint(*drawable, allPoints());
    d->detail.SetPoints(d->places.size() < leastThinned ? std::vector<osg::Vec3d>() : d->places);
    d->detailShown.reset();
    osg::BoundingBoxd box;
    for (const osg::Vec3d& place : d->places)
        box.expandBy(place);
    d->bound = osg::BoundingSphered(box);
    UpdatePointTxt(*airLine);
}

std::vector<int> CAxTaskPolygon::allPoints() const
{
    std::vector<int> all(d->places.size());
    std::iota(all.begin(), all.end(), 0);
    return all;
}

void CAxTaskPolygon::UpdateAirLinePoint(AxWorldGeometry& drawable, const std::vector<int>& kept) const
{
    if (drawingMode == 0) {
        const std::vector<osg::Vec3d> points = ComputerAirLineNormalPoint(kept);
        setPoints(drawable, points, osg::Array::BIND_PER_VERTEX);
        return AddEdgePrimitiveSet(drawable, 0, static_cast<unsigned>(points.size()), lineColor, LineStrip);
    }
    const bool isNewFlight = AxRouteRules::IsNoPlace(lastPoint);
    const int stoppedIn = isNewFlight ? 0 : AxRouteRules::SegmentNearest(airLine->asVector(), lastPoint);
    AxRouteRules::Segments segments;
    osg::Vec3d previous = d->places.front();
    for (const int i : kept) {
        const osg::Vec3d& current = d->places[static_cast<std::size_t>(i)];
        if (i == 0)
            continue;
        if (isNewFlight)
            ComputerAirLineStartAndEnd(i, previous, current, segments);
        else
            ComputerAirLineContinueLastFlight(i, previous, current, stoppedIn, segments);
    }
    ComputerAirLineHomePoint(d->places.front(), d->places.back(), flightHeight(), segments);
    setPoints(drawable, segments.points, osg::Array::BIND_PER_VERTEX);
    AddEdgePrimitiveSet(drawable, 0, static_cast<int>(segments.points.size()), segments.colors, lineColor);
}

void CAxTaskPolygon::ComputerAirLineStartAndEnd(int i, osg::Vec3d& previous, const osg::Vec3d& current,
                                                AxRouteRules::Segments& segments) const
{
    AxRouteRules::AddSegmentByIndices(i, previous, current, startIndex, endIndex, lineColor, segments);
}

void CAxTaskPolygon::ComputerAirLineContinueLastFlight(int i, osg::Vec3d& previous, const osg::Vec3d& current,
                                                       int stoppedIn, AxRouteRules::Segments& segments) const
{
    AxRouteRules::AddSegmentByPlace(i, previous, current, stoppedIn, lineColor, segments);
}

void CAxTaskPolygon::ComputerAirLineHomePoint(const osg::Vec3d& first, const osg::Vec3d& last, double height,
                                              AxRouteRules::Segments& segments) const
{
    if (homePoint.isNull())
        return;
    const osg::Vec3d aboveHome = world({homePoint.x(), homePoint.y(), height});
    const osg::Vec3d home = world({homePoint.x(), homePoint.y(), homePoint.z()});
    AxRouteRules::AddHomeLegs(first, last, aboveHome, home, lineColor, segments);
}

void CAxTaskPolygon::lookAgain()
{
    if (!parts || !airLineVisible || !airLine)
        return;
    const osg::Camera* camera = parts->Scene().View()->getCamera();
    double fieldOfView = 0.0, aspect = 0.0, zNear = 0.0, zFar = 0.0;
    if (!camera->getViewport() || !camera->getProjectionMatrixAsPerspective(fieldOfView, aspect, zNear, zFar))
        return;
    const osg::Vec3d eye = camera->getInverseViewMatrix().getTrans();
    const double pixel =
        2.0 * std::tan(osg::DegreesToRadians(fieldOfView) / 2.0) / camera->getViewport()->height();
    d->isSmall = AxRouteRules::AreMarkersInTheWay(d->bound, eye, pixel);
    HideMarkerPointTxt(d->isSmall);
    if (!d->isSmall)
        d->numbers.Look(parts->Scene(), [this](int index) { return AddPointTxt(index); });
    showDetail(d->detail.Levels(eye, pixel));
}

// Far away a long line is drawn by another drawable with fewer points in its place.
void CAxTaskPolygon::showDetail(const std::vector<int>& levels)
{
    if (!airLineNode || d->detailShown == levels)
        return;
    d->detailShown = levels;
    airLineNode->removeDrawables(1, airLineNode->getNumDrawables() - 1);
    std::vector<int> kept = d->detail.Kept(levels);
    const bool isThinned = !levels.empty() && 2 * kept.size() < d->places.size();
    airLineNode->getDrawable(0)->setNodeMask(isThinned ? 0u : ~0u);
    if (!isThinned)
        return;
    // Colours change there.
    if (drawingMode != 0) {
        const int stopped = AxRouteRules::SegmentNearest(airLine->asVector(), lastPoint) - 1;
        for (const int edge : {startIndex, endIndex - 1, stopped})
            if (edge >= 0 && edge < static_cast<int>(d->places.size()))
                kept.push_back(edge);
        std::sort(kept.begin(), kept.end());
        kept.erase(std::unique(kept.begin(), kept.end()), kept.end());
    }
    const osg::ref_ptr<AxWorldGeometry> thinned = new AxWorldGeometry;
    thinned->SetLineWidth(highlighted ? highlightedWidth : routeWidth);
    UpdateAirLinePoint(*thinned, kept);
    airLineNode->addDrawable(thinned);
}

void CAxTaskPolygon::SetHighlighted(bool wanted)
{
    if (std::exchange(highlighted, wanted) == wanted || !airLineNode)
        return;
    DrawOverGround(*airLineNode, highlighted ? highlightedBin : routeBin);
    for (unsigned i = 0; i < airLineNode->getNumDrawables(); ++i)
        if (auto* line = dynamic_cast<AxWorldGeometry*>(airLineNode->getDrawable(i)))
            line->SetLineWidth(highlighted ? highlightedWidth : routeWidth);
    lineColor = highlighted ? highlightedColor : Color(Color::Yellow);
    UpdateAirLine(drawingMode);
    lookAgain();
}

void CAxTaskPolygon::CreateLineMarker(const QList<QPair<int, CAxVector3D>>& markers, double height)
{
    if (markers.isEmpty() || !parts || !parts->Scene().MapNode())
        return;
    for (int i = 0; i < 4; ++i) {
        osg::ref_ptr<PlaceNode>& node = markerNodes[i];
        if (i >= markers.size()) {
            LeaveScene(node);
            node = nullptr;
            continue;
        }
        const CAxVector3D& marker = markers[i].second;
        const osg::Vec3d place(marker.x(), marker.y(), height);
        const osgEarth::GeoPoint position(parts->Scene().MapSRS()->getGeographicSRS(), place,
                                          osgEarth::ALTMODE_ABSOLUTE);
        const QString icon = AxRouteRules::MarkerIcon(i, entryPoint);
        if (!node)
            node = MakeMarker(parts->Scene(), position, icon, 0.0);
        node->setPosition(position);
        SetIcon(*node, icon);
        addToScene(node);
        AddAirLineMarkerFlying(i, world(place));
    }
    applyVisible();
}

void CAxTaskPolygon::UpdateLineMarker(const QMap<int, osg::Vec3d>& markers)
{
    const osgEarth::SpatialReference* srs = parts ? parts->Scene().MapSRS() : nullptr;
    for (auto marker = markers.begin(); srs && marker != markers.end(); ++marker) {
        osgEarth::GeoPoint place;
        if (marker.key() >= 0 && marker.key() < 4 && markerNodes[marker.key()] &&
            place.fromWorld(srs->getGeographicSRS(), *marker))
            markerNodes[marker.key()]->setPosition(place);
    }
}

void CAxTaskPolygon::showHome()
{
    if (homePoint.isNull() || homeMarkerHidden || !parts || !parts->Scene().MapNode()) {
        LeaveScene(homeMarker);
        homeMarker = nullptr;
        return;
    }
    const osgEarth::GeoPoint place(parts->Scene().MapSRS()->getGeographicSRS(),
                                   osg::Vec3d(homePoint.x(), homePoint.y(), homePoint.z()),
                                   osgEarth::ALTMODE_ABSOLUTE);
    const QString icon = AxRouteRules::HomeIcon(landsDownhill);
    if (!homeMarker)
        homeMarker = MakeMarker(parts->Scene(), place, icon, 0.1);
    homeMarker->setPosition(place);
    SetIcon(*homeMarker, icon);
    applyVisible();
    addToScene(homeMarker);
}

CAxTaskLable* CAxTaskPolygon::GetTaskLable() const
{
    return label;
}

void CAxTaskPolygon::DrawLineLable()
{
    CAxBlock* record = block();
    const CAxTask* task = record ? record->GetTask(taskID) : nullptr;
    const osgEarth::SpatialReference* srs = parts ? parts->Scene().MapSRS() : nullptr;
    if (!task || !srs || !airLine || airLine->size() < 2)
        return;
    const double height = flightHeight();
    std::vector<osg::Vec3d> ends;
    for (std::size_t i = 0; i < 2; ++i)
        ends.push_back(world({(*airLine)[i].x(), (*airLine)[i].y(),
                              AxRouteRules::DrawnAltitude((*airLine)[i].z(), height, taskType())}));
    if (!label || labelledPoints != ends || label->objectName() != task->GetTaskName()) {
        osgEarth::GeoPoint place, link;
        if (!place.fromWorld(srs->getGeographicSRS(), AxRouteRules::LabelPlace(ends[0], ends[1])) ||
            !link.fromWorld(srs->getGeographicSRS(), ends[0]))
            return;
        // The old one may be telling of its button.
        if (label) {
            label->RemoveFromScene();
            label->disconnect(this);
            label->deleteLater();
        }
        label = new CAxTaskLable(viewer, task->GetTaskName(), place, link);
        label->setParent(this);
        label->setObjectName(task->GetTaskName());
        label->UpdateLinkLine(link);
        connect(label, SIGNAL(PressedBtnSignal(int, QString)), this,
                SLOT(slotAirLineOmniDirectional(int, QString)));
        if (task->direction > 0)
            label->ShowChosen(task->direction + 1);
        labelledPoints = ends;
    }
    label->SetImgVisible(record->GetTaskPara()->GetExtendedTaskParam()->GetFlyingMode() ==
                         CAxExtendedTaskParam::ThreeDirections);
    label->AddToScene();
    applyVisible();
}

void CAxTaskPolygon::SetAirLineVisible(bool visible)
{
    if (visible == airLineVisible)
        return;
    airLineVisible = visible;
    applyVisible();
    lookAgain();
}

// To nodes that may have been made since.
void CAxTaskPolygon::applyVisible() const
{
    for (osg::Node* node : routeNodes())
        if (node)
            node->setNodeMask(airLineVisible ? ~0u : 0u);
    HideMarkerPointTxt(d->isSmall);
}

void CAxTaskPolygon::HideMarkerPointTxt(bool hidden) const
{
    const osg::Node::NodeMask mask = airLineVisible && !hidden ? ~0u : 0u;
    d->numbers.Node()->setNodeMask(mask);
    for (const auto& marker : markerNodes)
        if (marker)
            marker->setNodeMask(mask);
    if (label)
        label->SetLinkVisible(!hidden);
}

void CAxTaskPolygon::SetVisible(bool visible)
{
    areaVisible = visible;
    if (featureNode)
        featureNode->setNodeMask(visible ? areaMask : 0u);
}

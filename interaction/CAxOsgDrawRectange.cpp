#include "interaction/CAxOsgDrawRectange.h"
#include "interaction/AxBlockColors.h"
#include "interaction/AxBlockRefusal.h"
#include "interaction/AxEditRules.h"
#include "interaction/AxViewRay.h"
#include "interaction/CAxHandleAdapterEditor.h"
#include "viewer/CAxEarthViewer.h"

#include <osgEarth/GeoData>
#include <osgEarth/SpatialReference>
#include <osgViewer/Viewer>

#include <cmath>
#include <utility>

namespace {
constexpr std::size_t corners = 4;
// Degrees within which two corners count as on the same meridian or parallel.
constexpr double sameDegrees = 1e-8;

std::vector<osg::Vec3d> Between(const osg::Vec3d& a, const osg::Vec3d& b)
{
    return {a, {b.x(), a.y(), a.z()}, b, {a.x(), b.y(), b.z()}};
}

double LongitudesApart(const osg::Vec3d& a, const osg::Vec3d& b)
{
    return std::abs(std::remainder(a.x() - b.x(), 360.0));
}
} // namespace

CAxOsgDrawRectange::CAxOsgDrawRectange(CAxEarthViewer* earthViewer, QObject* parent)
    : CAxHandleAdapter(earthViewer, parent)
{
    blockType = CAxBlock::RectangleBlock;
    const AxBlockColors colors = AxBlockColors::OfBlock(false);
    edgeColor = colors.edge;
    fillColor = colors.fill;
    JoinScene();
}

CAxOsgDrawRectange::~CAxOsgDrawRectange() = default;

void CAxOsgDrawRectange::SetAdapterVisible(bool isVisible, QString)
{
    ShowParts(isVisible);
}

void CAxOsgDrawRectange::HandleEnd()
{
    ShowFinished();
}

void CAxOsgDrawRectange::UpdateColor()
{
    PaintByRoutes();
}

void CAxOsgDrawRectange::ImportGeometry(const std::vector<osg::Vec3d>& points, bool enableEditor)
{
    if (!TakeVertices(points, enableEditor) || anchors.size() != corners)
        return;
    firstSideOnParallel =
        std::abs(anchors[0].y() - anchors[1].y()) <= LongitudesApart(anchors[0], anchors[1]);
}

void CAxOsgDrawRectange::ClearPoints()
{
    DropVertices();
}

// Judging

bool CAxOsgDrawRectange::IsFlat() const
{
    if (anchors.size() != corners)
        return false;
    const double width = LongitudesApart(anchors[0], anchors[2]);
    const double height = std::abs(anchors[0].y() - anchors[2].y());
    // Also without numbers.
    return !(width > sameDegrees) || !(height > sameDegrees);
}

int CAxOsgDrawRectange::CheckGeometry()
{
    if (!featureNode)
        return -1;
    const Running self(this);
    if (anchors.size() < 3)
        return AxBlockRefusal::TooFewPoints(viewer);
    if (anchors.size() != corners || IsFlat())
        return AxBlockRefusal::Invalid(viewer);
    if (!viewer)
        return 1;
    const QStringList zones = AxZonesUnder(*viewer, anchors);
    if (!zones.isEmpty())
        return AxBlockRefusal::OverZones(viewer, zones);
    viewer->IntersectionModelLayer(this);
    return 1;
}

// Drawing

bool CAxOsgDrawRectange::isTremble(float windowX, float windowY) const
{
    return static_cast<double>((osg::Vec2f(windowX, windowY) - press->window).length()) <
           AxEditRules::tremblePixels;
}

bool CAxOsgDrawRectange::isOnFirstCorner(const osg::Vec3d& lngLatPos) const
{
    const osg::Camera* camera =
        viewer && viewer->getOSGViewer() ? viewer->getOSGViewer()->getCamera() : nullptr;
    const auto view = camera ? AxViewRay::Through(*camera, 0.0, 0.0) : std::nullopt;
    if (!view || !viewer->getSRS())
        return lngLatPos == anchors.front();
    const auto windowOf = [&](const osg::Vec3d& place) {
        osg::Vec3d world;
        osgEarth::GeoPoint(viewer->getSRS()->getGeographicSRS(), place, osgEarth::ALTMODE_ABSOLUTE)
            .toWorld(world);
        return view->Project(world);
    };
    const auto corner = windowOf(anchors.front());
    const auto place = windowOf(lngLatPos);
    return corner && place && (corner->window - place->window).length() < AxEditRules::tremblePixels;
}

void CAxOsgDrawRectange::setFirstCorner(const osg::Vec3d& lngLatPos)
{
    anchors.assign(1, lngLatPos);
    if (anchorEditor)
        anchorEditor->Update();
    else
        CreateEditor();
}

void CAxOsgDrawRectange::finishAt(const Place& place)
{
    if (anchors.empty() || !IsOverGround(place.lngLat, place.world))
        return;
    anchors = Between(anchors.front(), place.lngLat);
    FinishDrawing();
}

void CAxOsgDrawRectange::slotMousePressed(osg::Vec3d lngLatPos, osg::Vec3d worldCoordPos)
{
    CAxHandleAdapter::slotMousePressed(lngLatPos, worldCoordPos);
    endedByClick = false;
    cornerIsNew = false;
    press.reset();
    if (operation == OperationDrawing)
        press = Press{{lngLatPos, worldCoordPos}, {}};
}

void CAxOsgDrawRectange::slotMousePressed(float windowX, float windowY)
{
    CAxHandleAdapter::slotMousePressed(windowX, windowY);
    if (press)
        press->window.set(windowX, windowY);
}

void CAxOsgDrawRectange::slotDragging(osg::Vec3d lngLatPos, osg::Vec3d worldCoordPos)
{
    CAxHandleAdapter::slotDragging(lngLatPos, worldCoordPos);
    underMouse = {lngLatPos, worldCoordPos};
}

void CAxOsgDrawRectange::slotDragging(float windowX, float windowY)
{
    CAxHandleAdapter::slotDragging(windowX, windowY);
    if (operation != OperationDrawing || !press || (anchors.empty() && isTremble(windowX, windowY)))
        return;
    if (anchors.empty() && IsOverGround(press->place.lngLat, press->place.world))
        setFirstCorner(press->place.lngLat);
    slotMoving(underMouse.lngLat, underMouse.world);
}

void CAxOsgDrawRectange::slotMouseRelease(osg::Vec3d lngLatPos, osg::Vec3d worldCoordPos)
{
    underMouse = {lngLatPos, worldCoordPos};
    CAxHandleAdapter::slotMouseRelease(lngLatPos, worldCoordPos);
}

// Comes at the end of a drag alone, not of a click.
void CAxOsgDrawRectange::slotMouseRelease(float windowX, float windowY)
{
    CAxHandleAdapter::slotMouseRelease(windowX, windowY);
    if (operation != OperationDrawing || !press)
        return;
    if (isTremble(windowX, windowY)) {
        const Place place = press->place;
        slotPicked(place.lngLat, place.world);
        return;
    }
    press.reset();
    if (!anchors.empty() && !isOnFirstCorner(underMouse.lngLat))
        finishAt(underMouse);
}

void CAxOsgDrawRectange::slotMoving(osg::Vec3d lngLatPos, osg::Vec3d worldCoordPos)
{
    if (operation != OperationDrawing || anchors.empty() || !IsOverGround(lngLatPos, worldCoordPos))
        return;
    const std::vector<osg::Vec3d> ring = Between(anchors.front(), lngLatPos);
    DrawRubberBand(ring, true);
    ShowBesideCursor(lngLatPos, tr("%1 x %2").arg(LengthText(Distance(ring[0], ring[1])),
                                                  LengthText(Distance(ring[1], ring[2]))));
}

void CAxOsgDrawRectange::slotPicked(osg::Vec3d lngLatPos, osg::Vec3d worldCoordPos)
{
    const bool isByMouse = press.has_value();
    press.reset();
    if (operation != OperationDrawing || !IsOverGround(lngLatPos, worldCoordPos))
        return;
    if (anchors.empty()) {
        setFirstCorner(lngLatPos);
        cornerIsNew = isByMouse;
        return;
    }
    if (isByMouse && isOnFirstCorner(lngLatPos))
        return;
    endedByClick = isByMouse;
    finishAt({lngLatPos, worldCoordPos});
}

void CAxOsgDrawRectange::slotDoubleClicked(osg::Vec3d lngLatPos, osg::Vec3d worldCoordPos)
{
    // Its first click has ended the drawing, and no more was meant by it.
    if (std::exchange(endedByClick, false))
        return;
    const bool draws =
        operation == OperationDrawing && viewer && GetToolKind(viewer->GetToolType()) == ToolKindDraw;
    if (draws && anchors.size() == 1 && IsOverGround(lngLatPos, worldCoordPos)) {
        // A trembling hand double-clicks on two pixels, and means no rectangle between them.
        const bool isTwice = cornerIsNew && isOnFirstCorner(lngLatPos);
        anchors = Between(anchors.front(), isTwice ? anchors.front() : lngLatPos);
    }
    CAxHandleAdapter::slotDoubleClicked(lngLatPos, worldCoordPos);
}

// Editing

void CAxOsgDrawRectange::slotPointMoved(double lng, double lat, double alt, int index)
{
    const auto moved = static_cast<std::size_t>(index);
    if ((operation == OperationIdle || operation == OperationMovePoint) && index >= 0 && moved < corners &&
        anchors.size() == corners) {
        anchors[moved].set(lng, lat, alt);
        osg::Vec3d& next = anchors[(moved + 1) % corners];
        osg::Vec3d& previous = anchors[(moved + 3) % corners];
        const osg::Vec3d& opposite = anchors[(moved + 2) % corners];
        const bool nextOnParallel = (moved % 2 == 0) == firstSideOnParallel;
        osg::Vec3d& onParallel = nextOnParallel ? next : previous;
        osg::Vec3d& onMeridian = nextOnParallel ? previous : next;
        onParallel.set(opposite.x(), lat, onParallel.z());
        onMeridian.set(lng, opposite.y(), onMeridian.z());
        GetBlockElevation();
        anchors[moved].z() = alt;
        if (anchorEditor)
            anchorEditor->Update();
    }
    CAxHandleAdapter::slotPointMoved(lng, lat, alt, index);
}

void CAxOsgDrawRectange::ResponseHandlePointMoved(osg::Vec3d, osg::Vec3d)
{
    EndEdit();
}

void CAxOsgDrawRectange::ResponseHandleMoved(osg::Vec3d, osg::Vec3d)
{
    EndEdit();
}

#include "interaction/objects/CAxOsgDrawRectange.h"
#include "interaction/editing/AxEditRules.h"
#include "interaction/editing/CAxHandleAdapterEditor.h"
#include "interaction/objects/AxBlockRefusal.h"
#include "interaction/objects/AxHandleAdapterState.h"
#include "scene/AxScene.h"
#include "scene/AxToolInHand.h"
#include "scene/base/AxLongitudes.h"
#include "scene/shape/AxViewRay.h"

#include <osgEarth/GeoData>
#include <osgEarth/SpatialReference>
#include <osgViewer/Viewer>

#include <cmath>
#include <utility>

namespace {
constexpr std::size_t corners = 4;
using AxLongitudes::sameDegrees;
// A pick is as exact as a float, whose step is 1.5e-5 at 180 degrees.
constexpr double pickDegrees = 2e-5;

std::vector<osg::Vec3d> Between(const osg::Vec3d& a, const osg::Vec3d& b)
{
    return {a, {b.x(), a.y(), a.z()}, b, {a.x(), b.y(), b.z()}};
}

double LongitudesApart(const osg::Vec3d& a, const osg::Vec3d& b)
{
    return std::abs(std::remainder(a.x() - b.x(), 360.0));
}
} // namespace

CAxOsgDrawRectange::CAxOsgDrawRectange(CAxEarthViewer* viewer, QObject* parent)
    : CAxOsgDrawRectange(viewer, parent, CAxBlock::RectangleBlock)
{
}

CAxOsgDrawRectange::CAxOsgDrawRectange(CAxEarthViewer* viewer, QObject* parent, CAxBlock::EBlockType type)
    : AxBlockAdapter(viewer, parent, type)
{
}

CAxOsgDrawRectange::~CAxOsgDrawRectange() = default;

void CAxOsgDrawRectange::ImportGeometry(const std::vector<osg::Vec3d>& points, bool enableEditor)
{
    AxBlockAdapter::ImportGeometry(points, enableEditor);
    if (d->anchors.size() != corners)
        return;
    firstSideOnParallel =
        std::abs(d->anchors[0].y() - d->anchors[1].y()) <= LongitudesApart(d->anchors[0], d->anchors[1]);
}

// Judging

bool CAxOsgDrawRectange::IsFlat() const
{
    if (d->anchors.size() != corners)
        return false;
    const double width = LongitudesApart(d->anchors[0], d->anchors[2]);
    const double height = std::abs(d->anchors[0].y() - d->anchors[2].y());
    // Also without numbers.
    return !(width > sameDegrees) || !(height > sameDegrees);
}

AxVerdict CAxOsgDrawRectange::JudgeShape()
{
    return ShapeFault().isEmpty() ? AxVerdict::Accepted : AxBlockRefusal::Invalid(BoxParent());
}

QString CAxOsgDrawRectange::ShapeFault()
{
    const bool isRectangle = d->anchors.size() == corners && !IsFlat();
    return isRectangle ? QString() : AxBlockRefusal::InvalidText();
}

// Drawing

bool CAxOsgDrawRectange::isTremble(float windowX, float windowY) const
{
    return static_cast<double>((osg::Vec2f(windowX, windowY) - press->window).length()) <
           AxEditRules::tremblePixels;
}

std::optional<double> CAxOsgDrawRectange::pixelsBetween(const osg::Vec3d& a, const osg::Vec3d& b) const
{
    const osg::Camera* camera = d->viewer ? d->viewer->Scene().View()->getCamera() : nullptr;
    const auto view = camera ? AxViewRay::Through(*camera, 0.0, 0.0) : std::nullopt;
    if (!view || !d->viewer->Scene().MapSRS())
        return std::nullopt;
    const auto windowOf = [&](const osg::Vec3d& place) {
        osg::Vec3d world;
        osgEarth::GeoPoint(d->viewer->Scene().MapSRS()->getGeographicSRS(), place, osgEarth::ALTMODE_ABSOLUTE)
            .toWorld(world);
        return view->Project(world);
    };
    const auto from = windowOf(a);
    const auto to = windowOf(b);
    return from && to ? std::make_optional((from->window - to->window).length()) : std::nullopt;
}

bool CAxOsgDrawRectange::isOnFirstCorner(const osg::Vec3d& lngLatPos)
{
    const osg::Vec3d place = Snapped(lngLatPos);
    const auto pixels = pixelsBetween(d->anchors.front(), place);
    return pixels ? *pixels < AxEditRules::tremblePixels : place == d->anchors.front();
}

std::vector<osg::Vec3d> CAxOsgDrawRectange::upTo(const osg::Vec3d& lngLatPos)
{
    const osg::Vec3d& first = d->anchors.front();
    osg::Vec3d opposite = Snapped(lngLatPos);
    const auto isThin = [this](const osg::Vec3d& a, const osg::Vec3d& b, double degrees) {
        return degrees < pickDegrees ||
               pixelsBetween(a, b).value_or(AxEditRules::tremblePixels) < AxEditRules::tremblePixels;
    };
    const std::vector<osg::Vec3d> ring = Between(first, opposite);
    if (isThin(ring[0], ring[1], LongitudesApart(first, opposite)))
        opposite.x() = first.x();
    if (isThin(ring[1], ring[2], std::abs(first.y() - opposite.y())))
        opposite.y() = first.y();
    return Between(first, opposite);
}

void CAxOsgDrawRectange::setFirstCorner(const osg::Vec3d& lngLatPos)
{
    d->anchors.assign(1, Snapped(lngLatPos));
    ShowHandles();
}

void CAxOsgDrawRectange::ResumeDrawing(std::vector<osg::Vec3d> vertices)
{
    // Only the first corner is a vertex while the rectangle is drawn.
    if (vertices.size() > 1)
        vertices.resize(1);
    AxBlockAdapter::ResumeDrawing(std::move(vertices));
}

void CAxOsgDrawRectange::finishAt(const Place& place)
{
    if (d->anchors.empty() || !IsOverGround(place.lngLat, place.world))
        return;
    d->anchors = upTo(place.lngLat);
    FinishDrawing();
}

void CAxOsgDrawRectange::slotMousePressed(osg::Vec3d lngLatPos, osg::Vec3d worldCoordPos)
{
    AxBlockAdapter::slotMousePressed(lngLatPos, worldCoordPos);
    endedByClick = false;
    cornerIsNew = false;
    press.reset();
    if (d->operation == OperationDrawing)
        press = Press{{lngLatPos, worldCoordPos}, {}};
}

void CAxOsgDrawRectange::slotMousePressed(float windowX, float windowY)
{
    AxBlockAdapter::slotMousePressed(windowX, windowY);
    if (press)
        press->window.set(windowX, windowY);
}

void CAxOsgDrawRectange::slotDragging(osg::Vec3d lngLatPos, osg::Vec3d worldCoordPos)
{
    AxBlockAdapter::slotDragging(lngLatPos, worldCoordPos);
    underMouse = {lngLatPos, worldCoordPos};
}

void CAxOsgDrawRectange::slotDragging(float windowX, float windowY)
{
    AxBlockAdapter::slotDragging(windowX, windowY);
    if (d->operation != OperationDrawing || !press || (d->anchors.empty() && isTremble(windowX, windowY)))
        return;
    if (d->anchors.empty() && IsOverGround(press->place.lngLat, press->place.world))
        setFirstCorner(press->place.lngLat);
    slotMoving(underMouse.lngLat, underMouse.world);
}

void CAxOsgDrawRectange::slotMouseRelease(osg::Vec3d lngLatPos, osg::Vec3d worldCoordPos)
{
    underMouse = {lngLatPos, worldCoordPos};
    AxBlockAdapter::slotMouseRelease(lngLatPos, worldCoordPos);
}

// Comes at the end of a drag alone, not of a click.
void CAxOsgDrawRectange::slotMouseRelease(float windowX, float windowY)
{
    AxBlockAdapter::slotMouseRelease(windowX, windowY);
    if (d->operation != OperationDrawing || !press)
        return;
    if (isTremble(windowX, windowY)) {
        const Place place = press->place;
        slotPicked(place.lngLat, place.world);
        return;
    }
    press.reset();
    if (!d->anchors.empty() && !isOnFirstCorner(underMouse.lngLat))
        finishAt(underMouse);
}

void CAxOsgDrawRectange::slotMoving(osg::Vec3d lngLatPos, osg::Vec3d worldCoordPos)
{
    if (d->operation != OperationDrawing || d->anchors.empty() || !IsOverGround(lngLatPos, worldCoordPos))
        return;
    const std::vector<osg::Vec3d> ring = Between(d->anchors.front(), Snapped(lngLatPos));
    DrawRubberBand(ring, true);
    QString text = tr("%1 x %2").arg(AxLengthText(AxGroundDistance(ring[0], ring[1])),
                                     AxLengthText(AxGroundDistance(ring[1], ring[2])));
    if (d->viewer)
        text += QLatin1Char('\n') + AxRingSizeText(ring, *d->viewer->Scene().MapSRS());
    ShowBesideCursor(lngLatPos, text);
}

void CAxOsgDrawRectange::slotPicked(osg::Vec3d lngLatPos, osg::Vec3d worldCoordPos)
{
    const bool isByMouse = press.has_value();
    press.reset();
    if (d->operation != OperationDrawing || !IsOverGround(lngLatPos, worldCoordPos))
        return;
    if (d->anchors.empty()) {
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
    const bool draws = d->operation == OperationDrawing && d->viewer &&
                       GetToolKind(d->viewer->Tools().Tool()) == ToolKindDraw;
    if (draws && d->anchors.size() == 1 && IsOverGround(lngLatPos, worldCoordPos)) {
        // A trembling hand double-clicks on two pixels, and means no rectangle between them.
        const bool isTwice = cornerIsNew && isOnFirstCorner(lngLatPos);
        d->anchors = isTwice ? Between(d->anchors.front(), d->anchors.front()) : upTo(lngLatPos);
    }
    AxBlockAdapter::slotDoubleClicked(lngLatPos, worldCoordPos);
}

// Editing

void CAxOsgDrawRectange::slotPointMoved(double lng, double lat, double alt, int index)
{
    const auto moved = static_cast<std::size_t>(index);
    if ((d->operation == OperationIdle || d->operation == OperationMovePoint) && index >= 0 &&
        moved < corners && d->anchors.size() == corners) {
        d->anchors[moved].set(lng, lat, alt);
        osg::Vec3d& next = d->anchors[(moved + 1) % corners];
        osg::Vec3d& previous = d->anchors[(moved + 3) % corners];
        const osg::Vec3d& opposite = d->anchors[(moved + 2) % corners];
        const bool nextOnParallel = (moved % 2 == 0) == firstSideOnParallel;
        osg::Vec3d& onParallel = nextOnParallel ? next : previous;
        osg::Vec3d& onMeridian = nextOnParallel ? previous : next;
        onParallel.set(opposite.x(), lat, onParallel.z());
        onMeridian.set(lng, opposite.y(), onMeridian.z());
        GetBlockElevation();
        d->anchors[moved].z() = alt;
        if (d->anchorEditor)
            d->anchorEditor->Update();
    }
    AxBlockAdapter::slotPointMoved(lng, lat, alt, index);
}

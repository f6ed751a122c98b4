#include "interaction/objects/CAxOsgDrawRectange.h"
#include "interaction/editing/AxEditRules.h"
#include "interaction/editing/CAxHandleAdapterEditor.h"
#include "interaction/objects/AxBlockRefusal.h"
#include "interaction/objects/AxBlockRing.h"
#include "interaction/objects/AxHandleAdapterState.h"
#include "interaction/objects/AxOnGround.h"
#include "interaction/objects/AxRectangleShape.h"
#include "scene/AxEditAids.h"
#include "scene/AxObjectBook.h"
#include "scene/AxScene.h"
#include "scene/AxToolInHand.h"
#include "scene/base/AxExactPlace.h"
#include "scene/base/AxLongitudes.h"
#include "scene/shape/AxRingInPlane.h"
#include "scene/shape/AxViewRay.h"

#include <AxBaseUI/AxPolygonTest.h>

#include <osgEarth/GeoData>
#include <osgEarth/SpatialReference>
#include <osgViewer/Viewer>

#include <cmath>
#include <utility>

namespace {
using AxLongitudes::sameDegrees;
using AxRectangleShape::corners;
// A centimetre, which no mouse tells from none.
constexpr double pickDegrees = 1e-7;

double LongitudesApart(const osg::Vec3d& a, const osg::Vec3d& b)
{
    return std::abs(std::remainder(a.x() - b.x(), 360.0));
}
} // namespace

CAxOsgDrawRectange::CAxOsgDrawRectange(CAxEarthViewer* viewer, QObject* parent)
    : AxBlockAdapter(viewer, parent, CAxBlock::RectangleBlock), turns(true)
{
}

CAxOsgDrawRectange::CAxOsgDrawRectange(CAxEarthViewer* viewer, QObject* parent, CAxBlock::EBlockType type)
    : AxBlockAdapter(viewer, parent, type), turns(false)
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
    if (turns && !AxRectangleShape::IsUpright(d->anchors))
        return !AxRectangleShape::Of(d->anchors);
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
    const bool isRectangle = d->anchors.size() == corners && !IsFlat() &&
                             !(turns && isSelfIntersection(AxRingInPlane(d->anchors)));
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

bool CAxOsgDrawRectange::isOn(const osg::Vec3d& corner, const osg::Vec3d& lngLatPos)
{
    const osg::Vec3d place = Snapped(lngLatPos);
    const auto pixels = pixelsBetween(corner, place);
    return pixels ? *pixels < AxEditRules::tremblePixels : place == corner;
}

std::vector<osg::Vec3d> CAxOsgDrawRectange::upTo(const osg::Vec3d& lngLatPos)
{
    const osg::Vec3d& first = d->anchors.front();
    osg::Vec3d opposite = Snapped(lngLatPos);
    const auto isThin = [this](const osg::Vec3d& a, const osg::Vec3d& b, double degrees) {
        return degrees < pickDegrees ||
               pixelsBetween(a, b).value_or(AxEditRules::tremblePixels) < AxEditRules::tremblePixels;
    };
    const std::vector<osg::Vec3d> ring = AxRectangleShape::Between(first, opposite);
    if (isThin(ring[0], ring[1], LongitudesApart(first, opposite)))
        opposite.x() = first.x();
    if (isThin(ring[1], ring[2], std::abs(first.y() - opposite.y())))
        opposite.y() = first.y();
    return AxRectangleShape::Between(first, opposite);
}

std::vector<osg::Vec3d> CAxOsgDrawRectange::onSideUpTo(const osg::Vec3d& lngLatPos)
{
    return AxRectangleShape::OnSide(d->anchors[0], d->anchors[1], Snapped(lngLatPos));
}

void CAxOsgDrawRectange::setCorner(const osg::Vec3d& lngLatPos)
{
    d->anchors.push_back(Snapped(lngLatPos));
    ShowHandles();
    DropRubberBand();
    if (d->anchors.size() > 1)
        updateAdapter();
}

void CAxOsgDrawRectange::ResumeDrawing(std::vector<osg::Vec3d> vertices)
{
    press.reset();
    // Of an upright one the first corner, of others the first side is what the operator began with.
    if (vertices.size() > 2)
        vertices.resize(turns && !AxRectangleShape::IsUpright(vertices) ? 2 : 1);
    if (!turns && vertices.size() > 1)
        vertices.resize(1);
    AxBlockAdapter::ResumeDrawing(std::move(vertices));
}

void CAxOsgDrawRectange::finishAt(const Place& place)
{
    if (d->anchors.empty() || !IsOverGround(place.lngLat, place.world))
        return;
    finishWith(d->anchors.size() > 1 ? onSideUpTo(place.lngLat) : upTo(place.lngLat));
}

void CAxOsgDrawRectange::finishWith(std::vector<osg::Vec3d> ring)
{
    d->anchors = std::move(ring);
    GetBlockElevation();
    FinishDrawing();
}

void CAxOsgDrawRectange::slotMousePressed(osg::Vec3d lngLatPos, osg::Vec3d worldCoordPos)
{
    AxBlockAdapter::slotMousePressed(lngLatPos, worldCoordPos);
    endedByClick = false;
    cornerIsNew = false;
    press.reset();
    if (d->operation == OperationDrawing)
        press = Press{{AxExactPlace(lngLatPos, worldCoordPos), worldCoordPos}, {}};
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
    underMouse = {AxExactPlace(lngLatPos, worldCoordPos), worldCoordPos};
}

void CAxOsgDrawRectange::slotDragging(float windowX, float windowY)
{
    AxBlockAdapter::slotDragging(windowX, windowY);
    if (d->operation != OperationDrawing || !press || (d->anchors.empty() && isTremble(windowX, windowY)))
        return;
    if (d->anchors.empty() && IsOverGround(press->place.lngLat, press->place.world))
        setCorner(press->place.lngLat);
    slotMoving(underMouse.lngLat, underMouse.world);
}

void CAxOsgDrawRectange::slotMouseRelease(osg::Vec3d lngLatPos, osg::Vec3d worldCoordPos)
{
    underMouse = {AxExactPlace(lngLatPos, worldCoordPos), worldCoordPos};
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
    if (!d->anchors.empty() && !isOn(d->anchors.back(), underMouse.lngLat))
        finishAt(underMouse);
}

void CAxOsgDrawRectange::slotMoving(osg::Vec3d lngLatPos, osg::Vec3d worldCoordPos)
{
    if (d->operation != OperationDrawing || d->anchors.empty() || !IsOverGround(lngLatPos, worldCoordPos))
        return;
    lngLatPos = AxExactPlace(lngLatPos, worldCoordPos);
    if (turns && d->anchors.size() == 1 && !press) {
        showFirstSide(lngLatPos);
        return;
    }
    const bool hasSide = d->anchors.size() > 1;
    const std::vector<osg::Vec3d> ring =
        hasSide ? onSideUpTo(lngLatPos) : AxRectangleShape::Between(d->anchors.front(), Snapped(lngLatPos));
    if (ring.size() != corners)
        return;
    DrawRubberBand(d->viewer ? AxOnGround(d->viewer->Scene(), ring) : ring, true);
    showRing(ring, lngLatPos, hasSide ? tr("click: the width") : QString());
}

void CAxOsgDrawRectange::showFirstSide(const osg::Vec3d& lngLatPos)
{
    const osg::Vec3d place = Snapped(lngLatPos);
    DrawRubberBand({d->anchors.front(), place}, false);
    const double heading = AxRectangleShape::HeadingTo(d->anchors.front(), place);
    ShowBesideCursor(lngLatPos, tr("%1, %2\302\260")
                                        .arg(AxLengthText(AxGroundDistance(d->anchors.front(), place)),
                                             QString::number(heading, 'f', 1)) +
                                    QLatin1Char('\n') + tr("click: end of a side") + QLatin1Char('\n') +
                                    tr("double click: opposite corner"));
}

void CAxOsgDrawRectange::showRing(const std::vector<osg::Vec3d>& ring, const osg::Vec3d& lngLatPos,
                                  const QString& hint)
{
    QString text = tr("%1 x %2").arg(AxLengthText(AxGroundDistance(ring[0], ring[1])),
                                     AxLengthText(AxGroundDistance(ring[1], ring[2])));
    if (turns && !AxRectangleShape::IsUpright(ring))
        text = tr("%1, %2\302\260")
                   .arg(text, QString::number(AxRectangleShape::HeadingTo(ring[0], ring[1]), 'f', 1));
    if (d->viewer)
        text += QLatin1Char('\n') + AxRingSizeText(ring, *d->viewer->Scene().MapSRS());
    if (!hint.isEmpty())
        text += QLatin1Char('\n') + hint;
    ShowBesideCursor(lngLatPos, text);
}

void CAxOsgDrawRectange::slotPicked(osg::Vec3d lngLatPos, osg::Vec3d worldCoordPos)
{
    const bool isByMouse = press.has_value();
    press.reset();
    if (d->operation != OperationDrawing || !IsOverGround(lngLatPos, worldCoordPos))
        return;
    lngLatPos = AxExactPlace(lngLatPos, worldCoordPos);
    if (!d->anchors.empty() && isByMouse && isOn(d->anchors.back(), lngLatPos))
        return;
    if (d->anchors.size() < (turns ? 2u : 1u)) {
        setCorner(lngLatPos);
        cornerIsNew = isByMouse;
        return;
    }
    if (d->anchors.size() > 1) {
        // Nor does one on the side make a width.
        const std::vector<osg::Vec3d> ring = onSideUpTo(lngLatPos);
        if (ring.size() != corners || (isByMouse && isOn(ring[1], ring[2])))
            return;
    }
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
    if (draws && !d->anchors.empty() && IsOverGround(lngLatPos, worldCoordPos)) {
        lngLatPos = AxExactPlace(lngLatPos, worldCoordPos);
        // A trembling hand double-clicks on two pixels, and means no rectangle between them.
        const bool isTwice = cornerIsNew && isOn(d->anchors.back(), lngLatPos);
        if (d->anchors.size() > 1) {
            const osg::Vec3d opposite = isTwice ? d->anchors.back() : lngLatPos;
            if (isTwice)
                d->anchors.pop_back();
            d->anchors = d->anchors.size() > 1 ? onSideUpTo(opposite) : upTo(opposite);
        } else {
            d->anchors =
                isTwice ? AxRectangleShape::Between(d->anchors.front(), d->anchors.front()) : upTo(lngLatPos);
        }
        GetBlockElevation();
    }
    AxBlockAdapter::slotDoubleClicked(lngLatPos, worldCoordPos);
}

// Editing

std::vector<AxFurtherHandle> CAxOsgDrawRectange::FurtherHandles()
{
    if (!turns || d->operation == OperationDrawing || d->anchors.size() != corners || !d->viewer)
        return {};
    std::vector<osg::Vec3d> places;
    for (std::size_t side = 0; side < corners; ++side)
        places.push_back(AxRectangleShape::MiddleOfSide(d->anchors, side));
    // The handles stay as many while a drag makes the rectangle flat.
    const auto rectangle = AxRectangleShape::Of(d->anchors);
    places.push_back(rectangle ? AxRectangleShape::PlaceToTurnAt(*rectangle) : osg::Vec3d(places[1]));
    std::vector<AxFurtherHandle> handles;
    for (const osg::Vec3d& place : AxOnGround(d->viewer->Scene(), std::move(places)))
        handles.push_back({place, AxFurtherHandle::Does::Resizes});
    handles.back().does = AxFurtherHandle::Does::Turns;
    return handles;
}

// The record still has what the drag has changed already.
std::vector<osg::Vec3d> CAxOsgDrawRectange::ringBefore() const
{
    const CAxBlock* block = GetContainedBlock();
    const std::vector<osg::Vec3d> ring = block ? AxVerticesOf(block->GetAnchor()) : std::vector<osg::Vec3d>();
    return ring.size() == corners ? ring : d->anchors;
}

void CAxOsgDrawRectange::takeRing(const std::vector<osg::Vec3d>& ring)
{
    d->anchors = ring;
    GetBlockElevation();
    if (d->anchorEditor)
        d->anchorEditor->Update();
}

void CAxOsgDrawRectange::slotPointMoved(double lng, double lat, double alt, int index)
{
    const auto moved = static_cast<std::size_t>(index);
    if ((d->operation != OperationIdle && d->operation != OperationMovePoint) || index < 0 ||
        d->anchors.size() != corners || moved > 2 * corners) {
        AxBlockAdapter::slotPointMoved(lng, lat, alt, index);
        return;
    }
    const osg::Vec3d place(lng, lat, alt);
    const bool isFirst = d->operation == OperationIdle;
    if (!turns && moved < corners) {
        d->anchors[moved] = place;
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
        showRing(d->anchors, place, QString());
    } else if (turns) {
        if (isFirst)
            beforeDrag = ringBefore();
        takeRing(draggedTo(moved, place));
        showRing(d->anchors, place, QString());
    }
    AxBlockAdapter::slotPointMoved(lng, lat, alt, index);
    if (turns && isFirst)
        d->editText = moved == 2 * corners ? tr("Turn block") : tr("Change size");
}

// Behind the corners come the handles of the sides, and the one that turns.
std::vector<osg::Vec3d> CAxOsgDrawRectange::draggedTo(std::size_t handle, const osg::Vec3d& place) const
{
    if (handle < corners)
        return AxRectangleShape::WithCorner(beforeDrag, handle, place);
    if (handle < 2 * corners)
        return AxRectangleShape::WithSide(beforeDrag, handle - corners, place);
    const auto rectangle = AxRectangleShape::Of(beforeDrag);
    if (!rectangle)
        return beforeDrag;
    double heading = AxRectangleShape::HeadingTo(rectangle->centre, place);
    if (d->viewer && d->viewer->Objects().Aids().angleSteps)
        heading = AxEditRules::angleStepDegrees * std::round(heading / AxEditRules::angleStepDegrees);
    return AxRectangleShape::Turned(beforeDrag, heading);
}

void CAxOsgDrawRectange::slotHandleMoved(double dLng, double dLat, double dAlt)
{
    if (turns && d->anchors.size() == corners) {
        if (d->operation != OperationMoveHandle)
            beforeDrag = ringBefore();
        const osg::Vec3d first = d->anchors.front();
        d->anchors = AxRectangleShape::MovedTo(beforeDrag, first);
        GetBlockElevation();
    }
    AxBlockAdapter::slotHandleMoved(dLng, dLat, dAlt);
}

void CAxOsgDrawRectange::ResponseHandlePointMoved(osg::Vec3d lngLatPos, osg::Vec3d worldCoordPos)
{
    d->cursorLabel.Hide();
    AxBlockAdapter::ResponseHandlePointMoved(lngLatPos, worldCoordPos);
}

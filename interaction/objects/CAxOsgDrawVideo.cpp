#include "interaction/objects/CAxOsgDrawVideo.h"
#include "interaction/editing/AxEditRules.h"
#include "interaction/editing/AxEditTitle.h"
#include "interaction/editing/AxVideoCommand.h"
#include "interaction/editing/CAxHandleAdapterEditor.h"
#include "interaction/objects/AxBlockRefusal.h"
#include "interaction/objects/AxBlockRing.h"
#include "interaction/objects/AxBlockTasks.h"
#include "interaction/objects/AxHandleAdapterState.h"
#include "interaction/objects/AxOnGround.h"
#include "interaction/objects/AxRectangleShape.h"
#include "scene/AxObjectBook.h"
#include "scene/AxScene.h"
#include "scene/AxToolInHand.h"
#include "scene/base/AxExactPlace.h"
#include "scene/base/AxGlobePoint.h"
#include "scene/base/AxNotice.h"
#include "scene/shape/AxViewRay.h"

#include <AxData/CAxBlockManager.h>
#include <AxData/CAxControl.h>
#include <AxData/planner/AxPlanPlane.h>

#include <osgEarthSymbology/TextSymbol>
#include <osgViewer/Viewer>

#include <QUndoStack>

#include <algorithm>
#include <cmath>
#include <utility>

namespace {
constexpr int circleCorners = 72;
// Of a new record, and of a drawing that ends before the mouse has said one.
constexpr double usualRadius = 50.0;

AxPlanPlane PlaneAround(const osg::Vec3d& centre)
{
    return AxPlanPlane({QPointF(centre.x(), centre.y())});
}

osg::Vec3d OnCircle(const AxPlanPlane& plane, double radius, double heading)
{
    const double radians = osg::DegreesToRadians(heading);
    const QPointF place = plane.ToLngLat({radius * std::sin(radians), radius * std::cos(radians)});
    return {place.x(), place.y(), 0.0};
}

std::vector<osg::Vec3d> Circle(const osg::Vec3d& centre, double radius)
{
    const AxPlanPlane plane = PlaneAround(centre);
    std::vector<osg::Vec3d> ring;
    ring.reserve(circleCorners);
    for (int i = 0; i < circleCorners; ++i)
        ring.push_back(OnCircle(plane, radius, -360.0 * i / circleCorners));
    for (osg::Vec3d& place : ring)
        place.z() = centre.z();
    return ring;
}

bool IsRadius(double metres)
{
    return metres >= CAxOsgDrawVideo::leastRadius && metres <= CAxOsgDrawVideo::mostRadius;
}

int WholeMetres(double radius)
{
    return static_cast<int>(std::lround(radius));
}
} // namespace

CAxOsgDrawVideo::CAxOsgDrawVideo(CAxEarthViewer* viewer, QObject* parent)
    : AxBlockAdapter(viewer, parent, CAxBlock::VideoBlock), radius(usualRadius)
{
    // The name stands above the handle in the middle.
    constexpr short lift = 18; // pixels
    d->style.getOrCreate<osgEarth::Symbology::TextSymbol>()->pixelOffset() = osg::Vec2s(0, lift);
    // Tasks and projects set the radius in the record.
    connect(&CAxBlockManager::instance(), &CAxBlockManager::blockChanged, this, [this](const QString& id) {
        const CAxBlock* block = id == d->handleID ? GetContainedBlock() : nullptr;
        if (block && isRecorded && d->operation == OperationIdle &&
            block->GetVideoRadius() != WholeMetres(radius))
            ReturnLastOperate();
    });
}

CAxOsgDrawVideo::~CAxOsgDrawVideo() = default;

// The circle

std::vector<osg::Vec3d> CAxOsgDrawVideo::Outline()
{
    return d->anchors.size() == 1 ? circleOnGround(d->anchors.front(), radius) : std::vector<osg::Vec3d>();
}

std::vector<osg::Vec3d> CAxOsgDrawVideo::circleOnGround(const osg::Vec3d& centre, double metres) const
{
    std::vector<osg::Vec3d> ring = Circle(centre, metres);
    return d->viewer ? AxOnGround(d->viewer->Scene(), std::move(ring)) : ring;
}

bool CAxOsgDrawVideo::IsOutlineClosed()
{
    return true;
}

std::vector<AxFurtherHandle> CAxOsgDrawVideo::FurtherHandles()
{
    if (d->anchors.size() != 1 || d->operation == OperationDrawing || !d->viewer)
        return {};
    const osg::Vec3d rim = OnCircle(PlaneAround(d->anchors.front()), radius, rimHeading);
    return {{AxOnGround(d->viewer->Scene(), {rim}).front(), AxFurtherHandle::Does::Resizes}};
}

void CAxOsgDrawVideo::ImportGeometry(const std::vector<osg::Vec3d>& points, bool enableEditor)
{
    hasNewCentre = false;
    isRecorded = true;
    // What is no radius is drawn as the least one; Fault() tells.
    if (const CAxBlock* block = GetContainedBlock())
        radius = std::max(leastRadius, static_cast<double>(block->GetVideoRadius()));
    AxBlockAdapter::ImportGeometry(points, enableEditor);
}

AxVerdict CAxOsgDrawVideo::JudgeShape()
{
    if (d->anchors.size() != 1)
        return AxVerdict::Impossible;
    return IsRadius(radius) ? AxVerdict::Accepted : AxBlockRefusal::Invalid(BoxParent());
}

QString CAxOsgDrawVideo::ShapeFault()
{
    const CAxBlock* block = GetContainedBlock();
    return IsRadius(block ? block->GetVideoRadius() : radius) ? QString() : AxBlockRefusal::InvalidText();
}

void CAxOsgDrawVideo::SetVideoRadius(int metres)
{
    if (metres < leastRadius || d->operation != OperationIdle)
        return;
    if (CAxBlock* block = GetContainedBlock()) {
        block->SetVideoRadius(metres);
        return;
    }
    radius = metres;
    updateAdapter();
    if (d->anchorEditor)
        d->anchorEditor->Update();
}

void CAxOsgDrawVideo::SetVideoPosition(const osg::Vec3d& lngLatPos)
{
    if (!lngLatPos.valid() || std::abs(lngLatPos.y()) > 90.0 || d->operation != OperationIdle)
        return;
    const Running self(this);
    if (CAxBlock* block = GetContainedBlock()) {
        block->SetAnchor({QPointF(lngLatPos.x(), lngLatPos.y())});
        if (self.IsWanted())
            ReturnLastOperate();
        return;
    }
    d->anchors.assign(1, lngLatPos);
    GetBlockElevation();
    updateAdapter();
    if (d->anchorEditor)
        d->anchorEditor->Update();
}

// Drawing

bool CAxOsgDrawVideo::isFinished() const
{
    return d->viewer && d->viewer->Objects().Find(d->handleID) == this;
}

double CAxOsgDrawVideo::radiusTo(const osg::Vec3d& lngLatPos) const
{
    return std::clamp(AxGroundDistance(d->anchors.front(), lngLatPos), leastRadius, mostRadius);
}

void CAxOsgDrawVideo::takeRim(const osg::Vec3d& lngLatPos)
{
    radius = radiusTo(lngLatPos);
    rimHeading = AxRectangleShape::HeadingTo(d->anchors.front(), lngLatPos);
}

bool CAxOsgDrawVideo::isOnCentre(const osg::Vec3d& lngLatPos)
{
    const osg::Camera* camera = d->viewer ? d->viewer->Scene().View()->getCamera() : nullptr;
    const auto view = camera ? AxViewRay::Through(*camera, 0.0, 0.0) : std::nullopt;
    const auto centre = view ? view->Project(AxGlobe::WorldOf(d->anchors.front())) : std::nullopt;
    const auto place = view ? view->Project(AxGlobe::WorldOf(lngLatPos)) : std::nullopt;
    return centre && place ? (centre->window - place->window).length() < AxEditRules::tremblePixels
                           : lngLatPos == d->anchors.front();
}

void CAxOsgDrawVideo::showRadius(double metres, const osg::Vec3d& lngLatPos, const QString& hint)
{
    constexpr double squareMetres = 1e6; // of a square kilometre
    QString text = tr("radius %1").arg(AxLengthText(metres)) + QLatin1Char('\n') +
                   tr("area %1").arg(AxAreaText(osg::PI * metres * metres / squareMetres));
    if (!hint.isEmpty())
        text += QLatin1Char('\n') + hint;
    ShowBesideCursor(lngLatPos, text);
}

void CAxOsgDrawVideo::slotMousePressed(osg::Vec3d lngLatPos, osg::Vec3d worldCoordPos)
{
    AxBlockAdapter::slotMousePressed(lngLatPos, worldCoordPos);
    endedByClick = false;
    centreIsNew = false;
}

void CAxOsgDrawVideo::slotMoving(osg::Vec3d lngLatPos, osg::Vec3d worldCoordPos)
{
    if (d->operation != OperationDrawing || !IsOverGround(lngLatPos, worldCoordPos))
        return;
    lngLatPos = AxExactPlace(lngLatPos, worldCoordPos);
    // A finished one that is gone on with keeps its place until there is a new one.
    if (d->anchors.empty() || (isFinished() && !hasNewCentre)) {
        DrawRubberBand(circleOnGround(lngLatPos, radius), true);
        showRadius(radius, lngLatPos, tr("click: the centre"));
        return;
    }
    const double metres = radiusTo(lngLatPos);
    DrawRubberBand(circleOnGround(d->anchors.front(), metres), true);
    showRadius(metres, lngLatPos, tr("click: the radius"));
}

void CAxOsgDrawVideo::slotPicked(osg::Vec3d lngLatPos, osg::Vec3d worldCoordPos)
{
    if (d->operation != OperationDrawing || !IsOverGround(lngLatPos, worldCoordPos))
        return;
    lngLatPos = AxExactPlace(lngLatPos, worldCoordPos);
    if (d->anchors.empty() || (isFinished() && !hasNewCentre)) {
        d->anchors.assign(1, Snapped(lngLatPos));
        hasNewCentre = true;
        centreIsNew = true;
        ShowHandles();
        return;
    }
    // A slow second click on the centre makes no circle.
    if (isOnCentre(lngLatPos))
        return;
    takeRim(lngLatPos);
    endedByClick = true;
    finish();
}

void CAxOsgDrawVideo::slotDoubleClicked(osg::Vec3d lngLatPos, osg::Vec3d worldCoordPos)
{
    // Its first click has ended the drawing, and no more was meant by it.
    if (std::exchange(endedByClick, false))
        return;
    const bool draws = d->operation == OperationDrawing && d->viewer &&
                       GetToolKind(d->viewer->Tools().Tool()) == ToolKindDraw;
    if (!draws) {
        AxBlockAdapter::slotDoubleClicked(lngLatPos, worldCoordPos);
        return;
    }
    if (d->anchors.empty() || !IsOverGround(lngLatPos, worldCoordPos))
        return;
    lngLatPos = AxExactPlace(lngLatPos, worldCoordPos);
    // On the centre that it has set itself it leaves the radius as it is.
    if (!isOnCentre(lngLatPos))
        takeRim(lngLatPos);
    finish();
}

void CAxOsgDrawVideo::ResumeDrawing(std::vector<osg::Vec3d> vertices)
{
    if (d->operation != OperationDrawing || vertices.empty())
        return;
    d->anchors.assign(1, vertices.front());
    GetBlockElevation();
    ShowHandles();
}

// Going on with a finished one is an edit of it.
void CAxOsgDrawVideo::finish()
{
    if (!isFinished()) {
        FinishDrawing();
        return;
    }
    const Running self(this);
    const EToolType tool = d->viewer->Tools().Tool();
    hasNewCentre = false;
    d->operation = OperationIdle;
    d->cursorLabel.Hide();
    DropRubberBand();
    // A lock or a task may have come since its first click.
    const bool isFree = !d->lock && !AxHasTasks(*this);
    if (!isFree) {
        ReturnLastOperate();
        AxShowNotice(BoxParent(), tr("Block Information"),
                     tr("The radius of a block that is locked or has routes cannot be changed."));
    }
    const bool isAccepted = isFree && judgeAndCommit(tr("Change video area"));
    if (self.IsGone())
        return;
    emit signalHandleEnd(isAccepted && self.IsWanted() ? d->handleID : QString(), true);
    if (!self.IsGone())
        emit signalHandlePickEnded(tool);
}

void CAxOsgDrawVideo::HandleEnd()
{
    const Running self(this);
    hasNewCentre = false;
    if (CAxBlock* block = GetContainedBlock()) {
        radius = WholeMetres(radius);
        block->SetVideoRadius(WholeMetres(radius));
    }
    if (!self.IsGone())
        isRecorded = true;
    if (self.IsWanted())
        AxBlockAdapter::HandleEnd();
}

// Editing

bool CAxOsgDrawVideo::judgeAndCommit(const QString& text)
{
    const Running self(this);
    radius = WholeMetres(radius);
    const bool isAccepted = AxOutcomeOf(CheckGeometry()) == AxOutcome::Accepted;
    CAxBlock* block = self.IsWanted() ? GetContainedBlock() : nullptr;
    if (!block)
        return false;
    if (!isAccepted) {
        ReturnLastOperate();
        return false;
    }
    d->editText.clear();
    const AxVideoCommand::State before{block->GetAnchor(), block->GetVideoRadius()};
    const AxVideoCommand::State after{AxRingOf(d->anchors), WholeMetres(radius)};
    GetBlockElevation();
    updateAdapter();
    if (d->anchorEditor)
        d->anchorEditor->Update();
    if (before == after)
        return true;
    const QString title = AxEditTitle(text, {block->GetBlockName()});
    AxVideoCommand::Write(block, after);
    CAxControl::GetInstance()->SetProjectModified(true);
    if (self.IsWanted() && d->viewer)
        d->viewer->Objects().Edits().push(new AxVideoCommand(d->viewer, d->handleID, before, after, title));
    return true;
}

void CAxOsgDrawVideo::slotPointMoved(double lng, double lat, double alt, int index)
{
    const osg::Vec3d place(lng, lat, alt);
    const bool isFree = d->operation == OperationIdle || d->operation == OperationMovePoint;
    const bool isOfRim = index == 1 && d->anchors.size() == 1;
    if (isFree && isOfRim) {
        takeRim(place);
    }
    AxBlockAdapter::slotPointMoved(lng, lat, alt, index);
    if (!isFree)
        return;
    d->editText = isOfRim ? tr("Change radius") : tr("Move block");
    if (d->anchorEditor)
        d->anchorEditor->Update();
    showRadius(radius, place, QString());
}

void CAxOsgDrawVideo::ResponseHandlePointMoved(osg::Vec3d, osg::Vec3d)
{
    d->cursorLabel.Hide();
    judgeAndCommit(QString(d->editText));
}

// The dialog

void CAxOsgDrawVideo::ResponseDoubleClickOnPoint(int, osg::Vec3d)
{
    ResponseDoubleClickOnBlock();
}

void CAxOsgDrawVideo::ResponseDoubleClickOnBlock()
{
    const CAxBlock* block = GetContainedBlock();
    if (!block || !d->tasks.isEmpty())
        return;
    AxBlockForm form;
    form.title = tr("Video Info");
    form.measures = {
        AxBlockForm::Width(tr("Radius(%1):"), block->GetVideoRadius(), leastRadius, mostRadius)};
    FillIn(form, [this](const QList<double>& values) -> AxBlockForm::Taken {
        radius = values.first();
        return {judgeAndCommit(tr("Change radius"))};
    });
}

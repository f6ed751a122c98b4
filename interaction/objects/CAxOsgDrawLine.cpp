// The strip block on the map; its dialogs are in a file of their own.
#include "interaction/objects/CAxOsgDrawLine.h"
#include "interaction/editing/CAxHandleAdapterEditor.h"
#include "interaction/objects/AxBlockRefusal.h"
#include "interaction/objects/AxBlockRing.h"
#include "interaction/objects/AxHandleAdapterState.h"
#include "interaction/objects/AxZonesUnder.h"
#include "scene/AxObjectBook.h"
#include "scene/AxScene.h"
#include "scene/base/AxExactPlace.h"
#include "scene/base/AxLongitudes.h"
#include "scene/base/AxNotice.h"
#include "scene/shape/AxBlockArea.h"

#include <AxData/CAxBlockManager.h>

#include <osg/BoundingBox>

#include <cmath>

namespace {
bool IsSameVertex(const osg::Vec3d& a, const osg::Vec3d& b)
{
    return std::abs(a.x() - b.x()) < AxLongitudes::sameDegrees &&
           std::abs(a.y() - b.y()) < AxLongitudes::sameDegrees;
}
} // namespace

CAxOsgDrawLine::CAxOsgDrawLine(CAxEarthViewer* viewer, QObject* parent)
    : AxBlockAdapter(viewer, parent, CAxBlock::StripBlock), keptPlane(std::make_unique<AxKeptPlane>())
{
    // Tasks, projects and undo set the widths in the record.
    connect(&CAxBlockManager::instance(), &CAxBlockManager::blockChanged, this, [this](const QString& id) {
        if (id == d->handleID && d->operation == OperationIdle && takeWidthsOfRecord())
            showWidths();
    });
}

CAxOsgDrawLine::~CAxOsgDrawLine() = default;

void CAxOsgDrawLine::tell(const QString& text, const QString& details)
{
    AxShowNotice(BoxParent(), tr("Block Information"), text, details);
}

// The band

const std::vector<osg::Vec3d>& CAxOsgDrawLine::band()
{
    return keptBand.Of(d->anchors, width1, width2);
}

std::vector<osg::Vec3d> CAxOsgDrawLine::Outline()
{
    return IsOutlineClosed() ? band() : d->anchors;
}

bool CAxOsgDrawLine::IsOutlineClosed()
{
    return !band().empty();
}

std::vector<osg::Vec3d> CAxOsgDrawLine::InnerLine()
{
    return IsOutlineClosed() ? d->anchors : std::vector<osg::Vec3d>();
}

void CAxOsgDrawLine::SetWidth(double left, double right)
{
    if (!(left >= 0.0) || !(right >= 0.0) || !std::isfinite(left) || !std::isfinite(right))
        return;
    width1 = left;
    width2 = right;
    if (CAxBlock* block = GetContainedBlock())
        block->GetTaskPara()->SetBandingOffset(left, right);
    showWidths();
}

void CAxOsgDrawLine::showWidths()
{
    updateAdapter();
    DrawNameLabel();
    // Those around the band go along with it.
    if (d->anchorEditor)
        d->anchorEditor->Update();
}

// True when they were others.
bool CAxOsgDrawLine::takeWidthsOfRecord()
{
    const CAxBlock* block = GetContainedBlock();
    if (!block)
        return false;
    const double left = width1;
    const double right = width2;
    block->GetTaskPara()->GetBandingOffset(width1, width2);
    return left != width1 || right != width2;
}

bool CAxOsgDrawLine::GetBlockElevation()
{
    if (!AxBlockAdapter::GetBlockElevation())
        return false;
    if (IsOutlineClosed()) {
        QList<osg::Vec3d> around;
        for (const osg::Vec3d& point : band())
            around += point;
        d->viewer->Scene().GetElevations(around);
        for (const osg::Vec3d& point : qAsConst(around))
            d->elevations += point.z();
    }
    return true;
}

CAxVector3D CAxOsgDrawLine::GetGravityLatLng()
{
    if (!d->featureNode || d->anchors.empty())
        return {};
    osg::BoundingBoxd box;
    for (const osg::Vec3d& point : Outline())
        box.expandBy(AxLongitudes::NearestTo(d->anchors.front().x(), point.x()), point.y(), 0.0);
    d->gravity = CAxVector3D(box.center().y(), AxLongitudes::Normalized(box.center().x()), 0.0);
    return d->gravity;
}

void CAxOsgDrawLine::ImportGeometry(const std::vector<osg::Vec3d>& points, bool enableEditor)
{
    takeWidthsOfRecord();
    AxBlockAdapter::ImportGeometry(points, enableEditor);
}

// Drawing

void CAxOsgDrawLine::slotPicked(osg::Vec3d lngLatPos, osg::Vec3d worldCoordPos)
{
    if (d->operation != OperationDrawing || !IsOverGround(lngLatPos, worldCoordPos))
        return;
    const osg::Vec3d place = Snapped(AxExactPlace(lngLatPos, worldCoordPos));
    // The first click of a double click on the last vertex is no vertex of its own.
    if (!d->anchors.empty() && IsSameVertex(place, d->anchors.back()))
        return;
    const Running self(this);
    const bool isShort =
        !d->anchors.empty() && AxStripShape::LegLength(d->anchors.back(), place) < minDistance;
    d->anchors.push_back(place);
    if (isShort) {
        tell(tr("The distance is less than 50 meters!"));
        // While the box was open the drawing may have ended, or lost its last vertex.
        if (!self.IsWanted() || d->operation != OperationDrawing)
            return;
        if (!d->anchors.empty() && d->anchors.back() == place)
            d->anchors.pop_back();
    }
    ShowHandles();
    DropRubberBand();
    if (d->anchors.size() > 1)
        updateAdapter();
}

void CAxOsgDrawLine::slotMoving(osg::Vec3d lngLatPos, osg::Vec3d worldCoordPos)
{
    if (d->operation != OperationDrawing || d->anchors.empty() || !IsOverGround(lngLatPos, worldCoordPos))
        return;
    const osg::Vec3d place = Snapped(AxExactPlace(lngLatPos, worldCoordPos));
    DrawRubberBand({d->anchors.back(), place}, false);
    QString text = AxRunningLengthText(d->anchors, place);
    std::vector<osg::Vec3d> line = d->anchors;
    line.push_back(place);
    if (const std::vector<osg::Vec3d>& next = keptBand.Of(line, width1, width2); !next.empty())
        text += QLatin1Char('\n') + AxBandSizeText(next, width1 + width2, *d->viewer->Scene().MapSRS());
    if (AxStripShape::LegLength(d->anchors.back(), place) < minDistance)
        text += QLatin1Char('\n') + tr("at least %1").arg(AxLengthText(minDistance));
    ShowBesideCursor(lngLatPos, text);
}

QString CAxOsgDrawLine::DragText(std::size_t vertex)
{
    QString text = AxBlockAdapter::DragText(vertex);
    if (IsOutlineClosed())
        text += QLatin1Char('\n') +
                AxBandSizeText(band(), width1 + width2, *d->viewer->Scene().MapSRS(), keptPlane.get());
    return text;
}

// Judging

AxVerdict CAxOsgDrawLine::JudgeShape()
{
    std::vector<osg::Vec3d>& line = d->anchors;
    if (line.size() > 1 && IsSameVertex(line[line.size() - 1], line[line.size() - 2])) {
        line.pop_back();
        if (d->anchorEditor)
            d->anchorEditor->Update();
    }
    if (AxStripShape::HasShortLegAt(line, d->editIndex, minDistance)) {
        const CAxBlock* block = GetContainedBlock();
        const bool wasShort =
            block && block->GetAnchor().size() == static_cast<int>(line.size()) &&
            AxStripShape::HasShortLegAt(AxVerticesOf(block->GetAnchor()), d->editIndex, minDistance);
        tell(tr("The distance is less than 50 meters!"),
             wasShort ? tr("The line had such a short leg here before. \"Simplify\" in the menu of the block "
                           "leaves vertices out, and the box of a vertex deletes it.")
                      : QString());
        return AxVerdict::RefusedAloud;
    }
    return AxVerdict::Accepted;
}

// The model layers are told of before the band is looked at.
AxVerdict CAxOsgDrawLine::Judge()
{
    const Running self(this);
    if (!d->featureNode)
        return AxVerdict::Impossible;
    if (JudgeShape() != AxVerdict::Accepted)
        return AxVerdict::RefusedAloud;
    if (d->viewer)
        d->viewer->Objects().IntersectModelLayers(this);
    if (!self.IsWanted())
        return AxVerdict::Impossible;
    if (band().empty()) {
        tell(tr("Parameter of block is wrong."));
        return AxVerdict::RefusedAloud;
    }
    const QStringList zones = d->viewer ? AxZonesUnder(*d->viewer, band()) : QStringList();
    return zones.isEmpty() ? AxVerdict::Accepted : AxBlockRefusal::OverZones(*d->viewer, zones);
}

QString CAxOsgDrawLine::ShapeFault()
{
    return band().empty() ? tr("Parameter of block is wrong.") : QString();
}

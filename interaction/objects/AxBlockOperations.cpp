#include "interaction/objects/AxBlockOperations.h"
#include "interaction/editing/AxEditTitle.h"
#include "interaction/objects/AxBlockRefusal.h"
#include "interaction/objects/AxBlockRing.h"
#include "interaction/objects/AxBlockTasks.h"
#include "interaction/objects/AxCutLine.h"
#include "interaction/objects/AxObjects.h"
#include "interaction/objects/AxRectangleShape.h"
#include "interaction/objects/AxStripShape.h"
#include "interaction/objects/CAxOsgDrawLine.h"
#include "scene/AxToolInHand.h"
#include "scene/AxViewerParts.h"
#include "scene/base/AxLongitudes.h"
#include "scene/base/AxNotice.h"
#include "scene/base/AxNoticeCollector.h"

#include <AxAlgorthm/AxUniqueID.h>
#include <AxAlgorthm/AxUnits.h>
#include <AxData/CAxBlockManager.h>

#include <QCoreApplication>
#include <QGraphicsView>
#include <QHash>
#include <QUndoStack>

#include <algorithm>
#include <cmath>
#include <utility>

namespace {
using AxAreaOperations::Area;
using AxAreaOperations::Fault;
using AxAreaOperations::Result;
using Records = std::vector<std::unique_ptr<CAxBlock>>;

QString Words(const char* text)
{
    return QCoreApplication::translate("AxBlockOperations", text);
}

QString NameOf(const QString& id)
{
    const CAxBlock* block = CAxBlockManager::instance().GetBlock(id);
    return block ? AxNameInTitle(block->GetBlockName()) : QString();
}

// A record with all of another one but ID, vertices and tasks.
std::unique_ptr<CAxBlock> RecordLike(const CAxBlock& other, CAxBlock::EBlockType type, const QString& name,
                                     const QList<QPointF>& vertices)
{
    auto record = std::make_unique<CAxBlock>(CreateUniqueID(), type);
    record->SetBlockName(name);
    record->SetAnchor(vertices);
    *record->GetTaskPara() = *other.GetTaskPara();
    record->SetHomePosition(other.GetHomePosition(), false);
    record->SetEnterDirection(other.GetEnterDirection());
    record->SetDownhillLanding(other.IsDownhillLanding());
    record->SetVideoRadius(other.GetVideoRadius());
    return record;
}

QList<QPointF> AreaOf(CAxHandleAdapter& object)
{
    return object.IsOutlineClosed() ? AxRingOf(object.Outline()) : QList<QPointF>();
}

QPointF MiddleOf(CAxHandleAdapter& object)
{
    const CAxVector3D middle = object.GetGravityLatLng(); // latitude first
    return {middle.y(), middle.x()};
}

// So far to the east that the copy stands beside the block.
QList<QPointF> Beside(CAxHandleAdapter& object, const QList<QPointF>& vertices)
{
    const std::vector<osg::Vec3d> outline = object.Outline();
    double least = 0.0;
    double most = 0.0;
    for (const osg::Vec3d& point : outline) {
        const double east = std::remainder(point.x() - outline.front().x(), AxLongitudes::fullTurn);
        least = std::min(least, east);
        most = std::max(most, east);
    }
    constexpr double gap = 1.1;
    QList<QPointF> moved;
    for (const QPointF& vertex : vertices)
        moved += QPointF(AxLongitudes::Normalized(vertex.x() + gap * (most - least)), vertex.y());
    return moved;
}

// An upright rectangle of many kilometres is skewed by itself, since meridians meet.
bool MayStayOfItsKind(CAxHandleAdapter& object, const QList<QPointF>& ring)
{
    if (!object.ShapeKind().IsClosed() || !object.ShapeKind().Allows(ring.size()))
        return false;
    if (object.GetBlockType() != CAxBlock::RectangleBlock)
        return true;
    constexpr double rounding = 0.05; // metres
    const AxRectangleShape::Ring corners = AxVerticesOf(ring);
    return AxRectangleShape::Of(corners) &&
           AxRectangleShape::Skew(corners) <= AxRectangleShape::Skew(object.GetAnchor()) + rounding;
}

QString ReasonOf(Fault fault, const QString& name)
{
    switch (fault) {
    case Fault::NotAnArea:
        return Words(QT_TRANSLATE_NOOP("AxBlockOperations", "%1 covers no area.")).arg(name);
    case Fault::Crosses:
        return AxBlockRefusal::InvalidText();
    case Fault::TooLarge:
        return Words(QT_TRANSLATE_NOOP("AxBlockOperations", "The blocks are too large or too far apart."));
    case Fault::BadMeasure:
        return Words(QT_TRANSLATE_NOOP("AxBlockOperations", "The value is out of range."));
    case Fault::NothingLeft:
        return Words(QT_TRANSLATE_NOOP("AxBlockOperations", "Nothing would be left of %1.")).arg(name);
    case Fault::NotCut:
        return Words(QT_TRANSLATE_NOOP("AxBlockOperations", "The line does not lead across %1.")).arg(name);
    case Fault::None:
        break;
    }
    return {};
}
} // namespace

AxBlockOperations::AxBlockOperations(AxObjects& book, AxViewerParts& viewer, CAxEarthViewer* map)
    : objects(book), parts(viewer), earthViewer(map)
{
}

void AxBlockOperations::tell(const QString& reason) const
{
    AxShowNotice(parts.Widget(), Words(QT_TRANSLATE_NOOP("AxBlockOperations", "Block Information")), reason);
}

QString AxBlockOperations::reasonToStay(const QString& id) const
{
    const CAxHandleAdapter* object = objects.Find(id);
    const CAxBlock* block = CAxBlockManager::instance().GetBlock(id);
    if (!object || !block)
        return Words(QT_TRANSLATE_NOOP("AxBlockOperations", "The block is not on the map."));
    if (object->IsLock())
        return Words(QT_TRANSLATE_NOOP("AxBlockOperations", "%1 is locked.")).arg(NameOf(id));
    if (AxHasTasks(*object))
        return Words(QT_TRANSLATE_NOOP("AxBlockOperations", "%1 has tasks, which would not fit any more."))
            .arg(NameOf(id));
    if (object->GetHandleOperation() != OperationIdle)
        return Words(QT_TRANSLATE_NOOP("AxBlockOperations", "%1 is being edited.")).arg(NameOf(id));
    return {};
}

CAxHandleAdapter* AxBlockOperations::changeable(const QString& id) const
{
    const QString reason = reasonToStay(id);
    if (reason.isEmpty())
        return objects.Find(id);
    tell(reason);
    return nullptr;
}

CAxHandleAdapter* AxBlockOperations::changeable(const QString& id,
                                                std::initializer_list<CAxBlock::EBlockType> kinds) const
{
    CAxHandleAdapter* object = changeable(id);
    if (!object || std::find(kinds.begin(), kinds.end(), object->GetBlockType()) != kinds.end())
        return object;
    tell(Words(QT_TRANSLATE_NOOP("AxBlockOperations", "This is not possible with a block of the kind of %1."))
             .arg(NameOf(id)));
    return nullptr;
}

bool AxBlockOperations::isAcceptable(const Result& result, const QString& name) const
{
    QString reason = ReasonOf(result.fault, name);
    if (std::any_of(result.areas.begin(), result.areas.end(),
                    [](const Area& area) { return !area.holes.isEmpty(); }))
        reason = Words(QT_TRANSLATE_NOOP("AxBlockOperations",
                                         "%1 would have a hole, and a block cannot have one."))
                     .arg(name);
    if (!reason.isEmpty())
        tell(reason);
    return reason.isEmpty();
}

// What an operation ends with

QStringList AxBlockOperations::Replace(const QStringList& ids, Records records, const QString& edit,
                                       const std::function<bool(int)>& goOn)
{
    return objects.Replace(ids, std::move(records), edit, goOn);
}

QStringList AxBlockOperations::judgeAndReplace(const QStringList& ids, Records records, const QString& edit)
{
    const QPointer<AxObjects> alive(&objects);
    for (const auto& record : records)
        if (!objects.IsAccepted(*record) || !alive)
            return {};
    // Boxes of the judging let events run.
    const bool areThere = std::all_of(ids.begin(), ids.end(), [this](const QString& id) {
        const CAxHandleAdapter* object = objects.Find(id);
        return object && !object->IsLock() && object->GetTaskList().isEmpty();
    });
    if (!areThere)
        return {};
    const QStringList come = Replace(ids, std::move(records), edit);
    if (alive && !come.isEmpty())
        objects.SetCurrent(objects.Find(come.first()));
    return come;
}

QStringList AxBlockOperations::become(CAxHandleAdapter& object, const QList<QPointF>& vertices,
                                      const QString& edit)
{
    const QString id = object.GetHandleID();
    if (vertices.isEmpty()) {
        tell(ReasonOf(Fault::BadMeasure, NameOf(id)));
        return {};
    }
    return object.SetVertices(AxVerticesOf(vertices), edit) ? QStringList{id} : QStringList();
}

QStringList AxBlockOperations::become(CAxHandleAdapter& object, const Result& result, const QString& edit)
{
    const QString id = object.GetHandleID();
    if (!isAcceptable(result, NameOf(id)))
        return {};
    const QList<QPointF>& first = result.areas.first().ring;
    if (result.areas.size() == 1 && MayStayOfItsKind(object, first))
        return become(object, first, edit);
    QList<QList<QPointF>> rings;
    for (const Area& area : result.areas)
        rings += area.ring;
    return becomeParts(object, CAxBlock::PolygonBlock, rings, edit);
}

QStringList AxBlockOperations::becomeParts(CAxHandleAdapter& object, CAxBlock::EBlockType type,
                                           const QList<QList<QPointF>>& rings, const QString& edit)
{
    const CAxBlock* block = object.GetContainedBlock();
    Records records;
    for (const QList<QPointF>& ring : rings) {
        const QString name =
            rings.size() == 1
                ? block->GetBlockName()
                : QStringLiteral("%1-%2").arg(block->GetBlockName(), QString::number(records.size() + 1));
        records.push_back(RecordLike(*block, type, name, ring));
    }
    return judgeAndReplace({object.GetHandleID()}, std::move(records), edit);
}

// Several blocks at once

QStringList AxBlockOperations::OnEach(const QStringList& ids, const QString& edit,
                                      const std::function<QStringList(const QString&)>& run)
{
    if (ids.size() < 2)
        return ids.isEmpty() ? QStringList() : run(ids.first());
    QStringList wanted;
    QStringList names;
    QStringList reasons;
    for (const QString& id : ids) {
        const QString reason = reasonToStay(id);
        if (!reason.isEmpty()) {
            reasons += reason;
            continue;
        }
        wanted += id;
        names += CAxBlockManager::instance().GetBlock(id)->GetBlockName();
    }
    const QPointer<AxObjects> alive(&objects);
    const bool areSelected = objects.Selected().size() > 1;
    const QString current = objects.Current() ? objects.Current()->GetHandleID() : QString();
    QHash<QString, QStringList> come;
    QStringList changed;
    if (!wanted.isEmpty()) {
        const QPointer<QUndoStack> stack(&objects.Edits());
        AxNoticeCollector refusals;
        stack->beginMacro(AxEditTitle(edit, names));
        for (int i = 0; i < wanted.size() && alive; ++i) {
            come[wanted[i]] = run(wanted[i]);
            changed += come[wanted[i]];
            const QString reason = refusals.Take().join(QLatin1Char(' '));
            const QString name = AxNameInTitle(names[i]);
            if (come[wanted[i]].isEmpty())
                reasons += reason.contains(name) ? reason : QStringLiteral("%1: %2").arg(name, reason);
        }
        if (stack)
            stack->endMacro();
        // A step that changes nothing is none.
        if (stack && changed.isEmpty() && stack->index() > 0) {
            const_cast<QUndoCommand*>(stack->command(stack->index() - 1))->setObsolete(true);
            stack->undo();
        }
    }
    if (!alive)
        return changed;
    if (areSelected) {
        QList<CAxHandleAdapter*> selected;
        for (const QString& id : ids)
            for (const QString& now : come.value(id).isEmpty() ? QStringList{id} : come.value(id))
                if (CAxHandleAdapter* object = objects.Find(now))
                    selected += object;
        if (CAxHandleAdapter* now = objects.Find(come.value(current).value(0, current)))
            objects.SetCurrent(now);
        if (alive)
            objects.SelectSeveral(selected);
    }
    if (alive && !reasons.isEmpty())
        tellUnchanged(reasons, ids.size());
    return changed;
}

void AxBlockOperations::tellUnchanged(const QStringList& reasons, int all) const
{
    constexpr int most = 10;
    QStringList lines = reasons.mid(0, most);
    if (reasons.size() > most)
        lines += QString(QChar(0x2026));
    AxShowNotice(parts.Widget(), Words(QT_TRANSLATE_NOOP("AxBlockOperations", "Block Information")),
                 Words(QT_TRANSLATE_NOOP("AxBlockOperations", "Blocks that were not changed: %1 of %2"))
                     .arg(reasons.size())
                     .arg(all),
                 lines.join(QLatin1Char('\n')));
}

// The operations

QStringList AxBlockOperations::Duplicate(const QStringList& ids)
{
    Records records;
    for (const QString& id : ids) {
        CAxHandleAdapter* object = objects.Find(id);
        const CAxBlock* block = CAxBlockManager::instance().GetBlock(id);
        if (!object || !block)
            continue;
        const QString name =
            Words(QT_TRANSLATE_NOOP("AxBlockOperations", "%1 copy")).arg(block->GetBlockName());
        records.push_back(
            RecordLike(*block, block->GetBlockType(), name, Beside(*object, block->GetAnchor())));
    }
    if (records.empty())
        return {};
    return judgeAndReplace({}, std::move(records),
                           Words(QT_TRANSLATE_NOOP("AxBlockOperations", "Duplicate")));
}

QStringList AxBlockOperations::Unite(const QStringList& ids)
{
    QList<QList<QPointF>> rings;
    for (const QString& id : ids) {
        CAxHandleAdapter* object = changeable(id);
        if (!object)
            return {};
        rings += AreaOf(*object);
    }
    if (rings.size() < 2) {
        tell(Words(QT_TRANSLATE_NOOP("AxBlockOperations", "Select two blocks at least.")));
        return {};
    }
    const Result result = AxAreaOperations::Unite(rings);
    if (!isAcceptable(result, NameOf(ids.first())))
        return {};
    if (result.areas.size() > 1) {
        tell(Words(QT_TRANSLATE_NOOP("AxBlockOperations", "The blocks do not meet.")));
        return {};
    }
    const CAxBlock* block = CAxBlockManager::instance().GetBlock(ids.first());
    Records records;
    records.push_back(
        RecordLike(*block, CAxBlock::PolygonBlock, block->GetBlockName(), result.areas.first().ring));
    return judgeAndReplace(ids, std::move(records), Words(QT_TRANSLATE_NOOP("AxBlockOperations", "Unite")));
}

QStringList AxBlockOperations::Subtract(const QString& id, const QStringList& others)
{
    CAxHandleAdapter* object = changeable(id);
    if (!object)
        return {};
    QList<QList<QPointF>> rings;
    for (const QString& other : others)
        if (CAxHandleAdapter* taken = other == id ? nullptr : objects.Find(other))
            rings += AreaOf(*taken);
    if (rings.isEmpty()) {
        tell(Words(QT_TRANSLATE_NOOP("AxBlockOperations", "Select two blocks at least.")));
        return {};
    }
    return become(*object, AxAreaOperations::Subtract(AreaOf(*object), rings),
                  Words(QT_TRANSLATE_NOOP("AxBlockOperations", "Subtract")));
}

QStringList AxBlockOperations::Split(const QString& id, const QList<QPointF>& line)
{
    CAxHandleAdapter* object = changeable(id);
    if (!object)
        return {};
    const QString edit = Words(QT_TRANSLATE_NOOP("AxBlockOperations", "Split"));
    const QList<QList<QPointF>> pieces =
        object->GetBlockType() == CAxBlock::StripBlock
            ? AxAreaOperations::SplitLine(AxRingOf(object->GetAnchor()), line)
            : QList<QList<QPointF>>();
    if (pieces.isEmpty())
        return become(*object, AxAreaOperations::Split(AreaOf(*object), line), edit);
    const bool isAnyShort = std::any_of(pieces.begin(), pieces.end(), [](const QList<QPointF>& piece) {
        return AxStripShape::Length(AxVerticesOf(piece)) < AxStripShape::leastLeg;
    });
    if (!isAnyShort)
        return becomeParts(*object, CAxBlock::StripBlock, pieces, edit);
    tell(Words(QT_TRANSLATE_NOOP("AxBlockOperations", "A part of %1 would be shorter than %2."))
             .arg(NameOf(id), AxUnits::Length(AxStripShape::leastLeg)));
    return {};
}

bool AxBlockOperations::BeginSplit(const QString& id)
{
    const QPointer<AxObjects> alive(&objects);
    if (parts.Tools().IsBusy() || !changeable(id) || !alive)
        return false;
    parts.Tools().TakeUp(ToolNavigate);
    // Who hears of the tool may remove the block, or end the viewer.
    if (!alive || !objects.Find(id))
        return false;
    objects.BeginDrawing(new AxCutLine(earthViewer, parts.Widget()->parent(), objects, id));
    return true;
}

QStringList AxBlockOperations::Buffer(const QString& id, double metres)
{
    CAxHandleAdapter* object =
        changeable(id, {CAxBlock::PolygonBlock, CAxBlock::RectangleBlock, CAxBlock::StripBlock});
    if (!object)
        return {};
    if (auto* strip = qobject_cast<CAxOsgDrawLine*>(object))
        return strip->ChangeWidths(strip->GetWidth1() + metres, strip->GetWidth2() + metres) ? QStringList{id}
                                                                                             : QStringList();
    return become(*object, AxAreaOperations::Buffer(AreaOf(*object), metres),
                  metres < 0.0 ? Words(QT_TRANSLATE_NOOP("AxBlockOperations", "Shrink"))
                               : Words(QT_TRANSLATE_NOOP("AxBlockOperations", "Grow")));
}

QStringList AxBlockOperations::Simplify(const QString& id, double metres)
{
    CAxHandleAdapter* object = changeable(id, {CAxBlock::PolygonBlock, CAxBlock::StripBlock});
    if (!object)
        return {};
    const QString edit = Words(QT_TRANSLATE_NOOP("AxBlockOperations", "Simplify"));
    const QList<QPointF> vertices = AxRingOf(object->GetAnchor());
    const bool isClosed = object->ShapeKind().IsClosed();
    const Result ring = isClosed ? AxAreaOperations::Simplify(vertices, metres) : Result();
    const QList<QPointF> line =
        isClosed ? QList<QPointF>() : AxAreaOperations::SimplifyLine(vertices, metres);
    const int left = isClosed && !ring.areas.isEmpty() ? ring.areas.first().ring.size() : line.size();
    if (left == vertices.size()) {
        tell(Words(QT_TRANSLATE_NOOP("AxBlockOperations", "No vertex of %1 can be left out."))
                 .arg(NameOf(id)));
        return {};
    }
    return isClosed ? become(*object, ring, edit) : become(*object, line, edit);
}

QStringList AxBlockOperations::Rotate(const QString& id, double degrees)
{
    CAxHandleAdapter* object =
        changeable(id, {CAxBlock::PolygonBlock, CAxBlock::RectangleBlock, CAxBlock::StripBlock});
    if (!object)
        return {};
    return become(*object,
                  AxAreaOperations::Rotated(AxRingOf(object->GetAnchor()), degrees, MiddleOf(*object)),
                  Words(QT_TRANSLATE_NOOP("AxBlockOperations", "Turn block")));
}

QStringList AxBlockOperations::Scale(const QString& id, double factor)
{
    CAxHandleAdapter* object =
        changeable(id, {CAxBlock::PolygonBlock, CAxBlock::RectangleBlock, CAxBlock::StripBlock});
    if (!object)
        return {};
    return become(*object,
                  AxAreaOperations::Scaled(AxRingOf(object->GetAnchor()), factor, factor, MiddleOf(*object)),
                  Words(QT_TRANSLATE_NOOP("AxBlockOperations", "Change size")));
}

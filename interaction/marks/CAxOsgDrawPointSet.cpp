// The part of a set of mark points that keeps the marks and their edits.
#include "interaction/marks/CAxOsgDrawPointSet.h"
#include "interaction/editing/AxEditTitle.h"
#include "interaction/marks/AxMarkCommand.h"
#include "interaction/marks/AxMarkGeometry.h"
#include "interaction/marks/AxMarkHeights.h"
#include "interaction/marks/AxMarkMouse.h"
#include "interaction/marks/AxMarkNames.h"
#include "interaction/objects/AxHandleAdapterState.h"
#include "interaction/objects/AxVerdict.h"
#include "scene/AxObjectBook.h"
#include "scene/AxScene.h"
#include "scene/base/AxLongitudes.h"
#include "scene/shape/AxShapeClamp.h"

#include <AxAlgorthm/AxUniqueID.h>
#include <AxData/CAxControl.h>

#include <QGraphicsView>
#include <QUndoStack>

#include <algorithm>
#include <cmath>
#include <utility>

namespace {
bool IsPlace(double longitude, double latitude)
{
    return std::isfinite(longitude) && std::abs(latitude) <= 90.0;
}

bool Refuse(QString* why, const QString& reason)
{
    if (why)
        *why = reason;
    return false;
}
} // namespace

QString CAxOsgDrawPointSet::IDOfViewer()
{
    return QStringLiteral("AxMarkPoints");
}

CAxOsgDrawPointSet* CAxOsgDrawPointSet::FindOfViewer(const CAxEarthViewer* viewer)
{
    AxViewerParts* parts = AxPartsOf(const_cast<CAxEarthViewer*>(viewer));
    return parts ? qobject_cast<CAxOsgDrawPointSet*>(parts->Objects().Find(IDOfViewer())) : nullptr;
}

CAxOsgDrawPointSet* CAxOsgDrawPointSet::OfViewer(CAxEarthViewer* viewer)
{
    if (CAxOsgDrawPointSet* known = FindOfViewer(viewer))
        return known;
    AxViewerParts* parts = AxPartsOf(viewer);
    if (!parts || !parts->Scene().ObjectGroup())
        return nullptr;
    auto* set = new CAxOsgDrawPointSet(viewer, parts->Widget()->parent());
    set->SetHandleID(IDOfViewer());
    if (!parts->Objects().Add(set)) {
        delete set; // something else has the ID
        return nullptr;
    }
    return set;
}

const AxProjectMark* CAxOsgDrawPointSet::Find(const QString& id) const
{
    const int index = IndexOf(id);
    return index < 0 ? nullptr : &marks[index];
}

QSet<QString> CAxOsgDrawPointSet::namesBut(const QString& id) const
{
    QSet<QString> names;
    names.reserve(marks.size());
    for (const AxProjectMark& mark : marks)
        if (mark.id != id)
            names.insert(mark.name);
    return names;
}

QString CAxOsgDrawPointSet::NextName() const
{
    return AxMarkNames::Next(namesBut({}));
}

// Edits

QString CAxOsgDrawPointSet::AddMark(double longitude, double latitude, const QString& name, QString* why)
{
    const QSet<QString> taken = namesBut({});
    const QString wanted = name.isNull() ? AxMarkNames::Next(taken) : AxMarkNames::InOneLine(name);
    const QString fault =
        IsPlace(longitude, latitude) ? AxMarkNames::Fault(wanted, taken) : tr("This is no place on the map.");
    if (!fault.isEmpty()) {
        Refuse(why, fault);
        return {};
    }
    AxProjectMark mark;
    mark.id = CreateUniqueID();
    mark.name = wanted;
    mark.longitude = AxLongitudes::Normalized(longitude);
    mark.latitude = latitude;
    mark.altitude = placeOf(mark).z();
    mark.followsGround = true;
    if (!commit({{marks.size(), {}, mark}}, AxEditTitle(tr("Add mark"), {wanted})))
        return {};
    return mark.id;
}

QStringList CAxOsgDrawPointSet::AddMarks(const QVector<AxProjectMark>& wanted, const QString& edit)
{
    QSet<QString> taken = namesBut({});
    QHash<QString, int> numbers;
    QVector<AxMarkChange> changes;
    QStringList added;
    for (AxProjectMark mark : wanted) {
        if (!IsPlace(mark.longitude, mark.latitude))
            continue;
        mark.id = CreateUniqueID();
        mark.name = AxMarkNames::Free(mark.name, taken, &numbers);
        mark.longitude = AxLongitudes::Normalized(mark.longitude);
        mark.followsGround = !std::isfinite(mark.altitude);
        if (mark.followsGround) {
            mark.altitude = 0.0;
            mark.altitude = placeOf(mark).z();
        }
        taken.insert(mark.name);
        changes += AxMarkChange{marks.size() + changes.size(), {}, mark};
        added += mark.id;
    }
    if (changes.isEmpty() || !commit(changes, edit))
        return {};
    return added;
}

bool CAxOsgDrawPointSet::EditMark(const AxProjectMark& wanted, QString* why)
{
    const AxProjectMark* known = Find(wanted.id);
    if (!known)
        return Refuse(why, tr("This mark is not there any more."));
    if (!IsPlace(wanted.longitude, wanted.latitude))
        return Refuse(why, tr("This is no place on the map."));
    AxProjectMark mark = *known;
    mark.name = AxMarkNames::InOneLine(wanted.name);
    // A name from a file may be one that nobody could type; it stays until it is changed.
    const bool isRenamed = wanted.name != known->name && mark.name != known->name;
    if (!isRenamed)
        mark.name = known->name;
    else if (const QString fault = AxMarkNames::Fault(mark.name, namesBut(mark.id)); !fault.isEmpty())
        return Refuse(why, fault);
    const double longitude = AxLongitudes::Normalized(wanted.longitude);
    const bool isMoved = longitude != known->longitude || wanted.latitude != known->latitude;
    if (isMoved) {
        mark.longitude = longitude;
        mark.latitude = wanted.latitude;
        mark.altitude = placeOf(mark).z();
        mark.followsGround = true;
    }
    mark.description = wanted.description;
    if (mark == *known)
        return true;
    const QString text = isMoved ? AxEditTitle(tr("Move mark"), {mark.name})
                         : isRenamed
                             ? tr("Rename %1 to %2").arg(AxNameInTitle(known->name), AxNameInTitle(mark.name))
                             : AxEditTitle(tr("Change note"), {mark.name});
    commit({{IndexOf(mark.id), *known, mark}}, text);
    return true;
}

void CAxOsgDrawPointSet::RemoveMarks(const QStringList& ids)
{
    QVector<AxMarkChange> changes;
    QStringList names;
    for (const QString& id : QSet<QString>(ids.cbegin(), ids.cend()))
        if (const int index = IndexOf(id); index >= 0)
            changes += AxMarkChange{index, marks[index], {}};
    if (changes.isEmpty())
        return;
    std::sort(changes.begin(), changes.end(),
              [](const AxMarkChange& a, const AxMarkChange& b) { return a.index < b.index; });
    for (const AxMarkChange& change : qAsConst(changes))
        names += change.before->name;
    commit(changes, AxEditTitle(changes.size() == 1 ? tr("Delete mark") : tr("Delete marks"), names));
}

bool CAxOsgDrawPointSet::commit(const QVector<AxMarkChange>& changes, const QString& text)
{
    if (!d->viewer || d->leaving)
        return false;
    const bool isOfMap = d->viewer->Objects().Find(d->handleID) == this;
    // The stack finds the set by its ID; one that is not registered has no undo.
    if (isOfMap)
        d->viewer->Objects().Edits().push(new AxMarkCommand(d->viewer, d->handleID, changes, text));
    else
        Apply(changes, false);
    return true;
}

void CAxOsgDrawPointSet::Apply(const QVector<AxMarkChange>& changes, bool back)
{
    const Running self(this);
    QSet<QString> gone;
    QSet<QString> moved;
    QVector<AxProjectMark> elsewhere;
    std::vector<std::pair<int, AxProjectMark>> come;
    for (const AxMarkChange& change : changes) {
        const std::optional<AxProjectMark>& from = back ? change.after : change.before;
        const std::optional<AxProjectMark>& to = back ? change.before : change.after;
        const int index = from ? IndexOf(from->id) : -1;
        if (to)
            moved.insert(to->id);
        if (!to) {
            gone.insert(from->id);
        } else if (index >= 0) {
            AxProjectMark& mark = marks[index];
            const double height = mark.altitude;
            const bool isMoved = mark.longitude != to->longitude || mark.latitude != to->latitude;
            mark = *to;
            if (isMoved)
                elsewhere += mark;
            else
                mark.altitude = height;
        } else if (!from) {
            come.emplace_back(change.index, *to);
            elsewhere += *to;
        }
    }
    if (!gone.isEmpty())
        marks.erase(std::remove_if(marks.begin(), marks.end(),
                                   [&gone](const AxProjectMark& mark) { return gone.contains(mark.id); }),
                    marks.end());
    for (const auto& [index, mark] : come)
        marks.insert(std::min(index, marks.size()), mark);
    rebuild(moved);
    askHeights(elsewhere);
    CAxControl::GetInstance()->SetProjectModified(true);
    if (self.IsWanted())
        tell(changes, back);
}

void CAxOsgDrawPointSet::tell(const QVector<AxMarkChange>& changes, bool back)
{
    const Running self(this);
    const AxMarkChange& first = changes.front();
    const std::optional<AxProjectMark>& from = back ? first.after : first.before;
    const std::optional<AxProjectMark>& to = back ? first.before : first.after;
    if (changes.size() == 1 && !from)
        emit signalAddMarkPoint(d->handleID, to->name);
    else if (changes.size() == 1 && !to)
        emit signalDelMarkPoint(d->handleID, from->name);
    else
        emit signalResetList();
    if (self.IsWanted())
        emit marksChanged();
}

void CAxOsgDrawPointSet::SetMarks(const QVector<AxProjectMark>& wanted)
{
    const Running self(this);
    marks = wanted;
    QSet<QString> all;
    for (const AxProjectMark& mark : wanted)
        all.insert(mark.id);
    rebuild(all);
    // The project may have been made where the map is coarser.
    askHeights(marks);
    emit signalResetList();
    if (self.IsWanted())
        emit marksChanged();
}

// Selection

void CAxOsgDrawPointSet::SelectMark(const QString& id)
{
    const Running self(this);
    const bool isKnown = Find(id);
    if (isKnown && d->viewer && d->viewer->Objects().Current() == this)
        d->viewer->Objects().ClearSelected();
    // A drawing is not left for a mark.
    else if (isKnown && d->viewer && !d->viewer->Objects().SelectSeveral({this}))
        return;
    if (self.IsWanted())
        select(isKnown ? QStringList(id) : QStringList());
}

void CAxOsgDrawPointSet::SelectMarks(const QStringList& ids)
{
    const Running self(this);
    QStringList wanted;
    QSet<QString> met;
    for (const QString& id : ids)
        if (Find(id) && !met.contains(id)) {
            met.insert(id);
            wanted += id;
        }
    if (!wanted.isEmpty() && d->viewer && !d->viewer->Objects().Current() &&
        d->viewer->Objects().Selected().isEmpty())
        d->viewer->Objects().SetCurrent(this);
    if (self.IsWanted())
        select(wanted);
}

void CAxOsgDrawPointSet::select(const QStringList& ids)
{
    if (selected == ids)
        return;
    selected = ids;
    draw();
    emit selectedMarkChanged(SelectedMark());
}

void CAxOsgDrawPointSet::onCurrentChanged(const QString& id)
{
    if (id != d->handleID)
        select({});
}

void CAxOsgDrawPointSet::onSelectedChanged(const QStringList& ids)
{
    // Marks that were selected beside blocks are left with these.
    if (ids.isEmpty() && d->viewer && d->viewer->Objects().Current() != this)
        select({});
}

// What hosts know of mark points by their names alone

void CAxOsgDrawPointSet::RemoveMarkerPoint(QString name)
{
    for (const AxProjectMark& mark : qAsConst(marks))
        if (mark.name == name) {
            RemoveMarks({mark.id});
            return;
        }
}

void CAxOsgDrawPointSet::SetMarkerPointName(const QStringList& names)
{
    QVector<AxMarkChange> changes;
    QSet<QString> taken = namesBut({});
    for (int i = 0; i < std::min(names.size(), marks.size()); ++i) {
        AxProjectMark mark = marks[i];
        const QString name = AxMarkNames::InOneLine(names[i]);
        if (name == mark.name || !AxMarkNames::Fault(name, taken).isEmpty())
            continue;
        taken.remove(mark.name);
        taken.insert(name);
        mark.name = name;
        changes += AxMarkChange{i, marks[i], mark};
    }
    if (!changes.isEmpty())
        commit(changes, tr("Rename marks"));
}

QStringList CAxOsgDrawPointSet::GetMarkerPointName()
{
    QStringList names;
    for (const AxProjectMark& mark : qAsConst(marks))
        names += mark.name;
    return names;
}

void CAxOsgDrawPointSet::ImportGeometry(const std::vector<osg::Vec3d>& points, bool)
{
    QVector<AxProjectMark> all = marks;
    QSet<QString> taken = namesBut({});
    for (const osg::Vec3d& point : points) {
        if (!IsPlace(point.x(), point.y()))
            continue;
        AxProjectMark mark;
        mark.id = CreateUniqueID();
        mark.name = AxMarkNames::Next(taken, all.size() + 1);
        mark.longitude = AxLongitudes::Normalized(point.x());
        mark.latitude = point.y();
        mark.followsGround = !std::isfinite(point.z());
        mark.altitude = mark.followsGround ? 0.0 : point.z();
        taken.insert(mark.name);
        all += mark;
    }
    SetMarks(all);
}

void CAxOsgDrawPointSet::ClearPoints()
{
    SetMarks({});
}

int CAxOsgDrawPointSet::CheckGeometry()
{
    // A tool that was put down again has marked nothing, and that is no reason to tell anybody.
    return marks.isEmpty() ? 0 : 1;
}

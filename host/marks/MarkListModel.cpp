#include "host/marks/MarkListModel.h"
#include "interaction/CAxOsgDrawPointSet.h"
#include "viewer/CAxEarthViewer.h"

#include <QTimer>

#include <algorithm>

MarkListModel::MarkListModel(CAxEarthViewer* earthViewer, QObject* parent)
    : TitledTable({tr("Name"), tr("Latitude"), tr("Longitude"), tr("Height"), tr("Note")}, parent),
      viewer(earthViewer)
{
    connect(viewer, &CAxEarthViewer::signalAddMarkPoint, this, &MarkListModel::Soon);
    connect(viewer, &CAxEarthViewer::signalDelMarkPoint, this, &MarkListModel::Soon);
    connect(viewer, &CAxEarthViewer::signalResetBlockMarkPointListPage, this, &MarkListModel::Soon);
    Follow();
}

void MarkListModel::Soon()
{
    if (std::exchange(isDue, true))
        return;
    QTimer::singleShot(0, this, &MarkListModel::Follow);
}

void MarkListModel::Follow()
{
    isDue = false;
    CAxOsgDrawPointSet* now = CAxOsgDrawPointSet::FindOfViewer(viewer);
    if (now != set) {
        set = now;
        if (set) {
            connect(set, &CAxOsgDrawPointSet::selectedMarkChanged, this, &MarkListModel::Selected);
            connect(set, &QObject::destroyed, this, &MarkListModel::Soon);
        }
    }
    const QVector<AxProjectMark> wanted = set ? set->Marks() : QVector<AxProjectMark>();
    const auto isSame = [](const AxProjectMark& a, const AxProjectMark& b) { return a.id == b.id; };
    // What is the same at both ends stays, so that the list keeps its place.
    const int shared = std::min(rows.size(), wanted.size());
    int front = 0;
    while (front < shared && isSame(rows[front], wanted[front]))
        ++front;
    int back = 0;
    while (back < shared - front && isSame(rows[rows.size() - 1 - back], wanted[wanted.size() - 1 - back]))
        ++back;
    if (const int last = rows.size() - back - 1; last >= front) {
        beginRemoveRows({}, front, last);
        rows.erase(rows.begin() + front, rows.end() - back);
        endRemoveRows();
    }
    if (const int last = wanted.size() - back - 1; last >= front) {
        beginInsertRows({}, front, last);
        rows = rows.mid(0, front) + wanted.mid(front, last - front + 1) + rows.mid(front);
        endInsertRows();
    }
    if (rows == wanted)
        return;
    rows = wanted;
    emit dataChanged(index(0, 0), index(rows.size() - 1, ColumnCount - 1));
}

CAxOsgDrawPointSet* MarkListModel::Set() const
{
    return set;
}

QString MarkListModel::MarkAt(int row) const
{
    return row >= 0 && row < rows.size() ? rows[row].id : QString();
}

int MarkListModel::RowOf(const QString& id) const
{
    const auto found =
        std::find_if(rows.begin(), rows.end(), [&id](const AxProjectMark& mark) { return mark.id == id; });
    return found == rows.end() ? -1 : static_cast<int>(found - rows.begin());
}

int MarkListModel::rowCount(const QModelIndex& parent) const
{
    return parent.isValid() ? 0 : rows.size();
}

QVariant MarkListModel::data(const QModelIndex& index, int role) const
{
    constexpr int degreeDecimals = 6;
    if (!index.isValid() || index.row() >= rows.size())
        return {};
    const AxProjectMark& mark = rows[index.row()];
    const bool isNumber = index.column() != NameColumn && index.column() != NoteColumn;
    if (role == Qt::TextAlignmentRole && isNumber)
        return QVariant(Qt::AlignRight | Qt::AlignVCenter);
    const bool isText = role == Qt::DisplayRole || role == Qt::EditRole || role == Qt::ToolTipRole;
    if (!isText && role != SortRole)
        return {};
    const auto degrees = [&](double value) {
        return role == SortRole ? QVariant(value) : QString::number(value, 'f', degreeDecimals);
    };
    switch (index.column()) {
    case NameColumn:
        return mark.name;
    case LatitudeColumn:
        return degrees(mark.latitude);
    case LongitudeColumn:
        return degrees(mark.longitude);
    case HeightColumn:
        return role == SortRole ? QVariant(mark.altitude)
                                : tr("%1 m").arg(QString::number(mark.altitude, 'f', 1));
    case NoteColumn:
        return role == Qt::DisplayRole ? mark.description.simplified() : mark.description;
    default:
        return {};
    }
}

bool MarkListModel::setData(const QModelIndex& index, const QVariant& value, int role)
{
    const AxProjectMark* known = set && role == Qt::EditRole ? set->Find(MarkAt(index.row())) : nullptr;
    if (!known)
        return false;
    AxProjectMark wanted = *known;
    (index.column() == NameColumn ? wanted.name : wanted.description) = value.toString();
    QString why;
    const bool isTaken = set->EditMark(wanted, &why);
    if (!isTaken)
        emit Refused(why);
    return isTaken;
}

Qt::ItemFlags MarkListModel::flags(const QModelIndex& index) const
{
    const Qt::ItemFlags flags = TitledTable::flags(index);
    const bool isMultiLine = index.column() == NoteColumn && index.row() < rows.size() &&
                             rows[index.row()].description.contains(QLatin1Char('\n'));
    // A line edit would lose the further lines; the dialog has room for them.
    return (index.column() == NameColumn || index.column() == NoteColumn) && !isMultiLine
               ? flags | Qt::ItemIsEditable
               : flags;
}

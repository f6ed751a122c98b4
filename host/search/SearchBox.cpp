#include "host/search/SearchBox.h"
#include "interaction/CAxEarthManipulator.h"
#include "interaction/CAxHandleAdapter.h"
#include "interaction/CAxOsgDrawPointSet.h"
#include "viewer/CAxEarthViewer.h"

#include <AxAlgorthm/AxCoordinateSystem.h>
#include <AxData/CAxBlockManager.h>

#include <osgEarth/Viewpoint>

#include <QCoreApplication>
#include <QFile>
#include <QKeyEvent>
#include <QListWidget>
#include <QTextStream>

#include <cmath>

namespace {
constexpr int mostShown = 12;
constexpr int keptForPlaces = 4; // of these, where there are so many
constexpr double flightSeconds = 2.0;
constexpr double pointRange = 2000.0;   // metres
constexpr double townRange = 30000.0;   // metres, of a place with a million people
constexpr double widestRange = 80000.0; // metres

// The gazetteer quotes each name and nothing else; a quote within one is doubled.
QStringList FieldsOf(const QString& line)
{
    const int end = line.lastIndexOf(u'"');
    if (!line.startsWith(u'"') || end < 1)
        return line.split(u',');
    QString name = line.mid(1, end - 1);
    name.replace(QStringLiteral("\"\""), QStringLiteral("\""));
    return QStringList{name} + line.mid(end + 2).split(u',');
}

// On a sphere, metres. Longitude and latitude, degrees.
double ApartOnSphere(const QPointF& a, const QPointF& b)
{
    constexpr double earthRadius = 6371000.0;
    const auto radians = [](double degrees) { return degrees * std::acos(-1.0) / 180.0; };
    const double cosine =
        std::sin(radians(a.y())) * std::sin(radians(b.y())) +
        std::cos(radians(a.y())) * std::cos(radians(b.y())) * std::cos(radians(a.x() - b.x()));
    return earthRadius * std::acos(qBound(-1.0, cosine, 1.0));
}
} // namespace

SearchBox::SearchBox(CAxEarthViewer* earthViewer, QWidget* parent)
    : QLineEdit(parent), viewer(earthViewer), list(new QListWidget(window()))
{
    setObjectName(QStringLiteral("SearchBox"));
    setPlaceholderText(tr("Search places, blocks, marks"));
    setToolTip(tr("Type a part of a name, or a coordinate; Enter flies there (Ctrl+F)"));
    setAccessibleName(tr("Search"));
    setClearButtonEnabled(true);
    list->setObjectName(QStringLiteral("SearchList"));
    list->setFocusPolicy(Qt::NoFocus);
    list->setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    list->hide();
    connect(this, &QLineEdit::textEdited, this, &SearchBox::OnTyped);
    connect(list, &QListWidget::itemClicked, this, [this] { FlyToRow(list->currentRow()); });
}

void SearchBox::ReadPlaces()
{
    QFile file(QCoreApplication::applicationDirPath() + QStringLiteral("/places.csv"));
    if (!file.open(QIODevice::ReadOnly | QIODevice::Text))
        return;
    QTextStream lines(&file);
    lines.setCodec("UTF-8");
    QString line;
    lines.readLineInto(&line); // the names of the columns
    while (lines.readLineInto(&line)) {
        const QStringList fields = FieldsOf(line);
        if (fields.size() != 6)
            continue;
        bool isLng = false;
        bool isLat = false;
        const QPointF place(fields[4].toDouble(&isLng), fields[5].toDouble(&isLat));
        if (!isLng || !isLat || std::abs(place.y()) > 90.0)
            continue;
        const double people = qMax(1.0, fields[3].toDouble());
        Target target;
        target.text = QStringLiteral("%1, %2").arg(fields[0], fields[1]);
        target.place = place;
        target.range = qBound(pointRange, townRange * std::sqrt(people / 1e6), widestRange);
        places.Add(fields[0], people);
        placeTargets.push_back(target);
    }
}

void SearchBox::ReadOwn()
{
    own.Clear();
    ownTargets.clear();
    const auto add = [this](const QString& name, Target target) {
        own.Add(name, 0.0);
        ownTargets.push_back(std::move(target));
    };
    for (const CAxBlock* block : CAxBlockManager::instance().GetBlockList())
        if (viewer->FindExistNode(block->GetBlockID()))
            add(block->GetBlockName(),
                {tr("%1 (block)").arg(block->GetBlockName()), Target::Block, block->GetBlockID(), {}, 0.0});
    if (const CAxOsgDrawPointSet* set = CAxOsgDrawPointSet::FindOfViewer(viewer))
        for (const AxProjectMark& mark : set->Marks())
            add(mark.name, {tr("%1 (mark)").arg(mark.name), Target::Mark, mark.id, {}, pointRange});
    for (const QString& name : viewer->GetControlPoints().keys())
        add(name, {tr("%1 (control point)").arg(name), Target::ControlPoint, name, {}, pointRange});
}

AxNameIndex::Distance SearchBox::FromView() const
{
    const osgEarth::Viewpoint view = viewer->getManipulator()->getViewpoint();
    if (!view.isValid() || !view.focalPoint().isSet())
        return {};
    // All that is in view is equally near, and so is what lies within each further doubling of it.
    constexpr double leastView = 50000.0; // metres
    const double inView = qMax(leastView, view.getRange());
    const QPointF middle(view.focalPoint()->x(), view.focalPoint()->y());
    return [this, middle, inView](int number) {
        const double away = ApartOnSphere(middle, placeTargets[static_cast<std::size_t>(number)].place);
        return std::ceil(std::log2(qMax(1.0, away / inView)));
    };
}

void SearchBox::OnTyped()
{
    // Not at start-up, which has enough to read.
    if (placeTargets.empty())
        ReadPlaces();
    shown.clear();
    const AxCoordinateSystem& system = viewer->GetCoordinateSystem();
    const AxCoordinateText::Typed typed = system.Read(text());
    if (typed.place) {
        const PointLatLng place = *typed.place;
        shown.push_back({system.Line(place.Lat(), place.Lng()),
                         Target::Place,
                         {},
                         {place.Lng(), place.Lat()},
                         pointRange});
    }
    const auto ownFound = own.Find(text(), mostShown);
    const auto placesFound = places.Find(text(), mostShown, FromView());
    const auto count = [](const auto& found) { return static_cast<int>(found.size()); };
    const int room = mostShown - static_cast<int>(shown.size());
    const int ownShown = qMin(count(ownFound), room - qMin(keptForPlaces, count(placesFound)));
    for (int i = 0; i < ownShown; ++i)
        shown.push_back(ownTargets[static_cast<std::size_t>(ownFound[i])]);
    for (int i = 0; i < qMin(count(placesFound), room - ownShown); ++i)
        shown.push_back(placeTargets[static_cast<std::size_t>(placesFound[i])]);
    ShowList();
}

void SearchBox::ShowList()
{
    list->clear();
    for (const Target& target : shown)
        list->addItem(target.text);
    if (shown.empty()) {
        list->setVisible(false);
        if (AxCoordinateText::TwoNumbers(text()))
            emit Told(viewer->GetCoordinateSystem().Read(text()).fault);
        else if (!text().trimmed().isEmpty())
            emit Told(tr("Nothing is called \"%1\" here.").arg(text().trimmed().left(40)));
        return;
    }
    list->setCurrentRow(0);
    if (list->parentWidget() != window())
        list->setParent(window());
    const int rows = list->sizeHintForRow(0) * list->count() + 2 * list->frameWidth();
    const QPoint below = mapTo(window(), QPoint(0, height()));
    const int wide = qMax(width(), 260);
    list->setGeometry(qMin(below.x(), window()->width() - wide), below.y(), wide,
                      qMin(rows, window()->height() - below.y()));
    list->raise();
    list->show();
}

void SearchBox::FlyToRow(int row)
{
    if (row < 0 || row >= static_cast<int>(shown.size()))
        return;
    const Target target = shown[static_cast<std::size_t>(row)];
    list->hide();
    setText(target.kind == Target::Place ? target.text : text());
    selectAll();
    FlyTo(target);
}

void SearchBox::FlyTo(const Target& target)
{
    if (target.kind == Target::Place)
        FlyToPlace(target.place, target.range);
    else if (!FlyToOwn(target))
        emit Told(tr("%1 is gone.").arg(target.text));
}

bool SearchBox::FlyToOwn(const Target& target)
{
    if (target.kind == Target::Block) {
        if (!viewer->FindExistNode(target.id))
            return false;
        viewer->slotFocusBlock(target.id);
        return true;
    }
    if (target.kind == Target::Mark) {
        CAxOsgDrawPointSet* set = CAxOsgDrawPointSet::FindOfViewer(viewer);
        const AxProjectMark* mark = set ? set->Find(target.id) : nullptr;
        if (!mark)
            return false;
        FlyToPlace({mark->longitude, mark->latitude}, target.range);
        set->SelectMark(target.id);
        return true;
    }
    const QMap<QString, osg::Vec3d> points = viewer->GetControlPoints();
    const auto point = points.find(target.id);
    if (point == points.end())
        return false;
    FlyToPlace({point->x(), point->y()}, target.range);
    return true;
}

void SearchBox::FlyToPlace(const QPointF& place, double range)
{
    const double ground = viewer->GetElevation(place.x(), place.y());
    viewer->getManipulator()->setViewpoint(osgEarth::Viewpoint("", place.x(), place.y(),
                                                               std::isfinite(ground) ? ground : 0.0, 0.0,
                                                               -90.0, range),
                                           flightSeconds);
}

void SearchBox::keyPressEvent(QKeyEvent* event)
{
    switch (event->key()) {
    case Qt::Key_Down:
    case Qt::Key_Up:
        if (list->isVisible())
            list->setCurrentRow(
                qBound(0, list->currentRow() + (event->key() == Qt::Key_Down ? 1 : -1), list->count() - 1));
        return;
    case Qt::Key_Return:
    case Qt::Key_Enter:
        if (shown.empty() && !text().trimmed().isEmpty())
            OnTyped();
        FlyToRow(qMax(0, list->currentRow()));
        return;
    case Qt::Key_Escape:
        if (list->isVisible())
            list->hide();
        else
            viewer->setFocus();
        return;
    default:
        QLineEdit::keyPressEvent(event);
    }
}

void SearchBox::focusInEvent(QFocusEvent* event)
{
    ReadOwn();
    QLineEdit::focusInEvent(event);
}

void SearchBox::focusOutEvent(QFocusEvent* event)
{
    list->hide();
    QLineEdit::focusOutEvent(event);
}

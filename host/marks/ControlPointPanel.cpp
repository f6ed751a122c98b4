#include "host/marks/ControlPointPanel.h"
#include "host/tasks/UndoStep.h"
#include "interaction/CAxEarthManipulator.h"
#include "viewer/CAxEarthViewer.h"

#include <AxBaseUI/CAxMessageBox.h>
#include <AxData/CAxControl.h>
#include <AxData/geofiles/AxGeoFile.h>

#include <osgEarth/Viewpoint>

#include <QAction>
#include <QApplication>
#include <QFileDialog>
#include <QFileInfo>
#include <QHash>
#include <QHBoxLayout>
#include <QHeaderView>
#include <QJsonArray>
#include <QJsonDocument>
#include <QMenu>
#include <QPushButton>
#include <QSet>
#include <QTreeWidget>
#include <QUndoStack>
#include <QVBoxLayout>

#include <algorithm>
#include <cmath>

namespace {
constexpr int mostPoints = 2000;
constexpr qint64 mostBytesOfPoints = 64LL * 1024 * 1024;
constexpr double flightMetres = 2000.0;
constexpr double flightSeconds = 1.5;
enum Column
{
    NameColumn,
    LatitudeColumn,
    LongitudeColumn,
    HeightColumn
};

// Numbers names that are taken or missing.
class PointNames
{
public:
    explicit PointNames(const QStringList& names) : taken(names.begin(), names.end()) {}

    QString Free(const QString& wanted)
    {
        const QString stem = wanted.isEmpty() ? ControlPointPanel::tr("Point") : wanted;
        QString name = wanted;
        // From the last number on: a file may have thousands of one name.
        for (int& number = last[stem]; name.isEmpty() || taken.contains(name);) {
            number += number == 0 && !wanted.isEmpty() ? 2 : 1;
            name = QStringLiteral("%1 %2").arg(stem).arg(number);
        }
        taken += name;
        return name;
    }

private:
    QSet<QString> taken;
    QHash<QString, int> last;
};
} // namespace

ControlPointPanel::ControlPointPanel(CAxEarthViewer* earthViewer, QWidget* parent)
    : QWidget(parent), viewer(earthViewer), list(new QTreeWidget),
      removeButton(new QPushButton(tr("&Remove")))
{
    list->setObjectName(QStringLiteral("ControlPointList"));
    list->setAccessibleName(tr("Control points"));
    list->setHeaderLabels({tr("Name"), tr("Latitude"), tr("Longitude"), tr("Height")});
    for (const int column : {LatitudeColumn, LongitudeColumn, HeightColumn})
        list->headerItem()->setTextAlignment(column, Qt::AlignRight | Qt::AlignVCenter);
    list->setRootIsDecorated(false);
    list->setUniformRowHeights(true);
    list->setAlternatingRowColors(true);
    list->setSelectionMode(QAbstractItemView::ExtendedSelection);
    list->header()->setSectionResizeMode(QHeaderView::ResizeToContents);
    list->header()->setStretchLastSection(false);
    auto* remove = new QAction(tr("&Remove"), list);
    remove->setShortcut(QKeySequence::Delete);
    remove->setShortcutContext(Qt::WidgetShortcut);
    connect(remove, &QAction::triggered, this, &ControlPointPanel::Remove);
    list->addAction(remove);
    list->setContextMenuPolicy(Qt::ActionsContextMenu);
    auto* import = new QPushButton(tr("&Import..."));
    import->setToolTip(tr("Add the points of a file as control points: CSV, KML and others"));
    removeButton->setToolTip(tr("Take the chosen control points off the map"));
    auto* buttons = new QHBoxLayout;
    buttons->addWidget(import);
    buttons->addWidget(removeButton);
    buttons->addStretch();
    auto* column = new QVBoxLayout(this);
    column->setContentsMargins(0, 0, 0, 4);
    column->addWidget(list);
    column->addLayout(buttons);

    connect(import, &QPushButton::clicked, this, &ControlPointPanel::ChooseFile);
    connect(removeButton, &QPushButton::clicked, this, &ControlPointPanel::Remove);
    connect(list, &QTreeWidget::itemActivated, this, &ControlPointPanel::Fly);
    connect(list, &QTreeWidget::itemSelectionChanged, this,
            [this] { removeButton->setEnabled(!list->selectedItems().isEmpty()); });
    connect(viewer, &CAxEarthViewer::signalLoadEarth, this, &ControlPointPanel::ShowText);
    Follow();
}

QSize ControlPointPanel::sizeHint() const
{
    return {320, 240};
}

void ControlPointPanel::FillMenu(QMenu* menu)
{
    QAction* action = menu->addAction(tr("Import &control points..."), this, &ControlPointPanel::ChooseFile);
    action->setStatusTip(tr("Add the points of a file as control points: CSV, KML and others"));
}

bool ControlPointPanel::IsLoaded() const
{
    return viewer && viewer->getMapNode();
}

void ControlPointPanel::showEvent(QShowEvent* event)
{
    // A host may have added or removed some meanwhile.
    Follow();
    QWidget::showEvent(event);
}

void ControlPointPanel::Follow()
{
    list->clear();
    const QMap<QString, osg::Vec3d> points =
        viewer ? viewer->GetControlPoints() : QMap<QString, osg::Vec3d>();
    for (auto point = points.begin(); point != points.end(); ++point) {
        auto* item = new QTreeWidgetItem({point.key(), QString::number(point->y(), 'f', 6),
                                          QString::number(point->x(), 'f', 6),
                                          tr("%1 m").arg(QString::number(point->z(), 'f', 2))});
        for (const int column : {LatitudeColumn, LongitudeColumn, HeightColumn})
            item->setTextAlignment(column, Qt::AlignRight | Qt::AlignVCenter);
        list->addTopLevelItem(item);
    }
    removeButton->setEnabled(false);
}

void ControlPointPanel::Fly()
{
    const QTreeWidgetItem* item = list->currentItem();
    const QMap<QString, osg::Vec3d> points =
        viewer ? viewer->GetControlPoints() : QMap<QString, osg::Vec3d>();
    const auto point = item ? points.find(item->text(NameColumn)) : points.end();
    if (point == points.end())
        return Follow();
    const osgEarth::Viewpoint now = viewer->getManipulator()->getViewpoint();
    const double range = now.isValid() ? std::min(flightMetres, now.getRange()) : flightMetres;
    viewer->getManipulator()->setViewpoint(
        osgEarth::Viewpoint("", point->x(), point->y(), point->z(), now.getHeading(), now.getPitch(), range),
        flightSeconds);
}

void ControlPointPanel::Remove()
{
    QMap<QString, osg::Vec3d> gone;
    const QMap<QString, osg::Vec3d> points =
        viewer ? viewer->GetControlPoints() : QMap<QString, osg::Vec3d>();
    for (const QTreeWidgetItem* item : list->selectedItems())
        if (const auto point = points.find(item->text(NameColumn)); point != points.end())
            gone.insert(point.key(), *point);
    if (gone.isEmpty())
        return;
    Change(gone, false);
    Keep(tr("Remove control points (%1)").arg(gone.size()), gone, false);
    emit Told(tr("Control points removed: %1").arg(gone.size()));
}

void ControlPointPanel::Change(const QMap<QString, osg::Vec3d>& points, bool isThere)
{
    for (auto point = points.begin(); viewer && point != points.end(); ++point)
        isThere ? viewer->AddControlPoint(point.key(), *point) : viewer->RemoveControlPoint(point.key());
    CAxControl::GetInstance()->SetProjectModified(true);
    Follow();
}

void ControlPointPanel::Keep(const QString& text, const QMap<QString, osg::Vec3d>& points, bool isThere)
{
    const QPointer<ControlPointPanel> self(this);
    const auto change = [self, points](bool there) {
        if (self)
            self->Change(points, there);
    };
    viewer->GetUndoStack()->push(new UndoStep(
        text, [change, isThere] { change(!isThere); }, [change, isThere] { change(isThere); }));
}

// Files

void ControlPointPanel::Warn(const QString& text, const QStringList& details)
{
    CAxMessageBox box(window());
    box.SetIcon(QStringLiteral(":/images/Normal/Exclamation_mark.png"));
    box.SetWindowTitle(tr("Import control points"));
    box.SetMsgText(text);
    box.SetDetails(details.join(QLatin1Char('\n')));
    box.SetBtnHidden(false, true, false);
    box.exec();
}

void ControlPointPanel::ChooseFile()
{
    const QPointer<ControlPointPanel> self(this);
    const QString file =
        QFileDialog::getOpenFileName(window(), tr("Import control points"), folder,
                                     tr("Points (*.csv *.kml *.kmz *.geojson *.json *.gpkg *.shp *.dxf)") +
                                         QStringLiteral(";;") + tr("All files (*)"));
    if (file.isEmpty() || !self)
        return;
    folder = QFileInfo(file).path();
    Import(file);
}

void ControlPointPanel::Import(const QString& file)
{
    const QString title = QFileInfo(file).fileName();
    if (!IsLoaded())
        return Warn(tr("%1 was not imported.").arg(title), {tr("The map is not loaded yet.")});
    AxGeoReadOptions options;
    options.mostBytes = mostBytesOfPoints;
    options.mostShapes = mostPoints;
    options.arePointsWanted = true;
    QApplication::setOverrideCursor(Qt::WaitCursor);
    const AxGeoContent content = AxReadGeoFile(file, options);
    QApplication::restoreOverrideCursor();
    if (!content.fault.isEmpty())
        return Warn(tr("%1 was not imported.").arg(title), QStringList(content.fault) + content.notes);
    PointNames names(viewer->GetControlPoints().keys());
    QMap<QString, osg::Vec3d> added;
    int onGround = 0;
    for (const AxGeoShape& point : content.shapes) {
        if (point.kind != AxGeoShape::Point || point.points.size() != 1 || !std::isnan(point.radius))
            continue;
        const QPointF place = point.points.constFirst();
        double height = point.altitude;
        if (!std::isfinite(height)) {
            const double ground = viewer->GetElevation(place.x(), place.y());
            height = std::isfinite(ground) ? ground : 0.0;
            ++onGround;
        }
        const QString name = names.Free(point.name.trimmed());
        const osg::Vec3d at(place.x(), place.y(), height);
        if (viewer->AddControlPoint(name, at))
            added.insert(name, at);
    }
    if (added.isEmpty())
        return Warn(tr("%1 has no points.").arg(title), content.notes);
    CAxControl::GetInstance()->SetProjectModified(true);
    Keep(tr("Import control points (%1)").arg(added.size()), added, true);
    emit Wanted();
    Follow();
    QStringList notes = content.notes;
    if (const int others = content.shapes.size() - added.size(); others > 0)
        notes += tr("Areas, lines and circles that were left out: %1").arg(others);
    if (onGround > 0)
        notes += tr("Points without a height, put on the ground as it is loaded: %1").arg(onGround);
    emit Told(tr("Control points imported: %1. Coordinate system: %2.")
                  .arg(QString::number(added.size()), content.coordinateSystem));
    if (!notes.isEmpty())
        Warn(tr("%1 is imported.").arg(title), notes);
}

// The project

QString ControlPointPanel::Text() const
{
    if (!waiting.isEmpty() || !viewer)
        return waiting;
    const QMap<QString, osg::Vec3d> points = viewer->GetControlPoints();
    QJsonArray rows;
    for (auto point = points.begin(); point != points.end(); ++point)
        rows += QJsonArray{point.key(), point->x(), point->y(), point->z()};
    return rows.isEmpty() ? QString() : QString::fromUtf8(QJsonDocument(rows).toJson(QJsonDocument::Compact));
}

void ControlPointPanel::SetText(const QString& text)
{
    for (const QString& name : viewer ? viewer->GetControlPoints().keys() : QStringList())
        viewer->RemoveControlPoint(name);
    Follow();
    waiting = text;
    ShowText();
}

void ControlPointPanel::ShowText()
{
    if (waiting.isEmpty() || !IsLoaded())
        return;
    const QJsonArray rows = QJsonDocument::fromJson(waiting.toUtf8()).array();
    waiting.clear();
    int leftOut = rows.isEmpty() ? 1 : 0;
    for (const QJsonValue& row : rows) {
        const QJsonArray values = row.toArray();
        const bool isPoint = values.size() == 4 && values[0].isString() && values[1].isDouble() &&
                             values[2].isDouble() && values[3].isDouble();
        if (!isPoint ||
            !viewer->AddControlPoint(values[0].toString(),
                                     {values[1].toDouble(), values[2].toDouble(), values[3].toDouble()}))
            ++leftOut;
    }
    Follow();
    if (leftOut > 0)
        emit Told(tr("Control points of the project that cannot be read: %1").arg(leftOut));
}

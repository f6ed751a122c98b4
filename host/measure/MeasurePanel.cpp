#include "host/measure/MeasurePanel.h"
#include "host/measure/MeasureFile.h"
#include "host/measure/MeasureKept.h"
#include "host/measure/MeasureList.h"
#include "host/measure/MeasureProfile.h"
#include "interaction/AxMeasurements.h"
#include "interaction/CAxEarthManipulator.h"
#include "interaction/CAxOsgDrawPointSet.h"
#include "viewer/CAxEarthViewer.h"

#include <AxBaseUI/CAxMessageBox.h>

#include <osg/BoundingSphere>
#include <osgEarth/GeoData>
#include <osgEarth/SpatialReference>
#include <osgEarth/Viewpoint>

#include <QAction>
#include <QApplication>
#include <QClipboard>
#include <QDir>
#include <QFileDialog>
#include <QFileInfo>
#include <QMimeData>
#include <QRegularExpression>
#include <QSplitter>
#include <QStandardPaths>
#include <QToolBar>
#include <QVBoxLayout>

#include <algorithm>

namespace {
constexpr double flightSeconds = 2.0;
const char exclamation[] = ":/images/Normal/Exclamation_mark.png";

/// From above, all points in the picture.
osgEarth::Viewpoint ViewOver(const std::vector<osg::Vec3d>& points,
                             const osgEarth::SpatialReference* geographic)
{
    // A field of view of 30 degrees and free room around.
    constexpr double distanceOfRadius = 4.5;
    constexpr double nearest = 300.0; // metres
    osg::BoundingSphered sphere;
    std::vector<osg::Vec3d> world(points.size());
    for (std::size_t i = 0; i < points.size(); ++i)
        osgEarth::GeoPoint(geographic, points[i], osgEarth::ALTMODE_ABSOLUTE).toWorld(world[i]);
    osg::BoundingBoxd box;
    for (const osg::Vec3d& point : world)
        box.expandBy(point);
    sphere.expandBy(box);
    osgEarth::GeoPoint middle;
    middle.fromWorld(geographic, sphere.center());
    double height = points.front().z();
    for (const osg::Vec3d& point : points)
        height = std::max(height, point.z());
    return {"",
            middle.x(),
            middle.y(),
            height,
            0.0,
            -90.0,
            std::max(nearest, distanceOfRadius * sphere.radius())};
}
} // namespace

MeasurePanel::MeasurePanel(CAxEarthViewer* earthViewer, QWidget* parent)
    : QWidget(parent), viewer(earthViewer), measurements(earthViewer->GetMeasurements()),
      list(new MeasureList(earthViewer->GetMeasurements())), profile(new MeasureProfile(earthViewer)),
      kept(new MeasureKept(earthViewer, this))
{
    QAction* fly = Offer(tr("&Fly to"), tr("Look at the selected measurements from above"),
                         QKeySequence(Qt::Key_Return), &MeasurePanel::FlyTo);
    QAction* copy = Offer(tr("&Copy"), tr("Copy the selected measurements as text, and as a table"),
                          QKeySequence::Copy, &MeasurePanel::Copy);
    QAction* remove = Offer(tr("&Delete"), tr("Take the selected measurements off the map"),
                            QKeySequence::Delete, &MeasurePanel::Delete);
    QAction* save = Offer(tr("&Export measurements..."),
                          tr("Write the selected measurements, or else all, into a CSV, KML or GeoJSON file"),
                          {}, &MeasurePanel::Export);
    ofChosen = {fly, copy, remove};
    QAction* clear = Offer(tr("Clear &all measurements"), tr("Take all measurements off the map"), {},
                           &MeasurePanel::Clear);
    save->setIconText(tr("Export..."));
    clear->setIconText(tr("Clear all"));
    ofAll = {save, clear};
    auto* bar = new QToolBar;
    bar->setToolButtonStyle(Qt::ToolButtonTextOnly);
    bar->addActions(offered);
    for (QWidget* button : bar->findChildren<QWidget*>())
        button->setFocusPolicy(Qt::TabFocus);
    list->addActions(offered);
    list->setContextMenuPolicy(Qt::ActionsContextMenu);

    // The tabs beside it stay as low as they are.
    constexpr int leastHeight = 60;
    list->setMinimumHeight(leastHeight);
    auto* table = new QWidget;
    auto* column = new QVBoxLayout(table);
    column->setContentsMargins(0, 0, 0, 0);
    column->setSpacing(2);
    column->addWidget(bar);
    column->addWidget(list, 1);
    auto* halves = new QSplitter(Qt::Horizontal);
    halves->addWidget(table);
    halves->addWidget(profile);
    halves->setStretchFactor(0, 3);
    halves->setStretchFactor(1, 2);
    auto* whole = new QVBoxLayout(this);
    whole->setContentsMargins(4, 4, 4, 4);
    whole->addWidget(halves);

    connect(viewer->getManipulator(),
            QOverload<osg::Vec3d, osg::Vec3d>::of(&CAxEarthManipulator::mouseLeftBtnClick), this,
            &MeasurePanel::OnMapClicked);
    connect(list, &MeasureList::ChosenChanged, this, &MeasurePanel::Follow);
    connect(list, &QTreeWidget::itemDoubleClicked, this, &MeasurePanel::FlyTo);
    Follow();
}

QSize MeasurePanel::sizeHint() const
{
    return {900, 180};
}

QAction* MeasurePanel::Offer(const QString& text, const QString& tip, const QKeySequence& keys,
                             void (MeasurePanel::*done)())
{
    auto* action = new QAction(text, this);
    // A button has no letter to press; in Chinese it stands in brackets behind the text.
    action->setIconText(QString(text).remove(QRegularExpression(QStringLiteral("\\(&.\\)|&"))));
    action->setToolTip(tip);
    action->setStatusTip(tip);
    action->setShortcut(keys);
    // Where the list has the keyboard: the same keys are others' on the map.
    action->setShortcutContext(Qt::WidgetShortcut);
    connect(action, &QAction::triggered, this, done);
    offered += action;
    return action;
}

void MeasurePanel::OnMapClicked(const osg::Vec3d&, const osg::Vec3d& world)
{
    if (!viewer || !measurements || viewer->GetToolType() != ToolNavigate || world == osg::Vec3d())
        return;
    // A mark is in front of lines.
    const CAxOsgDrawPointSet* marks = CAxOsgDrawPointSet::FindOfViewer(viewer);
    const QString id = marks && !marks->HoveredMark().isEmpty() ? QString() : measurements->SeenAt(world);
    if (id.isEmpty())
        return;
    const bool isBesides = QApplication::keyboardModifiers().testFlag(Qt::ControlModifier);
    // Panels that come move the map, which is handing out its events.
    const auto choose = [this, id, isBesides] {
        emit Wanted();
        isBesides ? list->Toggle(id) : list->Select(id);
        list->setFocus(Qt::OtherFocusReason);
    };
    QMetaObject::invokeMethod(this, choose, Qt::QueuedConnection);
}

void MeasurePanel::Follow()
{
    const QVector<AxMeasurement> chosen = list->Chosen();
    for (QAction* action : qAsConst(ofChosen))
        action->setEnabled(!chosen.isEmpty());
    for (QAction* action : qAsConst(ofAll))
        action->setEnabled(list->topLevelItemCount() > 0);
    if (measurements)
        measurements->SetHighlighted(list->ChosenIDs());
    profile->Show(chosen.isEmpty() ? AxMeasurement() : chosen.first());
}

void MeasurePanel::FlyTo()
{
    std::vector<osg::Vec3d> points;
    for (const AxMeasurement& one : list->Chosen())
        points.insert(points.end(), one.points.begin(), one.points.end());
    if (viewer && viewer->getSRS() && !points.empty())
        viewer->getManipulator()->setViewpoint(ViewOver(points, viewer->getSRS()->getGeographicSRS()),
                                               flightSeconds);
}

void MeasurePanel::Copy()
{
    const QVector<AxMeasurement> chosen = list->Chosen();
    if (chosen.isEmpty())
        return;
    auto* copied = new QMimeData;
    copied->setText(MeasureFile::Text(chosen));
    copied->setData(QStringLiteral("text/csv"), MeasureFile::Csv(chosen));
    QApplication::clipboard()->setMimeData(copied);
    emit Told(tr("Measurements copied: %1").arg(chosen.size()));
}

void MeasurePanel::Delete()
{
    for (const QString& id : list->ChosenIDs())
        if (measurements)
            measurements->Remove(id);
}

void MeasurePanel::Clear()
{
    const int count = list->topLevelItemCount();
    const QPointer<MeasurePanel> self(this);
    if (count > 1 && !Ask(tr("Measurements"),
                          tr("Do you want to take all %1 measurements off the map?").arg(count), tr("Clear")))
        return;
    if (self && measurements)
        measurements->Clear();
}

bool MeasurePanel::Ask(const QString& title, const QString& question, const QString& yes)
{
    CAxMessageBox box(window());
    box.SetIcon(QLatin1String(exclamation));
    box.SetWindowTitle(title);
    box.SetMsgText(question);
    box.SetBtnOKText(yes);
    return box.exec() == QDialog::Accepted;
}

void MeasurePanel::Export()
{
    QVector<AxMeasurement> chosen = list->Chosen();
    if (chosen.isEmpty() && measurements)
        chosen = measurements->All();
    if (chosen.isEmpty())
        return;
    if (std::any_of(chosen.begin(), chosen.end(), [](const AxMeasurement& one) { return one.isPending; })) {
        emit Told(tr("The heights of the ground are still being read."));
        return;
    }
    const QStringList suffixes{QStringLiteral("csv"), QStringLiteral("kml"), QStringLiteral("geojson")};
    const QStringList filters{tr("Table (*.csv)"), tr("Google Earth (*.kml)"), tr("GeoJSON (*.geojson)")};
    QFileDialog dialog(window(), tr("Export measurements"));
    dialog.setAcceptMode(QFileDialog::AcceptSave);
    dialog.setNameFilters(filters);
    dialog.setDefaultSuffix(suffixes.first());
    connect(&dialog, &QFileDialog::filterSelected, &dialog,
            [&](const QString& filter) { dialog.setDefaultSuffix(suffixes.value(filters.indexOf(filter))); });
    dialog.setDirectory(QFileInfo(folder).isDir()
                            ? folder
                            : QStandardPaths::writableLocation(QStandardPaths::DocumentsLocation));
    dialog.selectFile(tr("measurements"));
    const QPointer<MeasurePanel> self(this);
    if (dialog.exec() != QDialog::Accepted || !self)
        return;
    const QString file = dialog.selectedFiles().constFirst();
    folder = QFileInfo(file).absolutePath();
    const QString fault = MeasureFile::Write(file, chosen);
    if (fault.isEmpty()) {
        emit Told(tr("Measurements written to %1: %2")
                      .arg(QDir::toNativeSeparators(file), QString::number(chosen.size())));
        return;
    }
    CAxMessageBox box(window());
    box.SetIcon(QLatin1String(exclamation));
    box.SetWindowTitle(tr("Export measurements"));
    box.SetMsgText(tr("The measurements were not written."));
    box.SetDetails(fault);
    box.SetBtnHidden(false, true, false);
    box.exec();
}

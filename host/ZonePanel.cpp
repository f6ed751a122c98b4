#include "host/ZonePanel.h"
#include "host/CameraRest.h"
#include "host/ZoneListModel.h"
#include "interaction/CAxEarthManipulator.h"
#include "viewer/CAxEarthViewer.h"
#include "viewer/CAxMapToolsWidget.h"

#include <QAction>
#include <QCheckBox>
#include <QEvent>
#include <QHeaderView>
#include <QLabel>
#include <QLocale>
#include <QPushButton>
#include <QTreeView>
#include <QVBoxLayout>

namespace {
// At least what is near for a pilot, at most where zones are still drawn.
constexpr double nearestListedMetres = 50000.0;
constexpr double farthestListedMetres = 350000.0;
constexpr int mostZonesListed = 300;

// A circle of 8 km fills the view from the farther one.
constexpr double nearestFlightRange = 5000.0;
constexpr double farthestFlightRange = 40000.0;
constexpr double flattestPitch = -30.0;
constexpr double flightSeconds = 1.5;
} // namespace

ZonePanel::ZonePanel(CAxEarthViewer* earthViewer, const CameraRest* camera, QWidget* parent)
    : QWidget(parent), viewer(earthViewer), model(new ZoneListModel(this)), list(new QTreeView),
      summary(new QLabel), showAction(new QAction(tr("No-fly &zones"), this))
{
    showAction->setCheckable(true);
    auto* showBox = new QCheckBox(tr("Show on the map"));
    showBox->setObjectName(QStringLiteral("ShowZones"));
    auto* mapButton = viewer->GetMapToolWidget()->findChild<QPushButton*>(QStringLiteral("m_pBtnNoFly"));
    Q_ASSERT(mapButton);
    connect(showAction, &QAction::toggled, this, &ZonePanel::ShowZones);
    connect(showAction, &QAction::toggled, showBox, &QCheckBox::setChecked);
    connect(showAction, &QAction::toggled, mapButton, &QPushButton::setChecked);
    connect(showBox, &QCheckBox::toggled, showAction, &QAction::setChecked);
    connect(mapButton, &QPushButton::toggled, showAction, &QAction::setChecked);

    BuildList();
    summary->setTextFormat(Qt::PlainText);
    summary->setSizePolicy(QSizePolicy::Ignored, QSizePolicy::Preferred);
    auto* column = new QVBoxLayout(this);
    column->setContentsMargins(4, 4, 4, 4);
    column->addWidget(showBox);
    column->addWidget(list, 1);
    column->addWidget(summary);
    connect(camera, &CameraRest::Rested, this, &ZonePanel::OnRested);
}

void ZonePanel::BuildList()
{
    list->setObjectName(QStringLiteral("ZoneList"));
    list->setModel(model);
    list->setUniformRowHeights(true);
    list->setAlternatingRowColors(true);
    list->setSelectionMode(QAbstractItemView::SingleSelection);
    list->setEditTriggers(QAbstractItemView::NoEditTriggers);
    QHeaderView* columns = list->header();
    // A small window keeps its size.
    list->setMinimumHeight(columns->sizeHint().height());
    columns->setStretchLastSection(false);
    columns->setSectionsMovable(false);
    columns->setSectionResizeMode(ZoneListModel::ZoneColumn, QHeaderView::Stretch);
    const auto widen = [&](int column, const QString& widest) {
        const QMargins around = list->contentsMargins();
        const int width = fontMetrics().horizontalAdvance(widest) + around.left() + around.right() + 12;
        columns->setSectionResizeMode(column, QHeaderView::Fixed);
        columns->resizeSection(column, qMax(width, columns->sectionSizeHint(column)));
    };
    widen(ZoneListModel::DistanceColumn, QStringLiteral("000.0 km"));
    widen(ZoneListModel::BearingColumn, QStringLiteral("000\u00b0 NW"));
    list->viewport()->installEventFilter(this);
    connect(model, &ZoneListModel::modelReset, list, &QTreeView::scrollToTop);
    connect(list, &QTreeView::clicked, this, &ZonePanel::Fly);
    connect(list, &QTreeView::activated, this, &ZonePanel::Fly);
}

void ZonePanel::Start()
{
    connect(viewer->GetAncillaryProcess(), &CAxAncillaryProcess::signalShownZones, this,
            &ZonePanel::ListZones);
    ShowZones(showAction->isChecked());
    ListZones();
}

void ZonePanel::showEvent(QShowEvent* event)
{
    QWidget::showEvent(event);
    ListZones();
}

void ZonePanel::ShowZones(bool visible)
{
    if (CAxAncillaryProcess* process = viewer->GetAncillaryProcess())
        process->SetNoFlyZoneMask(visible);
}

void ZonePanel::OnRested(const osgEarth::Viewpoint& newView)
{
    view = newView;
    ListZones();
}

void ZonePanel::ListZones()
{
    const CAxAncillaryProcess* process = viewer->GetAncillaryProcess();
    if (!process || !view.isValid() || !isVisible())
        return;
    const double radius = qBound(nearestListedMetres, view.getRange(), farthestListedMetres);
    QList<AxNoflyZoneNear> zones = process->ZonesNear(view.focalPoint()->x(), view.focalPoint()->y(), radius);
    const QLocale locale;
    QString text = tr("Within %1 km of the view's middle: %2")
                       .arg(locale.toString(qRound(radius / 1000.0)), locale.toString(zones.size()));
    if (zones.size() > mostZonesListed) {
        zones.erase(zones.begin() + mostZonesListed, zones.end());
        text += tr(", the nearest %1 are listed").arg(locale.toString(mostZonesListed));
    }
    summary->setText(text);
    // A click must come upon the row that was aimed at.
    if (list->viewport()->underMouse() && model->rowCount() > 0)
        model->UpdateRows(zones);
    else
        ShowRows(zones);
}

bool ZonePanel::eventFilter(QObject* object, QEvent* event)
{
    // Queued, because the mouse is not away yet.
    if (object == list->viewport() && event->type() == QEvent::Leave)
        QMetaObject::invokeMethod(this, &ZonePanel::ListZones, Qt::QueuedConnection);
    return QWidget::eventFilter(object, event);
}

void ZonePanel::ShowRows(const QList<AxNoflyZoneNear>& zones)
{
    const AxNoflyZoneNear* chosen = model->ZoneOf(list->currentIndex());
    const QString chosenID = chosen ? chosen->id : QString();
    model->SetZones(zones);
    for (int row = 0; row < zones.size(); ++row)
        for (int lift = 0; lift < zones[row].lifts.size(); ++lift)
            list->setFirstColumnSpanned(lift, model->index(row, 0), true);
    list->expandAll();
    const int row = model->RowOf(chosenID);
    if (row >= 0)
        list->setCurrentIndex(model->index(row, 0));
}

void ZonePanel::Fly(const QModelIndex& index)
{
    const AxNoflyZoneNear* zone = model->ZoneOf(index);
    if (!zone)
        return;
    CAxEarthManipulator* camera = viewer->getManipulator();
    const osgEarth::Viewpoint now = camera->getViewpoint();
    QList<osg::Vec3d> middle{osg::Vec3d(zone->longitude, zone->latitude, 0.0)};
    camera->GetElevations(middle, false);
    camera->setViewpoint(osgEarth::Viewpoint(zone->id.toUtf8().constData(), zone->longitude, zone->latitude,
                                             middle.constFirst().z(), now.getHeading(),
                                             qMin(now.getPitch(), flattestPitch),
                                             qBound(nearestFlightRange, now.getRange(), farthestFlightRange)),
                         flightSeconds);
    viewer->GetAncillaryProcess()->FlashZones({zone->id});
}

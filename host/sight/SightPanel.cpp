#include "host/sight/SightPanel.h"
#include "analysis/AxSightAnalysis.h"
#include "analysis/AxSightText.h"
#include "host/sight/SightFiles.h"
#include "host/sight/SightKept.h"
#include "host/sight/SightPick.h"
#include "host/tasks/EscapeKey.h"
#include "host/tasks/LimitedNumber.h"
#include "interaction/CAxEarthManipulator.h"
#include "interaction/CAxHandleAdapter.h"
#include "interaction/CAxOsgDrawPointSet.h"
#include "viewer/CAxEarthViewer.h"

#include <AxData/CAxBlock.h>

#include <osgEarth/GeoData>
#include <osgEarth/SpatialReference>
#include <osgEarth/Viewpoint>
#include <osgViewer/Viewer>

#include <QAction>
#include <QApplication>
#include <QClipboard>
#include <QFormLayout>
#include <QHBoxLayout>
#include <QHeaderView>
#include <QKeyEvent>
#include <QLabel>
#include <QMenu>
#include <QPlainTextEdit>
#include <QProgressBar>
#include <QPushButton>
#include <QRegularExpression>
#include <QToolButton>
#include <QTreeWidget>
#include <QVBoxLayout>

#include <cmath>

namespace {
enum Column
{
    NameColumn,
    FindingColumn
};
// A result's number, 0 in the row of a question without one; and the ID of such a question.
constexpr int numberRole = Qt::UserRole;
constexpr int waitingRole = Qt::UserRole + 1;
constexpr int leastReportLines = 3;

constexpr double highestEnd = 10000.0; // metres above the ground
// Of a flight to a result.
constexpr double flightSeconds = 1.5;
constexpr double flattestPitch = -50.0;
constexpr double lengthsAway = 2.2;
constexpr double leastRange = 500.0;

LimitedNumber* NumberField(const char* name, double least, double most, double value, int decimals,
                           const QString& unit)
{
    auto* field = new LimitedNumber;
    field->setObjectName(QLatin1String(name));
    field->setDecimals(decimals);
    field->setRange(least, most);
    field->setValue(value);
    if (!unit.isEmpty())
        field->setSuffix(QLatin1Char(' ') + unit);
    return field;
}
} // namespace

SightPanel::SightPanel(CAxEarthViewer* earthViewer, QWidget* parent)
    : QWidget(parent), viewer(earthViewer), pick(new SightPick(earthViewer, this)),
      kept(new SightKept(earthViewer, this)),
      escape(new EscapeKey([this] { return IsEscapeMeant(); }, [this] { CallOff(); }, this)),
      lineAction(new QAction(tr("&Line of sight"), this)), viewshedAction(new QAction(tr("&Viewshed"), this)),
      observerHeight(NumberField("SightObserverHeight", 0.0, highestEnd, 2.0, 1, QStringLiteral("m"))),
      targetHeight(NumberField("SightTargetHeight", 0.0, highestEnd, 0.0, 1, QStringLiteral("m"))),
      radius(NumberField("SightRadius", 10.0, axWidestViewshed, 5000.0, 0, QStringLiteral("m"))),
      cell(NumberField("SightCell", 1.0, 1000.0, 20.0, 1, QStringLiteral("m"))),
      refraction(NumberField("SightRefraction", 0.0, AxSight::mostRefraction, AxSight::standardRefraction, 2,
                             QString())),
      progress(new QProgressBar), cancel(new QPushButton(tr("Cancel"))), told(new QLabel),
      list(new QTreeWidget), report(new QPlainTextEdit)
{
    Build();
    // A button has no letter to press; in Chinese it stands in brackets behind the text.
    for (QAction* action : {lineAction, viewshedAction})
        action->setIconText(action->text().remove(QRegularExpression(QStringLiteral("\\(&.\\)|&"))));
    lineAction->setCheckable(true);
    lineAction->setStatusTip(tr("Click the observer and the target: is it seen, and what is in the way?"));
    viewshedAction->setCheckable(true);
    viewshedAction->setStatusTip(tr("Click the observer: what is seen around it?"));
    const auto begin = [this](int clicks) {
        if (clicks > 0)
            emit Wanted();
        pick->Want(clicks);
        OnWanted(pick->Wanted());
    };
    connect(lineAction, &QAction::triggered, this, [this, begin](bool on) {
        viewshedAction->setChecked(false);
        begin(on ? 2 : 0);
    });
    connect(viewshedAction, &QAction::triggered, this, [this, begin](bool on) {
        lineAction->setChecked(false);
        begin(on ? 1 : 0);
    });
    connect(pick, &SightPick::WantedChanged, this, &SightPanel::OnWanted);
    connect(pick, &SightPick::Picked, this, &SightPanel::OnPicked);
    connect(viewer->getManipulator(), &CAxEarthManipulator::signalPointed, this, &SightPanel::OnPointed);

    AxSightAnalysis* analysis = Analysis();
    connect(analysis, &AxSightAnalysis::busyChanged, this, &SightPanel::OnBusy);
    connect(analysis, &AxSightAnalysis::progress, progress, &QProgressBar::setValue);
    connect(analysis, &AxSightAnalysis::added, this, &SightPanel::OnAdded);
    connect(analysis, &AxSightAnalysis::changed, this, &SightPanel::OnShown);
    connect(analysis, &AxSightAnalysis::failed, told, &QLabel::setText);
    connect(analysis, &AxSightAnalysis::removed, this, [this](int number) {
        for (int i = 0; i < list->topLevelItemCount(); ++i)
            if (list->topLevelItem(i)->data(NameColumn, numberRole).toInt() == number)
                delete list->takeTopLevelItem(i--);
        ShowChosen();
    });
    connect(kept, &SightKept::waitingChanged, this, &SightPanel::ShowWaiting);
    connect(kept, &SightKept::Told, this, &SightPanel::Told);
    connect(list, &QTreeWidget::itemActivated, kept, [this](const QTreeWidgetItem* item) {
        kept->LookAgain(item->data(NameColumn, waitingRole).toInt());
    });
    connect(cancel, &QPushButton::clicked, this, &SightPanel::CallOff);
    OnBusy(false);
    ShowChosen();
}

SightPanel::~SightPanel() = default;

void SightPanel::FillMenu(QMenu* menu)
{
    menu->addSeparator();
    menu->addActions({lineAction, viewshedAction});
    auto* from = menu->addMenu(tr("Viewshed &from"));
    connect(from, &QMenu::aboutToShow, this, [this, from] { FillFromMenu(from); });
}

AxSightAnalysis* SightPanel::Analysis() const
{
    return viewer ? viewer->GetSightAnalysis() : nullptr;
}

void SightPanel::Build()
{
    progress->setRange(0, 100);
    cancel->setObjectName(QStringLiteral("SightCancel"));
    told->setObjectName(QStringLiteral("SightTold"));
    report->setObjectName(QStringLiteral("SightReport"));
    told->setTextFormat(Qt::PlainText);
    told->setWordWrap(true);
    told->setSizePolicy(QSizePolicy::Ignored, QSizePolicy::Minimum);
    // A field that scrolls: a panel that grows with its text would move the map.
    report->setReadOnly(true);
    report->setTabChangesFocus(true);
    report->setMinimumHeight(leastReportLines * report->fontMetrics().lineSpacing());
    list->setMinimumHeight(leastReportLines * list->fontMetrics().lineSpacing());
    auto* waiting = new QHBoxLayout;
    waiting->addWidget(progress, 1);
    waiting->addWidget(cancel);
    auto* column = new QVBoxLayout(this);
    column->setContentsMargins(4, 4, 4, 4);
    column->addWidget(BuildForm());
    column->addLayout(waiting);
    column->addWidget(told);
    column->addWidget(BuildList(), 1);
    column->addWidget(report, 1);
}

QWidget* SightPanel::BuildForm()
{
    auto* form = new QWidget;
    auto* rows = new QFormLayout(form);
    rows->setContentsMargins(0, 0, 0, 0);
    rows->addRow(tr("Observer above ground"), observerHeight);
    rows->addRow(tr("Target above ground"), targetHeight);
    rows->addRow(tr("Radius of viewshed"), radius);
    rows->addRow(tr("Cell of viewshed"), cell);
    rows->addRow(tr("Refraction"), refraction);
    refraction->setToolTip(
        tr("0.13 is usual by day; 0 leaves it out. It bends rays down, so that they reach farther."));
    refraction->setSingleStep(0.01);
    auto* line = new QToolButton;
    line->setObjectName(QStringLiteral("SightLine"));
    line->setDefaultAction(lineAction);
    auto* around = new QToolButton;
    around->setObjectName(QStringLiteral("SightViewshed"));
    around->setDefaultAction(viewshedAction);
    auto* from = new QToolButton;
    from->setObjectName(QStringLiteral("SightViewshedFrom"));
    from->setText(tr("Viewshed from"));
    from->setPopupMode(QToolButton::InstantPopup);
    auto* menu = new QMenu(from);
    from->setMenu(menu);
    connect(menu, &QMenu::aboutToShow, this, [this, menu] { FillFromMenu(menu); });
    auto* buttons = new QHBoxLayout;
    for (QToolButton* button : {line, around, from}) {
        button->setFocusPolicy(Qt::StrongFocus);
        buttons->addWidget(button);
    }
    buttons->addStretch(1);
    rows->addRow(buttons);
    return form;
}

QWidget* SightPanel::BuildList()
{
    auto* box = new QWidget;
    list->setObjectName(QStringLiteral("SightList"));
    list->setHeaderLabels({tr("Name"), tr("Found")});
    list->setRootIsDecorated(false);
    list->setAlternatingRowColors(true);
    list->setSelectionMode(QAbstractItemView::ExtendedSelection);
    list->header()->setSectionResizeMode(NameColumn, QHeaderView::ResizeToContents);
    connect(list, &QTreeWidget::itemChanged, this, &SightPanel::OnItemChanged);
    connect(list, &QTreeWidget::itemSelectionChanged, this, &SightPanel::ShowChosen);
    connect(list, &QTreeWidget::itemActivated, this, &SightPanel::Fly);
    auto* gone = new QAction(list);
    gone->setShortcut(QKeySequence::Delete);
    gone->setShortcutContext(Qt::WidgetShortcut);
    connect(gone, &QAction::triggered, this, &SightPanel::Remove);
    list->addAction(gone);

    auto* buttons = new QHBoxLayout;
    const auto addButton = [&](const char* name, const QString& text, auto slot) {
        auto* button = new QPushButton(text);
        button->setObjectName(QLatin1String(name));
        connect(button, &QPushButton::clicked, this, slot);
        buttons->addWidget(button);
        return button;
    };
    ofChosen = {addButton("SightFly", tr("Fly to"), &SightPanel::Fly),
                addButton("SightCopy", tr("Copy"), &SightPanel::Copy),
                addButton("SightExport", tr("Export..."), &SightPanel::Export)};
    removeButton = addButton("SightRemove", tr("Remove"), &SightPanel::Remove);
    auto* column = new QVBoxLayout(box);
    column->setContentsMargins(0, 0, 0, 0);
    column->addWidget(list, 1);
    column->addLayout(buttons);
    return box;
}

void SightPanel::FillFromMenu(QMenu* menu)
{
    menu->clear();
    const auto add = [&](const QString& text, const std::optional<QPointF>& place) {
        QAction* action = menu->addAction(text);
        action->setEnabled(place.has_value());
        if (place)
            connect(action, &QAction::triggered, this, [this, at = *place] {
                emit Wanted();
                LookAround(at);
            });
    };
    add(tr("&Home of the current block"), HomeOfBlock());
    add(tr("&Mark point that is chosen"), MarkPoint());
    add(tr("Below the &camera"), BelowCamera());
}

std::optional<QPointF> SightPanel::HomeOfBlock() const
{
    const CAxHandleAdapter* current = viewer ? viewer->GetCurHandleAdapter() : nullptr;
    const CAxBlock* block = current ? current->GetContainedBlock() : nullptr;
    if (!block || block->GetHomePosition().isNull())
        return {};
    return QPointF(block->GetHomePosition().x(), block->GetHomePosition().y());
}

std::optional<QPointF> SightPanel::MarkPoint() const
{
    const CAxOsgDrawPointSet* marks = viewer ? CAxOsgDrawPointSet::FindOfViewer(viewer) : nullptr;
    const AxProjectMark* mark = marks ? marks->Find(marks->SelectedMark()) : nullptr;
    if (!mark)
        return {};
    return QPointF(mark->longitude, mark->latitude);
}

std::optional<QPointF> SightPanel::BelowCamera() const
{
    if (!viewer || !viewer->getSRS())
        return {};
    osgEarth::GeoPoint place;
    const osg::Vec3d eye =
        osg::Matrixd::inverse(viewer->getOSGViewer()->getCamera()->getViewMatrix()).getTrans();
    if (!place.fromWorld(viewer->getSRS()->getGeographicSRS(), eye))
        return {};
    return QPointF(place.x(), place.y());
}

void SightPanel::OnWanted(int clicks)
{
    if (clicks == 0) {
        lineAction->setChecked(false);
        viewshedAction->setChecked(false);
        if (AxSightAnalysis* analysis = Analysis())
            analysis->EndPreview();
    }
    QString text;
    if (lineAction->isChecked())
        text = clicks == 2 ? tr("Click the observer on the map; Escape ends it.")
                           : tr("Click the target on the map; Escape ends it.");
    else if (viewshedAction->isChecked())
        text = tr("Click the observer on the map; Escape ends it.");
    told->setText(text);
    emit Told(text);
}

void SightPanel::OnPicked(const QList<QPointF>& places)
{
    if (places.size() == 1)
        return LookAround(places.constFirst());
    AxSightAnalysis* analysis = Analysis();
    if (!analysis || places.size() != 2)
        return;
    AxSightOptions options;
    options.refraction = refraction->value();
    QString why;
    if (!analysis->LookAlong({places[0], observerHeight->value()}, {places[1], targetHeight->value()},
                             options, &why))
        told->setText(why);
}

void SightPanel::OnPointed(double longitude, double latitude)
{
    AxSightAnalysis* analysis = Analysis();
    if (!analysis || !lineAction->isChecked() || pick->Wanted() != 1 || std::isnan(longitude))
        return;
    AxSightOptions options;
    options.refraction = refraction->value();
    analysis->Preview({pick->Places().constFirst(), observerHeight->value()},
                      {{longitude, latitude}, targetHeight->value()}, options);
}

void SightPanel::LookAround(const QPointF& place)
{
    AxSightAnalysis* analysis = Analysis();
    if (!analysis)
        return;
    AxViewshedQuestion question;
    question.observer = place;
    question.aboveGround = observerHeight->value();
    question.targetAboveGround = targetHeight->value();
    question.radius = radius->value();
    question.cell = cell->value();
    question.refraction = refraction->value();
    QString why;
    if (!analysis->LookAround(question, &why))
        told->setText(why);
}

void SightPanel::CallOff()
{
    AxSightAnalysis* analysis = Analysis();
    if (!analysis || !analysis->IsBusy())
        return;
    analysis->CallOff();
    told->setText(tr("Called off."));
    emit Told(told->text());
}

void SightPanel::OnBusy(bool busy)
{
    progress->setValue(0);
    progress->setVisible(busy);
    cancel->setVisible(busy);
    if (busy)
        told->clear();
    told->setVisible(!busy);
    escape->Watch(busy);
}

// Over a drawing or a text the key is theirs, and while a click is waited for it ends that first.
bool SightPanel::IsEscapeMeant() const
{
    const QWidget* focus = QApplication::focusWidget();
    if (!viewer || !focus || pick->Wanted() > 0 || QApplication::mouseButtons() != Qt::NoButton)
        return false;
    const bool isOnMap = focus == viewer || viewer->isAncestorOf(focus);
    return isAncestorOf(focus) || (isOnMap && GetToolKind(viewer->GetToolType()) == ToolKindNavigate);
}

void SightPanel::OnAdded(int number)
{
    const AxSightResult result = Analysis()->GetResult(number);
    const QString finding = result.line ? AxSightText(*result.line) : AxSightText(*result.viewshed);
    auto* item = new QTreeWidgetItem({result.name, finding});
    item->setData(NameColumn, numberRole, number);
    item->setFlags(item->flags() | Qt::ItemIsUserCheckable);
    item->setCheckState(NameColumn, result.isVisible ? Qt::Checked : Qt::Unchecked);
    item->setToolTip(FindingColumn, finding);
    list->addTopLevelItem(item);
    list->setCurrentItem(item);
    emit Told(QStringLiteral("%1: %2").arg(result.name, finding));
}

void SightPanel::OnShown(int number)
{
    for (int row = 0; row < list->topLevelItemCount(); ++row) {
        QTreeWidgetItem* item = list->topLevelItem(row);
        if (item->data(NameColumn, numberRole).toInt() == number)
            item->setCheckState(NameColumn,
                                Analysis()->GetResult(number).isVisible ? Qt::Checked : Qt::Unchecked);
    }
}

void SightPanel::ShowWaiting()
{
    for (int row = list->topLevelItemCount() - 1; row >= 0; --row)
        if (list->topLevelItem(row)->data(NameColumn, waitingRole).toInt() != 0)
            delete list->takeTopLevelItem(row);
    for (const SightKept::Waiting& one : kept->GetWaiting()) {
        const QString finding = one.reason.isEmpty() ? tr("Waits for its turn") : one.reason;
        auto* item = new QTreeWidgetItem({one.name, finding});
        item->setData(NameColumn, waitingRole, one.id);
        item->setToolTip(FindingColumn, finding);
        list->addTopLevelItem(item);
    }
    ShowChosen();
}

void SightPanel::OnItemChanged(QTreeWidgetItem* item)
{
    if (item->data(NameColumn, waitingRole).toInt() != 0)
        return;
    if (AxSightAnalysis* analysis = Analysis())
        analysis->SetVisible(item->data(NameColumn, numberRole).toInt(),
                             item->checkState(NameColumn) == Qt::Checked);
}

QList<int> SightPanel::Chosen() const
{
    QList<int> numbers;
    for (const QTreeWidgetItem* item : list->selectedItems())
        if (item->data(NameColumn, waitingRole).toInt() == 0)
            numbers += item->data(NameColumn, numberRole).toInt();
    return numbers;
}

QString SightPanel::ReportOf(int number) const
{
    const AxSightResult result = Analysis() ? Analysis()->GetResult(number) : AxSightResult();
    return result.line       ? AxSightReport(*result.line)
           : result.viewshed ? AxSightReport(*result.viewshed)
                             : QString();
}

void SightPanel::ShowChosen()
{
    const QList<int> chosen = Chosen();
    for (QPushButton* button : qAsConst(ofChosen))
        button->setEnabled(!chosen.isEmpty());
    removeButton->setEnabled(!list->selectedItems().isEmpty());
    report->setPlainText(chosen.size() == 1 ? ReportOf(chosen.constFirst()) : QString());
}

void SightPanel::Fly()
{
    const QList<int> chosen = Chosen();
    if (chosen.isEmpty() || !Analysis())
        return;
    const AxSightResult result = Analysis()->GetResult(chosen.constFirst());
    if (!result.line && !result.viewshed)
        return;
    // The middle of the way that was looked along knows no date line.
    const QPointF place = result.viewshed ? result.viewshed->question.observer
                                          : result.line->profile.at(result.line->profile.size() / 2).place;
    const double size = result.viewshed ? 2.0 * result.viewshed->question.radius : result.line->distance;
    CAxEarthManipulator* camera = viewer->getManipulator();
    QList<osg::Vec3d> ground{osg::Vec3d(place.x(), place.y(), 0.0)};
    camera->GetElevations(ground, false);
    const osgEarth::Viewpoint now = camera->getViewpoint();
    camera->setViewpoint(osgEarth::Viewpoint("sight", place.x(), place.y(), ground.constFirst().z(),
                                             now.getHeading(), qMin(now.getPitch(), flattestPitch),
                                             qMax(leastRange, lengthsAway * size)),
                         flightSeconds);
}

void SightPanel::Copy() const
{
    QStringList texts;
    for (const int number : Chosen())
        texts += Analysis()->GetResult(number).name + QLatin1Char('\n') + ReportOf(number);
    QApplication::clipboard()->setText(texts.join(QStringLiteral("\n\n")));
}

void SightPanel::Export()
{
    for (const int number : Chosen()) {
        const AxSightResult result = Analysis() ? Analysis()->GetResult(number) : AxSightResult();
        const QString text = AskAndExportSight(result, window());
        if (!text.isEmpty())
            emit Told(text);
    }
}

void SightPanel::Remove()
{
    QList<int> waiting;
    for (const QTreeWidgetItem* item : list->selectedItems())
        waiting += item->data(NameColumn, waitingRole).toInt();
    for (const int number : Chosen())
        if (AxSightAnalysis* analysis = Analysis())
            analysis->Remove(number);
    for (const int id : waiting)
        kept->Remove(id);
}

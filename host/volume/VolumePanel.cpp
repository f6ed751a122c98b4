#include "host/volume/VolumePanel.h"
#include "analysis/AxVolumeAnalysis.h"
#include "analysis/AxVolumeText.h"
#include "host/files/SaveBox.h"
#include "host/tasks/LimitedNumber.h"
#include "host/volume/VolumeFile.h"
#include "host/volume/VolumeKept.h"
#include "interaction/AxMeasurements.h"
#include "interaction/CAxEarthManipulator.h"
#include "interaction/CAxHandleAdapter.h"
#include "viewer/AxVolumeFields.h"
#include "viewer/CAxEarthViewer.h"

#include <AxAlgorthm/AxUnits.h>
#include <AxBaseUI/CAxMessageBox.h>
#include <AxBaseUI/CAxVolumeWgt.h>
#include <AxData/CAxBlock.h>
#include <AxData/planner/AxPlanPlane.h>

#include <osgEarth/Viewpoint>

#include <QAction>
#include <QApplication>
#include <QClipboard>
#include <QComboBox>
#include <QDir>
#include <QFileInfo>
#include <QFormLayout>
#include <QGridLayout>
#include <QHeaderView>
#include <QLabel>
#include <QPolygonF>
#include <QProgressBar>
#include <QPushButton>
#include <QScrollArea>
#include <QSignalBlocker>
#include <QTreeWidget>
#include <QVBoxLayout>

#include <cmath>

namespace {
enum VolumeColumn
{
    VolumeName,
    VolumeCut,
    VolumeFill
};
constexpr int volumeIdRole = Qt::UserRole;

// Of a flight to a volume.
constexpr double volumeFlightSeconds = 1.5;
constexpr double flattestVolumePitch = -50.0;
constexpr double sidesAway = 3.0;
constexpr double leastVolumeRange = 100.0;

LimitedNumber* NamedNumber(const char* name)
{
    auto* field = new LimitedNumber;
    field->setObjectName(QLatin1String(name));
    return field;
}
} // namespace

VolumePanel::VolumePanel(CAxEarthViewer* earthViewer, QWidget* parent)
    : QWidget(parent), viewer(earthViewer), base(new QComboBox), height(NamedNumber("VolumeHeight")),
      cell(NamedNumber("VolumeCell")), fields(new AxVolumeFields(*base, *height, *cell, this)),
      compute(new QPushButton(tr("Compute"))), progress(new QProgressBar),
      cancel(new QPushButton(tr("Cancel"))), told(new QLabel), list(new QTreeWidget),
      figures(new CAxVolumeWgt), kept(new VolumeKept(earthViewer, this))
{
    Build();
    AxVolumeAnalysis* analysis = Analysis();
    connect(analysis, &AxVolumeAnalysis::added, this, &VolumePanel::Add);
    connect(analysis, &AxVolumeAnalysis::changed, this, &VolumePanel::Fill);
    connect(analysis, &AxVolumeAnalysis::removed, this, [this](const QString& id) {
        delete ItemOf(id);
        ShowChosen();
    });
    connect(analysis, &AxVolumeAnalysis::progress, this, [this](const QString& id, int percent) {
        if (Chosen().value(0) == id)
            progress->setValue(percent);
    });
    connect(list, &QTreeWidget::itemSelectionChanged, this, &VolumePanel::ShowChosen);
    connect(list, &QTreeWidget::itemChanged, this, &VolumePanel::OnItemChanged);
    connect(list, &QTreeWidget::itemDoubleClicked, this, &VolumePanel::Fly);
    connect(fields, &AxVolumeFields::editing, this, [this] {
        if (AxVolumeAnalysis* refused = Analysis())
            refused->ForgetRefusal(shownID);
    });
    connect(compute, &QPushButton::clicked, this, &VolumePanel::Compute);
    connect(cancel, &QPushButton::clicked, this, [this] {
        for (const QString& id : Chosen())
            if (AxVolumeAnalysis* running = Analysis())
                running->CallOff(id);
    });
    ShowChosen();
}

VolumePanel::~VolumePanel() = default;

AxVolumeAnalysis* VolumePanel::Analysis() const
{
    return viewer ? viewer->GetVolumeAnalysis() : nullptr;
}

void VolumePanel::Build()
{
    constexpr int leastLines = 4;
    base->setObjectName(QStringLiteral("VolumeBase"));
    compute->setObjectName(QStringLiteral("VolumeCompute"));
    cancel->setObjectName(QStringLiteral("VolumeCancel"));
    told->setObjectName(QStringLiteral("VolumeTold"));
    told->setTextFormat(Qt::PlainText);
    told->setWordWrap(true);
    told->setSizePolicy(QSizePolicy::Ignored, QSizePolicy::Minimum);
    list->setObjectName(QStringLiteral("VolumeList"));
    list->setHeaderLabels({tr("Volume"), tr("Cut"), tr("Fill")});
    list->setRootIsDecorated(false);
    list->setAlternatingRowColors(true);
    list->setSelectionMode(QAbstractItemView::ExtendedSelection);
    list->setMinimumHeight(leastLines * list->fontMetrics().lineSpacing());
    figures->EnableMove(false);

    auto* form = new QFormLayout;
    // As narrow as other panels beside the map can be made.
    form->setRowWrapPolicy(QFormLayout::WrapLongRows);
    form->addRow(tr("Base"), base);
    form->addRow(tr("Height of base"), height);
    form->addRow(tr("Cell"), cell);
    auto* work = new QHBoxLayout;
    work->addWidget(compute, 1);
    work->addWidget(cancel, 1);
    auto* buttons = new QGridLayout;
    const auto add = [&](const char* name, const QString& text, auto done) {
        auto* button = new QPushButton(text);
        button->setObjectName(QLatin1String(name));
        connect(button, &QPushButton::clicked, this, done);
        constexpr int beside = 2;
        buttons->addWidget(button, ofChosen.size() / beside, ofChosen.size() % beside);
        ofChosen += button;
        return button;
    };
    // Where the list has the keyboard: the same keys are others' on the map.
    const auto onKey = [this](const QKeySequence& keys, auto done) {
        auto* action = new QAction(this);
        action->setShortcut(keys);
        action->setShortcutContext(Qt::WidgetShortcut);
        connect(action, &QAction::triggered, this, done);
        list->addAction(action);
    };
    add("VolumeFly", tr("Fly to"), &VolumePanel::Fly);
    onKey(QKeySequence(Qt::Key_Return), &VolumePanel::Fly);
    add("VolumeCopy", tr("Copy"), &VolumePanel::Copy);
    onKey(QKeySequence::Copy, &VolumePanel::Copy);
    exportButton = add("VolumeExport", tr("Export..."), &VolumePanel::Export);
    add("VolumeRemove", tr("Remove"), &VolumePanel::Remove);
    onKey(QKeySequence::Delete, &VolumePanel::Remove);

    // A field that scrolls: a panel that grows with its figures would move the map.
    auto* scrolled = new QScrollArea;
    scrolled->setWidget(figures);
    scrolled->setWidgetResizable(true);
    auto* column = new QVBoxLayout(this);
    constexpr int margin = 4;
    column->setContentsMargins(margin, margin, margin, margin);
    column->addWidget(list, 1);
    column->addLayout(buttons);
    column->addLayout(form);
    column->addLayout(work);
    column->addWidget(progress);
    column->addWidget(told);
    column->addWidget(scrolled, 3);
}

QString VolumePanel::MeasureBlock(CAxEarthViewer& viewer, const QString& blockID)
{
    CAxHandleAdapter* const object = viewer.FindExistNode(blockID);
    if (!object || !object->GetContainedBlock())
        return {};
    const QString name = object->GetContainedBlock()->GetBlockName();
    AxVolumeAnalysis* analysis = viewer.GetVolumeAnalysis();
    const AxVolumeResult former = analysis->GetResult(blockID);
    AxVolumeQuestion question = former.id.isEmpty() ? analysis->Next() : former.question;
    question.mayBeLarge = false;
    question.ring.clear();
    if (object->IsOutlineClosed())
        for (const osg::Vec3d& place : object->Outline())
            question.ring += QPointF(place.x(), place.y());
    if (question.ring.size() < 3)
        return tr("\"%1\" encloses no area.").arg(name);
    QString why;
    analysis->Ask(blockID, tr("Volume of %1").arg(name), question, &why);
    // Of a large one a box asks.
    return AxVolumeFaultOf(question) == AxVolumeFault::Many ? QString() : why;
}

// The list

QTreeWidgetItem* VolumePanel::ItemOf(const QString& id) const
{
    for (int row = 0; row < list->topLevelItemCount(); ++row)
        if (list->topLevelItem(row)->data(VolumeName, volumeIdRole).toString() == id)
            return list->topLevelItem(row);
    return nullptr;
}

QStringList VolumePanel::Chosen() const
{
    QStringList ids;
    for (const QTreeWidgetItem* item : list->selectedItems())
        ids += item->data(VolumeName, volumeIdRole).toString();
    return ids;
}

void VolumePanel::Add(const QString& id)
{
    auto* item = new QTreeWidgetItem;
    item->setData(VolumeName, volumeIdRole, id);
    {
        const QSignalBlocker quiet(list);
        list->addTopLevelItem(item);
    }
    Fill(id);
    // A project that is opened is no reason to take room from the map.
    if (kept->IsOpening())
        return;
    list->clearSelection();
    list->setCurrentItem(item);
    emit Wanted();
}

void VolumePanel::Fill(const QString& id)
{
    QTreeWidgetItem* item = ItemOf(id);
    if (!item || !Analysis())
        return;
    const AxVolumeResult result = Analysis()->GetResult(id);
    const bool wasPending = item->data(VolumeCut, volumeIdRole).toBool();
    {
        const QSignalBlocker quiet(list);
        item->setText(VolumeName, result.name);
        item->setCheckState(VolumeName, result.isVisible ? Qt::Checked : Qt::Unchecked);
        const QString without = result.isPending ? QStringLiteral("...") : QStringLiteral("-");
        item->setText(VolumeCut, result.volume ? AxUnits::Volume(result.volume->cut) : without);
        item->setText(VolumeFill, result.volume ? AxUnits::Volume(result.volume->fill) : without);
        item->setData(VolumeCut, volumeIdRole, result.isPending);
    }
    if (Chosen().value(0) == id)
        ShowChosen();
    if (wasPending && !result.isPending && result.volume && result.fault == AxVolumeFault::None)
        emit Told(
            tr("%1: cut %2, fill %3")
                .arg(result.name, AxUnits::Volume(result.volume->cut), AxUnits::Volume(result.volume->fill)));
}

void VolumePanel::WriteAgain()
{
    if (AxVolumeAnalysis* analysis = Analysis())
        analysis->WriteAgain();
}

void VolumePanel::OnItemChanged(QTreeWidgetItem* item)
{
    if (AxVolumeAnalysis* analysis = Analysis())
        analysis->SetVisible(item->data(VolumeName, volumeIdRole).toString(),
                             item->checkState(VolumeName) == Qt::Checked);
}

// The one that is chosen

void VolumePanel::ShowChosen()
{
    const QStringList chosen = Chosen();
    for (QPushButton* button : qAsConst(ofChosen))
        button->setEnabled(!chosen.isEmpty());
    exportButton->setEnabled(chosen.size() == 1 || writing.IsBusy());
    ShowOnMap();
    // Two lists choose what stands out on the map: the one that is used counts.
    if (viewer && list->hasFocus())
        viewer->GetMeasurements()->SetHighlighted(chosen);
    ShowResult(Analysis() ? Analysis()->GetResult(chosen.value(0)) : AxVolumeResult());
}

void VolumePanel::ShowOnMap()
{
    if (AxVolumeAnalysis* analysis = Analysis())
        analysis->SetChosen(isVisible() ? Chosen().value(0) : QString());
}

void VolumePanel::showEvent(QShowEvent* event)
{
    QWidget::showEvent(event);
    ShowOnMap();
}

void VolumePanel::hideEvent(QHideEvent* event)
{
    QWidget::hideEvent(event);
    ShowOnMap();
}

void VolumePanel::ShowResult(const AxVolumeResult& result)
{
    const bool isOne = !result.id.isEmpty();
    compute->setEnabled(isOne);
    fields->SetEnabled(isOne);
    progress->setVisible(result.isPending);
    cancel->setVisible(result.isPending);
    if (result.isPending && (!Analysis() || Analysis()->Running() != result.id))
        progress->setValue(0);
    // What is being filled in stays while its volume is computed, hidden or finds other ground.
    if (result.id == shownID)
        fields->Follow(result.question);
    else
        fields->Show(result.question);
    shownID = result.id;
    QStringList notes;
    if (!isOne)
        notes += tr("Measure > Volume draws the area of a volume.");
    else if (!result.refusal.isEmpty())
        notes += result.refusal;
    notes += AxVolumeAnalysis::NotesOf(result, true);
    told->setText(notes.join(QLatin1Char('\n')));
    told->setVisible(!notes.isEmpty());
    const AxVolume* volume = result.volume.get();
    figures->setVisible(volume);
    if (!volume)
        return;
    figures->SetVolume(volume->cut, volume->fill);
    // The first three are those.
    figures->SetFigures(AxVolumeFigures(*volume).mid(3));
    QVector<QPair<QColor, QString>> legend;
    for (const AxGeoRaster::Class& one : AxVolumeLegend(*volume))
        legend += {QColor(one.color[0], one.color[1], one.color[2]), one.name};
    figures->SetLegend(legend);
}

void VolumePanel::Compute()
{
    AxVolumeAnalysis* analysis = Analysis();
    const QString id = Chosen().value(0);
    const AxVolumeResult result = analysis ? analysis->GetResult(id) : AxVolumeResult();
    if (result.id.isEmpty())
        return;
    // Somebody has agreed to a large one before, and nothing about it is new.
    if (!fields->IsChanged()) {
        analysis->AskAgain(id);
        return;
    }
    AxVolumeQuestion question = fields->Question();
    question.ring = result.question.ring;
    // What is refused goes back to what stands, with the reason below.
    shownID.clear();
    analysis->Ask(id, result.name, question);
}

void VolumePanel::Fly()
{
    const AxVolumeResult result = Analysis() ? Analysis()->GetResult(Chosen().value(0)) : AxVolumeResult();
    // Also to one that waits to be computed.
    if (result.id.isEmpty() || result.fault == AxVolumeFault::NoArea)
        return;
    const AxPlanPlane plane(result.question.ring);
    QPolygonF outline;
    for (const CAxPoint2D& corner : plane.ToPlane(result.question.ring))
        outline += QPointF(corner.x(), corner.y());
    const QRectF box = outline.boundingRect();
    const QPointF middle = plane.ToLngLat({box.center().x(), box.center().y()});
    CAxEarthManipulator* camera = viewer->getManipulator();
    QList<osg::Vec3d> ground{osg::Vec3d(middle.x(), middle.y(), 0.0)};
    camera->GetElevations(ground, false);
    const osgEarth::Viewpoint now = camera->getViewpoint();
    const double side = std::hypot(box.width(), box.height());
    camera->setViewpoint(osgEarth::Viewpoint("volume", middle.x(), middle.y(), ground.constFirst().z(),
                                             now.getHeading(), qMin(now.getPitch(), flattestVolumePitch),
                                             qMax(leastVolumeRange, sidesAway * side)),
                         volumeFlightSeconds);
}

void VolumePanel::Copy() const
{
    QStringList texts;
    for (const QString& id : Chosen()) {
        const AxVolumeResult result = Analysis() ? Analysis()->GetResult(id) : AxVolumeResult();
        if (!result.volume)
            continue;
        QStringList lines{result.name, AxVolumeReport(*result.volume)};
        lines += AxVolumeAnalysis::NotesOf(result, true);
        texts += lines.join(QLatin1Char('\n'));
    }
    if (!texts.isEmpty())
        QApplication::clipboard()->setText(texts.join(QStringLiteral("\n\n")));
}

void VolumePanel::Export()
{
    if (writing.IsBusy()) {
        writing.CallOff();
        ShowWriting();
        emit Told(tr("The export was called off."));
        return;
    }
    const AxVolumeResult result = Analysis() ? Analysis()->GetResult(Chosen().value(0)) : AxVolumeResult();
    if (!result.volume) {
        emit Told(tr("There is no volume to export yet."));
        return;
    }
    const QPointer<VolumePanel> self(this);
    const auto answer = SaveBox::Ask(
        window(), tr("Export %1").arg(result.name), folder, result.name,
        {{tr("GeoTIFF of the differences (*.tif *.tiff)"), {QStringLiteral("tif"), QStringLiteral("tiff")}},
         {tr("Table of the cells (*.csv)"), {QStringLiteral("csv")}}});
    if (!answer || !self)
        return;
    folder = QFileInfo(answer->file).absolutePath();
    Write(result, answer->file, answer->kind == 1);
}

void VolumePanel::Write(const AxVolumeResult& result, const QString& file, bool isTable)
{
    // A million rows take seconds.
    emit Told(tr("%1 is being written...").arg(QDir::toNativeSeparators(file)));
    writing.Start(
        [volume = result.volume, file, isTable](const std::atomic<bool>& isOff) {
            return WriteVolumeFile(file, *volume, isTable, isOff);
        },
        [this, file](QString&& fault) {
            ShowWriting();
            const QString name = QDir::toNativeSeparators(file);
            if (fault.isEmpty()) {
                emit Told(tr("%1 is written.").arg(name));
                return;
            }
            const QPointer<CAxMessageBox> box = WarningBox(tr("Export"), tr("%1 was not written.").arg(name));
            box->SetDetails(fault);
            box->SetBtnHidden(false, true, false);
            box->exec();
            delete box;
        });
    ShowWriting();
}

// On the heap: its window may go while it is open.
CAxMessageBox* VolumePanel::WarningBox(const QString& title, const QString& text)
{
    auto* box = new CAxMessageBox(window());
    box->SetIcon(QStringLiteral(":/images/Normal/Exclamation_mark.png"));
    box->SetWindowTitle(title);
    box->SetMsgText(text);
    return box;
}

bool VolumePanel::Ask(const QString& text)
{
    const QPointer<CAxMessageBox> box = WarningBox(tr("Volume"), text);
    box->SetBtnOKText(tr("Remove"));
    const bool isMeant = box->exec() == QDialog::Accepted;
    delete box;
    return isMeant;
}

void VolumePanel::ShowWriting()
{
    exportButton->setText(writing.IsBusy() ? tr("Cancel export") : tr("Export..."));
    exportButton->setEnabled(Chosen().size() == 1 || writing.IsBusy());
}

void VolumePanel::Remove()
{
    const QStringList ids = Chosen();
    if (ids.isEmpty() || !Analysis())
        return;
    const QString name = Analysis()->GetResult(ids.constFirst()).name;
    const QPointer<VolumePanel> self(this);
    if (!Ask(ids.size() == 1 ? tr("Do you want to remove \"%1\" and its outline?").arg(name)
                             : tr("Do you want to remove %1 volumes and their outlines?").arg(ids.size())) ||
        !self)
        return;
    for (const QString& id : ids)
        if (AxVolumeAnalysis* analysis = Analysis())
            analysis->Remove(id);
}

#include "host/marks/MarkPanel.h"
#include "host/marks/MarkFiles.h"
#include "host/marks/MarkListModel.h"
#include "interaction/CAxEarthManipulator.h"
#include "interaction/CAxOsgDrawPointSet.h"
#include "viewer/CAxEarthViewer.h"

#include <AxBaseUI/CAxMessageBox.h>

#include <osgEarth/Viewpoint>

#include <QApplication>
#include <QCollator>
#include <QCursor>
#include <QFileDialog>
#include <QFileInfo>
#include <QHBoxLayout>
#include <QHeaderView>
#include <QKeyEvent>
#include <QMenu>
#include <QPushButton>
#include <QScopedValueRollback>
#include <QSortFilterProxyModel>
#include <QTableView>
#include <QVBoxLayout>

#include <algorithm>

namespace {
constexpr double markFlightMetres = 2000.0; // from a mark, where the camera is farther away
constexpr double markFlightSeconds = 1.5;
constexpr qint64 mostBytes = 64LL * 1024 * 1024;

const struct
{
    AxGeoFormat format;
    const char* suffix;
    const char* filter;
} markFormats[] = {
    {AxGeoFormat::Kml, "kml", QT_TRANSLATE_NOOP("MarkPanel", "KML (*.kml)")},
    {AxGeoFormat::Csv, "csv", QT_TRANSLATE_NOOP("MarkPanel", "CSV table (*.csv)")},
    {AxGeoFormat::Kmz, "kmz", QT_TRANSLATE_NOOP("MarkPanel", "Packed KML (*.kmz)")},
    {AxGeoFormat::GeoJson, "geojson", QT_TRANSLATE_NOOP("MarkPanel", "GeoJSON (*.geojson)")},
};

// "Mark 9" before "Mark 10".
class MarkOrder : public QSortFilterProxyModel
{
public:
    explicit MarkOrder(QObject* parent) : QSortFilterProxyModel(parent)
    {
        // The locale "C" compares bytes and knows no numbers.
        if (collator.locale().language() == QLocale::C)
            collator.setLocale(QLocale(QLocale::English));
        collator.setNumericMode(true);
        collator.setCaseSensitivity(Qt::CaseInsensitive);
        setSortRole(MarkListModel::SortRole);
    }

protected:
    bool lessThan(const QModelIndex& left, const QModelIndex& right) const override
    {
        const QVariant a = left.data(MarkListModel::SortRole);
        const QVariant b = right.data(MarkListModel::SortRole);
        return a.type() == QVariant::String ? collator.compare(a.toString(), b.toString()) < 0
                                            : QSortFilterProxyModel::lessThan(left, right);
    }

private:
    QCollator collator;
};
} // namespace

MarkPanel::MarkPanel(CAxEarthViewer* earthViewer, QWidget* parent)
    : QWidget(parent), viewer(earthViewer), model(new MarkListModel(viewer, this)),
      sorted(new MarkOrder(this)), list(new QTableView), exportButton(new QPushButton(tr("&Export...")))
{
    list->setObjectName(QStringLiteral("MarkList"));
    list->setAccessibleName(tr("Marks"));
    sorted->setSourceModel(model);
    list->setModel(sorted);
    list->setSelectionBehavior(QTableView::SelectRows);
    list->setSelectionMode(QTableView::ExtendedSelection);
    list->setEditTriggers(QTableView::DoubleClicked);
    list->setTabKeyNavigation(false);
    list->setSortingEnabled(true);
    list->sortByColumn(MarkListModel::NameColumn, Qt::AscendingOrder);
    list->setShowGrid(false);
    list->setAlternatingRowColors(true);
    list->setWordWrap(false);
    list->setContextMenuPolicy(Qt::CustomContextMenu);
    list->verticalHeader()->hide();
    list->verticalHeader()->setSectionResizeMode(QHeaderView::Fixed);
    list->verticalHeader()->setDefaultSectionSize(fontMetrics().height() + 6);
    QHeaderView* columns = list->horizontalHeader();
    columns->setHighlightSections(false);
    columns->setStretchLastSection(true);
    columns->setSortIndicatorShown(false); // it is in the way of the narrow columns' titles
    const int letter = fontMetrics().horizontalAdvance(QLatin1Char('0'));
    columns->resizeSection(MarkListModel::NameColumn, letter * 14);
    columns->resizeSection(MarkListModel::LatitudeColumn, letter * 11);
    columns->resizeSection(MarkListModel::LongitudeColumn, letter * 12);
    columns->resizeSection(MarkListModel::HeightColumn, letter * 10);

    auto* importButton = new QPushButton(tr("&Import..."));
    importButton->setToolTip(tr("Add the points of a file: KML, CSV, GeoJSON and others"));
    exportButton->setToolTip(tr("Write the chosen marks, or all, as KML, CSV or GeoJSON"));
    auto* buttons = new QHBoxLayout;
    buttons->addWidget(importButton);
    buttons->addWidget(exportButton);
    buttons->addStretch();
    auto* column = new QVBoxLayout(this);
    column->setContentsMargins(0, 0, 0, 4);
    column->addWidget(list);
    column->addLayout(buttons);

    list->installEventFilter(this);
    list->viewport()->installEventFilter(this);
    connect(importButton, &QPushButton::clicked, this, &MarkPanel::ChooseImport);
    connect(exportButton, &QPushButton::clicked, this, &MarkPanel::ChooseExport);
    connect(model, &MarkListModel::Refused, this, &MarkPanel::Told);
    connect(model, &MarkListModel::Selected, this, &MarkPanel::FollowMap);
    connect(model, &MarkListModel::rowsInserted, this, [this] {
        // A mark is selected before it has a row.
        if (model->Set())
            FollowMap();
    });
    for (const auto signal : {&MarkListModel::rowsInserted, &MarkListModel::rowsRemoved})
        connect(model, signal, this, &MarkPanel::Enable);
    connect(list->selectionModel(), &QItemSelectionModel::selectionChanged, this, [this] {
        // A row that takes the place of a removed one was not chosen by anybody.
        if (isByHand)
            TellMap();
    });
    connect(list, &QTableView::clicked, this, [this] {
        if (QApplication::keyboardModifiers() == Qt::NoModifier)
            Fly();
    });
    connect(list, &QTableView::customContextMenuRequested, this, [this](const QPoint& place) {
        if (!list->indexAt(place).isValid())
            return;
        QMenu menu;
        AddActions(menu);
        menu.exec(list->viewport()->mapToGlobal(place));
    });
    connect(viewer->getManipulator(), &CAxEarthManipulator::signalRightBtnPicked, this,
            &MarkPanel::OnRightClick);
    Enable();
}

QSize MarkPanel::sizeHint() const
{
    const int letter = fontMetrics().horizontalAdvance(QLatin1Char('0'));
    return {letter * 56, QWidget::sizeHint().height()};
}

void MarkPanel::Enable()
{
    exportButton->setEnabled(model->rowCount() > 0);
}

QString MarkPanel::MarkOf(const QModelIndex& shown) const
{
    return shown.isValid() ? model->MarkAt(sorted->mapToSource(shown).row()) : QString();
}

QStringList MarkPanel::Chosen() const
{
    QStringList ids;
    for (const QModelIndex& shown : list->selectionModel()->selectedRows())
        ids += MarkOf(shown);
    return ids;
}

void MarkPanel::FollowMap()
{
    if (isByHand)
        return;
    const QStringList selected = model->Set() ? model->Set()->SelectedMarks() : QStringList();
    const QSet<QString> wanted(selected.cbegin(), selected.cend());
    const QStringList chosen = Chosen();
    if (wanted == QSet<QString>(chosen.cbegin(), chosen.cend()))
        return;
    QItemSelection rows;
    const auto isWanted = [&](int row) {
        return wanted.contains(MarkOf(sorted->index(row, MarkListModel::NameColumn)));
    };
    for (int row = 0; row < sorted->rowCount(); ++row) {
        const int first = row;
        while (row < sorted->rowCount() && isWanted(row))
            ++row;
        if (row > first)
            rows.select(sorted->index(first, 0), sorted->index(row - 1, MarkListModel::ColumnCount - 1));
    }
    const int last = selected.isEmpty() ? -1 : model->RowOf(selected.last());
    if (last >= 0) {
        const QModelIndex shown = sorted->mapFromSource(model->index(last, MarkListModel::NameColumn));
        list->selectionModel()->setCurrentIndex(shown, QItemSelectionModel::NoUpdate);
        list->scrollTo(shown);
    }
    list->selectionModel()->select(rows, QItemSelectionModel::ClearAndSelect);
}

void MarkPanel::TellMap()
{
    const QStringList ids = Chosen();
    if (model->Set() && ids.size() == 1)
        model->Set()->SelectMark(ids.constFirst());
    else if (model->Set())
        model->Set()->SelectMarks(ids);
    // A drawing is not left for a row. Queued, because the list is in the middle of its own change.
    QMetaObject::invokeMethod(this, &MarkPanel::FollowMap, Qt::QueuedConnection);
}

void MarkPanel::Fly()
{
    const QPointer<CAxOsgDrawPointSet> set = model->Set();
    const AxProjectMark* mark = set ? set->Find(MarkOf(list->currentIndex())) : nullptr;
    if (!mark)
        return;
    osgEarth::Viewpoint view = viewer->getManipulator()->getViewpoint();
    const double range = std::min(markFlightMetres, view.isValid() ? view.getRange() : markFlightMetres);
    viewer->getManipulator()->setViewpoint(osgEarth::Viewpoint("", mark->longitude, mark->latitude,
                                                               mark->altitude, view.getHeading(),
                                                               view.getPitch(), range),
                                           markFlightSeconds);
}

void MarkPanel::Delete()
{
    if (model->Set())
        model->Set()->RemoveMarks(Chosen());
}

bool MarkPanel::eventFilter(QObject* watched, QEvent* event)
{
    const bool isMouse = event->type() == QEvent::MouseButtonPress || event->type() == QEvent::MouseMove;
    if (watched == list->viewport() && isMouse) {
        // What the press chooses is chosen by hand; it is told when the list has dealt with it.
        isByHand = true;
        QMetaObject::invokeMethod(
            this, [this] { isByHand = false; }, Qt::QueuedConnection);
        return false;
    }
    if (watched != list || event->type() != QEvent::KeyPress)
        return QWidget::eventFilter(watched, event);
    const auto* key = static_cast<QKeyEvent*>(event);
    if (key->modifiers() == Qt::NoModifier || key->modifiers() == Qt::KeypadModifier) {
        switch (key->key()) {
        case Qt::Key_Delete:
            Delete();
            return true;
        case Qt::Key_Return:
        case Qt::Key_Enter:
            Fly();
            return true;
        case Qt::Key_F2:
            if (list->currentIndex().isValid())
                list->edit(list->currentIndex().siblingAtColumn(MarkListModel::NameColumn));
            return true;
        default:
            break;
        }
    }
    isByHand = true;
    QMetaObject::invokeMethod(
        this, [this] { isByHand = false; }, Qt::QueuedConnection);
    return false;
}

void MarkPanel::AddActions(QMenu& menu)
{
    const QStringList ids = Chosen();
    if (ids.size() == 1) {
        menu.addAction(tr("&Information..."), this, [this, id = ids.constFirst()] {
            if (model->Set())
                model->Set()->ShowInformation(id);
        });
        menu.addAction(tr("&Fly there"), this, &MarkPanel::Fly);
        menu.addSeparator();
    }
    menu.addAction(tr("&Delete"), this, &MarkPanel::Delete);
}

void MarkPanel::OnRightClick(const osg::Vec3d&)
{
    const QString id = model->Set() ? model->Set()->HoveredMark() : QString();
    if (id.isEmpty())
        return;
    if (!model->Set()->SelectedMarks().contains(id))
        model->Set()->SelectMark(id);
    // Not while the map hands out its events.
    QMetaObject::invokeMethod(
        this,
        [this] {
            QMenu menu;
            AddActions(menu);
            menu.exec(QCursor::pos());
        },
        Qt::QueuedConnection);
}

// Files

void MarkPanel::Warn(const QString& title, const QString& text, const QStringList& details)
{
    constexpr int most = 8;
    CAxMessageBox box(window());
    box.SetIcon(QStringLiteral(":/images/Normal/Exclamation_mark.png"));
    box.SetWindowTitle(title);
    QStringList lines{text};
    lines += details.mid(0, most);
    if (details.size() > most)
        lines += tr("... (%1)").arg(details.size());
    box.SetMsgText(lines.join(QLatin1Char('\n')));
    box.SetBtnHidden(false, true, true);
    box.exec();
}

void MarkPanel::ChooseImport()
{
    const QString file =
        QFileDialog::getOpenFileName(window(), tr("Import marks"), folder,
                                     tr("Points (*.kml *.kmz *.csv *.geojson *.json *.gpkg *.shp *.dxf)") +
                                         QStringLiteral(";;") + tr("All files (*)"));
    if (file.isEmpty())
        return;
    folder = QFileInfo(file).path();
    Import(file);
}

void MarkPanel::Import(const QString& file)
{
    AxGeoReadOptions options;
    options.mostBytes = mostBytes;
    options.arePointsWanted = true;
    QApplication::setOverrideCursor(Qt::WaitCursor);
    const AxGeoContent content = AxReadGeoFile(file, options);
    QApplication::restoreOverrideCursor();
    const QString title = tr("Import marks");
    const QString name = QFileInfo(file).fileName();
    if (!content.fault.isEmpty()) {
        Warn(title, tr("%1 was not imported.").arg(name), QStringList(content.fault) + content.notes);
        return;
    }
    const QVector<AxProjectMark> found = MarkFiles::MarksOf(content);
    CAxOsgDrawPointSet* set = found.isEmpty() ? nullptr : CAxOsgDrawPointSet::OfViewer(viewer);
    if (!set) {
        Warn(title, tr("%1 has no points.").arg(name), content.notes);
        return;
    }
    const QStringList added = set->AddMarks(found, tr("Import %1 marks").arg(found.size()));
    if (!content.notes.isEmpty())
        Warn(title, tr("%1 is imported.").arg(name), content.notes);
    const int others = content.shapes.size() - added.size();
    const QString told = others > 0 ? tr("%1 marks were imported; %2 areas, lines and circles are none.")
                                          .arg(added.size())
                                          .arg(others)
                                    : tr("%1 marks were imported.").arg(added.size());
    emit Told(told + QLatin1Char(' ') + tr("Coordinate system: %1.").arg(content.coordinateSystem));
}

void MarkPanel::ChooseExport()
{
    QFileDialog dialog(window(), tr("Export marks"), folder);
    dialog.setAcceptMode(QFileDialog::AcceptSave);
    QStringList filters;
    for (const auto& format : markFormats)
        filters += tr(format.filter);
    dialog.setNameFilters(filters);
    dialog.setDefaultSuffix(QLatin1String(markFormats[0].suffix));
    connect(&dialog, &QFileDialog::filterSelected, &dialog, [&dialog, filters](const QString& filter) {
        dialog.setDefaultSuffix(QLatin1String(markFormats[std::max(0, filters.indexOf(filter))].suffix));
    });
    if (dialog.exec() != QDialog::Accepted)
        return;
    const QString file = dialog.selectedFiles().constFirst();
    folder = QFileInfo(file).path();
    Export(file);
}

bool MarkPanel::Export(const QString& file)
{
    const QString title = tr("Export marks");
    const QString suffix = QFileInfo(file).suffix().toLower();
    const auto* format =
        std::find_if(std::begin(markFormats), std::end(markFormats),
                     [&suffix](const auto& one) { return suffix == QLatin1String(one.suffix); });
    const CAxOsgDrawPointSet* set = model->Set();
    if (format == std::end(markFormats) || !set || set->Marks().isEmpty()) {
        Warn(title,
             set && !set->Marks().isEmpty()
                 ? tr("%1: marks are written as KML, KMZ, CSV or GeoJSON.").arg(file)
                 : tr("There are no marks."),
             {});
        return false;
    }
    const QStringList chosen = Chosen();
    QVector<AxProjectMark> marks;
    for (const AxProjectMark& mark : set->Marks())
        if (chosen.size() < 2 || chosen.contains(mark.id))
            marks += mark;
    const bool isTable = suffix == QLatin1String("csv");
    const AxGeoWritten written = AxWriteGeoFile(file, format->format, MarkFiles::ShapesOf(marks, isTable));
    if (!written.fault.isEmpty()) {
        Warn(title, tr("%1 was not written.").arg(file), {written.fault});
        return false;
    }
    emit Told(tr("%1 marks are written to %2.").arg(marks.size()).arg(file));
    if (!written.notes.isEmpty())
        Warn(title, tr("%1 is written.").arg(file), written.notes);
    return true;
}

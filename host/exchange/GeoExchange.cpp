#include "host/exchange/GeoExchange.h"
#include "host/exchange/GeoBlocks.h"
#include "host/exchange/GeoImportBox.h"
#include "host/files/SaveBox.h"
#include "interaction/AxBlockOperations.h"
#include "interaction/CAxHandleAdapter.h"
#include "viewer/CAxEarthViewer.h"

#include <AxBaseUI/CAxMessageBox.h>
#include <AxBaseUI/CAxParameterEditPage.h>
#include <AxBaseUI/CAxProgressWgt.h>
#include <AxData/CAxBlockManager.h>

#include <QCoreApplication>
#include <QDir>
#include <QElapsedTimer>
#include <QEventLoop>
#include <QFileDialog>
#include <QFileInfo>
#include <QMenu>
#include <QPointer>
#include <QRegularExpression>
#include <QStandardPaths>
#include <QTimer>

#include <algorithm>
#include <cmath>
#include <memory>

namespace {
struct Format
{
    AxGeoFormat format;
    QString filter;
    QString suffix;
};

QList<Format> Formats()
{
    return {{AxGeoFormat::Kml, GeoExchange::tr("KML (*.kml)"), QStringLiteral("kml")},
            {AxGeoFormat::Kmz, GeoExchange::tr("Packed KML (*.kmz)"), QStringLiteral("kmz")},
            {AxGeoFormat::GeoJson, GeoExchange::tr("GeoJSON (*.geojson)"), QStringLiteral("geojson")},
            {AxGeoFormat::Shapefile, GeoExchange::tr("Shapefile (*.shp)"), QStringLiteral("shp")},
            {AxGeoFormat::GeoPackage, GeoExchange::tr("GeoPackage (*.gpkg)"), QStringLiteral("gpkg")},
            {AxGeoFormat::Dxf, GeoExchange::tr("DXF drawing (*.dxf)"), QStringLiteral("dxf")},
            {AxGeoFormat::Csv, GeoExchange::tr("CSV table (*.csv)"), QStringLiteral("csv")}};
}

// A drawing says nothing of kinds, and an area of an application would come back as one to be flown over.
QStringList TakeApplications(QVector<AxGeoShape>& shapes)
{
    QStringList notes;
    const auto isApplication = [&notes](const AxGeoShape& shape) {
        const bool is = GeoBlocks::TypeOf(shape) == CAxBlock::ProhibitedAreaBlock;
        if (is)
            notes += GeoExchange::tr("\"%1\" is the area of an application, which a drawing cannot say, and "
                                     "was left out.")
                         .arg(shape.name);
        return is;
    };
    shapes.erase(std::remove_if(shapes.begin(), shapes.end(), isApplication), shapes.end());
    return notes;
}

QStringList Suffixes()
{
    QStringList suffixes{QStringLiteral("json")};
    for (const Format& format : Formats())
        suffixes += format.suffix;
    return suffixes;
}
} // namespace

GeoExchange::GeoExchange(CAxEarthViewer* earthViewer, QWidget* ofHost,
                         std::function<QString(const QString& id)> faultOfBlock)
    : QObject(ofHost), viewer(earthViewer), window(ofHost), faultOf(std::move(faultOfBlock))
{
}

void GeoExchange::FillMenu(QMenu* menu)
{
    menu->addAction(tr("&Import areas and lines..."), this, &GeoExchange::ChooseFiles);
    QAction* save = menu->addAction(tr("&Export blocks..."), this, [this] { Export(Chosen()); });
    connect(menu, &QMenu::aboutToShow, save,
            [save] { save->setEnabled(!CAxBlockManager::instance().GetBlockList().isEmpty()); });
    connect(menu, &QMenu::aboutToHide, save, [save] { save->setEnabled(true); });
}

void GeoExchange::FillBlockMenu(QMenu* menu, const QStringList& ids)
{
    if (!ids.isEmpty())
        menu->addAction(ids.size() == 1 ? tr("&Export block...") : tr("&Export blocks..."), this,
                        [this, ids] { Export(ids); });
}

bool GeoExchange::IsGeoFile(const QString& file)
{
    return Suffixes().contains(QFileInfo(file).suffix().toLower());
}

/// Several selected blocks, or else all.
QStringList GeoExchange::Chosen() const
{
    QStringList ids;
    for (const CAxHandleAdapter* object : viewer->GetMultiSelectAdapter())
        if (object->GetContainedBlock())
            ids += object->GetHandleID();
    if (ids.size() > 1)
        return ids;
    ids.clear();
    for (const CAxBlock* block : CAxBlockManager::instance().GetBlockList())
        ids += block->GetBlockID();
    return ids;
}

void GeoExchange::ChooseFiles()
{
    QFileDialog dialog(window, tr("Import areas and lines"));
    dialog.setFileMode(QFileDialog::ExistingFiles);
    dialog.setNameFilters(
        {tr("Areas and lines (%1)").arg(QStringLiteral("*.") + Suffixes().join(QStringLiteral(" *."))),
         tr("All files (*)")});
    StartIn(dialog);
    if (dialog.exec() != QDialog::Accepted)
        return;
    SetFolder(QFileInfo(dialog.selectedFiles().constFirst()).absolutePath());
    Import(dialog.selectedFiles());
}

void GeoExchange::Import(const QStringList& files)
{
    for (const QString& file : files)
        ImportOne(file);
}

std::optional<AxGeoContent> GeoExchange::Read(const QString& file, const AxGeoReadOptions& options)
{
    constexpr int msWithoutBox = 400;
    std::optional<AxGeoContent> content;
    QEventLoop soon;
    CAxProgressWgt box(tr("Import areas and lines"), window);
    box.SetText(tr("Reading %1...").arg(QFileInfo(file).fileName()));
    box.VisibleBtnCannel(true);
    const auto make = [this, file, options,
                       shown = QPointer<CAxProgressWgt>(&box)](const std::atomic<bool>& off) {
        int told = 0;
        return AxReadGeoFile(file, options, [&](int done, int all) {
            constexpr int mostTold = 100;
            if (!off && done - told > all / mostTold) {
                told = done;
                const auto show = [shown, done, all] {
                    if (shown) {
                        shown->SetMaxValue(all + 1); // it ends with the result, not with the last feature
                        shown->SetValue(done);
                    }
                };
                QMetaObject::invokeMethod(this, show, Qt::QueuedConnection);
            }
            return !off;
        });
    };
    reading.Start(make, [&](AxGeoContent read) {
        content = std::move(read);
        soon.quit();
        box.accept();
    });
    QTimer::singleShot(msWithoutBox, &soon, &QEventLoop::quit);
    soon.exec(QEventLoop::ExcludeUserInputEvents);
    if (!content)
        box.exec();
    reading.CallOff();
    return content;
}

std::optional<AxGeoContent> GeoExchange::ReadWithSystem(const QString& file)
{
    AxGeoReadOptions options;
    for (;;) {
        std::optional<AxGeoContent> content = Read(file, options);
        if (!content ||
            (!content->isSystemMissing && (content->fault.isEmpty() || options.assumedSystem.isEmpty())))
            return content;
        CAxParameterEditPage form(window);
        form.SetWindowTitle(tr("Coordinate system"));
        form.SetDialogInfo(
            content->isSystemMissing
                ? tr("%1 does not say which coordinate system it uses.").arg(QFileInfo(file).fileName())
                : content->fault);
        form.SetElementName(tr("EPSG code, as EPSG:32632:"), {});
        form.SetElement1Value(lastSystem, true);
        if (form.exec() != QDialog::Accepted)
            return {};
        lastSystem = form.GetElement1Value().trimmed();
        static const QRegularExpression digits(QStringLiteral("^\\d+$"));
        options.assumedSystem =
            (digits.match(lastSystem).hasMatch() ? QStringLiteral("EPSG:") : QString()) + lastSystem;
    }
}

void GeoExchange::ImportOne(const QString& file)
{
    const std::optional<AxGeoContent> content = ReadWithSystem(file);
    if (!content)
        return;
    if (!content->fault.isEmpty()) {
        Tell(tr("Import areas and lines"), tr("Nothing was imported."),
             QStringList(content->fault) + content->notes);
        return;
    }
    GeoImportBox box(*content, file, window);
    if (box.exec() != QDialog::Accepted)
        return;
    PutOnMap(GeoBlocks::RecordsOf(box.Wanted(), box.Choice()));
}

void GeoExchange::PutOnMap(std::vector<std::unique_ptr<CAxBlock>> records)
{
    constexpr qint64 msWithoutBox = 400;
    constexpr qint64 msBetween = 200; // each look at the events may draw the map
    const int wanted = int(records.size());
    AxBlockOperations* operations = viewer->GetBlockOperations();
    if (wanted == 0 || !operations)
        return;
    CAxProgressWgt box(tr("Import areas and lines"), window);
    box.SetText(tr("Blocks are put on the map..."));
    box.VisibleBtnCannel(true);
    box.SetMaxValue(wanted + 1); // it ends with the last block told
    bool isWanted = true;
    connect(&box, &QDialog::rejected, &box, [&isWanted] { isWanted = false; });
    QElapsedTimer sinceLook;
    sinceLook.start();
    const QStringList made = operations->Replace({}, std::move(records), tr("Import"), [&](int done) {
        if (sinceLook.elapsed() < (box.isVisible() ? msBetween : msWithoutBox) || !isWanted)
            return isWanted;
        if (!box.isVisible())
            box.open();
        box.SetValue(done);
        QCoreApplication::processEvents();
        sinceLook.restart();
        return isWanted;
    });
    box.hide();
    if (!isWanted) {
        emit Told(tr("The import was given up, and the map is as it was."));
        return;
    }
    TellImported(made, wanted);
    viewer->SetBlockView(made);
}

void GeoExchange::TellImported(const QStringList& ids, int wanted)
{
    if (ids.size() < wanted)
        Tell(tr("Import areas and lines"),
             tr("Blocks that cannot be drawn and were not imported: %1 of %2")
                 .arg(wanted - ids.size())
                 .arg(wanted),
             {});
    const auto refused =
        std::count_if(ids.begin(), ids.end(), [this](const QString& id) { return !faultOf(id).isEmpty(); });
    if (refused > 0)
        emit Told(
            tr("Imported blocks that would be refused if they were drawn: %1 of %2. They have a warning "
               "sign in the list.")
                .arg(refused)
                .arg(ids.size()));
    else
        emit Told(tr("Blocks imported: %1").arg(ids.size()));
}

std::optional<GeoExchange::Target> GeoExchange::AskWhere(const QString& name)
{
    const QList<Format> formats = Formats();
    QList<SaveBox::Kind> kinds;
    for (const Format& format : formats) {
        kinds += SaveBox::Kind{format.filter, {format.suffix}};
        if (format.format == AxGeoFormat::GeoJson)
            kinds.last().suffixes += QStringLiteral("json");
    }
    const auto chosen = SaveBox::Ask(window, tr("Export blocks"), folder, name, kinds);
    if (!chosen)
        return {};
    SetFolder(QFileInfo(chosen->file).absolutePath());
    return Target{chosen->file, formats[chosen->kind].format};
}

void GeoExchange::SetFolder(const QString& used)
{
    if (used == folder)
        return;
    folder = used;
    emit FolderChanged();
}

void GeoExchange::StartIn(QFileDialog& dialog) const
{
    const bool isThere = !folder.isEmpty() && QFileInfo(folder).isDir();
    dialog.setDirectory(isThere ? folder
                                : QStandardPaths::writableLocation(QStandardPaths::DocumentsLocation));
}

void GeoExchange::Export(const QStringList& ids)
{
    QVector<AxGeoShape> shapes = GeoBlocks::ShapesOf(ids);
    QStringList notes = GeoBlocks::NotesOf(ids);
    if (shapes.isEmpty()) {
        if (!notes.isEmpty())
            Tell(tr("Export blocks"), tr("The blocks were not written."), notes);
        return;
    }
    const std::optional<Target> target =
        AskWhere(shapes.size() == 1 ? shapes.constFirst().name : tr("blocks"));
    if (!target)
        return;
    const QString shown = QDir::toNativeSeparators(target->file);
    if (target->format == AxGeoFormat::Dxf)
        notes += TakeApplications(shapes);
    AxGeoWritten written;
    if (shapes.isEmpty())
        written.fault = notes.join(QLatin1Char('\n'));
    else
        written = AxWriteGeoFile(target->file, target->format, shapes);
    written.notes += notes;
    if (!written.fault.isEmpty())
        Tell(tr("Export blocks"), tr("The blocks were not written."), {written.fault});
    else if (!written.notes.isEmpty())
        Tell(tr("Export blocks"), tr("%1 is written.").arg(shown), written.notes);
    else
        emit Told(tr("Blocks written to %1: %2").arg(shown, QString::number(shapes.size())));
}

void GeoExchange::Tell(const QString& title, const QString& text, const QStringList& details)
{
    CAxMessageBox box(window);
    box.SetIcon(QStringLiteral(":/images/Normal/Exclamation_mark.png"));
    box.SetWindowTitle(title);
    box.SetMsgText(text);
    box.SetDetails(details.join(QLatin1Char('\n')));
    box.SetBtnHidden(false, true, false);
    box.exec();
}

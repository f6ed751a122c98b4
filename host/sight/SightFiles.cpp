#include "host/sight/SightFiles.h"
#include "analysis/AxSightText.h"

#include <AxBaseUI/CAxMessageBox.h>

#include <QApplication>
#include <QCoreApplication>
#include <QDir>
#include <QFileDialog>
#include <QFileInfo>
#include <QStandardPaths>

namespace {
class Tr
{
    Q_DECLARE_TR_FUNCTIONS(SightPanel)
};

struct Kind
{
    QString filter;
    QString suffix;
    AxGeoFormat format; // of lines
};

QList<Kind> KindsOf(const AxSightResult& result)
{
    if (result.viewshed)
        return {{Tr::tr("GeoTIFF (*.tif)"), QStringLiteral("tif"), AxGeoFormat::Csv}};
    return {{Tr::tr("CSV table (*.csv)"), QStringLiteral("csv"), AxGeoFormat::Csv},
            {Tr::tr("KML (*.kml)"), QStringLiteral("kml"), AxGeoFormat::Kml},
            {Tr::tr("GeoJSON (*.geojson)"), QStringLiteral("geojson"), AxGeoFormat::GeoJson}};
}

bool MayReplace(const QString& file, QWidget* window)
{
    CAxMessageBox box(window);
    box.SetIcon(QStringLiteral(":/images/Normal/Exclamation_mark.png"));
    box.SetWindowTitle(Tr::tr("Export"));
    box.SetMsgText(
        Tr::tr("%1 is there already. Do you want to replace it?").arg(QDir::toNativeSeparators(file)));
    box.SetBtnOKText(Tr::tr("Replace"));
    box.SetCancelDefault(true);
    return box.exec() == QDialog::Accepted;
}

QString ChooseFile(const AxSightResult& result, QWidget* window, Kind& kind)
{
    const QList<Kind> kinds = KindsOf(result);
    QStringList filters;
    for (const Kind& one : kinds)
        filters += one.filter;
    QFileDialog dialog(window, Tr::tr("Export %1").arg(result.name));
    dialog.setAcceptMode(QFileDialog::AcceptSave);
    dialog.setNameFilters(filters);
    dialog.setDefaultSuffix(kinds.constFirst().suffix);
    QObject::connect(&dialog, &QFileDialog::filterSelected, &dialog, [&](const QString& filter) {
        dialog.setDefaultSuffix(kinds[qMax(0, filters.indexOf(filter))].suffix);
    });
    dialog.setDirectory(QStandardPaths::writableLocation(QStandardPaths::DocumentsLocation));
    dialog.selectFile(result.name);
    if (dialog.exec() != QDialog::Accepted)
        return {};
    const QString file = dialog.selectedFiles().constFirst();
    const QString suffix = QFileInfo(file).suffix().toLower();
    for (const Kind& one : kinds)
        if (one.suffix == suffix) {
            kind = one;
            return file;
        }
    // The dialog takes what is behind any point for a suffix.
    kind = kinds[qMax(0, filters.indexOf(dialog.selectedNameFilter()))];
    const QString whole = file + QLatin1Char('.') + kind.suffix;
    return QFileInfo::exists(whole) && !MayReplace(whole, window) ? QString() : whole;
}
} // namespace

QString AskAndExportSight(const AxSightResult& result, QWidget* window)
{
    if (!result.line && !result.viewshed)
        return {};
    Kind kind;
    const QString file = ChooseFile(result, window, kind);
    if (file.isEmpty())
        return {};
    QApplication::setOverrideCursor(Qt::WaitCursor);
    const QString fault =
        result.viewshed ? AxWriteGeoRaster(file, AxSightRaster(*result.viewshed))
                        : AxWriteGeoFile(file, kind.format, AxSightShapes(*result.line, result.name)).fault;
    QApplication::restoreOverrideCursor();
    if (fault.isEmpty())
        return Tr::tr("%1 is written.").arg(QDir::toNativeSeparators(file));
    CAxMessageBox box(window);
    box.SetIcon(QStringLiteral(":/images/Normal/Exclamation_mark.png"));
    box.SetWindowTitle(Tr::tr("Export"));
    box.SetMsgText(Tr::tr("%1 was not written.").arg(QDir::toNativeSeparators(file)));
    box.SetDetails(fault);
    box.SetBtnHidden(false, true, false);
    box.exec();
    return {};
}

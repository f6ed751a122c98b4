#include "host/aircraft/PhotoFiles.h"

#include <AxTelemetry/record/AxPhotoExport.h>

#include <AxBaseUI/CAxMessageBox.h>

#include <QDir>
#include <QFileDialog>
#include <QFileInfo>
#include <QRegularExpression>

namespace {
void TellOfPhotos(QWidget* window, const QString& text, const QStringList& details)
{
    CAxMessageBox box(window);
    box.SetIcon(QStringLiteral(":/images/Normal/Exclamation_mark.png"));
    box.SetWindowTitle(PhotoFiles::tr("Export photos"));
    box.SetMsgText(text);
    box.SetDetails(details.join(QLatin1Char('\n')));
    box.SetBtnHidden(false, true, false);
    box.exec();
}
} // namespace

QString PhotoFiles::Export(QWidget* window, const QString& name, const std::vector<AxPhotoRecord>& photos)
{
    const QString csv = tr("CSV table (*.csv)");
    const QString kml = tr("KML (*.kml)");
    QFileDialog dialog(window, tr("Export photos"));
    dialog.setAcceptMode(QFileDialog::AcceptSave);
    dialog.setNameFilters({csv, kml});
    dialog.setDefaultSuffix(QStringLiteral("csv"));
    QObject::connect(&dialog, &QFileDialog::filterSelected, &dialog, [&](const QString& filter) {
        dialog.setDefaultSuffix(filter == kml ? QStringLiteral("kml") : QStringLiteral("csv"));
    });
    dialog.selectFile(QString(name).replace(QRegularExpression(QStringLiteral("[\\\\/:*?\"<>|\\x00-\\x1f]")),
                                            QStringLiteral("_")));
    if (dialog.exec() != QDialog::Accepted)
        return {};
    const QString file = dialog.selectedFiles().constFirst();
    // What the name says counts before the list.
    const QString ending = QFileInfo(file).suffix().toLower();
    const bool isKml = ending == QLatin1String("kml") ||
                       (ending != QLatin1String("csv") && dialog.selectedNameFilter() == kml);
    const AxExported written = isKml ? AxWritePhotoKml(photos, name) : AxWritePhotoCsv(photos);
    QString error = written.fault;
    if (!error.isEmpty() || !AxSaveExport(file, written.data, error)) {
        TellOfPhotos(window, tr("The photos were not written."), {error});
        return {};
    }
    if (!written.notes.isEmpty())
        TellOfPhotos(window, tr("%1 is written. What it does not say:").arg(QDir::toNativeSeparators(file)),
                     written.notes);
    return file;
}

#include "host/files/SaveBox.h"

#include <AxBaseUI/CAxMessageBox.h>

#include <QDir>
#include <QFileDialog>
#include <QFileInfo>
#include <QRegularExpression>
#include <QStandardPaths>

namespace {
bool MayReplaceFile(QWidget* window, const QString& title, const QString& file)
{
    CAxMessageBox box(window);
    box.SetIcon(QStringLiteral(":/images/Normal/Exclamation_mark.png"));
    box.SetWindowTitle(title);
    box.SetMsgText(
        SaveBox::tr("%1 is there already. Do you want to replace it?").arg(QDir::toNativeSeparators(file)));
    box.SetBtnOKText(SaveBox::tr("Replace"));
    box.SetCancelDefault(true);
    return box.exec() == QDialog::Accepted;
}
} // namespace

std::optional<SaveBox::Answer> SaveBox::Ask(QWidget* window, const QString& title, const QString& folder,
                                            const QString& name, const QList<Kind>& kinds)
{
    QStringList filters;
    for (const Kind& kind : kinds)
        filters += kind.filter;
    const auto placeOf = [&filters](const QString& filter) { return qMax(0, filters.indexOf(filter)); };
    QFileDialog dialog(window, title);
    dialog.setAcceptMode(QFileDialog::AcceptSave);
    dialog.setNameFilters(filters);
    dialog.setDefaultSuffix(kinds.constFirst().suffixes.constFirst());
    QObject::connect(&dialog, &QFileDialog::filterSelected, &dialog, [&](const QString& filter) {
        dialog.setDefaultSuffix(kinds[placeOf(filter)].suffixes.constFirst());
    });
    const bool isThere = !folder.isEmpty() && QFileInfo(folder).isDir();
    dialog.setDirectory(isThere ? folder
                                : QStandardPaths::writableLocation(QStandardPaths::DocumentsLocation));
    dialog.selectFile(QString(name).replace(QRegularExpression(QStringLiteral("[\\\\/:*?\"<>|\\x00-\\x1f]")),
                                            QStringLiteral("_")));
    if (dialog.exec() != QDialog::Accepted)
        return {};
    const QString file = dialog.selectedFiles().constFirst();
    const int chosen = placeOf(dialog.selectedNameFilter());
    const QString suffix = QFileInfo(file).suffix().toLower();
    // What the name says counts before the list, but of kinds with the same suffix the list decides.
    if (kinds[chosen].suffixes.contains(suffix))
        return Answer{file, chosen};
    for (int i = 0; i < kinds.size(); ++i)
        if (kinds[i].suffixes.contains(suffix))
            return Answer{file, i};
    // The dialog takes what is behind any point for a suffix, as in "Field 1.2".
    const QString whole = file + QLatin1Char('.') + kinds[chosen].suffixes.constFirst();
    if (QFileInfo::exists(whole) && !MayReplaceFile(window, title, whole))
        return {};
    return Answer{whole, chosen};
}
